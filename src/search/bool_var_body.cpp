#include "search/bool_var_body.h"

#include <ostream>

namespace vexor {

std::ostream& operator<<(std::ostream& out, aux_bool_var_def const& def) {
    char const* name = "or";
    if (def.m_kind == gate_kind::ite_gate) name = "ite";
    if (def.m_kind == gate_kind::iff_gate) name = "iff";
    out << "(" << name;
    for (literal l : def.m_args) out << " " << l;
    return out << ")";
}

} // namespace vexor
