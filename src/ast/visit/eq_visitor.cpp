#include "ast/visit/eq_visitor.h"

#include "base/deep_stack.h"

namespace vexor {

bool eq_visitor::operator()(ast const* a, ast const* b) {
    return on_deep_stack([&] { return compare(const_cast<ast*>(a), const_cast<ast*>(b)); });
}

void eq_visitor::reset() {
    m_left.reset();
    m_right.reset();
    m_cache.reset();
    m_num_pairs = 0;
    m_only_identities = true;
    m_other = nullptr;
    m_result = false;
}

bool eq_visitor::compare(ast* a, ast* b) {
    // An open node may be under different bindings on both sides.
    if (a == b && (m_only_identities || a == nullptr || !a->has_free_vars())) return true;
    if (a == nullptr || b == nullptr) return false;
    check_depth();
    ast* na = norm(a);
    ast* nb = norm(b);
    if (na == nb && (m_only_identities || !na->has_free_vars())) return true;
    return compare_normed(na, nb);
}

bool eq_visitor::compare_normed(ast* a, ast* b) {
    if (a->get_cls_name() != b->get_cls_name()) return false;
    bool open = a->has_free_vars();
    if (open != b->has_free_vars() && respects_hash()) return false;
    bool alone = !open || (m_left.empty() && m_right.empty());
    if (alone && respects_hash() && a->hash() != b->hash()) return false;
    bool shared = a->get_ref_count() > 1 || b->get_ref_count() > 1;
    if (shared && known_equal(a, b)) return true;
    env::frame left(m_left);
    env::frame right(m_right);
    ast* outer = m_other;
    m_other = b;
    m_result = false;
    a->accept(this);
    m_other = outer;
    if (m_result && shared)
        m_cache.insert(ast_pair{a, b}, entry{m_left.dependency_mark(), m_right.dependency_mark()});
    return m_result;
}

bool eq_visitor::known_equal(ast* a, ast* b) {
    entry const* e = m_cache.find(ast_pair{a, b});
    if (e == nullptr || !m_left.is_valid(e->m_left) || !m_right.is_valid(e->m_right)) return false;
    m_left.depend_on(e->m_left);
    m_right.depend_on(e->m_right);
    return true;
}

void eq_visitor::pair(var_decl* a, var_decl* b) {
    ++m_num_pairs;
    m_left.bind(a, m_num_pairs, false);
    m_right.bind(b, m_num_pairs, false);
    if (a != b) m_only_identities = false;
}

template <class T>
bool eq_visitor::compare_all(child_array<T> const& a, child_array<T> const& b) {
    if (a.size() != b.size()) return false;
    for (unsigned i = 0; i < a.size(); ++i)
        if (!compare(a[i], b[i])) return false;
    return true;
}

template <class T>
bool eq_visitor::compare_binders(child_array<T> const& a, child_array<T> const& b, scope& s) {
    if (a.size() != b.size()) return false;
    for (unsigned i = 0; i < a.size(); ++i) {
        if (!compare(a[i], b[i])) return false;
        s.update_scope(a[i], b[i]);
    }
    return true;
}

// Nominal types: equal only if identical.
void eq_visitor::visit(ast* n) { m_result = n == m_other; }

void eq_visitor::visit(identifier* n) { m_result = n->get_name() == other<identifier>()->get_name(); }

void eq_visitor::visit(decl* n) { m_result = n == m_other; }

void eq_visitor::visit(var_decl* n) { m_result = compare(n->get_type(), other<var_decl>()->get_type()); }

// The definition decides: a type that the source does not give appears only when somebody asks for it.
void eq_visitor::visit(let_decl* n) {
    m_result = compare(n->get_definition(), other<let_decl>()->get_definition());
}

void eq_visitor::visit(field* n) {
    auto* o = other<field>();
    m_result = n->get_name() == o->get_name() && compare(n->get_type(), o->get_type());
}

void eq_visitor::visit(const_decl* n) { m_result = n == m_other; }

void eq_visitor::visit(type_name* n) { m_result = n->get_decl() == other<type_name>()->get_decl(); }

void eq_visitor::visit(function_type* n) {
    auto* o = other<function_type>();
    scope s(*this);
    m_result =
        compare_binders(n->get_domain(), o->get_domain(), s) && compare(n->get_range(), o->get_range());
}

void eq_visitor::visit(tuple_type* n) {
    scope s(*this);
    m_result = compare_binders(n->get_elements(), other<tuple_type>()->get_elements(), s);
}

void eq_visitor::visit(record_type* n) {
    m_result = compare_all(n->get_fields(), other<record_type>()->get_fields());
}

void eq_visitor::visit(bitvector_type* n) { m_result = n->get_size() == other<bitvector_type>()->get_size(); }

void eq_visitor::visit(subtype* n) {
    auto* o = other<subtype>();
    bool same_type = compare(n->get_decl(), o->get_decl());
    scope s(*this);
    s.update_scope(n->get_decl(), o->get_decl());
    m_result = same_type && compare(n->get_pred(), o->get_pred());
}

void eq_visitor::visit(subrange* n) {
    auto* o = other<subrange>();
    m_result = compare(n->get_lower(), o->get_lower()) && compare(n->get_upper(), o->get_upper());
}

void eq_visitor::visit(record_entry* n) {
    auto* o = other<record_entry>();
    m_result = n->get_name() == o->get_name() && compare(n->get_expr(), o->get_expr());
}

// Bound variables are equal if their binders stand at the same place.
void eq_visitor::visit(name_expr* n) {
    var_decl* d = n->get_decl();
    var_decl* e = other<name_expr>()->get_decl();
    if (!d->is_local() || !e->is_local()) {
        m_result = d == e;
        return;
    }
    unsigned const* left = m_left.find(d);
    unsigned const* right = m_right.find(e);
    if (left == nullptr || right == nullptr)
        m_result = left == right && d == e;
    else
        m_result = *left == *right;
}

void eq_visitor::visit(application* n) {
    auto* o = other<application>();
    m_result = n->num_args() == o->num_args() && compare(n->get_fun(), o->get_fun()) &&
               compare_all(n->get_args(), o->get_args());
}

void eq_visitor::visit(binding_expr* n) {
    auto* o = other<binding_expr>();
    scope s(*this);
    m_result =
        compare_binders(n->get_bindings(), o->get_bindings(), s) && compare(n->get_expr(), o->get_expr());
}

void eq_visitor::visit(let_expr* n) {
    auto* o = other<let_expr>();
    scope s(*this);
    m_result =
        compare_binders(n->get_bindings(), o->get_bindings(), s) && compare(n->get_expr(), o->get_expr());
}

void eq_visitor::visit(local_context_expr* n) {
    auto* o = other<local_context_expr>();
    m_result = compare(n->get_expr(), o->get_expr()) && compare_all(n->get_context(), o->get_context());
}

void eq_visitor::visit(function_update_expr* n) {
    auto* o = other<function_update_expr>();
    m_result = compare(n->get_target(), o->get_target()) && compare_all(n->get_args(), o->get_args()) &&
               compare(n->get_new_value(), o->get_new_value());
}

void eq_visitor::visit(tuple_update_expr* n) {
    auto* o = other<tuple_update_expr>();
    m_result = n->get_idx() == o->get_idx() && compare(n->get_target(), o->get_target()) &&
               compare(n->get_new_value(), o->get_new_value());
}

void eq_visitor::visit(record_update_expr* n) {
    auto* o = other<record_update_expr>();
    m_result = n->get_name() == o->get_name() && compare(n->get_target(), o->get_target()) &&
               compare(n->get_new_value(), o->get_new_value());
}

void eq_visitor::visit(numeral_expr* n) { m_result = n->get_value() == other<numeral_expr>()->get_value(); }

void eq_visitor::visit(bitvector_constant* n) {
    auto* o = other<bitvector_constant>();
    m_result = n->get_size() == o->get_size() && n->get_value() == o->get_value();
}

void eq_visitor::visit(tuple_literal* n) {
    m_result = compare_all(n->get_exprs(), other<tuple_literal>()->get_exprs());
}

void eq_visitor::visit(tuple_selection* n) {
    auto* o = other<tuple_selection>();
    m_result = n->get_idx() == o->get_idx() && compare(n->get_tuple(), o->get_tuple());
}

void eq_visitor::visit(record_literal* n) {
    m_result = compare_all(n->get_entries(), other<record_literal>()->get_entries());
}

void eq_visitor::visit(record_selection* n) {
    auto* o = other<record_selection>();
    m_result = n->get_name() == o->get_name() && compare(n->get_record(), o->get_record());
}

void eq_visitor::visit(typed_constant* n) {
    auto* o = other<typed_constant>();
    m_result = n->get_decl() == o->get_decl() && n->get_value() == o->get_value();
}

} // namespace vexor
