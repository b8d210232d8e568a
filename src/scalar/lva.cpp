// Live variables over the blocks of a function, the removal of assignments
// nobody reads, and the hoisting of assignments out of larger expressions.
//
// Only the locals that statements alone can read or write are reasoned about
// (is_tracked_scalar): for them a NAME in a statement is the only way in or
// out, so the reads and writes walk_statement_refs reports are all there is.
// Everything else counts as live everywhere, which is why nothing here needs
// to know about memory, calls or globals.
#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "driver/driver.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/infix.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "scalar/scalar.h"
#include "scalar/scalar_internal.h"
#include "simplify/simplify.h"

namespace {

// One bit for each candidate.
class LIVE_SET {
  public:
    explicit LIVE_SET(unsigned n = 0, bool full = false)
        : words_((n + 63) / 64, full ? ~uint64_t{0} : 0), nbits_(n) {
        trim();
    }
    bool test(int i) const { return (words_[i >> 6] >> (i & 63)) & 1; }
    void set(int i) { words_[i >> 6] |= uint64_t{1} << (i & 63); }
    void reset(int i) { words_[i >> 6] &= ~(uint64_t{1} << (i & 63)); }
    void clear() { std::fill(words_.begin(), words_.end(), 0); }
    void fill() {
        std::fill(words_.begin(), words_.end(), ~uint64_t{0});
        trim();
    }
    void unite(const LIVE_SET& o) {
        for (size_t w = 0; w < words_.size(); w++)
            words_[w] |= o.words_[w];
    }
    // this = use | (out & ~def); true when this changed.
    bool assign_transfer(const LIVE_SET& use, const LIVE_SET& out, const LIVE_SET& def) {
        bool changed = false;
        for (size_t w = 0; w < words_.size(); w++) {
            const uint64_t v = use.words_[w] | (out.words_[w] & ~def.words_[w]);
            changed |= v != words_[w];
            words_[w] = v;
        }
        return changed;
    }

  private:
    // Bits past the last candidate stay clear, so that comparisons of whole
    // words mean what they say.
    void trim() {
        if (nbits_ & 63)
            words_.back() &= (uint64_t{1} << (nbits_ & 63)) - 1;
    }
    std::vector<uint64_t> words_;
    unsigned nbits_;
};

struct BLOCK_SETS {
    LIVE_SET in, out, def, use;
};

struct LVA_STATE {
    std::vector<SYMTAB*> candidates;
    std::unordered_map<const SYMTAB*, int> number;
    std::unordered_map<const BBLK*, BLOCK_SETS> sets;
    // Reads of each candidate anywhere in the function.
    std::vector<int> reads;
};
LVA_STATE lva;

int candidate(const SYMTAB* s) {
    auto it = lva.number.find(s);
    return it == lva.number.end() ? -1 : it->second;
}

// The NAME an assignment writes, when it writes the whole variable: a store
// through a conversion, or of a narrower view, leaves part of the old value.
SYMTAB* whole_target(const NODE* asg) {
    const NODE* lv = asg->left;
    if (!lv || lv->op != NAME || !lv->name_symbol())
        return nullptr;
    const SYMTAB* s = lv->name_symbol();
    if (!lv->type || !s->type || lv->type->size() != s->type->size() ||
        type_is_volatile(lv->type))
        return nullptr;
    return lv->name_symbol();
}

// A write that certainly happens and replaces the whole value.
bool kills(const SCALAR_REF& r) { return !r.conditional && whole_target(r.node) == r.sym; }

// Statements are walked backwards: within one statement the reads and writes
// come in execution order, so they are applied last first.
template <class SETS>
void live_before(NODE* stmt, SETS& live) {
    std::vector<SCALAR_REF> refs;
    walk_statement_refs(stmt, [&](const SCALAR_REF& r) { refs.push_back(r); });
    for (auto it = refs.rbegin(); it != refs.rend(); ++it) {
        const int n = (it->kind == SCALAR_REF::USE || it->kind == SCALAR_REF::DEF ||
                       it->kind == SCALAR_REF::ESCAPE)
                          ? candidate(it->sym)
                          : -1;
        if (n < 0)
            continue;
        if (it->kind == SCALAR_REF::DEF) {
            if (kills(*it))
                live.reset(n);
        } else {
            live.set(n);
        }
    }
}

// Operators that are statements in their own right; anything else standing
// alone is only worth its effects.
bool is_statement_like(int op) {
    if (side_effects[op] != SE_NONE)
        return true;
    switch (op) {
    case SKIP:
    case ICALL:
    case UICALL:
    case ENDINIT:
    case STARG:
    case CASE:
    case DEFAULT:
    case EXPRSTUB:
    case MIXVALUE:
    case SSA_USE:
    case SSA_MU:
        return true;
    default:
        return false;
    }
}

// The parts of a sequence, in the order they run.
void sequence_parts(NODE* t, std::vector<NODE*>& out) {
    if (t->op == COMMAOP) {
        NODE* l = t->left;
        NODE* r = t->right;
        t->left = t->right = nullptr;
        erase_node(t);
        sequence_parts(l, out);
        sequence_parts(r, out);
        return;
    }
    out.push_back(t);
}

// What is left of a statement's effects as statements in canonical form,
// in the order they run: what the reader would make of them on a second
// run, so that a second run has nothing left to do.
std::vector<NODE*> effect_statements(NODE* t) {
    std::vector<NODE*> parts, out;
    if (t)
        sequence_parts(t, parts);
    for (NODE* p : parts) {
        p = simp_tree(p, nullptr, nullptr);
        if (!p)
            continue;
        if (p->op == COMMAOP) {
            for (NODE* q : effect_statements(peel_for_effect(p)))
                out.push_back(q);
            continue;
        }
        out.push_back(p);
    }
    return out;
}

std::vector<LIST*> cells_of(const BBLK* b) {
    std::vector<LIST*> cells;
    for (LIST* l = b->statements; l; l = l->next)
        cells.push_back(l);
    return cells;
}

void relink(BBLK* b, const std::vector<LIST*>& cells) {
    LIST* head = nullptr;
    for (auto it = cells.rbegin(); it != cells.rend(); ++it) {
        (*it)->next = head;
        head = *it;
    }
    b->statements = head;
}

// Top-level sequences split, statements of no effect removed, what is left
// of an expression statement reduced to its effects. Terminators stay.
void clean_statements(BBLK* b) {
    std::vector<LIST*> kept;
    for (LIST* c : cells_of(b)) {
        NODE* t = c->tree;
        if (t && (t->op == COMMAOP || !is_statement_like(t->op))) {
            t = peel_for_effect(t);
            if (!t) {
                c->next = nullptr;
                erase_tree_list_only(c);
                continue;
            }
            std::vector<NODE*> parts;
            sequence_parts(t, parts);
            c->tree = parts[0];
            kept.push_back(c);
            for (size_t i = 1; i < parts.size(); i++)
                kept.push_back(mkelist(parts[i], nullptr, c->psn));
            continue;
        }
        kept.push_back(c);
    }
    relink(b, kept);
}

void number_candidates() {
    lva.candidates.clear();
    lva.number.clear();
    std::vector<SYMTAB*> all;
    for (SYMTAB* list :
         {currfuninfo->symbols, currfuninfo->temps, currfuninfo->autos, currfuninfo->regs})
        for (SYMTAB* s = list; s; s = s->next)
            all.push_back(s);
    // The lists hold the newest first; numbers go oldest first.
    for (auto it = all.rbegin(); it != all.rend(); ++it) {
        SYMTAB* s = *it;
        if (!is_tracked_scalar(s) || lva.number.count(s))
            continue;
        const int n = static_cast<int>(lva.candidates.size());
        lva.number[s] = n;
        lva.candidates.push_back(s);
        dprintf("\tLVA candidate %2d is variable '%s'\n", n, s->name ? s->name : "");
    }
    lva.reads.assign(lva.candidates.size(), 0);
}

long line_of(const LIST* c) { return c && c->psn ? static_cast<long>(c->psn->line) : 0L; }

} // namespace

int lva_candidate_count() { return static_cast<int>(lva.candidates.size()); }

int lva_candidate_number(const SYMTAB* s) { return candidate(s); }

bool lva_live_in(const BBLK* b, const SYMTAB* s) {
    const int n = candidate(s);
    auto it = lva.sets.find(b);
    return n < 0 || it == lva.sets.end() || it->second.in.test(n);
}

bool lva_live_out(const BBLK* b, const SYMTAB* s) {
    const int n = candidate(s);
    auto it = lva.sets.find(b);
    return n < 0 || it == lva.sets.end() || it->second.out.test(n);
}

void lva_cleanup() {
    lva.sets.clear();
    lva.candidates.clear();
    lva.number.clear();
    lva.reads.clear();
}

void find_live_variables(int, bool) {
    lva_cleanup();
    if (!currfuninfo || !currfuninfo->bb_list)
        return;
    sym_split(currfuninfo);
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        clean_statements(b);
    mark_address_taken_locals();
    number_candidates();
    const unsigned n = static_cast<unsigned>(lva.candidates.size());

    // Upward-exposed reads and certain writes of each block.
    std::vector<BBLK*> blocks;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        blocks.push_back(b);
        BLOCK_SETS& s = lva.sets[b];
        s.in = s.out = s.def = s.use = LIVE_SET(n);
        for (LIST* l = b->statements; l; l = l->next)
            walk_statement_refs(l->tree, [&](const SCALAR_REF& r) {
                const int c = r.kind == SCALAR_REF::STORE || r.kind == SCALAR_REF::LOAD ||
                                      r.kind == SCALAR_REF::CALL
                                  ? -1
                                  : candidate(r.sym);
                if (c < 0)
                    return;
                if (r.kind == SCALAR_REF::DEF) {
                    if (kills(r))
                        s.def.set(c);
                    return;
                }
                lva.reads[c]++;
                if (!s.def.test(c))
                    s.use.set(c);
            });
        s.in = s.use;
    }
    if (n == 0)
        return;

    // The sets only grow, so this ends; last to first converges quickly on
    // reverse postorder.
    for (bool changed = true; changed;) {
        dprintf("\n\tNext iteration of global live variable loop\n");
        changed = false;
        for (auto it = blocks.rbegin(); it != blocks.rend(); ++it) {
            BLOCK_SETS& s = lva.sets[*it];
            s.out.clear();
            for (EDGE* e = (*it)->succs; e; e = e->next) {
                auto succ = lva.sets.find(e->bb);
                if (succ == lva.sets.end())
                    s.out.fill();
                else
                    s.out.unite(succ->second.in);
            }
            changed |= s.in.assign_transfer(s.use, s.out, s.def);
        }
    }
}

namespace {

bool promote_in_cell(LIST* c);

// A short circuit whose conditional part has an effect. Standing alone as a
// statement it would be made into tests and jumps when the file is read
// again; the store it feeds stays, so that one run leaves nothing to do.
bool conditional_effects(const NODE* t) {
    if (!t)
        return false;
    if ((t->op == ANDAND || t->op == OROR || t->op == QUEST) && tree_has_side_effects(t->right))
        return true;
    return conditional_effects(t->left) ||
           (number_of_operands[t->op] >= 2 && conditional_effects(t->right));
}
bool promote_in_bb(BBLK* bb);

// The value a dead store would have written, when the statement is one: a
// plain assignment or an update of a candidate that is not read afterwards.
NODE** dead_store_value(NODE* t, const LIVE_SET& live_after) {
    if (!t || tree_is_arg_prolog(t) || t->pragma)
        return nullptr;
    const bool plain = t->op == ASG;
    const bool update = t->op == PLUSPLUS || t->op == MINMIN || op_of_opASG[t->op] != NONE;
    if (!plain && !update)
        return nullptr;
    SYMTAB* s = whole_target(t);
    const int n = s ? candidate(s) : -1;
    if (n < 0 || live_after.test(n) || conditional_effects(t->right))
        return nullptr;
    return &t->right;
}

// Replaces the statement of `c` by what must still run of the stored value;
// returns the cells that now stand in its place, in order (none when nothing
// is left, and then `c` is freed).
std::vector<LIST*> remove_store(LIST* c, NODE** value, std::unordered_set<const SYMTAB*>& reported) {
    NODE* t = c->tree;
    SYMTAB* s = t->left->name_symbol();
    if (print_debug) {
        dprintf("\n\t(%ld) DEAD 'ASG': %s\n", line_of(c), stmt2infix(t).c_str());
        const int n = candidate(s);
        if (n >= 0 && lva.reads[n] == 0 && reported.insert(s).second)
            dprintf("\tNo references in the function for (%d) '%s'\n", n, s->name ? s->name : "");
    }
    NODE* v = *value;
    *value = nullptr;
    erase_tree(t);
    std::vector<NODE*> parts = effect_statements(peel_for_effect(v));
    std::vector<LIST*> out;
    if (parts.empty()) {
        c->tree = nullptr;
        c->next = nullptr;
        erase_tree_list_only(c);
        return out;
    }
    c->tree = parts[0];
    out.push_back(c);
    for (size_t i = 1; i < parts.size(); i++)
        out.push_back(mkelist(parts[i], nullptr, c->psn));
    // A statement made here gets what every statement got before: its
    // nested assignments stand on their own.
    std::vector<LIST*> promoted;
    for (LIST* r : out) {
        LIST* after = r->next = nullptr;
        promote_in_cell(r);
        for (LIST* l = r; l != after; l = l->next)
            promoted.push_back(l);
    }
    return promoted;
}

// Sinks a plain assignment of a harmless value toward its first reader in
// the block, so that the variable is live for a shorter stretch. A value is
// harmless when it reads only candidates, writes nothing and cannot trap:
// then only the statements naming those variables or the target can tell.
bool delay_in_block(BBLK* b) {
    std::vector<LIST*> cells = cells_of(b);
    bool moved = false;
    for (size_t i = 0; i + 1 < cells.size(); i++) {
        NODE* t = cells[i]->tree;
        if (!t || t->op != ASG || tree_is_arg_prolog(t) || t->pragma)
            continue;
        SYMTAB* target = whole_target(t);
        if (!target || candidate(target) < 0)
            continue;
        std::unordered_set<const SYMTAB*> read;
        bool harmless = true;
        walk_statement_refs(t->right, [&](const SCALAR_REF& r) {
            if (r.kind == SCALAR_REF::USE && candidate(r.sym) >= 0)
                read.insert(r.sym);
            else
                harmless = false;
        });
        std::vector<NODE*> stack{t->right};
        while (harmless && !stack.empty()) {
            NODE* n = stack.back();
            stack.pop_back();
            if (!n)
                continue;
            if (n->op == DIV || n->op == MOD || type_is_volatile(n->type))
                harmless = false;
            stack.push_back(n->left);
            if (number_of_operands[n->op] >= 2)
                stack.push_back(n->right);
        }
        if (!harmless)
            continue;
        size_t stop = i + 1;
        for (; stop + 1 < cells.size(); stop++) {
            bool blocks = false;
            walk_statement_refs(cells[stop]->tree, [&](const SCALAR_REF& r) {
                if ((r.kind == SCALAR_REF::USE || r.kind == SCALAR_REF::ESCAPE) &&
                    r.sym == target)
                    blocks = true;
                if (r.kind == SCALAR_REF::DEF && (r.sym == target || read.count(r.sym)))
                    blocks = true;
            });
            if (blocks)
                break;
        }
        if (stop == i + 1)
            continue;
        LIST* c = cells[i];
        cells.erase(cells.begin() + static_cast<long>(i));
        cells.insert(cells.begin() + static_cast<long>(stop - 1), c);
        moved = true;
        // The cell now at i has not been looked at.
        i--;
    }
    if (moved)
        relink(b, cells);
    return moved;
}

} // namespace

namespace {

// One backward walk over all blocks with the sets of find_live_variables;
// true when a store went.
bool remove_dead_stores(std::unordered_set<const SYMTAB*>& reported) {
    const unsigned n = static_cast<unsigned>(lva.candidates.size());
    std::vector<BBLK*> blocks;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        blocks.push_back(b);
    bool changed = false;
    LIVE_SET live(n);
    for (auto bi = blocks.rbegin(); bi != blocks.rend(); ++bi) {
        BBLK* b = *bi;
        live.clear();
        for (EDGE* e = b->succs; e; e = e->next) {
            auto succ = lva.sets.find(e->bb);
            if (succ == lva.sets.end())
                live.fill();
            else
                live.unite(succ->second.in);
        }
        std::vector<LIST*> work = cells_of(b);
        std::vector<LIST*> kept;
        while (!work.empty()) {
            LIST* c = work.back();
            work.pop_back();
            if (NODE** value = dead_store_value(c->tree, live)) {
                // What is left may itself be a dead store: it goes round again.
                for (LIST* r : remove_store(c, value, reported))
                    work.push_back(r);
                changed = true;
                continue;
            }
            live_before(c->tree, live);
            kept.push_back(c);
        }
        std::reverse(kept.begin(), kept.end());
        relink(b, kept);
    }
    return changed;
}

// Where control really goes from a block: past blocks that only jump on.
BBLK* destination(BBLK* b) {
    std::vector<BBLK*> seen;
    while (b && b->statements && !b->statements->next && b->statements->tree &&
           b->statements->tree->op == BRANCH) {
        if (std::find(seen.begin(), seen.end(), b) != seen.end())
            break;
        seen.push_back(b);
        b = label_target(b->statements->tree->left);
    }
    return b;
}

// A test both of whose ways lead to the same place decides nothing, yet it
// reads its variables and so keeps their stores alive. Such a test becomes
// constant, for the graph cleanup to fold; the edges stay as they are.
bool neutralize_idle_tests() {
    bool changed = false;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        NODE* t = last_stmt(b);
        if (!t || t->op != IF || !t->left || !t->right || t->right->op != COLON ||
            (b->flags & BB_KEEP_DUPLICATE_TEST))
            continue;
        if (t->left->op == ICON || tree_has_side_effects(t->left))
            continue;
        BBLK* yes = destination(label_target(t->right->left));
        BBLK* no = destination(label_target(t->right->right));
        if (!yes || yes != no)
            continue;
        TYPE* type = t->left->type && t->left->type->is_integral()
                         ? t->left->type
                         : tp->mk_int(TYPE::ik_int);
        erase_tree(t->left);
        t->left = mk_ICON(INT65(0), type);
        changed = true;
    }
    return changed;
}

} // namespace

void elim_dead_assigns(bool delay, bool may_rebuild) {
    if (!currfuninfo || !currfuninfo->bb_list)
        return;
    find_live_variables(1, true);
    if (lva.candidates.empty()) {
        lva_cleanup();
        return;
    }
    dprintf("\n\n\t\t\t---------- ENTERING 'elim_dead_assigns' ----------\n");
    std::unordered_set<const SYMTAB*> reported;
    bool changed = false;
    // A removed store may have taken the address of a local, or held the
    // last read of a value stored elsewhere: the sets are made again until
    // nothing more goes, so that running the pass twice does no more than
    // running it once. A local that became a candidate may now have its
    // nested assignments stand alone, as every candidate's do.
    for (;;) {
        bool again = remove_dead_stores(reported);
        // What stood between two stores to one target may have gone: they are
        // neighbours now and are joined, as the next run would join them.
        if (again)
            for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
                combine_assignments(b->statements);
                drop_empty_statements(b);
            }
        again |= neutralize_idle_tests();
        for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
            again |= promote_in_bb(b);
        if (!again)
            break;
        changed = true;
        find_live_variables(1, true);
    }
    if (delay) {
        dprintf("\n\n\t\t\t---------- ENTERING 'delay_assignments' ----------\n");
        for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
            changed |= delay_in_block(b);
    }
    lva_cleanup();
    if (changed && may_rebuild)
        simpcfg(false, false);
}

bool elim_locally_dead_assignments_in_bb(BBLK* bb, LOOP*) {
    // Without loop facts nothing is known dead at the block's end: only a
    // later write in the block itself shows that a value is never read.
    if (!bb || !currfuninfo)
        return false;
    mark_address_taken_locals();
    std::unordered_set<const SYMTAB*> killed;
    std::vector<LIST*> work = cells_of(bb);
    std::vector<LIST*> kept;
    bool changed = false;
    while (!work.empty()) {
        LIST* c = work.back();
        work.pop_back();
        NODE* t = c->tree;
        SYMTAB* target = nullptr;
        if (t && !tree_is_arg_prolog(t) && !t->pragma &&
            (t->op == ASG || t->op == PLUSPLUS || t->op == MINMIN || op_of_opASG[t->op] != NONE))
            target = whole_target(t);
        if (target && killed.count(target)) {
            if (print_debug)
                dprintf("\n\t(%ld) DEAD 'ASG': %s\n", line_of(c), stmt2infix(t).c_str());
            NODE* v = t->right;
            t->right = nullptr;
            erase_tree(t);
            c->tree = nullptr;
            changed = true;
            std::vector<NODE*> parts = effect_statements(peel_for_effect(v));
            if (!parts.empty()) {
                c->tree = parts[0];
                work.push_back(c);
                for (size_t i = 1; i < parts.size(); i++)
                    work.push_back(mkelist(parts[i], nullptr, c->psn));
            } else {
                c->next = nullptr;
                erase_tree_list_only(c);
            }
            continue;
        }
        std::vector<SCALAR_REF> refs;
        walk_statement_refs(t, [&](const SCALAR_REF& r) { refs.push_back(r); });
        for (auto it = refs.rbegin(); it != refs.rend(); ++it) {
            if (it->kind == SCALAR_REF::DEF) {
                if (kills(*it) && is_tracked_scalar(it->sym) && it->sym->sclass == SC_AUTO)
                    killed.insert(it->sym);
            } else if (it->kind == SCALAR_REF::USE || it->kind == SCALAR_REF::ESCAPE) {
                killed.erase(it->sym);
            }
        }
        kept.push_back(c);
    }
    std::reverse(kept.begin(), kept.end());
    relink(bb, kept);
    return changed;
}

namespace {

bool is_hoistable_assignment(const NODE* t) {
    if (!t || (t->op != ASG && op_of_opASG[t->op] == NONE))
        return false;
    const SYMTAB* s = whole_target(t);
    return s && is_tracked_scalar(s);
}

void collect_nodes(NODE* t, std::unordered_set<const NODE*>& out) {
    for (; t; t = t->left) {
        out.insert(t);
        collect_nodes(t->right, out);
    }
}

// The assignments nested in the statement, parents before children.
void nested_assignments(NODE* t, NODE** slot, std::vector<NODE**>& out) {
    if (!t)
        return;
    if (slot && is_hoistable_assignment(t))
        out.push_back(slot);
    nested_assignments(t->left, &t->left, out);
    nested_assignments(t->right, &t->right, out);
}

// Whether `a = e`, somewhere in the statement, may run first as a statement
// of its own, leaving a read of `a` in its place. It must run whenever the
// statement does, exactly once; what the statement does before it must
// neither be changed by it nor change what it does: nothing written, `a`
// not read, and no memory or global read when the assignment's value has
// effects of its own.
bool may_hoist(NODE* stmt, NODE* asg) {
    std::unordered_set<const NODE*> inside;
    collect_nodes(asg, inside);
    const SYMTAB* target = asg->left->name_symbol();
    bool own_effects = tree_has_side_effects(asg->right);
    walk_statement_refs(asg->right, [&](const SCALAR_REF& r) {
        if (r.kind == SCALAR_REF::CALL || r.kind == SCALAR_REF::STORE ||
            (r.kind == SCALAR_REF::DEF && !is_tracked_scalar(r.sym)))
            own_effects = true;
    });
    bool started = false, ok = true, earlier_reads_memory = false;
    walk_statement_refs(stmt, [&](const SCALAR_REF& r) {
        if (!ok)
            return;
        if (inside.count(r.node)) {
            if (!started && r.conditional)
                ok = false;
            started = true;
            return;
        }
        if (started)
            return;
        switch (r.kind) {
        case SCALAR_REF::USE:
            if (r.sym == target)
                ok = false;
            else if (!is_tracked_scalar(r.sym))
                earlier_reads_memory = true;
            break;
        case SCALAR_REF::ESCAPE:
            if (r.sym == target)
                ok = false;
            break;
        case SCALAR_REF::LOAD:
            earlier_reads_memory = true;
            break;
        default:
            ok = false;
            break;
        }
    });
    return ok && started && !(earlier_reads_memory && own_effects);
}

// Takes out one nested assignment that may go first; null when none may.
NODE* take_one_assignment(NODE* stmt) {
    std::vector<NODE**> slots;
    nested_assignments(stmt, nullptr, slots);
    for (NODE** slot : slots) {
        NODE* asg = *slot;
        if (!may_hoist(stmt, asg))
            continue;
        // The assignment's value is the target's, in the assignment's type.
        NODE* read = copy_tree(asg->left, true);
        if (asg->type && read->type != asg->type)
            read = coerce_to_type(asg->type, read);
        *slot = read;
        return asg;
    }
    return nullptr;
}

bool stands_alone(const NODE* t) {
    return !t || t->op == LOOP_OP || t->op == ENDLOOP || t->op == PCOMMA || t->op == INITLOOP ||
           tree_is_arg_prolog(const_cast<NODE*>(t));
}

// The hoisted assignment takes the cell, the rest of the statement goes
// after it; the assignment is looked at again in turn, then what follows,
// up to the cell that followed at the start.
bool promote_in_cell(LIST* c) {
    bool changed = false;
    LIST* end = c->next;
    for (; c != end; c = c->next) {
        while (!stands_alone(c->tree)) {
            NODE* asg = take_one_assignment(c->tree);
            if (!asg)
                break;
            c->next = mkelist(simp_tree(c->tree, nullptr, nullptr), c->next, c->psn);
            c->tree = simp_tree(asg, nullptr, nullptr);
            changed = true;
        }
    }
    return changed;
}

bool promote_in_bb(BBLK* bb) {
    bool changed = false;
    for (LIST* c = bb->statements; c; c = c->next)
        changed |= c->tree && c->tree->op == COMMAOP;
    bb->statements = flatten_statement_sequences(bb->statements);
    for (LIST* c = bb->statements; c;) {
        LIST* next = c->next;
        changed |= promote_in_cell(c);
        c = next;
    }
    return changed;
}

} // namespace

void promote_embedded_assignments_in_bb(BBLK* bb) {
    if (bb)
        promote_in_bb(bb);
}

void promote_all_embedded_assignments() {
    if (!currfuninfo)
        return;
    mark_address_taken_locals();
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        promote_in_bb(b);
}
