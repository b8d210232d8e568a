// The type package: the one owner of every TYPE for the whole run.
#pragma once

class I_FILE;

struct TYPE;

class TYPE_PKG {
public:
    static int abi;
    int cpu_version = 7;
    int refcount = 1;

    void delete_type_tree();
};

extern TYPE_PKG* tp;

// Ties the package to the file whose type section it will read.
void if_type_init(TYPE_PKG* pkg, I_FILE* file);
void init_types();
bool type_is_function(const TYPE* t);
