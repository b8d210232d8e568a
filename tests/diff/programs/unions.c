/* Unions: type punning of float and int and of double and two 32-bit
   halves through a union (as C allows), a tagged union of shapes dispatched
   by a switch, a union inside a struct with an anonymous member, byte views
   of words through unsigned char, and a union initialized by designator. */
#include <stdio.h>
#include <string.h>

union fbits {
    float f;
    unsigned u;
    int i;
};

union dbits {
    double d;
    unsigned long long u;
    unsigned half[2];
};

static unsigned float_bits(float f) {
    union fbits b;
    b.f = f;
    return b.u;
}

static float bits_float(unsigned u) {
    union fbits b = {.u = u};
    return b.f;
}

/* The classic fast inverse square root, checked against 1/sqrt by hand. */
static float rsqrt(float x) {
    union fbits b = {x};
    b.i = 0x5f3759df - (b.i >> 1);
    float y = b.f;
    return y * (1.5f - 0.5f * x * y * y);
}

enum kind { CIRCLE, RECT, TRI };

struct shape {
    enum kind kind;
    union {
        struct {
            double r;
        } circle;
        struct {
            double w, h;
        } rect;
        struct {
            double a, b, c;
        } tri;
    };
};

static double perimeter(const struct shape *s) {
    switch (s->kind) {
    case CIRCLE:
        return 2 * 3.141592653589793 * s->circle.r;
    case RECT:
        return 2 * (s->rect.w + s->rect.h);
    case TRI:
        return s->tri.a + s->tri.b + s->tri.c;
    }
    return -1;
}

union word {
    unsigned w;
    unsigned short h[2];
    unsigned char b[4];
};

static const union word table[3] = {{0x11223344u}, {.b = {1, 2, 3, 4}}, {.h = {0xbeef, 0xdead}}};

int main(void) {
    static const float fs[] = {0.0f, -0.0f, 1.0f, -2.5f, 0.1f, 3.4028235e38f, 1e-45f};
    for (int i = 0; i < 7; i++) {
        unsigned u = float_bits(fs[i]);
        printf("%-14g bits=%08x sign=%u exp=%3u mant=%06x back=%d\n", fs[i], u, u >> 31,
               (u >> 23) & 0xff, u & 0x7fffff, bits_float(u) == fs[i]);
    }
    printf("inf bits %08x, nan is nan %d\n", float_bits(bits_float(0x7f800000u)),
           bits_float(0x7fc00000u) != bits_float(0x7fc00000u));
    for (float x = 1.0f; x <= 100.0f; x *= 7.0f)
        printf("rsqrt(%g)=%.5f\n", x, rsqrt(x));

    union dbits d = {.d = 1.0};
    printf("1.0 = %016llx hi=%08x lo=%08x\n", d.u, d.half[1], d.half[0]);
    d.half[1] ^= 0x80000000u;
    printf("flipped sign: %g\n", d.d);
    d.u = 0x400921fb54442d18ull;
    printf("pi from bits: %.17g\n", d.d);
    d.d = 0.1;
    d.u += 1;
    printf("next after 0.1: %.17g\n", d.d);

    struct shape shapes[3];
    memset(shapes, 0, sizeof shapes);
    shapes[0].kind = CIRCLE;
    shapes[0].circle.r = 2.0;
    shapes[1] = (struct shape){RECT, .rect = {3.0, 4.5}};
    shapes[2].kind = TRI;
    shapes[2].tri.a = 3;
    shapes[2].tri.b = 4;
    shapes[2].tri.c = 5;
    for (int i = 0; i < 3; i++)
        printf("shape %d kind %d perimeter %.6f\n", i, shapes[i].kind, perimeter(&shapes[i]));
    printf("sizeof shape %u, union word %u\n", (unsigned)sizeof(struct shape),
           (unsigned)sizeof(union word));

    for (int i = 0; i < 3; i++)
        printf("word %d: %08x halves %04x %04x bytes %02x %02x %02x %02x\n", i, table[i].w,
               table[i].h[0], table[i].h[1], table[i].b[0], table[i].b[1], table[i].b[2],
               table[i].b[3]);
    union word w;
    w.w = 0;
    w.b[3] = 0x80;
    w.h[0] = 0x1234;
    printf("assembled %08x\n", w.w);
    unsigned x = 0xcafebabeu;
    const unsigned char *bytes = (const unsigned char *)&x;
    printf("bytes of cafebabe: %02x %02x %02x %02x\n", bytes[0], bytes[1], bytes[2], bytes[3]);
    return 0;
}
