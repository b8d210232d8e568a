// The target's IEEE single and double: bit patterns to simulated values,
// exactly, and back, rounded to nearest even with denormals.
#include <cstdint>

#include "support/simfloat_impl.h"

using namespace simfloat_impl;

namespace {

// A format: `precision` significant bits, the leading one included, and
// `exp_bits` bits of biased exponent.
struct Format {
    int precision;
    int exp_bits;
    int bias() const { return (1 << (exp_bits - 1)) - 1; }
    int min_exp() const { return 1 - bias(); }
    uint64_t exp_field() const { return ((uint64_t(1) << exp_bits) - 1) << (precision - 1); }
    uint64_t sign_bit() const { return uint64_t(1) << (precision - 1 + exp_bits); }
};

constexpr Format single_format = {24, 8};
constexpr Format double_format = {53, 11};

void from_ieee(uint64_t bits, const Format& f, simul_fval* r) {
    const bool neg = (bits & f.sign_bit()) != 0;
    const int biased = static_cast<int>((bits & f.exp_field()) >> (f.precision - 1));
    const uint64_t fraction = bits & ((uint64_t(1) << (f.precision - 1)) - 1);
    if (biased == (1 << f.exp_bits) - 1) {
        if (fraction)
            set_nan(neg, r);
        else
            set_inf(neg, r);
    } else if (biased == 0) {
        // Zero or a denormal: no hidden bit, the exponent of the smallest normal.
        pack(neg, fraction, f.min_exp() - (f.precision - 1), false, r);
    } else {
        pack(neg, fraction | uint64_t(1) << (f.precision - 1),
             biased - f.bias() - (f.precision - 1), false, r);
    }
}

int to_ieee(const simul_fval* v, const Format& f, uint64_t* out) {
    const uint64_t sign = v->sign ? f.sign_bit() : 0;
    const Parts p = unpack(v);
    switch (p.kind) {
    case Parts::NAN_:
        *out = sign | f.exp_field() | uint64_t(1) << (f.precision - 2);
        return 0;
    case Parts::INF:
        *out = sign | f.exp_field();
        return 0;
    case Parts::ZERO:
        *out = sign;
        return 0;
    case Parts::FINITE:
        break;
    }
    // The last bit kept: `precision` bits below the top, but not below the
    // last bit of the denormals.
    const long long top = bitlen128(p.m) - 1 + static_cast<long long>(p.e);
    const long long denormal_last = f.min_exp() - (f.precision - 1);
    long long last = top - (f.precision - 1);
    if (last < denormal_last)
        last = denormal_last;
    const long long drop = last - p.e;
    u128 q;
    bool round = false, sticky = false;
    if (drop <= 0) {
        q = p.m << -drop;
    } else if (drop > 128) {
        q = 0;
        sticky = true;
    } else {
        q = drop == 128 ? 0 : p.m >> drop;
        round = (p.m >> (drop - 1) & 1) != 0;
        sticky = (p.m & ((u128(1) << (drop - 1)) - 1)) != 0;
    }
    if (round && (sticky || (q & 1)))
        q++;
    if (q == 0) {
        *out = sign;
        fp_error |= FP_UNDERFLOW;
        return 1;
    }
    if (q >> f.precision) {
        // Rounded up to the next power of two.
        q >>= 1;
        last++;
    }
    // A denormal that rounded up to the hidden bit is the smallest normal,
    // which the same sum encodes.
    const long long biased = q >> (f.precision - 1) ? last + (f.precision - 1) + f.bias() : 0;
    if (biased >= (1 << f.exp_bits) - 1) {
        *out = sign | f.exp_field();
        fp_error |= FP_OVERFLOW;
        return 1;
    }
    *out = sign | static_cast<uint64_t>(biased) << (f.precision - 1) |
           (static_cast<uint64_t>(q) & ((uint64_t(1) << (f.precision - 1)) - 1));
    return 0;
}

} // namespace

void ieee_cvt_ftos(unsigned bits, simul_fval* r) { from_ieee(bits, single_format, r); }

void ieee_cvt_dtos(unsigned high, unsigned low, simul_fval* r) {
    from_ieee(static_cast<uint64_t>(high) << 32 | low, double_format, r);
}

int ieee_cvt_stof(const simul_fval* v, unsigned* out) {
    uint64_t bits = 0;
    const int status = to_ieee(v, single_format, &bits);
    *out = static_cast<unsigned>(bits);
    return status;
}

int ieee_cvt_stod(const simul_fval* v, unsigned* high, unsigned* low) {
    uint64_t bits = 0;
    const int status = to_ieee(v, double_format, &bits);
    *high = static_cast<unsigned>(bits >> 32);
    *low = static_cast<unsigned>(bits);
    return status;
}

int get_ieee_flt_fmt(simul_fval* v) {
    unsigned bits = 0;
    const int status = ieee_cvt_stof(v, &bits);
    ieee_cvt_ftos(bits, v);
    return status;
}

int get_ieee_dbl_fmt(simul_fval* v) {
    unsigned high = 0, low = 0;
    const int status = ieee_cvt_stod(v, &high, &low);
    ieee_cvt_dtos(high, low, v);
    return status;
}

void f_cvt_ttos(const trg_fval* t, simul_fval* r, int is_double) {
    if (is_double)
        ieee_cvt_dtos(t->words[0], t->words[1], r);
    else
        ieee_cvt_ftos(t->words[0], r);
}

int f_cvt_stot(const simul_fval* v, trg_fval* t, int is_double) {
    if (is_double)
        return ieee_cvt_stod(v, &t->words[0], &t->words[1]);
    t->words[1] = 0;
    return ieee_cvt_stof(v, &t->words[0]);
}
