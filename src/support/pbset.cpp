#include "support/pbset.h"

#include <cstdlib>

#include "support/safealloc.h"

namespace {

const unsigned element_limit = 65536;

unsigned round_up(unsigned n, unsigned m) { return n == 0 ? m : (n + m - 1) / m * m; }

} // namespace

PBSET* make_PBSET(unsigned max_element, unsigned member_capacity) {
    auto* set = static_cast<PBSET*>(safemalloc(sizeof(PBSET)));
    set->count = 0;
    set->index_size = max_element >= element_limit ? element_limit : round_up(max_element, 16);
    set->capacity =
        member_capacity >= element_limit ? element_limit : round_up(member_capacity, 16);
    set->index = static_cast<uint16_t*>(safemalloc(set->index_size * sizeof(uint16_t)));
    set->list = static_cast<uint16_t*>(safemalloc(set->capacity * sizeof(uint16_t)));
    return set;
}

void free_PBSET(PBSET* set) {
    if (!set)
        return;
    free(set->index);
    free(set->list);
    free(set);
}

void make_PBSET_empty(PBSET* set) { set->count = 0; }

bool element_is_in_PBSET(const PBSET* set, unsigned e) {
    if (e >= set->index_size)
        return false;
    unsigned pos = set->index[e];
    return pos < set->count && set->list[pos] == e;
}

void add_element_to_PBSET(PBSET* set, unsigned e) {
    if (e >= element_limit)
        return;
    if (e >= set->index_size) {
        set->index_size = round_up(e + 1, 32);
        set->index =
            static_cast<uint16_t*>(saferealloc(set->index, set->index_size * sizeof(uint16_t)));
    }
    if (element_is_in_PBSET(set, e))
        return;
    if (set->count == set->capacity) {
        set->capacity += set->capacity < 256 ? set->capacity : 256;
        set->list =
            static_cast<uint16_t*>(saferealloc(set->list, set->capacity * sizeof(uint16_t)));
    }
    set->index[e] = static_cast<uint16_t>(set->count);
    set->list[set->count++] = static_cast<uint16_t>(e);
}

// The last member moves into the freed slot, so the list stays dense.
void remove_element_from_PBSET(PBSET* set, unsigned e) {
    if (!element_is_in_PBSET(set, e))
        return;
    unsigned pos = set->index[e];
    uint16_t last = set->list[--set->count];
    set->list[pos] = last;
    set->index[last] = static_cast<uint16_t>(pos);
}

void dump_PBSET(const PBSET* set, const char* name, FILE* out) {
    fprintf(out, "\nPBSET \"%s\"", name);
    fprintf(out, " contains %d of %d possible members in %d slots.\n", int(set->count),
            int(set->index_size), int(set->capacity));
    if (set->count == 0) {
        fprintf(out, "  <EMPTY>\n");
        return;
    }
    fprintf(out, "  MEMBERS:");
    for (unsigned i = 0; i < set->count; i++) {
        // Ten to a line, continued under the first.
        if (i > 0 && i % 10 == 0)
            fprintf(out, "\n          ");
        fprintf(out, "%6d", int(set->list[i]));
    }
    fprintf(out, "\n");
}
