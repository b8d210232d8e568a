// Statements as records: conditional jumps as CBRANCH(test, LABEL) with fall
// through, loops, switch with its case chain, goto, and conditions with &&,
// || and ! turned into jumps.
// RUN: %ondrel-cfe %s -o %t.if
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck %s
// RUN: %ondrel-dump %t.if | FileCheck --check-prefix=DUMP %s

int g;

void if_else(int a) {
    if (a < 3)
        g = 1;
    else
        g = 2;
}
// The test is inverted: jump over the then-part when it is false.
// CHECK-LABEL: begin func 1
// CHECK:      node CBRANCH
// CHECK-NEXT: node GE
// CHECK-NEXT: node NAME level2 1
// CHECK-NEXT: node ICON 3
// CHECK-NEXT: node LABEL [[ELSE:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node ASG
// CHECK:      node BRANCH
// CHECK-NEXT: node LABEL [[END:[0-9]+]]
// CHECK-NEXT: label [[ELSE]]
// CHECK-NEXT: statement
// CHECK-NEXT: node ASG
// CHECK:      label [[END]]
// CHECK-NEXT: end func

void loops(unsigned n, double x) {
    while (n)
        n--;
    do {
        if (n == 5)
            continue;
        n += 2;
    } while (x < n);
    for (;;)
        if (++n > 9)
            break;
}
// A while loop tests at its head; an integer test stands as it is.
// CHECK-LABEL: begin func 2
// CHECK:      label [[WTOP:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node CBRANCH
// CHECK-NEXT: node EXCLAIM
// CHECK-NEXT: node NAME level2 2
// CHECK-NEXT: node LABEL [[WEND:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node MINMIN
// CHECK:      node BRANCH
// CHECK-NEXT: node LABEL [[WTOP]]
// CHECK-NEXT: label [[WEND]]
// A do loop jumps back while its test holds; continue goes to the test. The
// relation of floating point is not turned round.
// CHECK-NEXT: label [[DTOP:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node CBRANCH
// CHECK-NEXT: node NEQ
// CHECK:      node LABEL [[SKIP:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node BRANCH
// CHECK-NEXT: node LABEL [[DTEST:[0-9]+]]
// CHECK-NEXT: label [[SKIP]]
// CHECK-NEXT: statement
// CHECK-NEXT: node PLUSASG
// CHECK:      label [[DTEST]]
// CHECK-NEXT: statement
// CHECK-NEXT: node CBRANCH
// CHECK-NEXT: node LT
// CHECK-NEXT: node NAME level2 3
// CHECK-NEXT: node SCONV
// CHECK-NEXT: node NAME level2 2
// CHECK-NEXT: node LABEL [[DTOP]]
// A loop without test has no CBRANCH at its head; break leaves it.
// CHECK-NEXT: label [[FTOP:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node CBRANCH
// CHECK-NEXT: node ULE
// CHECK-NEXT: node PLUSASG
// CHECK:      node LABEL [[NOBREAK:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node BRANCH
// CHECK-NEXT: node LABEL [[FEND:[0-9]+]]
// CHECK-NEXT: label [[NOBREAK]]
// CHECK-NEXT: statement
// CHECK-NEXT: node BRANCH
// CHECK-NEXT: node LABEL [[FTOP]]
// CHECK-NEXT: label [[FEND]]

int logic(int a, int *p, int b) {
    if (a && (p || !b))
        return 1;
    return 0;
}
// a && (p || !b) is false as soon as a is; p decides alone when it is not
// null; a pointer is tested against a null pointer ICON.
// CHECK-LABEL: begin func 3
// CHECK:      node CBRANCH
// CHECK-NEXT: node EXCLAIM
// CHECK-NEXT: node NAME level2 3
// CHECK-NEXT: node LABEL [[FALSE:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node CBRANCH
// CHECK-NEXT: node NEQ
// CHECK-NEXT: node NAME level2 4
// CHECK-NEXT: node ICON 0
// CHECK-NEXT: node LABEL [[TRUE:[0-9]+]]
// CHECK-NEXT: statement
// CHECK-NEXT: node CBRANCH
// CHECK-NEXT: node NAME level2 5
// CHECK-NEXT: node LABEL [[FALSE]]
// CHECK-NEXT: label [[TRUE]]
// CHECK-NEXT: statement
// CHECK-NEXT: node RETURN
// CHECK:      label [[FALSE]]
// CHECK-NEXT: statement
// CHECK-NEXT: node RETURN

int sw(int v) {
    int r = 0;
    switch (v) {
    case 1:
        r = 10;
    case 2 ... 4:
        r++;
        break;
    case -1:
        goto out;
    }
    switch (v) {
    default:
        r = 7;
    }
out:
    return r;
}
// The cases lean left, in source order, one per value of a range; the
// default is the end of the switch when there is none. Case 1 falls into
// case 2 because its label stands right before it.
// CHECK-LABEL: begin func 4
// CHECK:      node SWITCH 5
// CHECK-NEXT: node NAME level2 1
// CHECK-NEXT: node COMMA
// CHECK-NEXT: node COMMA
// CHECK-NEXT: node COMMA
// CHECK-NEXT: node COMMA
// CHECK-NEXT: node COMMA
// CHECK-NEXT: node CASE
// CHECK-NEXT: node ICON 1
// CHECK-NEXT: node LABEL [[C1:[0-9]+]]
// CHECK-NEXT: node CASE
// CHECK-NEXT: node ICON 2
// CHECK-NEXT: node LABEL [[C2:[0-9]+]]
// CHECK-NEXT: node CASE
// CHECK-NEXT: node ICON 3
// CHECK-NEXT: node LABEL [[C2]]
// CHECK-NEXT: node CASE
// CHECK-NEXT: node ICON 4
// CHECK-NEXT: node LABEL [[C2]]
// CHECK-NEXT: node CASE
// CHECK-NEXT: node ICON -1
// CHECK-NEXT: node LABEL [[CM:[0-9]+]]
// CHECK-NEXT: node DEFAULT
// CHECK-NEXT: node LABEL [[DONE:[0-9]+]]
// CHECK-NEXT: label [[C1]]
// CHECK-NEXT: statement
// CHECK-NEXT: node ASG
// CHECK:      label [[C2]]
// CHECK-NEXT: statement
// CHECK-NEXT: node PLUSPLUS
// CHECK:      node BRANCH
// CHECK-NEXT: node LABEL [[DONE]]
// CHECK-NEXT: label [[CM]]
// CHECK-NEXT: statement
// CHECK-NEXT: node BRANCH
// CHECK-NEXT: node LABEL [[OUT:[0-9]+]]
// CHECK-NEXT: label [[DONE]]
// A switch with only a default.
// CHECK-NEXT: statement
// CHECK-NEXT: node SWITCH 0
// CHECK-NEXT: node NAME level2 1
// CHECK-NEXT: node DEFAULT
// CHECK-NEXT: node LABEL [[D:[0-9]+]]
// CHECK-NEXT: label [[D]]
// CHECK:      label [[OUT]]
// CHECK-NEXT: statement
// CHECK-NEXT: node RETURN

// The optimizer reads all of it into blocks.
// DUMP: func sw(v: int) -> int
// DUMP: switch (v) {case 1: bb{{[0-9]+}}; case 2: [[B:bb[0-9]+]]; case 3: [[B]]; case 4: [[B]]; case -1: bb{{[0-9]+}}; default: bb{{[0-9]+}}}

int sw_limits(long long v, unsigned long long u) {
    switch (v) {
    case 0x7ffffffffffffffeLL ... 0x7fffffffffffffffLL:
        return 1;
    case 5 ... 3:
        return 2;
    }
    switch (u) {
    case 0xffffffffffffffffULL:
        return 3;
    case 0:
        return 4;
    }
    return 0;
}
// A case at the top of its type ends its range; an empty range has no case.
// DUMP-LABEL: func sw_limits(
// DUMP: switch (v) {case 9223372036854775806ll: [[T:bb[0-9]+]]; case 9223372036854775807ll: [[T]]; default: bb{{[0-9]+}}}
// DUMP: switch (u) {case 18446744073709551615ull: bb{{[0-9]+}}; case 0ull: bb{{[0-9]+}}; default: bb{{[0-9]+}}}
