// Conflict analysis: learns the clause of the first unique implication point.
//
// Idea:    resolve the conflict with the reasons of its literals, newest first, until one literal of the
// conflict's
//          level is left: the negation of that literal is implied one level earlier by the literals below.
// Keeps:   the antecedents seen so far and not yet resolved imply the conflict; those of the conflict's level
// are
//          marked and counted in m_num_open, the older ones stand negated in the learned clause. Facts of the
//          user's context (older than the first search scope) are dropped, for they hold until their scope is
//          popped, and the learned clause goes with it.
// Ends:    the trail position falls with each step.
// Cost:    linear in the visited reasons and the stretch of the trail that is walked.
// Source:  Marques-Silva, Sakallah, GRASP, IEEE Trans. Comp. 48(5), 1999; Zhang et al., Efficient conflict
// driven
//          learning in a Boolean satisfiability solver, ICCAD 2001.
// Differs: a theory explanation is expanded only when the walk reaches its literal.
#include "search/context.h"

#include <algorithm>

namespace vexor {

// Number of scopes that begin at or before ts.
unsigned context::timestamp2level(std::int64_t ts) const {
    unsigned const* const begin = m_scopes.begin();
    unsigned const* const end = m_scopes.end();
    return static_cast<unsigned>(std::upper_bound(begin, end, ts,
                                                  [](std::int64_t t, unsigned start) {
                                                      return t < (static_cast<std::int64_t>(start) << 5);
                                                  }) -
                                 begin);
}

std::int64_t context::get_conflict_max_timestamp() {
    std::int64_t result = scope_floor(m_base_lvl);
    m_antecedent_lits.reset();
    append_antecedents(false_literal, m_conflict, m_antecedent_lits);
    for (literal l : m_antecedent_lits) result = std::max(result, timestamp(l));
    return result;
}

// The conflict needs no decision: the context is unsatisfiable under the assumptions. The core is read off
// first, for the conflict object may live in an arena scope that the backtrack closes; what stays behind in
// m_conflict is a conflict that outlives all scopes.
void context::give_up_at_search_lvl() {
    if (m_scope_lvl > m_base_lvl) build_unsat_assumption_core();
    m_conflict = gexplanation::mk_lazy(&m_false);
    if (m_scope_lvl > m_search_lvl) backtrack(m_scope_lvl - m_search_lvl, false, false);
}

// False if the context is unsatisfiable at the search level.
bool context::resolve_conflict() {
    VEXOR_ASSERT(inconsistent());
    unsigned conflict_lvl = m_scope_lvl;
    std::int64_t level_floor = scope_floor(conflict_lvl);
    std::int64_t const max_timestamp = get_conflict_max_timestamp();
    if (level_floor > max_timestamp) {
        // Theories and lemmas report conflicts that lie wholly below the current scope.
        conflict_lvl = timestamp2level(max_timestamp);
        level_floor = scope_floor(conflict_lvl);
    }
    if (conflict_lvl <= m_search_lvl) {
        give_up_at_search_lvl();
        return false;
    }
    find_first_uip(level_floor, scope_floor(m_base_lvl + 1));
    m_stats.m_num_analyzed_literals += m_learned_lits.size();
    minimize_conflict_clause(m_learned_lits);
    m_stats.m_num_minimized_literals += m_learned_lits.size();

    // A backjump never passes the assumptions.
    std::int64_t back_timestamp = scope_floor(m_search_lvl);
    for (unsigned i = 1; i < m_learned_lits.size(); ++i) {
        m_marks.set(static_cast<unsigned>(m_learned_lits[i].var()), false);
        back_timestamp = std::max(back_timestamp, timestamp(m_learned_lits[i]));
    }
    backtrack(m_scope_lvl - timestamp2level(back_timestamp), false, true);
    create_clause_core(m_learned_lits, clause_kind::learned);
    return true;
}

// Fills m_learned_lits, its first literal being the negated implication point; the variables of the others
// are marked.
void context::find_first_uip(std::int64_t level_floor, std::int64_t base_floor) {
    m_learned_lits.reset();
    m_learned_lits.push_back(null_literal);
    m_num_open = 0;
    literal consequent = false_literal;
    gexplanation reason = m_conflict;
    unsigned position = m_trail.size();
    do {
        resolve_antecedents(consequent, reason, level_floor, base_floor);
        VEXOR_ASSERT(m_num_open > 0);
        do {
            VEXOR_ASSERT(position > 0);
            --position;
        } while (!m_trail[position].is_literal() ||
                 !m_marks.get(static_cast<unsigned>(m_trail[position].get_literal().var())));
        consequent = m_trail[position].get_literal();
        reason = antecedent(consequent.var());
        m_marks.set(static_cast<unsigned>(consequent.var()), false);
        --m_num_open;
    } while (m_num_open > 0);
    m_learned_lits[0] = ~consequent;
}

inline void context::resolve_antecedents(literal consequent, gexplanation reason, std::int64_t level_floor,
                                         std::int64_t base_floor) {
    switch (reason.tag()) {
    case gexplanation::binary:
        resolve_literal(reason.get_literal(), level_floor, base_floor);
        break;
    case gexplanation::decision:
        break;
    case gexplanation::clausal: {
        clause& c = m_clauses[reason.get_clause()];
        if (c.learned()) c.set_activity(c.activity() + 1);
        literal const* it = c.begin() + (consequent == false_literal ? 0 : 1);
        for (literal const* const end = c.end(); it != end; ++it)
            resolve_literal(~*it, level_floor, base_floor);
        break;
    }
    case gexplanation::lazy:
        m_antecedent_lits.reset();
        reason.get_explanation()->get_antecedents(consequent, m_antecedent_lits);
        for (literal l : m_antecedent_lits) resolve_literal(l, level_floor, base_floor);
        break;
    }
}

inline void context::resolve_literal(literal l, std::int64_t level_floor, std::int64_t base_floor) {
    VEXOR_ASSERT(value(l) > 0);
    unsigned const var = static_cast<unsigned>(l.var());
    std::int64_t const ts = m_causes[var].m_timestamp;
    if (ts < base_floor || m_marks.get(var)) return;
    m_marks.set(var, true);
    bump_activity(l.var());
    if (ts < level_floor)
        m_learned_lits.push_back(~l);
    else
        ++m_num_open;
}

inline void context::bump_activity(int var) {
    double& activity = m_activity[static_cast<unsigned>(var)];
    activity += m_var_inc;
    if (activity > 1e100) rescale_var_activity();
    if (m_var_heap.contains(var)) m_var_heap.increase(var);
}

// The same factor for all keeps the order of the heap.
void context::rescale_var_activity() {
    for (double& activity : m_activity) activity *= 1e-100;
    m_var_inc *= 1e-100;
}

} // namespace vexor
