// The CFG simplifier: removes dead blocks, threads jumps, folds decided
// branches and merges straight-line chains, round after round.
#include <algorithm>
#include <string>
#include <vector>

#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/simpcfg_internal.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "loopnest/loopnest.h"
#include "simplify/simplify.h"

namespace simpcfg_impl {

BBLK* entry_bb() { return currfuninfo->bb_list; }

bool is_branch_only(const BBLK* b) {
    return b->statements && !b->statements->next && b->statements->tree->op == BRANCH;
}

void reset_successors(BBLK* b) {
    for (EDGE* e = b->succs; e; e = e->next)
        e->bb->preds = remove_edge(b, e->bb->preds);
    b->succs = erase_edge_list(b->succs);
    b->succs = list_branch_targets(last_stmt(b), nullptr);
    for (EDGE* e = b->succs; e; e = e->next)
        e->bb->preds = add_edge(b, e->bb->preds, -1.0);
}

namespace {

// What a dropped test did, as statements in front of the block's last one:
// one statement for each part of a sequence, as the statement list has them.
void insert_effects_before_last(NODE* effects, BBLK* b) {
    if (effects->op == COMMAOP) {
        NODE* first = effects->left;
        NODE* rest = effects->right;
        effects->left = effects->right = nullptr;
        erase_node(effects);
        if (first)
            insert_effects_before_last(first, b);
        if (rest)
            insert_effects_before_last(rest, b);
        return;
    }
    insert_stmt_before_stmt_in_bb(effects, last_stmt_cell(b), b);
}

} // namespace

void make_branch(BBLK* b, BBLK* to, NODE* effects) {
    LIST* last = last_stmt_cell(b);
    NODE* old = last->tree;
    last->tree = mk_BRANCH(to, old->scope);
    drop_label_uses(old);
    erase_tree(old);
    if (NODE* rest = peel_for_effect(effects))
        insert_effects_before_last(rest, b);
}

namespace {

bool tree_has_DDNODE(const NODE* t) {
    return t && (t->op == DDNODE || tree_has_DDNODE(t->left) || tree_has_DDNODE(t->right));
}

} // namespace

bool condition_is_pure(const NODE* c) { return !tree_has_side_effects(c) && !tree_has_DDNODE(c); }

NODE* as_tested(NODE* t, bool positive) { return positive ? t : mk_EXCLAIM(t); }

BBLK* taken_target(const NODE* t) { return label_target(t->right->left); }
BBLK* not_taken_target(const NODE* t) { return label_target(t->right->right); }

BBLK* sole_predecessor(const BBLK* b) {
    return b->preds && !b->preds->next ? b->preds->bb : nullptr;
}

int statement_count(const BBLK* b) {
    int n = 0;
    for (const LIST* s = b->statements; s; s = s->next)
        n++;
    return n;
}

std::string tree_text(const NODE* t) {
    if (!t)
        return "-";
    std::string s = node_operator_name[t->op] ? node_operator_name[t->op] : "?";
    if (t->op == NAME && t->name_symbol() && t->name_symbol()->name)
        return s + " " + t->name_symbol()->name;
    if (t->op == ICON)
        return s + " " + std::to_string(static_cast<long long>(t->icon_svalue()));
    if (t->op == LABEL)
        return s + " " + std::to_string(t->label_value());
    if (t->left)
        s += "(" + tree_text(t->left) + (t->right ? ", " + tree_text(t->right) : "") + ")";
    return s;
}

std::vector<NODE*> switch_items(NODE* t) {
    std::vector<NODE*> items;
    NODE* n = t->right;
    for (; n && n->op == COMMA; n = n->left)
        items.push_back(n->right);
    items.push_back(n);
    std::reverse(items.begin(), items.end());
    return items;
}

void free_switch_spine(NODE* n) {
    while (n && n->op == COMMA) {
        NODE* left = n->left;
        n->left = n->right = nullptr;
        erase_node(n);
        n = left;
    }
}

NODE* switch_chain(const std::vector<NODE*>& items, const NODE* like) {
    NODE* chain = items.front();
    for (size_t i = 1; i < items.size(); i++)
        chain = maketree(COMMA, chain, items[i], tp->mk_void(), like->scope);
    return chain;
}

} // namespace simpcfg_impl

using namespace simpcfg_impl;

namespace {

constexpr int max_rounds = 20;
constexpr int max_rewrites = 20;
constexpr int max_thread_hops = 16;
// A duplicated block may hold this many operators in all; with one copy per
// block and round at most, code grows by a bounded amount.
constexpr int max_duplicated_operators = 16;
constexpr long long asm_kind_comment = 47;

bool changed;
bool full_mode;
bool speculate;

// A block without predecessors that is not the entry: its statements and
// out-edges go, and successors left without predecessors follow.
void empty_block(BBLK* b) {
    std::vector<BBLK*> work{b};
    while (!work.empty()) {
        BBLK* d = work.back();
        work.pop_back();
        erase_bb_statements(d);
        for (EDGE* e = d->succs; e; e = e->next) {
            if (e->bb == d)
                continue;
            e->bb->preds = remove_edge(d, e->bb->preds);
            if (!e->bb->preds && e->bb != entry_bb() && e->bb->statements)
                work.push_back(e->bb);
        }
        d->succs = erase_edge_list(d->succs);
        d->preds = erase_edge_list(d->preds);
    }
    changed = true;
}

// Where a jump to `target` really lands, following blocks that only branch.
BBLK* thread_jump(BBLK* from, BBLK* target) {
    std::vector<BBLK*> seen{target};
    for (int hops = 0; hops < max_thread_hops; hops++) {
        if ((target->flags & BB_KEEP_DUPLICATE_TEST) || bb_is_loop_head(target) ||
            !is_branch_only(target))
            break;
        BBLK* next = label_target(target->statements->tree->left);
        if (!next || next == target || next == from)
            break;
        target = next;
        // A ring of branches: stopping where it closes keeps the answer stable.
        if (std::find(seen.begin(), seen.end(), next) != seen.end())
            break;
        seen.push_back(next);
    }
    return target;
}

bool thread_terminator(BBLK* b) {
    std::vector<NODE*> labels;
    collect_label_operands(last_stmt(b), labels);
    bool threaded = false;
    for (NODE* l : labels) {
        BBLK* target = label_target(l);
        if (!target)
            continue;
        BBLK* to = thread_jump(b, target);
        if (to != target) {
            set_label_operand(l, to);
            threaded = true;
        }
    }
    return threaded;
}

// A BRANCH into a test that the constant just stored decides: the jump goes
// where the test would send it.
bool thread_branch_by_value(BBLK* b) {
    NODE* t = last_stmt(b);
    BBLK* target = t->op == BRANCH ? label_target(t->left) : nullptr;
    if (!target)
        return false;
    BBLK* to = thread_by_value(b, target);
    if (to == target)
        return false;
    set_label_operand(t->left, to);
    return true;
}

// An IF or SWITCH whose value is COMMAOP runs the left side first.
bool peel_comma_value(BBLK* b, NODE*& value) {
    if (!value || value->op != COMMAOP)
        return false;
    NODE* comma = value;
    insert_stmt_before_stmt_in_bb(comma->left, last_stmt_cell(b), b);
    value = comma->right;
    comma->left = comma->right = nullptr;
    erase_node(comma);
    return true;
}

bool rewrite_IF(BBLK* b, NODE* t) {
    if (peel_comma_value(b, t->left))
        return true;
    BBLK* taken = taken_target(t);
    BBLK* not_taken = not_taken_target(t);
    if (!taken || !not_taken)
        return false;
    if (t->left->op == ICON) {
        const bool zero = t->left->value == INT65(0);
        make_branch(b, zero ? not_taken : taken, nullptr);
        return true;
    }
    if (taken == not_taken) {
        NODE* cond = t->left;
        t->left = nullptr;
        make_branch(b, taken, cond);
        return true;
    }
    return false;
}

bool rewrite_SWITCH(BBLK* b, NODE* t) {
    if (peel_comma_value(b, t->left))
        return true;
    std::vector<NODE*> items = switch_items(t);
    NODE* def = items.back();
    if (!def || def->op != DEFAULT)
        return false;
    BBLK* def_bb = label_target(def->left);
    if (t->left->op == ICON) {
        BBLK* to = def_bb;
        for (NODE* c : items)
            if (c->op == CASE && c->left->op == ICON && c->left->value == t->left->value) {
                to = label_target(c->right);
                break;
            }
        if (!to)
            return false;
        make_branch(b, to, nullptr);
        return true;
    }
    std::vector<NODE*> kept;
    for (NODE* c : items)
        if (c != def && label_target(c->right) != def_bb)
            kept.push_back(c);
    if (kept.empty()) {
        NODE* value = t->left;
        t->left = nullptr;
        make_branch(b, def_bb, value);
        return true;
    }
    if (kept.size() + 1 == items.size())
        return false;
    // Cases that go where the default goes are dropped.
    free_switch_spine(t->right);
    for (NODE* c : items)
        if (c != def && std::find(kept.begin(), kept.end(), c) == kept.end()) {
            if (LBL* l = c->right->label_rec)
                l->uses--;
            erase_tree(c);
        }
    kept.push_back(def);
    t->right = switch_chain(kept, t);
    return true;
}

// The IF of a block that holds nothing else, or null.
NODE* lone_IF(const BBLK* b) {
    const LIST* s = b->statements;
    return s && !s->next && s->tree->op == IF ? s->tree : nullptr;
}

// if (a) goto L else B; B: if (b) goto L else M  =>  if (a || b) goto L else M.
// B must hold only its IF: anything else in B would be skipped on the a-false path.
bool join_OROR(BBLK* a_bb, NODE* t) {
    NODE* taken = t->right->left;
    NODE* not_taken = t->right->right;
    BBLK* a_yes = label_target(taken);
    BBLK* a_no = label_target(not_taken);
    if (!a_yes || !a_no || a_yes == a_no)
        return false;
    for (bool b_on_no : {true, false}) {
        BBLK* b_bb = b_on_no ? a_no : a_yes;
        BBLK* l = b_on_no ? a_yes : a_no;
        // A loop-rotated test is kept as it is.
        if (b_bb == a_bb || (b_bb->flags & BB_KEEP_DUPLICATE_TEST))
            continue;
        NODE* u = lone_IF(b_bb);
        if (!u)
            continue;
        BBLK* b_yes = taken_target(u);
        BBLK* b_no = not_taken_target(u);
        if (!b_yes || !b_no || b_yes == b_no || (b_yes != l && b_no != l))
            continue;
        if (!condition_is_pure(t->left) || !condition_is_pure(u->left))
            continue;
        BBLK* m = b_yes == l ? b_no : b_yes;
        NODE* a_cond = as_tested(t->left, b_on_no);
        NODE* b_cond = as_tested(copy_tree(u->left, true), b_yes == l);
        t->left = maketree(OROR, a_cond, b_cond, tp->mk_int(TYPE::ik_int), t->scope);
        set_label_operand(taken, l);
        set_label_operand(not_taken, m);
        return true;
    }
    return false;
}

// A block that only carries comments to its BRANCH: dropping it loses no code.
// Inline assembly is code and keeps its block.
bool holds_only_comments_and_branch(const BBLK* b) {
    const LIST* s = b->statements;
    for (; s && s->next; s = s->next)
        if (s->tree->op != ASM || s->tree->value != INT65(asm_kind_comment))
            return false;
    return s && s->tree->op == BRANCH;
}

// if (c) goto A else J; A: <comments> goto J  =>  both labels name J, and the
// next rewrite keeps only what must run of c. A loop head stays, as threading
// keeps it: the loop code would lose its entry.
bool drop_empty_then_arm(BBLK* b, NODE* t) {
    BBLK* arm = taken_target(t);
    BBLK* join = not_taken_target(t);
    if (!arm || !join || arm == join || arm == b || arm == entry_bb() ||
        (arm->flags & BB_KEEP_DUPLICATE_TEST) || bb_is_loop_head(arm) ||
        !holds_only_comments_and_branch(arm) || label_target(last_stmt(arm)->left) != join ||
        sole_predecessor(arm) != b || edge_length(join->preds) != 2)
        return false;
    set_label_operand(t->right->left, join);
    return true;
}

// A test that jumps back to its own block: the loop code may find the loop
// empty and remove it.
bool offer_empty_loop(BBLK* b, NODE* t) {
    if (taken_target(t) != b && not_taken_target(t) != b)
        return false;
    return remove_empty_loop(b);
}

// Whether two pure tests hold in the same states: congruent, or one the
// negation of the inverse relation of the other, as marking leaves them.
bool tests_agree(const NODE* a, const NODE* b) {
    if (trees_are_congruent(a, b, 0))
        return true;
    if (b->op == EXCLAIM)
        std::swap(a, b);
    if (a->op != EXCLAIM || !a->left)
        return false;
    const NODE* e = a->left;
    return e->left && e->right && b->left && b->right && boolean_inv[e->op] == b->op &&
           tree_is_trivially_invertible(e) && trees_are_congruent(e->left, b->left, 0) &&
           trees_are_congruent(e->right, b->right, 0);
}

// if (c) goto T else F, and the next block holds only if (c) goto T else F:
// the first test becomes a jump to the second, free once the two are laid
// out in this order. The next block must hold nothing but its IF, or what it
// does would run where it did not, and could change what c reads before c is
// tested again. Both tests must be pure: congruence says nothing of trees
// with effects, and a volatile access stays in the statement that makes it.
bool drop_repeated_test(BBLK* b, NODE* t) {
    BBLK* n = b->next;
    NODE* u = n ? lone_IF(n) : nullptr;
    if (!u || n == entry_bb() || n->loop != b->loop || (n->flags & BB_KEEP_DUPLICATE_TEST) ||
        bb_is_loop_head(n) || !condition_is_pure(t->left) || !condition_is_pure(u->left))
        return false;
    BBLK* yes = taken_target(t);
    BBLK* no = not_taken_target(t);
    if (!yes || !no || yes == no)
        return false;
    const bool same = taken_target(u) == yes && not_taken_target(u) == no;
    const bool swapped = taken_target(u) == no && not_taken_target(u) == yes;
    if (!(same && tests_agree(t->left, u->left)) && !(swapped && bools_are_congruent(t, u)))
        return false;
    make_branch(b, n, nullptr);
    return true;
}

bool rewrite_terminator(BBLK* b) {
    NODE* t = last_stmt(b);
    if (!t)
        return false;
    if (thread_terminator(b) || (opt_level() >= 1 && thread_branch_by_value(b)))
        return true;
    switch (t->op) {
    case IF:
        return rewrite_IF(b, t) || fold_increment_diamond(b, t) || drop_empty_then_arm(b, t) ||
               offer_empty_loop(b, t) || (full_mode && drop_repeated_test(b, t)) ||
               merge_two_armed_assignment(b, t, full_mode, speculate) ||
               (full_mode && join_OROR(b, t)) || fuse_loop_exit_test(b, t);
    case SWITCH:
        return rewrite_SWITCH(b, t);
    default:
        return false;
    }
}

// The entry's prolog stays alone, so that a tail call can jump behind it.
bool entry_keeps_prolog(const BBLK* b) {
    return b == entry_bb() && b->statements && tree_is_arg_prolog(b->statements->tree);
}

bool merge_with_successor(BBLK* b) {
    if (!b->succs || b->succs->next)
        return false;
    BBLK* s = b->succs->bb;
    LIST* last = last_stmt_cell(b);
    if (!last || last->tree->op != BRANCH || s == b || s == entry_bb() || !s->preds ||
        s->preds->next || entry_keeps_prolog(b) || (s->flags & BB_KEEP_DUPLICATE_TEST))
        return false;

    LIST** p = &b->statements;
    while (*p != last)
        p = &(*p)->next;
    drop_label_uses(last->tree);
    *p = erase_tree_list(last);
    *p = s->statements;
    s->statements = nullptr;

    b->succs = erase_edge_list(b->succs);
    s->preds = erase_edge_list(s->preds);
    b->succs = s->succs;
    s->succs = nullptr;
    for (EDGE* e = b->succs; e; e = e->next)
        for (EDGE* back = e->bb->preds; back; back = back->next)
            if (back->bb == s)
                back->bb = b;
    b->last_psn = s->last_psn;
    delink_old_bb(s);
    return true;
}

// Two tests of one condition, both ahead of this block and both going here or
// to one other place: the block is the exit of a loop whose test was copied in
// front of it. The mark keeps it as it is for the loop code.
void mark_duplicate_test(BBLK* b) {
    if (opt_level() < 2 || (b->flags & BB_KEEP_DUPLICATE_TEST) || edge_length(b->preds) != 2)
        return;
    BBLK* p1 = b->preds->bb;
    BBLK* p2 = b->preds->next->bb;
    if (p1 == b || p2 == b || p1->dfn >= b->dfn || p2->dfn >= b->dfn)
        return;
    NODE* t1 = last_stmt(p1);
    NODE* t2 = last_stmt(p2);
    if (!t1 || !t2 || t1->op != IF || t2->op != IF || !condition_is_pure(t1->left) ||
        !condition_is_pure(t2->left))
        return;
    BBLK* yes = taken_target(t1);
    BBLK* no = not_taken_target(t1);
    if (!yes || !no || yes == no)
        return;
    if (taken_target(t2) == yes && not_taken_target(t2) == no) {
        if (!tests_agree(t1->left, t2->left))
            return;
    } else if (taken_target(t2) == no && not_taken_target(t2) == yes) {
        if (!bools_are_congruent(t1, t2))
            return;
        // The second test in the form of the first.
        t2->left = mk_EXCLAIM(t2->left);
        std::swap(t2->right->left, t2->right->right);
    } else {
        return;
    }
    b->flags |= BB_KEEP_DUPLICATE_TEST;
    changed = true;
}

// The loop control statements of a block whose IF ends a counted loop.
bool holds_loop_control(const BBLK* b) {
    for (const LIST* s = b->statements; s; s = s->next)
        if (s->tree->op == LOOP_OP || s->tree->op == ENDLOOP || s->tree->op == INITLOOP)
            return true;
    return false;
}

int operator_count(const NODE* t) {
    if (!t)
        return 0;
    const int self = number_of_operands[t->op] != NONE && number_of_operands[t->op] > 0;
    return self + operator_count(t->left) + operator_count(t->right);
}

// What may not be copied: calls and the like cost too much; the others have
// identities (assertions, shared CSE pairs, dependence nodes, SSA and loop
// markers, the argument prolog, inline assembly) that a copy would break.
bool tree_resists_copy(const NODE* t) {
    for (; t; t = t->left) {
        switch (t->op) {
        case CALL:
        case UCALL:
        case SQRT:
        case ASSERT:
        case NASSERT:
        case CSE_DUPE:
        case CSE_ORIG:
        case DDNODE:
        case PCOMMA:
        case LOOP_OP:
        case ENDLOOP:
        case INITLOOP:
        case SSA_PHI:
        case SSA_USE:
        case SSA_DEF:
        case SSA_MU:
        case SSA_CHI:
            return true;
        case ASM:
            return t->value != INT65(asm_kind_comment);
        default:
            if (tree_resists_copy(t->right))
                return true;
        }
    }
    return false;
}

bool ok_to_dupe_stmt(const NODE* t) {
    return operator_count(t) < max_duplicated_operators && !tree_resists_copy(t);
}

// The only successor is a copy of the other: cross jumping made them one.
bool ends_congruent_diamond(const BBLK* s) {
    if (edge_length(s->preds) != 2)
        return false;
    const BBLK* p1 = s->preds->bb;
    const BBLK* p2 = s->preds->next->bb;
    if (p1 == p2 || edge_length(p1->succs) != 1 || edge_length(p2->succs) != 1)
        return false;
    const int n = statement_count(p1);
    if (n != statement_count(p2) || n < 2)
        return false;
    const LIST* a = p1->statements;
    const LIST* b = p2->statements;
    for (; a->next; a = a->next, b = b->next)
        if (!statements_are_congruent(a->tree, b->tree))
            return false;
    return true;
}

// An IF that may be copied into its predecessors: its targets lie ahead, at
// most one way in comes from behind (the loop's own back edge), and a test
// dearer than a plain variable is copied into two predecessors at most.
bool IF_may_be_duplicated(const BBLK* s, const NODE* t) {
    if (holds_loop_control(s))
        return false;
    for (const EDGE* e = s->succs; e; e = e->next)
        if (e->bb->dfn <= s->dfn)
            return false;
    int from_behind = 0;
    int single = 0;
    for (const EDGE* e = s->preds; e; e = e->next) {
        from_behind += e->bb->dfn > s->dfn;
        single += edge_length(e->bb->succs) == 1;
    }
    return from_behind <= 1 && (t->left->op == NAME || single <= 2);
}

} // namespace

bool simpcfg_impl::block_may_be_duplicated(const BBLK* s) {
    if (!s->statements)
        return false;
    if (!s->statements->next && s->statements->tree->op == BRANCH)
        return label_target(s->statements->tree->left) != s;
    if (opt_level() == 0 || size_speed_goal() < 3 || pass_disable("tail_duplication"))
        return false;
    if ((s->flags & BB_KEEP_DUPLICATE_TEST) || ends_congruent_diamond(s))
        return false;
    int operators = 0;
    for (const LIST* l = s->statements; l; l = l->next) {
        if (!ok_to_dupe_stmt(l->tree))
            return false;
        operators += operator_count(l->tree);
    }
    if (operators >= max_duplicated_operators)
        return false;
    const NODE* t = last_stmt(s);
    switch (t->op) {
    case RETURN: {
        const NODE* v = t->right;
        return v && (v->op == NAME || v->op == ICON || v->op == FCON || v->op == LCON);
    }
    case IF:
        return IF_may_be_duplicated(s, t);
    default:
        return false;
    }
}

namespace {

// b ends in a BRANCH to s, which has other ways in: s's statements are copied
// in place of the BRANCH. Blocks that only branch are left to threading, which
// has already followed every one it may.
bool duplicate_successor(BBLK* b) {
    if (!b->succs || b->succs->next)
        return false;
    LIST* last = last_stmt_cell(b);
    BBLK* s = b->succs->bb;
    if (!last || last->tree->op != BRANCH || s == b || s == entry_bb() || is_branch_only(s) ||
        s->loop != b->loop || s->trace || entry_keeps_prolog(b) || !block_may_be_duplicated(s))
        return false;
    // The copy of a lone IF into the block laid out before it is what the
    // repeated test rule of full mode undoes: the two would take turns.
    if (full_mode && s == b->next && lone_IF(s))
        return false;
    drop_label_uses(last->tree);
    erase_tree(last->tree);
    last->tree = nullptr;
    LIST* tail = last->next;
    for (const LIST* l = s->statements; l; l = l->next) {
        NODE* copy = copy_tree(l->tree, true);
        std::vector<NODE*> labels;
        collect_label_operands(l->next ? nullptr : copy, labels);
        for (NODE* label : labels)
            if (label->label_rec)
                label->label_rec->uses++;
        if (!last->tree) {
            last->tree = copy;
            last->psn = l->psn;
        } else {
            last->next = mkelist(copy, tail, l->psn);
            last = last->next;
        }
    }
    b->last_psn = s->last_psn;
    reset_successors(b);
    return true;
}

void simplify_block(BBLK* b) {
    if (b != entry_bb() && !b->preds) {
        if (b->statements || b->succs)
            empty_block(b);
        return;
    }
    mark_duplicate_test(b);
    if (NODE* t = last_stmt(b); t && t->op == IF) {
        LIST* last = last_stmt_cell(b);
        // The test is only a truth value.
        t->left = simp_for_control(simp_tree(t->left, b->loop, nullptr), b->loop, nullptr);
        last->tree = t;
    }
    for (int i = 0; i < max_rewrites && rewrite_terminator(b); i++) {
        reset_successors(b);
        changed = true;
    }
    if (merge_with_successor(b) || duplicate_successor(b))
        changed = true;
}

void renumber_dfn() {
    FUNINFO* f = currfuninfo;
    int dfn = 0;
    for (BBLK* b = f->bb_list; b; b = b->next)
        b->dfn = ++dfn;
    f->bb_count = dfn;
}

// Blocks that lost every predecessor go, and dfn follows the list again.
void delete_dead_blocks() {
    FUNINFO* f = currfuninfo;
    bool again = true;
    while (again) {
        again = false;
        for (BBLK* b = f->bb_list->next; b;) {
            BBLK* next = b->next;
            if (!b->preds) {
                if (b->statements || b->succs)
                    empty_block(b);
                delink_old_bb(b);
                changed = again = true;
            }
            b = next;
        }
    }
    renumber_dfn();
}

// A block holding only an IF, reached only from IFs that tested a congruent
// pure condition, is reached with the outcome known: its IF becomes a BRANCH.
// Purity matters: a volatile read or an effect must happen on every test.
bool remove_redundant_IF(BBLK* b) {
    NODE* t = lone_IF(b);
    if (!t || b == entry_bb() || !b->preds || !condition_is_pure(t->left))
        return false;
    int outcome = -1; // 1: reached when the test held, 0: when it failed
    for (EDGE* e = b->preds; e; e = e->next) {
        BBLK* p = e->bb;
        NODE* pt = last_stmt(p);
        if (p == b || !pt || pt->op != IF || !trees_are_congruent(pt->left, t->left, 0))
            return false;
        const bool yes = taken_target(pt) == b;
        const bool no = not_taken_target(pt) == b;
        if (yes == no || (outcome >= 0 && outcome != int(yes)))
            return false;
        outcome = int(yes);
    }
    BBLK* to = outcome ? taken_target(t) : not_taken_target(t);
    if (!to)
        return false;
    dprintf("\n\tIF in bb %d is redundant with bb %d:\n\t\t%s\n", b->dfn, b->preds->bb->dfn,
            tree_text(t).c_str());
    make_branch(b, to, nullptr);
    reset_successors(b);
    return true;
}

void remove_redundant_IFs() {
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        if (remove_redundant_IF(b))
            changed = true;
}

} // namespace

void simpcfg(bool full, bool may_speculate) {
    FUNINFO* f = currfuninfo;
    if (!f || !f->bb_list)
        return;
    bool any = false;
    full_mode = full;
    speculate = may_speculate;
    for (int round = 0; round < max_rounds; round++) {
        changed = false;
        if (full && f->loop_kind == 0) {
            if (cross_jump()) {
                changed = true;
                renumber_dfn();
            }
            remove_redundant_IFs();
        }
        for (BBLK* b = f->bb_list; b; b = b->next)
            simplify_block(b);
        delete_dead_blocks();
        if (!changed)
            break;
        any = true;
    }
    if (any)
        rebuildcfg();
}
