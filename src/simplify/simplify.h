// The tree simplifier and the rewrites that bring trees to and from file form.
#pragma once

struct NODE;
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
