/* Reference values for the constant-folding tests, computed at run time by
 * code compiled for the 32-bit ARM target:
 *
 *   arm-linux-gnueabihf-gcc -O0 -fwrapv -static fold_ref.c -o fold_ref
 *   qemu-arm ./fold_ref > values.inc
 *
 * Every operand is read from a volatile object, so the compiler cannot fold
 * anything itself: each result is what the target's instructions and its
 * division routines give. The output is pasted into fold_test.cpp; the build
 * never runs this program.
 *
 * Values print as 64-bit patterns, read as int64_t: a signed result
 * sign-extended, an unsigned one zero-extended, which is how an INT65 constant
 * of that type holds it.
 */
#include <limits.h>
#include <stdio.h>
#include <string.h>

typedef unsigned long long u64;

/* Type ids shared with the test. */
enum { T_BOOL, T_SCHAR, T_UCHAR, T_CHAR, T_SHORT, T_USHORT, T_INT, T_UINT, T_LLONG, T_ULLONG,
       T_COUNT };
static const char* const type_names[T_COUNT] = {"T_BOOL",  "T_SCHAR", "T_UCHAR", "T_CHAR",
                                                "T_SHORT", "T_USHORT", "T_INT",  "T_UINT",
                                                "T_LLONG", "T_ULLONG"};

static volatile long long vsrc;
static volatile int vcount;

/* The value v converted to type t, as its 64-bit pattern. */
#define CONV_TO(t, expr)                                                                         \
    switch (t) {                                                                                 \
    case T_BOOL: { volatile _Bool z = (_Bool)(expr); return (u64)z; }                           \
    case T_SCHAR: { volatile signed char z = (signed char)(expr); return (u64)(long long)z; }   \
    case T_UCHAR: { volatile unsigned char z = (unsigned char)(expr); return (u64)z; }          \
    case T_CHAR: { volatile char z = (char)(expr); return (u64)(long long)z; }                  \
    case T_SHORT: { volatile short z = (short)(expr); return (u64)(long long)z; }               \
    case T_USHORT: { volatile unsigned short z = (unsigned short)(expr); return (u64)z; }       \
    case T_INT: { volatile int z = (int)(expr); return (u64)(long long)z; }                     \
    case T_UINT: { volatile unsigned z = (unsigned)(expr); return (u64)z; }                     \
    case T_LLONG: { volatile long long z = (long long)(expr); return (u64)z; }                  \
    default: { volatile u64 z = (u64)(expr); return z; }                                        \
    }

static u64 conv(int t, long long v) {
    vsrc = v;
    CONV_TO(t, vsrc)
}

/* (to)x for x an object of type from that holds the pattern v. */
static u64 cast(int from, int to, u64 v) {
    vsrc = (long long)v;
    switch (from) {
    case T_BOOL: { volatile _Bool x = (_Bool)vsrc; CONV_TO(to, x) }
    case T_SCHAR: { volatile signed char x = (signed char)vsrc; CONV_TO(to, x) }
    case T_UCHAR: { volatile unsigned char x = (unsigned char)vsrc; CONV_TO(to, x) }
    case T_CHAR: { volatile char x = (char)vsrc; CONV_TO(to, x) }
    case T_SHORT: { volatile short x = (short)vsrc; CONV_TO(to, x) }
    case T_USHORT: { volatile unsigned short x = (unsigned short)vsrc; CONV_TO(to, x) }
    case T_INT: { volatile int x = (int)vsrc; CONV_TO(to, x) }
    case T_UINT: { volatile unsigned x = (unsigned)vsrc; CONV_TO(to, x) }
    case T_LLONG: { volatile long long x = vsrc; CONV_TO(to, x) }
    default: { volatile u64 x = (u64)vsrc; CONV_TO(to, x) }
    }
}

/* Binary operations in type t: operands of type t, the result converted back
 * to t, as a store of the expression into a t object does. */
#define BINOPS(T, a, b, op, r)                                                                   \
    do {                                                                                         \
        volatile T x = (T)(a), y = (T)(b);                                                       \
        volatile T z;                                                                            \
        switch (op) {                                                                            \
        case '+': z = (T)(x + y); break;                                                         \
        case '-': z = (T)(x - y); break;                                                         \
        case '*': z = (T)(x * y); break;                                                         \
        case '/': z = (T)(x / y); break;                                                         \
        case '%': z = (T)(x % y); break;                                                         \
        case '&': z = (T)(x & y); break;                                                         \
        case '|': z = (T)(x | y); break;                                                         \
        default: z = (T)(x ^ y); break;                                                          \
        }                                                                                        \
        r = z;                                                                                   \
    } while (0)

static const char* op_name(int op) {
    switch (op) {
    case '+': return "PLUS";
    case '-': return "MINUS";
    case '*': return "MULT";
    case '/': return "DIV";
    case '%': return "MOD";
    case '&': return "ANDB";
    case '|': return "ORB";
    default: return "XORB";
    }
}

static u64 binop(int t, long long a, long long b, int op) {
    switch (t) {
    case T_SCHAR: { signed char r; BINOPS(signed char, a, b, op, r); return (u64)(long long)r; }
    case T_UCHAR: { unsigned char r; BINOPS(unsigned char, a, b, op, r); return (u64)r; }
    case T_CHAR: { char r; BINOPS(char, a, b, op, r); return (u64)(long long)r; }
    case T_SHORT: { short r; BINOPS(short, a, b, op, r); return (u64)(long long)r; }
    case T_USHORT: { unsigned short r; BINOPS(unsigned short, a, b, op, r); return (u64)r; }
    case T_INT: { int r; BINOPS(int, a, b, op, r); return (u64)(long long)r; }
    case T_UINT: { unsigned r; BINOPS(unsigned, a, b, op, r); return (u64)r; }
    case T_LLONG: { long long r; BINOPS(long long, a, b, op, r); return (u64)r; }
    default: { u64 r; BINOPS(u64, a, b, op, r); return r; }
    }
}

/* A 64-bit pattern as a short int64_t literal: rotating buffers, so that a
 * row can format several. */
static const char* lit(u64 v) {
    static char bufs[4][32];
    static int next;
    char* b = bufs[next++ & 3];
    long long x = (long long)v;
    if (x == LLONG_MIN)
        snprintf(b, 32, "INT64_MIN");
    else if (x > -65536 && x < 65536)
        snprintf(b, 32, "%lld", x);
    else if (x > 0)
        snprintf(b, 32, "0x%llx", (u64)x);
    else /* long long, so that the negation is not of an unsigned int */
        snprintf(b, 32, "-0x%llxll", (u64)-x);
    return b;
}

/* Table rows go out as many to a line as fit in 100 columns. */
static int column;

static void emit(const char* row) {
    int width = (int)strlen(row) + 1;
    if (column && column + 1 + width > 100) {
        printf("\n");
        column = 0;
    }
    column += printf(column ? " %s," : "    %s,", row);
}

static void section(const char* name) {
    if (column)
        printf("\n");
    column = 0;
    printf("// %s\n", name);
}

/* Each pair of operands once per type and operator. */
static u64 seen[4096][3];
static int nseen;

static void print_binop(int t, long long a, long long b, int op) {
    u64 ca = conv(t, a), cb = conv(t, b);
    if ((op == '/' || op == '%') && cb == 0)
        return;
    u64 key = (u64)t << 8 | (u64)op;
    for (int i = 0; i < nseen; i++)
        if (seen[i][0] == key && seen[i][1] == ca && seen[i][2] == cb)
            return;
    seen[nseen][0] = key;
    seen[nseen][1] = ca;
    seen[nseen][2] = cb;
    nseen++;
    char row[128];
    snprintf(row, sizeof row, "{%s, %s, %s, %s, %s}", type_names[t], op_name(op), lit(ca),
             lit(cb), lit(binop(t, (long long)ca, (long long)cb, op)));
    emit(row);
}

/* Shifts by a run-time count: the count's low byte is what the ARM register
 * shift uses, which is why counts of 256 and negative counts are listed. */
static u64 shift(int t, long long a, int n, int left) {
    vcount = n;
    switch (t) {
    case T_INT: { volatile int x = (int)a; volatile int r = left ? x << vcount : x >> vcount;
                  return (u64)(long long)r; }
    case T_UINT: { volatile unsigned x = (unsigned)a;
                   volatile unsigned r = left ? x << vcount : x >> vcount; return (u64)r; }
    case T_LLONG: { volatile long long x = a;
                    volatile long long r = left ? x << vcount : x >> vcount; return (u64)r; }
    default: { volatile u64 x = (u64)a; volatile u64 r = left ? x << vcount : x >> vcount;
               return r; }
    }
}

int main(void) {
    static const int arith_types[] = {T_SCHAR, T_UCHAR, T_CHAR, T_SHORT, T_USHORT,
                                      T_INT,   T_UINT,  T_LLONG, T_ULLONG};

    printf("// plain char is %s\n", (char)-1 < 0 ? "signed" : "unsigned");

    /* + - * with overflow in every type: each pair of the values above that
     * differ as the type holds them. */
    section("arithmetic");
    for (unsigned ti = 0; ti < sizeof arith_types / sizeof arith_types[0]; ti++) {
        int t = arith_types[ti];
        static const long long lefts[] = {1, -1, 0x7f, 0x80, 0x8000, INT_MAX, INT_MIN,
                                          LLONG_MAX, LLONG_MIN};
        static const long long rights[] = {1, -1, 0x80, INT_MIN};
        for (unsigned i = 0; i < sizeof lefts / sizeof lefts[0]; i++)
            for (unsigned j = 0; j < sizeof rights / sizeof rights[0]; j++)
                for (const char* op = "+-*"; *op; op++)
                    print_binop(t, lefts[i], rights[j], *op);
    }

    /* Division and remainder: truncation toward zero, the most negative value
     * by -1, negatives, and the bitwise operators on sign bits. */
    section("division");
    for (unsigned ti = 0; ti < sizeof arith_types / sizeof arith_types[0]; ti++) {
        int t = arith_types[ti];
        static const long long nums[] = {7, -7, INT_MIN, LLONG_MIN, 0x8000};
        static const long long dens[] = {2, -2, -1, 3};
        for (unsigned i = 0; i < sizeof nums / sizeof nums[0]; i++)
            for (unsigned j = 0; j < sizeof dens / sizeof dens[0]; j++) {
                print_binop(t, nums[i], dens[j], '/');
                print_binop(t, nums[i], dens[j], '%');
            }
        print_binop(t, -1, 0x80, '&');
        print_binop(t, INT_MIN, 0x7fff, '|');
        print_binop(t, -1, LLONG_MIN, '^');
    }

    section("shifts");
    static const int shift_types[] = {T_INT, T_UINT, T_LLONG, T_ULLONG};
    static const long long shift_values[] = {1, 0x12345678, INT_MIN, LLONG_MIN};
    static const int counts[] = {0, 1, 31, 32, 33, 63, 64, 65, 128, 255, 256, 257, -1};
    for (unsigned ti = 0; ti < 4; ti++)
        for (unsigned i = 0; i < sizeof shift_values / sizeof shift_values[0]; i++)
            for (unsigned k = 0; k < sizeof counts / sizeof counts[0]; k++)
                for (int left = 1; left >= 0; left--) {
                    int t = shift_types[ti];
                    u64 a = conv(t, shift_values[i]);
                    char row[128];
                    snprintf(row, sizeof row, "{%s, %s, %s, %d, %s}", type_names[t],
                             left ? "SLL" : "SRL", lit(a), counts[k],
                             lit(shift(t, (long long)a, counts[k], left)));
                    emit(row);
                }

    section("conversions");
    static const long long cast_values[] = {0,       1,           -1,           0x80,
                                            0xff,    0x100,       0x8000,       INT_MIN,
                                            0xffffffffll, 0x100000000ll, LLONG_MIN,
                                            0x123456789abcdefll};
    for (int from = 0; from < T_COUNT; from++) {
        u64 done[sizeof cast_values / sizeof cast_values[0]];
        int ndone = 0;
        for (unsigned i = 0; i < sizeof cast_values / sizeof cast_values[0]; i++) {
            u64 v = conv(from, cast_values[i]);
            int seen = 0;
            for (int k = 0; k < ndone; k++)
                seen |= done[k] == v;
            if (seen)
                continue;
            done[ndone++] = v;
            for (int to = 0; to < T_COUNT; to++) {
                if (to == from)
                    continue;
                char row[128];
                snprintf(row, sizeof row, "{%s, %s, %s, %s}", type_names[from],
                         type_names[to], lit(v), lit(cast(from, to, v)));
                emit(row);
            }
        }
    }
    section("end");
    return 0;
}
