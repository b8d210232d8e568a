/* Sieve of Eratosthenes over a bit array (unsigned char bytes, set and test
   with shifts and masks) and a plain byte array, checked against each other:
   prime counts, twin primes, the largest prime gap, Goldbach partitions of
   a few even numbers, and a segmented count of a higher range. */
#include <stdio.h>
#include <string.h>

#define LIMIT 30000

static unsigned char composite_bits[LIMIT / 8 + 1];
static _Bool is_prime[LIMIT + 1];

static void set_bit(unsigned n) { composite_bits[n >> 3] |= (unsigned char)(1u << (n & 7)); }
static int get_bit(unsigned n) { return composite_bits[n >> 3] >> (n & 7) & 1; }

static void sieve_bits(void) {
    set_bit(0);
    set_bit(1);
    for (unsigned i = 2; i * i <= LIMIT; i++)
        if (!get_bit(i))
            for (unsigned j = i * i; j <= LIMIT; j += i)
                set_bit(j);
}

static void sieve_bool(void) {
    memset(is_prime, 1, sizeof is_prime);
    is_prime[0] = is_prime[1] = 0;
    for (int i = 2; i * i <= LIMIT; i++) {
        if (!is_prime[i])
            continue;
        for (int j = i * i; j <= LIMIT; j += i)
            is_prime[j] = 0;
    }
}

/* Primes in [lo, hi) by marking multiples of the small primes. */
static int segment_count(unsigned lo, unsigned hi) {
    static unsigned char mark[2048];
    memset(mark, 0, sizeof mark);
    for (unsigned p = 2; p * p < hi; p++) {
        if (get_bit(p))
            continue;
        unsigned start = (lo + p - 1) / p * p;
        if (start < p * p)
            start = p * p;
        for (unsigned m = start; m < hi; m += p)
            mark[m - lo] = 1;
    }
    int count = 0;
    for (unsigned n = lo; n < hi; n++)
        count += !mark[n - lo];
    return count;
}

int main(void) {
    sieve_bits();
    sieve_bool();
    int count = 0, mismatches = 0, twins = 0, gap = 0, gap_at = 0, last = 2;
    for (int n = 0; n <= LIMIT; n++) {
        int a = !get_bit(n), b = is_prime[n];
        mismatches += a != b;
        if (!a)
            continue;
        count++;
        if (n - last == 2)
            twins++;
        if (n - last > gap) {
            gap = n - last;
            gap_at = last;
        }
        last = n;
    }
    printf("primes <= %d: %d (mismatches %d)\n", LIMIT, count, mismatches);
    printf("twin pairs: %d, largest gap %d after %d, last prime %d\n", twins, gap, gap_at, last);
    static const int checkpoints[] = {10, 100, 1000, 10000, 30000};
    for (int i = 0, k = 0, c = 0; i <= LIMIT && k < 5; i++) {
        c += is_prime[i];
        if (i == checkpoints[k]) {
            printf("pi(%d) = %d\n", i, c);
            k++;
        }
    }
    static const int evens[] = {4, 28, 100, 1000, 9998, 29998};
    for (int i = 0; i < 6; i++) {
        int e = evens[i], ways = 0, first = 0;
        for (int p = 2; p <= e / 2; p++)
            if (is_prime[p] && is_prime[e - p] && !ways++)
                first = p;
        printf("goldbach %d: %d ways, first %d+%d\n", e, ways, first, e - first);
    }
    printf("primes in [1000000, 1002000): %d\n", segment_count(1000000u, 1002000u));
    printf("first primes:");
    for (int n = 0, shown = 0; shown < 15; n++)
        if (is_prime[n]) {
            printf(" %d", n);
            shown++;
        }
    printf("\n");
    return 0;
}
