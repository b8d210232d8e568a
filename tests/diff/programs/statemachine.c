/* A tokenizer driven by a state machine: a switch with fall-through, default,
   goto and an enum of states, over a fixed input. */
#include <ctype.h>
#include <stdio.h>

enum state { START, NUMBER, IDENT, OPERATOR, STRING, DONE, ERROR };

struct counts {
    int numbers, idents, operators, strings;
    long total;
};

static const char text[] = "x1 = 42 + foo(7, \"bar\") * -3; y = x1 >= 10 ? 1 : 0;";

static int classify(char c) {
    switch (c) {
    case '+': case '-': case '*': case '/':
    case '=': case '<': case '>': case '!':
    case '?': case ':':
        return 1;
    case '(': case ')': case ',': case ';':
        return 2;
    default:
        return 0;
    }
}

static enum state step(enum state s, char c, struct counts *k, long *value) {
    switch (s) {
    case START:
        if (c == '\0')
            return DONE;
        if (isdigit((unsigned char)c)) {
            *value = c - '0';
            return NUMBER;
        }
        if (isalpha((unsigned char)c) || c == '_')
            return IDENT;
        if (c == '"')
            return STRING;
        if (classify(c) == 1)
            return OPERATOR;
        return START;
    case NUMBER:
        if (isdigit((unsigned char)c)) {
            *value = *value * 10 + (c - '0');
            return NUMBER;
        }
        k->numbers++;
        k->total += *value;
        goto restart;
    case IDENT:
        if (isalnum((unsigned char)c) || c == '_')
            return IDENT;
        k->idents++;
        goto restart;
    case OPERATOR:
        k->operators++;
        /* fall through: an operator ends where the next token starts */
    restart:
        return step(START, c, k, value);
    case STRING:
        if (c == '"') {
            k->strings++;
            return START;
        }
        return c ? STRING : ERROR;
    default:
        break;
    }
    return ERROR;
}

int main(void) {
    struct counts k = {0};
    long value = 0;
    enum state s = START;
    for (const char *p = text;; p++) {
        s = step(s, *p, &k, &value);
        if (s == DONE || s == ERROR || !*p)
            break;
    }
    printf("numbers=%d idents=%d operators=%d strings=%d total=%ld state=%d\n", k.numbers,
           k.idents, k.operators, k.strings, k.total, (int)s);
    return s == ERROR;
}
