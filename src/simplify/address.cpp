// Rewrites of indirection, address and member access.
//
// The canonical member access is STDOT over UMULT; a member at a known
// offset from a pointer becomes a plain indirection of the offset pointer.
// None of these rewrites may add, drop or split an access: bit fields,
// volatile objects and members whose layout must be kept stay as they are.
#include <cstdint>

#include "driver/diag.h"
#include "driver/options.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "loopnest/loopnest.h"
#include "simplify/simp_internal.h"

namespace {

fkMDATA* member_of(const NODE* access) {
    const NODE* field = access->right;
    return field && field->op == FIELD ? field->field_mval() : nullptr;
}

// Member accesses take the member's type as their creation type.
void set_member_orig_type(NODE* t) {
    if (fkMDATA* m = member_of(t)) {
        t->orig_type = m->type;
        t->right->orig_type = m->type;
    }
}

bool is_volatile_type(TYPE* t) { return type_is_volatile(t); }

// The byte offset of the member of a STDOT or STREF, when the access may be
// rewritten as an access at an address: a whole number of bytes, no bit
// field, nothing that must keep the member form.
// An access at an address is taken to be aligned for its type: a member of
// a packed class may not be.
bool member_is_aligned(const NODE* access, const fkMDATA* m) {
    const unsigned align = m->type ? m->type->align() : 0;
    if (align <= 8)
        return true;
    const TYPE* csu = access->right->field_csu();
    return csu && csu->align() >= align && m->offset % align == 0;
}

bool member_byte_offset(const NODE* access, int64_t* offset) {
    const fkMDATA* m = member_of(access);
    if (!m || m->is_bitfield || m->offset % 8 != 0 || must_preserve_STDOT(access) ||
        !member_is_aligned(access, m))
        return false;
    *offset = m->offset / 8;
    return true;
}

// An int constant that holds offset unchanged.
bool fits_int(int64_t offset) {
    return truncate_to_type(INT65(static_cast<long long>(offset)), tp->mk_int(TYPE::ik_int)) ==
           INT65(static_cast<long long>(offset));
}

// A constant address: (T*)c, or a constant of pointer type.
NODE* constant_address(NODE* p) {
    if (p->op == ICON)
        return p;
    if (p->op == PCONV && is_icon(p->left))
        return p->left;
    return nullptr;
}

// (p + c)->f and (*(p + c)).f are *(T*)(p + (c + o)), T the member's type.
// `pointer` is the PLUS; the access node t becomes the UMULT.
NODE* access_at_offset(NODE* t, NODE* sum, int64_t offset, LOOP* loop, CONTEXT* context) {
    TYPE* type = t->type;
    TYPE* ptr = tp->mk_ptr(type);
    NODE* c = sum->right;
    c->value = truncate_to_type(icon_of(c) + INT65(static_cast<long long>(offset)), c->type);
    sum->left = simp_node(maketree(PCONV, sum->left, nullptr, ptr, sum->left->scope), loop, context);
    sum->type = ptr;
    erase_tree(t->right);
    t->right = nullptr;
    t->op = UMULT;
    t->left = simp_node(sum, loop, context);
    return simp_node(t, loop, context);
}

// p + c with p a pointer and c a constant.
bool is_constant_offset(const NODE* p) {
    return p && p->op == PLUS && p->left && p->left->type && p->left->type->is_pointer() &&
           is_icon(p->right) && is_integer_type(p->right->type);
}

// Whether the access through `pointer` touches a volatile object.
bool access_is_volatile(const NODE* t, const NODE* pointer) {
    return is_volatile_type(t->type) ||
           (pointer->type && pointer->type->is_pointer() &&
            is_volatile_type(pointer->type->type_pointed_to()));
}

// Whether *&x may be x: the same object read in the same type, volatile
// exactly when the indirection is.
bool indirection_may_be_operand(const NODE* t, const NODE* x) {
    if (!x || !x->type || tree_is_bit_field(x))
        return false;
    const bool x_volatile = is_volatile_type(x->type) ||
                            (x->op == NAME && x->name_symbol() &&
                             symbol_is_volatile(x->name_symbol()));
    if (x_volatile != is_volatile_type(t->type))
        return false;
    if (x->op != NAME || !x->name_symbol() || !x->name_symbol()->type)
        return compatible_types(x->type, t->type, true);
    TYPE* sym_type = x->name_symbol()->type;
    if (!compatible_types(sym_type, t->type, true))
        return false;
    if (!t->type->is_array())
        return true;
    return x->type->size() == t->type->size() && sym_type->size() == t->type->size() &&
           compatible_types(x->type, t->type, true);
}

// The pointed-to type of a STREF's pointer as a class, struct or union:
// through arrays to their elements, with the pointer converted to match.
TYPE* csu_pointed_to(NODE* t) {
    TYPE* csu_type = t->left->type->type_pointed_to();
    if (csu_type->is_csu())
        return csu_type;
    OPTASSERT(csu_type->is_array());
    while (csu_type->is_array())
        csu_type = csu_type->elem_type();
    OPTASSERT(csu_type->is_csu());
    t->left = coerce_to_type(tp->mk_ptr(csu_type), t->left);
    return csu_type;
}

// The simple side of a struct assignment, read again after it: a variable
// or a variable's target, read without effect.
bool is_simple_side(const NODE* x) {
    if (!x || tree_has_side_effects(x))
        return false;
    return x->op == NAME || (x->op == UMULT && !x->right && x->left && x->left->op == NAME);
}

} // namespace

NODE* simp_UMULT(NODE* t, LOOP*, CONTEXT*) {
    NODE* p = t->left;
    if (!p)
        return t;
    if (!trees_are_normalized && !t->right && (p->op == UAND || p->op == ARGREF) && !p->right &&
        indirection_may_be_operand(t, p->left)) {
        NODE* x = p->left;
        p->left = nullptr;
        erase_tree(t);
        return x;
    }
    // What a string constant holds never changes.
    const bool through_string = p->op == SCON ||
                                (p->op == PLUS && ((p->left && p->left->op == SCON) ||
                                                   (p->right && p->right->op == SCON)));
    if (through_string && t->type && !(t->type->qual_kind() & TQ_CONST))
        t->type = tp->mk_qual(t->type, TQ_CONST);
    return t;
}

NODE* simp_UAND(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* x = t->left;
    if (t->op == ARGREF || !x || t->right)
        return t;
    // &(a, b) is (a, &b): a sequence hoisted out of an access must not
    // leave the address of a value behind.
    if (x->op == COMMAOP && x->right) {
        t->left = x->right;
        x->right = simp_node(t, loop, context);
        x->type = x->right->type;
        return x;
    }
    // &*p is p, in the address's type.
    if (x->op == UMULT && !x->right && x->left) {
        t->left = x->left;
        x->left = nullptr;
        erase_node(x);
        t->op = PCONV;
        return simp_node(t, loop, context);
    }
    int64_t offset = 0;
    if ((x->op != STREF && x->op != STDOT) || opt_level() <= 1 || !x->left ||
        !member_byte_offset(x, &offset) || !fits_int(offset))
        return t;
    TYPE* type = t->type;
    NODE* base = x->left;
    // &((T*)c)->f, and (*(T*)c).f, is a constant address.
    NODE** pointer = x->op == STREF                       ? &x->left
                     : base->op == UMULT && !base->right ? &base->left
                                                         : nullptr;
    if (pointer && *pointer) {
        if (NODE* c = constant_address(*pointer)) {
            NODE* address = *pointer;
            *pointer = nullptr;
            c->value = truncate_to_type(icon_of(c) + INT65(static_cast<long long>(offset)), c->type);
            address->type = type;
            erase_tree(t);
            return simp_node(address, loop, context);
        }
    }
    if (x->op == STDOT) {
        // &a.f: the member's address from the object's.
        if (base->op != NAME && base->op != UMULT && base->op != STDOT && base->op != STREF)
            return t;
        base = simp_node(maketree(UAND, base, nullptr, tp->mk_ptr(base->type), base->scope), loop,
                         context);
    }
    x->left = nullptr;
    erase_tree(x);
    t->op = PLUS;
    t->left = simp_node(maketree(PCONV, base, nullptr, type, base->scope), loop, context);
    t->right = mk_ICON(INT65(static_cast<long long>(offset)), tp->mk_int(TYPE::ik_int));
    t->right->scope = t->scope;
    return simp_node(t, loop, context);
}

NODE* simp_STREF(NODE* t, LOOP* loop, CONTEXT* context) {
    set_member_orig_type(t);
    NODE* p = t->left;
    if (!p || !p->type || !p->type->is_pointer() || !member_of(t))
        return t;
    int64_t offset = 0;
    if (is_constant_offset(p) && member_byte_offset(t, &offset) && offset != 0 &&
        !access_is_volatile(t, p))
        return access_at_offset(t, p, offset, loop, context);
    // (&x)->f is x.f.
    if (p->op == UAND && !p->right && p->left && p->left->type && p->left->type->is_csu() &&
        compatible_types(p->type->type_pointed_to(), p->left->type, false)) {
        t->left = p->left;
        p->left = nullptr;
        erase_node(p);
        t->op = STDOT;
        return simp_node(t, loop, context);
    }
    TYPE* csu_type = csu_pointed_to(t);
    p = t->left;
    NODE* object = maketree(UMULT, p, nullptr, csu_type, t->scope ? t->scope : p->scope);
    t->left = simp_node(fix_type_info(object), loop, context);
    t->op = STDOT;
    return simp_node(t, loop, context);
}

NODE* simp_STDOT(NODE* t, LOOP* loop, CONTEXT* context) {
    set_member_orig_type(t);
    NODE* x = t->left;
    if (!x || !member_of(t))
        return t;
    int64_t offset = 0;
    if (x->op == UMULT && !x->right && is_constant_offset(x->left) &&
        member_byte_offset(t, &offset) && !access_is_volatile(t, x->left) &&
        !is_volatile_type(x->type)) {
        NODE* sum = x->left;
        x->left = nullptr;
        erase_node(x);
        t->left = sum;
        return access_at_offset(t, sum, offset, loop, context);
    }
    // (d = s).f reads the member of whichever side can be read again. The
    // other side must not move it: *p is read again only when s cannot
    // change p, and s only when d's address is computed without effect.
    if (x->op == STASG && x->left && x->right) {
        NODE* d = x->left;
        NODE* s = x->right;
        NODE* side = nullptr;
        if (is_simple_side(d) && (d->op == NAME || !tree_has_side_effects(s)))
            side = d;
        else if (is_simple_side(s) && !tree_has_side_effects(d))
            side = s;
        if (!side)
            return t;
        t->left = copy_tree(side, true);
        NODE* value = simp_node(t, loop, context);
        return maketree(COMMAOP, x, value, value->type, x->scope);
    }
    return t;
}
