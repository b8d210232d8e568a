// Creating and closing an output file: the header and the tail sections.
#include "driver/diag.h"
#include "ifile/if_impl.h"
#include "ifile/ifile.h"
#include "ir/symtab.h"

#include <cstdlib>
#include <vector>

using namespace ifile_impl;

I_FILE* I_FILE::if_create(FILE* stream, TYPE_PKG* types, const char* producer) {
    I_FILE* file = new I_FILE;
    file->is_output = 1;
    file->stream = stream;
    file->base = 0;
    file->types = types;
    setvbuf(stream, nullptr, _IOFBF, stream_buffer_size);
    file->wbuf = static_cast<unsigned char*>(malloc(record_buffer_step));
    if (!file->wbuf)
        out_of_memory();
    file->wbuf_size = record_buffer_step;
    file->wptr = file->wbuf;
    file->version = if_written_version;
    file->producer = copy_string(producer ? producer : "");
    file->if_write_magic();
    return file;
}

// The offsets are fixed-width, so the header written again at close has the
// same length as this first one and fits in its place.
void I_FILE::if_write_magic() {
    if_seek(0);
    i_write_string(magic, 0);
    i_write_i16(version);
    i_write_i16(icode_cpu_id);
    i_write_i32(option_offset);
    i_write_i32(init_offset);
    i_write_i32(type_offset);
    i_write_i32(file_name_offset);
    i_write_i32(global_offset);
    i_write_string(producer, 0);
    if (version >= extra_word_version)
        i_write_i32(extra);
    i_flush(if_header_kind);
}

int I_FILE::if_close(bool write_types, bool keep) {
    bool failed;
    if (is_output) {
        if (!keep) {
            // Ends the main stream, or the initializer section when there is one.
            i_write_eof();
            if_write_all_options();
            if_write_all_types(write_types);
            if_write_all_files();
            if_write_all_globals();
            if_write_magic();
        }
        failed = fflush(stream) != 0 || ferror(stream);
    } else {
        failed = ferror(stream) != 0;
    }
    int closed = fclose(stream);
    delete this;
    return failed ? 1 : closed != 0;
}

void I_FILE::if_enter_option_set(unsigned set_number, unsigned count, char** strings) {
    OPTION_SET* set = new OPTION_SET{set_number, count, nullptr, nullptr};
    set->strings = static_cast<char**>(malloc((count ? count : 1) * sizeof(char*)));
    if (!set->strings)
        out_of_memory();
    for (unsigned i = 0; i < count; i++)
        set->strings[i] = copy_string(strings[i]);
    if (options_tail)
        options_tail->next = set;
    else
        options = set;
    options_tail = set;
}

void I_FILE::if_write_all_options() {
    if (!options) {
        option_offset = 0;
        return;
    }
    option_offset = static_cast<uint32_t>(if_tell());
    for (OPTION_SET* set = options; set; set = set->next) {
        i_write_uint(set->set_number);
        i_write_uint(set->count);
        for (unsigned i = 0; i < set->count; i++)
            i_write_string(set->strings[i], 0);
        i_flush(IF_OPTION_SET);
    }
    i_write_eof();
}

void I_FILE::if_write_all_files() {
    if (file_count == 0) {
        file_name_offset = 0;
        return;
    }
    file_name_offset = static_cast<uint32_t>(if_tell());
    for (unsigned i = 1; i <= file_count; i++) {
        i_write_string(file_names[i], 0);
        i_flush(IF_SOURCE_NAME);
    }
    i_write_eof();
}

// Every symbol given to if_enter_global, in that order: their places are the
// indexes that NAME records and begin func records of the output already use.
void I_FILE::if_write_all_globals() {
    global_offset = static_cast<uint32_t>(if_tell());
    for (unsigned i = 0; i < global_count; i++) {
        // A gap would shift every later index.
        OPTASSERT(globals[i] != nullptr);
        if_write_symbol(globals[i]);
    }
    i_write_eof();
}

void I_FILE::if_write_pragma(PRAGMA* p) {
    i_write_uint(p->kind);
    i_write_uint(static_cast<uint32_t>(p->nargs));
    for (int i = 0; i < p->nargs; i++)
        i_write_string(p->args[i] ? p->args[i] : "", 0);
    i_flush(IF_PRAGMA);
}

void I_FILE::if_write_symbol(SYMTAB* sym) {
    // The reader refuses a symbol without a type.
    OPTASSERT(sym->type != nullptr);
    // The client puts each pragma read in front of the list: walking it from
    // the end gives the file order back, so a file read and written again
    // keeps its bytes.
    std::vector<PRAGMA*> pragmas;
    for (PRAGMA* p = sym->pragmas; p; p = p->next)
        pragmas.push_back(p);
    OPTASSERT(pragmas.size() <= 255);
    i_write_string(sym->name ? sym->name : "", 0);
    // The table counts bytes, the file bits.
    i_write_uint(sym->size * 8);
    i_write_uint(sym->offset);
    i_write_i8(sym->sclass);
    i_write_i16(sym->qual);
    i_write_typeref(sym->type);
    i_write_typeref(sym->stype);
    i_write_uint(sym->align);
    i_write_i8(static_cast<int>(pragmas.size()));
    i_write_uint(sym->file_offset);
    i_write_uint(sym->extra);
    i_write_psn(sym->psn);
    i_flush(IF_SYMBOL);
    for (auto it = pragmas.rbegin(); it != pragmas.rend(); ++it)
        if_write_pragma(*it);
}

void I_FILE::if_write_begin_func(SYMTAB* sym, const PSN* psn) {
    OPTASSERT(sym->file_level == 0 && sym->file_index < global_count &&
              globals[sym->file_index] == sym);
    sym->file_offset = static_cast<uint32_t>(if_tell());
    i_write_psn(psn);
    i_write_uint(sym->file_index);
    i_flush(IF_BEGIN_FUNC);
    local_count = 0;
    lex_level = 1;
}

void I_FILE::if_write_control(int kind, const PSN* psn) {
    i_write_psn(psn);
    i_flush(kind);
    switch (kind) {
    case IF_END_FUNC:
        lex_level = 0;
        break;
    case IF_END_ARGS:
        lex_level = 2;
        break;
    case IF_BEGIN_BLOCK:
        lex_level++;
        break;
    case IF_END_BLOCK:
        lex_level--;
        break;
    case IF_END_LOCALS:
        break;
    default:
        // Only the records whose body is just a position come here.
        OPTASSERT(false);
    }
}

void I_FILE::if_write_label(unsigned number) {
    i_write_uint(number);
    i_flush(IF_LABEL);
}

void I_FILE::if_write_comment(const char* text) {
    i_write_string(text, 0);
    i_flush(IF_COMMENT);
}

void I_FILE::if_write_assembly(const char* text, const PSN* psn) {
    i_write_string(text, 0);
    i_write_psn(psn);
    i_flush(IF_ASSEMBLY);
}

void I_FILE::if_write_func_info(int value) {
    i_write_i8(value);
    i_flush(IF_FUNC_INFO);
}

// The first initializer ends the main stream: the initializer section starts
// right behind its end marker, and if_close ends the section in turn.
void I_FILE::if_write_init(SYMTAB* sym) {
    if (init_offset == 0) {
        i_write_eof();
        init_offset = static_cast<uint32_t>(if_tell());
    }
    i_write_uint(sym->file_index);
    i_flush(IF_INIT);
    for (EXPR_LIST* l = sym->init; l; l = l->next)
        if_write_expr_node(l->tree);
}

void I_FILE::if_write_loop(uint32_t number, uint32_t second, uint32_t min_trips,
                           uint32_t max_trips, uint32_t factor, unsigned flags) {
    for (uint32_t v : {number, second, min_trips, max_trips, factor})
        i_write_uint(v);
    i_write_i16(static_cast<long>(flags & 0xffff));
    i_flush(IF_LOOP);
}

void I_FILE::if_write_inloop(uint32_t number, const SYMTAB* lcv, unsigned flags) {
    i_write_uint(number);
    i_write_sint(lcv ? static_cast<int32_t>(lcv->file_level) : -1);
    i_write_sint(lcv ? static_cast<int32_t>(lcv->file_index) : -1);
    i_write_i8(static_cast<int>(flags & 0xff));
    i_flush(IF_INLOOP);
}

void I_FILE::if_write_dep_vector(const unsigned char* pairs, uint32_t id, unsigned flags,
                                 unsigned count) {
    i_write_uint(id);
    i_write_i8(static_cast<int>(flags & 0xff));
    i_write_i8(static_cast<int>(count & 0xff));
    for (unsigned i = 0; i < 2 * count; i++)
        i_write_i8(pairs[i]);
    i_flush(IF_DEP_VECTOR);
}

void I_FILE::if_write_dep_edge(uint32_t vector, uint32_t first, uint32_t second) {
    i_write_uint(vector);
    i_write_uint(first);
    i_write_uint(second);
    i_flush(IF_DEP_EDGE);
}

void I_FILE::if_write_func_eht(const EHT_ENTRY* entries, unsigned count) {
    // Entry 0 is the reader's own zero entry: the file never had it.
    const unsigned written = count > 0 ? count - 1 : 0;
    i_write_uint(written);
    i_flush(IF_EHT);
    for (unsigned i = 1; i < count; i++) {
        const EHT_ENTRY& e = entries[i];
        for (uint32_t v : {e.first, e.kind, e.second, e.third})
            i_write_uint(v);
        i_flush(IF_EHT_ENTRY);
        if (e.kind == EHT_CLEANUP) {
            // A cleanup entry without its expression could not be read back.
            OPTASSERT(e.expr);
            if_write_expr(e.expr, nullptr);
        } else if (e.kind == EHT_CATCHES) {
            for (uint32_t c = 0; c < e.third; c++) {
                const EHT_CATCH& k = e.catches[c];
                i_write_string(k.type_name ? k.type_name : "", 0);
                i_write_uint(k.value);
                i_write_bool(k.flag);
            }
            i_flush(IF_EHT_CATCH);
        }
    }
}
