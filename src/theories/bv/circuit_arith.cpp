// Sums and products.
//
// A position of an adder is an exclusive or of three bits and their majority: two variables and 14 clauses.
#include "theories/bv/circuits.h"

#include "base/debug.h"

namespace vexor {

namespace {

// A digit of a signed number: -1, 0, 1.
using digits = svector<signed char>;

// The canonical signed digits of a number modulo 2 to the power of the width: no two neighbours are both different from
// zero, so that there are never more than in binary, and a third of the width on average.
// Source: Reitwiesner, Binary arithmetic, Advances in Computers 1, 1960.
digits signed_digits(numeral const& value, unsigned width) {
    digits result;
    bool carry = false;
    for (unsigned i = 0; i < width; ++i) {
        bool const now = value.test_bit(i);
        bool const next = i + 1 < width && value.test_bit(i + 1);
        bool const odd = now != carry;
        result.push_back(static_cast<signed char>(!odd ? 0 : next ? -1 : 1));
        carry = now && carry ? true : odd ? next : false;
    }
    return result;
}

} // namespace

bits circuits::mk_add(bits const& a, bits const& b, bit carry) {
    bits result = mk_add_with_carry(a, b, carry);
    result.pop_back();
    return result;
}

bits circuits::mk_add_with_carry(bits const& a, bits const& b, bit carry) {
    VEXOR_ASSERT(a.size() == b.size());
    bits result;
    result.reserve(a.size() + 1);
    for (unsigned i = 0; i < a.size(); ++i) {
        result.push_back(m_graph.mk_xor(a[i], b[i], carry));
        carry = m_graph.mk_maj(a[i], b[i], carry);
    }
    result.push_back(carry);
    return result;
}

// (a xor c) + c
bits circuits::mk_negate_if(bit c, bits const& a) {
    bits result;
    result.reserve(a.size());
    bit carry = c;
    for (bit b : a) {
        bit const flipped = m_graph.mk_xor(b, c);
        result.push_back(m_graph.mk_xor(flipped, carry));
        carry = m_graph.mk_and(flipped, carry);
    }
    return result;
}

// --- Products, as sums of rows: multiples of one factor by powers of two, chosen by bits of the other.

// sum + (a << shift), if factor; or the difference.
void circuits::add_row(bits& sum, bits const& a, row const& r) {
    bit carry = constant_bit(r.m_negative);
    for (unsigned i = r.m_shift; i < sum.size() && i - r.m_shift < a.size(); ++i) {
        bit const x = sum[i], y = m_graph.mk_and(r.m_factor, a[i - r.m_shift]) ^ r.m_negative;
        sum[i] = m_graph.mk_xor(x, y, carry);
        carry = m_graph.mk_maj(x, y, carry);
    }
}

void circuits::append_rows(numeral const& multiple, unsigned width, bit factor, vector<row>& rows) {
    digits const d = signed_digits(multiple, width);
    for (unsigned i = 0; i < width; ++i)
        if (d[i] != 0) rows.push_back({factor, i, d[i] < 0});
}

// The factor a is the sum of a constant and of multiples of its distinct bits. One row for each signed digit of these:
// so a bit that stands at several places, as a sign does, costs no more than its multiple, and constant places above a
// few open ones cost a row or two. A complement is 1 minus the bit.
vector<circuits::row> circuits::rows_of(bits const& a) {
    unsigned const width = a.size();
    hash_map<unsigned, unsigned, int_hash> count; // by node
    for (bit b : a) {
        unsigned const* const known = count.find(b.node());
        count.insert(b.node(), known == nullptr ? 1 : *known + 1);
    }
    vector<row> rows;
    numeral constant;
    hash_map<unsigned, numeral, int_hash> multiples; // by node, of bits at several places
    bits repeated;                                   // their positive bits, by first place
    for (unsigned i = 0; i < width; ++i) {
        bit const b = a[i];
        if (b == false_bit) continue;
        if (b != true_bit && *count.find(b.node()) == 1) {
            rows.push_back({b, i, false});
            continue;
        }
        numeral const power = numeral(1) << i;
        if (b.sign() || b == true_bit) constant += power;
        if (b == true_bit) continue;
        numeral const* const known = multiples.find(b.node());
        if (known == nullptr) repeated.push_back(bit::of_node(b.node()));
        numeral const before = known == nullptr ? numeral(0) : *known;
        multiples.insert(b.node(), b.sign() ? before - power : before + power);
    }
    append_rows(mod_2k(constant, width), width, true_bit, rows);
    for (bit b : repeated) append_rows(mod_2k(*multiples.find(b.node()), width), width, b, rows);
    return rows;
}

// The product of bits i and j < i occurs twice: once, one place higher. So row i has a_i at place 2i and a_i a_j at
// place i + j + 1, and half of the rows fall outside.
bits circuits::mk_square(bits const& a) {
    bits sum;
    sum.resize(a.size(), false_bit);
    for (unsigned i = 0; 2 * i < a.size(); ++i) {
        bits products;
        products.push_back(true_bit);
        products.push_back(false_bit);
        products.append(a.size() - i - 1, a.data() + i + 1);
        add_row(sum, products, {a[i], 2 * i, false});
    }
    return sum;
}

// Some order of different vectors.
bool circuits::is_before(bits const& a, bits const& b) {
    for (unsigned i = 0; i < a.size(); ++i)
        if (a[i] != b[i]) return a[i] < b[i];
    return false;
}

// Rows cost; for equal costs the choice is the same for both orders of the arguments.
bits circuits::mk_mul(bits const& a, bits const& b) {
    VEXOR_ASSERT(a.size() == b.size());
    vector<row> const rows_a = rows_of(a), rows_b = rows_of(b);
    if (a == b && rows_a.size() > a.size() / 2) return mk_square(a);
    bool const by_a = rows_a.size() != rows_b.size() ? rows_a.size() < rows_b.size() : is_before(a, b);
    bits sum;
    sum.resize(a.size(), false_bit);
    for (row const& r : by_a ? rows_a : rows_b) add_row(sum, by_a ? b : a, r);
    return sum;
}

// --- Overflow.

bit circuits::mk_sadd_overflow(bits const& a, bits const& b) {
    bit const sign = mk_add(a, b).back();
    return m_graph.mk_and(m_graph.mk_xor(a.back(), sign), m_graph.mk_xor(b.back(), sign));
}

bit circuits::mk_ssub_overflow(bits const& a, bits const& b) {
    bit const sign = mk_sub(a, b).back();
    return m_graph.mk_and(m_graph.mk_xor(a.back(), b.back()), m_graph.mk_xor(a.back(), sign));
}

bit circuits::mk_neg_overflow(bits const& a) {
    bits rest(a);
    rest.pop_back();
    return m_graph.mk_and(a.back(), mk_is_zero(rest));
}

bit circuits::mk_sdiv_overflow(bits const& a, bits const& b) {
    return m_graph.mk_and(mk_neg_overflow(a), mk_redand(b));
}

// Two true bits whose places sum up to the width or more overflow. Without such bits the product fits into one
// bit more than the width, which is asked for that bit.
// Source: Schulte, Balzola, Akkas, Brocato: Integer multiplication with overflow detection or saturation, IEEE
// Transactions on Computers 49(7), 2000.
bit circuits::mk_umul_overflow(bits const& a, bits const& b) {
    unsigned const n = a.size();
    bit result = false_bit;
    bit high_of_a = false_bit; // of bits n - i and above
    for (unsigned i = 1; i < n; ++i) {
        high_of_a = m_graph.mk_or(high_of_a, a[n - i]);
        result = m_graph.mk_or(result, m_graph.mk_and(high_of_a, b[i]));
    }
    return m_graph.mk_or(result, mk_mul(zero_extend(a, 1), zero_extend(b, 1)).back());
}

// By the magnitudes: the product of these must be below 2^(n-1), or equal to it if the result is negative.
bit circuits::mk_smul_overflow(bits const& a, bits const& b) {
    bits const x = mk_negate_if(a.back(), a), y = mk_negate_if(b.back(), b);
    bit const is_negative = m_graph.mk_xor(a.back(), b.back());
    bits product = mk_mul(x, y);
    bit const reaches = product.back();
    product.pop_back();
    bit const is_least = m_graph.mk_and(is_negative, mk_is_zero(product));
    return m_graph.mk_or(mk_umul_overflow(x, y), m_graph.mk_and(reaches, ~is_least));
}

} // namespace vexor
