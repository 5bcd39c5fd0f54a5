#include "ast/visit/map_ext_visitor.h"

namespace vexor {

void map_ext_visitor::reset() {
    map_visitor::reset();
    m_root.reset();
    m_stack.clear();
}

temporary_context& map_ext_visitor::context() {
    if (m_stack.empty()) return m_root;
    get_env()->depend_on(m_stack.back()->m_level);
    return m_stack.back()->m_context;
}

void map_ext_visitor::visit(fresh_vars_expr* n) {
    scope s(*this);
    shared_ptr_vector<var_decl> images;
    map_bindings(n->get_bindings(), images);
    shared_ptr<expr> body = map(n->get_expr());
    for (var_decl* d : images) context().add_fresh_var(d);
    m_result = body.get();
}

void map_ext_visitor::visit(local_context_expr* n) {
    shared_ptr<expr> e = map(n->get_expr());
    for (expr* condition : n->get_context()) {
        shared_ptr<expr> image = map(condition);
        context().add_condition(image.get());
    }
    m_result = e.get();
}

shared_ptr<expr> map_ext_visitor::map_body(expr* e) {
    if (e == nullptr) return nullptr;
    scope s(*this);
    open_context own{{}, get_env()->level()};
    m_stack.push_back(&own);
    shared_ptr<expr> image;
    try {
        image = map(e);
    } catch (...) {
        m_stack.pop_back();
        throw;
    }
    m_stack.pop_back();
    return own.m_context.close(image.get());
}

} // namespace vexor
