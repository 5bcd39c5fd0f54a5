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

// Opens a scope with one decision. False when every variable has a value.
bool context::decide() {
    int const var = select_var();
    if (var == null_bool_var) return false;
    ++m_stats.m_num_decisions;
    if (get_verbosity_level() > 0 && m_stats.m_num_decisions % m_progress_interval == 0)
        std::cerr << "." << std::flush;
    create_backtrack_point();
    literal const l(var, !choose_phase(var));
    assign_unassigned(l, gexplanation::mk_decision(l));
    return true;
}

// True for a positive decision. Theories may fix the phase.
bool context::choose_phase(int var) {
    bool phase = false;
    bool_var_body const body = get_body(var);
    if (body.tag() == bool_var_body::atom_body) {
        if (body.get_atom()->decide(this, phase)) return phase;
    } else if (body.tag() == bool_var_body::equation_body && !body.is_null()) {
        if (m_egraph->decide_eq(body.get_equation(), phase)) return phase;
    }
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
