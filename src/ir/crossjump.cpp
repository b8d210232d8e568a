// Cross jumping: blocks that end with the same statements keep one copy of
// them, and the others jump to it. It saves code; a path through a split
// block gains a jump.
#include <cstring>
#include <vector>

#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/simpcfg_internal.h"

namespace simpcfg_impl {

namespace {

// A call's exception-table entry says where its handlers are: two calls of
// different entries are not the same statement.
bool has_handled_call(const NODE* t) {
    for (; t; t = t->left) {
        if ((t->op == CALL || t->op == UCALL) && t->call_id != 0)
            return true;
        if (has_handled_call(t->right))
            return true;
    }
    return false;
}

} // namespace

bool statements_are_congruent(const NODE* a, const NODE* b) {
    if (a->op != b->op)
        return false;
    if (a->op == ASM)
        return a->value == b->value && a->text && b->text && strcmp(a->text, b->text) == 0;
    if (has_handled_call(a) || has_handled_call(b))
        return false;
    return trees_are_congruent(a, b, 1);
}

bool tree_lists_are_congruent(const LIST* a, const LIST* b) {
    for (; a && b; a = a->next, b = b->next)
        if (!statements_are_congruent(a->tree, b->tree))
            return false;
    return !a && !b;
}

namespace {

bool has_prolog(const BBLK* b) {
    return b == entry_bb() && b->statements && tree_is_arg_prolog(b->statements->tree);
}

// The cells of a block ahead of its terminator.
std::vector<LIST*> body_cells(const BBLK* b) {
    std::vector<LIST*> cells;
    for (LIST* s = b->statements; s && s->next; s = s->next)
        cells.push_back(s);
    return cells;
}

// The block's statements after `keep_last` (all of them when null) go, and a
// BRANCH to `to` ends it instead.
void cut_and_branch(BBLK* b, LIST* keep_last, BBLK* to) {
    LIST* gone = keep_last ? keep_last->next : b->statements;
    PSN* psn = gone ? gone->psn : b->last_psn;
    drop_label_uses(last_stmt(b));
    if (keep_last)
        keep_last->next = erase_tree_list(gone);
    else
        b->statements = erase_tree_list(gone);
    b->statements = append_node_to_list(mk_BRANCH(to, nullptr), b->statements, psn);
    b->first_psn = b->statements->psn;
    b->last_psn = psn;
    reset_successors(b);
}

// Blocks that leave the function the same way: the earlier of two jumps to
// the later. A block the duplication step would copy back stays as it is.
bool merge_equal_exits() {
    std::vector<BBLK*> exits;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        if (!b->succs && b->statements && b != entry_bb())
            exits.push_back(b);
    bool any = false;
    for (size_t i = exits.size(); i-- > 1;) {
        BBLK* keep = exits[i];
        if (!keep || block_may_be_duplicated(keep))
            continue;
        for (size_t j = 0; j < i; j++) {
            BBLK* gone = exits[j];
            if (!gone || !tree_lists_are_congruent(gone->statements, keep->statements))
                continue;
            dprintf("\n\tBB %d is redundant with BB %d\n", gone->dfn, keep->dfn);
            cut_and_branch(gone, nullptr, keep);
            exits[j] = nullptr;
            any = true;
        }
    }
    return any;
}

// How many statements ahead of the terminators the two blocks end with alike.
size_t common_tail_length(const std::vector<LIST*>& a, const std::vector<LIST*>& b) {
    size_t k = 0;
    while (k < a.size() && k < b.size() &&
           statements_are_congruent(a[a.size() - 1 - k]->tree, b[b.size() - 1 - k]->tree))
        k++;
    return k;
}

// b and p both end with the same statements and a BRANCH to s: p drops them
// and jumps to b's copy, which is split off b unless it is all of b.
bool share_tail_with_predecessor(BBLK* b) {
    BBLK* s = b->succs->bb;
    const std::vector<LIST*> mine = body_cells(b);
    for (EDGE* e = s->preds; e; e = e->next) {
        BBLK* p = e->bb;
        if (p == b || p == s || p->loop != b->loop || !p->succs || p->succs->next ||
            !(p->dfn < b->dfn || p == b->next) || has_prolog(p) || last_stmt(p)->op != BRANCH)
            continue;
        const std::vector<LIST*> theirs = body_cells(p);
        const size_t k = common_tail_length(mine, theirs);
        if (k == 0)
            continue;
        // The entry is never a jump target: split_block cuts it even at its head.
        BBLK* tail =
            k == mine.size() && b != entry_bb() ? b : split_block(b, mine[mine.size() - k], false);
        if (k == theirs.size())
            dprintf("\n\tBB %d is redundant with BB %d\n", p->dfn, b->dfn);
        cut_and_branch(p, k == theirs.size() ? nullptr : theirs[theirs.size() - k - 1], tail);
        return true;
    }
    return false;
}

bool share_common_tails() {
    bool any = false;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        NODE* t = last_stmt(b);
        if (!t || t->op != BRANCH || is_branch_only(b) || !b->succs || b->succs->next ||
            b->succs->bb == b || has_prolog(b))
            continue;
        any |= share_tail_with_predecessor(b);
    }
    return any;
}

} // namespace

bool cross_jump() {
    FUNINFO* f = currfuninfo;
    if (!f || !f->bb_list || !f->bb_list->next || opt_level() < 1)
        return false;
    dprintf("\n\n\t\t\t---------- ENTERING 'cross_jump' ----------\n");
    const bool exits = merge_equal_exits();
    const bool tails = share_common_tails();
    return exits || tails;
}

} // namespace simpcfg_impl

void do_early_cross_jumping() {
    if (simpcfg_impl::cross_jump())
        rebuildcfg();
}
