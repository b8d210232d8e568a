// Call graph, inlining policy and call integration.
#pragma once

#include <cstdio>

struct FUNINFO;
struct NODE;

class INLINER {
public:
    virtual ~INLINER() = default;
    virtual void collect_pass_1_info() {}
};
class NEW_INLINER : public INLINER {};
class INLINER_5 : public INLINER {};

extern INLINER* inliner;

void analyze_call_graph();
void integrate_calls_in_function();
void init_proc_integration();
void dump_FUNINFO(FUNINFO* f, FILE* out);
void dump_function_header();
void dump_psnrefs();

struct SYMTAB;
// Facts of functions gathered while reading.
void init_FUNINFO_flags(FUNINFO* f);
void unsuppress_inline_function(FUNINFO* f);
void check_for_synonym_function_in_pass_1();
void check_integrable_definition();
void init_ipcp_for_fun();
void scan_for_funinfo(NODE* t);
void check_fun_for_byref_asgs(SYMTAB* sym);
void make_symbol_groupable(SYMTAB* sym);
