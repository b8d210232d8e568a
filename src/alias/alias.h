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

struct SYMTAB;
struct NODE;
// Lexical scopes of the function being read.
void LS_open();
void LS_close();
void LS_add_symbol(SYMTAB* sym);
void LS_initialize_scopes_and_ptrs_from_tree(NODE* t);
void find_or_make_PTR_entry(SYMTAB* sym);
