// Printed forms of variables, literals, clauses and reasons.
#include "search/context.h"

#include "ast/node/nodes.h"
#include "search/frozen_reason.h"

#include <ostream>

namespace vexor {

void context::display_bool_var(std::ostream& out, int var) const {
    bool_var_body const body = get_body(var);
    if (body.tag() == bool_var_body::decl_body)
        out << body.get_decl()->get_name().c_str();
    else if (body.has_atom())
        m_hub->display_atom(body.get_atom(), out);
    else
        out << "p!" << var;
}

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

// Units, clauses and constraints, one a line; learned clauses are left out.
void context::display(std::ostream& out) const {
    for (trail_word word : m_trail) {
        if (!word.is_literal()) continue;
        display(out, word.get_literal());
        out << "\n";
    }
    for (unsigned i = 0; i < m_watches.size(); ++i) {
        literal const n = ~literal::from_index(static_cast<int>(i));
        for (literal const* it = m_watches[i].begin_literals(); it != m_watches[i].end_literals(); ++it) {
            if (*it < n) continue;
            out << "(clause ";
            display(out, n);
            out << " ";
            display(out, *it);
            out << ")\n";
        }
    }
    for (clause_ref ref : m_problem_clauses) {
        display(out, m_clauses[ref]);
        out << "\n";
    }
    for (constraint* c : m_constraints) {
        c->display(this, out);
        out << "\n";
    }
    m_hub->display(out);
}

void context::display_theory_statistics(std::ostream& out, char const* prefix) const {
    m_hub->display_statistics(out, prefix);
    for (unsigned i = 0; i < m_reason_counts.size(); ++i)
        if (m_reason_counts[i] != 0)
            out << prefix << "reasons." << reason_kind::get(i).name() << " " << m_reason_counts[i] << "\n";
}

// For traces: how l came to hold.
char const* context::get_name(gexplanation reason, literal l) {
    switch (reason.tag()) {
    case gexplanation::binary:
        return "clause:unit";
    case gexplanation::clausal:
        return l == false_literal ? "clause:empty" : "clause:unit";
    case gexplanation::lazy:
        return reason.is_null() ? nullptr : reason.get_explanation()->get_name(l);
    case gexplanation::decision:
        break;
    }
    unsigned const level = timestamp2level(timestamp(l));
    return level <= m_base_lvl ? "asserted" : level <= m_search_lvl ? "assumption" : "decided";
}

} // namespace vexor
