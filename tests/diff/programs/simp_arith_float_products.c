/* Floating products and differences whose simple-looking rewrites are wrong
   for some values: x * inf is a NaN for x = 0 and -inf for x < 0, so it is
   no constant; x * 0.0 is a NaN for an infinite or NaN x and -0.0 for a
   negative x; x - x is a NaN for an infinite x; -(a - b) is -0.0 where
   b - a is +0.0. x * 1.0 and x * 2.0 (as x + x) are exact for every x. */
#include <math.h>
#include <stdio.h>

static double by_inf(double x) { return x * INFINITY; }
static double by_minus_inf(double x) { return x * -INFINITY; }
static double by_nan(double x) { return x * NAN; }
static double by_zero(double x) { return x * 0.0; }
static float by_zero_f(float x) { return x * 0.0f; }
static double by_one(double x) { return x * 1.0; }
static double by_two(double x) { return x * 2.0; }
static float by_two_f(float x) { return 2.0f * x; }
static double self_diff(double x) { return x - x; }
static double neg_diff(double a, double b) { return -(a - b); }
static double neg_neg(double x) { return -(-x); }

static void show(const char *what, double v) {
    if (v != v)
        printf(" %s=nan", what);
    else
        printf(" %s=%a", what, v);
}

int main(void) {
    static const double xs[] = {0.0, -0.0, 1.0, -1.0, 0.75, -3.5, 1e308, -1e308, 4.9e-324,
                                INFINITY, -INFINITY, NAN};
    for (unsigned i = 0; i < sizeof xs / sizeof xs[0]; i++) {
        double x = xs[i];
        printf("%u:", i);
        show("inf", by_inf(x));
        show("minf", by_minus_inf(x));
        show("nan", by_nan(x));
        show("zero", by_zero(x));
        show("zerof", by_zero_f((float)x));
        show("one", by_one(x));
        show("two", by_two(x));
        show("twof", by_two_f((float)x));
        show("diff", self_diff(x));
        show("negdiff", neg_diff(x, x));
        show("negdiff1", neg_diff(x, 1.0));
        show("negneg", neg_neg(x));
        printf("\n");
    }
    return 0;
}
