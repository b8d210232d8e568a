// What the control-flow clean-up does to C: code no path reaches goes,
// chains of jumps and blocks that only jump are folded away, a switch or a
// test whose outcome is known becomes its target, and an if/else that only
// assigns one variable becomes one assignment. The program prints the same
// before and after.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-dump %t.if | FileCheck %s --check-prefix=IF --match-full-lines
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --check-prefix=OPT --match-full-lines
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck %s --check-prefix=IFREC
// RUN: %python %inputs/ifrecords.py %t.opt --detail | FileCheck %s --check-prefix=OPTREC
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <stdio.h>

int g;
int twice(int x) { return 2 * x; }

// The front end jumps over a body whose test is a constant false. The bodies
// stay in the file, but nothing reaches them: they go, and the blocks that
// only jumped over them merge into one.
int constant_tests(int x) {
    if (0)
        x *= 7;
    if (sizeof(int) != 4)
        x = 99;
    return x;
}
// IFREC: statement line [[#@LINE-5]] col
// IFREC: statement line [[#@LINE-4]] col
// OPTREC-NOT: statement line [[#@LINE-7]] col
// OPTREC-NOT: statement line [[#@LINE-6]] col
// IF-LABEL: func constant_tests(x: int) -> int {{.*}}
// IF:       bb1:  ; preds: none  succs: bb2
// IF-NEXT:    x = x
// IF-NEXT:    goto bb2
// IF-NEXT:  bb2:  ; preds: bb1  succs: bb3
// IF-NEXT:    goto bb3
// IF-NEXT:  bb3:  ; preds: bb2  succs: none
// IF-NEXT:    return x
// OPT-LABEL: func constant_tests(x: int) -> int {{.*}}
// OPT:       bb1:  ; preds: none  succs: none
// OPT-NEXT:    x = x
// OPT-NEXT:    return x
// OPT-NOT:   bb2:

// Statements after a return that no jump reaches go too.
int dead_code(int x) {
    return x + 1;
unused:
    g = 5;
    return g;
}
// IFREC: statement line [[#@LINE-3]] col
// OPTREC-NOT: statement line [[#@LINE-4]] col

// Three jumps in a row become one.
int chain(int x) {
    if (x > 5)
        goto a;
    x = 1;
a:
    goto b;
b:
    goto c;
c:
    return twice(x);
}
// IF-LABEL: func chain(x: int) -> int {{.*}}
// IF:       bb3:  ; preds: bb1 bb2  succs: bb4
// IF-NEXT:    goto bb4
// IF-NEXT:  bb4:  ; preds: bb3  succs: bb5
// IF-NEXT:    goto bb5
// IF-NEXT:  bb5:  ; preds: bb4  succs: none
// IF-NEXT:    return twice((arg int)x)
// OPT-LABEL: func chain(x: int) -> int {{.*}}
// OPT:         if (x <= 5) goto [[SET:bb[0-9]+]] else goto [[CALL:bb[0-9]+]]
// OPT-NEXT:  [[SET]]:  ; preds: bb1  succs: [[CALL]]
// OPT-NEXT:    x = 1
// OPT-NEXT:    goto [[CALL]]
// OPT-NEXT:  [[CALL]]:  ; preds: bb1 [[SET]]  succs: none
// OPT-NEXT:    return twice((arg int)x)

int constant_switch(void) {
    switch (2) {
    case 1:
        return 10;
    case 2:
        return 20;
    default:
        return 30;
    }
}
// IF-LABEL: func constant_switch() -> int {{.*}}
// IF:         switch (2) {case 1: bb2; case 2: bb3; default: bb4}
// OPT-LABEL: func constant_switch() -> int {{.*}}
// OPT:       bb1:  ; preds: none  succs: none
// OPT-NEXT:    return 20

// Both arms go to one place: the test has no effect and goes.
void empty_arms(int x) {
    if (x) {
    } else {
    }
    g = x;
}
// IF-LABEL: func empty_arms(x: int) -> void {{.*}}
// IF:         if (!x) goto bb2 else goto bb2
// OPT-LABEL: func empty_arms(x: int) -> void {{.*}}
// OPT:       bb1:  ; preds: none  succs: bb2
// OPT-NEXT:    x = x
// OPT-NEXT:    g = x
// OPT-NOT:     if

// Arms that assign one variable: a conditional expression, or for two
// constants a selection without a branch.
void larger(int a, int b) {
    int r;
    if (a > b)
        r = a;
    else
        r = b;
    g = r * 3;
}
int constant_arms(int c) {
    int r;
    if (c)
        r = 4;
    else
        r = 6;
    return r;
}
// IF-LABEL: func larger(a: int, b: int) -> void {{.*}}
// IF:         if (a <= b) goto bb3 else goto bb2
// IF-NEXT:  bb2:  ; preds: bb1  succs: bb4
// IF-NEXT:    r = a
// IF-LABEL: func constant_arms(c: int) -> int {{.*}}
// IF:         if (!c) goto bb3 else goto bb2
// IF-NEXT:  bb2:  ; preds: bb1  succs: bb4
// IF-NEXT:    r = 4
// OPT-LABEL: func larger(a: int, b: int) -> void {{.*}}
// OPT:       bb1:  ; preds: none  succs: bb2
// OPT-NEXT:    a = a
// OPT-NEXT:    b = b
// OPT-NEXT:    r = a <= b ? b : a
// OPT-NEXT:    g = r * 3
// OPT-NOT:     if
// OPT-LABEL: func constant_arms(c: int) -> int {{.*}}
// OPT:       bb1:  ; preds: none  succs: none
// OPT-NEXT:    c = c
// OPT-NEXT:    r = (-(c == 0) & 2) | 4
// OPT-NEXT:    return r

int main(void) {
    printf("%d %d %d %d %d", constant_tests(3), dead_code(4), chain(9), chain(2),
           constant_switch());
    empty_arms(5);
    printf(" %d", g);
    larger(4, 9);
    printf(" %d", g);
    larger(8, -1);
    printf(" %d %d %d\n", g, constant_arms(0), constant_arms(7));
    return 0;
}
// OUT: 3 5 18 2 20 5 27 24 6 4
