// The tree simplifier and the rewrites that bring trees to and from file form.
#pragma once

#include "support/int65.h"

struct NODE;
struct TYPE;
struct BBLK;
struct LOOP;
struct CONTEXT;
struct LIST;

// Every simplifier entry edits the tree it is given, or frees it and returns
// its replacement; whatever a rewrite drops is erased.
NODE* simp_tree(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_node(NODE* t, LOOP* loop, CONTEXT* context);
// Every statement of every block of the current function, with no loop and
// no context.
void simp_all_trees();
// The tree's value is used only as a truth value: bits that do not decide it
// may go.
NODE* simp_for_control(NODE* t, LOOP* loop, CONTEXT* context);
// A tree of value 0 or 1, of type int, for the truth of t.
NODE* make_boolean(NODE* t, LOOP* loop, CONTEXT* context);
// The negation of a truth value: the inverted comparison where that is
// exact, else t == 0.
NODE* invert_boolean_tree(NODE* t);
// Moves term to the outermost right position of the chain tree, where
// x = a + x + b can become x += a + b.
NODE* bubble_term_to_top(NODE* term, NODE* tree);
NODE* simp_SCONV(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_PCONV(NODE* t, LOOP* loop, CONTEXT* context);
NODE* simp_ACONV(NODE* t, LOOP* loop, CONTEXT* context);

// A node whose left operand is a constant and whose right operand is a
// constant or absent, as the target computes it; unchanged when the target's
// result is not certain.
NODE* fold_constants(NODE* t);
// v as stored in t's size, read as signed whatever t's sign.
INT65 sign_extend_by_type(INT65 v, const TYPE* t);
INT65 sign_extend_by_type_size(INT65 v, const TYPE* t);
// The value of a C conversion of the integer v to the integer type t: a
// truncation, or a test against zero for _Bool.
INT65 convert_integer_constant(INT65 v, const TYPE* t);
// Whether the value is always 0 or 1.
bool returns_1_or_0(const NODE* t);
NODE* fix_type_info(NODE* t);

// x in type t by the least means: x itself, a retyped constant, or a
// conversion that is then simplified.
NODE* coerce_to_type(TYPE* t, NODE* x);
// (T*)(p + a + b) as ((T*)p) + a + b; remove_pushed_down_casts undoes it.
NODE* push_down_pointer_cast(TYPE* t, NODE* x);
NODE* remove_pushed_down_casts(NODE* t);
// Conversions so that each operator's operands have the machine types the
// code generator expects; run on every statement before it is written.
NODE* insert_mandatory_casts(NODE* t);
// Whether every value x can take is a value of type t.
bool value_fits_in_type(NODE* x, TYPE* t, LOOP* loop, CONTEXT* context);
// A member access that reads a bit field: its value is narrower than its type.
bool tree_is_bit_field(const NODE* t);

void transform_DIVs_by_ICONs();
void unsimplify();
// Statement sequencing before the blocks are built: sequences and short
// circuits with effects in their conditional part become statements, tests
// and jumps.
void seq_trees();
// A short circuit whose conditional part has an effect. seq_trees leaves one
// inside a statement where splitting the statement would change its order of
// evaluation or make it too large; a pass that makes such a statement smaller
// or more constant would turn the choice around on the next run, so the
// propagation passes leave these statements as they are.
bool tree_has_expandable_short_circuit(const NODE* t);
// What of tree has an effect, as a statement behind cell.
void promote_tree(NODE* tree, LIST* cell);
// A copy of a structure without effects, member by member: a COMMAOP chain
// of assignments, a COMMA list when keep_comma is set. Unchanged when the
// copy cannot be split.
NODE* convert_STASG_to_asgs(NODE* tree, int keep_comma);
// Whether both arms of a ?: may be evaluated whatever the test.
bool quest_colon_is_strict(NODE* quest, NODE* colon);
void fold_ANDBASGs();
void clean_up_assert_RELOPs();
// Read-time rewrites of calls to builtins.
NODE* convert_CBRANCH_with_builtin_expect(NODE* t);
NODE* fix_BIF_types(NODE* t);

// What is known of an integer tree's value; with no loop or context less is
// known, and never more than its type allows.
INT65 calculate_minval_for_tree(NODE* t, LOOP* loop, CONTEXT* context);
INT65 calculate_maxval_for_tree(NODE* t, LOOP* loop, CONTEXT* context);
// The largest constant known to divide the value: 1 if none.
INT65 max_ICON_factor(NODE* t, LOOP* loop, CONTEXT* context, int depth);
// find_known_zeros: a mask in which a 1 means the bit may be one and a 0 that
// it is certainly zero. find_known_ones: the bits that are certainly one.
INT65 find_known_zeros(NODE* t, TYPE* type);
INT65 find_known_ones(NODE* t, TYPE* type);
// Facts of an integer tree's value (of a pointer for tree_is_non_zero). A
// false answer means "not known".
bool tree_is_zero(NODE* t, LOOP* loop, CONTEXT* context);
// value is compared as the tree's type holds it.
bool tree_is_ivalue(NODE* t, INT65 value, LOOP* loop, CONTEXT* context);
bool tree_is_non_zero(NODE* t, LOOP* loop, CONTEXT* context);
bool tree_is_positive(NODE* t, LOOP* loop, CONTEXT* context);
bool tree_is_negative(NODE* t, LOOP* loop, CONTEXT* context);
bool tree_is_non_negative(NODE* t, LOOP* loop, CONTEXT* context);
// 1 for a tree known non-negative (positive when allow_zero is false), -1
// for one known negative, else 0.
int sign_of_integer_expression(NODE* t, LOOP* loop, bool allow_zero, CONTEXT* context);
