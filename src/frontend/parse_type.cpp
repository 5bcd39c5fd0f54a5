// Types but for those that bring names with them.
#include "ast/types/op_rules.h"
#include "ast/types/type_checker_exception.h"
#include "base/deep_stack.h"
#include "frontend/parser_parts.h"

namespace vexor {

shared_ptr<type> parser::parse_nested_type(bool definition) {
    switch (m_curr_token) {
    case token::identifier:
        if (is_label(get_ustring())) return parse_labelled_type(get_ustring());
        return mk_type_name(get_ustring(), get_token_pos());
    case token::kw_bool:
        return mk_builtin_type(m_manager->create_bool_type());
    case token::kw_number:
        return mk_builtin_type(m_manager->create_number_type());
    case token::kw_real:
        return mk_builtin_type(m_manager->create_real_type());
    case token::kw_int:
        return mk_builtin_type(m_manager->create_int_type());
    case token::kw_nat:
        return mk_builtin_type(m_manager->create_nat_type());
    case token::left_paren:
        return parse_type_form(definition);
    default:
        throw type_expected_exception(get_position(), definition);
    }
}

shared_ptr<type> parser::parse_type_form(bool definition) {
    check_depth();
    int pos = get_token_pos();
    // The names that a scalar type or a datatype declares belong to a type with a name.
    bool has_name = definition && m_curr_type_decl;
    switch (next()) {
    case token::kw_arrow:
        return parse_function_type(pos);
    case token::kw_tuple:
        return parse_tuple_type(pos);
    case token::kw_record:
        return parse_record_type(pos);
    case token::kw_subtype:
        return parse_subtype(pos);
    case token::kw_subrange:
        return parse_subrange(pos);
    case token::kw_bitvector:
        return parse_bitvector_type(pos);
    case token::kw_scalar:
        if (has_name) return parse_scalar_type(pos);
        break;
    case token::kw_datatype:
        if (has_name) return parse_datatype(pos);
        break;
    default:
        break;
    }
    throw type_expected_exception(get_position(), definition);
}

shared_ptr<type> parser::mk_builtin_type(type_name* shared) {
    if (m_sharing) return shared;
    return shared->get_decl()->create_type_name(get_token_pos());
}

// A use of a named type. The type under definition has no meaning yet but as the type of a field, which
// parse_accessor sees to: anywhere else it would be a type that contains itself without end.
shared_ptr<type> parser::mk_type_name(ustring const& name, int pos) {
    if (m_curr_type_decl && name == m_curr_type_name)
        throw invalid_datatype_occurrence_exception(position_at(pos), name);
    if (!m_sharing) return m_manager->create_type_name(name, pos);
    type_decl* d = m_manager->find_type_decl(name);
    if (!d) throw undefined_name_exception(position_at(pos), name);
    shared_ptr<type_name>& shared = m_type_name_cache[name];
    // The name may stand for something else since a pop.
    if (!shared || shared->get_decl() != d) shared = d->create_type_name(-1);
    return shared;
}

// A type, or name::type. Leaves the current token behind the construct: only the token behind a name tells
// which of the two it is.
shared_ptr<var_decl> parser::parse_type_or_var_decl() {
    int pos = get_token_pos();
    identifier* const anonymous = nullptr;
    if (m_curr_token != token::identifier || is_label(get_ustring())) {
        shared_ptr<type> t = parse_nested_type(false);
        next();
        return mk<var_decl>(anonymous, t, node_pos(pos));
    }
    ustring name = get_ustring();
    if (next() != token::double_colon) return mk<var_decl>(anonymous, mk_type_name(name, pos), node_pos(pos));
    next();
    shared_ptr<type> t = parse_nested_type(false);
    next();
    shared_ptr<identifier> id = mk<identifier>(m_manager, name, node_pos(pos));
    shared_ptr<var_decl> result = mk<var_decl>(id, t, node_pos(pos));
    enter(id, result);
    return result;
}

void parser::parse_components(node_list<var_decl>& components) {
    next();
    while (m_curr_token != token::right_paren) components.push_back(parse_type_or_var_decl().get());
}

shared_ptr<type> parser::parse_function_type(int pos) {
    scope parameters(*this);
    node_list<var_decl> elements(m_vars);
    parse_components(elements);
    if (elements.size() < 2) throw invalid_function_type_parser_exception(position_at(pos));
    type* range = elements.back()->get_type();
    return mk<function_type>(elements.data(), elements.size() - 1, range, node_pos(pos));
}

shared_ptr<type> parser::parse_tuple_type(int pos) {
    scope names(*this);
    node_list<var_decl> elements(m_vars);
    parse_components(elements);
    if (elements.size() == 0) throw empty_tuple_type_exception(position_at(pos));
    return mk<tuple_type>(m_manager, elements.data(), elements.size(), node_pos(pos));
}

shared_ptr<type> parser::parse_record_type(int pos) {
    shared_ptr_vector<field> fields;
    hash_set<ustring, hash_ustring> names;
    while (next() != token::right_paren) {
        int field_pos = get_token_pos();
        fields.push_back(parse_var_decl<field>(false).get());
        ustring name = fields.back()->get_name();
        if (!names.insert(name))
            throw record_type_with_duplicate_fields_exception(position_at(field_pos), name);
    }
    if (fields.size() == 0) throw empty_record_type_exception(position_at(pos));
    shared_ptr<record_type> result = mk<record_type>(m_manager, fields.data(), fields.size(), node_pos(pos));
    result->check();
    return result;
}

// (subtype (x::T) predicate)
shared_ptr<type> parser::parse_subtype(int pos) {
    check_next(token::left_paren);
    scope variable(*this);
    next();
    shared_ptr<var_decl> d = parse_var_decl<var_decl>(true);
    check_next(token::right_paren);
    next();
    shared_ptr<expr> predicate = parse_nested_expr();
    check_next(token::right_paren);
    return mk<subtype>(d, predicate, node_pos(pos));
}

shared_ptr<type> parser::parse_subrange(int pos) {
    next();
    shared_ptr<expr> lower = parse_nested_expr();
    next();
    shared_ptr<expr> upper = parse_nested_expr();
    check_next(token::right_paren);
    return mk<subrange>(lower, upper, node_pos(pos));
}

shared_ptr<type> parser::parse_bitvector_type(int pos) {
    check_next(token::numeral);
    unsigned size = 0;
    if (!read_index(max_bitvector_size, size) || size == 0)
        throw type_checker_exception(get_position(), "invalid bitvector size.");
    check_next(token::right_paren);
    return mk<bitvector_type>(m_manager, size, node_pos(pos));
}

} // namespace vexor
