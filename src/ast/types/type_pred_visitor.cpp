// Keeps:  the environment holds the elements for the variables of the types around the one visited.
// Cost:   linear in the result; types that say nothing are found once each and not walked again.
#include "ast/types/type_pred_visitor.h"

#include "ast/node/ast_manager.h"
#include "base/deep_stack.h"

#include <utility>

namespace vexor {

namespace {

template <class D>
shared_ptr<expr> mk_binary(expr* a, expr* b) {
    return mk<application>(a->get_manager()->mk_name<D>(), a, b, -1).get();
}

} // namespace

shared_ptr<expr> mk_and(shared_ptr<expr> const& a, shared_ptr<expr> const& b) {
    if (a.get() == nullptr) return b;
    return b.get() == nullptr ? a : mk_binary<and_decl>(a, b);
}

shared_ptr<expr> mk_implies(shared_ptr<expr> const& a, shared_ptr<expr> const& b) {
    if (a.get() == nullptr || b.get() == nullptr) return b;
    return mk_binary<implies_decl>(a, b);
}

// The variables of one type, also left by an exception.
class type_pred_visitor::scope {
public:
    explicit scope(type_pred_visitor& v)
        : m_substitution(v.m_substitution) {
        m_substitution.begin_scope();
    }
    scope(scope const&) = delete; // stands for a stretch of time
    scope& operator=(scope const&) = delete;
    ~scope() { m_substitution.end_scope(); }

private:
    map_visitor& m_substitution;
};

shared_ptr<expr> type_pred_visitor::operator()(type* t, expr* e) {
    return on_deep_stack([&] {
        m_says_something.reset();
        return predicate_of(t, e);
    });
}

shared_ptr<quantified_expr> type_pred_visitor::operator()(quantified_expr* n) {
    shared_ptr<expr> members;
    for (var_decl* d : n->get_bindings()) {
        shared_ptr<expr> member = (*this)(d->get_type(), d->create_name_expr(-1).get());
        members = mk_and(members, member);
    }
    if (members.get() == nullptr) return n;
    expr* body = n->get_expr();
    shared_ptr<expr> restricted = is_a<forall_expr>(n) ? mk_implies(members, body) : mk_and(members, body);
    return static_cast<quantified_expr*>(
        n->clone(n->get_bindings().data(), n->num_bindings(), restricted).get());
}

shared_ptr<expr> type_pred_visitor::predicate_of(type* t, expr* e) {
    check_depth();
    if (!says_something(t)) return nullptr;
    shared_ptr<expr> outer = std::exchange(m_element, shared_ptr<expr>(e));
    m_result.reset();
    t->accept(this);
    m_element = std::move(outer);
    return std::exchange(m_result, shared_ptr<expr>());
}

bool type_pred_visitor::says_something(type* t) {
    check_depth();
    if (bool* known = m_says_something.find(t)) return *known;
    bool result = compute_says_something(t);
    m_says_something.insert(t, result);
    return result;
}

template <class D>
bool type_pred_visitor::components_say_something(child_array<D> const& components) {
    for (D* d : components)
        if (says_something(d->get_type())) return true;
    return false;
}

bool type_pred_visitor::compute_says_something(type* t) {
    if (is_a<int_type_name>(t) || is_a<subtype>(t) || is_a<subrange>(t)) return true;
    if (is_a<real_type_name>(t)) return false;
    if (is_a<tuple_type>(t)) return components_say_something(static_cast<tuple_type*>(t)->get_elements());
    if (is_a<record_type>(t)) return components_say_something(static_cast<record_type*>(t)->get_fields());
    if (is_a<function_type>(t)) return says_something(static_cast<function_type*>(t)->get_range());
    // What is left are names, which lead to their definition, and types that say nothing.
    type* definition = t->cast_step();
    return definition != nullptr && says_something(definition);
}

void type_pred_visitor::visit(type_name* n) { m_result = predicate_of(n->get_definition(), m_element); }

// A variable of an integer type says nothing new, and a restriction on it would hide the body of a quantifier
// over integers from what instantiates it. For other terms the simplifier folds the predicate by their type.
void type_pred_visitor::visit(int_type_name* n) {
    if (m_element->is_name_expr() && m_element->is_int()) return;
    m_result = mk<application>(n->get_manager()->mk_name<int_pred_decl>(), m_element, -1).get();
}

// Subranges are subtypes, too.
void type_pred_visitor::visit(subtype* n) {
    shared_ptr<expr> parent = predicate_of(n->get_decl()->get_type(), m_element);
    scope s(*this);
    m_substitution.update_env(n->get_decl(), m_element);
    shared_ptr<expr> own = m_substitution(n->get_pred());
    m_result = mk_and(parent, own);
}

void type_pred_visitor::visit(tuple_type* n) {
    scope s(*this);
    shared_ptr<expr> all;
    for (unsigned i = 0; i < n->size(); ++i) {
        shared_ptr<expr> component = mk<tuple_selection>(m_element, i, -1).get();
        all = mk_and(all, predicate_of(n->get_element_type(i), component));
        m_substitution.update_env(n->get_element(i), component);
    }
    m_result = all;
}

void type_pred_visitor::visit(record_type* n) {
    scope s(*this);
    for (field* f : n->get_fields())
        m_substitution.update_env(f, mk<record_selection>(m_element, f->get_id_node(), -1).get());
    shared_ptr<expr> all;
    for (field* f : n->get_fields()) {
        shared_ptr<expr> component = mk<record_selection>(m_element, f->get_id_node(), -1).get();
        all = mk_and(all, predicate_of(f->get_type(), component));
    }
    m_result = all;
}

// A variable of its own for a parameter, of the type as it is for the elements around. Closed types are not
// walked: in a deep type each would be, from each level above it.
shared_ptr<var_decl> type_pred_visitor::bind_parameter(var_decl* parameter) {
    shared_ptr<type> t = parameter->get_type();
    if (t->has_free_vars()) t = m_substitution(t.get());
    shared_ptr<identifier> id = parameter->get_id_node();
    if (id.get() == nullptr) id = mk<identifier>(t);
    shared_ptr<var_decl> d = mk<var_decl>(id, t, -1);
    m_substitution.update_env(parameter, d);
    return d;
}

// (forall (x ...) (=> (and x in the domain ...) (e x ...) in the range))
void type_pred_visitor::visit(function_type* n) {
    scope s(*this);
    shared_ptr_vector<var_decl> variables;
    shared_ptr_vector<expr> args;
    shared_ptr<expr> in_domain;
    for (var_decl* parameter : n->get_domain()) {
        shared_ptr<var_decl> d = bind_parameter(parameter);
        variables.push_back(d);
        args.push_back(d->create_name_expr(-1).get());
        in_domain = mk_and(in_domain, predicate_of(parameter->get_type(), args.back()));
    }
    shared_ptr<expr> value = mk<application>(m_element, args.data(), args.size(), -1).get();
    shared_ptr<expr> in_range = predicate_of(n->get_range(), value);
    shared_ptr<expr> body = mk_implies(in_domain, in_range);
    if (body.get() != nullptr) body = mk<forall_expr>(variables.data(), variables.size(), body, -1).get();
    m_result = body;
}

} // namespace vexor
