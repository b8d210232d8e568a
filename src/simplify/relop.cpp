// Rewrites of the ten relational operators: constants to the right, tests
// decided by what is known of the operands, and compared operands stripped of
// scaling, offsets and conversions that do not change the outcome.
//
// A relation reads each operand at its own width, as a signed number for
// LE..GT and as an unsigned one for ULE..UGT; EQ and NEQ read both with the
// left operand's sign. Every rewrite below keeps that reading: the values
// are compared in exact 65-bit arithmetic, and an operand whose type reads
// differently from the operator is left alone unless its range says both
// readings agree. Orderings of floats are never inverted or folded, since a
// NaN is unordered.
#include <cstdint>

#include "ir/ir.h"
#include "ir/node.h"
#include "ir/types.h"
#include "simplify/simp_internal.h"
#include "support/intmath.h"

namespace {

bool is_equality(int op) { return op == EQ || op == NEQ; }
bool is_signed_order(int op) { return op >= LE && op <= GT; }
bool is_unsigned_order(int op) { return op >= ULE && op <= UGT; }

// The same ordering in the signed or the unsigned family.
int ordering_as(int op, bool as_signed) {
    if (is_signed_order(op) && !as_signed)
        return op - LE + ULE;
    if (is_unsigned_order(op) && as_signed)
        return op - ULE + LE;
    return op;
}

bool is_int(const TYPE* t) { return is_integer_type(t); }

// An integer constant: a 64-bit value read from file may still be an LCON.
bool is_constant(const NODE* k) { return k && (k->op == ICON || k->op == LCON); }

unsigned width(const TYPE* t) {
    const uint64_t size = t->size();
    return size == 0 || size > 64 ? 64 : static_cast<unsigned>(size);
}

uint64_t low_mask(unsigned n) { return n >= 64 ? ~uint64_t(0) : (uint64_t(1) << n) - 1; }

// Two integer types that hold a value in the same bits with the same sign.
bool same_int_type(const TYPE* a, const TYPE* b) {
    return is_int(a) && is_int(b) && width(a) == width(b) && a->is_signed() == b->is_signed() &&
           a->is_bool() == b->is_bool();
}

// Whether t reads its operands as signed numbers.
bool reads_signed(const NODE* t) {
    if (is_equality(t->op))
        return is_int(t->left->type) && t->left->type->is_signed();
    return is_signed_order(t->op);
}

// The bits of v at the width of t, read as signed or unsigned.
INT65 read_as(INT65 v, const TYPE* t, bool as_signed) {
    const unsigned n = width(t);
    uint64_t bits = v.bits() & low_mask(n);
    if (!as_signed || !((bits >> (n - 1)) & 1))
        return INT65::from_unsigned(bits);
    if (n < 64)
        bits |= ~low_mask(n);
    return INT65(static_cast<long long>(bits));
}

// The constant right operand as the relation reads it.
INT65 read_right(const NODE* t) { return read_as(t->right->value, t->right->type, reads_signed(t)); }

struct SPAN {
    INT65 lo, hi;
};

SPAN reading_range(const TYPE* t, bool as_signed) {
    const unsigned n = width(t);
    if (!as_signed)
        return {INT65(0), INT65::from_unsigned(low_mask(n))};
    const INT65 max = INT65::from_unsigned(low_mask(n - 1));
    return {~max, max};
}

SPAN type_span(const TYPE* t) {
    if (t->is_bool())
        return {INT65(0), INT65(1)};
    return {int_type_min(t), int_type_max(t)};
}

bool within(INT65 v, SPAN s) { return v >= s.lo && v <= s.hi; }

SPAN value_span(NODE* x, LOOP* loop, CONTEXT* context) {
    return {calculate_minval_for_tree(x, loop, context), calculate_maxval_for_tree(x, loop, context)};
}

// The values of the integer x as a relation reading as_signed sees them: its
// own values where its type reads the same way or its range lies where both
// readings agree, else all the reading allows.
SPAN read_span(NODE* x, bool as_signed, LOOP* loop, CONTEXT* context) {
    const SPAN s = value_span(x, loop, context);
    const SPAN both = {INT65(0), reading_range(x->type, true).hi};
    if (x->type->is_signed() == as_signed || (within(s.lo, both) && within(s.hi, both)))
        return s;
    return reading_range(x->type, as_signed);
}

// 1 or 0 when `x op k` holds for all or for none of the values in s, else -1.
int decide(int op, SPAN s, INT65 k) {
    switch (op) {
    case EQ:
    case NEQ: {
        const int eq = k < s.lo || k > s.hi ? 0 : s.lo == k && s.hi == k ? 1 : -1;
        return eq < 0 || op == EQ ? eq : 1 - eq;
    }
    case LT:
    case ULT:
        return s.hi < k ? 1 : s.lo >= k ? 0 : -1;
    case LE:
    case ULE:
        return s.hi <= k ? 1 : s.lo > k ? 0 : -1;
    case GT:
    case UGT:
        return s.lo > k ? 1 : s.hi <= k ? 0 : -1;
    default:
        return s.lo >= k ? 1 : s.hi < k ? 0 : -1;
    }
}

NODE* take(NODE*& slot) {
    NODE* k = slot;
    slot = nullptr;
    return k;
}

NODE* take_left(NODE* t) { return take(t->left); }

// t goes; value takes its place in t's type.
NODE* replace_by_value(NODE* t, NODE* value) {
    TYPE* type = t->type;
    erase_tree(t);
    return coerce_to_type(type, value);
}

NODE* fold_to(NODE* t, int value) { return replace_keeping_effects(t, INT65(value), t->type); }

// The operand goes into t's place as a truth value of t's type.
NODE* become_operand(NODE* t, NODE* operand, LOOP* loop, CONTEXT* context) {
    TYPE* type = t->type;
    replace_by_operand(t, operand);
    return simp_node(coerce_to_type(type, operand), loop, context);
}

// The right constant of t becomes k in the type of the new left operand x;
// the node that held x (the old left) is freed but x is kept.
NODE* compare_with(NODE* t, NODE* x, int op, INT65 k, LOOP* loop, CONTEXT* context) {
    NODE* old = t->left;
    if (old != x) {
        if (old->left == x)
            old->left = nullptr;
        else
            old->right = nullptr;
        erase_tree(old);
    }
    erase_tree(t->right);
    t->left = x;
    t->right = mk_ICON(k, strip_qualifiers(x->type));
    t->right->scope = t->scope;
    t->op = op;
    return simp_node(t, loop, context);
}

// m * c for a positive c, or the extreme of m's sign when that overflows:
// beyond every type's range either way.
INT65 saturating_product(INT65 m, INT65 c, bool& saturated) {
    int overflow = 0;
    const INT65 p = long_multiply(m, c, &overflow);
    saturated = overflow != 0;
    if (!saturated)
        return p;
    return m < INT65(0) ? INT65(-1, 0) : INT65(0, -1);
}

// a + b, when it is a 65-bit value inside s.
bool sum_within(INT65 a, INT65 b, SPAN s) {
    int overflow = 0;
    const INT65 sum = long_add(a, b, &overflow);
    return !overflow && within(sum, s);
}

INT65 floor_div(INT65 a, INT65 b) {
    INT65 q = a / b;
    return !(a % b).is_zero() && a < INT65(0) ? q - INT65(1) : q;
}

INT65 ceil_div(INT65 a, INT65 b) { return -floor_div(-a, b); }

// The unsigned type in which a range test of a value of t is computed: a
// value narrower than int is compared in unsigned int.
TYPE* unsigned_for(const TYPE* t) {
    return tp->mk_int(width(t) > 32 ? TYPE::ik_ullong : TYPE::ik_uint);
}

// A new relation `x op k`, k a value of x's type, simplified.
NODE* mk_relation(int op, NODE* x, INT65 k, TYPE* type, LS* scope, LOOP* loop, CONTEXT* context) {
    NODE* c = mk_ICON(k, strip_qualifiers(x->type));
    c->scope = scope;
    return simp_node(maketree(op, x, c, type, scope), loop, context);
}

// a <= x <= b (or, not inside, its complement) as one test of x, with a and
// b clamped to x's type.
NODE* interval_test(NODE* x, INT65 a, INT65 b, bool inside, TYPE* type, LS* scope, LOOP* loop,
                    CONTEXT* context) {
    const SPAN all = type_span(x->type);
    const bool is_signed = x->type->is_signed();
    if (a < all.lo)
        a = all.lo;
    if (b > all.hi)
        b = all.hi;
    if (a > b || (a == all.lo && b == all.hi)) {
        NODE* c = mk_ICON(INT65((a > b) != inside ? 1 : 0), type);
        c->scope = scope;
        NODE* effects = peel_for_effect(x);
        return effects ? maketree(COMMAOP, effects, c, type, scope) : c;
    }
    if (a == b)
        return mk_relation(inside ? EQ : NEQ, x, a, type, scope, loop, context);
    if (a == all.lo)
        return mk_relation(ordering_as(inside ? LE : GT, is_signed), x, b, type, scope, loop, context);
    if (b == all.hi)
        return mk_relation(ordering_as(inside ? GE : LT, is_signed), x, a, type, scope, loop, context);
    // a <= x <= b is (x - a) <= (b - a) in unsigned arithmetic, which wraps
    // the values below a past those above b.
    TYPE* u = unsigned_for(x->type);
    NODE* ux = coerce_to_type(u, x);
    NODE* offset = mk_ICON(-a, u);
    offset->scope = scope;
    NODE* diff = simp_node(maketree(PLUS, ux, offset, u, scope), loop, context);
    NODE* bound = mk_ICON(b - a, u);
    bound->scope = scope;
    return simp_node(maketree(inside ? ULE : UGT, diff, bound, type, scope), loop, context);
}

// ---- The rules, in the order they are tried. Each returns null when it does
// not apply and has not changed the node.

bool is_constant_operand(const NODE* k) {
    return is_constant(k) || k->op == FCON ||
           ((k->op == PCONV || k->op == ISP2CHAR) && k->left && is_icon(k->left));
}

// A constant (or a converted constant) on the left goes right.
NODE* swap_constant_left(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_constant_operand(l) || is_constant_operand(t->right) || commute_inv[t->op] == NONE)
        return nullptr;
    t->left = t->right;
    t->right = l;
    t->op = commute_inv[t->op];
    return simp_node(t, loop, context);
}

// x * c, x << c as a multiplication: c and the multiplied operand, or false.
bool scaled_operand(NODE* l, NODE*& x, INT65& c) {
    if (!is_icon(l->right) || !l->left || !same_int_type(l->left->type, l->type))
        return false;
    x = l->left;
    if (l->op == MULT) {
        c = icon_of(l->right);
        return true;
    }
    if (l->op != SLL)
        return false;
    const INT65 count = icon_of(l->right);
    if (count < INT65(0) || count >= INT65(static_cast<int>(width(l->type)) - 1))
        return false;
    c = INT65(1) << static_cast<int>(count.low);
    return true;
}

// (x * c1) op c2 is x op c2 / c1 when the product cannot wrap, rounded the
// way the operator needs; with c2 = 0 a negative c1 turns the operator round.
NODE* compare_scaled(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* x;
    INT65 c;
    if ((l->op != MULT && l->op != SLL) || !scaled_operand(l, x, c) || c.is_zero())
        return nullptr;
    const bool as_signed = reads_signed(t);
    if (l->type->is_signed() != as_signed)
        return nullptr;
    const INT65 k = read_right(t);
    // An odd factor has an inverse modulo 2^n: x * c is 0 only for x = 0.
    const bool odd = (c.low & 1) != 0;
    if (is_equality(t->op) && k.is_zero() && odd)
        return compare_with(t, x, t->op, INT65(0), loop, context);
    const SPAN s = value_span(x, loop, context);
    if (prod_may_overflow(s.lo, c, l->type) || prod_may_overflow(s.hi, c, l->type) ||
        !within(k, type_span(l->type)))
        return nullptr;
    if (c < INT65(0)) {
        if (!k.is_zero())
            return nullptr;
        return compare_with(t, x, commute_inv[t->op], INT65(0), loop, context);
    }
    switch (t->op) {
    case EQ:
    case NEQ:
        if (!(k % c).is_zero())
            return fold_to(t, t->op == NEQ);
        return compare_with(t, x, t->op, k / c, loop, context);
    case LT:
    case ULT:
    case GE:
    case UGE:
        return compare_with(t, x, t->op, ceil_div(k, c), loop, context);
    default:
        return compare_with(t, x, t->op, floor_div(k, c), loop, context);
    }
}

// (x >> s) op k for a non-negative x: x op (k << s), with the shifted-out
// bits set for LE and GT so that the boundary stays where it was.
NODE* compare_shifted(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (l->op != SRL || is_equality(t->op) || !is_icon(l->right) ||
        !same_int_type(l->left->type, l->type))
        return nullptr;
    NODE* x = l->left;
    const INT65 count = icon_of(l->right);
    if (count <= INT65(0) || count >= INT65(static_cast<int>(width(l->type))))
        return nullptr;
    const int s = static_cast<int>(count.low);
    const bool as_signed = reads_signed(t);
    // A non-negative value of a signed type reads the same either way.
    const bool non_negative = !l->type->is_signed() || tree_is_non_negative(x, loop, context);
    if (!non_negative || (!l->type->is_signed() && as_signed))
        return nullptr;
    const INT65 k = read_right(t);
    if (k < INT65(0) || k > (int_type_max(l->type) >> s))
        return nullptr;
    INT65 bound = k << s;
    if (t->op == LE || t->op == ULE || t->op == GT || t->op == UGT)
        bound = bound + (INT65(1) << s) - INT65(1);
    return compare_with(t, x, t->op, bound, loop, context);
}

// (x / c) op k for a positive constant c: a bound on x, or for EQ and NEQ a
// range; the division rounds toward zero.
NODE* compare_quotient(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (l->op != DIV || !is_icon(l->right) || !same_int_type(l->left->type, l->type) ||
        l->type->is_signed() != reads_signed(t))
        return nullptr;
    const INT65 c = icon_of(l->right);
    const INT65 k = read_right(t);
    if (c <= INT65(0) || !within(k, type_span(l->type)))
        return nullptr;
    // x / c <= m exactly when x <= upper(m); x / c >= m when x >= lower(m).
    const auto upper = [c](INT65 m) {
        bool saturated;
        if (m < INT65(0))
            return saturating_product(m, c, saturated);
        const INT65 p = saturating_product(m + INT65(1), c, saturated);
        return saturated ? p : p - INT65(1);
    };
    const auto lower = [c](INT65 m) {
        bool saturated;
        if (m > INT65(0))
            return saturating_product(m, c, saturated);
        const INT65 p = saturating_product(m - INT65(1), c, saturated);
        return saturated ? p : p + INT65(1);
    };
    const SPAN all = type_span(l->type);
    INT65 a = all.lo, b = all.hi;
    bool inside = true;
    switch (t->op) {
    case EQ:
    case NEQ:
        a = lower(k);
        b = upper(k);
        inside = t->op == EQ;
        break;
    case LE:
    case ULE:
        b = upper(k);
        break;
    case LT:
    case ULT:
        b = upper(k - INT65(1));
        break;
    case GE:
    case UGE:
        a = lower(k);
        break;
    default:
        a = lower(k + INT65(1));
        break;
    }
    NODE* x = l->left;
    l->left = nullptr;
    TYPE* type = t->type;
    LS* scope = t->scope;
    erase_tree(t);
    return interval_test(x, a, b, inside, type, scope, loop, context);
}

// (x % 2^k) tested against 0 is a test of the low bits; for an unsigned x
// any constant compares with the low bits alike.
NODE* compare_remainder(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (l->op != MOD || !is_icon(l->right) || !same_int_type(l->left->type, l->type))
        return nullptr;
    const INT65 c = icon_of(l->right);
    if (power_of_2(c) < 0)
        return nullptr;
    const bool zero_test = is_equality(t->op) && read_right(t).is_zero();
    const bool unsigned_test = !l->type->is_signed() && (is_equality(t->op) || !reads_signed(t));
    if (!zero_test && !unsigned_test)
        return nullptr;
    l->op = ANDB;
    l->right->value = c - INT65(1);
    t->left = simp_node(l, loop, context);
    return simp_node(t, loop, context);
}

// (a != b) != 0 is a != b, and (a != b) == 0 is a == b where the inversion is
// exact. The left side is first simplified as a truth value.
NODE* compare_truth_with_zero(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!is_equality(t->op) || !is_int(t->left->type) || !read_right(t).is_zero())
        return nullptr;
    t->left = simp_for_control(t->left, loop, context);
    NODE* l = t->left;
    if (t->op == NEQ && returns_1_or_0(l))
        return become_operand(t, l, loop, context);
    if (t->op == EQ && tree_is_trivially_invertible(l)) {
        l->op = boolean_inv[l->op];
        return become_operand(t, l, loop, context);
    }
    return nullptr;
}

// x op x without effects: its value for integers and addresses. A NaN is not
// equal to itself, so floats stay.
NODE* compare_reflexive(NODE* t, LOOP*, CONTEXT*) {
    NODE* l = t->left;
    if ((!is_int(l->type) && !l->type->is_pointer()) || !trees_are_congruent(l, t->right, 0) ||
        tree_has_side_effects(l))
        return nullptr;
    switch (t->op) {
    case EQ:
    case LE:
    case GE:
    case ULE:
    case UGE:
        return fold_to(t, 1);
    default:
        return fold_to(t, 0);
    }
}

// (x + c1) op c2 is x op (c2 - c1): for EQ and NEQ modulo the type, for an
// ordering only where the range of x shows that the sum does not wrap.
NODE* compare_offset(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (l->op != PLUS || !is_icon(l->right) || !same_int_type(l->left->type, l->type))
        return nullptr;
    NODE* x = l->left;
    const INT65 c1 = icon_of(l->right);
    const INT65 k = read_right(t);
    const SPAN all = type_span(l->type);
    if (!within(k, all))
        return nullptr;
    if (is_equality(t->op))
        return compare_with(t, x, t->op, truncate_to_type(k - c1, l->type), loop, context);
    if (l->type->is_signed() != reads_signed(t))
        return nullptr;
    const SPAN s = value_span(x, loop, context);
    if (!sum_within(s.lo, c1, all) || !sum_within(s.hi, c1, all) || !within(k - c1, all))
        return nullptr;
    return compare_with(t, x, t->op, k - c1, loop, context);
}

// (a - b) op 0 is a op b: for EQ and NEQ always, for a signed ordering where
// the difference cannot wrap.
NODE* compare_difference(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (l->op != MINUS || !same_int_type(l->left->type, l->type) ||
        !same_int_type(l->right->type, l->type) || !read_right(t).is_zero())
        return nullptr;
    if (!is_equality(t->op)) {
        if (!l->type->is_signed() || !reads_signed(t))
            return nullptr;
        const SPAN a = value_span(l->left, loop, context);
        const SPAN b = value_span(l->right, loop, context);
        const SPAN all = type_span(l->type);
        if (!within(a.lo - b.hi, all) || !within(a.hi - b.lo, all))
            return nullptr;
    }
    erase_tree(t->right);
    t->left = l->left;
    t->right = l->right;
    l->left = l->right = nullptr;
    erase_node(l);
    return simp_node(t, loop, context);
}

// The boundary cases of an ordering become equality tests: x <= min is
// x == min, x > min is x != min, and the same at the top.
int boundary_equality(int op, SPAN s, INT65 k, INT65& value) {
    const bool lt = op == LT || op == ULT, le = op == LE || op == ULE;
    const bool gt = op == GT || op == UGT, ge = op == GE || op == UGE;
    if ((le && k == s.lo) || (lt && k == s.lo + INT65(1)) || (gt && k == s.lo) ||
        (ge && k == s.lo + INT65(1))) {
        value = s.lo;
        return le || lt ? EQ : NEQ;
    }
    if ((ge && k == s.hi) || (gt && k == s.hi - INT65(1)) || (lt && k == s.hi) ||
        (le && k == s.hi - INT65(1))) {
        value = s.hi;
        return ge || gt ? EQ : NEQ;
    }
    return 0;
}

// What the range of the left operand decides: the whole test, or a
// boundary that an equality test states more simply (x <= min is x == min).
NODE* compare_by_range(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    const bool as_signed = reads_signed(t);
    const INT65 k = read_right(t);
    const SPAN s = read_span(l, as_signed, loop, context);
    const int known = decide(t->op, s, k);
    if (known >= 0)
        return fold_to(t, known);
    // EQ reads the way the type does: only then is the equality the same test.
    INT65 value;
    if (is_equality(t->op) || l->type->is_signed() != as_signed)
        return nullptr;
    if (const int op = boundary_equality(t->op, s, k, value))
        return compare_with(t, l, op, value, loop, context);
    return nullptr;
}

// A non-negative signed operand reads the same in both families: its natural
// test is the signed one.
NODE* compare_signed_family(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_unsigned_order(t->op) || !l->type->is_signed())
        return nullptr;
    const INT65 k = read_right(t);
    if (!within(k, {INT65(0), int_type_max(l->type)}) || !tree_is_non_negative(l, loop, context))
        return nullptr;
    return compare_with(t, l, ordering_as(t->op, true), k, loop, context);
}

// x <u 2^(n-1) and friends for a signed x are sign tests.
NODE* compare_sign_bit(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_unsigned_order(t->op) || !l->type->is_signed())
        return nullptr;
    const INT65 k = read_right(t);
    const INT65 half = INT65::from_unsigned(uint64_t(1) << (width(l->type) - 1));
    int op = 0;
    if ((t->op == ULT && k == half) || (t->op == ULE && k == half - INT65(1)))
        op = GE;
    else if ((t->op == UGE && k == half) || (t->op == UGT && k == half - INT65(1)))
        op = LT;
    return op ? compare_with(t, l, op, INT65(0), loop, context) : nullptr;
}

// An unsigned operand that never reaches the sign bit reads the same in
// both families: its natural test is unsigned.
NODE* compare_unsigned_family(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_signed_order(t->op) || l->type->is_signed())
        return nullptr;
    const INT65 k = read_right(t);
    const SPAN s = value_span(l, loop, context);
    const INT65 top = reading_range(l->type, true).hi;
    if (k < INT65(0) || s.hi > top || s.lo < INT65(0))
        return nullptr;
    return compare_with(t, l, ordering_as(t->op, false), k, loop, context);
}

// Bits known on both sides: one that is certainly set on one side and
// certainly clear on the other decides EQ and NEQ.
NODE* compare_known_bits(NODE* t, LOOP*, CONTEXT*) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (!is_equality(t->op) || !is_int(r->type) || width(l->type) != width(r->type))
        return nullptr;
    const uint64_t mask = type_mask(l->type).bits();
    const uint64_t ones_l = find_known_ones(l, l->type).bits();
    const uint64_t ones_r = find_known_ones(r, l->type).bits();
    const uint64_t may_l = find_known_zeros(l, l->type).bits();
    const uint64_t may_r = find_known_zeros(r, l->type).bits();
    if (((ones_l & ~may_r) | (ones_r & ~may_l)) & mask)
        return fold_to(t, t->op == NEQ);
    return nullptr;
}

// (x & bit) == bit is (x & bit) != 0; (x | c) == 0 is false for c non-zero.
NODE* compare_masked(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_equality(t->op) || !is_icon(l->right) || !is_int(l->type))
        return nullptr;
    const INT65 c = icon_of(l->right);
    const INT65 k = read_right(t);
    if (l->op == ORB && k.is_zero() && !truncate_to_type(c, l->type).is_zero())
        return fold_to(t, t->op == NEQ);
    if (l->op != ANDB || power_of_2(c) < 0 || k != c)
        return nullptr;
    return compare_with(t, l, t->op == EQ ? NEQ : EQ, INT65(0), loop, context);
}

// A conversion that keeps every value, as the type it converts to reads it.
bool conversion_keeps_value(TYPE* from, TYPE* to) {
    if (!is_int(from) || !is_int(to) || to->is_bool())
        return false;
    if (from->is_bool())
        return true;
    if (width(to) > width(from))
        return !from->is_signed() || to->is_signed();
    return width(to) == width(from) && from->is_signed() == to->is_signed();
}

// The inner operand of a conversion that can go from a compared operand.
NODE* removable_conversion(NODE* k, bool as_signed) {
    if (k->op != SCONV || !k->left || tree_is_bit_field(k->left) ||
        k->type->is_signed() != as_signed || !conversion_keeps_value(k->left->type, k->type))
        return nullptr;
    return k->left;
}

// Conversions that keep the value come off the compared operands: against a
// constant that fits the inner type, or on both sides from one type. The
// ordering then reads the inner type's way.
NODE* compare_unconverted(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    const bool as_signed = reads_signed(t);
    NODE* y = removable_conversion(l, as_signed);
    if (!y)
        return nullptr;
    const int op = is_equality(t->op) ? t->op : ordering_as(t->op, y->type->is_signed());
    if (is_constant(r)) {
        const INT65 k = read_right(t);
        if (!within(k, type_span(y->type)))
            return nullptr;
        return compare_with(t, y, op, k, loop, context);
    }
    NODE* z = r->op == SCONV && r->type->is_signed() == as_signed ? removable_conversion(r, as_signed)
                                                                  : nullptr;
    if (!z || !same_int_type(y->type, z->type))
        return nullptr;
    l->left = r->left = nullptr;
    erase_node(l);
    erase_node(r);
    t->left = y;
    t->right = z;
    t->op = op;
    return simp_node(t, loop, context);
}

// (c ? a : b) op k with constant arms: the test is c, !c or a constant.
NODE* compare_choice(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* q = t->left;
    if (q->op != QUEST || !q->right || q->right->op != COLON || !is_icon(q->right->left) ||
        !is_icon(q->right->right) || !is_int(q->type) || q->left->op == DDNODE)
        return nullptr;
    NODE* a = simp_subst_icon(convert_integer_constant(icon_of(q->right->left), q->type), q->type, t, q);
    NODE* b = simp_subst_icon(convert_integer_constant(icon_of(q->right->right), q->type), q->type, t, q);
    const bool decided = is_icon(a) && is_icon(b);
    const INT65 va = decided ? icon_of(a) : INT65(0), vb = decided ? icon_of(b) : INT65(0);
    erase_tree(a);
    erase_tree(b);
    if (!decided)
        return nullptr;
    if (va == vb)
        return fold_to(t, !va.is_zero());
    NODE* c = q->left;
    q->left = nullptr;
    TYPE* type = t->type;
    erase_tree(t);
    NODE* truth = va.is_zero() ? simp_node(invert_boolean_tree(c), loop, context)
                               : make_boolean(c, loop, context);
    return simp_node(coerce_to_type(type, truth), loop, context);
}

// A value that is 0 or 1 against a constant: x == 1 is x, x != 1 is !x, and
// any other constant decides the test.
NODE* compare_boolean(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_equality(t->op) || !returns_1_or_0(l) || l->op == DDNODE)
        return nullptr;
    const INT65 k = read_right(t);
    if (k != INT65(0) && k != INT65(1))
        return fold_to(t, t->op == NEQ);
    if (k != INT65(1))
        return nullptr;
    if (t->op == EQ)
        return become_operand(t, l, loop, context);
    erase_tree(t->right);
    t->right = nullptr;
    t->op = EXCLAIM;
    return simp_node(t, loop, context);
}

// Last, as the slowest: what the value queries know of a test against zero.
// An address of a named object is never null unless the symbol is weak.
NODE* compare_with_zero(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_equality(t->op) || !icon_of(t->right).is_zero())
        return nullptr;
    if (is_int(l->type) && tree_is_zero(l, loop, context))
        return fold_to(t, t->op == EQ);
    if (tree_is_non_zero(l, loop, context))
        return fold_to(t, t->op == NEQ);
    return nullptr;
}

using RULE = NODE* (*)(NODE*, LOOP*, CONTEXT*);

// Rules for an integer left side and a constant right side, in order.
constexpr RULE constant_rules[] = {
    compare_scaled,      compare_truth_with_zero, compare_shifted,     compare_quotient,
    compare_remainder,   compare_offset,          compare_difference,  compare_by_range,
    compare_sign_bit,    compare_signed_family,   compare_unsigned_family,
    compare_known_bits,  compare_masked,          compare_unconverted, compare_choice,
    compare_boolean,
};

} // namespace

NODE* simp_subst_icon(INT65 value, TYPE* type, NODE* tree, NODE* place) {
    if (tree == place) {
        NODE* c = mk_ICON(value, type);
        c->scope = tree->scope;
        return c;
    }
    NODE* n = copy_node(tree, true);
    n->left = tree->left ? simp_subst_icon(value, type, tree->left, place) : nullptr;
    n->right = tree->right ? simp_subst_icon(value, type, tree->right, place) : nullptr;
    return fold_constants(n);
}

namespace {

// ---- Two tests of one value joined into one ---------------------------------

bool is_relation(const NODE* k) {
    return k && k->op >= EQ && k->op <= UGT && k->left && k->right && k->left->type &&
           k->right->type;
}

// The outcomes of an ordering as a set: 1 below, 2 equal, 4 above.
int outcomes(int op) {
    switch (op) {
    case EQ:
        return 2;
    case NEQ:
        return 5;
    case LT:
    case ULT:
        return 1;
    case LE:
    case ULE:
        return 3;
    case GT:
    case UGT:
        return 4;
    default:
        return 6;
    }
}

// 0 for EQ and NEQ, which read alike in both families; 1 signed; 2 unsigned.
int family(int op) { return is_equality(op) ? 0 : is_signed_order(op) ? 1 : 2; }

int operator_of(int set, int fam) {
    switch (set) {
    case 2:
        return EQ;
    case 5:
        return NEQ;
    case 1:
        return ordering_as(LT, fam == 1);
    case 3:
        return ordering_as(LE, fam == 1);
    case 4:
        return ordering_as(GT, fam == 1);
    default:
        return ordering_as(GE, fam == 1);
    }
}

// a op1 b joined with a op2 b: one operator, or a constant. Floats stay: a
// NaN is outside all three outcomes.
NODE* join_same_operands(NODE* t, bool both, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (!is_int(l->left->type) && !l->left->type->is_pointer())
        return nullptr;
    if (!is_int(l->right->type) && !l->right->type->is_pointer())
        return nullptr;
    // Equality and order agree on the operands' reading only at one width.
    if (width(l->left->type) != width(l->right->type) || tree_has_side_effects(l))
        return nullptr;
    int op2 = r->op;
    if (!trees_are_congruent(l->left, r->left, 0) || !trees_are_congruent(l->right, r->right, 0)) {
        if (!trees_are_congruent(l->left, r->right, 0) || !trees_are_congruent(l->right, r->left, 0))
            return nullptr;
        op2 = commute_inv[op2];
    }
    const int f1 = family(l->op), f2 = family(op2);
    if (f1 && f2 && f1 != f2)
        return nullptr;
    const int set = both ? outcomes(l->op) & outcomes(op2) : outcomes(l->op) | outcomes(op2);
    if (set == 0 || set == 7)
        return replace_keeping_effects(t, INT65(set ? 1 : 0), t->type);
    NODE* test = take_left(t);
    test->op = operator_of(set, f1 ? f1 : f2);
    return simp_node(replace_by_value(t, test), loop, context);
}

// The values of x for which `x op k` holds: an interval, or the complement
// of one.
struct SET {
    INT65 a, b;
    bool inside;
};

SET set_of(int op, INT65 k, SPAN all) {
    switch (op) {
    case EQ:
        return {k, k, true};
    case NEQ:
        return {k, k, false};
    case LT:
    case ULT:
        return {all.lo, k - INT65(1), true};
    case LE:
    case ULE:
        return {all.lo, k, true};
    case GT:
    case UGT:
        return {k + INT65(1), all.hi, true};
    default:
        return {k, all.hi, true};
    }
}

// A hole at either end of the type leaves one interval.
SET complement(SET s, SPAN all) {
    if (s.inside && s.a == all.lo && s.b < all.hi)
        return {s.b + INT65(1), all.hi, true};
    if (s.inside && s.b == all.hi && s.a > all.lo)
        return {all.lo, s.a - INT65(1), true};
    return {s.a, s.b, !s.inside};
}

INT65 min65(INT65 a, INT65 b) { return a < b ? a : b; }
INT65 max65(INT65 a, INT65 b) { return a < b ? b : a; }

// The intersection, when it is again one interval or the complement of one.
bool intersect(SET p, SET q, SET& out) {
    if (p.inside && q.inside) {
        out = {max65(p.a, q.a), min65(p.b, q.b), true};
        return true;
    }
    if (!p.inside && !q.inside) {
        // Two holes that touch make one.
        if (p.a > q.b + INT65(1) || q.a > p.b + INT65(1))
            return false;
        out = {min65(p.a, q.a), max65(p.b, q.b), false};
        return true;
    }
    const SET in = p.inside ? p : q;
    const SET hole = p.inside ? q : p;
    if (hole.b < in.a || hole.a > in.b)
        out = in;
    else if (hole.a <= in.a && hole.b >= in.b)
        out = {INT65(1), INT65(0), true};
    else if (hole.a <= in.a)
        out = {hole.b + INT65(1), in.b, true};
    else if (hole.b >= in.b)
        out = {in.a, hole.a - INT65(1), true};
    else
        return false;
    return true;
}

// x op1 k1 joined with x op2 k2 over the integer x: one range test.
NODE* join_ranges(NODE* t, bool both, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    NODE* x = l->left;
    if (!is_constant(l->right) || !is_constant(r->right) || !is_int(x->type) ||
        !is_int(r->left->type) || tree_has_side_effects(x) || !trees_are_congruent(x, r->left, 0))
        return nullptr;
    const bool as_signed = x->type->is_signed();
    if (reads_signed(l) != as_signed || reads_signed(r) != as_signed)
        return nullptr;
    const SPAN all = type_span(x->type);
    const INT65 k1 = read_right(l), k2 = read_right(r);
    if (!within(k1, all) || !within(k2, all))
        return nullptr;
    SET p = set_of(l->op, k1, all), q = set_of(r->op, k2, all), joined;
    if (!both) {
        p = complement(p, all);
        q = complement(q, all);
    }
    if (!intersect(p, q, joined))
        return nullptr;
    if (!both)
        joined = complement(joined, all);
    NODE* value = take(l->left);
    TYPE* type = t->type;
    LS* scope = t->scope;
    erase_tree(t);
    return interval_test(value, joined.a, joined.b, joined.inside, type, scope, loop, context);
}

} // namespace

NODE* simp_redundant_test(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!is_relation(t->left) || !is_relation(t->right))
        return t;
    const bool both = t->op == ANDAND || t->op == ANDB;
    if (!both && t->op != OROR && t->op != ORB)
        return t;
    if (NODE* done = join_same_operands(t, both, loop, context))
        return done;
    if (NODE* done = join_ranges(t, both, loop, context))
        return done;
    return t;
}

NODE* simp_relop(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (!l || !r || !l->type || !r->type || l->op == DDNODE || r->op == DDNODE)
        return t;
    if (NODE* done = swap_constant_left(t, loop, context))
        return done;
    if (NODE* done = compare_reflexive(t, loop, context))
        return done;
    if (is_constant(r) && is_int(l->type)) {
        for (RULE rule : constant_rules)
            if (NODE* done = rule(t, loop, context))
                return done;
    } else if (is_int(l->type) && is_int(r->type)) {
        if (NODE* done = compare_known_bits(t, loop, context))
            return done;
        if (NODE* done = compare_unconverted(t, loop, context))
            return done;
    }
    if (is_constant(t->right))
        if (NODE* done = compare_with_zero(t, loop, context))
            return done;
    return t;
}
