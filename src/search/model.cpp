#include "search/model.h"

#include "ast/node/nodes.h"
#include "search/context.h"

#include <ostream>

namespace vexor {

void model::reset() {
    m_cost = numeral(-1);
    m_valid = false;
    m_bool_assignment.reset();
}

void model::copy(model const& other) {
    m_cost = other.m_cost;
    m_context = other.m_context;
    m_valid = other.m_valid;
    m_bool_assignment = other.m_bool_assignment;
}

expr* model::get_value_for(var_decl* d) const {
    return m_valid ? m_context->get_theory_hub().get_value_for(*this, d) : nullptr;
}

expr* model::get_numeral_value_for(var_decl* d) const {
    expr* const value = get_value_for(d);
    return is_a<numeral_expr>(value) ? value : nullptr;
}

expr* model::get_bitvector_value_for(var_decl* d) const {
    expr* const value = get_value_for(d);
    return is_a<bitvector_constant>(value) ? value : nullptr;
}

// Variables that were made after the model have no value in it, those that were popped are gone.
void model::display(std::ostream& out) const {
    for (unsigned var = first_bool_var; var < m_context->num_bool_vars(); ++var) {
        int const v = value(static_cast<int>(var));
        if (v == 0 || m_context->get_body(static_cast<int>(var)).tag() != bool_var_body::decl_body) continue;
        out << "(= ";
        m_context->display_bool_var(out, static_cast<int>(var));
        out << (v > 0 ? " true)\n" : " false)\n");
    }
    out << "\n";
    if (!m_cost.is_neg()) out << "cost: " << m_cost << "\n";
}

void model::display_dimacs(std::ostream& out) const {
    for (unsigned var = first_bool_var; var < m_bool_assignment.size(); ++var) {
        if (m_bool_assignment[var] == 0) continue;
        if (var > first_bool_var) out << " ";
        if (m_bool_assignment[var] < 0) out << "-";
        out << var - (first_bool_var - 1);
    }
    out << "\n";
    if (!m_cost.is_neg()) out << "cost: " << m_cost << "\n";
}

} // namespace vexor
