/* Every operator: arithmetic, bitwise, shifts, relations, logical && and ||
   with side effects that must be skipped, ! on integers, floats and
   pointers, the conditional operator on scalars, pointers, structs and void,
   the comma operator, every compound assignment (also on narrow types,
   floats, pointers and through an address computed once), pre and post
   increment and decrement of ints, chars, floats, doubles and pointers,
   unary minus and plus, ~, casts, sizeof of types and expressions (with no
   evaluation), address-of and indirection, and member access. */
#include <stdio.h>

static int calls;

static int touch(int v) {
    calls++;
    return v;
}

struct pair {
    int a, b;
};

static void say(const char *s) { printf("[%s]", s); }

static int *next_slot(int *base, int *index) { return &base[(*index)++]; }

int main(void) {
    int a = 17, b = -5, c = 3;
    unsigned ua = 0xf0f0u, ub = 0x0ff0u;
    printf("arith: %d %d %d %d %d %d %d\n", a + b, a - b, a * b, a / c, a % c, b / c, b % c);
    printf("bitwise: %x %x %x %x %x %x\n", ua & ub, ua | ub, ua ^ ub, ~ua, ua << 4, ua >> 4);
    printf("signed bitwise: %d %d %d %d %d\n", b & 0xff, b | 2, b ^ -1, ~b, b >> 1);
    printf("relations: %d %d %d %d %d %d\n", a<b, a <= 17, a> b, b >= -5, a == 17, a != b);
    printf("unary: %d %d %d %d %d\n", -a, +b, !a, !0, -(-b));

    calls = 0;
    int r1 = touch(0) && touch(1);
    int r2 = touch(1) || touch(0);
    int r3 = touch(1) && touch(2) && touch(0) && touch(3);
    int r4 = touch(0) || touch(0) || touch(5);
    int r5 = (touch(0) && touch(1)) || (touch(1) && !touch(0));
    printf("logical: %d %d %d %d %d calls %d\n", r1, r2, r3, r4, r5, calls);
    double z = 0.0, nz = 0.25;
    int *np = 0, *pp = &a;
    printf("not: %d %d %d %d %d %d\n", !z, !nz, !np, !pp, !!a, !(a > b));
    printf("and/or values: %d %d %d\n", c && a, z || b, (a > 0) + (b > 0) * 2);

    printf("cond: %d %s %d\n", a > b ? a : b,
           b > 0   ? "pos"
           : b < 0 ? "neg"
                   : "zero",
           (a & 1 ? 100 : 200) + 1);
    struct pair p1 = {1, 2}, p2 = {3, 4};
    struct pair pc = a > 0 ? p1 : p2;
    int *which = b > 0 ? &a : &c;
    printf("cond struct %d %d, pointer %d, member %d\n", pc.a, pc.b, *which, (a < 0 ? p1 : p2).b);
    a > 0 ? say("void yes") : say("void no");
    printf("\n");

    int x = (a++, b++, a + b);
    int y = (x = x * 2, x + 1);
    printf("comma: %d %d %d %d\n", a, b, x, y);

    int v = 100;
    v += 5;
    printf("ops: %d", v);
    v -= 10;
    printf(" %d", v);
    v *= 3;
    printf(" %d", v);
    v /= 7;
    printf(" %d", v);
    v %= 9;
    printf(" %d", v);
    v <<= 4;
    printf(" %d", v);
    v >>= 2;
    printf(" %d", v);
    v &= 0x1c;
    printf(" %d", v);
    v |= 0x101;
    printf(" %d", v);
    v ^= 0x0ff;
    printf(" %d\n", v);

    unsigned char uc = 5;
    uc += 200;
    uc <<= 3;
    printf("uchar: %u", uc);
    uc -= 250;
    uc *= 7;
    printf(" %u", uc);
    uc /= 3;
    uc %= 11;
    uc |= 0x80;
    uc ^= 0xff;
    uc >>= 1;
    printf(" %u\n", uc);
    short s = 1000;
    s /= 3;
    s *= -40;
    s += 20000;
    printf("short: %d", s);
    s -= 10;
    s >>= 3;
    s <<= 2;
    s &= ~7;
    printf(" %d\n", s);
    float f = 1.0f;
    f += 0.5;
    f *= 4;
    f -= 1;
    f /= 2;
    printf("float: %g", f);
    f++;
    ++f;
    f--;
    printf(" %g", f);
    double d = 10;
    d /= 4;
    d *= d;
    d -= 0.25;
    d++;
    printf(" double %g", d);
    int iv = 10;
    iv *= 2.5;
    iv += 0.9;
    iv /= 0.5;
    printf(" int by double %d\n", iv);
    long long ll = 1;
    ll <<= 40;
    ll += 7;
    ll /= 3;
    ll %= 1000000007;
    printf("long long: %lld\n", ll);

    char ch = 'a';
    char c1 = ch++, c2 = ++ch, c3 = ch--, c4 = --ch;
    printf("char incs: %c %c %c %c %c\n", c1, c2, c3, c4, ch);
    double dd = 0.5;
    double d1 = dd++, d2 = ++dd, d3 = dd--, d4 = --dd;
    printf("double incs: %g %g %g %g %g\n", d1, d2, d3, d4, dd);
    float ff = -1.5f;
    ff++;
    --ff;
    --ff;
    printf("float incs: %g\n", ff);

    int arr[6] = {0, 10, 20, 30, 40, 50};
    int *ip = arr;
    int e1 = *ip++, e2 = *++ip, e3 = ip[1]++, e4 = ++ip[1];
    ip += 2;
    ip -= 1;
    printf("pointer ops: %d %d %d %d %d %d\n", e1, e2, e3, e4, *ip, (int)(ip - arr));
    int idx = 0;
    int slots[4] = {0};
    *next_slot(slots, &idx) += 5;
    *next_slot(slots, &idx) -= 3;
    *next_slot(slots, &idx) *= 2;
    printf("address once: %d %d %d %d idx %d\n", slots[0], slots[1], slots[2], slots[3], idx);
    unsigned char bytes[3] = {250, 251, 252};
    int bi = 0;
    bytes[bi++] += 10;
    bytes[bi++] <<= 1;
    bytes[bi++] /= 2;
    printf("narrow through index: %u %u %u bi %d\n", bytes[0], bytes[1], bytes[2], bi);

    int sz_calls = calls;
    size_t s1 = sizeof(touch(1));
    size_t s2 = sizeof arr / sizeof arr[0];
    size_t s3 = sizeof(struct pair);
    size_t s4 = sizeof(char[7]);
    printf("sizeof: %u %u %u %u %u no call %d\n", (unsigned)s1, (unsigned)s2, (unsigned)s3,
           (unsigned)s4, (unsigned)sizeof(double), calls == sz_calls);
    printf("casts: %d %u %d %g %d %d\n", (int)3.99, (unsigned)-1, (signed char)300, (double)7 / 2,
           (int)(char)'z', (int)(short)-70000);
    struct pair *pp2 = &p2;
    (*pp2).a += 10;
    pp2->b *= 3;
    printf("members: %d %d %d\n", p2.a, p2.b, (&p1)->a + pp2[0].b);
    return 0;
}
