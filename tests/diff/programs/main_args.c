/* main with argc and argv: the program is run without arguments, so argc
   is 1 and argv[argc] is a null pointer; the argument count drives a small
   computation, the name in argv[0] is only checked to be non-empty, and
   the exit status 3 comes from a return in main computed from argc. */
#include <stdio.h>
#include <string.h>

static int weight(int argc, char **argv) {
    int w = 0;
    for (int i = 1; i < argc; i++)
        w += (int)strlen(argv[i]);
    return w;
}

int main(int argc, char **argv) {
    printf("argc %d, argv[0] non-empty %d, argv[argc] null %d\n", argc,
           argv[0] != NULL && argv[0][0] != '\0', argv[argc] == NULL);
    printf("weight of the arguments: %d\n", weight(argc, argv));
    int table[4] = {10, 20, 30, 40};
    int pick = table[argc % 4];
    printf("picked %d\n", pick);
    char **end = argv + argc;
    printf("argv span %d\n", (int)(end - argv));
    return argc + 2;
}
