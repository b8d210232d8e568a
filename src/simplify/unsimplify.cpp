// The reverse of some canonical forms, just before a function is written:
// forms that help the optimizer but that code generation does worse with.
//
// An operator-assignment to a plain variable is spelled out, x += e as
// x = x + e: the code generator loads, computes and stores either way, and
// the plain form lets it pick the operand order. Targets reached through an
// address keep the short form, which evaluates the address once. Only an
// update by a variable or a constant is spelled out: a larger operand would
// meet the simplifier again in a form it had not seen, where the short form
// is where the simplifier stops.
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simp_internal.h"

namespace {

// A named variable of integer, enum or pointer type up to the size of int,
// neither volatile nor a bit field: its update is a load, an operation and a
// store whichever way it is written.
bool is_plain_target(const NODE* t) {
    if (!t || t->op != NAME || !t->name_symbol() || !t->type)
        return false;
    if (type_is_volatile(t->type) || symbol_is_volatile(t->name_symbol()))
        return false;
    return (is_integer_type(t->type) || t->type->is_pointer()) && t->type->size() <= 32;
}

NODE* spell_out(NODE* t) {
    if (!t)
        return t;
    t->left = spell_out(t->left);
    t->right = spell_out(t->right);
    if (t->op >= ERASED_OP || op_of_opASG[t->op] == NONE || !is_plain_target(t->left) ||
        !t->right || (t->right->op != NAME && t->right->op != ICON))
        return t;
    TYPE* target_type = t->left->type;
    t = opASG_to_ASG(t);
    if (t->op != ASG)
        return t;
    // The store converts; the tree says so, as everywhere else. Nothing is
    // simplified here: that would bring the short form back.
    if (t->right->type != target_type && is_integer_type(target_type) &&
        is_integer_type(t->right->type))
        t->right = maketree(SCONV, t->right, nullptr, target_type, t->scope);
    return t;
}

} // namespace

void unsimplify() {
    dprintf("\n\n\t\t\t---------- ENTERING 'unsimp_blocks' ----------\n");
    for (BBLK* b = currfuninfo ? currfuninfo->bb_list : nullptr; b; b = b->next)
        for (LIST* l = b->statements; l; l = l->next)
            if (l->tree && !tree_is_arg_prolog(l->tree))
                l->tree = spell_out(l->tree);
}
