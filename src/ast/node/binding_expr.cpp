#include "ast/node/binding_expr.h"

#include "ast/node/ast_exceptions.h"
#include "ast/node/nodes.h"

namespace vexor {

binding_expr::binding_expr(var_decl* binding, expr* e, int pos)
    : binding_expr(&binding, 1, e, pos) {}

binding_expr::binding_expr(var_decl* const* bindings, unsigned n, expr* e, int pos)
    : expr(pos)
    , m_expr(e)
    , m_bindings(sizeof(binding_expr), bindings, n) {
    if (n == 0) throw binding_expr_without_decls_exception(get_position());
}

shared_ptr<binding_expr> binding_expr::clone() const {
    return clone(m_bindings.data(), m_bindings.size(), get_expr());
}

shared_ptr<binding_expr> binding_expr::clone(var_decl* const* bindings, unsigned n) const {
    return clone(bindings, n, get_expr());
}

shared_ptr<expr> binding_expr::clone_to_expr() const { return clone(); }

void binding_expr::set_bindings(var_decl* const* bindings, unsigned n) {
    m_bindings.assign(bindings, n);
    reset_cache();
}

void binding_expr::set_expr(expr* e) {
    m_expr = e;
    reset_cache();
}

#define VEXOR_BINDER_CLONE(X)                                                                                \
    shared_ptr<binding_expr> X::clone(var_decl* const* bindings, unsigned n, expr* e) const {                \
        static_assert(sizeof(X) == sizeof(binding_expr), "the variables stand right behind binding_expr");   \
        return mk<X>(bindings, n, e, get_pos());                                                             \
    }
VEXOR_BINDER_CLONE(lambda_expr)
VEXOR_BINDER_CLONE(forall_expr)
VEXOR_BINDER_CLONE(exists_expr)
VEXOR_BINDER_CLONE(fresh_vars_expr)
#undef VEXOR_BINDER_CLONE

let_expr::let_expr(let_decl* const* bindings, unsigned n, expr* e, int pos)
    : expr(pos)
    , m_expr(e)
    , m_bindings(sizeof(let_expr), bindings, n) {}

shared_ptr<let_expr> let_expr::clone() const { return clone(m_bindings.data(), m_bindings.size()); }

shared_ptr<let_expr> let_expr::clone(let_decl* const* bindings, unsigned n) const {
    return clone(bindings, n, get_expr());
}

shared_ptr<let_expr> let_expr::clone(let_decl* const* bindings, unsigned n, expr* e) const {
    return mk<let_expr>(bindings, n, e, get_pos());
}

shared_ptr<expr> let_expr::clone_to_expr() const { return clone(); }

void let_expr::set_bindings(let_decl* const* bindings, unsigned n) {
    m_bindings.assign(bindings, n);
    reset_cache();
}

void let_expr::set_expr(expr* e) {
    m_expr = e;
    reset_cache();
}

local_context_expr::local_context_expr(expr* e, expr* const* context, unsigned n, int pos)
    : expr(pos)
    , m_expr(e)
    , m_context(sizeof(local_context_expr), context, n) {}

shared_ptr<local_context_expr> local_context_expr::clone() const {
    return clone(get_expr(), m_context.data(), m_context.size());
}

shared_ptr<local_context_expr> local_context_expr::clone(expr* e, expr* const* context, unsigned n) const {
    return mk<local_context_expr>(e, context, n, get_pos());
}

shared_ptr<expr> local_context_expr::clone_to_expr() const { return clone(); }

void local_context_expr::set_expr(expr* e) {
    m_expr = e;
    reset_cache();
}

void local_context_expr::set_context(expr* const* context, unsigned n) {
    m_context.assign(context, n);
    reset_cache();
}

} // namespace vexor
