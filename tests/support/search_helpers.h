// Short forms for tests of the search.
#pragma once

#include "search/context.h"

#include <initializer_list>
#include <vector>

namespace vexor_test {

inline vexor::svector<vexor::literal> lits(std::initializer_list<vexor::literal> list) {
    vexor::svector<vexor::literal> result;
    for (vexor::literal l : list) result.push_back(l);
    return result;
}

inline vexor::clause_ref add(vexor::context& ctx, std::initializer_list<vexor::literal> list,
                             vexor::clause_kind kind = vexor::clause_kind::problem) {
    return ctx.create_clause_core(lits(list), kind);
}

inline std::vector<vexor::literal> fresh(vexor::context& ctx, unsigned n) {
    std::vector<vexor::literal> result;
    for (unsigned i = 0; i < n; ++i) result.push_back(ctx.create_fresh_bool_var());
    return result;
}

// n + 1 pigeons in n holes: unsatisfiable, and hard for resolution. Returns the variables, by pigeon and
// hole.
inline std::vector<vexor::literal> add_pigeonhole(vexor::context& ctx, unsigned n) {
    std::vector<vexor::literal> x = fresh(ctx, (n + 1) * n);
    for (unsigned p = 0; p <= n; ++p) {
        vexor::svector<vexor::literal> c;
        for (unsigned h = 0; h < n; ++h) c.push_back(x[p * n + h]);
        ctx.create_clause_core(c, vexor::clause_kind::problem);
    }
    for (unsigned h = 0; h < n; ++h)
        for (unsigned p = 0; p <= n; ++p)
            for (unsigned q = 0; q < p; ++q) ctx.create_auxiliary_clause(~x[p * n + h], ~x[q * n + h]);
    return x;
}

// A fixed satisfiable or unsatisfiable random problem of three literals per clause.
void add_random_3sat(vexor::context& ctx, std::vector<vexor::literal> const& vars, unsigned num_clauses,
                     unsigned long long seed);

} // namespace vexor_test
