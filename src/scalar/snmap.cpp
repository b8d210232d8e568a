// Per-function value maps of the propagation passes.
#include "scalar/snmap.h"

#include <algorithm>
#include <map>
#include <memory>

#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/infix.h"
#include "ir/node.h"
#include "ir/symtab.h"

namespace {

template <class V> auto find_entry(V& entries, const SYMTAB* sym) {
    return std::find_if(entries.begin(), entries.end(),
                        [sym](const auto& e) { return e.first == sym; });
}

struct FUNCTION_MAPS {
    SNMAP values;
    SPMAP pointees;
};

// Keyed by the record: FUNINFOs live as long as the file.
std::map<const FUNINFO*, std::unique_ptr<FUNCTION_MAPS>>& all_maps() {
    static std::map<const FUNINFO*, std::unique_ptr<FUNCTION_MAPS>> maps;
    return maps;
}

FUNCTION_MAPS& maps_of(FUNINFO* f) {
    auto& slot = all_maps()[f];
    if (!slot)
        slot = std::make_unique<FUNCTION_MAPS>();
    return *slot;
}

} // namespace

NODE* SYMBOL_TREE_MAP::find(const SYMTAB* sym) const {
    auto it = find_entry(entries, sym);
    return it == entries.end() ? nullptr : it->second;
}

void SYMBOL_TREE_MAP::set(SYMTAB* sym, NODE* tree) {
    auto it = find_entry(entries, sym);
    if (it != entries.end()) {
        erase_tree(it->second);
        it->second = tree;
        return;
    }
    entries.emplace_back(sym, tree);
}

void SYMBOL_TREE_MAP::remove(SYMTAB* sym) {
    auto it = find_entry(entries, sym);
    if (it == entries.end())
        return;
    erase_tree(it->second);
    entries.erase(it);
}

void SYMBOL_TREE_MAP::clear() {
    for (auto& e : entries)
        erase_tree(e.second);
    entries.clear();
}

NODE* SNMAP::value(SYMTAB* sym, bool copy) const {
    NODE* v = find(sym);
    return v && copy ? copy_tree(v, true) : v;
}

void SNMAP::print(FILE* out) const {
    fprintf(out, "SYMBOL/NODE MAP INFORMATION FOR %s()\n",
            currfuninfo && currfuninfo->name ? currfuninfo->name : "");
    if (entries.empty()) {
        fprintf(out, "\t<<EMPTY SNMAP>>\n");
        return;
    }
    for (const auto& e : entries) {
        fprintf(out, "\t%s", e.first->name);
        fprintf(out, " --> %s\n", stmt2infix(e.second).c_str());
    }
}

SNMAP& function_snmap(FUNINFO* f) { return maps_of(f).values; }
SPMAP& function_spmap(FUNINFO* f) { return maps_of(f).pointees; }

bool SPMAP_is_bound(const SYMTAB* sym) {
    return currfuninfo && function_spmap(currfuninfo).is_bound(sym);
}

void SPMAP_set_pointee(SYMTAB* sym, NODE* tree) { function_spmap(currfuninfo).set_pointee(sym, tree); }

// The maps hold trees of the function's symbols: they go with its body.
void clear_FUNINFO_maps(FUNINFO* f) { all_maps().erase(f); }
