#include "support/intmath.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#include "support/safealloc.h"

void grow_table(void** table, unsigned* count, unsigned element_size) {
    unsigned old = (*count)++;
    if (old % 100 == 0)
        *table = saferealloc(*table, (size_t(old) + 100) * element_size);
}

unsigned clp2(unsigned x) {
    x -= 1;
    x |= x >> 1;
    x |= x >> 2;
    x |= x >> 4;
    x |= x >> 8;
    x |= x >> 16;
    return x + 1;
}

unsigned uint_gcd(unsigned a, unsigned b) {
    while (b != 0) {
        unsigned r = a % b;
        a = b;
        b = r;
    }
    return a;
}

unsigned uint_lcm(unsigned a, unsigned b) {
    if (a == 0 || b == 0)
        return 0;
    return a / uint_gcd(a, b) * b;
}

namespace {

uint64_t magnitude(INT65 a) { return a.sign < 0 ? 0 - a.bits() : a.bits(); }

uint64_t gcd64(uint64_t a, uint64_t b) {
    while (b != 0) {
        uint64_t r = a % b;
        a = b;
        b = r;
    }
    return a;
}

} // namespace

INT65 long_gcd(INT65 a, INT65 b) { return INT65::from_unsigned(gcd64(magnitude(a), magnitude(b))); }

INT65 long_lcm(INT65 a, INT65 b) {
    uint64_t ma = magnitude(a), mb = magnitude(b);
    if (ma == 0 || mb == 0)
        return INT65();
    return INT65::from_unsigned(ma / gcd64(ma, mb)) * INT65::from_unsigned(mb);
}

// Iterative Euclid carrying the Bezout coefficients; every intermediate is
// bounded by the inputs' magnitudes, so INT65 holds them.
INT65 extended_gcd(INT65 a, INT65 b, INT65* x, INT65* y) {
    INT65 r0 = a, r1 = b;
    INT65 s0 = 1, s1 = 0;
    INT65 t0 = 0, t1 = 1;
    while (!r1.is_zero()) {
        INT65 q = r0 / r1;
        INT65 r2 = r0 - q * r1;
        INT65 s2 = s0 - q * s1;
        INT65 t2 = t0 - q * t1;
        r0 = r1, s0 = s1, t0 = t1;
        r1 = r2, s1 = s2, t1 = t2;
    }
    if (r0.is_negative()) {
        r0 = -r0;
        s0 = -s0;
        t0 = -t0;
    }
    if (x)
        *x = s0;
    if (y)
        *y = t0;
    return r0;
}

// Bit by bit from 2^31 down: a value above 64 bits (a positive sign word)
// passes every test and gives all 32 bits set.
INT65 long_sqrt(INT65 v) {
    if (v.is_zero() || v.is_negative())
        return INT65();
    uint32_t root = 0;
    for (uint32_t bit = 0x80000000u; bit != 0; bit >>= 1) {
        uint32_t trial = root | bit;
        if (INT65::from_unsigned(uint64_t(trial) * trial) <= v)
            root = trial;
    }
    return INT65::from_unsigned(root);
}

INT65 long_add(INT65 a, INT65 b, int* overflow) {
    INT65 sum = a + b;
    if (a.is_negative() == b.is_negative() && sum.is_negative() != a.is_negative())
        *overflow = 1;
    return sum;
}

// Dividing back finds a product that lost bits. An operand of -2^64 has
// magnitude 0 for *, so its product with anything but 0 is wrong, and it
// cannot be divided by.
INT65 long_multiply(INT65 a, INT65 b, int* overflow) {
    INT65 product = a * b;
    if (a.is_zero() || b.is_zero())
        return product;
    if (magnitude(a) == 0 || magnitude(b) == 0 || product / a != b)
        *overflow = 1;
    return product;
}

// Bases 0, 1 and -1 never overflow and are answered at once, so that the loop
// ends within 65 rounds for every other base.
INT65 long_expt(INT65 base, unsigned exp, int* overflow) {
    if (exp == 0)
        return INT65(1);
    if (base.is_zero() || base == INT65(1))
        return base;
    if (base == INT65(-1))
        return exp % 2 ? base : INT65(1);
    INT65 result = base;
    int over = 0;
    for (unsigned i = 1; i < exp && !over; i++)
        result = long_multiply(result, base, &over);
    if (over)
        *overflow = 1;
    return result;
}

INT65 ulong_expt(INT65 base, unsigned exp, int* overflow) {
    uint64_t b = base.to_uint64();
    if (exp == 0)
        return INT65(1);
    if (b <= 1)
        return INT65::from_unsigned(b);
    uint64_t result = b;
    for (unsigned i = 1; i < exp; i++) {
        if (result > UINT64_MAX / b) {
            *overflow = 1;
            return INT65::from_unsigned(result * b);
        }
        result *= b;
    }
    return INT65::from_unsigned(result);
}

int power_of_2(INT65 v) {
    uint64_t b = v.bits();
    if (v.sign != 0 || !std::has_single_bit(b))
        return -1;
    return std::countr_zero(b);
}

INT65 extract_power_of_2_factor(INT65 v) {
    uint64_t b = v.bits();
    return INT65::from_unsigned(b & (0 - b));
}
