// Local common subexpressions: inside one block, a pure expression computed
// again while nothing it reads can have changed is read from a temporary
// instead of being computed again.
//
// The block is walked statement by statement, and each statement event by
// event in the order it runs (walk_statement_refs). An expression is entered
// in the table when its last operand has been read; a later congruent
// expression found there becomes a reuse. Writes remove what they may change:
// a definition what reads the variable, a store what reads memory it may
// reach, a call every read of memory. While the block is walked, a first
// evaluation is wrapped in CSE_ORIG and each reuse is a CSE_DUPE whose right
// side is the first evaluation's tree; both are resolved before the block is
// left, into a temporary or into the plain tree again.
#include <algorithm>
#include <memory>
#include <unordered_map>
#include <vector>

#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/passes.h"
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

// The plain views of marked trees.

NODE* skip_dupes(NODE* t) {
    while (t && (t->op == CSE_ORIG || t->op == CSE_DUPE))
        t = t->right;
    return t;
}

NODE* copy_tree_without_dupes(NODE* t) {
    t = skip_dupes(t);
    if (!t)
        return nullptr;
    if (t->op == DDNODE)
        return copy_dd_node(t);
    NODE* n = copy_node(t, true);
    n->left = copy_tree_without_dupes(t->left);
    n->right = copy_tree_without_dupes(t->right);
    return n;
}

namespace {

bool is_leaf(int op) {
    switch (op) {
    case NAME:
    case ICON:
    case FCON:
    case SCON:
    case LCON:
    case LABEL:
    case FIELD:
        return true;
    default:
        return false;
    }
}

bool is_unary_value_op(int op) {
    switch (op) {
    case UMINUS:
    case NOTB:
    case EXCLAIM:
    case ABS:
    case SQR:
        return true;
    default:
        return false;
    }
}

bool is_binary_value_op(int op) {
    switch (op) {
    case PLUS:
    case MINUS:
    case MULT:
    case DIV:
    case MOD:
    case ANDB:
    case ORB:
    case XORB:
    case SLL:
    case SRL:
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
    case ANDAND:
    case OROR:
        return true;
    default:
        return false;
    }
}

bool is_load(int op) { return op == UMULT || op == STDOT || op == STREF; }

bool is_conversion(int op) { return op == SCONV || op == PCONV; }

// A type whose values a temporary may hold.
bool cse_type(TYPE* t) {
    if (!t)
        return false;
    if (t->is_vector())
        return true;
    return t->is_scalar() && !t->is_complex() && !t->is_ref();
}

// Every node of the tree is one the pass knows to compute a value and do
// nothing else: no calls, no assignments, nothing it does not know.
bool tree_is_plain_value(const NODE* t) {
    t = skip_dupes(const_cast<NODE*>(t));
    if (!t)
        return true;
    if (is_leaf(t->op))
        return t->op != LABEL;
    if (t->op == UAND)
        return !t->right && tree_is_plain_value(t->left);
    if (is_conversion(t->op) || is_unary_value_op(t->op))
        return !t->right && tree_is_plain_value(t->left);
    if (is_binary_value_op(t->op) || t->op == COLON || t->op == QUEST)
        return tree_is_plain_value(t->left) && tree_is_plain_value(t->right);
    if (t->op == UMULT)
        return !t->right && tree_is_plain_value(t->left);
    if (t->op == STDOT || t->op == STREF)
        return tree_is_plain_value(t->left) && (!t->right || t->right->op == FIELD);
    return false;
}

} // namespace

bool is_likely_register(NODE* t) {
    return t && t->op == NAME && is_tracked_scalar(t->name_symbol());
}

bool good_CSE_tree(NODE* t, bool for_value) {
    t = skip_dupes(t);
    if (!t || is_leaf(t->op) || !cse_type(t->type))
        return false;
    if (t->op == OUIALIGN || t->op == NONALIGN || t->op == UAND)
        return false;
    if (tree_has_side_effects(t) || type_is_volatile(t->type) || !tree_is_plain_value(t))
        return false;
    // An address constant costs nothing to form again.
    if (expr_is_constant(t) || pointer_is_an_adcon(t))
        return false;
    if (is_load(t->op))
        // The object itself (an assignment's target, an address taken) is no
        // value to share; only what is read from it. A bit field counts too.
        return for_value;
    if (is_conversion(t->op))
        // A conversion is worth what its operand is: a widening of an unsigned
        // narrower value, or of a variable, is free where it is used.
        return good_CSE_tree(t->left, true);
    return true;
}

namespace {

// (p + c) + x and p + (x + c), with c a constant, as (p + x) + c: the
// variable part of two addresses a constant apart is then the same tree.
NODE* reassociate_offset(NODE* t, TYPE* ptr_type) {
    if (!t || t->op != PLUS || !t->type || !t->type->is_pointer())
        return t;
    NODE* l = t->left;
    NODE* r = t->right;
    if (l && l->op == PLUS && l->type && l->type->is_pointer() && l->right &&
        l->right->op == ICON && r && r->op != ICON) {
        // (p + c) + x: swap c and x.
        t->right = l->right;
        l->right = r;
        l->type = ptr_type;
        return t;
    }
    if (r && r->op == PLUS && r->type && r->type->is_integral() && r->right &&
        r->right->op == ICON && r->left && r->left->op != ICON) {
        // p + (x + c): (p + x) + c.
        NODE* c = r->right;
        r->op = PLUS;
        r->right = r->left;
        r->left = l;
        r->type = ptr_type;
        t->left = r;
        t->right = c;
        return t;
    }
    return t;
}

} // namespace

NODE* normalize_ptr_for_indexing(NODE* t, TYPE* ptr_type) {
    if (!t)
        return t;
    t->left = normalize_ptr_for_indexing(t->left, t->left ? t->left->type : nullptr);
    t->right = normalize_ptr_for_indexing(t->right, t->right ? t->right->type : nullptr);
    if (!ptr_type || !ptr_type->is_pointer())
        return t;
    return reassociate_offset(t, ptr_type);
}

namespace {

constexpr int HASH_BUCKETS = 101;

// A hash that agrees with trees_are_congruent: markers are looked through,
// operands of a commuting operator count in either order.
unsigned tree_hash(const NODE* t) {
    t = skip_dupes(const_cast<NODE*>(t));
    if (!t)
        return 7;
    unsigned h;
    switch (t->op) {
    case NAME:
        return static_cast<unsigned>(reinterpret_cast<uintptr_t>(t->sym) >> 4) * 31u + NAME;
    case ICON:
    case LCON:
        return static_cast<unsigned>(t->value.low) * 131u + ICON;
    default:
        break;
    }
    int op = t->op;
    const unsigned a = tree_hash(t->left);
    const unsigned b = t->right ? tree_hash(t->right) : 0;
    if (commute_inv[op] != NONE) {
        op = std::min<int>(op, commute_inv[op]);
        h = (a + b) * 17u + (a ^ b);
    } else {
        h = a * 37u + b * 11u;
    }
    return h * 1000003u + static_cast<unsigned>(op);
}

// How much computing the tree again costs, roughly in instructions.
int tree_cost(const NODE* t) {
    t = skip_dupes(const_cast<NODE*>(t));
    if (!t || is_leaf(t->op) || t->op == UAND)
        return 0;
    int own = 1;
    if (is_conversion(t->op))
        own = 0;
    else if (is_load(t->op) || t->op == MULT || t->op == DIV || t->op == MOD)
        own = 2;
    else if (t->type && t->type->is_fltpt())
        own = 2;
    return own + tree_cost(t->left) + (t->op == STDOT || t->op == STREF ? 0 : tree_cost(t->right));
}

bool contains_pointer_sum(const NODE* t) {
    t = skip_dupes(const_cast<NODE*>(t));
    if (!t)
        return false;
    if (t->op == PLUS && t->type && t->type->is_pointer())
        return true;
    return contains_pointer_sum(t->left) || contains_pointer_sum(t->right);
}

// What a remembered value depends on: the variables it names and the
// memory it reads (lvalue nodes, alive until the block is done).
struct DEPS {
    std::vector<SYMTAB*> syms;
    std::vector<const NODE*> memory;
};

struct ENTRY {
    NODE* expr = nullptr; // the first evaluation, wrapped by `marker`
    NODE* marker = nullptr;
    NODE* key = nullptr; // an owned normalized copy, or null: compare expr
    unsigned hash = 0;
    int stmt = 0;       // ordinal of its statement in the block
    int seq = 0;        // order of making: the order of evaluation
    bool hoist = false; // may be computed by a statement in front of it
    bool valid = true;  // still in the table
    bool dead = false;  // its first evaluation has been erased
    int dupes = 0;
    int cost = 0;
    SYMTAB* temp = nullptr;
    LS* scope = nullptr;
    DEPS deps;

    const NODE* key_tree() const { return key ? key : expr; }
};

// A tracked local known to hold a value: an earlier `x = e` of the block
// with neither x nor what e reads changed since.
struct HOLD {
    NODE* value = nullptr; // owned plain copy of e
    unsigned hash = 0;
    DEPS deps;
};

// One candidate occurrence of a statement.
struct CAND {
    NODE** slot;
    int first;
    int last;
};

struct SPAN {
    int first = -1;
    int last = -1;
    void add(int i) {
        if (first < 0 || i < first)
            first = i;
        if (i > last)
            last = i;
    }
    void add(const SPAN& s) {
        if (s.first >= 0) {
            add(s.first);
            add(s.last);
        }
    }
};

long line_of(const LIST* cell) {
    return cell && cell->psn ? static_cast<long>(cell->psn->line) : 0L;
}

bool same_type(TYPE* a, TYPE* b) { return a == b || (a && b && equiv_mtypes(a, b)); }

NODE* strip_lvalue_casts(NODE* lv) {
    while (lv && is_conversion(lv->op))
        lv = lv->left;
    return lv;
}

class block_cse {
public:
    explicit block_cse(BBLK* bb) : bb_(bb), buckets_(HASH_BUCKETS) {}
    ~block_cse() {
        for (NODE* t : graveyard_)
            erase_tree(t);
        for (auto& e : entries_)
            erase_tree(e->key);
        for (auto& h : holds_)
            erase_tree(h.second.value);
    }

    // Sets `cond_changed` when the block's closing test may have changed.
    void run(bool& cond_changed);

private:
    BBLK* bb_;
    std::vector<std::unique_ptr<ENTRY>> entries_;
    std::vector<std::vector<ENTRY*>> buckets_;
    std::unordered_map<const NODE*, ENTRY*> marker_entry_;
    // In the order they were made, so that the oldest holder is chosen.
    std::vector<std::pair<SYMTAB*, HOLD>> holds_;
    std::vector<NODE*> graveyard_;

    // The statement being walked.
    LIST* cell_ = nullptr;
    int stmt_ = 0;
    bool changed_stmt_ = false;
    std::vector<SCALAR_REF> events_;
    std::unordered_map<const NODE*, SPAN> spans_;
    std::vector<CAND> cands_;

    bool redundant_assignment(LIST* cell);
    void walk_statement(LIST* cell);
    SPAN compute_spans(NODE* t);
    void enumerate(NODE** slot, bool value);
    void enumerate_lvalue(NODE** slot);
    void process(const CAND& c);
    void kill(const SCALAR_REF& r);
    void kill_if(const std::function<bool(const DEPS&)>& hit);
    DEPS deps_of(const NODE* t, int first, int last) const;
    void forget_subtree(NODE* t);
    void remember_hold(NODE* asg, NODE* plain_value);
    ENTRY* find_entry(const NODE* key, unsigned hash);
    SYMTAB* find_hold(const NODE* key, unsigned hash, TYPE* type);
    std::vector<std::pair<SYMTAB*, HOLD>>::iterator find_hold_of(const SYMTAB* x) {
        return std::find_if(holds_.begin(), holds_.end(),
                            [x](const auto& h) { return h.first == x; });
    }
    void drop_hold(std::vector<std::pair<SYMTAB*, HOLD>>::iterator it) {
        erase_tree(it->second.value);
        holds_.erase(it);
    }
    void resolve(bool& cond_changed);
    void replace_dupes(NODE** slot);
    NODE* read_of(ENTRY* e, LS* scope);
    NODE* plain_copy(NODE* t, LS* scope);
    void resolve_origs(NODE** slot, std::vector<std::pair<ENTRY*, NODE*>>& hoisted);
};

void block_cse::run(bool& cond_changed) {
    bool changed = false;
    LIST** link = &bb_->statements;
    // The argument prolog stays first and untouched.
    if (bb_ == currfuninfo->bb_list)
        while (*link && tree_is_arg_prolog((*link)->tree))
            link = &(*link)->next;
    for (stmt_ = 0; *link; stmt_++) {
        LIST* cell = *link;
        if (redundant_assignment(cell)) {
            *link = cell->next;
            cell->next = nullptr;
            erase_tree_list(cell);
            changed = true;
            continue;
        }
        changed_stmt_ = false;
        walk_statement(cell);
        changed |= changed_stmt_;
        link = &cell->next;
    }
    if (!entries_.empty() || changed)
        resolve(cond_changed);
}

// x = e where x already holds e's value: the statement goes.
bool block_cse::redundant_assignment(LIST* cell) {
    NODE* t = cell->tree;
    if (!t || t->op != ASG || !is_likely_register(t->left) || !t->right ||
        tree_has_side_effects(t->right))
        return false;
    auto it = find_hold_of(t->left->name_symbol());
    if (it == holds_.end() || !trees_are_congruent(it->second.value, t->right, 0))
        return false;
    if (print_debug) {
        dprintf("\n\t(%ld) REDUNDANT ASSIGNMENT ELIMINATED IN LCSE:\n", line_of(cell));
        dump_tree_debug(t);
    }
    return true;
}

SPAN block_cse::compute_spans(NODE* t) {
    SPAN s;
    if (!t)
        return s;
    auto own = spans_.find(t);
    if (own != spans_.end())
        s = own->second;
    s.add(compute_spans(t->left));
    s.add(compute_spans(t->right));
    spans_[t] = s;
    return s;
}

// Candidates in postorder: an operand before what contains it.
void block_cse::enumerate(NODE** slot, bool value) {
    NODE* t = *slot;
    if (!t)
        return;
    const int op = t->op;
    if (op == ASG || op == STASG || op == ARASG || op == PLUSPLUS || op == MINMIN ||
        op_of_opASG[op] != NONE) {
        enumerate_lvalue(&t->left);
        enumerate(&t->right, true);
        return;
    }
    switch (op) {
    case UAND:
        enumerate_lvalue(&t->left);
        break;
    case STDOT:
        enumerate_lvalue(&t->left);
        break;
    case UMULT:
    case STREF:
        enumerate(&t->left, true);
        break;
    case RETURN:
        enumerate(&t->right, true);
        return;
    case IF:
    case SWITCH:
        enumerate(&t->left, true);
        return;
    case CALL:
    case UCALL:
    case ICALL:
    case UICALL:
    case MCALL:
    case UMCALL:
        if (t->left && t->left->op != NAME && t->left->op != UAND)
            enumerate(&t->left, true);
        enumerate(&t->right, true);
        return;
    case COMMA:
    case ACONV:
        enumerate(&t->left, true);
        enumerate(&t->right, true);
        return;
    default:
        if ((is_conversion(op) || is_unary_value_op(op)) && t->right)
            return;
        if (is_conversion(op) || is_unary_value_op(op) || is_binary_value_op(op) || op == QUEST ||
            op == COLON) {
            enumerate(&t->left, true);
            enumerate(&t->right, true);
            break;
        }
        // What the pass does not know keeps what is under it.
        return;
    }
    if (!value || op == COLON || !good_CSE_tree(t, true))
        return;
    const SPAN& s = spans_[t];
    // Without a read of anything, a value is a constant of a kind the
    // simplifier owns; and where it would stand in the order is unknown.
    if (s.first < 0)
        return;
    cands_.push_back(CAND{slot, s.first, s.last});
}

// The parts of an lvalue that are values: the address it is reached through.
void block_cse::enumerate_lvalue(NODE** slot) {
    NODE* lv = *slot;
    if (!lv)
        return;
    switch (lv->op) {
    case UMULT:
    case STREF:
        enumerate(&lv->left, true);
        return;
    case STDOT:
    case SCONV:
    case PCONV:
        enumerate_lvalue(&lv->left);
        return;
    default:
        return;
    }
}

DEPS block_cse::deps_of(const NODE* t, int first, int last) const {
    DEPS d;
    for (int i = first; i >= 0 && i <= last; i++) {
        const SCALAR_REF& r = events_[i];
        if (r.kind == SCALAR_REF::USE) {
            d.syms.push_back(r.sym);
            if (!is_tracked_scalar(r.sym))
                d.memory.push_back(r.node);
        } else if (r.kind == SCALAR_REF::LOAD) {
            d.memory.push_back(r.node);
        }
    }
    // A part already replaced by the variable that holds it reads that
    // variable now.
    std::vector<const NODE*> stack{t};
    while (!stack.empty()) {
        const NODE* n = skip_dupes(const_cast<NODE*>(stack.back()));
        stack.pop_back();
        if (!n)
            continue;
        if (n->op == NAME)
            d.syms.push_back(n->name_symbol());
        stack.push_back(n->left);
        stack.push_back(n->right);
    }
    return d;
}

ENTRY* block_cse::find_entry(const NODE* key, unsigned hash) {
    for (ENTRY* e : buckets_[hash % HASH_BUCKETS])
        if (e->valid && e->hash == hash && trees_are_congruent(e->key_tree(), key, 0))
            return e;
    return nullptr;
}

SYMTAB* block_cse::find_hold(const NODE* key, unsigned hash, TYPE* type) {
    for (auto& [sym, h] : holds_)
        if (h.hash == hash && same_type(sym->type, type) && same_type(h.value->type, type) &&
            trees_are_congruent(h.value, key, 0))
            return sym;
    return nullptr;
}

// A subtree is about to be replaced: the marks in it go with it.
void block_cse::forget_subtree(NODE* t) {
    for (; t; t = t->left) {
        if (t->op == CSE_DUPE) {
            marker_entry_.at(t)->dupes--;
            return;
        }
        if (t->op == CSE_ORIG) {
            ENTRY* e = marker_entry_.at(t);
            e->valid = false;
            e->dead = true;
        }
        forget_subtree(t->right);
    }
}

void block_cse::process(const CAND& c) {
    NODE* t = *c.slot;
    const NODE* plain = skip_dupes(t);
    NODE* key = contains_pointer_sum(plain)
                    ? normalize_ptr_for_indexing(copy_tree_without_dupes(t), plain->type)
                    : nullptr;
    const NODE* k = key ? key : t;
    const unsigned hash = tree_hash(k);
    LS* scope = cell_->tree->scope;

    const auto found_redundant = [&]() {
        if (print_debug && is_load(plain->op)) {
            NODE* shown = copy_tree_without_dupes(t);
            dprintf("\n\t(%ld) 'lcse_lvalue' found %s redundant", line_of(cell_),
                    stmt2infix(shown).c_str());
            erase_tree(shown);
        }
        forget_subtree(t);
        graveyard_.push_back(t);
        changed_stmt_ = true;
    };

    // A local that holds the value already.
    if (SYMTAB* x = find_hold(k, hash, plain->type)) {
        found_redundant();
        *c.slot = mk_NAME(x, scope);
        erase_tree(key);
        return;
    }
    if (ENTRY* e = find_entry(k, hash)) {
        erase_tree(key);
        // Two evaluations of one statement are ordered only when the first
        // can go in front of the statement.
        if (e->stmt == stmt_ && !e->hoist)
            return;
        found_redundant();
        NODE* dupe = new_node(CSE_DUPE, e->expr->type);
        dupe->right = e->expr;
        dupe->scope = scope;
        marker_entry_[dupe] = e;
        e->dupes++;
        *c.slot = dupe;
        return;
    }
    // A value computed only on some paths of the statement is no first
    // evaluation for what follows.
    if (events_[c.first].conditional) {
        erase_tree(key);
        return;
    }
    auto e = std::make_unique<ENTRY>();
    e->expr = t;
    e->key = key;
    e->hash = hash;
    e->stmt = stmt_;
    e->seq = static_cast<int>(entries_.size());
    e->scope = scope;
    e->cost = tree_cost(t);
    e->deps = deps_of(t, c.first, c.last);
    // Computed in front of the statement only when nothing of the statement
    // runs before it that writes or may not come back.
    e->hoist = true;
    for (int i = 0; i < c.first; i++)
        if (events_[i].kind == SCALAR_REF::DEF || events_[i].kind == SCALAR_REF::STORE ||
            events_[i].kind == SCALAR_REF::CALL)
            e->hoist = false;
    NODE* orig = new_node(CSE_ORIG, t->type);
    orig->right = t;
    orig->scope = scope;
    e->marker = orig;
    marker_entry_[orig] = e.get();
    *c.slot = orig;
    buckets_[hash % HASH_BUCKETS].push_back(e.get());
    entries_.push_back(std::move(e));
}

void block_cse::kill_if(const std::function<bool(const DEPS&)>& hit) {
    for (auto& e : entries_)
        if (e->valid && hit(e->deps))
            e->valid = false;
    for (size_t i = holds_.size(); i-- > 0;)
        if (hit(holds_[i].second.deps))
            drop_hold(holds_.begin() + static_cast<long>(i));
}

void block_cse::kill(const SCALAR_REF& r) {
    switch (r.kind) {
    case SCALAR_REF::DEF: {
        SYMTAB* s = r.sym;
        auto h = find_hold_of(s);
        if (h != holds_.end())
            drop_hold(h);
        const NODE* lv = strip_lvalue_casts(r.node ? r.node->left : nullptr);
        if (!lv || lv->op != NAME)
            lv = r.node;
        const bool tracked = is_tracked_scalar(s);
        kill_if([&](const DEPS& d) {
            if (std::find(d.syms.begin(), d.syms.end(), s) != d.syms.end())
                return true;
            if (tracked)
                return false;
            for (const NODE* m : d.memory)
                if (lvalues_may_alias(lv, m))
                    return true;
            return false;
        });
        return;
    }
    case SCALAR_REF::STORE:
        kill_if([&](const DEPS& d) {
            for (const NODE* m : d.memory)
                if (lvalues_may_alias(r.node, m))
                    return true;
            return false;
        });
        return;
    case SCALAR_REF::CALL:
        kill_if([](const DEPS& d) { return !d.memory.empty(); });
        return;
    default:
        return;
    }
}

void block_cse::remember_hold(NODE* asg, NODE* plain_value) {
    SYMTAB* x = asg->left->name_symbol();
    const int last = static_cast<int>(events_.size()) - 1;
    HOLD h;
    h.value = plain_value;
    h.hash = tree_hash(plain_value);
    // The value's reads are every event before the definition itself.
    h.deps = deps_of(plain_value, 0, last - 1);
    if (std::find(h.deps.syms.begin(), h.deps.syms.end(), x) != h.deps.syms.end() ||
        !same_type(x->type, plain_value->type)) {
        erase_tree(plain_value);
        return;
    }
    holds_.emplace_back(x, h);
}

void block_cse::walk_statement(LIST* cell) {
    cell_ = cell;
    NODE* t = cell->tree;
    events_.clear();
    spans_.clear();
    cands_.clear();
    walk_statement_refs(t, [&](const SCALAR_REF& r) { events_.push_back(r); });
    for (size_t i = 0; i < events_.size(); i++)
        spans_[events_[i].node].add(static_cast<int>(i));
    compute_spans(t);

    // `x = e` of a tracked local with a pure e: x holds e afterwards. The
    // value is copied before any part of it is replaced.
    NODE* held = nullptr;
    if (t && t->op == ASG && is_likely_register(t->left) && t->right &&
        !tree_has_side_effects(t->right) && tree_is_plain_value(t->right) && !events_.empty() &&
        events_.back().kind == SCALAR_REF::DEF)
        held = copy_tree(t->right, true);

    enumerate(&cell->tree, false);
    std::stable_sort(cands_.begin(), cands_.end(),
                     [](const CAND& a, const CAND& b) { return a.last < b.last; });
    size_t next = 0;
    for (size_t i = 0; i < events_.size(); i++) {
        kill(events_[i]);
        while (next < cands_.size() && cands_[next].last == static_cast<int>(i))
            process(cands_[next++]);
    }
    if (held)
        remember_hold(t, held);
}

// The value a reuse reads: the temporary, or the expression again with its
// own shared parts read the same way.
NODE* block_cse::read_of(ENTRY* e, LS* scope) {
    if (e->temp)
        return mk_NAME(e->temp, scope);
    return plain_copy(e->expr, scope);
}

NODE* block_cse::plain_copy(NODE* t, LS* scope) {
    if (!t)
        return nullptr;
    if (t->op == CSE_ORIG || t->op == CSE_DUPE)
        return read_of(marker_entry_.at(t), scope);
    if (t->op == DDNODE)
        return copy_dd_node(t);
    NODE* n = copy_node(t, true);
    n->left = plain_copy(t->left, scope);
    n->right = plain_copy(t->right, scope);
    return n;
}

void block_cse::replace_dupes(NODE** slot) {
    NODE* t = *slot;
    if (!t)
        return;
    if (t->op == CSE_DUPE) {
        *slot = read_of(marker_entry_.at(t), t->scope);
        erase_node(t);
        return;
    }
    if (t->op == CSE_ORIG) {
        replace_dupes(&t->right);
        return;
    }
    replace_dupes(&t->left);
    replace_dupes(&t->right);
}

void block_cse::resolve_origs(NODE** slot, std::vector<std::pair<ENTRY*, NODE*>>& hoisted) {
    NODE* t = *slot;
    if (!t)
        return;
    if (t->op != CSE_ORIG) {
        resolve_origs(&t->left, hoisted);
        resolve_origs(&t->right, hoisted);
        return;
    }
    ENTRY* e = marker_entry_.at(t);
    resolve_origs(&t->right, hoisted);
    NODE* expr = t->right;
    t->right = nullptr;
    erase_node(t);
    if (!e->temp) {
        *slot = expr;
    } else if (e->hoist) {
        hoisted.emplace_back(e, mk_ASG(mk_NAME(e->temp, e->scope), expr));
        *slot = mk_NAME(e->temp, e->scope);
    } else {
        *slot = mk_ASG(mk_NAME(e->temp, e->scope), expr);
    }
}

void block_cse::resolve(bool& cond_changed) {
    // A temporary pays when computing the value again costs more than
    // keeping it.
    bool any = !graveyard_.empty();
    for (auto& e : entries_) {
        if (e->dupes < 0 || (e->dead && e->dupes > 0))
            compiler_error("lcse", " inconsistent reuse count %d", e->dupes);
        if (!e->dead && e->dupes > 0 && e->cost * e->dupes >= 2) {
            e->temp = sym_temp('c', -1, strip_qualifiers(e->expr->type), e->scope);
            any = true;
        }
    }
    for (LIST* s = bb_->statements; s; s = s->next)
        replace_dupes(&s->tree);
    LIST** link = &bb_->statements;
    std::vector<std::pair<ENTRY*, NODE*>> hoisted;
    while (*link) {
        LIST* cell = *link;
        hoisted.clear();
        resolve_origs(&cell->tree, hoisted);
        // In the order the values were first computed: a later one may read
        // an earlier one's temporary.
        std::stable_sort(hoisted.begin(), hoisted.end(),
                         [](const auto& a, const auto& b) { return a.first->seq < b.first->seq; });
        for (const auto& h : hoisted) {
            *link = mkelist(h.second, cell, cell->psn);
            link = &(*link)->next;
        }
        if (any && !cell->next && cell->tree && (cell->tree->op == IF || cell->tree->op == SWITCH))
            cond_changed = true;
        link = &cell->next;
    }
}

} // namespace

void lcse() {
    if (!currfuninfo || pass_disable("lcse"))
        return;
    dprintf("\n\n\t\t\t---------- ENTERING 'lcse' ----------\n");
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        b->statements = flatten_statement_sequences(b->statements);
    mark_address_taken_locals();
    bool cond_changed = false;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        block_cse(b).run(cond_changed);
    simp_all_trees();
    if (cond_changed)
        simpcfg(false, false);
}
