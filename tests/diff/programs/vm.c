/* A tiny bytecode virtual machine: a stack machine with a switch dispatch
   loop, 16 opcodes (arithmetic, comparison, jumps, local variables, calls
   and returns with a frame stack), programs as arrays of ints for
   factorial, iterative Fibonacci, a recursive sum, a GCD loop and a
   printing loop. The exit status is a sum of results modulo 7, which is 4. */
#include <stdio.h>

enum op { PUSH, POP, ADD, SUB, MUL, DIV, LT, EQ, JMP, JZ, LOAD, STORE, CALL, RET, PRINT, HALT };

static const char *const op_names[] = {"push", "pop", "add",   "sub", "mul",  "div",
                                       "lt",   "eq",  "jmp",   "jz",  "load", "store",
                                       "call", "ret", "print", "halt"};

struct frame {
    int return_pc;
    int base; /* first local's index on the locals stack */
};

struct vm {
    int stack[64];
    int sp;
    int locals[512];
    int lp;
    struct frame frames[48];
    int fp;
    long steps;
};

#define FRAME_LOCALS 8

static void enter(struct vm *m, int return_pc, int nargs) {
    struct frame *f = &m->frames[m->fp++];
    f->return_pc = return_pc;
    f->base = m->lp;
    m->lp += FRAME_LOCALS;
    for (int i = nargs - 1; i >= 0; i--)
        m->locals[f->base + i] = m->stack[--m->sp];
}

/* Runs until the outermost frame returns; the result is the top of the stack. */
static int run(struct vm *m, const int *code, int size) {
    int pc = 0;
    while (pc >= 0 && pc < size) {
        m->steps++;
        int op = code[pc++];
        int a, b;
        switch (op) {
        case PUSH:
            m->stack[m->sp++] = code[pc++];
            break;
        case POP:
            m->sp--;
            break;
        case ADD:
        case SUB:
        case MUL:
        case DIV:
        case LT:
        case EQ:
            b = m->stack[--m->sp];
            a = m->stack[--m->sp];
            switch (op) {
            case ADD:
                a += b;
                break;
            case SUB:
                a -= b;
                break;
            case MUL:
                a *= b;
                break;
            case DIV:
                a = b ? a / b : 0;
                break;
            case LT:
                a = a < b;
                break;
            default:
                a = a == b;
                break;
            }
            m->stack[m->sp++] = a;
            break;
        case JMP:
            pc = code[pc];
            break;
        case JZ:
            if (m->stack[--m->sp] == 0)
                pc = code[pc];
            else
                pc++;
            break;
        case LOAD:
            m->stack[m->sp++] = m->locals[m->frames[m->fp - 1].base + code[pc++]];
            break;
        case STORE:
            m->locals[m->frames[m->fp - 1].base + code[pc++]] = m->stack[--m->sp];
            break;
        case CALL: {
            int target = code[pc], nargs = code[pc + 1];
            enter(m, pc + 2, nargs);
            pc = target;
            break;
        }
        case RET: {
            struct frame *f = &m->frames[--m->fp];
            m->lp = f->base;
            pc = f->return_pc;
            break;
        }
        case PRINT:
            printf("  print %d\n", m->stack[--m->sp]);
            break;
        case HALT:
            pc = -1;
            break;
        default:
            printf("bad opcode %d at %d\n", op, pc - 1);
            return -1;
        }
    }
    return m->sp ? m->stack[m->sp - 1] : 0;
}

/* clang-format off */
/* factorial(n) with locals n (0) and acc (1) */
static const int factorial[] = {
    PUSH, 1, STORE, 1,                   /* 0: acc = 1 */
    PUSH, 1, LOAD, 0, LT, JZ, 27,        /* 4: while (1 < n) */
    LOAD, 1, LOAD, 0, MUL, STORE, 1,     /* 11: acc *= n */
    LOAD, 0, PUSH, 1, SUB, STORE, 0,     /* 18: n -= 1 */
    JMP, 4,                              /* 25 */
    LOAD, 1, RET};                       /* 27 */

static const int fibonacci[] = {
    PUSH, 0, STORE, 1, PUSH, 1, STORE, 2,                 /* 0: a = 0, b = 1 */
    LOAD, 0, JZ, 32,                                      /* 8: while (n) */
    LOAD, 1, LOAD, 2, ADD, LOAD, 2, STORE, 1, STORE, 2,   /* 12: a, b = b, a + b */
    LOAD, 0, PUSH, 1, SUB, STORE, 0, JMP, 8,              /* 23: n -= 1 */
    LOAD, 1, RET};                                        /* 32 */

/* sum(n) = n == 0 ? 0 : n + sum(n - 1), recursive through CALL */
static const int recursive_sum[] = {
    LOAD, 0, PUSH, 0, EQ, JZ, 10, PUSH, 0, RET,           /* 0 */
    LOAD, 0, LOAD, 0, PUSH, 1, SUB, CALL, 0, 1, ADD, RET}; /* 10 */

static const int gcd_loop[] = {
    LOAD, 1, PUSH, 0, EQ, JZ, 10, LOAD, 0, RET,          /* 0: if (b == 0) return a */
    LOAD, 0, LOAD, 0, LOAD, 1, DIV, LOAD, 1, MUL, SUB,   /* 10: a - a / b * b */
    LOAD, 1, STORE, 0, STORE, 1, JMP, 0};                /* 21: a, b = b, a % b */

/* Prints the squares 1..5, then halts with an empty stack. */
static const int squares[] = {
    PUSH, 0, STORE, 1, PUSH, 1, STORE, 0,                 /* 0: sum = 0, i = 1 */
    LOAD, 0, PUSH, 6, LT, JZ, 36,                         /* 8: while (i < 6) */
    LOAD, 0, LOAD, 0, MUL, POP, LOAD, 0, LOAD, 0, MUL,    /* 15: i * i (once thrown away) */
    PRINT, LOAD, 0, PUSH, 1, ADD, STORE, 0, JMP, 8,       /* 26 */
    HALT};                                                /* 36 */
/* clang-format on */

static int call(const int *code, int size, const char *name, int arg0, int arg1) {
    struct vm m = {.sp = 0, .lp = 0, .fp = 0, .steps = 0};
    m.stack[m.sp++] = arg0;
    m.stack[m.sp++] = arg1;
    enter(&m, -1, 2);
    int result = run(&m, code, size);
    printf("%s(%d, %d) = %d in %ld steps, stack depth %d\n", name, arg0, arg1, result, m.steps,
           m.sp);
    return result;
}

#define CALL_VM(code, a, b) call(code, (int)(sizeof code / sizeof code[0]), #code, a, b)

int main(void) {
    int last = 0;
    for (int n = 0; n <= 12; n += 4)
        last = CALL_VM(factorial, n, 0);
    for (int n = 1; n <= 40; n += 13)
        last = CALL_VM(fibonacci, n, 0);
    last = CALL_VM(recursive_sum, 25, 0);
    CALL_VM(squares, 0, 0);
    last += CALL_VM(gcd_loop, 1071, 462);
    last += CALL_VM(gcd_loop, 17, 5);
    printf("opcodes:");
    for (int op = PUSH; op <= HALT; op++)
        printf(" %s", op_names[op]);
    printf("\nexit with %d\n", last % 7);
    return last % 7;
}
