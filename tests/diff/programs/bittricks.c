/* Bit manipulation: population count by loop, by Kernighan's trick and by
   the parallel SWAR method; bit reversal by loop and by swapping halves;
   count of leading zeros by loop and by binary search; trailing zeros,
   isolation of the lowest set bit, rounding up to a power of two, rotations,
   parity, Gray code, byte swaps and interleaving, in 8, 16, 32 and 64 bits. */
#include <stdio.h>

static int popcount_loop(unsigned x) {
    int n = 0;
    for (; x; x >>= 1)
        n += x & 1;
    return n;
}

static int popcount_kernighan(unsigned long long x) {
    int n = 0;
    while (x) {
        x &= x - 1;
        n++;
    }
    return n;
}

static int popcount_swar(unsigned x) {
    x = x - ((x >> 1) & 0x55555555u);
    x = (x & 0x33333333u) + ((x >> 2) & 0x33333333u);
    x = (x + (x >> 4)) & 0x0f0f0f0fu;
    return (int)((x * 0x01010101u) >> 24);
}

static unsigned reverse_loop(unsigned x) {
    unsigned r = 0;
    for (int i = 0; i < 32; i++) {
        r = (r << 1) | (x & 1);
        x >>= 1;
    }
    return r;
}

static unsigned reverse_swap(unsigned x) {
    x = ((x >> 1) & 0x55555555u) | ((x & 0x55555555u) << 1);
    x = ((x >> 2) & 0x33333333u) | ((x & 0x33333333u) << 2);
    x = ((x >> 4) & 0x0f0f0f0fu) | ((x & 0x0f0f0f0fu) << 4);
    x = ((x >> 8) & 0x00ff00ffu) | ((x & 0x00ff00ffu) << 8);
    return (x >> 16) | (x << 16);
}

static unsigned char reverse8(unsigned char b) {
    b = (unsigned char)((b & 0xf0) >> 4 | (b & 0x0f) << 4);
    b = (unsigned char)((b & 0xcc) >> 2 | (b & 0x33) << 2);
    b = (unsigned char)((b & 0xaa) >> 1 | (b & 0x55) << 1);
    return b;
}

static int clz_loop(unsigned x) {
    int n = 0;
    for (unsigned bit = 0x80000000u; bit && !(x & bit); bit >>= 1)
        n++;
    return n;
}

static int clz_search(unsigned x) {
    if (!x)
        return 32;
    int n = 0;
    if (!(x & 0xffff0000u)) {
        n += 16;
        x <<= 16;
    }
    if (!(x & 0xff000000u)) {
        n += 8;
        x <<= 8;
    }
    if (!(x & 0xf0000000u)) {
        n += 4;
        x <<= 4;
    }
    if (!(x & 0xc0000000u)) {
        n += 2;
        x <<= 2;
    }
    if (!(x & 0x80000000u)) {
        n += 1;
    }
    return n;
}

static int clz64(unsigned long long x) {
    unsigned hi = (unsigned)(x >> 32);
    return hi ? clz_search(hi) : 32 + clz_search((unsigned)x);
}

static int ctz(unsigned x) {
    if (!x)
        return 32;
    int n = 0;
    while (!(x & 1u)) {
        x >>= 1;
        n++;
    }
    return n;
}

static unsigned next_pow2(unsigned x) {
    if (x <= 1)
        return 1;
    x--;
    x |= x >> 1;
    x |= x >> 2;
    x |= x >> 4;
    x |= x >> 8;
    x |= x >> 16;
    return x + 1;
}

static unsigned rotl(unsigned x, unsigned k) { return (x << (k & 31)) | (x >> ((32 - k) & 31)); }

static unsigned short rotr16(unsigned short x, int k) {
    k &= 15;
    return (unsigned short)((x >> k) | (x << ((16 - k) & 15)));
}

static int parity(unsigned long long x) {
    x ^= x >> 32;
    x ^= x >> 16;
    x ^= x >> 8;
    x ^= x >> 4;
    x ^= x >> 2;
    x ^= x >> 1;
    return (int)(x & 1);
}

static unsigned gray(unsigned x) { return x ^ (x >> 1); }

static unsigned from_gray(unsigned g) {
    for (unsigned s = 1; s < 32; s <<= 1)
        g ^= g >> s;
    return g;
}

static unsigned bswap32(unsigned x) {
    return (x >> 24) | ((x >> 8) & 0xff00u) | ((x << 8) & 0xff0000u) | (x << 24);
}

static unsigned long long bswap64(unsigned long long x) {
    return (unsigned long long)bswap32((unsigned)x) << 32 | bswap32((unsigned)(x >> 32));
}

/* Morton order: the bits of x and y interleaved. */
static unsigned interleave(unsigned short x, unsigned short y) {
    unsigned r = 0;
    for (int i = 0; i < 16; i++)
        r |= ((x >> i) & 1u) << (2 * i) | ((y >> i) & 1u) << (2 * i + 1);
    return r;
}

int main(void) {
    static const unsigned samples[] = {0,           1,           0x80000000u, 0xffffffffu,
                                       0x12345678u, 0xf0f0f0f0u, 0x00010000u, 1000000u,
                                       0x7fffffffu, 0xdeadbeefu};
    for (int i = 0; i < 10; i++) {
        unsigned x = samples[i];
        printf("%08x pop %2d %2d %2d rev %08x %08x clz %2d %2d ctz %2d low %08x pow2 %08x\n", x,
               popcount_loop(x), popcount_kernighan(x), popcount_swar(x), reverse_loop(x),
               reverse_swap(x), clz_loop(x), clz_search(x), ctz(x), x & (0u - x), next_pow2(x));
    }
    unsigned long long w = 0x0123456789abcdefull;
    printf("64: pop %d clz %d parity %d bswap %016llx clz(1) %d clz(top) %d\n",
           popcount_kernighan(w), clz64(w), parity(w), bswap64(w), clz64(1), clz64(1ull << 63));
    printf("rotl: %08x %08x %08x\n", rotl(0x80000001u, 1), rotl(0x12345678u, 8),
           rotl(0x12345678u, 0));
    printf("rotr16: %04x %04x\n", rotr16(0x1234, 4), rotr16(0x8001, 1));
    printf("reverse8: %02x %02x %02x\n", reverse8(0x01), reverse8(0xb4), reverse8(0xff));
    printf("gray:");
    for (unsigned i = 0; i < 10; i++)
        printf(" %u->%u->%u", i, gray(i), from_gray(gray(i)));
    printf("\nbswap32 %08x, morton %08x %08x\n", bswap32(0x11223344u), interleave(0xffff, 0),
           interleave(5, 3));
    int odd = 0;
    for (unsigned i = 0; i < 256; i++)
        odd += parity(i);
    printf("bytes with odd parity: %d\n", odd);
    /* Sign tricks on two's complement (the conversions are implementation-defined). */
    int vals[] = {-5, 0, 7, -2147483647, 12345};
    for (int i = 0; i < 5; i++) {
        int v = vals[i];
        int mask = v >> 31; /* arithmetic shift on this target */
        int absv = (v ^ mask) - mask;
        printf("abs(%d)=%d sign=%d\n", v, absv, (v > 0) - (v < 0));
    }
    return 0;
}
