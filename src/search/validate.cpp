// Whether the present assignment is what a satisfiable answer claims.
#include "search/context.h"

#include <algorithm>

namespace vexor {

// Learned clauses follow from the rest and are not looked at.
bool context::validate_assignment() {
    for (unsigned var = first_bool_var; var < num_bool_vars(); ++var) {
        literal l(static_cast<int>(var));
        if (value(l) == 0) continue;
        if (value(l) < 0) l = ~l;
        watch_set const& set = watches(l);
        if (std::any_of(set.begin_literals(), set.end_literals(), [this](literal x) { return value(x) < 0; }))
            return false;
    }
    for (clause_ref ref : m_problem_clauses) {
        clause const& c = m_clauses[ref];
        if (std::none_of(c.begin(), c.end(), [this](literal l) { return value(l) > 0; })) return false;
    }
    for (constraint* c : m_constraints)
        if (!c->is_satisfied(this)) return false;
    return m_hub->validate_assignment();
}

} // namespace vexor
