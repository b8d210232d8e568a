// The interpreter's internals: target memory, values, the translated program
// and the machine that runs it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct NODE;
struct TYPE;
struct SYMTAB;
struct PSN;
struct FUNINFO;

namespace run {

// Exit statuses of the interpreter itself; otherwise the program's own.
constexpr int EXIT_REFUSED = 1;
constexpr int EXIT_FAULT = 3;
// What qemu reports for a program that called abort().
constexpr int EXIT_ABORT = 134;

// How a value of a type is held. Every value is 64 bits: an integer sign- or
// zero-extended from its width by its type, a pointer zero-extended, the bits
// of a float or a double, or for a struct, union or array the address of its
// bytes.
enum class VK : uint8_t { Void, Int, F32, F64, Ptr, Agg };

struct VT {
    VK k = VK::Void;
    uint8_t bits = 0; // width of Int
    bool sign = false;
    bool boolean = false;
    uint32_t size = 0; // bytes in memory
    uint32_t align = 1;
};

VT value_type(TYPE* t);

// The bits of a float or a double held in a value, and back.
inline float as_f32(uint64_t v) {
    float f;
    const uint32_t w = static_cast<uint32_t>(v);
    memcpy(&f, &w, 4);
    return f;
}
inline double as_f64(uint64_t v) {
    double d;
    memcpy(&d, &v, 8);
    return d;
}
inline uint64_t bits_of(float f) {
    uint32_t w;
    memcpy(&w, &f, 4);
    return w;
}
inline uint64_t bits_of(double d) {
    uint64_t w;
    memcpy(&w, &d, 8);
    return w;
}
// The value v (of any 64-bit pattern) brought to the canonical form of type t.
uint64_t canon(uint64_t v, const VT& t);
uint64_t convert(uint64_t v, const VT& from, const VT& to);
bool truth(uint64_t v, const VT& t);

// Ends the run: the message (with the function and position that were
// running), then exit status 3. Never returns.
[[noreturn]] void fault(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
// Ends the run with the program's status, standard output flushed.
[[noreturn]] void finish(int status);

// The target's flat 32-bit address space. Every object (global, local,
// temporary, block of the heap) has a place of its own with a gap around it,
// so that an access outside an object, through a null pointer or into freed
// memory, is caught as a fault.
class Memory {
public:
    static constexpr uint32_t code_base = 0x00010000;
    static constexpr uint32_t global_base = 0x00100000;
    static constexpr uint32_t stack_base = 0x40000000;
    static constexpr uint32_t stack_limit = 64u << 20;
    static constexpr uint32_t heap_base = 0x80000000;

    Memory();
    // Globals are laid out once, before the run.
    uint32_t add_global(uint32_t size, uint32_t align, bool read_only);
    void seal_globals();
    void set_read_only(uint32_t base, bool ro);

    // Stack objects are freed in the reverse order of their making.
    uint32_t push(uint32_t size, uint32_t align);
    size_t stack_mark() const { return stack.size(); }
    void pop_to(size_t mark);

    uint32_t heap_alloc(uint32_t size);
    // False for an address that is not the start of a live heap block.
    bool heap_free(uint32_t addr);
    // The size of the live heap block that starts at addr, or -1.
    int64_t heap_size(uint32_t addr) const;

    // The host address of n bytes at addr, all within one object.
    uint8_t* at(uint32_t addr, uint32_t n, bool write) {
        if (addr - hit.base <= hit.size && n <= hit.size - (addr - hit.base) && (!write || !hit.ro))
            return hit.host + (addr - hit.base);
        return lookup(addr, n, write);
    }
    uint64_t load(uint32_t addr, uint32_t n) { return read_host(at(addr, n, false), n); }
    void store(uint32_t addr, uint32_t n, uint64_t v) { write_host(at(addr, n, true), n, v); }
    // The bytes of n bytes at addr within one global object, or null; ro
    // tells whether the object is read-only.
    uint8_t* global_host(uint32_t addr, uint32_t n, bool& ro) const;
    // The bytes of a live stack object, whose bounds the caller knows.
    uint8_t* stack_host(uint32_t addr) { return stack_bytes.get() + (addr - stack_base); }
    static uint64_t read_host(const uint8_t* p, uint32_t n) {
        // The host is little-endian, as the target.
        switch (n) {
        case 1:
            return *p;
        case 2: {
            uint16_t v;
            memcpy(&v, p, 2);
            return v;
        }
        case 4: {
            uint32_t v;
            memcpy(&v, p, 4);
            return v;
        }
        case 8: {
            uint64_t v;
            memcpy(&v, p, 8);
            return v;
        }
        default: {
            uint64_t v = 0;
            memcpy(&v, p, n);
            return v;
        }
        }
    }
    static void write_host(uint8_t* p, uint32_t n, uint64_t v) {
        switch (n) {
        case 1:
            *p = static_cast<uint8_t>(v);
            break;
        case 2: {
            const uint16_t w = static_cast<uint16_t>(v);
            memcpy(p, &w, 2);
            break;
        }
        case 4: {
            const uint32_t w = static_cast<uint32_t>(v);
            memcpy(p, &w, 4);
            break;
        }
        default:
            memcpy(p, &v, n);
            break;
        }
    }
    void copy(uint32_t to, uint32_t from, uint32_t n);
    // The NUL-terminated string at addr, read byte by byte within its object.
    std::string c_string(uint32_t addr, uint32_t limit = UINT32_MAX);

private:
    struct Obj {
        uint32_t base = 0;
        uint32_t size = 0;
        uint8_t* host = nullptr;
        bool ro = false;
    };
    uint8_t* lookup(uint32_t addr, uint32_t n, bool write);

    std::vector<Obj> globals;
    std::vector<uint8_t> global_bytes;
    uint32_t global_top = global_base;
    std::unique_ptr<uint8_t[]> stack_bytes;
    std::vector<Obj> stack;
    uint32_t stack_top = stack_base;
    std::map<uint32_t, std::unique_ptr<uint8_t[]>> heap_blocks;
    std::map<uint32_t, uint32_t> heap_sizes;
    uint32_t heap_top = heap_base;
    Obj hit;
};

struct XFunc;
struct XBlock;

// A tree translated for running: operands and every fact that evaluation
// would otherwise look up are resolved once.
struct XN {
    int op = 0;
    VT t;
    XN* a = nullptr;
    XN* b = nullptr;
    uint64_t imm = 0;
    // NAME: a global's address, or the number of a local's frame object.
    bool local = false;
    // NAME read or written whole at its own type: the bytes are known to
    // lie within the object (a global's are fixed; null for a local), and
    // a write is known to be allowed.
    bool direct = false;
    bool direct_write = false;
    uint8_t* host = nullptr;
    // Member access: byte offset of the member, or its bit place.
    bool bitfield = false;
    uint32_t bit_offset = 0;
    uint32_t bit_width = 0;
    // CALL: the arguments in order, and the direct callee or null.
    std::vector<XN*> args;
    XFunc* callee = nullptr;
    // IF, BRANCH, SWITCH: targets; SWITCH: the case values beside them.
    std::vector<XBlock*> targets;
    std::vector<uint64_t> cases;
    const NODE* src = nullptr;
};

struct XStmt {
    XN* tree;
    const PSN* psn;
};

struct XBlock {
    std::vector<XStmt> stmts;
    // Where a block without a terminator goes; null: the function returns.
    XBlock* fall = nullptr;
};

// A C library function the interpreter provides.
struct Machine;
using LibFn = uint64_t (*)(Machine& m, const std::vector<uint64_t>& args, uint32_t va);

struct XFunc {
    std::string name;
    uint32_t address = 0;
    FUNINFO* info = nullptr; // null for a library function
    LibFn lib = nullptr;
    size_t lib_args = 0;
    VT result;
    // Parameters: their frame objects and types, in order.
    std::vector<uint32_t> param_slots;
    std::vector<VT> param_types;
    bool vararg = false;
    // Number of declared parameters of the function type, for the split of
    // a call's arguments into fixed and variable ones.
    size_t fixed_params = 0;
    // Every parameter and local is an object of its own: alignment, size.
    std::vector<std::pair<uint32_t, uint32_t>> frame_objects;
    std::vector<std::unique_ptr<XBlock>> blocks;
    XBlock* entry = nullptr;
};

enum StatKind { ST_LOADS, ST_STORES, ST_CALLS, ST_BRANCHES, ST_COUNT };

struct Frame {
    XFunc* fn = nullptr;
    std::vector<uint32_t> object_base; // one per frame object
    uint32_t va_area = 0;
    uint32_t ret_slot = 0;
    const PSN* psn = nullptr;
};

struct Machine {
    Memory mem;
    std::vector<std::unique_ptr<XFunc>> funcs;
    std::map<uint32_t, XFunc*> by_address;
    std::vector<Frame*> frames;
    uint64_t op_count[256] = {};
    uint64_t stat[ST_COUNT] = {};
    uint64_t steps = 0;
    uint64_t max_steps = 1000000000ull;
    uint32_t stdout_address = 0;
    uint32_t stderr_address = 0;

    XFunc* function_at(uint32_t addr) const;
    // Calls fn with the values of args (of the types given), variable
    // arguments included; returns the result, or the address of a struct.
    uint64_t call(XFunc* fn, const std::vector<uint64_t>& args, const std::vector<VT>& types);
};

extern Machine* machine;

// Loading: translates every function of the file read, lays out globals with
// their initial data, and refuses what cannot be run. Returns false after a
// message naming what was refused.
bool load_program(Machine& m);
// Library data the program reaches by address: reserved with the globals,
// written once they have memory.
void reserve_library_data(Machine& m);
void write_library_data(Machine& m);
// The library function of that name, with the number of arguments it reads
// besides the variable ones; a null function when there is none.
struct LibEntry {
    LibFn fn = nullptr;
    size_t args = 0;
};
LibEntry find_library_function(const std::string& name);

uint64_t eval(XN* x);
void print_stats(FILE* out);

} // namespace run
