// The records of a function: parameters, argument prolog, locals, nested
// blocks with their declarations, renamed shadowed names; storage classes,
// qualifier word and pragmas of functions; local statics.
// RUN: %ondrel-cfe %s -o %t.if 2>/dev/null
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck %s
// RUN: %ondrel-dump %t.if | FileCheck --check-prefix=DUMP %s

struct pair { int a, b; };
int global_sum;

int sum(int n, register struct pair p, int) {
    int total = n;
    {
        int n = p.a;
        total += n;
        {
            int n = p.b;
            total += n;
        }
    }
    for (int i = 0; i < 2; i++)
        total += i;
    return total;
}
// CHECK-LABEL: begin func 1
// CHECK-NEXT: symbol n size=32 class=9 qual=0x0 align=32
// CHECK-NEXT: symbol p size=64 class=9 qual=0x80 align=32
// CHECK-NEXT: symbol $arg3 size=32 class=9
// CHECK-NEXT: end args line 11
// CHECK-NEXT: symbol n size=32 class=1
// CHECK-NEXT: symbol p size=64 class=1 qual=0x80
// CHECK-NEXT: symbol total size=32 class=1
// CHECK-NEXT: end locals line 11
// The prolog copies each named parameter into its local.
// CHECK-NEXT: statement line 11
// CHECK-NEXT: node ASG
// CHECK-NEXT: node NAME level2 3
// CHECK-NEXT: node NAME level1 0
// CHECK-NEXT: statement line 11
// CHECK-NEXT: node STASG
// CHECK-NEXT: node NAME level2 4
// CHECK-NEXT: node NAME level1 1
// CHECK-NEXT: statement line 12
// CHECK-NEXT: node ASG
// CHECK-NEXT: node NAME level2 5
// CHECK-NEXT: node NAME level2 3
// CHECK-NEXT: begin block line 13
// CHECK-NEXT: symbol n$1 size=32 class=1
// CHECK-NEXT: statement line 14
// CHECK:      begin block line 16
// CHECK-NEXT: symbol n$2 size=32 class=1
// CHECK-NEXT: statement line 17
// CHECK-NEXT: node ASG
// CHECK-NEXT: node NAME level4 7
// CHECK:      end block line 19
// CHECK:      end block line 20
// A for with a declaration is a block of its own.
// CHECK-NEXT: begin block line 21
// CHECK-NEXT: symbol i size=32 class=1
// CHECK:      end block line 22
// CHECK-NEXT: statement line 23
// CHECK-NEXT: node RETURN
// CHECK-NEXT: node NAME global 1
// CHECK-NEXT: node NAME level2 5
// CHECK-NEXT: end func line 24

// A definition without prototype takes its arguments promoted.
static int old_style(c, f) char c; float f; { return c + (int)f; }
// CHECK-LABEL: begin func 2
// CHECK-NEXT: symbol c size=32 class=9
// CHECK-NEXT: symbol f size=64 class=9
// CHECK-NEXT: end args
// CHECK-NEXT: symbol c size=8 class=1
// CHECK-NEXT: symbol f size=32 class=1
// CHECK-NEXT: end locals
// CHECK-NEXT: statement
// CHECK-NEXT: node ASG
// CHECK-NEXT: node NAME level2 2
// CHECK-NEXT: node SCONV
// CHECK-NEXT: node NAME level1 0

inline int twice(int x) { return 2 * x; }
__attribute__((always_inline)) static inline int thrice(int x) { return 3 * x; }
__attribute__((noinline, noreturn)) void stop(void) { for (;;) ; }
__attribute__((section(".fast"), used)) int tuned;
int declared_only(void);

int count(void) {
    static int calls = 5;
    static int other;
    calls++;
    return calls + other + twice(1) + thrice(1) + declared_only() + old_style(1, 2.0f);
}
int main(void) { count(); }
// A local static is a file-level object of class 3 with a name of its own;
// main without return returns 0.
// CHECK-LABEL: begin func 7
// CHECK-NEXT: end args
// CHECK-NEXT: end locals
// CHECK-NEXT: statement line 91
// CHECK-NEXT: node PLUSPLUS
// CHECK-NEXT: node NAME global 8
// CHECK:      end func line 93
// CHECK-LABEL: begin func 11
// CHECK-NEXT: end args
// CHECK-NEXT: end locals
// CHECK-NEXT: statement line 94
// CHECK-NEXT: node UCALL
// CHECK-NEXT: node UAND
// CHECK-NEXT: node NAME global 7
// CHECK-NEXT: statement line 94
// CHECK-NEXT: node RETURN
// CHECK-NEXT: node NAME global 11
// CHECK-NEXT: node ICON 0
// CHECK-NEXT: end func line 94

// CHECK-LABEL: {{^}}end{{$}}
// CHECK-NEXT: global global_sum size=32 class=2 qual=0x0 align=32 pragmas=0
// CHECK-NEXT: global sum size=0 class=2 qual=0x0 align=32 pragmas=0
// CHECK-NEXT: global old_style size=0 class=3
// CHECK-NEXT: global twice size=0 class=2 qual=0x4 align=32 pragmas=0
// CHECK-NEXT: global thrice size=0 class=3 qual=0x4 align=32 pragmas=1
// CHECK-NEXT: pragma 88
// CHECK-NEXT: global stop size=0 class=2 qual=0x0 align=32 pragmas=2
// CHECK-NEXT: pragma 4
// CHECK-NEXT: pragma 3
// CHECK-NEXT: global tuned size=32 class=2 qual=0x0 align=32 pragmas=2
// CHECK-NEXT: pragma 2 ".fast"
// CHECK-NEXT: pragma 95
// CHECK-NEXT: global count size=0 class=2
// CHECK-NEXT: global count$calls size=32 class=3
// CHECK-NEXT: global count$other size=32 class=3
// CHECK-NEXT: global declared_only size=0 class=5
// CHECK-NEXT: global main size=0 class=2
// CHECK-NEXT: end
// CHECK-NEXT: init count$calls
// CHECK-NEXT: node ICON 5
// CHECK-NEXT: node ENDINIT

// DUMP: func sum(n: int, p: struct pair, $arg3: int) -> int
// DUMP-NEXT: local n: int
// DUMP-NEXT: local p: struct pair
// DUMP-NEXT: local total: int
// DUMP-NEXT: local n$1: int
// DUMP-NEXT: local n$2: int
// DUMP-NEXT: local i: int
