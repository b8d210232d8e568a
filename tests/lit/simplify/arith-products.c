// Products as the simplifier leaves them when the file is read: constants
// on the right and combined, a constant distributed over a sum of the same
// size, exact quotients undone; floating products change only by 1.0 and
// 2.0, which are exact for every value. Every function also runs.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O0 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --check-prefix=OPT --match-full-lines
// RUN: %ondrel-opt -O2 %t.if %t.o2
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o2 | FileCheck %s --check-prefix=OUT

#include <limits.h>
#include <stdio.h>

int calls;
int f(void) { return ++calls; }

// By 1, 0 and all ones; a product by 0 keeps the call.
int one(int x) { return x * 1; }
int zero_call(void) { return f() * 0; }
int minus_one(int x) { return x * -1; }
unsigned all_ones(unsigned u) { return u * 0xffffffffu; }
int left_const(int x) { return 7 * x; }
// OPT-LABEL: func one(x: int) -> int {{.*}}
// OPT:         return x
// OPT-LABEL: func zero_call() -> int {{.*}}
// OPT:         f()
// OPT-NEXT:    return 0
// OPT-LABEL: func minus_one(x: int) -> int {{.*}}
// OPT:         return -x
// OPT-LABEL: func all_ones(u: unsigned int) -> unsigned int {{.*}}
// OPT:         return -u
// OPT-LABEL: func left_const(x: int) -> int {{.*}}
// OPT:         return x * 7

// Constants combine: in a signed product only where their product fits.
int consts(int x) { return (x * 3) * 5; }
int consts_wrap(int x) { return (x * 0x10000) * 0x10000; }
unsigned uconsts_wrap(unsigned u) { return (u * 0x10000u) * 0x10000u; }
unsigned conv_consts(int x) { return (unsigned)(x * 3) * 5u; }
// OPT-LABEL: func consts(x: int) -> int {{.*}}
// OPT:         return x * 15
// OPT-LABEL: func consts_wrap(x: int) -> int {{.*}}
// OPT:         return x * 65536 * 65536
// OPT-LABEL: func uconsts_wrap(u: unsigned int) -> unsigned int {{.*}}
// OPT:         return 0u
// OPT-LABEL: func conv_consts(x: int) -> unsigned int {{.*}}
// OPT:         return (unsigned int)(x * 15)

// A constant is distributed over a sum of the product's size only: widened
// first, i + 1 would wrap in int before the product.
int distrib(int x) { return (x + 3) * 4; }
long long widened(int i) { return (long long)(i + 1) * 3; }
// OPT-LABEL: func distrib(x: int) -> int {{.*}}
// OPT:         return x * 4 + 12
// OPT-LABEL: func widened(i: int) -> long long {{.*}}
// OPT:         return (long long)(i + 1) * 3ll

// (x / c) * c is x only where c divides x.
int exact(int y) { return ((y * 8) / 4) * 4; }
int inexact(int x) { return (x / 4) * 4; }
// OPT-LABEL: func exact(y: int) -> int {{.*}}
// OPT:         return y * 8
// OPT-LABEL: func inexact(x: int) -> int {{.*}}
// OPT:         return x / 4 * 4

int bools(int a, int b, int c, int d) { return (a < b) * (c < d); }
unsigned convs(int a, int b) { return (unsigned)a * (unsigned)b; }
// OPT-LABEL: func bools(a: int, b: int, c: int, d: int) -> int {{.*}}
// OPT:         return (a < b) & (c < d)
// OPT-LABEL: func convs(a: int, b: int) -> unsigned int {{.*}}
// OPT:         return (unsigned int)(a * b)

// x * 0.0 is a NaN for an infinite or NaN x and -0.0 for a negative x, and
// x * inf a NaN for x = 0: both stay.
double fone(double x) { return x * 1.0; }
float fone_f(float x) { return x * 1.0f; }
double ftwo(double x) { return x * 2.0; }
double fzero(double x) { return x * 0.0; }
double finf(double x) { return x * (1.0 / 0.0); }
// OPT-LABEL: func fone(x: double) -> double {{.*}}
// OPT:         return x
// OPT-LABEL: func fone_f(x: float) -> float {{.*}}
// OPT:         return x
// OPT-LABEL: func ftwo(x: double) -> double {{.*}}
// OPT:         return x + x
// OPT-LABEL: func fzero(x: double) -> double {{.*}}
// OPT:         return x * 0x0p+0 /* 0 */
// OPT-LABEL: func finf(x: double) -> double {{.*}}
// OPT:         return x * inf

int main(void) {
    printf("%d %d %d %u %d calls %d\n", one(-4), zero_call(), minus_one(INT_MIN), all_ones(3u),
           left_const(0x20000000), calls);
    printf("%d %d %u %u\n", consts(0x11111111), consts_wrap(3), uconsts_wrap(7u),
           conv_consts(-0x1000001));
    printf("%d %lld %lld\n", distrib(INT_MAX), widened(INT_MAX), widened(-2));
    printf("%d %d %d %d\n", exact(0x7ffffff), exact(-3), inexact(-7), inexact(13));
    printf("%d %d %u\n", bools(1, 2, 3, 4), bools(1, 2, 4, 3), convs(-3, 0x40000001));
    double inf = 1.0 / 0.0;
    printf("%a %a %a %a\n", fone(-0.0), (double)fone_f(3.5f), ftwo(0x1.8p1023), ftwo(-0.0));
    printf("%a %a %d %d %a\n", fzero(-2.0), fzero(3.0), fzero(inf) != fzero(inf),
           finf(0.0) != finf(0.0), finf(-1.0));
    return 0;
}
// OUT: -4 0 -2147483648 4294967293 -536870912 calls 1
// OUT-NEXT: -1 0 0 4043309041
// OUT-NEXT: 8 -6442450944 -3
// OUT-NEXT: 1073741816 -24 -4 12
// OUT-NEXT: 1 0 1073741821
// OUT-NEXT: -0x0p+0 0x1.cp+1 inf -0x0p+0
// OUT-NEXT: -0x0p+0 0x0p+0 1 1 -inf
