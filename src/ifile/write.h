// Writing function bodies and file-level data to the output file.
#pragma once

struct NODE;
struct SYMTAB;

void write_func_header();
void write_func_body();
void wrtree(NODE* t);
void revert_symbol_type(SYMTAB* sym);
// Writes a symbol's initial data: the initializer record and each tree.
void write_symbol_init(SYMTAB* sym);
