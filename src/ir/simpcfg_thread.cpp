// Value-driven threading in the CFG simplifier: a BRANCH into a block that
// only tests a variable goes straight where the test goes, when the branching
// block has just stored a constant in that variable.
#include <vector>

#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/simpcfg_internal.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

namespace simpcfg_impl {
namespace {

void collect_names(const NODE* t, std::vector<const NODE*>& out) {
    if (!t)
        return;
    if (t->op == NAME)
        out.push_back(t);
    collect_names(t->left, out);
    collect_names(t->right, out);
}

// The NAME of the one variable a pure test reads, when it reads one and that
// one is private: then only statements naming it can change what it holds.
const NODE* tested_variable(const NODE* c) {
    if (!condition_is_pure(c))
        return nullptr;
    std::vector<const NODE*> names;
    collect_names(c, names);
    if (names.empty())
        return nullptr;
    for (const NODE* n : names)
        if (n->sym != names.front()->sym || !exact_types(n->type, names.front()->type))
            return nullptr;
    return tree_is_private_scalar(names.front()) ? names.front() : nullptr;
}

// Whether the tree may store into the private variable s: an assignment with s
// in its target, or an operator whose effects are not known that names s.
bool tree_may_change(const NODE* t, const SYMTAB* s) {
    if (!t)
        return false;
    if (t->op >= SSA_PHI && t->op <= SSA_CHI)
        return true;
    const bool is_call = t->op == CALL || t->op == UCALL;
    if ((side_effects[t->op] == SE_ASSIGNS && sym_appears_in_tree(s, t->left)) ||
        (side_effects[t->op] == SE_ALWAYS && !is_call && sym_appears_in_tree(s, t)))
        return true;
    return tree_may_change(t->left, s) || tree_may_change(t->right, s);
}

// The constant assignment to x that holds when the block leaves by its
// terminator: the last one in the block, with nothing after it that may
// change x. Null when there is none.
const NODE* constant_at_exit(const BBLK* b, const NODE* x) {
    const SYMTAB* s = x->name_symbol();
    const NODE* known = nullptr;
    for (const LIST* l = b->statements; l && l->next; l = l->next) {
        const NODE* t = l->tree;
        if (t->op == ASG && t->left->op == NAME && t->left->sym == s && t->right->op == ICON &&
            TYPE_IS_INT(t->right->type) && exact_types(t->left->type, x->type))
            known = t;
        else if (tree_may_change(t, s))
            known = nullptr;
    }
    return known;
}

NODE* fold_bottom_up(NODE* t) {
    if (!t)
        return nullptr;
    t->left = fold_bottom_up(t->left);
    t->right = fold_bottom_up(t->right);
    return fold_constants(t);
}

NODE* with_value(NODE* t, const SYMTAB* s, INT65 v) {
    if (!t)
        return nullptr;
    if (t->op == NAME && t->sym == s) {
        NODE* k = mk_ICON(v, t->type);
        erase_tree(t);
        return k;
    }
    t->left = with_value(t->left, s, v);
    t->right = with_value(t->right, s, v);
    return t;
}

// 1 or 0 for the test's outcome with x holding v, as the target computes it;
// -1 when the folder cannot tell for certain.
int outcome_with_value(const NODE* c, const NODE* x, INT65 v) {
    NODE* folded = fold_bottom_up(with_value(copy_tree(c, true), x->name_symbol(), v));
    int outcome = -1;
    if (folded->op == ICON && TYPE_IS_INT(folded->type))
        outcome = truncate_to_type(folded->value, folded->type).is_zero() ? 0 : 1;
    erase_tree(folded);
    return outcome;
}

} // namespace

// The target must hold the IF alone: a statement ahead of it could change x,
// and would be skipped. Loop heads and kept duplicate tests stay reached as
// plain threading leaves them.
BBLK* thread_by_value(BBLK* from, BBLK* target) {
    const LIST* s = target->statements;
    if (!s || s->next || s->tree->op != IF || (target->flags & BB_KEEP_DUPLICATE_TEST) ||
        bb_is_loop_head(target))
        return target;
    const NODE* t = s->tree;
    const NODE* x = tested_variable(t->left);
    const NODE* asg = x ? constant_at_exit(from, x) : nullptr;
    if (!asg)
        return target;
    const INT65 stored = convert_integer_constant(
        truncate_to_type(asg->right->value, asg->right->type), asg->left->type);
    const int outcome = outcome_with_value(t->left, x, stored);
    if (outcome < 0)
        return target;
    BBLK* to = outcome ? taken_target(t) : not_taken_target(t);
    return to && to != from ? to : target;
}

} // namespace simpcfg_impl
