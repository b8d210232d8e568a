// The type rules that look at trees and symbols.
#include "driver/diag.h"
#include "driver/options.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

TYPE* combined_type(NODE* a, NODE* b) { return combined_type_for_types(a->type, b->type); }

bool must_preserve_STDOT(const NODE* stdot) {
    OPTASSERT(stdot->op == STDOT || stdot->op == STREF);
    for (const NODE* t = stdot; t && (t->op == STDOT || t->op == STREF); t = t->left) {
        const NODE* field = t->right;
        const fkMDATA* m = field ? field->mval : nullptr;
        if (m && (m->is_bitfield || (m->flags & TQ_VOLATILE)))
            return true;
        const TYPE* aggregate = t->left ? t->left->type : nullptr;
        if (aggregate && t->op == STREF && aggregate->is_pointer())
            aggregate = aggregate->type_pointed_to();
        if (aggregate && (aggregate->qual_kind(true) & TQ_PACKED))
            return true;
        if (field && field->sym &&
            (static_cast<const TYPE*>(field->sym)->qual_kind(true) & TQ_PACKED))
            return true;
    }
    return false;
}

namespace {

bool type_is_const_not_volatile(const TYPE* t) {
    unsigned char q = t->qual_kind(true);
    return (q & TQ_CONST) && !(q & TQ_VOLATILE);
}

// The symbol whose storage an lvalue tree names, through member selections.
const SYMTAB* object_named_by(const NODE* t) {
    while (t && t->op == STDOT)
        t = t->left;
    return t && t->op == NAME ? t->name_symbol() : nullptr;
}

} // namespace

// A const class object can still change through a member write of its own
// code; the old treatment of const pointers is the user's word that it does not.
bool symbol_is_immutable(const SYMTAB* sym) {
    if (!sym || !sym->type || !type_is_const_not_volatile(sym->type))
        return false;
    TYPE* r = sym->type->resolved;
    while (r->kind == TYPE::tpk_array)
        r = r->ar->elem->resolved;
    if (r->csu && !old_const_pointer_behavior)
        return false;
    return sym->sclass < 3;
}

bool lvalue_is_immutable(const NODE* tree) {
    // Without a known object, a const access path says nothing of other paths.
    const SYMTAB* sym = object_named_by(tree);
    if (!sym || !symbol_is_immutable(sym))
        return false;
    return tree->type && type_is_const_not_volatile(tree->type);
}
