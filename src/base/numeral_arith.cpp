// Arithmetic beyond the inline fast paths: reduced fractions in 64 bits, then GMP.
#include <bit>
#include <climits>

#include "base/exceptions.h"
#include "base/numeral.h"

namespace vexor {

constinit numeral const numeral::m_zero(0);
constinit numeral const numeral::m_one(1);
constinit numeral const numeral::m_minus_one(-1);

unsigned gcd(unsigned a, unsigned b) { return static_cast<unsigned>(ll_gcd(a, b)); }

// Ends: each round makes the larger of two odd values smaller.
// Cost: O(bits) rounds of subtraction and shift.
unsigned long long ll_gcd(unsigned long long a, unsigned long long b) {
    if (a == 0 || b == 0) return a | b;
    int shift = std::countr_zero(a | b);
    a >>= std::countr_zero(a);
    while (true) {
        b >>= std::countr_zero(b);
        if (a == b) return a << shift;
        if (a > b) std::swap(a, b);
        b -= a;
    }
}

void normalize_ll_posden(long long& n, long long& d) {
    VEXOR_ASSERT(d > 0);
    if (n == 0) {
        d = 1;
        return;
    }
    if (d == 1) return;
    unsigned long long magnitude =
        n < 0 ? 0ull - static_cast<unsigned long long>(n) : static_cast<unsigned long long>(n);
    auto g = static_cast<long long>(ll_gcd(magnitude, static_cast<unsigned long long>(d)));
    if (g == 1) return;
    n /= g;
    d /= g;
}

// --- slots

void numeral::set_big(long n, long d) {
    if (!is_big()) {
        m_num = numeral_pool::take();
        m_den = 0;
    }
    mpq_ptr q = slot();
    mpz_set_si(mpq_numref(q), n);
    mpz_set_si(mpq_denref(q), d);
}

void numeral::init_unsigned(unsigned long value) {
    set_big(0, 1);
    mpz_set_ui(mpq_numref(slot()), value);
}

void numeral::promote() {
    if (!is_big()) set_big(m_num, m_den);
}

void numeral::set_reduced(long n, long d) {
    if (in_range(n) && d <= max_fixnum && !is_big()) {
        m_num = static_cast<int>(n);
        m_den = static_cast<int>(d);
    } else {
        set_big(n, d);
    }
}

mpq_srcptr numeral::set_tmp(unsigned scratch) const {
    if (is_big()) return slot();
    mpq_ptr q = numeral_pool::scratch(scratch);
    mpz_set_si(mpq_numref(q), m_num);
    mpz_set_si(mpq_denref(q), m_den);
    return q;
}

void numeral::copy_big(numeral const& other) {
    m_num = numeral_pool::take();
    mpq_set(slot(), other.slot());
}

numeral& numeral::assign_big(numeral const& other) {
    if (this == &other) return *this;
    if (!other.is_big()) {
        numeral_pool::give_back(m_num);
        m_num = other.m_num;
        m_den = other.m_den;
        return *this;
    }
    if (!is_big()) {
        m_num = numeral_pool::take();
        m_den = 0;
    }
    mpq_set(slot(), other.slot());
    return *this;
}

numeral::numeral(mpz_srcptr value) {
    if (mpz_fits_slong_p(value)) {
        set_reduced(mpz_get_si(value), 1);
        return;
    }
    promote();
    mpq_set_z(slot(), value);
}

numeral::numeral(mpq_srcptr value) {
    if (mpz_sgn(mpq_denref(value)) == 0) throw division_by_zero_exception();
    numeral_pool::init();
    mpq_ptr q = numeral_pool::scratch(0);
    mpz_set(mpq_numref(q), mpq_numref(value)); // mpq_set would misread a negative denominator
    mpz_set(mpq_denref(q), mpq_denref(value));
    mpq_canonicalize(q);
    if (mpz_fits_slong_p(mpq_numref(q)) && mpz_fits_slong_p(mpq_denref(q))) {
        set_reduced(mpz_get_si(mpq_numref(q)), mpz_get_si(mpq_denref(q)));
        return;
    }
    promote();
    mpq_set(slot(), numeral_pool::scratch(0)); // the scratch slot may have moved
}

// --- the four operations

static mpz_ptr num(mpq_ptr q) { return mpq_numref(q); }
static bool is_integer(mpq_srcptr q) { return mpz_cmp_ui(mpq_denref(q), 1) == 0; }

// Most bignums are integers, for which the rational routines would compute gcds with 1.
template <class IntegerOp, class RationalOp>
void numeral::apply_big(numeral const& b, IntegerOp integer_op, RationalOp rational_op) {
    promote();
    mpq_srcptr right = b.set_tmp(0);
    mpq_ptr left = slot();
    if (is_integer(left) && is_integer(right))
        integer_op(num(left), num(left), mpq_numref(right));
    else
        rational_op(left, left, right);
}

void numeral::add(numeral const& b) {
    if (!is_big() && !b.is_big())
        rational_add(b);
    else
        apply_big(b, mpz_add, mpq_add);
}

void numeral::sub(numeral const& b) {
    if (!is_big() && !b.is_big())
        rational_sub(b);
    else
        apply_big(b, mpz_sub, mpq_sub);
}

void numeral::mul(numeral const& b) {
    if (!is_big() && !b.is_big())
        rational_mul(b);
    else
        apply_big(b, mpz_mul, mpq_mul);
}

numeral& numeral::operator/=(numeral const& b) {
    if (b.is_zero()) throw division_by_zero_exception();
    if (!is_big() && !b.is_big()) {
        rational_div(b);
        return *this;
    }
    promote();
    mpq_srcptr right = b.set_tmp(0);
    mpq_div(slot(), slot(), right);
    return *this;
}

// The sums and products of fixnum parts below stay under 2^61.
void numeral::rational_add(numeral const& b) {
    long long n = static_cast<long long>(m_num) * b.m_den + static_cast<long long>(b.m_num) * m_den;
    long long d = static_cast<long long>(m_den) * b.m_den;
    normalize_ll_posden(n, d);
    set_reduced(n, d);
}

void numeral::rational_sub(numeral const& b) {
    long long n = static_cast<long long>(m_num) * b.m_den - static_cast<long long>(b.m_num) * m_den;
    long long d = static_cast<long long>(m_den) * b.m_den;
    normalize_ll_posden(n, d);
    set_reduced(n, d);
}

void numeral::rational_mul(numeral const& b) {
    long long n = static_cast<long long>(m_num) * b.m_num;
    long long d = static_cast<long long>(m_den) * b.m_den;
    normalize_ll_posden(n, d);
    set_reduced(n, d);
}

void numeral::rational_div(numeral const& b) {
    VEXOR_ASSERT(b.m_num != 0);
    long long n = static_cast<long long>(m_num) * b.m_den;
    long long d = static_cast<long long>(m_den) * b.m_num;
    if (d < 0) {
        n = -n;
        d = -d;
    }
    normalize_ll_posden(n, d);
    set_reduced(n, d);
}

void numeral::neg_big() {
    promote();
    mpq_neg(slot(), slot());
}

// Squares as often as n has bits. No square is larger than the result, so a result that fits a fixnum is one.
numeral numeral::expt(int n) const {
    numeral result(1);
    if (n < 1) return result;
    numeral power(*this);
    while (true) {
        if (n & 1) result *= power;
        n >>= 1;
        if (n == 0) return result;
        power *= power;
    }
}

// --- comparison of bignums

bool numeral::equal_big(numeral const& a, numeral const& b) {
    if (a.is_big() && b.is_big()) return mpq_equal(a.slot(), b.slot()) != 0;
    return compare_big(a, b) == 0;
}

int numeral::compare_big(numeral const& a, numeral const& b) {
    if (!b.is_big()) return mpq_cmp_si(a.slot(), b.m_num, static_cast<unsigned long>(b.m_den));
    if (!a.is_big()) return -mpq_cmp_si(b.slot(), a.m_num, static_cast<unsigned long>(a.m_den));
    return mpq_cmp(a.slot(), b.slot());
}

int numeral::sign_big() const { return mpq_sgn(slot()); }

bool numeral::is_int_big() const { return is_integer(slot()); }

unsigned numeral::hash_big() const {
    mpz_srcptr n = mpq_numref(slot());
    unsigned long low = mpz_get_ui(n);
    return static_cast<unsigned>(mpz_sgn(n) < 0 ? 0ul - low : low);
}

void numeral::check_invariant() const {
    if (is_big()) {
        VEXOR_ASSERT(mpz_sgn(mpq_denref(slot())) > 0);
        mpq_t canonical;
        mpq_init(canonical);
        mpq_set(canonical, slot());
        mpq_canonicalize(canonical);
        VEXOR_ASSERT(mpq_equal(canonical, slot()));
        mpq_clear(canonical);
        return;
    }
    VEXOR_ASSERT(m_den > 0 && m_den <= max_fixnum);
    VEXOR_ASSERT(m_num >= -(1 << 30) && m_num < 1 << 30);
    VEXOR_ASSERT(ll_gcd(static_cast<unsigned long long>(m_num < 0 ? -long{m_num} : long{m_num}),
                        static_cast<unsigned long long>(m_den)) == 1);
}

} // namespace vexor
