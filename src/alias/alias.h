// Memory disambiguation: aliasing marks, scopes and points-to facts.
#pragma once

struct LS;

void init_dd_aliasing();
void mark_aliased_vector_and_complex_symbols(int a, int b);
void clean_up_alias_analysis_bitvecs_etc();
void reset_alias_info();
void find_restricted_roots();
void LS_build_PTR_equivalence_groups();
void LS_print(LS* scope, int debug_form);
void LS_validate();
void propagate_PT_info();
