// Calls: direct and indirect callees, the argument chain and call numbers,
// structs passed and returned by value, variable arguments through the
// helpers, and builtins.
// RUN: %ondrel-cfe %s -o %t.if
// RUN: %ondrel-dump %t.if | FileCheck %s
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck --check-prefix=RAW %s
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

struct v { double x, y; };

struct v make(double x, double y) { struct v r = {x, y}; return r; }
int three(int a, char b, float c);
int none(void);

double direct(int (*fp)(int, char, float), struct v a) {
    int n = three(1, 2, 3) + fp(4, 5, 6) + (*fp)(7, 8, 9) + none();
    struct v b = make(a.x, n);
    return b.y + make(1, 2).x;
}
// Integer arguments are ACONV'd by the optimizer's reader; a member of a
// struct that a call returns is taken from a temporary.
// CHECK-LABEL: func direct(
// CHECK:      n = three((arg int)1, (arg unsigned char)unsigned char(2), 0x1.8p+1f /* 3 */) + fp((arg int)4, (arg unsigned char)unsigned char(5), 0x1.8p+2f /* 6 */) + fp((arg int)7, (arg unsigned char)unsigned char(8), 0x1.2p+3f /* 9 */) + none()
// CHECK-NEXT: b = make(a.x, (double)n)
// CHECK-NEXT: return b.y + (*($T1 = make(0x1p+0 /* 1 */, 0x1p+1 /* 2 */), &$T1)).x

// Arguments lean left; CALL numbers count 1, 2, ... in source order; a
// call without argument is a UCALL and has no number.
// RAW-LABEL: begin func 1
// RAW:      node CALL 1
// RAW-NEXT: node UAND
// RAW-NEXT: node NAME global 2
// RAW-NEXT: node COMMA
// RAW-NEXT: node COMMA
// RAW-NEXT: node ICON 1
// RAW-NEXT: node ICON 2
// RAW-NEXT: node FCON 0x1.8p+1
// RAW-NEXT: node CALL 2
// RAW-NEXT: node NAME level2
// RAW:      node CALL 3
// RAW-NEXT: node NAME level2
// RAW:      node UCALL
// RAW-NEXT: node UAND
// RAW-NEXT: node NAME global 3
// RAW:      node STASG
// RAW-NEXT: node NAME level2
// RAW-NEXT: node CALL 4
// RAW:      node CALL 5

int sum(int n, ...) {
    va_list ap;
    int s = 0;
    va_start(ap, n);
    while (n--)
        s += va_arg(ap, int);
    struct v last = va_arg(ap, struct v);
    va_end(ap);
    return s + (int)last.x;
}
// CHECK-LABEL: func sum(n: int, ...)
// CHECK:      __ondrel_va_start(&ap)
// CHECK:      last = *(struct v*)__ondrel_va_arg(&ap, (arg unsigned int)16u, (arg unsigned int)8u)
// CHECK-NEXT: __ondrel_va_end(&ap)
// CHECK:      s += *(int*)__ondrel_va_arg(&ap, (arg unsigned int)4u, (arg unsigned int)4u)

int forward(const char *fmt, ...) {
    va_list ap, copy;
    va_start(ap, fmt);
    va_copy(copy, ap);
    int r = vsnprintf(0, 0, fmt, copy);
    va_end(copy);
    va_end(ap);
    return r;
}
// CHECK-LABEL: func forward(
// CHECK:      __ondrel_va_copy(&copy, &ap)
// CHECK-NEXT: r = vsnprintf(unsigned char*(0), (arg unsigned int)0u, fmt, copy)

int builtins(char *d, const char *s, int x) {
    memcpy(d, s, 4);
    __builtin_memset(d, 0, 2);
    if (__builtin_expect(x > 3, 0))
        return __builtin_clz(x) + __builtin_constant_p(x) + (int)__builtin_huge_val();
    return __builtin_offsetof(struct v, y);
}
// Library builtins call the library function; others are calls of their own
// name unless Clang evaluates them.
// CHECK-LABEL: func builtins(
// CHECK:      memcpy((void*)d, (const void*)s, (arg unsigned int)4u)
// CHECK-NEXT: memset((void*)d, (arg int)0, (arg unsigned int)2u)
// CHECK-NEXT: if (!(long)(x > 3)) goto
// CHECK:      return 8
// CHECK:      return __builtin_clz((arg unsigned int)(unsigned int)x) + 0 + (int)inf

// The helpers and library functions are external declarations.
// RAW-LABEL: {{^}}end{{$}}
// RAW-DAG: global __ondrel_va_start size=0 class=5
// RAW-DAG: global __ondrel_va_arg size=0 class=5
// RAW-DAG: global __ondrel_va_end size=0 class=5
// RAW-DAG: global __ondrel_va_copy size=0 class=5
// RAW-DAG: global memset size=0 class=5
// RAW-DAG: global __builtin_clz size=0 class=5
