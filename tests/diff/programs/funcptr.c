/* Function pointers: a table of operations indexed by opcode, callbacks
   with a context pointer, qsort with several comparators (ints descending,
   strings, structs by two keys; no ties among distinct records, since qsort
   is not stable), a function returning a function pointer, pointers to
   functions in a struct and comparisons of function pointers. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef int (*binop)(int, int);

static int add(int a, int b) { return a + b; }
static int sub(int a, int b) { return a - b; }
static int mul(int a, int b) { return a * b; }
static int divi(int a, int b) { return b ? a / b : 0; }
static int maxi(int a, int b) { return a > b ? a : b; }

static binop const ops[] = {add, sub, mul, divi, maxi};
static const char names[] = "+-*/M";

static binop lookup(char c) {
    const char *p = strchr(names, c);
    return p ? ops[p - names] : NULL;
}

static void for_each(const int *a, int n, void (*fn)(int, void *), void *ctx) {
    for (int i = 0; i < n; i++)
        fn(a[i], ctx);
}

struct stats {
    int count;
    long sum;
    int min, max;
};

static void collect(int v, void *ctx) {
    struct stats *s = ctx;
    if (s->count == 0 || v < s->min)
        s->min = v;
    if (s->count == 0 || v > s->max)
        s->max = v;
    s->count++;
    s->sum += v;
}

static void print_item(int v, void *ctx) { printf("%s%d", (*(int *)ctx)++ ? "," : "", v); }

static int desc(const void *a, const void *b) {
    int x = *(const int *)a, y = *(const int *)b;
    return (x < y) - (x > y);
}

static int by_string(const void *a, const void *b) {
    return strcmp(*(const char *const *)a, *(const char *const *)b);
}

struct person {
    const char *name;
    int age;
    int score;
};

static int by_age_then_score(const void *a, const void *b) {
    const struct person *p = a, *q = b;
    if (p->age != q->age)
        return p->age - q->age;
    return q->score - p->score;
}

struct shape_ops {
    const char *kind;
    double (*area)(double);
    double (*perimeter)(double);
};

static double sq_area(double s) { return s * s; }
static double sq_perim(double s) { return 4 * s; }
static double tri_area(double s) { return s * s * 0.4330127018922193; }
static double tri_perim(double s) { return 3 * s; }

static const struct shape_ops shapes[] = {
    {"square", sq_area, sq_perim},
    {"triangle", tri_area, tri_perim},
};

static int apply_n(binop f, int seed, int n) {
    int acc = seed;
    for (int i = 1; i <= n; i++)
        acc = (*f)(acc, i);
    return acc;
}

int main(void) {
    const char *prog = "+3*4-5M9/2";
    int acc = 10;
    for (const char *p = prog; *p; p += 2) {
        binop f = lookup(*p);
        acc = f(acc, p[1] - '0');
        printf("%c %c -> %d\n", p[0], p[1], acc);
    }
    printf("lookup('?') is null: %d, ops[2]==mul: %d, ops[0]!=ops[1]: %d\n", lookup('?') == NULL,
           ops[2] == mul, ops[0] != ops[1]);
    printf("fold add 1..10 from 0: %d, mul 1..6 from 1: %d\n", apply_n(add, 0, 10),
           apply_n(ops[2], 1, 6));

    int data[] = {5, -3, 17, 0, 42, -8, 9, 11, 5, 2};
    int n = (int)(sizeof data / sizeof *data);
    struct stats st = {0, 0, 0, 0};
    for_each(data, n, collect, &st);
    printf("count=%d sum=%ld min=%d max=%d\n", st.count, st.sum, st.min, st.max);
    qsort(data, n, sizeof data[0], desc);
    int first = 0;
    for_each(data, n, print_item, &first);
    printf("\n");

    const char *words[] = {"pear", "apple", "fig", "banana", "cherry", "apricot"};
    qsort(words, 6, sizeof words[0], by_string);
    for (int i = 0; i < 6; i++)
        printf("%s%s", words[i], i < 5 ? " " : "\n");

    struct person people[] = {{"ann", 30, 88}, {"bob", 25, 70}, {"cid", 30, 95},
                              {"dan", 25, 90}, {"eve", 41, 60}, {"fay", 30, 87}};
    qsort(people, 6, sizeof people[0], by_age_then_score);
    for (int i = 0; i < 6; i++)
        printf("%s(%d,%d) ", people[i].name, people[i].age, people[i].score);
    printf("\n");

    for (unsigned i = 0; i < sizeof shapes / sizeof shapes[0]; i++) {
        const struct shape_ops *s = &shapes[i];
        printf("%s: area(3)=%.6f perimeter(3)=%.1f\n", s->kind, s->area(3.0), (*s->perimeter)(3.0));
    }
    int (*pick)(int, int) = st.sum > 50 ? maxi : sub;
    printf("picked %s: %d\n", pick == maxi ? "max" : "sub", pick(7, 12));
    return 0;
}
