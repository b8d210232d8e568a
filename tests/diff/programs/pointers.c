/* Pointers: arithmetic on pointers to char, short, int, double and structs,
   differences and comparisons within one array, pointers to pointers,
   pointers to arrays and into two-dimensional arrays, pre and post
   increments and decrements of pointers, void pointers converted back,
   walking an int's bytes through unsigned char pointers, const-correct
   traversals, a pointer to a struct member and back to the struct through
   offsetof, and arrays of pointers to strings. */
#include <stddef.h>
#include <stdio.h>
#include <string.h>

struct rec {
    char tag;
    double weight;
    short counts[3];
};

static int sum_range(const int *begin, const int *end) {
    int s = 0;
    while (begin != end)
        s += *begin++;
    return s;
}

static void swap_ptrs(int **a, int **b) {
    int *t = *a;
    *a = *b;
    *b = t;
}

static struct rec *rec_of_counts(short *counts) {
    return (struct rec *)((char *)counts - offsetof(struct rec, counts));
}

static int total_2d(int (*rows)[4], int n) {
    int t = 0;
    for (int(*r)[4] = rows; r < rows + n; r++)
        for (int *p = *r; p != *r + 4; p++)
            t += *p;
    return t;
}

int main(void) {
    int a[10];
    for (int i = 0; i < 10; i++)
        a[i] = i * i;
    int *p = a, *q = &a[9];
    printf("diff %d, q-p as long %ld, sum %d, sum half %d\n", (int)(q - p), (long)(q - p),
           sum_range(a, a + 10), sum_range(p + 2, p + 5));
    printf("compare: %d %d %d %d %d\n", p<q, p + 9 == q, q >= p, p != q, &a[3]> & a[2]);
    int *r = p;
    int x1 = *r++;
    int x2 = *++r;
    int x3 = (*r)++;
    int x4 = ++*r;
    int x5 = *r--;
    int x6 = *--r;
    printf("incs: %d %d %d %d %d %d now a[2]=%d r-a=%d\n", x1, x2, x3, x4, x5, x6, a[2],
           (int)(r - a));
    r += 5;
    r -= 2;
    printf("r[0]=%d r[-1]=%d r[2]=%d 2[r]=%d\n", r[0], r[-1], r[2], 2 [r]);

    int m = 1, n = 2;
    int *pm = &m, *pn = &n;
    int **pp = &pm;
    swap_ptrs(&pm, &pn);
    **pp = 42;
    printf("ptr to ptr: m=%d n=%d *pm=%d *pn=%d\n", m, n, *pm, *pn);

    short shorts[6] = {10, 20, 30, 40, 50, 60};
    double doubles[4] = {0.5, 1.5, 2.5, 3.5};
    short *sp = shorts + 5;
    double *dp = doubles;
    char *c1 = (char *)sp, *c0 = (char *)shorts;
    printf("byte distance %d, elements %d, dp[3]-dp[1] %g, bytes %d\n", (int)(c1 - c0),
           (int)(sp - shorts), *(dp + 3) - dp[1], (int)((char *)(dp + 3) - (char *)dp));
    while (sp > shorts)
        *sp-- -= 1;
    printf("shorts: %d %d %d\n", shorts[0], shorts[1], shorts[5]);

    unsigned value = 0x11223344u;
    unsigned char *bytes = (unsigned char *)&value;
    unsigned rebuilt = 0;
    for (unsigned char *b = bytes + sizeof value; b-- > bytes;)
        rebuilt = rebuilt << 8 | *b;
    bytes[1] = 0xff;
    printf("bytes: %02x %02x, rebuilt %08x, patched %08x\n", bytes[0], bytes[3], rebuilt, value);

    void *vp = doubles;
    double *back = vp;
    const void *cvp = &doubles[2];
    printf("void: %g %g %d\n", back[1], *(const double *)cvp,
           (int)((const char *)cvp - (char *)vp));

    struct rec recs[3] = {{'a', 1.25, {1, 2, 3}}, {'b', 2.5, {4, 5, 6}}, {'c', 5.0, {7, 8, 9}}};
    struct rec *rp = recs;
    rp++;
    short *counts = rp->counts;
    struct rec *owner = rec_of_counts(counts + 0);
    printf("struct ptr: %c %g %d owner %c same %d, last %c, recs apart %d\n", rp->tag,
           (rp + 1)->weight, counts[2], owner->tag, owner == &recs[1], (recs + 2)->tag,
           (int)(&recs[2] - &recs[0]));
    double *wp = &recs[0].weight;
    *wp *= 4;
    printf("member ptr: %g %g, offsets %u %u %u\n", recs[0].weight, *wp,
           (unsigned)offsetof(struct rec, tag), (unsigned)offsetof(struct rec, weight),
           (unsigned)offsetof(struct rec, counts));

    int grid[3][4];
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 4; j++)
            grid[i][j] = i * 10 + j;
    int(*row)[4] = grid + 1;
    int *flat = &grid[0][0];
    printf("2d: %d %d %d %d total %d rows apart %d\n", (*row)[2], row[1][3], flat[5],
           *(*(grid + 2) + 1), total_2d(grid, 3), (int)(&grid[2] - &grid[0]));

    const char *words[] = {"zero", "one", "two", "three"};
    const char **w = words;
    int len = 0;
    while (w < words + 4)
        len += (int)strlen(*w++);
    printf("strings: %d %c %s %c\n", len, *words[3], words[1] + 1, words[2][2]);
    char text[] = "pointer";
    char *end = text + strlen(text);
    char *mid = text + (end - text) / 2;
    *mid = '_';
    printf("text %s mid index %d, null? %d\n", text, (int)(mid - text), end[0] == '\0');
    int *null = NULL;
    printf("null compare: %d %d %d\n", null == 0, !null, null != p);
    return 0;
}
