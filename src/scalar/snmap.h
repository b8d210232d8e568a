// The values the propagation passes know: a constant per symbol, and the one
// object a pointer symbol points at. Both live in the function's FUNINFO.
#pragma once
#include <cstdio>
#include <utility>
#include <vector>

struct SYMTAB;
struct NODE;
struct FUNINFO;

// Symbols with a tree each, in the order they were entered, so that a print
// is stable. Owns the trees.
class SYMBOL_TREE_MAP {
  public:
    SYMBOL_TREE_MAP() = default;
    SYMBOL_TREE_MAP(const SYMBOL_TREE_MAP&) = delete;
    SYMBOL_TREE_MAP& operator=(const SYMBOL_TREE_MAP&) = delete;
    ~SYMBOL_TREE_MAP() { clear(); }
    // The tree of sym or null.
    NODE* find(const SYMTAB* sym) const;
    // Takes the tree; a previous one is freed.
    void set(SYMTAB* sym, NODE* tree);
    void remove(SYMTAB* sym);
    void clear();
    bool empty() const { return entries.empty(); }

  protected:
    std::vector<std::pair<SYMTAB*, NODE*>> entries;
};

// The constant value of a symbol.
class SNMAP : public SYMBOL_TREE_MAP {
  public:
    // The value of sym or null; with `copy` a fresh copy the caller owns.
    NODE* value(SYMTAB* sym, bool copy) const;
    void set_value(SYMTAB* sym, NODE* tree) { set(sym, tree); }
    void print(FILE* out) const;
};

// A pointer symbol's single pointee expression.
class SPMAP : public SYMBOL_TREE_MAP {
  public:
    bool is_bound(const SYMTAB* sym) const { return find(sym) != nullptr; }
    NODE* pointee(const SYMTAB* sym) const { return find(sym); }
    void set_pointee(SYMTAB* sym, NODE* tree) { set(sym, tree); }
};

// The maps of a function, made on first use.
SNMAP& function_snmap(FUNINFO* f);
SPMAP& function_spmap(FUNINFO* f);
bool SPMAP_is_bound(const SYMTAB* sym);
void SPMAP_set_pointee(SYMTAB* sym, NODE* tree);
