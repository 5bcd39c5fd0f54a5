// Drops learned clauses that are of little use to the present search.
//
// Idea:    a clause that took no part in recent conflicts stays only if few of its literals are unassigned
// now: it is
//          close to the search. Recent clauses are judged more mildly than old ones.
// Keeps:   clauses that an assignment rests on, clauses on out-of-order records, and those of outer user
// scopes. Cost:    linear in the literals of the learned clauses and the watch sets of the deleted ones.
#include "search/context.h"

#include "base/diagnostics.h"
#include "search/search_settings.h"

#include <algorithm>
#include <iostream>

namespace vexor {

void context::remove_irrelevant_learned_clauses() {
    if (get_verbosity_level() > 0) std::cerr << "c" << std::flush;
    unsigned const first = m_first_deletable_learned;
    unsigned const n = m_learned_clauses.size() - first;
    unsigned const num_parts = std::max(g_head_tail_ratio, 1u);
    unsigned const head_end = first + (n / num_parts) * (num_parts - 1);
    bitvector sets(m_watches.size());
    for (unsigned i = first; i < m_learned_clauses.size(); ++i) {
        clause_ref const ref = m_learned_clauses[i];
        clause& c = m_clauses[ref];
        if (c.removed() || c.out_of_order() || is_locked(ref)) continue;
        // Integer division: the quotient is 0 for every clause, and the limit is g_head_activity throughout.
        unsigned const limit = g_head_activity - (g_head_activity - g_tail_activity) * ((i - first) / n);
        if (c.activity() >= limit) continue;
        unsigned const relevancy = i < head_end ? g_head_relevancy : g_tail_relevancy;
        unsigned num_unassigned = 0;
        for (literal l : c) num_unassigned += value(l) == 0 ? 1 : 0;
        if (num_unassigned <= relevancy) continue;
        ++m_stats.m_num_deleted_clauses;
        c.set_removed();
        sets.set(static_cast<unsigned>((~c[0]).index()));
        sets.set(static_cast<unsigned>((~c[1]).index()));
    }
    sweep_watches(sets);
    remove_dead_clauses(m_learned_clauses, first, true);
    VEXOR_INVARIANT(2, check_invariant());
}

// Frees the removed clauses from first on; with decay the activity of the kept ones falls to a quarter.
void context::remove_dead_clauses(svector<clause_ref>& list, unsigned first, bool decay) {
    unsigned num_kept = first;
    for (unsigned i = first; i < list.size(); ++i) {
        clause_ref const ref = list[i];
        clause& c = m_clauses[ref];
        if (c.removed()) {
            forget_clause(ref);
            continue;
        }
        if (decay) c.set_activity(c.activity() >> 2);
        list[num_kept++] = ref;
    }
    list.shrink(num_kept);
    collect_clause_memory();
}

// A deletion by activity rank, for callers outside the search loop: the less active half of the clauses that
// can go.
void context::remove_half_of_learned_clauses() {
    if (get_verbosity_level() > 0) std::cerr << "h" << std::flush;
    unsigned const first = m_first_deletable_learned;
    std::stable_sort(
        m_learned_clauses.begin() + first, m_learned_clauses.end(),
        [this](clause_ref a, clause_ref b) { return m_clauses[a].activity() < m_clauses[b].activity(); });
    unsigned const middle = first + (m_learned_clauses.size() - first) / 2;
    for (unsigned i = first; i < middle; ++i) {
        clause_ref const ref = m_learned_clauses[i];
        clause& c = m_clauses[ref];
        auto const num_unassigned =
            std::count_if(c.begin(), c.end(), [this](literal l) { return value(l) == 0; });
        if (num_unassigned < 2 || c.out_of_order() || is_locked(ref)) continue;
        c.set_removed();
        ++m_stats.m_num_deleted_clauses;
    }
    bitvector all_sets;
    all_sets.resize(m_watches.size(), true);
    sweep_watches(all_sets);
    remove_dead_clauses(m_learned_clauses, first, true);
    VEXOR_INVARIANT(2, check_invariant());
}

} // namespace vexor
