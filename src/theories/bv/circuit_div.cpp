// Division.
#include "theories/bv/circuits.h"

#include "base/debug.h"

namespace vexor {

// Long division: the remainder so far is doubled, takes in the next bit of the dividend, and gives the divisor up
// if it is not smaller.
//
// Keeps:   after k steps the remainder has k bits, for it is at most what the k highest bits of the dividend spell.
//          A divisor with a higher bit than that is larger, so that only k positions are subtracted.
// Cost:    n(n+1)/2 positions, each a subtraction and a choice.
// Source:  own; for a divisor 0 the steps give the values that are asked for there.
void circuits::mk_udiv_urem(bits const& a, bits const& b, bits& quotient, bits& remainder) {
    VEXOR_ASSERT(a.size() == b.size());
    unsigned const n = a.size();
    bits any_above; // any_above[i]: one of the bits i and above of b is true
    any_above.resize(n + 1, false_bit);
    for (unsigned i = n; i-- > 0;) any_above[i] = m_graph.mk_or(any_above[i + 1], b[i]);
    quotient.reset();
    quotient.resize(n, false_bit);
    bits rest; // the remainder so far, the highest bit first
    bits difference;
    for (unsigned step = 0; step < n; ++step) {
        rest.push_back(a[n - 1 - step]);
        bit borrow = false_bit;
        difference.reset();
        for (unsigned i = 0; i <= step; ++i) {
            bit const x = rest[step - i];
            difference.push_back(m_graph.mk_xor(x, b[i], borrow));
            borrow = m_graph.mk_maj(~x, b[i], borrow);
        }
        bit const fits = m_graph.mk_and(~borrow, ~any_above[step + 1]);
        quotient[n - 1 - step] = fits;
        for (unsigned i = 0; i <= step; ++i)
            rest[step - i] = m_graph.mk_ite(fits, difference[i], rest[step - i]);
    }
    remainder.reset();
    for (unsigned i = n; i-- > 0;) remainder.push_back(rest[i]);
}

bits circuits::mk_udiv(bits const& a, bits const& b) {
    bits quotient, remainder;
    mk_udiv_urem(a, b, quotient, remainder);
    return quotient;
}

bits circuits::mk_urem(bits const& a, bits const& b) {
    bits quotient, remainder;
    mk_udiv_urem(a, b, quotient, remainder);
    return remainder;
}

bits circuits::mk_sdiv(bits const& a, bits const& b) {
    bits const quotient = mk_udiv(mk_negate_if(a.back(), a), mk_negate_if(b.back(), b));
    return mk_negate_if(m_graph.mk_xor(a.back(), b.back()), quotient);
}

bits circuits::mk_srem(bits const& a, bits const& b) {
    bits const remainder = mk_urem(mk_negate_if(a.back(), a), mk_negate_if(b.back(), b));
    return mk_negate_if(a.back(), remainder);
}

// The divisor is added to a remainder that is not zero if the signs differ. Modulo 0 this gives the dividend.
bits circuits::mk_smod(bits const& a, bits const& b) {
    bits const magnitude = mk_urem(mk_negate_if(a.back(), a), mk_negate_if(b.back(), b));
    bits const remainder = mk_negate_if(a.back(), magnitude);
    bit const adds = m_graph.mk_and(m_graph.mk_xor(a.back(), b.back()), m_graph.mk_or(magnitude));
    bits addend;
    for (bit c : b) addend.push_back(m_graph.mk_and(adds, c));
    return mk_add(remainder, addend);
}

} // namespace vexor
