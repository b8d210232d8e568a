/* Floating point in float and double: the four operations with exactly
   printed results (%a and %.17g), float rounding versus double, compound
   assignment and increments of floats, comparisons with NaN and infinity,
   signed zero, subnormals, sums in different orders, long double (double on
   this target), and printf with %f, %e, %g and %E at explicit precisions
   and widths. */
#include <math.h>
#include <stdio.h>

static double horner(const double *c, int n, double x) {
    double r = 0.0;
    for (int i = n - 1; i >= 0; i--)
        r = r * x + c[i];
    return r;
}

static float harmonic_float(int n) {
    float s = 0.0f;
    for (int i = 1; i <= n; i++)
        s += 1.0f / (float)i;
    return s;
}

static double harmonic_double_reverse(int n) {
    double s = 0.0;
    for (int i = n; i >= 1; i--)
        s += 1.0 / i;
    return s;
}

int main(void) {
    double a = 1.0 / 3.0, b = 2.0 / 7.0;
    float fa = 1.0f / 3.0f, fb = 2.0f / 7.0f;
    printf("double: %a %a %a %a\n", a + b, a - b, a * b, a / b);
    printf("float:  %a %a %a %a\n", fa + fb, fa - fb, fa * fb, fa / fb);
    printf("double %.17g float %.9g widened %.17g\n", a, fa, (double)fa);
    printf("0.1+0.2 = %.17g, == 0.3: %d, float: %d\n", 0.1 + 0.2, 0.1 + 0.2 == 0.3,
           0.1f + 0.2f == 0.3f);

    float f = 0.5f;
    f += 1;
    f *= 3.0;
    f -= 0.25f;
    f /= 2;
    f++;
    ++f;
    f--;
    double d = f;
    d++;
    d *= d;
    printf("compound float %.9g double %.17g\n", f, d);

    double inf = HUGE_VAL;
    double nan = inf - inf;
    printf("inf %f %e %g, -inf %g\n", inf, inf, inf, -inf);
    printf("nan: ==%d !=%d <%d >=%d !(<=)%d\n", nan == nan, nan != nan, nan < 1.0, nan >= 1.0,
           !(nan <= 1.0));
    printf("inf compare: %d %d %d\n", inf > 1e308, -inf < -1e308, inf == inf);
    double nz = -0.0;
    printf("signed zero: %g %g equal %d 1/-0 %g\n", nz, 0.0 * -1.0, nz == 0.0, 1.0 / nz);
    double tiny = 4.9406564584124654e-324;
    printf("subnormal %g %a half %g, float min %a\n", tiny, tiny, tiny / 2, 1.17549435e-38f / 4);
    printf("max double %g, eps %a %a\n", 1.7976931348623157e308, 2.220446049250313e-16,
           1.1920929e-7f);

    printf("harmonic(1000) float %.9g double reverse %.17g\n", harmonic_float(1000),
           harmonic_double_reverse(1000));
    static const double coeffs[] = {1.0, -0.5, 0.25, -0.125, 0.0625};
    for (double x = -2.0; x <= 2.0; x += 0.75)
        printf("p(%g) = %.17g\n", x, horner(coeffs, 5, x));

    long double ld = 1.0L / 3;
    printf("long double: %.17Lg, same as double %d\n", ld, (double)ld == a);

    double v = 1234.56789;
    printf("[%f] [%.0f] [%.1f] [%.3f] [%10.2f] [%-10.2f] [%+.2f] [%010.3f]\n", v, v, v, v, v, v, v,
           v);
    printf("[%e] [%.0e] [%.3e] [%12.4E] [%+.2e]\n", v, v, v, v, -v);
    printf("[%g] [%.1g] [%.3g] [%.10g] [%g] [%g] [%#g] [%G]\n", v, v, v, v, 0.0001, 1e-5, 2.0,
           1e20);
    printf("[%.2f] [%.2f] [%.2f] [%.0f] [%.0f] [%.0f]\n", 2.675, 1.005, -0.125, 0.5, 1.5, 2.5);
    printf("[%5.1f%%] [%.15g] [%.16g] [%.17g]\n", 99.95, 0.1, 0.1, 0.1);
    float third = 1.0f / 3;
    printf("float as arg: %f %e %g %.10f\n", third, third, third, third);
    return 0;
}
