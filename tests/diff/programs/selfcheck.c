/* A self-checking program: it computes results two ways (sorting by
   insertion and by counting, summing forwards and in closed form, reversing
   a string twice, integer square roots against squares) and calls abort()
   only if a check fails, which it must not; it prints each check's result
   and ends with status 0. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int checks;

static void check(int ok, const char *what) {
    checks++;
    printf("check %-28s %s\n", what, ok ? "ok" : "FAILED");
    if (!ok)
        abort();
}

static unsigned isqrt(unsigned n) {
    unsigned r = 0;
    for (unsigned bit = 1u << 30; bit; bit >>= 2) {
        if (n >= r + bit) {
            n -= r + bit;
            r = (r >> 1) + bit;
        } else {
            r >>= 1;
        }
    }
    return r;
}

int main(void) {
    int a[64], b[64], count[16] = {0};
    unsigned seed = 1;
    for (int i = 0; i < 64; i++) {
        seed = seed * 1103515245u + 12345u;
        a[i] = (int)((seed >> 16) % 16);
        count[a[i]]++;
    }
    memcpy(b, a, sizeof a);
    for (int i = 1; i < 64; i++)
        for (int j = i; j > 0 && b[j - 1] > b[j]; j--) {
            int t = b[j];
            b[j] = b[j - 1];
            b[j - 1] = t;
        }
    int k = 0, same = 1;
    for (int v = 0; v < 16; v++)
        while (count[v]--)
            same &= b[k++] == v;
    check(same && k == 64, "insertion vs counting sort");

    long long sum = 0;
    for (int i = 1; i <= 1000; i++)
        sum += (long long)i * i;
    check(sum == 1000LL * 1001 * 2001 / 6, "sum of squares");

    char s[] = "self-checking programs";
    char t[sizeof s];
    strcpy(t, s);
    for (int pass = 0; pass < 2; pass++)
        for (size_t i = 0, j = strlen(t) - 1; i < j; i++, j--) {
            char c = t[i];
            t[i] = t[j];
            t[j] = c;
        }
    check(strcmp(s, t) == 0, "double reversal");

    int roots_ok = 1;
    for (unsigned n = 0; n < 3000; n += 7) {
        unsigned r = isqrt(n);
        roots_ok &= r * r <= n && (r + 1) * (r + 1) > n;
    }
    roots_ok &= isqrt(4294967295u) == 65535;
    check(roots_ok, "integer square roots");
    check(sizeof(int) == 4 && sizeof(short) == 2, "type sizes");
    printf("%d checks passed\n", checks);
    return 0;
}
