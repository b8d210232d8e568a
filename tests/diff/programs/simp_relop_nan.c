/* Float comparisons and choices with NaN and negative zero: a NaN is equal
   to nothing, not even itself, and is neither below nor above anything, so
   no ordering of floats may be inverted or joined with another; -0.0 equals
   0.0 but keeps its sign through a choice. */
#include <stdio.h>

static float floats[] = {0.0f, -0.0f, 1.0f, -2.5f, 0.0f};
static double doubles[] = {0.0, -0.0, 3.0, -1.0, 0.0};

static int self_eq(float f) { return f == f; }
static int self_ne(float f) { return f != f; }
static int self_le(double d) { return d <= d; }
static int not_less(float a, float b) { return !(a < b); }
static int not_ge(double a, double b) { return !(a >= b); }
static int not_eq(float a, float b) { return !(a == b); }
static int less_or_equal(float a, float b) { return a < b || a == b; }
static int less_or_more(float a, float b) { return a < b || a > b; }
static int less_or_not(float a, float b) { return a < b || a >= b; }
static int both_ways(double a, double b) { return a <= b && a >= b; }
static int truth(double d) { return d ? 1 : 0; }
static double self_or_zero(double d) { return d != 0 ? d : 0; }
static double magnitude(double d) { return d < 0 ? -d : d; }
static double magnitude_le(double d) { return d <= 0 ? -d : d; }

static int negative(double d) { return 1 / d < 0; }

int main(void) {
    volatile float fzero = 0.0f;
    volatile double dzero = 0.0;
    floats[4] = fzero / fzero;
    doubles[4] = dzero / dzero;
    for (unsigned i = 0; i < 5; i++) {
        for (unsigned j = 0; j < 5; j++) {
            float a = floats[i], b = floats[j];
            double c = doubles[i], d = doubles[j];
            printf("%d%d%d%d%d%d%d ", not_less(a, b), not_ge(c, d), not_eq(a, b),
                   less_or_equal(a, b), less_or_more(a, b), less_or_not(a, b), both_ways(c, d));
        }
        double d = doubles[i];
        printf("| %d %d %d %d | %g %d %d %d\n", self_eq(floats[i]), self_ne(floats[i]),
               self_le(d), truth(d), self_or_zero(d), negative(self_or_zero(d)),
               negative(magnitude(d)), negative(magnitude_le(d)));
    }
    return 0;
}
