// Rewrites of assignments, sequences, statements and calls.
#include <cstring>
#include <utility>

#include "driver/options.h"
#include "ir/ir.h"
#include "ir/symtab.h"
#include "simplify/simp_internal.h"

namespace {

bool is_bool(const TYPE* t) { return t && t->is_bool(); }

bool is_volatile(const NODE* t) { return t && t->type && type_is_volatile(t->type); }

// A plain integer store: the store keeps the low bits of the value and
// nothing else decides what is stored.
bool is_plain_integer_target(const NODE* lhs) {
    return is_integer_type(lhs->type) && !is_bool(lhs->type) && !tree_is_bit_field(lhs);
}

// v & m where m keeps every bit that a plain store into lhs keeps: the store
// alone gives the same bits.
bool mask_is_redundant_for(const NODE* lhs, const NODE* v) {
    if (v->op != ANDB || !is_icon(v->right) || !is_plain_integer_target(lhs) || !v->left ||
        !is_integer_type(v->left->type) || v->left->type->size() < lhs->type->size())
        return false;
    const uint64_t bits = type_mask(lhs->type).bits();
    return (icon_of(v->right).bits() & bits) == bits;
}

// A local automatic of the function, by name.
bool is_local_auto(const NODE* t) {
    if (!t || t->op != NAME)
        return false;
    const SYMTAB* s = t->name_symbol();
    return s && s->sclass == SC_AUTO && !symbol_is_volatile(s);
}

bool is_immutable_operand(const NODE* t) {
    return t && (t->op == ICON || (t->op == NAME && lvalue_is_immutable(t)));
}

} // namespace

// A constant stored into a target of another integer type is the constant
// the store keeps.
NODE* truncate_RHS_for_assignment(NODE* lhs, NODE* rhs, int) {
    if (!is_icon(rhs) || !is_integer_type(lhs->type) || tree_is_bit_field(lhs))
        return rhs;
    return coerce_to_type(lhs->type, rhs);
}

namespace {

// The low bits of x op= e come from the low bits of e only, for the
// operators whose result bit k depends on operand bits up to k: a mask of e
// that keeps the target's bits changes none of them and goes.
void drop_operand_bits_the_target_ignores(NODE* t) {
    NODE* lhs = t->left;
    NODE* rhs = t->right;
    const int base = op_of_opASG[t->op];
    if (base != PLUS && base != MINUS && base != MULT && base != ANDB && base != ORB &&
        base != XORB)
        return;
    if (mask_is_redundant_for(lhs, rhs)) {
        TYPE* type = rhs->type;
        NODE* x = replace_by_operand(rhs, rhs->left);
        t->right = x->type == type ? x : coerce_to_type(type, x);
    }
}

} // namespace

NODE* simp_ASG(NODE* t, LOOP* loop, CONTEXT* context) {
    if (tree_is_arg_prolog(t) || !t->left || !t->right)
        return t;
    NODE* lhs = t->left;
    // The store converts the value to the target's type: say so in the tree.
    if (is_integer_type(lhs->type) && is_integer_type(t->right->type) &&
        (lhs->type->normalized() != t->right->type->normalized())) {
        if (is_icon(t->right))
            t->right = truncate_RHS_for_assignment(lhs, t->right, 0);
        else
            t->right = simp_SCONV(maketree(SCONV, t->right, nullptr, lhs->type->normalized(),
                                           t->right->scope),
                                  loop, context);
    }
    // A mask that keeps every bit the store keeps is redundant.
    NODE* rhs = t->right;
    if (mask_is_redundant_for(lhs, rhs)) {
        t->right = coerce_to_type(lhs->type->normalized(), replace_by_operand(rhs, rhs->left));
        rhs = t->right;
    }
    // a = (b = c) is (b = c, a = c) for a constant c.
    if (rhs->op == ASG && is_icon(rhs->right) && is_integer_type(rhs->type) &&
        !tree_is_bit_field(rhs->left) && !tree_has_side_effects(lhs)) {
        NODE* value = coerce_to_type(rhs->type, copy_tree(rhs->right, true));
        t->right = value;
        NODE* outer = simp_ASG(t, loop, context);
        return maketree(COMMAOP, rhs, outer, outer->type, rhs->scope);
    }
    // b = (x == 0) for a 0-or-1 x and a _Bool b is b = x ^ 1.
    if (rhs->op == EQ && is_icon(rhs->right) && icon_of(rhs->right).is_zero() &&
        is_bool(lhs->type) && returns_1_or_0(rhs->left) && is_integer_type(rhs->left->type)) {
        // In int, as the operator-assignment spells it out again.
        TYPE* it = tp->mk_int(TYPE::ik_int);
        rhs->op = XORB;
        rhs->left = coerce_to_type(it, rhs->left);
        erase_tree(rhs->right);
        rhs->right = mk_ICON(INT65(1), it);
        rhs->type = it;
        t->right = simp_node(rhs, loop, context);
        return simp_ASG(t, loop, context);
    }
    // A local counter keeps the plain form, which later rotation expects.
    if (is_local_auto(lhs) && (rhs->op == PLUS || rhs->op == MINUS) &&
        (is_immutable_operand(rhs->left) || is_immutable_operand(rhs->right)) &&
        is_integer_type(lhs->type))
        return t;
    if (!tree_has_side_effects(lhs)) {
        t->right = bubble_term_to_top(lhs, t->right);
        t = ASG_to_opASG(t);
        if (t->op != ASG) {
            drop_operand_bits_the_target_ignores(t);
            return t;
        }
        rhs = t->right;
    }
    // x = x is nothing, unless the access itself is an effect.
    if (trees_are_congruent(lhs, rhs, 0) && !tree_has_side_effects(lhs) && !is_volatile(lhs) &&
        !is_volatile(rhs))
        return replace_by_operand(t, t->left);
    return t;
}

NODE* simp_opASG(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* lhs = t->left;
    NODE* rhs = t->right;
    if (!lhs || !rhs)
        return t;
    drop_operand_bits_the_target_ignores(t);
    if (tree_has_side_effects(lhs))
        return t;
    t = opASG_to_ASG(t);
    if (t->op != ASG)
        return t;
    t->right = simp_node(t->right, loop, context);
    // Through the dispatcher: the new right side may be a sequence to hoist.
    return simp_node(t, loop, context);
}

NODE* simp_COMMAOP(NODE* t, LOOP*, CONTEXT*) {
    if (!t->left || !t->right)
        return t;
    // A value computed for nothing goes; what it does stays.
    t->left = peel_for_effect(t->left);
    if (!t->left)
        return replace_by_operand(t, t->right);
    t->type = t->right->type;
    return t;
}

NODE* simp_IF(NODE* t, LOOP* loop, CONTEXT* context) {
    if (t->left)
        t->left = simp_for_control(t->left, loop, context);
    return t;
}

NODE* simp_CBRANCH(NODE* t, LOOP* loop, CONTEXT* context) {
    if (t->left)
        t->left = simp_for_control(t->left, loop, context);
    return t;
}

// A selector is a value whose every bit counts: nothing to drop.
NODE* simp_SWITCH(NODE* t, LOOP*, CONTEXT*) { return t; }
// The asserted expression states a fact; it is kept as written.
NODE* simp_ASSERT(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_MEMCPY(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_EXPT(NODE* t, LOOP*, CONTEXT*) { return t; }
NODE* simp_complexop(NODE* t, LOOP*, CONTEXT*) { return t; }

namespace {

bool is_chain_op(int op) { return op == PLUS || op == ORB || op == XORB || op == ANDB; }

// A chain node whose operands may be exchanged with those of its parent:
// integers of one width, where these operators work modulo 2^size.
bool is_chain_link(const NODE* t, int op, const TYPE* type) {
    return t && t->op == op && t->left && t->right && is_integer_type(t->type) &&
           !is_bool(t->type) && same_wrapping_width(t->type, type);
}

} // namespace

NODE* bubble_term_to_top(NODE* term, NODE* tree) {
    if (!term || !tree || !tree->left || !tree->right)
        return tree;
    if (tree->op == MINUS && is_chain_link(tree, MINUS, tree->type)) {
        // (a + x) - b is (a - b) + x.
        tree->left = bubble_term_to_top(term, tree->left);
        NODE* sum = tree->left;
        if (!is_chain_link(sum, PLUS, tree->type) || !is_same_value(sum->right, term))
            return tree;
        tree->left = sum->left;
        sum->left = simp_node(tree, nullptr, nullptr);
        return sum;
    }
    if (!is_chain_op(tree->op) || !is_chain_link(tree, tree->op, tree->type))
        return tree;
    if (is_same_value(tree->left, term) || is_same_value(tree->right, term))
        return tree;
    // The term leaves the chain and the rest keeps its order: a chain and its
    // reassociated form give one result.
    for (NODE** slot = &tree->left; is_chain_link(*slot, tree->op, tree->type);
         slot = &(*slot)->left) {
        NODE* inner = *slot;
        NODE* x = nullptr;
        NODE* other = nullptr;
        if (is_same_value(inner->right, term)) {
            x = inner->right;
            other = inner->left;
        } else if (is_same_value(inner->left, term)) {
            x = inner->left;
            other = inner->right;
        } else {
            continue;
        }
        *slot = other;
        inner->left = inner->right = nullptr;
        erase_node(inner);
        TYPE* type = tree->type;
        const int op = tree->op;
        LS* scope = tree->scope;
        return maketree(op, simp_tree(tree, nullptr, nullptr), x, type, scope);
    }
    return tree;
}
