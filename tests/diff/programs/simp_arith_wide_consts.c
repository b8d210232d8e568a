/* 64-bit constants in sums and products: they are LCON nodes, which tree
   congruence does not tell apart by value, so no rewrite may take two of them
   for the same term. */
#include <stdio.h>

static unsigned long long lcg(unsigned long long s) {
    return s * 6364136223846793005ull + 1442695040888963407ull;
}
static long long two_factors(long long x) { return x * 0x100000001ll + x * 0x200000001ll; }
static long long two_sums(long long x) { return (x + 0x100000000ll) - (x + 0x300000000ll); }
static long long minus_const(long long x) { return x - 0x123456789ll; }
static unsigned long long masked(unsigned long long x) {
    return (x & 0xff00ff00ff00ull) | (x & 0x00ff00ff00ffull);
}
static long long undo(long long x) { return (x - 0x500000000ll) + 0x700000000ll; }

int main(void) {
    unsigned long long s = 88172645463325252ull;
    for (int i = 0; i < 4; i++) {
        s = lcg(s);
        printf("lcg %016llx\n", s);
    }
    static const long long xs[] = {0, 1, -1, 0x123456789abcll, -0x7000000000000000ll};
    for (unsigned k = 0; k < sizeof xs / sizeof xs[0]; k++) {
        long long x = xs[k];
        printf("%llx: %llx %lld %llx %llx %llx\n", (unsigned long long)x,
               (unsigned long long)two_factors(x), two_sums(x), (unsigned long long)minus_const(x),
               masked((unsigned long long)x), (unsigned long long)undo(x));
    }
    return 0;
}
