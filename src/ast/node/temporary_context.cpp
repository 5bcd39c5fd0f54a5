#include "ast/node/temporary_context.h"

namespace vexor {

void temporary_context::add_fresh_var(var_decl* d) {
    if (m_known.insert(d)) m_fresh_vars.push_back(d);
}

void temporary_context::add_condition(expr* e) { m_conditions.push_back(e); }

shared_ptr<expr> temporary_context::to_local_context(expr* e) {
    if (m_conditions.empty()) return e;
    shared_ptr<expr> result =
        mk<local_context_expr>(e, m_conditions.data(), m_conditions.size(), e->get_pos());
    m_conditions.reset();
    return result;
}

shared_ptr<expr> temporary_context::to_fresh_vars_expr(expr* e) {
    if (m_fresh_vars.empty()) return e;
    shared_ptr<expr> result = mk<fresh_vars_expr>(m_fresh_vars.data(), m_fresh_vars.size(), e, e->get_pos());
    m_fresh_vars.reset();
    m_known.reset();
    return result;
}

void temporary_context::reset() {
    m_fresh_vars.reset();
    m_conditions.reset();
    m_known.reset();
}

} // namespace vexor
