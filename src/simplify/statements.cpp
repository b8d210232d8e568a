// Rewrites of assignments, sequences, statements and calls.
#include "simplify/simp_internal.h"

NODE* simp_ASG(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_opASG(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_call(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_COMMAOP(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_IF(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_CBRANCH(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_SWITCH(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_ASSERT(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_MEMCPY(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_EXPT(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_complexop(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* bubble_term_to_top(NODE*, NODE* tree) { return tree; }
