/* Bit fields: packing, sign extension, compound assignment to narrow fields,
   and a bit-field struct in static data. */
#include <stdio.h>

struct flags {
    unsigned ready : 1;
    unsigned mode : 3;
    signed level : 4;
    unsigned : 0;
    unsigned count : 10;
    int small : 2;
};

struct packet {
    unsigned char kind : 4, prio : 4;
    unsigned short length;
    unsigned crc : 24, seq : 8;
};

static struct flags table[3] = {
    {1, 5, -3, 700, 1},
    {0, 7, 7, 1023, -2},
    {.mode = 2, .count = 5},
};

static unsigned checksum(const struct packet *p) {
    return p->kind * 31u + p->prio * 7u + p->length + p->crc + p->seq;
}

int main(void) {
    struct flags f = {0};
    int nine = 9;
    f.ready = 1;
    f.mode = nine;   /* truncated to 1 */
    f.level = -8;
    f.level += 15;   /* 7 */
    f.count = 1000;
    f.count += 30;   /* wraps to 6 */
    f.small = 1;
    f.small++;       /* wraps to -2 */
    struct packet p = {3, 12, 1500, 0xABCDEF, 255};
    p.seq++;
    p.prio -= 1;
    int sum = 0;
    for (int i = 0; i < 3; i++)
        sum += table[i].ready + table[i].mode + table[i].level + table[i].count + table[i].small;
    printf("f: %u %u %d %u %d size=%u\n", f.ready, f.mode, f.level, f.count, f.small,
           (unsigned)sizeof f);
    printf("p: %u %u %u %x %u sum=%u\n", p.kind, p.prio, p.length, p.crc, p.seq, checksum(&p));
    printf("table sum %d\n", sum);
    return 0;
}
