/* Variadic functions: sums of ints and doubles, a small formatter, and
   va_copy. */
#include <stdarg.h>
#include <stdio.h>

static int sum_ints(int count, ...) {
    va_list ap;
    int total = 0;
    va_start(ap, count);
    for (int i = 0; i < count; i++)
        total += va_arg(ap, int);
    va_end(ap);
    return total;
}

static double mean(int count, ...) {
    va_list ap, again;
    double total = 0;
    va_start(ap, count);
    va_copy(again, ap);
    for (int i = 0; i < count; i++)
        total += va_arg(ap, double);
    double first = count ? va_arg(again, double) : 0;
    va_end(again);
    va_end(ap);
    return count ? total / count + first * 0 : 0;
}

struct pair {
    int a;
    long long b;
};

static long long mixed(const char *kinds, ...) {
    va_list ap;
    long long acc = 0;
    va_start(ap, kinds);
    for (const char *k = kinds; *k; k++) {
        switch (*k) {
        case 'i':
            acc += va_arg(ap, int);
            break;
        case 'l':
            acc += va_arg(ap, long long);
            break;
        case 'd':
            acc += (long long)va_arg(ap, double);
            break;
        case 'p': {
            struct pair p = va_arg(ap, struct pair);
            acc += p.a + p.b;
            break;
        }
        case 's':
            acc += *va_arg(ap, const char *);
            break;
        }
    }
    va_end(ap);
    return acc;
}

static void report(const char *fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    vprintf(fmt, ap);
    va_end(ap);
}

int main(void) {
    struct pair p = {3, 40000000000LL};
    report("sum=%d mean=%g\n", sum_ints(4, 1, 2, 3, 4), mean(3, 1.0, 2.5, 4.0));
    report("mixed=%lld\n", mixed("ildps", 1, 2LL, 3.75, p, "A"));
    return 0;
}
