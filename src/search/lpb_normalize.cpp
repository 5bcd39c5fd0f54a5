// Brings an inequality into the form that is propagated: positive integers, one monomial per variable.
//
// Keeps:   each step leaves an inequality with the same solutions.
// Ends:    a fixed sequence of passes.
// Cost:    O(n log n) for n monomials, by the sorting.
#include "search/lpb_constraint.h"

#include <algorithm>

namespace vexor {

// Complementing a literal can bring it together with one that occurs already, so sorting and merging come
// after the signs are right, too.
void lpb_inequality::normalize() {
    drop_constants();
    merge();
    make_positive();
    merge();
    cancel_complements();
    drop_constants();
    divide();
}

// a * l + b * l becomes (a + b) * l
void lpb_inequality::merge() {
    std::sort(m_monomials.begin(), m_monomials.end(), lpb_monomial_lit_lt());
    unsigned num_kept = 0;
    for (unsigned i = 0; i < m_monomials.size(); ++i) {
        if (num_kept > 0 && m_monomials[num_kept - 1].m_lit == m_monomials[i].m_lit)
            m_monomials[num_kept - 1].m_coeff += m_monomials[i].m_coeff;
        else if (num_kept++ != i)
            m_monomials[num_kept - 1] = std::move(m_monomials[i]);
    }
    m_monomials.shrink(num_kept);
    remove_zeros();
}

// -a * l >= b becomes a * (not l) >= b + a
void lpb_inequality::make_positive() {
    for (lpb_monomial& m : m_monomials) {
        if (m.m_coeff.is_pos()) continue;
        m.m_coeff.neg();
        m.m_lit = ~m.m_lit;
        m_bound += m.m_coeff;
        m_shift += m.m_coeff;
    }
}

// a * l + b * (not l) >= c becomes (a - b) * l >= c - b, for a >= b
void lpb_inequality::cancel_complements() {
    for (unsigned i = 1; i < m_monomials.size(); ++i) {
        lpb_monomial& first = m_monomials[i - 1];
        lpb_monomial& second = m_monomials[i];
        if (first.m_lit.var() != second.m_lit.var()) continue;
        numeral const common = std::min(first.m_coeff, second.m_coeff);
        first.m_coeff -= common;
        second.m_coeff -= common;
        m_bound -= common;
        m_shift -= common;
    }
    remove_zeros();
}

// a * true >= b becomes 0 >= b - a, and a * false goes away
void lpb_inequality::drop_constants() {
    for (lpb_monomial& m : m_monomials) {
        if (m.m_lit.var() != true_literal.var()) continue;
        if (m.m_lit == true_literal) {
            m_bound -= m.m_coeff;
            m_shift -= m.m_coeff;
        }
        m.m_coeff = 0;
    }
    remove_zeros();
}

// Fractions are scaled to integers, then all is divided by the common divisor of bound and coefficients.
void lpb_inequality::divide() {
    numeral scale = 1;
    for (lpb_monomial const& m : m_monomials) scale = lcm(scale, m.m_coeff.denominator());
    divide_by(numeral(1) / scale);
    numeral divisor = abs(m_bound);
    for (lpb_monomial const& m : m_monomials) {
        if (divisor.is_zero() || divisor.is_one()) break;
        divisor = gcd(divisor, m.m_coeff);
    }
    if (divisor > 1) divide_by(divisor);
}

void lpb_inequality::divide_by(numeral const& divisor) {
    for (lpb_monomial& m : m_monomials) m.m_coeff /= divisor;
    m_divisor *= divisor;
    m_bound = ceil(m_bound / divisor);
}

void lpb_inequality::remove_zeros() {
    unsigned num_kept = 0;
    for (unsigned i = 0; i < m_monomials.size(); ++i) {
        if (m_monomials[i].m_coeff.is_zero()) continue;
        if (num_kept++ != i) m_monomials[num_kept - 1] = std::move(m_monomials[i]);
    }
    m_monomials.shrink(num_kept);
}

} // namespace vexor
