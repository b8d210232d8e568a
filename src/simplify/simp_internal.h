// Inside the simplifier: the per-operator handlers that simp_node dispatches
// to, and the small helpers they share. Every handler has the one shape
// NODE* simp_X(NODE*, LOOP*, CONTEXT*): it owns the node it is given, edits it
// in place or frees it and returns its replacement, and erases whatever it
// drops.
#pragma once

#include "ir/node.h"
#include "ir/types.h"
#include "simplify/simplify.h"
#include "support/int65.h"

// Arithmetic.
NODE* simp_PLUS(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_MINUS(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_MULT(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_shift(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_unary(NODE* t, LOOP* loop, CONTEXT* context);
// Bitwise operators.
NODE* simp_ANDB(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_ORB(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_XORB(NODE* t, LOOP* loop, CONTEXT* context);
// Addresses and members.
NODE* simp_UMULT(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_UAND(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_STDOT(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_STREF(NODE* t, LOOP* loop, CONTEXT* context);
// Relational and boolean operators.
NODE* simp_relop(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_EXCLAIM(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_ANDAND(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_OROR(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_QUEST(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_ANDOR_ANDOR(NODE* t, LOOP* loop, CONTEXT* context);
// Statements, assignments and calls.
NODE* simp_ASG(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_opASG(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_call(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_COMMAOP(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_IF(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_CBRANCH(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_SWITCH(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_ASSERT(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_MEMCPY(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_EXPT(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_complexop(NODE* t, LOOP* loop, CONTEXT* context);
// Subsystems that come later: division by constants, the builtins, vectors.
NODE* simp_DIV(NODE* t, int flags, LOOP* loop, CONTEXT* context);
NODE* simp_MOD(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_ICALL(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_vector_node(NODE* t, LOOP* loop, CONTEXT* context);

// Reassociation of a commutative chain, shared by PLUS, ANDB, ORB and XORB.
NODE* simp_assoc(NODE* t, LOOP* loop, CONTEXT* context);
// Removes from t what the bits of mask cannot see; t is edited in place.
NODE* prop_mask_into_subtree(NODE* t, INT65 mask);
// Joins two tests of the same operands into one, by a table of operator
// pairs; the tree comes back unchanged when the pair is not in the table.
NODE* simp_redundant_test(NODE* t, LOOP* loop, CONTEXT* context);

// Shared helpers.
inline bool is_icon(const NODE* t) { return t && t->op == ICON; }
inline bool is_fcon(const NODE* t) { return t && t->op == FCON; }
// An integer or enum type (not a pointer, not _Bool-less floats).
inline bool is_integer_type(const TYPE* t) { return t && TYPE_IS_INT(t); }
inline bool is_float_type(const TYPE* t) { return t && t->is_fltpt(); }
// The value of an ICON as its type holds it.
inline INT65 icon_of(const NODE* c) {
    return is_integer_type(c->type) || (c->type && c->type->is_pointer())
               ? truncate_to_type(c->value, c->type)
               : c->value;
}
// The node turns into a conversion of its left operand to its own type (SCONV,
// or PCONV for a pointer); its right operand is erased. The result is
// simplified again.
NODE* become_conversion(NODE* t, LOOP* loop, CONTEXT* context);
// A constant of the node's value replaces the node; what the node computed
// for its effects stays, in a COMMAOP before the constant.
NODE* replace_keeping_effects(NODE* t, INT65 value, TYPE* type);
// The node is replaced by one of its operands (the one given), the rest erased.
NODE* replace_by_operand(NODE* t, NODE* operand);

// Relational and boolean rewrites (relop.cpp, logical.cpp).
// A folded copy of tree in which the subtree place is the constant value of
// type; place is a node of tree, and tree itself is left as it is.
NODE* simp_subst_icon(INT65 value, TYPE* type, NODE* tree, NODE* place);
// The height of t in levels, counted up to limit; stop is not entered.
int andor_andor_height(NODE* t, int limit, NODE* stop);
// Whether rhs, guarded by lhs in a short circuit, may fault or have an
// effect when evaluated without that guard.
bool rhs_may_need_guard_in_lhs(NODE* lhs, NODE* rhs);

// ---- Arithmetic and reassociation (arith.cpp, assoc.cpp) ----
// An integer type other than _Bool, or a pointer: PLUS, MINUS, MULT, SLL and
// the bitwise operators in it are taken modulo 2^size, so operands may be
// regrouped among nodes of one size whatever their signs.
inline bool wraps_modulo_size(const TYPE* t) {
    return t && ((t->is_integral() && !t->is_bool()) || t->is_pointer()) && t->size() >= 8 &&
           t->size() <= 64;
}
inline bool same_wrapping_width(const TYPE* a, const TYPE* b) {
    return wraps_modulo_size(a) && wraps_modulo_size(b) && a->size() == b->size();
}
// An operand whose conversion to any such type of one size gives the same
// bits: an integer, enum, _Bool or pointer (not a floating value, which
// converts to int and unsigned differently).
inline bool is_int_operand(const NODE* x) {
    return x && x->type && (TYPE_IS_INT(x->type) || x->type->is_pointer());
}
// t is x << k or x * 2^k by a constant k below the size of t's integer type:
// returns k and sets *x to the shifted operand; otherwise -1.
int left_shift_count(NODE* t, NODE** x);
// (a * 2^k1) op (b * 2^k2), either also as a shift, for op PLUS, MINUS, ANDB,
// ORB or XORB of integers of one size: ((a * 2^(k1-k)) op (b * 2^(k2-k))) *
// 2^k with k the smaller power, spelled with SLL when both were shifts. Null,
// with t untouched, when the pattern does not apply.
NODE* factor_powers_of_two(NODE* t, LOOP* loop, CONTEXT* context);
// a and b compute one value and b has no side effects: b may go, a standing
// for both. trees_are_congruent does not compare the values of LCONs, so a
// tree that holds one never qualifies.
bool is_same_value(const NODE* a, const NODE* b);
