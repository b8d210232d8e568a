// Scalar optimizations: propagation, common subexpressions, dead assignments.
#pragma once

struct SYMTAB;
struct LIST;

// Global variables known to hold one value replaced by it in the statements.
void propagate_global_constants(LIST* stmts);

void fast_CP(int rounds, int combine);
void copyprop(int mode);
void combine_asgs_to_memory();
// Neighbouring assignments to one target in a statement list, joined.
void combine_assignments(LIST* stmts);
void elim_dead_assigns(bool delay, bool may_rebuild);
void lva_cleanup();
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
