// Per-function records, found by name through a small hash table.
#include "inline/funinfo.h"

#include <cstdlib>
#include <cstring>

#include "ir/symtab.h"
#include "ir/types.h"

namespace {

constexpr int funinfo_buckets = 73;
FUNINFO* funinfo_table[funinfo_buckets];

// The classic 4-bit shift with the top nibble folded back, low 15 bits kept.
unsigned funinfo_hash(const char* name) {
    unsigned h = 0;
    for (const unsigned char* p = reinterpret_cast<const unsigned char*>(name); *p; p++) {
        h = (h << 4) + *p;
        if (unsigned g = h & 0xF0000000u) {
            h ^= g >> 24;
            h &= ~g;
        }
    }
    return (h & 0x7FFF) % funinfo_buckets;
}

FUNINFO* lookup(const char* name) {
    for (FUNINFO* f = funinfo_table[funinfo_hash(name)]; f; f = f->hash_next)
        if (f->name[0] == name[0] && (name[0] == '\0' || f->name[1] == name[1]) &&
            strcmp(f->name, name) == 0)
            return f;
    return nullptr;
}

FUNINFO* insert(const char* name) {
    FUNINFO* f = new FUNINFO;
    f->name = strdup(name);
    FUNINFO*& head = funinfo_table[funinfo_hash(name)];
    f->hash_next = head;
    head = f;
    return f;
}

} // namespace

FUNLIST* mkFUNLIST(FUNINFO* fun, FUNLIST* next) { return new FUNLIST{fun, next}; }

FUNINFO* find_FUNINFO(const char* name) {
    if (FUNINFO* f = lookup(name))
        return f;
    return is_system_function(name) ? insert(name) : nullptr;
}

FUNINFO* make_FUNINFO(const char* name) {
    if (FUNINFO* f = lookup(name))
        return f;
    return insert(name);
}

bool function_is_defined(const FUNINFO* f) { return f->bb_list != nullptr || f->defined; }

void clear_FUNINFO_table() {
    for (FUNINFO*& head : funinfo_table)
        while (head) {
            FUNINFO* next = head->hash_next;
            free(head->name);
            delete head;
            head = next;
        }
}
