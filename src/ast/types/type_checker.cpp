#include "ast/types/type_checker.h"

#include "ast/types/equivalent_types.h"
#include "ast/types/op_rules.h"

namespace vexor {

namespace {

bool is_valid_size(unsigned size) { return size > 0 && size <= max_bitvector_size; }

void check_definition(var_decl* d, expr* definition, char const* message) {
    if (!equivalent_types(definition->get_type(), d->get_type())) throw_type_error(d, message);
}

// The type of component idx of an expression that must be a tuple.
type* check_component(ast* n, expr* tuple, long long idx) {
    auto* t = cast_type<tuple_type>(tuple->get_type());
    if (t == nullptr) throw_type_error(n, "tuple expression expected.");
    if (idx < 0 || idx >= static_cast<long long>(t->size())) throw_type_error(n, "invalid tuple selection.");
    return t->get_element_type(static_cast<unsigned>(idx));
}

// The type of a field of an expression that must be a record.
type* check_field(ast* n, expr* record, ustring const& name, char const* unknown_field) {
    auto* t = cast_type<record_type>(record->get_type());
    if (t == nullptr) throw_type_error(n, "record expression expected.");
    field* f = t->find_field(name);
    if (f == nullptr) throw_type_error(n, unknown_field);
    return f->get_type();
}

} // namespace

void type_check(ast* n) { type_checker()(n); }

void type_checker::visit(const_decl* n) {
    for_each_visitor::visit(n);
    if (n->has_definition())
        check_definition(n, n->get_raw_definition(), "invalid constant declaration, incompatible types.");
}

void type_checker::visit(let_decl* n) {
    accept(n->get_declared_type());
    accept(n->get_definition());
    if (n->get_declared_type() != nullptr)
        check_definition(n, n->get_definition(), "invalid let declaration, incompatible types.");
}

void type_checker::visit(bitvector_type* n) {
    if (!is_valid_size(n->get_size())) throw_type_error(n, wrong_bitvector_size);
}

void type_checker::visit(subtype* n) {
    for_each_visitor::visit(n);
    if (!has_bool_type(n->get_pred())) throw_type_error(n, "invalid subtype, the predicate is not boolean.");
}

void type_checker::visit(subrange* n) {
    accept(n->get_lower());
    accept(n->get_upper());
    if (!has_number_type(n->get_lower()) || !has_number_type(n->get_upper()))
        throw_type_error(n, "invalid subrange.");
}

void type_checker::visit(quantified_expr* n) {
    for_each_visitor::visit(static_cast<binding_expr*>(n));
    if (!has_bool_type(n->get_expr())) throw_type_error(n, "body of quandified expression is not boolean.");
}

void type_checker::visit(function_update_expr* n) {
    for_each_visitor::visit(n);
    auto* t = cast_type<function_type>(n->get_target()->get_type());
    if (t == nullptr) throw_type_error(n, "function expected.");
    if (t->get_arity() != n->num_args())
        throw_type_error(n, "invalid function update, wrong number of arguments.");
    for (unsigned i = 0; i < n->num_args(); ++i)
        if (!equivalent_types(n->get_arg(i)->get_type(), t->get_param_type(i)))
            throw_type_error(n, "invalid function update index, type mismatch.");
    if (!equivalent_types(n->get_new_value()->get_type(), t->get_range()))
        throw_type_error(n, "invalid function update new value, type mismatch.");
}

void type_checker::visit(tuple_update_expr* n) {
    for_each_visitor::visit(static_cast<update_expr*>(n));
    type* component = check_component(n, n->get_target(), n->get_idx());
    if (!equivalent_types(n->get_new_value()->get_type(), component))
        throw_type_error(n,
                         "invalid tuple update, the new value type is incompatible with the specified tuple "
                         "position type.");
}

void type_checker::visit(record_update_expr* n) {
    for_each_visitor::visit(n);
    type* component = check_field(n, n->get_target(), n->get_name(), "invalid record update, unknown field.");
    if (!equivalent_types(n->get_new_value()->get_type(), component))
        throw_type_error(n, "invalid record update, the new value type is incompatible with field type.");
}

void type_checker::visit(bitvector_constant* n) {
    if (!is_valid_size(n->get_size())) throw_type_error(n, wrong_bitvector_size);
}

void type_checker::visit(tuple_selection* n) {
    for_each_visitor::visit(n);
    check_component(n, n->get_tuple(), n->get_idx());
}

void type_checker::visit(record_literal* n) {
    for_each_visitor::visit(n);
    n->get_type(); // raises for a repeated field
}

void type_checker::visit(record_selection* n) {
    for_each_visitor::visit(n);
    check_field(n, n->get_record(), n->get_name(), "invalid record selection, unknown field.");
}

void type_checker::visit(expr* fun, application* a) {
    for_each_visitor::visit(fun, a);
    auto* t = cast_type<function_type>(fun->get_type());
    if (t == nullptr) throw_type_error(a, "function expected.");
    if (t->get_arity() != a->num_args()) throw_type_error(a, "wrong number of arguments");
    for (unsigned i = 0; i < a->num_args(); ++i)
        if (!equivalent_types(a->get_arg(i)->get_type(), t->get_param_type(i)))
            throw_type_error(a, "invalid function argument, type mismatch.");
}

#define VEXOR_OP_RULE(X, RULE)                                                                               \
    void type_checker::visit(X##_name_expr* fun, application* a) {                                           \
        for_each_visitor::visit(static_cast<expr*>(fun), a);                                                 \
        check_op_arguments(op_rule::RULE, a);                                                                \
    }
#include "ast/types/op_rules.def"

} // namespace vexor
