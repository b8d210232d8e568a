// The driver's globals: the current function, the functions of the file and
// the streams every subsystem logs to.
#pragma once

#include <cstdio>
#include <list>
#include <map>

struct SYMTAB;
struct FUNINFO;
struct CALL_GRAPH;
struct FUNLIST;
class I_FILE;
class pass;

constexpr const char* optimizer_banner = "Ondrel ARM C/C++ Optimizer";

extern SYMTAB* currfunc;
extern FUNINFO* currfuninfo;
extern std::list<SYMTAB*> functions;
extern std::map<SYMTAB*, std::list<pass*>> steps_table;
extern bool function_prepass;
extern int user_error_count;

struct FILEINFO {
    CALL_GRAPH* call_graph;
    unsigned char pass_number;
    // Functions that stand for another one under a second name, newest first.
    FUNLIST* synonym_functions;
};
extern FILEINFO fileinfo;

extern FILE* fdebug;
extern FILE* finfo;
extern int print_debug;
extern int write_opt_info;

extern I_FILE* i_file;
extern I_FILE* o_file;

// Writes to the log only when print_debug is on.
void dprintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The steps that have no other home.
void step_pass_1();
void step_intermission();
void step_pass_2_header();
void step_set_call_graph_order();
void step_pass_2_inits();
void step_pass_2_trailer();

// The round walk over `functions` and their lists in `steps_table`.
void run_step_rounds();
void close_file_level();
[[noreturn]] void finish_run();
