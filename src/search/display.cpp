// Printed forms of variables, literals, clauses and reasons.
#include "search/context.h"

#include <ostream>

namespace vexor {

void context::display_bool_var(std::ostream& out, int var) const { out << "p!" << var; }

void context::display(std::ostream& out, literal l) const {
    if (l == true_literal) {
        out << "true";
    } else if (l == false_literal) {
        out << "false";
    } else if (l.sign()) {
        out << "(not ";
        display_bool_var(out, l.var());
        out << ")";
    } else {
        display_bool_var(out, l.var());
    }
}

void context::display(std::ostream& out, clause const& c) const {
    out << "(clause";
    for (literal l : c) {
        out << " ";
        display(out, l);
    }
    out << ")";
}

// For traces: how l came to hold.
char const* context::get_name(gexplanation reason, literal l) {
    switch (reason.tag()) {
    case gexplanation::binary:
        return "clause:unit";
    case gexplanation::clausal:
        return l == false_literal ? "clause:empty" : "clause:unit";
    case gexplanation::lazy:
        return reason.is_null() ? nullptr : reason.get_explanation()->get_name(this, l);
    case gexplanation::decision:
        break;
    }
    unsigned const level = timestamp2level(timestamp(l));
    return level <= m_base_lvl ? "asserted" : level <= m_search_lvl ? "assumption" : "decided";
}

} // namespace vexor
