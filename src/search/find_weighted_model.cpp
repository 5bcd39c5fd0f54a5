// One model, with its cost, by decisions that make weighted variables false.
#include "search/context.h"

#include "base/diagnostics.h"
#include "search/search_frames.h"

#include <iostream>
#include <utility>

namespace vexor {

// The variables without weight in a random order (Fisher, Yates).
void context::random_var_permutation() {
    svector<char> has_weight(num_bool_vars(), 0);
    for (weighted_var const& wv : m_weighted_vars) has_weight[static_cast<unsigned>(wv.m_var)] = 1;
    m_random_order.reset();
    for (unsigned var = first_bool_var; var < num_bool_vars(); ++var)
        if (has_weight[var] == 0) m_random_order.push_back(static_cast<int>(var));
    unsigned const n = m_random_order.size();
    for (unsigned i = 0; i < n; ++i) std::swap(m_random_order[i], m_random_order[i + m_random.below(n - i)]);
}

int context::find_weighted_model(bool random) {
    m_unsat_core.reset();
    m_validation_failed = false;
    m_incomplete_answer = nullptr;
    if (inconsistent()) return -1;
    if (!type_correct()) return 0;
    m_model.reset();
    if (get_verbosity_level() > 0) std::cerr << "searching...\n";
    int result = 0;
    {
        base_frame const frame(*this);
        assert_extra_assumptions(false);
        if (inconsistent()) {
            if (m_failed_assumption != null_literal) m_unsat_core.push_back(m_failed_assumption.index());
            return -1;
        }
        m_search_lvl = m_scope_lvl;
        m_hub->init_before_search();
        {
            weighted_decisions_frame const decisions(*this, random);
            result = search();
        }
        if (get_verbosity_level() > 0) std::cerr << "\n";
    }
    if (!type_correct()) return 0;
    if (result == 1 && m_model.is_valid()) {
        vector<weighted_var> vars;
        collect_payable_vars(vars);
        numeral cost;
        compute_cost(m_model, vars, cost);
        m_model.set_cost(cost);
    }
    return result == 1 && incomplete() ? 0 : result;
}

} // namespace vexor
