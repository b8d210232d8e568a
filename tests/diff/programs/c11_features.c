/* C11 and less common C: _Static_assert, _Alignof and _Alignas, _Generic
   selection, _Noreturn, anonymous structs and unions, __func__, a flexible
   array member allocated with malloc, string and character escapes and
   adjacent string concatenation, switch on long long and on char values,
   a goto into a nested block, an enum-typed bit-field, unions passed and
   returned by value, static inline functions, a K&R-style definition,
   tentative definitions and a block-scope extern. The program ends in a
   _Noreturn function that calls exit(6). */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

_Static_assert(sizeof(int) == 4, "int is 32 bits");

int tentative;
int tentative;
int tentative = 17;

struct message {
    unsigned short kind;
    unsigned short length;
    char text[];
};

enum level { LOW, MID, HIGH };

struct setting {
    enum level level : 2;
    unsigned enabled : 1;
};

union number {
    int i;
    float f;
};

struct holder {
    int tag;
    union {
        int whole;
        struct {
            short lo, hi;
        };
    };
};

#define TYPE_NAME(x)                                                                               \
    _Generic((x), int: "int", unsigned: "unsigned", double: "double", \
                              char *: "char *", default: "other")

static inline int square(int x) { return x * x; }

static int old_style(a, b, c)
int a;
short b;
double c;
{ return a + b + (int)c; }

static union number halve(union number n, int is_float) {
    if (is_float)
        n.f /= 2;
    else
        n.i /= 2;
    return n;
}

static const char *size_class(long long v) {
    switch (v) {
    case 0:
        return "zero";
    case 1LL << 32:
        return "2^32";
    case -1:
        return "minus one";
    case 0x7fffffffffffffffLL:
        return "max";
    default:
        return v < 0 ? "negative" : "other";
    }
}

static int vowel_score(const char *s) {
    int score = 0;
    for (; *s; s++)
        switch (*s) {
        case 'a':
        case 'A':
            score += 1;
            break;
        case 'e':
        case 'E':
            score += 2;
            break;
        case 'i':
        case 'o':
        case 'u':
            score += 3;
            break;
        case '\n':
            score += 100;
            break;
        }
    return score;
}

static int jump_in(int start) {
    int total = 0;
    if (start)
        goto inside;
    total = 1000;
    {
        int local = 5;
        total += local;
    inside:
        local = 7;
        total += local * 2;
    }
    return total;
}

_Noreturn static void stop(int code) {
    printf("stopping from %s with %d\n", __func__, code);
    exit(code);
}

int main(void) {
    extern int tentative;
    printf("%s: tentative %d\n", __func__, tentative);
    _Alignas(16) char aligned[32];
    printf("alignof: %u %u %u %u, aligned buffer ok %d\n", (unsigned)_Alignof(char),
           (unsigned)_Alignof(double), (unsigned)_Alignof(long long),
           (unsigned)_Alignof(struct message), (int)(sizeof aligned));
    int i = 1;
    unsigned u = 2;
    double d = 3;
    char *p = NULL;
    printf("generic: %s %s %s %s %s\n", TYPE_NAME(i), TYPE_NAME(u), TYPE_NAME(d), TYPE_NAME(p),
           TYPE_NAME(1.0f));

    const char *greeting = "Hello, "
                           "concatenated "
                           "world";
    struct message *m = malloc(sizeof *m + strlen(greeting) + 1);
    m->kind = 7;
    m->length = (unsigned short)strlen(greeting);
    strcpy(m->text, greeting);
    printf("message kind %u length %u text %s (header %u bytes)\n", m->kind, m->length, m->text,
           (unsigned)sizeof *m);
    free(m);

    const char esc[] = "tab\there\x41\101\"quote\\ \?";
    printf("escapes: %s len %u\n", esc, (unsigned)strlen(esc));
    printf("char literals: %d %d %d %d %d\n", '\0', '\n', '\x7f', (unsigned char)'\xff', '\\');

    struct setting s = {HIGH, 1};
    s.level = MID;
    printf("enum bit-field: %d %u\n", (int)s.level, s.enabled);

    struct holder h;
    h.tag = 1;
    h.whole = 0;
    h.lo = 0x1234;
    h.hi = -1;
    printf("anonymous: %08x %d %d\n", (unsigned)h.whole, h.lo, h.hi);

    union number n = {.i = 101};
    union number half = halve(n, 0);
    n.f = 5.0f;
    union number fhalf = halve(n, 1);
    printf("unions by value: %d %g\n", half.i, fhalf.f);

    printf("inline square %d, old style %d\n", square(-9), old_style(1, 2, 3.75));
    long long values[] = {0, 1LL << 32, -1, 0x7fffffffffffffffLL, -5, 12};
    for (int k = 0; k < 6; k++)
        printf("%s ", size_class(values[k]));
    printf("\nvowels %d\n", vowel_score("AEIOU aeiou\n"));
    printf("jump into block: %d %d\n", jump_in(0), jump_in(1));
    stop(6);
}
