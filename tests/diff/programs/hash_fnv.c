/* Hashing: FNV-1a in 32 and 64 bits, djb2, a murmur-style 32-bit finalizer
   and a chained hash table on malloc/free that counts words, with unsigned
   wrap-around arithmetic in both widths. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static unsigned fnv1a32(const char *s) {
    unsigned h = 2166136261u;
    for (; *s; s++) {
        h ^= (unsigned char)*s;
        h *= 16777619u;
    }
    return h;
}

static unsigned long long fnv1a64(const void *data, size_t n) {
    const unsigned char *p = data;
    unsigned long long h = 14695981039346656037ull;
    while (n--) {
        h ^= *p++;
        h *= 1099511628211ull;
    }
    return h;
}

static unsigned long djb2(const char *s) {
    unsigned long h = 5381;
    int c;
    while ((c = (unsigned char)*s++) != 0)
        h = ((h << 5) + h) + c;
    return h & 0xffffffffu;
}

static unsigned fmix32(unsigned h) {
    h ^= h >> 16;
    h *= 0x85ebca6bu;
    h ^= h >> 13;
    h *= 0xc2b2ae35u;
    h ^= h >> 16;
    return h;
}

struct entry {
    char *word;
    int count;
    struct entry *next;
};

#define BUCKETS 16

static struct entry *table[BUCKETS];

static void add_word(const char *w, size_t len) {
    char buf[32];
    if (len >= sizeof buf)
        len = sizeof buf - 1;
    memcpy(buf, w, len);
    buf[len] = '\0';
    unsigned b = fnv1a32(buf) % BUCKETS;
    for (struct entry *e = table[b]; e; e = e->next)
        if (strcmp(e->word, buf) == 0) {
            e->count++;
            return;
        }
    struct entry *e = malloc(sizeof *e);
    e->word = malloc(len + 1);
    strcpy(e->word, buf);
    e->count = 1;
    e->next = table[b];
    table[b] = e;
}

static const char text[] =
    "the quick brown fox jumps over the lazy dog the dog sleeps and the fox runs "
    "over the hill and over the dale a quick end";

int main(void) {
    static const char *words[] = {"", "a", "foobar", "hello world", "The quick brown fox"};
    for (int i = 0; i < 5; i++)
        printf("%-22s fnv32=%08x fnv64=%016llx djb2=%08lx mix=%08x\n", words[i], fnv1a32(words[i]),
               fnv1a64(words[i], strlen(words[i])), djb2(words[i]), fmix32(fnv1a32(words[i])));
    unsigned ints[4] = {0, 1, 0x80000000u, 0xffffffffu};
    printf("fnv64 of ints %016llx\n", fnv1a64(ints, sizeof ints));
    for (int i = 0; i < 4; i++)
        printf("fmix32(%x)=%08x\n", ints[i], fmix32(ints[i]));

    const char *p = text;
    while (*p) {
        while (*p == ' ')
            p++;
        const char *start = p;
        while (*p && *p != ' ')
            p++;
        if (p > start)
            add_word(start, (size_t)(p - start));
    }
    int distinct = 0, total = 0, longest_chain = 0;
    for (int b = 0; b < BUCKETS; b++) {
        int chain = 0;
        for (struct entry *e = table[b]; e; e = e->next) {
            distinct++;
            total += e->count;
            chain++;
            if (e->count > 1)
                printf("bucket %2d: %-5s x%d\n", b, e->word, e->count);
        }
        if (chain > longest_chain)
            longest_chain = chain;
    }
    printf("distinct=%d total=%d longest chain=%d\n", distinct, total, longest_chain);
    for (int b = 0; b < BUCKETS; b++) {
        struct entry *e = table[b];
        while (e) {
            struct entry *next = e->next;
            free(e->word);
            free(e);
            e = next;
        }
        table[b] = NULL;
    }
    return 0;
}
