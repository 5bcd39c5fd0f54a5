// A walk over the declared Boolean variables of a context.
#pragma once

#include "search/context.h"

namespace vexor {

// In the order of the variables. Variables may come while the walk goes on; when some go, reset it first.
class var_decl_iterator {
public:
    explicit var_decl_iterator(context const* owner)
        : m_context(owner) {}

    [[nodiscard]] bool has_next() {
        while (m_next < m_context->num_bool_vars() && !is_declared(m_next)) ++m_next;
        return m_next < m_context->num_bool_vars();
    }
    // There must be one.
    var_decl* next() {
        VEXOR_ASSERT(is_declared(m_next));
        return m_context->get_body(static_cast<int>(m_next++)).get_decl();
    }
    void reset() { m_next = first_bool_var; }

private:
    [[nodiscard]] bool is_declared(unsigned var) const {
        return m_context->get_body(static_cast<int>(var)).tag() == bool_var_body::decl_body;
    }

    context const* m_context;         // not owned
    unsigned m_next = first_bool_var; // variables below it are done
};

} // namespace vexor
