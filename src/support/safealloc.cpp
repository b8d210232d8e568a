// Allocation for the older modules, which test no pointer they get back.
#include "support/safealloc.h"

#include <cstdio>
#include <cstdlib>

#include "driver/diag.h"

namespace {

[[noreturn]] void out_of_memory() {
    fputs("ERROR: out of memory\n", stderr);
    opt_exit(1);
}

// A request of zero bytes may legally give null (realloc frees): ask for one
// byte so that null always means the heap is exhausted.
size_t at_least_one(size_t size) { return size ? size : 1; }

} // namespace

void* safemalloc(size_t size) {
    void* p = malloc(at_least_one(size));
    if (!p)
        out_of_memory();
    return p;
}

void* saferealloc(void* p, size_t size) {
    void* q = realloc(p, at_least_one(size));
    if (!q)
        out_of_memory();
    return q;
}

void* safecalloc(size_t count, size_t size) {
    void* p = calloc(count ? count : 1, at_least_one(size));
    if (!p)
        out_of_memory();
    return p;
}
