// A call of memcpy becomes the block copy MEMCPY from -O1 on; its value is
// the destination, as the call's. At -O0 and through a pointer to the
// function the call stays a call.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O0 %t.if %t.o0
// RUN: %ondrel-opt -O1 %t.if %t.o1
// RUN: %ondrel-dump %t.o0 | FileCheck %s --check-prefix=O0
// RUN: %ondrel-dump %t.o1 | FileCheck %s --check-prefix=O1
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o0 | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o1 | FileCheck %s --check-prefix=OUT
#include <stdio.h>
#include <string.h>

struct pair {
    int a[3];
    char tag;
};
char buf[16];

int copies(int n) {
    struct pair x = {{1, 2, 3}, 'q'}, y;
    memcpy(&y, &x, sizeof x);
    char *p = memcpy(buf, "hello", (unsigned)n);
    // Through a pointer no pass can see through, the call stays a call.
    void *(*volatile copy)(void *, const void *, size_t) = memcpy;
    copy(buf + 1, "E", 1);
    return y.a[2] * 100 + y.tag + (p == buf) + buf[1];
}
// O0-LABEL: func copies(n: int) -> int
// O0:         memcpy((void*)&y, (const void*)&x, (arg unsigned int)16u)
// O1-LABEL: func copies(n: int) -> int
// O1:         MEMCPY((void*)&y, (const void*)&x, 16u)
// O1:         p = {{.*}}MEMCPY((void*)&buf, (const void*)&$str{{[0-9]+}}, (unsigned int)n)
// O1:         copy((void*)

int main(void) {
    int r = copies(6);
    printf("%d %s\n", r, buf);
    return 0;
}
// OUT: 483 hEllo
