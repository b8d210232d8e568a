// Symbols and their attributes.
#pragma once

#include <cstdint>

struct PSN;
struct TYPE;
struct LS;
struct EXPR_LIST;

// An attribute of a symbol or a statement: a kind and its string arguments.
struct PRAGMA {
    int kind;
    int nargs;
    char** args;
    PRAGMA* next;
};

PRAGMA* mk_pragma(int kind, int nargs, char** args, PRAGMA* next);
bool sym_has_pragma(const struct SYMTAB* sym, int kind);

// Pragma kinds the driver names.
enum : int {
    PRAGMA_SYM_IS_REFERENCED = 52,
    PRAGMA_SYMBOL_IS_DEAD = 59,
    PRAGMA_CODE_STATE = 93,
};

struct SYMTAB {
    char* name = nullptr;
    uint32_t size = 0;
    uint32_t offset = 0;
    uint8_t sclass = 0;
    uint8_t oclass = 0;
    uint16_t qual = 0;
    TYPE* type = nullptr;
    TYPE* otype = nullptr;
    TYPE* stype = nullptr;
    uint32_t align = 0;
    LS* scope = nullptr;
    PSN* psn = nullptr;
    PRAGMA* pragmas = nullptr;
    EXPR_LIST* init = nullptr;
    uint32_t file_level = 0;
    uint32_t file_index = 0;
    uint32_t file_offset = 0;
    uint32_t extra = 0;
    SYMTAB* next = nullptr;
    uint8_t lex = 0;
    uint32_t order = 0;
    uint16_t uses = 0xFFFF;
    uint8_t state = 0;
    // The "aliased" mark of the propagation passes.
    bool aliased = false;
};

// Bit 0 of `state`: the address is taken, or the class is not a plain local.
constexpr uint8_t SYM_ADDRESS_TAKEN = 0x01;

// The file-level symbols, in list order.
extern SYMTAB* global_symbols;
void init_symbols();

// Whether the symbol's type is a function type; the type package answers.
bool sym_is_function(const SYMTAB* sym);

// The log lines of the closing table of global symbols.
void dump_global_symbol(SYMTAB* sym);
void dump_symbol_pragmas(SYMTAB* sym);
