/* Short circuits whose right side must stay guarded: a load through a
   pointer the left side tests, a division by a value the left side tests,
   and calls with effects. Where the right side is plain arithmetic on
   variables the two sides may be combined bitwise; the outcome is the same. */
#include <stdio.h>

static int calls;
static int bump(int v) {
    calls++;
    return v;
}

static int load_and(int *p) { return p != 0 && *p > 2; }
static int load_or(int *p) { return p == 0 || *p == 0; }
static int plain_load(int a, int *p) { return a && *p; }
static int divide_and(int n, int d) { return d != 0 && n / d > 1; }
static int divide_or(int n, int d) { return d == 0 || n % d == 0; }
static int call_or(int a) { return a || bump(a + 1); }
static int call_and(int a) { return a && bump(a); }
static int plain_or(int a, int b) { return a || b; }
static int plain_and_bits(int a, int b) { return (a & 4) && (b & 16); }
static int plain_and_sign(int a, unsigned b) { return (a & 1) && (b & 0x80000000u); }
static int zero_tests(int a, int b) { return a == 0 && b == 0; }

struct node {
    struct node *next;
    int value;
};

static int chain(struct node *n) { return n && n->next && n->next->value == 7; }

int main(void) {
    int values[] = {0, 1, 3, 4, 16, 20, -1};
    int three = 3;
    struct node tail = {0, 7}, head = {&tail, 1}, lone = {0, 7};
    printf("%d %d %d %d\n", load_and(0), load_and(&three), load_or(0), load_or(&three));
    printf("%d %d %d\n", plain_load(0, 0), chain(&head), chain(&lone));
    printf("%d %d\n", chain(0), chain(&tail));
    for (unsigned i = 0; i < sizeof values / sizeof values[0]; i++) {
        int a = values[i];
        for (unsigned j = 0; j < sizeof values / sizeof values[0]; j++) {
            int b = values[j];
            printf("%d%d%d%d%d%d ", divide_and(a, b), divide_or(a, b), plain_or(a, b),
                   plain_and_bits(a, b), plain_and_sign(a, (unsigned)b), zero_tests(a, b));
        }
        printf("| %d %d\n", call_or(a), call_and(a));
    }
    printf("calls %d\n", calls);
    return 0;
}
