// The optimizer's fatal paths and its signal hooks. A failed run must leave no
// output file behind: the code generator would take a truncated file for a
// good one.
#include "driver/diag.h"

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/symtab.h"
#include "support/signalsupport.h"

const char* tool_name = "ondrel-opt";

namespace {

// The log or the information file may have fallen back to a standard stream;
// closing that would swallow the messages that follow.
void close_report_file(FILE*& file) {
    if (file && file != stderr && file != stdout)
        fclose(file);
    file = nullptr;
}

const char* current_function_name() {
    return currfunc && currfunc->name ? currfunc->name : nullptr;
}

} // namespace

void opt_exit(int status) {
    if (status == 1) {
        // The writer may be in the middle of a record: drop its stream as it is,
        // since writing the tail sections could fail again and the file goes anyway.
        if (I_FILE* out = o_file) {
            o_file = nullptr;
            if (out->stream)
                fclose(out->stream);
            out->stream = nullptr;
        }
        if (o_file_name[0])
            remove(o_file_name);
    }
    exit(status);
}

void abort_optimizer() { abort_optimizer(nullptr); }

void abort_optimizer(const char* text) {
    // Cleared before closing, so that a fault inside a close that comes back
    // here does not close the same file twice.
    I_FILE* in = i_file;
    I_FILE* out = o_file;
    i_file = nullptr;
    o_file = nullptr;
    if (in)
        in->if_close(true, false);
    if (out)
        out->if_close(true, false);
    if (o_file_name[0])
        remove(o_file_name);

    if (print_debug && fdebug) {
        fprintf(fdebug, "\n>>>> Optimizer terminated abnormally.\n");
        if (text)
            fprintf(fdebug, "\n>>>> %s.\n", text);
        close_report_file(fdebug);
        print_debug = 0;
    }

    fflush(stdout);
    fprintf(stderr, "\n>>>> Optimizer terminated abnormally\n");
    if (const char* name = current_function_name()) {
        fprintf(stderr, ">>>>    in function %s()\n", name);
        if (currfuninfo && currfuninfo->psn && currfuninfo->psn->file)
            fprintf(stderr, ">>>>    in file \"%s\"\n", currfuninfo->psn->file);
    }
    if (text)
        fprintf(stderr, "\n>>>> %s.\n", text);
    fflush(stderr);

    if (pass_debug("abort"))
        abort();
    exit(1);
}

void optassert(const char*, const char*, int) { abort_optimizer(); }

void compiler_error(const char* routine) { compiler_error(routine, "%s", ""); }

void compiler_error(const char* routine, const char* details_format, ...) {
    va_list args;
    va_start(args, details_format);
    va_list measure;
    va_copy(measure, args);
    const int length = vsnprintf(nullptr, 0, details_format, measure);
    va_end(measure);
    std::string details(length > 0 ? length : 0, '\0');
    if (length > 0)
        vsnprintf(details.data(), details.size() + 1, details_format, args);
    va_end(args);

    fflush(stdout);
    fprintf(stderr, "\n\n!!! COMPILER (OPTIMIZER) ERROR IN '%s'%s !!!\n\n", routine,
            details.c_str());
    if (print_debug && fdebug)
        fprintf(fdebug, "\n\n!!! COMPILER (OPTIMIZER) ERROR IN '%s'%s !!!\n\n", routine,
                details.c_str());
    abort_optimizer();
}

// The type code's own fatal message; like every exit 1 it drops the output.
void tp_die(const char* text) {
    fflush(stdout);
    fprintf(stderr, "TP>> internal error: %s\n", text);
    opt_exit(1);
}

namespace {

// Names of the signals the program installs its handler for; anything else is
// shown by number. Static, as the cleanup runs inside the handler.
const char* signal_name(int sig) {
    switch (sig) {
    case SIGHUP:
        return "SIGHUP";
    case SIGINT:
        return "SIGINT";
    case SIGILL:
        return "SIGILL";
    case SIGTRAP:
        return "SIGTRAP";
    case SIGABRT:
        return "SIGABRT";
    case SIGBUS:
        return "SIGBUS";
    case SIGFPE:
        return "SIGFPE";
    case SIGSEGV:
        return "SIGSEGV";
    case SIGTERM:
        return "SIGTERM";
    case SIGXCPU:
        return "SIGXCPU";
    case SIGXFSZ:
        return "SIGXFSZ";
    case SIGSYS:
        return "SIGSYS";
    default:
        break;
    }
    static char other[32];
    snprintf(other, sizeof other, "signal %d", sig);
    return other;
}

} // namespace

void opt_signal_handler(int sig) {
    const char* name = current_function_name();
    common_signal_handler(sig, tool_name, "while processing function %s file %s",
                          name ? name : "(none)", i_file_name);
}

void opt_signal_cleanup(int sig) {
    const char* name = signal_name(sig);
    if (fdebug) {
        fprintf(fdebug, "\n>>>> Optimizer terminated by signal: %s.\n", name);
        close_report_file(fdebug);
    }
    if (finfo) {
        fprintf(finfo, "\n>>>> Optimizer terminated by signal: %s.\n", name);
        close_report_file(finfo);
    }
}
