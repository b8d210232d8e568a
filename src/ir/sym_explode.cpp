// Local structs that are only ever used member by member become one simple
// variable per member, which later passes can keep in registers.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "scalar/scalar.h"

namespace {

struct MEMBER_VAR {
    fkMDATA* member;
    SYMTAB* var = nullptr;
};

struct CANDIDATE {
    SYMTAB* sym;
    bool ok = true;
    std::vector<MEMBER_VAR> members;
    // The argument prolog cell that copies the incoming struct into it.
    LIST* prolog = nullptr;
};

using CANDIDATES = std::vector<CANDIDATE>;

CANDIDATE* candidate_of(CANDIDATES& cands, const NODE* t) {
    if (!t || t->op != NAME)
        return nullptr;
    for (CANDIDATE& c : cands)
        if (c.sym == t->name_symbol())
            return &c;
    return nullptr;
}

// The whole-struct copy of an incoming parameter into its local: the one use
// of the whole that explosion can keep, by copying member-wise behind it.
bool is_struct_explosion_parm_assignment(const NODE* t, CANDIDATES& cands) {
    return t->op == STASG && tree_is_arg_prolog(const_cast<NODE*>(t)) && t->left &&
           candidate_of(cands, t->left) && t->right && t->right->op == NAME;
}

bool is_member_access(const NODE* t, CANDIDATES& cands) {
    return t->op == STDOT && candidate_of(cands, t->left) && t->right && t->right->op == FIELD &&
           t->right->mval;
}

void note_member(CANDIDATE& c, const NODE* stdot) {
    fkMDATA* m = stdot->right->mval;
    // A bit field has no variable of its own, and an access through another
    // type than the member's would read the bits differently.
    if (m->is_bitfield || !stdot->type ||
        !compatible_types(stdot->type, m->type->normalized(), false)) {
        c.ok = false;
        return;
    }
    for (const MEMBER_VAR& v : c.members)
        if (v.member == m)
            return;
    c.members.push_back(MEMBER_VAR{m});
}

void scan_uses(const NODE* t, CANDIDATES& cands) {
    for (; t; t = t->left) {
        // Pointer arithmetic from a member's address may reach its neighbours.
        if (t->op == UAND && t->left && is_member_access(t->left, cands)) {
            candidate_of(cands, t->left->left)->ok = false;
            return;
        }
        if (is_member_access(t, cands)) {
            note_member(*candidate_of(cands, t->left), t);
            return;
        }
        if (CANDIDATE* c = candidate_of(cands, t)) {
            c->ok = false;
            return;
        }
        scan_uses(t->right, cands);
    }
}

MEMBER_VAR* var_for_access(CANDIDATES& cands, const NODE* t) {
    if (!is_member_access(t, cands))
        return nullptr;
    CANDIDATE* c = candidate_of(cands, t->left);
    for (MEMBER_VAR& v : c->members)
        if (v.member == t->right->mval)
            return &v;
    return nullptr;
}

NODE* rewrite_uses(NODE* t, CANDIDATES& cands) {
    if (!t)
        return t;
    if (MEMBER_VAR* v = var_for_access(cands, t)) {
        NODE* name = mk_NAME(v->var, t->scope);
        erase_tree(t);
        return name;
    }
    t->left = rewrite_uses(t->left, cands);
    t->right = rewrite_uses(t->right, cands);
    return t;
}

SYMTAB* make_member_var(FUNINFO* f, SYMTAB* whole, fkMDATA* m) {
    const std::string name =
        std::string("$O") + "$CSU$" + whole->name + "$" + (m->name ? m->name : "");
    TYPE* type = m->type->normalized();
    SYMTAB* s = new SYMTAB(name.c_str(), type->size_in_bytes(), 0, SC_AUTO, 0, type, type,
                           type->align(), whole->psn, 2);
    s->state &= static_cast<uint8_t>(~SYM_ADDRESS_TAKEN);
    s->scope = whole->scope;
    s->next = f->temps;
    f->temps = s;
    return s;
}

// Behind the prolog: member = whole.member for each member used, so that the
// incoming value reaches the new variables.
void copy_members_behind(LIST* prolog, const CANDIDATE& c) {
    for (const MEMBER_VAR& v : c.members) {
        NODE* field = new_node(FIELD, v.member->type);
        field->mk_field(1, v.member, c.sym->type);
        NODE* access = maketree(STDOT, mk_NAME(c.sym, prolog->tree->scope), field, v.var->type,
                                prolog->tree->scope);
        NODE* asg = mk_ASG(mk_NAME(v.var, prolog->tree->scope), access);
        prolog->next = mkelist(asg, prolog->next, prolog->psn);
    }
}

template <class F> void for_each_statement(FUNINFO* f, F fn) {
    for (BBLK* b = f->bb_list; b; b = b->next)
        for (LIST* l = b->statements; l; l = l->next)
            fn(l);
}

} // namespace

void explode_auto_struct_vars_of(FUNINFO* f, bool (*keep)(SYMTAB* sym)) {
    sym_split(f);
    CANDIDATES cands;
    for (SYMTAB* s = f->autos; s; s = s->next)
        if (s->sclass == SC_AUTO && s->type && (s->type->is_class() || s->type->is_struct()) &&
            !type_may_contain_volatile(s->type) && !keep(s))
            cands.push_back(CANDIDATE{s, true, {}, nullptr});
    if (cands.empty())
        return;

    for_each_statement(f, [&](LIST* l) {
        if (l->tree && is_struct_explosion_parm_assignment(l->tree, cands)) {
            CANDIDATE* c = candidate_of(cands, l->tree->left);
            if (c->prolog)
                c->ok = false;
            c->prolog = l;
            return;
        }
        scan_uses(l->tree, cands);
    });
    std::erase_if(cands, [](const CANDIDATE& c) { return !c.ok || c.members.empty(); });
    if (cands.empty())
        return;

    const char* fname = currfunc && currfunc->name ? skip_name_prefix(currfunc->name) : "";
    for (CANDIDATE& c : cands)
        for (MEMBER_VAR& v : c.members) {
            v.var = make_member_var(f, c.sym, v.member);
            dprintf("Exploding %s\tinto %s.\n", c.sym->name, v.var->name);
            if (write_opt_info && finfo)
                fprintf(finfo, "Replacing %s with the simple variable '%s' in %s.\n",
                        (std::string(c.sym->name) + "." + (v.member->name ? v.member->name : ""))
                            .c_str(),
                        v.var->name, fname);
        }
    for_each_statement(f, [&](LIST* l) { l->tree = rewrite_uses(l->tree, cands); });
    for (const CANDIDATE& c : cands)
        if (c.prolog)
            copy_members_behind(c.prolog, c);
}

void explode_auto_struct_vars() {
    if (currfuninfo)
        explode_auto_struct_vars_of(currfuninfo, sym_appears_in_EHT);
}
