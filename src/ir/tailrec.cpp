// Tail recursion: a call of the function to itself whose value is returned
// unchanged, or after which the function only returns, becomes new values for
// the parameters and a jump behind the argument prolog.
#include <cstring>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/infix.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

constexpr long long asm_kind_comment = 47;

// A parameter, the local the body knows it by, and the prolog statement that
// copies the one into the other.
struct BINDING {
    SYMTAB* param;
    SYMTAB* local;
    NODE* copy;
};

// A self-call in tail position: `cell` holds the RETURN, or the call statement
// that a jump to the exit follows.
struct TAIL_CALL {
    BBLK* bb;
    LIST* cell;
    NODE* call;
};

bool is_value_conversion(const NODE* t) {
    return t && (t->op == SCONV || t->op == PCONV || t->op == ISP2CHAR);
}

// The operand slot of a prolog side that holds the symbol: behind value
// conversions, where a UMULT of UAND stands for the symbol itself.
NODE** symbol_slot(NODE** slot) {
    while (is_value_conversion(*slot))
        slot = &(*slot)->left;
    return slot;
}

SYMTAB* slot_symbol(NODE* t) {
    if (t && t->op == UMULT && t->left && t->left->op == UAND)
        t = t->left->left;
    return t && t->op == NAME ? t->name_symbol() : nullptr;
}

// Flattens one prolog statement; false for a shape that binds no parameter.
bool collect_bindings(NODE* t, std::vector<BINDING>& out) {
    if (t->op == PCOMMA)
        return t->left && t->right && collect_bindings(t->left, out) &&
               collect_bindings(t->right, out);
    // SSA wrappers do not exist yet when the blocks are built.
    if (t->op != ASG && t->op != STASG)
        return false;
    SYMTAB* local = slot_symbol(*symbol_slot(&t->left));
    SYMTAB* param = slot_symbol(*symbol_slot(&t->right));
    if (!local || !param || param->lex != 1 || local->lex != 2)
        return false;
    out.push_back({param, local, t});
    return true;
}

bool is_prolog_cell(const BBLK* entry, const LIST* cell) {
    for (LIST* s = entry->statements; s && tree_is_arg_prolog(s->tree); s = s->next)
        if (s == cell)
            return true;
    return false;
}

// The parameters in declaration order, each with the one prolog statement
// that copies it; false if the prolog does not bind every parameter once.
bool bind_parameters(const FUNINFO* f, std::vector<BINDING>& out) {
    std::vector<BINDING> found;
    for (LIST* s = f->bb_list->statements; s && tree_is_arg_prolog(s->tree); s = s->next)
        if (!collect_bindings(s->tree, found))
            return false;
    // The symbol list grows at the front.
    std::vector<SYMTAB*> params;
    for (SYMTAB* s = f->symbols; s; s = s->next)
        if (s->lex == 1)
            params.insert(params.begin(), s);
    if (params.size() != found.size())
        return false;
    for (SYMTAB* p : params) {
        const BINDING* match = nullptr;
        for (const BINDING& b : found)
            if (b.param == p) {
                if (match)
                    return false;
                match = &b;
            }
        if (!match)
            return false;
        out.push_back(*match);
    }
    return true;
}

bool is_frame_symbol(const SYMTAB* s) {
    return s && s->lex >= 1 && s->sclass != SC_STATIC && s->sclass != SC_EXTERN_DECL &&
           s->sclass != SC_GLOBAL_DEF && !(s->type && sym_is_function(s));
}

// Whether the lvalue is storage of the frame; a pointer's target is not.
bool lvalue_in_frame(const NODE* t) {
    if (!t)
        return false;
    switch (t->op) {
    case NAME:
        return is_frame_symbol(t->name_symbol());
    case UMULT:
    case STREF:
        return false;
    default:
        return lvalue_in_frame(t->left) || lvalue_in_frame(t->right);
    }
}

// A pointer into the frame could reach the next activation through the
// arguments, and there it would see the new values instead of the old ones.
bool frame_address_escapes(const NODE* t, bool under_umult) {
    if (!t)
        return false;
    switch (t->op) {
    case UAND:
        // *&x is x itself, as in the prolog.
        if (!under_umult && lvalue_in_frame(t->left))
            return true;
        break;
    case ARGREF:
        if (lvalue_in_frame(t->left))
            return true;
        break;
    case NAME:
    case STDOT:
        // An array is used through its address.
        if (t->type && t->type->is_array() && !t->type->is_vector() && lvalue_in_frame(t))
            return true;
        break;
    default:
        break;
    }
    return frame_address_escapes(t->left, t->op == UMULT) || frame_address_escapes(t->right, false);
}

bool names_a_parameter(const NODE* t) {
    if (!t)
        return false;
    if (t->op == NAME && t->name_symbol() && t->name_symbol()->lex == 1)
        return true;
    return names_a_parameter(t->left) || names_a_parameter(t->right);
}

// What the whole function must allow, whatever the call. Variadic
// parameters live in the caller's frame, out of reach of assignments.
bool function_allows(FUNINFO* f, std::vector<BINDING>& params) {
    TYPE* type = f->symbol->type;
    if (!type || !type->is_func() || type->resolved->fn->vararg || f->address_taken)
        return false;
    if (!bind_parameters(f, params))
        return false;
    // Each access of a volatile is seen from outside; the new assignments
    // would add some.
    for (const BINDING& b : params)
        if (symbol_is_volatile(b.param) || symbol_is_volatile(b.local))
            return false;
    for (BBLK* b = f->bb_created; b; b = b->next_created)
        for (LIST* s = b->statements; s; s = s->next) {
            if (frame_address_escapes(s->tree, false))
                return false;
            // The jump lands behind the prolog: a body that reads the incoming
            // parameter itself would see the first call's value.
            if (!(b == f->bb_list && is_prolog_cell(b, s)) && names_a_parameter(s->tree))
                return false;
        }
    return true;
}

bool is_self_call(const NODE* t, const FUNINFO* f) {
    if (!t || (t->op != CALL && t->op != UCALL))
        return false;
    SYMTAB* callee = get_callee_for_call(t);
    return callee && (callee == f->symbol || get_sym_def_for_decl(callee) == f->symbol);
}

bool same_value_type(TYPE* a, TYPE* b) {
    return a && b && compatible_types(strip_qualifiers(a), strip_qualifiers(b), true);
}

// The call whose value a RETURN gives back unchanged: a conversion that
// changes the value makes it an ordinary call.
NODE* returned_call(NODE* value) {
    while (is_value_conversion(value) && value->left &&
           same_value_type(value->type, value->left->type))
        value = value->left;
    return value && (value->op == CALL || value->op == UCALL) ? value : nullptr;
}

bool leads_only_to_return(const NODE* branch) {
    const BBLK* s = label_target(branch->left);
    return s && s->statements && !s->statements->next && s->statements->tree->op == URETURN;
}

bool find_tail_call(BBLK* b, const FUNINFO* f, TAIL_CALL& out) {
    LIST* last = last_stmt_cell(b);
    if (!last)
        return false;
    NODE* t = last->tree;
    if (t->op == RETURN) {
        out = {b, last, returned_call(t->right)};
    } else if ((t->op == BRANCH && leads_only_to_return(t)) || t->op == URETURN) {
        LIST* before = nullptr;
        for (LIST* s = b->statements; s != last; s = s->next)
            before = s;
        if (!before)
            return false;
        out = {b, before, before->tree};
    } else {
        return false;
    }
    return is_self_call(out.call, f);
}

// Plain flags and no exception-table entry: a call inside a try region has a
// handler that the jump would leave behind.
bool call_matches(NODE* call, const std::vector<BINDING>& params) {
    if (call->flags != 0 || call->call_id != 0)
        return false;
    NODE* args = call->op == CALL ? call->right : nullptr;
    if (arg_list_count(args) != static_cast<int>(params.size()))
        return false;
    for (size_t i = 0; i < params.size(); i++) {
        NODE* a = arg_list_lookup(args, static_cast<int>(i));
        if (!a || !a->type || a->op == STARG || !params[i].param->type ||
            !compatible_types(strip_qualifiers(a->type), strip_qualifiers(params[i].param->type),
                              false))
            return false;
    }
    return true;
}

std::vector<TAIL_CALL> find_tail_calls(FUNINFO* f, const std::vector<BINDING>& params) {
    std::vector<TAIL_CALL> out;
    for (BBLK* b = f->bb_created; b; b = b->next_created) {
        TAIL_CALL tc;
        if (find_tail_call(b, f, tc) && call_matches(tc.call, params))
            out.push_back(tc);
    }
    return out;
}

// The first block of the body, behind the prolog. The entry itself never
// becomes a jump target.
BBLK* body_block(FUNINFO* f) {
    BBLK* entry = f->bb_list;
    LIST* body = entry->statements;
    while (body && tree_is_arg_prolog(body->tree))
        body = body->next;
    if (body && body->tree->op == BRANCH && !body->next)
        return label_target(body->tree->left);
    return split_block(entry, body, true);
}

// The argument as a plain value: passing by reference is taking the address,
// an argument conversion is a conversion.
NODE* argument_value(NODE* a) {
    if (a->op == ARGREF)
        a->op = UAND;
    else if (a->op == ACONV)
        a->op = a->type->is_pointer() ? PCONV : SCONV;
    return a;
}

NODE* mk_comment(const std::string& text) {
    NODE* n = new_node(ASM, tp->mk_void());
    n->text = strdup(text.c_str());
    n->value = INT65(asm_kind_comment);
    return n;
}

// The prolog statement again, with the incoming parameter replaced by value.
NODE* rebind(const BINDING& b, NODE* value) {
    NODE* s = copy_tree(b.copy, true);
    NODE** slot = symbol_slot(&s->right);
    erase_tree(*slot);
    *slot = value;
    return s;
}

void remove_tail_call(const TAIL_CALL& tc, const std::vector<BINDING>& params, BBLK* target) {
    BBLK* b = tc.bb;
    LIST* cell = tc.cell;
    NODE* stmt = cell->tree;
    LS* scope = stmt->scope;
    PSN* psn = cell->psn;
    if (print_debug)
        dprintf("\n  ===> Tail recursive self-call removed at line %ld: %s\n\n",
                psn ? static_cast<long>(psn->line) : 0L, stmt2infix(stmt).c_str());

    const size_t n = params.size();
    std::vector<NODE*> values(n);
    NODE* args = tc.call->op == CALL ? tc.call->right : nullptr;
    for (size_t i = 0; i < n; i++)
        values[i] = argument_value(copy_tree(arg_list_lookup(args, static_cast<int>(i)), true));

    // Every new value is computed from the old ones: a parameter that a later
    // value reads, or that a later call or store might, is set only after all
    // values have been taken, from a temporary.
    std::vector<bool> via_temp(n, false);
    for (size_t i = 0; i < n; i++)
        for (size_t j = i + 1; j < n && !via_temp[i]; j++)
            via_temp[i] =
                sym_appears_in_tree(params[i].local, values[j]) || tree_has_side_effects(values[j]);

    LIST* added = nullptr;
    const auto add = [&](NODE* t) { added = append_node_to_list(t, added, psn); };
    if (source_interlist)
        add(mk_comment(stmt->op == RETURN ? "  return " + stmt2infix(tc.call) + ";"
                                          : "  " + stmt2infix(stmt) + ";"));
    std::vector<SYMTAB*> temps(n, nullptr);
    for (size_t i = 0; i < n; i++) {
        if (via_temp[i]) {
            temps[i] = sym_temp('T', -1, strip_qualifiers(values[i]->type), scope);
            add(mk_ASG(mk_NAME(temps[i], scope), values[i]));
        } else {
            add(rebind(params[i], values[i]));
        }
    }
    for (size_t i = 0; i < n; i++)
        if (temps[i])
            add(rebind(params[i], mk_NAME(temps[i], scope)));
    add(mk_comment("***\t; tail recursive call occurs here"));
    add(mk_BRANCH(target, scope));

    // The call and everything behind it in the block go.
    LIST** link = &b->statements;
    while (*link != cell)
        link = &(*link)->next;
    *link = added;
    for (LIST* s = cell; s;) {
        LIST* next = s->next;
        drop_label_uses(s->tree);
        erase_tree(s->tree);
        delete s;
        s = next;
    }
    b->succs = erase_edge_list(b->succs);
    b->succs = mkedge(target, nullptr);
}

} // namespace

void remove_tail_recursion() {
    FUNINFO* f = currfuninfo;
    if (opt_level() < 2 || program_mode != 2 || pass_disable("tail_recursion"))
        return;
    if (!f || !f->symbol || !f->bb_list)
        return;
    bool any = false;
    for (BBLK* b = f->bb_created; b && !any; b = b->next_created) {
        TAIL_CALL tc;
        any = find_tail_call(b, f, tc);
    }
    std::vector<BINDING> params;
    if (!any || !function_allows(f, params) || find_tail_calls(f, params).empty())
        return;
    BBLK* target = body_block(f);
    // Splitting may have moved a tail call out of the entry.
    for (const TAIL_CALL& tc : find_tail_calls(f, params))
        remove_tail_call(tc, params, target);
}
