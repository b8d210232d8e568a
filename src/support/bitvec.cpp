#include "support/bitvec.h"

#include <cstdlib>
#include <cstring>
#include <ostream>
#include <string>

#include "support/safealloc.h"

namespace {

// Sizes are unsigned, but one whose signed view is 0 or negative needs no words.
unsigned words_for(unsigned n) { return static_cast<int>(n) <= 0 ? 0 : (n + 31) >> 5; }

// Nothing allocates from zones yet, so a zone's words come from the heap as
// well. They belong to the zone, which releases them all at once: the vector
// never frees them itself.
uint32_t* alloc_words(MZONE*, unsigned n) {
    return static_cast<uint32_t*>(safemalloc(size_t(n) * sizeof(uint32_t)));
}

void free_words(MZONE* zone, uint32_t* words) {
    if (zone == nullptr)
        free(words);
}

// Bits lo to hi of a word, 0 <= lo <= hi <= 31.
uint32_t span(unsigned lo, unsigned hi) { return (~0u >> (31 - hi)) & (~0u << lo); }

void mask_tail(BITVEC& bv) {
    if (bv.nbits & 31)
        bv.words[bv.nwords - 1] &= span(0, (bv.nbits & 31) - 1);
}

// Clears bits first to last inclusive.
void clear_bits(uint32_t* w, unsigned first, unsigned last) {
    unsigned fw = first >> 5, lw = last >> 5;
    if (fw == lw) {
        w[fw] &= ~span(first & 31, last & 31);
        return;
    }
    w[fw] &= ~span(first & 31, 31);
    for (unsigned i = fw + 1; i < lw; i++)
        w[i] = 0;
    w[lw] &= ~span(0, last & 31);
}

bool has_bit(const BITVEC& bv, unsigned i) { return (bv.words[i >> 5] >> (i & 31)) & 1; }

std::string members_text(const BITVEC& bv) {
    std::string text = "[";
    char buf[32];
    for (unsigned i = 0; i < bv.nbits; i++) {
        if (!has_bit(bv, i))
            continue;
        unsigned last = i;
        while (last + 1 < bv.nbits && has_bit(bv, last + 1))
            last++;
        if (text.size() > 1)
            text += ", ";
        if (last == i)
            snprintf(buf, sizeof buf, "%d", int(i));
        else
            snprintf(buf, sizeof buf, "%d-%d", int(i), int(last));
        text += buf;
        i = last;
    }
    return text + "]";
}

} // namespace

BITVEC::BITVEC(const BITVEC& other)
    : nbits(other.nbits), nwords(other.nwords), nalloc(other.nwords) {
    if (nwords) {
        words = alloc_words(nullptr, nwords);
        memcpy(words, other.words, nwords * sizeof(uint32_t));
    }
}

BITVEC::BITVEC(BITVEC&& other) noexcept
    : nbits(other.nbits), nwords(other.nwords), nalloc(other.nalloc), zone(other.zone),
      words(other.words) {
    other.nbits = other.nwords = other.nalloc = 0;
    other.zone = nullptr;
    other.words = nullptr;
}

BITVEC& BITVEC::operator=(const BITVEC& other) {
    if (this == &other)
        return *this;
    if (nalloc < other.nwords) {
        uint32_t* fresh = alloc_words(zone, other.nwords);
        free_words(zone, words);
        words = fresh;
        nalloc = other.nwords;
    }
    nbits = other.nbits;
    nwords = other.nwords;
    if (nwords)
        memcpy(words, other.words, nwords * sizeof(uint32_t));
    return *this;
}

BITVEC& BITVEC::operator=(BITVEC&& other) noexcept {
    if (this == &other)
        return *this;
    free_words(zone, words);
    nbits = other.nbits;
    nwords = other.nwords;
    nalloc = other.nalloc;
    zone = other.zone;
    words = other.words;
    other.nbits = other.nwords = other.nalloc = 0;
    other.zone = nullptr;
    other.words = nullptr;
    return *this;
}

BITVEC::~BITVEC() { free_words(zone, words); }

void BITVEC::bv_init(unsigned size, MZONE* z, BV_TINIT init) {
    free_words(zone, words);
    zone = z;
    nwords = nalloc = words_for(size);
    nbits = nwords ? size : 0;
    words = nwords ? alloc_words(zone, nwords) : nullptr;
    if (!nwords)
        return;
    switch (init) {
    case BV_EMPTY:
        memset(words, 0, nwords * sizeof(uint32_t));
        break;
    case BV_FULL:
        memset(words, 0xff, nwords * sizeof(uint32_t));
        mask_tail(*this);
        break;
    case BV_UNINIT:
        // The caller fills the members; the tail word is cleared so that no
        // word loop sees bits above the size.
        words[nwords - 1] = 0;
        break;
    }
}

// Growth past the allocation fills the fresh array with ones before copying,
// and only the old last word and the new tail are masked: the new members in
// the fresh words read as set. Callers that need them empty clear them.
void BITVEC::bv_resize(unsigned size) {
    if (size == nbits)
        return;
    unsigned need = words_for(size);
    if (need == 0)
        size = 0;
    if (need <= nalloc) {
        unsigned old = nbits;
        nbits = size;
        nwords = need;
        if (size > old)
            clear_bits(words, old, size - 1);
        else if (nwords)
            mask_tail(*this);
        return;
    }
    if (nwords)
        mask_tail(*this);
    uint32_t* fresh = alloc_words(zone, need);
    memset(fresh, 0xff, need * sizeof(uint32_t));
    if (nwords)
        memcpy(fresh, words, nwords * sizeof(uint32_t));
    free_words(zone, words);
    words = fresh;
    nbits = size;
    nwords = nalloc = need;
    mask_tail(*this);
}

void BITVEC::bv_add(unsigned i) {
    if (i >= nbits) {
        bv_warn("Index beyond size:add");
        bv_resize(i + 1);
    }
    words[i >> 5] |= 1u << (i & 31);
}

void BITVEC::bv_copy_seg(const BITVEC& source, unsigned first, unsigned last) {
    if (first > last || last == ~0u || source.nbits == 0)
        return;
    if (last > source.nbits - 1)
        last = source.nbits - 1;
    if (first > last)
        return;
    if (last >= nbits)
        bv_resize(last + 1);
    const uint32_t* from = source.words;
    unsigned fw = first >> 5, lw = last >> 5;
    if (fw == lw) {
        uint32_t m = span(first & 31, last & 31);
        words[fw] = (words[fw] & ~m) | (from[fw] & m);
        return;
    }
    uint32_t m = span(first & 31, 31);
    words[fw] = (words[fw] & ~m) | (from[fw] & m);
    for (unsigned i = fw + 1; i < lw; i++)
        words[i] = from[i];
    m = span(0, last & 31);
    words[lw] = (words[lw] & ~m) | (from[lw] & m);
}

// Either operand may be this vector: the counts are taken before the resize,
// and the resize keeps the words that are read afterwards.
void BITVEC::bv_diff(const BITVEC& a, const BITVEC& b) {
    unsigned a_words = a.nwords;
    unsigned common = a.nwords < b.nwords ? a.nwords : b.nwords;
    bv_resize(a.nbits);
    for (unsigned i = 0; i < common; i++)
        words[i] = a.words[i] & ~b.words[i];
    for (unsigned i = common; i < a_words; i++)
        words[i] = a.words[i];
    if (nwords)
        mask_tail(*this);
}

void BITVEC::bv_print(FILE* out) const {
    fputs(members_text(*this).c_str(), out);
    fflush(out);
}

void BITVEC::bv_dump(FILE* out) const {
    fprintf(out, "\n\nBITVEC INFORMATION\n");
    fprintf(out, "   Number of elements = %d\n", int(nbits));
    fprintf(out, "   Set elements: ");
    bv_print(out);
    fputc('\n', out);
}

std::ostream& operator<<(std::ostream& os, const BITVEC& bv) { return os << members_text(bv); }
