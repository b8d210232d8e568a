/* A common right shift comes out of the bitwise operators, which act on each
   bit alone, but not out of a sum, whose carries come from the bits that the
   shifts drop: (2 >> 2) + (1 >> 1) is 0, while ((2 >> 1) + 1) >> 1 is 1.
   Signed and unsigned operands, equal and different counts. */
#include <stdio.h>

static int sum_s(int a, int b) { return (a >> 2) + (b >> 1); }
static unsigned sum_u(unsigned a, unsigned b) { return (a >> 5) + (b >> 3); }
static unsigned sum_eq(unsigned a, unsigned b) { return (a >> 4) + (b >> 4); }
static int or_s(int a, int b) { return (a >> 2) | (b >> 1); }
static unsigned or_u(unsigned a, unsigned b) { return (a >> 5) | (b >> 3); }
static int xor_s(int a, int b) { return (a >> 7) ^ (b >> 7); }
static unsigned and_u(unsigned a, unsigned b) { return (a >> 1) & (b >> 9); }
static long long sum_ll(long long a, long long b) { return (a >> 33) + (b >> 1); }

int main(void) {
    static const int si[] = {0, 1, 2, 3, 7, -1, -2, -8, 0x7fffffff, -0x7fffffff - 1, 12345, -999};
    static const unsigned ui[] = {0u, 1u, 2u, 15u, 16u, 31u, 0x80000000u, 0xffffffffu, 0x12345678u};
    int n = sizeof si / sizeof si[0], m = sizeof ui / sizeof ui[0];
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++)
            printf("s %d %d: %d %d %d\n", si[i], si[j], sum_s(si[i], si[j]), or_s(si[i], si[j]),
                   xor_s(si[i], si[j]));
    for (int i = 0; i < m; i++)
        for (int j = 0; j < m; j++)
            printf("u %u %u: %u %u %u %u\n", ui[i], ui[j], sum_u(ui[i], ui[j]),
                   sum_eq(ui[i], ui[j]), or_u(ui[i], ui[j]), and_u(ui[i], ui[j]));
    printf("ll %lld %lld\n", sum_ll(0x300000001ll, 3), sum_ll(-0x200000000ll, -1));
    return 0;
}
