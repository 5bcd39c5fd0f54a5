#include "simplify/occurrences.h"

#include "base/deep_stack.h"

namespace vexor {

void occurrences::set_variables(var_decl* const* variables, unsigned n) {
    m_variables.reset();
    for (unsigned i = 0; i < n; ++i) m_variables.insert(variables[i], false);
    m_num_missing = m_variables.size();
}

bool occurrences::note(ast* a) {
    m_found = m_settled = false;
    m_steps_left = m_work_left > max_late_work ? m_work_left : max_late_work;
    unsigned steps = m_steps_left;
    for_each_visitor::reset();
    accept(a);
    steps -= m_steps_left;
    m_work_left -= steps < m_work_left ? steps : m_work_left;
    return m_found;
}

void occurrences::note_all() {
    for (auto& e : m_variables) e.m_value = true;
    m_num_missing = 0;
    m_found = m_settled = true;
}

// Closed terms are left out; that a term is closed is known to most nodes without a look below them.
void occurrences::accept(ast* a) {
    if (m_settled || a == nullptr || (a->is_expr() && !a->has_free_vars())) return;
    check_depth();
    if (m_steps_left == 0) return note_all();
    --m_steps_left;
    if (enter(a)) a->accept(this);
}

void occurrences::visit(name_expr* n) {
    bool* occurred = m_variables.find(n->get_decl());
    if (occurred == nullptr) return;
    m_found = true;
    if (!*occurred) {
        *occurred = true;
        --m_num_missing;
    }
    m_settled = m_num_missing == 0;
}

} // namespace vexor
