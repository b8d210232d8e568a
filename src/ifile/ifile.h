// The intermediate file: one container format read and written by one class.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>

class TYPE_PKG;
struct TYPE;
struct SYMTAB;
struct NODE;
struct PRAGMA;

constexpr int icode_cpu_id = 400;
constexpr int if_oldest_version = -86;
constexpr int if_written_version = -73;
constexpr int if_header_kind = 8;
constexpr int if_end_kind = 255;

// Record kinds of the file.
enum : int {
    IF_BEGIN_FUNC = 1,
    IF_END_FUNC = 2,
    IF_BEGIN_BLOCK = 3,
    IF_END_BLOCK = 4,
    IF_END_ARGS = 5,
    IF_END_LOCALS = 6,
    IF_IR_INS = 34,
    IF_SYMBOL = 35,
    IF_ASSEMBLY = 36,
    IF_LOOP = 38,
    IF_LABEL = 42,
    IF_MBANK = 45,
    IF_EXPR_STMT = 46,
    IF_COMMENT = 47,
    IF_DEP_EDGE = 58,
    IF_DEP_VECTOR = 59,
    IF_EHT_CATCH = 63,
    IF_FUNC_INFO = 64,
    IF_EHT_ENTRY = 91,
    IF_EHT = 93,
    IF_PRAGMA = 94,
    IF_EXPR_NODE = 101,
    IF_INIT = 105,
    IF_LDSPEC = 108,
    IF_OPTION_SET = 111,
    IF_TYPE = 116,
    IF_IR_BEGIN = 123,
    IF_INLOOP = 124,
    IF_IR_END = 125,
    IF_SOURCE_NAME = 126,
};

// An initializer: its trees in file order, the last one ENDINIT.
struct EXPR_LIST {
    NODE* tree;
    EXPR_LIST* next;
};

// One catch clause of an exception table entry of kind 2.
struct EHT_CATCH {
    char* type_name;
    uint32_t value;
    bool flag;
};

// An exception table entry with what follows it on file: the expression of a
// kind-1 entry, the catch clauses (`third` of them) of a kind-2 entry.
struct EHT_ENTRY {
    uint32_t first;
    uint32_t kind;
    uint32_t second;
    uint32_t third;
    NODE* expr;
    EHT_CATCH* catches;
};
// The entry kinds that have followers on file.
enum : uint32_t { EHT_CLEANUP = 1, EHT_CATCHES = 2 };
// Frees a table the client declined to keep, followers included.
void free_eht(EHT_ENTRY* table, unsigned count);
// Frees what follows one entry (its expression or catch clauses) and clears it.
void free_eht_followers(EHT_ENTRY& entry);

// A source position. Positions are allocated on reading and never freed.
struct PSN {
    const char* file;
    unsigned line;
    unsigned column;
};

// What the type reader knows of one type id of the file: the type, and the
// element lists its record announced that have not been read to their end.
struct TYPE_INFO {
    TYPE* type = nullptr;
    unsigned char open = 0;   // lists announced and not yet ended
    uint16_t announced = 0;   // one bit per list number
    uint16_t seen = 0;        // lists whose header has been read
    signed char current = -1; // the list between its header and trailer, or -1
};

// The optimizer is the only client: plain member functions, defined in the driver.
// Strings and arrays passed in are the reader's unless a callback says otherwise;
// positions, trees, pragmas and initializer lists become the client's.
class IF_CLIENT {
public:
    bool cl_magic(int version, int target_id);
    void cl_option_set(unsigned set_number, unsigned count, char** strings);
    // `size` and `align` are in bits, as on file.
    SYMTAB* cl_symbol_create(const char* name, TYPE* type, TYPE* stype, uint32_t size,
                             uint32_t align, uint32_t offset, int sclass, unsigned qual, PSN* psn,
                             uint32_t file_offset, uint32_t extra);
    void cl_pragma(SYMTAB* sym, PRAGMA* pragma);
    void cl_symbol_init(SYMTAB* sym, EXPR_LIST* list);
    void cl_symbol_def(SYMTAB* sym);
    void cl_expr(NODE* tree, PSN* psn);
    void cl_begin_func(SYMTAB* sym, PSN* psn);
    void cl_end_args(PSN* psn);
    void cl_end_locals(PSN* psn);
    void cl_begin_block(PSN* psn);
    void cl_end_block(PSN* psn);
    void cl_source(const char* text);
    void cl_label(unsigned number);
    void cl_inline_asm(const char* text, PSN* psn);
    void cl_comment(const char* text);
    void cl_merge_type_defs();
    void cl_preprocess_statics();
    void cl_func_info(int value);
    // True when the reader may free the table; the client keeps a copy.
    bool cl_func_eht(EHT_ENTRY* table, unsigned count);
    void cl_loop_def(uint32_t a, uint32_t b, uint32_t c, uint32_t d, uint32_t e, unsigned f);
    void cl_loop_header(uint32_t a, int32_t scope, int32_t index, unsigned b);
    void cl_dd_vector(uint32_t id, unsigned a, unsigned count, const unsigned char* pairs);
    void cl_dd_edge(uint32_t a, uint32_t b, uint32_t c);
    void cl_mbank(const uint32_t* values);
    void cl_ldspec_induct(uint32_t id, uint32_t a, int32_t b, TYPE* type, SYMTAB* sym);
    void cl_ldspec_rand(uint32_t id, uint32_t a, uint32_t b, TYPE* type, SYMTAB* sym);
    void cl_ldspec_region(uint32_t id, uint32_t a);
    void cl_ir_begin_func(uint32_t a, int32_t b, int c, uint32_t d, PSN* psn);
    void cl_ir_end_func(PSN* psn);
    void cl_ir_ins(PSN* psn, const unsigned char* bytes, uint32_t length);
    void cl_end_func(PSN* psn);

    // The optimizer's own lexical level: 0 at file level, 1 in a function
    // head, 2 in its body, one more in each open block.
    int lex = 0;
};

class I_FILE {
public:
    // Reader: null when the header is refused (wrong kind, magic, target or version).
    static I_FILE* if_open(FILE* stream, IF_CLIENT* client);
    // Writer of version -73; the header is written at once and again at close.
    static I_FILE* if_create(FILE* stream, TYPE_PKG* types, const char* producer);

    // Closes and deletes the object. A writer with keep false first writes the end
    // marker and the tail sections. Returns 0 on success, 1 on a stream error.
    int if_close(bool write_types, bool keep);

    // The whole walk of an input file: the sections, then the main stream.
    void if_read_file();
    void if_read_options();
    void if_read_option_set();
    void if_read_file_names();
    void if_read_globals();
    void if_read_all_init();
    // One record of kind 105 whose frame has been read: its trees to ENDINIT.
    void if_read_init();
    // Reads from offset (0: from here) to the end of the function's record.
    void if_read_func(long offset);
    // Passes over the rest of a function by record sizes.
    void if_skip_func();
    // One step of the main walk; the kind read, 255 at the end marker.
    int if_read_record();

    // The symbol tables of the reader, and of the writer for globals.
    void if_enter_local(SYMTAB* sym);
    // Expression trees, one record of kind 101 per node in prefix order.
    NODE* if_read_expr_node(bool read_header);
    NODE* if_read_expr_header(int& file_op);
    void if_write_expr(NODE* tree, const PSN* psn);
    void if_write_expr_node(NODE* tree);
    // The symbol a NAME record names: scope 0 is the global table, all ones
    // no symbol, anything else the current function's locals.
    SYMTAB* if_symbol_at(uint32_t scope, uint32_t index);

    // Global symbols: the reader's table by file index, and the writer's list
    // of what it will write (each position's file name goes in its table).
    void if_enter_global(SYMTAB* sym);
    void if_write_init(SYMTAB* sym);
    // A pragma record; at file level or as a statement of a function.
    void if_write_pragma(PRAGMA* p);
    // A symbol record with its pragma records, in the order they were read.
    void if_write_symbol(SYMTAB* sym);
    // Begin func: the symbol's file_offset becomes this record's offset in the
    // output, and local numbering starts again.
    void if_write_begin_func(SYMTAB* sym, const PSN* psn);
    // End func, begin and end block, end args, end locals; they move
    // `lex_level` as the reader does, so that locals get the reader's scopes.
    void if_write_control(int kind, const PSN* psn);
    void if_write_label(unsigned number);
    void if_write_comment(const char* text);
    void if_write_assembly(const char* text, const PSN* psn);
    void if_write_func_info(int value);
    // The code generator's loop records: a loop's numbers and trip counts,
    // the block that begins it with its control variable (or none), and the
    // dependence vectors and edges between its memory accesses.
    void if_write_loop(uint32_t number, uint32_t second, uint32_t min_trips, uint32_t max_trips,
                       uint32_t factor, unsigned flags);
    void if_write_inloop(uint32_t number, const SYMTAB* lcv, unsigned flags);
    // `pairs` holds `count` (kind, distance) byte pairs.
    void if_write_dep_vector(const unsigned char* pairs, uint32_t id, unsigned flags,
                             unsigned count);
    void if_write_dep_edge(uint32_t vector, uint32_t first, uint32_t second);
    // The exception table without the zero entry the reader added in front.
    void if_write_func_eht(const EHT_ENTRY* entries, unsigned count);
    void if_enter_option_set(unsigned set_number, unsigned count, char** strings);

    // Types. The type section is read before anything that refers to a type;
    // an unknown id is fatal ("invalid forward reference").
    void if_read_type_defs();
    void if_read_type(uint32_t size);
    TYPE* find_typeref(uint32_t id);
    // Reads a type id and looks it up; 0 gives null.
    TYPE* i_read_typeref();
    // Writes the id of t's merge representative, marking it for the type section.
    void i_write_typeref(TYPE* t);
    void if_reference_type(TYPE* t);
    void if_mark_global_types();
    // Merges each type read with an equal one of an earlier translation unit.
    void if_merge_type_defs();

    long if_tell();
    void if_seek(long offset);
    void if_flush();
    void if_copy_raw(long offset, long length, FILE* target);
    bool if_check_lengths();

    // Primitives.
    unsigned i_read_u8();
    int i_read_s8();
    bool i_read_bool();
    unsigned i_read_u16();
    int i_read_s16();
    uint32_t i_read_u32();
    int32_t i_read_s32();
    uint32_t i_read_uint();
    int32_t i_read_sint();
    char* i_read_string(unsigned n);
    void i_read_raw(void* buf, unsigned n);
    PSN* i_read_psn();
    // Reads a record frame; false at the end marker 255.
    bool i_read_header(int& kind, uint32_t& size);
    // Closes the frame: bytes the body reader left are skipped; a body read
    // past its frame is damage.
    void i_end_record();
    void i_read_skip(uint32_t n);

    void i_write_i8(int v);
    void i_write_bool(int v);
    void i_write_i16(long v);
    void i_write_i32(int64_t v);
    void i_write_uint(uint32_t v);
    void i_write_sint(int32_t v);
    void i_write_string(const char* s, unsigned n);
    void i_write_raw(const void* buf, unsigned n);
    void i_write_psn(const PSN* psn);
    void i_flush(int kind);
    void i_write_eof();

    unsigned i_enter_file_name(const char* name);
    const char* i_get_file_name(unsigned index) const;
    unsigned i_get_file_id(const char* name) const;

    struct OPTION_SET {
        unsigned set_number;
        unsigned count;
        char** strings;
        OPTION_SET* next;
    };

    char* producer = nullptr;
    FILE* stream = nullptr;
    uint32_t base = 0;
    uint32_t is_output = 0;
    IF_CLIENT* client = nullptr;
    int32_t version = 0;
    uint32_t option_offset = 0;
    uint32_t init_offset = 0;
    uint32_t type_offset = 0;
    uint32_t file_name_offset = 0;
    uint32_t global_offset = 0;
    TYPE_PKG* types = nullptr;
    OPTION_SET* options = nullptr;
    OPTION_SET* options_tail = nullptr;
    std::map<unsigned, TYPE_INFO> type_map;
    char** file_names = nullptr;
    unsigned file_count = 0;
    unsigned file_capacity = 0;
    uint32_t extra = 0;
    int lex_level = 0;
    SYMTAB** locals = nullptr;
    unsigned local_capacity = 0;
    unsigned local_count = 0;
    SYMTAB** globals = nullptr;
    unsigned global_capacity = 0;
    unsigned global_count = 0;
    unsigned char* wbuf = nullptr;
    size_t wbuf_size = 0;
    unsigned char* wptr = nullptr;

    // When set, each callback is announced first, with its arguments as
    // text: "cl_label 7". For the log and for tests of the walk.
    void (*trace)(const char* call) = nullptr;

private:
    I_FILE() = default;
    ~I_FILE();

    // Reading bounds. The primitives themselves trust the file; these let a damaged
    // file end the run with a message instead of looping on end of file.
    long file_size = 0;    // bytes in the input stream
    long record_end = 0;   // stream position where the last framed body ends
    bool soft_eof = false; // end of file reads as 0 and sets hit_eof, no abort
    bool hit_eof = false;

    bool if_read_magic();
    void if_dispatch_record(int kind, uint32_t size, long at);
    void if_read_source();
    void i_trace(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // A position whose file index must name an entry of the table.
    PSN* i_read_psn_checked();
    // A copy of a NUL-terminated string of the record; the caller frees it.
    char* i_read_string_copy();
    // Checks that a count of items of at least one byte each fits the frame.
    void i_check_count(uint32_t count);
    void i_need_record(int kind);
    SYMTAB* if_read_sym(unsigned& pragma_count);
    void if_read_symbol_def();
    void if_read_pragma(SYMTAB* sym);
    void if_read_label();
    void if_read_assembly();
    void if_read_comment();
    void if_read_func_info();
    void if_read_begin_func();
    void if_read_end_func();
    void if_read_begin_block();
    void if_read_end_block();
    void if_read_end_args();
    void if_read_end_locals();
    void if_read_loop();
    void if_read_inloop();
    void if_read_dep_vector();
    void if_read_dep_edge();
    void if_read_mbank();
    void if_read_ldspec();
    void if_read_eht();
    void if_read_eht_entry(EHT_ENTRY& entry);
    void if_read_ir_begin();
    void if_read_ir_end();
    void if_read_ir(uint32_t size);
    void if_read_stmt();
    NODE* if_read_stmt_tree();
    int i_getc();
    int i_past_end();
    long i_remaining();

    // The type record readers, one per record code (if_type.cpp).
    void i_check_type_record();
    TYPE_INFO& type_info_for(uint32_t id);
    TYPE_PKG* type_package();
    void enter_type(uint32_t id, TYPE* t, uint16_t lists);
    void if_read_void_type(uint32_t id);
    void if_read_integral_type(uint32_t id, int code);
    void if_read_float_type(uint32_t id, int code);
    void if_read_fixedpoint_type(uint32_t id);
    void if_read_complex_type(uint32_t id);
    void if_read_typedef(uint32_t id);
    void if_read_ref_type(uint32_t id);
    void if_read_addr_type(uint32_t id);
    void if_read_qual_type(uint32_t id);
    void if_read_array_type(uint32_t id);
    void if_read_ptm_type(uint32_t id);
    void if_read_func_type(uint32_t id);
    void if_read_enum_type(uint32_t id);
    void if_read_csu_short(uint32_t id, bool long_form);
    void if_read_list_header(uint32_t id);
    void if_read_list_trailer(uint32_t id);
    void if_read_param_elem(uint32_t id);
    void if_read_etor_elem(uint32_t id);
    void if_read_mdata_elem(uint32_t id);
    void if_read_bclass_elem(uint32_t id);
    void if_read_adecl_elem(uint32_t id);
    void if_read_ffriend_elem(uint32_t id);
    void if_read_cfriend_elem(uint32_t id);
    void if_read_ntype_elem(uint32_t id);
    void if_read_sdata_elem(uint32_t id);
    void if_read_mfunc_elem(uint32_t id);
    bool if_read_type_is_cpp(const char* name);
    TYPE* i_elem_owner(uint32_t id, int list);

    void if_write_magic();
    void if_write_all_options();
    void if_write_all_types(bool write_types);
    void if_write_all_files();
    void if_write_all_globals();
    void i_put(unsigned char byte);
    void i_reserve(size_t n);
};
