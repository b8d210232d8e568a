/* A small bignum: non-negative integers as arrays of base-10000 limbs with
   addition, subtraction, multiplication by a small number and by another
   bignum, division by a small number with remainder, and decimal printing
   with zero-padded limbs; computes 50!, 2^256, Fibonacci(300) and checks
   (a*b)/b == a. */
#include <stdio.h>
#include <string.h>

#define LIMBS 80
#define BASE 10000

typedef struct {
    int n; /* limbs in use; 0 is the number zero */
    unsigned short d[LIMBS];
} big;

static void set_small(big *a, unsigned v) {
    a->n = 0;
    while (v) {
        a->d[a->n++] = (unsigned short)(v % BASE);
        v /= BASE;
    }
}

static void add(big *r, const big *a, const big *b) {
    int n = a->n > b->n ? a->n : b->n;
    unsigned carry = 0;
    for (int i = 0; i < n; i++) {
        unsigned s = carry + (i < a->n ? a->d[i] : 0) + (i < b->n ? b->d[i] : 0);
        r->d[i] = (unsigned short)(s % BASE);
        carry = s / BASE;
    }
    r->n = n;
    if (carry)
        r->d[r->n++] = (unsigned short)carry;
}

/* r = a - b, requires a >= b. */
static void sub(big *r, const big *a, const big *b) {
    int borrow = 0;
    for (int i = 0; i < a->n; i++) {
        int s = a->d[i] - borrow - (i < b->n ? b->d[i] : 0);
        borrow = s < 0;
        r->d[i] = (unsigned short)(s + (borrow ? BASE : 0));
    }
    r->n = a->n;
    while (r->n > 0 && r->d[r->n - 1] == 0)
        r->n--;
}

static void mul_small(big *a, unsigned m) {
    unsigned carry = 0;
    for (int i = 0; i < a->n; i++) {
        unsigned p = a->d[i] * m + carry;
        a->d[i] = (unsigned short)(p % BASE);
        carry = p / BASE;
    }
    while (carry) {
        a->d[a->n++] = (unsigned short)(carry % BASE);
        carry /= BASE;
    }
}

static void mul(big *r, const big *a, const big *b) {
    unsigned acc[2 * LIMBS];
    memset(acc, 0, sizeof acc);
    for (int i = 0; i < a->n; i++)
        for (int j = 0; j < b->n; j++) {
            acc[i + j] += (unsigned)a->d[i] * b->d[j];
            if (acc[i + j] >= 100000000u * 40u) { /* keep headroom */
                acc[i + j + 1] += acc[i + j] / BASE;
                acc[i + j] %= BASE;
            }
        }
    unsigned carry = 0;
    int n = a->n + b->n;
    for (int i = 0; i < n; i++) {
        unsigned v = acc[i] + carry;
        r->d[i] = (unsigned short)(v % BASE);
        carry = v / BASE;
    }
    r->n = n;
    while (r->n > 0 && r->d[r->n - 1] == 0)
        r->n--;
}

static unsigned div_small(big *a, unsigned m) {
    unsigned rem = 0;
    for (int i = a->n - 1; i >= 0; i--) {
        unsigned cur = rem * BASE + a->d[i];
        a->d[i] = (unsigned short)(cur / m);
        rem = cur % m;
    }
    while (a->n > 0 && a->d[a->n - 1] == 0)
        a->n--;
    return rem;
}

static int cmp(const big *a, const big *b) {
    if (a->n != b->n)
        return a->n < b->n ? -1 : 1;
    for (int i = a->n - 1; i >= 0; i--)
        if (a->d[i] != b->d[i])
            return a->d[i] < b->d[i] ? -1 : 1;
    return 0;
}

static void print(const char *label, const big *a) {
    printf("%s = ", label);
    if (a->n == 0)
        printf("0");
    else
        printf("%u", a->d[a->n - 1]);
    for (int i = a->n - 2; i >= 0; i--)
        printf("%04u", a->d[i]);
    printf("\n");
}

static int digit_sum(const big *a) {
    int s = 0;
    for (int i = 0; i < a->n; i++)
        for (unsigned v = a->d[i]; v; v /= 10)
            s += v % 10;
    return s;
}

int main(void) {
    static big f, p, x, y, t, q, r;
    set_small(&f, 1);
    for (unsigned i = 2; i <= 50; i++)
        mul_small(&f, i);
    print("50!", &f);
    printf("digit sum of 50! = %d, limbs %d\n", digit_sum(&f), f.n);

    set_small(&p, 1);
    for (int i = 0; i < 256; i++)
        mul_small(&p, 2);
    print("2^256", &p);

    set_small(&x, 0);
    set_small(&y, 1);
    for (int i = 0; i < 300; i++) {
        add(&t, &x, &y);
        x = y;
        y = t;
    }
    print("fib(300)", &x);

    mul(&q, &f, &p);
    printf("50! * 2^256 has %d limbs, digit sum %d\n", q.n, digit_sum(&q));
    r = q;
    unsigned rem = 0;
    for (int i = 0; i < 256; i++)
        rem |= div_small(&r, 2);
    printf("(50! * 2^256) / 2^256 == 50!: %d, remainders %u\n", cmp(&r, &f) == 0, rem);

    sub(&t, &p, &f);
    print("2^256 - 50!", &t);
    add(&r, &t, &f);
    printf("back: %d, compare 50! with 2^256: %d\n", cmp(&r, &p) == 0, cmp(&f, &p));
    r = f;
    printf("50! mod 10007 = %u, mod 9999 = %u\n", div_small(&r, 10007), div_small(&f, 9999));
    sub(&r, &p, &p);
    print("zero", &r);
    return 0;
}
