// The machine description: target queries, rules and builtin descriptors.
#pragma once

struct BIF;
struct NODE;

void init_target();
void init_BIF_descriptors();
void parse_md_file(bool for_build);
// The descriptor of a builtin function, or null.
BIF* find_BIF_descriptor(const char* name);
// A side-effect-free QUEST as the strict ternary builtin, or the QUEST itself.
NODE* make_strict_ternary_ICALL(NODE* quest);
