// Expressions that bind variables.
#include "base/deep_stack.h"
#include "frontend/parser_parts.h"

namespace vexor {

template <class T>
shared_ptr<expr> parser::parse_binding_expr(int pos) {
    check_next(token::left_paren);
    scope variables(*this);
    node_list<var_decl> bindings(m_vars);
    while (next() != token::right_paren) bindings.push_back(parse_var_decl<var_decl>(true).get());
    if (bindings.size() == 0) throw binding_expr_without_decls_exception(position_at(pos));
    next();
    shared_ptr<expr> body = parse_nested_expr();
    check_next(token::right_paren);
    return mk<T>(bindings.data(), bindings.size(), body, node_pos(pos));
}

template shared_ptr<expr> parser::parse_binding_expr<lambda_expr>(int);
template shared_ptr<expr> parser::parse_binding_expr<forall_expr>(int);
template shared_ptr<expr> parser::parse_binding_expr<exists_expr>(int);

// name::type. The name is known from behind the type on.
template <class T>
shared_ptr<T> parser::parse_var_decl(bool enter_name) {
    int pos = node_pos(get_token_pos());
    shared_ptr<identifier> id = parse_identifier();
    check_next(token::double_colon);
    next();
    shared_ptr<type> t = parse_nested_type(false);
    shared_ptr<T> result = mk<T>(id, t, pos);
    if (enter_name) enter(id, result);
    return result;
}

template shared_ptr<var_decl> parser::parse_var_decl<var_decl>(bool);
template shared_ptr<field> parser::parse_var_decl<field>(bool);

shared_ptr<expr> parser::parse_let(int pos) {
    check_next(token::left_paren);
    scope variables(*this);
    node_list<let_decl> bindings(m_lets);
    while (next() != token::right_paren) {
        bindings.push_back(parse_let_decl().get());
        enter(bindings.back()->get_id_node(), bindings.back());
    }
    next();
    shared_ptr<expr> body = parse_nested_expr();
    check_next(token::right_paren);
    return mk<let_expr>(bindings.data(), bindings.size(), body, node_pos(pos));
}

// (name definition) or (name::type definition).
shared_ptr<let_decl> parser::parse_let_decl() {
    check(token::left_paren);
    check_next(token::identifier);
    int pos = node_pos(get_token_pos());
    shared_ptr<identifier> id = parse_identifier();
    shared_ptr<type> t;
    if (test_next(token::double_colon)) {
        next();
        t = parse_nested_type(false);
        next();
    }
    shared_ptr<expr> definition = parse_nested_expr();
    check_next(token::right_paren);
    return mk<let_decl>(id, t, definition, pos);
}

} // namespace vexor
