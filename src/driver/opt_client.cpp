// The optimizer's callbacks from the reader of the input file.
#include <cstring>

#include "driver/options.h"
#include "ifile/ifile.h"

bool IF_CLIENT::cl_magic(int, int) { return true; }

void IF_CLIENT::cl_source(const char*) {}

void IF_CLIENT::cl_option_set(unsigned set_number, unsigned count, char** strings) {
    // The reader's strings die with it; the sets live for the whole run.
    char** copy = new char*[count];
    for (unsigned i = 0; i < count; i++)
        copy[i] = strdup(strings[i]);
    icode_optionlist.push_back({set_number, count, copy});
}

// Types of one file need no merging here.
void IF_CLIENT::cl_merge_type_defs() {}
