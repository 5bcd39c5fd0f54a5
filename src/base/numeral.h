// Exact rational numbers in two words.
//
// Keeps:   m_den > 0: a fixnum, the reduced fraction m_num / m_den; zero is 0/1. Every arithmetic result is
// kept as a
//          fixnum only within max_fixnum, which lies below 2^30 so that a/b + c/d is computed in 64 bits
//          without an overflow test. Bit operations alone may leave a numerator in [-2^30, 2^30 - 1]. m_den
//          == 0: a bignum, m_num is the index of its own slot in the pool, a canonical GMP rational.
// Differs: a bignum never turns back into a fixnum by arithmetic, even when its value is 0. So the form says
// nothing
//          about the value: ask is_int and is_zero, never m_den; comparison and hash agree across the forms.
// Source:  own; the reduction is Stein's binary gcd, J. Comp. Physics 1, 1967.
#pragma once

#include <concepts>
#include <gmp.h>
#include <iosfwd>
#include <string>
#include <utility>

#include "base/debug.h"
#include "base/numeral_pool.h"

namespace vexor {

class string_buffer;

// A value type. Operations in place change the left operand, which may be the right one, too. Division by
// zero throws division_by_zero_exception.
class numeral {
    static_assert(sizeof(long) == 8, "products of fixnum parts are kept in a long");

public:
    static constexpr int max_fixnum = 0x3ffffff5;

    constexpr numeral() = default;
    template <std::integral T>
    requires(!std::same_as<T, bool>) constexpr numeral(T value) {
        if (is_fixnum_value(value))
            m_num = static_cast<int>(value);
        else
            init_integer(value);
    }
    template <std::floating_point T>
    numeral(T value) = delete; // would lose its fraction
    // Reads "n", "n/d" or "n.f"; the last two are decimal whatever the base. Reading ends where the text
    // stops to be a number, as with strtol; no digits mean 0. Throws division_by_zero_exception for a
    // denominator that is zero or missing, and arithmetic_overflow_exception for more than 999 characters
    // with a dot.
    numeral(char const* text, int base);
    explicit numeral(mpz_srcptr value);
    explicit numeral(mpq_srcptr value); // need not be canonical; throws division_by_zero_exception

    constexpr numeral(numeral const& other)
        : m_num(other.m_num)
        , m_den(other.m_den) {
        if (other.is_big()) copy_big(other);
    }
    constexpr numeral(numeral&& other) noexcept
        : m_num(other.m_num)
        , m_den(other.m_den) {
        other.forget();
    }
    constexpr ~numeral() {
        if (is_big()) numeral_pool::give_back(m_num);
    }
    // A bignum keeps its slot when a bignum is assigned and gives it back for a fixnum.
    numeral& operator=(numeral const& other) {
        if (is_big() || other.is_big()) return assign_big(other);
        m_num = other.m_num;
        m_den = other.m_den;
        return *this;
    }
    numeral& operator=(numeral&& other) noexcept {
        if (this == &other) return *this;
        if (is_big()) numeral_pool::give_back(m_num);
        m_num = other.m_num;
        m_den = other.m_den;
        other.forget();
        return *this;
    }
    void swap(numeral& other) noexcept {
        std::swap(m_num, other.m_num);
        std::swap(m_den, other.m_den);
    }

    static numeral const m_zero;
    static numeral const m_one;
    static numeral const m_minus_one;

    // --- arithmetic in place
    numeral& operator+=(numeral const& b) {
        if (m_den == 1 && b.m_den == 1) {
            long n = long{m_num} + b.m_num;
            if (in_range(n)) {
                m_num = static_cast<int>(n);
                return *this;
            }
        }
        add(b);
        return *this;
    }
    numeral& operator-=(numeral const& b) {
        if (m_den == 1 && b.m_den == 1) {
            long n = long{m_num} - b.m_num;
            if (in_range(n)) {
                m_num = static_cast<int>(n);
                return *this;
            }
        }
        sub(b);
        return *this;
    }
    numeral& operator*=(numeral const& b) {
        if (m_den == 1 && b.m_den == 1) {
            long n = long{m_num} * b.m_num;
            if (in_range(n)) {
                m_num = static_cast<int>(n);
                return *this;
            }
        }
        mul(b);
        return *this;
    }
    numeral& operator/=(numeral const& b);
    numeral& operator++() { return *this += m_one; }
    numeral& operator--() { return *this -= m_one; }
    void neg() {
        // The one value whose negation is too large comes from bit operations.
        if (is_big() || m_num < -max_fixnum)
            neg_big();
        else
            m_num = -m_num;
    }
    void abs() {
        if (is_neg()) neg();
    }
    friend numeral operator+(numeral a, numeral const& b) { return std::move(a += b); }
    friend numeral operator-(numeral a, numeral const& b) { return std::move(a -= b); }
    friend numeral operator*(numeral a, numeral const& b) { return std::move(a *= b); }
    friend numeral operator/(numeral a, numeral const& b) { return std::move(a /= b); }
    numeral operator-() const {
        numeral result(*this);
        result.neg();
        return result;
    }
    // The value to the power n, 1 for n < 1.
    [[nodiscard]] numeral expt(int n) const;

    // --- comparison
    friend bool operator==(numeral const& a, numeral const& b) {
        if (!a.is_big() && !b.is_big()) return a.m_num == b.m_num && a.m_den == b.m_den;
        return equal_big(a, b);
    }
    friend bool operator<(numeral const& a, numeral const& b) {
        if (!a.is_big() && !b.is_big()) {
            if (a.m_den == b.m_den) return a.m_num < b.m_num;
            return long{a.m_num} * b.m_den < long{b.m_num} * a.m_den;
        }
        return compare_big(a, b) < 0;
    }
    friend bool operator>(numeral const& a, numeral const& b) { return b < a; }
    friend bool operator<=(numeral const& a, numeral const& b) { return !(b < a); }
    friend bool operator>=(numeral const& a, numeral const& b) { return !(a < b); }

    [[nodiscard]] bool is_zero() const { return is_big() ? sign_big() == 0 : m_num == 0; }
    [[nodiscard]] bool is_one() const { return is_big() ? *this == m_one : m_num == 1 && m_den == 1; }
    [[nodiscard]] bool is_minus_one() const {
        return is_big() ? *this == m_minus_one : m_num == -1 && m_den == 1;
    }
    [[nodiscard]] bool is_neg() const { return is_big() ? sign_big() < 0 : m_num < 0; }
    [[nodiscard]] bool is_pos() const { return is_big() ? sign_big() > 0 : m_num > 0; }
    [[nodiscard]] bool is_nonneg() const { return !is_neg(); }
    [[nodiscard]] bool is_nonpos() const { return !is_pos(); }
    [[nodiscard]] bool is_int() const { return is_big() ? is_int_big() : m_den == 1; }
    // The representation; it says nothing about the value of a bignum.
    [[nodiscard]] constexpr bool is_fixnum() const { return m_den != 0; }

    // --- bits of integers, as infinite two's complement
    numeral& operator|=(numeral const& b);
    numeral& operator&=(numeral const& b);
    numeral& operator^=(numeral const& b);
    // Turns the lowest n bits around.
    void bitwise_complement(unsigned n);
    numeral& operator<<=(unsigned k);
    numeral& operator>>=(unsigned k); // rounds down
    [[nodiscard]] bool test_bit(unsigned i) const;
    // Bits of the absolute value, 1 for 0.
    [[nodiscard]] unsigned num_bits() const;
    friend numeral operator|(numeral a, numeral const& b) { return std::move(a |= b); }
    friend numeral operator&(numeral a, numeral const& b) { return std::move(a &= b); }
    friend numeral operator^(numeral a, numeral const& b) { return std::move(a ^= b); }
    friend numeral operator<<(numeral a, unsigned k) { return std::move(a <<= k); }
    friend numeral operator>>(numeral a, unsigned k) { return std::move(a >>= k); }

    // --- conversion
    [[nodiscard]] numeral numerator() const;
    [[nodiscard]] numeral denominator() const;
    // True when the value is an integer in the range of the type; get_* then gives it.
    [[nodiscard]] bool fits_int() const;
    [[nodiscard]] bool fits_long() const;
    [[nodiscard]] int get_int() const { return static_cast<int>(get_long()); }
    [[nodiscard]] long get_long() const;
    [[nodiscard]] bool fits_unsigned() const;
    [[nodiscard]] unsigned get_unsigned() const { return static_cast<unsigned>(get_long()); }
    [[nodiscard]] double get_double() const;
    void get_mpz(mpz_ptr result) const; // of an integer; otherwise its numerator
    void get_mpq(mpq_ptr result) const;
    // The numerator cut to a word, with its sign: the same for equal values in either form.
    [[nodiscard]] unsigned hash() const { return is_big() ? hash_big() : static_cast<unsigned>(m_num); }
    [[nodiscard]] std::string to_string() const;

    void check_invariant() const;

    // Truncates towards zero; for integers (denominators are ignored).
    friend numeral div(numeral const& a, numeral const& b);
    // The remainder of an integer in [0, |b|).
    friend numeral mod(numeral const& a, numeral const& b);
    // The remainder of an integer in [0, 2^k).
    friend numeral mod_2k(numeral const& a, unsigned k);
    friend numeral floor(numeral const& a);
    friend numeral ceil(numeral const& a);
    // Of integers; not negative; gcd(0, b) is |b|.
    friend numeral gcd(numeral const& a, numeral const& b);

private:
    constexpr bool is_big() const { return m_den == 0; }
    constexpr void forget() {
        m_num = 0;
        m_den = 1;
    }
    static constexpr bool in_range(long n) {
        return static_cast<unsigned long>(n) + max_fixnum <= 2ul * max_fixnum;
    }
    template <class T>
    static constexpr bool is_fixnum_value(T value) {
        if constexpr (std::is_unsigned_v<T>)
            return value <= static_cast<unsigned long>(max_fixnum);
        else
            return in_range(value);
    }
    template <class T>
    void init_integer(T value) {
        static_assert(sizeof(T) <= sizeof(long));
        if constexpr (std::is_unsigned_v<T>)
            init_unsigned(value);
        else
            set_big(value, 1);
    }
    void init_unsigned(unsigned long value);

    mpq_ptr slot() const { return numeral_pool::slot(m_num); }
    // The value as a GMP rational: the own slot, or the given scratch slot, set from a fixnum.
    mpq_srcptr set_tmp(unsigned scratch) const;
    // Takes a slot that keeps the value.
    void promote();
    // The reduced fraction n / d, whichever its form has to be; the form of a bignum stays.
    void set_reduced(long n, long d);
    void set_big(long n, long d);
    void copy_big(numeral const& other);
    numeral& assign_big(numeral const& other);
    template <class IntegerOp, class RationalOp>
    void apply_big(numeral const& b, IntegerOp integer_op, RationalOp rational_op);
    template <class Op>
    void apply_bits(numeral const& b, Op op);

    void add(numeral const& b);
    void sub(numeral const& b);
    void mul(numeral const& b);
    void rational_add(numeral const& b);
    void rational_sub(numeral const& b);
    void rational_mul(numeral const& b);
    void rational_div(numeral const& b);
    void neg_big();

    static bool equal_big(numeral const& a, numeral const& b);
    static int compare_big(numeral const& a, numeral const& b);
    int sign_big() const;
    bool is_int_big() const;
    unsigned hash_big() const;
    numeral big_part(bool num) const;

    void read_fraction(char const* text, char const* slash);
    void read_decimal(char const* text, char const* dot);
    void read_integer(char const* text, int base);

    int m_num = 0; // fixnum: numerator; bignum: slot in the pool
    int m_den = 1; // fixnum: denominator; bignum: 0
};

numeral div(numeral const& a, numeral const& b);
numeral mod(numeral const& a, numeral const& b);
numeral mod_2k(numeral const& a, unsigned k);
numeral floor(numeral const& a);
numeral ceil(numeral const& a);
// a - floor(a), in [0, 1).
numeral fractional_part(numeral const& a);
numeral gcd(numeral const& a, numeral const& b);
// (a / gcd(a, b)) * b: the sign is that of a * b; 0 when an argument is.
numeral lcm(numeral const& a, numeral const& b);
inline numeral abs(numeral a) {
    a.abs();
    return a;
}

std::ostream& operator<<(std::ostream& out, numeral const& a);
string_buffer& operator<<(string_buffer& out, numeral const& a);

struct hash_numeral {
    std::size_t operator()(numeral const& a) const { return a.hash(); }
};

// Greatest common divisors of words; gcd(a, 0) is a.
unsigned gcd(unsigned a, unsigned b);
unsigned long long ll_gcd(unsigned long long a, unsigned long long b);
// Reduces a fraction; d must be positive.
void normalize_ll_posden(long long& n, long long& d);

} // namespace vexor
