/* Sums squares with + in a loop. A helper has a + of its own, so that a
   rewrite in main alone shows which function changed. */
#include <stdio.h>

static int square_plus_one(int x) { return x * x + 1; }

int main(void) {
    int sum = 0;
    for (int i = 1; i <= 10; i++)
        sum = sum + square_plus_one(i);
    printf("sum %d\n", sum);
    return 0;
}
