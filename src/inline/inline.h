// Call graph, inlining policy and call integration.
#pragma once

#include <cstdio>

struct FUNINFO;

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
