// Rewrites of the relational operators, the logical operators and QUEST.
#include "simplify/simp_internal.h"

NODE* simp_relop(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_EXCLAIM(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_ANDAND(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_OROR(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_QUEST(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_ANDOR_ANDOR(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_redundant_test(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* invert_boolean_tree(NODE* t) { return mk_EXCLAIM(t); }
