// The tree simplifier and the rewrites that bring trees to and from file form.
#pragma once

#include "support/int65.h"

struct NODE;
struct TYPE;
struct BBLK;
struct LOOP;
struct CONTEXT;

NODE* simp_tree(NODE* t, LOOP* loop, CONTEXT* context);
NODE* insert_mandatory_casts(NODE* t);
void transform_DIVs_by_ICONs();
void unsimplify();
void seq_trees();
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
// Masks of the bits of the value in `type` that are certainly zero, or one.
INT65 find_known_zeros(NODE* t, TYPE* type);
INT65 find_known_ones(NODE* t, TYPE* type);
