// The visits of map_visitor: each rebuilds its class when a child changed.
#include "ast/visit/map_visitor.h"

namespace vexor {

void map_visitor::visit(var_decl* n) {
    shared_ptr<identifier> id = map(n->get_id_node());
    shared_ptr<type> t = map(n->get_type());
    if (id.get() == n->get_id_node() && t.get() == n->get_type()) return keep(n);
    shared_ptr<var_decl> image = n->clone();
    image->set_id(id.get());
    image->set_type(t.get());
    m_result = image.get();
}

void map_visitor::visit(let_decl* n) {
    shared_ptr<identifier> id = map(n->get_id_node());
    shared_ptr<type> t = map(n->get_declared_type());
    shared_ptr<expr> definition = map_definition(n->get_definition());
    if (id.get() == n->get_id_node() && t.get() == n->get_declared_type() &&
        definition.get() == n->get_definition())
        return keep(n);
    m_result = mk<let_decl>(id, t, definition, n->get_pos()).get();
}

void map_visitor::visit(function_type* n) {
    scope s(*this);
    shared_ptr_vector<var_decl> domain;
    bool changed = map_bindings(n->get_domain(), domain);
    shared_ptr<type> range = map(n->get_range());
    if (!changed && range.get() == n->get_range()) return keep(n);
    m_result = n->clone(domain.data(), domain.size(), range.get()).get();
}

void map_visitor::visit(tuple_type* n) {
    scope s(*this);
    shared_ptr_vector<var_decl> elements;
    if (!map_bindings(n->get_elements(), elements)) return keep(n);
    m_result = n->clone(elements.data(), elements.size()).get();
}

void map_visitor::visit(record_type* n) {
    shared_ptr_vector<field> fields;
    if (!map_children(n->get_fields(), fields)) return keep(n);
    m_result = n->clone(fields.data(), fields.size()).get();
}

void map_visitor::visit(subtype* n) {
    scope s(*this);
    shared_ptr<var_decl> d = map_binding(n->get_decl());
    shared_ptr<expr> pred = map_body(n->get_pred());
    if (d.get() == n->get_decl() && pred.get() == n->get_pred()) return keep(n);
    m_result = n->clone(d.get(), pred.get()).get();
}

void map_visitor::visit(subrange* n) {
    shared_ptr<expr> lower = map(n->get_lower());
    shared_ptr<expr> upper = map(n->get_upper());
    if (lower.get() == n->get_lower() && upper.get() == n->get_upper()) return keep(n);
    m_result = mk<subrange>(lower, upper, n->get_pos()).get();
}

void map_visitor::visit(record_entry* n) {
    shared_ptr<expr> e = map(n->get_expr());
    if (e.get() == n->get_expr()) return keep(n);
    m_result = mk<record_entry>(n->get_id_node(), e, n->get_pos()).get();
}

void map_visitor::visit(name_expr* n) { apply_subst(n); }

void map_visitor::visit(expr*, application* a) {
    shared_ptr<expr> fun = map(a->get_fun());
    shared_ptr_vector<expr> args;
    bool changed = map_children(a->get_args(), args);
    if (!changed && fun.get() == a->get_fun()) return keep(a);
    m_result = a->clone(fun.get(), args.data(), args.size()).get();
}

void map_visitor::visit(binding_expr* n) {
    scope s(*this);
    shared_ptr_vector<var_decl> bindings;
    bool changed = map_bindings(n->get_bindings(), bindings);
    shared_ptr<expr> body = map_body(n->get_expr());
    if (!changed && body.get() == n->get_expr()) return keep(n);
    m_result = n->clone(bindings.data(), bindings.size(), body.get()).get();
}

void map_visitor::visit(let_expr* n) {
    scope s(*this);
    shared_ptr_vector<let_decl> bindings;
    bool changed = map_bindings(n->get_bindings(), bindings);
    shared_ptr<expr> body = map_body(n->get_expr());
    if (!changed && body.get() == n->get_expr()) return keep(n);
    m_result = n->clone(bindings.data(), bindings.size(), body.get()).get();
}

void map_visitor::visit(local_context_expr* n) {
    shared_ptr<expr> e = map(n->get_expr());
    shared_ptr_vector<expr> context;
    bool changed = map_children(n->get_context(), context);
    if (!changed && e.get() == n->get_expr()) return keep(n);
    m_result = n->clone(e.get(), context.data(), context.size()).get();
}

void map_visitor::visit(function_update_expr* n) {
    shared_ptr<expr> target = map(n->get_target());
    shared_ptr_vector<expr> args;
    bool changed = map_children(n->get_args(), args);
    shared_ptr<expr> new_value = map(n->get_new_value());
    if (!changed && target.get() == n->get_target() && new_value.get() == n->get_new_value()) return keep(n);
    m_result = n->clone(target.get(), args.data(), args.size(), new_value.get()).get();
}

void map_visitor::visit(tuple_update_expr* n) {
    shared_ptr<expr> target = map(n->get_target());
    shared_ptr<expr> new_value = map(n->get_new_value());
    if (target.get() == n->get_target() && new_value.get() == n->get_new_value()) return keep(n);
    m_result = mk<tuple_update_expr>(target, n->get_idx(), new_value, n->get_pos()).get();
}

void map_visitor::visit(record_update_expr* n) {
    shared_ptr<expr> target = map(n->get_target());
    shared_ptr<expr> new_value = map(n->get_new_value());
    if (target.get() == n->get_target() && new_value.get() == n->get_new_value()) return keep(n);
    m_result = mk<record_update_expr>(target, n->get_id_node(), new_value, n->get_pos()).get();
}

void map_visitor::visit(tuple_literal* n) {
    shared_ptr_vector<expr> exprs;
    if (!map_children(n->get_exprs(), exprs)) return keep(n);
    m_result = n->clone(exprs.data(), exprs.size()).get();
}

void map_visitor::visit(tuple_selection* n) {
    shared_ptr<expr> e = map(n->get_tuple());
    if (e.get() == n->get_tuple()) return keep(n);
    m_result = mk<tuple_selection>(e, n->get_idx(), n->get_pos()).get();
}

void map_visitor::visit(record_literal* n) {
    shared_ptr_vector<record_entry> entries;
    if (!map_children(n->get_entries(), entries)) return keep(n);
    m_result = n->clone(entries.data(), entries.size()).get();
}

void map_visitor::visit(record_selection* n) {
    shared_ptr<expr> e = map(n->get_record());
    if (e.get() == n->get_record()) return keep(n);
    m_result = mk<record_selection>(e, n->get_id_node(), n->get_pos()).get();
}

shared_ptr<ast> subst_visitor::accept_core(ast* a) {
    if (a == nullptr || !a->has_free_vars()) return a;
    return map_visitor::accept_core(a);
}

} // namespace vexor
