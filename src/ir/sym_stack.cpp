// Stack sharing: locals of disjoint scopes may share frame space. The reader
// records the scope tree of the candidates; "pass 2 inits" decides.
#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

void erase_scope_tree(STACK_SHARING_SCOPE* s) {
    while (s) {
        STACK_SHARING_SCOPE* next = s->sibling;
        erase_scope_tree(s->child);
        erase_symlist(s->vars);
        delete s;
        s = next;
    }
}

bool class_has_constructor(TYPE* t) {
    return t->is_class() && t->resolved->csu && t->resolved->csu->mfuncs;
}

// Removes sym from the tree below s; true when found.
bool remove_from_tree(STACK_SHARING_SCOPE* s, SYMTAB* sym) {
    for (; s; s = s->sibling) {
        if (symbol_in_list(sym, s->vars)) {
            s->vars = remove_sym_from_symlist(sym, s->vars);
            return true;
        }
        if (remove_from_tree(s->child, sym))
            return true;
    }
    return false;
}

} // namespace

void erase_stack_sharing(FUNINFO* f) {
    erase_scope_tree(f->overlaps);
    f->overlaps = f->overlaps_current = nullptr;
}

void init_stack_sharing() {
    erase_stack_sharing(currfuninfo);
    currfuninfo->overlaps = new STACK_SHARING_SCOPE;
    currfuninfo->overlaps->level = 2;
    currfuninfo->overlaps_current = currfuninfo->overlaps;
}

void begin_stack_sharing_scope(int level) {
    STACK_SHARING_SCOPE* parent = currfuninfo->overlaps_current;
    if (!parent)
        return;
    auto* s = new STACK_SHARING_SCOPE;
    s->level = level;
    s->parent = parent;
    STACK_SHARING_SCOPE** tail = &parent->child;
    while (*tail)
        tail = &(*tail)->sibling;
    *tail = s;
    currfuninfo->overlaps_current = s;
}

void add_stack_sharing_variable(SYMTAB* sym) {
    STACK_SHARING_SCOPE* s = currfuninfo->overlaps_current;
    if (!s || s->level <= 2 || !sym->type || sym->type->is_scalar() ||
        class_has_constructor(sym->type))
        return;
    s->vars = mk_symlist(sym, s->vars);
}

void end_stack_sharing_scope() {
    STACK_SHARING_SCOPE* s = currfuninfo->overlaps_current;
    if (!s || !s->parent)
        return;
    STACK_SHARING_SCOPE* parent = s->parent;
    currfuninfo->overlaps_current = parent;
    if (s->vars || s->child)
        return;
    for (STACK_SHARING_SCOPE** p = &parent->child; *p; p = &(*p)->sibling)
        if (*p == s) {
            *p = s->sibling;
            break;
        }
    delete s;
}

void delete_stack_sharing_variable(SYMTAB* sym) {
    if (currfuninfo && currfuninfo->overlaps)
        remove_from_tree(currfuninfo->overlaps, sym);
}

void build_stack_sharing_type() {
    FUNINFO* f = currfuninfo;
    if (!f || !f->overlaps)
        return;
    if (!((currfuninfo->overlaps->parent == nullptr) && (currfuninfo->overlaps->level == 2) &&
          (currfuninfo->overlaps->vars == nullptr)))
        optassert("(currfuninfo->overlaps->parent == __null) && (currfuninfo->overlaps->level == "
                  "2) && (currfuninfo->overlaps->vars == __null)",
                  __FILE__, __LINE__);
    // The union layout and the rewrite of the uses need the alias tables'
    // remapping, which is not there yet; a frame without sharing is correct.
    erase_stack_sharing(f);
}
