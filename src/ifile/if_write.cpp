// Creating and closing an output file: the header and the tail sections.
#include "ifile/if_impl.h"
#include "ifile/ifile.h"

#include <cstdlib>

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

void I_FILE::if_write_all_globals() {
    global_offset = static_cast<uint32_t>(if_tell());
    // The global symbols with their pragmas go here, ahead of the end marker.
    i_write_eof();
}
