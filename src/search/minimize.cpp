// Removes from a learned clause the literals that the others imply.
//
// Idea:    a literal is redundant if every path of reasons back from it ends in literals of the clause or in
// facts of
//          the base.
// Keeps:   a marked variable is in the clause or implied by it; the marks of a failed walk are taken back,
// those of a
//          successful one stay, so that later literals profit.
// Ends:    each variable is pushed at most once per walk, and the implication graph has no cycle.
// Cost:    linear in the reasons visited; a literal of a scope without any literal of the clause ends a walk
// early,
//          tested on a set of 32 scopes by the scope number modulo 32.
// Source:  Soerensson, Biere, Minimizing learned clauses, SAT 2009.
#include "search/context.h"

namespace vexor {

namespace {

std::uint32_t level_bit(std::int64_t timestamp) { return std::uint32_t(1) << (timestamp & 31); }

} // namespace

void context::minimize_conflict_clause(svector<literal>& lits) {
    if (lits.size() < 2) return;
    std::int64_t const base_floor = scope_floor(m_base_lvl + 1);
    std::uint32_t levels = 0;
    for (literal l : lits) levels |= level_bit(timestamp(l));
    VEXOR_ASSERT(m_to_unmark.empty());
    unsigned num_kept = 1;
    for (unsigned i = 1; i < lits.size(); ++i) {
        literal const l = lits[i];
        if (implied_by_marked(l, base_floor, levels))
            m_to_unmark.push_back(l.var());
        else
            lits[num_kept++] = l;
    }
    restore_to_unmark_size(0);
    lits.shrink(num_kept);
}

void context::restore_to_unmark_size(unsigned size) {
    for (unsigned i = size; i < m_to_unmark.size(); ++i)
        m_marks.set(static_cast<unsigned>(m_to_unmark[i]), false);
    m_to_unmark.shrink(size);
}

// Depth-first walk over the reasons from the complement of l.
bool context::implied_by_marked(literal l, std::int64_t floor, std::uint32_t levels) {
    unsigned const old_size = m_to_unmark.size();
    m_implied_stack.reset();
    m_implied_stack.push_back(l.var());
    while (!m_implied_stack.empty()) {
        int const var = m_implied_stack.back();
        m_implied_stack.pop_back();
        gexplanation const reason = antecedent(var);
        bool implied = true;
        switch (reason.tag()) {
        case gexplanation::decision:
            implied = false;
            break;
        case gexplanation::binary:
            implied = visit_predecessor(reason.get_literal().var(), floor, levels);
            break;
        case gexplanation::clausal: {
            clause const& c = m_clauses[reason.get_clause()];
            for (unsigned i = 1; implied && i < c.size(); ++i)
                implied = visit_predecessor(c[i].var(), floor, levels);
            break;
        }
        case gexplanation::lazy: {
            literal const holder = value(literal(var)) > 0 ? literal(var) : literal(var, true);
            m_antecedent_lits.reset();
            reason.get_explanation()->get_antecedents(holder, m_antecedent_lits);
            implied = !m_antecedent_lits.empty();
            for (unsigned i = 0; implied && i < m_antecedent_lits.size(); ++i)
                implied = visit_predecessor(m_antecedent_lits[i].var(), floor, levels);
            break;
        }
        }
        if (!implied) {
            restore_to_unmark_size(old_size);
            return false;
        }
    }
    return true;
}

// False if var shows that the walk must fail: no literal of its scope is in the clause.
inline bool context::visit_predecessor(int var, std::int64_t floor, std::uint32_t levels) {
    std::int64_t const ts = m_causes[static_cast<unsigned>(var)].m_timestamp;
    if (ts < floor || m_marks.get(static_cast<unsigned>(var))) return true;
    if ((level_bit(ts) & levels) == 0) return false;
    m_marks.set(static_cast<unsigned>(var), true);
    m_to_unmark.push_back(var);
    m_implied_stack.push_back(var);
    return true;
}

} // namespace vexor
