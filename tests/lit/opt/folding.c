// Integer and floating constant expressions that the front end writes out
// unfolded come out of the optimizer as one constant, computed as the target
// computes them, and the program prints the same before and after.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-dump %t.if | FileCheck %s --check-prefix=IF --match-full-lines
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --check-prefix=OPT --match-full-lines
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <limits.h>
#include <stdio.h>

// A 64-bit shift; the front end folds only where the source was one literal.
unsigned long long top_bit(void) { return 1ull << 63; }
// IF-LABEL: func top_bit() -> unsigned long long {{.*}}
// IF:         return 1ull << 63
// OPT-LABEL: func top_bit() -> unsigned long long {{.*}}
// OPT:         return 9223372036854775808ull

// The front end narrows the cast operand; the addition stays for the folder.
int narrowed(void) { return (signed char)200 + 0; }
// IF-LABEL: func narrowed() -> int {{.*}}
// IF:         return -56 + 0
// OPT-LABEL: func narrowed() -> int {{.*}}
// OPT:         return -56

unsigned wrapped(void) { return 0u - 1u; }
// IF-LABEL: func wrapped() -> unsigned int {{.*}}
// IF:         return 0u - 1u
// OPT-LABEL: func wrapped() -> unsigned int {{.*}}
// OPT:         return 4294967295u

// A signed right shift brings the sign bit in; an unsigned one zeros.
int signed_shift(void) { return (1 << 31) >> 28; }
unsigned unsigned_shift(void) { return 0x80000000u >> 28; }
// IF-LABEL: func signed_shift() -> int {{.*}}
// IF:         return 1 << 31 >> 28
// IF-LABEL: func unsigned_shift() -> unsigned int {{.*}}
// IF:         return 2147483648u >> 28
// OPT-LABEL: func signed_shift() -> int {{.*}}
// OPT:         return -8
// OPT-LABEL: func unsigned_shift() -> unsigned int {{.*}}
// OPT:         return 8u

// INT_MIN expands to (-2147483647 - 1); the target's division gives INT_MIN
// back for INT_MIN / -1, and 0 as the remainder.
int min_over_minus_one(void) { return INT_MIN / -1 + INT_MIN % -1; }
// IF-LABEL: func min_over_minus_one() -> int {{.*}}
// IF:         return (-2147483647 - 1) / -1 + (-2147483647 - 1) % -1
// OPT-LABEL: func min_over_minus_one() -> int {{.*}}
// OPT:         return -2147483648

// Float arithmetic stays in float; the double sum shows its own rounding.
float float_sum(void) { return 0.1f + 0.2f; }
double double_sum(void) { return 0.1 + 0.2; }
// IF-LABEL: func float_sum() -> float {{.*}}
// IF:         return 0x1.99999ap-4f /* 0.1 */ + 0x1.99999ap-3f /* 0.2 */
// IF-LABEL: func double_sum() -> double {{.*}}
// IF:         return 0x1.999999999999ap-4 /* 0.1 */ + 0x1.999999999999ap-3 /* 0.2 */
// OPT-LABEL: func float_sum() -> float {{.*}}
// OPT:         return 0x1.333334p-2f /* 0.3 */
// OPT-LABEL: func double_sum() -> double {{.*}}
// OPT:         return 0x1.3333333333334p-2 /* 0.30000000000000004 */

// A conversion to int truncates toward zero.
int truncated(void) { return (int)-3.99; }
// IF-LABEL: func truncated() -> int {{.*}}
// IF:         return (int)-0x1.feb851eb851ecp+1 /* -3.99 */
// OPT-LABEL: func truncated() -> int {{.*}}
// OPT:         return -3

int main(void) {
    printf("%llu %d %u %d %u %d\n", top_bit(), narrowed(), wrapped(), signed_shift(),
           unsigned_shift(), min_over_minus_one());
    printf("%a %a %d\n", float_sum(), double_sum(), truncated());
    return 0;
}
// OUT: 9223372036854775808 -56 4294967295 -8 8 -2147483648
// OUT-NEXT: 0x1.333334p-2 0x1.3333333333334p-2 -3
