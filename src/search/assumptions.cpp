// Assumptions of a check, and the core of those that took part in a refutation.
#include "search/context.h"

namespace vexor {

bool context::assert_assumption(literal l) {
    bool const ok = assign_literal_core(l, gexplanation::mk_decision(l));
    if (!ok) m_failed_assumption = l;
    return ok;
}

// All assumptions share one scope. The walk runs backwards, so that a retraction hides the earlier assumption
// of its variable, and goes on after a failure. Nothing is propagated in between: a failure is a clash with a
// base fact.
//
// With weights, every weighted variable without an assumption of its own is assumed false: no soft constraint
// is switched off.
void context::assert_extra_assumptions(bool with_weights) {
    m_failed_assumption = null_literal;
    // What waits at the base must not lose its consequences when the scope is undone.
    if (!propagate_constraints()) return;
    with_weights = with_weights && !m_weighted_vars.empty();
    if (!m_assumptions.empty() || with_weights) {
        create_backtrack_point();
        // If all assumptions hold already, the first decision would otherwise begin where this scope begins.
        push_trail_record(g_dummy_trail_object);
        svector<char> seen;
        seen.resize(num_bool_vars(), 0);
        auto assume = [&](literal l) {
            char& mark = seen[static_cast<unsigned>(l.var())];
            if (mark == 0) assert_assumption(l);
            mark = 1;
        };
        for (unsigned i = m_assumptions.size(); i-- > 0;) assume(m_assumptions[i]);
        if (with_weights)
            for (weighted_var const& wv : m_weighted_vars) assume(literal(wv.m_var, true));
    }
    m_assumptions_timestamp = (static_cast<std::int64_t>(m_trail.size()) << 5) | (m_scope_lvl & 31);
}

// Walks the trail back from the conflict and collects the assumptions that it rests on, in the order met.
//
// Keeps:   the marked literals and the collected assumptions imply the conflict, together with the facts of
// the base. Ends:    the position falls; base facts are never marked, so the walk stays above index 0. Cost:
// linear in the visited reasons and the trail above the base.
void context::build_unsat_assumption_core() {
    m_unsat_core.reset();
    std::int64_t const floor = scope_floor(m_base_lvl + 1);
    unsigned num_open = 0;
    m_antecedent_lits.reset();
    append_antecedents(false_literal, m_conflict, m_antecedent_lits);
    unsigned position = m_trail.size();
    while (true) {
        for (literal l : m_antecedent_lits) {
            unsigned const var = static_cast<unsigned>(l.var());
            if (var == 0 || timestamp(l) < floor || m_marks.get(var)) continue;
            m_marks.set(var, true);
            ++num_open;
        }
        if (num_open == 0) return;
        do {
            VEXOR_ASSERT(position > 0);
            --position;
        } while (!m_trail[position].is_literal() ||
                 !m_marks.get(static_cast<unsigned>(m_trail[position].get_literal().var())));
        literal const l = m_trail[position].get_literal();
        if (timestamp(l) < m_assumptions_timestamp) m_unsat_core.push_back(l.index());
        m_marks.set(static_cast<unsigned>(l.var()), false);
        --num_open;
        m_antecedent_lits.reset();
        append_antecedents(l, antecedent(l.var()), m_antecedent_lits);
    }
}

} // namespace vexor
