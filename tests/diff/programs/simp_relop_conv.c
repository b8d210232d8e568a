/* Comparisons of converted values: a conversion comes off a compared value
   only where it keeps every value, and the comparison then reads the inner
   type's sign. Sign changes, narrowings, _Bool and bit fields change values
   and must stay. */
#include <stdio.h>

struct bits {
    unsigned f : 4;
    int g : 3;
};

static int signed_to_unsigned(signed char c) { return (unsigned)c < 100u; }
static int signed_to_wide_unsigned(int i) { return (unsigned long long)i < 5ull; }
static int narrowed_eq(int i) { return (signed char)i == -1; }
static int narrowed_unsigned(int i) { return (unsigned char)(i + 1) == 0; }
static int narrowed_short(int i) { return (unsigned short)i > 65000; }
static int to_bool(int i) { return (_Bool)i == 1; }
static int bool_sum(_Bool a, _Bool b) { return a + b == 2; }
static int unsigned_widened(unsigned u) { return (long long)u > -1LL; }
static int unsigned_widened_lt(unsigned u) { return (long long)u < 4294967296LL; }
static int uchar_widened(unsigned char c) { return c > 200; }
static int schar_widened(signed char c) { return c < -100; }
static int both_converted(unsigned char a, unsigned char b) { return a < b; }
static int both_signed(signed char a, signed char b) { return a <= b; }
static int field_eq(struct bits s) { return s.f == 15; }
static int field_neg(struct bits s) { return s.g < 0; }
static int field_big(struct bits s) { return s.f + 1 == 16; }

int main(void) {
    int ints[] = {-1, 0, 1, 99, 100, 127, 128, 255, 256, 65001, -65536, -2147483647 - 1};
    for (unsigned i = 0; i < sizeof ints / sizeof ints[0]; i++) {
        int x = ints[i];
        printf("%d: %d %d %d %d %d %d %d %d %d %d %d %d\n", x, signed_to_unsigned((signed char)x),
               signed_to_wide_unsigned(x), narrowed_eq(x), narrowed_unsigned(x),
               narrowed_short(x), to_bool(x), bool_sum(x != 0, x & 1), unsigned_widened(x),
               unsigned_widened_lt(x), uchar_widened((unsigned char)x),
               schar_widened((signed char)x), both_converted((unsigned char)x, 100));
        printf("   %d\n", both_signed((signed char)x, -1));
    }
    for (int v = 0; v < 16; v += 5) {
        struct bits s;
        s.f = v;
        s.g = v - 4;
        printf("field %d: %d %d %d\n", v, field_eq(s), field_neg(s), field_big(s));
    }
    return 0;
}
