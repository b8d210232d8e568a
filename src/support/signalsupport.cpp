// Crash handling shared by the tools of the chain. The handler may run from any
// state, the heap's included, so everything it touches is static and nothing
// is allocated on its way.
#include "support/signalsupport.h"

#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Where users should send a crash report; a deployment sets it at build time
// as a string literal, e.g. -DONDREL_SUPPORT_URL='"https://..."'.
#ifndef ONDREL_SUPPORT_URL
#define ONDREL_SUPPORT_URL "the support forum of your tool chain distribution"
#endif

namespace {

signal_cleanup_fn cleanup_callback;
char extra_text[2048];

const int handled_signals[] = {SIGILL, SIGABRT, SIGFPE, SIGSEGV, SIGTERM, SIGINT,
                               SIGHUP, SIGTRAP, SIGBUS, SIGSYS,  SIGXCPU, SIGXFSZ};

// Arguments can come from a broken state; the low addresses are never valid
// strings.
bool usable_pointer(const void* p) { return reinterpret_cast<uintptr_t>(p) >= 100001; }

const char* fault_word(int sig) {
    switch (sig) {
    case 4:
        return "executed an illegal instruction";
    case 5:
        return "received a TRAP signal";
    case 6:
        return "had an internal inconsistency and aborted";
    case 7:
        return "experienced a bus alignment fault";
    case 8:
        return "received a floating point exception";
    case 11:
        return "experienced a segmentation fault";
    case 24:
        return "exceeded the CPU time limit";
    case 25:
        return "exceeded the file size limit";
    case 31:
        return "experienced a bad system call";
    default:
        return "experienced a fatal internal fault";
    }
}

} // namespace

void install_common_handlers(signal_handler_fn handler, signal_cleanup_fn callback) {
    cleanup_callback = callback;
    for (int sig : handled_signals)
        signal(sig, handler);
}

void common_signal_handler(int sig, const char* tool, const char* format, ...) {
    if (!usable_pointer(tool))
        tool = "unknown";

    // A user's interrupt is no defect: no report request, and nothing cleaned up.
    if (sig == SIGHUP || sig == SIGINT) {
        fprintf(stderr, "[%s forced exit]\n", tool);
        _Exit(2);
    }
    if (sig == SIGTERM) {
        fprintf(stderr, "[%s received a terminate signal]\n", tool);
        _Exit(2);
    }

    extra_text[0] = '\0';
    if (usable_pointer(format)) {
        va_list args;
        va_start(args, format);
        vsnprintf(extra_text, sizeof extra_text, format, args);
        va_end(args);
    }

    fprintf(stderr, "\nINTERNAL ERROR: %s %s\n", tool, fault_word(sig));
    fprintf(stderr, "                  %s\n", extra_text);
    fputc('\n', stderr);
    fflush(nullptr);

    fputs(support_message_text(), stderr);
    fflush(nullptr);

    if (cleanup_callback)
        cleanup_callback(sig);
    _Exit(2);
}

const char* support_message_text() {
    return "This is caused by a defect in the Ondrel C/C++ Optimizer.\n"
           "Ondrel Customer Support may be able to suggest a workaround to avoid this.\n"
           "\n"
           "Upgrading to the newest version of the compiler may fix this problem.\n"
           "\n"
           "If the problem persists, please report it through\n" ONDREL_SUPPORT_URL "\n"
           "\n"
           "We need to see this ENTIRE error message and a complete, reproducable\n"
           "test case including ALL of the command-line options.\n"
           "Include the .pp file created by option --preproc_with_comment\n"
           "\n";
}

void try_gen_corefile() {}

int sigstrnappend(char* buffer, size_t size, const char* format, ...) {
    if (size == 0)
        return 0;
    const size_t used = strnlen(buffer, size - 1);
    va_list args;
    va_start(args, format);
    const int added = vsnprintf(buffer + used, size - used, format, args);
    va_end(args);
    if (added < 0) {
        buffer[used] = '\0';
        return static_cast<int>(used);
    }
    const size_t total = used + static_cast<size_t>(added);
    return static_cast<int>(total < size ? total : size - 1);
}

void debug_signal_handler(int sig) { signal(sig, debug_signal_handler); }
