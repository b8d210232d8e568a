/* Fixed-point arithmetic in Q16.16: conversion from and to double, multiply
   and divide through 64-bit intermediates with rounding, square root by
   Newton iteration and by the bit-by-bit method, sine and cosine by CORDIC
   with a table of arctangents, and a Q16.16 Mandelbrot membership count;
   results are compared with double arithmetic. */
#include <stdio.h>

typedef int fix;

#define ONE 65536
#define FIX(x) ((fix)((x)*65536.0 + ((x) >= 0 ? 0.5 : -0.5)))

static double to_double(fix a) { return a / 65536.0; }

static fix fmul(fix a, fix b) {
    long long p = (long long)a * b;
    return (fix)((p + (1 << 15)) >> 16);
}

static fix fdiv(fix a, fix b) {
    long long n = (long long)a * 65536;
    /* Round half away from zero. */
    if ((n < 0) == (b < 0))
        n += b / 2;
    else
        n -= b / 2;
    return (fix)(n / b);
}

static fix fsqrt_newton(fix a) {
    if (a <= 0)
        return 0;
    fix x = a > ONE ? a / 2 : ONE;
    for (int i = 0; i < 20; i++) {
        fix next = (x + fdiv(a, x)) / 2;
        if (next == x)
            break;
        x = next;
    }
    return x;
}

/* Square root of a Q16.16 value bit by bit on the 64-bit radicand a << 16. */
static fix fsqrt_bits(fix a) {
    unsigned long long rem = (unsigned long long)(unsigned)a << 16, root = 0;
    unsigned long long bit = 1ull << 46;
    while (bit > rem)
        bit >>= 2;
    while (bit) {
        if (rem >= root + bit) {
            rem -= root + bit;
            root = (root >> 1) + bit;
        } else {
            root >>= 1;
        }
        bit >>= 2;
    }
    return (fix)root;
}

static const fix atan_table[16] = {51472, 30386, 16055, 8150, 4091, 2047, 1024, 512,
                                   256,   128,   64,    32,   16,   8,    4,    2};
#define CORDIC_GAIN 39797 /* 0.607252935 in Q16.16 */

/* angle in Q16.16 radians, |angle| <= pi/2 */
static void cordic(fix angle, fix *s, fix *c) {
    fix x = CORDIC_GAIN, y = 0, z = angle;
    for (int i = 0; i < 16; i++) {
        fix dx = x >> i, dy = y >> i;
        if (z >= 0) {
            x -= dy;
            y += dx;
            z -= atan_table[i];
        } else {
            x += dy;
            y -= dx;
            z += atan_table[i];
        }
    }
    *s = y;
    *c = x;
}

static int mandel(fix cr, fix ci) {
    fix zr = 0, zi = 0;
    int n;
    for (n = 0; n < 32; n++) {
        fix zr2 = fmul(zr, zr), zi2 = fmul(zi, zi);
        if (zr2 + zi2 > 4 * ONE)
            break;
        zi = 2 * fmul(zr, zi) + ci;
        zr = zr2 - zi2 + cr;
    }
    return n;
}

int main(void) {
    static const double values[] = {0.0, 1.0, -1.5, 3.14159, 100.25, -0.0001, 32767.5};
    for (int i = 0; i < 7; i++) {
        fix f = FIX(values[i]);
        printf("%10.5f -> %08x -> %.6f\n", values[i], (unsigned)f, to_double(f));
    }
    fix a = FIX(3.75), b = FIX(-1.25), c = FIX(0.1);
    printf("mul %.6f %.6f %.6f\n", to_double(fmul(a, b)), to_double(fmul(b, b)),
           to_double(fmul(c, c)));
    printf("div %.6f %.6f %.6f\n", to_double(fdiv(a, b)), to_double(fdiv(ONE, FIX(3))),
           to_double(fdiv(b, c)));
    static const double roots[] = {2.0, 0.25, 10.0, 1000.0, 30000.0, 0.01};
    for (int i = 0; i < 6; i++) {
        fix r1 = fsqrt_newton(FIX(roots[i])), r2 = fsqrt_bits(FIX(roots[i]));
        printf("sqrt(%g): newton %.5f bits %.5f diff %d\n", roots[i], to_double(r1), to_double(r2),
               r1 - r2);
    }
    for (int deg = -90; deg <= 90; deg += 30) {
        fix s, co;
        fix angle = fdiv(fmul(FIX(deg), FIX(3.14159265358979)), FIX(180));
        cordic(angle, &s, &co);
        printf("cordic %3d: sin %8.5f cos %8.5f\n", deg, to_double(s), to_double(co));
    }
    int inside = 0;
    for (int y = -12; y <= 12; y++) {
        for (int x = -20; x <= 8; x++) {
            int n = mandel(x * ONE / 10, y * ONE / 10);
            inside += n == 32;
        }
    }
    printf("mandelbrot points inside: %d\n", inside);
    for (int y = -4; y <= 4; y += 2) {
        for (int x = -20; x <= 8; x++)
            putchar(mandel(x * ONE / 10, y * ONE / 4) == 32 ? '#' : '.');
        putchar('\n');
    }
    return 0;
}
