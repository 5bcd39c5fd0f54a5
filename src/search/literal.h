// Literals: signed Boolean variables in one integer.
#pragma once

#include <iosfwd>

namespace vexor {

// The value 2 * var + sign. A literal and its complement are neighbours, so arrays indexed by literal keep
// both polarities of a variable on one cache line.
class literal {
public:
    constexpr literal()
        : m_val(-2) {}
    constexpr explicit literal(int var, bool sign = false)
        : m_val(2 * var + (sign ? 1 : 0)) {}

    [[nodiscard]] static constexpr literal from_index(int index) {
        literal l;
        l.m_val = index;
        return l;
    }

    [[nodiscard]] constexpr int var() const { return m_val >> 1; }
    [[nodiscard]] constexpr bool sign() const { return (m_val & 1) != 0; }
    [[nodiscard]] constexpr int index() const { return m_val; }
    [[nodiscard]] constexpr unsigned hash() const { return static_cast<unsigned>(m_val); }

    constexpr literal operator~() const { return from_index(m_val ^ 1); }
    friend constexpr bool operator==(literal a, literal b) { return a.m_val == b.m_val; }
    friend constexpr bool operator!=(literal a, literal b) { return a.m_val != b.m_val; }
    friend constexpr bool operator<(literal a, literal b) { return a.m_val < b.m_val; }

private:
    int m_val;
};

inline constexpr literal true_literal = literal::from_index(0);
inline constexpr literal false_literal = literal::from_index(1);
inline constexpr literal null_literal = literal::from_index(-2);

// Variables 0 (truth), 1 and 2 (probes of the definition table) are reserved.
inline constexpr int dummy_aux_bool_var = 1;
inline constexpr int dummy_decl_bool_var = 2;
inline constexpr int first_bool_var = 3;
inline constexpr literal first_literal = literal(first_bool_var);
inline constexpr int null_bool_var = -1;

// Literals are stored shifted left by two in tagged words of 32 bits and more, so variables end below 2^28.
inline constexpr unsigned max_num_bool_vars = 1u << 28;

// Prints "p" and the variable, or "(not p" variable ")".
std::ostream& operator<<(std::ostream& out, literal l);

} // namespace vexor
