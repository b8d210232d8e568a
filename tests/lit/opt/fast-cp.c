// A local assigned once, to a value that is the same wherever it is read, is
// that value everywhere: a constant, an address, a parameter that is never
// assigned. Neighbouring assignments to one target are joined.
// RUN: rm -rf %t && mkdir -p %t
// RUN: %ondrel-cfe -w %s -o %t/p.if
// RUN: %ondrel-opt -O1 --debug_level=1 %t/p.if %t/p.opt
// RUN: %ondrel-dump %t/p.opt | FileCheck %s
// RUN: FileCheck %s --check-prefix=LOG < %t/p.odb
// RUN: FileCheck %s --check-prefix=JOIN < %t/p.odb
// RUN: ondrel-run %t/p.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t/p.opt | FileCheck %s --check-prefix=OUT
#include <stdio.h>

int g, h;
int *escape;
volatile int v;
int table[4] = {1, 2, 3, 4};

int scale(int n) {
    int k = 10;
    int m = k;
    int *t = &table[1];
    int s = 0;
    for (int i = 0; i < n; i++)
        s += i * k + m + *t;
    return s;
}
// CHECK-LABEL: func scale(n: int) -> int
// CHECK:         local n: const int
// CHECK:         s = i * 10 + *(&table + 4) + s + 10
// LOG:      Argument variable is not re-assigned: n
// LOG:      Globally constant assignment: k = 10
// LOG:      Globally constant assignment: t = &table + 4
// LOG:      SYMBOL/NODE MAP INFORMATION FOR scale()
// LOG-NEXT: k --> 10
// LOG-NEXT: t --> &table + 4
// A copy of a constant is one on the next run.
// LOG:      Globally constant assignment: m = 10

// What must stay: a variable whose address is taken, one assigned on two
// paths, one assigned in a loop, a volatile one, a parameter that is assigned.
int keep(int n, int *out) {
    int a = 5;
    escape = &a;
    *out = 1;
    int b;
    if (n > 2)
        b = 7;
    else
        b = 8;
    int c = 0;
    while (c < n)
        c = c + 3;
    volatile int d = 4;
    n = n + 1;
    return *escape + a + b + c + d + n;
}
// CHECK-LABEL: func keep(n: int, out: int*) -> int
// CHECK:         local n: int
// CHECK:         a = 5
// CHECK-NEXT:    escape = &a
// CHECK:         c = c + 3
// CHECK:         return *escape + a + b + c + d + n

// A decided test: the branch that cannot run goes.
int decided(void) {
    int debug = 0;
    if (debug)
        return g;
    return h;
}
// CHECK-LABEL: func decided() -> int
// CHECK-NOT:     return g
// CHECK:         return h

// Assignments side by side.
void joins(int *p, int *q, int x) {
    g = 5;
    g = 6;
    h += 3;
    h += 4;
    *p = x;
    *p = *p * 2;
    *q = 1;
    *q = *p + 1;
    v = 1;
    v = 2;
}
// CHECK-LABEL: func joins(p: int*, q: int*, x: int) -> void
// CHECK:         g = 6
// CHECK-NEXT:    h = h + 7
// CHECK-NEXT:    *p = x * 2
// CHECK-NEXT:    *q = 1
// CHECK-NEXT:    *q = *p + 1
// CHECK-NEXT:    v = 1
// CHECK-NEXT:    v = 2
// JOIN:      Combining the assignments g = 5
// JOIN-NEXT: ......................and g = 6
// JOIN-NEXT: ...................to get g = 6
// JOIN:      Combining the assignments *p = x
// JOIN-NEXT: ......................and *p *= 2
// JOIN-NEXT: ...................to get *p = x * 2

int main(void) {
    int x = 0, y = 0;
    joins(&x, &y, 21);
    joins(&x, &x, 4);
    printf("%d %d %d %d %d %d\n", scale(5), keep(3, &x), keep(1, &y), decided(), g, h);
    printf("%d %d %d\n", x, y, v);
    return 0;
}
// OUT: 160 28 27 14 6 14
// OUT: 1 1 2
