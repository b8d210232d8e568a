/* Structs by value: small, medium and large structs (with arrays, nested
   structs, char and double members) passed as arguments and returned,
   modified in the callee without touching the caller's copy, passed through
   chains of calls, assigned, and compared member by member. */
#include <stdio.h>

struct small {
    unsigned char tag;
    short v;
};

struct point {
    int x, y;
};

struct segment {
    struct point a, b;
    char label[6];
};

struct big {
    double weights[5];
    long long id;
    struct segment seg;
    char flag;
};

static struct small bump(struct small s) {
    s.tag++;
    s.v = (short)(s.v * 2);
    return s;
}

static struct point add(struct point p, struct point q) {
    struct point r = {p.x + q.x, p.y + q.y};
    return r;
}

static int cross(struct point o, struct point a, struct point b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

static struct segment reverse(struct segment s) {
    struct point t = s.a;
    s.a = s.b;
    s.b = t;
    for (int i = 0, j = 4; i < j; i++, j--) {
        char c = s.label[i];
        s.label[i] = s.label[j];
        s.label[j] = c;
    }
    return s;
}

static long long length2(struct segment s) {
    long long dx = s.b.x - s.a.x, dy = s.b.y - s.a.y;
    return dx * dx + dy * dy;
}

static struct big scale(struct big b, double k) {
    for (int i = 0; i < 5; i++)
        b.weights[i] *= k;
    b.id = b.id * 3 + 1;
    b.seg.a.x *= 2;
    b.flag = (char)(b.flag + 1);
    return b;
}

static double total(struct big b) {
    double t = 0;
    for (int i = 0; i < 5; i++)
        t += b.weights[i];
    return t + (double)b.id + b.seg.a.x + b.flag;
}

static struct point centroid(int n, const struct point *pts) {
    struct point sum = {0, 0};
    for (int i = 0; i < n; i++)
        sum = add(sum, pts[i]);
    return (struct point){sum.x / n, sum.y / n};
}

static int same_point(struct point p, struct point q) { return p.x == q.x && p.y == q.y; }

int main(void) {
    struct small s = {254, -1234};
    struct small t = bump(bump(s));
    printf("small: %u %d -> %u %d\n", s.tag, s.v, t.tag, t.v);
    t = bump(t);
    printf("tag wraps: %u\n", t.tag);

    struct point pts[] = {{0, 0}, {4, 0}, {4, 3}, {0, 3}, {2, 5}};
    struct point c = centroid(5, pts);
    printf("centroid %d %d\n", c.x, c.y);
    for (int i = 0; i + 2 < 5; i++)
        printf("cross %d: %d\n", i, cross(pts[i], pts[i + 1], pts[i + 2]));
    printf("add chain: %d\n", add(add(pts[1], pts[2]), add(pts[3], pts[4])).y);

    struct segment seg = {{1, 2}, {7, 10}, "abcde"};
    struct segment r = reverse(seg);
    printf("seg %s (%d,%d)-(%d,%d) len2=%lld\n", seg.label, seg.a.x, seg.a.y, seg.b.x, seg.b.y,
           length2(seg));
    printf("rev %s (%d,%d)-(%d,%d) len2=%lld\n", r.label, r.a.x, r.a.y, r.b.x, r.b.y, length2(r));
    printf("same after double reverse: %d\n",
           same_point(reverse(r).a, seg.a) && same_point(reverse(r).b, seg.b));

    struct big b = {{0.5, 1.5, 2.5, 3.5, 4.5}, 1000000000000LL, {{3, 4}, {5, 6}, "big"}, 'x'};
    struct big b2 = scale(b, 2.0);
    struct big b3 = scale(scale(b2, 0.25), 4.0);
    printf("big: total %.3f -> %.3f -> %.3f\n", total(b), total(b2), total(b3));
    printf("caller copy intact: %.1f %lld %d %c\n", b.weights[4], b.id, b.seg.a.x, b.flag);
    printf("b3: id %lld seg.a.x %d flag %c label %s\n", b3.id, b3.seg.a.x, b3.flag, b3.seg.label);
    struct big arr[2];
    arr[0] = b;
    arr[1] = arr[0];
    arr[1].seg.label[0] = 'B';
    printf("array copies: %s %s %.1f\n", arr[0].seg.label, arr[1].seg.label, arr[1].weights[2]);
    return 0;
}
