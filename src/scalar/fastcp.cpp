// The cheap propagation: a local assigned once, to a value that cannot
// change, is that value everywhere. And the joining of neighbouring
// assignments to one target.
#include <string>
#include <unordered_map>
#include <unordered_set>

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
#include "scalar/snmap.h"
#include "simplify/simplify.h"

namespace {

struct SYM_COUNTS {
    // -1: never touched (globals, parameters, aliased locals).
    int defs = 0;
    int uses = 0;
    BBLK* def_block = nullptr;
    LIST* def_cell = nullptr;
    NODE* def_node = nullptr;
};

bool is_statement_operator(int op) {
    switch (op) {
    case IF:
    case SWITCH:
    case RETURN:
    case URETURN:
    case BRANCH:
    case LABELDEF:
    case ASM:
        return true;
    default:
        return false;
    }
}

} // namespace

bool value_is_function_invariant(const NODE* t, const std::unordered_set<const SYMTAB*>& invariant) {
    if (!t)
        return false;
    switch (t->op) {
    case ICON:
    case FCON:
    case LCON:
        return true;
    case UAND:
        // The address of a named object, local or not, is fixed for the call.
        return t->left && t->left->op == NAME;
    case NAME: {
        const SYMTAB* s = t->name_symbol();
        if (type_is_volatile(t->type) || symbol_is_volatile(s) || s->aliased)
            return false;
        if (invariant.count(s))
            return true;
        // A const object of the file: writing it is undefined.
        return !is_local_symbol(s) && symbol_is_immutable(s) && t->type->is_scalar();
    }
    case PLUS:
        return value_is_function_invariant(t->left, invariant) &&
               value_is_function_invariant(t->right, invariant);
    case SCONV:
    case PCONV:
        return value_is_function_invariant(t->left, invariant);
    default:
        return false;
    }
}

namespace {

// Replaces the reads of mapped symbols in t; targets stay.
struct SUBSTITUTER {
    const std::unordered_map<const SYMTAB*, NODE*>& values;
    bool changed = false;

    NODE* rvalue(NODE* t) {
        if (!t)
            return t;
        switch (t->op) {
        case NAME: {
            auto it = values.find(t->name_symbol());
            if (it == values.end() || type_is_volatile(t->type))
                return t;
            changed = true;
            TYPE* type = t->type;
            erase_tree(t);
            return coerce_to_type(type, copy_tree(it->second, true));
        }
        case UAND:
            t->left = lvalue(t->left);
            return t;
        case STDOT:
            t->left = lvalue(t->left);
            return t;
        case RETURN:
            t->right = rvalue(t->right);
            return t;
        case ASG:
        case STASG:
        case ARASG:
        case PLUSPLUS:
        case MINMIN:
            t->right = rvalue(t->right);
            t->left = lvalue(t->left);
            return t;
        default:
            break;
        }
        if (op_of_opASG[t->op] != NONE) {
            t->right = rvalue(t->right);
            t->left = lvalue(t->left);
            return t;
        }
        t->left = rvalue(t->left);
        t->right = rvalue(t->right);
        return t;
    }

    // An object: its name stays, the operands of its address are values.
    NODE* lvalue(NODE* t) {
        if (!t)
            return t;
        switch (t->op) {
        case NAME:
            return t;
        case SCONV:
        case PCONV:
        case STDOT:
            t->left = lvalue(t->left);
            return t;
        case UMULT:
        case STREF:
            t->left = rvalue(t->left);
            return t;
        default:
            return rvalue(t);
        }
    }
};

} // namespace

// Shared with copyprop: after a substitution the statement is simplified
// again; what is left without an effect goes. Returns whether a test became
// decided.
bool resimplify_statement(LIST* cell) {
    cell->tree = simp_tree(cell->tree, nullptr, nullptr);
    NODE* t = cell->tree;
    if (t && !is_statement_operator(t->op))
        cell->tree = peel_for_effect(t);
    t = cell->tree;
    return t && (t->op == IF || t->op == SWITCH) && t->left &&
           (t->left->op == ICON || t->left->op == FCON);
}

// Shared with copyprop: puts the map's values for their symbols' reads in one
// statement. Returns whether it changed.
bool substitute_values(LIST* cell, const std::unordered_map<const SYMTAB*, NODE*>& values) {
    SUBSTITUTER sub{values};
    cell->tree = sub.rvalue(cell->tree);
    return sub.changed;
}

// Shared with copyprop: a sequence that simplification left at the top of a
// statement becomes statements again, and cells whose tree went away go.
void drop_empty_statements(BBLK* b) { b->statements = flatten_statement_sequences(b->statements); }

namespace {

void log_tree(const char* format, const SYMTAB* s, const NODE* t) {
    if (print_debug)
        dprintf(format, s->name, stmt2infix(t).c_str());
}

// Whether the block continues the straight line of the one before it: its
// only predecessor, which has no other successor. What held at the end of
// that block holds at the start of this one.
bool continues_straight_line(const BBLK* b) {
    return b->prev && b->prev->next == b && b->preds && !b->preds->next &&
           b->preds->bb == b->prev && b->prev->succs && !b->prev->succs->next;
}

// x = c again in a straight line where x still holds c: the second goes.
// Counts the statements removed.
int drop_repeated_assignments() {
    int dropped = 0;
    std::unordered_map<const SYMTAB*, const NODE*> holds;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        if (!continues_straight_line(b))
            holds.clear();
        for (LIST* cell = b->statements; cell; cell = cell->next) {
            NODE* t = cell->tree;
            if (!t || tree_is_arg_prolog(t))
                continue;
            const bool plain = t->op == ASG && t->left && t->left->op == NAME &&
                               is_tracked_scalar(t->left->name_symbol()) && t->right &&
                               (t->right->op == ICON || t->right->op == FCON);
            if (plain) {
                auto it = holds.find(t->left->name_symbol());
                if (it != holds.end() && trees_are_congruent(it->second, t->right, 0)) {
                    cell->tree = erase_tree(t);
                    ++dropped;
                    continue;
                }
            }
            walk_statement_refs(t, [&](const SCALAR_REF& r) {
                if (r.kind == SCALAR_REF::DEF)
                    holds.erase(r.sym);
            });
            if (plain)
                holds[t->left->name_symbol()] = t->right;
        }
        drop_empty_statements(b);
    }
    return dropped;
}

// One round of counting, choosing and substituting. Returns whether the
// control flow changed, and counts the statements changed.
bool fast_CP_round(int& substitutions) {
    if (print_debug)
        dprintf("\n\n\t\t\t---------- ENTERING 'fast_CP' -----------------\n");
    mark_address_taken_locals();
    std::unordered_map<const SYMTAB*, SYM_COUNTS> counts;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        for (LIST* s = b->statements; s; s = s->next)
            walk_statement_refs(s->tree, [&](const SCALAR_REF& r) {
                if (r.kind == SCALAR_REF::USE) {
                    counts[r.sym].uses++;
                } else if (r.kind == SCALAR_REF::DEF) {
                    SYM_COUNTS& c = counts[r.sym];
                    c.defs++;
                    c.def_block = b;
                    c.def_cell = s;
                    c.def_node = r.node;
                }
            });

    SNMAP& snmap = function_snmap(currfuninfo);
    snmap.clear();
    std::unordered_set<const SYMTAB*> invariant;
    std::vector<SYMTAB*> locals;
    for (SYMTAB* list :
         {currfuninfo->symbols, currfuninfo->temps, currfuninfo->autos, currfuninfo->regs})
        for (SYMTAB* s = list; s; s = s->next)
            if (is_local_symbol(s) && s->sclass != SC_PARAM)
                locals.push_back(s);

    // Parameters first: their copies are the invariants other values build on.
    for (SYMTAB* s : locals) {
        const SYM_COUNTS& c = counts[s];
        if (!is_tracked_scalar(s) || c.defs != 1 || c.def_node != c.def_cell->tree ||
            !tree_is_arg_prolog(c.def_node))
            continue;
        if (print_debug)
            dprintf("\n\tArgument variable is not re-assigned: %s\n", s->name);
        if (!(s->type->qual_kind() & TQ_CONST))
            s->type = tp->mk_qual(s->type, TQ_CONST);
        invariant.insert(s);
    }

    std::unordered_map<const SYMTAB*, NODE*> values;
    for (SYMTAB* s : locals) {
        const SYM_COUNTS& c = counts[s];
        if (c.defs == 0 && c.uses == 0) {
            if (print_debug)
                dprintf("\tNo references in the function for '%s'\n", s->name);
            continue;
        }
        if (c.defs == 0) {
            if (print_debug && s->sclass == SC_AUTO)
                dprintf("\n\tVariable is used but never assigned: %s\n", s->name);
            continue;
        }
        if (!is_tracked_scalar(s) || c.defs != 1 || invariant.count(s))
            continue;
        // One plain assignment standing as a statement of its own.
        NODE* asg = c.def_node;
        if (asg != c.def_cell->tree || asg->op != ASG || !asg->left || asg->left->op != NAME ||
            !asg->right || opcode_is_ASG(asg->right->op))
            continue;
        if (s->type->is_pointer() && !(s->type->qual_kind() & TQ_RESTRICT) &&
            !SPMAP_is_bound(s))
            SPMAP_set_pointee(s, copy_tree(asg->right, true));
        // Any read that sees no assignment before it reads an indeterminate
        // value; every other read sees this one, always the same value.
        if (!value_is_function_invariant(asg->right, invariant))
            continue;
        NODE* value = coerce_to_type(s->type, copy_tree(asg->right, true));
        value = simp_tree(value, nullptr, nullptr);
        log_tree("\n\tGlobally constant assignment: %s = %s\n", s, value);
        snmap.set_value(s, value);
        values[s] = snmap.value(s, false);
    }
    substitutions += drop_repeated_assignments();
    if (values.empty())
        return false;

    bool decided = false;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        for (LIST* cell = b->statements; cell; cell = cell->next) {
            if (!cell->tree || tree_is_arg_prolog(cell->tree) ||
                tree_has_expandable_short_circuit(cell->tree))
                continue;
            if (!substitute_values(cell, values))
                continue;
            ++substitutions;
            decided |= resimplify_statement(cell);
        }
        drop_empty_statements(b);
    }
    return decided;
}

} // namespace

void fast_CP(int rounds, int combine) {
    if (opt_level() < 1 || !currfuninfo || !currfuninfo->bb_list)
        return;
    if (combine)
        combine_asgs_to_memory();
    sym_split(currfuninfo);
    int substitutions = 0;
    for (int round = 0; round < rounds; round++) {
        if (!fast_CP_round(substitutions))
            break;
        rebuildcfg();
        simpcfg(false, false);
    }
    if (combine || substitutions)
        elim_dead_assigns(false, true);
    if (print_debug)
        function_snmap(currfuninfo).print(fdebug);
}

namespace {

bool is_combinable_target(const NODE* t) {
    if (!t || tree_has_side_effects(t) || tree_is_bit_field(t))
        return false;
    if (t->op == NAME) {
        const SYMTAB* s = t->name_symbol();
        return !(s->qual & (SQ_REGISTER | SQ_CREGISTER)) && !symbol_is_volatile(s);
    }
    return t->op == UMULT || t->op == STDOT || t->op == STREF;
}

// Reads of a congruent copy of `target` in a value without effects; an
// address taken of it is no read.
int count_target_reads(const NODE* t, const NODE* target) {
    if (!t || t->op == UAND)
        return 0;
    if (trees_are_congruent(t, target, 0))
        return 1;
    return count_target_reads(t->left, target) + count_target_reads(t->right, target);
}

template <class MAKE> NODE* replace_target_reads(NODE* t, const NODE* target, MAKE make) {
    if (!t || t->op == UAND)
        return t;
    if (trees_are_congruent(t, target, 0)) {
        TYPE* type = t->type;
        erase_tree(t);
        return coerce_to_type(type, make());
    }
    t->left = replace_target_reads(t->left, target, make);
    t->right = replace_target_reads(t->right, target, make);
    return t;
}

// Whether the value reads, besides the target itself, something a store to
// the target may change.
bool reads_other_overlap(NODE* value, const NODE* target) {
    bool overlap = false;
    walk_statement_refs(value, [&](const SCALAR_REF& r) {
        if (r.kind != SCALAR_REF::USE && r.kind != SCALAR_REF::LOAD)
            return;
        if (trees_are_congruent(r.node, target, 0))
            return;
        // A read inside the target's own address is the address, not the object.
        overlap |= lvalues_may_alias(r.node, target) && !tree_is_subtree_of_tree(r.node, target);
    });
    return overlap;
}

// x op= c1; x op= c2 with op one of + * | & ^ on integers or pointers.
bool is_foldable_update(const NODE* t) {
    switch (t->op) {
    case PLUSASG:
    case MULTASG:
    case ORBASG:
    case ANDBASG:
    case XORBASG:
        // A _Bool is tested after each update: its updates do not compose.
        return t->right && t->right->op == ICON && t->left->type && !t->left->type->is_bool() &&
               (t->left->type->is_integral() || t->left->type->is_pointer());
    default:
        return false;
    }
}

void log_combination(const std::string& a, const std::string& b, const NODE* result) {
    if (!print_debug)
        return;
    dprintf("\n\tCombining the assignments %s\n", a.c_str());
    dprintf("\t......................and %s\n", b.c_str());
    dprintf("\t...................to get %s\n", stmt2infix(result).c_str());
}

// The plain form of an update (x += e as x = x + e) as a new tree, or null.
NODE* as_plain(const NODE* t) {
    if (t->op == ASG)
        return copy_tree(t, true);
    if (op_of_opASG[t->op] == NONE)
        return nullptr;
    NODE* plain = opASG_to_ASG(copy_tree(t, true));
    if (plain->op == ASG)
        return plain;
    erase_tree(plain);
    return nullptr;
}

// Joins the statement of `first` into that of `second`, its neighbour behind
// it; true when first's statement is to go.
bool combine_pair(LIST* first_cell, LIST* second_cell) {
    NODE* first = first_cell->tree;
    NODE* second = second_cell->tree;
    if (tree_is_arg_prolog(first) || tree_is_arg_prolog(second))
        return false;
    if (!is_combinable_target(first->left) || !trees_are_congruent(first->left, second->left, 0))
        return false;
    if (tree_has_side_effects(first->right) || tree_has_side_effects(second->right))
        return false;
    const std::string a = print_debug ? stmt2infix(first) : "";
    const std::string b = print_debug ? stmt2infix(second) : "";
    if (first->op == second->op && is_foldable_update(first) && is_foldable_update(second)) {
        NODE* c1 = first->right;
        NODE* c2 = coerce_to_type(c1->type, second->right);
        second->right = simp_node(maketree(op_of_opASG[first->op], c1, c2, c1->type, c1->scope),
                                  nullptr, nullptr);
        first->right = nullptr;
        log_combination(a, b, second);
        return true;
    }
    // An update with a plain form takes part as that form.
    NODE* p1 = as_plain(first);
    NODE* p2 = as_plain(second);
    if (!p1 || !p2 || tree_has_side_effects(p1->right) || tree_has_side_effects(p2->right) ||
        reads_other_overlap(p2->right, p1->left)) {
        erase_tree(p1);
        erase_tree(p2);
        return false;
    }
    NODE* target = p1->left;
    const int reads = count_target_reads(p2->right, target);
    if (reads <= 1) {
        NODE* value = p1->right;
        p1->right = nullptr;
        p2->right = replace_target_reads(p2->right, target, [&] { return value; });
        if (reads == 0)
            erase_tree(value);
        erase_tree(p1);
        erase_tree(second);
        second_cell->tree = simp_tree(p2, nullptr, nullptr);
        log_combination(a, b, second_cell->tree);
        return true;
    }
    // Read more than once: a temporary holds the first value, so that memory
    // is written once.
    SYMTAB* temp = sym_temp('c', -1, target->type, second->scope);
    p2->right = replace_target_reads(p2->right, target,
                                     [&] { return mk_NAME(temp, second->scope); });
    NODE* value = coerce_to_type(target->type, p1->right);
    p1->right = nullptr;
    erase_tree(p1);
    erase_tree(first);
    first_cell->tree = simp_tree(mk_ASG(mk_NAME(temp, second->scope), value), nullptr, nullptr);
    erase_tree(second);
    second_cell->tree = simp_tree(p2, nullptr, nullptr);
    log_combination(a, b, second_cell->tree);
    return false;
}

} // namespace

// Shared with the list form used by the loop code.
void combine_assignments(LIST* stmts) {
    for (LIST* cell = stmts; cell && cell->next; cell = cell->next) {
        if (cell->tree && cell->next->tree && opcode_is_ASG(cell->tree->op) &&
            opcode_is_ASG(cell->next->tree->op) && combine_pair(cell, cell->next))
            cell->tree = erase_tree(cell->tree);
    }
}

void combine_asgs_to_memory() {
    if (!currfuninfo)
        return;
    if (print_debug)
        dprintf("\n\n\t\t\t---------- ENTERING 'combine_asgs_to_memory' -------\n");
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        combine_assignments(b->statements);
        drop_empty_statements(b);
    }
}
