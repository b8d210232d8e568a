/* Number theory: gcd (Euclid and binary), lcm, extended Euclid and modular
   inverses, modular exponentiation in 32 bits with 64-bit products and in
   64 bits with a double-and-add mulmod, deterministic Miller-Rabin for
   32-bit numbers (a strong pseudoprime to bases 2, 3, 5 and 7 among the
   inputs), Euler's totient, and the Chinese remainder theorem. */
#include <stdio.h>

static unsigned gcd(unsigned a, unsigned b) {
    while (b) {
        unsigned t = a % b;
        a = b;
        b = t;
    }
    return a;
}

static unsigned binary_gcd(unsigned a, unsigned b) {
    if (!a)
        return b;
    if (!b)
        return a;
    int shift = 0;
    while (((a | b) & 1) == 0) {
        a >>= 1;
        b >>= 1;
        shift++;
    }
    while (!(a & 1))
        a >>= 1;
    do {
        while (!(b & 1))
            b >>= 1;
        if (a > b) {
            unsigned t = a;
            a = b;
            b = t;
        }
        b -= a;
    } while (b);
    return a << shift;
}

static unsigned long long lcm(unsigned a, unsigned b) {
    return (unsigned long long)(a / gcd(a, b)) * b;
}

static long long ext_gcd(long long a, long long b, long long *x, long long *y) {
    if (b == 0) {
        *x = 1;
        *y = 0;
        return a;
    }
    long long x1, y1;
    long long g = ext_gcd(b, a % b, &x1, &y1);
    *x = y1;
    *y = x1 - (a / b) * y1;
    return g;
}

static long long mod_inverse(long long a, long long m) {
    long long x, y;
    if (ext_gcd(a, m, &x, &y) != 1)
        return -1;
    return ((x % m) + m) % m;
}

static unsigned powmod32(unsigned b, unsigned e, unsigned m) {
    unsigned long long r = 1, base = b % m;
    while (e) {
        if (e & 1)
            r = r * base % m;
        base = base * base % m;
        e >>= 1;
    }
    return (unsigned)r;
}

static unsigned long long mulmod64(unsigned long long a, unsigned long long b,
                                   unsigned long long m) {
    unsigned long long r = 0;
    a %= m;
    while (b) {
        if (b & 1) {
            r = r >= m - a ? r - (m - a) : r + a;
        }
        a = a >= m - a ? a - (m - a) : a + a;
        b >>= 1;
    }
    return r;
}

static unsigned long long powmod64(unsigned long long b, unsigned long long e,
                                   unsigned long long m) {
    unsigned long long r = 1 % m;
    b %= m;
    while (e) {
        if (e & 1)
            r = mulmod64(r, b, m);
        b = mulmod64(b, b, m);
        e >>= 1;
    }
    return r;
}

static int is_prime32(unsigned n) {
    if (n < 2)
        return 0;
    static const unsigned small[] = {2, 7, 61, 3, 5};
    for (int i = 0; i < 5; i++)
        if (n % small[i] == 0)
            return n == small[i];
    unsigned d = n - 1;
    int s = 0;
    while (!(d & 1)) {
        d >>= 1;
        s++;
    }
    /* Bases 2, 7 and 61 decide every 32-bit number. */
    for (int i = 0; i < 3; i++) {
        unsigned long long x = powmod32(small[i], d, n);
        if (x == 1 || x == n - 1)
            continue;
        int r;
        for (r = 1; r < s; r++) {
            x = x * x % n;
            if (x == n - 1)
                break;
        }
        if (r == s)
            return 0;
    }
    return 1;
}

static unsigned totient(unsigned n) {
    unsigned result = n;
    for (unsigned p = 2; p * p <= n; p++) {
        if (n % p)
            continue;
        while (n % p == 0)
            n /= p;
        result -= result / p;
    }
    if (n > 1)
        result -= result / n;
    return result;
}

int main(void) {
    static const unsigned pairs[][2] = {
        {1071, 462}, {0, 9}, {17, 0}, {4294967295u, 65535}, {1u << 31, 3u << 20}, {99991, 100003}};
    for (int i = 0; i < 6; i++) {
        unsigned a = pairs[i][0], b = pairs[i][1];
        printf("gcd(%u,%u)=%u binary=%u", a, b, gcd(a, b), binary_gcd(a, b));
        if (a && b)
            printf(" lcm=%llu", lcm(a, b));
        printf("\n");
    }
    long long x, y, g = ext_gcd(240, 46, &x, &y);
    printf("ext_gcd(240,46)=%lld x=%lld y=%lld check=%lld\n", g, x, y, 240 * x + 46 * y);
    printf("inverses mod 1000000007: %lld %lld, mod 12 of 4: %lld\n", mod_inverse(2, 1000000007),
           mod_inverse(123456789, 1000000007), mod_inverse(4, 12));
    printf("powmod32: %u %u %u\n", powmod32(2, 10, 1000), powmod32(3, 4000000000u, 4294967291u),
           powmod32(7, 0, 13));
    printf("powmod64: %llu %llu\n", powmod64(2, 64, 18446744073709551557ull),
           powmod64(123456789, 987654321, 1000000000000000003ull));
    printf("fermat check %llu\n", powmod64(5, 1000000000000000002ull, 1000000000000000003ull));
    static const unsigned candidates[] = {
        1, 2, 561, 7919, 65537, 2147483647u, 4294967291u, 4294967295u, 3215031751u, 1000000007};
    for (int i = 0; i < 10; i++)
        printf("is_prime(%u)=%d\n", candidates[i], is_prime32(candidates[i]));
    printf("totients:");
    for (unsigned n = 1; n <= 12; n++)
        printf(" %u", totient(n));
    printf(" phi(1000000)=%u phi(65537)=%u\n", totient(1000000), totient(65537));
    /* x = 2 mod 3, 3 mod 5, 2 mod 7 */
    static const long long rem[] = {2, 3, 2}, mods[] = {3, 5, 7};
    long long prod = 105, sum = 0;
    for (int i = 0; i < 3; i++) {
        long long p = prod / mods[i];
        sum += rem[i] * mod_inverse(p % mods[i], mods[i]) * p;
    }
    printf("crt: %lld\n", sum % prod);
    return 0;
}
