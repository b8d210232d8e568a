// Truth values: simplification of a value used only for its truth, and the
// 0-or-1 form of a truth value.
#include "simplify/simp_internal.h"

NODE* simp_for_control(NODE* t, LOOP*, CONTEXT*) { return t; }

NODE* make_boolean(NODE* t, LOOP* loop, CONTEXT* context) {
    TYPE* int_type = tp->mk_int(TYPE::ik_int);
    if (returns_1_or_0(t))
        return coerce_to_type(int_type, t);
    NODE* zero = mk_ICON(INT65(0), t->type && t->type->is_pointer() ? int_type : t->type);
    if (t->type && t->type->is_pointer())
        zero = coerce_to_type(t->type, zero);
    return simp_node(maketree(NEQ, t, zero, int_type, t->scope), loop, context);
}
