#include "ast/visit/kind_visitors.h"

#include "ast/node/nodes.h"

namespace vexor {

// A loop, not a recursion: names of names nest as deep as the input likes.
bool expr_kind_visitor::operator()(ast const* a) {
    m_result = false;
    m_next = const_cast<ast*>(a);
    // An if-then-else is asked for its type as any other expression: its branches may be of different kinds.
    if (m_next->is_expr()) m_next = static_cast<expr*>(m_next)->get_type();
    while (m_next != nullptr) {
        ast* current = m_next;
        m_next = nullptr;
        current->accept(this);
    }
    return m_result;
}

void expr_kind_visitor::visit(type_name* n) { m_next = n->get_definition(); }

void expr_kind_visitor::visit(subtype* n) { m_next = n->get_decl()->get_type(); }

} // namespace vexor
