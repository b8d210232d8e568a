// SSA form on trees and the metavalue propagators over it.
#pragma once

void construct_SSA_form(int a, int b, int c);
void deconstruct_SSA_form();
void clone_SSA_NASSERTs();
void propagate_SSA_constants(int mode);
void eliminate_dead_SSA_assignments();
void hoist_SSA_region_constants();
void promote_vars_to_registers(int benign_loads);
void remove_SSA_decoration_trees();
void do_value_propagation();
void do_integer_value_propagation();
void initialize_ssa_pointsto_mvp();
void clear_mvpPointsTo_bindings();
void add_MVP_IP_global_assertions();
void beta_parms();
void beta_convert();
void beta_parms_using_mvp_ip();
void beta_convert_using_mvp_ip();

// Never set by anything: the steps that test them are present and inert.
extern bool do_int_MVP;
extern bool do_beta_MVP;
extern bool do_IP_MVP;
void init_IP_MVP_for_current_function();
