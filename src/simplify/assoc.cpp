// Reassociation of commutative chains: constants right, chains left-deep.
//
// PLUS, ANDB, ORB and XORB come here first. A rewrite only regroups or
// reorders the operands of nodes of one operator and one size, so the result
// keeps the bits of the arithmetic modulo 2^size whatever the signs involved.
// Floating chains are never touched, and in pointer arithmetic the pointer
// stays the leftmost operand.
#include <algorithm>
#include <utility>

#include "ir/node.h"
#include "ir/types.h"
#include "simplify/simp_internal.h"
#include "support/intmath.h"

namespace {

bool is_pointer(const NODE* t) { return t->type && t->type->is_pointer(); }
bool is_leaf(const NODE* t) { return !t->left && !t->right; }
bool is_leaf_or_address(const NODE* t) {
    return is_leaf(t) || (t->op == UAND && t->left && t->left->op == NAME);
}

// Constants go last in a chain, leaves before them.
int chain_rank(const NODE* t) { return is_icon(t) ? 2 : is_leaf_or_address(t) ? 1 : 0; }

// Ordering the leaves of a chain is an insertion sort down its left spine,
// so it is done on short chains only; a constant, which folds with the one
// before it, always goes out.
constexpr int longest_sorted_chain = 8;

bool is_short_chain(const NODE* x, int op) {
    int links = 0;
    for (; x && x->op == op; x = x->left)
        if (++links > longest_sorted_chain)
            return false;
    return true;
}

// Integer arithmetic on integers, or pointer plus integer offset.
bool is_well_formed(const NODE* t) {
    if (!is_int_operand(t->left) || !is_int_operand(t->right))
        return false;
    if (is_pointer(t))
        return t->op == PLUS && is_pointer(t->left) && !is_pointer(t->right);
    return !is_pointer(t->left) && !is_pointer(t->right);
}

// Swapping keeps an integer node's value; a pointer node's pointer may only
// move from the right to the left.
bool operands_may_swap(const NODE* t) {
    if (is_pointer(t))
        return is_pointer(t->right) && !is_pointer(t->left);
    return !is_pointer(t->left) && !is_pointer(t->right);
}

// x, an operand of outer, continues outer's chain: the same operator over
// integers of outer's size; in pointer arithmetic a left link is itself
// pointer plus offset and a right link an integer sum.
bool is_link(const NODE* x, const NODE* outer, bool on_left) {
    if (x->op != outer->op || !x->left || !x->right ||
        !same_wrapping_width(x->type, outer->type) || !is_well_formed(x))
        return false;
    return on_left ? is_pointer(x) == is_pointer(outer) : !is_pointer(x);
}

INT65 constant_in(const NODE* c, TYPE* type) {
    return convert_integer_constant(icon_of(c), type);
}

INT65 combine(int op, INT65 a, INT65 b, TYPE* type) {
    switch (op) {
    case PLUS:
        return truncate_to_type(a + b, type);
    case ANDB:
        return truncate_to_type(INT65::from_unsigned(a.bits() & b.bits()), type);
    case ORB:
        return truncate_to_type(INT65::from_unsigned(a.bits() | b.bits()), type);
    default:
        return truncate_to_type(INT65::from_unsigned(a.bits() ^ b.bits()), type);
    }
}

// The count of x >> c by a constant below the size, or -1.
int right_shift_count(const NODE* x) {
    if (x->op != SRL || !is_icon(x->right) || !wraps_modulo_size(x->type) || is_pointer(x) ||
        !is_int_operand(x->left))
        return -1;
    const INT65 c = icon_of(x->right);
    return c.is_negative() || c >= INT65(static_cast<int>(x->type->size())) ? -1
                                                                            : static_cast<int>(c.low);
}

bool same_width_and_sign(const TYPE* a, const TYPE* b) {
    return same_wrapping_width(a, b) && a->is_signed() == b->is_signed();
}

// (a >> c1) op (b >> c2) with c1 >= c2 is ((a >> (c1 - c2)) op b) >> c2 for
// the bitwise operators, which act on each bit alone: the shifts, logical or
// arithmetic alike, move whole bits. Not for PLUS, whose carries come from
// the low bits that a shift drops: (2 >> 2) + (1 >> 1) is 0, but
// ((2 >> 1) + 1) >> 1 is 1.
NODE* factor_right_shifts(NODE* t, LOOP* loop, CONTEXT* context) {
    if (t->op == PLUS)
        return nullptr;
    NODE* l = t->left;
    NODE* r = t->right;
    int c1 = right_shift_count(l);
    int c2 = right_shift_count(r);
    if (c1 < 0 || c2 < 0 || !same_width_and_sign(l->type, t->type) ||
        !same_width_and_sign(r->type, t->type))
        return nullptr;
    if (c1 < c2) {
        std::swap(t->left, t->right);
        std::swap(l, r);
        std::swap(c1, c2);
    }
    TYPE* type = t->type;
    l->right->value = INT65(c1 - c2);
    t->left = simp_node(l, loop, context);
    t->right = r->left;
    r->left = simp_node(t, loop, context);
    r->type = type;
    return simp_node(r, loop, context);
}

// (a & m) op (b & m) is (a op b) & m for ORB and XORB.
NODE* factor_common_mask(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if ((t->op != ORB && t->op != XORB) || l->op != ANDB || r->op != ANDB || !l->right ||
        !r->right || !same_wrapping_width(l->type, t->type) ||
        !same_wrapping_width(r->type, t->type) || !is_well_formed(l) || !is_well_formed(r) ||
        !is_same_value(l->right, r->right))
        return nullptr;
    TYPE* type = t->type;
    t->left = l->left;
    t->right = r->left;
    r->left = nullptr;
    erase_tree(r);
    l->left = simp_node(t, loop, context);
    l->type = type;
    return simp_node(l, loop, context);
}

// s, a shift or product of x by a power of two, scaled down to 2^d; x itself
// for d = 0.
NODE* scale_down(NODE* s, NODE* x, int d, LOOP* loop, CONTEXT* context) {
    if (d == 0) {
        s->left = nullptr;
        erase_tree(s);
        return x;
    }
    if (s->op == SLL) {
        s->right->value = INT65(d);
    } else {
        s->right->type = s->type;
        s->right->value = truncate_to_type(INT65(1) << d, s->type);
    }
    return simp_node(s, loop, context);
}

} // namespace

int left_shift_count(NODE* t, NODE** x) {
    if ((t->op != SLL && t->op != MULT) || !is_icon(t->right) || !wraps_modulo_size(t->type) ||
        is_pointer(t) || !is_int_operand(t->left) || is_pointer(t->left))
        return -1;
    const int size = static_cast<int>(t->type->size());
    int k;
    if (t->op == SLL) {
        const INT65 c = icon_of(t->right);
        k = c.is_negative() || c >= INT65(size) ? -1 : static_cast<int>(c.low);
    } else {
        k = power_of_2(constant_in(t->right, t->type));
    }
    if (k < 0 || k >= size)
        return -1;
    *x = t->left;
    return k;
}

NODE* factor_powers_of_two(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (!l || !r || is_pointer(t) || !same_wrapping_width(l->type, t->type) ||
        !same_wrapping_width(r->type, t->type))
        return nullptr;
    NODE* a;
    NODE* b;
    const int k1 = left_shift_count(l, &a);
    const int k2 = left_shift_count(r, &b);
    // A constant operand would have folded; with k 0 nothing comes out.
    if (k1 <= 0 || k2 <= 0 || is_icon(a) || is_icon(b))
        return nullptr;
    const int k = std::min(k1, k2);
    const bool as_shift = l->op == SLL && r->op == SLL;
    TYPE* type = t->type;
    LS* scope = t->scope;
    t->left = scale_down(l, a, k1 - k, loop, context);
    t->right = scale_down(r, b, k2 - k, loop, context);
    NODE* inner = simp_node(t, loop, context);
    NODE* scale = as_shift ? mk_ICON(INT65(k), tp->mk_int(TYPE::ik_int))
                           : mk_ICON(truncate_to_type(INT65(1) << k, type), type);
    return simp_node(maketree(as_shift ? SLL : MULT, inner, scale, type, scope), loop, context);
}

NODE* simp_assoc(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->left || !t->right || !wraps_modulo_size(t->type))
        return t;
    const int op = t->op;
    // The deeper side goes left.
    if (!is_leaf(t->right) && is_leaf_or_address(t->left) && operands_may_swap(t))
        std::swap(t->left, t->right);
    for (;;) {
        // Constants go right, and so does an offset added to a pointer.
        if (((is_icon(t->left) && !is_icon(t->right)) || is_pointer(t->right)) &&
            operands_may_swap(t))
            std::swap(t->left, t->right);
        if (!is_well_formed(t))
            return t;
        NODE* l = t->left;
        NODE* r = t->right;

        // A conversion between types of the node's size from the node's own
        // type gives the operand's bits: it goes.
        if (!is_pointer(t)) {
            NODE** side = nullptr;
            for (NODE** s : {&t->left, &t->right})
                if (!side && (*s)->op == SCONV && (*s)->left && (*s)->left->type &&
                    same_wrapping_width((*s)->type, t->type) &&
                    compatible_types((*s)->left->type, t->type, false) &&
                    !tree_is_bit_field((*s)->left))
                    side = s;
            if (side) {
                NODE* conversion = *side;
                *side = conversion->left;
                conversion->left = nullptr;
                erase_node(conversion);
                continue;
            }
        }

        // (a op b) op c: constants and leaves move out to the end.
        if (!is_icon(r) && is_link(l, t, true) && chain_rank(l->right) > chain_rank(r) &&
            (is_icon(l->right) || is_short_chain(l, op))) {
            std::swap(l->right, t->right);
            t->left = simp_node(l, loop, context);
            continue;
        }

        if (is_icon(r)) {
            TYPE* ctype = is_pointer(t) ? tp->mk_int(TYPE::ik_int) : t->type;
            const INT65 c = constant_in(r, ctype);
            if (c.is_zero())
                return op == ANDB ? replace_keeping_effects(t, INT65(0), t->type)
                                  : become_conversion(t, loop, context);
            if (c == INT65(1) && op == ANDB && returns_1_or_0(l))
                return become_conversion(t, loop, context);
            if (c == INT65(1) && op == ORB && returns_1_or_0(l))
                return replace_keeping_effects(t, INT65(1), t->type);

            // (x op c1) op c2: the constants fold together.
            if (is_icon(l->right) && is_link(l, t, true)) {
                r->value = combine(op, constant_in(l->right, ctype), c, ctype);
                r->type = ctype;
                t->left = l->left;
                l->left = nullptr;
                erase_tree(l);
                continue;
            }
        }

        // x op (a op b): the chain goes left-deep.
        if (is_link(r, t, false)) {
            NODE* a = r->left;
            NODE* b = r->right;
            r->left = l;
            r->right = a;
            r->type = t->type;
            t->left = simp_node(r, loop, context);
            t->right = b;
            continue;
        }
        if (is_pointer(t))
            return t;

        if (NODE* shifted = factor_right_shifts(t, loop, context))
            return shifted;
        if (NODE* scaled = factor_powers_of_two(t, loop, context))
            return scaled;
        if (NODE* masked = factor_common_mask(t, loop, context))
            return masked;
        return t;
    }
}
