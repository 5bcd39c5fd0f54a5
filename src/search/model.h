// The values that a satisfiable answer leaves behind.
#pragma once

#include "base/numeral.h"
#include "base/vector.h"

#include <iosfwd>

namespace vexor {

class context;
class expr;
class var_decl;

// Frozen at the end of a satisfiable check, since the assignment itself is undone at once. Valid until the
// next assertion, check, pop or reset of its context.
class model {
public:
    explicit model(context* owner)
        : m_context(owner) {}

    void reset();
    // Takes over cost, context, validity and the Boolean assignment of another model.
    void copy(model const& other);

    [[nodiscard]] bool is_valid() const { return m_valid; }
    [[nodiscard]] context* get_context() const { return m_context; }
    // 1 true, -1 false, 0 unassigned or unknown to the model.
    [[nodiscard]] int value(int var) const {
        unsigned const i = static_cast<unsigned>(var);
        return var >= 0 && i < m_bool_assignment.size() ? m_bool_assignment[i] : 0;
    }
    // The value of a declaration that is more than a Boolean variable: the term, the numeral_expr, the
    // bitvector_constant. Null if the model has none of that kind.
    [[nodiscard]] expr* get_value_for(var_decl* d) const;
    [[nodiscard]] expr* get_numeral_value_for(var_decl* d) const;
    [[nodiscard]] expr* get_bitvector_value_for(var_decl* d) const;
    // Negative while no cost was computed.
    [[nodiscard]] numeral const& cost() const { return m_cost; }
    void set_cost(numeral const& cost) { m_cost = cost; }

    // The numbers of the variables from first_bool_var on, counted from 1, each with its sign; unassigned
    // ones are left out. A line with the cost follows if there is one.
    void display_dimacs(std::ostream& out) const;
    // "(= name value)" for each declared Boolean variable with a value, one a line, then an empty line and
    // the cost, if there is one.
    void display(std::ostream& out) const;

private:
    friend class context;

    numeral m_cost = numeral(-1);           // weight of the violated assertions, in the user's units
    bool m_valid = false;                   // a model was built
    context* m_context;                     // the owner
    svector<signed char> m_bool_assignment; // by variable
};

} // namespace vexor
