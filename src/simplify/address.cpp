// Rewrites of indirection, address and member access.
#include "simplify/simp_internal.h"

NODE* simp_UMULT(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_UAND(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_STDOT(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_STREF(NODE* t, LOOP*, CONTEXT*) { return t; }
