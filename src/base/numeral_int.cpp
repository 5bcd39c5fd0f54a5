// Rounding, divisibility and conversion of numerals.
#include <climits>

#include "base/exceptions.h"
#include "base/numeral.h"

namespace vexor {

numeral div(numeral const& a, numeral const& b) {
    if (b.is_zero()) throw division_by_zero_exception();
    if (!a.is_big() && !b.is_big()) {
        numeral result;
        result.set_reduced(long{a.m_num} / b.m_num, 1);
        return result;
    }
    numeral result;
    result.promote();
    mpz_srcptr divisor = mpq_numref(b.set_tmp(1));
    mpz_tdiv_q(mpq_numref(result.slot()), mpq_numref(a.set_tmp(0)), divisor);
    return result;
}

numeral mod(numeral const& a, numeral const& b) {
    if (b.is_zero()) throw division_by_zero_exception();
    if (!a.is_big() && !b.is_big()) {
        long m = long{a.m_num} % b.m_num;
        if (m < 0) m += b.m_num < 0 ? -long{b.m_num} : long{b.m_num};
        return numeral(m);
    }
    numeral result;
    result.promote();
    mpz_srcptr divisor = mpq_numref(b.set_tmp(1));
    mpz_mod(mpq_numref(result.slot()), mpq_numref(a.set_tmp(0)), divisor);
    return result;
}

numeral mod_2k(numeral const& a, unsigned k) {
    if (!a.is_big() && (k < 31 || a.m_num >= 0)) return k < 31 ? numeral(a.m_num & ((1l << k) - 1)) : a;
    numeral result;
    result.promote();
    mpz_fdiv_r_2exp(mpq_numref(result.slot()), mpq_numref(a.set_tmp(0)), k);
    return result;
}

numeral floor(numeral const& a) {
    if (a.is_int()) return a;
    numeral result;
    if (!a.is_big()) {
        result.set_reduced(a.m_num / a.m_den - (a.m_num < 0), 1);
        return result;
    }
    result.promote();
    mpz_fdiv_q(mpq_numref(result.slot()), mpq_numref(a.slot()), mpq_denref(a.slot()));
    return result;
}

numeral ceil(numeral const& a) {
    if (a.is_int()) return a;
    if (!a.is_big()) {
        numeral result;
        result.set_reduced(a.m_num / a.m_den + (a.m_num > 0), 1);
        return result;
    }
    return floor(a) + numeral::m_one;
}

numeral fractional_part(numeral const& a) { return a - floor(a); }

numeral gcd(numeral const& a, numeral const& b) {
    if (!a.is_big() && !b.is_big()) {
        auto magnitude = [](int n) {
            return n < 0 ? 0u - static_cast<unsigned>(n) : static_cast<unsigned>(n);
        };
        return numeral(gcd(magnitude(a.m_num), magnitude(b.m_num)));
    }
    mpz_srcptr left = mpq_numref(a.set_tmp(0));
    mpz_srcptr right = mpq_numref(b.set_tmp(1));
    mpz_t g;
    mpz_init(g);
    mpz_gcd(g, left, right);
    numeral result(g);
    mpz_clear(g);
    return result;
}

numeral lcm(numeral const& a, numeral const& b) {
    if (a.is_zero() || b.is_zero()) return numeral();
    return a / gcd(a, b) * b;
}

numeral numeral::numerator() const { return is_big() ? big_part(true) : numeral(m_num); }

numeral numeral::denominator() const { return is_big() ? big_part(false) : numeral(m_den); }

// The pool may grow when the result takes its slot, so the part is looked up again behind that.
numeral numeral::big_part(bool num) const {
    auto part = [&] { return num ? mpq_numref(slot()) : mpq_denref(slot()); };
    if (mpz_fits_slong_p(part())) return numeral(mpz_get_si(part()));
    numeral result;
    result.promote();
    mpz_set(mpq_numref(result.slot()), part());
    mpz_set_ui(mpq_denref(result.slot()), 1);
    return result;
}

bool numeral::fits_long() const {
    if (is_big()) return is_int_big() && mpz_fits_slong_p(mpq_numref(slot())) != 0;
    return m_den == 1;
}

bool numeral::fits_int() const {
    if (!fits_long()) return false;
    long value = get_long();
    return value >= INT_MIN && value <= INT_MAX;
}

bool numeral::fits_unsigned() const {
    if (!fits_long()) return false;
    long value = get_long();
    return value >= 0 && value <= static_cast<long>(UINT_MAX);
}

long numeral::get_long() const {
    VEXOR_ASSERT(fits_long());
    return is_big() ? mpz_get_si(mpq_numref(slot())) : m_num;
}

double numeral::get_double() const {
    if (is_big()) return mpq_get_d(slot());
    return static_cast<double>(m_num) / static_cast<double>(m_den);
}

void numeral::get_mpz(mpz_ptr result) const {
    if (is_big())
        mpz_set(result, mpq_numref(slot()));
    else
        mpz_set_si(result, m_num);
}

void numeral::get_mpq(mpq_ptr result) const {
    if (is_big())
        mpq_set(result, slot());
    else
        mpq_set_si(result, m_num, static_cast<unsigned long>(m_den));
}

} // namespace vexor
