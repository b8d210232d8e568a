// Opening an input file, its option and file-name sections and the main walk.
#include "ifile/if_impl.h"
#include "ifile/ifile.h"
#include "ir/node.h"

#include <cstdlib>
#include <cstring>

using namespace ifile_impl;

I_FILE* I_FILE::if_open(FILE* stream, IF_CLIENT* client) {
    I_FILE* file = new I_FILE;
    file->stream = stream;
    file->client = client;
    long start = ftell(stream);
    file->base = start < 0 ? 0 : static_cast<uint32_t>(start);
    setvbuf(stream, nullptr, _IOFBF, stream_buffer_size);
    if (!file->if_read_magic() || (client && !client->cl_magic(file->version, icode_cpu_id))) {
        delete file;
        return nullptr;
    }
    if_node_table_init();
    if (client)
        client->cl_source(file->producer);
    file->if_read_options();
    return file;
}

// Reads and checks the header at the start of the stream and leaves the
// position behind it. A damaged header is refused, never fatal: the caller
// owns the message.
bool I_FILE::if_read_magic() {
    if (fseek(stream, 0, SEEK_END) != 0)
        return false;
    file_size = ftell(stream);
    if (file_size < 0 || fseek(stream, 0, SEEK_SET) != 0)
        return false;

    struct SOFT {
        I_FILE* f;
        explicit SOFT(I_FILE* file) : f(file) { f->soft_eof = true, f->hit_eof = false; }
        ~SOFT() { f->soft_eof = false, f->hit_eof = false; }
    } soft(this);

    if (getc(stream) != if_header_kind)
        return false;
    uint32_t size = i_read_uint();
    long body = ftell(stream);
    if (hit_eof || body < 0 || static_cast<long>(size) > file_size - body)
        return false;
    long end = body + static_cast<long>(size);

    char text[magic_length];
    i_read_raw(text, magic_length);
    if (memcmp(text, magic, magic_length) != 0)
        return false;
    int file_version = i_read_s16();
    int target = i_read_s16();
    if (hit_eof || target != icode_cpu_id ||
        static_cast<unsigned>(file_version - if_oldest_version) >
            static_cast<unsigned>(if_written_version - if_oldest_version))
        return false;
    version = file_version;

    option_offset = i_read_u32();
    init_offset = i_read_u32();
    type_offset = i_read_u32();
    file_name_offset = i_read_u32();
    global_offset = i_read_u32();
    const char* name = i_read_string(0);
    if (hit_eof)
        return false;
    free(producer);
    producer = copy_string(name);
    extra = version >= extra_word_version ? i_read_u32() : 0;
    if (hit_eof || ftell(stream) > end)
        return false;

    // A section must at least hold its end marker inside the file.
    for (uint32_t offset :
         {option_offset, init_offset, type_offset, file_name_offset, global_offset})
        if (offset != 0 && static_cast<long>(base) + static_cast<long>(offset) >= file_size)
            return false;

    fseek(stream, end, SEEK_SET);
    return true;
}

void I_FILE::if_read_options() {
    if (option_offset == 0)
        return;
    long saved = if_tell();
    if_seek(option_offset);
    int kind;
    uint32_t size;
    while (i_read_header(kind, size)) {
        if (kind == IF_OPTION_SET)
            if_read_option_set();
        i_end_record(); // a record of another kind is passed over
    }
    if_seek(saved);
}

void I_FILE::if_read_option_set() {
    unsigned set_number = i_read_uint();
    unsigned count = i_read_uint();
    // Every string takes at least its terminator, so a larger count is damage.
    if (static_cast<long>(count) > record_end - ftell(stream))
        invalid_record();
    char** strings = static_cast<char**>(malloc((count ? count : 1) * sizeof(char*)));
    if (!strings)
        out_of_memory();
    for (unsigned i = 0; i < count; i++)
        strings[i] = copy_string(i_read_string(0));
    if (ftell(stream) > record_end)
        invalid_record();
    // The strings are the reader's: a client that keeps them takes copies.
    if (client)
        client->cl_option_set(set_number, count, strings);
    for (unsigned i = 0; i < count; i++)
        free(strings[i]);
    free(strings);
}

void I_FILE::if_read_file_names() {
    if (file_name_offset == 0)
        return;
    long saved = if_tell();
    if_seek(file_name_offset);
    int kind;
    uint32_t size;
    while (i_read_header(kind, size) && kind == IF_SOURCE_NAME) {
        i_enter_file_name(i_read_string(0));
        i_end_record();
    }
    if_seek(saved);
}

static bool is_stream_kind(int kind) {
    static const struct {
        int low, high;
    } legal[] = {{1, 6},   {33, 36}, {38, 38},   {42, 43},   {45, 47},   {58, 60},  {62, 64},
                 {91, 91}, {93, 94}, {101, 101}, {108, 108}, {116, 116}, {123, 126}};
    for (const auto& range : legal)
        if (kind >= range.low && kind <= range.high)
            return true;
    return false;
}

bool I_FILE::if_check_lengths() {
    struct FRAME {
        long at;
        int kind;
        uint32_t size;
    };
    long saved = ftell(stream);
    soft_eof = true;
    hit_eof = false;

    fseek(stream, 0, SEEK_SET);
    FRAME prev{if_tell(), getc(stream), 0};
    prev.size = i_read_uint();
    i_read_skip(prev.size);

    bool ok = true;
    for (;;) {
        FRAME cur{if_tell(), getc(stream), 0};
        if (cur.kind == if_end_kind)
            break;
        if (cur.kind != EOF)
            cur.size = i_read_uint();
        long body = ftell(stream);
        // End of file reads as kind -1, which is no legal kind either.
        if (!is_stream_kind(cur.kind) || hit_eof ||
            static_cast<long>(cur.size) > file_size - body) {
            printf(">>I-file error:@%d,id=%d,sz=%d,prev [@%d,id=%d,sz=%d]\n",
                   static_cast<int>(cur.at), cur.kind, static_cast<int>(cur.size),
                   static_cast<int>(prev.at), prev.kind, static_cast<int>(prev.size));
            ok = false;
            break;
        }
        i_read_skip(cur.size);
        prev = cur;
    }

    soft_eof = false;
    hit_eof = false;
    fseek(stream, saved, SEEK_SET);
    return ok;
}

void I_FILE::if_copy_raw(long offset, long length, FILE* target) {
    char block[copy_block_size];
    if_seek(offset);
    // A negative length copies whole blocks up to the end of the file.
    while (length != 0) {
        size_t want = length < 0 || length > static_cast<long>(copy_block_size)
                          ? copy_block_size
                          : static_cast<size_t>(length);
        size_t got = fread(block, 1, want, stream);
        fwrite(block, 1, got, target);
        if (got < want)
            break;
        if (length > 0)
            length -= static_cast<long>(got);
    }
}
