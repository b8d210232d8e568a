/* Saturating arithmetic: add, subtract and multiply clamped to int8, int16,
   int32 and unsigned ranges without any overflow, a saturating Q15
   multiply, saturating narrowing conversions and accumulation of a ramp. */
#include <limits.h>
#include <stdio.h>

static signed char sat_add8(signed char a, signed char b) {
    int r = a + b;
    return (signed char)(r > SCHAR_MAX ? SCHAR_MAX : r < SCHAR_MIN ? SCHAR_MIN : r);
}

static short sat_sub16(short a, short b) {
    int r = a - b;
    if (r > SHRT_MAX)
        r = SHRT_MAX;
    else if (r < SHRT_MIN)
        r = SHRT_MIN;
    return (short)r;
}

static int sat_add32(int a, int b) {
    if (b > 0 && a > INT_MAX - b)
        return INT_MAX;
    if (b < 0 && a < INT_MIN - b)
        return INT_MIN;
    return a + b;
}

static int sat_mul32(int a, int b) {
    long long r = (long long)a * b;
    if (r > INT_MAX)
        return INT_MAX;
    if (r < INT_MIN)
        return INT_MIN;
    return (int)r;
}

static unsigned sat_addu32(unsigned a, unsigned b) {
    unsigned r = a + b;
    return r < a ? UINT_MAX : r;
}

static unsigned sat_subu32(unsigned a, unsigned b) { return a > b ? a - b : 0; }

static unsigned char sat_addu8(unsigned char a, unsigned char b) {
    unsigned r = (unsigned)a + b;
    return r > 255 ? 255 : (unsigned char)r;
}

static short q15_mul(short a, short b) {
    if (a == SHRT_MIN && b == SHRT_MIN)
        return SHRT_MAX;
    return (short)((a * b) >> 15);
}

static short narrow16(long long v) {
    return v > SHRT_MAX ? SHRT_MAX : v < SHRT_MIN ? SHRT_MIN : (short)v;
}

int main(void) {
    static const signed char s8[] = {0, 1, -1, 100, -100, 127, -128, 64, -65};
    for (int i = 0; i < 9; i += 2)
        printf("add8(%d,%d)=%d add8(%d,%d)=%d\n", s8[i], s8[(i + 3) % 9],
               sat_add8(s8[i], s8[(i + 3) % 9]), s8[i], s8[i], sat_add8(s8[i], s8[i]));
    static const short s16[] = {0, 32767, -32768, 20000, -20000, 1};
    for (int i = 0; i < 6; i++)
        printf("sub16(%d,%d)=%d\n", s16[i], s16[5 - i], sat_sub16(s16[i], s16[5 - i]));
    static const int s32[] = {0, INT_MAX, INT_MIN, 2000000000, -2000000000, 46341};
    for (int i = 0; i < 6; i++)
        printf("add32(%d,%d)=%d mul32(%d,%d)=%d\n", s32[i], s32[(i + 1) % 6],
               sat_add32(s32[i], s32[(i + 1) % 6]), s32[i], s32[5], sat_mul32(s32[i], s32[5]));
    printf("addu32: %u %u %u\n", sat_addu32(1u, 2u), sat_addu32(UINT_MAX, 1u),
           sat_addu32(0x80000000u, 0x7fffffffu));
    printf("subu32: %u %u\n", sat_subu32(5u, 7u), sat_subu32(7u, 5u));
    printf("addu8: %u %u\n", sat_addu8(200, 55), sat_addu8(200, 56));
    printf("q15: %d %d %d %d\n", q15_mul(16384, 16384), q15_mul(-32768, -32768),
           q15_mul(-32768, 32767), q15_mul(-1, 1));
    printf("narrow: %d %d %d\n", narrow16(1LL << 40), narrow16(-70000), narrow16(-1234));
    /* A ramp accumulated with saturation: sticks at the limit. */
    int acc = 0, stuck_at = -1;
    for (int i = 0; i < 200; i++) {
        acc = sat_add32(acc, 30000000 * (i % 7 + 1));
        if (acc == INT_MAX && stuck_at < 0)
            stuck_at = i;
    }
    printf("ramp acc=%d stuck at %d\n", acc, stuck_at);
    signed char c = 0;
    for (int i = 0; i < 40; i++)
        c = sat_add8(c, (signed char)(i % 2 ? -9 : 13));
    printf("int8 ramp %d\n", c);
    return 0;
}
