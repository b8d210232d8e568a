// Rewrites of PLUS, MINUS, MULT, the shifts and the unary operators.
//
// Integer arithmetic wraps modulo 2^size here, as the target's registers do,
// so sums and products may be regrouped among nodes of one size whatever
// their signs. No rewrite moves an operation across a change of size, where
// wrapped results differ: (long long)(i + 1) * 3 is not (long long)i * 3 + 3.
// Shifts drop bits, so their rules hold only where the bounds of the operand
// show that nothing is dropped, or keep the dropped bits as a mask. Floating
// arithmetic is left alone but for rewrites that are exact for every value,
// infinities, NaNs and signed zeros included.
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "driver/options.h"
#include "ir/node.h"
#include "ir/types.h"
#include "simplify/simp_internal.h"
#include "support/intmath.h"
#include "support/simfloat.h"

namespace {

bool is_pointer(const NODE* t) { return t && t->type && t->type->is_pointer(); }

// A value of a wrapping integer type (not a pointer).
bool is_wrapping_int(const NODE* t) { return t && wraps_modulo_size(t->type) && !is_pointer(t); }

// x is an integer node of operator op, of the size of `type`, over integer
// operands: its operands may join a node of that size.
bool is_int_node(const NODE* x, int op, const TYPE* type) {
    return x->op == op && x->left && is_wrapping_int(x) && x->type->size() == type->size() &&
           is_int_operand(x->left) && (!x->right || is_int_operand(x->right));
}

bool same_width_and_sign(const TYPE* a, const TYPE* b) {
    return same_wrapping_width(a, b) && a->is_signed() == b->is_signed();
}

INT65 constant_in(const NODE* c, const TYPE* type) {
    return convert_integer_constant(icon_of(c), type);
}

void set_constant(NODE* c, INT65 value, TYPE* type) {
    c->value = truncate_to_type(value, type);
    c->type = type;
}

// x times a constant, as an integer node of the size of `type`.
bool is_constant_product(const NODE* x, const TYPE* type) {
    return is_int_node(x, MULT, type) && is_icon(x->right);
}

// Whether x * 2^k may leave `type`, by the bounds of x's value.
bool scaled_may_overflow(NODE* x, int k, TYPE* type, LOOP* loop, CONTEXT* context) {
    if (!x->type || !TYPE_IS_INT(x->type) || k >= 63)
        return true;
    const INT65 scale = INT65(1) << k;
    int overflow = 0;
    const INT65 lo = long_multiply(calculate_minval_for_tree(x, loop, context), scale, &overflow);
    const INT65 hi = long_multiply(calculate_maxval_for_tree(x, loop, context), scale, &overflow);
    return overflow || lo < int_type_min(type) || hi > int_type_max(type);
}

bool has_lcon(const NODE* t) {
    for (; t; t = t->left)
        if (t->op == LCON || has_lcon(t->right))
            return true;
    return false;
}

// ---- Terms with a common factor ------------------------------------------

// A term read as factor times coefficient; a null coefficient is 1.
struct TERM {
    NODE* factor;
    NODE* coefficient;
};

// The readings of x as a term of `type`: both orders of a product, or x times
// 1. A constant alone has none: a constant times a sum is distributed again.
int readings_of(NODE* x, const TYPE* type, TERM out[2]) {
    if (is_int_node(x, MULT, type) && x->right && !is_pointer(x->left) && !is_pointer(x->right)) {
        out[0] = {x->right, x->left};
        out[1] = {x->left, x->right};
        return 2;
    }
    if (is_icon(x) || !is_int_operand(x) || is_pointer(x))
        return 0;
    out[0] = {x, nullptr};
    return 1;
}

// b may stand for a, which stays: b is dropped.
bool same_factor(const NODE* a, const NODE* b, const TYPE* type) {
    if (is_icon(a) || is_icon(b))
        return is_icon(a) && is_icon(b) && constant_in(a, type) == constant_in(b, type);
    return is_same_value(a, b);
}

// Frees the product node x of a reading, keeping its operands.
void take_apart(NODE* x, const TERM& reading) {
    if (x == reading.factor)
        return;
    x->left = x->right = nullptr;
    erase_node(x);
}

// a op b, for op PLUS or MINUS, of terms of `type` with a common factor f and
// at least one product: f * (ca op cb). Null, the terms untouched, when
// there is none.
NODE* join_terms(int op, NODE* a, NODE* b, TYPE* type, LS* scope, LOOP* loop, CONTEXT* context) {
    TERM ra[2], rb[2];
    const int na = readings_of(a, type, ra);
    const int nb = readings_of(b, type, rb);
    if (na < 2 && nb < 2)
        return nullptr;
    for (int i = 0; i < na; i++)
        for (int j = 0; j < nb; j++) {
            NODE* f = ra[i].factor;
            NODE* ca = ra[i].coefficient;
            NODE* cb = rb[j].coefficient;
            if (!same_factor(f, rb[j].factor, type) || (is_icon(f) && (is_icon(ca) || is_icon(cb))))
                continue;
            take_apart(a, ra[i]);
            take_apart(b, rb[j]);
            erase_tree(rb[j].factor);
            NODE* sum = maketree(op, ca ? ca : mk_ICON(INT65(1), type),
                                 cb ? cb : mk_ICON(INT65(1), type), type, scope);
            sum = simp_node(sum, loop, context);
            NODE* product = is_icon(f) ? maketree(MULT, sum, f, type, scope)
                                       : maketree(MULT, f, sum, type, scope);
            return simp_node(product, loop, context);
        }
    return nullptr;
}

// ---- PLUS ------------------------------------------------------------------

// -(x * c) + r, also on the right: x * -c + r.
NODE* negated_product(NODE* t, LOOP* loop, CONTEXT* context) {
    for (NODE** side : {&t->left, &t->right}) {
        NODE* u = *side;
        if (!is_int_node(u, UMINUS, t->type) || !is_constant_product(u->left, u->type))
            continue;
        NODE* m = u->left;
        set_constant(m->right, -constant_in(m->right, m->type), m->type);
        u->left = simp_node(m, loop, context);
        u->op = SCONV;
        *side = simp_node(u, loop, context);
        return simp_node(t, loop, context);
    }
    return nullptr;
}

// (a * c1) + (b * c2) with c1 below c2: the larger constant first.
NODE* order_products(NODE* t, LOOP* loop, CONTEXT* context) {
    if (is_pointer(t) || !is_constant_product(t->left, t->type) ||
        !is_constant_product(t->right, t->type) ||
        !(constant_in(t->left->right, t->type) < constant_in(t->right->right, t->type)))
        return nullptr;
    std::swap(t->left, t->right);
    return simp_node(t, loop, context);
}

// (a * c) + (b * c), (a * b) + a, (a * c1) + (a * c2): one product of the
// common factor.
NODE* common_factor(NODE* t, LOOP* loop, CONTEXT* context) {
    if (is_pointer(t))
        return nullptr;
    NODE* joined = join_terms(t->op, t->left, t->right, t->type, t->scope, loop, context);
    if (!joined)
        return nullptr;
    t->left = t->right = nullptr;
    erase_node(t);
    return joined;
}

// (a + b * c) + d * c: a + (b + d) * c; the two outer terms of a chain
// joined as above. In pointer arithmetic the terms are the offsets.
NODE* common_factor_in_chain(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (l->op != PLUS || !l->right || !same_wrapping_width(l->type, t->type) ||
        is_pointer(l) != is_pointer(t) || !is_int_operand(l->left) || !is_wrapping_int(l->right) ||
        !is_wrapping_int(r) || !same_wrapping_width(r->type, t->type))
        return nullptr;
    TYPE* type = is_pointer(t) ? strip_qualifiers(r->type) : t->type;
    NODE* joined = join_terms(PLUS, l->right, r, type, t->scope, loop, context);
    if (!joined)
        return nullptr;
    t->left = l->left;
    t->right = joined;
    l->left = l->right = nullptr;
    erase_node(l);
    return simp_node(t, loop, context);
}

// (a - b) + b and b + (a - b) are a; in pointer arithmetic (q - p) + p is q.
NODE* cancelled_difference(NODE* t) {
    for (int i = 0; i < 2; i++) {
        NODE* d = i ? t->right : t->left;
        NODE* b = i ? t->left : t->right;
        if (d->op != MINUS || !d->left || !d->right || !same_wrapping_width(d->type, t->type) ||
            !is_int_operand(d->left) || is_pointer(d->left) != is_pointer(t) ||
            !is_same_value(d->right, b) || tree_has_side_effects(d->right))
            continue;
        TYPE* type = t->type;
        NODE* a = d->left;
        d->left = nullptr;
        erase_tree(t);
        return coerce_to_type(type, a);
    }
    return nullptr;
}

// (-a) + b is b - a, and a + (-b) is a - b.
NODE* negated_term(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (is_int_node(r, UMINUS, t->type) && !is_pointer(r->left)) {
        t->op = MINUS;
        t->right = replace_by_operand(r, r->left);
        return simp_node(t, loop, context);
    }
    if (is_int_node(l, UMINUS, t->type) && !is_pointer(l->left)) {
        t->op = MINUS;
        t->left = r;
        t->right = replace_by_operand(l, l->left);
        return simp_node(t, loop, context);
    }
    return nullptr;
}

// (c - a) + r, also r + (c - a): (r + c) - a, the constant joining the sum.
NODE* difference_from_constant(NODE* t, LOOP* loop, CONTEXT* context) {
    for (int i = 0; i < 2; i++) {
        NODE* d = i ? t->right : t->left;
        NODE* r = i ? t->left : t->right;
        if (!is_int_node(d, MINUS, t->type) || !is_icon(d->left) || is_pointer(d->right) ||
            is_pointer(r) != is_pointer(t))
            continue;
        NODE* a = d->right;
        d->op = PLUS;
        d->right = d->left;
        d->left = r;
        d->type = t->type;
        t->op = MINUS;
        t->left = simp_node(d, loop, context);
        t->right = a;
        return simp_node(t, loop, context);
    }
    return nullptr;
}

// (a * c1) + (b * c2), c1 a multiple of c2 >= 2: ((a * (c1 / c2)) + b) * c2.
NODE* multiple_products(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (is_pointer(t) || !is_constant_product(l, t->type) || !is_constant_product(r, t->type) ||
        is_icon(l->left) || is_icon(r->left))
        return nullptr;
    const INT65 c1 = constant_in(l->right, t->type);
    const INT65 c2 = constant_in(r->right, t->type);
    if (c2 < INT65(2) || c1 <= c2 || !(c1 % c2).is_zero())
        return nullptr;
    TYPE* type = t->type;
    set_constant(l->right, c1 / c2, l->type);
    t->left = simp_node(l, loop, context);
    t->right = r->left;
    r->left = simp_node(t, loop, context);
    r->type = type;
    return simp_node(r, loop, context);
}

// (T)(x + c) + r, all of one size: (T)(x + (c + r)).
NODE* constant_into_conversion(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (is_pointer(t) || l->op != SCONV || !is_icon(r) || !is_wrapping_int(l) ||
        !same_wrapping_width(l->type, t->type))
        return nullptr;
    NODE* s = l->left;
    if (!s || !is_int_node(s, PLUS, t->type) || !is_icon(s->right))
        return nullptr;
    set_constant(s->right, constant_in(s->right, s->type) + constant_in(r, s->type), s->type);
    l->left = simp_node(s, loop, context);
    l->type = t->type;
    t->left = nullptr;
    erase_tree(t);
    return simp_node(l, loop, context);
}

// ---- MULT ------------------------------------------------------------------

bool fcon_is(const NODE* c, int value) {
    simul_fval v;
    f_itof(value, &v);
    return c->fval() && !f_is_nan(c->fval()) && f_eq(c->fval(), &v);
}

bool is_nan_fcon(const NODE* c) { return is_fcon(c) && c->fval() && f_is_nan(c->fval()); }

// x * 1.0 is x, and x * 2.0 is x + x, for every x. Nothing else is: x * 0.0
// is a NaN for an infinite or NaN x and -0.0 for a negative one; x * inf is a
// NaN for a zero x, so it is no constant either.
NODE* simp_float_product(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* c = t->right;
    if (!is_fcon(c) || !is_float_type(c->type))
        return t;
    if (fcon_is(c, 1))
        return become_conversion(t, loop, context);
    if (fcon_is(c, 2) && !tree_has_side_effects(t->left)) {
        erase_tree(c);
        t->right = copy_tree(t->left, true);
        t->op = PLUS;
        return simp_node(t, loop, context);
    }
    return t;
}

// (x * c1) * c2, also through a conversion between types of one size:
// x * (c1 * c2), for a signed product only where c1 * c2 fits.
NODE* combined_constants(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    const bool converted = l->op == SCONV && is_wrapping_int(l) && same_wrapping_width(l->type, t->type);
    NODE* m = converted ? l->left : l;
    if (!m || !is_constant_product(m, t->type))
        return nullptr;
    TYPE* type = m->type;
    const INT65 c1 = constant_in(m->right, type);
    const INT65 c2 = constant_in(t->right, type);
    if (type->is_signed() && prod_may_overflow(c1, c2, type))
        return nullptr;
    set_constant(m->right, c1 * c2, type);
    if (converted)
        l->left = simp_node(m, loop, context);
    l->type = t->type;
    t->left = nullptr;
    erase_tree(t);
    return simp_node(l, loop, context);
}

// (x / c) * c is x where c divides x.
NODE* exact_quotient(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* d = t->left;
    const INT65 c = constant_in(t->right, t->type);
    if (d->op != DIV || !is_icon(d->right) || !d->left || c < INT65(2) ||
        !is_wrapping_int(d) || !same_width_and_sign(d->type, t->type) ||
        !is_wrapping_int(d->left) || !same_width_and_sign(d->left->type, d->type) ||
        constant_in(d->right, d->type) != c)
        return nullptr;
    if (!(max_ICON_factor(d->left, loop, context, 0) % c).is_zero())
        return nullptr;
    t->left = replace_by_operand(d, d->left);
    return become_conversion(t, loop, context);
}

// (T)a * (T)b of one size, a and b of one type: (T)(a * b).
NODE* product_of_conversions(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (l->op != SCONV || r->op != SCONV || !is_wrapping_int(l->left) || !is_wrapping_int(r->left) ||
        !same_wrapping_width(l->type, t->type) || !same_wrapping_width(r->type, t->type) ||
        !same_wrapping_width(l->left->type, t->type) ||
        !compatible_types(l->left->type, r->left->type, true) ||
        compatible_types(l->left->type, t->type, true) || tree_is_bit_field(l->left) ||
        tree_is_bit_field(r->left))
        return nullptr;
    TYPE* type = t->type;
    t->left = l->left;
    t->right = replace_by_operand(r, r->left);
    t->type = strip_qualifiers(t->left->type);
    l->left = simp_node(t, loop, context);
    l->type = type;
    return simp_node(l, loop, context);
}

// (a + c1) * c2: a * c2 + c1 * c2, where the sum has the product's size.
NODE* distributed_constant(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* p = t->left;
    TYPE* type = t->type;
    if (!is_int_node(p, PLUS, type) || !is_icon(p->right) || is_icon(p->left))
        return nullptr;
    const INT65 c1 = constant_in(p->right, type);
    const INT65 c2 = constant_in(t->right, type);
    if (type->is_signed() && prod_may_overflow(c1, c2, type))
        return nullptr;
    NODE* scaled = maketree(MULT, p->left, mk_ICON(c2, type), type, t->scope);
    p->left = simp_node(scaled, loop, context);
    set_constant(p->right, c1 * c2, type);
    p->type = type;
    t->left = nullptr;
    erase_tree(t);
    return simp_node(p, loop, context);
}

// ---- Shifts ------------------------------------------------------------------

NODE* simp_left_shift(NODE* t, int c, LOOP* loop, CONTEXT* context) {
    NODE* x = t->left;
    TYPE* type = t->type;
    const int size = static_cast<int>(type->size());
    // (y << k) << c is y << (k + c), nothing at all from k + c on.
    NODE* y;
    const int k = same_wrapping_width(x->type, type) ? left_shift_count(x, &y) : -1;
    if (k > 0) {
        if (k + c >= size)
            return replace_keeping_effects(t, INT65(0), type);
        t->right->value = INT65(k + c);
        t->left = replace_by_operand(x, y);
        return simp_node(t, loop, context);
    }
    // The product lets reassociation work, where it is the same value.
    const int limit = type->is_signed() ? size - 1 : size;
    if (!mini_mult && c < limit && !scaled_may_overflow(x, c, type, loop, context)) {
        t->op = MULT;
        set_constant(t->right, INT65(1) << c, type);
        return simp_node(t, loop, context);
    }
    return t;
}

NODE* simp_right_shift(NODE* t, int c, LOOP* loop, CONTEXT* context) {
    NODE* x = t->left;
    TYPE* type = t->type;
    const int size = static_cast<int>(type->size());
    // (y >> k) >> c is y >> (k + c); from the size on, 0 or the sign.
    if (x->op == SRL && is_icon(x->right) && same_width_and_sign(x->type, type) &&
        is_int_operand(x->left)) {
        const INT65 k = icon_of(x->right);
        if (!k.is_negative() && k < INT65(size)) {
            int sum = static_cast<int>(k.low) + c;
            if (sum >= size) {
                if (!type->is_signed())
                    return replace_keeping_effects(t, INT65(0), type);
                sum = size - 1;
            }
            t->right->value = INT65(sum);
            t->left = replace_by_operand(x, x->left);
            return simp_node(t, loop, context);
        }
    }
    NODE* y;
    const int k = same_wrapping_width(x->type, type) ? left_shift_count(x, &y) : -1;
    if (k > 0) {
        // (y << c) >> c unsigned keeps the low size - c bits; signed it is a
        // sign extension, which stays.
        if (k == c && !type->is_signed()) {
            t->op = ANDB;
            set_constant(t->right, INT65::from_unsigned(type_mask(type).bits() >> c), type);
            t->left = replace_by_operand(x, y);
            return simp_node(t, loop, context);
        }
        // Where y * 2^k drops no bit, the powers cancel.
        if (same_width_and_sign(x->type, type) &&
            !scaled_may_overflow(y, k, x->type, loop, context)) {
            if (c >= k) {
                t->right->value = INT65(c - k);
                t->left = replace_by_operand(x, y);
                return simp_node(t, loop, context);
            }
            if (x->op == SLL)
                x->right->value = INT65(k - c);
            else
                set_constant(x->right, INT65(1) << (k - c), x->type);
            x->type = type;
            t->left = nullptr;
            erase_tree(t);
            return simp_node(x, loop, context);
        }
    }
    // A value widened without a change of sign: the shift goes inside, in
    // the narrower type, while the count stays below its size.
    if (x->op == SCONV && is_wrapping_int(x->left) && same_width_and_sign(x->type, type)) {
        y = x->left;
        const uint64_t width = y->type->size();
        if (width < type->size() && promoted_type(y->type)->size() == width &&
            static_cast<uint64_t>(c) < width && (!y->type->is_signed() || type->is_signed()) &&
            !tree_is_bit_field(y)) {
            t->left = y;
            t->type = strip_qualifiers(y->type);
            x->left = simp_node(t, loop, context);
            x->type = type;
            return simp_node(x, loop, context);
        }
    }
    return t;
}

// ---- Unary operators ------------------------------------------------------

// -(-y) is y; -(a - b) is b - a for integers (for floats a - b and b - a
// are both +0.0 when a equals b).
NODE* simp_negation(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* x = t->left;
    if (x->op == UMINUS && x->left && compatible_types(x->type, t->type, true)) {
        x->op = SCONV;
        t->left = nullptr;
        erase_node(t);
        return simp_node(x, loop, context);
    }
    if (x->op == MINUS && x->right && is_wrapping_int(x) && is_int_operand(x->left) &&
        is_int_operand(x->right) && is_pointer(x->left) == is_pointer(x->right) &&
        compatible_types(x->type, t->type, true)) {
        std::swap(x->left, x->right);
        t->left = simp_node(x, loop, context);
        return become_conversion(t, loop, context);
    }
    return t;
}

// ABS and SQR. Of floats only |-y| and ||y|| lose the inner operator: the
// absolute value clears every sign, a NaN's too, while a square keeps a NaN
// operand's sign.
NODE* simp_magnitude(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* x = t->left;
    const bool inner_sign_drops =
        (x->op == UMINUS || x->op == ABS) && x->left && compatible_types(x->type, t->type, true);
    if (!is_wrapping_int(t) || !is_int_operand(x)) {
        if (t->op == ABS && is_float_type(t->type) && inner_sign_drops) {
            x->op = SCONV;
            t->left = simp_node(x, loop, context);
            return simp_node(t, loop, context);
        }
        return t;
    }
    TYPE* type = t->type;
    const int size = static_cast<int>(type->size());
    if (t->op == ABS && (!type->is_signed() ||
                         !((find_known_zeros(x, type).bits() >> (size - 1)) & 1)))
        return become_conversion(t, loop, context);
    if (inner_sign_drops) {
        x->op = SCONV;
        t->left = simp_node(x, loop, context);
        return simp_node(t, loop, context);
    }
    // |1 - y| is |y - 1|.
    if (is_int_node(x, MINUS, type) && is_icon(x->left) && !is_pointer(x->right) &&
        constant_in(x->left, x->type) == INT65(1)) {
        std::swap(x->left, x->right);
        t->left = simp_node(x, loop, context);
        return simp_node(t, loop, context);
    }
    if (returns_1_or_0(x))
        return become_conversion(t, loop, context);
    // b - 1 for b of 0 or 1 is -1 or 0: its absolute value and its square are
    // 1 - b.
    if (is_int_node(x, PLUS, type) && is_icon(x->right) && returns_1_or_0(x->left) &&
        sign_extend_by_type_size(constant_in(x->right, x->type), x->type) == INT65(-1)) {
        NODE* one = x->right;
        set_constant(one, INT65(1), x->type);
        x->op = MINUS;
        x->right = x->left;
        x->left = one;
        t->left = simp_node(x, loop, context);
        return become_conversion(t, loop, context);
    }
    return t;
}

} // namespace

bool is_same_value(const NODE* a, const NODE* b) {
    return trees_are_congruent(a, b, 0) && !tree_has_side_effects(b) && !has_lcon(a) &&
           !has_lcon(b);
}

NODE* simp_PLUS(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->left || !t->right || !wraps_modulo_size(t->type))
        return t;
    NODE* s = simp_assoc(t, loop, context);
    if (s != t || s->op != PLUS)
        return s;
    if (!is_int_operand(t->left) || !is_int_operand(t->right))
        return t;
    for (auto rule : {negated_product, order_products, common_factor, common_factor_in_chain})
        if (NODE* result = rule(t, loop, context))
            return result;
    if (NODE* result = cancelled_difference(t))
        return result;
    for (auto rule : {negated_term, difference_from_constant, multiple_products,
                      constant_into_conversion})
        if (NODE* result = rule(t, loop, context))
            return result;
    return t;
}

NODE* simp_MINUS(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (!l || !r || !wraps_modulo_size(t->type) || !is_int_operand(l) || !is_int_operand(r))
        return t;
    TYPE* type = t->type;
    if (!is_pointer(t) && is_same_value(l, r) && !tree_has_side_effects(l))
        return replace_keeping_effects(t, INT65(0), type);
    // x - c is x + -c; a pointer's offset is an int.
    if (is_icon(r) && !is_pointer(r) && is_pointer(l) == is_pointer(t)) {
        TYPE* ctype = is_pointer(t) ? tp->mk_int(TYPE::ik_int) : type;
        set_constant(r, -constant_in(r, ctype), ctype);
        t->op = PLUS;
        return simp_node(t, loop, context);
    }
    // x - (-y) is x + y.
    if (is_int_node(r, UMINUS, type) && !is_pointer(r->left)) {
        t->op = PLUS;
        t->right = replace_by_operand(r, r->left);
        return simp_node(t, loop, context);
    }
    // 0 - y is -y.
    if (is_icon(l) && !is_pointer(t) && !is_pointer(r) && constant_in(l, type).is_zero()) {
        t->op = UMINUS;
        t->left = r;
        t->right = nullptr;
        erase_node(l);
        return simp_node(t, loop, context);
    }
    // (a + b) - b is a, (a + b) - a is b; also pointer plus offset, less the
    // pointer or the offset.
    if (l->op == PLUS && l->right && same_wrapping_width(l->type, type)) {
        for (NODE* keep : {l->left, l->right}) {
            NODE* other = keep == l->left ? l->right : l->left;
            if (!is_int_operand(keep) || is_pointer(keep) != is_pointer(t) ||
                !is_same_value(other, r) || tree_has_side_effects(other))
                continue;
            replace_by_operand(l, keep);
            t->left = nullptr;
            erase_tree(t);
            return coerce_to_type(type, keep);
        }
    }
    if (is_pointer(t) || is_pointer(l) || is_pointer(r))
        return t;
    if (NODE* joined = join_terms(MINUS, l, r, type, t->scope, loop, context)) {
        t->left = t->right = nullptr;
        erase_node(t);
        return joined;
    }
    if (NODE* scaled = factor_powers_of_two(t, loop, context))
        return scaled;
    return t;
}

NODE* simp_MULT(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->left || !t->right || !t->type)
        return t;
    const auto is_constant = [](const NODE* x) { return is_icon(x) || is_fcon(x); };
    if (is_constant(t->left) && !is_constant(t->right) && !is_nan_fcon(t->left))
        std::swap(t->left, t->right);
    if (is_float_type(t->type))
        return simp_float_product(t, loop, context);
    if (!is_wrapping_int(t) || !is_int_operand(t->left) || !is_int_operand(t->right))
        return t;
    TYPE* type = t->type;
    if (is_icon(t->right)) {
        const INT65 c = constant_in(t->right, type);
        if (c.is_zero())
            return replace_keeping_effects(t, INT65(0), type);
        if (c == INT65(1))
            return become_conversion(t, loop, context);
        // Times all ones is the negation, in either sign.
        if (sign_extend_by_type_size(c, type) == INT65(-1)) {
            t->op = UMINUS;
            t->right = erase_tree(t->right);
            return simp_node(t, loop, context);
        }
        for (auto rule : {combined_constants, exact_quotient})
            if (NODE* result = rule(t, loop, context))
                return result;
    }
    if (returns_1_or_0(t->left) && returns_1_or_0(t->right)) {
        t->op = ANDB;
        return simp_node(t, loop, context);
    }
    if (NODE* result = product_of_conversions(t, loop, context))
        return result;
    if (is_icon(t->right))
        if (NODE* result = distributed_constant(t, loop, context))
            return result;
    return t;
}

NODE* simp_shift(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->left || !is_icon(t->right) || !is_wrapping_int(t) || !is_int_operand(t->left))
        return t;
    const INT65 count = icon_of(t->right);
    if (count.is_negative())
        return t;
    if (count.is_zero())
        return become_conversion(t, loop, context);
    // A count from the size on is the target's business, and a shift
    // narrower than int is no shift the code generator knows.
    const uint64_t size = t->type->size();
    if (count >= INT65::from_unsigned(size) || promoted_type(t->type)->size() != size)
        return t;
    const int c = static_cast<int>(count.low);
    return t->op == SLL ? simp_left_shift(t, c, loop, context)
                        : simp_right_shift(t, c, loop, context);
}

NODE* simp_unary(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->left || !t->type)
        return t;
    switch (t->op) {
    case NOTB:
        // ~x is x ^ all ones: one operator less for the other rules.
        if (!is_wrapping_int(t) || !is_int_operand(t->left))
            return t;
        t->op = XORB;
        t->right = mk_ICON(truncate_to_type(type_mask(t->type), t->type), t->type);
        t->right->scope = t->scope;
        return simp_node(t, loop, context);
    case UMINUS:
        return simp_negation(t, loop, context);
    case ABS:
    case SQR:
        return simp_magnitude(t, loop, context);
    default:
        return t;
    }
}
