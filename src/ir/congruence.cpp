// Congruence of trees and the predicates that depend on types.
#include <cstring>

#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

const NODE* skip_transparent(const NODE* t) {
    for (;;) {
        if (t->op == CSE_DUPE || t->op == CSE_ORIG)
            t = t->right;
        else if (t->op == OUIALIGN || t->op == NONALIGN || t->op == IDENTITY)
            t = t->left;
        else
            return t;
    }
}

bool types_equivalent(TYPE* a, TYPE* b) {
    if (a == b)
        return true;
    return a && b && equiv_mtypes(a, b);
}

bool children_congruent(const NODE* a, const NODE* b, int se_ok) {
    const auto same = [se_ok](const NODE* x, const NODE* y) {
        if (!x || !y)
            return x == y;
        return trees_are_congruent(x, y, se_ok);
    };
    return same(a->left, b->left) && same(a->right, b->right);
}

const NODE* strip_value_conversions(const NODE* t) {
    while (t->op == SCONV || t->op == PCONV || t->op == ISP2CHAR)
        t = t->left;
    return t;
}

// A parameter and the local copy the prolog makes of it hold one value while
// both are immutable.
bool parameter_and_its_copy(const NODE* a, const NODE* b) {
    a = strip_value_conversions(a);
    b = strip_value_conversions(b);
    if (a->op != NAME || b->op != NAME)
        return false;
    const SYMTAB* x = a->name_symbol();
    const SYMTAB* y = b->name_symbol();
    if (!((x->lex == 1 && y->lex == 2) || (x->lex == 2 && y->lex == 1)))
        return false;
    if (strcmp(x->name, y->name) != 0)
        return false;
    return symbol_is_immutable(x) && symbol_is_immutable(y) && !symbol_is_volatile(x) &&
           !symbol_is_volatile(y);
}

bool pragmas_equal(const PRAGMA* a, const PRAGMA* b) {
    if (!a || !b)
        return a == b;
    if (a->kind != b->kind || a->nargs != b->nargs)
        return false;
    for (int i = 0; i < a->nargs; i++)
        if (strcmp(a->args[i], b->args[i]) != 0)
            return false;
    return true;
}

} // namespace

bool trees_are_congruent(const NODE* a, const NODE* b, int se_ok) {
    if (a == b)
        return a->op != MIXVALUE || reinterpret_cast<uintptr_t>(a->sym) > 1;
    a = skip_transparent(a);
    b = skip_transparent(b);
    if (a == b)
        return true;
    if (!se_ok && side_effects[a->op] != SE_NONE)
        return false;
    if (!types_equivalent(a->type, b->type)) {
        const bool same_symbol = a->op == NAME && b->op == NAME && a->sym == b->sym;
        if (!same_symbol || !a->type || !b->type || !compatible_types(a->type, b->type, false))
            return false;
    }
    if (commute_inv[b->op] != NONE && a->op == commute_inv[b->op] && a->left && a->right &&
        b->left && b->right && trees_are_congruent(a->left, b->right, se_ok) &&
        trees_are_congruent(a->right, b->left, se_ok))
        return true;
    if (a->op != b->op)
        return parameter_and_its_copy(a, b);

    switch (a->op) {
    case LABEL:
        return a->value.low == b->value.low;
    case NAME:
        return a->sym == b->sym;
    case SCON:
        return a->value == b->value && a->text && b->text &&
               memcmp(a->text, b->text, a->value.low) == 0;
    case ICON:
    case LCON:
        return a->value == b->value;
    case FCON:
        // Bit for bit: 0.0 and -0.0 differ.
        return a->fval() && b->fval() && f_bit_eq(a->fval(), b->fval());
    case UAND:
        if (a->left && b->left && a->left->op == NAME && b->left->op == NAME)
            return a->left->sym == b->left->sym;
        return children_congruent(a, b, se_ok);
    case FIELD:
        return a->sym == b->sym && a->mval == b->mval;
    case CALL:
    case UCALL:
        return se_ok && children_congruent(a, b, se_ok);
    case STASG:
    case STARG:
        return a->sym == b->sym && children_congruent(a, b, se_ok);
    case DDNODE:
        return false;
    case ICALL:
    case UICALL:
    case MCALL:
    case UMCALL:
        return strcmp(a->icall_name(), b->icall_name()) == 0 && children_congruent(a, b, se_ok);
    case PPRAGMA:
        return pragmas_equal(a->pragma, b->pragma);
    case ASM:
        return a->text && b->text && strcmp(a->text, b->text) == 0;
    case MIXVALUE:
        return a->sym == b->sym && reinterpret_cast<uintptr_t>(a->sym) > 1;
    case IF:
        return bools_are_congruent(a, b);
    default:
        return children_congruent(a, b, se_ok);
    }
}

bool tree_has_side_effects(const NODE* t) {
    for (; t; t = t->left) {
        switch (t->op) {
        case NAME:
            return type_is_volatile(t->type);
        case UMULT:
        case STDOT:
        case STREF:
        case UAND:
            if (t->op != UAND && type_is_volatile(t->type))
                return true;
            if (t->right && tree_has_side_effects(t->right))
                return true;
            continue;
        case CSE_DUPE:
        case CSE_ORIG:
            return tree_has_side_effects(t->right);
        default:
            if (side_effects[t->op] != SE_NONE)
                return true;
            if (t->right && tree_has_side_effects(t->right))
                return true;
        }
    }
    return false;
}

bool tree_is_trivially_invertible(const NODE* t) {
    if (boolean_inv[t->op] == NONE)
        return false;
    if (t->op == EQ || t->op == NEQ)
        return true;
    // x < y is not !(x >= y) when either may be a NaN.
    return !type_is_float(t->left->type) && !type_is_float(t->right->type);
}

NODE* subst_tree_for_lvalue_in_tree(NODE* replacement, const NODE* lvalue, NODE* t) {
    if (!t)
        return nullptr;
    if (trees_are_congruent(t, lvalue, 0)) {
        erase_tree(t);
        return copy_tree(replacement, true);
    }
    t->left = subst_tree_for_lvalue_in_tree(replacement, lvalue, t->left);
    t->right = subst_tree_for_lvalue_in_tree(replacement, lvalue, t->right);
    return t;
}

namespace {

// The label number an arm of IF(test, COLON(taken, not_taken)) goes to.
bool arm_label(const NODE* arm, int& number) {
    if (!arm || arm->op != LABEL)
        return false;
    number = arm->label_value();
    return true;
}

// Whether `a` is the logical negation of `b`, without evaluating either
// differently: !x against x, or a relation against its inverse on the same
// operands where the inversion holds (not for floating order, because of NaN).
bool tests_are_inverse(const NODE* a, const NODE* b) {
    if (a->op == EXCLAIM && a->left && trees_are_congruent(a->left, b, 0))
        return true;
    if (b->op == EXCLAIM && b->left && trees_are_congruent(b->left, a, 0))
        return true;
    if (boolean_inv[a->op] == NONE || boolean_inv[a->op] != b->op || !a->left || !a->right ||
        !b->left || !b->right || !tree_is_trivially_invertible(a))
        return false;
    return trees_are_congruent(a->left, b->left, 0) && trees_are_congruent(a->right, b->right, 0);
}

} // namespace

bool bools_are_congruent(const NODE* a, const NODE* b) {
    if (a->op != IF || b->op != IF || !a->left || !b->left || !a->right || !b->right)
        return false;
    int a_taken, a_not, b_taken, b_not;
    if (!arm_label(a->right->left, a_taken) || !arm_label(a->right->right, a_not) ||
        !arm_label(b->right->left, b_taken) || !arm_label(b->right->right, b_not))
        return false;
    if (a_taken == b_taken && a_not == b_not && trees_are_congruent(a->left, b->left, 0))
        return true;
    return a_taken == b_not && a_not == b_taken && tests_are_inverse(a->left, b->left);
}
