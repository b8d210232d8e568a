// Member accesses: p->f is (*p).f; a member at a constant offset from a
// pointer is read at that address; from -O2 on, a member's address is the
// object's address plus the offset. Bit fields, volatile objects and
// packed members keep the member form, and *&x is x only in x's own type.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.o1
// RUN: %ondrel-opt -O2 %t.if %t.o2
// RUN: %ondrel-dump %t.o1 | FileCheck %s --check-prefix=O1 --match-full-lines
// RUN: %ondrel-dump %t.o2 | FileCheck %s --check-prefix=O2
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o1 | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.o2 | FileCheck %s --check-prefix=OUT

#include <stdio.h>

struct rec {
    int a;
    unsigned bits : 3;
    int c;
    unsigned char d;
};
struct __attribute__((packed)) tight {
    char tag;
    int word;
};

struct rec table[4];
volatile struct rec shared[2];

int fields_at_offsets(struct rec *p) { return (p + 1)->c + (*(p + 2)).a; }
// O1-LABEL: func fields_at_offsets(p: struct rec*) -> int {{.*}}
// O1:         return *((int*)p + 24) + *((int*)p + 32)

int plain_member(struct rec *q) { return q->c; }
// O1-LABEL: func plain_member(q: struct rec*) -> int {{.*}}
// O1:         return (*q).c

// A bit field is read as the field, never as the word around it.
unsigned bit_field(struct rec *r) { return (r + 1)->bits; }
// O1-LABEL: func bit_field(r: struct rec*) -> unsigned int {{.*}}
// O1:         return (*(r + 16)).bits

// A volatile object is read through a volatile access only.
int volatile_member(volatile struct rec *s) { return (s + 1)->c; }
// O1-LABEL: func volatile_member(s: volatile struct rec*) -> int {{.*}}
// O1:         return (*(s + 16)).c

// A member of a packed class need not be aligned for its type.
int packed_member(struct tight *t) { return (t + 1)->word; }
// O1-LABEL: func packed_member(t: struct tight*) -> int {{.*}}
// O1:         return (*(t + 5)).word

// (&x)->f is x.f; *&x is x.
int through_address(int x) {
    return (&table[0])->c + *&x;
}
// O1-LABEL: func through_address(x: int) -> int {{.*}}
// O1:         return {{.*}}table{{.*}}.c + x

// Addresses of members, from -O2 on.
int *member_address(struct rec *u) { return &u->c; }
int *global_member(void) { return &table[2].c; }
int *constant_member(void) { return &((struct rec *)0x1000)->c; }
// O1-LABEL: func member_address(u: struct rec*) -> int* {{.*}}
// O1:         return &(*u).c
// O2-DAG:     return (int*)u + 8
// O2-DAG:     return (int*)&table + 40
// O2-DAG:     return int*(4104)

int main(void) {
    struct rec local[3] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 3, 11, 12}};
    struct tight packed[2] = {{1, 100}, {2, 200}};
    table[0].c = 40;
    shared[1].c = 9;
    printf("%d %d %u %d %d %d\n", fields_at_offsets(local), plain_member(local), bit_field(local),
           volatile_member(shared), packed_member(packed), through_address(7));
    printf("%d %d %d\n", *member_address(local + 1), global_member() == &table[2].c,
           (int)((char *)constant_member() - (char *)0));
    return 0;
}
// OUT: 16 3 6 9 200 47
// OUT-NEXT: 7 1 4104
