#include "support/int65.h"

namespace {

INT65 make(int32_t sign, uint64_t bits) { return INT65(sign, static_cast<long long>(bits)); }

// A negative value's magnitude, as the 64-bit unsigned number that * / %
// work on. -2^64 has no 64-bit magnitude and gives 0.
uint64_t magnitude(INT65 a) { return a.sign < 0 ? 0 - a.bits() : a.bits(); }

} // namespace

bool INT65::fits_int64() const {
    bool top = (high >> 31) != 0;
    return sign == (top ? -1 : 0);
}

bool INT65::fits_uint64() const { return sign == 0; }

// The sign word is the 65th bit: the sum of the two 65th bits and the carry out
// of the low 64, modulo 2, is their exclusive or.
INT65 operator+(INT65 a, INT65 b) {
    uint64_t sum = a.bits() + b.bits();
    int32_t sign = a.sign ^ b.sign;
    if (sum < a.bits())
        sign = ~sign;
    return make(sign, sum);
}

INT65 operator-(INT65 a) { return ~a + INT65(1); }

INT65 operator-(INT65 a, INT65 b) { return a + -b; }

// The product keeps only the low 64 bits of the magnitudes' product.
INT65 operator*(INT65 a, INT65 b) {
    INT65 p = INT65::from_unsigned(magnitude(a) * magnitude(b));
    return a.sign != b.sign ? -p : p;
}

// No zero check: callers exclude division by a zero constant.
INT65 operator/(INT65 a, INT65 b) {
    INT65 q = INT65::from_unsigned(magnitude(a) / magnitude(b));
    return a.sign != b.sign ? -q : q;
}

INT65 operator%(INT65 a, INT65 b) {
    INT65 r = INT65::from_unsigned(magnitude(a) % magnitude(b));
    return a.sign < 0 ? -r : r;
}

// Both shifts act on the 65-bit pattern of the sign bit above the 64 bits.
// A count of 0 or below returns the value unchanged. Left: the 65th bit of the
// result is bit 64 - n of the pattern, so 1 << 64 is -2^64 and a count above 64
// gives 0. Right: arithmetic, the sign word kept and its bit shifted in, so a
// count of 64 or more gives 0 or -1.
INT65 operator<<(INT65 a, int n) {
    if (n <= 0)
        return a;
    if (n > 64)
        return INT65();
    uint64_t b = a.bits();
    bool top = ((b >> (64 - n)) & 1) != 0;
    return make(top ? -1 : 0, n == 64 ? 0 : b << n);
}

INT65 operator>>(INT65 a, int n) {
    if (n <= 0)
        return a;
    uint64_t fill = a.sign < 0 ? ~uint64_t(0) : 0;
    if (n >= 64)
        return make(a.sign, fill);
    return make(a.sign, (a.bits() >> n) | (fill << (64 - n)));
}
