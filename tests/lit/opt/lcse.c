// Common subexpressions inside one block, from -O1 on: a value computed again
// while nothing it reads has changed is read from a temporary ($O$c<n>) or
// from the local that already holds it. Stores that may alias, calls,
// redefinitions, parts of && and ?: that may not run, and volatile reads keep
// the second computation. The program prints the same before and after, and
// the output is a file the optimizer has nothing left to do on at -O0.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt --debug_level=1 -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s
// RUN: FileCheck %s --check-prefix=LOG < %t.odb
// RUN: %ondrel-opt -O0 %t.opt %t.again
// RUN: %ondrel-dump %t.opt > %t.dump1
// RUN: %ondrel-dump %t.again > %t.dump2
// RUN: diff %t.dump1 %t.dump2
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
#include <stdio.h>

struct P {
    int x;
    int y;
};
int g;
volatile int v;
int touch(void) { return ++g; }
void bump(int *p) { *p += 3; }

// LOG: ENTERING 'lcse'

int repeats(int a, int b, int c) {
    int x = a * b + c;
    int y = (a * b) ^ c;
    return x - y;
}
// CHECK-LABEL: func repeats(a: int, b: int, c: int) -> int
// CHECK:         local $O$c1: int
// CHECK:         c = c
// CHECK-NEXT:    $O$c1 = a * b
// CHECK-NEXT:    x = $O$c1 + c
// CHECK-NEXT:    y = $O$c1 ^ c

// Two uses in one statement: the first goes in front of it.
int same_statement(int a, int b) { return (a * b) ^ ((a * b) >> 3); }
// CHECK-LABEL: func same_statement(a: int, b: int) -> int
// CHECK:         $O$c1 = a * b
// CHECK-NEXT:    return ($O$c1 >> 3) ^ $O$c1

int loads(struct P *p) {
    int r = p->x * 3;
    r ^= p->x * 5;
    return r;
}
// CHECK-LABEL: func loads(p: struct P*) -> int
// CHECK:         $O$c1 = (*p).x
// CHECK-NEXT:    r = ($O$c1 * 3) ^ ($O$c1 * 5)
// LOG: 'lcse_lvalue' found (*p).x redundant

// q may point at p->x.
int load_store(struct P *p, int *q) {
    int r = p->x * 3;
    *q = 1;
    r ^= p->x * 5;
    return r;
}
// CHECK-LABEL: func load_store(p: struct P*, q: int*) -> int
// CHECK-NOT:     $O$c
// CHECK:         r = (*p).x * 3
// CHECK-NEXT:    *q = 1
// CHECK-NEXT:    r ^= (*p).x * 5

// The call may change p->x.
int load_call(struct P *p) {
    int r = p->x * 3;
    touch();
    r ^= p->x * 5;
    return r;
}
// CHECK-LABEL: func load_call(p: struct P*) -> int
// CHECK-NOT:     $O$c
// CHECK:         r = (*p).x * 3
// CHECK-NEXT:    touch()
// CHECK-NEXT:    r ^= (*p).x * 5

// After a call in its own statement the first load is kept in place, as an
// assignment inside the statement; a use later in the same statement would
// not be sure to run after it, so only the next statement shares it.
int after_call(struct P *p) {
    int r = touch() + p->x * 3;
    int s = p->x * 5;
    return r ^ s;
}
// CHECK-LABEL: func after_call(p: struct P*) -> int
// CHECK:         r = touch() + ($O$c1 = (*p).x) * 3
// CHECK-NEXT:    s = $O$c1 * 5
int after_call_same(struct P *p) { return touch() ^ (p->x * 3) ^ (p->x * 5); }
// CHECK-LABEL: func after_call_same(p: struct P*) -> int
// CHECK-NOT:     $O$c
// CHECK:         return touch() ^ ((*p).x * 3) ^ ((*p).x * 5)

int redefined(int a, int b) {
    int x = a * b + 1;
    a = x;
    int y = a * b + 2;
    return x ^ y;
}
// CHECK-LABEL: func redefined(a: int, b: int) -> int
// CHECK-NOT:     $O$c
// CHECK:         x = a * b + 1
// CHECK-NEXT:    y = x * b + 2

// bump may change l through its address, and g.
int escaped(int k) {
    int l = k;
    int a = l * 7 + g;
    bump(&l);
    int b = l * 7 + g;
    int c = l * 7 + g;
    return a + b * 3 + c * 5;
}
// CHECK-LABEL: func escaped(k: int) -> int
// CHECK:         a = l * 7 + g
// CHECK-NEXT:    bump(&l)
// CHECK-NEXT:    b = l * 7 + g
// CHECK-NEXT:    c = b

// The product right of && and in an arm of ?: may not run: it is no first
// evaluation for the use after it.
int in_andand(int a, int b, int c) {
    int r = c && a * b > 4;
    return r + a * b;
}
// CHECK-LABEL: func in_andand(a: int, b: int, c: int) -> int
// CHECK-NOT:     $O$c
// CHECK:         r = c && a * b > 4
// CHECK-NEXT:    return a * b + r
int in_quest(int a, int b, int c) {
    int r = c ? a * b : 1;
    return r + a * b;
}
// CHECK-LABEL: func in_quest(a: int, b: int, c: int) -> int
// CHECK-NOT:     $O$c
// CHECK:         r = c ? a * b : 1
// CHECK-NEXT:    return a * b + r

// Computed before the &&, the product is shared by its right side.
int before_andand(int a, int b, int c) {
    int r = a * b + c;
    return c && a * b > 4 ? r : 0;
}
// CHECK-LABEL: func before_andand(a: int, b: int, c: int) -> int
// CHECK:         $O$c1 = a * b
// CHECK-NEXT:    r = $O$c1 + c
// CHECK-NEXT:    return c && $O$c1 > 4 ? r : 0

int volatiles(void) {
    int a = v * 3;
    int b = v * 3;
    return a - b;
}
// CHECK-LABEL: func volatiles() -> int
// CHECK-NOT:     $O$c
// CHECK:         a = v * 3
// CHECK-NEXT:    b = v * 3

int redundant(int a, int b) {
    int x = a * b + 7;
    g = x;
    x = a * b + 7;
    return x;
}
// CHECK-LABEL: func redundant(a: int, b: int) -> int
// CHECK:         x = a * b + 7
// CHECK-NEXT:    g = x
// CHECK-NEXT:    return x
// LOG: REDUNDANT ASSIGNMENT ELIMINATED IN LCSE:
// LOG-NEXT: x = a * b + 7

int main(void) {
    struct P p = {6, 7};
    int r1 = repeats(3, 4, 5);
    int r2 = same_statement(11, 13);
    int r3 = loads(&p);
    printf("%d %d %d\n", r1, r2, r3);
    r1 = load_store(&p, &p.x);
    r2 = load_call(&p);
    r3 = redefined(3, 4);
    printf("%d %d %d %d\n", r1, r2, r3, g);
    r1 = after_call(&p);
    r2 = after_call_same(&p);
    r3 = escaped(4);
    printf("%d %d %d %d\n", r1, r2, r3, g);
    printf("%d %d %d %d\n", in_andand(2, 3, 1), in_quest(2, 3, 0), before_andand(2, 3, 1),
           before_andand(2, 3, 0));
    r1 = volatiles();
    r2 = redundant(5, 6);
    printf("%d %d %d\n", r1, r2, g);
    return 0;
}
// OUT: 8 158 12
// OUT-NEXT: 23 6 59 1
// OUT-NEXT: 0 5 447 3
// OUT-NEXT: 7 7 7 0
// OUT-NEXT: 0 37 37
