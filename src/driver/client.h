// What the optimizer's reader client keeps per function and file, and the
// read-time rewrites it applies to what it is given.
#pragma once

#include <cstdint>
#include <vector>

#include "ifile/ifile.h"

struct NODE;
struct SYMTAB;
struct PRAGMA;
struct FUNINFO;

// The source file of the function being read: its position's name,
// "NO_FILE" for a position without one, "NO_PSN_FILE" for none at all.
extern char curr_file[2048];
// The largest call number of the current function's CALL nodes.
extern int unique_call_index;
extern int arg_offset;
extern int output_index;
// Set by tools that only look at a file: a function read is turned into
// blocks and left as the file says, with no optimization of its own.
extern bool client_reads_only;

// The exception table of a function, sorted and renumbered; entry 0 is the
// zero entry the client adds. Empty when the function has none.
std::vector<EHT_ENTRY>& function_eht(FUNINFO* f);

void opt_process_pragma(SYMTAB* sym, PRAGMA* p);
void opt_symbol_init(SYMTAB* sym, EXPR_LIST* list);
// A function with pragma FUNC_RET_BY_CCTOR that ends by copying its result
// pointer parameter into the local of the same name: both become const, the
// function remembers the local, and the pointer is asserted not null before
// that last statement.
void note_return_by_copy_constructor();
// The read-time rewrites of one statement, bottom-up; returns its new root.
NODE* expr_cleanup(NODE* t);

// The profile subsystem: the state of a function's first statement.
void initialize_the_profiling_state(NODE* branch);

// Tools that read a file without optimizing it: reads the whole file named
// (its functions turned into blocks), or prints why it cannot and returns
// the exit status; then closes it.
int read_file_for_tool(const char* path);
void close_file_for_tool();
