// Conversions: the simplifiers of SCONV, PCONV and ACONV, the one way new
// code gets a tree into a wanted type, and the conversions the code
// generator needs spelled out before a statement is written.
//
// Every rewrite here keeps the value the program computes. In particular a
// conversion to _Bool tests against zero and is never treated as a
// truncation, and a bit field's conversions stay where they are.
#include <cstdint>

#include "driver/diag.h"
#include "driver/driver.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

namespace {

bool is_int(const TYPE* t) { return t && TYPE_IS_INT(t); }
bool is_bool(const TYPE* t) { return t && t->is_bool(); }
bool is_float(const TYPE* t) { return t && t->is_fltpt(); }

// Enums by their underlying integer.
TYPE* int_view(TYPE* t) { return t && t->is_enum() ? normalized_underlying_type(t) : t; }

uint64_t width(const TYPE* t) { return t ? t->size() : 0; }

// Whether two types hold a value in the same bits with the same meaning.
bool same_representation(TYPE* a, TYPE* b) {
    if (a == b)
        return true;
    if (!a || !b)
        return false;
    if (is_int(a) && is_int(b))
        return width(a) == width(b) && a->is_signed() == b->is_signed() &&
               is_bool(int_view(a)) == is_bool(int_view(b));
    if (is_float(a) && is_float(b))
        return a->resolved->fkind == b->resolved->fkind && width(a) == width(b);
    return compatible_types(a, b, false);
}

// A conversion of `from` to `to`, both integers, that keeps every value.
bool conversion_keeps_value(TYPE* from, TYPE* to) {
    from = int_view(from);
    to = int_view(to);
    if (is_bool(to))
        return is_bool(from);
    if (is_bool(from))
        return true;
    if (width(to) > width(from))
        return !from->is_signed() || to->is_signed();
    return width(to) == width(from) && from->is_signed() == to->is_signed();
}

// (t)(m)y is (t)y, for integers t, m and y. The inner conversion goes when it
// keeps the value; or when the outer keeps no bit above those the inner had
// from y, since the low bits of an extension or truncation are y's own; or,
// for a _Bool outer, when the inner only extends, which keeps zero zero.
bool inner_conversion_is_redundant(TYPE* t, TYPE* m, TYPE* y) {
    t = int_view(t);
    m = int_view(m);
    y = int_view(y);
    if (conversion_keeps_value(y, m))
        return true;
    if (is_bool(m))
        return false;
    if (is_bool(t))
        return width(m) >= width(y);
    return width(t) <= width(m);
}

NODE* mk_conversion(TYPE* t, NODE* x) {
    return maketree(t->is_pointer() ? PCONV : SCONV, x, nullptr, t, x->scope);
}

// The node goes; its operand stays.
NODE* drop_node(NODE* t) {
    NODE* x = t->left;
    t->left = nullptr;
    erase_node(t);
    return x;
}

// Replaces the operand of t, a conversion, by the operand's own operand.
void skip_operand(NODE* t) { t->left = drop_node(t->left); }

// QUEST(c, COLON(a, b)) whose arms have its own type: a conversion of it is
// the QUEST of the converted arms.
bool arms_have_quest_type(const NODE* q) {
    if (q->op != QUEST || !q->right || q->right->op != COLON || !q->right->left || !q->right->right)
        return false;
    return same_representation(q->right->left->type, q->type) &&
           same_representation(q->right->right->type, q->type);
}

// The conversion t of such a QUEST goes; each arm gets its own.
template <class CONVERT> NODE* convert_arms(NODE* t, CONVERT convert) {
    TYPE* type = t->type;
    NODE* q = drop_node(t);
    NODE* colon = q->right;
    colon->left = convert(colon->left);
    colon->right = convert(colon->right);
    colon->type = q->type = type;
    return q;
}

// The operators whose low result bits depend only on the low bits of the
// operands; a narrowing goes into their operands. Not DIV, MOD or SRL.
bool low_bits_come_from_low_bits(int op) {
    switch (op) {
    case PLUS:
    case MINUS:
    case MULT:
    case ANDB:
    case ORB:
    case XORB:
    case SLL:
    case NOTB:
    case UMINUS:
        return true;
    default:
        return false;
    }
}

} // namespace

NODE* simp_SCONV(NODE* t, LOOP* loop, CONTEXT* context) {
    for (;;) {
        NODE* x = t->left;
        TYPE* type = t->type;
        if (!x || !type || !x->type)
            return t;
        TYPE* to = int_view(type);

        // (t)(P*)y for an integer y: the pointer only carries y's bits.
        if (x->op == PCONV && x->left && is_int(x->left->type) && is_int(to) &&
            width(to) <= width(x->left->type) && width(x->left->type) <= width(x->type)) {
            skip_operand(t);
            continue;
        }
        if (!type->is_scalar() || type->is_pointer()) {
            if (compatible_types(x->type, type, true) && !tree_is_bit_field(x))
                return drop_node(t);
            return t;
        }
        if (!x->type->is_scalar())
            return t;
        TYPE* from = x->type;
        if (from->is_enum()) {
            from = normalized_underlying_type(from);
            if (x->op == ICON)
                x->type = from;
        }

        if (arms_have_quest_type(x))
            return convert_arms(
                t, [&](NODE* arm) { return simp_SCONV(mk_conversion(type, arm), loop, context); });
        if (x->op == ICON || x->op == FCON) {
            NODE* folded = fold_constants(t);
            if (folded != t || folded->op != SCONV)
                return folded;
        }
        // A conversion of a sequence converts its value, the right side.
        if (x->op == COMMAOP && x->right) {
            t->left = x->right;
            x->right = simp_SCONV(t, loop, context);
            x->type = x->right->type;
            return x;
        }
        if (x->op == SCONV && x->left && is_int(x->left->type) && is_int(x->type) &&
            !tree_is_bit_field(x->left)) {
            const bool redundant =
                is_int(to) ? inner_conversion_is_redundant(to, x->type, x->left->type)
                           : is_float(to) && conversion_keeps_value(x->left->type, x->type);
            if (redundant) {
                skip_operand(t);
                continue;
            }
        }
        if (compatible_types(from, type, true) && !tree_is_bit_field(x))
            return drop_node(t);
        if (!is_int(to) || !is_int(from) || width(to) >= width(from) || tree_is_bit_field(x))
            return t;

        // A narrowing: it goes when the value always fits, and the wider
        // value is still one register: a call argument or a returned value
        // wider than that would change how it is passed ...
        if (width(from) <= width(tp->mk_int(TYPE::ik_int)) &&
            value_fits_in_type(x, type, loop, context))
            return drop_node(t);
        // ... or moves into the operands where the low bits of the result
        // come from the low bits of the operands. A _Bool is no truncation.
        if (is_bool(to) || !low_bits_come_from_low_bits(x->op) || !x->type->is_integral())
            return t;
        const bool binary = x->right && x->op != SLL;
        for (NODE* operand : {x->left, binary ? x->right : nullptr})
            if (operand &&
                (!is_int(operand->type) || promoted_type(operand->type)->size() < width(to)))
                return t;
        x->left = simp_SCONV(mk_conversion(type, x->left), loop, context);
        if (binary)
            x->right = simp_SCONV(mk_conversion(type, x->right), loop, context);
        x->type = type;
        drop_node(t);
        return simp_node(x, loop, context);
    }
}

NODE* simp_PCONV(NODE* t, LOOP* loop, CONTEXT* context) {
    for (;;) {
        NODE* x = t->left;
        TYPE* type = t->type;
        if (!x || !type || !x->type)
            return t;
        if (compatible_types(x->type, type, true) && !tree_is_bit_field(x))
            return drop_node(t);
        if (!type->is_pointer())
            return t;
        if (arms_have_quest_type(x))
            return convert_arms(
                t, [&](NODE* arm) { return simp_PCONV(mk_conversion(type, arm), loop, context); });
        // A pointer converted to a pointer-sized integer and back keeps its bits.
        if (x->op == SCONV && x->left && x->left->type && x->left->type->is_pointer() &&
            is_int(x->type) && width(x->type) == width(x->left->type) &&
            width(type) == width(x->type)) {
            skip_operand(t);
            continue;
        }
        if (!x->type->is_pointer() || width(x->type) != width(type))
            return t;
        // Between pointers to classes only the last conversion matters.
        if (x->op == PCONV && x->left && x->left->type && x->left->type->is_pointer() &&
            width(x->left->type) == width(type) && type->type_pointed_to()->is_csu() &&
            x->type->type_pointed_to()->is_csu()) {
            skip_operand(t);
            continue;
        }
        // Pointer offsets count bytes: (T*)(p + c) is ((T*)p) + c.
        if ((x->op == PLUS || x->op == MINUS) && x->left && x->left->type &&
            x->left->type->is_pointer() && x->right && x->right->op == ICON) {
            t->left = x->left;
            x->left = simp_PCONV(t, loop, context);
            x->type = type;
            return x;
        }
        return t;
    }
}

NODE* simp_ACONV(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* x = t->left;
    if (!x || !x->type || !t->type || !t->type->is_pointer())
        return t;
    // The array *p decays to p's value.
    if (x->op == UMULT && x->left && x->left->type && x->left->type->is_pointer()) {
        skip_operand(t);
        t->op = PCONV;
        return simp_PCONV(t, loop, context);
    }
    if (x->type->is_pointer()) {
        t->op = PCONV;
        return simp_PCONV(t, loop, context);
    }
    return t;
}

bool value_fits_in_type(NODE* x, TYPE* t, LOOP* loop, CONTEXT* context) {
    TYPE* s = x->type;
    if (!s || !t)
        return false;
    if (compatible_types(s, t, true))
        return true;
    if (!s->is_scalar() || !t->is_scalar())
        return false;
    if (s->is_complex() || t->is_complex()) {
        TYPE* part = t->is_complex() ? t->resolved->target : nullptr;
        return part && x->op == COMPLEX && x->left && x->right &&
               value_fits_in_type(x->left, part, loop, context) &&
               value_fits_in_type(x->right, part, loop, context);
    }
    if (!is_int(s) || !is_int(t)) {
        // Size alone says it within one kind; across kinds nothing is known.
        const bool same_kind = (s->is_pointer() && t->is_pointer()) || (is_float(s) && is_float(t));
        return same_kind && width(s) <= width(t);
    }
    const INT65 lo = calculate_minval_for_tree(x, loop, context);
    const INT65 hi = calculate_maxval_for_tree(x, loop, context);
    if (is_bool(int_view(t)))
        return lo >= INT65(0) && hi <= INT65(1);
    return lo >= int_type_min(t) && hi <= int_type_max(t);
}

NODE* push_down_pointer_cast(TYPE* t, NODE* x) {
    if ((x->op == PLUS || x->op == MINUS) && x->type && x->type->is_pointer() && x->left &&
        x->left->type && x->left->type->is_pointer() && width(x->type) == width(t)) {
        x->left = push_down_pointer_cast(t, x->left);
        x->type = t;
        return x;
    }
    return simp_PCONV(mk_conversion(t, x), nullptr, nullptr);
}

NODE* remove_pushed_down_casts(NODE* t) {
    if (!t || t->op == CSE_DUPE)
        return t;
    t->left = remove_pushed_down_casts(t->left);
    t->right = remove_pushed_down_casts(t->right);
    // (T*)p + c back to (T*)(p + c); the conversion rises step by step up a
    // chain of offsets, as the walk comes back up.
    NODE* conv = t->left;
    if ((t->op == PLUS || t->op == MINUS) && t->type && t->type->is_pointer() && conv &&
        conv->op == PCONV && compatible_types(conv->type, t->type, true) && conv->left &&
        conv->left->type && conv->left->type->is_pointer() &&
        width(conv->left->type) == width(t->type)) {
        t->left = conv->left;
        t->type = conv->left->type;
        conv->left = t;
        return conv;
    }
    return t;
}

NODE* coerce_to_type(TYPE* t, NODE* x) {
    if (!x || !t || x->type == t)
        return x;
    TYPE* s = x->type;
    if (arms_have_quest_type(x) && (x->right->left->op == ICON || x->right->right->op == ICON)) {
        NODE* colon = x->right;
        colon->left = coerce_to_type(t, colon->left);
        colon->right = coerce_to_type(t, colon->right);
        colon->type = x->type = t;
        return x;
    }
    // A class object read as a scalar of its size: *(T*)&x.
    if (x->op == NAME && s->is_csu() && t->is_scalar() && width(s) == width(t)) {
        SYMTAB* sym = x->name_symbol();
        sym->state |= SYM_ADDRESS_TAKEN;
        sym->aliased = true;
        NODE* address = maketree(UAND, x, nullptr, tp->mk_ptr(s), x->scope);
        NODE* pointer = maketree(PCONV, address, nullptr, tp->mk_ptr(t), x->scope);
        return maketree(UMULT, pointer, nullptr, t, x->scope);
    }
    if (s->is_scalar() && t->is_scalar()) {
        if (compatible_types(t, s, true) && !tree_is_bit_field(x))
            return x;
        if (s->is_complex() != t->is_complex())
            compiler_error("coerce_to_type", ": complex and non-complex");
    }
    if (compatible_types(t, s, false))
        return x;
    if (!s->is_scalar() || !t->is_scalar()) {
        if (s->is_vector() && t->is_vector()) {
            if (s->elem_count() != t->elem_count())
                compiler_error("coerce_to_type", ": vectors of %u and %u elements", s->elem_count(),
                               t->elem_count());
            return maketree(VSCONV, x, nullptr, t, x->scope);
        }
        if (width(s) != width(t))
            compiler_error("coerce_to_type", ": sizes %llu and %llu",
                           static_cast<unsigned long long>(width(s)),
                           static_cast<unsigned long long>(width(t)));
        return maketree(VRCONV, x, nullptr, t, x->scope);
    }
    if (t->is_pointer()) {
        if (x->op == OUIALIGN || x->op == NONALIGN) {
            x->left = coerce_to_type(t, x->left);
            x->type = t;
            return x;
        }
        if (s->is_pointer() && t->type_pointed_to()->is_scalar())
            return push_down_pointer_cast(t, x);
        return simp_PCONV(mk_conversion(t, x), nullptr, nullptr);
    }
    return simp_SCONV(mk_conversion(t, x), nullptr, nullptr);
}

namespace {

bool is_arithmetic_value(const TYPE* t) { return t && (is_int(t) || is_float(t)); }

// k as an operand of `type`: a constant is converted in place, anything else
// gets a conversion that is not simplified, so that it stays.
NODE* agree(TYPE* type, NODE* k) {
    if (!k || !is_arithmetic_value(type) || !is_arithmetic_value(k->type))
        return k;
    if (same_representation(type, k->type)) {
        if (!compatible_types(type, k->type, false)) {
            dprintf("+++GAR insert mandatory cast:\n");
            dprintf(" tree->type: %s  kid2->type: %s\n", type->print().c_str(),
                    k->type->print().c_str());
        }
        return k;
    }
    if (k->op == ICON && is_int(type) && is_int(k->type)) {
        k->value = convert_integer_constant(truncate_to_type(k->value, k->type), type);
        k->type = type;
        return k;
    }
    return maketree(SCONV, k, nullptr, type, k->scope);
}

} // namespace

NODE* insert_mandatory_casts(NODE* t) {
    if (!t || t->op == CSE_DUPE)
        return t;
    t->left = insert_mandatory_casts(t->left);
    t->right = insert_mandatory_casts(t->right);
    NODE* l = t->left;
    NODE* r = t->right;
    switch (t->op) {
    case PLUS:
    case MINUS:
    case MULT:
    case DIV:
    case MOD:
    case ANDB:
    case ORB:
    case XORB:
        // Pointer arithmetic keeps its integer offset as it is.
        if (!l || !r || !is_arithmetic_value(t->type) || !is_arithmetic_value(l->type) ||
            !is_arithmetic_value(r->type))
            break;
        t->left = agree(t->type, l);
        t->right = agree(t->type, r);
        break;
    case SLL:
    case SRL:
    case UMINUS:
    case NOTB:
    case ABS:
        if (l && is_arithmetic_value(t->type))
            t->left = agree(t->type, l);
        break;
    case EQ:
    case NEQ:
    case LT:
    case LE:
    case GT:
    case GE:
    case ULT:
    case ULE:
    case UGT:
    case UGE:
        // Both sides in one type: the narrower side is widened, which keeps
        // its value; of equal widths the right side takes the left's type.
        if (!l || !r || !is_arithmetic_value(l->type) || !is_arithmetic_value(r->type) ||
            is_int(l->type) != is_int(r->type) || same_representation(l->type, r->type))
            break;
        if (width(r->type) > width(l->type))
            t->left = agree(r->type, l);
        else
            t->right = agree(l->type, r);
        break;
    case ASG:
        if (l && r && is_arithmetic_value(l->type) && !tree_is_bit_field(l))
            t->right = agree(strip_qualifiers(l->type), r);
        break;
    case QUEST:
        if (r && r->op == COLON && is_arithmetic_value(t->type)) {
            r->left = agree(t->type, r->left);
            r->right = agree(t->type, r->right);
            r->type = t->type;
        }
        break;
    default:
        break;
    }
    return t;
}
