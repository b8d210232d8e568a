// The order in which the optimizer writes a function's blocks. The writer
// follows the block list, which the graph builder keeps in reverse postorder;
// the dump lists blocks in the order reading makes, not in the file's, so the
// order shows in the records.
// RUN: %ondrel-cfe -w %s -o %t.if
// RUN: %ondrel-opt -O1 %t.if %t.opt
// RUN: %python %inputs/ifrecords.py %t.if --detail | FileCheck %s --check-prefix=IF
// RUN: %python %inputs/ifrecords.py %t.opt --detail | FileCheck %s --check-prefix=OPT
// RUN: ondrel-run %t.opt | FileCheck %s --check-prefix=OUT

#include <stdio.h>

// The front end tests at the head of the loop and jumps back to the test.
// The output tests once ahead of the loop and again at its foot: the body
// follows the first test, the exit comes last.
int sum_to(int n) {
    int s = 0;
    for (int i = 1; i <= n; i++)
        s += i;
    return s;
}
// IF-LABEL: begin func 0
// IF:       label [[TOP:[0-9]+]]
// IF-NEXT:  statement
// IF-NEXT:  node CBRANCH
// IF:       node PLUSASG
// IF:       node PLUSPLUS
// IF:       node BRANCH
// IF-NEXT:  node LABEL [[TOP]]
// IF-NEXT:  label {{[0-9]+}}
// IF:       node RETURN
// OPT-LABEL: begin func 0
// OPT-NOT:  label
// OPT:      node CBRANCH
// OPT-NEXT: node GT
// OPT-NEXT: node NAME level2 [[I:[0-9]+]]
// OPT-NEXT: node NAME level2 [[N:[0-9]+]]
// OPT-NEXT: node LABEL [[EXIT:[0-9]+]]
// OPT-NEXT: label [[BODY:[0-9]+]]
// OPT-NEXT: statement
// OPT-NEXT: node ASG
// OPT-NEXT: node NAME level2 [[S:[0-9]+]]
// OPT-NEXT: node PLUS
// OPT-NEXT: node NAME level2 [[S]]
// OPT:      node PLUSPLUS
// OPT:      node CBRANCH
// OPT-NEXT: node GT
// OPT-NEXT: node NAME level2 [[I]]
// OPT-NEXT: node NAME level2 [[N]]
// OPT-NEXT: node LABEL [[EXIT]]
// OPT-NEXT: statement
// OPT-NEXT: node BRANCH
// OPT-NEXT: node LABEL [[BODY]]
// OPT-NEXT: label [[EXIT]]
// OPT-NEXT: statement
// OPT-NEXT: node RETURN
// OPT-NOT:  statement
// OPT:      end func

// The front end writes the then-part where the test falls through. In the
// output each arm ends in its own copy of the return, and an arm that ends
// the function is laid out after the test even when it is the jump's target,
// at the cost of a BRANCH to the other arm.
int sign(int x) {
    int r;
    if (x < 0) {
        r = -1;
        printf("neg ");
    } else {
        r = 1;
        printf("pos ");
    }
    return r;
}
// IF-LABEL: begin func 1
// IF:       node CBRANCH
// IF-NEXT:  node GE
// IF:       node LABEL [[ELSE:[0-9]+]]
// IF-NEXT:  statement
// IF-NEXT:  node ASG
// IF-NEXT:  node NAME
// IF-NEXT:  node ICON -1
// IF:       node BRANCH
// IF-NEXT:  node LABEL [[JOIN:[0-9]+]]
// IF-NEXT:  label [[ELSE]]
// IF-NEXT:  statement
// IF-NEXT:  node ASG
// IF-NEXT:  node NAME
// IF-NEXT:  node ICON 1
// IF:       label [[JOIN]]
// IF-NEXT:  statement
// IF-NEXT:  node RETURN
// OPT-LABEL: begin func 1
// OPT:      node CBRANCH
// OPT-NEXT: node GE
// OPT:      node LABEL [[ELSE:[0-9]+]]
// OPT-NEXT: statement
// OPT-NEXT: node BRANCH
// OPT-NEXT: node LABEL [[THEN:[0-9]+]]
// OPT-NEXT: label [[ELSE]]
// OPT-NEXT: statement
// OPT-NEXT: node CALL
// OPT:      node RETURN
// OPT-NEXT: node NAME
// OPT-NEXT: node ICON 1
// OPT-NEXT: label [[THEN]]
// OPT-NEXT: statement
// OPT-NEXT: node CALL
// OPT:      node RETURN
// OPT-NEXT: node NAME
// OPT-NEXT: node ICON -1
// OPT:      node RETURN
// OPT-NOT:  label
// OPT:      end func

int main(void) {
    printf("%d %d %d\n", sum_to(10), sign(-3), sign(4));
    return 0;
}
// OUT: neg pos 55 -1 1
