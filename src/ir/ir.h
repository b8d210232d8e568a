// Functions over a function's trees, blocks and loops that the steps call.
#pragma once

#include <cstdio>

struct NODE;
struct LOOP;
struct CONTEXT;
struct FUNINFO;
struct SYMTAB;
struct BBLK;

void init_opcode_tables();
bool tree_is_arg_prolog(NODE* t);

// Control flow.
void simpcfg(bool late, bool keep_empty);
void rebuildcfg();
void do_early_cross_jumping();
void optimize_SWITCH_cases();
void rotate_loops();
void straighten_traces_in_cfg();
void optimize_superblocks_in_cfg();
void prbbinfix(FILE* out, BBLK* first);

// Loops.
void build_loop_hierarchy(int a, int b, int c, int d);
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
void unlink_symbol(SYMTAB* sym);
void widen_user_variables();
void subst_csu_returning_temp_for_local_var();
void interned_stats();
SYMTAB* get_sym_def_for_decl(SYMTAB* sym);
void rename_symbols();
void merge_symbols();
bool clusters_exist();
void expand_cluster_refs();
void expand_bitfields();

// Releases the current function's blocks and trees, or only the file-wide
// scratch tables when currfuninfo is null.
void erase_all();
