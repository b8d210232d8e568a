/* Sums and products next to a change of size. (unsigned long long)(u + 1) * 3
   wraps u + 1 in 32 bits before the product, so the constant cannot be
   distributed over the widened sum; a constant joins a sum under a
   conversion of the same size only, and a narrowed sum wraps in the narrow
   type. */
#include <stdio.h>

static unsigned long long widen_mul(unsigned u) { return (unsigned long long)(u + 1u) * 3u; }
static long long widen_mul_s(unsigned u) { return (long long)(int)(u + 5u) * 4; }
static unsigned same_size(int i) { return (unsigned)(i + 1) + 2u; }
static unsigned long long widen_add(unsigned u) { return (unsigned long long)(u + 0x80000000u) + 0x80000000u; }
static unsigned narrow_add(unsigned u) { return (unsigned char)(u + 200u) + 100u; }
static unsigned short narrow_mul(unsigned u) { return (unsigned short)((u + 3u) * 0x4001u); }
static unsigned distribute(unsigned u) { return (u + 0x40000000u) * 4u; }
static unsigned long long widen_products(unsigned a) { return (unsigned long long)(a * 3u) * 5u; }

int main(void) {
    static const unsigned us[] = {0u, 1u, 0x7fffffffu, 0x80000000u, 0xfffffffau, 0xfffffffeu,
                                  0xffffffffu, 0x55555556u};
    for (unsigned k = 0; k < sizeof us / sizeof us[0]; k++) {
        unsigned u = us[k];
        printf("%x: %llx %lld %x %llx %x %x %x %llx\n", u, widen_mul(u), widen_mul_s(u),
               same_size((int)u), widen_add(u), narrow_add(u), (unsigned)narrow_mul(u),
               distribute(u), widen_products(u));
    }
    return 0;
}
