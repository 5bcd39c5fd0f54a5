#include "ast/visit/hash_visitor.h"

#include "base/deep_stack.h"

namespace vexor {

unsigned hash_visitor::operator()(ast* a) {
    return on_deep_stack([&] { return accept(a); });
}

void hash_visitor::reset() {
    m_env.reset();
    m_cache.reset();
    m_result = 0;
}

unsigned hash_visitor::accept(ast* a) {
    if (a == nullptr) return 1;
    check_depth();
    a = a->eq_norm();
    // Where nothing is bound, an open node has a hash of its own, too: its variables count by their numbers.
    if (m_env.empty() || !a->has_free_vars()) {
        if (a->get_cached_hash() != 0) return a->get_cached_hash();
        unsigned h = run_visit(a);
        a->set_cached_hash(h);
        return h;
    }
    if (a->get_ref_count() < 2) return run_visit(a);
    entry const* e = m_cache.find(a);
    if (e != nullptr && m_env.is_valid(e->m_mark)) {
        m_env.depend_on(e->m_mark);
        return e->m_hash;
    }
    env::frame dependencies(m_env);
    unsigned h = run_visit(a);
    m_cache.insert(a, entry{h, m_env.dependency_mark()});
    return h;
}

unsigned hash_visitor::run_visit(ast* a) {
    unsigned outer = m_result;
    m_result = 0;
    a->accept(this);
    unsigned h = m_result & ast::hash_mask;
    m_result = outer;
    return h == 0 ? 1 : h;
}

template <class T>
void hash_visitor::fold_all(child_array<T> const& children) {
    for (T* child : children) fold(accept(child));
}

template <class T>
void hash_visitor::fold_binders(child_array<T> const& binders, scope& s) {
    for (T* d : binders) {
        fold(accept(d));
        s.update_scope(d);
    }
}

void hash_visitor::fold_name(ustring const& name) {
    fold(static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(name.c_str())));
}

// Nominal types: equal only if identical.
void hash_visitor::visit(ast* n) { fold(n->get_id()); }

void hash_visitor::visit(identifier* n) { fold_name(n->get_name()); }

void hash_visitor::visit(decl* n) { fold_name(n->get_name()); }

// The name of a bound variable does not count.
void hash_visitor::visit(var_decl* n) { fold(accept(n->get_type())); }

void hash_visitor::visit(let_decl* n) { fold(accept(n->get_definition())); }

void hash_visitor::visit(field* n) {
    fold_name(n->get_name());
    fold(accept(n->get_type()));
}

void hash_visitor::visit(const_decl* n) { fold_name(n->get_name()); }

void hash_visitor::visit(type_name* n) { fold_name(n->get_decl()->get_name()); }

void hash_visitor::visit(function_type* n) {
    scope s(*this);
    fold_binders(n->get_domain(), s);
    fold(accept(n->get_range()));
}

void hash_visitor::visit(tuple_type* n) {
    scope s(*this);
    fold_binders(n->get_elements(), s);
}

void hash_visitor::visit(record_type* n) { fold_all(n->get_fields()); }

void hash_visitor::visit(bitvector_type* n) { fold(n->get_size()); }

void hash_visitor::visit(subtype* n) {
    fold(accept(n->get_decl()));
    scope s(*this);
    s.update_scope(n->get_decl());
    fold(accept(n->get_pred()));
}

void hash_visitor::visit(subrange* n) {
    fold(accept(n->get_lower()));
    fold(accept(n->get_upper()));
}

void hash_visitor::visit(record_entry* n) {
    fold_name(n->get_name());
    fold(accept(n->get_expr()));
}

void hash_visitor::visit(name_expr* n) {
    var_decl* d = n->get_decl();
    if (!d->is_local()) return fold_name(d->get_name());
    unsigned const* number = m_env.find(d);
    fold(number == nullptr ? d->get_id() : *number);
}

void hash_visitor::visit(application* n) {
    fold_all(n->get_args());
    m_result += accept(n->get_fun());
}

void hash_visitor::visit(binding_expr* n) {
    scope s(*this);
    fold_binders(n->get_bindings(), s);
    fold(accept(n->get_expr()));
}

void hash_visitor::visit(let_expr* n) {
    scope s(*this);
    fold_binders(n->get_bindings(), s);
    fold(accept(n->get_expr()));
}

void hash_visitor::visit(local_context_expr* n) {
    fold(accept(n->get_expr()));
    fold_all(n->get_context());
}

void hash_visitor::visit(function_update_expr* n) {
    fold(accept(n->get_target()));
    fold_all(n->get_args());
    fold(accept(n->get_new_value()));
}

void hash_visitor::visit(tuple_update_expr* n) {
    fold(accept(n->get_target()));
    fold(static_cast<unsigned>(n->get_idx()));
    fold(accept(n->get_new_value()));
}

void hash_visitor::visit(record_update_expr* n) {
    fold(accept(n->get_target()));
    fold_name(n->get_name());
    fold(accept(n->get_new_value()));
}

void hash_visitor::visit(numeral_expr* n) { m_result = n->get_value().hash(); }

void hash_visitor::visit(bitvector_constant* n) { m_result = n->get_value().hash(); }

void hash_visitor::visit(tuple_literal* n) { fold_all(n->get_exprs()); }

void hash_visitor::visit(tuple_selection* n) {
    fold(accept(n->get_tuple()));
    fold(n->get_idx());
}

void hash_visitor::visit(record_literal* n) { fold_all(n->get_entries()); }

void hash_visitor::visit(record_selection* n) {
    fold(accept(n->get_record()));
    fold_name(n->get_name());
}

void hash_visitor::visit(typed_constant* n) {
    fold_name(n->get_decl()->get_name());
    fold(static_cast<unsigned>(n->get_value()));
}

} // namespace vexor
