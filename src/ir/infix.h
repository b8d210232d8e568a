// The text form of trees, blocks, symbols and types, shared by the log and
// ondrel-dump: one statement a line, C-like, and nothing in it that changes
// from run to run (docs/text-form.md). prbbinfix is declared in ir/ir.h.
#pragma once

#include <cstdio>
#include <string>

struct NODE;
struct TYPE;
struct SYMTAB;
struct PRAGMA;
struct LBL;
struct FUNINFO;

// One statement or expression, without indentation or newline. Labels name
// their blocks ("bb3"); outside prbbinfix the number is the block's dfn.
std::string stmt2infix(const NODE* t);
// A block's label as the head of its statements: "bb3:", or "L5:" for a
// label of no block.
std::string label2infix(const LBL* l);
// Logs one statement in the text form when the log is on.
void dump_tree_debug(const NODE* t);

// A type as a declaration of no name ("int (*)[3]"), and as the declaration
// of `name` ("int (*p)[3]").
std::string type2infix(const TYPE* t);
std::string decl2infix(const TYPE* t, const std::string& name);
// The one-line definition of a named type: a struct, union or class with its
// members, an enum with its enumerators, a typedef. Empty for other kinds.
std::string typedef2infix(const TYPE* t);

// A C string literal of the text; "" for null.
std::string string2infix(const char* text);
std::string pragma2infix(const PRAGMA* p);
// A symbol's declaration line: "global x: int register".
std::string sym2infix(const SYMTAB* s);
// One item of initial data: "data 5", "skip 4"; empty for the closing ENDINIT.
std::string init2infix(const NODE* t);

// A symbol's line, then its pragmas and initial data, indented.
void dump_symbol_infix(FILE* out, const SYMTAB* s);
// A function's head, its locals and its blocks.
void dump_function_infix(FILE* out, FUNINFO* f);
