#include "ir/symtab.h"

#include "ir/types.h"

SYMTAB* global_symbols;

void init_symbols() { global_symbols = nullptr; }

PRAGMA* mk_pragma(int kind, int nargs, char** args, PRAGMA* next) {
    return new PRAGMA{kind, nargs, args, next};
}

bool sym_has_pragma(const SYMTAB* sym, int kind) {
    for (const PRAGMA* p = sym->pragmas; p; p = p->next)
        if (p->kind == kind)
            return true;
    return false;
}

bool sym_is_function(const SYMTAB* sym) { return type_is_function(sym->type); }
