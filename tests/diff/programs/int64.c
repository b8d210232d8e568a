/* 64-bit integer arithmetic, signed and unsigned: multiplication (with
   32x32->64 widening), division and remainder with every sign combination,
   shifts by 0..63 both ways, comparisons across the 32-bit boundary, limits,
   conversions between 32 and 64 bits, a 64-bit LCG and a 128-bit product
   assembled from 64-bit halves. */
#include <limits.h>
#include <stdio.h>

static unsigned long long mul_hi(unsigned long long a, unsigned long long b) {
    unsigned long long a_lo = (unsigned)a, a_hi = a >> 32, b_lo = (unsigned)b, b_hi = b >> 32;
    unsigned long long p0 = a_lo * b_lo, p1 = a_lo * b_hi, p2 = a_hi * b_lo, p3 = a_hi * b_hi;
    unsigned long long mid = (p0 >> 32) + (unsigned)p1 + (unsigned)p2;
    return p3 + (p1 >> 32) + (p2 >> 32) + (mid >> 32);
}

int main(void) {
    long long a = 123456789012345LL, b = -987654321LL;
    unsigned long long ua = 0xfedcba9876543210ull, ub = 0x00000000ffffffffull;
    printf("mul: %lld %lld %llu\n", a * 7, b * b, ua * 3u);
    int x = 2000000000, y = -2000000000;
    unsigned ux = 4000000000u;
    printf("widen: %lld %lld %llu %lld\n", (long long)x * x, (long long)x * y,
           (unsigned long long)ux * ux, (long long)ux * -3);

    static const long long nums[] = {
        100, -100, 7, -7, 9223372036854775807LL, -9223372036854775807LL - 1};
    static const long long dens[] = {7, -7, 3, -3, 1000000007LL, 2};
    for (int i = 0; i < 6; i++)
        for (int j = 0; j < 6; j += 3)
            printf("%lld / %lld = %lld rem %lld\n", nums[i], dens[(i + j) % 6],
                   nums[i] / dens[(i + j) % 6], nums[i] % dens[(i + j) % 6]);
    printf("unsigned div: %llu %llu %llu %llu\n", ua / ub, ua % ub, ua / 10, ULLONG_MAX / 3);

    unsigned long long s = 0;
    for (int k = 0; k < 64; k += 7)
        s ^= (ua << k) ^ (ua >> k);
    printf("shift mix %016llx\n", s);
    long long neg = -0x123456789abcdefLL;
    for (int k = 1; k < 64; k += 13)
        printf("neg >> %2d = %lld, << %2d = %llx\n", k, neg >> k, k, (unsigned long long)neg << k);
    int sh = 40;
    printf("shift by variable 40: %llx %llx\n", 1ull << sh, (unsigned long long)LLONG_MIN >> sh);

    long long m32 = 0xffffffffLL, p32 = 0x100000000LL;
    printf("compare: %d %d %d %d %d %d\n",
           m32<p32, -1LL < 0, -1LL < (long long)ub, (unsigned long long)-1LL> ub,
           p32 == (long long)ub + 1, a >= a + 0);
    printf("limits: %lld %lld %llu\n", LLONG_MAX, LLONG_MIN, ULLONG_MAX);

    long long big = 0x1122334455667788LL;
    int lo = (int)big, hi = (int)(big >> 32);
    unsigned short sh16 = (unsigned short)big;
    signed char c8 = (signed char)(big >> 8);
    printf("narrow: %x %x %x %d\n", lo, hi, sh16, c8);
    int minus = -5;
    unsigned plus = 5;
    printf("extend: %lld %llu %lld %llu\n", (long long)minus, (unsigned long long)minus,
           (long long)plus, (unsigned long long)(unsigned)minus);

    unsigned long long state = 88172645463325252ull;
    for (int i = 0; i < 5; i++) {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        printf("lcg %d: %016llx top %u\n", i, state, (unsigned)(state >> 33));
    }
    printf("mul_hi: %016llx %016llx %016llx\n", mul_hi(ua, ua), mul_hi(ULLONG_MAX, ULLONG_MAX),
           mul_hi(1ull << 32, 1ull << 32));

    long long acc = 1;
    int steps = 0;
    while (acc < LLONG_MAX / 3) {
        acc *= 3;
        steps++;
    }
    printf("3^%d = %lld\n", steps, acc);
    long long t = -1;
    t += 0x100000000LL;
    t -= 1;
    t *= -3;
    t /= 7;
    t %= 1000000;
    t = -t;
    t <<= 5;
    t = -t;
    t >>= 2;
    t |= 1;
    t ^= 0xff00;
    t &= ~0xfLL;
    printf("compound: %lld\n", t);
    unsigned long long u = 10;
    u -= 20;
    printf("unsigned wrap: %llu %lld\n", u, (long long)u);
    return 0;
}
