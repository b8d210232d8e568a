// INT65: a signed integer of 65 significant bits, enough for every signed and
// every unsigned 64-bit value without a flag beside it. Every integer constant
// of the program is one.
#pragma once

#include <cstdint>

struct INT65 {
    // Three words: the low and high halves of a 64-bit pattern and a sign word,
    // 0 or -1 for ordinary values, that acts as the 65th bit.
    uint32_t low = 0;
    uint32_t high = 0;
    int32_t sign = 0;

    INT65() = default;
    INT65(int v) : INT65(v < 0 ? -1 : 0, v) {}
    INT65(long long v) : INT65(v < 0 ? -1 : 0, v) {}
    // int64_t is long here: without this, INT65(int64_t) would be ambiguous.
    INT65(long v) : INT65(static_cast<long long>(v)) {}
    INT65(int sign_word, long long value)
        : low(static_cast<uint32_t>(value)),
          high(static_cast<uint32_t>(static_cast<unsigned long long>(value) >> 32)),
          sign(sign_word) {}

    // Named constructors for the two 64-bit views.
    static INT65 from_unsigned(uint64_t v) { return INT65(0, static_cast<long long>(v)); }

    uint64_t bits() const { return (uint64_t(high) << 32) | low; }
    // The value as a signed 64-bit number (the low 64 bits, two's complement).
    int64_t to_int64() const { return static_cast<int64_t>(bits()); }
    uint64_t to_uint64() const { return bits(); }
    bool fits_int64() const;
    bool fits_uint64() const;
    bool is_zero() const { return low == 0 && high == 0 && sign == 0; }
    bool is_negative() const { return sign < 0; }

    friend INT65 operator+(INT65 a, INT65 b);
    friend INT65 operator-(INT65 a, INT65 b);
    friend INT65 operator*(INT65 a, INT65 b);
    friend INT65 operator/(INT65 a, INT65 b);
    friend INT65 operator%(INT65 a, INT65 b);
    friend INT65 operator<<(INT65 a, int n);
    friend INT65 operator>>(INT65 a, int n);
    friend INT65 operator~(INT65 a);
    friend INT65 operator-(INT65 a);
    friend bool operator==(INT65 a, INT65 b);
    friend bool operator!=(INT65 a, INT65 b);
    friend bool operator<(INT65 a, INT65 b);
    friend bool operator>(INT65 a, INT65 b);
    friend bool operator<=(INT65 a, INT65 b);
    friend bool operator>=(INT65 a, INT65 b);
};

inline INT65 operator~(INT65 a) { return INT65(~a.sign, static_cast<long long>(~a.bits())); }
inline bool operator==(INT65 a, INT65 b) {
    return a.sign == b.sign && a.high == b.high && a.low == b.low;
}
inline bool operator!=(INT65 a, INT65 b) { return !(a == b); }
// The sign word orders first, as a signed number; then the 64-bit pattern unsigned.
inline bool operator<(INT65 a, INT65 b) {
    return a.sign != b.sign ? a.sign < b.sign : a.bits() < b.bits();
}
inline bool operator>(INT65 a, INT65 b) { return b < a; }
inline bool operator<=(INT65 a, INT65 b) { return !(b < a); }
inline bool operator>=(INT65 a, INT65 b) { return !(a < b); }
