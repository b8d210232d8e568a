// The target's floating point in software. Constants fold as the target
// computes them, whatever the host's arithmetic: nothing here uses host float
// or double arithmetic, and f_ftoh, which gives a host double, is for debug
// output only.
//
// Rounding. Every operation rounds its exact result "to odd" at its last bit:
// the bits that fit are kept as they are, and the last one is set when
// anything was dropped. A value rounded so, with at least two bits more than
// a narrower format, rounds once more to that format exactly as the exact
// value would (ieee_cvt_stof, ieee_cvt_stod: to nearest, ties to even). With
// 81 bits or more here against the target's 24 and 53, one simulated
// operation followed by one conversion gives the target's correctly rounded
// result, which rounding to nearest here could not: 1 + (2^-53 + 2^-105)
// rounded to nearest in 96 bits is the tie 1 + 2^-53, which then goes to 1.
#pragma once

#include <cstdio>

// sign * 0.m * 2^exponent. The mantissa is most significant word first. A
// finite non-zero value has word 0 non-zero and an exponent that is a multiple
// of 16 (f_align_radix_pt): 81 to 96 significant bits. Exponent F_EXP_SPECIAL
// is infinity (mantissa zero) or NaN (word 0 non-zero); F_EXP_ZERO with a zero
// mantissa is a signed zero.
struct simul_fval {
    unsigned short mantissa[6];
    int exponent;
    unsigned char sign; // 1 for negative
};

constexpr int F_EXP_SPECIAL = 32767;
constexpr int F_EXP_ZERO = -32767;
// Finite exponents lie within these bounds; beyond them a result overflows to
// infinity or underflows to zero.
constexpr int F_EXP_MAX = 32752;
constexpr int F_EXP_MIN = -32752;

// The target's bit pattern: a single in words[0]; a double with its high word
// in words[0] and its low word in words[1].
struct trg_fval {
    unsigned words[2];
};

// Status of the operations: they OR bits in and never clear it, so a caller
// clears it before the work it wants to watch.
extern int fp_error;
enum : int { FP_INVALID = 1, FP_OVERFLOW = 4, FP_UNDERFLOW = 8 };

// The NaN is the target's default NaN, quiet and positive; NaNs keep only
// their sign.
extern const simul_fval pos_zero, neg_zero, pos_infin, neg_infin, a_nan;

inline bool f_is_nan(const simul_fval* v) {
    return v->exponent == F_EXP_SPECIAL && v->mantissa[0] != 0;
}
inline bool f_is_inf(const simul_fval* v) {
    return v->exponent == F_EXP_SPECIAL && v->mantissa[0] == 0;
}
inline bool f_is_zero(const simul_fval* v) { return v->exponent == F_EXP_ZERO; }

// Arithmetic. Results go to the last argument, which may be an operand. They
// return 0, or non-zero with fp_error set: -1 with FP_INVALID (and a NaN
// result) for an invalid operation, 1 for overflow or underflow. A NaN
// operand gives that NaN (the first one of two), as the target does.
int f_add(const simul_fval* a, const simul_fval* b, simul_fval* r);
int f_sub(const simul_fval* a, const simul_fval* b, simul_fval* r);
int f_mul(const simul_fval* a, const simul_fval* b, simul_fval* r);
// x / 0 is an infinity with the sign of the product, and no error.
int f_div(const simul_fval* a, const simul_fval* b, simul_fval* r);
// Flips the sign, of a NaN and a zero too.
int f_neg(const simul_fval* a, simul_fval* r);
int f_abs(const simul_fval* a, simul_fval* r);
int f_sqrt(const simul_fval* a, simul_fval* r);
// a * 2^n.
int f_ldexp(const simul_fval* a, int n, simul_fval* r);
// a = r * 2^*e with 0.5 <= |r| < 1; a zero, infinity or NaN comes back with *e 0.
int f_frexp(const simul_fval* a, int* e, simul_fval* r);
// The binary exponent f_frexp would give.
int f_findexp(const simul_fval* a);
// Integer and fractional parts, both with a's sign.
int f_modf(const simul_fval* a, simul_fval* int_part, simul_fval* frac_part);
// a - n * b with n = a / b truncated, computed exactly; the sign is a's.
int f_fmod(const simul_fval* a, const simul_fval* b, simul_fval* r);
int f_trunc(const simul_fval* a, simul_fval* r);
int f_floor(const simul_fval* a, simul_fval* r);
int f_ceil(const simul_fval* a, simul_fval* r);
// To the nearest integer, halves away from zero.
int f_round(const simul_fval* a, simul_fval* r);
// A NaN operand loses to a number; of two equal operands (+0 and -0 too) the
// first is the result, as in the target's library.
int f_max(const simul_fval* a, const simul_fval* b, simul_fval* r);
int f_min(const simul_fval* a, const simul_fval* b, simul_fval* r);
// -1, 0 or 1; 0 for a zero and for a NaN.
int f_sgn(const simul_fval* a);
// Whether a is finite and has no fraction.
bool f_int(const simul_fval* a);
// Puts any finite pattern (word 0 may be zero, the exponent anything) into
// the form above. An all-zero mantissa is a zero of its sign. A pattern that
// cannot be repaired (exponent F_EXP_SPECIAL with word 0 zero and other words
// set) is reported and returns -1.
int f_left_justify(simul_fval* v);
// Shifts a mantissa whose word 0 is non-zero right until the exponent is a
// multiple of 16, rounding to odd what falls off.
void f_align_radix_pt(simul_fval* v);
// A working mantissa of `words` words (at least 6), value 0.m * 2^*exponent,
// into the six words of the form above, rounded to odd, with *exponent set. An
// all-zero mantissa sets *exponent to 0. Returns 1 when out of range.
int f_normalize(unsigned short* mantissa, int* exponent, int words);

// Comparison. A NaN is unordered: false, true for f_ne. +0 equals -0.
bool f_eq(const simul_fval* a, const simul_fval* b);
bool f_ne(const simul_fval* a, const simul_fval* b);
bool f_lt(const simul_fval* a, const simul_fval* b);
bool f_le(const simul_fval* a, const simul_fval* b);
bool f_gt(const simul_fval* a, const simul_fval* b);
bool f_ge(const simul_fval* a, const simul_fval* b);
// Same pattern: 0.0 and -0.0 differ, two NaNs of one sign are the same.
bool f_bit_eq(const simul_fval* a, const simul_fval* b);

// Transcendental functions: good to the target's double, not correctly
// rounded. Never used to fold a program's calls.
int f_exp(const simul_fval* a, simul_fval* r);
int f_log(const simul_fval* a, simul_fval* r);
int f_log10(const simul_fval* a, simul_fval* r);
int f_pow(const simul_fval* a, const simul_fval* b, simul_fval* r);
// Argument reduction uses pi to the simulated precision: accurate while |a|
// is below about 2^20.
int f_sin(const simul_fval* a, simul_fval* r);
int f_cos(const simul_fval* a, simul_fval* r);
int f_tan(const simul_fval* a, simul_fval* r);
int f_asin(const simul_fval* a, simul_fval* r);
int f_acos(const simul_fval* a, simul_fval* r);
int f_atan(const simul_fval* a, simul_fval* r);
int f_atan2(const simul_fval* y, const simul_fval* x, simul_fval* r);
int f_sinh(const simul_fval* a, simul_fval* r);
int f_cosh(const simul_fval* a, simul_fval* r);
int f_tanh(const simul_fval* a, simul_fval* r);

// Conversion. Integers of 64 bits convert exactly.
void f_itof(long long v, simul_fval* r);
void f_utof(unsigned long long v, simul_fval* r);
// Truncation toward zero. A NaN, an infinity or a value out of range sets
// FP_INVALID and returns -1, with *out saturated (0 for a NaN).
int f_ftoi(const simul_fval* v, long long* out);
int f_ftou(const simul_fval* v, unsigned long long* out);
// Decimal or hexadecimal ("0x1.8p+1") text, with sign, exponent and an f, F,
// l or L suffix; also "inf", "infinity" and "nan". Exact: the result is the
// text's value rounded to odd. Returns 0 when the whole text (but blanks) was
// read, 1 otherwise; overflow and underflow of the simulated range set
// fp_error as the arithmetic does.
int f_atof(const char* text, simul_fval* r);

// What f_ftoa and f_f2ascii write at most, terminator included. Precision is
// capped at 400 digits, and %f of a value at or above 1e400 prints as %e.
constexpr int F_FTOA_BUFSIZE = 1024;
// One printf conversion, with the text around it: %a (exact hexadecimal:
// "0x1.8p+1", "-0x0p+0", "inf", "nan"), %e, %f, %g and their capitals, with
// a width and a precision. The digits are exact, rounded to nearest even.
// Returns the length.
int f_ftoa(char* buf, const char* format, const simul_fval* v);
// The conversion alone; precision -1 is the default (exact for %a).
int f_f2ascii(char* buf, int width, int precision, char conversion, const simul_fval* v);
// Decimal digits of v; returns buf.
char* f_utoa(char* buf, unsigned long long v);
// The decimal digits of |v| rounded to nearest even, as ecvt and fcvt give
// them: f_ecvt keeps `ndigits` digits, f_fcvt those up to `ndigits` places
// after the point. *decpt is the position of the point from the left of the
// digits, *sign 1 for negative. `size` bounds buf; returns 0, or -1 for an
// infinity or NaN (buf gets "inf" or "nan").
int f_ecvt(const simul_fval* v, int ndigits, int* decpt, int* sign, char* buf, int size);
int f_fcvt(const simul_fval* v, int ndigits, int* decpt, int* sign, char* buf, int size);
// Hexadecimal digits of |v|: the leading 1, then `ndigits` digits (all that
// are non-zero when negative), rounded to nearest even; |v| = 0x1.ddd * 2^*binexp.
// A rounding that carries makes the leading digit 2, as C's %a does.
int f_acvt(const simul_fval* v, int ndigits, int* binexp, int* sign, char* buf, int size);
// For debug output only: the value as a host double.
void f_ftoh(const simul_fval* v, double* out);
// The words, exponent and sign.
void f_dbg(FILE* f, const simul_fval* v);
// 21 significant digits; "Inf", "-Inf", "NaN".
void f_print(FILE* f, const simul_fval* v);

// The target's formats. The conversions to them round to nearest even, with
// denormals; overflow gives an infinity with FP_OVERFLOW, and a non-zero value
// that rounds to zero gives a zero with FP_UNDERFLOW: both return 1.
void ieee_cvt_ftos(unsigned bits, simul_fval* r);
void ieee_cvt_dtos(unsigned high, unsigned low, simul_fval* r);
int ieee_cvt_stof(const simul_fval* v, unsigned* out);
int ieee_cvt_stod(const simul_fval* v, unsigned* high, unsigned* low);
// Round v in place to the format.
int get_ieee_flt_fmt(simul_fval* v);
int get_ieee_dbl_fmt(simul_fval* v);
void f_cvt_ttos(const trg_fval* t, simul_fval* r, int is_double);
int f_cvt_stot(const simul_fval* v, trg_fval* t, int is_double);

// The value record of an FCON node: a copy of its own, freed with the node.
simul_fval* copy_fval(const simul_fval* v);
void free_fval(simul_fval* v);
