// How clauses enter and leave the database.
#include "search/context.h"

#include <algorithm>
#include <utility>

namespace vexor {

namespace {

// Clauses are short: insertion sort beats the general one up to a few dozen literals.
void sort_literals(svector<literal>& lits) {
    if (lits.size() > 32) {
        std::sort(lits.begin(), lits.end());
        return;
    }
    for (unsigned i = 1; i < lits.size(); ++i) {
        literal const l = lits[i];
        unsigned j = i;
        for (; j > 0 && l < lits[j - 1]; --j) lits[j] = lits[j - 1];
        lits[j] = l;
    }
}

} // namespace

// Sorting puts duplicates and complements side by side. Above the base level no assignment but that of the
// constant counts, since it can be undone while the clause stays.
bool context::copy_using_or_simplification_rules(svector<literal> const& in, svector<literal>& out) const {
    VEXOR_ASSERT(&in != &out);
    out.reset();
    out.append(in);
    sort_literals(out);
    bool const at_base = at_base_lvl();
    literal prev = null_literal;
    unsigned num_kept = 0;
    for (literal l : out) {
        VEXOR_ASSERT(l.index() >= 0 && static_cast<unsigned>(l.var()) < num_bool_vars());
        int const v = at_base || l.var() == 0 ? value(l) : 0;
        if (v > 0) return false;
        if (v < 0) continue;
        if (l.var() == prev.var()) {
            if (l == prev) continue;
            return false;
        }
        prev = l;
        out[num_kept++] = l;
    }
    out.shrink(num_kept);
    return true;
}

clause_ref context::create_clause_core(svector<literal> const& lits, clause_kind kind) {
    VEXOR_ASSERT(&lits != &m_simplified_lits);
    svector<literal> const* kept = &lits;
    if (kind == clause_kind::problem) ++m_num_input_clauses;
    if (kind != clause_kind::learned) {
        if (!copy_using_or_simplification_rules(lits, m_simplified_lits)) return null_clause;
        kept = &m_simplified_lits;
    }
    if (kept->size() <= 1) {
        assert_literal(kept->empty() ? false_literal : (*kept)[0]);
        return null_clause;
    }
    bool const learned = kind != clause_kind::problem;
    (learned ? m_stats.m_num_learned_literals : m_stats.m_num_problem_literals) += kept->size();
    if (kept->size() == 2) {
        create_binary_clause((*kept)[0], (*kept)[1], kind);
        return null_clause;
    }
    clause_ref const ref = m_clauses.create(kept->data(), kept->size(), learned);
    if (learned) m_clauses[ref].set_activity(1);
    (learned ? m_learned_clauses : m_problem_clauses).push_back(ref);
    choose_watches(m_clauses[ref], kind);
    attach_clause(ref);
    settle_new_clause(ref, kind);
    return ref;
}

void context::create_auxiliary_clause(literal a, literal b) {
    m_aux_lits.reset();
    m_aux_lits.push_back(a);
    m_aux_lits.push_back(b);
    create_clause_core(m_aux_lits, clause_kind::problem);
}

void context::create_auxiliary_clause(literal a, literal b, literal c) {
    m_aux_lits.reset();
    m_aux_lits.push_back(a);
    m_aux_lits.push_back(b);
    m_aux_lits.push_back(c);
    create_clause_core(m_aux_lits, clause_kind::problem);
}

// A binary clause is two watch entries and nothing else. It is remembered where its unit or false state must
// survive a backjump: a learned one asserts its first literal at the level of the second and needs that only
// when the first was re-assigned on the way back.
void context::create_binary_clause(literal a, literal b, clause_kind kind) {
    watches(~a).insert_literal(b);
    watches(~b).insert_literal(a);
    if (m_base_lvl != 0) m_base_level_trails.back().m_binary_clauses.push_back(binary_clause{a, b});
    bool const a_false = value(a) < 0;
    bool const b_false = value(b) < 0;
    if (!at_base_lvl()) {
        bool const must_record = kind == clause_kind::learned ? a_false && b_false : a_false || b_false;
        if (must_record) current_out_of_order_data().m_binary_clauses.push_back(binary_clause{a, b});
    }
    if (a_false && b_false)
        set_binary_clause_conflict(a, b);
    else if (a_false)
        assign_literal_core(b, gexplanation::mk_binary(~a));
    else if (b_false)
        assign_literal_core(a, gexplanation::mk_binary(~b));
}

// The watched literals must be those that are unassigned last on backtracking.
//
// A learned clause keeps its asserted literal in front and watches beside it the literal assigned last. At
// the base level simplification left only unassigned literals. Otherwise the two best literals come to the
// front.
void context::choose_watches(clause& c, clause_kind kind) {
    if (kind == clause_kind::learned) {
        unsigned best = 1;
        std::int64_t best_timestamp = 0;
        for (unsigned i = 1; i < c.size(); ++i) {
            if (timestamp(c[i]) <= best_timestamp) continue;
            best = i;
            best_timestamp = timestamp(c[i]);
        }
        std::swap(c[1], c[best]);
    } else if (!at_base_lvl()) {
        select_watch(c, 0);
        select_watch(c, 1);
    }
}

// Moves the best literal from position on to position: the true one assigned first, else the first unassigned
// one, else the false one assigned last.
void context::select_watch(clause& c, unsigned position) {
    constexpr unsigned none = ~0u;
    unsigned best_true = none;
    unsigned first_unassigned = none;
    unsigned best_false = none;
    for (unsigned i = position; i < c.size(); ++i) {
        int const v = value(c[i]);
        if (v > 0) {
            if (best_true == none || timestamp(c[i]) < timestamp(c[best_true])) best_true = i;
        } else if (v == 0) {
            if (first_unassigned == none) first_unassigned = i;
        } else if (best_false == none || timestamp(c[i]) > timestamp(c[best_false])) {
            best_false = i;
        }
    }
    unsigned const best = best_true != none          ? best_true
                          : first_unassigned != none ? first_unassigned
                                                     : best_false;
    std::swap(c[position], c[best]);
}

void context::attach_clause(clause_ref ref) {
    clause const& c = m_clauses[ref];
    watch_entry const entry(ref, m_clauses.new_slot(c[0], c[1]));
    watches(~c[0]).insert_clause(entry);
    watches(~c[1]).insert_clause(entry);
}

// Takes a clause out of both watch sets; a set that was freed at scope 0 holds no entry.
void context::detach_clause(clause_ref ref) {
    clause const& c = m_clauses[ref];
    watches(~c[0]).remove_clause(ref);
    watches(~c[1]).remove_clause(ref);
}

// Takes the removed clauses out of the given watch sets, which cover all of theirs. One walk over a set costs
// no more than the search for one of its clauses. The order of the other entries stays.
void context::sweep_watches(bitvector const& sets) {
    for (unsigned i = 0; i < m_watches.size(); ++i) {
        if (!sets.get(i)) continue;
        watch_set& set = m_watches[i];
        watch_entry* const kept =
            std::remove_if(set.begin_clauses(), set.end_clauses(), [this](watch_entry e) {
                return e.is_clause() && m_clauses[e.get_clause()].removed();
            });
        set.set_end_clauses(kept);
    }
}

// A new clause may be false or unit already. Lemmas and problem clauses above the base are then looked at
// again after each backjump; a learned clause only if it arrives false, since otherwise its watches are
// right.
void context::settle_new_clause(clause_ref ref, clause_kind kind) {
    clause const& c = m_clauses[ref];
    literal const first = c[0];
    if (value(first) < 0) {
        if (!at_base_lvl()) record_out_of_order(ref);
        set_conflict(gexplanation::mk_clause(ref));
    } else if (value(c[1]) < 0) {
        if (kind != clause_kind::learned && !at_base_lvl()) record_out_of_order(ref);
        assign_literal_core(first, gexplanation::mk_clause(ref));
    }
}

void context::record_out_of_order(clause_ref ref) {
    current_out_of_order_data().m_clauses.push_back(ref);
    m_clauses[ref].set_out_of_order(true);
}

// Subtracts a clause from the counters and gives its record back; the caller has detached it.
void context::forget_clause(clause_ref ref) {
    clause const& c = m_clauses[ref];
    (c.learned() ? m_stats.m_num_learned_literals : m_stats.m_num_problem_literals) -= c.size();
    m_clauses.free_clause(ref);
}

// An assignment, or the pending conflict, rests on the clause.
bool context::is_locked(clause_ref ref) const {
    gexplanation const self = gexplanation::mk_clause(ref);
    return antecedent(m_clauses[ref][0].var()) == self || m_conflict == self;
}

bool context::is_empty_clause(clause const& c) const {
    return std::all_of(c.begin(), c.end(), [this](literal l) { return value(l) < 0; });
}

bool context::is_unit_clause(clause const& c) const {
    return std::count_if(c.begin(), c.end(), [this](literal l) { return value(l) >= 0; }) == 1;
}

bool context::contains_clause(watch_set const& set, clause_ref ref) const {
    return std::any_of(set.begin_clauses(), set.end_clauses(),
                       [ref](watch_entry e) { return e.is_clause() && e.get_clause() == ref; });
}

// Moves the living clauses together when a fifth of their memory is holes. Problem clauses come first, each
// list in its order, so that what is read together stands together. Order of watch entries and lists is kept:
// the search does not notice.
//
// Does nothing while a conflict is pending, since the conflict may hold a clause where this walk cannot see
// it.
void context::collect_clause_memory() {
    if (!m_clauses.wants_collection() || inconsistent()) return;
    clause_store fresh;
    fresh.reserve(m_clauses.num_live_words());
    auto move = [&](clause_ref& ref) { ref = m_clauses.move_to(fresh, ref); };
    move(m_conflict_clause);
    for (clause_ref& ref : m_problem_clauses) move(ref);
    for (clause_ref& ref : m_learned_clauses) move(ref);
    for (out_of_order_data& record : m_out_of_order_stack)
        for (clause_ref& ref : record.m_clauses) move(ref);
    for (watch_set& set : m_watches) {
        for (watch_entry* it = set.begin_clauses(); it != set.end_clauses(); ++it) {
            if (!it->is_clause()) continue;
            clause_ref const ref = m_clauses.move_to(fresh, it->get_clause());
            *it = watch_entry(ref, m_clauses.moved_slot(it->get_clause()));
        }
    }
    for (trail_word word : m_trail) {
        if (!word.is_literal()) continue;
        gexplanation& reason = m_causes[static_cast<unsigned>(word.get_literal().var())].m_antecedent;
        if (reason.tag() == gexplanation::clausal)
            reason = gexplanation::mk_clause(m_clauses.move_to(fresh, reason.get_clause()));
    }
    m_clauses.swap(fresh);
    ++m_stats.m_num_collections;
}

} // namespace vexor
