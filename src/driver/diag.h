// The optimizer's fatal paths. Every failure ends here, so that a failed run
// never leaves a half-written output file behind.
#pragma once

// Removes the output file when status is 1, then exits. Every exit(1) of the
// program, the reader's and writer's included, goes through here.
[[noreturn]] void opt_exit(int status);

[[noreturn]] void abort_optimizer();
[[noreturn]] void abort_optimizer(const char* text);

// The assertion target of the whole program. Its arguments are for a developer
// reading the code; a failed assertion prints only the generic messages.
[[noreturn]] void optassert(const char* expr, const char* file, int line);
#define OPTASSERT(e) ((e) ? (void)0 : optassert(#e, __FILE__, __LINE__))

// Prints "\n\n!!! COMPILER (OPTIMIZER) ERROR IN '<routine>'<details> !!!\n\n" to
// standard error and the log, then abort_optimizer().
[[noreturn]] void compiler_error(const char* routine, const char* details_format, ...)
    __attribute__((format(printf, 2, 3)));
// The same without details; an empty format literal would draw a format warning.
[[noreturn]] void compiler_error(const char* routine);

[[noreturn]] void tp_die(const char* text);

// The name the crash messages give the program.
extern const char* tool_name;

// The program's handler for install_common_handlers: names the current function
// and the input file.
[[noreturn]] void opt_signal_handler(int sig);
// Called by the common handler before it exits: marks the log and the
// information file as cut short by the signal, and closes them.
void opt_signal_cleanup(int sig);
