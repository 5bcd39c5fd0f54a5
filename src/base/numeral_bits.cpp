// Bit operations on integers, which are read as infinite two's complement in both forms.
#include <algorithm>
#include <bit>

#include "base/numeral.h"

namespace vexor {

// Two operands within [-2^30, 2^30 - 1] have a result in that range, so the words of fixnums need no range
// test.
template <class Op>
void numeral::apply_bits(numeral const& b, Op op) {
    promote();
    mpz_srcptr right = mpq_numref(b.set_tmp(0));
    op(mpq_numref(slot()), mpq_numref(slot()), right);
}

numeral& numeral::operator|=(numeral const& b) {
    VEXOR_ASSERT(is_int() && b.is_int());
    if (is_big() || b.is_big())
        apply_bits(b, mpz_ior);
    else
        m_num |= b.m_num;
    return *this;
}

numeral& numeral::operator&=(numeral const& b) {
    VEXOR_ASSERT(is_int() && b.is_int());
    if (is_big() || b.is_big())
        apply_bits(b, mpz_and);
    else
        m_num &= b.m_num;
    return *this;
}

numeral& numeral::operator^=(numeral const& b) {
    VEXOR_ASSERT(is_int() && b.is_int());
    if (is_big() || b.is_big())
        apply_bits(b, mpz_xor);
    else
        m_num ^= b.m_num;
    return *this;
}

void numeral::bitwise_complement(unsigned n) {
    VEXOR_ASSERT(is_int());
    if (!is_big() && n < 31) {
        m_num ^= static_cast<int>((1u << n) - 1);
        return;
    }
    numeral mask(1);
    mask <<= n;
    mask -= m_one;
    apply_bits(mask, mpz_xor);
}

numeral& numeral::operator<<=(unsigned k) {
    VEXOR_ASSERT(is_int());
    if (!is_big() && k < 32) {
        set_reduced(long{m_num} * (1l << k), 1);
        return *this;
    }
    if (!is_big() && m_num == 0) return *this;
    promote();
    mpz_mul_2exp(mpq_numref(slot()), mpq_numref(slot()), k);
    return *this;
}

numeral& numeral::operator>>=(unsigned k) {
    VEXOR_ASSERT(is_int());
    if (is_big())
        mpz_fdiv_q_2exp(mpq_numref(slot()), mpq_numref(slot()), k);
    else
        m_num >>= std::min(k, 31u);
    return *this;
}

bool numeral::test_bit(unsigned i) const {
    VEXOR_ASSERT(is_int());
    if (is_big()) return mpz_tstbit(mpq_numref(slot()), i) != 0;
    return ((m_num >> std::min(i, 31u)) & 1) != 0;
}

unsigned numeral::num_bits() const {
    if (is_big()) return static_cast<unsigned>(mpz_sizeinbase(mpq_numref(slot()), 2));
    unsigned magnitude = m_num < 0 ? 0u - static_cast<unsigned>(m_num) : static_cast<unsigned>(m_num);
    return magnitude == 0 ? 1 : static_cast<unsigned>(std::bit_width(magnitude));
}

} // namespace vexor
