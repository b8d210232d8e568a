/* Pointer arithmetic through the rewrites of sums: the pointer stays the left
   operand, offsets are in bytes, and differences of pointers into one array
   cancel with the pointers they came from. */
#include <stdio.h>

struct rec {
    short tag;
    int vals[3];
};

static int a[40];
static struct rec recs[6];

static int *fwd(int *p, int i) { return p + (i + 4); }
static int *back(int *p, int i) { return p - (i - 2); }
static int *mixed(int *p, int i, int j) { return (p + i * 2) + (j * 2 + 1); }
static int *round_trip(int *p, int *q) { return p + (q - p); }
static int dist(int *p, int i, int j) { return (int)((p + i) - (p + j)); }
static int walk(const char *c, int i) { return (int)((c + 3 + i) - c); }
static int rec_val(int i, int j) { return recs[i + 1].vals[j - 1] + recs[i].vals[2 - j]; }

int main(void) {
    for (int i = 0; i < 40; i++)
        a[i] = i * i - 17;
    for (int i = 0; i < 6; i++)
        for (int j = 0; j < 3; j++)
            recs[i].vals[j] = i * 10 + j;
    int *mid = a + 20;
    for (int i = -3; i <= 3; i++)
        printf("%d: %d %d %d %d %d %d\n", i, *fwd(mid, i), *back(mid, i), *mixed(mid, i, -i),
               (int)(round_trip(a, mid + i) - a), dist(mid, i, -i), walk((char *)a, i));
    printf("%d %d\n", rec_val(2, 1), rec_val(3, 2));
    return 0;
}
