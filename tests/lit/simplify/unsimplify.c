// Just before a function is written, an update of a plain variable by a
// variable or a constant is spelled out: x += e becomes x = x + e. An update
// through an address, of a volatile, or by a larger operand keeps its form.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
#include <stdio.h>

int g;
unsigned char small;
volatile int v;
int f(int x) { return x + 1; }

void updates(int n, int *p) {
    g += n;
    small ^= 3;
    *p += n;
    v += n;
    g -= f(n);
}
// CHECK-LABEL: func updates(n: int, p: int*) -> void
// CHECK:         g = g + n
// CHECK-NEXT:    small = (unsigned char)((int)small ^ 3)
// CHECK-NEXT:    *p += n
// CHECK-NEXT:    v += n
// CHECK-NEXT:    g -= f((arg int)n)

int main(void) {
    int x = 5;
    updates(4, &x);
    printf("%d %d %d %d\n", g, small, x, v);
    return 0;
}
// OUT: -1 3 9 4
