#include "ast/node/name_expr.h"

#include "ast/node/nodes.h"

namespace vexor {

name_expr::name_expr(var_decl* d, int pos)
    : expr(pos)
    , m_decl(d) {
    VEXOR_ASSERT(d != nullptr);
    d->inc_num_name_exprs();
    set_free_vars_state(d->is_local() ? free_vars_state::some : free_vars_state::none);
}

name_expr::~name_expr() { m_decl->dec_num_name_exprs(); }

bool name_expr::is_fanout_one() const { return get_ref_count() < 2 && m_decl->get_num_name_exprs() == 1; }

shared_ptr<name_expr> name_expr::clone() const { return mk<name_expr>(get_decl(), get_pos()); }

shared_ptr<expr> name_expr::clone_to_expr() const { return clone(); }

void name_expr::set_decl(var_decl* d) {
    d->inc_num_name_exprs();
    m_decl->dec_num_name_exprs();
    m_decl = d;
    reset_cache();
}

shared_ptr<name_expr> immutable_name_expr::clone() const { return const_cast<immutable_name_expr*>(this); }

void immutable_name_expr::set_decl(var_decl*) {}

accessor_decl* accessor_name_expr::get_accessor() const { return static_cast<accessor_decl*>(get_decl()); }

recognizer_decl* recognizer_name_expr::get_recognizer() const {
    return static_cast<recognizer_decl*>(get_decl());
}

constructor_decl* constructor_name_expr::get_constructor() const {
    return static_cast<constructor_decl*>(get_decl());
}

scalar_element_decl* scalar_name_expr::get_element() const {
    return static_cast<scalar_element_decl*>(get_decl());
}

} // namespace vexor
