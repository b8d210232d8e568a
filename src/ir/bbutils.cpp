// Blocks, edges and labels: the small operations every structural pass uses.
#include <cstdio>
#include <set>
#include <utility>

#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/types.h"
#include "support/cells.h"

BBLK::BBLK(FUNINFO* owner) : serial_object(owner) { owner->bb_made++; }

namespace {

// The loop code rebuilds its facts only when it sees this.
void cfg_touched() {
    if (currfuninfo)
        currfuninfo->cfg_changed = true;
}

TYPE* void_type() { return tp->mk_void(); }

int next_label_number() {
    int n = currfuninfo->last_label - 1;
    if (n < -30000)
        n = -1;
    currfuninfo->last_label = n;
    return n;
}

void unlink_from_bb_list(BBLK* bb) {
    BBLK*& head = currfuninfo->bb_list;
    // Only the head has no prev: a block without one is not in the list.
    if (bb != head && !bb->prev)
        return;
    if (bb == head) {
        head = bb->next;
        if (head)
            head->prev = bb->prev;
    } else {
        if (bb->prev)
            bb->prev->next = bb->next;
        if (bb->next)
            bb->next->prev = bb->prev;
        else if (head)
            head->prev = bb->prev;
    }
    bb->next = bb->prev = nullptr;
}

void unlink_from_creation_chain(BBLK* bb) {
    for (BBLK** p = &currfuninfo->bb_created; *p; p = &(*p)->next_created)
        if (*p == bb) {
            *p = bb->next_created;
            break;
        }
    bb->next_created = nullptr;
}

void free_labels(BBLK* bb) {
    for (LBL* l = bb->labels; l;) {
        LBL* next = l->next;
        delete l;
        l = next;
    }
    bb->labels = nullptr;
}

void set_positions(BBLK* bb) {
    bb->first_psn = bb->statements ? bb->statements->psn : nullptr;
    LIST* last = last_stmt_cell(bb);
    bb->last_psn = last ? last->psn : nullptr;
}

} // namespace

// Edges.

EDGE* mkedge(BBLK* bb, EDGE* list) {
    cfg_touched();
    return new EDGE{bb, -1.0, list};
}

EDGE* add_edge(BBLK* bb, EDGE* list, double weight) {
    if (edge_memberp(bb, list))
        return list;
    cfg_touched();
    return new EDGE{bb, weight, list};
}

EDGE* remove_edge(BBLK* bb, EDGE* list) {
    for (EDGE** p = &list; *p; p = &(*p)->next)
        if ((*p)->bb == bb) {
            EDGE* gone = *p;
            *p = gone->next;
            delete gone;
            cfg_touched();
            break;
        }
    return list;
}

bool edge_memberp(const BBLK* bb, const EDGE* list) {
    for (; list; list = list->next)
        if (list->bb == bb)
            return true;
    return false;
}

int edge_length(const EDGE* list) {
    int n = 0;
    for (; list; list = list->next)
        n++;
    return n;
}

EDGE* rev_edge_list(EDGE* list) { return reverse_cells(list); }

EDGE* erase_edge_list(EDGE* list) { return erase_cells(list); }

EDGE* copy_edge_list(const EDGE* list) {
    EDGE* head = nullptr;
    EDGE** tail = &head;
    for (; list; list = list->next) {
        *tail = new EDGE{list->bb, list->edge, nullptr};
        tail = &(*tail)->next;
    }
    return head;
}

// Payloads move, cells stay: a caller holding the head keeps a valid list.
EDGE* sort_edge_list(EDGE* list) {
    if (!list)
        return list;
    for (EDGE* i = list->next; i; i = i->next)
        for (EDGE* j = list; j != i; j = j->next)
            if (i->bb->dfn < j->bb->dfn) {
                std::swap(i->bb, j->bb);
                std::swap(i->edge, j->edge);
            }
    return list;
}

EDGE* fast_sort_edge_list(EDGE* list) {
    // The address breaks ties, so equal dfn keep one fixed order.
    std::set<std::pair<int, EDGE*>> order;
    for (EDGE* e = list; e; e = e->next)
        order.insert({e->bb->dfn, e});
    EDGE* head = nullptr;
    EDGE** tail = &head;
    for (const auto& [dfn, e] : order) {
        *tail = e;
        tail = &e->next;
    }
    *tail = nullptr;
    return head;
}

// Labels.

LBL* mklabel(int number, LBL* next, BBLK* bb) {
    if (number < 1)
        number = next_label_number();
    return new LBL{next, bb, number, 0};
}

LBL* find_label(int number) {
    if (currfuninfo)
        for (BBLK* b = currfuninfo->bb_created; b; b = b->next_created)
            for (LBL* l = b->labels; l; l = l->next)
                if (l->number == number)
                    return l;
    fflush(stdout);
    fprintf(stderr, "\n!!! COMPILER (OPTIMIZER) ERROR IN 'find_label', INDEX=%d !!!\n", number);
    abort_optimizer();
}

LBL* label_of_bb(BBLK* bb) {
    if (!bb->labels)
        bb->labels = mklabel(0, nullptr, bb);
    return bb->labels;
}

NODE* mk_LABELREF(int number, LS* scope) {
    NODE* n = maketree(LABEL, nullptr, nullptr, void_type(), scope);
    n->mk_label(static_cast<unsigned>(number));
    return n;
}

NODE* mk_LABELREF_to_bb(BBLK* bb, LS* scope) {
    LBL* l = label_of_bb(bb);
    NODE* n = mk_LABELREF(l->number, scope);
    n->label_rec = l;
    l->uses++;
    return n;
}

NODE* mk_BRANCH(BBLK* bb, LS* scope) {
    return maketree(BRANCH, mk_LABELREF_to_bb(bb, scope), nullptr, void_type(), scope);
}

NODE* mk_IF(NODE* cond, NODE* taken, NODE* not_taken, LS* scope) {
    NODE* arms = maketree(COLON, taken, not_taken, void_type(), scope);
    return maketree(IF, cond, arms, void_type(), scope);
}

NODE* mk_LABELDEF(LBL* lbl) {
    NODE* n = maketree(LABELDEF, nullptr, nullptr, void_type(), nullptr);
    n->mk_label(static_cast<unsigned>(lbl->number));
    n->label_rec = lbl;
    return n;
}

void collect_label_operands(NODE* t, std::vector<NODE*>& out) {
    if (!t)
        return;
    const auto add = [&out](NODE* n) {
        if (n && n->op == LABEL)
            out.push_back(n);
    };
    switch (t->op) {
    case BRANCH:
        add(t->left);
        break;
    case IF:
        if (t->right && t->right->op == COLON) {
            add(t->right->left);
            add(t->right->right);
        }
        break;
    case SWITCH: {
        // The chain leans left: the first case is the deepest.
        std::vector<NODE*> items;
        NODE* n = t->right;
        for (; n && n->op == COMMA; n = n->left)
            items.push_back(n->right);
        items.push_back(n);
        for (auto it = items.rbegin(); it != items.rend(); ++it) {
            if (!*it)
                continue;
            if ((*it)->op == CASE)
                add((*it)->right);
            else if ((*it)->op == DEFAULT)
                add((*it)->left);
        }
        break;
    }
    default:
        break;
    }
}

BBLK* label_target(const NODE* label) { return label->label_rec ? label->label_rec->bb : nullptr; }

void set_label_operand(NODE* label, BBLK* bb) {
    if (label->label_rec)
        label->label_rec->uses--;
    LBL* l = label_of_bb(bb);
    l->uses++;
    label->label_rec = l;
    label->mk_label(static_cast<unsigned>(l->number));
}

void drop_label_uses(NODE* t) {
    std::vector<NODE*> labels;
    collect_label_operands(t, labels);
    for (NODE* l : labels)
        if (l->label_rec) {
            l->label_rec->uses--;
            l->label_rec = nullptr;
        }
}

void refresh_label_operands() {
    std::vector<NODE*> labels;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        labels.clear();
        collect_label_operands(last_stmt(b), labels);
        for (NODE* l : labels)
            if (l->label_rec)
                l->mk_label(static_cast<unsigned>(l->label_rec->number));
    }
}

EDGE* list_branch_targets(NODE* t, EDGE* list) {
    std::vector<NODE*> labels;
    collect_label_operands(t, labels);
    // Built backwards and turned, so the list follows the operands.
    EDGE* added = nullptr;
    for (NODE* l : labels)
        if (BBLK* target = label_target(l))
            if (!edge_memberp(target, list) && !edge_memberp(target, added))
                added = mkedge(target, added);
    added = rev_edge_list(added);
    if (!added)
        return list;
    EDGE* tail = added;
    while (tail->next)
        tail = tail->next;
    tail->next = list;
    return added;
}

void remap_labelrefs(NODE* t, BBLK* to, BBLK* from) {
    std::vector<NODE*> labels;
    collect_label_operands(t, labels);
    for (NODE* l : labels)
        if (label_target(l) == from)
            set_label_operand(l, to);
}

void subst_bb_for_bb_in_stmts(BBLK* to, BBLK* from, LIST* statements) {
    LIST* last = statements;
    while (last && last->next)
        last = last->next;
    if (last)
        remap_labelrefs(last->tree, to, from);
}

void fixup_edge_lists(BBLK* bb, NODE* t) {
    std::vector<NODE*> labels;
    collect_label_operands(t, labels);
    for (EDGE* e = bb->succs; e;) {
        EDGE* next = e->next;
        bool named = false;
        for (NODE* l : labels)
            named |= label_target(l) == e->bb;
        if (!named) {
            e->bb->preds = remove_edge(bb, e->bb->preds);
            bb->succs = remove_edge(e->bb, bb->succs);
        }
        e = next;
    }
}

// Blocks.

LIST* last_stmt_cell(const BBLK* bb) {
    LIST* l = bb ? bb->statements : nullptr;
    while (l && l->next)
        l = l->next;
    return l;
}

NODE* last_stmt(const BBLK* bb) {
    LIST* l = last_stmt_cell(bb);
    return l ? l->tree : nullptr;
}

BBLK* mkbblock(LIST* statements, BBLK* next, FUNINFO* owner) {
    BBLK* bb = new BBLK(owner);
    bb->statements = statements;
    bb->next = next;
    // Blocks are made last first, so pushing keeps the chain in source order.
    bb->next_created = owner->bb_created;
    owner->bb_created = bb;
    set_positions(bb);
    cfg_touched();
    return bb;
}

BBLK* insert_new_bb(int dfn, BBLK* after, LIST* statements) {
    OPTASSERT(after != nullptr);
    FUNINFO* f = currfuninfo;
    BBLK* bb = mkbblock(statements, after->next, f);
    f->bb_created = bb->next_created;
    bb->next_created = after->next_created;
    after->next_created = bb;

    bb->prev = after;
    if (after->next)
        after->next->prev = bb;
    else
        f->bb_list->prev = bb;
    after->next = bb;
    bb->dfn = dfn;
    bb->uon = -1;
    bb->labels = mklabel(0, nullptr, bb);
    clear_PT_vectors();
    return bb;
}

void erase_bb_statements(BBLK* bb) {
    drop_label_uses(last_stmt(bb));
    bb->statements = erase_tree_list(bb->statements);
    set_positions(bb);
}

void unlink_bb_edges(BBLK* bb) {
    for (EDGE* e = bb->succs; e; e = e->next)
        if (e->bb != bb)
            e->bb->preds = remove_edge(bb, e->bb->preds);
    for (EDGE* e = bb->preds; e; e = e->next)
        if (e->bb != bb)
            e->bb->succs = remove_edge(bb, e->bb->succs);
    bb->succs = erase_edge_list(bb->succs);
    bb->preds = erase_edge_list(bb->preds);
    cfg_touched();
}

void delink_old_bb(BBLK* bb) {
    unlink_from_bb_list(bb);
    unlink_from_creation_chain(bb);
    erase_bb_statements(bb);
    unlink_bb_edges(bb);
    free_labels(bb);
    delete bb;
}

void insert_stmt_before_stmt_in_bb(NODE* tree, LIST* before, BBLK* bb) {
    LIST** p = &bb->statements;
    while (*p && *p != before)
        p = &(*p)->next;
    *p = mkelist(tree, *p, before ? before->psn : bb->last_psn);
    set_positions(bb);
}

BBLK* split_block(BBLK* bb, LIST* at, bool even_at_head) {
    FUNINFO* f = currfuninfo;
    if (at == bb->statements && bb != f->bb_list && !even_at_head)
        return bb;
    LIST** p = &bb->statements;
    while (*p && *p != at)
        p = &(*p)->next;
    OPTASSERT(*p == at);
    *p = nullptr;

    BBLK* tail = insert_new_bb(0, bb, at);
    tail->loop = bb->loop;
    tail->succs = bb->succs;
    bb->succs = nullptr;
    for (EDGE* e = tail->succs; e; e = e->next)
        for (EDGE* back = e->bb->preds; back; back = back->next)
            if (back->bb == bb)
                back->bb = tail;

    NODE* branch = mk_BRANCH(tail, at->tree ? at->tree->scope : nullptr);
    branch->weight = 1.0;
    bb->statements = append_node_to_list(branch, bb->statements, at->psn);
    set_positions(bb);
    bb->succs = add_edge(tail, nullptr, 1.0);
    tail->preds = add_edge(bb, tail->preds, 1.0);
    return tail;
}

void renumber_bblocks() {
    FUNINFO* f = currfuninfo;
    int dfn = 0;
    int label = 1;
    BBLK* prev = nullptr;
    for (BBLK* b = f->bb_list; b; b = b->next) {
        b->dfn = ++dfn;
        b->prev = prev;
        prev = b;
        int seen = 0;
        for (LBL* l = b->labels; l && seen < 2; l = l->next, seen++)
            if (l->uses)
                l->number = label++;
    }
    f->bb_count = dfn;
    if (f->bb_list) {
        f->bb_list->prev = prev;
        f->blocks_changed = true;
    }
    refresh_label_operands();
}

void clear_visited() {
    for (BBLK* b = currfuninfo->bb_created; b; b = b->next_created)
        b->visited = 0;
}

void erase_bblocks(FUNINFO* f) {
    for (BBLK* b = f->bb_created; b;) {
        BBLK* next = b->next_created;
        b->statements = erase_tree_list(b->statements);
        b->succs = erase_edge_list(b->succs);
        b->preds = erase_edge_list(b->preds);
        free_labels(b);
        delete b;
        b = next;
    }
    f->bb_created = nullptr;
    f->bb_list = nullptr;
    f->bb_count = 0;
    f->arg_prolog = erase_tree(f->arg_prolog);
}
