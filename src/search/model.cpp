#include "search/model.h"

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
