/* One fault per value of CASE; each must end the run with status 3 and a
   message naming the function and the statement. */
#include <stdio.h>
#include <stdlib.h>

int table[4];
int *volatile null_pointer;

static int deep(int n) { return n == 0 ? 0 : 1 + deep(n + 1); }

static int divide(int a, int b) {
    return a / b;
}

int main(void) {
    int local[3] = {1, 2, 3};
    int *p = local;
    volatile int zero = 0;
    char *s = "text";
    printf("before\n");
#if CASE == 1
    return *null_pointer;
#elif CASE == 2
    for (int i = 0; i <= 4; i++)
        table[i] = i;
#elif CASE == 3
    return p[3];
#elif CASE == 4
    return divide(7, zero);
#elif CASE == 5
    s[0] = 'T';
#elif CASE == 6
    int *h = malloc(8);
    free(h);
    return h[0];
#elif CASE == 7
    int *h = malloc(8);
    free(h);
    free(h);
#elif CASE == 8
    return deep(1);
#elif CASE == 9
    for (;;)
        zero++;
#elif CASE == 10
    int (*f)(void) = (int (*)(void))(table + 1);
    return f();
#elif CASE == 11
    return 7 % zero;
#endif
    return 0;
}
