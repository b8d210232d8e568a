// Scalar optimizations: propagation, common subexpressions, dead assignments.
#pragma once

struct SYMTAB;
struct LIST;
struct BBLK;
struct LOOP;

// Global variables known to hold one value replaced by it in the statements.
void propagate_global_constants(LIST* stmts);

void fast_CP(int rounds, int combine);
void copyprop(int mode);
void combine_asgs_to_memory();
// Neighbouring assignments to one target in a statement list, joined.
void combine_assignments(LIST* stmts);
// Live variables at the block boundaries of the current function, until
// lva_cleanup. Candidates are the locals only statements can reach.
void find_live_variables(int mode, bool arrays_too);
void lva_cleanup();
// Removes the stores to candidates that no path reads, keeping what their
// values do; with delay, sinks assignments toward their first reader.
void elim_dead_assigns(bool delay, bool may_rebuild);
// The same inside one block, knowing nothing of what follows it; true when
// a statement changed.
bool elim_locally_dead_assignments_in_bb(BBLK* bb, LOOP* loop);
// An assignment nested in a statement becomes a statement of its own in
// front of it, where that changes nothing the program can see.
void promote_embedded_assignments_in_bb(BBLK* bb);
void lcse();
void lcse_subrange_assignments();
void elim_dead_subrange_assigns();
void promote_all_embedded_assignments();
void propagate_increments();
void convert_sti_to_cinit();
void annotate_cfg();
void gcse();
void clean_up_gdflow_bitvecs();
void straighten_cond_paths();
void init_reg_defs();
void allocate_regs();
bool sym_appears_in_EHT(SYMTAB* sym);
void revert_strict_ternary_ICALLs_to_CFG();
void restructure_strict_ternary_ICALLs_from_CFG();
// Removes the locals of the outer block that no statement names.
void remove_unused_locals();
void make_RSET_root();
void preprocess_fundef();
void identify_fl_statics_safe_for_auto();
void convert_safe_fl_statics_to_auto();
