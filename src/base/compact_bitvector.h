// A bit set of fixed size that needs no memory of its own while it is small.
#pragma once

#include <cstring>
#include <utility>

#include "base/debug.h"
#include "base/memory.h"

namespace vexor {

// Promises: up to 32 bits stand in the object itself, more on the heap; all bits are false at the start.
class compact_bitvector {
public:
    explicit compact_bitvector(unsigned num_bits = 0)
        : m_num_bits(num_bits) {
        if (is_inline())
            m_bits.m_word = 0;
        else
            m_bits.m_words = static_cast<unsigned*>(std::memset(xmalloc(num_bytes()), 0, num_bytes()));
    }
    compact_bitvector(compact_bitvector const& other)
        : m_num_bits(other.m_num_bits)
        , m_bits(other.m_bits) {
        if (!is_inline())
            m_bits.m_words =
                static_cast<unsigned*>(std::memcpy(xmalloc(num_bytes()), other.m_bits.m_words, num_bytes()));
    }
    compact_bitvector(compact_bitvector&& other) noexcept
        : compact_bitvector() {
        swap(other);
    }
    compact_bitvector& operator=(compact_bitvector other) noexcept {
        swap(other);
        return *this;
    }
    ~compact_bitvector() {
        if (!is_inline()) heap_allocator::release(m_bits.m_words);
    }

    [[nodiscard]] unsigned size() const { return m_num_bits; }
    [[nodiscard]] bool get(unsigned i) const { return (word(i) >> (i % 32)) & 1u; }
    bool operator[](unsigned i) const { return get(i); }
    void set(unsigned i) { word(i) |= 1u << (i % 32); }
    void unset(unsigned i) { word(i) &= ~(1u << (i % 32)); }
    void set(unsigned i, bool value) { value ? set(i) : unset(i); }
    void reset() {
        if (is_inline())
            m_bits.m_word = 0;
        else
            std::memset(m_bits.m_words, 0, num_bytes());
    }
    void swap(compact_bitvector& other) noexcept {
        std::swap(m_num_bits, other.m_num_bits);
        std::swap(m_bits, other.m_bits);
    }
    friend bool operator==(compact_bitvector const& a, compact_bitvector const& b) {
        if (a.m_num_bits != b.m_num_bits) return false;
        if (a.is_inline()) return a.m_bits.m_word == b.m_bits.m_word;
        return std::memcmp(a.m_bits.m_words, b.m_bits.m_words, a.num_bytes()) == 0;
    }

private:
    bool is_inline() const { return m_num_bits <= 32; }
    std::size_t num_bytes() const { return (std::size_t{m_num_bits} + 31) / 32 * sizeof(unsigned); }
    unsigned const& word(unsigned i) const {
        VEXOR_ASSERT(i < m_num_bits);
        return is_inline() ? m_bits.m_word : m_bits.m_words[i / 32];
    }
    unsigned& word(unsigned i) { return const_cast<unsigned&>(std::as_const(*this).word(i)); }

    unsigned m_num_bits; // fixed, apart from assignment
    union {
        unsigned m_word;   // the bits, while there are at most 32
        unsigned* m_words; // otherwise; owned
    } m_bits;
};

} // namespace vexor
