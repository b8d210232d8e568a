// Negation and complement as the simplifier leaves them when the file is
// read. -(a - b) is b - a for integers only: for floats, a equal to b gives
// -0.0 on one side and +0.0 on the other. Every function also runs.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O0 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --check-prefix=OPT --match-full-lines
// RUN: %ondrel-opt -O2 %t.if %t.o2
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o2 | FileCheck %s --check-prefix=OUT

#include <limits.h>
#include <stdio.h>

int negneg(int x) { return -(-x); }
int negdiff(int a, int b) { return -(a - b); }
double fnegneg(double x) { return -(-x); }
double fnegdiff(double a, double b) { return -(a - b); }
// OPT-LABEL: func negneg(x: int) -> int {{.*}}
// OPT:         return x
// OPT-LABEL: func negdiff(a: int, b: int) -> int {{.*}}
// OPT:         return b - a
// OPT-LABEL: func fnegneg(x: double) -> double {{.*}}
// OPT:         return x
// OPT-LABEL: func fnegdiff(a: double, b: double) -> double {{.*}}
// OPT:         return -(a - b)

// ~x is x ^ all ones of its type.
int notb(int x) { return ~x; }
unsigned notb_u(unsigned x) { return ~x; }
unsigned long long notb_ull(unsigned long long x) { return ~x; }
// OPT-LABEL: func notb(x: int) -> int {{.*}}
// OPT:         return x ^ -1
// OPT-LABEL: func notb_u(x: unsigned int) -> unsigned int {{.*}}
// OPT:         return x ^ 4294967295u
// OPT-LABEL: func notb_ull(x: unsigned long long) -> unsigned long long {{.*}}
// OPT:         return x ^ 18446744073709551615ull

int main(void) {
    printf("%d %d %d\n", negneg(INT_MIN), negdiff(INT_MIN, 1), negdiff(5, -3));
    printf("%a %a %a\n", fnegneg(-0.0), fnegdiff(1.5, 1.5), fnegdiff(1.0, 3.0));
    printf("%d %u %llx\n", notb(-1), notb_u(5u), notb_ull(0x00ff00ff00ff00ffull));
    return 0;
}
// OUT: -2147483648 -2147483647 -8
// OUT-NEXT: -0x0p+0 -0x0p+0 0x1p+1
// OUT-NEXT: 0 4294967290 ff00ff00ff00ff00
