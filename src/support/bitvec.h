// BITVEC: a dense set of small integers, one bit each. Users run their own
// word loops for union, intersection, tests and walks over `words`, so bits at
// or above `nbits` must stay zero wherever such a loop can see them.
#pragma once

#include <cstdint>
#include <cstdio>
#include <iosfwd>

// An allocation zone released as a whole. Null means the heap.
struct MZONE;

struct BITVEC {
    enum BV_TINIT { BV_EMPTY = 0, BV_FULL = 1, BV_UNINIT = 2 };

    unsigned nbits = 0;  // elements; bit i is bit i & 31 of word i >> 5
    unsigned nwords = 0; // words in use
    unsigned nalloc = 0; // words allocated
    MZONE* zone = nullptr;
    uint32_t* words = nullptr; // null when nothing is allocated

    BITVEC() = default;
    BITVEC(unsigned size, MZONE* zone, BV_TINIT init) { bv_init(size, zone, init); }
    // A copy lives on the heap whatever the source's zone.
    BITVEC(const BITVEC& other);
    BITVEC(BITVEC&& other) noexcept;
    // Keeps the target's zone.
    BITVEC& operator=(const BITVEC& other);
    BITVEC& operator=(BITVEC&& other) noexcept;
    ~BITVEC();

    // A size whose signed view is not positive makes an empty vector.
    void bv_init(unsigned size, MZONE* zone, BV_TINIT init);
    void bv_resize(unsigned size);
    void bv_add(unsigned i);
    void bv_copy_seg(const BITVEC& source, unsigned first, unsigned last);
    // this = a minus b, sized as a.
    void bv_diff(const BITVEC& a, const BITVEC& b);
    void bv_print(FILE* out = stdout) const;
    void bv_dump(FILE* out = stdout) const;
    // The hook for size faults, which the sets repair silently.
    void bv_warn(const char*) const {}
};

std::ostream& operator<<(std::ostream& os, const BITVEC& bv);
