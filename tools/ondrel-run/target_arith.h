// The target's arithmetic where the host's C++ is undefined or computes
// something else: what 32-bit ARM code from gcc -O0 (hard float, Linux) gives.
// Every rule here was measured on the target (tests/unit/gen/target_arith_ref.c)
// and is checked against those measurements by tests/unit/target_arith_test.cpp.
#pragma once

#include <cstdint>

namespace target {

// Shifts by a register count. The register shift uses the count's low byte:
// 32 to 255 give 0 (or the sign for asr), 256 shifts by 0 again.
uint32_t shl32(uint32_t v, uint32_t count);
uint32_t lsr32(uint32_t v, uint32_t count);
int32_t asr32(int32_t v, uint32_t count);

// 64-bit shifts by a variable count, as gcc's inline sequence on the 32-bit
// halves computes them. shl64 and lsr64 use the count's low byte: 64 to 255
// give 0, 256 shifts by 0 again. asr64 is exact for counts 0 to 255 (64 and up
// give the sign); beyond 255 the sequence mixes low-byte shifts with a test of
// the whole count, see the definition.
uint64_t shl64(uint64_t v, uint32_t count);
uint64_t lsr64(uint64_t v, uint32_t count);
int64_t asr64(int64_t v, uint32_t count);

// Division truncating toward zero. The divisor must not be 0; the caller
// reports that. The minimum divided by -1 gives the minimum, remainder 0.
int32_t sdiv32(int32_t a, int32_t b);
uint32_t udiv32(uint32_t a, uint32_t b);
int32_t srem32(int32_t a, int32_t b);
uint32_t urem32(uint32_t a, uint32_t b);
int64_t sdiv64(int64_t a, int64_t b);
uint64_t udiv64(uint64_t a, uint64_t b);
int64_t srem64(int64_t a, int64_t b);
uint64_t urem64(uint64_t a, uint64_t b);

// A float or double converted to an integer of 8, 16, 32 or 64 bits, toward
// zero, returned sign- or zero-extended to 64 bits as its type extends. A float
// source converts exactly to double first; the target treats both alike.
//   8, 16, 32 bits: a saturating 32-bit conversion (NaN gives 0), then the
//     low bits. So (signed char)300.0 is 44 and (unsigned char)-1.0 is 0.
//   64 bits unsigned: saturating, NaN gives 0.
//   64 bits signed: the unsigned conversion of |v|, negated when v < 0. Out of
//     range this wraps instead of saturating: 2^63 gives INT64_MIN, 2^64 and
//     +inf give -1, -2^64 and -inf give 1.
uint64_t float_to_int(double v, unsigned bits, bool is_signed);

// IEEE operations, correctly rounded to nearest, with the target's NaNs. An
// operation on numbers whose result is NaN gives the positive default NaN. An
// operation with a NaN operand gives that NaN quietened, sign and payload
// kept; of two NaNs a signalling one wins, then the first operand.
float fadd(float a, float b);
float fsub(float a, float b);
float fmul(float a, float b);
float fdiv(float a, float b);
float fsqrt(float a);
double dadd(double a, double b);
double dsub(double a, double b);
double dmul(double a, double b);
double ddiv(double a, double b);
double dsqrt(double a);

// Conversions between the formats. A NaN is quietened and keeps its sign and
// the top of its payload.
double f2d(float v);
float d2f(double v);

// Integer to float conversions are correctly rounded on the target as on the
// host: a plain cast does.

} // namespace target
