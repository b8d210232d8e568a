// Copy and constant propagation: a variable known to hold a constant or a
// copy of another is replaced by it, function-wide for a variable assigned
// once, block by block for the rest.
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "driver/driver.h"
#include "driver/options.h"
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

// A value that is the same wherever it is evaluated.
bool is_constant_value(const NODE* t) {
    static const std::unordered_set<const SYMTAB*> none;
    return value_is_function_invariant(t, none);
}

// x = v as a statement of its own, x a tracked local: the variable, or null.
SYMTAB* plain_assigned_variable(const NODE* t) {
    if (!t || t->op != ASG || !t->left || t->left->op != NAME || !t->right)
        return nullptr;
    SYMTAB* s = t->left->name_symbol();
    if (!is_tracked_scalar(s) || type_is_volatile(t->left->type))
        return nullptr;
    return s;
}

// The value x holds after x = v, in x's type.
NODE* stored_value(const SYMTAB* x, const NODE* v) {
    return simp_tree(coerce_to_type(x->type, copy_tree(v, true)), nullptr, nullptr);
}

class VALUE_TABLE {
  public:
    ~VALUE_TABLE() { clear(); }
    void clear() {
        for (auto& [sym, value] : values)
            erase_tree(value);
        values.clear();
    }
    void set(const SYMTAB* s, NODE* value) {
        remove(s);
        values[s] = value;
    }
    void remove(const SYMTAB* s) {
        auto it = values.find(s);
        if (it == values.end())
            return;
        erase_tree(it->second);
        values.erase(it);
    }
    // Entries for s or whose value reads s.
    void kill(const SYMTAB* s) {
        for (auto it = values.begin(); it != values.end();) {
            if (it->first == s || sym_appears_in_tree(s, it->second)) {
                erase_tree(it->second);
                it = values.erase(it);
            } else {
                ++it;
            }
        }
    }
    const std::unordered_map<const SYMTAB*, NODE*>& map() const { return values; }

  private:
    std::unordered_map<const SYMTAB*, NODE*> values;
};

// Variables assigned once, by a constant or by a copy of another such
// variable: any read that sees no assignment reads an indeterminate value,
// every other read sees this one.
void collect_global_constants(VALUE_TABLE& table) {
    struct COUNT {
        int defs = 0;
        NODE* def = nullptr;
        bool statement = false;
    };
    std::unordered_map<const SYMTAB*, COUNT> counts;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        for (LIST* s = b->statements; s; s = s->next)
            walk_statement_refs(s->tree, [&](const SCALAR_REF& r) {
                if (r.kind != SCALAR_REF::DEF)
                    return;
                COUNT& c = counts[r.sym];
                c.defs++;
                c.def = r.node;
                c.statement = r.node == s->tree && !tree_is_arg_prolog(s->tree);
            });
    std::unordered_map<const SYMTAB*, const NODE*> copies;
    for (auto& [sym, c] : counts) {
        if (c.defs != 1 || !c.statement || plain_assigned_variable(c.def) != sym)
            continue;
        // A restrict pointer promises something about its one object; it
        // keeps its name.
        if (sym->type->is_pointer() && (sym->type->qual_kind() & TQ_RESTRICT))
            continue;
        const NODE* v = c.def->right;
        if (is_constant_value(v))
            table.set(sym, stored_value(sym, v));
        else if (v->op == NAME && v->name_symbol() != sym)
            copies[sym] = v;
    }
    // Closed over copies: x = y with y constant is that constant too.
    for (bool changed = true; changed;) {
        changed = false;
        for (auto it = copies.begin(); it != copies.end();) {
            auto known = table.map().find(it->second->name_symbol());
            if (known != table.map().end()) {
                table.set(it->first, stored_value(it->first, known->second));
                it = copies.erase(it);
                changed = true;
            } else {
                ++it;
            }
        }
    }
    if (!print_debug || table.map().empty())
        return;
    dprintf("\n\t============== Globally constant assignments:\n");
    for (SYMTAB* list : {currfuninfo->autos, currfuninfo->regs})
        for (SYMTAB* s = list; s; s = s->next) {
            auto it = table.map().find(s);
            if (it != table.map().end())
                dprintf("\t%s = %s\n", s->name, stmt2infix(it->second).c_str());
        }
    dprintf("\n\t============================================\n");
}

// The symbols a statement writes before its very end: their values change
// while the statement runs, so no read in it may be replaced.
std::unordered_set<const SYMTAB*> written_inside(NODE* t) {
    std::unordered_set<const SYMTAB*> written;
    walk_statement_refs(t, [&](const SCALAR_REF& r) {
        if (r.kind == SCALAR_REF::DEF && r.node != t)
            written.insert(r.sym);
    });
    return written;
}

// One pass over the blocks; true when a test became decided.
bool propagate_in_blocks(const VALUE_TABLE& global, int& changes) {
    bool decided = false;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        VALUE_TABLE available;
        for (LIST* cell = b->statements; cell; cell = cell->next) {
            NODE* t = cell->tree;
            if (!t)
                continue;
            if (!tree_is_arg_prolog(t) && !tree_has_expandable_short_circuit(t)) {
                const auto written = written_inside(t);
                std::unordered_map<const SYMTAB*, NODE*> values;
                for (const auto& table : {&global.map(), &available.map()})
                    for (const auto& [sym, value] : *table) {
                        if (written.count(sym))
                            continue;
                        bool stale = false;
                        for (const SYMTAB* w : written)
                            stale |= sym_appears_in_tree(w, value);
                        if (!stale)
                            values[sym] = value;
                    }
                if (!values.empty() && substitute_values(cell, values)) {
                    ++changes;
                    decided |= resimplify_statement(cell);
                }
            }
            t = cell->tree;
            if (!t)
                continue;
            walk_statement_refs(t, [&](const SCALAR_REF& r) {
                if (r.kind == SCALAR_REF::DEF)
                    available.kill(r.sym);
            });
            // The body reads parameters through their copies only.
            SYMTAB* x = tree_is_arg_prolog(t) ? nullptr : plain_assigned_variable(t);
            if (!x || global.map().count(x))
                continue;
            const NODE* v = t->right;
            const bool copy = v->op == NAME && v->name_symbol() != x &&
                              is_tracked_scalar(v->name_symbol()) && !type_is_volatile(v->type);
            if (is_constant_value(v) || copy)
                available.set(x, stored_value(x, v));
        }
        drop_empty_statements(b);
    }
    return decided;
}

} // namespace

void copyprop(int) {
    if (opt_level() < 1 || !currfuninfo || !currfuninfo->bb_list)
        return;
    sym_split(currfuninfo);
    constexpr int max_rounds = 4;
    for (int round = 0; round < max_rounds; round++) {
        mark_address_taken_locals();
        for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
            b->statements = flatten_statement_sequences(b->statements);
        VALUE_TABLE global;
        collect_global_constants(global);
        int changes = 0;
        const bool decided = propagate_in_blocks(global, changes);
        if (decided) {
            rebuildcfg();
            simpcfg(false, false);
        }
        elim_dead_assigns(false, true);
        if (!decided)
            break;
    }
}
