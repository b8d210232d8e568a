// Sequences hoisted above the operators that use their value, assignments in
// their canonical forms, and tests that lose what does not decide them. Both
// files print the same.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --match-full-lines
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <stdio.h>

int g, h;
int calls;
int tick(void) { return ++calls; }

// The sequence's value is what the operator uses; the rest runs first.
int seq_left(int y) { return (tick(), y) * y; }
// CHECK-LABEL: func seq_left(y: int) -> int {{.*}}
// CHECK:         tick()
// CHECK-NEXT:    return y * y

// An assignment of a constant gives the constant to its user.
int asg_value(int y) {
    int r = (h = 3) * y;
    return r + h;
}
// CHECK-LABEL: func asg_value(y: int) -> int {{.*}}
// CHECK:         h = 3
// CHECK-NEXT:    r = {{3 \* y|y \* 3}}

// a = (b = 0) is b = 0, a = 0.
void chain(void) { g = (h = 0); }
// CHECK-LABEL: func chain() -> void {{.*}}
// CHECK:         h = 0
// CHECK-NEXT:    g = 0

// A global updated from itself takes the operator-assignment form; a local
// counter keeps the plain one, which loop rotation reads.
int update(int n) {
    for (int i = 0; i < n; i = i + 1)
        g = g + tick();
    return g;
}
// CHECK-LABEL: func update(n: int) -> int {{.*}}
// CHECK:         g += tick()
// CHECK:         i = i + 1

// The assigned variable comes to the top of its chain, so that the update
// is one operator-assignment.
void gather(int a, int b) {
    g = a + g + b;
    h = a + h - b;
}
// CHECK-LABEL: func gather(a: int, b: int) -> void {{.*}}
// CHECK:         g += a + b
// CHECK-NEXT:    h += a - b

// A mask that keeps every bit the store keeps does nothing.
unsigned char low_byte(int x) {
    unsigned char c;
    c = x & 0x1ff;
    return c;
}
// CHECK-LABEL: func low_byte(x: int) -> unsigned char {{.*}}
// CHECK:         return (unsigned char)x

// A mask of fewer bits stays.
unsigned char low_bits(int x) {
    unsigned char c;
    c = x & 0x7f;
    return c;
}
// CHECK-LABEL: func low_bits(x: int) -> unsigned char {{.*}}
// CHECK:         c = {{.*}}127{{.*}}

// Tests keep only what decides them.
int tests(int x, int a, int b) {
    int n = 0;
    if (x % 8)
        n += 1;
    if ((x >> 3) & 1)
        n += 2;
    if (x >> 31)
        n += 4;
    if (-x)
        n += 8;
    if (a - b)
        n += 16;
    return n;
}
// CHECK-LABEL: func tests(x: int, a: int, b: int) -> int {{.*}}
// CHECK:         if ({{!\(x & 7\)|\(x & 7\) == 0}}) goto {{.*}}
// CHECK:         if ({{!\(x & 8\)|\(x & 8\) == 0}}) goto {{.*}}
// CHECK:         if ({{!\(x & -2147483648\)|\(x & -2147483648\) == 0|x >= 0}}) goto {{.*}}
// CHECK:         if ({{!x|x == 0}}) goto {{.*}}
// CHECK:         if ({{!\(a != b\)|a == b}}) goto {{.*}}

int main(void) {
    printf("%d %d\n", seq_left(7), calls);
    printf("%d\n", asg_value(5));
    g = 9;
    chain();
    printf("%d %d\n", g, h);
    printf("%d %d\n", update(4), calls);
    gather(5, 2);
    printf("%d %d\n", g, h);
    printf("%d %d\n", low_byte(0x3ff), low_bits(0x3ff));
    printf("%d %d %d %d\n", tests(9, 1, 1), tests(-8, 2, 1), tests(0, 3, 3), tests(15, 0, 1));
    return 0;
}
// OUT:      49 1
// OUT-NEXT: 18
// OUT-NEXT: 0 0
// OUT-NEXT: 14 5
// OUT-NEXT: 21 3
// OUT-NEXT: 255 127
// OUT-NEXT: 11 30 0 27
