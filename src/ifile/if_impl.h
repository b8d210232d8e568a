// Constants and fatal paths shared by the reader and the writer of the
// intermediate file.
#pragma once

#include <cstddef>

namespace ifile_impl {

constexpr size_t stream_buffer_size = 32768;
constexpr size_t record_buffer_step = 32768;
constexpr size_t string_buffer_size = 32768;
constexpr size_t copy_block_size = 8192;
constexpr unsigned file_table_step = 20;
constexpr unsigned magic_length = 10;
constexpr char magic[magic_length + 1] = "!<icode>\n";
// Files of this version and newer carry one more 32-bit word in the header.
constexpr int extra_word_version = -83;

// Each prints its message to standard output and ends the run with status 1.
[[noreturn]] void invalid_record();
[[noreturn]] void out_of_memory();
[[noreturn]] void fatal(const char* message);

// A malloc'd copy; running out of memory is fatal.
char* copy_string(const char* s);

} // namespace ifile_impl
