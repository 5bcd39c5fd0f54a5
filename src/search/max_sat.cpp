// Max-SAT: a model whose true weighted variables weigh least.
//
// Idea:    cores raise the lower bound first, see max_sat_cores.cpp; where they do not settle it, a
// pseudo-Boolean constraint limits the weight that may be paid. The first phase looks for any
//          model, with a limit that grows from round to round; the second lowers the limit below the cost of
//          the best model until nothing is left.
// Keeps:   no model costs m_lower or less; the best model so far is in the context, with its cost. The limit
//          of the second phase is always one below that cost.
// Ends:    a limit that grows to the sum of all weights forbids nothing, and is then searched to the end; in
//          the second phase each model is cheaper than the one before.
// Cost:    no useful bound known; the second phase keeps what was learned, since its constraint is edited in
//          place.
// Source:  own; the second phase is the linear search of Eén, Sörensson, Translating pseudo-Boolean
//          constraints into SAT, JSAT 2, 2006, with native propagation of the objective.
#include "search/max_sat_search.h"

#include "base/diagnostics.h"
#include "search/lpb_constraint.h"
#include "search/search_settings.h"

#include <algorithm>
#include <iostream>

namespace vexor {

namespace {

constexpr unsigned max_num_trials = 20;      // runs for one limit of the first phase
constexpr unsigned trial_conflicts = 2000;   // conflicts of each
constexpr unsigned round_clauses = 50000;    // clause limit in the second phase
constexpr double trial_clauses = 0.333;      // clause limit of a trial, in parts of the input
constexpr double trial_clauses_growth = 1.1; // and its growth

} // namespace

max_sat_search::max_sat_search(context& ctx)
    : m_context(ctx) {
    vector<weighted_var>& vars = ctx.m_sorted_weighted_vars;
    ctx.collect_payable_vars(vars);
    unsigned num_kept = 0;
    for (unsigned i = 0; i < vars.size(); ++i)
        if (!vars[i].m_weight.is_zero()) std::swap(vars[num_kept++], vars[i]);
    vars.shrink(num_kept);
    std::stable_sort(vars.begin(), vars.end(), wv_lt());
    normalize_weighted_vars(vars, m_factor);
    for (weighted_var const& wv : vars) (wv.m_weight.is_neg() ? m_least : m_most) += wv.m_weight;
    m_total = m_most - m_least;
    ctx.m_need_assignment = true;
    ctx.m_stats.m_num_maxsat_iterations = 0;
}

max_sat_search::~max_sat_search() {
    m_context.m_need_assignment = m_context.m_prefer_weighted_vars = false;
    m_context.m_next_weighted_var = 0;
    m_context.m_sorted_weighted_vars.reset();
}

void max_sat_search::choose_first_bound() {
    m_bound = 1;
    if (g_use_initial_maxsat_cost) m_bound = std::max(numeral(0), g_initial_maxsat_cost / m_factor - m_least);
    m_bound = std::min(std::max(m_bound, m_lower + 1), m_total);
}

// A clash of an assumption with a fact leaves a core without it.
void max_sat_search::note_failed_assumption(int result) {
    context& ctx = m_context;
    if (result == -1 && ctx.m_failed_assumption != null_literal && ctx.m_unsat_core.empty())
        ctx.m_unsat_core.push_back(ctx.m_failed_assumption.index());
}

int max_sat_search::run() {
    int result = raise_lower_bound();
    if (result == 0 && m_context.keep_searching()) {
        result = m_has_model ? 1 : find_model();
        if (result == 1) result = improve_model(m_has_model);
    }
    if (get_verbosity_level() > 1) std::cerr << "\n";
    if (result != -1) m_context.m_unsat_core.reset();
    if (result == 1 && m_context.incomplete()) result = 0;
    m_scope.reset();
    return result;
}

// First phase. After 1 the scope of the constraint is open.
int max_sat_search::find_model() {
    choose_first_bound();
    while (true) {
        int const result = try_bound();
        if (result == 1) return 1;
        bool const go_on = m_context.keep_searching();
        bool const is_last = bound_forbids_nothing();
        m_scope.reset();
        if (m_context.inconsistent() || (result == -1 && is_last)) return -1;
        if (!go_on || is_last) return 0;
        if (result == -1) m_lower = m_bound;
        grow_bound();
    }
}

void max_sat_search::grow_bound() {
    numeral const grown = ceil(m_bound * numeral(6) / numeral(5));
    m_bound = std::min(std::max(m_bound + 1, grown), m_total);
}

int max_sat_search::try_bound() {
    context& ctx = m_context;
    ctx.m_hub->init_before_search();
    m_scope.emplace(ctx);
    if (!m_scope->is_open()) return -1;
    m_constraint = assert_max_sat_aux_constraint(&ctx, ctx.m_sorted_weighted_vars, m_most - m_bound);
    ctx.assert_extra_assumptions(false);
    ctx.m_search_lvl = ctx.m_scope_lvl;
    if (get_verbosity_level() > 19) std::cerr << "\ntrying(" << to_user(m_bound) << ") " << std::flush;
    int const result = run_trials();
    note_failed_assumption(result);
    return result;
}

int max_sat_search::run_trials() {
    context& ctx = m_context;
    bool const is_last = bound_forbids_nothing();
    double clause_limit = trial_clauses * ctx.m_num_input_clauses;
    int result = 0;
    ctx.m_next_weighted_var = 0;
    ctx.m_prefer_weighted_vars = true;
    for (unsigned i = 0; i < max_num_trials && result == 0 && ctx.keep_searching(); ++i) {
        ++ctx.m_stats.m_num_maxsat_iterations;
        result = ctx.search_core(trial_conflicts, static_cast<unsigned>(clause_limit), is_last);
        clause_limit *= trial_clauses_growth;
        ctx.m_prefer_weighted_vars = false;
    }
    return result;
}

// Second phase; the first model may be on record already.
int max_sat_search::improve_model(bool is_recorded) {
    for (unsigned num_rounds = 0;; ++num_rounds) {
        if (num_rounds > 0 || !is_recorded) record_model();
        m_bound = m_cost - 1;
        if (m_cost.is_zero() || m_bound <= m_lower) return 1;
        if (num_rounds > g_max_num_iterations_in_maxsat) return 0;
        set_lpb_coeff(&m_context, m_constraint, m_most - m_bound);
        int const result = run_round();
        if (result != 1) return -result;
    }
}

int max_sat_search::run_round() {
    context& ctx = m_context;
    int result = 0;
    unsigned const max_num_runs = g_max_num_runs_in_maxsat_iteration;
    ctx.m_prefer_weighted_vars = true;
    for (unsigned i = 0; (max_num_runs == 0 || i < max_num_runs) && result == 0 && ctx.keep_searching();
         ++i) {
        ++ctx.m_stats.m_num_maxsat_iterations;
        result = ctx.search_core(g_max_num_conflicts_in_maxsat_iteration, round_clauses, false);
        ctx.m_prefer_weighted_vars = false;
    }
    return result;
}

void max_sat_search::record_model() {
    compute_cost(m_context.m_model, m_context.m_sorted_weighted_vars, m_cost);
    m_cost -= m_least;
    VEXOR_ASSERT(m_lower < m_cost && m_cost <= m_bound);
    m_has_model = true;
    m_context.m_model.set_cost(to_user(m_cost));
    if (get_verbosity_level() > 1) std::cerr << "cost(" << m_context.m_model.cost() << ")" << std::flush;
    if (m_context.m_improvement_callback) m_context.m_improvement_callback(m_context);
}

int context::max_sat() {
    vector<weighted_var> vars;
    collect_payable_vars(vars);
    if (vars.empty()) {
        int const result = check();
        if (result == 1) m_model.set_cost(0);
        return result;
    }
    m_unsat_core.reset();
    m_validation_failed = false;
    m_incomplete_answer = nullptr;
    if (inconsistent()) return -1;
    if (!type_correct()) return 0;
    m_model.reset();
    if (!propagate_constraints()) return -1;
    stop_frame const stoppable(*this);
    return max_sat_search(*this).run();
}

} // namespace vexor
