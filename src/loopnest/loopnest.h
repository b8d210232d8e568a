// Normalized trees, dependence analysis and loop nest transformations.
#pragma once

struct NODE;
struct LOOP;
struct BBLK;

extern bool trees_are_normalized;
extern bool do_dd_for_be;
extern bool elim_dd_dead_assignments;

NODE* normalize_tree(NODE* t, NODE* stmt);
NODE* denormalize_tree(NODE* t);
void init_dependence_analysis();
void wrapup_dependence_analysis(int keep);
void undeltafy_dd_loops();
void add_downcounters_to_loops();
void collapse_dd_loops();
void coalesce_dd_loops();
void sr_circular_addressing_in_loop();
void sr_DIV_and_MOD_in_loop(LOOP* loops, int mode);
void report_ambiguous_aliases(LOOP* loops);
void do_loop_if_interchange();
void unroll_and_jam_loop_nest(LOOP* loops, int a, int b);
void explode_local_arrays();
void unroll_loops_for_SP(LOOP* loops, int a, int b);
void interleave_reductions_in_loop();
void dump_dependence_matrix();
void do_DVE_unit_testing();
void do_dd_analysis_for_be();
void finalize_dd_edges();
// Removes the loop of a block that jumps to itself when its body does nothing
// that outlives the loop; true when it did.
bool remove_empty_loop(BBLK* bb);
void finalize_ldspec_advice();
// The loop tree of the current function, or null.
LOOP* current_loops();
