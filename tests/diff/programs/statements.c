/* Every statement: if/else chains with a nested if, for loops with empty
   parts and comma expressions, while and do-while with break and continue,
   switch with fall-through, a default in the middle, nested switches and
   case labels inside blocks, goto forward and backward and out of nested
   loops, labels on empty statements, early returns, nested block scopes
   with shadowed names and declarations after statements, and a loop that
   runs zero times. */
#include <stdio.h>

static const char *classify(int n) {
    if (n < 0)
        return "negative";
    else if (n == 0)
        return "zero";
    else if (n % 2) {
        if (n > 100)
            return "big odd";
        else
            return "small odd";
    }
    return n > 100 ? "big even" : "small even";
}

static int fallthrough(int n) {
    int r = 0;
    switch (n) {
    case 0:
        r += 1;
        /* fall through */
    case 1:
        r += 10;
        break;
    default:
        r += 1000;
        /* fall through */
    case 5:
    case 6:
        r += 100;
        break;
    case 7: {
        int local = n * 3;
        r += local;
        if (local > 20)
            break;
        r += 5000;
    }
        /* fall through */
    case 8:
        r -= 1;
    }
    return r;
}

static int nested_switch(int a, int b) {
    switch (a) {
    case 1:
        switch (b) {
        case 1:
            return 11;
        case 2:
            break;
        default:
            return 10;
        }
        return 12;
    case 2:
        for (int i = 0; i < 5; i++) {
            switch (i) {
            case 3:
                continue;
            case 4:
                return 20 + i + b;
            }
        }
        return -1;
    }
    return 0;
}

static int find_pair(int target, int *pi, int *pj) {
    for (int i = 0; i < 10; i++)
        for (int j = i; j < 10; j++)
            if (i * j == target) {
                *pi = i;
                *pj = j;
                goto found;
            }
    return 0;
found:
    return 1;
}

static int goto_loop(int n) {
    int acc = 0, i = 0;
top:
    if (i >= n)
        goto done;
    acc += i;
    i++;
    goto top;
done:;
    return acc;
}

static unsigned collatz_steps(unsigned n) {
    unsigned steps = 0;
    while (1) {
        if (n == 1)
            break;
        n = n % 2 ? 3 * n + 1 : n / 2;
        steps++;
    }
    return steps;
}

int main(void) {
    static const int samples[] = {-4, 0, 7, 8, 101, 200};
    for (int k = 0; k < 6; k++)
        printf("%d: %s\n", samples[k], classify(samples[k]));
    printf("switch:");
    for (int n = -1; n <= 9; n++)
        printf(" %d", fallthrough(n));
    printf("\nnested: %d %d %d %d %d\n", nested_switch(1, 1), nested_switch(1, 2),
           nested_switch(1, 3), nested_switch(2, 7), nested_switch(3, 0));
    int fi = -1, fj = -1;
    int ok = find_pair(42, &fi, &fj);
    printf("find_pair 42: %d %d %d", ok, fi, fj);
    ok = find_pair(97, &fi, &fj);
    printf(", 97: %d\n", ok);
    printf("goto loop: %d %d\n", goto_loop(10), goto_loop(0));

    int i, j, sum = 0;
    for (i = 0, j = 10; i < j; i++, j--)
        sum += i * j;
    printf("comma for: %d %d %d\n", i, j, sum);
    i = 0;
    for (;;) {
        if (++i > 5)
            break;
        if (i == 2)
            continue;
        sum += i;
    }
    printf("forever: %d %d\n", i, sum);
    int count = 0;
    for (int k = 10; k < 0; k++)
        count++;
    while (count > 100)
        count--;
    do
        count += 3;
    while (count < 10 && count != 6);
    printf("zero-trip and do: %d\n", count);
    int odd_sum = 0, k = 0;
    do {
        k++;
        if (k % 2 == 0)
            continue;
        odd_sum += k;
    } while (k < 15);
    printf("do-continue: %d\n", odd_sum);

    int x = 1;
    {
        int x = 2;
        {
            int x = 3;
            sum = x;
        }
        sum = sum * 10 + x;
        for (int x = 7; x < 8; x++)
            sum = sum * 10 + x;
    }
    sum = sum * 10 + x;
    printf("shadowing: %d\n", sum);
    int later;
    later = sum % 97;
    int after = later + 1;
    printf("declarations after statements: %d %d\n", later, after);

    unsigned longest = 0, arg = 0;
    for (unsigned n = 1; n < 300; n++) {
        unsigned s = collatz_steps(n);
        if (s > longest) {
            longest = s;
            arg = n;
        }
    }
    printf("collatz: %u steps from %u\n", longest, arg);
    return 0;
}
