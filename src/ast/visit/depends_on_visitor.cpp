#include "ast/visit/depends_on_visitor.h"

namespace vexor {

bool depends_on_visitor::depends(ast* a, decl* d) {
    reset_decls();
    add_decl(d);
    return depends_core(a);
}

bool depends_on_visitor::depends_core(ast* a) {
    m_found = false;
    (*this)(a);
    return m_found;
}

void depends_on_visitor::accept(ast* a) {
    if (!m_found) for_each_visitor::accept(a);
}

void depends_on_visitor::visit(name_expr* n) {
    if (is_member(n->get_decl())) found();
}

void simple_depends_on_visitor::visit(type_name* n) {
    if (is_member(n->get_decl())) found();
}

} // namespace vexor
