/* Calls with many arguments of mixed types, more than fit in registers:
   ints, long longs after an odd number of ints, floats and doubles
   interleaved, chars and shorts, small and large structs and pointers, in
   direct calls, calls through pointers and recursive calls, with results
   of every scalar type returned; also a function declared without a
   prototype and called with promoted arguments. */
#include <stdio.h>

struct tiny {
    char c;
};

struct triple {
    int a, b, c;
};

struct wide {
    double x;
    long long y;
};

static long long mix1(int a, long long b, int c, long long d, int e, long long f) {
    return a + b * 10 + c * 100 + d * 1000 + e * 10000 + f * 100000;
}

static double mix2(float a, double b, float c, int d, double e, float f, char g, double h, short i,
                   float j) {
    return a + b * 2 + c * 3 + d * 4 + e * 5 + f * 6 + g * 7 + h * 8 + i * 9 + j * 10;
}

static int mix3(struct tiny t, struct triple tr, int k, struct wide w, const int *p,
                struct triple tr2, signed char sc, unsigned short us) {
    return t.c + tr.a * tr.b - tr.c + k + (int)w.x + (int)w.y + *p + tr2.a + tr2.b + tr2.c + sc +
           us;
}

static float ret_float(int n, float x, float y) { return n ? x * y : x - y; }
static unsigned char ret_uchar(int v) { return (unsigned char)v; }
static short ret_short(int v) { return (short)v; }
static unsigned long long ret_ull(unsigned a, unsigned b) {
    return (unsigned long long)a << 32 | b;
}
static _Bool ret_bool(double d) { return d; }

static long long sum12(int a1, int a2, int a3, int a4, int a5, int a6, int a7, int a8, int a9,
                       int a10, int a11, int a12, int depth) {
    long long s = a1 - a2 + a3 - a4 + a5 - a6 + a7 - a8 + a9 - a10 + a11 - a12;
    if (depth == 0)
        return s;
    return s + sum12(a12, a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11 * 2, depth - 1);
}

static double no_prototype();

int main(void) {
    printf("mix1 %lld\n", mix1(1, 2, 3, 4, 5, 6));
    printf("mix1 negative %lld\n", mix1(-1, -2000000000000LL, -3, 4, -5, 7));
    printf("mix2 %.6f\n", mix2(0.5f, 1.25, 2.5f, 3, 4.75, 5.5f, 'a', 6.125, -7, 8.5f));
    int value = 1000;
    struct tiny t = {'x'};
    struct triple tr = {3, 4, 5}, tr2 = {-1, -2, -3};
    struct wide w = {2.75, 5000000000LL};
    printf("mix3 %d\n", mix3(t, tr, 6, w, &value, tr2, -9, 65535));
    long long (*fp)(int, long long, int, long long, int, long long) = mix1;
    printf("through pointer %lld\n", fp(9, 8, 7, 6, 5, 4));
    printf("returns: %g %g %u %d %llx %d %d\n", ret_float(1, 1.5f, 4.0f), ret_float(0, 1.5f, 4.0f),
           ret_uchar(300), ret_short(70000), ret_ull(0xdeadbeefu, 0xcafef00du), ret_bool(0.0),
           ret_bool(-0.5));
    printf("sum12 %lld\n", sum12(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 6));
    printf("no prototype %g\n", no_prototype(3, 2.5f, (short)4));
    return 0;
}

static double no_prototype(int n, double x, int s) { return n * x + s; }
