// Rewrites of PLUS, MINUS, MULT, the shifts and the unary operators.
#include "simplify/simp_internal.h"

NODE* simp_PLUS(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_MINUS(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_MULT(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_shift(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_unary(NODE* t, LOOP*, CONTEXT*) { return t; }
