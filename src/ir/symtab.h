// Symbols and their attributes.
#pragma once

#include <cstdint>

struct PSN;
struct TYPE;
struct LS;
struct EXPR_LIST;
struct FUNINFO;
struct SYMTAB;
struct NODE;

// An attribute of a symbol or a statement: a kind and its string arguments.
// The argument array is new[]'d, each string malloc'd.
struct PRAGMA {
    uint8_t kind;
    int nargs;
    char** args;
    PRAGMA* next;

    // The name of the kind, or "unknown" above maxpragma.
    const char* name() const;
};

constexpr int maxpragma = 120;
// What a pragma kind attaches to.
enum : unsigned char { PRAGMA_ON_VAR = 1, PRAGMA_ON_FUNC = 2, PRAGMA_ON_LOOP = 4 };
extern const unsigned char pragma_flags[maxpragma + 1];
extern const char* const pragma_names[maxpragma + 1];

PRAGMA* mk_pragma(int kind, int nargs, char** args, PRAGMA* next);
// A deep copy of one pragma, link cleared; of a whole list.
PRAGMA* copy_pragma(const PRAGMA* p);
PRAGMA* copy_pragma_list(const PRAGMA* list);
void erase_pragma(PRAGMA* p);
void erase_pragma_list(PRAGMA* list);
bool sym_has_pragma(const SYMTAB* sym, int kind);
PRAGMA* symbol_has_pragma(const SYMTAB* sym, int kind);
// The list without its first pragma of that kind, which is freed.
PRAGMA* remove_pragma(int kind, PRAGMA* list);

// Pragma kinds the code names.
enum : int {
    PRAGMA_SRC_LANGUAGE = 49,
    PRAGMA_SCOPING_FUNC = 51,
    PRAGMA_SYM_IS_REFERENCED = 52,
    PRAGMA_FUNC_IS_NONCONFORMING = 54,
    PRAGMA_TRANSLATION_UNIT_ID = 55,
    PRAGMA_IS_CLASS_MEMBER = 58,
    PRAGMA_SYMBOL_IS_DEAD = 59,
    PRAGMA_COMDAT_GROUP = 69,
    PRAGMA_FUNC_IS_CTOR_DTOR = 71,
    PRAGMA_SYM_VISIBILITY = 72,
    PRAGMA_FUNC_ESPEC = 75,
    PRAGMA_FUNC_SYNONYM = 78,
    PRAGMA_FUNC_RET_BY_CCTOR = 81,
    PRAGMA_FUNC_ALWAYS_INLINE = 88,
    PRAGMA_CODE_STATE = 93,
};

// Storage classes.
enum : uint8_t {
    SC_AUTO = 1,
    SC_GLOBAL_DEF = 2,
    SC_STATIC = 3,
    SC_LOCAL_4 = 4,
    SC_EXTERN_DECL = 5,
    SC_OFF_LIST = 6,
    SC_PARAM = 9,
    SC_REG_PARAM = 17,
    SC_LOCAL_22 = 22,
    SC_PARAM_27 = 27,
    SC_DELETED = 108,
    SC_DELETED_GLOBAL = 109,
};

// Bit sets over classes: {4, 17, 22}, and the classes with a frame place.
constexpr uint32_t SC_SET_NOT_ALIASED = 0x420010;
constexpr uint32_t SC_SET_FRAME = 0x420212;
inline bool sclass_in_set(unsigned sclass, uint32_t set) {
    return sclass < 32 && ((set >> sclass) & 1);
}

// Bits of `qual`.
enum : uint16_t {
    SQ_INLINE = 0x0004,
    SQ_CREGISTER = 0x0010,
    SQ_REGISTER = 0x0080,
    SQ_NO_KNOWN_VALUE = 0x2000,
    SQ_KNOWN_VALUE_MASK = 0x6000,
    SQ_PINNED = 0xE000,
    SQ_KEEP = 0x8000,
};

// Bits of `state`. Bit 0: the address is taken, or the class is not a plain local.
constexpr uint8_t SYM_ADDRESS_TAKEN = 0x01;
enum : uint8_t {
    SYM_STATE_1 = 0x02,
    SYM_STATE_NEW = 0x04,
    SYM_STATE_3 = 0x08,
    SYM_HAS_INIT = 0x20,
    SYM_DELETED = 0x80,
};

struct SYMTAB {
    char* name = nullptr;
    uint32_t size = 0; // bytes
    uint32_t offset = 0;
    uint8_t sclass = 0;
    uint8_t oclass = 0;
    uint16_t qual = 0;
    TYPE* type = nullptr;
    TYPE* otype = nullptr;
    TYPE* stype = nullptr;
    uint32_t align = 0; // bits, as the type package counts
    LS* scope = nullptr;
    uintptr_t reserved1 = 0;
    PSN* psn = nullptr;
    PRAGMA* pragmas = nullptr;
    uintptr_t reserved2[2] = {0, 0};
    EXPR_LIST* init = nullptr;
    // For a scalar whose value may be taken as known, the one constant its
    // initial data hold; owned by the symbol.
    NODE* known_value = nullptr;
    uint32_t file_level = 0;
    uint32_t file_index = 0;
    uint32_t file_offset = 0;
    uint32_t extra = 0;
    SYMTAB* next = nullptr;
    uintptr_t reserved3 = 0;
    uint8_t lex = 0;
    uint32_t order = 0;
    uint16_t uses = 0xFFFF;
    uintptr_t reserved4[3] = {0, 0, 0};
    uint8_t state = 0;
    // The "aliased" mark of the propagation passes.
    bool aliased = false;

    SYMTAB() = default;
    // Copies the name; asserts that the size is the type's unless it is a function.
    SYMTAB(const char* name, unsigned long size, unsigned long offset, unsigned char sclass,
           unsigned short qual, TYPE* type, TYPE* otype, unsigned long align, PSN* psn, int lex);
};

// Frees a symbol made by the constructor or copy_symbol, with its name and pragmas.
void erase_symbol(SYMTAB* sym);
// A new symbol like sym, name and pragmas copied; with keep it keeps sym's
// creation ordinal, else it gets a new one.
SYMTAB* copy_symbol(const SYMTAB* sym, int keep);

// The file-level symbols, newest first.
extern SYMTAB* global_symbols;
// The int `errno` of the file, once one is defined.
extern SYMTAB* errno_symbol;
void init_symbols();
// The target's: a file-level `register` symbol keeps its register everywhere.
void reserve_global_register(SYMTAB* sym);
// Enters a symbol just read: globals, a function's locals list.
void sym_def(SYMTAB* sym);
// Moves a function's locals and temporaries into its autos and regs lists.
void sym_split(FUNINFO* f);
// A local temporary "$O$<kind><n>"; a negative n takes the function's next number.
SYMTAB* sym_temp(int kind, long n, TYPE* type, LS* scope);
SYMTAB* gen_operator_new_temp(TYPE* type);
// The class 2 definition for a class 5 declaration, or sym itself.
SYMTAB* get_sym_def_for_decl(SYMTAB* sym);

// Whether the symbol's type is a function type; the type package answers.
bool sym_is_function(const SYMTAB* sym);

// Lists linked through SYMTAB::next.
SYMTAB* revsymtab(SYMTAB* list, SYMTAB* tail);
SYMTAB* unlink_symbol(SYMTAB* sym, SYMTAB* list);

struct SYMLIST {
    SYMTAB* sym;
    SYMLIST* next;
};
// A symbol with an attached datum.
struct SYMALIST {
    SYMTAB* sym;
    void* attr;
    SYMALIST* next;
};
struct SYMPAIRLIST {
    SYMTAB* first;
    SYMTAB* second;
    SYMPAIRLIST* next;
};

SYMLIST* mk_symlist(SYMTAB* sym, SYMLIST* next);
SYMALIST* mk_symalist(SYMTAB* sym, void* attr, SYMALIST* next);
SYMPAIRLIST* mk_symplist(SYMTAB* first, SYMTAB* second, SYMPAIRLIST* next);
SYMLIST* revsymlist(SYMLIST* list);
SYMALIST* revsymalist(SYMALIST* list);
bool symbol_in_list(const SYMTAB* sym, const SYMLIST* list);
SYMLIST* find_sym_in_symlist(const SYMTAB* sym, SYMLIST* list);
// The pair whose first symbol is sym.
SYMPAIRLIST* find_sym_in_sympairlist(const SYMTAB* sym, SYMPAIRLIST* list);
// The list without the first cell of sym, which is freed.
SYMLIST* remove_sym_from_symlist(const SYMTAB* sym, SYMLIST* list);
SYMLIST* copy_symlist(const SYMLIST* list);
SYMALIST* copy_symalist(const SYMALIST* list);
// Free the cells only; each returns null.
SYMLIST* erase_symlist(SYMLIST* list);
SYMALIST* erase_symalist(SYMALIST* list);
SYMPAIRLIST* erase_symplist(SYMPAIRLIST* list);

// File-level names carry a leading "." or "_" unless the ABI option is 1.
bool name_has_prefix(const char* name);
const char* skip_name_prefix(const char* name);
bool is_internal_name(const char* name);
bool is_internal_symbol(const SYMTAB* sym);
// "$O$" and kind1 or kind2, then nothing or digits.
bool is_optimizer_temp(const char* name, int kind1, int kind2);
bool is_operator_new_symbol(const SYMTAB* sym);

// Visibility by pragma 72.
bool pragma_says_preemptible(const PRAGMA* p);
bool pragma_says_outside_accessible(const PRAGMA* p);
bool symbol_is_preemptible(const SYMTAB* sym);
bool symbol_is_outside_accessible(const SYMTAB* sym);
bool symbol_is_protected(const SYMTAB* sym);
bool symbol_will_be_indirected(const SYMTAB* sym);

// Filled by the reader: functions of pragma 54, and barrier calls.
extern SYMLIST* nonconforming_functions;
extern SYMLIST* barrier_MCALLs;
bool func_is_nonconforming(const SYMTAB* sym);
bool is_barrier_MCALL(const SYMTAB* sym);

// Local symbols that keep one identity over inlining, per function.
SYMTAB* intern_symbol(SYMTAB* sym, FUNINFO* f);
// The interned copy of sym for the current function, or null.
SYMTAB* find_interned_symbol(SYMTAB* sym);
void map_over_interned_symbols(void (*fn)(SYMTAB* sym, FUNINFO* f));
void interned_stats();
// Frees every interned copy.
void clear_interned_symbols();

// Stack sharing: the tree of scopes whose locals may share frame space.
struct STACK_SHARING_SCOPE {
    SYMLIST* vars = nullptr;
    STACK_SHARING_SCOPE* child = nullptr;
    STACK_SHARING_SCOPE* sibling = nullptr;
    STACK_SHARING_SCOPE* parent = nullptr;
    int level = 0;
    int count1 = 0;
    int count2 = 0;
};
void init_stack_sharing();
void begin_stack_sharing_scope(int level);
void add_stack_sharing_variable(SYMTAB* sym);
void end_stack_sharing_scope();
void delete_stack_sharing_variable(SYMTAB* sym);
// Frees the whole tree of a function.
void erase_stack_sharing(FUNINFO* f);
void build_stack_sharing_type();

// Replaces local structs used only member-wise by one variable per member.
void explode_auto_struct_vars();
// The same for one function; `keep` names structs that must stay whole.
void explode_auto_struct_vars_of(FUNINFO* f, bool (*keep)(SYMTAB* sym));

// The log lines of the closing table of global symbols.
void dump_global_symbol(SYMTAB* sym);
void dump_symbol_pragmas(SYMTAB* sym);
void dump_pragma(const PRAGMA* p);
