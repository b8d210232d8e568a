// Intermediate-file encodings written out by hand, so that reader tests do not
// rest on the writer they are checking.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace file_bytes {

using Bytes = std::vector<uint8_t>;

inline void put_u16(Bytes& b, unsigned v) {
    b.push_back(v & 0xFF);
    b.push_back((v >> 8) & 0xFF);
}

inline void put_u32(Bytes& b, uint32_t v) {
    for (int i = 0; i < 4; i++)
        b.push_back((v >> (8 * i)) & 0xFF);
}

inline void put_uleb(Bytes& b, uint32_t v) {
    do {
        uint8_t byte = v & 0x7F;
        v >>= 7;
        b.push_back(v ? byte | 0x80 : byte);
    } while (v);
}

inline void put_sleb(Bytes& b, int32_t v) {
    for (;;) {
        uint8_t byte = v & 0x7F;
        v >>= 7;
        if ((v == 0 && !(byte & 0x40)) || (v == -1 && (byte & 0x40))) {
            b.push_back(byte);
            return;
        }
        b.push_back(byte | 0x80);
    }
}

inline void put_str(Bytes& b, const char* s) { b.insert(b.end(), s, s + strlen(s) + 1); }

// Whole files; a file that cannot be opened reads as empty and writes nothing,
// which the tests' own checks then catch.
inline void write_bytes_to(const std::string& path, const Bytes& b) {
    if (FILE* f = fopen(path.c_str(), "wb")) {
        fwrite(b.data(), 1, b.size(), f);
        fclose(f);
    }
}

inline Bytes read_bytes_from(const std::string& path) {
    Bytes b;
    if (FILE* f = fopen(path.c_str(), "rb")) {
        for (int c; (c = getc(f)) != EOF;)
            b.push_back(static_cast<uint8_t>(c));
        fclose(f);
    }
    return b;
}

} // namespace file_bytes
