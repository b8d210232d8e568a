// ANDB with a constant: the mask needs no bits that the left cannot have,
// the left need not compute bits that the mask drops, and a mask that
// keeps every bit the left can have goes. Signed shifts, signed bit fields
// and narrowing conversions keep what decides the masked bits.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %ondrel-dump %t.opt | FileCheck %s --match-full-lines
// RUN: ondrel-run %t.if | FileCheck %s --check-prefix=OUT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <stdio.h>

struct flags {
    signed one : 1;
    unsigned three : 3;
    signed four : 4;
};

// Known zeros on both sides: no bit survives, and nothing is left to run.
int disjoint(int a) { return (a & 0xff) & 0xffffff00; }
unsigned scaled(unsigned b) { return (b * 8) & 7; }
// CHECK-LABEL: func disjoint(a: int) -> int {{.*}}
// CHECK:         return 0
// CHECK-LABEL: func scaled(b: unsigned int) -> unsigned int {{.*}}
// CHECK:         return 0u

// An unsigned shift by 28 leaves four bits; a mask of eight keeps them.
unsigned top_nibble(unsigned c) { return (c >> 28) & 0xff; }
// CHECK-LABEL: func top_nibble(c: unsigned int) -> unsigned int {{.*}}
// CHECK:         return c >> 28

// The ORB's bit 8 is masked away; the conversion of an unsigned char keeps
// its eight bits whole.
int low_byte(unsigned char d) { return (d | 0x100) & 0xff; }
// CHECK-LABEL: func low_byte(d: unsigned char) -> int {{.*}}
// CHECK:         return (int)d

// The sum needs only the low byte of its operands: the inner mask goes and
// the constant is cut to 0x34.
int masked_sum(int e) { return ((e & 0xff) + 0x1234) & 0xff; }
// CHECK-LABEL: func masked_sum(e: int) -> int {{.*}}
// CHECK:         return (e + 52) & 255

// (f | 3) has bit 0 set whatever f is.
unsigned set_bit(unsigned f) { return (f | 3) & 1; }
// CHECK-LABEL: func set_bit(f: unsigned int) -> unsigned int {{.*}}
// CHECK:         return 1u

// A comparison is 0 or 1: only bit 0 of the mask counts.
int test_even(int g, int h) { return (g < h) & 6; }
// CHECK-LABEL: func test_even(g: int, h: int) -> int {{.*}}
// CHECK:         return 0

// The arithmetic shift copies bit 31 into the top four bits, so the ORB's
// bit 31 is still needed under a mask of bits 28 to 31 and 0.
int sign_copies(int i) { return ((i | (int)0x80000001) >> 4) & (int)0xf0000001; }
// CHECK-LABEL: func sign_copies(i: int) -> int {{.*}}
// CHECK:         return ((i | -2147483648) >> 4) & -268435455

// The conversion decides bit 16, which the mask asks for: it stays, and
// then the mask keeps every bit the value can have.
int zero_extended(int j) { return (unsigned short)j & 0x1ffff; }
// CHECK-LABEL: func zero_extended(j: int) -> int {{.*}}
// CHECK:         return (int)(unsigned short)j

// Unsigned fields have no bits above their width; a signed field copies its
// sign into them, and a one-bit signed field is 0 or -1, not 0 or 1.
int field_masks(struct flags *k) {
    return (k->three & 7) * 10000 + (k->three & 8) * 1000 + (k->four & 0x10) + (k->one & 2);
}
// CHECK-LABEL: func field_masks(k: struct flags*) -> int {{.*}}
// CHECK:         return {{.*}}(int)(*k).three * 10000 + {{.*}}(*k).four & 16{{.*}}(*k).one & 2{{.*}}

int same(int m) { return m & m; }
// CHECK-LABEL: func same(m: int) -> int {{.*}}
// CHECK:         return m

int main(void) {
    struct flags fl = {-1, 5, -8};
    printf("%d %u %u %d %d %u %d\n", disjoint(-1), scaled(7), top_nibble(0xa0000000u),
           low_byte(200), masked_sum(0x2cd), set_bit(4), test_even(1, 2));
    printf("%d %d %d %d\n", sign_copies(5), sign_copies(-5), zero_extended(-1), field_masks(&fl));
    printf("%d\n", same(-42));
    return 0;
}
// OUT: 0 0 10 200 1 1 0
// OUT-NEXT: -268435456 -268435455 65535 50018
// OUT-NEXT: -42
