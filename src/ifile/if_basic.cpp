// Primitive encodings, record buffering and the file-name table.
#include "driver/diag.h"
#include "ifile/if_impl.h"
#include "ifile/ifile.h"

#include <cstdlib>
#include <cstring>

namespace ifile_impl {

void fatal(const char* message) {
    fputs(message, stdout);
    // The exit path may not flush stdio; the message must survive it.
    fflush(stdout);
    opt_exit(1);
}

void invalid_record() { fatal("\nINTERNAL ERROR: Invalid I-code record, aborting\n"); }

void out_of_memory() { fatal(">> out of memory\n"); }

char* copy_string(const char* s) {
    size_t n = strlen(s) + 1;
    char* copy = static_cast<char*>(malloc(n));
    if (!copy)
        out_of_memory();
    memcpy(copy, s, n);
    return copy;
}

} // namespace ifile_impl

using namespace ifile_impl;

I_FILE::~I_FILE() {
    free(producer);
    for (unsigned i = 1; i <= file_count; i++)
        free(file_names[i]);
    free(file_names);
    for (OPTION_SET* set = options; set;) {
        OPTION_SET* next = set->next;
        for (unsigned i = 0; i < set->count; i++)
            free(set->strings[i]);
        free(set->strings);
        delete set;
        set = next;
    }
    // The entries are values; clearing releases them.
    type_map.clear();
    free(locals);
    free(globals);
    free(wbuf);
}

long I_FILE::if_tell() { return ftell(stream) - static_cast<long>(base); }

void I_FILE::if_seek(long offset) { fseek(stream, static_cast<long>(base) + offset, SEEK_SET); }

void I_FILE::if_flush() { fflush(stream); }

// ---- Reading -------------------------------------------------------------

// Every byte of a record goes through here, so end of file is caught in one place.
int I_FILE::i_getc() {
    int c = getc(stream);
    return c == EOF ? i_past_end() : c;
}

// End of file inside a record: fatal while walking, a soft 0 while a header is
// being tried (so that every loop of the primitives ends and the open can refuse).
int I_FILE::i_past_end() {
    if (!soft_eof)
        invalid_record();
    hit_eof = true;
    return 0;
}

long I_FILE::i_remaining() {
    long pos = ftell(stream);
    return pos < 0 || pos > file_size ? 0 : file_size - pos;
}

unsigned I_FILE::i_read_u8() { return static_cast<unsigned>(i_getc()); }

int I_FILE::i_read_s8() { return static_cast<signed char>(i_getc()); }

bool I_FILE::i_read_bool() { return i_getc() != 0; }

unsigned I_FILE::i_read_u16() {
    unsigned lo = i_getc();
    return lo | static_cast<unsigned>(i_getc()) << 8;
}

int I_FILE::i_read_s16() { return static_cast<int16_t>(i_read_u16()); }

uint32_t I_FILE::i_read_u32() {
    uint32_t v = 0;
    for (int shift = 0; shift < 32; shift += 8)
        v |= static_cast<uint32_t>(i_getc()) << shift;
    return v;
}

int32_t I_FILE::i_read_s32() { return static_cast<int32_t>(i_read_u32()); }

uint32_t I_FILE::i_read_uint() {
    uint32_t v = 0;
    unsigned shift = 0;
    int b;
    do {
        b = i_getc();
        // Groups past 32 bits are dropped, as a plain 32-bit shift would.
        if (shift < 32) {
            v |= static_cast<uint32_t>(b & 0x7F) << shift;
            shift += 7;
        }
    } while (b & 0x80);
    return v;
}

int32_t I_FILE::i_read_sint() {
    uint32_t v = 0;
    unsigned shift = 0;
    int b;
    do {
        b = i_getc();
        if (shift < 32) {
            v |= static_cast<uint32_t>(b & 0x7F) << shift;
            shift += 7;
        }
    } while (b & 0x80);
    if (shift < 32 && (b & 0x40))
        v |= ~uint32_t(0) << shift;
    return static_cast<int32_t>(v);
}

// One buffer for all strings read: callers copy what they keep.
static char* string_buffer;
static size_t string_capacity;

static void reserve_string_buffer(size_t n) {
    if (n <= string_capacity)
        return;
    size_t capacity = string_capacity ? string_capacity : string_buffer_size;
    while (capacity < n)
        capacity *= 2;
    char* p = static_cast<char*>(realloc(string_buffer, capacity));
    if (!p)
        out_of_memory();
    string_buffer = p;
    string_capacity = capacity;
}

char* I_FILE::i_read_string(unsigned n) {
    reserve_string_buffer(string_buffer_size);
    if (n == 0) {
        size_t len = 0;
        int c;
        do {
            c = i_getc();
            if (len == string_capacity)
                reserve_string_buffer(len + 1);
            string_buffer[len++] = static_cast<char>(c);
        } while (c != 0);
        return string_buffer;
    }
    // A damaged count must not make us allocate for bytes that are not there.
    if (static_cast<long>(n) > i_remaining()) {
        i_past_end();
        string_buffer[0] = 0;
        return string_buffer;
    }
    reserve_string_buffer(n);
    i_read_raw(string_buffer, n);
    return string_buffer;
}

void I_FILE::i_read_raw(void* buf, unsigned n) {
    size_t got = fread(buf, 1, n, stream);
    if (got < n) {
        i_past_end();
        memset(static_cast<char*>(buf) + got, 0, n - got);
    }
}

PSN* I_FILE::i_read_psn() {
    unsigned index = i_read_uint();
    if (index == 0)
        return nullptr;
    PSN* psn = static_cast<PSN*>(malloc(sizeof(PSN)));
    if (!psn)
        out_of_memory();
    psn->file = i_get_file_name(index);
    psn->line = i_read_uint();
    psn->column = i_read_uint();
    return psn;
}

bool I_FILE::i_read_header(int& kind, uint32_t& size) {
    int c = getc(stream);
    if (c == EOF)
        invalid_record(); // the stream or section lacks its end marker
    kind = c;
    size = 0;
    if (c == if_end_kind)
        return false;
    size = i_read_uint();
    long body = ftell(stream);
    if (body < 0 || static_cast<long>(size) > file_size - body)
        invalid_record();
    record_end = body + static_cast<long>(size);
    return true;
}

void I_FILE::i_read_skip(uint32_t n) { fseek(stream, static_cast<long>(n), SEEK_CUR); }

// A body reader must not run into the next record; bytes it did not use are
// skipped, so that a newer writer may append fields.
void I_FILE::i_end_record() {
    long pos = ftell(stream);
    if (pos > record_end)
        invalid_record();
    if (pos < record_end)
        fseek(stream, record_end, SEEK_SET);
}

// ---- Writing -------------------------------------------------------------

void I_FILE::i_reserve(size_t n) {
    size_t used = static_cast<size_t>(wptr - wbuf);
    if (used + n <= wbuf_size)
        return;
    size_t size = wbuf_size;
    while (used + n > size)
        size += record_buffer_step;
    unsigned char* p = static_cast<unsigned char*>(realloc(wbuf, size));
    if (!p)
        fatal(">> ICODE Buffer size exceeded and realloc failed\n");
    wbuf = p;
    wbuf_size = size;
    wptr = p + used;
}

void I_FILE::i_put(unsigned char byte) {
    i_reserve(1);
    *wptr++ = byte;
}

void I_FILE::i_write_i8(int v) { i_put(static_cast<unsigned char>(v)); }

void I_FILE::i_write_bool(int v) { i_put(static_cast<unsigned char>(v)); }

void I_FILE::i_write_i16(long v) {
    if (v < -32768 || v > 65535)
        fatal(">> Value exceeds size of short\n");
    i_put(static_cast<unsigned char>(v));
    i_put(static_cast<unsigned char>(v >> 8));
}

void I_FILE::i_write_i32(int64_t v) {
    for (int shift = 0; shift < 32; shift += 8)
        i_put(static_cast<unsigned char>(v >> shift));
}

void I_FILE::i_write_uint(uint32_t v) {
    while (v >= 0x80) {
        i_put(static_cast<unsigned char>(v | 0x80));
        v >>= 7;
    }
    i_put(static_cast<unsigned char>(v));
}

void I_FILE::i_write_sint(int32_t v) {
    for (;;) {
        unsigned char b = v & 0x7F;
        v >>= 7; // arithmetic: the sign stays
        if ((v == 0 && !(b & 0x40)) || (v == -1 && (b & 0x40))) {
            i_put(b);
            return;
        }
        i_put(b | 0x80);
    }
}

void I_FILE::i_write_string(const char* s, unsigned n) {
    if (!s)
        s = "";
    size_t len = n ? n : strlen(s) + 1;
    i_reserve(len);
    memcpy(wptr, s, len);
    wptr += len;
}

void I_FILE::i_write_raw(const void* buf, unsigned n) { fwrite(buf, 1, n, stream); }

void I_FILE::i_write_psn(const PSN* psn) {
    if (!psn) {
        i_write_uint(0);
        return;
    }
    i_write_uint(i_enter_file_name(psn->file ? psn->file : "NO_FILE"));
    i_write_uint(psn->line);
    i_write_uint(psn->column);
}

// The size goes behind the body in the buffer, so that a record reaches the
// stream only once its length is known.
void I_FILE::i_flush(int kind) {
    size_t body = static_cast<size_t>(wptr - wbuf);
    i_write_uint(static_cast<uint32_t>(body));
    fputc(kind, stream);
    fwrite(wbuf + body, 1, static_cast<size_t>(wptr - wbuf) - body, stream);
    fwrite(wbuf, 1, body, stream);
    wptr = wbuf;
}

void I_FILE::i_write_eof() { fputc(if_end_kind, stream); }

// ---- File names ----------------------------------------------------------

// Slot 0 stays empty: index 0 means "no file".
unsigned I_FILE::i_enter_file_name(const char* name) {
    if (!name)
        return 0;
    if (is_output) {
        if (unsigned found = i_get_file_id(name))
            return found;
    }
    if (file_count + 1 >= file_capacity) {
        unsigned capacity = file_capacity + file_table_step;
        char** p = static_cast<char**>(realloc(file_names, capacity * sizeof(char*)));
        if (!p)
            out_of_memory();
        file_names = p;
        file_capacity = capacity;
        file_names[0] = nullptr;
    }
    file_names[++file_count] = copy_string(name);
    return file_count;
}

const char* I_FILE::i_get_file_name(unsigned index) const {
    return index == 0 || index > file_count ? nullptr : file_names[index];
}

unsigned I_FILE::i_get_file_id(const char* name) const {
    if (!name)
        return 0;
    for (unsigned i = 1; i <= file_count; i++)
        if (file_names[i] == name || strcmp(file_names[i], name) == 0)
            return i;
    return 0;
}
