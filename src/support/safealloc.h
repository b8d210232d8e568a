// Allocation that ends the run with a message instead of returning null.
#pragma once
#include <cstddef>

void* safemalloc(size_t size);
void* saferealloc(void* p, size_t size);
void* safecalloc(size_t count, size_t size);
