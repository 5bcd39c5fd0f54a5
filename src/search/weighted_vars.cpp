#include "search/weighted_vars.h"

#include "search/context.h"
#include "search/search_settings.h"

namespace vexor {

void weight_sum(vector<weighted_var> const& vars, numeral& result) {
    result = 0;
    for (weighted_var const& wv : vars) result += wv.m_weight;
}

void compute_cost(model const& m, vector<weighted_var> const& vars, numeral& result) {
    result = 0;
    for (weighted_var const& wv : vars)
        if (m.value(wv.m_var) == 1) result += wv.m_weight;
}

namespace {

// The greatest number of which both are integral multiples; not negative.
numeral rational_gcd(numeral const& a, numeral const& b) {
    numeral const scale = lcm(a.denominator(), b.denominator());
    return gcd(a * scale, b * scale) / scale;
}

} // namespace

void normalize_weighted_vars(vector<weighted_var>& vars, numeral& factor) {
    factor = 0;
    for (weighted_var const& wv : vars) factor = rational_gcd(factor, wv.m_weight);
    if (g_use_initial_maxsat_cost) factor = rational_gcd(factor, g_initial_maxsat_cost);
    if (factor.is_zero()) factor = 1;
    if (factor.is_one()) return;
    for (weighted_var& wv : vars) wv.m_weight /= factor;
}

constraint* assert_max_sat_aux_constraint(context* ctx, vector<weighted_var> const& vars,
                                          numeral const& bound) {
    vector<numeral> coeffs;
    svector<literal> lits;
    for (weighted_var const& wv : vars) {
        coeffs.push_back(wv.m_weight);
        lits.push_back(literal(wv.m_var, true));
    }
    return ctx->assert_lpb(coeffs, lits, bound);
}

void context::attach_weight(int var, numeral const& weight) {
    VEXOR_ASSERT(var >= first_bool_var && static_cast<unsigned>(var) < num_bool_vars());
    m_weighted_vars.push_back(weighted_var{weight, var});
}

literal context::create_fresh_weighted_bool_var(numeral const& weight) {
    literal const l = create_fresh_bool_var();
    attach_weight(l.var(), weight);
    return l;
}

// The weighted variables that a question has to pay for. A guard whose last assumption is positive belongs to
// a retracted assertion: it is true at no price.
void context::collect_payable_vars(vector<weighted_var>& result) const {
    svector<char> seen(num_bool_vars(), 0);
    for (unsigned i = m_assumptions.size(); i-- > 0;) {
        char& mark = seen[static_cast<unsigned>(m_assumptions[i].var())];
        if (mark == 0) mark = m_assumptions[i].sign() ? 1 : 2;
    }
    result.reset();
    for (weighted_var const& wv : m_weighted_vars)
        if (seen[static_cast<unsigned>(wv.m_var)] != 2) result.push_back(wv);
}

void context::get_inconsistent_assertions(svector<int>& out) const {
    vector<weighted_var> vars;
    collect_payable_vars(vars);
    for (weighted_var const& wv : vars)
        if (m_model.value(wv.m_var) == 1) out.push_back(literal(wv.m_var, true).index());
}

} // namespace vexor
