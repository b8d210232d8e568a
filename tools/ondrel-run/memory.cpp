// The target's memory: objects in a 32-bit address space, each access
// checked against the one object it must fall in.
#include <algorithm>
#include <cstring>

#include "run.h"

namespace run {

namespace {

// Gap between two objects: an access that runs off the end of one does not
// land in the next.
constexpr uint32_t red_zone = 16;
// Fresh locals and heap blocks hold this rather than zeros, so that a lost
// initialization shows.
constexpr uint8_t fresh_fill = 0xA5;

uint32_t align_up(uint32_t v, uint32_t align) {
    if (align < 1)
        align = 1;
    return (v + align - 1) / align * align;
}

} // namespace

Memory::Memory() : stack_bytes(new uint8_t[stack_limit]) {}

uint32_t Memory::add_global(uint32_t size, uint32_t align, bool read_only) {
    global_top = align_up(global_top + red_zone, std::max<uint32_t>(align, 4));
    globals.push_back({global_top, size, nullptr, read_only});
    const uint32_t base = global_top;
    global_top += std::max<uint32_t>(size, 1);
    return base;
}

void Memory::seal_globals() {
    global_bytes.assign(global_top - global_base + red_zone, 0);
    for (Obj& o : globals)
        o.host = global_bytes.data() + (o.base - global_base);
}

void Memory::set_read_only(uint32_t base, bool ro) {
    auto it = std::lower_bound(globals.begin(), globals.end(), base,
                               [](const Obj& o, uint32_t a) { return o.base < a; });
    if (it != globals.end() && it->base == base)
        it->ro = ro;
    hit = Obj{};
}

uint8_t* Memory::global_host(uint32_t addr, uint32_t n, bool& ro) const {
    auto it = std::upper_bound(globals.begin(), globals.end(), addr,
                               [](uint32_t a, const Obj& o) { return a < o.base; });
    if (it == globals.begin())
        return nullptr;
    --it;
    if (addr - it->base > it->size || n > it->size - (addr - it->base) || !it->host)
        return nullptr;
    ro = it->ro;
    return it->host + (addr - it->base);
}

uint32_t Memory::push(uint32_t size, uint32_t align) {
    uint32_t base = align_up(stack_top + red_zone, std::max<uint32_t>(align, 4));
    const uint64_t end = uint64_t(base) + size + red_zone;
    if (end - stack_base > stack_limit)
        fault("stack overflow");
    uint8_t* host = stack_bytes.get() + (base - stack_base);
    memset(host, fresh_fill, size);
    stack.push_back({base, size, host, false});
    stack_top = base + std::max<uint32_t>(size, 1);
    return base;
}

void Memory::pop_to(size_t mark) {
    if (mark >= stack.size())
        return;
    stack.resize(mark);
    stack_top =
        stack.empty() ? stack_base : stack.back().base + std::max<uint32_t>(stack.back().size, 1);
    hit = Obj{};
}

uint32_t Memory::heap_alloc(uint32_t size) {
    const uint32_t base = align_up(heap_top + red_zone, 8);
    if (uint64_t(base) + size + red_zone > 0xF0000000ull)
        return 0;
    auto bytes = std::make_unique<uint8_t[]>(std::max<uint32_t>(size, 1));
    memset(bytes.get(), fresh_fill, size);
    heap_blocks[base] = std::move(bytes);
    heap_sizes[base] = size;
    heap_top = base + std::max<uint32_t>(size, 1);
    return base;
}

bool Memory::heap_free(uint32_t addr) {
    auto it = heap_blocks.find(addr);
    if (it == heap_blocks.end())
        return false;
    heap_blocks.erase(it);
    heap_sizes.erase(addr);
    hit = Obj{};
    return true;
}

int64_t Memory::heap_size(uint32_t addr) const {
    auto it = heap_sizes.find(addr);
    return it == heap_sizes.end() ? -1 : it->second;
}

uint8_t* Memory::lookup(uint32_t addr, uint32_t n, bool write) {
    const char* what = write ? "write" : "read";
    if (addr < code_base)
        fault("%s of %u bytes through a null pointer (address 0x%x)", what, n, addr);
    Obj found;
    bool ok = false;
    const auto in_sorted = [&](const std::vector<Obj>& objs) {
        auto it = std::upper_bound(objs.begin(), objs.end(), addr,
                                   [](uint32_t a, const Obj& o) { return a < o.base; });
        if (it == objs.begin())
            return;
        --it;
        if (addr - it->base < std::max<uint32_t>(it->size, 1)) {
            found = *it;
            ok = true;
        }
    };
    if (addr >= heap_base) {
        auto it = heap_sizes.upper_bound(addr);
        if (it != heap_sizes.begin()) {
            --it;
            if (addr - it->first < std::max<uint32_t>(it->second, 1)) {
                found = {it->first, it->second, heap_blocks[it->first].get(), false};
                ok = true;
            }
        }
    } else if (addr >= stack_base) {
        in_sorted(stack);
    } else if (addr >= global_base) {
        in_sorted(globals);
    }
    if (!ok)
        fault("%s of %u bytes at 0x%08x, outside every live object", what, n, addr);
    if (n > found.size - (addr - found.base))
        fault("%s of %u bytes at 0x%08x runs past the end of an object of %u bytes at 0x%08x", what,
              n, addr, found.size, found.base);
    if (write && found.ro)
        fault("write to the read-only object at 0x%08x", found.base);
    hit = found;
    return found.host + (addr - found.base);
}

void Memory::copy(uint32_t to, uint32_t from, uint32_t n) {
    if (n == 0)
        return;
    const uint8_t* src = at(from, n, false);
    memmove(at(to, n, true), src, n);
}

std::string Memory::c_string(uint32_t addr, uint32_t limit) {
    std::string s;
    for (uint32_t i = 0; i < limit; i++) {
        const uint8_t c = *at(addr + i, 1, false);
        if (!c)
            break;
        s.push_back(static_cast<char>(c));
    }
    return s;
}

} // namespace run
