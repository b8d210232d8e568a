/* Constants and copies carried to their uses, and neighbouring stores joined:
   the cases where carrying a value too far would change the result. Every
   function prints what it computes. */
#include <stdio.h>

int g;
int arr[8];
volatile int tick;

static int bump(int *p) {
    ++*p;
    return *p;
}

/* An increment or an update is an assignment too. */
static int updates(int n) {
    int x = 5;
    x++;
    int y = 7;
    y += n;
    int z = 9;
    --z;
    int w = 3;
    w <<= 2;
    return x * 1000 + y * 100 + z * 10 + w;
}

/* One assignment in a loop whose value differs per iteration: the read
   before it sees the previous iteration's value. */
static int previous_iteration(int n) {
    int y = 0;
    int out = 0;
    for (int i = 0; i < n; i++) {
        const int c = i * 3;
        if (i > 0)
            out += y;
        y = c;
    }
    return out;
}

/* A copy whose source changes inside the statement that reads it. */
static int changed_inside(int a) {
    int b = a;
    a = (b = 7, b + a);
    int c = b;
    b = c + 1;
    return a * 100 + b * 10 + c;
}

/* A copy, then its source changes: the copy keeps the old value. */
static int source_changes(int a) {
    int b = a;
    a = a + 10;
    int c = b * 2;
    a = b + a;
    return a + c;
}

/* Values that differ by path. */
static int by_path(int n) {
    int d;
    if (n & 1)
        d = 3;
    else
        d = 4;
    int e = d;
    switch (n % 3) {
    case 0:
        e = e * 2;
        break;
    case 1:
        e = 11;
        break;
    default:
        break;
    }
    return e + d;
}

/* Addresses taken: stores through the pointer change the variable. */
static int address_taken(int n) {
    int k = 4;
    int *pk = &k;
    *pk = n;
    int r = k;
    bump(&k);
    return r * 10 + k;
}

/* A pointer with one value, walked by a second one. */
static int pointers(void) {
    int *p = &arr[2];
    int *q = p;
    *p = 5;
    q = q + 1;
    *q = 6;
    p[2] = *q + *p;
    return arr[2] * 100 + arr[3] * 10 + arr[4];
}

/* Neighbouring stores: the same object, maybe the same object, updates. */
static int joins(int *p, int *q, int v) {
    *p = v;
    *p = *p * 3;
    *q = 1;
    *q = *p + 1;
    g = 5;
    g += 3;
    g += 4;
    _Bool b = 0;
    b ^= 2;
    b ^= 2;
    unsigned char uc = 250;
    uc += 3;
    uc += 5;
    signed char sc = 100;
    sc *= 3;
    sc *= 5;
    return *p * 1000 + *q * 100 + g * 10 + b + uc + sc;
}

/* Assigned once, but read where no assignment came before only on paths
   the program never takes. */
static int once_in_loop(int n) {
    int s = 0;
    int k;
    for (int i = 0; i < n; i++) {
        if (i > 0)
            s += k;
        k = 6;
    }
    return s;
}

/* A parameter never assigned is the same everywhere; one that is assigned
   is not. */
static int params(int a, int b) {
    int s = 0;
    for (int i = 0; i < 3; i++) {
        s += a;
        b = b * 2 + i;
    }
    return s + b;
}

/* Volatile reads and writes all happen, in order. */
static int volatiles(int n) {
    tick = n;
    tick = n + 1;
    int t = tick;
    volatile int local = 3;
    int u = local;
    local = u + 1;
    return t + u + local;
}

/* The same constant again, where the variable may or may not still hold it. */
static int repeated(int *p, int n) {
    int x = 3;
    p[0] = x;
    x = 3;
    p[1] = x;
    x = 4;
    p[2] = x;
    x = 3;
    if (n > 1)
        x = n;
    x = 3 + (n > 5);
    p[3] = x;
    return x;
}

static long long wide(long long a) {
    long long x = 0x123456789LL;
    long long y = x;
    a += y;
    a += 1;
    unsigned long long u = 0xffffffffffffffffULL;
    u += 2;
    return a + (long long)u;
}

int main(void) {
    int x = 0, y = 0, z = 0;
    for (int n = 0; n < 4; n++)
        printf("updates(%d) = %d\n", n, updates(n));
    for (int n = 0; n < 5; n++)
        printf("previous_iteration(%d) = %d\n", n, previous_iteration(n));
    printf("changed_inside = %d %d\n", changed_inside(2), changed_inside(-5));
    printf("source_changes = %d %d\n", source_changes(1), source_changes(30));
    for (int n = 0; n < 6; n++)
        printf("by_path(%d) = %d\n", n, by_path(n));
    printf("address_taken = %d %d\n", address_taken(3), address_taken(-1));
    printf("pointers = %d\n", pointers());
    printf("joins = %d\n", joins(&x, &y, 4));
    printf("x y = %d %d\n", x, y);
    printf("joins same = %d\n", joins(&z, &z, 2));
    printf("z g = %d %d\n", z, g);
    printf("once_in_loop = %d %d %d\n", once_in_loop(0), once_in_loop(1), once_in_loop(4));
    printf("params = %d %d\n", params(2, 1), params(-3, 5));
    printf("volatiles = %d %d\n", volatiles(4), tick);
    printf("wide = %lld\n", wide(5));
    for (int n = 0; n < 8; n += 3) {
        int r = repeated(arr, n);
        printf("repeated(%d) = %d %d %d %d %d\n", n, r, arr[0], arr[1], arr[2], arr[3]);
    }
    return 0;
}
