// What a scope remembers beside the trail.
#pragma once

#include "base/vector.h"
#include "search/clause.h"
#include "search/literal.h"

namespace vexor {

class constraint;

// A clause of two literals, remembered where no clause record stands for it.
struct binary_clause {
    literal m_first;
    literal m_second;
};

// Sizes of the databases at a user's push, so that pop can cut them.
struct base_level_trail {
    unsigned m_num_bool_vars = 0;
    unsigned m_num_assumptions = 0;
    unsigned m_num_weighted_vars = 0;
    unsigned m_num_input_clauses = 0;
    unsigned m_num_problem_clauses = 0;
    unsigned m_num_learned_clauses = 0;
    unsigned m_num_constraints = 0;
    unsigned m_first_deletable_learned = 0;  // the value before the push
    bool m_type_correct = true;              // the flag at the push, put back by pop
    svector<binary_clause> m_binary_clauses; // added in this scope: they have no record to count
};

// Things made above the scope that they belong to. Entry s - 1 of the stack belongs to scope s; when the
// scope is undone, context::reanalyze looks at them again.
struct out_of_order_data {
    bool m_empty = true;                  // any addition clears it, so that an untouched scope costs one test
    svector<literal> m_literals;          // asserted units
    ptr_vector<constraint> m_constraints; // constraints to initialize again
    svector<binary_clause> m_binary_clauses; // unit or false when made
    svector<clause_ref> m_clauses;           // unit or false when made; their out_of_order bit is set
    svector<int> m_bool_vars;                // created in the scope
};

} // namespace vexor
