/* What the target computes where C leaves it undefined or the host differs:
 * shifts by a variable count, division, float to integer conversion, NaN
 * results. Run once on the target, its output is
 * tests/unit/gen/target_arith_ref.inc:
 *
 *   arm-linux-gnueabihf-gcc -O0 -static -o target_arith_ref target_arith_ref.c -lm
 *   qemu-arm ./target_arith_ref > target_arith_ref.inc
 *
 * (tests/unit/gen/target_arith_ref.sh does both.) Every operand is read
 * through a volatile, so that the compiler folds nothing: each result comes
 * from the code gcc emits at -O0, the target's floating-point unit and its
 * run-time library. Many of these operations are undefined in C; that is the
 * point, the interpreter must do what this code does. Operands are fixed
 * lists and a seeded generator, so the output is the same at each run.
 */
#include <float.h>
#include <limits.h>
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

static float f_of(uint32_t u) { float f; memcpy(&f, &u, 4); return f; }
static uint32_t u_of(float f) { uint32_t u; memcpy(&u, &f, 4); return u; }
static double d_of(uint64_t u) { double d; memcpy(&d, &u, 8); return d; }
static uint64_t u64_of(double d) { uint64_t u; memcpy(&u, &d, 8); return u; }

static uint64_t rng = 0x2545F4914F6CDD1Dull;
static uint64_t next(void) {
    rng ^= rng << 13;
    rng ^= rng >> 7;
    rng ^= rng << 17;
    return rng;
}

#define COUNT(a) (sizeof(a) / sizeof((a)[0]))

/* Shifts. The count is a run-time 32-bit register, as for any int count. */

static uint32_t shift32(char op, uint32_t v, uint32_t count) {
    volatile uint32_t uv = v;
    volatile int32_t sv = (int32_t)v;
    volatile uint32_t n = count;
    switch (op) {
    case 'l': return uv << n;
    case 'r': return uv >> n;
    default: return (uint32_t)(sv >> n);
    }
}

static uint64_t shift64(char op, uint64_t v, uint32_t count) {
    volatile unsigned long long uv = v;
    volatile long long sv = (long long)v;
    volatile uint32_t n = count;
    switch (op) {
    case 'l': return uv << n;
    case 'r': return uv >> n;
    default: return (uint64_t)(sv >> n);
    }
}

/* Counts far beyond the width: the low byte, and the sign of count - 32,
 * might each matter. */
static const uint32_t big_counts[] = {
    0x100,      0x101,      0x11f,      0x120,      0x121,      0x13f,      0x140,
    0x1ff,      0x200,      0x7fffffff, 0x80000000, 0x8000001f, 0x80000020, 0x80000021,
    0x8000003f, 0x80000040, 0xffffff00, 0xffffffdf, 0xffffffe0, 0xffffffe1, 0xffffffff};

static void shifts(void) {
    static const uint32_t values32[] = {0x80000001u, 0x7edcba98u};
    static const uint64_t values64[] = {0x8000000100000001ull, 0x7edcba9876543211ull};
    static const char ops[] = "lra";
    printf("static const RefShift32 ref_shift32[] = {\n");
    for (int o = 0; o < 3; o++)
        for (size_t i = 0; i < COUNT(values32); i++) {
            for (uint32_t n = 0; n < 256; n++)
                printf("{'%c',0x%08lx,0x%lx,0x%08lx},\n", ops[o], (unsigned long)values32[i],
                       (unsigned long)n, (unsigned long)shift32(ops[o], values32[i], n));
            for (size_t k = 0; k < COUNT(big_counts); k++)
                printf("{'%c',0x%08lx,0x%lx,0x%08lx},\n", ops[o], (unsigned long)values32[i],
                       (unsigned long)big_counts[k],
                       (unsigned long)shift32(ops[o], values32[i], big_counts[k]));
        }
    printf("};\n\n");
    printf("static const RefShift64 ref_shift64[] = {\n");
    for (int o = 0; o < 3; o++)
        for (size_t i = 0; i < COUNT(values64); i++) {
            for (uint32_t n = 0; n < 256; n++)
                printf("{'%c',0x%016llxull,0x%lx,0x%016llxull},\n", ops[o],
                       (unsigned long long)values64[i], (unsigned long)n,
                       (unsigned long long)shift64(ops[o], values64[i], n));
            for (size_t k = 0; k < COUNT(big_counts); k++)
                printf("{'%c',0x%016llxull,0x%lx,0x%016llxull},\n", ops[o],
                       (unsigned long long)values64[i], (unsigned long)big_counts[k],
                       (unsigned long long)shift64(ops[o], values64[i], big_counts[k]));
        }
    printf("};\n\n");
}

/* Division. */

static uint32_t div32(char op, int is_signed, uint32_t a, uint32_t b) {
    volatile int32_t sa = (int32_t)a, sb = (int32_t)b;
    volatile uint32_t ua = a, ub = b;
    if (is_signed)
        return (uint32_t)(op == '/' ? sa / sb : sa % sb);
    return op == '/' ? ua / ub : ua % ub;
}

static uint64_t div64(char op, int is_signed, uint64_t a, uint64_t b) {
    volatile long long sa = (long long)a, sb = (long long)b;
    volatile unsigned long long ua = a, ub = b;
    if (is_signed)
        return (uint64_t)(op == '/' ? sa / sb : sa % sb);
    return op == '/' ? ua / ub : ua % ub;
}

static void divisions(void) {
    static const uint32_t values32[] = {
        0,  1,  0xffffffffu /* -1 */, 2, 0xfffffffeu, 7,          0xfffffff9u,
        3,  100, 0xffffff9cu,         0x80000000u,  0x7fffffffu,  0x80000001u, 0x12345678u,
        0xedcba987u};
    static const uint64_t values64[] = {
        0,
        1,
        0xffffffffffffffffull,
        2,
        0xfffffffffffffffeull,
        7,
        0xfffffffffffffff9ull,
        3,
        0x8000000000000000ull,
        0x7fffffffffffffffull,
        0x8000000000000001ull,
        0x00000000ffffffffull,
        0x0000000100000000ull,
        0xffffffff00000000ull,
        0x0000000080000000ull,
        0x123456789abcdef0ull,
        0xedcba98765432110ull,
        0x00000001ffffffffull};
    static const char ops[] = "/%";
    printf("static const RefDiv32 ref_div32[] = {\n");
    for (int o = 0; o < 2; o++)
        for (int s = 0; s < 2; s++)
            for (size_t i = 0; i < COUNT(values32); i++)
                for (size_t j = 0; j < COUNT(values32); j++)
                    if (values32[j] != 0)
                        printf("{'%c',%d,0x%08lx,0x%08lx,0x%08lx},\n", ops[o], s,
                               (unsigned long)values32[i], (unsigned long)values32[j],
                               (unsigned long)div32(ops[o], s, values32[i], values32[j]));
    printf("};\n\n");
    printf("static const RefDiv64 ref_div64[] = {\n");
    for (int o = 0; o < 2; o++)
        for (int s = 0; s < 2; s++)
            for (size_t i = 0; i < COUNT(values64); i++)
                for (size_t j = 0; j < COUNT(values64); j++)
                    if (values64[j] != 0)
                        printf("{'%c',%d,0x%016llxull,0x%016llxull,0x%016llxull},\n", ops[o], s,
                               (unsigned long long)values64[i], (unsigned long long)values64[j],
                               (unsigned long long)div64(ops[o], s, values64[i], values64[j]));
    printf("};\n\n");
}

/* Float to integer. Each result is widened to 64 bits the way its C type
 * widens, sign or zero. */

static uint64_t from_single(uint32_t bits, int width, int is_signed) {
    volatile float x = f_of(bits);
    switch (width * 2 + is_signed) {
    case 16: return (unsigned char)x;
    case 17: return (uint64_t)(long long)(signed char)x;
    case 32: return (unsigned short)x;
    case 33: return (uint64_t)(long long)(short)x;
    case 64: return (unsigned)x;
    case 65: return (uint64_t)(long long)(int)x;
    case 128: return (unsigned long long)x;
    default: return (uint64_t)(long long)x;
    }
}

static uint64_t from_double(uint64_t bits, int width, int is_signed) {
    volatile double x = d_of(bits);
    switch (width * 2 + is_signed) {
    case 16: return (unsigned char)x;
    case 17: return (uint64_t)(long long)(signed char)x;
    case 32: return (unsigned short)x;
    case 33: return (uint64_t)(long long)(short)x;
    case 64: return (unsigned)x;
    case 65: return (uint64_t)(long long)(int)x;
    case 128: return (unsigned long long)x;
    default: return (uint64_t)(long long)x;
    }
}

static const double conversion_values[] = {
    0.0, -0.0, 0.5, -0.5, 0.999, -0.999, 1.0, -1.0, 1.5, -1.5, 2.5, -2.5,
    127.0, 127.9, 128.0, -128.0, -128.9, -129.0, 255.0, 255.9, 256.0, 300.7, -300.7,
    32767.0, 32768.0, -32768.0, -32769.0, 65535.0, 65535.5, 65536.0, 100000.25, -100000.25,
    2147483647.0, 2147483647.5, 2147483648.0, -2147483648.0, -2147483648.5, -2147483649.0,
    4294967295.0, 4294967295.5, 4294967296.0, -4294967296.0, 4294967297.0, 6442450943.75,
    9007199254740993.0 /* rounds to 2^53 */, 9007199254740994.0, 1e18, -1e18,
    9223372036854774784.0 /* the largest double under 2^63 */, 9223372036854775808.0,
    -9223372036854775808.0, -9223372036854777856.0, 13835058055282163712.0 /* 1.5 * 2^63 */,
    -13835058055282163712.0, 18446744073709549568.0 /* the largest double under 2^64 */,
    18446744073709551616.0, -18446744073709551616.0, 36893488147419103232.0 /* 2^65 */, 1e30,
    -1e30, 1e300, -1e300, DBL_MAX, -DBL_MAX, FLT_MAX, -FLT_MAX};

/* Patterns that are not ordinary numbers: infinities, NaNs with and without
 * payload, signalling NaNs, denormals. */
static const uint32_t single_patterns[] = {
    0x7f800000, 0xff800000, 0x7fc00000, 0xffc00000, 0x7fc12345, 0x7f812345, 0xff812345,
    0x00000001, 0x80000001, 0x007fffff, 0x807fffff, 0x4effffff, 0x4f000000, 0xcf000000,
    0xcf000001, 0x5effffff, 0x5f000000, 0xdf000000, 0xdf000001, 0x5f7fffff, 0x5f800000,
    0x4f7fffff, 0x4f800000};
static const uint64_t double_patterns[] = {
    0x7ff0000000000000ull, 0xfff0000000000000ull, 0x7ff8000000000000ull, 0xfff8000000000000ull,
    0x7ff8000000012345ull, 0x7ff0000000012345ull, 0xfff0000000012345ull, 0x0000000000000001ull,
    0x8000000000000001ull, 0x000fffffffffffffull, 0x800fffffffffffffull};

static void conversion_line(int fmt, uint64_t bits) {
    static const int widths[] = {8, 16, 32, 64};
    for (int w = 0; w < 4; w++)
        for (int s = 0; s < 2; s++) {
            uint64_t r = fmt ? from_double(bits, widths[w], s)
                             : from_single((uint32_t)bits, widths[w], s);
            printf(fmt ? "{1,0x%016llxull,%d,%d,0x%016llxull},\n"
                       : "{0,0x%08llx,%d,%d,0x%016llxull},\n",
                   (unsigned long long)bits, widths[w], s, (unsigned long long)r);
        }
}

/* A random value with magnitude about 2^e, with or without a fraction. */
static double random_magnitude(int e) {
    double m = (double)(next() >> 11) / 9007199254740992.0 + 1.0;
    double v = ldexp(m, e);
    return next() & 1 ? -v : v;
}

static void conversions(void) {
    printf("static const RefFloatToInt ref_float_to_int[] = {\n");
    for (int fmt = 0; fmt < 2; fmt++) {
        for (size_t i = 0; i < COUNT(conversion_values); i++) {
            double v = conversion_values[i];
            if (fmt == 0) {
                /* The nearest float, once: 2^31 - 1 and 2^31 are one float. */
                float f = (float)v;
                int repeated = i > 0 && u_of(f) == u_of((float)conversion_values[i - 1]);
                if (fabs(v) <= FLT_MAX && !repeated)
                    conversion_line(0, u_of(f));
            } else {
                conversion_line(1, u64_of(v));
            }
        }
        if (fmt == 0)
            for (size_t i = 0; i < COUNT(single_patterns); i++)
                conversion_line(0, single_patterns[i]);
        else
            for (size_t i = 0; i < COUNT(double_patterns); i++)
                conversion_line(1, double_patterns[i]);
        /* Magnitudes across the 64-bit range and a little beyond: the 64-bit
         * conversions split the value into 32-bit halves. */
        for (int e = 0; e <= 68; e += 2) {
            double v = random_magnitude(e);
            if (fmt == 0)
                conversion_line(0, u_of((float)v));
            else
                conversion_line(1, u64_of(v));
        }
    }
    printf("};\n\n");
}

/* Integer to float: 64-bit values whose rounding is delicate. Kinds: 0 int,
 * 1 unsigned, 2 long long, 3 unsigned long long. */

static void int_to_float_line(int kind, uint64_t v) {
    float f = 0;
    double d = 0;
    volatile int32_t si = (int32_t)v;
    volatile uint32_t ui = (uint32_t)v;
    volatile long long sl = (long long)v;
    volatile unsigned long long ul = v;
    switch (kind) {
    case 0: f = si; d = si; break;
    case 1: f = ui; d = ui; break;
    case 2: f = sl; d = sl; break;
    default: f = ul; d = ul; break;
    }
    printf("{%d,0x%016llxull,0x%08lx,0x%016llxull},\n", kind, (unsigned long long)v,
           (unsigned long)u_of(f), (unsigned long long)u64_of(d));
}

static void int_to_float(void) {
    static const uint64_t values[] = {
        0,
        1,
        0xffffffffffffffffull,
        0x0000000001000001ull, /* 2^24 + 1: a tie for single */
        0x0000000001000003ull,
        0x000000007fffffffull,
        0x0000000080000000ull,
        0x00000000ffffffffull,
        0x00000000ffffff7full,
        0x00000000ffffff80ull,
        0x0020000000000001ull, /* 2^53 + 1: a tie for double */
        0x0020000000000003ull,
        0x7fffffffffffffffull,
        0x8000000000000000ull,
        0x8000000000000001ull,
        0x0000010000008000ull, /* ties for single above 2^32 */
        0x0000010000008001ull,
        0x0000010000018000ull,
        0x4000000000000400ull,
        0x4000000000000401ull,
        0x4000000000000c00ull,
        0xfffffffffffff800ull,
        0xfffffffffffffc00ull,
        0xffffff7fffffffffull,
        0xffffff8000000000ull,
        0xffffff8000000001ull};
    printf("static const RefIntToFloat ref_int_to_float[] = {\n");
    for (int kind = 0; kind < 4; kind++) {
        for (size_t i = 0; i < COUNT(values); i++)
            if (kind >= 2 || values[i] <= 0xffffffffu)
                int_to_float_line(kind, values[i]);
        for (int i = 0; i < 24; i++) {
            uint64_t v = next() >> (next() % 40);
            int_to_float_line(kind, kind < 2 ? (uint32_t)v : v);
        }
    }
    printf("};\n\n");
}

/* Floating-point operations and their NaN results. */

static uint32_t single_op(char op, uint32_t a, uint32_t b) {
    volatile float x = f_of(a), y = f_of(b);
    switch (op) {
    case '+': return u_of(x + y);
    case '-': return u_of(x - y);
    case '*': return u_of(x * y);
    case '/': return u_of(x / y);
    default: return u_of(sqrtf(x));
    }
}

static uint64_t double_op(char op, uint64_t a, uint64_t b) {
    volatile double x = d_of(a), y = d_of(b);
    switch (op) {
    case '+': return u64_of(x + y);
    case '-': return u64_of(x - y);
    case '*': return u64_of(x * y);
    case '/': return u64_of(x / y);
    default: return u64_of(sqrt(x));
    }
}

/* Quiet and signalling NaNs of both signs with distinct payloads, the
 * numbers that make NaN from numbers, and a few ordinary ones. */
static const uint32_t single_operands[] = {
    0x00000000, 0x80000000, 0x3f800000, 0xbf800000, 0x40400000, 0x00000001, 0x7f7fffff,
    0x7f800000, 0xff800000, 0x7fc00000, 0x7fc00001, 0xffc00002, 0x7f800003, 0xff800004,
    0x7fbfffff};
static const uint64_t double_operands[] = {
    0x0000000000000000ull, 0x8000000000000000ull, 0x3ff0000000000000ull, 0xbff0000000000000ull,
    0x4008000000000000ull, 0x0000000000000001ull, 0x7fefffffffffffffull, 0x7ff0000000000000ull,
    0xfff0000000000000ull, 0x7ff8000000000000ull, 0x7ff8000000000001ull, 0xfff8000000000002ull,
    0x7ff0000000000003ull, 0xfff0000000000004ull, 0x7ff7ffffffffffffull};

static void float_ops(void) {
    static const char ops[] = "+-*/";
    printf("static const RefSingleOp ref_single_ops[] = {\n");
    for (int o = 0; o < 4; o++)
        for (size_t i = 0; i < COUNT(single_operands); i++)
            for (size_t j = 0; j < COUNT(single_operands); j++)
                printf("{'%c',0x%08lx,0x%08lx,0x%08lx},\n", ops[o],
                       (unsigned long)single_operands[i], (unsigned long)single_operands[j],
                       (unsigned long)single_op(ops[o], single_operands[i], single_operands[j]));
    for (size_t i = 0; i < COUNT(single_operands); i++)
        printf("{'s',0x%08lx,0,0x%08lx},\n", (unsigned long)single_operands[i],
               (unsigned long)single_op('s', single_operands[i], 0));
    for (int i = 0; i < 40; i++) {
        uint32_t a = (uint32_t)next(), b = (uint32_t)next();
        printf("{'%c',0x%08lx,0x%08lx,0x%08lx},\n", ops[i % 4], (unsigned long)a,
               (unsigned long)b, (unsigned long)single_op(ops[i % 4], a, b));
        printf("{'s',0x%08lx,0,0x%08lx},\n", (unsigned long)a,
               (unsigned long)single_op('s', a, 0));
    }
    printf("};\n\n");
    printf("static const RefDoubleOp ref_double_ops[] = {\n");
    for (int o = 0; o < 4; o++)
        for (size_t i = 0; i < COUNT(double_operands); i++)
            for (size_t j = 0; j < COUNT(double_operands); j++)
                printf("{'%c',0x%016llxull,0x%016llxull,0x%016llxull},\n", ops[o],
                       (unsigned long long)double_operands[i],
                       (unsigned long long)double_operands[j],
                       (unsigned long long)double_op(ops[o], double_operands[i],
                                                     double_operands[j]));
    for (size_t i = 0; i < COUNT(double_operands); i++)
        printf("{'s',0x%016llxull,0,0x%016llxull},\n", (unsigned long long)double_operands[i],
               (unsigned long long)double_op('s', double_operands[i], 0));
    for (int i = 0; i < 40; i++) {
        uint64_t a = next(), b = next();
        printf("{'%c',0x%016llxull,0x%016llxull,0x%016llxull},\n", ops[i % 4],
               (unsigned long long)a, (unsigned long long)b,
               (unsigned long long)double_op(ops[i % 4], a, b));
        printf("{'s',0x%016llxull,0,0x%016llxull},\n", (unsigned long long)a,
               (unsigned long long)double_op('s', a, 0));
    }
    printf("};\n\n");
}

static void widen_narrow(void) {
    static const uint32_t singles[] = {
        0x00000000, 0x80000000, 0x3f800000, 0x00000001, 0x807fffff, 0x7f7fffff, 0x7f800000,
        0xff800000, 0x7fc00000, 0xffc00000, 0x7fc00001, 0xffe54321, 0x7f800001, 0xff812345,
        0x7fbfffff, 0x7fffffff, 0xffffffff};
    static const uint64_t doubles[] = {
        0x0000000000000000ull, 0x8000000000000000ull, 0x3ff0000000000000ull,
        0x3ff0000010000000ull /* a tie: to even, down */, 0x3ff0000030000000ull /* up */,
        0x3ff0000010000001ull, 0x47efffffe0000000ull /* FLT_MAX */,
        0x47efffffefffffffull /* just under halfway to 2^128: FLT_MAX */,
        0x47effffff0000000ull /* halfway: rounds to even, which overflows */,
        0x47f0000000000000ull, 0x7fefffffffffffffull, 0x3810000000000000ull /* FLT_MIN */,
        0x36a0000000000000ull /* the smallest denormal single */, 0x3690000000000000ull,
        0x3690000000000001ull, 0x0000000000000001ull, 0x800fffffffffffffull,
        0x7ff0000000000000ull, 0xfff0000000000000ull, 0x7ff8000000000000ull,
        0xfff8000000000000ull, 0x7ff8000000000001ull, 0x7ff8000020000000ull,
        0xfffc000000000000ull, 0x7ff0000000000001ull, 0x7ff0000020000000ull,
        0xfff4000000000000ull, 0x7fffffffffffffffull, 0xffffffffffffffffull};
    printf("static const RefWiden ref_widen[] = {\n");
    for (size_t i = 0; i < COUNT(singles); i++) {
        volatile float f = f_of(singles[i]);
        double d = f;
        printf("{0x%08lx,0x%016llxull},\n", (unsigned long)singles[i],
               (unsigned long long)u64_of(d));
    }
    printf("};\n\n");
    printf("static const RefNarrow ref_narrow[] = {\n");
    for (size_t i = 0; i < COUNT(doubles); i++) {
        volatile double d = d_of(doubles[i]);
        float f = (float)d;
        printf("{0x%016llxull,0x%08lx},\n", (unsigned long long)doubles[i],
               (unsigned long)u_of(f));
    }
    /* Random values around the single range, denormals and overflow included. */
    for (int i = 0; i < 30; i++) {
        uint64_t e = 1023 - 155 + next() % 290;
        uint64_t bits = (next() & 0x800fffffffffffffull) | e << 52;
        volatile double d = d_of(bits);
        float f = (float)d;
        printf("{0x%016llxull,0x%08lx},\n", (unsigned long long)bits, (unsigned long)u_of(f));
    }
    printf("};\n");
}

int main(void) {
    printf("// Generated by tests/unit/gen/target_arith_ref.c, run on the target (see there).\n"
           "// Do not edit.\n\n");
    shifts();
    divisions();
    conversions();
    int_to_float();
    float_ops();
    widen_narrow();
    return 0;
}
