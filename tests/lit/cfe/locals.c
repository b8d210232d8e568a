// Initialization of automatic objects: scalars by assignment, constant
// aggregates copied from an image, others cleared and then set member by
// member; compound literals as temporaries set where they are evaluated.
// RUN: %ondrel-cfe %s -o %t.if
// RUN: %ondrel-dump %t.if | FileCheck %s

struct p { int x, y; char tag[4]; };

int use(struct p *, int *, char *);

int init(int n) {
    int k = n + 1;
    struct p a = {1, 2, "ab"};
    struct p b = {0};
    struct p c = {n, .tag = "x"};
    struct p d = {n, n, {1, 2, 3, 4}};
    int arr[4] = {n};
    char s[] = "hi";
    char t[8] = "hi";
    return use(&a, arr, s) + use(&b, 0, t) + use(&c, 0, 0) + use(&d, &k, 0);
}
// CHECK-LABEL: static $init1: const struct p
// CHECK-NEXT:  data 1
// CHECK-NEXT:  data 2
// CHECK-NEXT:  data "ab\000"
// CHECK-NEXT:  skip 1
// CHECK-LABEL: static $zero1: const struct p
// CHECK-NOT:   data
// CHECK-LABEL: static $init2: const unsigned char[3]
// CHECK-NEXT:  data "hi\000"
// CHECK-LABEL: static $init3: const unsigned char[8]
// CHECK-NEXT:  data "hi\000"
// CHECK-NEXT:  skip 5

// CHECK-LABEL: func init(
// CHECK:      k = n + 1
// CHECK-NEXT: a = $init1
// CHECK-NEXT: b = $zero1
// The rest of c is cleared first; d is set completely, so not.
// CHECK-NEXT: c = $zero1
// CHECK-NEXT: c.x = n
// CHECK-NEXT: *&c.tag = unsigned char(120)
// CHECK-NEXT: *(&c.tag + 1) = unsigned char(0)
// CHECK-NEXT: d.x = n
// CHECK-NEXT: d.y = n
// CHECK-NEXT: *&d.tag = unsigned char(1)
// CHECK-NEXT: *(&d.tag + 1) = unsigned char(2)
// CHECK-NEXT: *(&d.tag + 2) = unsigned char(3)
// CHECK-NEXT: *(&d.tag + 3) = unsigned char(4)
// An array is copied by ARASG, which the text shows as an assignment.
// CHECK-NEXT: arr = $zero2
// CHECK-NEXT: *&arr = n
// CHECK-NEXT: s = $init2
// CHECK-NEXT: t = $init3

struct name { signed char text[4]; int len; };

int signed_text(int n) {
    struct name x = {"\xff\x80", n};
    return x.text[0] + x.len;
}
// The characters of a string set one by one are values of the element type.
// CHECK-LABEL: func signed_text(
// CHECK:      x = $zero3
// CHECK-NEXT: *&x.text = signed char(-1)
// CHECK-NEXT: *(&x.text + 1) = signed char(-128)
// CHECK-NEXT: *(&x.text + 2) = signed char(0)
// CHECK-NEXT: x.len = n

int literals(int n) {
    int *p = (int[]){n, 2};
    struct p q = (struct p){.y = n};
    int r = use(&(struct p){3, 4}, p, 0);
    int g = n ?: r;
    return r + q.y + g;
}
// CHECK-LABEL: func literals(
// CHECK:      p = (int*)(*&$T1 = n, (*(&$T1 + 4) = 2, &$T1))
// CHECK-NEXT: q = *($T2 = $zero1, ($T2.y = n, &$T2))
// CHECK-NEXT: r = use(($T3 = $init4, &$T3), p, unsigned char*(0))
// CHECK-NEXT: g = ($T4 = n, $T4 ? $T4 : r)
