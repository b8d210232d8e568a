// Records of the intermediate file built by hand, field by field, and whole
// files with their sections, so that reader tests do not rest on the writer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "file_bytes.h"

namespace record_builder {

using file_bytes::Bytes;

// One record body, field by field in file order.
struct Body {
    Bytes bytes;
    Body& u(uint32_t v) { return file_bytes::put_uleb(bytes, v), *this; }
    Body& s(int32_t v) { return file_bytes::put_sleb(bytes, v), *this; }
    Body& b(int v) { return bytes.push_back(static_cast<uint8_t>(v)), *this; }
    Body& u16(unsigned v) { return file_bytes::put_u16(bytes, v), *this; }
    Body& str(const char* t) { return file_bytes::put_str(bytes, t), *this; }
    // A position: file-name index (from 1), line and column.
    Body& psn(unsigned file, unsigned line, unsigned column) { return u(file).u(line).u(column); }
    Body& no_psn() { return b(0); }
};

inline Bytes record(int kind, const Body& body) {
    Bytes r{static_cast<uint8_t>(kind)};
    file_bytes::put_uleb(r, static_cast<uint32_t>(body.bytes.size()));
    r.insert(r.end(), body.bytes.begin(), body.bytes.end());
    return r;
}

inline Bytes cat(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& p : parts)
        all.insert(all.end(), p.begin(), p.end());
    return all;
}

// The records of the stream, one builder per kind. A position is given as a
// Body holding it, Body().no_psn() for none.
inline Body none() { return Body().no_psn(); }
inline Bytes begin_func(uint32_t global, Body where = none()) { return record(1, where.u(global)); }
inline Bytes end_func(Body where = none()) { return record(2, where); }
inline Bytes begin_block(Body where = none()) { return record(3, where); }
inline Bytes end_block(Body where = none()) { return record(4, where); }
inline Bytes end_args(Body where = none()) { return record(5, where); }
inline Bytes end_locals(Body where = none()) { return record(6, where); }
inline Bytes ir_ins(const Bytes& opaque, Body where = none()) {
    where.bytes.insert(where.bytes.end(), opaque.begin(), opaque.end());
    return record(34, where);
}
inline Bytes assembly(const char* text, Body where = none()) {
    Body b = Body().str(text);
    b.bytes.insert(b.bytes.end(), where.bytes.begin(), where.bytes.end());
    return record(36, b);
}
inline Bytes loop(uint32_t a, uint32_t b, uint32_t c, uint32_t d, uint32_t e, unsigned f) {
    return record(38, Body().u(a).u(b).u(c).u(d).u(e).u16(f));
}
inline Bytes label(uint32_t n) { return record(42, Body().u(n)); }
inline Bytes mbank(uint32_t a, uint32_t b, uint32_t c, uint32_t d, uint32_t e) {
    return record(45, Body().u(a).u(b).u(c).u(d).u(e));
}
inline Bytes comment(const char* text) { return record(47, Body().str(text)); }
inline Bytes dep_edge(uint32_t a, uint32_t b, uint32_t c) {
    return record(58, Body().u(a).u(b).u(c));
}
inline Bytes dep_vector(uint32_t id, int a, const std::vector<std::pair<int, int>>& pairs) {
    Body body = Body().u(id).b(a).b(static_cast<int>(pairs.size()));
    for (auto [x, y] : pairs)
        body.b(x).b(y);
    return record(59, body);
}
struct CATCH {
    const char* type_name;
    uint32_t value;
    bool flag;
};
inline Bytes eht_catch(const std::vector<CATCH>& groups) {
    Body body;
    for (const CATCH& c : groups)
        body.str(c.type_name).u(c.value).b(c.flag);
    return record(63, body);
}
inline Bytes func_info(int v) { return record(64, Body().b(v)); }
inline Bytes eht_entry(uint32_t first, uint32_t kind, uint32_t second, uint32_t third) {
    return record(91, Body().u(first).u(kind).u(second).u(third));
}
inline Bytes eht(uint32_t count) { return record(93, Body().u(count)); }
inline Bytes pragma(uint32_t kind, const std::vector<const char*>& args) {
    Body body = Body().u(kind).u(static_cast<uint32_t>(args.size()));
    for (const char* a : args)
        body.str(a);
    return record(94, body);
}
inline Bytes ldspec_induct(uint32_t id, uint32_t a, int32_t b, uint32_t type, int32_t scope,
                           uint32_t index) {
    return record(108, Body().u(id).b(0).u(a).s(b).u(type).s(scope).u(index));
}
inline Bytes ldspec_rand(uint32_t id, uint32_t a, uint32_t b, uint32_t type, int32_t scope,
                         uint32_t index) {
    return record(108, Body().u(id).b(1).u(a).u(b).u(type).s(scope).u(index));
}
inline Bytes ldspec_region(uint32_t id, uint32_t a) { return record(108, Body().u(id).b(2).u(a)); }
inline Bytes ir_begin(uint32_t a, int32_t b, int c, uint32_t d, Body where = none()) {
    Body body = Body().u(a).s(b).b(c).u(d);
    body.bytes.insert(body.bytes.end(), where.bytes.begin(), where.bytes.end());
    return record(123, body);
}
inline Bytes in_loop(uint32_t a, int32_t scope, int32_t index, int b) {
    return record(124, Body().u(a).s(scope).s(index).b(b));
}
inline Bytes ir_end(Body where = none()) { return record(125, where); }
inline Bytes source(const char* text) { return record(126, Body().str(text)); }

// A symbol record. Sizes and alignments are in bits.
struct SYM {
    const char* name = "x";
    uint32_t size = 32;
    uint32_t offset = 0;
    int sclass = 1;
    unsigned qual = 0;
    uint32_t type = 0;
    uint32_t stype = 0;
    uint32_t align = 32;
    int pragmas = 0;
    uint32_t file_offset = 0;
    uint32_t extra = 0;
    Body where = none();
};
inline Bytes symbol(const SYM& s) {
    Body body = Body().str(s.name).u(s.size).u(s.offset).b(s.sclass).u16(s.qual).u(s.type);
    body.u(s.stype).u(s.align).b(s.pragmas).u(s.file_offset).u(s.extra);
    body.bytes.insert(body.bytes.end(), s.where.bytes.begin(), s.where.bytes.end());
    return record(35, body);
}

// Expression nodes, one record of kind 101 each, in prefix order.
inline Bytes node(int op, uint32_t type, Body fields = Body()) {
    Body body = Body().b(op).u(type);
    body.bytes.insert(body.bytes.end(), fields.bytes.begin(), fields.bytes.end());
    return record(101, body);
}
inline Bytes icon(uint32_t type, int32_t v) { return node(4, type, Body().s(v)); }
inline Bytes name(uint32_t type, uint32_t scope, uint32_t index) {
    return node(2, type, Body().u(scope).u(index));
}
inline Bytes lbl(uint32_t n) { return node(1, 0, Body().u(n)); }
inline Bytes endinit() { return node(112, 0); }
// A statement: record 46 with its position, then the tree.
inline Bytes stmt(const Bytes& tree, Body where = none()) { return cat({record(46, where), tree}); }
inline Bytes init(uint32_t global, std::initializer_list<Bytes> trees) {
    Bytes all = record(105, Body().u(global));
    for (const Bytes& t : trees)
        all.insert(all.end(), t.begin(), t.end());
    return all;
}

// Type records of the type section, and the ids the files below use.
constexpr uint32_t INT_ID = 1;
constexpr uint32_t FUNC_ID = 2;
inline Bytes type_record(uint32_t id, int code, Body fields) {
    Body body = Body().u(id).b(code);
    body.bytes.insert(body.bytes.end(), fields.bytes.begin(), fields.bytes.end());
    return record(116, body);
}
// A 32-bit int, and a function of no parameters returning it.
inline Bytes basic_types() {
    return cat({type_record(INT_ID, 6, Body().b(0).u(32).u(32).b(0).b(0)),
                type_record(FUNC_ID, 20, Body().u(INT_ID).b(0).b(1).b(0).b(0)),
                type_record(FUNC_ID, 254, Body().b(0)), type_record(FUNC_ID, 255, Body().b(0))});
}

// A whole file: the main stream and the tail sections. Each section is
// written with its end marker, and the header points at it when present.
struct FILE_IMAGE {
    Bytes stream;
    Bytes options;
    Bytes inits;
    Bytes types = basic_types();
    std::vector<std::string> file_names;
    Bytes globals;
    bool has_inits = false;
    bool has_globals = false;

    Bytes header(const uint32_t offsets[5]) const {
        Body body = Body().str("!<icode>\n").u16(-73 & 0xFFFF).u16(400);
        for (int i = 0; i < 5; i++)
            file_bytes::put_u32(body.bytes, offsets[i]);
        body.str("test writer");
        file_bytes::put_u32(body.bytes, 0);
        return record(8, body);
    }

    Bytes build() const {
        uint32_t offsets[5] = {0, 0, 0, 0, 0};
        const size_t head = header(offsets).size();
        Bytes tail;
        auto section = [&](int slot, const Bytes& records) {
            offsets[slot] = static_cast<uint32_t>(head + stream.size() + 1 + tail.size());
            tail.insert(tail.end(), records.begin(), records.end());
            tail.push_back(255);
        };
        if (!options.empty())
            section(0, options);
        if (has_inits || !inits.empty())
            section(1, inits);
        section(2, types);
        if (!file_names.empty()) {
            Bytes names;
            for (const std::string& n : file_names)
                names = cat({names, source(n.c_str())});
            section(3, names);
        }
        if (has_globals || !globals.empty())
            section(4, globals);
        Bytes file = header(offsets);
        file.insert(file.end(), stream.begin(), stream.end());
        file.push_back(255);
        file.insert(file.end(), tail.begin(), tail.end());
        return file;
    }
};

} // namespace record_builder
