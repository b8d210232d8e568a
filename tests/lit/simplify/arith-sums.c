// Sums and differences as the simplifier leaves them when the file is read:
// chains left-deep with the constant last, like terms joined, differences
// that cancel gone, and the forms whose wrapped or floating value would
// change left alone. Every function also runs, before and after.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O0 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --check-prefix=OPT --match-full-lines
// RUN: %ondrel-opt -O2 %t.if %t.o2
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o2 | FileCheck %s --check-prefix=OUT

#include <limits.h>
#include <stdio.h>

// Constants fold together and go last; x + 0 is x.
int chain(int x, int y) { return ((x + 1) + 2) + y; }
int plus_zero(int x) { return x + 0; }
int minus_const(int x) { return x - 5; }
// OPT-LABEL: func chain(x: int, y: int) -> int {{.*}}
// OPT:         return x + y + 3
// OPT-LABEL: func plus_zero(x: int) -> int {{.*}}
// OPT:         return x
// OPT-LABEL: func minus_const(x: int) -> int {{.*}}
// OPT:         return x + -5

// x - x is 0, unless reading x is itself an effect.
volatile int vol = 7;
int self_diff(int x) { return x - x; }
int volatile_diff(void) { return vol - vol; }
// OPT-LABEL: func self_diff(x: int) -> int {{.*}}
// OPT:         return 0
// OPT-LABEL: func volatile_diff() -> int {{.*}}
// OPT:         return vol - vol

int undo_diff(int a, int b) { return (a - b) + b; }
int neg_left(int a, int b) { return -a + b; }
int neg_right(int a, int b) { return a + -b; }
int from_const(int a, int b) { return (3 - a) + b; }
// OPT-LABEL: func undo_diff(a: int, b: int) -> int {{.*}}
// OPT:         return a
// OPT-LABEL: func neg_left(a: int, b: int) -> int {{.*}}
// OPT:         return b - a
// OPT-LABEL: func neg_right(a: int, b: int) -> int {{.*}}
// OPT:         return a - b
// OPT-LABEL: func from_const(a: int, b: int) -> int {{.*}}
// OPT:         return b + 3 - a

// Products with a common factor become one product.
int common_const(int a, int b) { return a * 12 + b * 12; }
int like_terms(int a) { return a * 3 + a * 5; }
int times_plus(int a, int b) { return a * b + a; }
int multiple(int a, int b) { return a * 6 + b * 3; }
int powers(int a, int b) { return a * 4 + b * 8; }
int chain_terms(int a, int b, int c) { return (a + b * 5) + c * 5; }
int neg_product(int a, int b) { return -(a * 3) + b; }
// OPT-LABEL: func common_const(a: int, b: int) -> int {{.*}}
// OPT:         return (a + b) * 12
// OPT-LABEL: func like_terms(a: int) -> int {{.*}}
// OPT:         return a * 8
// OPT-LABEL: func times_plus(a: int, b: int) -> int {{.*}}
// OPT:         return a * (b + 1)
// OPT-LABEL: func multiple(a: int, b: int) -> int {{.*}}
// OPT:         return (a * 2 + b) * 3
// OPT-LABEL: func powers(a: int, b: int) -> int {{.*}}
// OPT:         return (b * 2 + a) * 4
// OPT-LABEL: func chain_terms(a: int, b: int, c: int) -> int {{.*}}
// OPT:         return (b + c) * 5 + a
// OPT-LABEL: func neg_product(a: int, b: int) -> int {{.*}}
// OPT:         return a * -3 + b

// A constant joins a sum under a conversion of the same size; under a
// narrowing the sum is taken in the narrow type, where it wraps the same.
unsigned conv_sum(int i) { return (unsigned)(i + 1) + 2u; }
unsigned char narrow_sum(unsigned char c) { return (unsigned char)(c + 200) + 100; }
// OPT-LABEL: func conv_sum(i: int) -> unsigned int {{.*}}
// OPT:         return (unsigned int)(i + 3)
// OPT-LABEL: func narrow_sum(c: unsigned char) -> unsigned char {{.*}}
// OPT:         return c + unsigned char(44)

// A sum's carries come from the bits that a right shift drops: no common
// shift comes out of it. (2 >> 2) + (1 >> 1) is 0, ((2 >> 1) + 1) >> 1 is 1.
int shifted_sum(int a, int b) { return (a >> 2) + (b >> 1); }
// OPT-LABEL: func shifted_sum(a: int, b: int) -> int {{.*}}
// OPT:         return (a >> 2) + (b >> 1)

// Pointer arithmetic: the pointer stays left, offsets in bytes.
int *ptr_sum(int *p, int i) { return p + (i + 4); }
int ptr_diff(int *p, int i) { return (int)((p + i) - p); }
// OPT-LABEL: func ptr_sum(p: int*, i: int) -> int* {{.*}}
// OPT:         return p + i * 4 + 16
// OPT-LABEL: func ptr_diff(p: int*, i: int) -> int {{.*}}
// OPT:         return i * 4 / 4

// 64-bit constants are LCONs, which congruence does not tell apart: they
// are no common factor, and these differences do not cancel.
unsigned long long lcg(unsigned long long s) {
    return s * 6364136223846793005ull + 1442695040888963407ull;
}
long long wide_diff(long long x) { return (x + 0x100000000ll) - (x + 0x200000000ll); }
// OPT-LABEL: func lcg(s: unsigned long long) -> unsigned long long {{.*}}
// OPT:         return s * 6364136223846793005ull + 1442695040888963407ull
// OPT-LABEL: func wide_diff(x: long long) -> long long {{.*}}
// OPT:         return x + 4294967296ll - (x + 8589934592ll)

// Floating sums are not reassociated, and inf - inf is a NaN.
double fsum(double a) { return (a + 1.0) + 2.0; }
double fdiff(double a) { return a - a; }
// OPT-LABEL: func fsum(a: double) -> double {{.*}}
// OPT:         return a + 0x1p+0 /* 1 */ + 0x1p+1 /* 2 */
// OPT-LABEL: func fdiff(a: double) -> double {{.*}}
// OPT:         return a - a

int main(void) {
    int arr[8] = {0};
    printf("%d %d %d %d %d\n", chain(INT_MAX, 5), plus_zero(-3), minus_const(INT_MIN + 2),
           self_diff(9), volatile_diff());
    printf("%d %d %d %d\n", undo_diff(INT_MAX, -7), neg_left(INT_MIN, 1), neg_right(3, INT_MIN),
           from_const(INT_MIN, 4));
    printf("%d %d %d %d %d %d %d\n", common_const(0x10000000, 7), like_terms(0x30000000),
           times_plus(0x10001, 0xffff), multiple(0x40000001, -9), powers(0x7fffffff, 3),
           chain_terms(1, 0x20000000, 0x33333333), neg_product(0x55555555, 2));
    printf("%u %u %u\n", conv_sum(-1), conv_sum(INT_MAX), (unsigned)narrow_sum(100));
    printf("%d %d\n", shifted_sum(2, 1), shifted_sum(-1, -1));
    printf("%d %d\n", (int)(ptr_sum(arr, 2) - arr), ptr_diff(arr, 3));
    printf("%llx %lld\n", lcg(88172645463325252ull), wide_diff(5));
    printf("%a %a %a\n", fsum(0x1p53), fdiff(1.5), fsum(-3.0));
    return 0;
}
// OUT: -2147483641 -3 2147483645 0 0
// OUT-NEXT: 2147483647 -2147483647 -2147483645 -2147483641
// OUT-NEXT: -1073741740 -2147483648 65536 2147483627 20 -1610612736 3
// OUT-NEXT: 2 2147483650 144
// OUT-NEXT: 0 -2
// OUT-NEXT: 6 3
// OUT-NEXT: bdd5e9321f4bbb43 -4294967296
// OUT-NEXT: 0x1.0000000000001p+53 0x0p+0 0x0p+0
