/* Recursion: factorial and Fibonacci (naive and memoized), Ackermann on
   small arguments, mutual recursion (even/odd, a Hofstadter pair), towers of
   Hanoi, permutations by swapping, a recursive-descent sum of a nested list
   and a deep-ish linear recursion 2000 frames deep. */
#include <stdio.h>

static unsigned long long factorial(unsigned n) { return n <= 1 ? 1 : n * factorial(n - 1); }

static int fib(int n) { return n < 2 ? n : fib(n - 1) + fib(n - 2); }

static long long memo[91];

static long long fib_memo(int n) {
    if (n < 2)
        return n;
    if (memo[n])
        return memo[n];
    return memo[n] = fib_memo(n - 1) + fib_memo(n - 2);
}

static int ackermann(int m, int n) {
    if (m == 0)
        return n + 1;
    if (n == 0)
        return ackermann(m - 1, 1);
    return ackermann(m - 1, ackermann(m, n - 1));
}

static int is_odd(unsigned n);

static int is_even(unsigned n) { return n == 0 ? 1 : is_odd(n - 1); }

static int is_odd(unsigned n) { return n == 0 ? 0 : is_even(n - 1); }

/* Hofstadter's female and male sequences. */
static int hof_m(int n);

static int hof_f(int n) { return n == 0 ? 1 : n - hof_m(hof_f(n - 1)); }

static int hof_m(int n) { return n == 0 ? 0 : n - hof_f(hof_m(n - 1)); }

static int moves;

static void hanoi(int n, char from, char to, char via, int print) {
    if (n == 0)
        return;
    hanoi(n - 1, from, via, to, print);
    moves++;
    if (print)
        printf("  disk %d %c->%c\n", n, from, to);
    hanoi(n - 1, via, to, from, print);
}

static int perm_count;
static unsigned perm_hash;

static void permute(char *s, int k, int n) {
    if (k == n) {
        perm_count++;
        for (int i = 0; i < n; i++)
            perm_hash = perm_hash * 131u + (unsigned char)s[i];
        if (perm_count <= 4 || perm_count == 120)
            printf("  perm %3d: %s\n", perm_count, s);
        return;
    }
    for (int i = k; i < n; i++) {
        char t = s[k];
        s[k] = s[i];
        s[i] = t;
        permute(s, k + 1, n);
        t = s[k];
        s[k] = s[i];
        s[i] = t;
    }
}

/* Sum of a nested list written as text, e.g. "[1,[2,3],[[4]]]", weighted by depth. */
static const char *cursor;

static int parse_list(int depth) {
    int sum = 0;
    cursor++; /* '[' */
    while (*cursor != ']') {
        if (*cursor == '[') {
            sum += parse_list(depth + 1);
        } else if (*cursor == ',') {
            cursor++;
        } else {
            int v = 0;
            while (*cursor >= '0' && *cursor <= '9')
                v = v * 10 + (*cursor++ - '0');
            sum += v * depth;
        }
    }
    cursor++; /* ']' */
    return sum;
}

static long deep(int n) { return n == 0 ? 0 : (n % 3) + deep(n - 1); }

static int gcd_rec(int a, int b) { return b == 0 ? a : gcd_rec(b, a % b); }

int main(void) {
    for (unsigned n = 0; n <= 20; n += 5)
        printf("%u! = %llu\n", n, factorial(n));
    printf("fib(20)=%d fib_memo(90)=%lld\n", fib(20), fib_memo(90));
    printf("ackermann(2,3)=%d ackermann(3,3)=%d\n", ackermann(2, 3), ackermann(3, 3));
    printf("even(1001)=%d odd(777)=%d\n", is_even(1001), is_odd(777));
    printf("hofstadter F:");
    for (int i = 0; i < 15; i++)
        printf(" %d", hof_f(i));
    printf("\nhofstadter M:");
    for (int i = 0; i < 15; i++)
        printf(" %d", hof_m(i));
    printf("\n");
    hanoi(3, 'A', 'C', 'B', 1);
    moves = 0;
    hanoi(12, 'A', 'C', 'B', 0);
    printf("hanoi(12) moves=%d\n", moves);
    char letters[] = "abcde";
    permute(letters, 0, 5);
    printf("permutations=%d hash=%08x back to %s\n", perm_count, perm_hash, letters);
    cursor = "[1,[2,3],[[4,5],6],[[[7]]],10]";
    printf("nested weighted sum=%d\n", parse_list(1));
    printf("deep(2000)=%ld\n", deep(2000));
    printf("gcd_rec(1071,462)=%d\n", gcd_rec(1071, 462));
    return 0;
}
