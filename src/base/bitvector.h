// A growable sequence of bits.
#pragma once

#include "base/debug.h"
#include "base/vector.h"

namespace vexor {

// Promises: bits are stored in bytes that grow like a vector's; bits that come into being without a value are
// false.
class bitvector {
public:
    bitvector() = default;
    explicit bitvector(unsigned num_bits) { resize(num_bits, false); }

    [[nodiscard]] unsigned size() const { return m_num_bits; }
    [[nodiscard]] bool empty() const { return m_num_bits == 0; }
    [[nodiscard]] bool get(unsigned i) const {
        VEXOR_ASSERT(i < m_num_bits);
        return (m_bytes[i / 8] >> (i % 8)) & 1u;
    }
    bool operator[](unsigned i) const { return get(i); }
    void set(unsigned i) {
        VEXOR_ASSERT(i < m_num_bits);
        m_bytes[i / 8] = static_cast<unsigned char>(m_bytes[i / 8] | (1u << (i % 8)));
    }
    void unset(unsigned i) {
        VEXOR_ASSERT(i < m_num_bits);
        m_bytes[i / 8] = static_cast<unsigned char>(m_bytes[i / 8] & ~(1u << (i % 8)));
    }
    // Without a branch on the value, which callers often cannot foresee.
    void set(unsigned i, bool value) {
        VEXOR_ASSERT(i < m_num_bits);
        m_bytes[i / 8] = static_cast<unsigned char>((m_bytes[i / 8] & ~(1u << (i % 8))) |
                                                    (static_cast<unsigned>(value) << (i % 8)));
    }

    void push_back(bool value) {
        if (m_num_bits % 8 == 0) m_bytes.push_back(0);
        m_num_bits++;
        set(m_num_bits - 1, value);
    }
    void pop_back() {
        VEXOR_ASSERT(m_num_bits > 0);
        shrink(m_num_bits - 1);
    }
    [[nodiscard]] bool back() const { return get(m_num_bits - 1); }

    // To n bits; new ones have the given value.
    void resize(unsigned n, bool value = false);
    // Drops the bits from index n on.
    void shrink(unsigned n);
    // All bits to false.
    void fill0();
    // Drops all bits and keeps the memory.
    void reset() { shrink(0); }
    void finalize() {
        m_bytes.finalize();
        m_num_bits = 0;
    }
    void swap(bitvector& other) noexcept {
        m_bytes.swap(other.m_bytes);
        std::swap(m_num_bits, other.m_num_bits);
    }
    // Bits that are true.
    [[nodiscard]] unsigned count() const;
    friend bool operator==(bitvector const& a, bitvector const& b) {
        return a.m_num_bits == b.m_num_bits && a.m_bytes == b.m_bytes;
    }
    void check_invariant() const;

private:
    static unsigned num_bytes(unsigned num_bits) { return num_bits / 8 + (num_bits % 8 != 0); }

    svector<unsigned char>
        m_bytes;             // exactly the bytes that m_num_bits need; unused bits of the last one are 0
    unsigned m_num_bits = 0; // size in bits
};

} // namespace vexor
