// The cases of SWITCH statements: those the value cannot take go, and a value
// known to be a multiple of the cases' common factor is divided by it, so that
// sparse cases become a dense table. Both only on facts the value queries
// prove: a value that is no multiple would land on a wrong case.
#include <algorithm>
#include <cstring>
#include <vector>

#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/simpcfg_internal.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"
#include "support/intmath.h"

using namespace simpcfg_impl;

namespace {

// Jump tables beyond this many entries are not worth making dense.
constexpr long long max_case_range = 500;

bool names_never_executed(const NODE* t) {
    for (; t; t = t->left) {
        if (t->op == NAME && t->name_symbol() && t->name_symbol()->name) {
            const char* name = t->name_symbol()->name;
            if (strcmp(name, "_never_executed") == 0 ||
                strcmp(skip_name_prefix(name), "_never_executed") == 0)
                return true;
        }
        if (names_never_executed(t->right))
            return true;
    }
    return false;
}

// A block the exception machinery made to stand for what cannot happen.
bool block_is_never_executed(const BBLK* b) {
    for (const LIST* s = b ? b->statements : nullptr; s; s = s->next)
        if (names_never_executed(s->tree))
            return true;
    return false;
}

struct switch_case {
    NODE* node;
    // As compared: in the promoted type of the switch value, as C converts a
    // case label.
    INT65 value;
};

// The bits of v that are certainly zero, within its type. All bits known
// zero would be a constant, which the simplifier folds; such an answer is not
// trusted.
uint64_t certainly_zero_bits(NODE* v) {
    const uint64_t mask = type_mask(v->type).bits();
    const uint64_t zeros = ~find_known_zeros(v, v->type).bits() & mask;
    return zeros == mask ? 0 : zeros;
}

// The largest constant known to divide v.
INT65 known_factor(NODE* v, LOOP* loop) {
    INT65 factor = max_ICON_factor(v, loop, nullptr, 0);
    if (factor.is_negative())
        factor = -factor;
    if (factor.is_zero())
        factor = INT65(1);
    int low_zeros = 0;
    for (uint64_t zeros = certainly_zero_bits(v); zeros & 1; zeros >>= 1)
        low_zeros++;
    return long_lcm(factor, INT65(1) << low_zeros);
}

void drop_case(NODE* c) {
    if (LBL* l = c->right->label_rec)
        l->uses--;
    erase_tree(c);
}

bool optimize_switch(BBLK* b, NODE* t) {
    NODE* v = t->left;
    std::vector<NODE*> items = switch_items(t);
    NODE* def = items.back();
    if (!def || def->op != DEFAULT || !v || v->op == ICON || !TYPE_IS_INT(v->type))
        return false;
    TYPE* type = v->type;
    TYPE* promoted = promoted_type(type);
    std::vector<switch_case> cases;
    for (NODE* c : items) {
        if (c == def)
            continue;
        if (c->op != CASE || c->left->op != ICON)
            return false;
        cases.push_back({c, truncate_to_type(c->left->value, promoted)});
    }
    std::stable_sort(cases.begin(), cases.end(),
                     [](const switch_case& x, const switch_case& y) { return x.value < y.value; });
    dprintf("~~~#OSiBB#1 Total CASEs=%d, explicit CASEs=%d, %s\n", int(items.size()),
            int(cases.size()),
            currfuninfo->symbol && currfuninfo->symbol->name ? currfuninfo->symbol->name : "");
    dprintf("\nConsidering: %s\n", tree_text(t).c_str());

    bool changed = false;
    for (size_t i = 0; i + 1 < items.size(); i++)
        if (items[i] != cases[i].node)
            changed = true;

    // Cases the value cannot take.
    const INT65 lo = calculate_minval_for_tree(v, b->loop, nullptr);
    const INT65 hi = calculate_maxval_for_tree(v, b->loop, nullptr);
    const uint64_t zeros = certainly_zero_bits(v);
    std::vector<switch_case> possible;
    for (const switch_case& c : cases) {
        if (c.value < lo || c.value > hi || (c.value.bits() & zeros)) {
            drop_case(c.node);
            changed = true;
        } else {
            possible.push_back(c);
        }
    }

    // A default that never runs says that the value is one of the cases.
    INT65 common;
    for (const switch_case& c : possible)
        common = long_gcd(common, c.value);
    const INT65 factor = block_is_never_executed(label_target(def->left))
                             ? common
                             : long_gcd(common, known_factor(v, b->loop));
    if (!possible.empty() && factor > INT65(1)) {
        const INT65 range = (possible.back().value - possible.front().value) / factor;
        if (range <= INT65(0) || range >= INT65(max_case_range)) {
            dprintf("--> Range is <= 0 or >= 500\n");
        } else {
            // Exact: the value and every case are multiples of the factor.
            const int log = power_of_2(factor);
            NODE* by =
                log >= 0 ? mk_ICON(INT65(log), tp->mk_int(TYPE::ik_int)) : mk_ICON(factor, type);
            t->left = maketree(log >= 0 ? SRL : DIV, v, by, type, t->scope);
            for (switch_case& c : possible) {
                erase_tree(c.node->left);
                c.node->left = mk_ICON(c.value / factor, promoted);
            }
            dprintf("--> Simplified to switch(%s)...\n", tree_text(t->left).c_str());
            changed = true;
        }
    }
    if (!changed)
        return false;
    free_switch_spine(t->right);
    std::vector<NODE*> chain;
    for (const switch_case& c : possible)
        chain.push_back(c.node);
    chain.push_back(def);
    t->right = switch_chain(chain, t);
    reset_successors(b);
    return true;
}

} // namespace

void optimize_SWITCH_cases() {
    FUNINFO* f = currfuninfo;
    if (!f || !f->bb_list)
        return;
    dprintf("\n\n\t\t\t------ ENTERING 'optimize_SWITCH_cases' ----\n");
    OPTASSERT(f->bb_list->loop == nullptr);
    bool changed = false;
    for (BBLK* b = f->bb_list; b; b = b->next) {
        NODE* t = last_stmt(b);
        if (t && t->op == SWITCH && edge_length(b->succs) > 2 && optimize_switch(b, t))
            changed = true;
    }
    // Targets of dropped cases may have lost their last way in.
    if (changed)
        rebuildcfg();
}
