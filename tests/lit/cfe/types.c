// Types as the target lays them out: member offsets and bit fields in bits,
// char signedness, long double, enums, flexible and anonymous members,
// qualifiers, function types.
// RUN: %ondrel-cfe %s -o %t.if
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck --check-prefix=LAYOUT %s
// RUN: %ondrel-dump %t.if | FileCheck %s

typedef struct node {
    char tag;
    long long key;  // 64-bit aligned under the file's ABI
    struct node *next;
    double weight;
} node_t;
// LAYOUT: type struct node size=256 align=64
// LAYOUT-NEXT: member tag offset=0
// LAYOUT-NEXT: member key offset=64
// LAYOUT-NEXT: member next offset=128
// LAYOUT-NEXT: member weight offset=192

struct bits {
    unsigned char a : 3;
    signed char b : 4;
    unsigned short c : 12;
    int : 0;
    _Bool d : 1;
    volatile int e : 7;
};
// LAYOUT: type struct bits size=64 align=32
// LAYOUT-NEXT: member a offset=0 width=3
// LAYOUT-NEXT: member b offset=3 width=4
// LAYOUT-NEXT: member c offset=16 width=12
// LAYOUT-NEXT: member - offset=32 width=0
// LAYOUT-NEXT: member d offset=32 width=1
// LAYOUT-NEXT: member e offset=33 width=7 flags=2

struct anon {
    int kind;
    union {
        float f;
        const int i;
    };
    int tail[];
};
// LAYOUT: type union
// LAYOUT-NEXT: member f offset=0
// LAYOUT-NEXT: member i offset=0 flags=1
// LAYOUT: type struct anon size=64 align=32
// LAYOUT-NEXT: member kind offset=0
// LAYOUT-NEXT: member - offset=32
// LAYOUT-NEXT: member tail offset=64
// LAYOUT: type struct opaque size=0 align=0 incomplete

enum small { A, B = 5 };
enum neg { M = -1, N };
// CHECK: struct node {unsigned char tag; long long key; struct node* next; double weight;}
// CHECK: enum small : unsigned int {A = 0, B = 5}
// CHECK: enum neg : int {M = -1, N = 0}

char c;
signed char sc;
unsigned char uc;
long double ld;
long l;
unsigned long ul;
const volatile int cv;
int *restrict rp;
const char *const names[2];
node_t n;
struct bits b;
struct anon an;
struct opaque *op;
enum small es;
enum neg en;
int noproto();
int variadic(const char *, ...);
void takes(int a[], char m[2][3], int (*f)(void));
// CHECK: global c: unsigned char
// CHECK: global sc: char
// CHECK: global uc: unsigned char
// CHECK: global ld: double
// CHECK: global l: int
// CHECK: global ul: unsigned int
// CHECK: global cv: const volatile int
// CHECK: global rp: int* restrict
// CHECK: global names: const unsigned char* const [2]
// CHECK: global op: struct opaque*
// CHECK: extern noproto: int()
// CHECK: extern variadic: int(const unsigned char*, ...)
// CHECK: extern takes: void(int*, unsigned char (*)[3], int (*)(void))

void use(void) {
    noproto(1);
    variadic("x", 1);
    takes(0, 0, 0);
}
