// Numbers with an infinitesimal part, by which strict bounds become weak ones: x > 5 is x >= 5 + delta.
#pragma once

#include <iosfwd>

#include "base/numeral.h"

namespace vexor {

// m_real + m_delta * delta, for an infinitesimal delta > 0. A value type, ordered lexicographically.
class numeral_ext {
public:
    constexpr numeral_ext() = default;
    numeral_ext(numeral const& real)
        : m_real(real) {}
    numeral_ext(numeral const& real, numeral const& delta)
        : m_real(real)
        , m_delta(delta) {}

    static numeral_ext const m_zero;

    [[nodiscard]] numeral const& get_real() const { return m_real; }
    [[nodiscard]] numeral const& get_delta() const { return m_delta; }

    numeral_ext& operator+=(numeral_ext const& b) {
        m_real += b.m_real;
        m_delta += b.m_delta;
        return *this;
    }
    numeral_ext& operator-=(numeral_ext const& b) {
        m_real -= b.m_real;
        m_delta -= b.m_delta;
        return *this;
    }
    // The factor may be a part of this object, so it is not read after the first component has changed.
    numeral_ext& operator*=(numeral const& factor) {
        if (is_part(factor)) return *this *= numeral(factor);
        m_real *= factor;
        m_delta *= factor;
        return *this;
    }
    numeral_ext& operator/=(numeral const& divisor) {
        if (is_part(divisor)) return *this /= numeral(divisor);
        m_real /= divisor;
        m_delta /= divisor;
        return *this;
    }
    void neg() {
        m_real.neg();
        m_delta.neg();
    }
    friend numeral_ext operator+(numeral_ext a, numeral_ext const& b) { return std::move(a += b); }
    friend numeral_ext operator-(numeral_ext a, numeral_ext const& b) { return std::move(a -= b); }
    friend numeral_ext operator*(numeral_ext a, numeral const& b) { return std::move(a *= b); }
    friend numeral_ext operator*(numeral const& a, numeral_ext b) { return std::move(b *= a); }
    friend numeral_ext operator/(numeral_ext a, numeral const& b) { return std::move(a /= b); }
    numeral_ext operator-() const {
        numeral_ext result(*this);
        result.neg();
        return result;
    }

    friend bool operator==(numeral_ext const& a, numeral_ext const& b) {
        return a.m_real == b.m_real && a.m_delta == b.m_delta;
    }
    friend bool operator<(numeral_ext const& a, numeral_ext const& b) {
        return a.m_real < b.m_real || (a.m_real == b.m_real && a.m_delta < b.m_delta);
    }
    friend bool operator>(numeral_ext const& a, numeral_ext const& b) { return b < a; }
    friend bool operator<=(numeral_ext const& a, numeral_ext const& b) { return !(b < a); }
    friend bool operator>=(numeral_ext const& a, numeral_ext const& b) { return !(a < b); }

    [[nodiscard]] bool is_zero() const { return m_real.is_zero() && m_delta.is_zero(); }
    [[nodiscard]] bool is_pos() const { return m_real.is_pos() || (m_real.is_zero() && m_delta.is_pos()); }
    [[nodiscard]] bool is_neg() const { return m_real.is_neg() || (m_real.is_zero() && m_delta.is_neg()); }
    // An integer without infinitesimal part.
    [[nodiscard]] bool is_int() const { return m_real.is_int() && m_delta.is_zero(); }
    // Decimal text: the real part alone, or (+ real (* coefficient delta)).
    [[nodiscard]] std::string to_string() const;
    void swap(numeral_ext& other) noexcept {
        m_real.swap(other.m_real);
        m_delta.swap(other.m_delta);
    }

private:
    bool is_part(numeral const& a) const { return &a == &m_real || &a == &m_delta; }

    numeral m_real;  // the value without the infinitesimal
    numeral m_delta; // coefficient of delta
};

// The greatest integer that is not above x, the least one that is not below.
numeral floor(numeral_ext const& x);
numeral ceil(numeral_ext const& x);

// Given l <= u, lowers delta so far that l <= u holds with the number delta in place of the infinitesimal.
void update_delta(numeral_ext const& l, numeral_ext const& u, numeral& delta);

std::ostream& operator<<(std::ostream& out, numeral_ext const& x);

} // namespace vexor
