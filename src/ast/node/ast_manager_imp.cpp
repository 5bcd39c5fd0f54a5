#include "ast/node/ast_manager_imp.h"

#include "ast/node/nodes.h"

namespace vexor {

void ast_manager_imp::forget_last_decl() {
    decl* d = m_decls.back();
    if (d->is_type_decl())
        m_type_decls.erase(d->get_name());
    else
        m_const_decls.erase(d->get_name());
    m_decls.pop_back();
}

void ast_manager_imp::keep_beyond_scopes(const_decl* d) {
    m_kept.push_back(d);
    // The types lead back to their declarations without references.
    if (d->is_constructor_decl()) {
        m_kept.push_back(static_cast<constructor_decl*>(d)->get_datatype());
    } else if (is_a<scalar_element_decl>(d)) {
        m_kept.push_back(static_cast<scalar_element_decl*>(d)->get_scalar_type());
    }
}

} // namespace vexor
