#include <stdio.h>
#include <stdlib.h>

static void leave(int code) {
    printf("leaving\n");
    exit(code + 256);
}

int main(int argc, char **argv) {
#if HOW == 0
    printf("argc %d", argc);
    for (int i = 1; i <= argc; i++)
        printf(" argv[%d] %s", i, argv[i] ? argv[i] : "null");
    printf("\n");
    return argc + 256;
#elif HOW == 1
    leave(argc + 4);
#else
    printf("before abort\n");
    fflush(stdout);
    abort();
#endif
    return 0;
}
