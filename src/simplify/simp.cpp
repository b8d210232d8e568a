// The simplifier's entry points: a bottom-up walk of a tree and the
// per-node dispatcher. For now a node is only folded when its operands are
// constants, and conversions are simplified; the canonical forms of the
// arithmetic operators come with their own handlers.
#include <cstdio>

#include "driver/diag.h"
#include "driver/driver.h"
#include "ir/node.h"
#include "simplify/simplify.h"

namespace {

bool is_constant(const NODE* t) { return t && (t->op == ICON || t->op == FCON); }

// The common-subexpression pairs share their right side: a rewrite inside
// one would leave the other pointing at a freed node.
[[noreturn]] void bad_opcode(const NODE* t) {
    const char* name = node_operator_name[t->op] ? node_operator_name[t->op] : "?";
    fprintf(stderr, "\n\n   !!! Bad opcode in simplifier (%d) %s !!!\n", t->op, name);
    dprintf("\n\n   !!! Bad opcode in simplifier (%d) %s !!!\n", t->op, name);
    abort_optimizer();
}

} // namespace

NODE* simp_node(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t)
        return t;
    if (t->op == CSE_DUPE || t->op == CSE_ORIG)
        bad_opcode(t);
    if (is_constant(t->left) && (!t->right || is_constant(t->right))) {
        const int op = t->op;
        NODE* folded = fold_constants(t);
        if (folded != t || folded->op != op)
            return folded;
    }
    switch (t->op) {
    case SCONV:
        return simp_SCONV(t, loop, context);
    case PCONV:
        return simp_PCONV(t, loop, context);
    case ACONV:
        return simp_ACONV(t, loop, context);
    default:
        return t;
    }
}

NODE* simp_tree(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t)
        return t;
    if (t->op == CSE_DUPE || t->op == CSE_ORIG)
        bad_opcode(t);
    t->left = simp_tree(t->left, loop, context);
    t->right = simp_tree(t->right, loop, context);
    return simp_node(t, loop, context);
}
