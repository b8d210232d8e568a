/* Every integer type in arithmetic: plain, signed and unsigned char,
   short, int, long, long long and their unsigned forms, _Bool and enums;
   integer promotions (unsigned char and unsigned short promote to int),
   the usual arithmetic conversions (int with unsigned, long long with
   unsigned), division and remainder with negative operands, right shifts
   of negative values (arithmetic on this target), compound assignment to
   narrow types (c += 200; c <<= 3; s /= 3) and increments of chars. */
#include <limits.h>
#include <stdio.h>

enum weekday { MON = 1, TUE, WED, THU, FRI, SAT = 10, SUN };
enum small { NEG = -3, ZERO, POS };

typedef unsigned char u8;
typedef signed short i16;

int main(void) {
    char c = 'A';
    signed char sc = -100;
    unsigned char uc = 200;
    short s = -30000;
    unsigned short us = 60000;
    int i = -123456;
    unsigned u = 3000000000u;
    long l = -2000000000L;
    unsigned long ul = 4000000000UL;
    long long ll = -5000000000LL;
    unsigned long long ull = 15000000000ULL;
    _Bool b = 5;
    enum weekday day = WED;

    printf("sizes: %u %u %u %u %u %u %u %u %u\n", (unsigned)sizeof c, (unsigned)sizeof s,
           (unsigned)sizeof i, (unsigned)sizeof ll, (unsigned)sizeof b, (unsigned)sizeof day,
           (unsigned)sizeof(u8), (unsigned)sizeof(i16), (unsigned)sizeof(float));
    printf("values: %c %d %u %d %u %d %u %ld %lu %lld %llu %d %d\n", c, sc, uc, s, us, i, u, l, ul,
           ll, ull, b, day);

    /* Promotions: unsigned char and short arithmetic happens in int. */
    printf("promote: %d %d %d %d\n", uc + uc, us * 2, sc * sc, -uc);
    printf("unsigned wrap: %u %u %llu\n", u + u, 0u - 1u, ull * ull);
    printf("mixed signedness: %d %d %d %u\n", -1 < 0u, (int)(-1 < (long long)0u), sc < uc,
           (unsigned)i + 1u);
    printf("long long with unsigned: %lld %lld\n", ll + u, ll * (long long)us);

    /* Division truncates toward zero; remainder has the dividend's sign. */
    int nums[] = {7, -7, 7, -7, 0, INT_MAX, INT_MIN + 1};
    int dens[] = {2, 2, -2, -2, 5, -1, 3};
    for (int k = 0; k < 7; k++)
        printf("%d/%d=%d %%=%d  ", nums[k], dens[k], nums[k] / dens[k], nums[k] % dens[k]);
    printf("\n");
    printf("unsigned div: %u %u %u\n", u / 7u, u % 7u, 0xffffffffu / 0x10000u);
    printf("shifts: %d %d %d %u %d\n", -16 >> 2, -1 >> 31, i >> 4, u >> 28, 1 << 30);

    /* Compound assignment to narrow types computes in int and truncates. */
    unsigned char cc = 100;
    cc += 200;
    printf("uc += 200: %u", cc);
    cc <<= 3;
    printf(", <<= 3: %u", cc);
    cc = 250;
    cc *= 3;
    printf(", 250*3: %u", cc);
    cc = 7;
    cc -= 10;
    printf(", 7-10: %u", cc);
    cc = 200;
    cc /= 3;
    printf(", 200/3: %u", cc);
    cc = 0xf0;
    cc >>= 2;
    cc |= 0x101;
    printf(", >>=2 |=0x101: %u\n", cc);
    short ss = -30000;
    ss /= 3;
    printf("short /= 3: %d", ss);
    ss -= 30000;
    printf(", -= 30000: %d", ss);
    ss = 1000;
    ss *= 100;
    printf(", 1000*100: %d", ss);
    ss = -7;
    ss %= 4;
    printf(", -7%%4: %d", ss);
    ss = -1;
    ss >>= 1;
    printf(", -1>>1: %d", ss);
    unsigned short uss = 1;
    uss -= 2;
    printf(", ushort 1-2: %u\n", uss);
    signed char scc = 127;
    scc++;
    printf("schar 127++: %d", scc);
    scc = -128;
    scc--;
    printf(", -128--: %d", scc);
    char ch = 'y';
    ch++;
    ++ch;
    ch += 1;
    printf(", char: %c %d", ch, ch);
    ch = 0;
    ch--;
    printf(", 0--: %d\n", ch);

    /* Enums are integers. */
    enum weekday next = day + 1;
    day++;
    printf("enum: %d %d %d %d %d\n", next, day, SUN, SUN - MON, (int)sizeof(enum small));
    enum small e = NEG;
    printf("small enum: %d %d %d %d\n", e, ZERO, POS, e < POS);
    switch (day) {
    case THU:
        printf("thursday\n");
        break;
    default:
        printf("other\n");
    }

    _Bool flags[4] = {0, 1, 2, -1};
    int truth = 0;
    for (int k = 0; k < 4; k++)
        truth += flags[k];
    b = 0;
    b = !b;
    b = b + truth;
    printf("bool: %d %d %d\n", truth, b, (_Bool)0.25 + (_Bool)-0.0);

    long long big = LLONG_MAX;
    unsigned long long ubig = big;
    ubig += 2;
    printf("limits: %lld %llu %d %d %u %d %d\n", big, ubig, SCHAR_MIN, SHRT_MAX, USHRT_MAX, INT_MIN,
           CHAR_MIN);
    return 0;
}
