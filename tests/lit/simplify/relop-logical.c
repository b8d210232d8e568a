// Negation, short circuits and choices: a negated comparison is the inverted
// comparison (not for a float ordering, which a NaN makes unordered), two
// tests of one value join into one, a short circuit with a side that cannot
// fault becomes bitwise, and a choice between constants is arithmetic on a
// truth value. A right side that may fault keeps its guard. The program
// prints the same before and after.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --match-full-lines
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <stdio.h>

int calls;
int f(void) { return ++calls; }

int not_not(int x) { return !!x; }
int not_less(int x, int y) { return !(x < y); }
int not_less_float(float x, float y) { return !(x < y); }
int not_pointer(int *p) { return !p; }
// CHECK-LABEL: func not_not(x: int) -> int {{.*}}
// CHECK:         return x != 0
// CHECK-LABEL: func not_less(x: int, y: int) -> int {{.*}}
// CHECK:         return x >= y
// CHECK-LABEL: func not_less_float(x: float, y: float) -> int {{.*}}
// CHECK:         return (x < y) == 0
// CHECK-LABEL: func not_pointer(p: int*) -> int {{.*}}
// CHECK:         return p == int*(0)

// Two tests of one value: a zero test of either, one range test in
// unsigned arithmetic, one operator, or a constant. Tests that leave two
// ranges stay, and so do float tests.
int both_zero(int a, int b) { return a == 0 && b == 0; }
int inside(int x) { return x >= 10 && x <= 20; }
int outside(int x) { return x < 10 || x > 20; }
int adjacent(int x) { return x == 3 || x == 4; }
int apart(int x) { return x == 3 || x == 5; }
int below_or_equal(int x, int y) { return x < y || x == y; }
int always(int x, int y) { return x < y || x >= y; }
int never(int x, int y) { return x < y && x > y; }
int float_either(float x, float y) { return x < y || x > y; }
// CHECK-LABEL: func both_zero(a: int, b: int) -> int {{.*}}
// CHECK:         return (a | b) == 0
// CHECK-LABEL: func inside(x: int) -> int {{.*}}
// CHECK:         return (unsigned int)x + 4294967286u <=u 10u
// CHECK-LABEL: func outside(x: int) -> int {{.*}}
// CHECK:         return (unsigned int)x + 4294967286u >u 10u
// CHECK-LABEL: func adjacent(x: int) -> int {{.*}}
// CHECK:         return (unsigned int)x + 4294967293u <=u 1u
// CHECK-LABEL: func apart(x: int) -> int {{.*}}
// CHECK:         return x == 3 || x == 5
// CHECK-LABEL: func below_or_equal(x: int, y: int) -> int {{.*}}
// CHECK:         return x <= y
// CHECK-LABEL: func always(x: int, y: int) -> int {{.*}}
// CHECK:         return 1
// CHECK-LABEL: func never(x: int, y: int) -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func float_either(x: float, y: float) -> int {{.*}}
// CHECK:         return x < y || x > y

// Bitwise forms where the right side is safe to evaluate always; a load
// through a pointer or a division keeps the short circuit. A constant side
// decides, and a call on the side not taken is gone.
int either(int a, int b) { return a || b; }
int bits_both(int a, int b) { return (a & 4) && (b & 16); }
int guarded_load(int a, int *p) { return a && *p; }
int guarded_div(int a, int b, int c) { return a || b / c; }
int left_false(void) { return 0 && f(); }
int left_true(void) { return 1 || f(); }
int right_false(int x) { return x && 0; }
// CHECK-LABEL: func either(a: int, b: int) -> int {{.*}}
// CHECK:         return (a | b) != 0
// CHECK-LABEL: func bits_both(a: int, b: int) -> int {{.*}}
// CHECK:         return {{.*}}b >> 2{{.*}} != 0
// CHECK-LABEL: func guarded_load(a: int, p: int*) -> int {{.*}}
// CHECK:         return a && *p
// CHECK-LABEL: func guarded_div(a: int, b: int, c: int) -> int {{.*}}
// CHECK:         return a || b / c
// CHECK-LABEL: func left_false() -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func left_true() -> int {{.*}}
// CHECK:         return 1
// CHECK-LABEL: func right_false(x: int) -> int {{.*}}
// CHECK:         return 0

// Choices: truth values, a step of one, a common operand taken out, a
// repeated condition, and x != 0 ? x : 0. The target has no MAXU builtin
// yet, so that choice stays; nor is there an ABS after the optimizer.
int quest_bool(int x) { return x ? 1 : 0; }
int quest_inv(int x) { return x ? 0 : 1; }
int quest_step(int x) { return x ? 6 : 5; }
int quest_abs(int x) { return x < 0 ? -x : x; }
int quest_inside(int x, int y, int z) { return x ? y + 1 : z + 1; }
unsigned quest_max(unsigned x, unsigned y) { return x > y ? x : y; }
int quest_nested(int c, int a, int b, int d) { return c ? (c ? a : b) : d; }
int quest_self(int x) { return x != 0 ? x : 0; }
int quest_same(int c, int a) { return c ? a : a; }
// CHECK-LABEL: func quest_bool(x: int) -> int {{.*}}
// CHECK:         return x != 0
// CHECK-LABEL: func quest_inv(x: int) -> int {{.*}}
// CHECK:         return x == 0
// CHECK-LABEL: func quest_step(x: int) -> int {{.*}}
// CHECK:         return (x != 0) + 5
// CHECK-LABEL: func quest_abs(x: int) -> int {{.*}}
// CHECK:         return x < 0 ? -x : x
// CHECK-LABEL: func quest_inside(x: int, y: int, z: int) -> int {{.*}}
// CHECK:         return (x ? y : z) + 1
// CHECK-LABEL: func quest_max(x: unsigned int, y: unsigned int) -> unsigned int {{.*}}
// CHECK:         return x >u y ? x : y
// CHECK-LABEL: func quest_nested(c: int, a: int, b: int, d: int) -> int {{.*}}
// CHECK:         return c ? a : d
// CHECK-LABEL: func quest_self(x: int) -> int {{.*}}
// CHECK:         return x
// CHECK-LABEL: func quest_same(c: int, a: int) -> int {{.*}}
// CHECK:         return a

int main(void) {
    static const int xs[] = {-2147483647 - 1, -1, 0, 3, 4, 5, 9, 10, 20, 21, 2147483647};
    int zero = 0;
    float nan = 0.0f / 0.0f;
    for (unsigned i = 0; i < sizeof xs / sizeof xs[0]; i++) {
        int x = xs[i];
        printf("%d%d%d %d%d%d%d%d%d%d%d %d%d%d%d%d%d%d %d %d %d %d %d %u %d %d %d\n", not_not(x),
               not_less(x, 4), not_pointer(x ? &zero : 0), both_zero(x, x & 1), inside(x),
               outside(x), adjacent(x), apart(x), below_or_equal(x, 4), always(x, 4), never(x, 4),
               either(x, 0), bits_both(x, 16), guarded_load(x, &zero), guarded_div(0, x, 3),
               left_false(), left_true(), right_false(x), quest_bool(x), quest_inv(x),
               quest_step(x), quest_abs(x), quest_inside(x, 7, 8), quest_max(x, 4),
               quest_nested(x, 1, 2, 3), quest_self(x), quest_same(x, 9));
    }
    printf("%d %d %d %d, %d calls\n", not_less_float(nan, 1.0f), not_less_float(0.0f, 1.0f),
           float_either(nan, 1.0f), float_either(2.0f, 1.0f), calls);
    return 0;
}
// OUT:      100 00100110 1001010 1 0 6 -2147483648 8 2147483648 1 -2147483648 9
// OUT-NEXT: 100 00100110 1100010 1 0 6 1 8 4294967295 1 -1 9
// OUT-NEXT: 001 10100110 0000010 0 1 5 0 9 4 3 0 9
// OUT-NEXT: 100 00111110 1001010 1 0 6 3 8 4 1 3 9
// OUT-NEXT: 110 00110110 1101010 1 0 6 4 8 4 1 4 9
// OUT-NEXT: 110 00101010 1101010 1 0 6 5 8 5 1 5 9
// OUT-NEXT: 110 00100010 1001010 1 0 6 9 8 9 1 9 9
// OUT-NEXT: 110 01000010 1001010 1 0 6 10 8 10 1 10 9
// OUT-NEXT: 110 01000010 1101010 1 0 6 20 8 20 1 20 9
// OUT-NEXT: 110 00100010 1101010 1 0 6 21 8 21 1 21 9
// OUT-NEXT: 110 00100010 1101010 1 0 6 2147483647 8 2147483647 1 2147483647 9
// OUT-NEXT: 1 0 0 1, 0 calls
