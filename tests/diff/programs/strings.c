/* String processing with the library's string functions and our own:
   reversal in place, word splitting, case folding, a naive substring search,
   palindromes, edit distance by dynamic programming, strncpy padding,
   strcat, strchr, and formatting into buffers with sprintf and snprintf. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* Sizes the compiler cannot see through, so it does not warn of truncation. */
size_t pad_limit = 8;

static void reverse(char *s) {
    char *e = s + strlen(s);
    while (s < --e) {
        char t = *s;
        *s++ = *e;
        *e = t;
    }
}

static const char *find(const char *hay, const char *needle) {
    size_t n = strlen(needle);
    for (; *hay; hay++)
        if (strncmp(hay, needle, n) == 0)
            return hay;
    return n ? NULL : hay;
}

static char upper(char c) { return c >= 'a' && c <= 'z' ? (char)(c - 'a' + 'A') : c; }

static int is_palindrome(const char *s) {
    size_t n = strlen(s);
    if (n == 0)
        return 1;
    const char *b = s, *e = s + n - 1;
    while (b < e) {
        while (b < e && *b == ' ')
            b++;
        while (b < e && *e == ' ')
            e--;
        if (upper(*b++) != upper(*e--))
            return 0;
    }
    return 1;
}

static int min3(int a, int b, int c) {
    int m = a < b ? a : b;
    return m < c ? m : c;
}

static int edit_distance(const char *a, const char *b) {
    int la = (int)strlen(a), lb = (int)strlen(b);
    int d[16][16];
    for (int i = 0; i <= la; i++)
        d[i][0] = i;
    for (int j = 0; j <= lb; j++)
        d[0][j] = j;
    for (int i = 1; i <= la; i++)
        for (int j = 1; j <= lb; j++)
            d[i][j] =
                min3(d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + (a[i - 1] != b[j - 1]));
    return d[la][lb];
}

static int split(char *s, char **words, int max) {
    int n = 0;
    char *p = s;
    while (*p && n < max) {
        while (*p == ' ' || *p == ',')
            *p++ = '\0';
        if (!*p)
            break;
        words[n++] = p;
        while (*p && *p != ' ' && *p != ',')
            p++;
    }
    return n;
}

int main(void) {
    char buf[64];
    strcpy(buf, "Hello, world");
    reverse(buf);
    printf("reversed: [%s] len=%u\n", buf, (unsigned)strlen(buf));
    reverse(buf);
    strcat(buf, "! again");
    printf("cat: [%s]\n", buf);
    for (char *p = buf; *p; p++)
        *p = upper(*p);
    printf("upper: [%s] cmp=%d\n", buf, strcmp(buf, "HELLO") > 0);

    const char *hay = "the cat sat on the mat with the hat";
    const char *at = find(hay, "the");
    int count = 0;
    while (at) {
        count++;
        printf("'the' at %d\n", (int)(at - hay));
        at = find(at + 1, "the");
    }
    printf("found %d, 'dog' %s, 'mat' at %d\n", count, find(hay, "dog") ? "yes" : "no",
           (int)(find(hay, "mat") - hay));
    const char *colon = strchr("key:value", ':');
    printf("after colon: %s, strchr nul: %d\n", colon + 1, strchr("abc", '\0') != NULL);

    static const char *pals[] = {"A man a plan a canal Panama", "racecar", "abca", "",
                                 "Never odd or even"};
    for (int i = 0; i < 5; i++)
        printf("palindrome(\"%s\")=%d\n", pals[i], is_palindrome(pals[i]));

    static const char *pairs[][2] = {{"kitten", "sitting"},
                                     {"flaw", "lawn"},
                                     {"", "abc"},
                                     {"same", "same"},
                                     {"intention", "execution"}};
    for (int i = 0; i < 5; i++)
        printf("edit(%s,%s)=%d\n", pairs[i][0], pairs[i][1],
               edit_distance(pairs[i][0], pairs[i][1]));

    char line[] = "alpha, beta gamma,,delta  epsilonic";
    char *words[8];
    int n = split(line, words, 8);
    printf("%d words:", n);
    for (int i = 0; i < n; i++)
        printf(" <%s>", words[i]);
    printf("\n");

    char pad[8];
    memset(pad, 'x', sizeof pad);
    strncpy(pad, "ab", sizeof pad);
    printf("strncpy pads: %d %d %d\n", pad[2], pad[7], pad[1]);
    strncpy(pad, words[n - 1], pad_limit);
    printf("strncpy truncates: %.8s\n", pad);

    char out[32];
    int w = sprintf(out, "%d-%05.1f-%x-%c-%s", -42, 3.14159, 255u, 'Z', "end");
    printf("sprintf wrote %d: %s\n", w, out);
    int want = snprintf(out, pad_limit + 2, "%s and more text", words[0]);
    printf("snprintf wanted %d, got [%s] len %u\n", want, out, (unsigned)strlen(out));
    printf("memcmp %d %d\n", memcmp("abc", "abd", 3) < 0, memcmp("abc", "abc", 3));
    printf("atoi: %d %d %d\n", atoi("123"), atoi("-77"), atoi("  9x"));
    return 0;
}
