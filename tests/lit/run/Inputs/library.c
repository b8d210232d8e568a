/* The interpreter's C library against the target's: formats of printf, the
   string and memory functions, qsort's order of equal elements, the heap. */
#include <ctype.h>
#include <math.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct item { int key, order; };

static int by_key(const void *a, const void *b) {
    const struct item *x = a, *y = b;
    return (x->key > y->key) - (x->key < y->key);
}

static void say(const char *fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    vprintf(fmt, ap);
    va_end(ap);
}

int main(int argc, char **argv) {
    printf("[%d|%5d|%-5d|%05d|%+d|% d]\n", -42, 42, 42, 42, 42, 42);
    printf("[%u|%x|%X|%#x|%o|%#o]\n", 4000000000u, 0xbeefu, 0xbeefu, 255u, 8u, 8u);
    printf("[%hhd|%hhu|%hd|%hu]\n", 300, 300, 70000, 70000);
    printf("[%lld|%llu|%llx|%ld|%lu]\n", -9000000000000ll, 18000000000000000000ull,
           0x123456789abcdefull, -5l, 5ul);
    printf("[%f|%.2f|%10.3f|%-10.1f|%e|%.3E|%g|%g|%g|%G]\n", 3.14159, 2.005, -1.0 / 3, 0.25,
           123456.789, 0.000123, 100000.0, 1000000.0, 1e-5, 1e-10);
    printf("[%a|%f|%f|%f|%.0f|%.0f]\n", 1.0, 1.0 / 0.0, -1.0 / 0.0, sqrt(-1.0), 0.5, 1.5);
    printf("[%s|%.3s|%8s|%-8s|%c|%5c|%%]\n", "text", "abcdef", "right", "left", 'x', 'y');
    printf("[%*d|%-*d|%.*f]\n", 6, 7, 6, 7, 2, 3.14159);
    printf("[%p|%s]\n", (void *)0, argc > 5 ? argv[1] : "one argument");
    char buf[32];
    int n = snprintf(buf, 8, "%d-%s", 12345, "abcdef");
    printf("snprintf %d \"%s\"\n", n, buf);
    n = sprintf(buf, "%08.3f", -3.5);
    printf("sprintf %d \"%s\"\n", n, buf);
    say("vprintf %d %s %.1f\n", 3, "args", 2.25);
    fprintf(stdout, "fprintf %s\n", "stdout");
    puts("puts");
    putchar('!');
    putchar('\n');

    char s[40];
    strcpy(s, "hello");
    strcat(s, ", world");
    printf("%s %zu %d %d %d\n", s, strlen(s), strcmp("abc", "abd") < 0, strncmp("abcx", "abcy", 3),
           memcmp("\x01\x80", "\x01\x7f", 2) > 0);
    printf("%s|%s|%d\n", strchr(s, 'w'), strrchr(s, 'o'), strchr(s, 'z') == 0);
    strncpy(s, "ab", 5);
    printf("%d %d %d\n", s[0], s[2], s[4]);
    memset(s, 'z', 3);
    memmove(s + 1, s, 5);
    printf("%.6s %d %d\n", s, atoi("-123x"), abs(-9));
    printf("%d %d %d %d\n", toupper('q'), tolower('Q'), isdigit('7') != 0, isalpha('7') != 0);

    struct item items[10];
    for (int i = 0; i < 10; i++) {
        items[i].key = (i * 7) % 4;
        items[i].order = i;
    }
    qsort(items, 10, sizeof items[0], by_key);
    for (int i = 0; i < 10; i++)
        printf("%d:%d ", items[i].key, items[i].order);
    printf("\n");

    int *heap = malloc(4 * sizeof(int));
    for (int i = 0; i < 4; i++)
        heap[i] = i * i;
    heap = realloc(heap, 8 * sizeof(int));
    int *zeros = calloc(3, sizeof(int));
    printf("%d %d %d %d\n", heap[3], zeros[0], zeros[2], heap[1]);
    free(heap);
    free(zeros);
    free(NULL);
    printf("%.6f %.6f %.6f %.6f\n", floor(-2.5), ceil(-2.5), fmod(7.5, 2.0), fabs(-0.125));
    return 0;
}
