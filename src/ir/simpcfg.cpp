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
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

namespace {

constexpr int max_rounds = 20;
constexpr int max_rewrites = 20;
constexpr int max_thread_hops = 16;

bool changed;
bool full_mode;

BBLK* entry_bb() { return currfuninfo->bb_list; }

bool is_branch_only(const BBLK* b) {
    return b->statements && !b->statements->next && b->statements->tree->op == BRANCH;
}

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

// Drops the block's out-edges and adds them again from its terminator.
void reset_successors(BBLK* b) {
    for (EDGE* e = b->succs; e; e = e->next)
        e->bb->preds = remove_edge(b, e->bb->preds);
    b->succs = erase_edge_list(b->succs);
    b->succs = list_branch_targets(last_stmt(b), nullptr);
    for (EDGE* e = b->succs; e; e = e->next)
        e->bb->preds = add_edge(b, e->bb->preds, -1.0);
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

// Puts what must still run of `t` in front of the terminator.
void keep_effects(BBLK* b, NODE* t) {
    if (NODE* rest = peel_for_effect(t))
        insert_stmt_before_stmt_in_bb(rest, last_stmt_cell(b), b);
}

// Replaces the terminator by a BRANCH to `to`; `effects` still runs first.
void make_branch(BBLK* b, BBLK* to, NODE* effects) {
    LIST* last = last_stmt_cell(b);
    NODE* old = last->tree;
    last->tree = mk_BRANCH(to, old->scope);
    drop_label_uses(old);
    erase_tree(old);
    keep_effects(b, effects);
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
    BBLK* taken = label_target(t->right->left);
    BBLK* not_taken = label_target(t->right->right);
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

// The cases of a SWITCH in order, DEFAULT last.
std::vector<NODE*> switch_items(NODE* t) {
    std::vector<NODE*> items;
    NODE* n = t->right;
    for (; n && n->op == COMMA; n = n->left)
        items.push_back(n->right);
    items.push_back(n);
    std::reverse(items.begin(), items.end());
    return items;
}

// Frees the COMMA spine only; the items are kept or erased by the caller.
void free_switch_spine(NODE* n) {
    while (n && n->op == COMMA) {
        NODE* left = n->left;
        n->left = n->right = nullptr;
        erase_node(n);
        n = left;
    }
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
    NODE* chain = kept.front();
    for (size_t i = 1; i < kept.size(); i++)
        chain = maketree(COMMA, chain, kept[i], tp->mk_void(), t->scope);
    t->right = maketree(COMMA, chain, def, tp->mk_void(), t->scope);
    return true;
}

// The IF of a block that holds nothing else, or null.
NODE* lone_IF(const BBLK* b) {
    const LIST* s = b->statements;
    return s && !s->next && s->tree->op == IF ? s->tree : nullptr;
}

bool tree_has_DDNODE(const NODE* t) {
    return t && (t->op == DDNODE || tree_has_DDNODE(t->left) || tree_has_DDNODE(t->right));
}

// Conditions that may be moved or combined: nothing observable happens when
// they are evaluated.
bool condition_is_pure(const NODE* c) { return !tree_has_side_effects(c) && !tree_has_DDNODE(c); }

// `t` as it must hold for control to go the chosen way.
NODE* as_tested(NODE* t, bool positive) { return positive ? t : mk_EXCLAIM(t); }

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
        BBLK* b_yes = label_target(u->right->left);
        BBLK* b_no = label_target(u->right->right);
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

constexpr long long asm_kind_comment = 47;

// A block that only carries comments to its BRANCH: dropping it loses no code.
// Inline assembly is code and keeps its block.
bool holds_only_comments_and_branch(const BBLK* b) {
    const LIST* s = b->statements;
    for (; s && s->next; s = s->next)
        if (s->tree->op != ASM || s->tree->value != INT65(asm_kind_comment))
            return false;
    return s && s->tree->op == BRANCH;
}

// if (c) goto A else J; A: <comments> goto J  =>  both labels name J.
bool drop_empty_then_arm(BBLK* b, NODE* t) {
    BBLK* arm = label_target(t->right->left);
    BBLK* join = label_target(t->right->right);
    if (!arm || !join || arm == join || arm == b || arm == entry_bb() ||
        (arm->flags & BB_KEEP_DUPLICATE_TEST) || !holds_only_comments_and_branch(arm) ||
        label_target(last_stmt(arm)->left) != join || !arm->preds || arm->preds->next ||
        edge_length(join->preds) != 2)
        return false;
    set_label_operand(t->right->left, join);
    return true;
}

// The test as a 0/1 value.
NODE* make_boolean(NODE* c) {
    switch (c->op) {
    case EQ:
    case NEQ:
    case LE:
    case LT:
    case GE:
    case GT:
    case ULE:
    case ULT:
    case UGE:
    case UGT:
    case EXCLAIM:
    case ANDAND:
    case OROR:
        return c;
    default:
        return maketree(NEQ, c, mk_ICON(INT65(0), c->type), tp->mk_int(TYPE::ik_int), c->scope);
    }
}

// A variable that may be read and written on a path that did not touch it:
// a local (no other thread may own it then) that is not volatile.
bool may_store_unconditionally(const NODE* lhs) {
    if (lhs->op != NAME || type_is_volatile(lhs->type) || !lhs->type->is_integral())
        return false;
    const SYMTAB* s = lhs->name_symbol();
    return s && s->lex >= 1 && !symbol_is_volatile(s) && s->sclass != SC_STATIC &&
           s->sclass != SC_GLOBAL_DEF && s->sclass != SC_EXTERN_DECL;
}

// if (c) x = x + 1;  =>  x = x + (c != 0), likewise -, | and ^ with 1.
bool fold_increment_diamond(BBLK* b, NODE* t) {
    for (bool arm_taken : {true, false}) {
        BBLK* arm = label_target(arm_taken ? t->right->left : t->right->right);
        BBLK* join = label_target(arm_taken ? t->right->right : t->right->left);
        if (!arm || !join || arm == join || arm == b || arm == entry_bb() ||
            (arm->flags & BB_KEEP_DUPLICATE_TEST) || !arm->preds || arm->preds->next)
            continue;
        const LIST* s = arm->statements;
        if (!s || !s->next || s->next->next || s->next->tree->op != BRANCH ||
            label_target(s->next->tree->left) != join)
            continue;
        const NODE* asg = s->tree;
        if (asg->op != ASG || !may_store_unconditionally(asg->left))
            continue;
        const NODE* rhs = asg->right;
        if ((rhs->op != PLUS && rhs->op != MINUS && rhs->op != ORB && rhs->op != XORB) ||
            !trees_are_congruent(rhs->left, asg->left, 0) || rhs->right->op != ICON ||
            rhs->right->value != INT65(1))
            continue;
        // Evaluated once either way; it must be free of effects and volatile reads
        // to be moved into the assignment.
        NODE* c = t->left;
        if (!condition_is_pure(c) || !(c->type->is_integral() || boolean_inv[c->op] != NONE))
            continue;
        t->left = nullptr;
        NODE* bit = make_boolean(as_tested(c, arm_taken));
        if (!exact_types(bit->type, asg->left->type))
            bit = maketree(SCONV, bit, nullptr, asg->left->type, t->scope);
        NODE* sum = maketree(rhs->op, copy_tree(asg->left, true), bit, rhs->type, rhs->scope);
        insert_stmt_before_stmt_in_bb(mk_ASG(copy_tree(asg->left, true), sum), last_stmt_cell(b),
                                      b);
        make_branch(b, join, nullptr);
        return true;
    }
    return false;
}

bool rewrite_terminator(BBLK* b) {
    NODE* t = last_stmt(b);
    if (!t)
        return false;
    if (thread_terminator(b))
        return true;
    switch (t->op) {
    case IF:
        return rewrite_IF(b, t) || fold_increment_diamond(b, t) || drop_empty_then_arm(b, t) ||
               (full_mode && join_OROR(b, t));
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

void simplify_block(BBLK* b) {
    if (b != entry_bb() && !b->preds) {
        if (b->statements || b->succs)
            empty_block(b);
        return;
    }
    if (NODE* t = last_stmt(b); t && t->op == IF) {
        LIST* last = last_stmt_cell(b);
        t->left = simp_tree(t->left, b->loop, nullptr);
        last->tree = t;
    }
    for (int i = 0; i < max_rewrites && rewrite_terminator(b); i++) {
        reset_successors(b);
        changed = true;
    }
    if (merge_with_successor(b))
        changed = true;
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
    int dfn = 0;
    for (BBLK* b = f->bb_list; b; b = b->next)
        b->dfn = ++dfn;
    f->bb_count = dfn;
}

// A short prefix form of a tree, for the log.
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
        const bool yes = label_target(pt->right->left) == b;
        const bool no = label_target(pt->right->right) == b;
        if (yes == no || (outcome >= 0 && outcome != int(yes)))
            return false;
        outcome = int(yes);
    }
    BBLK* to = label_target(outcome ? t->right->left : t->right->right);
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

void simpcfg(bool full, bool /*may_speculate*/) {
    FUNINFO* f = currfuninfo;
    if (!f || !f->bb_list)
        return;
    bool any = false;
    full_mode = full;
    for (int round = 0; round < max_rounds; round++) {
        changed = false;
        if (full && f->loop_kind == 0) {
            do_early_cross_jumping();
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
