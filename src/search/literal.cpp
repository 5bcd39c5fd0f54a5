#include "search/literal.h"

#include <ostream>

namespace vexor {

std::ostream& operator<<(std::ostream& out, literal l) {
    if (l == null_literal) return out << "null";
    if (l.sign()) return out << "(not p" << l.var() << ")";
    return out << "p" << l.var();
}

} // namespace vexor
