// Truth values: simplification of a value used only for its truth, and the
// 0-or-1 form of a truth value.
#include "ir/ir.h"
#include "simplify/simp_internal.h"
#include "support/intmath.h"

namespace {

TYPE* int_type() { return tp->mk_int(TYPE::ik_int); }

bool is_int_or_pointer(const TYPE* t) { return t && (TYPE_IS_INT(t) || t->is_pointer()); }

bool is_zero_icon(const NODE* t) { return is_icon(t) && icon_of(t).is_zero(); }

// The truth of the tree decided: its effects, then the constant.
NODE* decided(NODE* t, bool truth) {
    return replace_keeping_effects(t, INT65(truth ? 1 : 0), int_type());
}

NODE* drop_to_left(NODE* t) { return replace_by_operand(t, t->left); }

// A product that cannot be zero unless its left factor is: an odd constant
// factor has an inverse modulo any power of two, and a product whose bounds
// fit its type does not wrap.
bool product_keeps_truth(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!is_icon(t->right) || !is_integer_type(t->type) || !t->left ||
        !is_integer_type(t->left->type) || t->left->type->size() != t->type->size())
        return false;
    const INT65 c = icon_of(t->right);
    if (c.is_zero())
        return false;
    if ((c.bits() & 1) != 0)
        return true;
    const INT65 lo = calculate_minval_for_tree(t->left, loop, context);
    const INT65 hi = calculate_maxval_for_tree(t->left, loop, context);
    return !prod_may_overflow(lo, c, t->type) && !prod_may_overflow(hi, c, t->type);
}

// One rewrite of a truth value; null when none applies.
NODE* control_step(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->type)
        return nullptr;
    // x != 0 is x.
    if (t->op == NEQ && is_zero_icon(t->right) && t->left && is_int_or_pointer(t->left->type))
        return drop_to_left(t);
    // A widening conversion keeps zero and non-zero apart.
    if (t->op == SCONV && t->left && is_integer_type(t->type) && !t->type->is_bool() &&
        is_int_or_pointer(t->left->type) && t->left->type->size() <= t->type->size())
        return drop_to_left(t);
    if ((t->op == PCONV || t->op == ISP2CHAR) && t->left && is_integer_type(t->left->type) &&
        t->left->type->size() <= t->type->size())
        return drop_to_left(t);
    // The operand of a negation, or of a comparison with zero, is a truth
    // value too.
    if ((t->op == EXCLAIM || ((t->op == EQ || t->op == NEQ) && is_zero_icon(t->right))) &&
        t->left && is_int_or_pointer(t->left->type)) {
        NODE* operand = t->left;
        const int op = operand->op;
        t->left = simp_for_control(operand, loop, context);
        if (t->left != operand || t->left->op != op)
            return simp_node(t, loop, context);
    }
    if (!is_int_or_pointer(t->type))
        return nullptr;
    if (t->op != ICON && !(t->op == COMMAOP && is_icon(t->right))) {
        if (tree_is_non_zero(t, loop, context))
            return decided(t, true);
        if (tree_is_zero(t, loop, context))
            return decided(t, false);
    }
    if (!is_integer_type(t->type))
        return nullptr;
    const uint64_t size = t->type->size();
    switch (t->op) {
    case MOD:
        // x % 2^k and x & (2^k - 1) are zero together, whatever x's sign.
        if (is_icon(t->right) && power_of_2(icon_of(t->right)) > 0) {
            t->op = ANDB;
            t->right->value = icon_of(t->right) - INT65(1);
            return simp_node(t, loop, context);
        }
        return nullptr;
    case ANDB: {
        if (!is_icon(t->right) || !t->left)
            return nullptr;
        const INT65 m = icon_of(t->right);
        NODE* l = t->left;
        // (x >> c) & 1 tests bit c of x.
        if (m == INT65(1) && l->op == SRL && is_icon(l->right) && l->left &&
            l->type->size() == size && l->left->type->size() == size) {
            const INT65 c = icon_of(l->right);
            if (c.is_negative() || c >= INT65(static_cast<long long>(size)))
                return nullptr;
            NODE* x = replace_by_operand(l, l->left);
            t->left = x;
            t->right->value = truncate_to_type(INT65(1) << static_cast<int>(c.low), t->type);
            return simp_node(t, loop, context);
        }
        // (a ^ m1) & m2 with one bit m2 inside m1: (a & m2) ^ m2.
        if (l->op == XORB && is_icon(l->right) && power_of_2(m) >= 0 &&
            (icon_of(l->right).bits() & m.bits()) == m.bits() && l->type->size() == size) {
            NODE* a = l->left;
            l->left = nullptr;
            erase_tree(l);
            t->left = simp_node(maketree(ANDB, a, mk_ICON(m, t->type), t->type, t->scope), loop,
                                context);
            t->op = XORB;
            return simp_node(t, loop, context);
        }
        return nullptr;
    }
    case SRL:
        // x >> (size - 1) is the sign bit.
        if (is_icon(t->right) && icon_of(t->right) == INT65(static_cast<long long>(size - 1)) &&
            t->left && t->left->type->size() == size) {
            t->op = ANDB;
            t->right->value = truncate_to_type(INT65(1) << static_cast<int>(size - 1), t->type);
            t->right->type = t->type;
            return simp_node(t, loop, context);
        }
        return nullptr;
    case XORB: {
        if (!is_icon(t->right) || !t->left)
            return nullptr;
        const INT65 c = icon_of(t->right);
        // x ^ c where x is 0 or c: true when x is 0.
        if (power_of_2(c) >= 0 && find_known_zeros(t->left, t->type) == c) {
            t->op = EQ;
            t->right->value = INT65(0);
            t->type = int_type();
            return simp_node(t, loop, context);
        }
        // x ^ c is non-zero when x differs from c.
        t->op = NEQ;
        t->type = int_type();
        return simp_node(t, loop, context);
    }
    case UMINUS:
    case ABS:
        if (t->left && t->left->type->size() == size && is_integer_type(t->left->type))
            return drop_to_left(t);
        return nullptr;
    case MINUS:
        // a - b is non-zero when a and b differ.
        if (t->left && t->right && is_integer_type(t->left->type) &&
            is_integer_type(t->right->type) && t->left->type->size() == size &&
            t->right->type->size() == size) {
            t->op = NEQ;
            t->type = int_type();
            return simp_node(t, loop, context);
        }
        return nullptr;
    case MULT:
        if (product_keeps_truth(t, loop, context))
            return drop_to_left(t);
        return nullptr;
    default:
        return nullptr;
    }
}

} // namespace

NODE* simp_for_control(NODE* t, LOOP* loop, CONTEXT* context) {
    // Each step leaves a smaller tree or a test that no step rewrites again.
    for (int i = 0; t && i < 16; i++) {
        NODE* next = control_step(t, loop, context);
        if (!next)
            break;
        t = next;
    }
    return t;
}

NODE* make_boolean(NODE* t, LOOP* loop, CONTEXT* context) {
    TYPE* it = int_type();
    if (returns_1_or_0(t))
        return coerce_to_type(it, t);
    NODE* zero = mk_ICON(INT65(0), t->type && t->type->is_pointer() ? it : t->type);
    if (t->type && t->type->is_pointer())
        zero = coerce_to_type(t->type, zero);
    return simp_node(maketree(NEQ, t, zero, it, t->scope), loop, context);
}
