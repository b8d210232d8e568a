// The loop part of the step list. Each step runs its work between
// normalization and denormalization of the function's trees.
#include <utility>

#include "alias/alias.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/symtab.h"
#include "loopnest/loopnest.h"
#include "scalar/scalar.h"
#include "simplify/simplify.h"
#include "ssa/ssa.h"
#include "vectorize/vectorize.h"

namespace {

enum class frame {
    full,        // init_dd_aliasing, widening and live-variable clean-up
    full_alias,  // the same with the alias marking in place of init_dd_aliasing
    short_init,  // init_dd_aliasing and normalization alone
    short_alias, // the alias marking and normalization alone
    none,
};

struct dd_step {
    const char* name;
    frame kind;
    bool dependence_analysis;
    void (*work)();
};

BBLK* first_block() { return currfuninfo ? currfuninfo->bb_list : nullptr; }
bool has_loop_hierarchy() { return current_loops() != nullptr; }

template <class F> void rewrite_all_statements(F f) {
    for (BBLK* b = first_block(); b; b = b->next)
        for (LIST* s = b->statements; s; s = s->next)
            s->tree = f(s->tree);
}

void mark_aliases() {
    for (SYMTAB* s = global_symbols; s; s = s->next)
        s->state = (s->state & ~1u) | ((s->qual & 0x2000) ? 1 : 0);
    mark_aliased_vector_and_complex_symbols(0, 1);
    find_restricted_roots();
    LS_build_PTR_equivalence_groups();
}

// The argument prolog stays out of normalization and comes back afterwards.
LIST* set_aside_arg_prolog() {
    BBLK* b = first_block();
    if (!b || !b->statements || !tree_is_arg_prolog(b->statements->tree))
        return nullptr;
    LIST* prolog = b->statements;
    b->statements = prolog->next;
    return prolog;
}

void put_back_arg_prolog(LIST* prolog) {
    if (!prolog)
        return;
    BBLK* b = first_block();
    prolog->next = b->statements;
    b->statements = prolog;
}

void run_dd_step(const dd_step& step) {
    if (opt_level() < 2)
        return;
    const bool full = step.kind == frame::full || step.kind == frame::full_alias;
    LIST* prolog = nullptr;
    if (full) {
        if (!first_block() || !first_block()->loop)
            simpcfg(false, false);
        do_dd_for_be = false;
        widen_user_variables();
        prolog = set_aside_arg_prolog();
    }
    if (step.kind == frame::full_alias || step.kind == frame::short_alias)
        mark_aliases();
    else
        init_dd_aliasing();
    rewrite_all_statements([](NODE* t) { return normalize_tree(t, t); });
    trees_are_normalized = true;
    if (full && !has_loop_hierarchy())
        build_loop_hierarchy(0, 0, 0, 1);

    if (!step.dependence_analysis) {
        step.work();
    } else if (has_loop_hierarchy()) {
        init_dependence_analysis();
        step.work();
        wrapup_dependence_analysis(0);
    }

    trees_are_normalized = false;
    rewrite_all_statements(
        [](NODE* t) { return simp_tree(denormalize_tree(t), nullptr, nullptr); });
    put_back_arg_prolog(prolog);
    if (full) {
        widen_user_variables();
        lva_cleanup();
    }
}

void ssa_around(void (*f)(), int c) {
    construct_SSA_form(0, 0, c);
    f();
    deconstruct_SSA_form();
}

void work_forward_substitution() { build_loop_hierarchy(1, 0, 1, 1); }
void work_ssa_hoist() { ssa_around(hoist_SSA_region_constants, 1); }
void work_ssa_nasserts() { ssa_around(clone_SSA_NASSERTs, 0); }
void work_ssa_propagate() {
    ssa_around([] { propagate_SSA_constants(3); }, 0);
}
void work_ssa_deadasg() { ssa_around(eliminate_dead_SSA_assignments, 0); }
void work_ssa_reg_promote() { promote_vars_to_registers(0); }
void work_loop_assertions() { find_loop_assertions(0); }
void work_circular_addressing() {
    sr_circular_addressing_in_loop();
    sr_DIV_and_MOD_in_loop(current_loops(), 1);
}
void work_loop_if_interchange() {
    report_ambiguous_aliases(current_loops());
    do_loop_if_interchange();
    if (print_debug > 1) {
        dprintf("\n  DEPENDENCE MATRIX INFO\n\n");
        dump_dependence_matrix();
    }
}
void work_cd_unroll_completely() { cd_unroll_loops_for_speed(1); }
void work_unroll_and_jam() { unroll_and_jam_loop_nest(current_loops(), 1, 1); }
void work_cd_unroll_for_speed() { cd_unroll_loops_for_speed(0); }
void work_old_simd() {
    if (!do_MDF_vectorization)
        vectorize_subword_ops(current_loops());
}
void work_unroll_for_sp() { unroll_loops_for_SP(current_loops(), 0, 0); }
void work_alias_advice() { report_ambiguous_aliases(current_loops()); }
void work_ssa_propagate_vector() {
    ssa_around([] { propagate_SSA_constants(3); }, 1);
}
void work_ssa_reg_promote_with_simpcfg() {
    promote_vars_to_registers(0);
    reinsert_loop_pragmas();
    erase_loop_hierarchy();
    rebuildcfg();
    simpcfg(false, false);
    simpcfg(false, false);
}

// Step numbers are visible in logs, so the order and the count stay fixed,
// and a step with no work keeps its place.
constexpr dd_step dd_steps[] = {
    {"forward_substitution", frame::full_alias, false, work_forward_substitution},
    {"SSA_hoist", frame::full, false, work_ssa_hoist},
    {"SSA_NASSERTs", frame::short_init, false, work_ssa_nasserts},
    {"SSA_propagate", frame::full, false, work_ssa_propagate},
    {"SSA_deadasg", frame::short_alias, false, work_ssa_deadasg},
    {"SSA_reg_promote", frame::short_init, false, work_ssa_reg_promote},
    {"loop_assertions", frame::full, false, work_loop_assertions},
    {"undeltafy", frame::full, false, undeltafy_dd_loops},
    {"add_downcounters", frame::full, false, add_downcounters_to_loops},
    {"collapse_loops", frame::full, true, collapse_dd_loops},
    {"circular_addressing", frame::full, false, work_circular_addressing},
    {"loop_if_interchange", frame::full, true, work_loop_if_interchange},
    {"cd_unroll_by_request", frame::full, false, cd_unroll_loops_by_request},
    {"cd_unroll_completely_for_speed", frame::full, false, work_cd_unroll_completely},
    {"unroll_and_jam", frame::full, true, work_unroll_and_jam},
    {"cd_unroll_for_speed", frame::full, false, work_cd_unroll_for_speed},
    {"unroll_completely_for_SP", frame::none, false, nullptr},
    {"PT_info", frame::full, false, propagate_PT_info},
    {"old_SIMD", frame::full, true, work_old_simd},
    {"explode_arrays", frame::none, false, explode_local_arrays},
    {"unroll_for_SP", frame::full, true, work_unroll_for_sp},
    {"alias_advice", frame::full, true, work_alias_advice},
    {"reduction_interleaving", frame::full, true, interleave_reductions_in_loop},
    {"value_propagation", frame::full, false, do_value_propagation},
    {"DIVs_by_ICONs", frame::full, false, transform_DIVs_by_ICONs},
    {"SSA_propagate_vector", frame::full, false, work_ssa_propagate_vector},
    {"SSA_deadasg", frame::short_alias, false, work_ssa_deadasg},
    {"SSA_reg_promote_with_simpcfg", frame::short_alias, false, work_ssa_reg_promote_with_simpcfg},
};
constexpr int dd_step_count = sizeof dd_steps / sizeof dd_steps[0];
static_assert(dd_step_count == 28, "the loop part is steps 20 to 47");

constexpr int step_unroll_completely_for_sp = 16;
constexpr int step_explode_arrays = 19;
constexpr int step_divs_by_icons = 24;

template <int I> void dd_callback() {
    if constexpr (I == step_unroll_completely_for_sp) {
        // Empty on purpose.
    } else if constexpr (I == step_explode_arrays) {
        if (opt_level() >= 2)
            explode_local_arrays();
    } else if constexpr (I == step_divs_by_icons) {
        if (opt_level() < 2)
            transform_DIVs_by_ICONs();
        else
            run_dd_step(dd_steps[I]);
    } else {
        run_dd_step(dd_steps[I]);
    }
}

// The second "SSA_deadasg" shares the first one's callback.
constexpr int step_second_ssa_deadasg = 26;
constexpr int callback_index(int i) { return i == step_second_ssa_deadasg ? 4 : i; }

template <int... I> void add_all(std::vector<pass*>& steps, std::integer_sequence<int, I...>) {
    (steps.push_back(new pass(dd_steps[I].name, dd_callback<callback_index(I)>)), ...);
}

} // namespace

void add_dd_normal_order_passes(std::vector<pass*>& steps) {
    add_all(steps, std::make_integer_sequence<int, dd_step_count>{});
}
