// The switch table: sorted named integers that any code may ask for a debug,
// enable or disable switch. Lookups stand in hot paths, so they never allocate.
#include "driver/passes.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/safealloc.h"
#include <vector>

namespace {

struct assoc_entry {
    char* name;
    int value;
};

assoc_entry* assoc_array;
int assoc_top;
int assoc_size;

int compare_entries(const void* a, const void* b) {
    return strcmp(static_cast<const assoc_entry*>(a)->name,
                  static_cast<const assoc_entry*>(b)->name);
}

assoc_entry* find_entry(const char* name) {
    int lo = 0, hi = assoc_top - 1;
    while (lo <= hi) {
        int mid = (lo + hi) / 2;
        int c = strcmp(name, assoc_array[mid].name);
        if (c == 0)
            return &assoc_array[mid];
        if (c < 0)
            hi = mid - 1;
        else
            lo = mid + 1;
    }
    return nullptr;
}

void set_entry(const char* name, int value) {
    if (assoc_entry* e = find_entry(name)) {
        e->value = value;
        return;
    }
    // Grows in steps of 100 entries, at each multiple of 100.
    if (assoc_size % 100 == 0)
        assoc_array = static_cast<assoc_entry*>(
            saferealloc(assoc_array, (assoc_size + 100) * sizeof(assoc_entry)));
    assoc_size++;
    assoc_array[assoc_top].name = strdup(name);
    assoc_array[assoc_top].value = value;
    assoc_top++;
    qsort(assoc_array, assoc_top, sizeof(assoc_entry), compare_entries);
}

int lookup(const char* prefix, const char* name) {
    char buffer[512];
    snprintf(buffer, sizeof buffer, "%s:%s", prefix, name);
    const assoc_entry* e = find_entry(buffer);
    return e ? e->value : 0;
}

} // namespace

int pass_debug(const char* name) { return lookup("debug", name); }
int pass_enable(const char* name) { return lookup("enable", name); }
bool pass_disable(const char* name) { return lookup("disable", name) != 0; }

void process_debug_option(const char* kind, const char* spec) {
    char buffer[512];
    snprintf(buffer, sizeof buffer, "%s:", kind);
    const size_t prefix = strlen(buffer);

    char* copy = strdup(spec);
    char* rest = copy;
    while (char* token = strsep(&rest, ",")) {
        int value = 1;
        if (char* eq = strchr(token, '=')) {
            *eq = '\0';
            value = static_cast<int>(strtol(eq + 1, nullptr, 0));
            strncat(buffer, token, sizeof buffer - strlen(buffer) - 1);
        } else if (prefix + strlen(token) < sizeof buffer) {
            strcat(buffer, token);
        }
        set_entry(buffer, value);
        buffer[prefix] = '\0';
    }
    free(copy);
}

char** register_option::options;
int register_option::num;

register_option::register_option(const char* name) {
    for (int i = 0; i < num; i++)
        if (strcmp(options[i], name) == 0) {
            name_ = options[i];
            return;
        }
    options = static_cast<char**>(saferealloc(options, (num + 1) * sizeof(char*)));
    options[num] = strdup(name);
    name_ = options[num++];
}

register_option::operator int() const {
    const assoc_entry* e = find_entry(name_);
    return e ? e->value : 0;
}

register_option::operator bool() const { return static_cast<int>(*this) != 0; }

register_option& register_option::operator=(int value) {
    set_entry(name_, value);
    return *this;
}

bool register_option::is_registered(const char* name) {
    for (int i = 0; i < num; i++)
        if (strcmp(options[i], name) == 0)
            return true;
    return false;
}

// The catalogue of known switches. It is never consulted when switches are
// set; it records which names the program reads.
namespace {

const char* const catalogue_names[] = {
    "debug:SIMD",
    "debug:abort",
    "debug:aggressive_vec",
    "debug:alias",
    "debug:align",
    "debug:bisect_limit",
    "debug:cfg_folding",
    "debug:clone",
    "debug:conservative_vec",
    "debug:debug_SIMD",
    "debug:dump_infix",
    "debug:dump_infix_regs",
    "debug:dump_infix_types",
    "debug:dump_minimal",
    "debug:dump_psn",
    "debug:dump_scope",
    "debug:dump_serial",
    "debug:dump_sym_addr",
    "debug:dump_tree_hint",
    "debug:dumprules",
    "debug:inform_SIMD",
    "debug:inline_auto_limit",
    "debug:inline_benefit_call",
    "debug:inline_benefit_fold",
    "debug:inline_benefit_pressure",
    "debug:inline_commentary",
    "debug:inline_n",
    "debug:inline_pressure_limit",
    "debug:inline_restrict",
    "debug:inline_small_limit",
    "debug:inline_static_limit",
    "debug:lir_compare",
    "debug:lir_full_types",
    "debug:lir_revert_dump_dag",
    "debug:lir_serial_compact",
    "debug:lir_show",
    "debug:lir_time",
    "debug:max_unroll_size",
    "debug:mdebug",
    "debug:nfa_by_cost",
    "debug:noinstrument",
    "debug:oldrestrict",
    "debug:optimizer_estimates",
    "debug:parsemd",
    "debug:parser",
    "debug:plant_miscompile",
    "debug:split_odb",
    "debug:synrules",
    "debug:unroll",
    "debug:unroll_Complete_only",
    "debug:unroll_MULTI",
    // Made by a second module too; the two objects share one string.
    "debug:unroll",
    "enable:dfn_ordering",
    "enable:dom_ordering",
    "enable:dont_do_critical_edges",
    "enable:groupall",
    "enable:innermost_loop_ordering",
    "enable:interference_graph_phi_node_instantiation",
    "enable:lir",
    "enable:lir_early",
    "enable:lir_late",
    "enable:lir_revert_simp",
    "enable:lir_ssa_remove_useless_phis",
    "enable:lirssa",
    "enable:naive_phi_node_instantiation",
    "enable:no_headers",
    "enable:postdom_ordering",
    "enable:static_profiling",
    // Without a prefix no command-line entry can ever match this one.
    "interference_graph_phi_node_instantiation",
    "disable:NLC",
    "disable:cliqueclusters",
    "disable:cps",
    "disable:downcounters",
    "disable:fcprevsymtab",
    "disable:ilp",
    "disable:inline_folding",
    "disable:inline_profiled",
    "disable:inline_tiny_leaves",
    "disable:inline_waves",
    "disable:lir_revert_clean",
    "disable:lir_revert_detect_expr_trees",
    "disable:lir_revert_trees",
    "disable:lir_ssa_coalesce",
    "disable:lir_ssa_remove_copies",
    "disable:newinline",
    "disable:superblock_opt",
    "disable:switch_hoisting",
    "disable:tail_duplication",
    "disable:tail_recursion",
    "disable:target_expansion",
    "disable:trace_straighten",
    "disable:vecvec",
    "disable:vn",
};

struct catalogue {
    std::vector<register_option> entries;
    catalogue() {
        for (const char* name : catalogue_names)
            entries.emplace_back(name);
    }
} switch_catalogue;

} // namespace
