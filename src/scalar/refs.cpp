// Reads and writes of statements, in the order the statements run them.
#include "scalar/scalar_internal.h"

#include "driver/client.h"
#include "driver/driver.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

bool is_local_symbol(const SYMTAB* s) {
    return s && s->lex >= 1 && s->sclass != SC_STATIC && s->sclass != SC_GLOBAL_DEF &&
           s->sclass != SC_EXTERN_DECL && s->sclass != SC_DELETED &&
           s->sclass != SC_DELETED_GLOBAL;
}

bool is_tracked_scalar(const SYMTAB* s) {
    return is_local_symbol(s) && !s->aliased && s->type && s->type->is_scalar() &&
           !symbol_is_volatile(s) && !(s->qual & SQ_CREGISTER);
}

// Handlers run where the table says, and may read any local: while a
// function has a table, every local counts as named in it.
bool sym_appears_in_EHT(SYMTAB*) { return currfuninfo && !function_eht(currfuninfo).empty(); }

namespace {

void mark_under_UAND(NODE* t) {
    for (; t; t = t->left) {
        if (t->op == UAND && t->left && t->left->op == NAME)
            t->left->name_symbol()->aliased = true;
        mark_under_UAND(t->right);
    }
}

void clear_aliased(SYMTAB* list) {
    for (SYMTAB* s = list; s; s = s->next)
        if (is_local_symbol(s))
            s->aliased = false;
}

} // namespace

void mark_address_taken_locals() {
    if (!currfuninfo)
        return;
    for (SYMTAB* list :
         {currfuninfo->symbols, currfuninfo->temps, currfuninfo->autos, currfuninfo->regs})
        clear_aliased(list);
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        for (LIST* s = b->statements; s; s = s->next)
            mark_under_UAND(s->tree);
    // A local that an exception handler may read stays out of reach.
    for (SYMTAB* list :
         {currfuninfo->symbols, currfuninfo->temps, currfuninfo->autos, currfuninfo->regs})
        for (SYMTAB* s = list; s; s = s->next)
            if (is_local_symbol(s) && sym_appears_in_EHT(s))
                s->aliased = true;
}

namespace {

struct walker {
    const REF_VISITOR& visit;
    int conditional = 0;

    void emit(SCALAR_REF::kind_t kind, NODE* node, SYMTAB* sym, bool update = false) {
        visit(SCALAR_REF{kind, node, sym, conditional > 0, update});
    }

    // A value: every NAME in it is read.
    void rvalue(NODE* t) {
        if (!t)
            return;
        switch (t->op) {
        case NAME:
            emit(SCALAR_REF::USE, t, t->name_symbol());
            return;
        case ICON:
        case FCON:
        case SCON:
        case LCON:
        case LABEL:
        case FIELD:
            return;
        case UAND:
            address(t->left);
            return;
        case UMULT:
        case STREF:
        case STDOT:
            address(t);
            emit(SCALAR_REF::LOAD, t, nullptr);
            return;
        case ASG:
        case STASG:
        case ARASG:
            rvalue(t->right);
            assign_target(t, false);
            return;
        case PLUSPLUS:
        case MINMIN:
            update(t);
            return;
        case ANDAND:
        case OROR:
            rvalue(t->left);
            ++conditional;
            rvalue(t->right);
            --conditional;
            return;
        case QUEST:
            rvalue(t->left);
            ++conditional;
            if (t->right && t->right->op == COLON) {
                rvalue(t->right->left);
                rvalue(t->right->right);
            } else {
                rvalue(t->right);
            }
            --conditional;
            return;
        case CALL:
        case UCALL:
        case ICALL:
        case UICALL:
        case MCALL:
        case UMCALL:
            rvalue(t->left);
            rvalue(t->right);
            emit(SCALAR_REF::CALL, t, nullptr);
            return;
        case MEMCPY:
            rvalue(t->left);
            emit(SCALAR_REF::LOAD, t, nullptr);
            emit(SCALAR_REF::STORE, t, nullptr);
            return;
        case RETURN:
            // The left operand names the function.
            rvalue(t->right);
            return;
        case URETURN:
        case BRANCH:
        case LABELDEF:
        case SKIP:
            return;
        default:
            break;
        }
        if (op_of_opASG[t->op] != NONE) {
            update(t);
            return;
        }
        // Anything with an effect the walk does not know may do anything.
        const bool unknown = side_effects[t->op] != SE_NONE && t->op != IF && t->op != SWITCH &&
                             t->op != COMMAOP && t->op != COMMA && t->op != COLON;
        rvalue(t->left);
        if (number_of_operands[t->op] >= 2 || t->op == COMMA)
            rvalue(t->right);
        if (unknown)
            emit(SCALAR_REF::CALL, t, nullptr);
    }

    // The operands an lvalue's address is computed from.
    void address(NODE* lv) {
        if (!lv)
            return;
        switch (lv->op) {
        case NAME:
            emit(SCALAR_REF::ESCAPE, lv, lv->name_symbol());
            return;
        case UMULT:
            rvalue(lv->left);
            return;
        case STDOT:
            lvalue_base(lv->left);
            return;
        case STREF:
            rvalue(lv->left);
            return;
        default:
            rvalue(lv);
            return;
        }
    }

    // The object a member access starts from: a NAME there is neither read
    // nor has its address taken in a way a pointer keeps.
    void lvalue_base(NODE* lv) {
        if (!lv)
            return;
        if (lv->op == NAME)
            return;
        if (lv->op == STDOT) {
            lvalue_base(lv->left);
            return;
        }
        address(lv);
    }

    // The target of an assignment, after its value.
    void assign_target(NODE* asg, bool is_update) {
        NODE* lv = asg->left;
        while (lv && (lv->op == SCONV || lv->op == PCONV))
            lv = lv->left;
        if (lv && lv->op == NAME) {
            emit(SCALAR_REF::DEF, asg, lv->name_symbol(), is_update);
            return;
        }
        if (lv && lv->op == STDOT)
            lvalue_base(lv->left);
        else if (lv && lv->op != UMULT && lv->op != STREF)
            rvalue(lv);
        else if (lv)
            address(lv);
        emit(SCALAR_REF::STORE, lv ? lv : asg, nullptr);
    }

    void update(NODE* t) {
        NODE* lv = t->left;
        while (lv && (lv->op == SCONV || lv->op == PCONV))
            lv = lv->left;
        if (lv && lv->op == NAME) {
            emit(SCALAR_REF::USE, lv, lv->name_symbol());
            rvalue(t->right);
            emit(SCALAR_REF::DEF, t, lv->name_symbol(), true);
            return;
        }
        if (lv && lv->op == STDOT)
            lvalue_base(lv->left);
        else
            address(lv);
        emit(SCALAR_REF::LOAD, lv ? lv : t, nullptr);
        rvalue(t->right);
        emit(SCALAR_REF::STORE, lv ? lv : t, nullptr);
    }
};

} // namespace

void walk_statement_refs(NODE* stmt, const REF_VISITOR& visit) {
    walker w{visit};
    w.rvalue(stmt);
}

bool tree_defines_symbol(NODE* t, const SYMTAB* s) {
    bool found = false;
    walk_statement_refs(t, [&](const SCALAR_REF& r) {
        found |= r.kind == SCALAR_REF::DEF && r.sym == s;
    });
    return found;
}

bool tree_uses_symbol(NODE* t, const SYMTAB* s) {
    bool found = false;
    walk_statement_refs(t, [&](const SCALAR_REF& r) {
        found |= r.kind == SCALAR_REF::USE && r.sym == s;
    });
    return found;
}

bool tree_writes_memory(NODE* t) {
    bool found = false;
    walk_statement_refs(t, [&](const SCALAR_REF& r) {
        found |= r.kind == SCALAR_REF::STORE || r.kind == SCALAR_REF::CALL ||
                 (r.kind == SCALAR_REF::DEF && !is_tracked_scalar(r.sym));
    });
    return found;
}

LIST* flatten_statement_sequences(LIST* stmts) {
    for (LIST* s = stmts; s; s = s->next) {
        while (s->tree && s->tree->op == COMMAOP) {
            NODE* seq = s->tree;
            NODE* first = peel_for_effect(seq->left);
            NODE* rest = peel_for_effect(seq->right);
            seq->left = seq->right = nullptr;
            erase_node(seq);
            if (first) {
                s->next = mkelist(rest, s->next, s->psn);
                s->tree = first;
            } else {
                s->tree = rest;
            }
        }
    }
    // Cells whose tree went away entirely.
    LIST** link = &stmts;
    while (*link) {
        if (!(*link)->tree) {
            LIST* dead = *link;
            *link = dead->next;
            dead->next = nullptr;
            erase_tree_list_only(dead);
        } else {
            link = &(*link)->next;
        }
    }
    return stmts;
}
