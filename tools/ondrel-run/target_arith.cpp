#include "target_arith.h"

#include <bit>
#include <cmath>

#include "driver/diag.h"

namespace target {

uint32_t shl32(uint32_t v, uint32_t count) {
    count &= 255;
    return count < 32 ? v << count : 0;
}

uint32_t lsr32(uint32_t v, uint32_t count) {
    count &= 255;
    return count < 32 ? v >> count : 0;
}

int32_t asr32(int32_t v, uint32_t count) {
    count &= 255;
    return v >> (count < 32 ? count : 31);
}

// gcc combines three register shifts of the halves. Each count it passes (n,
// n - 32, 32 - n) has a low byte that depends only on n's low byte, and each
// shift by 32 or more gives 0, so the sum is the plain shift of n & 255.
uint64_t shl64(uint64_t v, uint32_t count) {
    count &= 255;
    return count < 64 ? v << count : 0;
}

uint64_t lsr64(uint64_t v, uint32_t count) {
    count &= 255;
    return count < 64 ? v >> count : 0;
}

// Here gcc branches on the sign of the whole 32-bit n - 32 to decide whether
// the high half, shifted by n - 32, also lands in the low half. For n from 256
// the shifts see only the low byte while the branch sees all of n: 256 sets
// every bit of the low half of a negative value, and from 0x80000020 the high
// half no longer reaches the low half. So it is done the same way here.
int64_t asr64(int64_t v, uint32_t count) {
    uint32_t lo = static_cast<uint32_t>(v);
    int32_t hi = static_cast<int32_t>(v >> 32);
    uint32_t new_lo = lsr32(lo, count) | shl32(static_cast<uint32_t>(hi), 32 - count);
    if (static_cast<int32_t>(count - 32) >= 0)
        new_lo |= static_cast<uint32_t>(asr32(hi, count - 32));
    uint32_t new_hi = static_cast<uint32_t>(asr32(hi, count));
    return static_cast<int64_t>(uint64_t{new_hi} << 32 | new_lo);
}

// The run-time library's division wraps the minimum divided by -1 where the
// host would trap; negating in unsigned arithmetic gives the same.
int32_t sdiv32(int32_t a, int32_t b) {
    if (b == -1)
        return static_cast<int32_t>(0u - static_cast<uint32_t>(a));
    return a / b;
}

uint32_t udiv32(uint32_t a, uint32_t b) { return a / b; }

int32_t srem32(int32_t a, int32_t b) { return b == -1 ? 0 : a % b; }

uint32_t urem32(uint32_t a, uint32_t b) { return a % b; }

int64_t sdiv64(int64_t a, int64_t b) {
    if (b == -1)
        return static_cast<int64_t>(0ull - static_cast<uint64_t>(a));
    return a / b;
}

uint64_t udiv64(uint64_t a, uint64_t b) { return a / b; }

int64_t srem64(int64_t a, int64_t b) { return b == -1 ? 0 : a % b; }

uint64_t urem64(uint64_t a, uint64_t b) { return a % b; }

namespace {

// The saturating conversions of the floating-point unit; NaN gives 0.
int32_t saturate_s32(double v) {
    if (std::isnan(v))
        return 0;
    if (v >= 2147483648.0)
        return INT32_MAX;
    if (v <= -2147483649.0)
        return INT32_MIN;
    return static_cast<int32_t>(v);
}

uint32_t saturate_u32(double v) {
    if (std::isnan(v) || v <= 0)
        return 0;
    if (v >= 4294967296.0)
        return UINT32_MAX;
    return static_cast<uint32_t>(v);
}

// The library's unsigned conversion builds the value from two saturating
// 32-bit conversions, which comes to a saturating 64-bit one.
uint64_t saturate_u64(double v) {
    if (std::isnan(v) || v <= 0)
        return 0;
    if (v >= 18446744073709551616.0)
        return UINT64_MAX;
    return static_cast<uint64_t>(v);
}

} // namespace

uint64_t float_to_int(double v, unsigned bits, bool is_signed) {
    if (bits == 64) {
        if (!is_signed)
            return saturate_u64(v);
        uint64_t magnitude = saturate_u64(std::fabs(v));
        return v < 0 ? 0 - magnitude : magnitude;
    }
    // For narrow types gcc converts to a 32-bit int or unsigned, then keeps
    // the low bits.
    uint32_t w = is_signed ? static_cast<uint32_t>(saturate_s32(v)) : saturate_u32(v);
    switch (bits) {
    case 8:
        return is_signed ? static_cast<uint64_t>(int64_t{static_cast<int8_t>(w)})
                         : uint64_t{static_cast<uint8_t>(w)};
    case 16:
        return is_signed ? static_cast<uint64_t>(int64_t{static_cast<int16_t>(w)})
                         : uint64_t{static_cast<uint16_t>(w)};
    default:
        OPTASSERT(bits == 32);
        return is_signed ? static_cast<uint64_t>(int64_t{static_cast<int32_t>(w)}) : uint64_t{w};
    }
}

namespace {

constexpr uint32_t single_quiet = 0x00400000;
constexpr uint64_t double_quiet = 0x0008000000000000;
constexpr float single_default_nan = std::bit_cast<float>(uint32_t{0x7fc00000});
constexpr double double_default_nan = std::bit_cast<double>(uint64_t{0x7ff8000000000000});

// The NaN of an operation with a NaN operand, by the target's rule.
float pick_nan(float a, float b) {
    uint32_t x = std::bit_cast<uint32_t>(a), y = std::bit_cast<uint32_t>(b);
    bool signalling_a = std::isnan(a) && !(x & single_quiet);
    bool signalling_b = std::isnan(b) && !(y & single_quiet);
    uint32_t r = signalling_a || (std::isnan(a) && !signalling_b) ? x : y;
    return std::bit_cast<float>(r | single_quiet);
}

double pick_nan(double a, double b) {
    uint64_t x = std::bit_cast<uint64_t>(a), y = std::bit_cast<uint64_t>(b);
    bool signalling_a = std::isnan(a) && !(x & double_quiet);
    bool signalling_b = std::isnan(b) && !(y & double_quiet);
    uint64_t r = signalling_a || (std::isnan(a) && !signalling_b) ? x : y;
    return std::bit_cast<double>(r | double_quiet);
}

// The host's NaN from numbers may have either sign; the target's is positive.
float default_if_nan(float r) { return std::isnan(r) ? single_default_nan : r; }
double default_if_nan(double r) { return std::isnan(r) ? double_default_nan : r; }

} // namespace

float fadd(float a, float b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a + b);
}

float fsub(float a, float b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a - b);
}

float fmul(float a, float b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a * b);
}

float fdiv(float a, float b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a / b);
}

float fsqrt(float a) { return std::isnan(a) ? pick_nan(a, a) : default_if_nan(std::sqrt(a)); }

double dadd(double a, double b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a + b);
}

double dsub(double a, double b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a - b);
}

double dmul(double a, double b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a * b);
}

double ddiv(double a, double b) {
    return std::isnan(a) || std::isnan(b) ? pick_nan(a, b) : default_if_nan(a / b);
}

double dsqrt(double a) { return std::isnan(a) ? pick_nan(a, a) : default_if_nan(std::sqrt(a)); }

// A NaN's payload sits at the top of the fraction: widening shifts it up by
// 29 bits, narrowing drops the low 29.
double f2d(float v) {
    if (!std::isnan(v))
        return v;
    uint32_t x = std::bit_cast<uint32_t>(v) | single_quiet;
    uint64_t sign = uint64_t{x >> 31} << 63;
    uint64_t fraction = uint64_t{x & 0x007fffff} << 29;
    return std::bit_cast<double>(sign | 0x7ff0000000000000 | fraction);
}

float d2f(double v) {
    if (!std::isnan(v))
        return static_cast<float>(v);
    uint64_t x = std::bit_cast<uint64_t>(v) | double_quiet;
    uint32_t sign = static_cast<uint32_t>(x >> 63) << 31;
    uint32_t fraction = static_cast<uint32_t>((x & 0x000fffffffffffff) >> 29);
    return std::bit_cast<float>(sign | 0x7f800000 | fraction);
}

} // namespace target
