// A call of a function to itself whose value is returned, or after which the
// function only returns, becomes new values for the parameters and a jump
// back: the recursion becomes a loop. The step runs when the blocks are built,
// from -O2 on, for a whole program (program mode 2); below -O3 the driver
// clears the program mode, so it takes -O3 --program_mode=2. The program
// prints the same either way, with fewer calls.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.o1
// RUN: %ondrel-opt -O2 %t.if %t.o2
// RUN: %ondrel-opt -O3 --program_mode=2 %t.if %t.o3
// RUN: %ondrel-dump %t.o1 | FileCheck %s --check-prefix=CALL --implicit-check-not="tail recursive"
// RUN: %ondrel-dump %t.o2 | FileCheck %s --check-prefix=CALL --implicit-check-not="tail recursive"
// RUN: %ondrel-dump %t.o3 | FileCheck %s --check-prefix=GCD --match-full-lines
// RUN: %ondrel-dump %t.o3 | FileCheck %s --check-prefix=ADD --match-full-lines
// RUN: ondrel-run --stats %t.o1 2>&1 | FileCheck %s --check-prefixes=OUT,CALLS
// RUN: ondrel-run --stats %t.o3 2>&1 | FileCheck %s --check-prefixes=OUT,LOOPS

#include <stdio.h>

int total;

// The value of the call is returned. The new value of a depends on b, which
// changes first: a temporary keeps it.
int gcd(int a, int b) {
    if (b == 0)
        return a;
    return gcd(b, a % b);
}
// CALL-DAG: return gcd((arg int)b, (arg int)(a % b))
// GCD-LABEL: func gcd(a: int, b: int) -> int {{.*}}
// GCD:         if (b) goto [[BODY:bb[0-9]+]] else goto {{bb[0-9]+}}
// GCD-NEXT:  [[BODY]]:  ; preds: bb1 [[BODY]]  succs: [[BODY]] {{bb[0-9]+}}
// GCD-NEXT:    [[T:\$O\$T[0-9]+]] = b
// GCD-NEXT:    b = a % b
// GCD-NEXT:    a = [[T]]
// GCD-NEXT:    comment("***\t; tail recursive call occurs here")
// GCD-NEXT:    if (b) goto [[BODY]] else goto {{bb[0-9]+}}
// GCD-NOT:   return gcd({{.*}}

// Nothing but the return follows the call.
void add_down(int n) {
    if (n == 0)
        return;
    total += n;
    add_down(n - 1);
}
// CALL-DAG: add_down((arg int)(n + -1))
// ADD-LABEL: func add_down(n: int) -> void {{.*}}
// ADD:         if (n) goto [[BODY:bb[0-9]+]] else goto {{bb[0-9]+}}
// ADD-NEXT:  [[BODY]]:  ; preds: bb1 [[BODY]]  succs: [[BODY]] {{bb[0-9]+}}
// ADD-NEXT:    total = total + n
// ADD-NEXT:    n = n + -1
// ADD-NEXT:    comment("***\t; tail recursive call occurs here")
// ADD-NEXT:    if (n) goto [[BODY]] else goto {{bb[0-9]+}}
// ADD-NOT:   add_down({{.*}}

int main(void) {
    add_down(10);
    printf("%d %d\n", gcd(1071, 462), total);
    return 0;
}
// OUT: 21 55
// Eleven calls of add_down and four of gcd, or one each.
// CALLS: calls 16
// LOOPS: calls 3
