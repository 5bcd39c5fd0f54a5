// The value of a term, computed from the definition of each operator: an oracle for rewriting.
//
// Types are small: Booleans, bit-vectors of a few bits, scalar types, tuples and records of them, functions
// as tables. Numbers are small, too, and quantifiers over them range over a few values, which no rewrite of
// Boolean structure or binders can tell from all.
#pragma once

#include "ast/node/nodes.h"
#include "support/random.h"

#include <map>
#include <vector>

namespace vexor_test {

struct value {
    vexor::numeral m_number;    // Boolean (0, 1), bit-vector, scalar (index), number
    std::vector<value> m_parts; // tuple, record, values of a function in the order of all_arguments
    bool operator<(value const& other) const;
    bool operator==(value const& other) const { return !(*this < other) && !(other < *this); }
};

class term_evaluator {
public:
    // What an uninterpreted constant stands for.
    std::map<vexor::var_decl*, value> m_constants;

    value operator()(vexor::expr* e);
    bool is_true(vexor::expr* e) { return !(*this)(e).m_number.is_zero(); }
    // All values of a small type.
    std::vector<value> all_values(vexor::type* t);
    value random_value(vexor::type* t, random_stream& random);

private:
    value evaluate_application(vexor::application* a);
    value evaluate_operator(vexor::expr* fun, vexor::application* a);
    value evaluate_bv(vexor::application* a);
    value evaluate_binder(vexor::binding_expr* b);
    value apply_function(value const& f, vexor::type* t, std::vector<value> const& args);
    value update(vexor::update_expr* u);
    std::size_t index_of(vexor::type* function_type, std::vector<value> const& args);

    std::map<vexor::var_decl*, value> m_variables; // bound ones
};

} // namespace vexor_test
