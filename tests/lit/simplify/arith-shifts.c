// Shifts by constants as the simplifier leaves them when the file is read.
// Counts of two shifts the same way add up; a left shift and a right shift
// cancel only where the operand's bounds show that no bit is shifted out, or
// else, unsigned, leave a mask; a signed pair is a sign extension and stays.
// Every function also runs, before and after.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O0 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --check-prefix=OPT --match-full-lines
// RUN: %ondrel-opt -O2 %t.if %t.o2
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o2 | FileCheck %s --check-prefix=OUT

#include <limits.h>
#include <stdio.h>

int calls;
int f(void) { return ++calls; }

int zero(int x) { return x << 0; }
unsigned srl_srl(unsigned u) { return (u >> 3) >> 4; }
unsigned srl_srl_out(unsigned u) { return (u >> 20) >> 20; }
int asr_asr_out(int i) { return (i >> 20) >> 20; }
unsigned sll_sll(unsigned u) { return (u << 3) << 4; }
unsigned sll_sll_out(void) { return ((unsigned)f() << 20) << 20; }
// OPT-LABEL: func zero(x: int) -> int {{.*}}
// OPT:         return x
// OPT-LABEL: func srl_srl(u: unsigned int) -> unsigned int {{.*}}
// OPT:         return u >> 7
// OPT-LABEL: func srl_srl_out(u: unsigned int) -> unsigned int {{.*}}
// OPT:         return 0u
// OPT-LABEL: func asr_asr_out(i: int) -> int {{.*}}
// OPT:         return i >> 31
// OPT-LABEL: func sll_sll(u: unsigned int) -> unsigned int {{.*}}
// OPT:         return u << 7
// OPT-LABEL: func sll_sll_out() -> unsigned int {{.*}}
// OPT:         f()
// OPT-NEXT:    return 0u

unsigned mask(unsigned u) { return (u << 3) >> 3; }
int sext(int i) { return (i << 24) >> 24; }
// OPT-LABEL: func mask(u: unsigned int) -> unsigned int {{.*}}
// OPT:         return u & 536870911u
// OPT-LABEL: func sext(i: int) -> int {{.*}}
// OPT:         return i << 24 >> 24

// A left shift is a product where it cannot overflow; the powers of two of
// a product and a right shift cancel where the product drops no bit.
int small(unsigned char c) { return c << 2; }
int big(int i) { return i << 2; }
int cancel(unsigned char c) { return (c * 8) >> 3; }
int cancel_part(unsigned char c) { return (c * 32) >> 3; }
unsigned ucancel(unsigned u) { return (u * 8) >> 3; }
int scancel(int i) { return (i * 8) >> 3; }
// OPT-LABEL: func small(c: unsigned char) -> int {{.*}}
// OPT:         return (int)c * 4
// OPT-LABEL: func big(i: int) -> int {{.*}}
// OPT:         return i << 2
// OPT-LABEL: func cancel(c: unsigned char) -> int {{.*}}
// OPT:         return (int)c
// OPT-LABEL: func cancel_part(c: unsigned char) -> int {{.*}}
// OPT:         return (int)c * 4
// OPT-LABEL: func ucancel(u: unsigned int) -> unsigned int {{.*}}
// OPT:         return u & 536870911u
// OPT-LABEL: func scancel(i: int) -> int {{.*}}
// OPT:         return (i * 8) >> 3

// A right shift of a widened value is taken before the widening when the
// widening keeps the sign; a left shift never is.
long long inside(int i) { return (long long)i >> 4; }
unsigned long long inside_u(unsigned u) { return (unsigned long long)u >> 4; }
unsigned long long not_inside(int i) { return (unsigned long long)i >> 4; }
long long left_widened(int i) { return (long long)i << 8; }
// OPT-LABEL: func inside(i: int) -> long long {{.*}}
// OPT:         return (long long)(i >> 4)
// OPT-LABEL: func inside_u(u: unsigned int) -> unsigned long long {{.*}}
// OPT:         return (unsigned long long)(u >> 4)
// OPT-LABEL: func not_inside(i: int) -> unsigned long long {{.*}}
// OPT:         return (unsigned long long)i >> 4
// OPT-LABEL: func left_widened(i: int) -> long long {{.*}}
// OPT:         return (long long)i * 256ll

int main(void) {
    printf("%d %u %u %d %d %u %u calls %d\n", zero(-9), srl_srl(0xfedcba98u), srl_srl_out(~0u),
           asr_asr_out(INT_MIN), asr_asr_out(INT_MAX), sll_sll(0x12345678u), sll_sll_out(),
           calls);
    printf("%u %d %d\n", mask(0xffffffffu), sext(0x80), sext(0x17f));
    printf("%d %d %d %d %d %u %d %d\n", small(255), big(0x30000001), big(-3), cancel(255),
           cancel_part(200), ucancel(0x20000001u), scancel(0x10000003), scancel(-5));
    printf("%lld %llu %llx %lld %lld\n", inside(INT_MIN), inside_u(0xffffffffu), not_inside(-16),
           left_widened(INT_MIN), left_widened(0x7fffffff));
    return 0;
}
// OUT: -9 33405301 0 -1 0 439041024 0 calls 1
// OUT-NEXT: 536870911 -128 127
// OUT-NEXT: 1020 -1073741820 -12 255 800 1 -268435453 -5
// OUT-NEXT: -134217728 268435455 fffffffffffffff -549755813888 549755813632
