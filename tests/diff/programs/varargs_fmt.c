/* Variadic functions of our own: a small formatter into a buffer that
   takes int, unsigned, long long, double, char, strings, pointers to ints
   and structs by value through va_arg; va_copy to walk the arguments twice
   (count then format); a sum whose last argument is a sentinel; a variadic
   function forwarding a va_list to a helper; and promotion of char, short
   and float arguments. */
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

struct span {
    short lo, hi;
    double scale;
};

static char *put_unsigned(char *out, unsigned long long v, unsigned base) {
    char digits[24];
    int n = 0;
    do {
        digits[n++] = "0123456789abcdef"[v % base];
        v /= base;
    } while (v);
    while (n)
        *out++ = digits[--n];
    return out;
}

static char *put_signed(char *out, long long v) {
    if (v < 0) {
        *out++ = '-';
        return put_unsigned(out, 0 - (unsigned long long)v, 10);
    }
    return put_unsigned(out, (unsigned long long)v, 10);
}

/* Fixed three decimals, rounded half away from zero. */
static char *put_double(char *out, double d) {
    if (d < 0) {
        *out++ = '-';
        d = -d;
    }
    unsigned long long scaled = (unsigned long long)(d * 1000 + 0.5);
    out = put_unsigned(out, scaled / 1000, 10);
    *out++ = '.';
    unsigned frac = (unsigned)(scaled % 1000);
    *out++ = (char)('0' + frac / 100);
    *out++ = (char)('0' + frac / 10 % 10);
    *out++ = (char)('0' + frac % 10);
    return out;
}

static int vformat(char *buf, const char *fmt, va_list ap) {
    char *out = buf;
    for (const char *f = fmt; *f; f++) {
        if (*f != '%') {
            *out++ = *f;
            continue;
        }
        switch (*++f) {
        case 'd':
            out = put_signed(out, va_arg(ap, int));
            break;
        case 'u':
            out = put_unsigned(out, va_arg(ap, unsigned), 10);
            break;
        case 'x':
            out = put_unsigned(out, va_arg(ap, unsigned), 16);
            break;
        case 'L':
            out = put_signed(out, va_arg(ap, long long));
            break;
        case 'f':
            out = put_double(out, va_arg(ap, double));
            break;
        case 'c':
            *out++ = (char)va_arg(ap, int);
            break;
        case 's': {
            const char *s = va_arg(ap, const char *);
            size_t n = strlen(s);
            memcpy(out, s, n);
            out += n;
            break;
        }
        case 'p': {
            int *p = va_arg(ap, int *);
            out = put_signed(out, *p);
            *p += 1; /* the callee writes through the pointer */
            break;
        }
        case 'S': {
            struct span sp = va_arg(ap, struct span);
            *out++ = '[';
            out = put_signed(out, sp.lo);
            *out++ = ',';
            out = put_signed(out, sp.hi);
            *out++ = 'x';
            out = put_double(out, sp.scale);
            *out++ = ']';
            break;
        }
        default:
            *out++ = '%';
            *out++ = *f;
            break;
        }
    }
    *out = '\0';
    return (int)(out - buf);
}

static int count_conversions(const char *fmt, va_list ap) {
    int n = 0;
    for (const char *f = fmt; *f; f++)
        if (*f == '%' && f[1]) {
            switch (*++f) {
            case 'L':
                (void)va_arg(ap, long long);
                n++;
                break;
            case 'f':
                (void)va_arg(ap, double);
                n++;
                break;
            case 'S':
                (void)va_arg(ap, struct span);
                n++;
                break;
            case 's':
            case 'p':
                (void)va_arg(ap, void *);
                n++;
                break;
            case 'd':
            case 'u':
            case 'x':
            case 'c':
                (void)va_arg(ap, int);
                n++;
                break;
            }
        }
    return n;
}

static int format(char *buf, const char *fmt, ...) {
    va_list ap, again;
    va_start(ap, fmt);
    va_copy(again, ap);
    int n = count_conversions(fmt, again);
    va_end(again);
    int len = vformat(buf, fmt, ap);
    va_end(ap);
    printf("(%d conversions, %d chars) ", n, len);
    return len;
}

static long long sum_until_zero(int first, ...) {
    va_list ap;
    long long total = 0;
    va_start(ap, first);
    for (int v = first; v != 0; v = va_arg(ap, int))
        total += v;
    va_end(ap);
    return total;
}

static double promoted(int count, ...) {
    va_list ap;
    va_start(ap, count);
    double acc = 0;
    for (int i = 0; i < count; i++) {
        int kind = va_arg(ap, int);
        if (kind == 'c' || kind == 'h')
            acc += va_arg(ap, int); /* char and short arrive as int */
        else
            acc += va_arg(ap, double); /* float arrives as double */
    }
    va_end(ap);
    return acc;
}

int main(void) {
    char buf[256];
    int counter = 41;
    struct span sp = {-3, 300, 0.5};
    format(buf, "int %d uint %u hex %x", -12345, 4000000000u, 0xbeefu);
    puts(buf);
    format(buf, "ll %L and %L, double %f %f", -9000000000000LL, 123LL, 3.14159, -0.0005);
    puts(buf);
    format(buf, "char %c%c str '%s' ptr %p then %p, %% %q", 'o', 'k', "text", &counter, &counter);
    puts(buf);
    printf("counter now %d\n", counter);
    format(buf, "span %S mixed %d %S %f", sp, 7, (struct span){1, 2, 1e3}, 2.0);
    puts(buf);
    printf("sum_until_zero: %lld %lld\n", sum_until_zero(1, 2, 3, 4, 0), sum_until_zero(0));
    char c = 'A';
    short s = -300;
    float f = 0.25f;
    printf("promoted: %g\n", promoted(3, 'c', c, 'h', s, 'f', f));
    return 0;
}
