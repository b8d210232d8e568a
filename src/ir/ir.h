// Functions over a function's trees, blocks and loops that the steps call.
#pragma once

#include <cstdio>

struct NODE;
struct LOOP;
struct CONTEXT;
struct FUNINFO;
struct SYMTAB;
struct BBLK;
struct LBL;
struct LS;

void init_opcode_tables();
bool tree_is_arg_prolog(NODE* t);

// Control flow. IF(cond, COLON(LABEL taken, LABEL not taken)), BRANCH(LABEL),
// SWITCH(value, cases) with the cases a left-leaning COMMA chain of
// CASE(ICON, LABEL) ending in DEFAULT(LABEL).
NODE* mk_LABELREF(int number, LS* scope);
NODE* mk_LABELREF_to_bb(BBLK* bb, LS* scope);
NODE* mk_BRANCH(BBLK* bb, LS* scope);
NODE* mk_IF(NODE* cond, NODE* taken, NODE* not_taken, LS* scope);
NODE* mk_LABELDEF(LBL* lbl);
// Builds the blocks of currfuninfo from its statement list.
void buildcfg();
// The step of buildcfg that turns self-calls in tail position into jumps; the
// blocks and their successor edges must be complete, the order need not be.
void remove_tail_recursion();
void renumber_bblocks();
void simpcfg(bool full, bool may_speculate);
void rebuildcfg();
void do_early_cross_jumping();
void optimize_SWITCH_cases();
void rotate_loops();
void straighten_traces_in_cfg();
void optimize_superblocks_in_cfg();
void prbbinfix(FILE* out, BBLK* first);

// Loops.
void build_loop_hierarchy(int a, int b, int c, int d);
// How deep a loop is nested: 1 for an outermost loop.
int loop_nesting_level(const LOOP* loop);
void erase_loop_hierarchy();
void reinsert_loop_pragmas();
void restructure_loops();
void find_loop_assertions(int mode);
void erase_virtual_inits();
void add_loop_annotation_from_profile();
void add_instrumentation_exit_routine_to_atexit();

// Symbols.
void explode_auto_struct_vars();
void build_stack_sharing_type();
void sym_split(FUNINFO* f);
void widen_user_variables();
void subst_csu_returning_temp_for_local_var();
void interned_stats();
SYMTAB* get_sym_def_for_decl(SYMTAB* sym);
void rename_symbols();
void merge_symbols();
bool clusters_exist();
void expand_cluster_refs();
void expand_bitfields();

// What control flow asks of subsystems that come later.
void clear_PT_vectors();
NODE* peel_for_effect(NODE* t);
bool bb_is_loop_head(const BBLK* bb);

// Releases the current function's blocks and trees, or only the file-wide
// scratch tables when currfuninfo is null.
void erase_all();
