/* Repeated expressions in one block, with writes in between that may or may
 * not change them: stores through pointers that alias, calls that change
 * globals and locals whose address they hold, bit fields, mixes of signed and
 * unsigned, pointer arithmetic, conditional operators with the same value on
 * both sides, and volatile reads that must happen every time. Each result is
 * printed and summed into a checksum. */
#include <stdio.h>

struct rec {
    int x;
    int y;
    unsigned lo : 5;
    signed mid : 7;
    unsigned hi : 12;
    short s;
};

int g;
int g2 = 3;
static int counter;
volatile int vol = 7;
volatile unsigned vticks;
unsigned long checksum;

static void report(const char *name, long long value) {
    printf("%s %lld\n", name, value);
    checksum = checksum * 31u + (unsigned long)value;
}

static void bump_global(void) { g += 5; }
static void bump_through(int *p) { *p += 11; }
static int peek(const int *p) { return *p; }
static int next_count(void) { return ++counter; }

static int products(int a, int b, int c) {
    int x = a * b + c;
    int y = a * b - c;
    int z = (a * b) ^ ((a * b) >> 3);
    return x + y * 3 + z;
}

static int loads_and_stores(struct rec *p, int *q) {
    int r = p->x * 3 + 1;
    int s = p->x * 3 + 2;
    *q = 100; /* q may point at p->x */
    int t = p->x * 3 + 1;
    p->y = 9;
    int u = p->x * 3 + p->y;
    return r + s * 7 + t * 13 + u * 17;
}

static int across_calls(int k) {
    int local = k;
    int *pl = &local;
    int a = g * 4 + local;
    bump_global();
    int b = g * 4 + local;
    bump_through(pl);
    int c = g * 4 + local;
    int d = peek(&local) + g * 4 + local;
    return a + b * 3 + c * 5 + d * 7;
}

static int redefinitions(int a, int b) {
    int x = (a + b) * (a - b);
    a = a + 1;
    int y = (a + b) * (a - b);
    b = x;
    int z = (a + b) * (a - b);
    int w = (a + b) * (a - b);
    return x + y * 2 + z * 3 + w * 5;
}

static int bitfields(struct rec *r, int n) {
    int a = r->lo + r->mid * 2 + r->hi;
    r->mid = -n;
    int b = r->lo + r->mid * 2 + r->hi;
    r->lo = (unsigned)(n * 3);
    int c = r->lo + r->mid * 2 + r->hi;
    int d = r->lo + r->mid * 2 + r->hi;
    return a + b * 3 + c * 5 + d * 7;
}

static long long mixes(int si, unsigned ui, short sh, unsigned char uc) {
    long a = (long)((si + ui) / 3u);
    long b = (long)((si + ui) % 1000u);
    long c = (si < ui) ? (long)(sh * uc) : (long)(sh * uc) - 1;
    long d = (long)(((unsigned)sh + uc) >> 4) + (long)(sh + uc);
    long e = (long)((si * 7) / 4) + (long)((unsigned)(si * 7) >> 2);
    return (long long)a + b * 3LL + c * 5LL + d * 7LL + e;
}

static int pointers(int *base, int i, int j) {
    int a = base[i] + base[i + 1] + base[i + 2];
    base[j] = a;
    int b = base[i] + base[i + 1] + base[i + 2];
    int *p = base + i;
    int c = *(p + 1) + p[1] + *(base + i + 1);
    char *cp = (char *)(base + i);
    int d = *(int *)(cp + 4) + *(int *)(cp + 4);
    return a + b * 3 + c * 5 + d * 7;
}

static int conditionals(int a, int b, int *p) {
    int r = 0;
    r += (a > b) ? a * b + 1 : a * b - 1;
    r += (a * b > 10) && (a * b < 100);
    r += (p != 0 && *p > 0) ? *p * 2 : -1;
    r += (b != 0 && a / b > 1) ? a / b : 0;
    r += a * b;
    int t = (a & 1) ? (g2 = a * b) : g2;
    r += t + g2 + a * b;
    return r;
}

static int volatiles(int n) {
    int a = vol + vol;
    vol = n;
    int b = vol * 2 + vol;
    vticks = 1;
    vticks += 1;
    int c = (int)(vticks + vticks);
    return a + b * 3 + c * 5;
}

static int calls_in_between(int a) {
    int x = a * a + next_count();
    int y = a * a + next_count();
    int z = counter * a + counter;
    next_count();
    int w = counter * a + counter;
    return x + y * 3 + z * 5 + w * 7;
}

static int same_assignment(int a, int *p) {
    int x = a * 5 + 1;
    x = a * 5 + 1;
    int y = *p + a;
    *p = 4;
    y = *p + a;
    int z = y;
    z = y;
    return x + y * 3 + z * 5;
}

static unsigned shifts(unsigned u, int s) {
    unsigned a = (u >> (s & 7)) + (u << (s & 7));
    unsigned b = (u >> (s & 7)) ^ (u << (s & 7));
    u = u + 1;
    unsigned c = (u >> (s & 7)) + (u << (s & 7));
    return a + b * 3 + c * 5;
}

static double floats(double x, double y) {
    double a = x * y + 1.5;
    double b = x * y - 1.5;
    x = x + 2.0;
    double c = x * y + 1.5;
    return a + b * 3 + c * 5;
}

int main(void) {
    struct rec r = {4, 5, 17, -20, 3000, 12};
    struct rec r2 = {6, 1, 2, 3, 4, 5};
    int arr[16];
    for (int i = 0; i < 16; i++)
        arr[i] = i * i - 7;

    report("products", products(7, -3, 11));
    report("products2", products(100000, 3, -5));
    report("loads_alias", loads_and_stores(&r, &r.x));
    report("loads_noalias", loads_and_stores(&r2, &r.y));
    g = 2;
    report("across_calls", across_calls(6));
    report("redefinitions", redefinitions(9, 4));
    report("bitfields", bitfields(&r, 13));
    report("bitfields2", bitfields(&r2, -9));
    report("mixes", mixes(-17, 5u, -300, 200));
    report("mixes2", mixes(12345, 4000000000u, 77, 3));
    report("pointers", pointers(arr, 3, 4));
    report("pointers_alias", pointers(arr, 5, 6));
    report("pointers_same", pointers(arr, 2, 3));
    int pos = 4, neg = -2;
    report("conditionals", conditionals(7, 3, &pos));
    report("conditionals2", conditionals(2, 0, &neg));
    report("conditionals3", conditionals(-5, 2, 0));
    report("volatiles", volatiles(3));
    report("calls", calls_in_between(6));
    int cell = 9;
    report("same_assignment", same_assignment(3, &cell));
    report("shifts", (long long)shifts(0x80000001u, 13));
    report("floats", (long long)(floats(1.25, -3.5) * 1000.0));
    report("globals", (long long)g * 100 + g2 * 10 + counter);
    printf("checksum %lu\n", checksum);
    return 0;
}
