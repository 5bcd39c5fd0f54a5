// define and define-type.
#include <algorithm>

#include "ast/visit/substitution.h"
#include "frontend/parser_parts.h"

namespace vexor {

namespace {

// The same type with parameters of its own, of the same names. No type in it mentions a parameter.
shared_ptr<type> copy_domain(function_type* t) {
    shared_ptr_vector<var_decl> domain;
    for (var_decl* d : t->get_domain()) domain.push_back(d->clone().get());
    return mk<function_type>(domain.data(), domain.size(), t->get_range(), t->get_pos());
}

} // namespace

// (define name::type) and (define name::type definition)
shared_ptr<const_decl> parser::parse_constant(int pos) {
    shared_ptr<identifier> id = parse_identifier();
    check_next(token::double_colon);
    next();
    shared_ptr<type> t = parse_nested_type(false);
    shared_ptr<expr> definition;
    if (next() != token::right_paren) {
        definition = parse_nested_expr();
        check_next(token::right_paren);
    }
    return declare(id, t, definition, pos);
}

// (define (name parameter ...)::type) and (define (name parameter ...)::type definition)
shared_ptr<const_decl> parser::parse_function(int pos) {
    next();
    shared_ptr<identifier> id = parse_identifier();
    node_list<var_decl> parameters(m_vars);
    while (next() != token::right_paren) parameters.push_back(parse_var_decl<var_decl>(true).get());
    if (parameters.size() == 0) throw empty_domain_function_type_exception(position_at(pos));
    check_next(token::double_colon);
    next();
    shared_ptr<type> range = parse_nested_type(false);
    bool is_dependent = std::any_of(parameters.data(), parameters.data() + parameters.size(),
                                    [](var_decl* d) { return d->get_num_name_exprs() > 0; });
    shared_ptr<type> t = mk<function_type>(parameters.data(), parameters.size(), range, node_pos(pos));
    if (next() == token::right_paren) return declare(id, t, nullptr, pos);
    // One variable has one binder: the type and the definition have parameters of their own.
    if (!is_dependent) t = copy_domain(static_cast<function_type*>(t.get()));
    shared_ptr<expr> body = parse_nested_expr();
    check_next(token::right_paren);
    shared_ptr<binding_expr> lambda =
        mk<lambda_expr>(parameters.data(), parameters.size(), body, node_pos(pos));
    if (is_dependent) lambda = alpha_convert(lambda);
    return declare(id, t, lambda, pos);
}

shared_ptr<const_decl> parser::declare(identifier* id, type* t, expr* definition, int pos) {
    shared_ptr<const_decl> d = mk<const_decl>(id, t, definition, node_pos(pos));
    // The declaration may have no position of its own, but the message has one.
    if (m_manager->is_global_name_expr(id->get_name()))
        throw constant_already_defined_exception(position_at(pos), id->get_name());
    m_manager->add_global_const_decl(d, true);
    return d;
}

// (define-type name) and (define-type name definition)
shared_ptr<type_decl> parser::parse_named_type(int pos) {
    next();
    shared_ptr<identifier> id = parse_identifier();
    // Asked here and not at the end, since the definition may enter names of its own.
    if (m_manager->is_type_name(id->get_name()))
        throw type_already_defined_exception(get_position(), id->get_name());
    type* const no_definition = nullptr;
    shared_ptr<type_decl> d = mk<type_decl>(id, no_definition, node_pos(pos));
    if (next() != token::right_paren) {
        shared_ptr<type> definition = parse_type_definition(d);
        d->set_definition(definition);
    }
    m_manager->add_global_type_decl(d);
    return d;
}

// What d is to be, with the closing parenthesis of define-type.
shared_ptr<type> parser::parse_type_definition(type_decl* d) {
    struct current_definition {
        explicit current_definition(parser& p, type_decl* d)
            : m_parser(p) {
            p.m_curr_type_decl = d;
            p.m_curr_type_name = d->get_name();
            p.m_definition_closed = false;
        }
        ~current_definition() {
            m_parser.m_curr_type_decl = nullptr;
            m_parser.reset_accessor_parsing_auxiliary_fields();
        }
        parser& m_parser; // whose fields are set while this lives
    } current(*this, d);
    shared_ptr<type> result = parse_nested_type(true);
    if (!m_definition_closed) check_next(token::right_paren);
    return result;
}

} // namespace vexor
