// Numerals from and to text.
#include <cctype>
#include <cstring>
#include <ostream>
#include <string>

#include "base/exceptions.h"
#include "base/numeral.h"
#include "base/string_buffer.h"

namespace vexor {

namespace {

// The value of a digit in bases up to 36, 99 for another character.
int digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 99;
}

// An integer at the start of a text: blanks, sign, for base 16 perhaps 0x, digits. What follows is ignored.
struct integer_text {
    bool m_negative = false;
    char const* m_digits; // the first digit
    char const* m_end;    // behind the last one

    integer_text(char const* text, int base) {
        while (std::isspace(static_cast<unsigned char>(*text))) text++;
        if (*text == '-' || *text == '+') m_negative = *text++ == '-';
        if (base == 16 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && digit_value(text[2]) < 16)
            text += 2;
        m_digits = m_end = text;
        while (digit_value(*m_end) < base) m_end++;
    }

    // True when the value is a fixnum; it is then the result.
    bool fits_fixnum(int base, int& result) const {
        long value = 0;
        for (char const* p = m_digits; p != m_end; p++) {
            value = value * base + digit_value(*p);
            if (value > numeral::max_fixnum) return false;
        }
        result = static_cast<int>(m_negative ? -value : value);
        return true;
    }
    void get_mpz(mpz_ptr result, int base) const {
        std::string digits(m_digits, m_end);
        if (digits.empty() || mpz_set_str(result, digits.c_str(), base) != 0) mpz_set_ui(result, 0);
        if (m_negative) mpz_neg(result, result);
    }
};

} // namespace

numeral::numeral(char const* text, int base) {
    VEXOR_ASSERT(base >= 2 && base <= 36);
    if (char const* slash = std::strchr(text, '/'))
        read_fraction(text, slash);
    else if (char const* dot = std::strchr(text, '.'))
        read_decimal(text, dot);
    else
        read_integer(text, base);
}

void numeral::read_integer(char const* text, int base) {
    integer_text integer(text, base);
    int value;
    if (integer.fits_fixnum(base, value)) {
        m_num = value;
        return;
    }
    promote();
    integer.get_mpz(mpq_numref(slot()), base);
}

void numeral::read_fraction(char const* text, char const* slash) {
    integer_text num(text, 10);
    integer_text den(slash + 1, 10);
    int n;
    int d;
    if (num.fits_fixnum(10, n) && den.fits_fixnum(10, d)) {
        *this = numeral(n);
        *this /= numeral(d); // throws when d is 0
        return;
    }
    // The slot must not be lost when the denominator is 0, so the value is complete before the slot is taken.
    numeral numerator;
    numeral denominator;
    numerator.promote();
    num.get_mpz(mpq_numref(numerator.slot()), 10);
    denominator.promote();
    den.get_mpz(mpq_numref(denominator.slot()), 10);
    numerator /= denominator;
    swap(numerator);
}

// digits.more stands for the integer "digitsmore" divided by 10^k, where k is the number of digits in "more".
void numeral::read_decimal(char const* text, char const* dot) {
    if (std::strlen(text) > 999) throw arithmetic_overflow_exception();
    integer_text whole(text, 10);
    std::string joined(whole.m_negative ? "-" : "");
    joined.append(whole.m_digits, whole.m_end);
    // A text like "1x.5" ends at the x.
    int k = 0;
    if (whole.m_end == dot) {
        for (char const* p = dot + 1; digit_value(*p) < 10; p++, k++) joined.push_back(*p);
    }
    numeral value(joined.c_str(), 10);
    value /= numeral(10).expt(k);
    swap(value);
}

std::string numeral::to_string() const {
    if (!is_big()) {
        std::string result = std::to_string(m_num);
        if (m_den != 1) result.append("/").append(std::to_string(m_den));
        return result;
    }
    mpq_ptr q = slot();
    std::string result(mpz_sizeinbase(mpq_numref(q), 10) + mpz_sizeinbase(mpq_denref(q), 10) + 3, 0);
    mpq_get_str(result.data(), 10, q);
    result.resize(std::strlen(result.c_str()));
    return result;
}

std::ostream& operator<<(std::ostream& out, numeral const& a) { return out << a.to_string(); }

string_buffer& operator<<(string_buffer& out, numeral const& a) {
    std::string text = a.to_string();
    out.append(text.c_str(), text.size());
    return out;
}

} // namespace vexor
