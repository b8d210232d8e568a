/* Calendar arithmetic: leap years, days in month from a table, day of the
   week by Zeller's congruence and by counting days from an epoch, dates
   returned and passed as structs, adding days across month and year ends,
   the difference between two dates, ISO-like formatting with sprintf and a
   small month calendar printed as a grid. */
#include <stdio.h>

enum weekday { SUNDAY, MONDAY, TUESDAY, WEDNESDAY, THURSDAY, FRIDAY, SATURDAY };

struct date {
    int year;
    unsigned char month, day;
};

static const char *const day_names[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
static const char month_days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

static int is_leap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

static int days_in(int y, int m) { return m == 2 && is_leap(y) ? 29 : month_days[m - 1]; }

static enum weekday zeller(struct date d) {
    int m = d.month, y = d.year;
    if (m < 3) {
        m += 12;
        y--;
    }
    int k = y % 100, j = y / 100;
    int h = (d.day + 13 * (m + 1) / 5 + k + k / 4 + j / 4 + 5 * j) % 7;
    return (enum weekday)((h + 6) % 7);
}

/* Days since 1970-01-01 (a Thursday). */
static long days_from_epoch(struct date d) {
    long n = 0;
    for (int y = 1970; y < d.year; y++)
        n += is_leap(y) ? 366 : 365;
    for (int m = 1; m < d.month; m++)
        n += days_in(d.year, m);
    return n + d.day - 1;
}

static struct date add_days(struct date d, int n) {
    while (n > 0) {
        int left = days_in(d.year, d.month) - d.day;
        if (n <= left) {
            d.day = (unsigned char)(d.day + n);
            break;
        }
        n -= left + 1;
        d.day = 1;
        if (++d.month > 12) {
            d.month = 1;
            d.year++;
        }
    }
    return d;
}

static const char *format(struct date d, char *buf) {
    sprintf(buf, "%04d-%02u-%02u %s", d.year, d.month, d.day, day_names[zeller(d)]);
    return buf;
}

int main(void) {
    static const struct date dates[] = {{1970, 1, 1}, {2000, 2, 29}, {1999, 12, 31},
                                        {2024, 7, 4}, {2100, 3, 1},  {2038, 1, 19}};
    char buf[32];
    for (unsigned i = 0; i < sizeof dates / sizeof dates[0]; i++) {
        struct date d = dates[i];
        long e = days_from_epoch(d);
        printf("%s epoch day %ld weekday check %d\n", format(d, buf), e,
               (int)((e + THURSDAY) % 7) == (int)zeller(d));
    }
    printf("leap:");
    static const int years[] = {1900, 1996, 2000, 2023, 2024, 2100, 2400};
    for (int i = 0; i < 7; i++)
        printf(" %d=%d", years[i], is_leap(years[i]));
    printf("\n");
    struct date d = {2023, 12, 25};
    static const int steps[] = {6, 7, 31, 60, 366, 1000};
    for (int i = 0; i < 6; i++)
        printf("2023-12-25 + %4d = %s\n", steps[i], format(add_days(d, steps[i]), buf));
    struct date a = {1969 + 1, 6, 15}, b = {2024, 2, 29};
    printf("days between: %ld\n", days_from_epoch(b) - days_from_epoch(a));
    struct date first = {2024, 2, 1};
    printf("     February 2024\n");
    for (int w = 0; w < 7; w++)
        printf("%4.2s", day_names[w]);
    printf("\n");
    int start = zeller(first);
    for (int i = 0; i < start; i++)
        printf("    ");
    for (int day = 1; day <= days_in(2024, 2); day++)
        printf("%4d%s", day, (start + day) % 7 == 0 ? "\n" : "");
    printf("\n");
    return 0;
}
