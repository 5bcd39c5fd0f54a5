#include "ast/visit/for_each_visitor.h"

#include "base/deep_stack.h"

namespace vexor {

void for_each_visitor::operator()(ast* a) {
    reset();
    on_deep_stack([&] { accept(a); });
}

void for_each_visitor::accept(ast* a) {
    if (a == nullptr || !enter(a)) return;
    check_depth();
    a->accept(this);
}

void for_each_visitor::visit(decl* n) { accept(n->get_id_node()); }

void for_each_visitor::visit(var_decl* n) {
    accept(n->get_id_node());
    accept(n->get_type());
}

void for_each_visitor::visit(let_decl* n) {
    visit(static_cast<var_decl*>(n));
    accept(n->get_definition());
}

void for_each_visitor::visit(const_decl* n) {
    visit(static_cast<var_decl*>(n));
    accept(n->get_raw_definition());
}

void for_each_visitor::visit(constructor_decl* n) {
    visit(static_cast<const_decl*>(n));
    accept(n->get_recognizer());
    for (unsigned i = 0; i < n->num_accessors(); ++i) accept(n->get_accessor(i));
}

void for_each_visitor::visit(type_decl* n) {
    visit(static_cast<decl*>(n));
    accept(n->get_definition());
}

void for_each_visitor::visit(function_type* n) {
    accept_all(n->get_domain());
    accept(n->get_range());
}

void for_each_visitor::visit(tuple_type* n) { accept_all(n->get_elements()); }

void for_each_visitor::visit(record_type* n) { accept_all(n->get_fields()); }

void for_each_visitor::visit(scalar_type* n) { accept_all(n->get_elements()); }

void for_each_visitor::visit(datatype* n) { accept_all(n->get_constructors()); }

void for_each_visitor::visit(subtype* n) {
    accept(n->get_decl());
    accept(n->get_pred());
}

void for_each_visitor::visit(subrange* n) {
    accept(n->get_lower());
    accept(n->get_upper());
}

void for_each_visitor::visit(record_entry* n) {
    accept(n->get_id_node());
    accept(n->get_expr());
}

void for_each_visitor::visit(expr*, application* a) {
    accept(a->get_fun());
    accept_all(a->get_args());
}

void for_each_visitor::visit(binding_expr* n) {
    accept_all(n->get_bindings());
    accept(n->get_expr());
}

void for_each_visitor::visit(let_expr* n) {
    accept_all(n->get_bindings());
    accept(n->get_expr());
}

void for_each_visitor::visit(local_context_expr* n) {
    accept(n->get_expr());
    accept_all(n->get_context());
}

void for_each_visitor::visit(update_expr* n) {
    accept(n->get_target());
    accept(n->get_new_value());
}

void for_each_visitor::visit(function_update_expr* n) {
    accept(n->get_target());
    accept_all(n->get_args());
    accept(n->get_new_value());
}

void for_each_visitor::visit(record_update_expr* n) {
    visit(static_cast<update_expr*>(n));
    accept(n->get_id_node());
}

void for_each_visitor::visit(tuple_literal* n) { accept_all(n->get_exprs()); }

void for_each_visitor::visit(tuple_selection* n) { accept(n->get_tuple()); }

void for_each_visitor::visit(record_literal* n) { accept_all(n->get_entries()); }

void for_each_visitor::visit(record_selection* n) {
    accept(n->get_record());
    accept(n->get_id_node());
}

} // namespace vexor
