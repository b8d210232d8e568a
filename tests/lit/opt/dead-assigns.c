// Stores to locals that no path reads go; what their values do stays. A
// store stays when something may read it: through its address, on a path
// around a loop, after a short circuit, or because it is volatile or global.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 --debug_level=1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s
// RUN: FileCheck %s --check-prefix=LOG < %t.odb
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
#include <stdio.h>

int g;
int calls;
int f(int x) {
    calls++;
    return x * 2;
}

int overwritten(int a) {
    int x = a + 1;
    g = a;
    x = a * 3;
    return x;
}
// CHECK-LABEL: func overwritten(a: int) -> int
// CHECK-NOT:     a + 1
// CHECK:         x = a * 3
// LOG: DEAD 'ASG': x = a + 1

int call_kept(int a) {
    int x;
    x = f(a);
    return a;
}
// CHECK-LABEL: func call_kept(a: int) -> int
// CHECK-NOT:     x =
// CHECK:         f((arg int)a)
// LOG: DEAD 'ASG': x = f((arg int)a)
// LOG: No references in the function for ({{[0-9]+}}) 'x'

int *sink;
int through_pointer(int a) {
    int x = 1;
    sink = &x;
    x = a;
    return *sink;
}
// CHECK-LABEL: func through_pointer(a: int) -> int
// CHECK:         x = 1
// CHECK-NEXT:    sink = &x
// CHECK-NEXT:    x = a
// CHECK-NEXT:    return *sink

int around_loop(int n) {
    int s = 0, t = 0;
    for (int i = 0; i < n; i++) {
        t = s;
        s = i;
    }
    return t;
}
// CHECK-LABEL: func around_loop(n: int) -> int
// CHECK:         s = i

int short_circuit(int a, int b) {
    int y = 5;
    if (a && (y = f(b)) > 3)
        return 1;
    return y;
}
// CHECK-LABEL: func short_circuit(a: int, b: int) -> int
// CHECK:         y = 5
// CHECK:         y = f((arg int)b)
// CHECK:         return y

int vol(int a) {
    volatile int v;
    v = a;
    v = a + 1;
    return a;
}
// CHECK-LABEL: func vol(a: int) -> int
// CHECK:         v = a
// CHECK-NEXT:    v = a + 1

int global_store(int a) {
    g = a;
    f(a);
    g = a + 2;
    return a;
}
// CHECK-LABEL: func global_store(a: int) -> int
// CHECK:         g = a
// CHECK-NEXT:    f((arg int)a)
// CHECK-NEXT:    g = a + 2

int main(void) {
    printf("%d %d %d %d\n", overwritten(4), call_kept(3), through_pointer(7), around_loop(5));
    printf("%d %d %d %d %d\n", short_circuit(1, 4), short_circuit(0, 4), short_circuit(1, 1),
           vol(2), global_store(6));
    printf("%d %d\n", g, calls);
    return 0;
}
// OUT: 12 3 7 3
// OUT-NEXT: 1 5 2 2 6
// OUT-NEXT: 8 4
