#include "ast/visit/free_vars_visitor.h"

#include "base/deep_stack.h"

#include <algorithm>

namespace vexor {

unsigned free_vars_visitor::reach(ast* a) {
    if (a == nullptr || a->get_free_vars_state() == free_vars_state::none) return 0;
    unsigned outer = m_outermost;
    m_outermost = closed;
    on_deep_stack([&] { accept(a); });
    unsigned outermost = m_outermost;
    m_outermost = std::min(outer, outermost);
    if (outermost == closed) return 0;
    return outermost == 0 ? unbound : m_env.level() - outermost + 1;
}

unsigned free_vars_visitor::level_of(name_expr* n) {
    if (!n->get_decl()->is_local()) return 0;
    unsigned const* level = m_env.find(n->get_decl());
    return level == nullptr ? unbound : m_env.level() - *level + 1;
}

void free_vars_visitor::reset() {
    for_each_visitor::reset();
    m_env.reset();
    m_cache.reset();
    m_outermost = closed;
}

// The state of a node is its own: a variable bound within it is found above the level of entry, any other is
// free.
void free_vars_visitor::accept(ast* a) {
    if (a == nullptr || a->get_free_vars_state() == free_vars_state::none) return;
    check_depth();
    bool shared = a->get_ref_count() > 1;
    if (shared) {
        entry const* e = m_cache.find(a);
        if (e != nullptr && m_env.is_valid(e->m_mark)) {
            m_env.depend_on(e->m_mark);
            m_outermost = std::min(m_outermost, e->m_outermost);
            return;
        }
    }
    unsigned outer = m_outermost;
    env::frame dependencies(m_env);
    m_outermost = closed;
    a->accept(this);
    if (m_outermost != closed && m_outermost > m_env.level()) m_outermost = closed;
    a->set_free_vars_state(m_outermost == closed ? free_vars_state::none : free_vars_state::some);
    if (shared && m_outermost != closed) m_cache.insert(a, entry{m_outermost, m_env.dependency_mark()});
    m_outermost = std::min(m_outermost, outer);
}

// Global declarations are closed, and their definitions were looked at when they were made.
void free_vars_visitor::visit(const_decl*) {}
void free_vars_visitor::visit(type_decl*) {}
void free_vars_visitor::visit(scalar_type*) {}
void free_vars_visitor::visit(datatype*) {}

template <class T>
void free_vars_visitor::accept_binders(child_array<T> const& binders, scope& s) {
    for (T* d : binders) {
        accept(d);
        s.update_scope(d);
    }
}

void free_vars_visitor::visit(function_type* n) {
    scope s(*this);
    accept_binders(n->get_domain(), s);
    accept(n->get_range());
}

void free_vars_visitor::visit(tuple_type* n) {
    scope s(*this);
    accept_binders(n->get_elements(), s);
}

void free_vars_visitor::visit(subtype* n) {
    accept(n->get_decl());
    scope s(*this);
    s.update_scope(n->get_decl());
    accept(n->get_pred());
}

void free_vars_visitor::visit(subrange* n) { for_each_visitor::visit(n); }

void free_vars_visitor::visit(name_expr* n) {
    if (!n->get_decl()->is_local()) return;
    unsigned const* level = m_env.find(n->get_decl());
    m_outermost = std::min(m_outermost, level == nullptr ? 0 : *level);
}

void free_vars_visitor::visit(binding_expr* n) {
    scope s(*this);
    accept_binders(n->get_bindings(), s);
    accept(n->get_expr());
}

void free_vars_visitor::visit(let_expr* n) {
    scope s(*this);
    accept_binders(n->get_bindings(), s);
    accept(n->get_expr());
}

} // namespace vexor
