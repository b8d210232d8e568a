/* Leaving through exit() from a nested call with a non-zero status: the
   output written before must appear (stdout is flushed by exit), the code
   after the call in main must not run, and the status is 5. */
#include <stdio.h>
#include <stdlib.h>

static int depth;

static void descend(int n) {
    if (++depth > 100)
        return; /* a guard that is never taken */
    if (n > 0) {
        printf("descend %d\n", n);
        descend(n - 1);
        printf("never printed %d\n", n);
        return;
    }
    printf("bottom reached at depth %d\n", depth);
    exit(5);
}

int main(void) {
    int total = 0;
    for (int i = 1; i <= 10; i++)
        total += i * i;
    printf("sum of squares %d\n", total);
    fprintf(stdout, "via fprintf to stdout\n");
    fprintf(stderr, "a message on stderr\n");
    descend(4);
    printf("not reached\n");
    return 0;
}
