/* Conversions between every arithmetic type: integer to integer (narrowing
   by truncation, widening by sign or zero extension, signed/unsigned
   reinterpretation at the limits), floating to integer toward zero for
   values up to the limits that are defined behaviour, integer to float and
   double with rounding (2^24+1, 2^53+1, UINT_MAX, ULLONG_MAX), float to
   double and back, conversions to _Bool, and the usual arithmetic
   conversions in mixed expressions. Values come through volatile objects so
   the conversions happen at run time. */
#include <limits.h>
#include <stdio.h>

int main(void) {
    volatile long long src = 0x123456789abcdef0LL;
    signed char sc = (signed char)src;
    unsigned char uc = (unsigned char)src;
    short s = (short)src;
    unsigned short us = (unsigned short)src;
    int i = (int)src;
    unsigned u = (unsigned)src;
    long l = (long)src;
    unsigned long ul = (unsigned long)src;
    printf("narrow: %d %u %d %u %d %u %ld %lu\n", sc, uc, s, us, i, u, l, ul);

    volatile signed char msc = -128;
    volatile short ms = -32768;
    volatile int mi = INT_MIN;
    volatile unsigned char muc = 255;
    volatile unsigned short mus = 65535;
    volatile unsigned mu = UINT_MAX;
    printf("widen signed: %d %lld %u %llu\n", msc, (long long)msc, (unsigned)msc,
           (unsigned long long)msc);
    printf("widen short: %d %lld %u %llu\n", ms, (long long)ms, (unsigned)ms,
           (unsigned long long)ms);
    printf("widen int: %lld %llu %u\n", (long long)mi, (unsigned long long)mi, (unsigned)mi);
    printf("widen unsigned: %d %d %lld %lld %llu\n", muc, mus, (long long)mu, (long long)mus,
           (unsigned long long)mu);
    printf("reinterpret: %d %d %d %d\n", (signed char)muc, (short)mus, (int)mu,
           (signed char)(unsigned char)200);
    printf("chars: %d %d %u %d\n", (char)-1 == 255, (signed char)-1, (unsigned char)-1,
           (signed char)0x7f + 1);

    volatile double dvals[] = {0.0,
                               -0.0,
                               0.9999,
                               -0.9999,
                               127.9,
                               -128.9,
                               255.5,
                               32767.99,
                               -32768.99,
                               2147483647.0,
                               -2147483648.0,
                               4294967295.0,
                               1e18,
                               -9.2233720368547748e18,
                               1.8446744073709550e19};
    for (int k = 0; k < 15; k++) {
        double d = dvals[k];
        printf("%-24.17g", d);
        if (d > -129.0 && d < 128.0)
            printf(" sc=%d", (signed char)d);
        if (d > -1.0 && d < 256.0)
            printf(" uc=%u", (unsigned char)d);
        if (d > -32769.0 && d < 32768.0)
            printf(" s=%d", (short)d);
        if (d > -1.0 && d < 65536.0)
            printf(" us=%u", (unsigned short)d);
        if (d > -2147483649.0 && d < 2147483648.0)
            printf(" i=%d", (int)d);
        if (d > -1.0 && d < 4294967296.0)
            printf(" u=%u", (unsigned)d);
        if (d > -2147483649.0 && d < 2147483648.0)
            printf(" l=%ld", (long)d);
        if (d > -1.0 && d < 4294967296.0)
            printf(" ul=%lu", (unsigned long)d);
        if (d >= -9223372036854775808.0 && d < 9223372036854775808.0)
            printf(" ll=%lld", (long long)d);
        if (d > -1.0 && d < 18446744073709551616.0)
            printf(" ull=%llu", (unsigned long long)d);
        if (d > -2.0 && d < 2.0)
            printf(" b=%d", (_Bool)d);
        printf("\n");
    }
    volatile float fvals[] = {-1.5f,         2.5f,           16777216.0f,    2147483520.0f,
                              4294967040.0f, -2147483648.0f, 9.22337149e18f, 1.84467430e19f};
    for (int k = 0; k < 8; k++) {
        float f = fvals[k];
        printf("float %.9g:", f);
        if (f > -2147483904.0f && f < 2147483648.0f)
            printf(" i=%d", (int)f);
        if (f > -1.0f && f < 4294967296.0f)
            printf(" u=%u", (unsigned)f);
        if (f > -9223372036854775808.0f && f < 9223372036854775808.0f)
            printf(" ll=%lld", (long long)f);
        if (f > -1.0f && f < 18446744073709551616.0f)
            printf(" ull=%llu", (unsigned long long)f);
        printf(" s=%d\n", f > -32769.0f && f < 32768.0f ? (short)f : 0);
    }

    volatile int i24 = (1 << 24) + 1;
    volatile long long i53 = (1LL << 53) + 1;
    volatile unsigned long long umax = ULLONG_MAX;
    volatile long long lmin = LLONG_MIN, lmax = LLONG_MAX;
    volatile unsigned umax32 = UINT_MAX;
    volatile short sneg = -12345;
    volatile unsigned char ubyte = 200;
    volatile long lneg = -2147483647L - 1;
    volatile unsigned long ulmax32 = 4294967295ul;
    printf("to float: %.9g %.9g %.9g %.9g %.9g %.9g %.9g\n", (float)i24, (float)i53, (float)umax,
           (float)lmin, (float)lmax, (float)umax32, (float)sneg);
    printf("to double: %.17g %.17g %.17g %.17g %.17g %.17g\n", (double)i24, (double)i53,
           (double)umax, (double)lmin, (double)umax32, (double)ubyte);
    printf("long to floating: %.9g %.9g %.17g %.17g\n", (float)lneg, (float)ulmax32, (double)lneg,
           (double)ulmax32);
    volatile unsigned long long odd = 0x8000000000000401ull; /* rounds up in double */
    printf("round to nearest: %a %a\n", (double)odd, (double)(odd - 2));

    volatile double dd = 0.1;
    float narrowed = (float)dd;
    double widened = narrowed;
    printf("double->float->double: %.17g %a, float of 1e-50 %g, of 3e38 %g\n", widened, widened,
           (float)(dd * 1e-49), (float)(dd * 3e39));

    volatile int zero = 0, seven = 7;
    volatile double half = 0.5, nzero = -0.0;
    volatile void *vp = &seven;
    _Bool bools[] = {zero, seven, half, nzero, (_Bool)vp, (_Bool)(seven & 8), 256};
    printf("bools:");
    for (int k = 0; k < 7; k++)
        printf(" %d", bools[k]);
    _Bool bb = 1;
    bb += 1;
    printf(" inc %d", bb);
    bb = 0;
    bb -= 1;
    printf(" dec %d\n", bb);

    volatile int neg = -1;
    volatile unsigned one = 1;
    volatile long long ll = -1;
    volatile unsigned short small = 1;
    printf("mixed: %d %d %d %d\n", (unsigned)neg < one, neg < (int)one, ll < one, neg < small);
    printf("mixed values: %u %lld %d %g %g\n", neg + one, ll + one, neg * small, neg + 0.5f,
           one / 2.0);
    unsigned char c = 250;
    c += 10;
    signed char d = 100;
    d += 100;
    short sh = 30000;
    sh += 30000;
    printf("narrow compound (implementation-defined): %u %d %d\n", c, d, sh);
    enum color { RED = -1, GREEN = 5, BLUE } e = BLUE;
    printf("enum: %d %d %u\n", e, RED < GREEN, (unsigned)RED);
    return 0;
}
