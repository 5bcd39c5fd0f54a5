// Removes what has become permanently true at scope 0: satisfied clauses and false literals.
//
// Keeps:   the remaining clauses, with the literals of scope 0, are equivalent to the clauses before.
// Ends:    one pass over the new trail and over the clauses.
// Cost:    linear in the database; it is paid for by as many propagations since the last pass as the database
// has
//          literals.
#include "search/context.h"

#include "base/diagnostics.h"
#include "search/search_settings.h"

#include <iostream>

namespace vexor {

void context::simplify_clauses() {
    VEXOR_ASSERT(m_scope_lvl == 0 && !inconsistent() && m_qhead == m_trail.size());
    if (!g_simplify_always && (m_trail.size() == m_simp_qhead || m_simp_budget > 0)) return;
    if (get_verbosity_level() > 0) std::cerr << "s" << std::flush;
    for (; m_simp_qhead < m_trail.size(); ++m_simp_qhead)
        if (m_trail[m_simp_qhead].is_literal()) discard_true_literal(m_trail[m_simp_qhead].get_literal());
    m_simp_budget = 0;
    simplify_clause_list(m_problem_clauses);
    simplify_clause_list(m_learned_clauses);
    collect_clause_memory();
    VEXOR_INVARIANT(2, check_invariant());
}

// The binary clauses that hold l are satisfied, and neither watch set of l is ever visited again.
void context::discard_true_literal(literal l) {
    watch_set const& satisfied = watches(~l);
    for (literal const* it = satisfied.begin_literals(); it != satisfied.end_literals(); ++it) {
        watches(~*it).remove_literal(l);
        ++m_stats.m_num_simplified_clauses;
    }
    watches(l).free_memory();
    watches(~l).free_memory();
}

void context::simplify_clause_list(svector<clause_ref>& list) {
    unsigned num_kept = 0;
    for (unsigned i = 0; i < list.size(); ++i) {
        if (!simplify_clause(list[i])) continue;
        m_simp_budget += m_clauses[list[i]].size();
        list[num_kept++] = list[i];
    }
    list.shrink(num_kept);
}

// False if the clause is gone.
bool context::simplify_clause(clause_ref ref) {
    clause& c = m_clauses[ref];
    VEXOR_ASSERT(!c.removed());
    if (c.out_of_order() || is_locked(ref)) return true;
    bool satisfied = value(c[0]) > 0 || value(c[1]) > 0;
    unsigned num_kept = 2;
    for (unsigned i = 2; !satisfied && i < c.size(); ++i) {
        int const v = value(c[i]);
        satisfied = v > 0;
        if (v == 0) c[num_kept++] = c[i];
    }
    if (satisfied) {
        ++m_stats.m_num_simplified_clauses;
        detach_clause(ref);
        forget_clause(ref);
        return false;
    }
    if (num_kept < c.size()) {
        unsigned const dropped = c.size() - num_kept;
        (c.learned() ? m_stats.m_num_learned_literals : m_stats.m_num_problem_literals) -= dropped;
        c.shrink(num_kept);
        m_clauses.clause_shrunk(dropped);
    }
    return true;
}

} // namespace vexor
