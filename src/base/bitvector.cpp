#include "base/bitvector.h"

#include <bit>

namespace vexor {

void bitvector::resize(unsigned n, bool value) {
    if (n <= m_num_bits) {
        shrink(n);
        return;
    }
    unsigned i = m_num_bits;
    m_bytes.resize(num_bytes(n), 0);
    m_num_bits = n;
    if (!value) return;
    for (; i < n && i % 8 != 0; i++) set(i);
    if (i < n) std::memset(m_bytes.begin() + i / 8, 0xff, num_bytes(n) - i / 8);
    unsigned used = n % 8;
    if (used != 0) m_bytes.back() = static_cast<unsigned char>(m_bytes.back() & ((1u << used) - 1));
}

void bitvector::shrink(unsigned n) {
    VEXOR_ASSERT(n <= m_num_bits);
    m_bytes.shrink(num_bytes(n));
    m_num_bits = n;
    unsigned used = n % 8;
    if (used != 0) m_bytes.back() = static_cast<unsigned char>(m_bytes.back() & ((1u << used) - 1));
}

void bitvector::fill0() {
    for (unsigned char& byte : m_bytes) byte = 0;
}

unsigned bitvector::count() const {
    unsigned result = 0;
    for (unsigned char byte : m_bytes) result += static_cast<unsigned>(std::popcount(byte));
    return result;
}

void bitvector::check_invariant() const {
    VEXOR_ASSERT(m_bytes.size() == num_bytes(m_num_bits));
    VEXOR_ASSERT(m_num_bits % 8 == 0 || (m_bytes.back() >> (m_num_bits % 8)) == 0);
}

} // namespace vexor
