// The simulated float: exact integers, the packing that rounds to odd, the
// basic arithmetic and the comparisons. Each operation computes its exact
// result as an integer times a power of two, or its exact truncation and
// whether anything is left (division, square root), and rounds once.
#include <algorithm>
#include <cstdio>

#include "support/simfloat_impl.h"

int fp_error = 0;

const simul_fval pos_zero = {{0, 0, 0, 0, 0, 0}, F_EXP_ZERO, 0};
const simul_fval neg_zero = {{0, 0, 0, 0, 0, 0}, F_EXP_ZERO, 1};
const simul_fval pos_infin = {{0, 0, 0, 0, 0, 0}, F_EXP_SPECIAL, 0};
const simul_fval neg_infin = {{0, 0, 0, 0, 0, 0}, F_EXP_SPECIAL, 1};
const simul_fval a_nan = {{0xC000, 0, 0, 0, 0, 0}, F_EXP_SPECIAL, 0};

simul_fval* copy_fval(const simul_fval* v) { return v ? new simul_fval(*v) : nullptr; }
void free_fval(simul_fval* v) { delete v; }

namespace simfloat_impl {

int bitlen128(u128 v) {
    const uint64_t hi = static_cast<uint64_t>(v >> 64);
    if (hi)
        return 128 - __builtin_clzll(hi);
    const uint64_t lo = static_cast<uint64_t>(v);
    return lo ? 64 - __builtin_clzll(lo) : 0;
}

BigNat::BigNat(u128 v) {
    while (v) {
        w.push_back(static_cast<uint32_t>(v));
        v >>= 32;
    }
}

void BigNat::trim() {
    while (!w.empty() && w.back() == 0)
        w.pop_back();
}

int BigNat::bitlen() const {
    if (w.empty())
        return 0;
    return static_cast<int>(32 * (w.size() - 1)) + 32 - __builtin_clz(w.back());
}

bool BigNat::bit(int i) const {
    const size_t k = static_cast<size_t>(i) / 32;
    return k < w.size() && (w[k] >> (i % 32) & 1);
}

u128 BigNat::low128() const {
    u128 v = 0;
    for (size_t k = std::min<size_t>(4, w.size()); k-- > 0;)
        v = v << 32 | w[k];
    return v;
}

BigNat& BigNat::shl(int n) {
    if (w.empty() || n <= 0)
        return *this;
    const size_t limbs = static_cast<size_t>(n) / 32;
    const int bits = n % 32;
    std::vector<uint32_t> r(w.size() + limbs + 1, 0);
    for (size_t i = 0; i < w.size(); i++) {
        const uint64_t v = static_cast<uint64_t>(w[i]) << bits;
        r[i + limbs] |= static_cast<uint32_t>(v);
        r[i + limbs + 1] |= static_cast<uint32_t>(v >> 32);
    }
    w.swap(r);
    trim();
    return *this;
}

bool BigNat::shr(int n) {
    if (n <= 0 || w.empty())
        return false;
    const size_t limbs = static_cast<size_t>(n) / 32;
    const int bits = n % 32;
    bool lost = false;
    for (size_t i = 0; i < std::min(limbs, w.size()); i++)
        lost |= w[i] != 0;
    if (limbs >= w.size()) {
        w.clear();
        return lost;
    }
    if (bits)
        lost |= (w[limbs] & ((1u << bits) - 1)) != 0;
    const size_t size = w.size() - limbs;
    for (size_t i = 0; i < size; i++) {
        uint32_t v = w[i + limbs] >> bits;
        if (bits && i + limbs + 1 < w.size())
            v |= w[i + limbs + 1] << (32 - bits);
        w[i] = v;
    }
    w.resize(size);
    trim();
    return lost;
}

void BigNat::mul_small(uint32_t f, uint32_t add) {
    uint64_t carry = add;
    for (uint32_t& limb : w) {
        const uint64_t v = static_cast<uint64_t>(limb) * f + carry;
        limb = static_cast<uint32_t>(v);
        carry = v >> 32;
    }
    if (carry)
        w.push_back(static_cast<uint32_t>(carry));
    trim();
}

uint32_t BigNat::divmod_small(uint32_t d) {
    uint64_t rem = 0;
    for (size_t i = w.size(); i-- > 0;) {
        const uint64_t cur = rem << 32 | w[i];
        w[i] = static_cast<uint32_t>(cur / d);
        rem = cur % d;
    }
    trim();
    return static_cast<uint32_t>(rem);
}

void BigNat::add(const BigNat& o) {
    if (w.size() < o.w.size())
        w.resize(o.w.size(), 0);
    uint64_t carry = 0;
    for (size_t i = 0; i < w.size(); i++) {
        const uint64_t v = carry + w[i] + (i < o.w.size() ? o.w[i] : 0);
        w[i] = static_cast<uint32_t>(v);
        carry = v >> 32;
    }
    if (carry)
        w.push_back(static_cast<uint32_t>(carry));
}

void BigNat::sub(const BigNat& o) {
    int64_t borrow = 0;
    for (size_t i = 0; i < w.size(); i++) {
        int64_t v = static_cast<int64_t>(w[i]) - borrow - (i < o.w.size() ? o.w[i] : 0);
        borrow = v < 0;
        if (v < 0)
            v += int64_t(1) << 32;
        w[i] = static_cast<uint32_t>(v);
    }
    trim();
}

int BigNat::cmp(const BigNat& a, const BigNat& b) {
    if (a.w.size() != b.w.size())
        return a.w.size() < b.w.size() ? -1 : 1;
    for (size_t i = a.w.size(); i-- > 0;)
        if (a.w[i] != b.w[i])
            return a.w[i] < b.w[i] ? -1 : 1;
    return 0;
}

BigNat BigNat::mul(const BigNat& a, const BigNat& b) {
    BigNat r;
    if (a.is_zero() || b.is_zero())
        return r;
    r.w.assign(a.w.size() + b.w.size(), 0);
    for (size_t i = 0; i < a.w.size(); i++) {
        uint64_t carry = 0;
        for (size_t j = 0; j < b.w.size(); j++) {
            const uint64_t v = static_cast<uint64_t>(a.w[i]) * b.w[j] + r.w[i + j] + carry;
            r.w[i + j] = static_cast<uint32_t>(v);
            carry = v >> 32;
        }
        r.w[i + b.w.size()] = static_cast<uint32_t>(carry);
    }
    r.trim();
    return r;
}

// Binary long division: simple, and the numbers here are never long enough
// for anything faster to matter.
BigNat BigNat::divmod(const BigNat& num, const BigNat& den, BigNat* rem) {
    BigNat q;
    BigNat r = num;
    if (cmp(num, den) >= 0) {
        const int shift = num.bitlen() - den.bitlen();
        BigNat d = den;
        d.shl(shift);
        q.w.assign(static_cast<size_t>(shift) / 32 + 1, 0);
        for (int i = shift; i >= 0; i--) {
            if (cmp(r, d) >= 0) {
                r.sub(d);
                q.w[static_cast<size_t>(i) / 32] |= 1u << (i % 32);
            }
            d.shr(1);
        }
        q.trim();
    }
    if (rem)
        *rem = r;
    return q;
}

BigNat BigNat::pow_small(uint32_t base, int n) {
    BigNat r(1);
    // The largest power of the base that fits a limb, applied as often as it can be.
    uint32_t chunk = base;
    int per_chunk = 1;
    while (static_cast<uint64_t>(chunk) * base <= 0xFFFFFFFFu) {
        chunk *= base;
        per_chunk++;
    }
    for (; n >= per_chunk; n -= per_chunk)
        r.mul_small(chunk);
    for (; n > 0; n--)
        r.mul_small(base);
    return r;
}

BigNat BigNat::isqrt(const BigNat& n, bool* exact) {
    BigNat rem = n;
    BigNat root;
    BigNat bitv;
    if (!n.is_zero()) {
        bitv = BigNat(1);
        bitv.shl((n.bitlen() - 1) & ~1);
    }
    while (!bitv.is_zero()) {
        BigNat trial = root;
        trial.add(bitv);
        root.shr(1);
        if (cmp(rem, trial) >= 0) {
            rem.sub(trial);
            root.add(bitv);
        }
        bitv.shr(2);
    }
    *exact = rem.is_zero();
    return root;
}

std::string BigNat::to_decimal() const {
    if (w.empty())
        return "0";
    BigNat v = *this;
    std::string out;
    int rounds = 0;
    while (!v.is_zero()) {
        if (++rounds > 1000000) {
            fputs("WARNING: Possible infinite loop in FP convers.\n", stderr);
            break;
        }
        uint32_t chunk = v.divmod_small(1000000000u);
        for (int i = 0; i < 9; i++) {
            out.push_back(static_cast<char>('0' + chunk % 10));
            chunk /= 10;
        }
    }
    while (out.size() > 1 && out.back() == '0')
        out.pop_back();
    std::reverse(out.begin(), out.end());
    return out;
}

Parts unpack(const simul_fval* v) {
    Parts p{};
    p.neg = v->sign != 0;
    if (v->exponent == F_EXP_SPECIAL) {
        p.kind = v->mantissa[0] ? Parts::NAN_ : Parts::INF;
        return p;
    }
    u128 m = 0;
    for (unsigned short word : v->mantissa)
        m = m << 16 | word;
    if (m == 0) {
        p.kind = Parts::ZERO;
        return p;
    }
    p.kind = Parts::FINITE;
    p.m = m;
    p.e = v->exponent - 96;
    return p;
}

void set_zero(bool neg, simul_fval* r) { *r = neg ? neg_zero : pos_zero; }
void set_inf(bool neg, simul_fval* r) { *r = neg ? neg_infin : pos_infin; }
void set_nan(bool neg, simul_fval* r) {
    *r = a_nan;
    r->sign = neg;
}

int invalid(simul_fval* r) {
    set_nan(false, r);
    fp_error |= FP_INVALID;
    return -1;
}

int pack(bool neg, u128 n, int e, bool sticky, simul_fval* r) {
    if (n == 0) {
        set_zero(neg, r);
        return 0;
    }
    // The top bit's position decides the 16-bit digit the mantissa starts in.
    const long long top = bitlen128(n) - 1 + static_cast<long long>(e);
    const long long exponent = ((top >> 4) + 1) * 16;
    if (exponent > F_EXP_MAX) {
        set_inf(neg, r);
        fp_error |= FP_OVERFLOW;
        return 1;
    }
    if (exponent < F_EXP_MIN) {
        set_zero(neg, r);
        fp_error |= FP_UNDERFLOW;
        return 1;
    }
    const long long shift = e + 96 - exponent;
    u128 m;
    if (shift >= 0) {
        m = n << shift;
    } else {
        const int drop = static_cast<int>(-shift);
        sticky |= (n & ((u128(1) << drop) - 1)) != 0;
        m = n >> drop;
    }
    if (sticky)
        m |= 1;
    for (int i = 0; i < 6; i++)
        r->mantissa[i] = static_cast<unsigned short>(m >> (80 - 16 * i));
    r->exponent = static_cast<int>(exponent);
    r->sign = neg;
    return 0;
}

int pack_big(bool neg, BigNat n, int e, bool sticky, simul_fval* r) {
    const int excess = n.bitlen() - 120;
    if (excess > 0) {
        sticky |= n.shr(excess);
        e += excess;
    }
    return pack(neg, n.low128(), e, sticky, r);
}

} // namespace simfloat_impl

using namespace simfloat_impl;

namespace {

// The first NaN operand becomes the result, as on the target.
bool propagate_nan(const Parts& a, const Parts& b, simul_fval* r) {
    if (a.kind == Parts::NAN_)
        set_nan(a.neg, r);
    else if (b.kind == Parts::NAN_)
        set_nan(b.neg, r);
    else
        return false;
    return true;
}

long long top_bit(const Parts& p) { return bitlen128(p.m) - 1 + static_cast<long long>(p.e); }

int add_parts(const Parts& a, const Parts& b, simul_fval* r) {
    if (a.kind == Parts::INF || b.kind == Parts::INF) {
        if (a.kind == Parts::INF && b.kind == Parts::INF && a.neg != b.neg)
            return invalid(r);
        set_inf(a.kind == Parts::INF ? a.neg : b.neg, r);
        return 0;
    }
    if (a.kind == Parts::ZERO && b.kind == Parts::ZERO) {
        set_zero(a.neg && b.neg, r);
        return 0;
    }
    if (a.kind == Parts::ZERO)
        return pack(b.neg, b.m, b.e, false, r);
    if (b.kind == Parts::ZERO)
        return pack(a.neg, a.m, a.e, false, r);

    const long long gap = top_bit(a) - top_bit(b);
    if (gap > 200 || gap < -200) {
        // The smaller is below the larger's last bit by far: it only decides
        // on which side of the larger the exact sum lies.
        const Parts& big = gap > 0 ? a : b;
        const int spread = 120 - bitlen128(big.m);
        u128 n = big.m << spread;
        if (a.neg != b.neg)
            n -= 1;
        return pack(big.neg, n, big.e - spread, true, r);
    }
    const int e = std::min(a.e, b.e);
    BigNat x(a.m);
    x.shl(a.e - e);
    BigNat y(b.m);
    y.shl(b.e - e);
    if (a.neg == b.neg) {
        x.add(y);
        return pack_big(a.neg, x, e, false, r);
    }
    const int order = BigNat::cmp(x, y);
    if (order == 0) {
        set_zero(false, r); // x - x is +0 when rounding to nearest
        return 0;
    }
    if (order > 0) {
        x.sub(y);
        return pack_big(a.neg, x, e, false, r);
    }
    y.sub(x);
    return pack_big(b.neg, y, e, false, r);
}

// -1, 0 or 1 as |a| is below, equal to or above |b|; both finite or infinite.
int compare_magnitude(const Parts& a, const Parts& b) {
    const int rank_a = a.kind == Parts::ZERO ? 0 : a.kind == Parts::INF ? 2 : 1;
    const int rank_b = b.kind == Parts::ZERO ? 0 : b.kind == Parts::INF ? 2 : 1;
    if (rank_a != rank_b || rank_a != 1)
        return rank_a < rank_b ? -1 : rank_a > rank_b ? 1 : 0;
    const long long ta = top_bit(a), tb = top_bit(b);
    if (ta != tb)
        return ta < tb ? -1 : 1;
    const u128 x = a.m << (127 - bitlen128(a.m));
    const u128 y = b.m << (127 - bitlen128(b.m));
    return x < y ? -1 : x > y ? 1 : 0;
}

// -1, 0, 1, or 2 when unordered.
int compare(const simul_fval* a, const simul_fval* b) {
    const Parts x = unpack(a), y = unpack(b);
    if (x.kind == Parts::NAN_ || y.kind == Parts::NAN_)
        return 2;
    if (x.kind == Parts::ZERO && y.kind == Parts::ZERO)
        return 0;
    const int sx = x.kind == Parts::ZERO ? 0 : x.neg ? -1 : 1;
    const int sy = y.kind == Parts::ZERO ? 0 : y.neg ? -1 : 1;
    if (sx != sy)
        return sx < sy ? -1 : 1;
    const int m = compare_magnitude(x, y);
    return sx < 0 ? -m : m;
}

enum class IntRound { TRUNC, FLOOR, CEIL, ROUND };

// The integer nearest a in the given direction, with a's sign.
int to_integer(const simul_fval* a, simul_fval* r, IntRound how) {
    const Parts p = unpack(a);
    if (p.kind == Parts::NAN_) {
        set_nan(p.neg, r);
        return 0;
    }
    if (p.kind != Parts::FINITE || p.e >= 0) {
        *r = *a;
        return p.kind == Parts::FINITE ? f_left_justify(r) : 0;
    }
    const int drop = -p.e;
    u128 whole = drop >= 128 ? 0 : p.m >> drop;
    const u128 frac = drop >= 128 ? p.m : p.m & ((u128(1) << drop) - 1);
    bool up = false;
    switch (how) {
    case IntRound::TRUNC:
        break;
    case IntRound::FLOOR:
        up = p.neg && frac;
        break;
    case IntRound::CEIL:
        up = !p.neg && frac;
        break;
    case IntRound::ROUND:
        up = drop <= 128 && (p.m >> (drop - 1) & 1);
        break;
    }
    return pack(p.neg, whole + up, 0, false, r);
}

} // namespace

int f_add(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    const Parts x = unpack(a), y = unpack(b);
    if (propagate_nan(x, y, r))
        return 0;
    return add_parts(x, y, r);
}

int f_sub(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    const Parts x = unpack(a);
    Parts y = unpack(b);
    // A NaN subtrahend keeps its sign: the target passes the NaN on as it is.
    if (propagate_nan(x, y, r))
        return 0;
    y.neg = !y.neg;
    return add_parts(x, y, r);
}

int f_mul(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    const Parts x = unpack(a), y = unpack(b);
    if (propagate_nan(x, y, r))
        return 0;
    const bool neg = x.neg != y.neg;
    if (x.kind == Parts::INF || y.kind == Parts::INF) {
        if (x.kind == Parts::ZERO || y.kind == Parts::ZERO)
            return invalid(r);
        set_inf(neg, r);
        return 0;
    }
    if (x.kind == Parts::ZERO || y.kind == Parts::ZERO) {
        set_zero(neg, r);
        return 0;
    }
    return pack_big(neg, BigNat::mul(BigNat(x.m), BigNat(y.m)), x.e + y.e, false, r);
}

int f_div(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    const Parts x = unpack(a), y = unpack(b);
    if (propagate_nan(x, y, r))
        return 0;
    const bool neg = x.neg != y.neg;
    if (x.kind == Parts::INF) {
        if (y.kind == Parts::INF)
            return invalid(r);
        set_inf(neg, r);
        return 0;
    }
    if (y.kind == Parts::INF) {
        set_zero(neg, r);
        return 0;
    }
    if (y.kind == Parts::ZERO) {
        if (x.kind == Parts::ZERO)
            return invalid(r);
        set_inf(neg, r);
        return 0;
    }
    if (x.kind == Parts::ZERO) {
        set_zero(neg, r);
        return 0;
    }
    // Enough quotient bits that the remainder only needs to say "more".
    const int shift = 100 + bitlen128(y.m) - bitlen128(x.m) + 1;
    BigNat num(x.m);
    num.shl(shift);
    BigNat rem;
    BigNat q = BigNat::divmod(num, BigNat(y.m), &rem);
    return pack_big(neg, q, x.e - y.e - shift, !rem.is_zero(), r);
}

int f_neg(const simul_fval* a, simul_fval* r) {
    *r = *a;
    r->sign = !a->sign;
    return 0;
}

int f_abs(const simul_fval* a, simul_fval* r) {
    *r = *a;
    r->sign = 0;
    return 0;
}

int f_sqrt(const simul_fval* a, simul_fval* r) {
    const Parts p = unpack(a);
    if (p.kind == Parts::NAN_ || p.kind == Parts::ZERO) {
        *r = *a; // sqrt(-0) is -0
        return 0;
    }
    if (p.neg)
        return invalid(r);
    if (p.kind == Parts::INF) {
        *r = pos_infin;
        return 0;
    }
    int e = p.e;
    BigNat n(p.m);
    if (e % 2) {
        n.shl(1);
        e--;
    }
    int shift = std::max(0, 220 - n.bitlen());
    shift += shift % 2;
    n.shl(shift);
    bool exact = false;
    BigNat root = BigNat::isqrt(n, &exact);
    return pack_big(false, root, (e - shift) / 2, !exact, r);
}

int f_ldexp(const simul_fval* a, int n, simul_fval* r) {
    const Parts p = unpack(a);
    if (p.kind != Parts::FINITE) {
        *r = *a;
        return 0;
    }
    n = std::clamp(n, -200000, 200000);
    return pack(p.neg, p.m, p.e + n, false, r);
}

int f_frexp(const simul_fval* a, int* e, simul_fval* r) {
    const Parts p = unpack(a);
    *e = 0;
    if (p.kind != Parts::FINITE) {
        *r = *a;
        return 0;
    }
    *e = f_findexp(a);
    return pack(p.neg, p.m, -bitlen128(p.m), false, r);
}

int f_findexp(const simul_fval* a) {
    const Parts p = unpack(a);
    return p.kind == Parts::FINITE ? bitlen128(p.m) + p.e : 0;
}

int f_modf(const simul_fval* a, simul_fval* int_part, simul_fval* frac_part) {
    const Parts p = unpack(a);
    if (p.kind == Parts::NAN_) {
        set_nan(p.neg, int_part);
        set_nan(p.neg, frac_part);
        return 0;
    }
    if (p.kind == Parts::INF) {
        set_inf(p.neg, int_part);
        set_zero(p.neg, frac_part);
        return 0;
    }
    simul_fval whole, frac;
    f_trunc(a, &whole);
    f_sub(a, &whole, &frac); // exact: the fraction's bits are a's
    if (f_is_zero(&frac))
        frac.sign = p.neg;
    *int_part = whole;
    *frac_part = frac;
    return 0;
}

int f_fmod(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    const Parts x = unpack(a), y = unpack(b);
    if (propagate_nan(x, y, r))
        return 0;
    if (x.kind == Parts::INF || y.kind == Parts::ZERO)
        return invalid(r);
    if (y.kind == Parts::INF || x.kind == Parts::ZERO || compare_magnitude(x, y) < 0) {
        *r = *a;
        return f_left_justify(r);
    }
    // |a| >= |b|: the remainder of the two mantissas brought to one scale,
    // doubling a's a word at a time so that nothing grows beyond 128 bits.
    if (x.e < y.e) {
        const u128 divisor = y.m << (y.e - x.e);
        return pack(x.neg, x.m % divisor, x.e, false, r);
    }
    u128 rem = x.m % y.m;
    for (int k = x.e - y.e; k > 0;) {
        const int step = std::min(k, 32);
        rem = (rem << step) % y.m;
        k -= step;
    }
    return pack(x.neg, rem, y.e, false, r);
}

int f_trunc(const simul_fval* a, simul_fval* r) { return to_integer(a, r, IntRound::TRUNC); }
int f_floor(const simul_fval* a, simul_fval* r) { return to_integer(a, r, IntRound::FLOOR); }
int f_ceil(const simul_fval* a, simul_fval* r) { return to_integer(a, r, IntRound::CEIL); }
int f_round(const simul_fval* a, simul_fval* r) { return to_integer(a, r, IntRound::ROUND); }

int f_max(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    if (f_is_nan(a) || f_is_nan(b)) {
        *r = f_is_nan(a) ? *b : *a;
        return 0;
    }
    *r = compare(a, b) >= 0 ? *a : *b;
    return 0;
}

int f_min(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    if (f_is_nan(a) || f_is_nan(b)) {
        *r = f_is_nan(a) ? *b : *a;
        return 0;
    }
    *r = compare(a, b) <= 0 ? *a : *b;
    return 0;
}

int f_sgn(const simul_fval* a) {
    if (f_is_nan(a) || f_is_zero(a))
        return 0;
    return a->sign ? -1 : 1;
}

bool f_int(const simul_fval* a) {
    const Parts p = unpack(a);
    if (p.kind == Parts::ZERO)
        return true;
    if (p.kind != Parts::FINITE)
        return false;
    return p.e >= 0 || (-p.e < 128 && (p.m & ((u128(1) << -p.e) - 1)) == 0);
}

int f_left_justify(simul_fval* v) {
    if (v->exponent == F_EXP_SPECIAL) {
        if (v->mantissa[0] == 0 &&
            std::any_of(v->mantissa + 1, v->mantissa + 6, [](unsigned short w) { return w; })) {
            fputs(">>>Internal Error: Illegal float representation!\n", stderr);
            return -1;
        }
        return 0;
    }
    const Parts p = unpack(v);
    if (p.kind == Parts::ZERO) {
        set_zero(p.neg, v);
        return 0;
    }
    return pack(p.neg, p.m, p.e, false, v);
}

void f_align_radix_pt(simul_fval* v) { f_left_justify(v); }

int f_normalize(unsigned short* mantissa, int* exponent, int words) {
    BigNat n;
    for (int i = 0; i < words; i++)
        n.mul_small(1u << 16, mantissa[i]);
    std::fill(mantissa, mantissa + words, 0);
    if (n.is_zero()) {
        *exponent = 0;
        return 0;
    }
    simul_fval v;
    const int status = pack_big(false, n, *exponent - 16 * words, false, &v);
    std::copy(v.mantissa, v.mantissa + 6, mantissa);
    *exponent = v.exponent;
    return status;
}

bool f_eq(const simul_fval* a, const simul_fval* b) { return compare(a, b) == 0; }
bool f_ne(const simul_fval* a, const simul_fval* b) { return compare(a, b) != 0; }
bool f_lt(const simul_fval* a, const simul_fval* b) { return compare(a, b) == -1; }
bool f_le(const simul_fval* a, const simul_fval* b) {
    const int c = compare(a, b);
    return c == -1 || c == 0;
}
bool f_gt(const simul_fval* a, const simul_fval* b) { return compare(a, b) == 1; }
bool f_ge(const simul_fval* a, const simul_fval* b) {
    const int c = compare(a, b);
    return c == 1 || c == 0;
}

bool f_bit_eq(const simul_fval* a, const simul_fval* b) {
    return a->exponent == b->exponent && a->sign == b->sign &&
           std::equal(a->mantissa, a->mantissa + 6, b->mantissa);
}
