// Writing function bodies and file-level data to the output file.
#pragma once

struct NODE;
struct SYMTAB;
struct PSN;

void write_func_header();
void write_func_body();
void wrtree(NODE* t);
// A record whose body is a position: begin func (1) and kinds 2 to 6.
void wrstcr(int kind, PSN* psn);
void wrsfid(const char* text);
void revert_symbol_type(SYMTAB* sym);
// Writes a symbol's initial data: the initializer record and each tree.
void write_symbol_init(SYMTAB* sym);
// Assembly text (kind 36) or a comment (kind 47) at file level, to the output.
void wrasmr(int kind, const char* text, PSN* psn);
