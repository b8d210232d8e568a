// The record stream: the global and initializer sections, the main walk and
// one reader per record kind, each turning its record into a client call.
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ifile/if_impl.h"
#include "ifile/ifile.h"
#include "ir/node.h"
#include "ir/symtab.h"

using namespace ifile_impl;

namespace {

constexpr unsigned global_table_step = 25;
constexpr unsigned local_table_step = 20;

[[noreturn]] void invalid_eht() {
    fatal("\nINTERNAL ERROR: Invalid EHT record in I-code, aborting\n");
}

void enter_symbol(SYMTAB**& table, unsigned& capacity, unsigned& count, unsigned step,
                  SYMTAB* sym) {
    if (count == capacity) {
        void* p = realloc(table, (capacity + step) * sizeof(SYMTAB*));
        if (!p)
            out_of_memory();
        table = static_cast<SYMTAB**>(p);
        capacity += step;
    }
    table[count++] = sym;
}

} // namespace

void free_eht_followers(EHT_ENTRY& entry) {
    erase_tree(entry.expr);
    entry.expr = nullptr;
    if (entry.catches) {
        for (uint32_t c = 0; c < entry.third; c++)
            free(entry.catches[c].type_name);
        free(entry.catches);
        entry.catches = nullptr;
    }
}

void free_eht(EHT_ENTRY* table, unsigned count) {
    if (!table)
        return;
    for (unsigned i = 0; i < count; i++)
        free_eht_followers(table[i]);
    free(table);
}

void I_FILE::i_trace(const char* format, ...) {
    if (!trace)
        return;
    char text[512];
    va_list ap;
    va_start(ap, format);
    vsnprintf(text, sizeof text, format, ap);
    va_end(ap);
    trace(text);
}

PSN* I_FILE::i_read_psn_checked() {
    PSN* psn = i_read_psn();
    // Only an index past the table gives a position without a name.
    if (psn && !psn->file)
        invalid_record();
    return psn;
}

char* I_FILE::i_read_string_copy() {
    const char* text = i_read_string(0);
    if (ftell(stream) > record_end)
        invalid_record();
    return copy_string(text);
}

void I_FILE::i_check_count(uint32_t count) {
    if (static_cast<long>(count) > record_end - ftell(stream))
        invalid_record();
}

void I_FILE::i_need_record(int kind) {
    int got;
    uint32_t size;
    if (!i_read_header(got, size) || got != kind)
        invalid_record();
}

void I_FILE::if_enter_local(SYMTAB* sym) {
    if (sym) {
        sym->file_level = static_cast<uint32_t>(lex_level);
        sym->file_index = local_count;
    }
    enter_symbol(locals, local_capacity, local_count, local_table_step, sym);
}

void I_FILE::if_enter_global(SYMTAB* sym) {
    if (sym) {
        sym->file_level = 0;
        sym->file_index = global_count;
        // The writer learns every file name from the globals it is given.
        if (is_output && sym->psn && sym->psn->file)
            i_enter_file_name(sym->psn->file);
    }
    enter_symbol(globals, global_capacity, global_count, global_table_step, sym);
}

void I_FILE::if_read_file() {
    if_read_file_names();
    if_read_type_defs();
    if (client)
        client->cl_merge_type_defs();
    // Globals and initializers come before the main stream, so that anything
    // in it may name any global, whatever the file order.
    if_read_globals();
    if_read_all_init();
    if (client)
        client->cl_preprocess_statics();
    while (if_read_record() != if_end_kind) {
    }
}

void I_FILE::if_read_globals() {
    if (global_offset == 0)
        return;
    long saved = if_tell();
    if_seek(global_offset);
    int kind;
    uint32_t size;
    while (i_read_header(kind, size)) {
        if (kind != IF_SYMBOL)
            invalid_record();
        if_read_symbol_def();
    }
    if_seek(saved);
}

void I_FILE::if_read_all_init() {
    if (init_offset == 0)
        return;
    long saved = if_tell();
    if_seek(init_offset);
    int kind;
    uint32_t size;
    while (i_read_header(kind, size)) {
        if (kind != IF_INIT)
            invalid_record();
        if_read_init();
    }
    if_seek(saved);
}

void I_FILE::if_read_init() {
    SYMTAB* sym = if_symbol_at(0, i_read_uint());
    i_end_record();
    EXPR_LIST* head = nullptr;
    EXPR_LIST** tail = &head;
    for (;;) {
        NODE* tree = if_read_expr_node(true);
        EXPR_LIST* cell = static_cast<EXPR_LIST*>(malloc(sizeof(EXPR_LIST)));
        if (!cell)
            out_of_memory();
        *cell = {tree, nullptr};
        *tail = cell;
        tail = &cell->next;
        // ENDINIT ends the list and stays in it.
        if (tree && tree->op == ENDINIT)
            break;
    }
    i_trace("cl_symbol_init %s", sym ? sym->name : "-");
    if (client)
        client->cl_symbol_init(sym, head);
}

int I_FILE::if_read_record() {
    long at = if_tell();
    int kind;
    uint32_t size;
    if (!i_read_header(kind, size))
        return if_end_kind;
    if_dispatch_record(kind, size, at);
    return kind;
}

void I_FILE::if_read_func(long offset) {
    if (offset != 0)
        if_seek(offset);
    for (;;) {
        int kind = if_read_record();
        if (kind == IF_END_FUNC || kind == if_end_kind)
            return;
    }
}

void I_FILE::if_skip_func() {
    int kind;
    uint32_t size;
    while (i_read_header(kind, size)) {
        i_read_skip(size);
        if (kind == IF_END_FUNC)
            break;
    }
    lex_level = 0;
}

// The one place where a record of the main stream becomes a call on the client.
void I_FILE::if_dispatch_record(int kind, uint32_t size, long at) {
    switch (kind) {
    case IF_BEGIN_FUNC:
        if_read_begin_func();
        return;
    case IF_END_FUNC:
        if_read_end_func();
        return;
    case IF_BEGIN_BLOCK:
        if_read_begin_block();
        return;
    case IF_END_BLOCK:
        if_read_end_block();
        return;
    case IF_END_ARGS:
        if_read_end_args();
        return;
    case IF_END_LOCALS:
        if_read_end_locals();
        return;
    case IF_IR_INS:
        if_read_ir(size);
        return;
    case IF_SYMBOL:
        if_read_symbol_def();
        return;
    case IF_ASSEMBLY:
        if_read_assembly();
        return;
    case IF_LOOP:
        if_read_loop();
        return;
    case IF_LABEL:
        if_read_label();
        return;
    case IF_MBANK:
        if_read_mbank();
        return;
    case IF_EXPR_STMT:
        if_read_stmt();
        return;
    case IF_COMMENT:
        if_read_comment();
        return;
    case IF_DEP_EDGE:
        if_read_dep_edge();
        return;
    case IF_DEP_VECTOR:
        if_read_dep_vector();
        return;
    case IF_FUNC_INFO:
        if_read_func_info();
        return;
    case IF_EHT:
        if_read_eht();
        return;
    case IF_EHT_ENTRY:
    case IF_EHT_CATCH:
        // Only an exception table may have these.
        invalid_eht();
    case IF_PRAGMA:
        if_read_pragma(nullptr);
        return;
    case IF_EXPR_NODE:
        // A tree outside a statement has no use.
        erase_tree(if_read_expr_node(false));
        return;
    case IF_INIT:
        if_read_init();
        return;
    case IF_LDSPEC:
        if_read_ldspec();
        return;
    case IF_OPTION_SET:
        if_read_option_set();
        break;
    case IF_TYPE:
        if_read_type(size);
        break;
    case IF_IR_BEGIN:
        if_read_ir_begin();
        return;
    case IF_INLOOP:
        if_read_inloop();
        return;
    case IF_IR_END:
        if_read_ir_end();
        return;
    case IF_SOURCE_NAME:
        if_read_source();
        break;
    default:
        // Damage of one record need not end the run: its size still holds.
        printf("\n///ERROR @0x%lx\n\n", at);
        i_read_skip(size);
        return;
    }
    i_end_record();
}

void I_FILE::if_read_source() {
    const char* text = i_read_string(0);
    if (ftell(stream) > record_end)
        invalid_record();
    i_trace("cl_source %s", text);
    if (client)
        client->cl_source(text);
}

SYMTAB* I_FILE::if_read_sym(unsigned& pragma_count) {
    char* name = i_read_string_copy();
    uint32_t size = i_read_uint();
    uint32_t offset = i_read_uint();
    int sclass = static_cast<int>(i_read_u8());
    unsigned qual = i_read_u16();
    TYPE* type = i_read_typeref();
    TYPE* stype = i_read_typeref();
    // Every symbol has a type: its size is checked against it.
    if (!type)
        invalid_record();
    uint32_t align = i_read_uint();
    pragma_count = i_read_u8();
    uint32_t file_offset = i_read_uint();
    uint32_t extra = i_read_uint();
    PSN* psn = i_read_psn_checked();
    i_end_record();
    i_trace("cl_symbol_create %s size=%u align=%u offset=%u class=%d qual=0x%x "
            "file_offset=%u extra=%u line=%u",
            name, size, align, offset, sclass, qual, file_offset, extra, psn ? psn->line : 0);
    SYMTAB* sym = client ? client->cl_symbol_create(name, type, stype, size, align, offset, sclass,
                                                    qual, psn, file_offset, extra)
                         : nullptr;
    free(name);
    return sym;
}

// A symbol with its pragma records; entered in the table of its level, so
// that numbering follows record order.
void I_FILE::if_read_symbol_def() {
    unsigned pragma_count;
    SYMTAB* sym = if_read_sym(pragma_count);
    if (lex_level == 0)
        if_enter_global(sym);
    else
        if_enter_local(sym);
    for (unsigned i = 0; i < pragma_count; i++) {
        i_need_record(IF_PRAGMA);
        if_read_pragma(sym);
    }
    i_trace("cl_symbol_def %s", sym ? sym->name : "-");
    if (client && sym)
        client->cl_symbol_def(sym);
}

void I_FILE::if_read_pragma(SYMTAB* sym) {
    uint32_t kind = i_read_uint();
    uint32_t nargs = i_read_uint();
    if (kind > 255)
        invalid_record();
    i_check_count(nargs);
    char** args = nargs ? new char*[nargs] : nullptr;
    for (uint32_t i = 0; i < nargs; i++)
        args[i] = i_read_string_copy();
    i_end_record();
    PRAGMA* p = mk_pragma(static_cast<int>(kind), static_cast<int>(nargs), args, nullptr);
    i_trace("cl_pragma %s %u %u%s%s", sym ? sym->name : "-", kind, nargs, nargs ? " " : "",
            nargs ? args[0] : "");
    if (client)
        client->cl_pragma(sym, p);
    else
        erase_pragma(p);
}

void I_FILE::if_read_label() {
    uint32_t number = i_read_uint();
    i_end_record();
    i_trace("cl_label %u", number);
    if (client)
        client->cl_label(number);
}

void I_FILE::if_read_assembly() {
    char* text = i_read_string_copy();
    PSN* psn = i_read_psn_checked();
    i_end_record();
    i_trace("cl_inline_asm %s", text);
    if (client)
        client->cl_inline_asm(text, psn);
    free(text);
}

void I_FILE::if_read_comment() {
    char* text = i_read_string_copy();
    i_end_record();
    i_trace("cl_comment %s", text);
    if (client)
        client->cl_comment(text);
    free(text);
}

void I_FILE::if_read_func_info() {
    int value = i_read_s8();
    i_end_record();
    i_trace("cl_func_info %d", value);
    if (client)
        client->cl_func_info(value);
}

void I_FILE::if_read_begin_func() {
    PSN* psn = i_read_psn_checked();
    SYMTAB* sym = if_symbol_at(0, i_read_uint());
    i_end_record();
    // Local indexes count from 0 in each function.
    local_count = 0;
    lex_level = 1;
    i_trace("cl_begin_func %s", sym ? sym->name : "-");
    if (client)
        client->cl_begin_func(sym, psn);
}

void I_FILE::if_read_end_func() {
    PSN* psn = i_read_psn_checked();
    i_end_record();
    i_trace("cl_end_func");
    if (client)
        client->cl_end_func(psn);
    lex_level = 0;
}

void I_FILE::if_read_begin_block() {
    PSN* psn = i_read_psn_checked();
    i_end_record();
    lex_level++;
    i_trace("cl_begin_block %d", lex_level);
    if (client)
        client->cl_begin_block(psn);
}

void I_FILE::if_read_end_block() {
    PSN* psn = i_read_psn_checked();
    i_end_record();
    i_trace("cl_end_block %d", lex_level);
    if (client)
        client->cl_end_block(psn);
    lex_level--;
}

void I_FILE::if_read_end_args() {
    PSN* psn = i_read_psn_checked();
    i_end_record();
    lex_level = 2;
    i_trace("cl_end_args");
    if (client)
        client->cl_end_args(psn);
}

void I_FILE::if_read_end_locals() {
    PSN* psn = i_read_psn_checked();
    i_end_record();
    i_trace("cl_end_locals");
    if (client)
        client->cl_end_locals(psn);
}

// The writer leaves out the tree of an empty statement: the next record then
// is no expression node.
NODE* I_FILE::if_read_stmt_tree() {
    int c = getc(stream);
    if (c == EOF)
        invalid_record();
    ungetc(c, stream);
    return c == IF_EXPR_NODE ? if_read_expr_node(true) : nullptr;
}

void I_FILE::if_read_stmt() {
    PSN* psn = i_read_psn_checked();
    i_end_record();
    NODE* tree = if_read_stmt_tree();
    i_trace("cl_expr %s", tree ? node_operator_name[tree->op] : "-");
    if (client)
        client->cl_expr(tree, psn);
    else
        erase_tree(tree);
}

void I_FILE::if_read_loop() {
    uint32_t v[5];
    for (uint32_t& x : v)
        x = i_read_uint();
    unsigned f = i_read_u16();
    i_end_record();
    i_trace("cl_loop_def %u %u %u %u %u %u", v[0], v[1], v[2], v[3], v[4], f);
    if (client)
        client->cl_loop_def(v[0], v[1], v[2], v[3], v[4], f);
}

void I_FILE::if_read_inloop() {
    uint32_t a = i_read_uint();
    int32_t scope = i_read_sint();
    int32_t index = i_read_sint();
    unsigned b = i_read_u8();
    i_end_record();
    i_trace("cl_loop_header %u %d %d %u", a, scope, index, b);
    if (client)
        client->cl_loop_header(a, scope, index, b);
}

void I_FILE::if_read_dep_vector() {
    uint32_t id = i_read_uint();
    unsigned a = i_read_u8();
    unsigned count = i_read_u8();
    i_check_count(2 * count);
    unsigned char* pairs = static_cast<unsigned char*>(malloc(2 * count + 1));
    if (!pairs)
        out_of_memory();
    for (unsigned i = 0; i < 2 * count; i++)
        pairs[i] = static_cast<unsigned char>(i_read_u8());
    i_end_record();
    i_trace("cl_dd_vector %u %u %u%s", id, a, count,
            count ? (" " + std::to_string(pairs[0]) + " " +
                     std::to_string(static_cast<signed char>(pairs[2 * count - 1])))
                        .c_str()
                  : "");
    if (client)
        client->cl_dd_vector(id, a, count, pairs);
    free(pairs);
}

void I_FILE::if_read_dep_edge() {
    uint32_t a = i_read_uint();
    uint32_t b = i_read_uint();
    uint32_t c = i_read_uint();
    i_end_record();
    i_trace("cl_dd_edge %u %u %u", a, b, c);
    if (client)
        client->cl_dd_edge(a, b, c);
}

void I_FILE::if_read_mbank() {
    uint32_t v[5];
    for (uint32_t& x : v)
        x = i_read_uint();
    i_end_record();
    i_trace("cl_mbank %u %u %u %u %u", v[0], v[1], v[2], v[3], v[4]);
    if (client)
        client->cl_mbank(v);
}

void I_FILE::if_read_ldspec() {
    uint32_t id = i_read_uint();
    unsigned form = i_read_u8();
    if (form == 2) {
        uint32_t a = i_read_uint();
        i_end_record();
        i_trace("cl_ldspec_region %u %u", id, a);
        if (client)
            client->cl_ldspec_region(id, a);
        return;
    }
    if (form > 2)
        invalid_record();
    uint32_t a = i_read_uint();
    // The second number is signed in the inductive form.
    uint32_t b = form == 0 ? static_cast<uint32_t>(i_read_sint()) : i_read_uint();
    TYPE* type = i_read_typeref();
    int32_t scope = i_read_sint();
    uint32_t index = i_read_uint();
    i_end_record();
    SYMTAB* sym = scope == -1 ? nullptr : if_symbol_at(static_cast<uint32_t>(scope), index);
    if (form == 0) {
        int32_t sb = static_cast<int32_t>(b);
        i_trace("cl_ldspec_induct %u %u %d %s", id, a, sb, sym ? sym->name : "-");
        if (client)
            client->cl_ldspec_induct(id, a, sb, type, sym);
    } else {
        i_trace("cl_ldspec_rand %u %u %u %s", id, a, b, sym ? sym->name : "-");
        if (client)
            client->cl_ldspec_rand(id, a, b, type, sym);
    }
}

void I_FILE::if_read_ir_begin() {
    uint32_t a = i_read_uint();
    int32_t b = i_read_sint();
    int c = i_read_s8();
    uint32_t d = i_read_uint();
    PSN* psn = i_read_psn_checked();
    i_end_record();
    i_trace("cl_ir_begin_func %u %d %d %u", a, b, c, d);
    if (client)
        client->cl_ir_begin_func(a, b, c, d, psn);
}

void I_FILE::if_read_ir_end() {
    PSN* psn = i_read_psn_checked();
    i_end_record();
    i_trace("cl_ir_end_func");
    if (client)
        client->cl_ir_end_func(psn);
}

void I_FILE::if_read_ir(uint32_t) {
    PSN* psn = i_read_psn_checked();
    long rest = record_end - ftell(stream);
    if (rest < 0)
        invalid_record();
    uint32_t length = static_cast<uint32_t>(rest);
    unsigned char* bytes = static_cast<unsigned char*>(malloc(length + 1));
    if (!bytes)
        out_of_memory();
    if (length)
        i_read_raw(bytes, length);
    i_end_record();
    i_trace("cl_ir_ins %u", length);
    if (client)
        client->cl_ir_ins(psn, bytes, length);
    free(bytes);
}

void I_FILE::if_read_eht_entry(EHT_ENTRY& entry) {
    entry = {};
    entry.first = i_read_uint();
    entry.kind = i_read_uint();
    entry.second = i_read_uint();
    entry.third = i_read_uint();
    i_end_record();
    int kind;
    uint32_t size;
    if (entry.kind == EHT_CLEANUP) {
        if (!i_read_header(kind, size) || kind != IF_EXPR_STMT)
            invalid_eht();
        if (i_read_psn() != nullptr)
            invalid_eht();
        i_end_record();
        entry.expr = if_read_stmt_tree();
    } else if (entry.kind == EHT_CATCHES) {
        if (!i_read_header(kind, size) || kind != IF_EHT_CATCH)
            invalid_eht();
        // Each clause takes at least three bytes.
        i_check_count(entry.third);
        entry.catches = static_cast<EHT_CATCH*>(calloc(entry.third + 1, sizeof(EHT_CATCH)));
        if (!entry.catches)
            out_of_memory();
        for (uint32_t i = 0; i < entry.third; i++) {
            entry.catches[i].type_name = i_read_string_copy();
            entry.catches[i].value = i_read_uint();
            entry.catches[i].flag = i_read_bool();
        }
        i_end_record();
    }
}

void I_FILE::if_read_eht() {
    uint32_t count = i_read_uint();
    i_end_record();
    // Each entry is a record of at least three bytes.
    if (static_cast<long>(count) > file_size / 3)
        invalid_eht();
    EHT_ENTRY* table = static_cast<EHT_ENTRY*>(calloc(count + 1, sizeof(EHT_ENTRY)));
    if (!table)
        out_of_memory();
    for (uint32_t i = 0; i < count; i++) {
        int kind;
        uint32_t size;
        if (!i_read_header(kind, size) || kind != IF_EHT_ENTRY)
            invalid_eht();
        if_read_eht_entry(table[i]);
    }
    i_trace("cl_func_eht %u", count);
    if (!client || client->cl_func_eht(table, count))
        free_eht(table, count);
}
