// The intermediate-file container: primitive encodings, the header, the record
// frame, the option and file-name sections, and damaged input.
#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "driver/options.h"
#include "file_bytes.h"
#include "ifile/ifile.h"

namespace {

const char* const invalid_record_message = "\nINTERNAL ERROR: Invalid I-code record, aborting\n";

using namespace file_bytes;

void put_record(Bytes& b, int kind, const Bytes& body) {
    b.push_back(kind);
    put_uleb(b, body.size());
    b.insert(b.end(), body.begin(), body.end());
}

struct HEADER {
    int version = -73;
    int target = 400;
    uint32_t offsets[5] = {0, 0, 0, 0, 0}; // option, init, type, file name, global
    const char* producer = "parser 1.0";
    bool extra_word = true;
    uint32_t extra = 0;
    const char* magic = "!<icode>\n";
};

Bytes header_bytes(const HEADER& h) {
    Bytes body;
    put_str(body, h.magic);
    put_u16(body, h.version & 0xFFFF);
    put_u16(body, h.target & 0xFFFF);
    for (uint32_t offset : h.offsets)
        put_u32(body, offset);
    put_str(body, h.producer);
    if (h.extra_word)
        put_u32(body, h.extra);
    Bytes b;
    put_record(b, 8, body);
    return b;
}

// A -73 header with the given offsets and producer "p": 42 bytes.
constexpr size_t small_header_size = 42;

Bytes bytes_of(const std::vector<int>& v) { return Bytes(v.begin(), v.end()); }

struct IFileTest : ::testing::Test {
    std::string dir;
    int serial = 0;
    IF_CLIENT client;

    void SetUp() override {
        char pattern[] = "/tmp/ifile-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        icode_optionlist.clear();
    }
    void TearDown() override {
        std::string command = "rm -rf '" + dir + "'";
        ASSERT_EQ(system(command.c_str()), 0);
    }

    std::string new_path() { return dir + "/f" + std::to_string(serial++); }

    std::string write_file(const Bytes& b) {
        std::string path = new_path();
        write_bytes_to(path, b);
        return path;
    }

    static Bytes read_file(const std::string& path) { return read_bytes_from(path); }

    // A reader on the given bytes; null when refused (the stream is closed then).
    I_FILE* open_bytes(const Bytes& b) {
        FILE* f = fopen(write_file(b).c_str(), "rb");
        I_FILE* r = I_FILE::if_open(f, &client);
        if (!r)
            fclose(f);
        return r;
    }

    I_FILE* create(std::string& path, const char* producer = "p") {
        path = new_path();
        FILE* f = fopen(path.c_str(), "w+b");
        EXPECT_NE(f, nullptr);
        return I_FILE::if_create(f, nullptr, producer);
    }

    // The bytes a writer primitive leaves in the record buffer.
    static Bytes encoded(I_FILE* w, const std::function<void()>& write) {
        w->wptr = w->wbuf;
        write();
        Bytes b(w->wbuf, w->wptr);
        w->wptr = w->wbuf;
        return b;
    }

    // Outcome of opening and walking a file in a child process, so that a
    // crash or a hang cannot take the test run with it.
    enum OUTCOME { READ = 0, FATAL = 1, REFUSED = 3, BROKEN = -1 };
    OUTCOME walk_in_child(const Bytes& b) {
        std::string path = write_file(b);
        std::string out = new_path();
        fflush(stdout);
        pid_t pid = fork();
        if (pid == 0) {
            alarm(5);
            int fd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            dup2(fd, STDOUT_FILENO);
            FILE* f = fopen(path.c_str(), "rb");
            I_FILE* r = I_FILE::if_open(f, &client);
            if (!r)
                _exit(REFUSED);
            r->if_read_file();
            _exit(r->if_close(false, false) == 0 ? READ : 4);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        if (!WIFEXITED(status))
            return BROKEN;
        int code = WEXITSTATUS(status);
        Bytes printed = read_file(out);
        std::string text(printed.begin(), printed.end());
        if (code == FATAL)
            return text == invalid_record_message ? FATAL : BROKEN;
        if ((code == READ || code == REFUSED) && text.empty())
            return static_cast<OUTCOME>(code);
        return BROKEN;
    }
};

// ---- Primitive encodings ---------------------------------------------------

using IFilePrimitives = IFileTest;

TEST_F(IFilePrimitives, Leb128Encodings) {
    std::string path;
    I_FILE* w = create(path);
    EXPECT_EQ(encoded(w, [&] { w->i_write_sint(-1); }), bytes_of({0x7F}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_sint(63); }), bytes_of({0x3F}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_sint(64); }), bytes_of({0xC0, 0x00}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_sint(-64); }), bytes_of({0x40}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_sint(-65); }), bytes_of({0xBF, 0x7F}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_sint(INT32_MIN); }),
              bytes_of({0x80, 0x80, 0x80, 0x80, 0x78}));

    EXPECT_EQ(encoded(w, [&] { w->i_write_uint(0); }), bytes_of({0x00}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_uint(0x7F); }), bytes_of({0x7F}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_uint(0x80); }), bytes_of({0x80, 0x01}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_uint(0xFFFFFFFF); }),
              bytes_of({0xFF, 0xFF, 0xFF, 0xFF, 0x0F}));
    EXPECT_EQ(w->if_close(false, true), 0);
}

TEST_F(IFilePrimitives, FixedWidthAndPositionEncodings) {
    std::string path;
    I_FILE* w = create(path);
    EXPECT_EQ(encoded(w, [&] { w->i_write_i16(-32768); }), bytes_of({0x00, 0x80}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_i16(65535); }), bytes_of({0xFF, 0xFF}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_i32(-2); }), bytes_of({0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_bool(5); }), bytes_of({0x05}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_string("ab", 0); }), bytes_of({'a', 'b', 0}));
    EXPECT_EQ(encoded(w, [&] { w->i_write_string("abcdef", 3); }), bytes_of({'a', 'b', 'c'}));

    EXPECT_EQ(encoded(w, [&] { w->i_write_psn(nullptr); }), bytes_of({0x00}));
    PSN nameless{nullptr, 3, 200};
    EXPECT_EQ(encoded(w, [&] { w->i_write_psn(&nameless); }), bytes_of({1, 3, 0xC8, 0x01}));
    EXPECT_STREQ(w->i_get_file_name(1), "NO_FILE");
    EXPECT_EQ(w->if_close(false, true), 0);
}

TEST_F(IFilePrimitives, ShortOutOfRangeIsFatal) {
    std::string path;
    I_FILE* w = create(path);
    // The message goes to standard output; the death test watches standard error.
    EXPECT_EXIT(
        {
            fflush(stdout);
            dup2(STDERR_FILENO, STDOUT_FILENO);
            w->i_write_i16(-32769);
        },
        ::testing::ExitedWithCode(1), "^>> Value exceeds size of short\n$");
    EXPECT_EXIT(
        {
            fflush(stdout);
            dup2(STDERR_FILENO, STDOUT_FILENO);
            w->i_write_i16(65536);
        },
        ::testing::ExitedWithCode(1), "^>> Value exceeds size of short\n$");
    EXPECT_EQ(w->if_close(false, true), 0);
}

TEST_F(IFilePrimitives, RecordBodyOf200BytesHasTwoByteSize) {
    std::string path;
    I_FILE* w = create(path);
    for (int i = 0; i < 200; i++)
        w->i_write_i8(i);
    w->i_flush(47);
    ASSERT_EQ(w->if_close(false, true), 0);

    Bytes b = read_file(path);
    ASSERT_EQ(b.size(), small_header_size + 3 + 200);
    EXPECT_EQ(b[small_header_size], 47);
    EXPECT_EQ(b[small_header_size + 1], 0xC8);
    EXPECT_EQ(b[small_header_size + 2], 0x01);
    for (int i = 0; i < 200; i++)
        ASSERT_EQ(b[small_header_size + 3 + i], i);
}

TEST_F(IFilePrimitives, ValuesRoundTripThroughAFile) {
    const uint32_t unsigned_values[] = {0, 1, 0x7F, 0x80, 0x3FFF, 0x4000, 0x12345678, 0xFFFFFFFF};
    const int32_t signed_values[] = {0,    1,     -1,        63,         64,        -64,      -65,
                                     8191, -8193, 123456789, -123456789, INT32_MAX, INT32_MIN};
    std::string path;
    I_FILE* w = create(path);
    for (uint32_t v : unsigned_values)
        w->i_write_uint(v);
    for (int32_t v : signed_values)
        w->i_write_sint(v);
    w->i_write_i8(-3);
    w->i_write_i16(-12345);
    w->i_write_i16(54321);
    w->i_write_i32(-7);
    w->i_write_bool(1);
    w->i_write_string("text", 0);
    w->i_write_string("counted", 7);
    PSN where{"a.c", 12, 34};
    w->i_write_psn(&where);
    w->i_write_psn(nullptr);
    w->i_flush(46);
    ASSERT_EQ(w->if_close(false, false), 0);

    FILE* f = fopen(path.c_str(), "rb");
    I_FILE* r = I_FILE::if_open(f, &client);
    ASSERT_NE(r, nullptr);
    r->if_read_file_names();
    int kind;
    uint32_t size;
    ASSERT_TRUE(r->i_read_header(kind, size));
    EXPECT_EQ(kind, 46);
    long body = r->if_tell();
    for (uint32_t v : unsigned_values)
        EXPECT_EQ(r->i_read_uint(), v);
    for (int32_t v : signed_values)
        EXPECT_EQ(r->i_read_sint(), v);
    EXPECT_EQ(r->i_read_s8(), -3);
    EXPECT_EQ(r->i_read_s16(), -12345);
    EXPECT_EQ(r->i_read_u16(), 54321u);
    EXPECT_EQ(r->i_read_s32(), -7);
    EXPECT_TRUE(r->i_read_bool());
    EXPECT_STREQ(r->i_read_string(0), "text");
    EXPECT_EQ(std::string(r->i_read_string(7), 7), "counted");
    PSN* p = r->i_read_psn();
    ASSERT_NE(p, nullptr);
    EXPECT_STREQ(p->file, "a.c");
    EXPECT_EQ(p->line, 12u);
    EXPECT_EQ(p->column, 34u);
    EXPECT_EQ(r->i_read_psn(), nullptr);
    EXPECT_EQ(r->if_tell() - body, static_cast<long>(size));
    EXPECT_FALSE(r->i_read_header(kind, size));
    EXPECT_EQ(kind, 255);
    free(p);
    EXPECT_EQ(r->if_close(false, false), 0);
}

TEST_F(IFilePrimitives, ShortSignedLeb128IsSignExtended) {
    // One-byte groups with bit 6 set are negative, without it positive.
    Bytes b = header_bytes(HEADER{});
    put_record(b, 47, bytes_of({0x40, 0x3F, 0xFF, 0x00}));
    b.push_back(255);
    I_FILE* r = open_bytes(b);
    ASSERT_NE(r, nullptr);
    int kind;
    uint32_t size;
    ASSERT_TRUE(r->i_read_header(kind, size));
    EXPECT_EQ(r->i_read_sint(), -64);
    EXPECT_EQ(r->i_read_sint(), 63);
    EXPECT_EQ(r->i_read_sint(), 127);
    EXPECT_EQ(r->if_close(false, false), 0);
}

// ---- Header ----------------------------------------------------------------

using IFileHeader = IFileTest;

TEST_F(IFileHeader, VersionRange) {
    for (int version : {-73, -80, -86}) {
        HEADER h;
        h.version = version;
        Bytes b = header_bytes(h);
        b.push_back(255);
        I_FILE* r = open_bytes(b);
        ASSERT_NE(r, nullptr) << version;
        EXPECT_EQ(r->version, version);
        EXPECT_EQ(r->if_close(false, false), 0);
    }
    for (int version : {-72, -87, 0, 73}) {
        HEADER h;
        h.version = version;
        h.extra_word = version >= -83;
        Bytes b = header_bytes(h);
        b.push_back(255);
        EXPECT_EQ(open_bytes(b), nullptr) << version;
    }
}

TEST_F(IFileHeader, WrongKindMagicOrTargetIsRefused) {
    Bytes good = header_bytes(HEADER{});
    good.push_back(255);

    Bytes kind = good;
    kind[0] = 7;
    EXPECT_EQ(open_bytes(kind), nullptr);

    // The magic is compared in all ten bytes, its terminator included.
    for (size_t i = 0; i < 10; i++) {
        Bytes magic = good;
        magic[2 + i] ^= 0x20;
        EXPECT_EQ(open_bytes(magic), nullptr) << i;
    }

    HEADER h;
    h.target = 401;
    Bytes target = header_bytes(h);
    target.push_back(255);
    EXPECT_EQ(open_bytes(target), nullptr);

    I_FILE* r = open_bytes(good);
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->if_close(false, false), 0);
}

TEST_F(IFileHeader, ExtraWordFromVersion83) {
    HEADER old;
    old.version = -84;
    old.extra_word = false;
    Bytes b = header_bytes(old);
    size_t old_size = b.size();
    b.push_back(255);
    I_FILE* r = open_bytes(b);
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->extra, 0u);
    EXPECT_EQ(r->if_tell(), static_cast<long>(old_size));
    r->if_read_file();
    EXPECT_EQ(r->if_close(false, false), 0);

    HEADER with;
    with.version = -83;
    with.extra = 0x12345678;
    b = header_bytes(with);
    EXPECT_EQ(b.size(), old_size + 4);
    b.push_back(255);
    r = open_bytes(b);
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->extra, 0x12345678u);
    EXPECT_EQ(r->if_tell(), static_cast<long>(old_size + 4));
    EXPECT_STREQ(r->producer, "parser 1.0");
    EXPECT_EQ(r->if_close(false, false), 0);
}

TEST_F(IFileHeader, OffsetPastEndIsRefused) {
    for (int which = 0; which < 5; which++) {
        HEADER h;
        Bytes b = header_bytes(h);
        h.offsets[which] = b.size() + 1; // the file is one byte longer than the header
        b = header_bytes(h);
        b.push_back(255);
        EXPECT_EQ(open_bytes(b), nullptr) << which;
        h.offsets[which] = b.size() - 1; // the end marker itself is a valid section
        b = header_bytes(h);
        b.push_back(255);
        I_FILE* r = open_bytes(b);
        ASSERT_NE(r, nullptr) << which;
        EXPECT_EQ(r->if_close(false, false), 0);
    }
}

// ---- Writer ----------------------------------------------------------------

using IFileWriter = IFileTest;

TEST_F(IFileWriter, HeaderAndEmptySections) {
    std::string path;
    I_FILE* w = create(path);
    ASSERT_EQ(w->if_close(false, false), 0);

    HEADER h;
    h.producer = "p";
    h.offsets[4] = small_header_size + 1; // globals: right behind the main stream's 255
    Bytes expected = header_bytes(h);
    ASSERT_EQ(expected.size(), small_header_size);
    expected.insert(expected.end(), {255, 255});
    // No option sets, types or file names: those sections are absent, offset 0.
    EXPECT_EQ(read_file(path), expected);
}

TEST_F(IFileWriter, KeepWritesNoTail) {
    std::string path;
    I_FILE* w = create(path);
    w->i_write_uint(1);
    w->i_flush(42);
    ASSERT_EQ(w->if_close(false, true), 0);
    Bytes b = read_file(path);
    EXPECT_EQ(b.size(), small_header_size + 3);
    EXPECT_EQ(b.back(), 1);
}

TEST_F(IFileWriter, FileNamesEqualAsTextShareAnIndex) {
    std::string path;
    I_FILE* w = create(path);
    char first[] = "a.c";
    char second[] = "a.c";
    ASSERT_NE(static_cast<void*>(first), static_cast<void*>(second));
    EXPECT_EQ(w->i_enter_file_name(first), 1u);
    EXPECT_EQ(w->i_enter_file_name(second), 1u);
    EXPECT_EQ(w->i_enter_file_name("b.h"), 2u);
    EXPECT_EQ(w->i_enter_file_name(w->i_get_file_name(2)), 2u);
    EXPECT_EQ(w->i_get_file_id("b.h"), 2u);
    EXPECT_EQ(w->i_get_file_id("c.c"), 0u);
    EXPECT_EQ(w->i_get_file_name(0), nullptr);
    EXPECT_EQ(w->i_get_file_name(3), nullptr);
    // The table grows past its first capacity without losing entries.
    for (int i = 0; i < 45; i++)
        EXPECT_EQ(w->i_enter_file_name(("n" + std::to_string(i)).c_str()), 3u + i);
    EXPECT_STREQ(w->i_get_file_name(1), "a.c");
    EXPECT_EQ(w->i_enter_file_name("n44"), 47u);
    ASSERT_EQ(w->if_close(false, false), 0);

    Bytes b = read_file(path);
    uint32_t names = b[2 + 10 + 4 + 12] | b[2 + 10 + 4 + 13] << 8;
    ASSERT_NE(names, 0u);
    ASSERT_LT(names + 5, b.size());
    EXPECT_EQ(Bytes(b.begin() + names, b.begin() + names + 5), bytes_of({126, 4, 'a', '.', 'c'}));
}

// ---- Round trip ------------------------------------------------------------

using IFileRoundTrip = IFileTest;

TEST_F(IFileRoundTrip, OptionSetsAndFileNames) {
    std::string path;
    I_FILE* w = create(path, "parser 2.0");
    const char* set0[] = {"-O2", "-g"};
    const char* set2[] = {"-x"};
    w->if_enter_option_set(0, 2, const_cast<char**>(set0));
    w->if_enter_option_set(5, 0, nullptr);
    w->if_enter_option_set(2, 1, const_cast<char**>(set2));
    char a1[] = "a.c";
    char a2[] = "a.c";
    PSN positions[] = {{a1, 1, 2}, {"b.h", 3, 4}, {a2, 5, 6}, {nullptr, 7, 8}};
    for (const PSN& p : positions) {
        w->i_write_psn(&p);
        w->i_flush(46);
    }
    w->i_write_string("main.c", 0);
    w->i_flush(IF_SOURCE_NAME);
    ASSERT_EQ(w->if_close(false, false), 0);

    FILE* f = fopen(path.c_str(), "rb");
    I_FILE* r = I_FILE::if_open(f, &client);
    ASSERT_NE(r, nullptr);
    EXPECT_STREQ(r->producer, "parser 2.0");
    EXPECT_EQ(r->version, -73);
    ASSERT_EQ(icode_optionlist.size(), 3u);
    EXPECT_EQ(icode_optionlist[0].set_number, 0u);
    ASSERT_EQ(icode_optionlist[0].count, 2u);
    EXPECT_STREQ(icode_optionlist[0].strings[0], "-O2");
    EXPECT_STREQ(icode_optionlist[0].strings[1], "-g");
    EXPECT_EQ(icode_optionlist[1].set_number, 5u);
    EXPECT_EQ(icode_optionlist[1].count, 0u);
    EXPECT_EQ(icode_optionlist[2].set_number, 2u);
    ASSERT_EQ(icode_optionlist[2].count, 1u);
    EXPECT_STREQ(icode_optionlist[2].strings[0], "-x");
    // Reading the options is an excursion: the walk starts at the first record.
    HEADER h;
    h.producer = "parser 2.0";
    EXPECT_EQ(r->if_tell(), static_cast<long>(header_bytes(h).size()));

    r->if_read_file();
    EXPECT_EQ(r->file_count, 3u);
    EXPECT_STREQ(r->i_get_file_name(1), "a.c");
    EXPECT_STREQ(r->i_get_file_name(2), "b.h");
    EXPECT_STREQ(r->i_get_file_name(3), "NO_FILE");
    EXPECT_EQ(r->i_get_file_name(4), nullptr);
    // The walk stops right behind the main stream's end marker.
    EXPECT_EQ(r->if_tell(), static_cast<long>(r->option_offset));
    EXPECT_EQ(r->if_close(false, false), 0);
}

// ---- Damaged input ---------------------------------------------------------

using IFileDamage = IFileTest;

TEST_F(IFileDamage, TruncatedWrittenFileIsRefused) {
    std::string path;
    I_FILE* w = create(path);
    const char* set[] = {"-O3"};
    w->if_enter_option_set(0, 1, const_cast<char**>(set));
    PSN p{"x.c", 9, 1};
    w->i_write_psn(&p);
    w->i_flush(46);
    ASSERT_EQ(w->if_close(false, false), 0);
    Bytes full = read_file(path);

    EXPECT_EQ(walk_in_child(full), READ);
    // The global section is the last byte, so every cut leaves an offset past the end.
    for (size_t cut = 0; cut < full.size(); cut++)
        EXPECT_EQ(walk_in_child(Bytes(full.begin(), full.begin() + cut)), REFUSED) << cut;
}

TEST_F(IFileDamage, TruncatedMainStreamIsFatal) {
    Bytes full = header_bytes(HEADER{});
    size_t header = full.size();
    Bytes comment;
    put_str(comment, "hello");
    put_record(full, 47, comment);
    Bytes source;
    put_str(source, "m.c");
    put_record(full, IF_SOURCE_NAME, source);
    Bytes wide(140, 7);
    wide[0] = 0; // a null position: the file has no names to point at
    put_record(full, 34, wide);
    full.push_back(255);

    EXPECT_EQ(walk_in_child(full), READ);
    for (size_t cut = 0; cut < full.size(); cut++) {
        OUTCOME expected = cut < header ? REFUSED : FATAL;
        EXPECT_EQ(walk_in_child(Bytes(full.begin(), full.begin() + cut)), expected) << cut;
    }
}

TEST_F(IFileDamage, TruncatedOptionSectionIsFatal) {
    HEADER h;
    size_t header = header_bytes(h).size();
    Bytes stream;
    put_record(stream, 42, bytes_of({5}));
    stream.push_back(255);
    h.offsets[0] = header + stream.size();
    Bytes full = header_bytes(h);
    full.insert(full.end(), stream.begin(), stream.end());
    Bytes set;
    put_uleb(set, 0);
    put_uleb(set, 2);
    put_str(set, "-O2");
    put_str(set, "-g");
    put_record(full, IF_OPTION_SET, set);
    full.push_back(255);

    EXPECT_EQ(walk_in_child(full), READ);
    for (size_t cut = 0; cut < full.size(); cut++) {
        OUTCOME expected = cut <= h.offsets[0] ? REFUSED : FATAL;
        EXPECT_EQ(walk_in_child(Bytes(full.begin(), full.begin() + cut)), expected) << cut;
    }
}

TEST_F(IFileDamage, MalformedFramesAreFatal) {
    Bytes endless_size = header_bytes(HEADER{});
    endless_size.insert(endless_size.end(), {47, 0x80, 0x80});
    EXPECT_EQ(walk_in_child(endless_size), FATAL);

    Bytes huge_body = header_bytes(HEADER{});
    huge_body.insert(huge_body.end(), {47, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F, 0, 255});
    EXPECT_EQ(walk_in_child(huge_body), FATAL);

    // A source name without its terminator must not run into the next record.
    Bytes unterminated = header_bytes(HEADER{});
    put_record(unterminated, IF_SOURCE_NAME, bytes_of({'a', 'b'}));
    put_record(unterminated, 47, bytes_of({'c', 0}));
    unterminated.push_back(255);
    EXPECT_EQ(walk_in_child(unterminated), FATAL);

    // An option count larger than the record could hold.
    HEADER h;
    h.offsets[0] = header_bytes(h).size() + 1;
    Bytes many = header_bytes(h);
    many.push_back(255);
    Bytes set;
    put_uleb(set, 0);
    put_uleb(set, 0xFFFFFFFF);
    put_str(set, "-g");
    put_record(many, IF_OPTION_SET, set);
    many.push_back(255);
    EXPECT_EQ(walk_in_child(many), FATAL);
}

// ---- Consistency walk and raw copy -----------------------------------------

using IFileCheckLengths = IFileTest;

TEST_F(IFileCheckLengths, LegalStreamPassesAndBadKindIsReported) {
    Bytes good = header_bytes(HEADER{});
    size_t header = good.size();
    put_record(good, 47, bytes_of({'h', 'i', 0}));
    put_record(good, 1, bytes_of({0, 3}));
    put_record(good, 126, bytes_of({'a', 0}));
    good.push_back(255);
    I_FILE* r = open_bytes(good);
    ASSERT_NE(r, nullptr);
    ::testing::internal::CaptureStdout();
    EXPECT_TRUE(r->if_check_lengths());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(r->if_tell(), static_cast<long>(header));
    EXPECT_EQ(r->if_close(false, false), 0);

    Bytes bad = header_bytes(HEADER{});
    put_record(bad, 47, bytes_of({'h', 'i', 0}));
    put_record(bad, 7, bytes_of({}));
    bad.push_back(255);
    r = open_bytes(bad);
    ASSERT_NE(r, nullptr);
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(r->if_check_lengths());
    std::string expected = ">>I-file error:@" + std::to_string(header + 5) + ",id=7,sz=0,prev [@" +
                           std::to_string(header) + ",id=47,sz=3]\n";
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), expected);
    EXPECT_EQ(r->if_tell(), static_cast<long>(header));
    EXPECT_EQ(r->if_close(false, false), 0);
}

using IFileCopyRaw = IFileTest;

TEST_F(IFileCopyRaw, CopiesExactlyTheStretch) {
    Bytes b = header_bytes(HEADER{});
    b.push_back(255);
    size_t data = b.size();
    for (int i = 0; i < 20000; i++)
        b.push_back((i * 7 + i / 256) & 0xFF);
    I_FILE* r = open_bytes(b);
    ASSERT_NE(r, nullptr);

    struct CASE {
        long offset, length;
        size_t expected;
    } cases[] = {
        {static_cast<long>(data) + 100, 10000, 10000}, // crosses block boundaries
        {static_cast<long>(data) + 5, 8192, 8192},     // exactly one block
        {static_cast<long>(data) + 3, 0, 0},           // nothing
        {static_cast<long>(data) + 1000, -1, 19000},   // to the end of the file
        {static_cast<long>(data) + 19990, 100, 10},    // stops at the end of the file
    };
    for (const CASE& c : cases) {
        std::string target_path = new_path();
        FILE* target = fopen(target_path.c_str(), "wb");
        r->if_copy_raw(c.offset, c.length, target);
        fclose(target);
        Bytes copied = read_file(target_path);
        EXPECT_EQ(copied, Bytes(b.begin() + c.offset, b.begin() + c.offset + c.expected))
            << c.offset << " " << c.length;
    }
    EXPECT_EQ(r->if_close(false, false), 0);
}

} // namespace
