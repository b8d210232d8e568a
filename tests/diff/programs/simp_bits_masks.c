/* Masks over shifts, sums and conversions where only some bits survive: an
   arithmetic right shift copies the sign into the top, a conversion to a
   narrower or unsigned type decides the bits above its width, a signed
   one-bit field reads -1 and not 1, and ^ | & of equal operands with
   effects or calls keep both evaluations. Each is printed for a spread of
   values that reach the sign and the edges of every width. */
#include <stdio.h>

static const int values[] = {0,       1,          -1,          2,         7,
                             -8,      0x7f,       0x80,        0xff,      -0x80,
                             0x1234,  0x8000,     0xffff,      -0x8000,   0x12345678,
                             0x7fffffff, -0x7fffffff - 1, 0x0f0f0f0f, -0x10000, 0x55aa55aa};
#define N (int)(sizeof values / sizeof values[0])

static unsigned mix;
static void out(const char *what, long long v) {
    mix = mix * 31u + (unsigned)v + (unsigned)(v >> 32);
    printf("%s %lld\n", what, v);
}

/* An arithmetic shift brings the sign bit down: it is asked for. */
static void shifts(int x) {
    out("sra-or", ((x | (int)0x80000001) >> 4) & (int)0xf0000001);
    out("sra-mask", (x >> 28) & 0xff);
    out("sra-and", ((x & (int)0x80000000) >> 31) & 3);
    out("srl-mask", ((unsigned)x >> 28) & 0xffu);
    out("srl-cut", ((unsigned)x >> 3) & 0x3fffffffu);
    out("sll-xor", (long long)(((unsigned)x << 4) ^ 0xfu));
    out("sll-sum", ((x + 0x10) << 4) & 0xff0);
}

/* Conversions inside a mask: only the widths that the mask reaches matter. */
static void conversions(int x) {
    out("u16-in-32", (unsigned short)x & 0x1ffff);
    out("s16-in-32", (long long)((unsigned)(short)x & 0x1ffffu));
    out("u32-in-64", (long long)(unsigned)x & 0x1ffffffffLL);
    out("s32-in-64", (long long)x & 0x1ffffffffLL);
    out("s8-in-32", (signed char)(x + 0x80) & 0x1ff);
    out("u8-in-32", (unsigned char)(x + 0x80) & 0x1ff);
    out("s16-sum", (short)(x + 0x12345) & 0x3ffff);
    out("u16-xor", (unsigned short)(x ^ 0x10001) & 0x1ffff);
    out("bool", (_Bool)(x & 0x100) & 1);
    out("narrow-or", (unsigned char)((x | 0x100) & 0x1ff));
    out("wide-or", ((long long)x | 0x100000000LL) & 0x1ffffffffLL);
}

/* Sums and products under a mask: carries go up, never down. */
static void arithmetic(int x, int y) {
    out("sum-low", ((x & 0xff) + 0x1234) & 0xff);
    out("sum-hole", ((x & 0xf0f) + 0x10) & 0xf0f);
    out("diff", ((x | 0x100) - (y & 0xff)) & 0x1ff);
    out("product", ((x * 8) + y) & 7);
    out("product-hi", (x * 0x10001) & 0xffff);
    out("quest", ((x > y ? x | 0x10000 : y ^ 0x10000) + 1) & 0xffff);
}

/* Bits known one or zero on either side of | ^ &. */
static void bitwise(unsigned x, unsigned y) {
    out("or-known", (long long)(((x & 0xf0u) | y) | 0xf0u));
    out("or-and", (long long)(((x | 3u) & 0xfu) | 0x10u));
    out("or-xor", (long long)(((x & ~0xffu) ^ 0x5u) | 0x3u));
    out("xor-mask", (long long)((x & 0xfu) ^ 0xfu));
    out("xor-not", (long long)((x & 0xfu) ^ 0xffffffffu));
    out("xor-one", (long long)((x | 0xfu) ^ 0x3u));
    out("and-or", (long long)((x | 3u) & 1u));
    out("common", (long long)(((y & 0xfu) | (x & 0xf0u)) | (x & 0xf00u)));
    out("not-and", (long long)(~x & y & 0xffu));
    out("signed-xor", (long long)(((int)x >> 1) ^ -1));
}

static int calls;
static int next(void) { return ++calls; }

/* Equal operands that are evaluated twice are not one value. */
static void effects(void) {
    int a = next() ^ next();
    int b = next() | next();
    int c = next() & next();
    out("xor-calls", a);
    out("or-calls", b);
    out("and-calls", c);
    out("calls", calls);
}

struct flags {
    signed one : 1;
    unsigned three : 3;
    signed four : 4;
    unsigned rest : 24;
};

/* A signed one-bit field is 0 or -1: its & with 2 is not 0. */
static void fields(struct flags *f, int x) {
    f->one = x;
    f->three = x;
    f->four = x;
    f->rest = x;
    out("one&1", f->one & 1);
    out("one&2", f->one & 2);
    out("three&7", f->three & 7);
    out("three&8", f->three & 8);
    out("four&15", f->four & 0xf);
    out("four&16", f->four & 0x10);
    out("rest", f->rest & 0xffffff);
}

int main(void) {
    struct flags f = {0, 0, 0, 0};
    for (int i = 0; i < N; i++) {
        int x = values[i], y = values[(i * 7 + 3) % N];
        printf("x=%d y=%d\n", x, y);
        shifts(x);
        conversions(x);
        arithmetic(x, y);
        bitwise((unsigned)x, (unsigned)y);
        fields(&f, x);
    }
    effects();
    printf("mix %u\n", mix);
    return 0;
}
