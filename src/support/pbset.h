// PBSET: a sparse set of elements below 65536 that is cleared in constant
// time. Element e is a member when index[e] < count and list[index[e]] == e;
// the index is never initialized, because no stale entry can pass that test.
#pragma once

#include <cstdint>
#include <cstdio>

struct PBSET {
    unsigned count;      // members
    unsigned capacity;   // slots of the member list
    unsigned index_size; // elements below this have an index entry
    uint16_t* index;     // position of each member in the list
    uint16_t* list;      // the members, in no particular order
};

// Both sizes are rounded up to multiples of 16, at least 16.
PBSET* make_PBSET(unsigned max_element, unsigned member_capacity);
void free_PBSET(PBSET* set);
void make_PBSET_empty(PBSET* set);
// An element of 65536 or above is refused silently.
void add_element_to_PBSET(PBSET* set, unsigned e);
void remove_element_from_PBSET(PBSET* set, unsigned e);
bool element_is_in_PBSET(const PBSET* set, unsigned e);
void dump_PBSET(const PBSET* set, const char* name, FILE* out = stdout);
