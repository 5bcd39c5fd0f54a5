// A lower bound for Max-SAT by unsatisfiable cores.
//
// Idea:    assume that nothing costs. A refutation names a core, weighted literals of which at least one must
//          be true: the least weight among them is paid in any case and taken off all of them, and what it
//          costs if more than one is true goes to an output, a fresh literal that is true if two of the core
//          are. Outputs are assumed free like the others; when one is paid, the output for one more appears.
//          A model under the assumptions is a candidate: from then on cheaper ones only are looked for.
//          Heavy literals are assumed first, so that early models are good.
// Keeps:   m_lower + 1 plus the weights of the true softs is the cost of every model that has its outputs as
//          low as possible and costs less than the best one so far; all weights are positive or paid off.
// Ends:    each core raises the lower bound by at least 1, each model lowers the cost by at least 1, and a
//          round without either lowers the threshold; in any case after a limited number of conflicts.
// Cost:    no useful bound known. One constraint per output.
// Source:  Andres et al., Unsatisfiability-based optimization in clasp, ICLP 2012; Morgado et al.,
// Core-guided
//          MaxSAT with soft cardinality constraints, CP 2014; stratification after Ansótegui et al., SAT
//          2012.
// Differs: the sums are pseudo-Boolean constraints that propagate natively, and the limit on the cost takes
//          part in the search, so that hardening comes from its propagation.
#include "search/max_sat_search.h"

#include "search/lpb_constraint.h"
#include "search/search_settings.h"

#include <algorithm>

namespace vexor {

namespace {

constexpr unsigned first_run_conflicts = 100; // of one run between restarts
constexpr double run_growth = 1.2;            // from run to run
constexpr std::uint64_t first_model_conflicts = 2000;
constexpr std::uint64_t trim_conflicts = 1000; // for one attempt to make a core smaller
constexpr unsigned max_num_trims = 3;          // attempts
constexpr std::uint64_t no_limit = ~std::uint64_t{0};

} // namespace

// 1 if the model is a best one, -1 if there is no model at all, 0 if the other phases have to go on. They go
// on in the open scope if there is a model, which then limits the cost.
int max_sat_search::raise_lower_bound() {
    if (g_max_num_conflicts_with_maxsat_cores == 0 || g_use_initial_maxsat_cost || !collect_softs()) return 0;
    context& ctx = m_context;
    ctx.m_hub->init_before_search();
    m_scope.emplace(ctx);
    if (!m_scope->is_open()) return -1;
    m_bound = m_total;
    m_constraint = assert_max_sat_aux_constraint(&ctx, ctx.m_sorted_weighted_vars, m_most - m_bound);
    m_conflict_end = ctx.num_conflicts() + g_max_num_conflicts_with_maxsat_cores;
    int const result = search_with_cores();
    if (result == 1 || (result == 0 && m_has_model)) {
        if (result == 0) {
            ctx.assert_extra_assumptions(false);
            ctx.m_search_lvl = ctx.m_scope_lvl;
        }
        return result;
    }
    note_failed_assumption(result);
    m_scope.reset();
    return result;
}

// False if a weight is negative: such a variable would have to be assumed true.
bool max_sat_search::collect_softs() {
    m_soft_of.resize(m_context.num_bool_vars(), -1);
    for (weighted_var const& wv : m_context.m_sorted_weighted_vars) {
        if (wv.m_weight.is_neg()) return false;
        int& position = m_soft_of[static_cast<unsigned>(wv.m_var)];
        if (position < 0) {
            position = static_cast<int>(m_softs.size());
            m_softs.push_back(soft{literal(wv.m_var), numeral(), -1, 0});
        }
        m_softs[static_cast<unsigned>(position)].m_weight += wv.m_weight;
        m_threshold = std::max(m_threshold, m_softs[static_cast<unsigned>(position)].m_weight);
    }
    return true;
}

int max_sat_search::search_with_cores() {
    context& ctx = m_context;
    int const first = search_for_any_model();
    if (first == -1 || (first == 1 && !limit_cost())) return first;
    while (true) {
        settle_known_softs();
        if (ctx.inconsistent()) {
            ctx.m_unsat_core.reset();
            return m_has_model ? 1 : -1;
        }
        if (m_has_model && m_lower >= m_bound) return 1;
        select_assumptions();
        int const result = search_under_assumptions(m_assumed, no_limit);
        if (result == 0) return 0;
        if (result == -1) {
            extract_core();
            if (m_core.empty()) return m_has_model ? 1 : -1;
            trim_core();
            relax_core();
            continue;
        }
        if (!limit_cost()) return 1;
        if (!lower_threshold() && !ctx.inconsistent()) return 0;
    }
}

// A model of some cost, while it is cheap to have: a search that is stopped among the cores then has one to
// show, and heavy literals may be settled by the limit on the cost.
int max_sat_search::search_for_any_model() {
    m_assumed.reset();
    m_context.m_next_weighted_var = 0;
    m_context.m_prefer_weighted_vars = true;
    int const result = search_under_assumptions(m_assumed, first_model_conflicts);
    m_context.m_prefer_weighted_vars = false;
    return result;
}

// Records the model and demands cheaper ones; false if there can be none. Must stand at the base level, where
// the new bound lasts.
bool max_sat_search::limit_cost() {
    record_model();
    m_bound = m_cost - 1;
    if (m_cost.is_zero() || m_bound <= m_lower) return false;
    set_lpb_coeff(&m_context, m_constraint, m_most - m_bound);
    return true;
}

// What holds at the base level needs no search: a true literal is paid for.
void max_sat_search::settle_known_softs() {
    m_context.propagate_constraints();
    for (unsigned i = 0; i < m_softs.size() && !m_context.inconsistent(); ++i) {
        if (m_softs[i].m_weight.is_zero() || m_context.value(m_softs[i].m_lit) <= 0) continue;
        numeral const weight = m_softs[i].m_weight;
        m_lower += weight;
        pay(static_cast<int>(i), weight);
        m_context.propagate_constraints();
    }
}

void max_sat_search::select_assumptions() {
    m_assumed.reset();
    for (unsigned i = 0; i < m_softs.size(); ++i) {
        soft const& s = m_softs[i];
        if (s.m_weight.is_zero() || s.m_weight < m_threshold || m_context.value(s.m_lit) != 0) continue;
        m_assumed.push_back(static_cast<int>(i));
    }
}

// Ends at the base level; 0 if the conflicts of the phase or the given number are used up, or after a stop.
int max_sat_search::search_under_assumptions(svector<int> const& softs, std::uint64_t max_conflicts) {
    context& ctx = m_context;
    unsigned const num_assumptions = ctx.m_assumptions.size();
    for (int i : softs) ctx.m_assumptions.push_back(~m_softs[static_cast<unsigned>(i)].m_lit);
    ctx.m_unsat_core.reset();
    ctx.assert_extra_assumptions(false);
    ctx.m_assumptions.shrink(num_assumptions);
    ctx.m_search_lvl = ctx.m_scope_lvl;
    std::uint64_t const start = ctx.num_conflicts();
    std::uint64_t const end =
        start + std::min(max_conflicts, m_conflict_end - std::min(start, m_conflict_end));
    double run_conflicts = first_run_conflicts;
    int result = 0;
    while (result == 0 && ctx.keep_searching() && ctx.num_conflicts() < end) {
        ++ctx.m_stats.m_num_maxsat_iterations;
        result = ctx.search_core(static_cast<unsigned>(run_conflicts), 0, false);
        run_conflicts *= run_growth;
    }
    ctx.return_to_scope(ctx.m_base_lvl);
    return result;
}

// The softs among the assumptions of the last refutation. What the user assumes may be a soft, too, which is
// left out when it has been paid for.
void max_sat_search::extract_core() {
    m_core.reset();
    for (int index : m_context.m_unsat_core) {
        unsigned const var = static_cast<unsigned>(literal::from_index(index).var());
        int const i = var < m_soft_of.size() ? m_soft_of[var] : -1;
        if (i >= 0 && m_softs[static_cast<unsigned>(i)].m_weight.is_pos()) m_core.push_back(i);
    }
}

// Another refutation from the core alone often needs less of it.
void max_sat_search::trim_core() {
    for (unsigned i = 0; i < max_num_trims && m_core.size() > 1; ++i) {
        unsigned const old_size = m_core.size();
        svector<int> const core = m_core;
        if (search_under_assumptions(core, trim_conflicts) != -1) return;
        extract_core();
        if (m_core.size() >= old_size || m_core.empty()) {
            m_core = core;
            return;
        }
    }
}

void max_sat_search::relax_core() {
    numeral least = m_softs[static_cast<unsigned>(m_core[0])].m_weight;
    for (int i : m_core) least = std::min(least, m_softs[static_cast<unsigned>(i)].m_weight);
    m_lower += least;
    int const position = static_cast<int>(m_sums.size());
    if (m_core.size() > 1) {
        m_sums.push_back(sum());
        for (int i : m_core) m_sums.back().m_lits.push_back(m_softs[static_cast<unsigned>(i)].m_lit);
        m_sums.back().m_outputs.resize(m_core.size() + 1, -1);
    }
    for (int i : m_core) pay(i, least);
    if (m_core.size() > 1) require_output(position, 2, least);
}

void max_sat_search::pay(int i, numeral const& weight) {
    soft& s = m_softs[static_cast<unsigned>(i)];
    s.m_weight -= weight;
    VEXOR_ASSERT(s.m_weight.is_nonneg());
    if (s.m_sum >= 0) require_output(s.m_sum, s.m_index + 1, weight);
}

// Lets it cost weight if index literals of the sum are true.
void max_sat_search::require_output(int position, unsigned index, numeral const& weight) {
    if (index > m_sums[static_cast<unsigned>(position)].m_lits.size()) return;
    int output = m_sums[static_cast<unsigned>(position)].m_outputs[index];
    if (output < 0) {
        output = static_cast<int>(m_softs.size());
        m_sums[static_cast<unsigned>(position)].m_outputs[index] = output;
        literal const l = create_output(position, index);
        m_softs.push_back(soft{l, numeral(), position, index});
        m_soft_of.resize(m_context.num_bool_vars(), -1);
        m_soft_of[static_cast<unsigned>(l.var())] = output;
    }
    m_softs[static_cast<unsigned>(output)].m_weight += weight;
}

// A literal l with: l or at most index - 1 of the n literals are true. As a constraint, with m = n - index +
// 1: m * l + sum of (not x) >= m
literal max_sat_search::create_output(int position, unsigned index) {
    context& ctx = m_context;
    svector<literal> const& source = m_sums[static_cast<unsigned>(position)].m_lits;
    literal const output = ctx.create_fresh_bool_var();
    svector<literal> lits;
    vector<numeral> coeffs;
    for (literal x : source) {
        lits.push_back(~x);
        coeffs.push_back(1);
    }
    unsigned const m = source.size() - index + 1;
    lits.push_back(output);
    coeffs.push_back(m);
    if (m == 1)
        ctx.create_clause_core(lits, clause_kind::problem);
    else
        ctx.assert_lpb_core(coeffs, lits, m);
    return output;
}

// To the next weights, down to half of the greatest; false if all are assumed already.
bool max_sat_search::lower_threshold() {
    numeral next;
    for (soft const& s : m_softs)
        if (s.m_weight < m_threshold) next = std::max(next, s.m_weight);
    if (next.is_zero()) return false;
    m_threshold = std::max(numeral(1), floor(next / numeral(2)));
    return true;
}

} // namespace vexor
