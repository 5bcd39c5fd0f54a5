// Puts the plain problems of the optimization tests into a context.
#pragma once

#include "search/context.h"
#include "support/weighted_problem.h"

namespace vexor_test {

// Variable k of a problem is the k-th Boolean variable behind the reserved ones.
inline vexor::literal to_literal(int lit) {
    int const var = (lit < 0 ? -lit : lit) + vexor::first_bool_var - 1;
    return vexor::literal(var, lit < 0);
}

inline void create_vars(vexor::context& ctx, int count) {
    for (int i = 0; i < count; ++i) ctx.create_fresh_bool_var();
}

inline void add_clause(vexor::context& ctx, plain_clause const& clause,
                       vexor::literal extra = vexor::false_literal) {
    vexor::svector<vexor::literal> lits;
    for (int lit : clause) lits.push_back(to_literal(lit));
    if (extra != vexor::false_literal) lits.push_back(extra);
    ctx.create_clause_core(lits, vexor::clause_kind::problem);
}

// Coefficients and bound are divided by the denominator.
inline vexor::constraint* add_lpb(vexor::context& ctx, plain_lpb const& source, int denominator = 1) {
    vexor::vector<vexor::numeral> coeffs;
    vexor::svector<vexor::literal> lits;
    for (std::size_t i = 0; i < source.lits.size(); ++i) {
        coeffs.push_back(vexor::numeral(source.coeffs[i]) / denominator);
        lits.push_back(to_literal(source.lits[i]));
    }
    return ctx.assert_lpb(coeffs, lits, vexor::numeral(source.bound) / denominator);
}

// The guard of the soft clause.
inline vexor::literal add_soft(vexor::context& ctx, plain_soft const& soft, int denominator = 1) {
    vexor::literal const guard =
        ctx.create_fresh_weighted_bool_var(vexor::numeral(soft.weight) / denominator);
    add_clause(ctx, soft.clause, guard);
    return guard;
}

// The variables of the problem, with those that the model leaves open false.
inline unsigned assignment_of(vexor::model const& m, int num_vars) {
    unsigned result = 0;
    for (int k = 1; k <= num_vars; ++k)
        if (m.value(to_literal(k).var()) > 0) result |= 1u << (k - 1);
    return result;
}

} // namespace vexor_test
