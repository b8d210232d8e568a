// Table growth and the integer arithmetic helpers. The long_ forms work on
// INT65 and report overflow through a flag that they set and never clear, so
// that one flag can watch a whole computation.
#pragma once

#include "support/int65.h"

// Increments *count; when the old count was a multiple of 100 the table is
// reallocated to old count + 100 elements. One realloc per 100 entries is the
// growth rule of all the program's older tables.
void grow_table(void** table, unsigned* count, unsigned element_size);

template <class T> void grow_table(T** table, unsigned* count) {
    void* p = *table;
    grow_table(&p, count, sizeof(T));
    *table = static_cast<T*>(p);
}

// The least power of two at or above x; 0 for 0 and for x above 2^31.
unsigned clp2(unsigned x);
unsigned uint_gcd(unsigned a, unsigned b);
// 0 when either is 0; wraps past 32 bits.
unsigned uint_lcm(unsigned a, unsigned b);

// On magnitudes; the result is never negative. -2^64 counts as magnitude 0.
INT65 long_gcd(INT65 a, INT65 b);
// 0 when either is 0; the product keeps its low 64 bits as INT65 * does.
INT65 long_lcm(INT65 a, INT65 b);
// Returns g = gcd(a, b) >= 0 and sets *x, *y (either may be null) so that
// a * x + b * y == g, for magnitudes below 2^64.
INT65 extended_gcd(INT65 a, INT65 b, INT65* x, INT65* y);
// The floor of the square root; 0 for a negative value.
INT65 long_sqrt(INT65 v);

INT65 long_add(INT65 a, INT65 b, int* overflow);
INT65 long_multiply(INT65 a, INT65 b, int* overflow);
// base to the power exp; the result is meaningless once *overflow is set.
INT65 long_expt(INT65 base, unsigned exp, int* overflow);
// The same on the unsigned 64-bit view of base: overflow above 2^64 - 1.
INT65 ulong_expt(INT65 base, unsigned exp, int* overflow);

// The log of v, or -1 for a value that is no positive power of two.
int power_of_2(INT65 v);
// The largest power of two that divides v; 0 for 0 and for -2^64, whose
// answer has no 64-bit form.
INT65 extract_power_of_2_factor(INT65 v);
