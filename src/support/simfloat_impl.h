// Inside the floating-point simulation: exact integers, and values taken
// apart into an integer and a power of two.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/simfloat.h"

namespace simfloat_impl {

using u128 = unsigned __int128;

// A natural number of any size, least significant 32-bit limb first, with no
// zero limb on top.
struct BigNat {
    std::vector<uint32_t> w;

    BigNat() = default;
    explicit BigNat(u128 v);

    bool is_zero() const { return w.empty(); }
    int bitlen() const;
    bool bit(int i) const;
    // The low 128 bits.
    u128 low128() const;
    BigNat& shl(int n);
    // Returns whether a one bit fell off.
    bool shr(int n);
    // *this = *this * f + add.
    void mul_small(uint32_t f, uint32_t add = 0);
    // Divides in place; returns the remainder.
    uint32_t divmod_small(uint32_t d);
    void add(const BigNat& o);
    // Requires *this >= o.
    void sub(const BigNat& o);
    static int cmp(const BigNat& a, const BigNat& b);
    static BigNat mul(const BigNat& a, const BigNat& b);
    // Quotient; the remainder goes to *rem.
    static BigNat divmod(const BigNat& num, const BigNat& den, BigNat* rem);
    static BigNat pow_small(uint32_t base, int n);
    // The floor of the square root; *exact tells whether it had no remainder.
    static BigNat isqrt(const BigNat& n, bool* exact);
    // Decimal digits, most significant first; "0" for zero.
    std::string to_decimal() const;

private:
    void trim();
};

int bitlen128(u128 v);

// A value taken apart. A finite non-zero one is m * 2^e with m below 2^96.
struct Parts {
    enum Kind { ZERO, FINITE, INF, NAN_ } kind;
    bool neg;
    u128 m;
    int e;
};
Parts unpack(const simul_fval* v);

// Stores (-1)^neg * n * 2^e, rounded to odd; `sticky` says the exact value
// lies above n * 2^e, by less than 2^e; n must then have 96 bits or more.
// Overflow and underflow of the simulated range set fp_error and return 1.
int pack(bool neg, u128 n, int e, bool sticky, simul_fval* r);
int pack_big(bool neg, BigNat n, int e, bool sticky, simul_fval* r);

void set_zero(bool neg, simul_fval* r);
void set_inf(bool neg, simul_fval* r);
void set_nan(bool neg, simul_fval* r);
// The default NaN of an invalid operation, with FP_INVALID; returns -1.
int invalid(simul_fval* r);

// A constant from its text; callers keep it in a static.
simul_fval from_text(const char* text);

} // namespace simfloat_impl
