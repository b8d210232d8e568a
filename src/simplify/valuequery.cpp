// What is known of an integer tree's value from its shape and types alone:
// an interval, a constant factor, bits known to be zero or one. Loops and
// partial-evaluation contexts add facts later; with neither, this is all.
//
// Every rule claims only what holds for every value the operands can take,
// and arithmetic wraps on the target: where a result may leave its type the
// answer falls back to what the type allows.
#include <algorithm>
#include <bit>
#include <cstdint>

#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

namespace {

// Wide enough for sums and differences of any two 64-bit values.
using WIDE = __int128;

// Beyond this the answer is what the type allows: queries stay cheap on
// deep trees.
constexpr int max_depth = 12;

constexpr int pragma_weak = 83;

WIDE to_wide(INT65 v) {
    const WIDE bits = static_cast<WIDE>(v.bits());
    return v.sign < 0 ? bits - (static_cast<WIDE>(1) << 64) : bits;
}

INT65 from_wide(WIDE w) {
    const auto bits = static_cast<long long>(static_cast<uint64_t>(w));
    return INT65(w < 0 ? -1 : 0, bits);
}

bool is_int(const TYPE* t) { return t && TYPE_IS_INT(t); }
bool is_bool(const TYPE* t) { return t && t->is_bool(); }
unsigned width(const TYPE* t) {
    const uint64_t size = t ? t->size() : 0;
    return size == 0 || size > 64 ? 64 : static_cast<unsigned>(size);
}

uint64_t low_mask(unsigned n) { return n >= 64 ? ~uint64_t(0) : (uint64_t(1) << n) - 1; }

// The SSA decorations carry the value of what they wrap.
NODE* strip_ssa(NODE* t) {
    while (t && (t->op == SSA_USE || t->op == SSA_DEF || t->op == SSA_MU || t->op == SSA_CHI) &&
           t->left)
        t = t->left;
    return t;
}

struct RANGE {
    WIDE lo, hi;
    bool within(const RANGE& r) const { return lo >= r.lo && hi <= r.hi; }
};

RANGE type_range(const TYPE* t) {
    if (!t)
        return {-(static_cast<WIDE>(1) << 64), (static_cast<WIDE>(1) << 64) - 1};
    if (is_bool(t))
        return {0, 1};
    return {to_wide(int_type_min(t)), to_wide(int_type_max(t))};
}

// r computed without wrapping: it is the answer if the type holds all of it.
RANGE fit(RANGE r, const TYPE* t) {
    const RANGE full = type_range(t);
    return r.within(full) ? r : full;
}

// The values of a conversion to t of a value in r.
RANGE convert_range(RANGE r, const TYPE* t) {
    if (is_bool(t)) {
        if (r.lo > 0 || r.hi < 0)
            return {1, 1};
        if (r.lo == 0 && r.hi == 0)
            return {0, 0};
        return {0, 1};
    }
    return fit(r, t);
}

RANGE range_of(NODE* t, int depth);

// An operand's values as the operator's type sees them.
RANGE operand_range(NODE* k, const TYPE* type, int depth) {
    if (!k || !is_int(k->type))
        return type_range(type);
    return convert_range(range_of(k, depth + 1), type);
}

unsigned bit_length(WIDE v) {
    unsigned n = 0;
    for (; v > 0; v >>= 1)
        n++;
    return n;
}

WIDE magnitude_bound(const RANGE& r) {
    return std::max(r.lo < 0 ? -r.lo : r.lo, r.hi < 0 ? -r.hi : r.hi);
}

// The count of a shift by a constant, or -1.
int constant_count(const NODE* t) {
    const NODE* c = t->right;
    if (!c || c->op != ICON || !is_int(c->type))
        return -1;
    const INT65 v = truncate_to_type(c->value, c->type);
    return v < INT65(0) || v > INT65(255) ? -1 : static_cast<int>(v.low);
}

RANGE range_of_binary(NODE* t, int depth) {
    TYPE* type = t->type;
    const RANGE full = type_range(type);
    const RANGE a = operand_range(t->left, type, depth);
    const bool is_signed = type->is_signed();
    const unsigned n = width(type);
    switch (t->op) {
    case PLUS:
    case MINUS:
    case MULT: {
        const RANGE b = operand_range(t->right, type, depth);
        if (t->op == PLUS)
            return fit({a.lo + b.lo, a.hi + b.hi}, type);
        if (t->op == MINUS)
            return fit({a.lo - b.hi, a.hi - b.lo}, type);
        // Corner products stay far inside 128 bits below 2^63 each.
        const WIDE limit = static_cast<WIDE>(1) << 63;
        if (magnitude_bound(a) >= limit || magnitude_bound(b) >= limit)
            return full;
        const WIDE p[] = {a.lo * b.lo, a.lo * b.hi, a.hi * b.lo, a.hi * b.hi};
        return fit({*std::min_element(p, p + 4), *std::max_element(p, p + 4)}, type);
    }
    case ANDB: {
        const RANGE b = operand_range(t->right, type, depth);
        // With one side non-negative the result is between 0 and that side.
        if (a.lo >= 0 && b.lo >= 0)
            return {0, std::min(a.hi, b.hi)};
        if (a.lo >= 0)
            return {0, a.hi};
        if (b.lo >= 0)
            return {0, b.hi};
        return full;
    }
    case ORB:
    case XORB: {
        const RANGE b = operand_range(t->right, type, depth);
        if (a.lo < 0 || b.lo < 0)
            return full;
        const WIDE hi = (static_cast<WIDE>(1) << bit_length(std::max(a.hi, b.hi))) - 1;
        return fit({t->op == ORB ? std::max(a.lo, b.lo) : 0, hi}, type);
    }
    case SLL: {
        const int c = constant_count(t);
        if (c < 0 || static_cast<unsigned>(c) >= n)
            return c >= 0 ? RANGE{0, 0} : full;
        return fit({a.lo * (static_cast<WIDE>(1) << c), a.hi * (static_cast<WIDE>(1) << c)}, type);
    }
    case SRL: {
        const int c = constant_count(t);
        if (c < 0) {
            // Whatever the count, the result lies between the value and its sign.
            return {a.lo < 0 ? a.lo : 0, a.hi >= 0 ? a.hi : -1};
        }
        if (static_cast<unsigned>(c) >= n)
            return is_signed ? RANGE{a.lo < 0 ? -1 : 0, a.hi < 0 ? -1 : 0} : RANGE{0, 0};
        return {a.lo >> c, a.hi >> c};
    }
    case DIV: {
        const RANGE b = operand_range(t->right, type, depth);
        if (b.lo == b.hi && b.lo != 0) {
            const WIDE c = b.lo;
            // The most negative value by -1 wraps to itself.
            if (c == -1 && a.lo == full.lo)
                return full;
            return c > 0 ? RANGE{a.lo / c, a.hi / c} : RANGE{a.hi / c, a.lo / c};
        }
        if (b.lo <= 0 && b.hi >= 0)
            return full;
        // |a / b| <= |a| for a divisor that is never 0.
        const WIDE m = magnitude_bound(a);
        return a.lo >= 0 && b.lo > 0 ? RANGE{0, a.hi} : fit({-m, m}, type);
    }
    case MOD: {
        const RANGE b = operand_range(t->right, type, depth);
        if (b.lo <= 0 && b.hi >= 0)
            return full;
        // The remainder has the dividend's sign and is smaller than the divisor.
        const WIDE m = magnitude_bound(b) - 1;
        const WIDE lo = a.lo >= 0 ? 0 : std::max(a.lo, -m);
        const WIDE hi = a.hi <= 0 ? 0 : std::min(a.hi, m);
        return {lo, hi};
    }
    default:
        return full;
    }
}

// A bit field of w bits holds the values of a w-bit integer of its type's
// sign, not all of its type.
RANGE bit_field_range(const NODE* t, const RANGE& full) {
    if ((t->op != STDOT && t->op != STREF) || !tree_is_bit_field(t))
        return full;
    const unsigned w = t->right->field_mval()->width;
    if (w == 0 || w >= width(t->type) || is_bool(t->type))
        return full;
    if (!t->type->is_signed())
        return {0, (static_cast<WIDE>(1) << w) - 1};
    const WIDE half = static_cast<WIDE>(1) << (w - 1);
    return {-half, half - 1};
}

RANGE range_of(NODE* t, int depth) {
    t = strip_ssa(t);
    TYPE* type = t ? t->type : nullptr;
    const RANGE full = type_range(type);
    if (!t || !is_int(type) || depth > max_depth)
        return full;
    if (boolean_result[t->op])
        return {0, 1};
    switch (t->op) {
    case ICON: {
        const WIDE v = to_wide(truncate_to_type(t->value, type));
        return fit({v, v}, type);
    }
    case STDOT:
    case STREF:
        return bit_field_range(t, full);
    case SCONV:
        return operand_range(t->left, type, depth);
    case COMMAOP:
        return operand_range(t->right, type, depth);
    case ASG:
        return operand_range(t->right, type, depth);
    case QUEST: {
        NODE* colon = t->right;
        if (!colon || colon->op != COLON)
            return full;
        const RANGE a = operand_range(colon->left, type, depth);
        const RANGE b = operand_range(colon->right, type, depth);
        return {std::min(a.lo, b.lo), std::max(a.hi, b.hi)};
    }
    case UMINUS: {
        const RANGE a = operand_range(t->left, type, depth);
        return fit({-a.hi, -a.lo}, type);
    }
    case NOTB: {
        // ~x is -x - 1 in a signed type and max - x in an unsigned one.
        const RANGE a = operand_range(t->left, type, depth);
        return type->is_signed() ? fit({-a.hi - 1, -a.lo - 1}, type)
                                 : RANGE{full.hi - a.hi, full.hi - a.lo};
    }
    case ABS: {
        const RANGE a = operand_range(t->left, type, depth);
        if (!type->is_signed() || a.lo >= 0)
            return a;
        if (a.hi <= 0)
            return fit({-a.hi, -a.lo}, type);
        return fit({0, std::max(-a.lo, a.hi)}, type);
    }
    case PLUS:
    case MINUS:
    case MULT:
    case ANDB:
    case ORB:
    case XORB:
    case SLL:
    case SRL:
    case DIV:
    case MOD:
        if (!t->left || !t->right)
            return full;
        return range_of_binary(t, depth);
    default:
        return full;
    }
}

// ---- Constant factors -----------------------------------------------------

using UWIDE = unsigned __int128;

uint64_t gcd(uint64_t a, uint64_t b) {
    while (b) {
        const uint64_t r = a % b;
        a = b;
        b = r;
    }
    return a;
}

// What survives of a factor f of x in a value congruent to x modulo 2^n:
// its power of two, at most 2^(n-1). A factor 0 (x is 0) survives whole.
uint64_t wrapped_factor(UWIDE f, unsigned n) {
    if (f == 0)
        return 0;
    unsigned k = 0;
    while (!((f >> k) & 1))
        k++;
    return uint64_t(1) << std::min(k, n - 1);
}

// 2^k for k known zero bits at the bottom, capped as above.
uint64_t power_factor(unsigned k, unsigned n) { return uint64_t(1) << std::min(k, n - 1); }

unsigned trailing_zeros(uint64_t f) { return f == 0 ? 64 : std::countr_zero(f); }

uint64_t factor_of(NODE* t, int depth);

// A factor of an operand's value as the operator's type holds it.
uint64_t operand_factor(NODE* k, const TYPE* type, int depth) {
    if (!k || !is_int(k->type))
        return 1;
    const uint64_t f = factor_of(k, depth + 1);
    if (range_of(k, depth + 1).within(type_range(type)) && !is_bool(type))
        return f;
    // The conversion keeps the value modulo 2^n.
    return is_bool(type) ? 1 : wrapped_factor(f, width(type));
}

uint64_t factor_of(NODE* t, int depth) {
    t = strip_ssa(t);
    TYPE* type = t ? t->type : nullptr;
    if (!t || !is_int(type) || depth > max_depth)
        return 1;
    const unsigned n = width(type);
    const RANGE full = type_range(type);
    switch (t->op) {
    case ICON: {
        const WIDE v = to_wide(truncate_to_type(t->value, type));
        return static_cast<uint64_t>(v < 0 ? -v : v);
    }
    case SCONV:
        return operand_factor(t->left, type, depth);
    case COMMAOP:
    case ASG:
        return operand_factor(t->right, type, depth);
    case QUEST:
        if (!t->right || t->right->op != COLON)
            return 1;
        return gcd(operand_factor(t->right->left, type, depth),
                   operand_factor(t->right->right, type, depth));
    case UMINUS: {
        const uint64_t f = operand_factor(t->left, type, depth);
        const RANGE a = operand_range(t->left, type, depth);
        return RANGE{-a.hi, -a.lo}.within(full) ? f : wrapped_factor(f, n);
    }
    case PLUS:
    case MINUS:
    case MULT: {
        if (!t->left || !t->right)
            return 1;
        const uint64_t fa = operand_factor(t->left, type, depth);
        const uint64_t fb = operand_factor(t->right, type, depth);
        // The exact result of the operands' values, before any wrap.
        const RANGE a = operand_range(t->left, type, depth);
        const RANGE b = operand_range(t->right, type, depth);
        if (t->op == MULT) {
            const UWIDE f = static_cast<UWIDE>(fa) * fb;
            const WIDE limit = static_cast<WIDE>(1) << 63;
            bool exact = magnitude_bound(a) < limit && magnitude_bound(b) < limit;
            if (exact) {
                const WIDE p[] = {a.lo * b.lo, a.lo * b.hi, a.hi * b.lo, a.hi * b.hi};
                exact =
                    RANGE{*std::min_element(p, p + 4), *std::max_element(p, p + 4)}.within(full);
            }
            return exact && f <= ~uint64_t(0) ? static_cast<uint64_t>(f) : wrapped_factor(f, n);
        }
        const uint64_t g = gcd(fa, fb);
        const RANGE r =
            t->op == PLUS ? RANGE{a.lo + b.lo, a.hi + b.hi} : RANGE{a.lo - b.hi, a.hi - b.lo};
        return r.within(full) ? g : wrapped_factor(g, n);
    }
    case SLL: {
        const int c = constant_count(t);
        if (c < 0)
            return 1;
        if (static_cast<unsigned>(c) >= n)
            return 0;
        const uint64_t f = operand_factor(t->left, type, depth);
        const RANGE a = operand_range(t->left, type, depth);
        const UWIDE shifted = static_cast<UWIDE>(f) << c;
        const RANGE r{a.lo * (static_cast<WIDE>(1) << c), a.hi * (static_cast<WIDE>(1) << c)};
        return r.within(full) && shifted <= ~uint64_t(0) ? static_cast<uint64_t>(shifted)
                                                         : wrapped_factor(shifted, n);
    }
    case ANDB:
    case ORB:
    case XORB: {
        if (!t->left || !t->right)
            return 1;
        // Low zero bits: of either side for ANDB, of both for the others.
        const unsigned za = trailing_zeros(operand_factor(t->left, type, depth));
        const unsigned zb = trailing_zeros(operand_factor(t->right, type, depth));
        const unsigned k = t->op == ANDB ? std::max(za, zb) : std::min(za, zb);
        return k >= n ? (t->op == ANDB ? 0 : power_factor(k, n)) : power_factor(k, n);
    }
    default:
        return 1;
    }
}

// ---- Known bits -------------------------------------------------------------

// Masks over the value's 64-bit pattern as its type extends it: sign copies
// above a signed type's width, zeros above an unsigned one's.
struct BITS {
    uint64_t zeros = 0, ones = 0;
};

BITS extend(BITS k, const TYPE* type) {
    const unsigned n = width(type);
    if (n >= 64)
        return k;
    const uint64_t mask = low_mask(n);
    k.zeros &= mask;
    k.ones &= mask;
    const uint64_t sign = uint64_t(1) << (n - 1);
    if (!type->is_signed() || (k.zeros & sign))
        k.zeros |= ~mask;
    else if (k.ones & sign)
        k.ones |= ~mask;
    return k;
}

// What a range tells: a non-negative value has zeros above its bit length, a
// negative one ones above that of its complement.
BITS bits_from_range(RANGE r) {
    BITS k;
    if (r.lo >= 0) {
        const unsigned n = bit_length(r.hi);
        if (n < 64)
            k.zeros = ~low_mask(n);
    } else if (r.hi < 0) {
        const unsigned n = bit_length(~r.lo);
        if (n < 64)
            k.ones = ~low_mask(n);
    }
    return k;
}

unsigned known_low_zeros(BITS k) { return std::countr_one(k.zeros); }

BITS bits_of(NODE* t, int depth);

BITS operand_bits(NODE* k, const TYPE* type, int depth) {
    if (!k || !is_int(k->type))
        return BITS{};
    if (is_bool(type))
        return extend(bits_from_range(operand_range(k, type, depth)), type);
    return extend(bits_of(k, depth + 1), type);
}

BITS bits_of(NODE* t, int depth) {
    t = strip_ssa(t);
    TYPE* type = t ? t->type : nullptr;
    if (!t || !is_int(type) || depth > max_depth)
        return BITS{};
    const unsigned n = width(type);
    BITS k;
    switch (t->op) {
    case ICON: {
        const uint64_t v = truncate_to_type(t->value, type).bits();
        return {~v, v};
    }
    case SCONV:
        k = operand_bits(t->left, type, depth);
        break;
    case COMMAOP:
    case ASG:
        k = operand_bits(t->right, type, depth);
        break;
    case QUEST:
        if (t->right && t->right->op == COLON) {
            const BITS a = operand_bits(t->right->left, type, depth);
            const BITS b = operand_bits(t->right->right, type, depth);
            k = {a.zeros & b.zeros, a.ones & b.ones};
        }
        break;
    case NOTB: {
        const BITS a = operand_bits(t->left, type, depth);
        k = {a.ones, a.zeros};
        break;
    }
    case ANDB:
    case ORB:
    case XORB: {
        if (!t->left || !t->right)
            break;
        const BITS a = operand_bits(t->left, type, depth);
        const BITS b = operand_bits(t->right, type, depth);
        if (t->op == ANDB)
            k = {a.zeros | b.zeros, a.ones & b.ones};
        else if (t->op == ORB)
            k = {a.zeros & b.zeros, a.ones | b.ones};
        else
            k = {(a.zeros & b.zeros) | (a.ones & b.ones), (a.zeros & b.ones) | (a.ones & b.zeros)};
        break;
    }
    case SLL: {
        const int c = constant_count(t);
        if (c < 0)
            break;
        if (static_cast<unsigned>(c) >= n) {
            k = {~uint64_t(0), 0};
            break;
        }
        const BITS a = operand_bits(t->left, type, depth);
        k = {(a.zeros << c) | low_mask(c), a.ones << c};
        break;
    }
    case SRL: {
        const int c = constant_count(t);
        if (c < 0)
            break;
        const BITS a = operand_bits(t->left, type, depth);
        if (type->is_signed()) {
            // The pattern's top bit is the sign: an arithmetic shift copies it.
            const int s = std::min(c, 63);
            k = {static_cast<uint64_t>(static_cast<int64_t>(a.zeros) >> s),
                 static_cast<uint64_t>(static_cast<int64_t>(a.ones) >> s)};
        } else if (static_cast<unsigned>(c) >= n) {
            k = {~uint64_t(0), 0};
        } else {
            k = {((a.zeros & low_mask(n)) >> c) | ~(low_mask(n) >> c), (a.ones & low_mask(n)) >> c};
        }
        break;
    }
    case PLUS:
    case MINUS:
    case MULT: {
        if (!t->left || !t->right)
            break;
        // Carries and borrows only go up: low zeros of both stay zeros.
        const unsigned za = known_low_zeros(operand_bits(t->left, type, depth));
        const unsigned zb = known_low_zeros(operand_bits(t->right, type, depth));
        const unsigned z = t->op == MULT ? std::min(64u, za + zb) : std::min(za, zb);
        k.zeros = low_mask(z);
        break;
    }
    default:
        break;
    }
    const BITS r = bits_from_range(range_of(t, depth));
    k.zeros |= r.zeros;
    k.ones |= r.ones;
    return extend(k, type);
}

// The mask of known bits of t in `type`, as a conversion to it would have them.
BITS known_bits_in(NODE* t, TYPE* type) {
    if (!t || !type)
        return BITS{};
    if (!is_int(type) || !is_int(t->type))
        return BITS{};
    BITS k = extend(bits_of(t, 0), t->type);
    if (is_bool(type) && !is_bool(t->type)) {
        // A conversion to _Bool tests against zero.
        const uint64_t all = low_mask(width(t->type));
        if (k.ones & all)
            k = {~uint64_t(1), 1};
        else if ((k.zeros & all) == all)
            k = {~uint64_t(0), 0};
        else
            k = bits_from_range(convert_range(range_of(t, 0), type));
    }
    k = extend(k, type);
    const uint64_t mask = low_mask(width(type));
    return {k.zeros & mask, k.ones & mask};
}

bool address_is_non_null(const NODE* x) {
    while (x && x->op == STDOT)
        x = x->left;
    return x && x->op == NAME && x->name_symbol() && !sym_has_pragma(x->name_symbol(), pragma_weak);
}

bool range_is_non_zero(NODE* t) {
    const RANGE r = range_of(t, 0);
    return r.lo > 0 || r.hi < 0;
}

} // namespace

INT65 calculate_minval_for_tree(NODE* t, LOOP*, CONTEXT*) { return from_wide(range_of(t, 0).lo); }

INT65 calculate_maxval_for_tree(NODE* t, LOOP*, CONTEXT*) { return from_wide(range_of(t, 0).hi); }

INT65 max_ICON_factor(NODE* t, LOOP*, CONTEXT*, int depth) {
    return INT65::from_unsigned(factor_of(t, std::max(depth, 0)));
}

INT65 find_known_zeros(NODE* t, TYPE* type) {
    if (!type && t)
        type = t->type;
    if (!t || !is_int(type) || !is_int(t->type))
        return INT65(-1);
    return truncate_to_type(INT65::from_unsigned(~known_bits_in(t, type).zeros), type);
}

INT65 find_known_ones(NODE* t, TYPE* type) {
    return INT65::from_unsigned(known_bits_in(t, type ? type : t ? t->type : nullptr).ones);
}

bool tree_is_zero(NODE* t, LOOP*, CONTEXT*) {
    t = strip_ssa(t);
    if (!t || !t->type)
        return false;
    // A null pointer constant.
    if (t->type->is_pointer() && (t->op == PCONV || t->op == ISP2CHAR) && t->left &&
        is_int(t->left->type))
        return tree_is_zero(t->left, nullptr, nullptr);
    if (!is_int(t->type))
        return false;
    const RANGE r = range_of(t, 0);
    return (r.lo == 0 && r.hi == 0) || known_bits_in(t, t->type).zeros == low_mask(width(t->type));
}

bool tree_is_ivalue(NODE* t, INT65 value, LOOP*, CONTEXT*) {
    t = strip_ssa(t);
    if (!t || !is_int(t->type))
        return false;
    const WIDE v = to_wide(convert_integer_constant(value, t->type));
    const RANGE r = range_of(t, 0);
    return r.lo == v && r.hi == v;
}

bool tree_is_non_zero(NODE* t, LOOP* loop, CONTEXT* context) {
    t = strip_ssa(t);
    if (!t || !t->type)
        return false;
    TYPE* type = t->type;
    if (type->is_pointer()) {
        switch (t->op) {
        case SCON:
            return true;
        case UAND:
            return address_is_non_null(t->left);
        case PLUS:
            if (t->left && t->left->type && t->left->type->is_pointer())
                return tree_is_non_zero(t->left, loop, context);
            return t->right && t->right->type && t->right->type->is_pointer() &&
                   tree_is_non_zero(t->right, loop, context);
        case PCONV:
        case ISP2CHAR:
            return tree_is_non_zero(t->left, loop, context);
        default:
            return false;
        }
    }
    if (!is_int(type))
        return false;
    if (range_is_non_zero(t) || known_bits_in(t, type).ones != 0)
        return true;
    NODE* l = t->left;
    const auto not_wider = [&](const NODE* k) {
        return k && k->type && width(k->type) <= width(type);
    };
    switch (t->op) {
    case SCONV:
        // A widening keeps a value non-zero, and so does a test against zero.
        if (l && (is_int(l->type) || (l->type && l->type->is_pointer())) &&
            (not_wider(l) || is_bool(type)))
            return tree_is_non_zero(l, loop, context);
        return false;
    case ABS:
    case UMINUS:
        return not_wider(l) && is_int(l->type) && tree_is_non_zero(l, loop, context);
    case MULT: {
        NODE* r = t->right;
        if (!not_wider(l) || !not_wider(r) || !is_int(l->type) || !is_int(r->type) ||
            !tree_is_non_zero(l, loop, context) || !tree_is_non_zero(r, loop, context))
            return false;
        // A wrapped product can be 0 (65536 * 65536), unless a factor is odd:
        // an odd number has an inverse modulo 2^n.
        const bool odd = (known_bits_in(l, type).ones & 1) || (known_bits_in(r, type).ones & 1);
        const RANGE a = operand_range(l, type, 0);
        const RANGE b = operand_range(r, type, 0);
        const WIDE limit = static_cast<WIDE>(1) << 63;
        if (odd)
            return true;
        if (magnitude_bound(a) >= limit || magnitude_bound(b) >= limit)
            return false;
        const WIDE p[] = {a.lo * b.lo, a.lo * b.hi, a.hi * b.lo, a.hi * b.hi};
        return RANGE{*std::min_element(p, p + 4), *std::max_element(p, p + 4)}.within(
            type_range(type));
    }
    default:
        return false;
    }
}

namespace {

// The sign bit of the value as the known bits have it: 1 known one, 0 known
// zero, -1 unknown.
int known_sign_bit(NODE* t) {
    const uint64_t sign = uint64_t(1) << (width(t->type) - 1);
    const BITS k = known_bits_in(t, t->type);
    if (!t->type->is_signed() || (k.zeros & sign))
        return 0;
    return k.ones & sign ? 1 : -1;
}

} // namespace

bool tree_is_positive(NODE* t, LOOP* loop, CONTEXT* context) {
    t = strip_ssa(t);
    if (!t || !is_int(t->type))
        return false;
    return range_of(t, 0).lo > 0 ||
           (tree_is_non_negative(t, loop, context) && known_bits_in(t, t->type).ones != 0);
}

bool tree_is_negative(NODE* t, LOOP*, CONTEXT*) {
    t = strip_ssa(t);
    return t && is_int(t->type) && (range_of(t, 0).hi < 0 || known_sign_bit(t) == 1);
}

bool tree_is_non_negative(NODE* t, LOOP*, CONTEXT*) {
    t = strip_ssa(t);
    return t && is_int(t->type) && (range_of(t, 0).lo >= 0 || known_sign_bit(t) == 0);
}

int sign_of_integer_expression(NODE* t, LOOP* loop, bool allow_zero, CONTEXT* context) {
    if (allow_zero ? tree_is_non_negative(t, loop, context) : tree_is_positive(t, loop, context))
        return 1;
    return tree_is_negative(t, loop, context) ? -1 : 0;
}
