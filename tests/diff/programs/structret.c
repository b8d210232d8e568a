/* Structs passed and returned by value, nested structs, arrays of structs,
   struct assignment and a union. */
#include <stdio.h>

struct vec {
    double x, y;
};

struct rect {
    struct vec lo, hi;
    char name[8];
};

union word {
    unsigned int u;
    unsigned char b[4];
    float f;
};

static struct vec add(struct vec a, struct vec b) {
    struct vec r = {a.x + b.x, a.y + b.y};
    return r;
}

static struct vec scale(struct vec v, double k) {
    v.x *= k;
    v.y *= k;
    return v;
}

static struct rect make_rect(double w, double h, const char *name) {
    struct rect r = {{0, 0}, {w, h}, ""};
    int i;
    for (i = 0; i < 7 && name[i]; i++)
        r.name[i] = name[i];
    r.name[i] = 0;
    return r;
}

static double area(const struct rect *r) {
    return (r->hi.x - r->lo.x) * (r->hi.y - r->lo.y);
}

int main(void) {
    struct vec a = {1.5, 2.0}, b = {0.25, -1.0};
    struct vec c = scale(add(a, b), 2.0);
    struct rect rs[3];
    rs[0] = make_rect(2, 3, "small");
    rs[1] = make_rect(c.x, c.y, "scaled");
    rs[2] = rs[0];
    rs[2].hi = add(rs[2].hi, (struct vec){1, 1});
    double total = 0;
    for (int i = 0; i < 3; i++)
        total += area(&rs[i]);
    union word w;
    w.u = 0x11223344u;
    printf("c=(%g,%g) total=%g first=%s byte0=%x\n", c.x, c.y, total, rs[1].name, w.b[0]);
    printf("x of sum %g\n", add(a, b).x);
    return 0;
}
