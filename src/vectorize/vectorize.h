// The rule-driven vectorizer and the vector lowering around it.
#pragma once

struct LOOP;

void matcher_init();
void do_cd_vectorization();
void do_cd_ilp();
void cd_unroll_loops_by_request();
void cd_unroll_loops_for_speed(int completely);
void disguise_vector_operations();
void disclose_vector_operations();
void coalesce_local_vector_symbols();
void lower_vector_statements();
void vectorize_subword_ops(LOOP* loops);
