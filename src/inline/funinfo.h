// The per-function record and the call graph's function lists.
#pragma once

#include <cstdint>

struct SYMTAB;
struct PSN;
struct TYPE;
struct BBLK;
struct LS;
struct LIST;
struct NODE;
struct STACK_SHARING_SCOPE;

struct FUNINFO {
    SYMTAB* symbol = nullptr;
    char* name = nullptr;
    PSN* psn = nullptr;
    // Where the parameters, the locals and the body end, for the records
    // that close those parts on output.
    PSN* args_end_psn = nullptr;
    PSN* locals_end_psn = nullptr;
    PSN* end_psn = nullptr;
    // The type of the value returned: void for none.
    TYPE* result_type = nullptr;
    // The local that holds the result pointer of a function returning a
    // class through its copy constructor, or null.
    SYMTAB* result_by_cctor = nullptr;
    BBLK* bb_list = nullptr;
    int bb_count = 0;
    // The statements as read, last statement first, until buildcfg takes them.
    LIST* stmts = nullptr;
    // Every block in source order, through BBLK::next_created.
    BBLK* bb_created = nullptr;
    // Blocks made so far; a new block's serial index.
    int bb_made = 0;
    int size() const { return bb_made; }
    // The last generated label number; the next one is below it.
    int last_label = 0;
    // A copy of the entry block's argument prolog, or null.
    NODE* arg_prolog = nullptr;
    // Raised by structural changes of the graph, for the loop code.
    bool cfg_changed = false;
    // Raised when renumbering gave blocks new positions.
    bool blocks_changed = false;
    // Non-zero once loops have been given kinds; cross jumping waits for zero.
    uint32_t loop_kind = 0;
    LS* scope = nullptr;
    // The function's parameters and locals, linked through SYMTAB::next.
    SYMTAB* symbols = nullptr;
    // The optimizer's temporaries, newest first, and the last number given.
    SYMTAB* temps = nullptr;
    long temp_counter = 0;
    // What sym_split makes of the two lists above: frame-bound symbols, and
    // scalars that may live in registers.
    SYMTAB* autos = nullptr;
    SYMTAB* regs = nullptr;
    // The stack-sharing scope tree and the record scopes are entered under.
    STACK_SHARING_SCOPE* overlaps = nullptr;
    STACK_SHARING_SCOPE* overlaps_current = nullptr;
    uint32_t flags = 0;
    // Set when the function's definition has been read.
    bool defined = false;
    // No call in the body; cleared by every call node made for it.
    bool is_leaf = true;
    // The address of one of its symbols is taken in the body.
    bool address_taken = false;
    // The body names a `cregister` symbol.
    bool uses_cregister = false;
    // A member access of the body reaches a bit field.
    bool has_bitfield_work = false;
    FUNINFO* hash_next = nullptr;
};

// Flag bits the driver reads.
enum : uint32_t {
    FUN_NOT_WRITTEN_WITH_0X40 = 0x00000002,
    FUN_MUST_BE_UNSUPPRESSED = 0x00000004,
    FUN_NOT_WRITTEN = 0x00000040,
    FUN_DROPPED = 0x00000800,
    FUN_KEEP_SYMBOL = 0x40003a00,
};

struct FUNLIST {
    FUNINFO* fun;
    FUNLIST* next;
};

FUNLIST* mkFUNLIST(FUNINFO* fun, FUNLIST* next);

// The call-graph result: its second word is the list of all functions in final order.
struct CALL_GRAPH {
    int unused;
    FUNLIST* functions;
};

const char* skip_name_prefix(const char* name);
FUNINFO* make_FUNINFO(const char* name);
FUNINFO* find_FUNINFO(const char* name);
bool function_is_defined(const FUNINFO* f);
bool is_system_function(const char* name);
// Forgets every record; for tests that build functions by hand.
void clear_FUNINFO_table();
// Clears the two SNMAPs and the SPMAP of a finished function.
void clear_FUNINFO_maps(FUNINFO* f);
