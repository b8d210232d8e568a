// Interned local symbols: one copy per function and symbol, so that facts
// about a local survive its trip through inlining under one identity.
#include <cstdio>
#include <cstring>
#include <string>

#include <boost/unordered_set.hpp>

#include "driver/driver.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

struct INTERNED_SYM {
    SYMTAB* sym;
    FUNINFO* funinfo;
};

void hash_combine(size_t& seed, size_t v) { seed ^= v + 0x9E3779B9 + (seed << 6) + (seed >> 2); }

struct interned_hash {
    size_t operator()(const INTERNED_SYM& e) const {
        size_t seed = 0;
        hash_combine(seed, e.sym->file_index);
        hash_combine(seed, std::hash<std::string>()(e.sym->name));
        hash_combine(seed,
                     std::hash<std::string>()(e.sym->type ? e.sym->type->print() : std::string()));
        hash_combine(seed, std::hash<const void*>()(e.funinfo));
        return seed;
    }
};

struct interned_equal {
    bool operator()(const INTERNED_SYM& a, const INTERNED_SYM& b) const {
        if (a.funinfo != b.funinfo || a.sym->file_index != b.sym->file_index ||
            strcmp(a.sym->name, b.sym->name) != 0)
            return false;
        if (a.sym->type == b.sym->type)
            return true;
        return a.sym->type && b.sym->type && compatible_types(a.sym->type, b.sym->type, false);
    }
};

boost::unordered_set<INTERNED_SYM, interned_hash, interned_equal>& interned() {
    static auto* set = new boost::unordered_set<INTERNED_SYM, interned_hash, interned_equal>;
    return *set;
}

} // namespace

SYMTAB* intern_symbol(SYMTAB* sym, FUNINFO* f) {
    if (sym->lex == 0)
        return sym;
    auto& set = interned();
    auto it = set.find(INTERNED_SYM{sym, f});
    if (it != set.end())
        return it->sym;
    SYMTAB* copy = copy_symbol(sym, 0);
    copy->next = nullptr;
    set.insert(INTERNED_SYM{copy, f});
    return copy;
}

SYMTAB* find_interned_symbol(SYMTAB* sym) {
    if (sym->lex == 0)
        return sym;
    auto& set = interned();
    auto it = set.find(INTERNED_SYM{sym, currfuninfo});
    return it == set.end() ? nullptr : it->sym;
}

void map_over_interned_symbols(void (*fn)(SYMTAB* sym, FUNINFO* f)) {
    for (const INTERNED_SYM& e : interned())
        fn(e.sym, e.funinfo);
}

void interned_stats() {
    auto& set = interned();
    int no_funinfo = 0;
    for (const INTERNED_SYM& e : set)
        if (!e.funinfo)
            no_funinfo++;
    dprintf("\n%u interned symbols;  load factor %.2f, max load factor %.2f, %d with NULL "
            "funinfo.\n",
            static_cast<unsigned>(set.size()), static_cast<double>(set.load_factor()),
            static_cast<double>(set.max_load_factor()), no_funinfo);
}

void clear_interned_symbols() {
    auto& set = interned();
    for (const INTERNED_SYM& e : set)
        erase_symbol(e.sym);
    set.clear();
}
