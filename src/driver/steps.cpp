// The step list: every function walks these 55 steps in order. A step's
// callback only calls into its subsystem; the guards live here or in the callee.
#include "driver/passes.h"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <malloc.h>

#include "alias/alias.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "inline/funinfo.h"
#include "inline/inline.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "lir/lir.h"
#include "loopnest/loopnest.h"
#include "scalar/scalar.h"
#include "simplify/simplify.h"
#include "ssa/ssa.h"
#include "vectorize/vectorize.h"

pass_manager global_pass_manager;
std::vector<pass*> step_list;

pass::pass(std::string name, void (*fn)())
    : serial_object(&global_pass_manager), name(std::move(name)), callback(fn) {
    global_pass_manager.passes.push_back(this);
}

static void log_blocks() {
    if (print_debug && currfuninfo && currfuninfo->bb_list)
        prbbinfix(fdebug, currfuninfo->bb_list);
}

void pass::run() {
    dprintf("\n\n\t\t\t---------- ENTERING step %d '%s' ----------\n", serial(), name.c_str());
    log_blocks();
    // mallinfo2 walks the whole heap: asked only for the log, else a file of
    // many functions takes time quadratic in their number.
    const size_t before = print_debug ? mallinfo2().uordblks : 0;
    const clock_t start = clock();
    callback();
    dprintf("(%.1f sec for pass.)\n", double(clock() - start) / 1e6);
    if (print_debug)
        dprintf("(%d net bytes allocated.)\n", int(long(mallinfo2().uordblks) - long(before)));
    dprintf("\n\n\n\t\t\t---------- EXITING step %d '%s' ----------\n", serial(), name.c_str());
    log_blocks();
}

namespace {

// Applies f to every statement of every block, replacing it by the result.
template <class F> void rewrite_all_statements(F f) {
    if (!currfuninfo)
        return;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        for (LIST* s = b->statements; s; s = s->next)
            s->tree = f(s->tree);
}

void step_cps() { straighten_cond_paths(); }

void step_early_lir() {
    if (use_llvm() || pass_enable("lir_early") || pass_enable("lir"))
        run_LIR_group("early", use_llvm() || pass_enable("lirssa"));
}

void step_early_fast_cp() { fast_CP(4, 1); }

void step_mvp_global_assertions() {
    if (do_IP_MVP)
        add_MVP_IP_global_assertions();
}

void step_intraprocedural_mvp() {
    if (opt_level() < 2)
        return;
    dprintf("~~~#MAIN#1 do_int_MVP=%d %s()\n", int(do_int_MVP), currfunc ? currfunc->name : "");
    if (!do_int_MVP)
        return;
    initialize_ssa_pointsto_mvp();
    if (!do_int_MVP)
        return;
    do_integer_value_propagation();
    if (!do_int_MVP)
        return;
    clear_mvpPointsTo_bindings();
    deconstruct_SSA_form();
    remove_SSA_decoration_trees();
}

void step_value_propagation_for_simd() {
    if (opt_level() < 2 || !do_MDF_vectorization)
        return;
    init_dd_aliasing();
    do_value_propagation();
    simpcfg(false, false);
    rebuildcfg();
    simpcfg(false, false);
}

void step_explode_auto_structs() {
    if (opt_level() >= 2)
        explode_auto_struct_vars();
}

void step_non_dd_clone_nasserts() {
    if (opt_level() < 2)
        return;
    construct_SSA_form(0, 0, 1);
    clone_SSA_NASSERTs();
    deconstruct_SSA_form();
}

void step_non_dd_ssa_cp() {
    if (opt_level() < 2)
        return;
    construct_SSA_form(0, 0, 1);
    propagate_SSA_constants(1);
    deconstruct_SSA_form();
}

void step_non_dd_ssa_eda() {
    if (opt_level() < 2)
        return;
    construct_SSA_form(0, 0, 1);
    eliminate_dead_SSA_assignments();
    deconstruct_SSA_form();
}

void step_ssa_rp_benign_loads() {
    if (opt_level() >= 2)
        promote_vars_to_registers(1);
}

void step_expand_bitfields() { expand_bitfields(); }
void step_fast_cp_0_1() { fast_CP(0, 1); }
void step_profile_loop_annotations() { add_loop_annotation_from_profile(); }
void step_cd_vectorizations() { do_cd_vectorization(); }
void step_cd_ilp() { do_cd_ilp(); }
void step_late_fast_cp() { fast_CP(4, 1); }

void do_dd_restructuring() {
    dprintf("\n\n\t\t\t---------- ENTERING 'do_dd_restructuring' ----------\n");
    do_dd_for_be = false;
    elim_dd_dead_assignments = false;
    init_dd_aliasing();
    rewrite_all_statements([](NODE* t) { return normalize_tree(t, t); });
    trees_are_normalized = true;
    rebuildcfg();
    build_loop_hierarchy(0, 0, 1, -1);
    const bool has_loops = current_loops() != nullptr;
    if (has_loops) {
        init_dependence_analysis();
        elim_dead_assigns(false, false);
        collapse_dd_loops();
        coalesce_dd_loops();
        wrapup_dependence_analysis(0);
    }
    trees_are_normalized = false;
    rewrite_all_statements(denormalize_tree);
    if (has_loops) {
        reinsert_loop_pragmas();
        erase_virtual_inits();
        erase_loop_hierarchy();
    }
    if (elim_dd_dead_assignments)
        elim_dead_assigns(false, false);
}

void step_global_opts() {
    if (opt_level() < 2 || !currfuninfo || currfuninfo->bb_count < 2)
        return;
    revert_strict_ternary_ICALLs_to_CFG();
    copyprop(1);
    annotate_cfg();
    gcse();
    restructure_loops();
    clean_up_gdflow_bitvecs();
    clean_up_alias_analysis_bitvecs_etc();
    clean_up_assert_RELOPs();
    restructure_strict_ternary_ICALLs_from_CFG();
    rename_symbols();
    merge_symbols();
    if (!arm_neon)
        return;
    simpcfg(false, false);
    if (opt_level() >= 2)
        do_dd_restructuring();
}

void step_expand_cluster_refs() {
    if (clusters_exist())
        expand_cluster_refs();
}

// The first integer PLUS or PLUSASG of t, depth first, left before right.
NODE* first_integer_plus(NODE* t) {
    if (!t)
        return nullptr;
    if ((t->op == PLUS || t->op == PLUSASG) && t->type && t->type->is_integral())
        return t;
    if (NODE* n = first_integer_plus(t->left))
        return n;
    return first_integer_plus(t->right);
}

// A wrong rewrite on purpose, under --debug=plant_miscompile: it exists so that tests can check
// that tests/diff/bisect finds the step and the function where a run starts to differ.
void plant_miscompile() {
    if (!pass_debug("plant_miscompile") || strcmp(skip_name_prefix(currfunc->name), "main") != 0)
        return;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next)
        for (LIST* s = b->statements; s; s = s->next)
            if (NODE* n = first_integer_plus(s->tree)) {
                n->op = n->op == PLUS ? MINUS : MINUSASG;
                return;
            }
}

void step_local_opts() {
    subst_csu_returning_temp_for_local_var();
    if (opt_level() < 1)
        return;
    optimize_superblocks_in_cfg();
    reset_alias_info();
    lcse_subrange_assignments();
    elim_dead_subrange_assigns();
    remove_unused_locals();
    copyprop(1);
    if (opt_level() >= 2)
        convert_sti_to_cinit();
    lcse();
    propagate_increments();
    plant_miscompile();
}

void step_late_lir() {
    if (pass_enable("lir_late") || pass_enable("lir"))
        run_LIR_group("late", false);
}

} // namespace

// Which of these steps --debug=bisect_limit may skip, and why the others always run, is
// decided beside run_step_rounds in driver.cpp.
void build_step_list() {
    auto add = [](pass* p) { step_list.push_back(p); };
    add(new pass("pass 1", step_pass_1));
    add(new barrier_pass("intermission", step_intermission));
    add(new barrier_pass("pass 2 header", step_pass_2_header));
    add(new barrier_pass("set call-graph order", step_set_call_graph_order));
    add(new pass("pass 2 inits", step_pass_2_inits));
    add(new pass("CPS", step_cps));
    add(new pass("early LIR", step_early_lir));
    add(new pass("early fast_CP(4,1)", step_early_fast_cp));
    add(new pass("MVP global assertions", step_mvp_global_assertions));
    add(new pass("intraprocedural MVP", step_intraprocedural_mvp));
    add(new pass("value propagation for SIMD", step_value_propagation_for_simd));
    add(new pass("explode auto structs", step_explode_auto_structs));
    add(new pass("non-DD clone SSA NASSERTs", step_non_dd_clone_nasserts));
    add(new pass("non-DD SSA CP", step_non_dd_ssa_cp));
    add(new pass("non-DD SSA EDA", step_non_dd_ssa_eda));
    add(new pass("SSA RP with benign loads", step_ssa_rp_benign_loads));
    add(new pass("expand bitfields", step_expand_bitfields));
    add(new pass("fast_CP(0,1)", step_fast_cp_0_1));
    add(new pass("add profile loop annotations", step_profile_loop_annotations));
    add(new pass("CD vectorizations", step_cd_vectorizations));
    add_dd_normal_order_passes(step_list);
    add(new pass("CD ILP", step_cd_ilp));
    add(new pass("late fast_CP(4,1)", step_late_fast_cp));
    add(new pass("global opts", step_global_opts));
    add(new pass("expand cluster refs", step_expand_cluster_refs));
    add(new pass("local opts", step_local_opts));
    add(new pass("late LIR", step_late_lir));
}
