// Crash handling shared by the tools of the chain: a fixed request for a bug
// report and exit status 2. Handlers use static storage only.
#pragma once
#include <cstddef>

using signal_handler_fn = void (*)(int);
using signal_cleanup_fn = void (*)(int);

void install_common_handlers(signal_handler_fn handler, signal_cleanup_fn callback);
[[noreturn]] void common_signal_handler(int sig, const char* tool, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
const char* support_message_text();
void try_gen_corefile();
int sigstrnappend(char* buffer, size_t size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
void debug_signal_handler(int sig);
