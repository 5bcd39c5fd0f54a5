#include "base/numeral_ext.h"

#include <ostream>

namespace vexor {

constinit numeral_ext const numeral_ext::m_zero{};

numeral floor(numeral_ext const& x) {
    if (!x.get_real().is_int()) return floor(x.get_real());
    return x.get_delta().is_neg() ? x.get_real() - numeral::m_one : x.get_real();
}

numeral ceil(numeral_ext const& x) {
    if (!x.get_real().is_int()) return ceil(x.get_real());
    return x.get_delta().is_pos() ? x.get_real() + numeral::m_one : x.get_real();
}

// l.real + l.delta * d <= u.real + u.delta * d holds up to d = (u.real - l.real) / (l.delta - u.delta).
void update_delta(numeral_ext const& l, numeral_ext const& u, numeral& delta) {
    if (!(l.get_real() < u.get_real() && l.get_delta() > u.get_delta())) return;
    numeral largest = (u.get_real() - l.get_real()) / (l.get_delta() - u.get_delta());
    if (largest < delta) delta = largest;
}

std::string numeral_ext::to_string() const {
    if (m_delta.is_zero()) return m_real.to_string();
    return "(+ " + m_real.to_string() + " (* " + m_delta.to_string() + " delta))";
}

std::ostream& operator<<(std::ostream& out, numeral_ext const& x) { return out << x.to_string(); }

} // namespace vexor
