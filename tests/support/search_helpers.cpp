#include "support/search_helpers.h"

#include "support/random.h"

namespace vexor_test {

void add_random_3sat(vexor::context& ctx, std::vector<vexor::literal> const& vars, unsigned num_clauses,
                     unsigned long long seed) {
    random_stream r(seed);
    for (unsigned i = 0; i < num_clauses; ++i) {
        vexor::svector<vexor::literal> c;
        for (unsigned j = 0; j < 3; ++j) {
            vexor::literal const l = vars[r.below(static_cast<unsigned>(vars.size()))];
            c.push_back(r.chance(50) ? l : ~l);
        }
        ctx.create_clause_core(c, vexor::clause_kind::problem);
    }
}

} // namespace vexor_test
