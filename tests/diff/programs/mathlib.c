/* The math library: sqrt, fabs, floor, ceil and fmod (exact, printed in
   full), sin, cos, exp, log and pow and their float forms (printed to 10
   significant digits or fewer, since their last bit may differ between
   libraries); identities such as sin^2 + cos^2, exp(log x), a Newton
   iteration, a numerical integral by Simpson's rule, and rounding helpers
   built from floor and ceil. */
#include <math.h>
#include <stdio.h>

static double simpson(double (*f)(double), double a, double b, int n) {
    double h = (b - a) / n, s = f(a) + f(b);
    for (int i = 1; i < n; i++)
        s += f(a + i * h) * (i % 2 ? 4 : 2);
    return s * h / 3;
}

static double gauss(double x) { return exp(-x * x / 2); }

static double round_half_even(double x) {
    double f = floor(x), diff = x - f;
    if (diff > 0.5)
        return f + 1;
    if (diff < 0.5)
        return f;
    return fmod(f, 2.0) == 0.0 ? f : f + 1;
}

int main(void) {
    static const double xs[] = {0.0, 0.5, 1.0, 2.0, 10.0, 1e-8, 123456.789};
    for (int i = 0; i < 7; i++) {
        double x = xs[i];
        printf("sqrt(%g)=%.17g floor=%g ceil=%g fmod(x,0.75)=%.17g\n", x, sqrt(x), floor(x * 3.3),
               ceil(x * 3.3), fmod(x, 0.75));
    }
    printf("negatives: floor %g ceil %g fabs %g fmod %g %g\n", floor(-2.5), ceil(-2.5), fabs(-3.25),
           fmod(-7.5, 2.0), fmod(7.5, -2.0));
    for (int deg = 0; deg <= 360; deg += 45) {
        double r = deg * 3.14159265358979323846 / 180;
        double s = sin(r), c = cos(r);
        printf("deg %3d sin %.10f cos %.10f s2+c2-1 %.3g\n", deg, s, c,
               fabs(s * s + c * c - 1) < 1e-15 ? 0.0 : s * s + c * c - 1);
    }
    static const double ys[] = {0.001, 0.5, 1.0, 2.718281828459045, 100.0, 1e10};
    for (int i = 0; i < 6; i++) {
        double y = ys[i];
        printf("log(%g)=%.10g exp(log)=%.10g pow(y,1.5)=%.10g pow(2,y/10)=%.10g\n", y, log(y),
               exp(log(y)), pow(y, 1.5), pow(2.0, y / 10 > 50 ? 50 : y / 10));
    }
    printf("exact pow: %.10g %.10g %.10g %.10g\n", pow(2.0, 10.0), pow(2.0, -3.0), pow(-3.0, 3.0),
           pow(10.0, 0.0));
    float f = 2.0f;
    printf("float forms: %.9g %.7g %.7g %.7g %.7g %.7g %g %g\n", sqrtf(f), sinf(f), cosf(f),
           expf(f), logf(f), powf(f, 0.5f), floorf(-1.5f), fabsf(-f));
    /* Newton's method for cube roots, checked against pow. */
    for (double v = 2.0; v < 2000.0; v *= 10) {
        double x = v;
        for (int k = 0; k < 40; k++)
            x = x - (x * x * x - v) / (3 * x * x);
        printf("cbrt(%g) newton %.10g pow %.10g\n", v, x, pow(v, 1.0 / 3));
    }
    printf("integral of gauss on [-3,3]: %.8f (sqrt(2 pi) %.8f)\n", simpson(gauss, -3, 3, 60),
           sqrt(2 * 3.14159265358979323846));
    printf("integral of sin on [0,pi]: %.8f\n", simpson(sin, 0, 3.14159265358979323846, 40));
    static const double rs[] = {0.5, 1.5, 2.5, -0.5, -1.5, 2.4999, 3.5000001};
    printf("round half even:");
    for (int i = 0; i < 7; i++)
        printf(" %g->%g", rs[i], round_half_even(rs[i]));
    printf("\n");
    return 0;
}
