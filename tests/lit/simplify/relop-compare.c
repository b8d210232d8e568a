// Comparisons reach their canonical forms: the constant on the right, tests
// that the operands' ranges or bits decide folded, and scaling, offsets,
// divisions and conversions taken off the compared value where that keeps
// every outcome. Where the product or sum may wrap, or a NaN may be compared,
// the test stays. The program prints the same before and after.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --match-full-lines
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <stdio.h>

int g;
int w __attribute__((weak)) = 1;

// A constant on the left goes right; an unsigned value is never below 0, and
// an unsigned char never reaches 300.
int const_left(int x) { return 5 < x; }
int unsigned_ge_zero(unsigned u) { return u >= 0; }
int uchar_big(unsigned char c) { return c == 300; }
// CHECK-LABEL: func const_left(x: int) -> int {{.*}}
// CHECK:         return x > 5
// CHECK-LABEL: func unsigned_ge_zero(u: unsigned int) -> int {{.*}}
// CHECK:         return 1
// CHECK-LABEL: func uchar_big(c: unsigned char) -> int {{.*}}
// CHECK:         return 0

// A product that cannot wrap compares its factor, rounded for an ordering;
// an odd factor keeps a zero test exact even when it wraps. A product of a
// full-range int may wrap: it stays.
int scaled_odd(int x) { return x * 3 == 0; }
int scaled_exact(unsigned char c) { return c * 4 == 8; }
int scaled_miss(unsigned char c) { return c * 4 == 6; }
int scaled_order(unsigned char c) { return c * 4 < 7; }
int scaled_wrap(int x) { return x * 4 == 8; }
// CHECK-LABEL: func scaled_odd(x: int) -> int {{.*}}
// CHECK:         return x == 0
// CHECK-LABEL: func scaled_exact(c: unsigned char) -> int {{.*}}
// CHECK:         return c == unsigned char(2)
// CHECK-LABEL: func scaled_miss(c: unsigned char) -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func scaled_order(c: unsigned char) -> int {{.*}}
// CHECK:         return c <u unsigned char(2)
// CHECK-LABEL: func scaled_wrap(x: int) -> int {{.*}}
// CHECK:         return x * 4 == 8

// A quotient by a constant is a bound or a range of the dividend; division
// rounds toward zero, so x / 8 == 0 holds from -7 to 7.
int quotient_zero(int x) { return x / 8 == 0; }
int uquotient_zero(unsigned x) { return x / 8 == 0; }
int quotient_less(int x) { return x / 4 < 3; }
int remainder_zero(int x) { return x % 8 == 0; }
int shifted(unsigned u) { return (u >> 4) <= 3; }
// CHECK-LABEL: func quotient_zero(x: int) -> int {{.*}}
// CHECK:         return (unsigned int)x + 7u <=u 14u
// CHECK-LABEL: func uquotient_zero(x: unsigned int) -> int {{.*}}
// CHECK:         return x <=u 7u
// CHECK-LABEL: func quotient_less(x: int) -> int {{.*}}
// CHECK:         return x <= 11
// CHECK-LABEL: func remainder_zero(x: int) -> int {{.*}}
// CHECK:         return (x & 7) == 0
// CHECK-LABEL: func shifted(u: unsigned int) -> int {{.*}}
// CHECK:         return u <=u 63u

// An added constant moves right: always for EQ, for an ordering only where
// the sum cannot wrap.
int offset_eq(int x) { return x + 5 == 7; }
int offset_order(unsigned char c) { return c + 5 < 10; }
int offset_wrap(int x) { return x + 5 < 10; }
// CHECK-LABEL: func offset_eq(x: int) -> int {{.*}}
// CHECK:         return x == 2
// CHECK-LABEL: func offset_order(c: unsigned char) -> int {{.*}}
// CHECK:         return c <u unsigned char(5)
// CHECK-LABEL: func offset_wrap(x: int) -> int {{.*}}
// CHECK:         return x + 5 < 10

// x == x holds for an integer; for a float it is false for a NaN.
int reflexive_eq(int x) { return x == x; }
int reflexive_lt(int x) { return x < x; }
int reflexive_float(float f) { return f == f; }
// CHECK-LABEL: func reflexive_eq(x: int) -> int {{.*}}
// CHECK:         return 1
// CHECK-LABEL: func reflexive_lt(x: int) -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func reflexive_float(f: float) -> int {{.*}}
// CHECK:         return f == f

// Known bits, a single-bit mask, truth values against 1 and 2, a choice
// between constants, and the address of an object, which is never null
// unless the symbol is weak.
int known_bits(int x) { return (x | 1) == 4; }
int single_bit(int x) { return (x & 8) == 8; }
int bool_eq_one(int x, int y) { return (x < y) == 1; }
int bool_eq_two(int x, int y) { return (x < y) == 2; }
int bool_ne_one(int x, int y) { return (x < y) != 1; }
int choice(int x) { return (x ? 3 : 4) == 3; }
int address(void) { return &g != 0; }
int weak_address(void) { return &w != 0; }
// CHECK-LABEL: func known_bits(x: int) -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func single_bit(x: int) -> int {{.*}}
// CHECK:         return (x & 8) != 0
// CHECK-LABEL: func bool_eq_one(x: int, y: int) -> int {{.*}}
// CHECK:         return x < y
// CHECK-LABEL: func bool_eq_two(x: int, y: int) -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func bool_ne_one(x: int, y: int) -> int {{.*}}
// CHECK:         return x >= y
// CHECK-LABEL: func choice(x: int) -> int {{.*}}
// CHECK:         return x != 0
// CHECK-LABEL: func address() -> int {{.*}}
// CHECK:         return 1
// CHECK-LABEL: func weak_address() -> int {{.*}}
// CHECK:         return &w != int*(0)

// The bounds of the type: x > 0 for an unsigned x is x != 0, and only the
// largest int is at least INT_MAX.
int boundary(unsigned u) { return u > 0; }
int boundary_top(int x) { return x >= 2147483647; }
// CHECK-LABEL: func boundary(u: unsigned int) -> int {{.*}}
// CHECK:         return u != 0u
// CHECK-LABEL: func boundary_top(x: int) -> int {{.*}}
// CHECK:         return x == 2147483647

int main(void) {
    static const int xs[] = {-2147483647 - 1, -9, -8, -7, -1, 0, 1, 2, 7, 8, 11, 12, 2147483647};
    for (unsigned i = 0; i < sizeof xs / sizeof xs[0]; i++) {
        int x = xs[i];
        unsigned char c = (unsigned char)x;
        printf("%d%d%d%d%d%d%d %d%d%d%d%d %d%d%d %d%d %d%d%d%d%d%d%d %d%d\n", const_left(x),
               unsigned_ge_zero(x), uchar_big(c), scaled_odd(x), scaled_exact(c), scaled_miss(c),
               scaled_order(c), quotient_zero(x), uquotient_zero(x), quotient_less(x),
               remainder_zero(x), shifted(x), offset_eq(x), offset_order(c), offset_wrap(x),
               reflexive_eq(x), reflexive_lt(x), known_bits(x), single_bit(x), bool_eq_one(x, 1),
               bool_eq_two(x, 1), bool_ne_one(x, 1), choice(x), address(), boundary(x),
               boundary_top(x));
    }
    printf("%d\n", reflexive_float(0.0f / 0.0f));
    return 0;
}
// OUT:      0100001 00110 011 10 0010011 10
// OUT-NEXT: 0100000 00100 001 10 0010011 10
// OUT-NEXT: 0100000 00110 001 10 0110011 10
// OUT-NEXT: 0100000 10100 001 10 0110011 10
// OUT-NEXT: 0100000 10100 001 10 0110011 10
// OUT-NEXT: 0101001 11111 011 10 0010001 00
// OUT-NEXT: 0100001 11101 011 10 0000111 10
// OUT-NEXT: 0100100 11101 111 10 0000111 10
// OUT-NEXT: 1100000 11101 000 10 0000111 10
// OUT-NEXT: 1100000 00111 000 10 0100111 10
// OUT-NEXT: 1100000 00101 000 10 0100111 10
// OUT-NEXT: 1100000 00001 000 10 0100111 10
// OUT-NEXT: 1100000 00000 001 10 0100111 11
// OUT-NEXT: 0
