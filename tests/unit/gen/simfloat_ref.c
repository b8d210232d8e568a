/* What the target computes at run time, for the floating-point simulation's
 * tests: run once on the target, its output is tests/unit/gen/simfloat_ref.inc.
 *
 *   arm-linux-gnueabihf-gcc -O0 -static -o simfloat_ref simfloat_ref.c -lm
 *   qemu-arm ./simfloat_ref > simfloat_ref.inc
 *
 * (tests/unit/gen/simfloat_ref.sh does both.) Every operand is read through a
 * volatile, so that the compiler folds nothing: each result comes from the
 * target's floating-point unit (VFP, round to nearest even, no flush to zero,
 * default NaN off), its run-time library and its C library. Operands are
 * fixed lists and a seeded generator, so the output is the same at each run.
 */
#include <float.h>
#include <limits.h>
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static float f_of(uint32_t u) { float f; memcpy(&f, &u, 4); return f; }
static uint32_t u_of(float f) { uint32_t u; memcpy(&u, &f, 4); return u; }
static double d_of(uint64_t u) { double d; memcpy(&d, &u, 8); return d; }
static uint64_t u64_of(double d) { uint64_t u; memcpy(&u, &d, 8); return u; }

static uint64_t rng = 0x9E3779B97F4A7C15ull;
static uint64_t next(void) {
    rng ^= rng << 13;
    rng ^= rng >> 7;
    rng ^= rng << 17;
    return rng;
}
static int range(int lo, int hi) { return lo + (int)(next() % (uint64_t)(hi - lo + 1)); }

/* A format: 0 single, 1 double. Values travel as 64-bit patterns. */
static int mant_bits(int fmt) { return fmt ? 52 : 23; }
static int bias(int fmt) { return fmt ? 1023 : 127; }
static int max_biased(int fmt) { return fmt ? 2046 : 254; }

/* Random sign and fraction, exponent in [lo, hi]; below the normal range it
 * becomes a denormal. */
static uint64_t random_value(int fmt, int lo, int hi) {
    int e = range(lo, hi) + bias(fmt);
    uint64_t frac = next() & ((1ull << mant_bits(fmt)) - 1);
    uint64_t sign = next() & 1;
    if (e < 0) e = 0;
    if (e > max_biased(fmt)) e = max_biased(fmt);
    return sign << (mant_bits(fmt) + (fmt ? 11 : 8)) | (uint64_t)e << mant_bits(fmt) | frac;
}

static uint64_t binary_op(int fmt, char op, uint64_t a, uint64_t b) {
    if (fmt == 0) {
        volatile float x = f_of((uint32_t)a), y = f_of((uint32_t)b);
        float r = 0;
        switch (op) {
        case '+': r = x + y; break;
        case '-': r = x - y; break;
        case '*': r = x * y; break;
        case '/': r = x / y; break;
        case 'n': r = -x; break;
        }
        return u_of(r);
    } else {
        volatile double x = d_of(a), y = d_of(b);
        double r = 0;
        switch (op) {
        case '+': r = x + y; break;
        case '-': r = x - y; break;
        case '*': r = x * y; break;
        case '/': r = x / y; break;
        case 'n': r = -x; break;
        }
        return u64_of(r);
    }
}

static unsigned compare_mask(int fmt, uint64_t a, uint64_t b) {
    unsigned m = 0;
    if (fmt == 0) {
        volatile float x = f_of((uint32_t)a), y = f_of((uint32_t)b);
        m = (x == y) | (x != y) << 1 | (x < y) << 2 | (x <= y) << 3 | (x > y) << 4 | (x >= y) << 5;
    } else {
        volatile double x = d_of(a), y = d_of(b);
        m = (x == y) | (x != y) << 1 | (x < y) << 2 | (x <= y) << 3 | (x > y) << 4 | (x >= y) << 5;
    }
    return m;
}

static const uint32_t single_specials[] = {
    0x00000000, 0x80000000, 0x3f800000, 0xbf800000, 0x3fc00000, 0x40400000, 0x3dcccccd,
    0x3f800001, 0x33800000, 0x33400000, 0x00000001, 0x00400000, 0x007fffff, 0x00800000,
    0x7f7fffff, 0xff7fffff, 0x7f800000, 0xff800000, 0x7fc00000, 0xffc00000};
static const uint64_t double_specials[] = {
    0x0000000000000000ull, 0x8000000000000000ull, 0x3ff0000000000000ull, 0xbff0000000000000ull,
    0x3ff8000000000000ull, 0x4008000000000000ull, 0x3fb999999999999aull, 0x3ff0000000000001ull,
    0x3ca0000000000000ull, 0x3c98000000000000ull, 0x0000000000000001ull, 0x0008000000000000ull,
    0x000fffffffffffffull, 0x0010000000000000ull, 0x7fefffffffffffffull, 0xffefffffffffffffull,
    0x7ff0000000000000ull, 0xfff0000000000000ull, 0x7ff8000000000000ull, 0xfff8000000000000ull};

/* Operands whose exact result is a hair from a halfway point between two
 * doubles: rounding to nearest at 81 or 96 bits first, then to double, goes
 * wrong on them (found with exact rationals by find_hard_cases.py). */
static const uint64_t double_hard[][2] = {
    {0x3ff0000000000000ull, 0x3ca0000000000001ull}, /* 1 + (2^-53 + 2^-105) */
    {0x4340000000000000ull, 0x3ff0000000000001ull}, /* 2^53 + (1 + 2^-52) */
    {0x3ff6b7f3c9e9c617ull, 0x3ff84a1534d6df09ull}, {0x3ff97c07dc2574bdull, 0x3ff4ad0590cca7eaull},
    {0x3ff53d04c74803e3ull, 0x3ffd6c23092f5947ull}, {0x3ffb4e0593ea5c4full, 0x3ff535ccc8f5e6acull},
    {0x3ff0bad0413f191aull, 0x3ff9fbf1060cea63ull}, {0x3ff26b731609f25bull, 0x3ff8877536891eebull},
    {0x3ff41c5edbbf0020ull, 0x3ff454c17d2186d3ull}, {0x3ff170a01865b251ull, 0x3ff4c938c6b5a1c7ull}};
/* 1 - (2^-54 + 2^-106): just below the halfway point under 1. */
static const uint64_t double_hard_sub[2] = {0x3ff0000000000000ull, 0x3c90000000000001ull};

static void print_op(int fmt, char op, uint64_t a, uint64_t b) {
    uint64_t r = binary_op(fmt, op, a, b);
    if (fmt == 0)
        printf("{'%c',0x%08llx,0x%08llx,0x%08llx},\n", op, (unsigned long long)a,
               (unsigned long long)b, (unsigned long long)r);
    else
        printf("{'%c',0x%016llxull,0x%016llxull,0x%016llxull},\n", op, (unsigned long long)a,
               (unsigned long long)b, (unsigned long long)r);
}

/* b near a: the difference cancels. */
static uint64_t nearby(int fmt, uint64_t a) {
    int k = range(1, mant_bits(fmt));
    return a ^ (next() & ((1ull << k) - 1));
}

static void random_ops(int fmt, char op) {
    int emin = fmt ? -1022 : -126, emax = fmt ? 1023 : 127;
    int half = emax / 2 + 2;
    for (int i = 0; i < 40; i++) {
        uint64_t a = 0, b = 0;
        switch (i % 5) {
        case 0: /* ordinary rounding */
            a = random_value(fmt, -3, 3);
            b = random_value(fmt, -3, 3);
            if (op == '+' || op == '-') b = random_value(fmt, -30, 3);
            break;
        case 1: /* cancellation */
            a = random_value(fmt, -3, 3);
            b = nearby(fmt, a);
            break;
        case 2: /* results among the denormals */
            if (op == '+' || op == '-') {
                a = random_value(fmt, emin - 3, emin + 1);
                b = random_value(fmt, emin - 3, emin + 1);
            } else if (op == '*') {
                a = random_value(fmt, emin / 2 - 15, emin / 2);
                b = random_value(fmt, emin / 2 - 15, emin / 2);
            } else {
                a = random_value(fmt, emin + 2, emin + 20);
                b = random_value(fmt, 5, 30);
            }
            break;
        case 3: /* results near overflow */
            if (op == '+' || op == '-') {
                a = random_value(fmt, emax - 1, emax);
                b = random_value(fmt, emax - 2, emax);
            } else if (op == '*') {
                a = random_value(fmt, half - 3, half);
                b = random_value(fmt, half - 3, half);
            } else {
                a = random_value(fmt, emax - 5, emax);
                b = random_value(fmt, -5, 0);
            }
            break;
        default: /* any pattern */
            a = fmt ? next() : next() & 0xffffffffu;
            b = fmt ? next() : next() & 0xffffffffu;
            break;
        }
        print_op(fmt, op, a, b);
    }
}

static void ops(int fmt) {
    static const char all_ops[] = "+-*/";
    int n = sizeof single_specials / sizeof single_specials[0];
    printf("static const Ref%sOp ref_%s_ops[] = {\n", fmt ? "Double" : "Single",
           fmt ? "double" : "single");
    for (int o = 0; o < 4; o++)
        for (int i = 0; i < n; i++)
            for (int j = 0; j < n; j++)
                print_op(fmt, all_ops[o], fmt ? double_specials[i] : single_specials[i],
                         fmt ? double_specials[j] : single_specials[j]);
    for (int i = 0; i < n; i++)
        print_op(fmt, 'n', fmt ? double_specials[i] : single_specials[i], 0);
    if (fmt == 0) {
        print_op(0, '+', 0x3f800000, 0x33800000); /* 1 + 2^-24: the tie goes to 1 */
        print_op(0, '+', 0x3f800000, 0x33400000); /* 1 + 3 * 2^-25 */
        print_op(0, '+', 0x3f800001, 0x33800000); /* the tie goes up to even */
    } else {
        for (size_t i = 0; i < sizeof double_hard / sizeof double_hard[0]; i++)
            print_op(1, i < 2 ? '+' : i < 6 ? '*' : '/', double_hard[i][0], double_hard[i][1]);
        print_op(1, '-', double_hard_sub[0], double_hard_sub[1]);
    }
    for (int o = 0; o < 4; o++)
        random_ops(fmt, all_ops[o]);
    printf("};\n\n");

    printf("static const Ref%sCompare ref_%s_compares[] = {\n", fmt ? "Double" : "Single",
           fmt ? "double" : "single");
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) {
            uint64_t a = fmt ? double_specials[i] : single_specials[i];
            uint64_t b = fmt ? double_specials[j] : single_specials[j];
            printf(fmt ? "{0x%016llxull,0x%016llxull,0x%02x},\n" : "{0x%08llx,0x%08llx,0x%02x},\n",
                   (unsigned long long)a, (unsigned long long)b, compare_mask(fmt, a, b));
        }
    printf("};\n\n");
}

static const char* const texts[] = {
    "0.1", "1e23", "2.2250738585072011e-308", "2.2250738585072012e-308", "4.9e-324",
    "2.4703282292062327e-324", "2.4703282292062328e-324", "3.4028235677973366e38",
    "3.4028234663852886e38", "3.40282356779733661637539395458142568448e38", "1.7976931348623157e308",
    "1.7976931348623158e308", "1.7976931348623159e308", "9007199254740993", "9007199254740995",
    "1.00000005960464477550", "1.0000000596046447753906250", "1.00000005960464477539062499",
    "7.038531e-26", "1.4e-45", "7.006492321624085e-46", "7.0064923216240854e-46", "1e-400", "1e400",
    "-0.0", "0", "123456789012345678901234567890", "0.000000000000000000000000000001234",
    "1.00000000000000011102230246251565404236316680908203125",
    "1.00000000000000011102230246251565404236316680908203125000000000000000000000001",
    "1.00000000000000011102230246251565404236316680908203124999999999999999999999999",
    "2.22507385850720113605740979670913197593481954635164564802342610972482222202107694551652952"
    "39081350879141491589130396211068700864386945946455276572074078206217433799881410632673292535522"
    "86881372149012981122451451889849057222307285255133155755015914397476397983411801999323962548289"
    "01710708185069063066665599493827577257201576306269066333264756530000924588831643303777979186961"
    "20494973903778297049050510806099407302629371289589500035837999672072543043602840788957717961509"
    "45516748243471030702609144621572289880258182545180325707018860872113128079512233426288368622321"
    "50377566662250398253433597456888442390026549819838548794829220689472168983109969836584681402285"
    "42433306603398508864458040010349339704275671864433837704860378616227717385456230658746790140867"
    "233276367187499999e-308",
    "0x1p-1074", "0x1p-1075", "0x1.8p-1075", "0x1.fffffffffffff8p1023", "0x1.fffffffffffff7ffffp1023",
    "0x1.000001p0", "0x1.0000010000001p0", "0x1.0000008p0", "0X1.8P+1", "0x.8p1", "0x10",
    "1.5f", "2.5L", "  42.0  ", "1e-7", "6.103515625e-05", "3.0517578125e-05", "0.3", "2.5e-39",
    "1.17549435e-38", "1.1754942e-38", "5e-324", "8.98846567431158e307", "4.4501477170144023e-308",
    "179769313486231580793728971405303415079934132710037826936173778980444968292764750946649017977587"
    "207096330286416692887910946555547851940402630657488671505820681908902000708383676273854845817711"
    "531764475730270069855571366959622842914819860834936475292719074168444365510704342711559699508093"
    "042880177904174497791.9999999999999999999999999999999999999999999999999999999999999999999999",
    "inf", "-Infinity", "nan", "-nan"};

static void print_text(const char* s) {
    volatile const char* vs = s;
    float f = strtof((const char*)vs, NULL);
    double d = strtod((const char*)vs, NULL);
    printf("{\"%s\",0x%08lx,0x%016llxull},\n", s, (unsigned long)u_of(f),
           (unsigned long long)u64_of(d));
}

static void text_cases(void) {
    printf("static const RefText ref_texts[] = {\n");
    for (size_t i = 0; i < sizeof texts / sizeof texts[0]; i++)
        print_text(texts[i]);
    /* Random decimals: 9 digits for single, 17 to 20 for double, exponents
     * over the whole range, the denormals included. */
    for (int i = 0; i < 160; i++) {
        char buf[64];
        int digits = i % 2 ? 9 : range(17, 20);
        int pos = 0;
        buf[pos++] = (char)('1' + next() % 9);
        buf[pos++] = '.';
        for (int k = 1; k < digits; k++)
            buf[pos++] = (char)('0' + next() % 10);
        sprintf(buf + pos, "e%d", i % 2 ? range(-46, 39) : range(-324, 308));
        print_text(buf);
    }
    printf("};\n\n");
}

/* Kinds of integers: 0 int, 1 unsigned, 2 long long, 3 unsigned long long,
 * 4 short, 5 unsigned char, 6 _Bool. */
static void int_to_float(int kind, uint64_t v) {
    float f = 0;
    double d = 0;
    switch (kind) {
    case 0: { volatile int32_t x = (int32_t)v; f = x; d = x; break; }
    case 1: { volatile uint32_t x = (uint32_t)v; f = x; d = x; break; }
    case 2: { volatile int64_t x = (int64_t)v; f = x; d = x; break; }
    default: { volatile uint64_t x = v; f = x; d = x; break; }
    }
    printf("{%d,0x%016llxull,0x%08lx,0x%016llxull},\n", kind, (unsigned long long)v,
           (unsigned long)u_of(f), (unsigned long long)u64_of(d));
}

static void int_cases(void) {
    static const int32_t i32[] = {0, 1, -1, INT_MAX, INT_MIN, 16777217, -16777217, 16777219,
                                  33554435, 0x7fffffbf, 0x7fffffc0, -0x7fffffc0, 123456789};
    static const uint32_t u32[] = {0xffffffffu, 0x80000000u, 0xffffff7fu, 0xffffff80u,
                                   0x80000081u, 0x80000080u, 0x01000001u};
    static const int64_t i64[] = {LLONG_MIN, LLONG_MAX, (1ll << 53) + 1, (1ll << 53) + 3,
                                  -((1ll << 53) + 1), (1ll << 62) + (1ll << 38) + 1,
                                  (1ll << 62) + (1ll << 38), 0x7ffffffffffffdffll,
                                  0x7ffffffffffffe00ll, (1ll << 24) + 1, -1};
    static const uint64_t u64[] = {ULLONG_MAX, 1ull << 63, ~0ull - 1023, ~0ull - 1024,
                                   (1ull << 63) + 1025, (1ull << 63) + 1024};
    printf("static const RefIntToFloat ref_int_to_float[] = {\n");
    for (size_t i = 0; i < sizeof i32 / sizeof i32[0]; i++) int_to_float(0, (uint64_t)(int64_t)i32[i]);
    for (size_t i = 0; i < sizeof u32 / sizeof u32[0]; i++) int_to_float(1, u32[i]);
    for (size_t i = 0; i < sizeof i64 / sizeof i64[0]; i++) int_to_float(2, (uint64_t)i64[i]);
    for (size_t i = 0; i < sizeof u64 / sizeof u64[0]; i++) int_to_float(3, u64[i]);
    for (int i = 0; i < 30; i++) {
        int bits = range(20, 64);
        uint64_t v = next() >> (64 - bits);
        int kind = i % 4;
        int_to_float(kind, kind == 0 ? (uint64_t)(int64_t)(int32_t)v : kind == 1 ? (uint32_t)v : v);
    }
    printf("};\n\n");
}

/* Whether the truncated value fits the kind; comparisons in double, exact for
 * every float and for these bounds. */
static int fits(int kind, double v) {
    if (v != v) return kind == 6;
    switch (kind) {
    case 0: return v > -2147483649.0 && v < 2147483648.0;
    case 1: return v > -1.0 && v < 4294967296.0;
    case 2: return v >= -9223372036854775808.0 && v < 9223372036854775808.0;
    case 3: return v > -1.0 && v < 18446744073709551616.0;
    case 4: return v > -32769.0 && v < 32768.0;
    case 5: return v > -1.0 && v < 256.0;
    default: return 1;
    }
}

static void float_to_int(int fmt, uint64_t bits) {
    volatile double vd = fmt ? d_of(bits) : 0;
    volatile float vf = fmt ? 0 : f_of((uint32_t)bits);
    double v = fmt ? vd : (double)vf;
    for (int kind = 0; kind < 7; kind++) {
        int64_t r = 0;
        if (!fits(kind, v)) continue;
        switch (kind) {
        case 0: r = fmt ? (int32_t)vd : (int32_t)vf; break;
        case 1: r = fmt ? (uint32_t)vd : (uint32_t)vf; break;
        case 2: r = fmt ? (int64_t)vd : (int64_t)vf; break;
        case 3: r = (int64_t)(fmt ? (uint64_t)vd : (uint64_t)vf); break;
        case 4: r = fmt ? (short)vd : (short)vf; break;
        case 5: r = fmt ? (unsigned char)vd : (unsigned char)vf; break;
        default: r = fmt ? (_Bool)vd : (_Bool)vf; break;
        }
        printf("{%d,0x%016llxull,%d,0x%016llxull},\n", fmt, (unsigned long long)bits, kind,
               (unsigned long long)r);
    }
}

static void float_int_cases(void) {
    static const double ds[] = {0.0, -0.0, 0.9, -0.9, 1.5, -1.5, 2147483647.0, 2147483647.9,
                                -2147483648.0, -2147483648.9, 4294967295.0, 4294967295.5, 9.2e18,
                                -9.2e18, 9223372036854774784.0, -9223372036854775808.0,
                                18446744073709549568.0, 4.9e-324, -1e-300, 123456.789, 32767.99,
                                -32768.5, 255.9, 1e300};
    static const float fs[] = {16777216.0f, 2147483520.0f, 4294967040.0f, -2147483648.0f, 0.5f,
                               9.223371487e18f, -0.0f, 1e-45f, 65535.5f};
    printf("static const RefFloatToInt ref_float_to_int[] = {\n");
    for (size_t i = 0; i < sizeof ds / sizeof ds[0]; i++) float_to_int(1, u64_of(ds[i]));
    for (size_t i = 0; i < sizeof fs / sizeof fs[0]; i++) float_to_int(0, u_of(fs[i]));
    float_to_int(1, 0x7ff8000000000000ull);
    float_to_int(0, 0xffc00000u);
    float_to_int(1, 0xfff0000000000000ull);
    for (int i = 0; i < 24; i++)
        float_to_int(i % 2, random_value(i % 2, -3, 66));
    printf("};\n\n");
}

static void narrow(uint64_t d) {
    volatile double x = d_of(d);
    float f = (float)x;
    printf("{0x%016llxull,0x%08lx},\n", (unsigned long long)d, (unsigned long)u_of(f));
}

static void format_cases(void) {
    static const uint64_t ds[] = {
        0x3ff0000010000000ull, /* 1 + 2^-24: the tie goes to 1 */
        0x3ff0000010000001ull, 0x3ff0000030000000ull, 0x47efffffe0000000ull,
        0x47efffffefffffffull, 0x47effffff0000000ull, /* FLT_MAX and the tie above it */
        0x36a0000000000000ull, /* 2^-149 */
        0x3690000000000000ull, /* 2^-150: the tie goes to 0 */
        0x3690000000000001ull, 0x3698000000000000ull, 0x36a8000000000000ull,
        0x3810000000000000ull, 0x380fffffffffffffull, 0x380ffffff0000000ull,
        0x380fffffe0000000ull, 0x0000000000000001ull, 0x8000000000000001ull,
        0x7ff8000000000000ull, 0xfff8000000000000ull, 0x7ff0000000000000ull,
        0xfff0000000000000ull, 0x7fefffffffffffffull, 0x8000000000000000ull};
    printf("static const RefNarrow ref_narrow[] = {\n");
    for (size_t i = 0; i < sizeof ds / sizeof ds[0]; i++) narrow(ds[i]);
    for (int i = 0; i < 40; i++) narrow(random_value(1, -152, 129));
    printf("};\n\n");
    printf("static const RefWiden ref_widen[] = {\n");
    for (size_t i = 0; i < sizeof single_specials / sizeof single_specials[0]; i++) {
        volatile float x = f_of(single_specials[i]);
        double d = x;
        printf("{0x%08lx,0x%016llxull},\n", (unsigned long)single_specials[i],
               (unsigned long long)u64_of(d));
    }
    printf("};\n\n");
}

static void math1(const char* name, double (*fn)(double), double x) {
    volatile double v = x;
    printf("{\"%s\",0x%016llxull,0,0x%016llxull},\n", name, (unsigned long long)u64_of(v),
           (unsigned long long)u64_of(fn(v)));
}
static void math2(const char* name, double (*fn)(double, double), double x, double y) {
    volatile double v = x, w = y;
    printf("{\"%s\",0x%016llxull,0x%016llxull,0x%016llxull},\n", name,
           (unsigned long long)u64_of(v), (unsigned long long)u64_of(w),
           (unsigned long long)u64_of(fn(v, w)));
}

static void math_cases(void) {
    static const double e_args[] = {0.5, 1, -1, 10, 700, -700, 1e-10, -2.5, 0.693};
    static const double l_args[] = {0.5, 2, 10, 1e-300, 1e300, 1.0000001, 0.7, 1.5, 3e-320};
    static const double t_args[] = {0.5, 1, 3, 100, -2, 1e-5, 0.785, 1.57, 10.5};
    static const double a_args[] = {0.5, -0.9, 1e-8, 0.99999, -0.3, 0.75};
    static const double at_args[] = {0.5, 2, -100, 1e10, 1e-7, -0.8};
    static const double h_args[] = {0.1, 1, -5, 20, 0.001, -0.7};
    static const double s_args[] = {2, 1e-300, 0.5, 3, 1e300, 4.9e-324};
    printf("static const RefMath ref_math[] = {\n");
    for (size_t i = 0; i < sizeof e_args / sizeof e_args[0]; i++) math1("exp", exp, e_args[i]);
    for (size_t i = 0; i < sizeof l_args / sizeof l_args[0]; i++) {
        math1("log", log, l_args[i]);
        math1("log10", log10, l_args[i]);
    }
    for (size_t i = 0; i < sizeof t_args / sizeof t_args[0]; i++) {
        math1("sin", sin, t_args[i]);
        math1("cos", cos, t_args[i]);
        math1("tan", tan, t_args[i]);
    }
    for (size_t i = 0; i < sizeof a_args / sizeof a_args[0]; i++) {
        math1("asin", asin, a_args[i]);
        math1("acos", acos, a_args[i]);
    }
    for (size_t i = 0; i < sizeof at_args / sizeof at_args[0]; i++) math1("atan", atan, at_args[i]);
    for (size_t i = 0; i < sizeof h_args / sizeof h_args[0]; i++) {
        math1("sinh", sinh, h_args[i]);
        math1("cosh", cosh, h_args[i]);
        math1("tanh", tanh, h_args[i]);
    }
    for (size_t i = 0; i < sizeof s_args / sizeof s_args[0]; i++) math1("sqrt", sqrt, s_args[i]);
    math2("pow", pow, 2, 0.5);
    math2("pow", pow, 10, -3);
    math2("pow", pow, 1.5, 100);
    math2("pow", pow, -2, 3);
    math2("pow", pow, 0.5, -1000.5);
    math2("pow", pow, 7, 1.0 / 3);
    math2("atan2", atan2, 1, 1);
    math2("atan2", atan2, 1, -1);
    math2("atan2", atan2, -1, -1);
    math2("atan2", atan2, 0.5, -3);
    math2("atan2", atan2, 3, 4);
    math2("atan2", atan2, -0.0, -1);
    {
        static const double fm[][2] = {{5.5, 2}, {-5.5, 2}, {1e300, 3}, {4.9e-324, 1e-320},
                                       {7, -0.75}, {1e-300, 1e300}, {-0.0, 1}, {6, 3},
                                       {1e308, 1e-308}, {0x1p60 + 1, 0x1p-40}};
        static const double in[] = {-2.5, 2.5, -0.5, 0.5, 1e300, -1e-300, 4503599627370497.0,
                                    2.4999999999999996, -0.0, 1.5, -3.75, 0x1.fffffffffffffp51};
        for (size_t i = 0; i < sizeof fm / sizeof fm[0]; i++) math2("fmod", fmod, fm[i][0], fm[i][1]);
        for (size_t i = 0; i < sizeof in / sizeof in[0]; i++) {
            math1("floor", floor, in[i]);
            math1("ceil", ceil, in[i]);
            math1("round", round, in[i]);
            math1("trunc", trunc, in[i]);
        }
        math2("fmax", fmax, -0.0, 0.0);
        math2("fmax", fmax, 0.0, -0.0);
        math2("fmin", fmin, 0.0, -0.0);
        math2("fmin", fmin, -0.0, 0.0);
        math2("fmax", fmax, NAN, 1);
        math2("fmin", fmin, 2, NAN);
        math2("fmax", fmax, 1, 2);
        math2("fmin", fmin, 1, 2);
    }
    printf("};\n\n");
}

static void print_case(const char* fmt, uint64_t bits) {
    char buf[512];
    volatile double v = d_of(bits);
    snprintf(buf, sizeof buf, fmt, v);
    printf("{\"%s\",0x%016llxull,\"%s\"},\n", fmt, (unsigned long long)bits, buf);
}

static void print_cases(void) {
    static const double hex_values[] = {1.0, 3.0, 0.1, -2.5, DBL_MAX, DBL_MIN, 1e300, 1.0 / 3,
                                        0x1p-1000, 123456.789, 0.0, -0.0, 3.141592653589793,
                                        (double)0.1f, 1e-300, 65536.0};
    static const double dec_values[] = {0.1, 1.0 / 3, 4.9e-324, DBL_MAX, 2.2250738585072014e-308,
                                        123456.789, 1e23, 5e-324, 0.3, 1e21, 9007199254740993.0,
                                        (double)1e-45f, (double)3.4028235e38f};
    printf("static const RefPrint ref_prints[] = {\n");
    for (size_t i = 0; i < sizeof hex_values / sizeof hex_values[0]; i++) {
        print_case("%a", u64_of(hex_values[i]));
        print_case("%.3a", u64_of(hex_values[i]));
    }
    for (size_t i = 0; i < sizeof dec_values / sizeof dec_values[0]; i++) {
        print_case("%.17g", u64_of(dec_values[i]));
        print_case("%.25e", u64_of(dec_values[i]));
    }
    print_case("%.0f", u64_of(0.5));
    print_case("%.0f", u64_of(1.5));
    print_case("%.0f", u64_of(2.5));
    print_case("%.2f", u64_of(0.125));
    print_case("%.2f", u64_of(0.375));
    print_case("%.1f", u64_of(0.05));
    print_case("%f", u64_of(1e20));
    print_case("%.3f", u64_of(-0.0005));
    print_case("%.0e", u64_of(15.0));
    print_case("%.0e", u64_of(25.0));
    print_case("%e", u64_of(0.0));
    print_case("%g", u64_of(0.0));
    print_case("%g", u64_of(100000.0));
    print_case("%g", u64_of(1000000.0));
    print_case("%g", u64_of(1e-5));
    print_case("%g", u64_of(0.0001));
    print_case("%.3g", u64_of(999.5));
    print_case("%.3g", u64_of(0.0009995));
    print_case("%G", u64_of(1e-10));
    print_case("%12.4f", u64_of(-3.14159));
    print_case("%E", u64_of(DBL_MAX));
    print_case("%.10g", u64_of(1.0 / 7));
    printf("};\n");
}

int main(void) {
    printf("// Generated by tests/unit/gen/simfloat_ref.c, run on the target (see there).\n"
           "// Do not edit.\n\n");
    ops(0);
    ops(1);
    text_cases();
    int_cases();
    float_int_cases();
    format_cases();
    math_cases();
    print_cases();
    return 0;
}
