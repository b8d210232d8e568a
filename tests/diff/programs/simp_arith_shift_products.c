/* Shifts against products and conversions. (u * 8) >> 3 is u only where
   u * 8 drops no bit; unsigned it is u & 0x1fffffff. A signed (x << 24) >> 24
   is a sign extension. A left shift of a widened value cannot be done before
   the widening, nor a right shift by a count past the narrow value's size,
   nor one of a signed value widened to an unsigned type. */
#include <stdio.h>

static unsigned ucancel(unsigned u) { return (u * 8u) >> 3; }
static unsigned ucancel_more(unsigned u) { return (u * 4u) >> 3; }
static unsigned ucancel_less(unsigned u) { return (u * 16u) >> 3; }
static int small_cancel(unsigned char c) { return (c * 8) >> 3; }
static int small_part(unsigned short s) { return (s * 32) >> 3; }
static unsigned umask(unsigned u) { return (u << 3) >> 3; }
static int sext(int x) { return (int)((unsigned)x << 24) >> 24; }
static long long widened_left(int i) { return (long long)i << 8; }
static unsigned long long uwidened_left(unsigned u) { return (unsigned long long)u << 20; }
static long long widened_right(int i) { return (long long)i >> 4; }
static long long widened_far(int i) { return (long long)i >> 35; }
static unsigned long long to_unsigned_right(int i) { return (unsigned long long)i >> 4; }
static unsigned long long uwidened_right(unsigned u) { return (unsigned long long)u >> 31; }
static unsigned twice_right(unsigned u) { return (u >> 20) >> 15; }
static int twice_right_s(int i) { return (i >> 20) >> 15; }
static unsigned twice_left(unsigned u) { return (u << 20) << 15; }

int main(void) {
    static const unsigned us[] = {0u, 1u, 7u, 0x1fffffffu, 0x20000001u, 0x80000000u, 0xfffffffeu,
                                  0xffffffffu, 0x12345678u};
    static const int is[] = {0, 1, -1, 127, 128, 255, -129, 0x7fffffff, -0x7fffffff - 1, 0x123456};
    for (unsigned k = 0; k < sizeof us / sizeof us[0]; k++) {
        unsigned u = us[k];
        printf("u %x: %x %x %x %x %llx %llx %x %x\n", u, ucancel(u), ucancel_more(u),
               ucancel_less(u), umask(u), uwidened_left(u), uwidened_right(u), twice_right(u),
               twice_left(u));
    }
    for (unsigned k = 0; k < sizeof is / sizeof is[0]; k++) {
        int i = is[k];
        printf("i %d: %d %d %d %lld %lld %lld %llx %d\n", i, small_cancel((unsigned char)i),
               small_part((unsigned short)i), sext(i), widened_left(i), widened_right(i),
               widened_far(i), to_unsigned_right(i), twice_right_s(i));
    }
    return 0;
}
