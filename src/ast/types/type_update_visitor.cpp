#include "ast/types/type_update_visitor.h"

#include "ast/node/ast_manager.h"
#include "ast/types/join_types.h"
#include "ast/types/op_rules.h"
#include "ast/types/type_checker_exception.h"
#include "ast/visit/map_visitor.h"
#include "base/deep_stack.h"

namespace vexor {

namespace {

// An operator without a rule would be typed like a function of its placeholder type.
#define VEXOR_OP_RULE(X, RULE) [[maybe_unused]] constexpr bool X##_has_rule = true;
#include "ast/types/op_rules.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY) static_assert(X##_has_rule);
#include "ast/node/builtin_ops.def"

shared_ptr<var_decl> anonymous_component(type* t) {
    return mk<var_decl>(static_cast<identifier*>(nullptr), t, -1);
}

// The type with component i of e for each named component before it.
shared_ptr<type> instantiate_component(tuple_type* t, expr* e, unsigned idx) {
    type* component = t->get_element_type(idx);
    if (!component->has_free_vars()) return component;
    map_visitor instantiate(false);
    for (unsigned i = 0; i < idx; ++i)
        instantiate.update_env(t->get_element(i), mk<tuple_selection>(e, i, -1).get());
    return instantiate(component);
}

shared_ptr<type> instantiate_field(record_type* t, expr* e, field* f) {
    if (!f->get_type()->has_free_vars()) return f->get_type();
    map_visitor instantiate(false);
    for (field* other : t->get_fields())
        instantiate.update_env(other, mk<record_selection>(e, other->get_id_node(), -1).get());
    return instantiate(f->get_type());
}

// The range, with the arguments for the named parameters. Arguments that are missing leave their parameter.
shared_ptr<type> instantiate_range(function_type* t, application* a) {
    if (!t->get_range()->has_free_vars()) return t->get_range();
    map_visitor instantiate(false);
    for (unsigned i = 0; i < t->get_arity() && i < a->num_args(); ++i)
        instantiate.update_env(t->get_param(i), a->get_arg(i));
    return instantiate(t->get_range());
}

// The type with the definitions for the variables of the let.
shared_ptr<type> close_let_type(let_expr* n, type* t) {
    if (!t->has_free_vars()) return t;
    map_visitor instantiate(false);
    for (let_decl* d : n->get_bindings()) {
        shared_ptr<expr> definition = d->get_definition();
        if (definition->has_free_vars()) definition = instantiate(definition.get());
        instantiate.update_env(d, definition);
    }
    return instantiate(t);
}

void give_type_to_let(let_decl* d) {
    if (d->get_type() == nullptr) d->infer_type(d->get_definition()->get_type());
}

} // namespace

type* expr::get_type() {
    if (m_type.get() == nullptr) type_update_visitor()(this);
    return m_type;
}

void type_update_visitor::operator()(expr* e) {
    on_deep_stack([&] {
        check_depth();
        m_result.reset();
        e->accept(this);
        VEXOR_ASSERT(m_result.get() != nullptr);
        e->set_type(m_result);
    });
}

void type_update_visitor::visit(name_expr* n) {
    var_decl* d = n->get_decl();
    if (d->is_let_decl()) give_type_to_let(static_cast<let_decl*>(d));
    m_result = d->get_type();
}

void type_update_visitor::visit(quantified_expr* n) { m_result = n->get_manager()->create_bool_type(); }

void type_update_visitor::visit(lambda_expr* n) {
    m_result =
        mk<function_type>(n->get_bindings().data(), n->num_bindings(), n->get_expr()->get_type(), -1).get();
}

void type_update_visitor::visit(fresh_vars_expr* n) { m_result = n->get_expr()->get_type(); }

void type_update_visitor::visit(let_expr* n) {
    for (let_decl* d : n->get_bindings()) give_type_to_let(d);
    m_result = close_let_type(n, n->get_expr()->get_type());
}

void type_update_visitor::visit(local_context_expr* n) { m_result = n->get_expr()->get_type(); }

// An update has the type of its target, widened if the new value is not of it: a real in a function to the
// integers. The type with the new value's type at the changed place is joined with the target's; where other
// components depend on the changed one that drops the dependency, which holds no longer.
void type_update_visitor::visit(function_update_expr* n) {
    m_result = n->get_target()->get_type();
    auto* t = cast_type<function_type>(m_result.get());
    if (t == nullptr) return;
    type* value = n->get_new_value()->get_type();
    shared_ptr<type> updated = t->clone(t->get_domain().data(), t->get_arity(), value).get();
    keep_or_widen(t, updated);
}

void type_update_visitor::visit(tuple_update_expr* n) {
    m_result = n->get_target()->get_type();
    auto* t = cast_type<tuple_type>(m_result.get());
    auto idx = static_cast<unsigned>(n->get_idx());
    if (t == nullptr || n->get_idx() < 0 || idx >= t->size()) return;
    shared_ptr_vector<var_decl> elements(t->size(), t->get_elements().data());
    shared_ptr<var_decl> element = elements[idx]->clone();
    element->set_type(n->get_new_value()->get_type());
    elements.set(idx, element);
    shared_ptr<type> updated = t->clone(elements.data(), elements.size()).get();
    keep_or_widen(t, updated);
}

void type_update_visitor::visit(record_update_expr* n) {
    m_result = n->get_target()->get_type();
    auto* t = cast_type<record_type>(m_result.get());
    field* f = t == nullptr ? nullptr : t->find_field(n->get_name());
    if (f == nullptr) return;
    shared_ptr_vector<field> fields;
    shared_ptr<field> changed = mk<field>(f->get_id_node(), n->get_new_value()->get_type(), -1);
    for (field* old : t->get_fields()) fields.push_back(old == f ? changed.get() : old);
    shared_ptr<type> updated = t->clone(fields.data(), fields.size()).get();
    keep_or_widen(t, updated);
}

void type_update_visitor::keep_or_widen(type* target, type* updated) {
    shared_ptr<type> joined = join_types(target, updated);
    if (joined.get() != target) m_result = joined;
}

void type_update_visitor::visit(numeral_expr* n) {
    ast_manager* m = n->get_manager();
    m_result = n->get_value().is_int() ? m->create_int_type() : m->create_real_type();
}

void type_update_visitor::visit(bitvector_constant* n) {
    m_result = mk<bitvector_type>(n->get_manager(), n->get_size(), -1).get();
}

void type_update_visitor::visit(tuple_literal* n) {
    shared_ptr_vector<var_decl> elements;
    for (expr* e : n->get_exprs()) elements.push_back(anonymous_component(e->get_type()).get());
    m_result = mk<tuple_type>(n->get_manager(), elements.data(), elements.size(), -1).get();
}

void type_update_visitor::visit(tuple_selection* n) {
    auto* t = cast_type<tuple_type>(n->get_tuple()->get_type());
    if (t == nullptr) throw_type_error(n, "tuple expression expected.");
    if (n->get_idx() >= t->size()) throw_type_error(n, "invalid tuple selection.");
    m_result = instantiate_component(t, n->get_tuple(), n->get_idx());
}

void type_update_visitor::visit(record_literal* n) {
    shared_ptr_vector<field> fields;
    for (record_entry* e : n->get_entries())
        fields.push_back(mk<field>(e->get_id_node(), e->get_expr()->get_type(), e->get_pos()).get());
    shared_ptr<record_type> t = mk<record_type>(n->get_manager(), fields.data(), fields.size(), -1);
    t->check();
    m_result = t.get();
}

void type_update_visitor::visit(record_selection* n) {
    auto* t = cast_type<record_type>(n->get_record()->get_type());
    if (t == nullptr) throw_type_error(n, "record expression expected.");
    field* f = t->find_field(n->get_name());
    if (f == nullptr) throw_type_error(n, "invalid record selection, unknown field.");
    m_result = instantiate_field(t, n->get_record(), f);
}

void type_update_visitor::visit(typed_constant* n) { m_result = n->get_decl()->create_type_name(-1).get(); }

void type_update_visitor::visit(expr* fun, application* a) {
    auto* t = cast_type<function_type>(fun->get_type());
    if (t == nullptr) throw_type_error(a, "function expected.");
    m_result = instantiate_range(t, a);
}

#define VEXOR_OP_RULE(X, RULE)                                                                               \
    void type_update_visitor::visit(X##_name_expr*, application* a) {                                        \
        m_result = op_result_type(op_rule::RULE, a);                                                         \
    }
#include "ast/types/op_rules.def"

} // namespace vexor
