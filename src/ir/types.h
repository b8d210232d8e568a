// The type package: the one owner of every TYPE for the whole run.
//
// Types are interned: two requests for the same pointer, qualified, array or
// function type give the same object, so that pointer equality is the cheap
// first test everywhere else. Tagged types (enum, struct, union, class) are
// never unified; each declaration is its own object. Sizes and alignments are
// counted in bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/int65.h"

class I_FILE;
class TYPE_PKG;
struct TYPE;
struct NODE;
struct SYMTAB;

// Zero-filling allocation that keeps a running total for print_stats. Running
// out of memory is fatal ("Out of memory: tp_alloc()").
void* tp_alloc(size_t n);
void tp_free(void* p, size_t n);
size_t tp_bytes_in_use();

struct TP_ALLOC {
    static void* operator new(size_t n) { return tp_alloc(n); }
    static void operator delete(void* p, size_t n) { tp_free(p, n); }
};

struct UID : TP_ALLOC {
    // 0 until registered; then unique in the package.
    uint32_t uid = 0;
};

// Qualifier bits, in the order in which they print.
enum : unsigned char {
    TQ_CONST = 1,
    TQ_VOLATILE = 2,
    TQ_PACKED = 4,
    TQ_NEAR = 8,
    TQ_FAR = 16,
    TQ_IOPORT = 32,
    TQ_RESTRICT = 64,
    TQ_ONCHIP = 128,
};

// A declaration's position. The file name is interned by the package, so it
// outlives the input file's name table.
struct TPSN {
    const char* file = nullptr; // null: no position
    unsigned line = 0;
    unsigned column = 0;
};

// Element records of the lists of a function, enum or class. The link is
// always the last field. Names are owned copies.
struct fkPARAM : TP_ALLOC {
    TYPE* type = nullptr;
    // Carried for the code generator; the optimizer compares types only.
    bool flag = false;
    uint32_t word = 0;
    char* name = nullptr;
    fkPARAM* next = nullptr;
    fkPARAM(TYPE* t, bool f = false, uint32_t w = 0, const char* n = nullptr);
    ~fkPARAM();
};

struct fkETOR : TP_ALLOC {
    long long value = 0;
    char* name = nullptr;
    TPSN psn;
    fkETOR* next = nullptr;
    fkETOR(const char* n, long long v);
    ~fkETOR();
};

struct fkMDATA : TP_ALLOC {
    unsigned number = 0; // 1-based, assigned when the class is registered
    TYPE* type = nullptr;
    char* name = nullptr;
    unsigned name_len = 0;
    int access = 0;
    uint32_t offset = 0; // bits from the start of the class
    uint32_t width = 0;  // bits, for a bit field
    // A qualifier-like byte of the member itself: const-like members and
    // members that must be accessed as volatile carry their bits here.
    unsigned char flags = 0;
    bool is_bitfield = false;
    bool flag_a = false;
    bool flag_b = false;
    // "fti:%x" for a non-zero tag byte of the file, else null.
    char* tag = nullptr;
    TPSN psn;
    fkMDATA* next = nullptr;
    fkMDATA(const char* name, TYPE* type, int access, int offset, int width, unsigned char flags,
            bool is_bitfield, bool flag_a, bool flag_b);
    ~fkMDATA();
};

struct fkBCLASS : TP_ALLOC {
    TYPE* type = nullptr;
    int offset = 0; // bits
    unsigned char access = 0;
    bool is_virtual = false;
    fkBCLASS* next = nullptr;
};

struct fkMFUNC : TP_ALLOC {
    TYPE* type = nullptr;
    char* name = nullptr;
    unsigned char access = 0;
    int index = 0;
    bool flags[4] = {false, false, false, false};
    fkMFUNC* next = nullptr;
    ~fkMFUNC();
};

struct fkSDATA : TP_ALLOC {
    TYPE* type = nullptr;
    char* name = nullptr;
    unsigned char access = 0;
    fkSDATA* next = nullptr;
    ~fkSDATA();
};

struct fkFFRIEND : TP_ALLOC {
    char* name = nullptr;
    TYPE* type = nullptr;
    fkFFRIEND* next = nullptr;
    ~fkFFRIEND();
};

struct fkTYPE_ELEM : TP_ALLOC {
    TYPE* type = nullptr;
    fkTYPE_ELEM* next = nullptr;
};

struct fkADECL : TP_ALLOC {
    unsigned char access = 0;
    uint32_t word = 0; // carried for the code generator
    fkADECL* next = nullptr;
};

struct TYPE : UID {
    // The numeric values are stored in files and switch tables.
    enum KIND : unsigned char {
        tpk_void = 0,
        tpk_int = 1,
        tpk_fltpt = 2,
        tpk_fxtpt = 3,
        tpk_complex = 4,
        tpk_pointer = 5,
        tpk_ref = 6,
        tpk_qual = 7,
        tpk_typedef = 8,
        tpk_array = 9,
        tpk_ptm = 10,
        tpk_func = 11,
        tpk_enum = 12,
        tpk_class = 13,
        tpk_struct = 14,
        tpk_union = 15,
    };
    enum IKIND : unsigned char {
        ik_bool = 0,
        ik_char = 1,
        ik_uchar = 2,
        ik_wchar = 3,
        ik_short = 4,
        ik_ushort = 5,
        ik_int = 6,
        ik_uint = 7,
        ik_long = 8,
        ik_ulong = 9,
        ik_llong = 10,
        ik_ullong = 11,
    };
    enum FKIND : unsigned char { fk_float = 0, fk_double = 1, fk_ldouble = 2 };
    // The calling convention is the front end's number, carried as it is.
    enum CC_KIND : unsigned char { cc_default = 0 };

    // From map name to the types based on this one under that name.
    using BASED_TYPE_CONTAINER = std::map<std::string, std::vector<TYPE*>>;

    struct TYPEDEF_PART : TP_ALLOC {
        TYPE* type_named = nullptr;
        char* name = nullptr;
        unsigned name_len = 0;
        bool lowered = false;
    };
    struct ARRAY_PART : TP_ALLOC {
        TYPE* elem = nullptr;
        uint32_t count = 0;
        bool complete = false;
        bool vector = false;
    };
    struct FUNC_PART : TP_ALLOC {
        TYPE* ret = nullptr;
        fkPARAM* params = nullptr;
        CC_KIND cc = cc_default;
        bool vararg = false;
        bool proto = false;
    };
    struct ENUM_PART : TP_ALLOC {
        TYPE* underlying = nullptr;
        char* name = nullptr;
        unsigned name_len = 0;
        fkETOR* etors = nullptr;
        bool complete = false;
    };
    struct CSU_PART : TP_ALLOC {
        bool complete = false;
        bool low = false;
        bool is_struct_vector = false;
        char* name = nullptr;
        unsigned name_len = 0;
        fkBCLASS* bclasses = nullptr;
        fkADECL* adecls = nullptr;
        fkFFRIEND* ffriends = nullptr;
        fkTYPE_ELEM* cfriends = nullptr;
        fkTYPE_ELEM* ntypes = nullptr;
        fkMDATA* mdata = nullptr;
        fkSDATA* sdata = nullptr;
        fkMFUNC* mfuncs = nullptr;
        fkPARAM* tparams = nullptr; // parameters of a class template
        // Non-zero: merge_types compares the members of this union in order.
        uint32_t layout_check = 0;
        // The long class record's third word, carried for the code generator.
        uint32_t third_word = 0;
    };

    KIND kind;
    uint64_t size_in_bits = 0;
    uint32_t align_in_bits = 0;
    TYPE_PKG* owner = nullptr; // null for an orphan
    bool frozen = false;
    bool merg = false;
    // The type itself, or for a qualifier or typedef the first type below that
    // is neither: every kind test goes through it.
    TYPE* resolved = nullptr;
    TPSN psn;
    TYPE* normal = nullptr; // cache of normalized()
    bool writ = false;
    bool refd = false;
    int tu = 0;
    uint32_t merge_mark = 0;
    TYPE* equiv = nullptr; // union-find link to the merge representative
    bool cpp = false;

    // The kind's subpart: one of these is in use.
    TYPE* target = nullptr; // pointed to, referenced, qualified, ptm pointee,
                            // fixed-point underlying type, complex part
    IKIND ikind = ik_bool;
    bool expl_sign = false;
    bool boolean = false;
    bool ptm_int = false;
    FKIND fkind = fk_float;
    unsigned char quals = 0;
    unsigned char binpt = 0;
    TYPE* ptm_class = nullptr;
    TYPEDEF_PART* td = nullptr;
    ARRAY_PART* ar = nullptr;
    FUNC_PART* fn = nullptr;
    ENUM_PART* en = nullptr;
    CSU_PART* csu = nullptr;

    std::string map_name_cache;
    BASED_TYPE_CONTAINER* based = nullptr;

    // Orphan constructors, for types made outside a package (the generated
    // rule base has static ones).
    explicit TYPE(KIND k);
    TYPE(KIND k, TYPE* target, unsigned long long size, unsigned align);
    explicit TYPE(TYPE* part_type); // complex
    TYPE(FKIND k, unsigned long long size, unsigned align);
    TYPE(IKIND k, unsigned long long size, unsigned align, bool explicit_sign, bool boolean,
         bool ptm);
    TYPE(KIND k, const char* name, int size, int align); // typedef or tagged type
    TYPE(const TYPE&) = delete;
    TYPE& operator=(const TYPE&) = delete;
    virtual ~TYPE();

    uint64_t size() const { return size_in_bits; }
    unsigned align() const { return align_in_bits; }
    uint64_t size_in_bytes() const { return size_in_bits / 8; }
    unsigned align_in_bytes() const { return align_in_bits / 8; }
    uint64_t storage_size() const;

    // Accessors. Each dies when asked of a kind that has no such part.
    const char* name() const;
    TYPE* type_pointed_to() const;
    TYPE* underlying_type() const;
    TYPE* part_type() const;
    TYPE* elem_type() const;
    CSU_PART* get_csu() const;
    TYPE* getd(KIND k) const;
    TYPE* getr(KIND k) const;
    CSU_PART* getr_csu() const;
    TYPE* stds() const;
    TYPE* stqs() const;
    TYPE* type_qualified() const;
    unsigned char qual_kind(bool through_arrays = false) const;
    bool is_complete() const;
    void set_is_complete(bool complete);
    bool is_lowered() const;
    void set_is_lowered(bool lowered);
    int rank() const;
    int ekind() const;
    TYPE* normalized();
    const std::string& map_name();
    // The element list of a function type (parameters), enum (enumerators)
    // or class (data members).
    fkPARAM* params() const { return resolved->fn ? resolved->fn->params : nullptr; }
    fkETOR* etors() const { return resolved->en ? resolved->en->etors : nullptr; }
    fkMDATA* members() const { return resolved->csu ? resolved->csu->mdata : nullptr; }
    TYPE* return_type() const { return resolved->fn ? resolved->fn->ret : nullptr; }
    uint32_t elem_count() const { return resolved->ar ? resolved->ar->count : 0; }

    // Kind predicates, all on the resolved type.
    bool is_void() const { return resolved->kind == tpk_void; }
    bool is_integral() const { return resolved->kind == tpk_int; }
    bool is_fltpt() const { return resolved->kind == tpk_fltpt; }
    bool is_fxtpt() const { return resolved->kind == tpk_fxtpt; }
    bool is_complex() const { return resolved->kind == tpk_complex; }
    bool is_pointer() const { return resolved->kind == tpk_pointer; }
    bool is_ref() const { return resolved->kind == tpk_ref; }
    bool is_array() const { return resolved->kind == tpk_array; }
    bool is_ptm() const { return resolved->kind == tpk_ptm; }
    bool is_func() const { return resolved->kind == tpk_func; }
    bool is_enum() const { return resolved->kind == tpk_enum; }
    bool is_class() const { return resolved->kind == tpk_class; }
    bool is_struct() const { return resolved->kind == tpk_struct; }
    bool is_union() const { return resolved->kind == tpk_union; }
    bool is_csu() const { return resolved->kind >= tpk_class; }
    bool is_udt() const { return resolved->kind >= tpk_enum; }
    bool is_arithmetic() const;
    bool is_scalar() const;
    bool is_unsigned() const;
    bool is_signed() const;
    bool is_bool() const { return is_ikind(ik_bool); }
    bool is_schar() const { return is_ikind(ik_char); }
    bool is_uchar() const { return is_ikind(ik_uchar); }
    bool is_plain_char() const;
    bool is_wchar_t() const { return is_ikind(ik_wchar); }
    bool is_short() const { return is_ikind(ik_short); }
    bool is_ushort() const { return is_ikind(ik_ushort); }
    bool is_int() const { return is_ikind(ik_int); }
    bool is_uint() const { return is_ikind(ik_uint); }
    bool is_long() const { return is_ikind(ik_long); }
    bool is_ulong() const { return is_ikind(ik_ulong); }
    bool is_llong() const { return is_ikind(ik_llong); }
    bool is_ullong() const { return is_ikind(ik_ullong); }
    bool is_float() const { return is_fkind(fk_float); }
    bool is_double() const { return is_fkind(fk_double); }
    bool is_ldouble() const { return is_fkind(fk_ldouble); }
    bool is_cchar() const { return is_complex_of(ik_char); }
    bool is_cshort() const { return is_complex_of(ik_short); }
    bool is_cint() const { return is_complex_of(ik_int); }
    bool is_clong() const { return is_complex_of(ik_long); }
    bool is_cllong() const { return is_complex_of(ik_llong); }
    bool is_cfloat() const;
    bool is_cdouble() const;
    bool is_vector() const { return is_array() && resolved->ar->vector; }
    bool is_vpred() const { return is_csu() && resolved->csu->is_struct_vector; }
    bool has_flex_array_member(bool nested) const;

    // Element lists; a frozen type cannot grow.
    fkPARAM* add_param(TYPE* t);
    fkETOR* add_etor(const char* name, long long value);
    fkMDATA* add_mdata(fkMDATA* m);
    fkBCLASS* add_bclass(TYPE* t, int offset, unsigned char access, bool is_virtual);
    fkADECL* add_adecl(unsigned char access, uint32_t word);
    fkFFRIEND* add_ffriend(const char* name, TYPE* t);
    fkTYPE_ELEM* add_cfriend(TYPE* t);
    fkTYPE_ELEM* add_ntype(TYPE* t);
    fkSDATA* add_sdata(const char* name, TYPE* t, unsigned char access);
    fkMFUNC* add_mfunc(const char* name, TYPE* t, unsigned char access, int index,
                       const bool flags[4]);
    fkPARAM* add_tparam(TYPE* t);
    void check_nfrozen() const;

    // Diagnostics. print builds a C declarator; printstr returns a static
    // string overwritten by the next call.
    std::string print(bool expand = false, bool markup = false) const;
    const char* printstr(bool expand = false) const;
    void println() const;
    void dump() const;
    void dump_based_list() const;

    void set_equiv(TYPE* other);
    // Closing the marks of the file writer over what each type refers to.
    static void mark_refed_types(TYPE* root);
    static void mark_named_types(TYPE* root, bool write_all);

    // A forward walk over the whole tree of based types: a type, then
    // everything based on it, then its next sibling.
    class TYPE_TREE_ITERATOR {
    public:
        TYPE_TREE_ITERATOR() = default;
        explicit TYPE_TREE_ITERATOR(TYPE* root);
        TYPE* operator*() const { return current; }
        TYPE_TREE_ITERATOR& operator++();
        bool operator==(const TYPE_TREE_ITERATOR& o) const { return current == o.current; }
        bool operator!=(const TYPE_TREE_ITERATOR& o) const { return current != o.current; }

    private:
        struct POSITION {
            TYPE* type;
            BASED_TYPE_CONTAINER::iterator map_pos;
            size_t list_pos;
        };
        std::vector<POSITION> stack;
        TYPE* current = nullptr;
    };

private:
    void init_common(KIND k);
    bool is_ikind(IKIND k) const { return resolved->kind == tpk_int && resolved->ikind == k; }
    bool is_fkind(FKIND k) const { return resolved->kind == tpk_fltpt && resolved->fkind == k; }
    bool is_complex_of(IKIND k) const;
};

// The kind test of the truncation helpers: an integer or an enum.
#define TYPE_IS_INT(t) ((t)->is_integral() || (t)->is_enum())

enum TP_ERROR_CODE { TP_NO_ERROR = 0, TP_OBJECT_SIZE = 1 };
const char* error_code_name(TP_ERROR_CODE code);

class TYPE_PKG {
public:
    // Index of the basic types: the IKINDs 0 to 11, then float, double and
    // long double.
    static constexpr int bt_float = 12, bt_double = 13, bt_ldouble = 14, basic_count = 15;

    // Process-wide. root_type is the root of the first package made.
    static TYPE* root_type;
    static int tp_count;
    static int abi; // 1: long long and double are 64-bit aligned
    static unsigned wchar_t_size_in_bits;
    static bool seen_bitfield;
    static bool seen_enum_type;
    static bool seen_small_enums;
    static int cpu_version;
    static int large_code_model;
    static int byte_mode;
    static int flat_memory_model;
    static unsigned tot_types, tot_basics, tot_complexes, tot_ptrs, tot_quals, tot_tdefs,
        tot_arrays, tot_vectors, tot_funcs, tot_enums, tot_structs;

    int refcount = 1;
    TYPE* root = nullptr;
    TYPE* basic[basic_count] = {};
    TYPE* void_type = nullptr;
    TYPE* ptr_to_void = nullptr;
    std::map<std::string, TYPE*> vpreds;
    std::map<uint32_t, TYPE*> complexes;
    int tu = 0;
    uint32_t next_uid = 1;
    TP_ERROR_CODE error_code = TP_NO_ERROR;
    char error_text[4096] = {};
    // Offered each error; it handles one by setting error_code back to 0.
    void (*error_callback)(TYPE_PKG*) = nullptr;

    TYPE_PKG();
    ~TYPE_PKG();
    TYPE_PKG(const TYPE_PKG&) = delete;
    TYPE_PKG& operator=(const TYPE_PKG&) = delete;

    // Rewrites the basic sizes for the current abi and wchar_t size.
    void update_basic_types();

    TYPE* mk_void() { return void_type; }
    TYPE* mk_int(TYPE::IKIND k, bool explicit_sign = false);
    TYPE* mk_int(TYPE::IKIND k, bool explicit_sign, unsigned long long size, unsigned align,
                 bool boolean, bool ptm);
    TYPE* mk_boolean_int(TYPE* t);
    TYPE* mk_ptm_int(TYPE* t);
    TYPE* mk_fltpt(TYPE::FKIND k);
    TYPE* mk_fltpt(TYPE::FKIND k, unsigned long long size, unsigned align);
    TYPE* mk_fxtpt(TYPE* underlying, int binpt);
    TYPE* mk_fxtpt(TYPE* underlying, int binpt, unsigned long long size, unsigned align);
    TYPE* mk_complex(TYPE* part);
    TYPE* mk_complex(TYPE* part, unsigned long long size, unsigned align);
    TYPE* mk_ptr(TYPE* t);
    TYPE* mk_ptr(TYPE* t, unsigned long long size, unsigned align);
    TYPE* mk_ref(TYPE* t);
    TYPE* mk_ref(TYPE* t, unsigned long long size, unsigned align);
    TYPE* mk_ptm(TYPE* pointed, TYPE* cls, unsigned long long size, unsigned align);
    TYPE* mk_qual(TYPE* t, unsigned char q);
    TYPE* mk_qual(TYPE* t, unsigned char q, unsigned long long size, unsigned align);
    TYPE* mk_typedef(const char* name, bool cpp, TYPE* t, bool lowered = false);
    TYPE* mk_typedef(const char* name, bool cpp, TYPE* t, bool lowered, unsigned long long size,
                     unsigned align);
    // Complete, laid out as count elements of the element's stride.
    TYPE* mk_array(TYPE* elem, bool cpp, uint32_t count);
    // Incomplete: count, size and alignment 0.
    TYPE* mk_array(TYPE* elem, bool cpp);
    TYPE* mk_array(TYPE* elem, bool cpp, uint32_t count, unsigned long long size, unsigned align,
                   bool complete);
    TYPE* mk_vector(TYPE* elem, bool cpp, uint32_t count);
    TYPE* mk_vector(TYPE* elem, bool cpp, uint32_t count, unsigned long long size, unsigned align);
    // Unfrozen: the caller appends the parameters and calls type_frozen.
    TYPE* mk_func(TYPE* ret, bool cpp, bool proto, bool vararg, TYPE::CC_KIND cc = TYPE::cc_default,
                  unsigned long long size = 0, unsigned align = 0);
    // Tagged types, unfrozen: the caller completes and freezes them. A null
    // or empty name gets "$$fake<n>".
    TYPE* mk_enum(const char* name);
    TYPE* mk_enum(const char* name, bool cpp, TYPE* underlying, unsigned long long size,
                  unsigned align);
    TYPE* mk_struct(const char* name);
    TYPE* mk_struct(const char* name, bool cpp, bool complete, unsigned long long size,
                    unsigned align);
    TYPE* mk_class(const char* name);
    TYPE* mk_class(const char* name, bool cpp, bool complete, unsigned long long size,
                   unsigned align);
    TYPE* mk_union(const char* name);
    TYPE* mk_union(const char* name, bool cpp, bool complete, unsigned long long size,
                   unsigned align);
    TYPE* mk_unsigned(TYPE* t);
    TYPE* mk_signed(TYPE* t);
    TYPE* mk_vpred(TYPE* vector);

    TYPE* remove_known_qual(TYPE* t, unsigned char q);
    TYPE* replace_array_elem(TYPE* array, const TYPE* old_elem, TYPE* new_elem);
    TYPE* base_type(const TYPE* t);

    // Freezes the type and, for an array, function, enum or class, registers
    // it; t may come back as an existing equal type.
    void type_frozen(TYPE*& t);
    TYPE* register_type(TYPE* t, TYPE* base);

    // Lays out the data members of a struct, union or class as the ARM
    // procedure call standard does, assigning their offsets and the class's
    // size, alignment and completeness. With packed, every member is byte
    // aligned and bit fields are placed at the next free bit.
    void layout_csu(TYPE* csu, bool packed = false);

    TYPE* c_integral_promotions(TYPE* t);
    TYPE* c_usual_arith_conv(TYPE* a, TYPE* b);

    static bool get_container_offset_for_field(unsigned container_size, unsigned alignment,
                                               unsigned field_offset, unsigned field_width,
                                               unsigned* out);
    static bool is_legal_container_for_field(TYPE* candidate, TYPE* aggregate,
                                             unsigned field_offset, unsigned field_width,
                                             bool allow_overhang, unsigned* out);

    void set_error(TP_ERROR_CODE code, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    void print_stats(FILE* f);
    void dump_all();

    // Deletes every type of the package.
    void delete_type_tree();
    // Deletes t and, with recursive, everything based on it. Without it, a
    // type with based types is kept, or is fatal when must_delete.
    void delete_type_tree(TYPE* t, bool recursive, bool must_delete = false);

    // The file name interned for the life of the package.
    const char* intern_file_name(const char* name);
    TYPE* normalized_type_uncached(TYPE* t);
    // Index of the representative of each basic type after normalization.
    int normal_basic[basic_count] = {};

private:
    TYPE* create_type(TYPE::KIND k, unsigned long long size, unsigned align);
    TYPE* enter(TYPE* t, TYPE* base);
    TYPE* mk_tagged(TYPE::KIND k, const char* name, bool cpp, bool complete,
                    unsigned long long size, unsigned align);
    void normalize_basic_types();
    void db_stats(TYPE* t);
    unsigned fake_counter[4] = {};
    std::set<std::string> file_names;
    // Every type the package made, registered or not, for delete_type_tree.
    std::set<TYPE*> members;
    friend struct TYPE;
};

extern TYPE_PKG* tp;

// Ties the package to the file whose type section it will read.
void if_type_init(TYPE_PKG* pkg, I_FILE* file);
bool type_is_function(const TYPE* t);

// Comparison and merging.
bool exact_types(const TYPE* a, const TYPE* b);
bool compatible_types(TYPE* a, TYPE* b, bool strict);
bool equiv_mtypes(TYPE* a, TYPE* b);
bool merge_types(TYPE* a, TYPE* b);
TYPE* find_type(TYPE* t);
int find_equivalent_type(TYPE* t);
bool mdata_equal(fkMDATA* a, fkMDATA* b);
bool equal_etors(const fkETOR* a, const fkETOR* b);
bool equal_params(const fkPARAM* a, const fkPARAM* b);
bool is_same_sign(const TYPE* a, const TYPE* b);
bool type_is_tagless(const TYPE* t);
bool compare_type_names(const char* a, bool a_cpp, const char* b, bool b_cpp);
// The bare tag of a type name: the leading character of a non-1 abi skipped,
// decoded, and with strip_scope only the part behind the first "::".
std::string demangle_type_name(const char* name, bool strip_scope, bool* was_mangled);
// Decodes the qualified-name form "Q<n>_" followed by n length-prefixed parts
// into "A::B"; any other name comes back unchanged.
std::string decode_id(const char* name);
std::string mangle_overloaded_builtin_function_argtypes(TYPE* func);
// Member number n of a class, for FIELD nodes; null when there is none.
fkMDATA* find_mdataref(TYPE* csu, unsigned n);

// The free forms take the package from the type.
TYPE* c_integral_promotions(TYPE* t);
TYPE* c_usual_arith_conv(TYPE* a, TYPE* b);

// Type utilities on the global package tp.
void init_types();
TYPE* promoted_type(TYPE* t);
TYPE* combined_type(NODE* a, NODE* b);
TYPE* combined_type_for_types(TYPE* a, TYPE* b);
TYPE* next_wider_type(TYPE* t);
TYPE* type_for_PMCONV(TYPE* t);
TYPE* essential_type(TYPE* t);
TYPE* normalized_underlying_type(TYPE* t);
uint64_t type_stride(const TYPE* t);
INT65 type_mask(const TYPE* t);
INT65 int_type_max(const TYPE* t);
INT65 int_type_min(const TYPE* t);
TYPE* wide_enough_int_type(INT65 v);
// v as stored in an integer of t's size and sign; a pointer counts as int.
INT65 truncate_to_type(INT65 v, const TYPE* t);
TYPE* get_complex_type(TYPE* part);
// The type of `a op b` for an operator of the file format.
TYPE* operator_type_for_operand_types(int op, TYPE* a, TYPE* b);
bool csu_type_has_only_simple_scalar_members(TYPE* t);
// Parameter n, counted from 1, of a function or pointer-to-function type.
TYPE* type_of_nth_parameter(TYPE* func, int n);
bool bits_of_var_are_immutable(TYPE* t, uint64_t offset, uint64_t width, unsigned char inherited);
bool symbol_is_immutable(const SYMTAB* sym);
bool lvalue_is_immutable(const NODE* tree);
bool must_preserve_STDOT(const NODE* stdot);
bool is_field_member_of_type(const fkMDATA* field, TYPE* t);
bool type_is_contained_in_type(TYPE* inner, TYPE* outer);
bool types_contained_in_union(TYPE* a, TYPE* b);
bool is_type_component_of_type(TYPE* part, TYPE* whole);
bool type_may_alias_type(TYPE* a, TYPE* b);
bool type_may_contain_volatile(TYPE* t);

// Set by init_types.
extern unsigned max_scalar_alignment;
extern uint64_t pointer_type_stride;
extern uint64_t widest_type_stride;

// Overflow of integer arithmetic in a type, on 65-bit values.
bool sum_may_overflow(INT65 a, INT65 b, TYPE* t);
bool prod_may_overflow(INT65 a, INT65 b, TYPE* t);
// 0, -1 or 1 as a is equal to, below or above b.
int compare_SLLONG_values(INT65 a, INT65 b, TYPE* t);
