// Weighted Boolean variables: each one that is true costs its weight.
#pragma once

#include "base/numeral.h"
#include "base/vector.h"

namespace vexor {

class constraint;
class context;
class model;

// The guard of a soft constraint: true means that the constraint is switched off, at the price of the weight.
struct weighted_var {
    numeral m_weight;
    int m_var = -1;
};

// Heaviest first.
struct wv_lt {
    bool operator()(weighted_var const& a, weighted_var const& b) const { return a.m_weight > b.m_weight; }
};

// The sum of all weights.
void weight_sum(vector<weighted_var> const& vars, numeral& result);
// The sum of the weights of the variables that are true in the model.
void compute_cost(model const& m, vector<weighted_var> const& vars, numeral& result);
// Divides the weights by their greatest common divisor, which is returned in factor; under
// g_use_initial_maxsat_cost that cost takes part. Fractions have one, too: afterwards all weights are
// integers. The factor is 1 if all weights are zero.
void normalize_weighted_vars(vector<weighted_var>& vars, numeral& factor);
// Demands that the weights of the variables that are false sum up to bound at least; to be called at the base
// level, test inconsistent() afterwards.
constraint* assert_max_sat_aux_constraint(context* ctx, vector<weighted_var> const& vars,
                                          numeral const& bound);

} // namespace vexor
