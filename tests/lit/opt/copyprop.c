// Copies and constants replace the variables that hold them: in one block for
// any variable, function-wide for one assigned once. Memory, volatile
// variables and values that differ by path are not propagated.
// RUN: rm -rf %t && mkdir -p %t
// RUN: %ondrel-cfe -w %s -o %t/p.if
// RUN: %ondrel-opt -O1 %t/p.if %t/p.opt
// RUN: %ondrel-dump %t/p.opt | FileCheck %s
// RUN: ondrel-run %t/p.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t/p.opt | FileCheck %s --check-prefix=OUT
#include <stdio.h>

int g;
int bump(void) { return ++g; }

int copies(int n, int *p) {
    int a = n * 2;
    int b = a;
    int c = b + 1;
    *p = b;
    b = c;
    return b + a;
}
// CHECK-LABEL: func copies(n: int, p: int*) -> int
// CHECK:         a = n * 2
// CHECK-NEXT:    c = a + 1
// CHECK-NEXT:    *p = a
// CHECK-NEXT:    return c + a

// A variable assigned once by a constant, or by a copy of one.
int once(int n) {
    int k;
    int j;
    k = 6;
    j = k;
    int s = 0;
    for (int i = 0; i < n; i++)
        s = s + j;
    return s;
}
// CHECK-LABEL: func once(n: int) -> int
// CHECK:         s = s + 6

// What must not move: a value that differs by path, a load across a store
// through a pointer or a call, a volatile variable.
int stays(int n, int *p, int *q) {
    int d;
    if (n > 3)
        d = 4;
    else
        d = 5;
    int e = d;
    int x = *p;
    *q = 9;
    int y = x;
    int z = g;
    bump();
    int w = z;
    volatile int v = n;
    int u = v;
    return e + y + w + u;
}
// CHECK-LABEL: func stays(n: int, p: int*, q: int*) -> int
// CHECK:         x = *p
// CHECK-NEXT:    *q = 9
// CHECK-NEXT:    z = g
// CHECK-NEXT:    bump()
// CHECK-NEXT:    v = n
// CHECK-NEXT:    u = (int)v
// CHECK-NEXT:    return d + x + z + u

int main(void) {
    int a = 0, b = 0;
    printf("%d %d\n", copies(5, &a), a);
    printf("%d %d\n", once(4), once(0));
    printf("%d %d\n", stays(5, &a, &b), stays(1, &a, &a));
    printf("%d %d %d\n", a, b, g);
    return 0;
}
// OUT: 21 10
// OUT: 24 0
// OUT: 19 17
// OUT: 9 9 2
