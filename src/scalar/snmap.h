// The values the propagation passes know: a constant per symbol, and the one
// object a pointer symbol points at. Both live in the function's FUNINFO.
#pragma once
#include <cstdio>
#include <utility>
#include <vector>

struct SYMTAB;
struct NODE;
struct FUNINFO;

// Owns its value trees.
class SNMAP {
  public:
    SNMAP() = default;
    SNMAP(const SNMAP&) = delete;
    SNMAP& operator=(const SNMAP&) = delete;
    ~SNMAP() { clear(); }
    // The value of sym or null; with `copy` a fresh copy the caller owns.
    NODE* value(SYMTAB* sym, bool copy) const;
    // Takes the tree; a previous value is freed.
    void set_value(SYMTAB* sym, NODE* tree);
    void remove(SYMTAB* sym);
    void clear();
    bool empty() const { return entries.empty(); }
    void print(FILE* out) const;

  private:
    // In the order entries were made, so that the print is stable.
    std::vector<std::pair<SYMTAB*, NODE*>> entries;
};

// A pointer symbol's single pointee expression.
class SPMAP {
  public:
    SPMAP() = default;
    SPMAP(const SPMAP&) = delete;
    SPMAP& operator=(const SPMAP&) = delete;
    ~SPMAP() { clear(); }
    bool is_bound(const SYMTAB* sym) const;
    NODE* pointee(const SYMTAB* sym) const;
    void set_pointee(SYMTAB* sym, NODE* tree);
    void clear();

  private:
    std::vector<std::pair<SYMTAB*, NODE*>> entries;
};

// The maps of a function, made on first use.
SNMAP& function_snmap(FUNINFO* f);
SPMAP& function_spmap(FUNINFO* f);
bool SPMAP_is_bound(const SYMTAB* sym);
void SPMAP_set_pointee(SYMTAB* sym, NODE* tree);
