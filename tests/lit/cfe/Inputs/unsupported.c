/* One construct the front end rejects per macro. */
#include <setjmp.h>

int f(int n, int *p) {
#if defined(VLA)
    int a[n];
    return a[0];
#elif defined(VLA_SIZEOF)
    return (int)sizeof(int[n]);
#elif defined(COMPLEX)
    _Complex double z = n;
    return (int)__real__ z;
#elif defined(ASM_OPERANDS)
    __asm__("add %0, %0, #1" : "+r"(n));
    return n;
#elif defined(COMPUTED_GOTO)
    void *target = &&out;
    goto *target;
out:
    return n;
#elif defined(SETJMP)
    static jmp_buf env;
    return setjmp(env) + n;
#elif defined(STMT_EXPR)
    return ({ int t = n; t + 1; });
#elif defined(ALLOCA)
    return *(int *)__builtin_alloca(n);
#elif defined(ATOMIC)
    _Atomic int a = n;
    return a;
#elif defined(NOT_CONSTANT)
    static int *q = p;
    return *q;
#else
    return n + *p;
#endif
}
