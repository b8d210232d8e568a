/* Short circuits and sequences whose conditional part has effects, in every
   place a statement can hold them: as the statement, the value stored, the
   value of an operator-assignment, a return value, a call argument, a
   switch value, inside arithmetic, nested in each other. Statements are
   split into tests and jumps where that keeps each effect in its order;
   a statement that evaluates something with an effect before the short
   circuit, or reads what the test changes, must stay whole. */
#include <stdio.h>

static int calls;
static int trace;
static volatile int port = 3;
static int arr[8];

static int bump(int v) {
    calls++;
    /* A sum: C leaves the order of the operands of + open. */
    trace += v * v + 1;
    return v;
}

static void as_statements(int a, int b) {
    a && bump(1);
    b || bump(2);
    a ? bump(3) : bump(4);
    (a > b) ? (void)0 : (void)bump(5);
    (bump(6), a) && bump(7);
}

static int stored(int a, int b) {
    int x = a && bump(10);
    int y = b || bump(11);
    int z = a ? bump(12) : b;
    int w = a - b ? b : bump(13);
    return x * 1000 + y * 100 + z * 10 + w;
}

static int updated(int a, int b) {
    int x = 7;
    x += a ? bump(20) : b;
    x *= b && bump(21);
    x -= (a || bump(22)) + 1;
    return x;
}

static int returned(int a, int b) {
    if (b > 10)
        return a ? bump(30) : bump(31);
    return a && (bump(32) > 1);
}

static int argument(int a, int b) { return bump((a || bump(40)) + (b && bump(41))); }

static int arithmetic(int a, int b) {
    int y = 3 + (a && bump(50)) * 2;
    int z = b * (a ? bump(51) : 4) - (b || bump(52));
    return y * 10 + z;
}

/* An effect before the short circuit: the statement stays whole. */
static int effect_first(int a) {
    int y = bump(60) + (a && bump(61));
    return y;
}

static int volatile_reads(int a) {
    int y = (port && bump(70)) + (a || port);
    return y;
}

static int stores(int a) {
    int i = 0;
    arr[i++] = a && bump(80);
    arr[i++] = a ? bump(81) : bump(82);
    arr[i] += (a || bump(83)) ? 4 : 5;
    return arr[0] * 100 + arr[1] * 10 + arr[2] + i;
}

static int switched(int a) {
    switch (a ? bump(90) : bump(91)) {
    case 90:
        return 1;
    case 91:
        return 2;
    default:
        return 3;
    }
}

static int nested(int a, int b, int c) {
    int r = (a && (b || bump(100))) ? (c ? bump(101) : bump(102)) : (b && c && bump(103));
    r += (a ? (b ? bump(104) : bump(105)) : (c ? bump(106) : 0)) +
         ((a || b) && (b || c) && bump(107));
    return r;
}

static int sequences(int a) {
    int x = (bump(110), a + 1);
    if ((x = bump(111) + a, x > 112))
        x += 2;
    return (bump(112), x);
}

static int loops(int n) {
    int s = 0;
    for (int i = 0; i < n && bump(i) < 3; i++)
        s += (i & 1) ? bump(120 + i) : i;
    while (n-- > 0 && (s & 1 || bump(s)))
        s++;
    return s;
}

int main(void) {
    int total = 0;
    for (int a = 0; a < 3; a++)
        for (int b = 0; b < 3; b++) {
            calls = 0;
            trace = 0;
            as_statements(a, b);
            total += stored(a, b) + updated(a, b) + returned(a, b * 6) + argument(a, b) +
                     arithmetic(a, b) + effect_first(a) +
                     volatile_reads(a) + stores(a) + switched(a) + nested(a, b, a ^ b) +
                     sequences(a) + loops(a + b);
            printf("%d %d: calls %d trace %d total %d\n", a, b, calls, trace, total);
        }
    printf("total %d\n", total);
    return 0;
}
