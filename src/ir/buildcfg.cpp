// The control flow graph: built once from the reader's statement list, and
// rebuilt into reverse postorder after structural change.
#include <map>

#include "driver/client.h"
#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/types.h"

namespace {

// Stands in front of find_label's walk while the blocks are being built.
std::map<int, LBL*> label_mapping;

LBL* lookup_label(int number) {
    auto it = label_mapping.find(number);
    return it != label_mapping.end() ? it->second : find_label(number);
}

NODE* mk_function_URETURN() {
    FUNINFO* f = currfuninfo;
    NODE* name = mk_NAME(f->symbol, f->scope);
    return maketree(URETURN, name, nullptr, tp->mk_void(), f->scope);
}

bool is_jump(const NODE* t) { return t->op == BRANCH || t->op == URETURN || t->op == RETURN; }

bool can_fall_through(const NODE* t) {
    switch (t->op) {
    case BRANCH:
    case URETURN:
    case RETURN:
    case CBRANCH:
    case IF:
    case LABELDEF:
        return false;
    default:
        return true;
    }
}

bool has_default(const NODE* cases) {
    if (!cases)
        return false;
    if (cases->op == DEFAULT)
        return true;
    return cases->op == COMMA && cases->right && cases->right->op == DEFAULT;
}

// The walk runs from the last statement to the first; `open` collects the
// statements of the block being built, in execution order, and each closed
// block goes in front of the ones already made.
class cfg_builder {
public:
    explicit cfg_builder(FUNINFO* f) : f(f) {}

    BBLK* run(LIST* s) {
        exit = mkbblock(mkelist(mk_function_URETURN(), nullptr, f->psn), nullptr, f);
        exit->labels = mklabel(0, nullptr, exit);
        label_mapping[exit->labels->number] = exit->labels;
        front = exit;

        if (!s || !is_jump(s->tree))
            s = mkelist(mk_function_URETURN(), s, s ? s->psn : f->psn);
        while (s) {
            LIST* cell = s;
            s = s->next;
            cell->next = nullptr;
            take(cell, s);
        }
        close();
        return front;
    }

    BBLK* exit = nullptr;

private:
    void close() {
        if (!open)
            return;
        front = mkbblock(open, front, f);
        open = nullptr;
    }

    void start(LIST* cell) {
        open = erase_tree_list(open);
        open = cell;
    }

    void take(LIST* cell, LIST* before) {
        NODE* t = cell->tree;
        switch (t->op) {
        case RETURN:
        case BRANCH:
        case URETURN:
            // What follows up to the next label cannot be reached.
            start(cell);
            break;
        case SWITCH:
            if (!has_default(t->right))
                add_default(t);
            close();
            start(cell);
            break;
        case IF:
            close();
            start(cell);
            break;
        case LABELDEF: {
            close();
            const int number = t->label_value();
            LS* scope = t->scope;
            PSN* psn = cell->psn;
            front->labels = mklabel(number, front->labels, front);
            // Two labels of one number would send jumps to the wrong block.
            OPTASSERT(label_mapping.count(number) == 0);
            label_mapping[number] = front->labels;
            erase_tree(t);
            delete cell;
            if (!before || can_fall_through(before->tree)) {
                NODE* branch =
                    maketree(BRANCH, mk_LABELREF(number, scope), nullptr, tp->mk_void(), scope);
                open = mkelist(branch, nullptr, psn);
            }
            break;
        }
        case PPRAGMA:
            if (open && tree_is_arg_prolog(open->tree)) {
                // Prologs must stay first in the entry block.
                LIST* last = open;
                while (last->next && tree_is_arg_prolog(last->next->tree))
                    last = last->next;
                cell->next = last->next;
                last->next = cell;
                break;
            }
            cell->next = open;
            open = cell;
            break;
        default:
            cell->next = open;
            open = cell;
            break;
        }
    }

    // The default goes where the SWITCH would fall through.
    void add_default(NODE* t) {
        NODE* target;
        if (open && open->tree->op == BRANCH) {
            target = open->tree->left;
            open->tree->left = nullptr;
            open = erase_tree_list(open);
        } else {
            close();
            LBL* l = label_of_bb(front);
            label_mapping[l->number] = l;
            target = mk_LABELREF(l->number, t->scope);
        }
        TYPE* v = tp->mk_void();
        NODE* def = maketree(DEFAULT, target, nullptr, v, t->scope);
        t->right = t->right ? maketree(COMMA, t->right, def, v, t->scope) : def;
    }

    FUNINFO* f;
    BBLK* front = nullptr;
    LIST* open = nullptr;
};

// The edges in the order the terminator names their targets. The list that
// order_successors leaves is not that order, so starting from it again
// would turn the targets without successors round at every rebuild, and the
// layout, which the writer follows, would hang on how often the graph was
// rebuilt: a written file would not lay out the same when read back.
EDGE* edges_in_operand_order(BBLK* b) {
    std::vector<NODE*> labels;
    collect_label_operands(last_stmt(b), labels);
    EDGE* named = nullptr;
    for (NODE* l : labels) {
        BBLK* target = label_target(l);
        for (EDGE** at = &b->succs; *at; at = &(*at)->next)
            if ((*at)->bb == target) {
                EDGE* e = *at;
                *at = e->next;
                e->next = named;
                named = e;
                break;
            }
    }
    named = rev_edge_list(named);
    if (!named)
        return b->succs;
    EDGE* tail = named;
    while (tail->next)
        tail = tail->next;
    tail->next = b->succs;
    return named;
}

// Targets with one successor first, then those with more (both in the order
// the terminator names them), then those with none, reversed.
void order_successors(BBLK* b) {
    EDGE* one = nullptr;
    EDGE* many = nullptr;
    EDGE* none = nullptr;
    b->succs = edges_in_operand_order(b);
    for (EDGE* e = b->succs; e;) {
        EDGE* next = e->next;
        const int n = edge_length(e->bb->succs);
        EDGE*& into = n == 1 ? one : n > 1 ? many : none;
        e->next = into;
        into = e;
        e = next;
    }
    one = rev_edge_list(one);
    many = rev_edge_list(many);
    EDGE* head = none;
    for (EDGE* part : {many, one}) {
        if (!part)
            continue;
        EDGE* tail = part;
        while (tail->next)
            tail = tail->next;
        tail->next = head;
        head = part;
    }
    b->succs = head;
}

} // namespace

void buildcfg() {
    FUNINFO* f = currfuninfo;
    // The label counter runs from the start of the function: the reader may
    // already have made labels for fall-through targets.
    label_mapping.clear();
    cfg_builder builder(f);
    f->bb_list = builder.run(f->stmts);
    f->stmts = nullptr;

    LIST* exit_stmt = builder.exit->statements;
    NODE* exit_label = nullptr;
    int uon = 0;
    std::vector<NODE*> labels;
    for (BBLK* b = f->bb_created; b; b = b->next_created) {
        b->uon = ++uon;
        b->dfn = 0;
        LIST* last = last_stmt_cell(b);
        if (last->tree->op == URETURN && last != exit_stmt) {
            if (!exit_label)
                exit_label = mk_LABELREF(builder.exit->labels->number, nullptr);
            NODE* branch = maketree(BRANCH, copy_tree(exit_label, false), nullptr, tp->mk_void(),
                                    last->tree->scope);
            branch->edge_profile = last->tree->edge_profile;
            erase_tree(last->tree);
            last->tree = branch;
        }
        labels.clear();
        collect_label_operands(last->tree, labels);
        EDGE* succs = nullptr;
        for (NODE* l : labels) {
            LBL* target = lookup_label(l->label_value());
            l->label_rec = target;
            target->uses++;
            if (!edge_memberp(target->bb, succs))
                succs = mkedge(target->bb, succs);
        }
        b->succs = rev_edge_list(succs);
    }
    erase_tree(exit_label);
    label_mapping.clear();
    // A tool that only reads the file sees the calls as written.
    if (!client_reads_only)
        remove_tail_recursion();
    rebuildcfg();
}

void rebuildcfg() {
    FUNINFO* f = currfuninfo;
    if (!f || !f->bb_list)
        return;
    int count = 0;
    for (BBLK* b = f->bb_created; b; b = b->next_created) {
        b->preds = erase_edge_list(b->preds);
        b->dfn = 0;
        b->visited = 0;
        count++;
    }
    f->bb_count = count;
    for (BBLK* b = f->bb_created; b; b = b->next_created)
        order_successors(b);

    // Depth first from the entry, with prev as the parent link; a block goes
    // in front of the list when its walk ends, giving reverse postorder.
    BBLK* entry = f->bb_list;
    BBLK* list = nullptr;
    int number = count;
    entry->visited = 1;
    entry->cursor = entry->succs;
    entry->prev = nullptr;
    for (BBLK* b = entry; b;) {
        if (EDGE* e = b->cursor) {
            b->cursor = e->next;
            BBLK* s = e->bb;
            if (!s->visited) {
                s->visited = 1;
                s->cursor = s->succs;
                s->prev = b;
                b = s;
            }
            continue;
        }
        b->dfn = number--;
        BBLK* parent = b->prev;
        b->next = list;
        list = b;
        b = parent;
    }
    f->bb_list = list;

    for (BBLK* b = list; b; b = b->next)
        b->visited = 0;
    int dfn = 0;
    BBLK* prev = nullptr;
    for (BBLK* b = list; b; b = b->next) {
        OPTASSERT(!b->visited);
        b->visited = 1;
        b->dfn = ++dfn;
        b->prev = prev;
        prev = b;
        if (b->labels)
            b->labels->number = dfn;
        for (EDGE* e = b->succs; e; e = e->next)
            e->bb->preds = add_edge(b, e->bb->preds, -1.0);
    }
    list->prev = prev;
    f->bb_count = dfn;

    // An unreachable block may jump to another: every use of a label goes
    // before any unreachable block, with its labels, is freed.
    for (BBLK* b = f->bb_created; b; b = b->next_created)
        if (b->dfn == 0)
            erase_bb_statements(b);
    for (BBLK* b = f->bb_created; b;) {
        BBLK* next = b->next_created;
        if (b->dfn == 0) {
            dprintf("\nUNREACHABLE BASIC BLOCK: UON==%d\n", b->uon);
            // Its edges point only into the reachable part, whose predecessor
            // lists were rebuilt without it.
            b->succs = erase_edge_list(b->succs);
            b->next = b->prev = nullptr;
            delink_old_bb(b);
        }
        b = next;
    }

    f->arg_prolog = erase_tree(f->arg_prolog);
    if (list->statements && tree_is_arg_prolog(list->statements->tree))
        f->arg_prolog = copy_tree(list->statements->tree, true);
    // No profile annotation exists yet that would need resetting.
    refresh_label_operands();
}
