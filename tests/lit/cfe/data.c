// Initial data of file-level objects: scalars of every kind, aggregates with
// padding and gaps, strings, addresses, bit fields, and what has no data.
// RUN: %ondrel-cfe %s -o %t.if
// RUN: %ondrel-dump %t.if | FileCheck %s
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck --check-prefix=RAW %s

struct pad { char c; int i; short s; };
struct bits { unsigned a : 3, b : 5; int c : 4; unsigned : 0; unsigned d : 2; };
union u { char c; double d; };

signed char sc = -1;
unsigned short us = 65535;
long long big = 0x123456789LL;
unsigned long long ubig = 0xFFFFFFFFFFFFFFFFULL;
unsigned long long u32 = 0xFFFFFFFFu;
float f = 0.1f;
double d = -2.5;
_Bool yes = 7;
int zero = 0;
int none;
extern int elsewhere;
int *pel = &elsewhere;
// CHECK: global sc:
// CHECK-NEXT: data signed char(-1)
// CHECK: global us: unsigned short
// CHECK-NEXT: data unsigned short(65535)
// CHECK: global big: long long
// CHECK-NEXT: data 4886718345ll
// CHECK: global ubig: unsigned long long
// CHECK-NEXT: data 18446744073709551615ull
// CHECK: global u32: unsigned long long
// CHECK-NEXT: data 4294967295ull
// CHECK: global f: float
// CHECK-NEXT: data 0x1.99999ap-4f
// CHECK: global d: double
// CHECK-NEXT: data -0x1.4p+1
// CHECK: global yes: bool
// CHECK-NEXT: data bool(1)
// CHECK: global zero: int
// CHECK-NEXT: data 0
// CHECK: global none: int
// CHECK-NOT: data
// CHECK: global pel: int*
// CHECK-NEXT: data &elsewhere
// CHECK: extern elsewhere: int

struct pad p = {'a', 2, 3};
struct pad parr[2] = {[1].s = 9};
static const int table[2][3] = {{1, 2, 3}, {4}};
// CHECK: global p: struct pad
// CHECK-NEXT: data unsigned char(97)
// CHECK-NEXT: skip 3
// CHECK-NEXT: data 2
// CHECK-NEXT: data short(3)
// CHECK-NEXT: skip 2
// CHECK: global parr: struct pad[2]
// CHECK-NEXT: skip 20
// CHECK-NEXT: data short(9)
// CHECK-NEXT: skip 2
// CHECK: static table: const int[2][3]
// CHECK-NEXT: data 1
// CHECK-NEXT: data 2
// CHECK-NEXT: data 3
// CHECK-NEXT: data 4
// CHECK-NEXT: skip 8

char s1[] = "ab";
char s2[6] = "ab";
char s3[2] = "ab";
unsigned char bytes[4] = {1, 2};
const char *msg = "ab";
// CHECK: global s1: unsigned char[3]
// CHECK-NEXT: data "ab\000"
// CHECK: global s2: unsigned char[6]
// CHECK-NEXT: data "ab\000"
// CHECK-NEXT: skip 3
// CHECK: global s3: unsigned char[2]
// CHECK-NEXT: data "ab"
// CHECK: global bytes: unsigned char[4]
// CHECK-NEXT: data unsigned char(1)
// CHECK-NEXT: data unsigned char(2)
// CHECK-NEXT: skip 2
// CHECK: global msg: const unsigned char*
// CHECK-NEXT: data &$str1
// CHECK: static $str1: const unsigned char[3]
// CHECK-NEXT: data "ab\000"

int *pe = &parr[1].i + 0;
short *pm = &p.s;
const int *pt = &table[1][2];
int (*pf)(void);
int get(void) { return 1; }
int (*fns[2])(void) = {get, 0};
void *null = 0;
char *fixed = (char *)0x1000;
unsigned long addr = (unsigned long)&zero;
int *lit = (int[]){7, 8};
// CHECK: global pe: int*
// CHECK-NEXT: data &parr + 16
// CHECK: global pm: short*
// CHECK-NEXT: data &p + 8
// CHECK: global pt: const int*
// CHECK-NEXT: data &table + 20
// CHECK: global fns: int (*[2])(void)
// CHECK-NEXT: data &get
// CHECK-NEXT: data int (*)(void)(0)
// CHECK: global null: void*
// CHECK-NEXT: data void*(0)
// CHECK: global fixed: unsigned char*
// CHECK-NEXT: data unsigned char*(4096)
// CHECK: global addr: unsigned int
// CHECK-NEXT: data (unsigned long)&zero
// CHECK: global lit: int*
// CHECK-NEXT: data &$lit1
// CHECK: static $lit1: int[2]
// CHECK-NEXT: data 7
// CHECK-NEXT: data 8

// Bit fields of one byte are gathered: a = 5, b = 17 (byte 0: 5 | 17 << 3 =
// 141, byte 1: 17 >> 5 = 0 with c = -1 in bits 8 to 11), d after the :0 at byte 4.
struct bits bf = {5, 17, -1, 3};
union u un = {.d = 1.0};
// CHECK: global bf: struct bits
// CHECK-NEXT: data unsigned char(141)
// CHECK-NEXT: data unsigned char(15)
// CHECK-NEXT: skip 2
// CHECK-NEXT: data unsigned char(3)
// CHECK-NEXT: skip 3
// CHECK: global un: union u
// CHECK-NEXT: data 0x1p+0

// Each record 105 names its object and ends with ENDINIT; objects without
// initializer have none.
// RAW-LABEL: init sc
// RAW-NEXT: node ICON -1
// RAW-NEXT: node ENDINIT
// RAW-NOT: init none
// RAW-NOT: init elsewhere
// RAW: init p{{$}}
// RAW-NEXT: node ICON 97
// RAW-NEXT: node SKIP 3
// RAW-NEXT: node ICON 2
// RAW-NEXT: node ICON 3
// RAW-NEXT: node SKIP 2
// RAW-NEXT: node ENDINIT
