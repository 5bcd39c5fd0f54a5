// Giving values, and what follows from a contradiction.
#include "search/context.h"

namespace vexor {

bool context::assign_literal_core(literal l, gexplanation reason) {
    int const v = value(l);
    if (v > 0) return true;
    if (v == 0) {
        assign_unassigned(l, reason);
        return true;
    }
    auto* absurd = new (m_region.allocate(sizeof(absurd_explanation))) absurd_explanation(*this, ~l, reason);
    set_conflict(gexplanation::mk_lazy(absurd));
    return false;
}

void context::set_conflict(gexplanation conflict) {
    if (inconsistent()) return;
    m_conflict = conflict;
    ++m_stats.m_num_conflicts;
}

void context::set_binary_clause_conflict(literal a, literal b) {
    if (inconsistent()) return;
    clause& c = m_clauses[m_conflict_clause];
    c[0] = a;
    c[1] = b;
    set_conflict(gexplanation::mk_clause(m_conflict_clause));
}

// The timestamp of a unit drops to the floor of the base level: it counts as a fact of the base, wherever the
// search stands, and disappears from conflict analysis. Until the search is back there it is asserted again
// after each backjump.
void context::assert_literal(literal l) {
    if (m_scope_lvl > m_base_lvl) current_out_of_order_data().m_literals.push_back(l);
    if (l.var() != 0) {
        if (!assign_literal_core(l, gexplanation::mk_decision(l))) return;
        std::int64_t& ts = m_causes[static_cast<unsigned>(l.var())].m_timestamp;
        std::int64_t const floor = scope_floor(m_base_lvl);
        if (ts > floor) ts = floor;
    } else if (l == false_literal) {
        set_conflict(gexplanation::mk_lazy(&m_false));
    }
}

void context::assert_constraint(constraint* c) {
    m_constraints.push_back(c);
    if (c->init(this, true) && m_scope_lvl > m_base_lvl)
        current_out_of_order_data().m_constraints.push_back(c);
}

void context::set_incompleteness(char const* reason) {
    VEXOR_ASSERT(reason != nullptr);
    if (m_incomplete != nullptr) return;
    push_strong_trail(value_trail<char const*>(m_incomplete));
    m_incomplete = reason;
}

void context::count_reason(unsigned kind) {
    if (kind >= m_reason_counts.size()) m_reason_counts.resize(kind + 1, 0);
    ++m_reason_counts[kind];
}

void context::set_type_error(char const* text) {
    if (!m_type_correct) return;
    m_type_correct = false;
    m_type_error = text;
}

// Appends the true literals that imply consequent by reason; consequent is false_literal for a conflict.
void context::append_antecedents(literal consequent, gexplanation reason, svector<literal>& out) {
    switch (reason.tag()) {
    case gexplanation::binary:
        out.push_back(reason.get_literal());
        break;
    case gexplanation::decision:
        break;
    case gexplanation::clausal: {
        clause const& c = m_clauses[reason.get_clause()];
        for (unsigned i = consequent == false_literal ? 0 : 1; i < c.size(); ++i) out.push_back(~c[i]);
        break;
    }
    case gexplanation::lazy:
        reason.get_explanation()->get_antecedents(consequent, out);
        break;
    }
}

} // namespace vexor
