// ORB and XORB: equal operands, constants that set or flip bits already
// known, and the mask forms of XORB. Two reads of a volatile object may
// differ, and calls run twice: those stay as they are.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --match-full-lines
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <stdio.h>

volatile int port;
static int count;
int tick(void) { return ++count; }

int xor_self(int a) { return a ^ a; }
int or_self(int b) { return b | b; }
// CHECK-LABEL: func xor_self(a: int) -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func or_self(b: int) -> int {{.*}}
// CHECK:         return b

// Each read of a volatile is an access of its own, with its own value.
int xor_volatile(void) { return port ^ port; }
int or_volatile(void) { return port | port; }
int and_volatile(void) { return port & port; }
int xor_calls(void) { return tick() ^ tick(); }
// CHECK-LABEL: func xor_volatile() -> int {{.*}}
// CHECK:         return port ^ port
// CHECK-LABEL: func or_volatile() -> int {{.*}}
// CHECK:         return port | port
// CHECK-LABEL: func and_volatile() -> int {{.*}}
// CHECK:         return port & port
// CHECK-LABEL: func xor_calls() -> int {{.*}}
// CHECK:         return tick() ^ tick()

// The left's bits 4 to 7 are masked out and then set: the ANDB goes.
unsigned or_covers(unsigned c, unsigned d) { return ((c & 0xf0) | d) | 0xf0; }
// CHECK-LABEL: func or_covers(c: unsigned int, d: unsigned int) -> unsigned int {{.*}}
// CHECK:         return d | 240u

// Of the same y, two masks join.
unsigned join_masks(unsigned e, unsigned f) { return ((f & 0xf) | (e & 0xf0)) | (e & 0xf00); }
// CHECK-LABEL: func join_masks(e: unsigned int, f: unsigned int) -> unsigned int {{.*}}
// CHECK:         return (f & 15u) | (e & 4080u)

// Flipping bits that are known one clears them; bits known zero are set.
unsigned flip_ones(unsigned g) { return (g | 0xf) ^ 0x3; }
unsigned flip_zeros(unsigned h) { return (h << 4) ^ 0xf; }
// CHECK-LABEL: func flip_ones(g: unsigned int) -> unsigned int {{.*}}
// CHECK:         return (g | {{.*}}) & 4294967292u
// CHECK-LABEL: func flip_zeros(h: unsigned int) -> unsigned int {{.*}}
// CHECK:         return {{.*}} | 15u

// (i & c) ^ c is (i ^ c) & c, and ~(i & c) is ~i | ~c.
unsigned xor_mask(unsigned i) { return (i & 0xf) ^ 0xf; }
unsigned not_mask(unsigned j) { return (j & 0xf) ^ 0xffffffffu; }
// CHECK-LABEL: func xor_mask(i: unsigned int) -> unsigned int {{.*}}
// CHECK:         return (i ^ 15u) & 15u
// CHECK-LABEL: func not_mask(j: unsigned int) -> unsigned int {{.*}}
// CHECK:         return (j ^ 15u) | 4294967280u

int main(void) {
    port = 6;
    printf("%d %d %d %d %d %d\n", xor_self(9), or_self(9), xor_volatile(), or_volatile(),
           and_volatile(), xor_calls());
    printf("%u %u %u %u %u %u\n", or_covers(0x1234, 0x5), join_masks(0x1234, 0xab),
           flip_ones(0x40), flip_zeros(0x3), xor_mask(0x25), not_mask(0x25));
    return 0;
}
// OUT: 0 9 0 6 6 3
// OUT-NEXT: 245 571 76 63 10 4294967290
