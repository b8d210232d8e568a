/* Static and automatic initializers: globals and statics of every scalar
   type, aggregates with padding and gaps, designated initializers out of
   order and with ranges left to zero, nested braces, strings into arrays
   of exact, larger and inferred size, addresses of
   objects, of array elements, of struct members and of functions in static
   data, pointers to string literals, a compound literal at file scope, local
   statics that keep their value across calls, and automatic aggregates
   initialized partly, fully and from non-constant values. Padding bytes are
   never printed. */
#include <stdio.h>
#include <string.h>

struct padded {
    char c; /* 3 bytes of padding follow */
    int i;
    short s; /* 6 bytes of padding follow */
    double d;
    char tail[3];
};

struct inner {
    int x, y;
};

struct outer {
    const char *name;
    struct inner pts[2];
    int (*fn)(int);
    unsigned flags : 3;
    unsigned mode : 5;
};

static int twice(int v) { return 2 * v; }
static int square(int v) { return v * v; }

signed char g_sc = -5;
unsigned char g_uc = 250;
short g_s = -1234;
unsigned short g_us = 54321;
int g_i = -100000;
unsigned g_u = 4000000000u;
long g_l = -7L;
long long g_ll = -1234567890123LL;
unsigned long long g_ull = 18000000000000000000ull;
float g_f = 1.5f;
double g_d = -2.25e-3;
long double g_ld = 3.0L;
_Bool g_b = 7;
const char *g_str = "global string";
char g_exact[5] = "exact"; /* no room for the NUL: none stored */
char g_larger[10] = "pad";
char g_inferred[] = "inferred";
int g_zeros[5];
int g_partial[6] = {1, 2};
int g_designated[8] = {[5] = 50, [1] = 10, 11, [7] = 70};
int g_matrix[3][3] = {{1, 2, 3}, {4}, [2][1] = 8};
int g_nested[2][2] = {{1, 2}, {3}};
struct padded g_pad = {'p', 42, -3, 0.125, "ab"};
struct padded g_pads[2] = {[1] = {.d = 9.5, .c = 'z'}};
struct outer g_outer[2] = {
    {"first", {{1, 2}, {3, 4}}, twice, 5, 17},
    {.fn = square, .name = "second", .pts[1].y = 99, .mode = 31},
};
int *g_ptr_elem = &g_designated[5];
int *g_ptr_end = g_partial + 6;
int *g_ptr_member = &g_outer[1].pts[1].y;
double *g_ptr_pad = &g_pad.d;
int (*g_fn_table[])(int) = {twice, square, 0, twice};
const char *const g_names[] = {"alpha", "beta", "gamma"};
const char *g_name_ptrs[] = {&g_larger[1], &"literal"[3]};
char *g_into_string = g_larger + 1;
int *g_lit = (int[]){7, 8, 9};
struct inner *g_lit_struct = &(struct inner){-1, -2};
union {
    int i;
    float f;
    unsigned char b[4];
} g_union = {.f = 1.0f};
static const struct inner g_const_pts[] = {{1, 1}, {2, 4}, {3, 9}};
static unsigned long g_sizes[] = {sizeof(struct padded), sizeof g_outer / sizeof g_outer[0],
                                  sizeof g_const_pts};

static int counter(void) {
    static int calls;
    static int start = 100;
    static const int steps[] = {1, 10, 100};
    start += steps[calls % 3];
    return ++calls * 1000 + start;
}

static int *static_address(void) {
    static int cell = 5;
    return &cell;
}

static void show_pad(const char *label, const struct padded *p) {
    printf("%s: %c %d %d %g %d%d%d\n", label, p->c ? p->c : '0', p->i, p->s, p->d, p->tail[0],
           p->tail[1], p->tail[2]);
}

int main(void) {
    printf("scalars: %d %u %d %u %d %u %ld %lld %llu %g %g %Lg %d\n", g_sc, g_uc, g_s, g_us, g_i,
           g_u, g_l, g_ll, g_ull, g_f, g_d, g_ld, g_b);
    printf("strings: %s %.5s [%s] %d %d %s %u\n", g_str, g_exact, g_larger, g_larger[3],
           g_larger[9], g_inferred, (unsigned)sizeof g_inferred);
    int sum = 0;
    for (int i = 0; i < 5; i++)
        sum += g_zeros[i];
    printf("zeros %d partial", sum);
    for (int i = 0; i < 6; i++)
        printf(" %d", g_partial[i]);
    printf(" designated");
    for (int i = 0; i < 8; i++)
        printf(" %d", g_designated[i]);
    printf("\nmatrix");
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++)
            printf(" %d", g_matrix[i][j]);
    printf(" nested %d %d %d %d\n", g_nested[0][0], g_nested[0][1], g_nested[1][0], g_nested[1][1]);
    show_pad("pad", &g_pad);
    show_pad("pads[0]", &g_pads[0]);
    show_pad("pads[1]", &g_pads[1]);
    for (int k = 0; k < 2; k++) {
        const struct outer *o = &g_outer[k];
        printf("outer %s: %d %d %d %d fn(7)=%d flags %u mode %u\n", o->name, o->pts[0].x,
               o->pts[0].y, o->pts[1].x, o->pts[1].y, o->fn(7), o->flags, o->mode);
    }
    printf("addresses: %d %d %d %g\n", *g_ptr_elem, (int)(g_ptr_end - g_partial), *g_ptr_member,
           *g_ptr_pad);
    *g_ptr_member += 1;
    printf("through member pointer: %d\n", g_outer[1].pts[1].y);
    for (int k = 0; k < 4; k++)
        printf("table[%d] %s", k, g_fn_table[k] ? "" : "null");
    printf(" twice(21)=%d square(9)=%d same %d\n", g_fn_table[0](21), g_fn_table[1](9),
           g_fn_table[0] == g_fn_table[3]);
    printf("names: %s %s %s / %s %s / %s\n", g_names[0], g_names[1], g_names[2], g_name_ptrs[0],
           g_name_ptrs[1], g_into_string);
    printf("literals: %d %d %d %d %d\n", g_lit[0], g_lit[1], g_lit[2], g_lit_struct->x,
           g_lit_struct->y);
    g_lit[1] = 80;
    printf("union: %08x %02x%02x%02x%02x const %d sizes %lu %lu %lu\n", (unsigned)g_union.i,
           g_union.b[3], g_union.b[2], g_union.b[1], g_union.b[0], g_const_pts[2].y, g_sizes[0],
           g_sizes[1], g_sizes[2]);
    for (int k = 0; k < 4; k++)
        printf("counter %d\n", counter());
    *static_address() += 10;
    printf("static cell %d\n", *static_address());

    /* Automatic objects. */
    int n = 3;
    int local_partial[5] = {n, n * 2};
    struct padded lp = {.s = 7, .c = 'L'};
    struct inner li[3] = {{n, -n}, [2].y = n + 100};
    char word[8] = "hi";
    char full[3] = {'a', 'b', 'c'};
    double mixed[4] = {1.5, [3] = -1};
    struct outer lo = {"local", {{1, 2}}, square, 1, 2};
    struct inner copy = g_const_pts[1];
    int from_compound = ((int[]){10, 20, 30})[n - 1];
    struct inner *cl = &(struct inner){.y = n};
    struct {
        signed char text[4];
        int len;
    } signed_text = {"\xff\x80", n};
    printf("local: %d %d %d %d %d\n", local_partial[0], local_partial[1], local_partial[2],
           local_partial[3], local_partial[4]);
    show_pad("local pad", &lp);
    printf("local structs: %d %d %d %d %d %d\n", li[0].x, li[0].y, li[1].x, li[1].y, li[2].x,
           li[2].y);
    printf("local chars: %s %d %d %c%c%c\n", word, word[2], word[7], full[0], full[1], full[2]);
    printf("local doubles: %g %g %g %g\n", mixed[0], mixed[1], mixed[2], mixed[3]);
    printf("local outer: %s %d %d %d %d fn %d %u %u\n", lo.name, lo.pts[0].x, lo.pts[0].y,
           lo.pts[1].x, lo.pts[1].y, lo.fn(5), lo.flags, lo.mode);
    printf("copy %d %d compound %d %d %d\n", copy.x, copy.y, from_compound, cl->x, cl->y);
    printf("signed text: %d %d %d %d\n", signed_text.text[0], signed_text.text[1],
           signed_text.text[2], signed_text.len);
    printf("memcmp of equal-valued strings: %d\n", memcmp(g_larger, "pad\0\0\0\0\0\0", 10));
    return 0;
}
