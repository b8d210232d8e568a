/* Matrix multiply on two-dimensional arrays: int, long long and double
   matrices, a transposed variant, a product through pointers to rows, and
   checks against the identity and associativity, printing traces and
   checksums. */
#include <stdio.h>

#define N 12

typedef int imat[N][N];

static void fill(imat m, int seed) {
    for (int i = 0; i < N; i++)
        for (int j = 0; j < N; j++)
            m[i][j] = ((i * 7 + j * 3 + seed) % 19) - 9;
}

static void mul(const int (*a)[N], const int (*b)[N], int (*c)[N]) {
    for (int i = 0; i < N; i++)
        for (int j = 0; j < N; j++) {
            int s = 0;
            for (int k = 0; k < N; k++)
                s += a[i][k] * b[k][j];
            c[i][j] = s;
        }
}

static void mul_transposed(imat a, imat b, imat c) {
    static int bt[N][N];
    for (int i = 0; i < N; i++)
        for (int j = 0; j < N; j++)
            bt[j][i] = b[i][j];
    for (int i = 0; i < N; i++) {
        const int *row = a[i];
        for (int j = 0; j < N; j++) {
            const int *col = bt[j];
            int s = 0;
            for (const int *p = row, *q = col; p < row + N; p++, q++)
                s += *p * *q;
            c[i][j] = s;
        }
    }
}

static long long trace(imat m) {
    long long t = 0;
    for (int i = 0; i < N; i++)
        t += m[i][i];
    return t;
}

static unsigned sum_of(imat m) {
    unsigned h = 0;
    for (int i = 0; i < N; i++)
        for (int j = 0; j < N; j++)
            h = h * 33u ^ (unsigned)m[i][j];
    return h;
}

static void dmul(int n, const double *a, const double *b, double *c) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) {
            double s = 0.0;
            for (int k = 0; k < n; k++)
                s += a[i * n + k] * b[k * n + j];
            c[i * n + j] = s;
        }
}

int main(void) {
    static imat a, b, c, d, ab, abc, bc, a_bc, id;
    fill(a, 1);
    fill(b, 5);
    fill(c, 11);
    for (int i = 0; i < N; i++)
        id[i][i] = 1;
    mul((const int(*)[N])a, (const int(*)[N])b, ab);
    mul_transposed(a, b, d);
    int same = 1;
    for (int i = 0; i < N; i++)
        for (int j = 0; j < N; j++)
            if (ab[i][j] != d[i][j])
                same = 0;
    printf("a*b trace=%lld sum=%08x transposed same=%d\n", trace(ab), sum_of(ab), same);
    mul((const int(*)[N])ab, (const int(*)[N])c, abc);
    mul((const int(*)[N])b, (const int(*)[N])c, bc);
    mul((const int(*)[N])a, (const int(*)[N])bc, a_bc);
    printf("(ab)c trace=%lld a(bc) trace=%lld sum %08x %08x\n", trace(abc), trace(a_bc),
           sum_of(abc), sum_of(a_bc));
    mul((const int(*)[N])a, (const int(*)[N])id, d);
    printf("a*I == a: %d\n", sum_of(d) == sum_of(a));
    for (int i = 0; i < 3; i++)
        printf("row %d: %6d %6d %6d ... %6d\n", i, abc[i][0], abc[i][1], abc[i][2], abc[i][N - 1]);

    /* A 4x4 rotation-like double matrix raised to the 8th power by squaring. */
    double m[16] = {0.6, -0.8, 0, 0, 0.8, 0.6, 0, 0, 0, 0, 1, 0.5, 0, 0, 0, 1};
    double t[16];
    for (int s = 0; s < 3; s++) {
        dmul(4, m, m, t);
        for (int i = 0; i < 16; i++)
            m[i] = t[i];
    }
    for (int i = 0; i < 4; i++)
        printf("%.12f %.12f %.12f %.12f\n", m[i * 4], m[i * 4 + 1], m[i * 4 + 2], m[i * 4 + 3]);
    double det2 = m[0] * m[5] - m[1] * m[4];
    printf("det of 2x2 block %.15g\n", det2);

    long long big[3][3] = {{100000, 2, 3}, {4, 100000, 6}, {7, 8, 100000}};
    long long sq[3][3] = {{0}};
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++)
            for (int k = 0; k < 3; k++)
                sq[i][j] += big[i][k] * big[k][j];
    printf("long long square: %lld %lld %lld\n", sq[0][0], sq[1][2], sq[2][1]);
    return 0;
}
