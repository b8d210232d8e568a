// Every statement has the position of its C statement; names of the file,
// its headers and #line directives go into the file-name table.
// RUN: %ondrel-cfe -I%S/Inputs %s -o %t.if
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck %s
#include "inline.h"

int g;

int body(int a) {
    g = a;
    if (a)
        g = from_header(a);
    for (int i = 0;
         i < a;
         i++)
        g++;
#line 100 "generated.y"
    return g;
}
// CHECK-DAG: file [[MAIN:[0-9]+]] {{.*}}positions.c
// CHECK-DAG: file [[HDR:[0-9]+]] {{.*}}inline.h
// CHECK-DAG: file [[GEN:[0-9]+]] generated.y

// The header's function is used, so it is written, with the header's positions.
// CHECK-LABEL: begin func 0
// CHECK:      statement line 1 col 12 file [[HDR]]
// CHECK-NEXT: node ASG
// CHECK:      statement line 2 col 5 file [[HDR]]
// CHECK-NEXT: node PLUSASG
// CHECK:      statement line 3 col 5 file [[HDR]]
// CHECK-NEXT: node RETURN

// The prolog has the function's position; a loop's test and step have their
// own lines.
// CHECK-LABEL: begin func 2
// CHECK:      end locals line 9
// CHECK-NEXT: statement line 9 col 5 file [[MAIN]]
// CHECK:      statement line 10 col 5 file [[MAIN]]
// CHECK-NEXT: node ASG
// CHECK:      statement line 11 col 5 file [[MAIN]]
// CHECK-NEXT: node CBRANCH
// CHECK:      statement line 12 col 9 file [[MAIN]]
// CHECK:      begin block line 13
// CHECK:      statement line 13 col 14 file [[MAIN]]
// CHECK-NEXT: node ASG
// CHECK:      statement line 14 col 10 file [[MAIN]]
// CHECK-NEXT: node CBRANCH
// CHECK:      statement line 16 col 9 file [[MAIN]]
// CHECK-NEXT: node PLUSPLUS
// CHECK:      statement line 15 col 10 file [[MAIN]]
// CHECK-NEXT: node PLUSPLUS
// CHECK:      end block
// CHECK-NEXT: statement line 100 col 5 file [[GEN]]
// CHECK-NEXT: node RETURN
// CHECK:      end func line 101
