/* Linear algebra in double: Gaussian elimination with partial pivoting on
   a 6x6 system (solution, determinant, residual), the inverse of a 4x4
   matrix by Gauss-Jordan checked by multiplication, a tridiagonal solver,
   and exact rational-looking results printed with %.17g where only + - * /
   are involved. Matrices are two-dimensional arrays passed to functions
   taking pointers to rows. */
#include <math.h>
#include <stdio.h>

#define N 6

static double solve(double a[N][N + 1], double *x) {
    double det = 1.0;
    for (int col = 0; col < N; col++) {
        int pivot = col;
        for (int r = col + 1; r < N; r++)
            if (fabs(a[r][col]) > fabs(a[pivot][col]))
                pivot = r;
        if (pivot != col) {
            for (int c = 0; c <= N; c++) {
                double t = a[col][c];
                a[col][c] = a[pivot][c];
                a[pivot][c] = t;
            }
            det = -det;
        }
        det *= a[col][col];
        for (int r = col + 1; r < N; r++) {
            double f = a[r][col] / a[col][col];
            for (int c = col; c <= N; c++)
                a[r][c] -= f * a[col][c];
        }
    }
    for (int r = N - 1; r >= 0; r--) {
        double s = a[r][N];
        for (int c = r + 1; c < N; c++)
            s -= a[r][c] * x[c];
        x[r] = s / a[r][r];
    }
    return det;
}

static int invert4(double m[4][4], double inv[4][4]) {
    double w[4][8];
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 8; j++)
            w[i][j] = j < 4 ? m[i][j] : (j - 4 == i);
    for (int col = 0; col < 4; col++) {
        int pivot = col;
        for (int r = col + 1; r < 4; r++)
            if (fabs(w[r][col]) > fabs(w[pivot][col]))
                pivot = r;
        if (w[pivot][col] == 0.0)
            return 0;
        for (int c = 0; c < 8; c++) {
            double t = w[col][c];
            w[col][c] = w[pivot][c];
            w[pivot][c] = t;
        }
        double p = w[col][col];
        for (int c = 0; c < 8; c++)
            w[col][c] /= p;
        for (int r = 0; r < 4; r++)
            if (r != col) {
                double f = w[r][col];
                for (int c = 0; c < 8; c++)
                    w[r][c] -= f * w[col][c];
            }
    }
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            inv[i][j] = w[i][j + 4];
    return 1;
}

/* Thomas algorithm for a tridiagonal system: sub, main and super diagonals. */
static void tridiagonal(int n, const double *sub, const double *diag, const double *sup,
                        const double *rhs, double *x) {
    double c[16], d[16];
    c[0] = sup[0] / diag[0];
    d[0] = rhs[0] / diag[0];
    for (int i = 1; i < n; i++) {
        double m = diag[i] - sub[i] * c[i - 1];
        c[i] = i < n - 1 ? sup[i] / m : 0.0;
        d[i] = (rhs[i] - sub[i] * d[i - 1]) / m;
    }
    x[n - 1] = d[n - 1];
    for (int i = n - 2; i >= 0; i--)
        x[i] = d[i] - c[i] * x[i + 1];
}

int main(void) {
    double a[N][N + 1], keep[N][N + 1], x[N];
    for (int i = 0; i < N; i++) {
        for (int j = 0; j < N; j++)
            a[i][j] = 1.0 / (i + j + 1) + (i == j ? 2.0 : 0.0);
        a[i][N] = i + 1;
    }
    for (int i = 0; i < N; i++)
        for (int j = 0; j <= N; j++)
            keep[i][j] = a[i][j];
    double det = solve(a, x);
    printf("det %.17g\n", det);
    double worst = 0;
    for (int i = 0; i < N; i++) {
        double r = -keep[i][N];
        for (int j = 0; j < N; j++)
            r += keep[i][j] * x[j];
        if (fabs(r) > worst)
            worst = fabs(r);
        printf("x[%d] = %.17g\n", i, x[i]);
    }
    printf("residual below 1e-12: %d\n", worst < 1e-12);

    double m[4][4] = {{4, 7, 2, 3}, {0, 5, 0, 1}, {1, 0, 6, 2}, {3, 1, 1, 8}}, inv[4][4];
    if (invert4(m, inv)) {
        double err = 0;
        for (int i = 0; i < 4; i++)
            for (int j = 0; j < 4; j++) {
                double s = 0;
                for (int k = 0; k < 4; k++)
                    s += m[i][k] * inv[k][j];
                if (fabs(s - (i == j)) > err)
                    err = fabs(s - (i == j));
            }
        printf("inverse row 0: %.12f %.12f %.12f %.12f\n", inv[0][0], inv[0][1], inv[0][2],
               inv[0][3]);
        printf("m * inverse = I within 1e-14: %d\n", err < 1e-14);
    }
    double singular[4][4] = {{1, 2, 3, 4}, {2, 4, 6, 8}, {0, 1, 0, 1}, {1, 1, 1, 1}};
    printf("singular invertible: %d\n", invert4(singular, inv));

    double sub[8], diag[8], sup[8], rhs[8], t[8];
    for (int i = 0; i < 8; i++) {
        sub[i] = -1;
        diag[i] = 2;
        sup[i] = -1;
        rhs[i] = i == 0 || i == 7 ? 1 : 0;
    }
    tridiagonal(8, sub, diag, sup, rhs, t);
    printf("tridiagonal:");
    for (int i = 0; i < 8; i++)
        printf(" %.15g", t[i]);
    printf("\n");
    return 0;
}
