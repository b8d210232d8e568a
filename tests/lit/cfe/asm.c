// Assembly without operands is an assembly record: at file level ahead of the
// functions, in a function among its statements.
// RUN: %ondrel-cfe %s -o %t.if
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck %s
// RUN: %ondrel-opt -O2 %t.if %t.opt

__asm__(".globl marker");

int g;

void with_asm(void) {
    g = 1;
    __asm__ volatile("nop");
    g = 2;
}
// CHECK:      assembly .globl marker
// CHECK-NEXT: begin func 1
// CHECK:      node ICON 1
// CHECK-NEXT: assembly nop
// CHECK-NEXT: statement line 14
