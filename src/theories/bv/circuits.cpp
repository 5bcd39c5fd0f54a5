// Constants, places, comparisons and shifts.
#include "theories/bv/circuits.h"

#include "base/debug.h"

namespace vexor {

namespace {

// The bits of an amount that move by less than the width.
unsigned num_stages(unsigned width) {
    unsigned n = 0;
    while (n < 32 && (1ul << n) < width) ++n;
    return n;
}

} // namespace

bits circuits::constant(unsigned width, numeral const& value) {
    bits result;
    result.reserve(width);
    for (unsigned i = 0; i < width; ++i) result.push_back(constant_bit(value.test_bit(i)));
    return result;
}

bool circuits::is_constant(bits const& a) {
    for (bit b : a)
        if (!b.is_constant()) return false;
    return true;
}

bool circuits::is_constant(bits const& a, numeral& value) {
    if (!is_constant(a)) return false;
    mpz_t number;
    mpz_init2(number, a.size());
    for (unsigned i = 0; i < a.size(); ++i)
        if (a[i] == true_bit) mpz_setbit(number, i);
    value = numeral(number);
    mpz_clear(number);
    return true;
}

// --- Bit by bit.

bits circuits::mk_not(bits const& a) {
    bits result;
    result.reserve(a.size());
    for (bit b : a) result.push_back(~b);
    return result;
}

bits circuits::mk_and(bits const& a, bits const& b) {
    VEXOR_ASSERT(a.size() == b.size());
    bits result;
    result.reserve(a.size());
    for (unsigned i = 0; i < a.size(); ++i) result.push_back(m_graph.mk_and(a[i], b[i]));
    return result;
}

bits circuits::mk_or(bits const& a, bits const& b) {
    VEXOR_ASSERT(a.size() == b.size());
    bits result;
    result.reserve(a.size());
    for (unsigned i = 0; i < a.size(); ++i) result.push_back(m_graph.mk_or(a[i], b[i]));
    return result;
}

bits circuits::mk_xor(bits const& a, bits const& b) {
    VEXOR_ASSERT(a.size() == b.size());
    bits result;
    result.reserve(a.size());
    for (unsigned i = 0; i < a.size(); ++i) result.push_back(m_graph.mk_xor(a[i], b[i]));
    return result;
}

bits circuits::mk_ite(bit c, bits const& t, bits const& e) {
    VEXOR_ASSERT(t.size() == e.size());
    bits result;
    result.reserve(t.size());
    for (unsigned i = 0; i < t.size(); ++i) result.push_back(m_graph.mk_ite(c, t[i], e[i]));
    return result;
}

// --- Places.

bits circuits::extract(bits const& a, unsigned high, unsigned low) {
    VEXOR_ASSERT(low <= high && high < a.size());
    bits result;
    result.append(high - low + 1, a.data() + low);
    return result;
}

bits circuits::concat(bits const& high, bits const& low) {
    bits result(low);
    result.append(high);
    return result;
}

bits circuits::extend(bits const& a, unsigned n, bit b) {
    bits result(a);
    result.resize(a.size() + n, b);
    return result;
}

bits circuits::repeat(bits const& a, unsigned n) {
    bits result;
    for (unsigned i = 0; i < n; ++i) result.append(a);
    return result;
}

bits circuits::rotate_left(bits const& a, unsigned n) {
    n %= a.size();
    bits result;
    result.append(n, a.end() - n);
    result.append(a.size() - n, a.data());
    return result;
}

bits circuits::shift_left(bits const& a, unsigned n, bit fill) {
    if (n > a.size()) n = a.size();
    bits result;
    result.resize(n, fill);
    result.append(a.size() - n, a.data());
    return result;
}

bits circuits::shift_right(bits const& a, unsigned n, bit fill) {
    if (n > a.size()) n = a.size();
    bits result;
    result.append(a.size() - n, a.data() + n);
    result.resize(a.size(), fill);
    return result;
}

// --- Shifts by a vector: bit i of the amount moves by 2^i, while that is below the width. Amounts of the width
// and more that the lower bits spell fill everything on their own, so the higher bits alone remain.

bit circuits::mk_any_from(bits const& a, unsigned first) {
    bit result = false_bit;
    for (unsigned i = first; i < a.size(); ++i) result = m_graph.mk_or(result, a[i]);
    return result;
}

bits circuits::mk_shl(bits const& a, bits const& by) {
    unsigned const stages = num_stages(a.size());
    bits result(a);
    for (unsigned i = 0; i < stages && i < by.size(); ++i)
        result = mk_ite(by[i], shift_left(result, 1u << i, false_bit), result);
    bit const all = mk_any_from(by, stages);
    for (bit& b : result) b = m_graph.mk_and(b, ~all);
    return result;
}

bits circuits::mk_shift_right(bits const& a, bits const& by, bit fill) {
    unsigned const stages = num_stages(a.size());
    bits result(a);
    for (unsigned i = 0; i < stages && i < by.size(); ++i)
        result = mk_ite(by[i], shift_right(result, 1u << i, fill), result);
    bit const all = mk_any_from(by, stages);
    for (bit& b : result) b = m_graph.mk_ite(all, fill, b);
    return result;
}

// The places repeat with the width. Bit i of the amount moves by 2^i modulo the width.
bits circuits::mk_rotate_left(bits const& a, bits const& by) {
    bits result(a);
    unsigned places = 1 % a.size();
    for (bit b : by) {
        if (places == 0) break; // all further powers are multiples of the width
        result = mk_ite(b, rotate_left(result, places), result);
        places = static_cast<unsigned>(2ul * places % a.size());
    }
    return result;
}

bits circuits::mk_rotate_right(bits const& a, bits const& by) {
    bits result(a);
    unsigned places = 1 % a.size();
    for (bit b : by) {
        if (places == 0) break;
        result = mk_ite(b, rotate_left(result, a.size() - places), result);
        places = static_cast<unsigned>(2ul * places % a.size());
    }
    return result;
}

// --- Comparisons.

bit circuits::mk_eq(bits const& a, bits const& b) {
    VEXOR_ASSERT(a.size() == b.size());
    bit result = true_bit;
    for (unsigned i = 0; i < a.size(); ++i) result = m_graph.mk_and(result, m_graph.mk_iff(a[i], b[i]));
    return result;
}

// The borrow of a - b. if_equal borrows before the lowest bit.
bit circuits::mk_less(bits const& a, bits const& b, bit if_equal) {
    VEXOR_ASSERT(a.size() == b.size());
    bit result = if_equal;
    for (unsigned i = 0; i < a.size(); ++i) result = m_graph.mk_maj(~a[i], b[i], result);
    return result;
}

// The sign bits change their places.
bit circuits::mk_slt(bits const& a, bits const& b) {
    VEXOR_ASSERT(a.size() == b.size());
    unsigned const last = a.size() - 1;
    bit result = false_bit;
    for (unsigned i = 0; i < last; ++i) result = m_graph.mk_maj(~a[i], b[i], result);
    return m_graph.mk_maj(a[last], ~b[last], result);
}

} // namespace vexor
