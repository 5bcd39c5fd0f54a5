// The operators on vectors, as gates.
#pragma once

#include "base/hash_table.h"
#include "base/numeral.h"
#include "base/vector.h"
#include "theories/bv/bit_graph.h"

namespace vexor {

// Vectors have at least one bit, and those of one operation have the same width unless a remark says otherwise.
// Arithmetic is modulo 2 to the power of the width.
class circuits {
public:
    explicit circuits(bit_graph& graph)
        : m_graph(graph) {}

    // --- Constants.

    // The low bits of value, which may be negative.
    static bits constant(unsigned width, numeral const& value);
    // The value, if all bits are constants.
    static bool is_constant(bits const& a, numeral& value);
    static bool is_constant(bits const& a);

    // --- Bit by bit.

    static bits mk_not(bits const& a);
    bits mk_and(bits const& a, bits const& b);
    bits mk_or(bits const& a, bits const& b);
    bits mk_xor(bits const& a, bits const& b);
    bits mk_ite(bit c, bits const& t, bits const& e);

    // --- Places.

    // Bits low to high.
    static bits extract(bits const& a, unsigned high, unsigned low);
    // high stands above low.
    static bits concat(bits const& high, bits const& low);
    // n copies of b above a.
    static bits extend(bits const& a, unsigned n, bit b);
    static bits sign_extend(bits const& a, unsigned n) { return extend(a, n, a.back()); }
    static bits zero_extend(bits const& a, unsigned n) { return extend(a, n, false_bit); }
    static bits repeat(bits const& a, unsigned n);
    // n is taken modulo the width.
    static bits rotate_left(bits const& a, unsigned n);
    // Copies of fill come in; n may be above the width.
    static bits shift_left(bits const& a, unsigned n, bit fill);
    static bits shift_right(bits const& a, unsigned n, bit fill);

    // --- Shifts by a vector: by the width and more all bits are filled.

    bits mk_shl(bits const& a, bits const& by);
    bits mk_lshr(bits const& a, bits const& by) { return mk_shift_right(a, by, false_bit); }
    bits mk_ashr(bits const& a, bits const& by) { return mk_shift_right(a, by, a.back()); }
    // By the value modulo the width.
    bits mk_rotate_left(bits const& a, bits const& by);
    bits mk_rotate_right(bits const& a, bits const& by);

    // --- Sums and products.

    bits mk_add(bits const& a, bits const& b, bit carry = false_bit);
    // The sum with the last carry above it.
    bits mk_add_with_carry(bits const& a, bits const& b, bit carry = false_bit);
    bits mk_sub(bits const& a, bits const& b) { return mk_add(a, mk_not(b), true_bit); }
    bits mk_neg(bits const& a) { return mk_negate_if(true_bit, a); }
    // The opposite if c.
    bits mk_negate_if(bit c, bits const& a);
    bits mk_mul(bits const& a, bits const& b);

    // --- Division. By zero: the quotient has all bits true, the remainder is the dividend. Signed operators
    // --- divide the magnitudes and set the signs afterwards, by zero as well.

    void mk_udiv_urem(bits const& a, bits const& b, bits& quotient, bits& remainder);
    bits mk_udiv(bits const& a, bits const& b);
    bits mk_urem(bits const& a, bits const& b);
    // Towards zero.
    bits mk_sdiv(bits const& a, bits const& b);
    // With the sign of the dividend.
    bits mk_srem(bits const& a, bits const& b);
    // With the sign of the divisor.
    bits mk_smod(bits const& a, bits const& b);

    // --- Predicates.

    bit mk_eq(bits const& a, bits const& b);
    bit mk_is_zero(bits const& a) { return ~m_graph.mk_or(a); }
    bit mk_redor(bits const& a) { return m_graph.mk_or(a); }
    bit mk_redand(bits const& a) { return m_graph.mk_and(a); }
    bit mk_ult(bits const& a, bits const& b) { return mk_less(a, b, false_bit); }
    bit mk_ule(bits const& a, bits const& b) { return mk_less(a, b, true_bit); }
    bit mk_slt(bits const& a, bits const& b);
    bit mk_sle(bits const& a, bits const& b) { return ~mk_slt(b, a); }
    // The result does not fit into the width.
    bit mk_uadd_overflow(bits const& a, bits const& b) { return mk_add_with_carry(a, b).back(); }
    bit mk_sadd_overflow(bits const& a, bits const& b);
    bit mk_usub_overflow(bits const& a, bits const& b) { return mk_ult(a, b); }
    bit mk_ssub_overflow(bits const& a, bits const& b);
    bit mk_umul_overflow(bits const& a, bits const& b);
    bit mk_smul_overflow(bits const& a, bits const& b);
    bit mk_sdiv_overflow(bits const& a, bits const& b);
    bit mk_neg_overflow(bits const& a);

private:
    bit mk_less(bits const& a, bits const& b, bit if_equal);
    bits mk_shift_right(bits const& a, bits const& by, bit fill);
    bit mk_any_from(bits const& a, unsigned first);
    // One summand of a product.
    struct row {
        bit m_factor; // there or not
        unsigned m_shift;
        bool m_negative;
    };
    static vector<row> rows_of(bits const& a);
    static void append_rows(numeral const& multiple, unsigned width, bit factor, vector<row>& rows);
    void add_row(bits& sum, bits const& a, row const& r);
    bits mk_square(bits const& a);
    static bool is_before(bits const& a, bits const& b);

    bit_graph& m_graph;
};

} // namespace vexor
