/* Dead and almost dead assignments on many paths: loops, switch, goto,
   short circuits with effects, pointers to locals, arrays, structs and
   volatile objects. Every result is printed, so a store removed that
   something still read shows as a different line. */
#include <stdio.h>

static int trace;
static int g;
static volatile int vg;

static int bump(int v) {
    trace = trace * 31 + v;
    return v;
}

static int overwrite(int a) {
    int x = bump(a);
    x = a * 2;
    x = x + 1;
    return x;
}

static int loop_carried(int n) {
    int prev = 0, cur = 1, tmp = 0;
    for (int i = 0; i < n; i++) {
        tmp = prev + cur;
        prev = cur;
        cur = tmp;
    }
    return prev;
}

static int dead_in_loop(int n) {
    int s = 0, junk = 0;
    for (int i = 0; i < n; i++) {
        junk = i * 7;
        s += i;
        junk = bump(i);
    }
    return s;
}

static int by_switch(int k) {
    int r = -1, unused = 3;
    switch (k) {
    case 0:
        r = 10;
        unused = 4;
        break;
    case 1:
        unused = bump(5);
        /* fall through */
    case 2:
        r = 20 + unused;
        break;
    default:
        r = unused;
        unused = 9;
    }
    return r;
}

static int with_goto(int n) {
    int acc = 0, last = 0;
again:
    last = acc;
    acc += n;
    if (--n > 0)
        goto again;
    last = 100;
    return acc;
}

static int short_circuits(int a, int b) {
    int x = 0, y = 0, z = 0;
    if (a && (x = bump(b)) > 2)
        z = 1;
    y = (b || bump(a)) ? x : 7;
    x = a > b ? bump(1) : bump(2);
    return z * 100 + y;
}

static int through_pointer(int a) {
    int x = a;
    int *p = &x;
    x = a + 5;
    *p += 1;
    x = x * 2;
    return *p;
}

static int arrays(int n) {
    int arr[4] = {0, 0, 0, 0};
    int idx = 0;
    for (int i = 0; i < n; i++) {
        arr[i & 3] += i;
        idx = i;
    }
    idx = 2;
    return arr[0] + arr[1] * 10 + arr[idx];
}

struct pt {
    int x, y;
};

static int structs(int a) {
    struct pt p = {a, a + 1};
    struct pt q;
    q = p;
    p.x = 99;
    q.y += p.x;
    return q.x + q.y;
}

static int volatiles(int a) {
    volatile int v = a;
    int x = v;
    v = a + 1;
    vg = a;
    vg = a + 2;
    x = v + vg;
    return x;
}

static int globals(int a) {
    g = a;
    g = g * 3;
    int t = g;
    t = 0;
    return t + g;
}

static int updates(int a) {
    int x = a, y = a;
    x += bump(3);
    y++;
    x *= 2;
    y -= 4;
    return y;
}

static int nested(int a) {
    int x, y, z;
    y = (x = bump(a)) + 1;
    z = (y = x * 2) + (g = 3);
    x = 3;
    return z + x;
}

static int early_return(int a) {
    int x = a * 3;
    if (a > 2)
        return a;
    x = x + 1;
    return x;
}

int main(void) {
    int i;
    for (i = 0; i < 4; i++)
        printf("overwrite %d: %d\n", i, overwrite(i));
    printf("fib %d %d %d\n", loop_carried(0), loop_carried(1), loop_carried(10));
    printf("dead_in_loop %d\n", dead_in_loop(6));
    for (i = 0; i < 4; i++)
        printf("switch %d: %d\n", i, by_switch(i));
    printf("goto %d %d\n", with_goto(1), with_goto(5));
    printf("short %d %d %d %d\n", short_circuits(0, 0), short_circuits(1, 5),
           short_circuits(3, 1), short_circuits(0, 4));
    printf("pointer %d\n", through_pointer(4));
    printf("arrays %d %d\n", arrays(3), arrays(9));
    printf("structs %d\n", structs(5));
    printf("volatile %d %d\n", volatiles(2), vg);
    printf("globals %d %d\n", globals(4), g);
    printf("updates %d\n", updates(10));
    printf("nested %d %d\n", nested(2), nested(-3));
    printf("early %d %d\n", early_return(1), early_return(5));
    printf("trace %d\n", trace);
    return 0;
}
