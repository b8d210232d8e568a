/* Qualifiers and typedefs: const objects and pointers to const, const
   pointers, volatile locals and globals read and written in loops (each
   access must happen), volatile struct members, restrict-qualified
   parameters, typedefs of scalars, arrays, structs, function types and
   pointers to functions, and const arrays of structs in static data. */
#include <stdio.h>

typedef unsigned int uint;
typedef int vec3[3];
typedef struct {
    const char *name;
    const int limits[2];
} range_t;
typedef int transform(int);
typedef transform *transform_ptr;
typedef const volatile uint cv_uint;

static const range_t ranges[] = {{"byte", {0, 255}}, {"sbyte", {-128, 127}}, {"digit", {0, 9}}};
static volatile int ticks;
static volatile struct {
    int status;
    unsigned count;
} device = {1, 0};

static int inc(int x) { return x + 1; }
static int neg(int x) { return -x; }

static void add_into(int *restrict dst, const int *restrict a, const int *restrict b, int n) {
    for (int i = 0; i < n; i++)
        dst[i] = a[i] + b[i];
}

static int clamp(int v, const range_t *r) {
    return v < r->limits[0] ? r->limits[0] : v > r->limits[1] ? r->limits[1] : v;
}

static void dot3(const vec3 a, const vec3 b, int *out) {
    *out = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

static int apply(transform_ptr f, int v, int times) {
    while (times--)
        v = f(v);
    return v;
}

int main(void) {
    const int k = 12;
    const int *pk = &k;
    int value = 5;
    int *const fixed = &value;
    const int *const both = &value;
    *fixed += k;
    printf("const: %d %d %d\n", *pk, value, *both);

    volatile int spin = 0;
    for (int i = 0; i < 1000; i++)
        spin++;
    ticks = 0;
    for (int i = 0; i < 10; i++)
        ticks += spin / 100;
    device.count = 3;
    while (device.status) {
        device.count--;
        if (device.count == 0)
            device.status = 0;
    }
    printf("volatile: %d %d status %d count %u\n", spin, ticks, device.status, device.count);
    cv_uint reg = 0xabcu;
    printf("const volatile: %x\n", reg);

    int a[5] = {1, 2, 3, 4, 5}, b[5] = {10, 20, 30, 40, 50}, c[5];
    add_into(c, a, b, 5);
    printf("restrict: %d %d %d\n", c[0], c[2], c[4]);

    for (unsigned i = 0; i < sizeof ranges / sizeof ranges[0]; i++)
        printf("%s: %d %d %d\n", ranges[i].name, clamp(-500, &ranges[i]), clamp(7, &ranges[i]),
               clamp(500, &ranges[i]));
    vec3 u = {1, 2, 3}, v = {4, -5, 6};
    int d;
    dot3(u, v, &d);
    uint big = 3000000000u;
    printf("typedefs: dot %d uint %u size vec3 %u\n", d, big, (unsigned)sizeof(vec3));
    transform *t1 = inc;
    transform_ptr t2 = neg;
    printf("function typedefs: %d %d %d\n", apply(t1, 0, 5), apply(t2, 7, 3), apply(inc, -3, 3));
    const char *const names[] = {"const", "volatile", "restrict"};
    const char *joined = names[k % 3];
    printf("picked %s\n", joined);
    return 0;
}
