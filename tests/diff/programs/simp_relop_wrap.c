/* Comparisons of sums, products, differences and quotients whose value
   wraps or rounds: a narrowed sum or product may wrap in int, where moving
   the constant across the comparison would change the outcome, and a
   quotient rounds toward zero for negative dividends. */
#include <stdio.h>

static long long wides[] = {0, 1, 2, 0x7ffffffbLL, 0x7fffffffLL, 0x40000002LL, 0x80000001LL,
                            -1, -2, -0x40000000LL, -0x7fffffffLL};
static int ints[] = {-2147483647 - 1, -13, -12, -9, -8, -7, -4, -1, 0, 1, 7, 8, 11, 12, 2147483647};
static unsigned uns[] = {0, 3, 4, 5, 15, 16, 0xfffffffbu, 0xfffffffeu, 0xffffffffu};

/* The narrowing makes the sum an int sum that may wrap. */
static int narrow_sum_less(long long v) { return (int)(v + 5) < 10; }
static int narrow_sum_more(long long v) { return (int)(v + 5) > 0; }
static int narrow_product_eq(long long v) { return (int)(v * 4) == 8; }
static int narrow_product_less(long long v) { return (int)(v * 4) < 8; }
static int narrow_product_neg(long long v) { return (int)(v * -2) < 0; }
static int narrow_shift_eq(long long v) { return (int)(v << 2) == 8; }
static int narrow_difference(long long a, long long b) { return (int)(a - b) < 0; }
static int unsigned_sum_less(unsigned u) { return u + 5u < 10u; }
static int unsigned_sum_eq(unsigned u) { return u + 5u == 3u; }

/* Division rounds toward zero: x / 8 == 0 from -7 to 7. */
static int quotient_zero(int x) { return x / 8 == 0; }
static int quotient_eq(int x) { return x / 4 == -2; }
static int quotient_lt(int x) { return x / 4 < -2; }
static int quotient_le(int x) { return x / 4 <= 0; }
static int quotient_gt(int x) { return x / 4 > -1; }
static int quotient_ge(int x) { return x / 4 >= 2; }
static int uquotient(unsigned u) { return u / 4 == 1; }
static int uquotient_lt(unsigned u) { return u / 4 < 1; }
static int remainder_zero(int x) { return x % 4 == 0; }
static int remainder_one(int x) { return x % 4 == 1; }
static int shifted(int x) { return (x >> 2) <= 1; }
static int ushifted(unsigned u) { return (u >> 2) > 0; }

int main(void) {
    for (unsigned i = 0; i < sizeof wides / sizeof wides[0]; i++) {
        long long v = wides[i];
        printf("v=%lld: %d %d %d %d %d %d %d\n", v, narrow_sum_less(v), narrow_sum_more(v),
               narrow_product_eq(v), narrow_product_less(v), narrow_product_neg(v),
               narrow_shift_eq(v), narrow_difference(v, -v - 1));
    }
    for (unsigned i = 0; i < sizeof ints / sizeof ints[0]; i++) {
        int x = ints[i];
        printf("x=%d: %d %d %d %d %d %d %d %d %d\n", x, quotient_zero(x), quotient_eq(x),
               quotient_lt(x), quotient_le(x), quotient_gt(x), quotient_ge(x), remainder_zero(x),
               remainder_one(x), shifted(x));
    }
    for (unsigned i = 0; i < sizeof uns / sizeof uns[0]; i++) {
        unsigned u = uns[i];
        printf("u=%u: %d %d %d %d %d\n", u, unsigned_sum_less(u), unsigned_sum_eq(u), uquotient(u),
               uquotient_lt(u), ushifted(u));
    }
    return 0;
}
