// The builders and predicates of trees that follow type rules.
#include <cstring>

#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "inline/funinfo.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

void new_node_special_cases(NODE* n) {
    TYPE* t = n->type;
    switch (n->op) {
    case SCONV:
        if (t && t->is_enum())
            n->type = normalized_underlying_type(t);
        break;
    case PCONV:
        // All pointers of the target share one representation.
        if (t && chars_alias_other_types && t->is_pointer()) {
            TYPE* to = t->type_pointed_to();
            if (to && (to->is_schar() || to->is_uchar()))
                n->op = ISP2CHAR;
        }
        break;
    case UCALL:
        if (currfuninfo)
            currfuninfo->is_leaf = false;
        break;
    default:
        break;
    }
}

TYPE* strip_qualifiers(TYPE* t) { return t ? t->type_qualified() : nullptr; }

void NODE::mk_icon(long long n) {
    const bool sign_extend = type && type->is_signed();
    value = sign_extend ? INT65(n) : INT65::from_unsigned(static_cast<uint64_t>(n));
}

void NODE::mk_field(int kind, fkMDATA* member, TYPE* csu) {
    OPTASSERT(kind == 1);
    mval = member;
    sym = csu;
    if (type)
        type = type->normalized();
    if (member && member->is_bitfield && currfuninfo)
        currfuninfo->has_bitfield_work = true;
}

NODE* mk_ICON(INT65 value, TYPE* type) {
    if (type->is_pointer())
        type = tp->mk_int(TYPE::ik_uint);
    OPTASSERT(type->is_integral() || type->is_enum());
    NODE* n = new_node(ICON, type);
    n->value = truncate_to_type(value, type);
    return n;
}

NODE* mk_ASG(NODE* lhs, NODE* rhs) {
    TYPE* t = lhs->type;
    int op = ASG;
    if (t->is_array() && !t->is_vector())
        op = ARASG;
    else if (t->is_csu())
        op = STASG;
    NODE* n = maketree(op, lhs, rhs, t, lhs->scope);
    if (op == STASG)
        n->sym = lhs->sym;
    return n;
}

NODE* mk_EXCLAIM(NODE* t) {
    return maketree(EXCLAIM, t, nullptr, tp->mk_int(TYPE::ik_int), nullptr);
}

NODE* mk_MINUS(NODE* a, NODE* b) {
    if (!b)
        return a;
    if (!a)
        return maketree(UMINUS, b, nullptr, promoted_type(b->type), nullptr);
    TYPE* t;
    if (a->type->is_pointer())
        // A difference of two pointers is an int; a pointer less an integer
        // is still a pointer.
        t = b->type->is_pointer() ? tp->mk_int(TYPE::ik_int) : a->type;
    else
        t = combined_type(a, b);
    return maketree(MINUS, a, b, t, nullptr);
}

bool type_is_volatile(TYPE* t) { return t && (t->qual_kind() & 2); }
bool type_is_float(TYPE* t) { return t && t->is_fltpt(); }
bool symbol_is_volatile(const SYMTAB* sym) { return sym->type && (sym->type->qual_kind(true) & 2); }

namespace {

// The assigning operator whose plain operator is `op`, or NONE.
int opASG_of_op(int op) {
    for (int a = 0; a < number_of_opcodes; a++)
        if (op_of_opASG[a] == op)
            return a;
    return NONE;
}

bool op_has_assigning_form(int op) {
    switch (op) {
    case PLUS:
    case MINUS:
    case MULT:
    case ANDB:
    case ORB:
    case XORB:
    case DIV:
    case MOD:
    case SLL:
    case SRL:
        return true;
    default:
        return false;
    }
}

} // namespace

NODE* ASG_to_opASG(NODE* t) {
    if (!t || t->op != ASG || !t->right)
        return t;
    NODE* value = t->right;
    if (!op_has_assigning_form(value->op) || !value->left || !value->right)
        return t;
    if (!trees_are_congruent(t->left, value->left, 0)) {
        if (commute_inv[value->op] != value->op || !trees_are_congruent(t->left, value->right, 0))
            return t;
        std::swap(value->left, value->right);
    }
    t->op = opASG_of_op(value->op);
    t->right = value->right;
    value->right = nullptr;
    erase_tree(value);
    return t;
}

NODE* opASG_to_ASG(NODE* t) {
    if (!t || t->op >= ERASED_OP || op_of_opASG[t->op] == NONE)
        return t;
    NODE* target = t->left;
    if (target->op == DDNODE)
        return t;
    // The target would be evaluated twice.
    if (tree_has_side_effects(target) && !type_is_volatile(target->type))
        return t;
    const int base = op_of_opASG[t->op];
    const bool shift = base == SLL || base == SRL;
    TYPE* target_type = target->type;
    NODE* operand = t->right;
    const bool plain_integer = target_type->is_integral() || target_type->is_enum();
    if (!plain_integer) {
        TYPE* want = nullptr;
        if (base == ANDB || base == ORB || base == XORB || base == MOD)
            want = promoted_type(target_type);
        else if (shift)
            want = tp->mk_int(TYPE::ik_int);
        if (want && operand->type != want)
            operand = maketree(SCONV, operand, nullptr, want, operand->scope);
    }
    // A pointer's offset stays an integer.
    if (operand->op == ICON && plain_integer)
        operand->type = promoted_type(target_type);
    NODE* copy = copy_tree(target, true);
    TYPE* result = shift ? promoted_type(target_type) : combined_type(copy, operand);
    t->op = ASG;
    t->right = maketree(base, copy, operand, result, t->scope);
    return t;
}

std::string NODE::lcon_value() const {
    // The value as the 64-bit long or unsigned long the node's type names.
    const bool is_signed = type && type->is_signed();
    return is_signed ? std::to_string(value.to_int64()) : std::to_string(value.to_uint64());
}
