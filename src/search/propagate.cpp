// Unit propagation with two watched literals, and the hand-over of assigned atoms to the theories.
//
// Idea:    a clause is visited only when one of its first two literals becomes false; it then looks for
// another
//          literal that is not false, and is unit or false if there is none. Binary clauses are lists of
//          literals.
// Keeps:   with the queue empty and no conflict, a clause with a false watch has a true other watch, or its
// literals
//          were assigned in another order and it is on an out-of-order record.
// Ends:    each trail position is visited once, and each visit walks one watch set once.
// Cost:    linear in the visited watch entries; a clause is scanned from its third literal.
// Source:  Moskewicz et al., Chaff: engineering an efficient SAT solver, DAC 2001.
// Differs: the other watched literal is read from a dense array and not from the clause. A blocking literal
// in the
//          entry would save that access too, but an outdated one that happens to be true would keep a watch
//          where the clause is to look for another, and so change the course of the search.
#include "search/context.h"

#include <bit>
#include <cstddef>

namespace vexor {

bool context::propagate_constraints() {
    if (inconsistent()) {
        drop_pending_work();
        return false;
    }
    while (!nothing_waits()) {
        bool const consistent = propagate_boolean_constraints();
        m_qhead = m_trail.size();
        if (!consistent || !propagate_theories()) {
            drop_pending_work();
            return false;
        }
    }
    VEXOR_INVARIANT(3, check_invariant());
    return true;
}

// Nothing stale may run once the search has jumped back.
void context::drop_pending_work() { m_hub->reset_propagation_queue(); }

bool context::propagate_boolean_constraints() {
    while (m_qhead < m_trail.size()) {
        trail_word const word = m_trail[m_qhead++];
        if (!word.is_literal()) continue;
        literal const l = word.get_literal();
        ++m_stats.m_num_propagations;
        --m_simp_budget;
        if (!propagate_binary_clauses(l) || !propagate_watched_clauses(l)) return false;
    }
    return true;
}

// The other literals of the binary clauses that hold the complement of l; no clause memory is touched.
inline bool context::propagate_binary_clauses(literal l) {
    watch_set const& set = watches(l);
    gexplanation const reason = gexplanation::mk_binary(l);
    literal const* const end = set.end_literals();
    for (literal const* it = set.begin_literals(); it != end; ++it) {
        int const v = value(*it);
        if (v > 0) continue;
        if (v < 0) {
            set_binary_clause_conflict(~l, *it);
            return false;
        }
        assign_unassigned(*it, reason);
    }
    return true;
}

namespace {

// The first literal that is not false, or end. In longer clauses the first four are looked at without a
// branch between them: where the search stops is hard to foresee, and a wrong guess costs more than four
// looks.
inline literal* find_not_false(literal* it, literal* end, signed char const* values) {
    if (end - it >= 4) {
        unsigned found = 0;
        for (unsigned i = 0; i < 4; ++i) found |= unsigned(values[it[i].index()] >= 0) << i;
        if (found != 0) return it + std::countr_zero(found);
        it += 4;
    }
    while (it != end && values[it->index()] < 0) ++it;
    return it;
}

} // namespace

// Walks the clause region with a read and a write position. Clauses move to sets of literals that are not
// false. A constraint may do more: variables and clauses that it makes move the arrays, and a clause that
// watches the complement of l lands behind the entries that are still to be read. It must not take entries
// out of the set of l but by its answer.
bool context::propagate_watched_clauses(literal l) {
    literal const n = ~l;
    watch_set* set = &watches(l);
    watch_entry* read = set->begin_clauses();
    watch_entry* write = read;
    watch_entry* end = set->end_clauses();
    std::uint32_t* words = m_clauses.words();
    std::uint32_t* watch_xors = m_clauses.watch_xors();
    signed char const* values = m_assignment.data();
    bool consistent = true;
    while (read != end) {
        watch_entry const entry = *read++;
        if (!entry.is_clause()) [[unlikely]] {
            std::ptrdiff_t const read_at = read - set->begin_clauses();
            std::ptrdiff_t const write_at = write - set->begin_clauses();
            auto find_again = [&] {
                set = &watches(l);
                read = set->begin_clauses() + read_at;
                write = set->begin_clauses() + write_at;
                end = set->end_clauses();
                words = m_clauses.words();
                watch_xors = m_clauses.watch_xors();
                values = m_assignment.data();
            };
            bool const keep = entry.get_constraint()->propagate(this, l);
            find_again();
            if (keep) *write++ = entry;
            if (!inconsistent()) continue;
            consistent = false;
            break;
        }
        std::uint32_t& watch_xor = watch_xors[entry.get_slot()];
        literal const other = literal::from_index(static_cast<int>(watch_xor) ^ n.index());
        signed char const other_value = values[other.index()];
        if (other_value > 0) {
            *write++ = entry;
            continue;
        }
        clause_ref const ref = entry.get_clause();
        clause& c = *reinterpret_cast<clause*>(words + ref);
        literal* const lits = c.begin();
        VEXOR_ASSERT((lits[0] == n && lits[1] == other) || (lits[0] == other && lits[1] == n));
        literal* const lits_end = c.end();
        literal* const found = find_not_false(lits + 2, lits_end, values);
        lits[0] = other;
        if (found != lits_end) {
            literal const next = *found;
            lits[1] = next;
            *found = n;
            watch_xor = static_cast<std::uint32_t>(other.index() ^ next.index());
            watches(~next).insert_clause(entry);
            continue;
        }
        lits[1] = n;
        *write++ = entry;
        if (other_value < 0) {
            set_conflict(gexplanation::mk_clause(ref));
            consistent = false;
            break;
        }
        assign_unassigned(other, gexplanation::mk_clause(ref));
    }
    if (write != read) {
        while (read != end) *write++ = *read++;
        set->set_end_clauses(write);
    }
    return consistent;
}

// Hands the assigned atoms to the theories and lets them propagate.
bool context::propagate_theories() {
    if (!hand_over_atoms()) return false;
    m_hub->propagate();
    return !inconsistent();
}

// The atoms assigned since the last time, in the order of their assignment. What a theory assigns meanwhile waits
// for the next round, behind Boolean propagation. After a conflict the head stands behind the last atom that was
// taken, so that none is lost that a backjump leaves assigned.
bool context::hand_over_atoms() {
    m_handed_lits.reset();
    unsigned const begin = m_theory_qhead;
    unsigned const end = m_trail.size();
    VEXOR_ASSERT(begin <= end && m_qhead == end);
    m_theory_qhead = end;
    if (m_num_atoms == 0) return true;
    for (unsigned i = begin; i < end; ++i) {
        if (!m_trail[i].is_literal()) continue;
        literal const l = m_trail[i].get_literal();
        if (m_has_atom.get(static_cast<unsigned>(l.var()))) m_handed_lits.push_back(l);
    }
    if (m_handed_lits.empty()) return true;
    unsigned const num_taken = m_hub->assigned(m_handed_lits.data(), m_handed_lits.size());
    VEXOR_ASSERT(num_taken <= m_handed_lits.size());
    if (num_taken < m_handed_lits.size()) {
        VEXOR_ASSERT(inconsistent());
        literal const next = m_handed_lits[num_taken];
        m_theory_qhead = begin;
        while (!m_trail[m_theory_qhead].is_literal() || m_trail[m_theory_qhead].get_literal() != next)
            ++m_theory_qhead;
    }
    return !inconsistent();
}

} // namespace vexor
