/* Self-referential and mutually referencing static data, function pointers
   that return function pointers, pointers to pointers to functions, struct
   values from calls through pointers, members of struct values (arrays
   included), and initializers of automatic objects that are not constant:
   addresses of locals, bit-fields, unions whose initialized member is
   smaller than the union, strings inside arrays of structs and nested
   compound literals. */
#include <stdio.h>
#include <string.h>

struct node {
    struct node *next;
    int value;
};

static struct node ring_b;
static struct node ring_a = {&ring_b, 1};
static struct node ring_b = {&ring_a, 2};
static struct node self = {&self, 3};
static _Bool half_true = 0.5; /* any non-zero value is true */
static const char *const tail = &"abcdef"[4];
static unsigned long long all_ones = -1;
static float from_int = 1 << 20;
static const double thirds[] = {1.0 / 3, 2.0 / 3, (double)(1 / 3)};
static char names[3][8] = {"one", "three", "eighteen"}; /* the last without NUL */
static int span = (int)(&names[2][0] - &names[0][0]);

struct record {
    char name[8];
    int value;
    unsigned flag : 1;
    signed level : 4;
};

union small_first {
    char c;
    int i;
    double d;
};

static int twice(int x) { return 2 * x; }
static int thrice(int x) { return 3 * x; }

typedef int (*unary)(int);

static unary pick(int which) { return which ? thrice : twice; }
static unary (*picker)(int) = pick;

static struct record make(const char *name, int value) {
    struct record r = {"", value, 1, -3};
    strncpy(r.name, name, sizeof r.name - 1);
    return r;
}

static struct record (*maker)(const char *, int) = make;

static int count_ring(const struct node *start) {
    int n = 0;
    const struct node *p = start;
    do {
        n += p->value;
        p = p->next;
    } while (p != start);
    return n;
}

int main(int argc, char **argv) {
    (void)argv;
    printf("rings: %d %d %d self %d half_true %d\n", count_ring(&ring_a), count_ring(&ring_b),
           ring_a.next->next->value, self.next->next->value, half_true);
    printf("statics: %s %llx %g %.17g %.17g %g\n", tail, all_ones, from_int, thirds[0], thirds[1],
           thirds[2]);
    printf("names: %s %s %.8s span %d\n", names[0], names[1], names[2], span);

    unary (*const *pp)(int) = &picker;
    unary table[2] = {pick(0), (*pp)(1)};
    unary *tp = table;
    printf("function pointers: %d %d %d %d\n", table[0](5), (*tp[1])(5), pick(argc)(7),
           picker(0)(picker(1)(2)));

    struct record r = maker("widget", 42);
    printf("call through pointer: %s %d %u %d, member of value: %c %d\n", r.name, r.value, r.flag,
           r.level, make("gadget", 1).name[2], maker("x", 9).value);
    struct record copy = argc > 5 ? make("a", 1) : r;
    copy.level += 2;
    printf("copy %s %d level %d\n", copy.name, copy.value, copy.level);

    int a = 10, b = 20;
    int *ptrs[3] = {&a, &b};
    int n = argc;
    struct record recs[2] = {{"first", n, 1, -n}, {.name = "second", .value = n + 1}};
    union small_first u = {.c = (char)(n + 64)};
    struct node local_ring[2] = {{&local_ring[1], n}, {&local_ring[0], n * 2}};
    struct {
        struct node *p;
        int *q;
    } nested = {&(struct node){NULL, n * 7}, (int[]){n, n + 1, n + 2}};
    *ptrs[1] += *ptrs[0];
    printf("local pointers: %d %d null %d\n", *ptrs[0], b, ptrs[2] == NULL);
    printf("local records: %s %d %u %d | %s %d %u %d\n", recs[0].name, recs[0].value, recs[0].flag,
           recs[0].level, recs[1].name, recs[1].value, recs[1].flag, recs[1].level);
    printf("union: %c, bytes past c zero %d\n", u.c, u.i >> 8 == 0 && u.d == u.d);
    printf("local ring: %d, nested: %d %d\n", count_ring(local_ring), nested.p->value, nested.q[2]);
    char c;
    int i;
    c = i = n + 299;
    unsigned un = 5;
    un = -un;
    double neg_u = -(double)un;
    printf("chains: %d %d %u %.17g\n", c, i, un, neg_u);
    return 0;
}
