// BITVEC and PBSET: sizes at word boundaries, growth inside and past the
// allocation, segment copies, differences, and the printed forms.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/bitvec.h"
#include "support/pbset.h"

namespace {

bool bit(const BITVEC& bv, unsigned i) { return (bv.words[i >> 5] >> (i & 31)) & 1; }

// Every bit of every word in use, the tail above nbits included.
std::string word_bits(const BITVEC& bv) {
    std::string s;
    for (unsigned i = 0; i < bv.nwords * 32; i++)
        s += (bv.words[i >> 5] >> (i & 31)) & 1 ? '1' : '0';
    return s;
}

// Ones at [lo, hi) and zeros elsewhere, over n bits.
std::string ones(unsigned n, unsigned lo, unsigned hi) {
    std::string s(n, '0');
    for (unsigned i = lo; i < hi && i < n; i++)
        s[i] = '1';
    return s;
}

std::string text(const BITVEC& bv) {
    std::ostringstream os;
    os << bv;
    return os.str();
}

// What a function writes to a FILE.
template <class F> std::string captured(F write) {
    char* buf = nullptr;
    size_t len = 0;
    FILE* f = open_memstream(&buf, &len);
    write(f);
    fclose(f);
    std::string s(buf, len);
    free(buf);
    return s;
}

BITVEC pattern(unsigned n, unsigned step) {
    BITVEC bv(n, nullptr, BITVEC::BV_EMPTY);
    for (unsigned i = 0; i < n; i += step)
        bv.bv_add(i);
    return bv;
}

TEST(BitvecInit, SizesAtWordBoundaries) {
    for (unsigned n : {1u, 31u, 32u, 33u, 64u, 65u, 100u}) {
        SCOPED_TRACE(n);
        BITVEC full(n, nullptr, BITVEC::BV_FULL);
        EXPECT_EQ(full.nbits, n);
        EXPECT_EQ(full.nwords, (n + 31) / 32);
        EXPECT_EQ(word_bits(full), ones(full.nwords * 32, 0, n));
        BITVEC empty(n, nullptr, BITVEC::BV_EMPTY);
        EXPECT_EQ(word_bits(empty), ones(empty.nwords * 32, 0, 0));
        BITVEC uninit(n, nullptr, BITVEC::BV_UNINIT);
        EXPECT_EQ(uninit.nwords, (n + 31) / 32);
        EXPECT_EQ(word_bits(uninit).substr(n), ones(uninit.nwords * 32 - n, 0, 0));
    }
    for (unsigned n : {0u, unsigned(-5), 0x80000000u}) {
        BITVEC bv(n, nullptr, BITVEC::BV_FULL);
        EXPECT_EQ(bv.nbits, 0u) << n;
        EXPECT_EQ(bv.words, nullptr) << n;
    }
}

TEST(BitvecResize, GrowingInsideTheAllocationClearsTheNewMembers) {
    BITVEC bv(100, nullptr, BITVEC::BV_FULL);
    uint32_t* words = bv.words;
    bv.bv_resize(40);
    EXPECT_EQ(bv.nwords, 2u);
    EXPECT_EQ(word_bits(bv), ones(64, 0, 40)) << "shrinking masks the new tail";
    // A word loop may have set bits above the size; the words behind still hold ones.
    bv.words[1] |= 0xff000000u;
    bv.bv_resize(100);
    EXPECT_EQ(bv.words, words);
    EXPECT_EQ(bv.nalloc, 4u);
    EXPECT_EQ(word_bits(bv), ones(128, 0, 40));
    bv.bv_resize(0);
    EXPECT_EQ(bv.nbits, 0u);
    EXPECT_EQ(bv.nwords, 0u);
    bv.bv_resize(70);
    EXPECT_EQ(bv.words, words);
    EXPECT_EQ(word_bits(bv), ones(96, 0, 0));
}

TEST(BitvecResize, GrowingPastTheAllocationFillsFreshWordsWithOnes) {
    BITVEC bv(40, nullptr, BITVEC::BV_FULL);
    bv.words[1] |= 0xffffff00u;
    bv.bv_resize(100);
    EXPECT_EQ(bv.nbits, 100u);
    EXPECT_EQ(bv.nwords, 4u);
    EXPECT_EQ(bv.nalloc, 4u);
    // Old members kept, the old last word masked before the copy, the fresh
    // words set, the new tail clear.
    EXPECT_EQ(word_bits(bv), ones(64, 0, 40) + ones(64, 0, 36));

    BITVEC empty(10, nullptr, BITVEC::BV_EMPTY);
    empty.bv_resize(70);
    EXPECT_EQ(word_bits(empty), ones(96, 32, 70));
}

TEST(BitvecResize, EqualAndNonPositiveSizes) {
    BITVEC bv = pattern(50, 3);
    std::string before = word_bits(bv);
    uint32_t* words = bv.words;
    bv.bv_resize(50);
    EXPECT_EQ(bv.words, words);
    EXPECT_EQ(word_bits(bv), before);
    bv.bv_resize(unsigned(-5));
    EXPECT_EQ(bv.nbits, 0u);
    EXPECT_EQ(bv.nwords, 0u);
}

TEST(BitvecAdd, InsideAndPastTheEnd) {
    BITVEC bv(10, nullptr, BITVEC::BV_EMPTY);
    bv.bv_add(3);
    EXPECT_EQ(text(bv), "[3]");
    // Past the size but inside the allocation: the new members are clear.
    bv.bv_add(20);
    EXPECT_EQ(bv.nbits, 21u);
    EXPECT_EQ(word_bits(bv), ones(32, 3, 4).replace(20, 1, "1"));
    // Past the allocation: the fresh words read as full.
    bv.bv_add(100);
    EXPECT_EQ(bv.nbits, 101u);
    EXPECT_TRUE(bit(bv, 100));
    EXPECT_EQ(text(bv), "[3, 20, 32-100]");

    BITVEC none;
    none.bv_add(0);
    EXPECT_EQ(none.nbits, 1u);
    EXPECT_EQ(text(none), "[0]");
}

// Every pair of boundaries, checked bit by bit against the rule.
TEST(BitvecCopySeg, BoundariesAgainstAModel) {
    const unsigned n = 100;
    BITVEC src = pattern(n, 3);
    unsigned points[] = {0, 1, 30, 31, 32, 33, 63, 64, 65, 95, 98, 99, 100, 150};
    for (unsigned first : points)
        for (unsigned last : points) {
            BITVEC dst(n, nullptr, BITVEC::BV_FULL);
            dst.words[0] ^= 0x0f0f0f0fu;
            BITVEC before = dst;
            dst.bv_copy_seg(src, first, last);
            SCOPED_TRACE(std::to_string(first) + ".." + std::to_string(last));
            ASSERT_EQ(dst.nbits, n);
            for (unsigned i = 0; i < n; i++) {
                bool copied = first <= last && i >= first && i <= std::min(last, n - 1);
                ASSERT_EQ(bit(dst, i), copied ? bit(src, i) : bit(before, i)) << i;
            }
        }
}

TEST(BitvecCopySeg, ClipsToTheSourceAndGrowsTheTarget) {
    BITVEC src(50, nullptr, BITVEC::BV_FULL);
    BITVEC small(10, nullptr, BITVEC::BV_EMPTY);
    small.bv_copy_seg(src, 5, 200);
    EXPECT_EQ(small.nbits, 50u) << "grown to the clipped end, not to 201";
    EXPECT_EQ(text(small), "[5-49]");
    BITVEC edge(10, nullptr, BITVEC::BV_EMPTY);
    edge.bv_copy_seg(src, 5, 50);
    EXPECT_EQ(edge.nbits, 50u) << "the last is the source's size minus one";

    BITVEC dst(10, nullptr, BITVEC::BV_EMPTY);
    dst.bv_copy_seg(src, 0, UINT_MAX);
    EXPECT_EQ(text(dst), "[]");
    dst.bv_copy_seg(src, 7, 6);
    EXPECT_EQ(text(dst), "[]");
    dst.bv_copy_seg(src, 60, 70);
    EXPECT_EQ(dst.nbits, 10u) << "the whole segment is past the source";
    EXPECT_EQ(text(dst), "[]");
}

TEST(BitvecDiff, DifferentSizes) {
    BITVEC a = pattern(100, 3);
    BITVEC b = pattern(40, 2);
    for (BITVEC::BV_TINIT init : {BITVEC::BV_EMPTY, BITVEC::BV_FULL}) {
        BITVEC r(200, nullptr, init);
        r.bv_diff(a, b);
        EXPECT_EQ(r.nbits, 100u);
        for (unsigned i = 0; i < 100; i++)
            ASSERT_EQ(bit(r, i), i % 3 == 0 && (i >= 40 || i % 2 == 1)) << i;
        EXPECT_EQ(word_bits(r).substr(100), std::string(28, '0'));
    }

    // A larger b counts only up to a's size; a's stray tail bits are cleared.
    BITVEC small(40, nullptr, BITVEC::BV_FULL);
    small.words[1] |= 0xffff0000u;
    BITVEC big = pattern(100, 4);
    BITVEC s;
    s.bv_diff(small, big);
    EXPECT_EQ(s.nbits, 40u);
    EXPECT_EQ(word_bits(s), [] {
        std::string t = ones(64, 0, 40);
        for (unsigned i = 0; i < 40; i += 4)
            t[i] = '0';
        return t;
    }());
}

TEST(BitvecDiff, EitherOperandMayBeTheTarget) {
    BITVEC a = pattern(100, 3);
    BITVEC b = pattern(40, 2);
    BITVEC expect;
    expect.bv_diff(a, b);

    BITVEC x = a;
    x.bv_diff(x, b);
    EXPECT_EQ(word_bits(x), word_bits(expect));

    BITVEC y = b;
    y.bv_diff(a, y);
    EXPECT_EQ(y.nbits, 100u);
    EXPECT_EQ(word_bits(y), word_bits(expect));
}

TEST(BitvecCopy, AssignmentAndCopiesAreIndependent) {
    BITVEC a = pattern(70, 5);
    BITVEC copy(a);
    copy.bv_add(1);
    EXPECT_FALSE(bit(a, 1));
    EXPECT_EQ(copy.zone, nullptr);

    BITVEC big(300, nullptr, BITVEC::BV_FULL);
    uint32_t* words = big.words;
    big = a;
    EXPECT_EQ(big.words, words) << "a large enough target keeps its array";
    EXPECT_EQ(big.nbits, 70u);
    EXPECT_EQ(word_bits(big), word_bits(a));

    BITVEC small(3, nullptr, BITVEC::BV_EMPTY);
    small = a;
    EXPECT_EQ(word_bits(small), word_bits(a));
    small = small;
    EXPECT_EQ(word_bits(small), word_bits(a));

    BITVEC moved(std::move(small));
    EXPECT_EQ(word_bits(moved), word_bits(a));
    EXPECT_EQ(small.words, nullptr);
}

TEST(BitvecPrint, RangesAndDump) {
    BITVEC bv(100, nullptr, BITVEC::BV_EMPTY);
    for (unsigned i : {0u, 1u, 2u, 3u, 7u, 9u, 10u, 31u, 32u, 99u})
        bv.bv_add(i);
    EXPECT_EQ(text(bv), "[0-3, 7, 9-10, 31-32, 99]");
    EXPECT_EQ(captured([&](FILE* f) { bv.bv_print(f); }), "[0-3, 7, 9-10, 31-32, 99]");
    EXPECT_EQ(text(BITVEC()), "[]");
    EXPECT_EQ(text(BITVEC(64, nullptr, BITVEC::BV_FULL)), "[0-63]");
    EXPECT_EQ(captured([&](FILE* f) { pattern(5, 2).bv_dump(f); }),
              "\n\nBITVEC INFORMATION\n   Number of elements = 5\n   Set elements: [0, 2, 4]\n");
}

TEST(PbsetMake, RoundsSizesToSixteen) {
    PBSET* s = make_PBSET(100, 10);
    EXPECT_EQ(s->index_size, 112u);
    EXPECT_EQ(s->capacity, 16u);
    EXPECT_EQ(s->count, 0u);
    free_PBSET(s);
    s = make_PBSET(0, 0);
    EXPECT_EQ(s->index_size, 16u);
    EXPECT_EQ(s->capacity, 16u);
    free_PBSET(s);
}

// The index is filled with stale positions on purpose: membership must rest on
// the list alone.
TEST(PbsetMembers, AgainstAModelWithAGarbageIndex) {
    PBSET* s = make_PBSET(512, 16);
    std::mt19937 rng(7);
    for (unsigned i = 0; i < s->index_size; i++)
        s->index[i] = uint16_t(rng() % 8);
    std::set<unsigned> model;
    for (int step = 0; step < 5000; step++) {
        unsigned e = rng() % 600;
        if (rng() % 3)
            add_element_to_PBSET(s, e), model.insert(e);
        else
            remove_element_from_PBSET(s, e), model.erase(e);
        if (step % 1000 == 999) {
            make_PBSET_empty(s);
            model.clear();
        }
        ASSERT_EQ(s->count, model.size()) << step;
        for (unsigned x = 0; x < 620; x++)
            ASSERT_EQ(element_is_in_PBSET(s, x), model.count(x) != 0) << step << " " << x;
    }
    free_PBSET(s);
}

TEST(PbsetMembers, RemoveMovesTheLastMember) {
    PBSET* s = make_PBSET(64, 16);
    memset(s->index, 0, s->index_size * sizeof(uint16_t));
    add_element_to_PBSET(s, 5);
    EXPECT_FALSE(element_is_in_PBSET(s, 7)) << "index[7] points at a live slot";
    add_element_to_PBSET(s, 9);
    add_element_to_PBSET(s, 2);
    add_element_to_PBSET(s, 9);
    EXPECT_EQ(s->count, 3u);
    remove_element_from_PBSET(s, 5);
    EXPECT_EQ(s->count, 2u);
    EXPECT_EQ(s->list[0], 2);
    EXPECT_TRUE(element_is_in_PBSET(s, 2));
    EXPECT_TRUE(element_is_in_PBSET(s, 9));
    EXPECT_FALSE(element_is_in_PBSET(s, 5));
    remove_element_from_PBSET(s, 5);
    remove_element_from_PBSET(s, 1000);
    EXPECT_EQ(s->count, 2u);
    free_PBSET(s);
}

TEST(PbsetGrowth, IndexAndListGrow) {
    PBSET* s = make_PBSET(16, 16);
    add_element_to_PBSET(s, 3);
    add_element_to_PBSET(s, 33);
    EXPECT_EQ(s->index_size, 64u);
    add_element_to_PBSET(s, 100);
    EXPECT_EQ(s->index_size, 128u);
    add_element_to_PBSET(s, 65535);
    EXPECT_EQ(s->index_size, 65536u);
    EXPECT_TRUE(element_is_in_PBSET(s, 3));
    EXPECT_TRUE(element_is_in_PBSET(s, 33));
    EXPECT_TRUE(element_is_in_PBSET(s, 100));
    EXPECT_TRUE(element_is_in_PBSET(s, 65535));

    add_element_to_PBSET(s, 70000);
    add_element_to_PBSET(s, 65536);
    EXPECT_EQ(s->count, 4u);
    EXPECT_EQ(s->index_size, 65536u);
    EXPECT_FALSE(element_is_in_PBSET(s, 70000));

    std::vector<unsigned> capacities;
    for (unsigned e = 1000; e < 2000; e++) {
        unsigned before = s->capacity;
        add_element_to_PBSET(s, e);
        if (s->capacity != before)
            capacities.push_back(s->capacity);
    }
    EXPECT_EQ(capacities, (std::vector<unsigned>{32, 64, 128, 256, 512, 768, 1024}));
    for (unsigned e = 1000; e < 2000; e++)
        ASSERT_TRUE(element_is_in_PBSET(s, e)) << e;
    free_PBSET(s);
}

TEST(PbsetDump, Text) {
    PBSET* s = make_PBSET(70, 4);
    EXPECT_EQ(captured([&](FILE* f) { dump_PBSET(s, "live", f); }),
              "\nPBSET \"live\" contains 0 of 80 possible members in 16 slots.\n  <EMPTY>\n");
    for (unsigned e : {3u, 70u, 5u})
        add_element_to_PBSET(s, e);
    EXPECT_EQ(captured([&](FILE* f) { dump_PBSET(s, "live", f); }),
              "\nPBSET \"live\" contains 3 of 80 possible members in 16 slots.\n"
              "  MEMBERS:     3    70     5\n");
    for (unsigned e = 10; e < 18; e++)
        add_element_to_PBSET(s, e);
    EXPECT_EQ(captured([&](FILE* f) { dump_PBSET(s, "live", f); }),
              "\nPBSET \"live\" contains 11 of 80 possible members in 16 slots.\n"
              "  MEMBERS:     3    70     5    10    11    12    13    14    15    16\n"
              "              17\n");
    free_PBSET(s);
}

} // namespace
