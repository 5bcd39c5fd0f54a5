// Bits of vectors: edges of a graph of gates.
#pragma once

#include "base/vector.h"

namespace vexor {

// The value of a node, or its complement. Constants are edges to node 0.
class bit {
public:
    constexpr bit() = default;

    [[nodiscard]] static constexpr bit of_node(unsigned node, bool sign = false) {
        return from_index(2 * node + (sign ? 1u : 0u));
    }
    [[nodiscard]] static constexpr bit from_index(unsigned index) {
        bit b;
        b.m_index = index;
        return b;
    }
    [[nodiscard]] constexpr unsigned node() const { return m_index >> 1; }
    [[nodiscard]] constexpr bool sign() const { return (m_index & 1) != 0; }
    [[nodiscard]] constexpr unsigned index() const { return m_index; }
    [[nodiscard]] constexpr bool is_constant() const { return m_index < 2; }

    constexpr bit operator~() const { return from_index(m_index ^ 1); }
    // The complement if flip.
    constexpr bit operator^(bool flip) const { return from_index(m_index ^ (flip ? 1u : 0u)); }
    friend constexpr bool operator==(bit a, bit b) { return a.m_index == b.m_index; }
    friend constexpr bool operator!=(bit a, bit b) { return a.m_index != b.m_index; }
    friend constexpr bool operator<(bit a, bit b) { return a.m_index < b.m_index; }

private:
    unsigned m_index = ~1u;
};

inline constexpr bit true_bit = bit::from_index(0);
inline constexpr bit false_bit = bit::from_index(1);
inline constexpr bit null_bit = bit(); // no bit; its complement is never formed

inline constexpr bit constant_bit(bool value) { return value ? true_bit : false_bit; }

// A vector, the least significant bit first.
using bits = svector<bit>;

} // namespace vexor
