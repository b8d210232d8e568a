/* A tokenizer, recursive-descent parser and evaluator for arithmetic with
   variables: integers, + - * / % unary minus, parentheses, comparison,
   assignment and ';'-separated statements. Parsing builds a tree of nodes
   in a pool; evaluation walks it. Errors (division by zero, syntax) are
   reported, not fatal. */
#include <stdio.h>
#include <string.h>

enum tok { T_NUM, T_NAME, T_OP, T_LP, T_RP, T_SEMI, T_END, T_BAD };

struct lexer {
    const char *p;
    enum tok kind;
    long value;
    char name[16];
    char op[3];
};

static void next(struct lexer *lx) {
    while (*lx->p == ' ')
        lx->p++;
    char c = *lx->p;
    if (c == '\0') {
        lx->kind = T_END;
    } else if (c >= '0' && c <= '9') {
        lx->value = 0;
        while (*lx->p >= '0' && *lx->p <= '9')
            lx->value = lx->value * 10 + (*lx->p++ - '0');
        lx->kind = T_NUM;
    } else if ((c >= 'a' && c <= 'z') || c == '_') {
        int n = 0;
        while ((*lx->p >= 'a' && *lx->p <= 'z') || *lx->p == '_' ||
               (*lx->p >= '0' && *lx->p <= '9'))
            if (n < 15)
                lx->name[n++] = *lx->p++;
            else
                lx->p++;
        lx->name[n] = '\0';
        lx->kind = T_NAME;
    } else if (c == '(' || c == ')' || c == ';') {
        lx->kind = c == '(' ? T_LP : c == ')' ? T_RP : T_SEMI;
        lx->p++;
    } else if (strchr("+-*/%<>=!", c)) {
        lx->op[0] = c;
        lx->op[1] = '\0';
        lx->p++;
        if (*lx->p == '=' && c != '+' && c != '-' && c != '*' && c != '/' && c != '%') {
            lx->op[1] = '=';
            lx->op[2] = '\0';
            lx->p++;
        }
        lx->kind = T_OP;
    } else {
        lx->kind = T_BAD;
        lx->p++;
    }
}

struct node {
    char kind; /* 'n' number, 'v' variable, 'u' negate, 'b' binary, '=' assign */
    char op[3];
    long value;
    int var;
    struct node *l, *r;
};

static struct node pool[256];
static int used;
static const char *error;

static struct node *mk(char kind) {
    if (used == 256) {
        error = "out of nodes";
        used = 0;
    }
    struct node *n = &pool[used++];
    memset(n, 0, sizeof *n);
    n->kind = kind;
    return n;
}

#define MAX_VARS 12

static char var_names[MAX_VARS][16];
static long var_values[MAX_VARS];
static int nvars;

static int var_index(const char *name) {
    for (int i = 0; i < nvars; i++)
        if (strcmp(var_names[i], name) == 0)
            return i;
    if (nvars == MAX_VARS) {
        error = "too many variables";
        return 0;
    }
    strcpy(var_names[nvars], name);
    var_values[nvars] = 0;
    return nvars++;
}

static struct node *expr(struct lexer *lx);

static struct node *primary(struct lexer *lx) {
    struct node *n;
    if (lx->kind == T_NUM) {
        n = mk('n');
        n->value = lx->value;
        next(lx);
    } else if (lx->kind == T_NAME) {
        n = mk('v');
        n->var = var_index(lx->name);
        next(lx);
    } else if (lx->kind == T_LP) {
        next(lx);
        n = expr(lx);
        if (lx->kind != T_RP)
            error = "missing )";
        else
            next(lx);
    } else if (lx->kind == T_OP && lx->op[0] == '-' && !lx->op[1]) {
        next(lx);
        n = mk('u');
        n->l = primary(lx);
    } else {
        error = "unexpected token";
        n = mk('n');
        if (lx->kind != T_SEMI && lx->kind != T_END)
            next(lx);
    }
    return n;
}

static int is_op(const struct lexer *lx, const char *ops) {
    return lx->kind == T_OP && !lx->op[1] && strchr(ops, lx->op[0]);
}

static struct node *binary(char op0, char op1, struct node *l, struct node *r) {
    struct node *n = mk('b');
    n->op[0] = op0;
    n->op[1] = op1;
    n->l = l;
    n->r = r;
    return n;
}

static struct node *term(struct lexer *lx) {
    struct node *n = primary(lx);
    while (is_op(lx, "*/%")) {
        char op = lx->op[0];
        next(lx);
        n = binary(op, 0, n, primary(lx));
    }
    return n;
}

static struct node *sum(struct lexer *lx) {
    struct node *n = term(lx);
    while (is_op(lx, "+-")) {
        char op = lx->op[0];
        next(lx);
        n = binary(op, 0, n, term(lx));
    }
    return n;
}

static struct node *compare(struct lexer *lx) {
    struct node *n = sum(lx);
    while (lx->kind == T_OP && (lx->op[0] == '<' || lx->op[0] == '>' || lx->op[1] == '=')) {
        char a = lx->op[0], b = lx->op[1];
        next(lx);
        n = binary(a, b, n, sum(lx));
    }
    return n;
}

static struct node *expr(struct lexer *lx) {
    struct node *n = compare(lx);
    if (is_op(lx, "=")) {
        if (n->kind != 'v')
            error = "assignment to non-variable";
        next(lx);
        struct node *a = mk('=');
        a->var = n->var;
        a->r = expr(lx);
        return a;
    }
    return n;
}

static long eval(const struct node *n) {
    switch (n->kind) {
    case 'n':
        return n->value;
    case 'v':
        return var_values[n->var];
    case 'u':
        return -eval(n->l);
    case '=':
        return var_values[n->var] = eval(n->r);
    default:
        break;
    }
    long a = eval(n->l), b = eval(n->r);
    switch (n->op[0]) {
    case '+':
        return a + b;
    case '-':
        return a - b;
    case '*':
        return a * b;
    case '/':
    case '%':
        if (b == 0) {
            error = "division by zero";
            return 0;
        }
        return n->op[0] == '/' ? a / b : a % b;
    case '<':
        return n->op[1] ? a <= b : a < b;
    case '>':
        return n->op[1] ? a >= b : a > b;
    case '=':
        return a == b;
    case '!':
        return a != b;
    }
    error = "bad operator";
    return 0;
}

static void run(const char *program) {
    struct lexer lx = {program, T_END, 0, "", ""};
    next(&lx);
    while (lx.kind != T_END) {
        used = 0;
        error = NULL;
        struct node *tree = expr(&lx);
        long v = error ? 0 : eval(tree);
        if (lx.kind != T_SEMI && lx.kind != T_END && !error)
            error = "expected ;";
        if (error) {
            printf("  error: %s\n", error);
            while (lx.kind != T_SEMI && lx.kind != T_END)
                next(&lx);
        } else {
            printf("  = %ld (%d nodes)\n", v, used);
        }
        if (lx.kind == T_SEMI)
            next(&lx);
    }
}

int main(void) {
    static const char *programs[] = {
        "1 + 2 * 3; (1 + 2) * 3; -4 - -6; 17 % 5 * 2; 100 / 7 / 2",
        "x = 6; y = x * 7; z = y - x; z / (y - 42); z",
        "a = b = 5; a * b == 25; a < b; a <= b; a != b; -(a + b) * (a - b - 1)",
        "1 + ; 2 * (3 + 4; q = 10; 5 = 4; q + 1; 7 $ 3; 8",
        "n = 10; f = 1; f = f * n; n = n - 1; f = f * n; n = n - 1; f = f * n; f",
        "big = 65536 * 16383; big + big / 3; big % 1000; v1 = v2 = v3 = v4 = v5 = v6 = 1"};
    for (unsigned i = 0; i < sizeof programs / sizeof programs[0]; i++) {
        printf("program %u: %s\n", i, programs[i]);
        run(programs[i]);
    }
    printf("variables:");
    for (int i = 0; i < nvars; i++)
        printf(" %s=%ld", var_names[i], var_values[i]);
    printf("\n");
    return 0;
}
