// Statements made straight before the blocks are built: a sequence becomes
// its statements, and a short circuit whose conditional part has an effect
// becomes a test of its condition, with the statement that held it copied
// into both arms. What the statement evaluates first stays first: with an
// effect ahead of the short circuit the statement stays whole, and a short
// circuit without effects stays a value. Both files print the same.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O0 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
#include <stdio.h>

int calls;
int tick(int v) {
    calls += v;
    return v;
}

void as_statement(int a) { a && tick(1); }
// CHECK-LABEL: func as_statement(a: int) -> void
// CHECK:         if (a) goto [[CALL:bb[0-9]+]] else goto [[JOIN:bb[0-9]+]]
// CHECK-NEXT:  [[CALL]]: ; preds: bb1 succs: [[JOIN]]
// CHECK-NEXT:    tick((arg int)1)

int stored(int a) {
    int y = a || tick(2);
    return y;
}
// CHECK-LABEL: func stored(a: int) -> int
// CHECK:         if (a) goto [[ONE:bb[0-9]+]] else goto [[CALL:bb[0-9]+]]
// CHECK-NEXT:  [[CALL]]:
// CHECK-NEXT:    y = tick((arg int)2) != 0
// CHECK:       [[ONE]]:
// CHECK-NEXT:    y = 1

int chosen(int a, int b) { return a ? tick(3) : b; }
// CHECK-LABEL: func chosen(a: int, b: int) -> int
// CHECK:         if (a) goto
// CHECK:         return tick((arg int)3)
// CHECK:         return b

int updated(int a, int b) {
    int x = b;
    x += a ? tick(4) : 1;
    return x;
}
// CHECK-LABEL: func updated(a: int, b: int) -> int
// CHECK:         x = x + 1
// CHECK:         x += tick((arg int)4)

int in_sum(int a, int b) { return b + (a && tick(5)); }
// CHECK-LABEL: func in_sum(a: int, b: int) -> int
// CHECK:         return (tick((arg int)5) != 0) + b
// CHECK:         return b

int pure(int a, int b) { return a ? b : 4; }
// CHECK-LABEL: func pure(a: int, b: int) -> int
// CHECK:         return a ? b : 4

int effect_first(int a) { return tick(6) + (a && tick(7)); }
// CHECK-LABEL: func effect_first(a: int) -> int
// CHECK:         return tick((arg int)6) + (a && tick((arg int)7))

int sequence(int a) { return (tick(8), a); }
// CHECK-LABEL: func sequence(a: int) -> int
// CHECK:         tick((arg int)8)
// CHECK-NEXT:    return a

int tested(int a, int b) {
    if (b > 2 ? tick(9) : a)
        return 1;
    return 2;
}
// CHECK-LABEL: func tested(a: int, b: int) -> int
// CHECK:         if (b > 2) goto [[CALL:bb[0-9]+]] else goto [[PLAIN:bb[0-9]+]]
// CHECK:       [[PLAIN]]:
// CHECK-NEXT:    if (a == 0) goto
// CHECK:       [[CALL]]:
// CHECK-NEXT:    if (tick((arg int)9) == 0) goto

int main(void) {
    as_statement(1);
    printf("%d\n", stored(0) + chosen(1, 2) + updated(0, 5) + in_sum(1, 1) + pure(0, 1) +
                       effect_first(1) + sequence(3) + tested(0, 3));
    printf("calls %d\n", calls);
    return 0;
}
// OUT: 27
// OUT-NEXT: calls 41
