/* Dot products over restrict-qualified pointers: short by short into int
   and long long accumulators, unsigned char pixels, float and double
   vectors, a strided dot product and cosine similarity through sqrt. */
#include <math.h>
#include <stdio.h>

#define LEN 64

static int dot_short(const short *restrict a, const short *restrict b, int n) {
    int acc = 0;
    for (int i = 0; i < n; i++)
        acc += a[i] * b[i];
    return acc;
}

static long long dot_short_wide(const short *restrict a, const short *restrict b, int n) {
    long long acc = 0;
    for (int i = 0; i < n; i++)
        acc += (long long)a[i] * b[i] * 1000;
    return acc;
}

static unsigned dot_u8(const unsigned char *restrict a, const unsigned char *restrict b, int n) {
    unsigned acc = 0;
    while (n-- > 0)
        acc += *a++ * *b++;
    return acc;
}

static float dot_float(const float *restrict a, const float *restrict b, int n) {
    float acc = 0.0f;
    for (int i = 0; i < n; i++)
        acc += a[i] * b[i];
    return acc;
}

static double dot_double(const double *a, const double *b, int n, int stride) {
    double acc = 0.0;
    for (int i = 0; i < n; i += stride)
        acc += a[i] * b[i];
    return acc;
}

static void axpy(float alpha, const float *restrict x, float *restrict y, int n) {
    for (int i = 0; i < n; i++)
        y[i] += alpha * x[i];
}

int main(void) {
    short sa[LEN], sb[LEN];
    unsigned char pa[LEN], pb[LEN];
    float fa[LEN], fb[LEN];
    double da[LEN], db[LEN];
    for (int i = 0; i < LEN; i++) {
        sa[i] = (short)((i * 977) % 2001 - 1000) * 16;
        sb[i] = (short)((i * 331) % 1501 - 750) * 21;
        pa[i] = (unsigned char)(i * 37 + 11);
        pb[i] = (unsigned char)(255 - i * 3);
        fa[i] = (float)i / 8.0f - 3.0f;
        fb[i] = 1.0f / (float)(i + 1);
        da[i] = fa[i];
        db[i] = (double)(i % 5) - 1.25;
    }
    printf("short dot int      %d\n", dot_short(sa, sb, LEN));
    printf("short dot wide     %lld\n", dot_short_wide(sa, sb, LEN));
    printf("self dot           %d\n", dot_short(sa, sa, 16));
    printf("u8 dot             %u\n", dot_u8(pa, pb, LEN));
    printf("float dot          %.6f (%a)\n", dot_float(fa, fb, LEN), dot_float(fa, fb, LEN));
    printf("double dot         %.17g\n", dot_double(da, db, LEN, 1));
    printf("double dot step 3  %.17g\n", dot_double(da, db, LEN, 3));
    double na = sqrt(dot_double(da, da, LEN, 1)), nb = sqrt(dot_double(db, db, LEN, 1));
    printf("norms %.17g %.17g\n", na, nb);
    printf("cosine %.10f\n", dot_double(da, db, LEN, 1) / (na * nb));
    axpy(-0.5f, fa, fb, LEN);
    printf("after axpy: %.8g %.8g %.8g\n", fb[0], fb[LEN / 2], fb[LEN - 1]);
    return 0;
}
