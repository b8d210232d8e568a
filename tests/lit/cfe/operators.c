// Operators: pointer arithmetic in bytes, signed and unsigned relations,
// shifts, assigning operators on narrow and floating types, increments,
// conversions and tests.
// RUN: %ondrel-cfe %s -o %t.if
// RUN: %ondrel-dump %t.if | FileCheck %s

struct s { int a; short b[4]; };

int pointers(int *p, int *q, short i, long long k, char *c, struct s *sp) {
    p = p + i;
    p = p - 3;
    c = c + i;
    sp = &sp[k];
    return (p - q) + (c - (char *)q) + p[2] + (p > q) + (p == 0);
}
// CHECK-LABEL: func pointers(
// CHECK:      p = p + (int)i * 4
// CHECK-NEXT: p = p - 12
// CHECK-NEXT: c = c + (int)i
// CHECK-NEXT: sp = sp + (int)k * 12
// CHECK-NEXT: return (p - q) / 4 + (c - (unsigned char*)q) + *(p + 8) + (p >u q) + (p == int*(0))

int relations(int a, unsigned b, long long c, unsigned long long d, double e) {
    return (a < 1) + (b < 1u) + (c >= 2) + (d > 3) + (e <= 0.5) + (a != -1);
}
// CHECK-LABEL: func relations(
// CHECK: return (a < 1) + (b <u 1u) + (c >= 2ll) + (d >u 3ull) + (e <= 0x1p-1 /* 0.5 */) + (a != -1)

int shifts(int a, unsigned u, long long n, signed char c) {
    return (a >> n) + (int)(u >> 3) + (c << 2) + (int)(n << a);
}
// The count is an int; the shift has the promoted left operand's type.
// CHECK-LABEL: func shifts(
// CHECK: return (a >> (int)n) + (int)(u >> 3) + ((int)c << 2) + (int)(n << a)

void assigning(unsigned char *uc, short s, float f, _Bool b, int *p, int i, double *dp) {
    *uc += 300;
    *uc *= i;
    s /= 2;
    s >>= 1;
    i /= 2u;
    f += 1;
    f *= 0.5;
    b += 2;
    p += i;
    p -= 2;
    dp[i++] += 1.0f;
    uc[i++] /= 3;
}
// + - * & | ^ in a narrow integer stay one node, the operand converted to it;
// anything whose result depends on the width of the computation is written
// out, and an address with side effects goes to a temporary first.
// CHECK-LABEL: func assigning(
// CHECK:      *uc += unsigned char(44)
// CHECK-NEXT: *uc *= (unsigned char)i
// CHECK-NEXT: s = (short)((int)s / 2)
// CHECK-NEXT: s = (short)((int)s >> 1)
// CHECK-NEXT: i = (int)((unsigned int)i / 2u)
// CHECK-NEXT: f += 0x1p+0f
// CHECK-NEXT: f = (float)((double)f * 0x1p-1 /* 0.5 */)
// CHECK-NEXT: b = (int)b + 2 != 0
// CHECK-NEXT: p += i * 4
// CHECK-NEXT: p -= 8
// CHECK-NEXT: *(dp + i++ * 8) += 0x1p+0
// CHECK-NEXT: $T1 = uc + i++, *$T1 = (unsigned char)((int)*$T1 / 3)

void increments(int *p, float f, _Bool b, char c, long long l, long long *out) {
    p++;
    --p;
    f++;
    b--;
    *out = ++c + l--;
}
// CHECK-LABEL: func increments(
// CHECK:      PLUSPLUS(p, 4)
// CHECK-NEXT: p -= 4
// CHECK-NEXT: PLUSPLUS(f, 0x1p+0f /* 1 */)
// CHECK-NEXT: b--
// CHECK-NEXT: *out = (long long)(c += unsigned char(1)) + l--

int conversions(int i, double d, void *v, char c, unsigned u) {
    _Bool b1 = i, b2 = d, b3 = v;
    float f = 3;
    int *p = v;
    unsigned long addr = (unsigned long)p;
    return b1 + b2 + b3 + (int)f + (int)d + c + (int)addr + (int)(short)u + (p == (void *)0);
}
// A conversion to _Bool tests against zero; constants are converted in place.
// CHECK-LABEL: func conversions(
// CHECK:      b1 = i != 0
// CHECK-NEXT: b2 = d != 0x0p+0
// CHECK-NEXT: b3 = v != void*(0)
// CHECK-NEXT: f = 0x1.8p+1f
// CHECK-NEXT: p = (int*)v
// CHECK-NEXT: addr = (unsigned long)p
// CHECK-NEXT: return (int)b1 + (int)b2 + (int)b3 + (int)f + (int)d + (int)c + (int)addr + (int)(short)u + (p == int*(0))

int values(int a, int b, int *p, struct s x, struct s *y) {
    int r = a && b;
    r += a || !p;
    r += !a;
    r += !(a < b);
    r += (a++, b);
    r += a ? b : 3;
    *y = x;
    return r + sizeof x + sizeof(long double);
}
// CHECK-LABEL: func values(
// CHECK:      r = a && b
// CHECK-NEXT: r += a || p == int*(0)
// CHECK-NEXT: r += !a
// CHECK-NEXT: r += a >= b
// CHECK-NEXT: r += (a++, b)
// CHECK-NEXT: r += a ? b : 3
// CHECK-NEXT: *y = x
// CHECK-NEXT: return (int)((unsigned int)r + 12u + 8u)
