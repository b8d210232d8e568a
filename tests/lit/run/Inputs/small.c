/* A little of everything, small enough to damage at every byte. */
#include <stdio.h>
struct pair { short a; int b; };
static struct pair make(int k) { struct pair p = {(short)k, k * 3}; return p; }
int main(void) {
    int s = 0;
    for (int i = 0; i < 5; i++)
        s += make(i).b;
    printf("%d\n", s);
    return s > 100;
}
