// Decisions: mostly the most active variable, now and then a random one.
#include "search/context.h"

#include "base/diagnostics.h"
#include "search/search_settings.h"

#include <iostream>

namespace vexor {

namespace {

constexpr double random_decision_frequency = 0.02;

} // namespace

// A random choice that hits a reserved or assigned variable is not repeated; a random variable stays in the
// heap and is skipped there while it is assigned.
int context::select_var() {
    if (m_prefer_weighted_vars) {
        int const var = select_preferred_var();
        if (var != null_bool_var) return var;
    }
    if (m_random.draw() < random_decision_frequency) {
        int const var = static_cast<int>(m_random.below(num_bool_vars()));
        if (var >= first_bool_var && value(literal(var)) == 0) return var;
    }
    while (!m_var_heap.empty()) {
        int const var = m_var_heap.erase_min();
        if (value(literal(var)) == 0) return var;
    }
    return null_bool_var;
}

// The heaviest unassigned variable behind the last choice.
int context::select_preferred_var() {
    for (unsigned i = m_next_weighted_var; i < m_sorted_weighted_vars.size(); ++i) {
        int const var = m_sorted_weighted_vars[i].m_var;
        if (value(literal(var)) != 0) continue;
        push_strong_trail(value_trail<unsigned>(m_next_weighted_var));
        m_next_weighted_var = i + 1;
        return var;
    }
    return null_bool_var;
}

// Moves the cursor to the first unassigned element and returns that element's variable. What the cursor
// passes stays assigned as long as the present scope.
template <typename Sequence, typename VarOf>
int context::advance_to_unassigned(Sequence const& sequence, unsigned& cursor, VarOf var_of) {
    for (unsigned i = cursor; i < sequence.size(); ++i) {
        int const var = var_of(sequence[i]);
        if (value(literal(var)) != 0) continue;
        if (i != cursor) {
            push_strong_trail(value_trail<unsigned>(cursor));
            cursor = i;
        }
        return var;
    }
    return null_bool_var;
}

int context::select_random_var() {
    return advance_to_unassigned(m_random_order, m_next_random_var, [](int var) { return var; });
}

int context::select_unassigned_weighted_var() {
    return advance_to_unassigned(m_weighted_vars, m_next_weighted_var,
                                 [](weighted_var const& wv) { return wv.m_var; });
}

// True if a variable was found and its phase is fixed. Variables that the search made itself stand in neither
// list.
bool context::choose_var_by_weight(int& var, bool& phase) {
    var = select_random_var();
    if (var != null_bool_var) {
        phase = m_random.coin();
        return true;
    }
    var = select_unassigned_weighted_var();
    phase = false;
    return var != null_bool_var;
}

// Opens a scope with one decision. False when every variable has a value.
bool context::decide() {
    int var = null_bool_var;
    bool phase = false;
    bool const has_phase = m_decide_by_weight && choose_var_by_weight(var, phase);
    if (!has_phase) var = select_var();
    if (var == null_bool_var) return false;
    VEXOR_ASSERT(!inconsistent() && nothing_waits());
    ++m_stats.m_num_decisions;
    if (get_verbosity_level() > 0 && m_stats.m_num_decisions % m_progress_interval == 0)
        std::cerr << "." << std::flush;
    create_backtrack_point();
    if (!has_phase) phase = choose_phase(var);
    literal const l(var, !phase);
    assign_unassigned(l, gexplanation::mk_decision(l));
    return true;
}

// True for a positive decision. Theories may fix the phase.
bool context::choose_phase(int var) {
    bool phase = false;
    bool_var_body const body = get_body(var);
    if (body.has_atom() && m_hub->decide_atom(body.get_atom(), phase)) return phase;
    switch (g_decision_polarity) {
    case 0:
        return false;
    case 1:
        return true;
    case alternating_polarity:
        return (m_stats.m_num_restarts & 1) != 0 && m_last_phase.get(static_cast<unsigned>(var));
    case saved_polarity:
        return m_last_phase.get(static_cast<unsigned>(var));
    default:
        return m_random.coin();
    }
}

} // namespace vexor
