// The types that bring names with them. They are read to the end of their define-type before the first name
// is entered: a text that breaks off must not leave names of a type that does not exist.
#include "frontend/parser_parts.h"

namespace vexor {

// Both closing parentheses, that of the type and that of define-type.
void parser::check_end_of_definition() {
    check(token::right_paren);
    check_next(token::right_paren);
    m_definition_closed = true;
}

// (scalar name ...)
shared_ptr<type> parser::parse_scalar_type(int pos) {
    shared_ptr_vector<identifier> elements;
    while (test_next(token::identifier)) elements.push_back(parse_identifier().get());
    check_end_of_definition();
    if (elements.size() == 0) throw empty_scalar_type_exception(position_at(pos));
    return m_manager->create_scalar_type(m_curr_type_decl, elements.data(), elements.size(), pos);
}

// (datatype constructor ...)
shared_ptr<type> parser::parse_datatype(int pos) {
    shared_ptr_vector<constructor_decl> constructors;
    while (next() != token::right_paren) constructors.push_back(parse_constructor().get());
    check_end_of_definition();
    if (constructors.size() == 0) throw empty_datatype_exception(position_at(pos));
    return m_manager->create_datatype(constructors.data(), constructors.size(), pos);
}

// name or (name accessor ...)
shared_ptr<constructor_decl> parser::parse_constructor() {
    bool has_accessors = m_curr_token == token::left_paren;
    if (!has_accessors && m_curr_token != token::identifier)
        throw constructor_expected_exception(get_position());
    if (has_accessors) next();
    int pos = get_token_pos();
    shared_ptr<identifier> id = parse_identifier();
    shared_ptr<type_name> result = m_curr_type_decl->create_type_name(pos);
    shared_ptr<recognizer_decl> recognizer = recognizer_decl::create_recognizer_decl(id, result, pos);
    shared_ptr_vector<accessor_decl> accessors;
    if (has_accessors) {
        scope fields(*this);
        while (next() != token::right_paren) {
            accessors.push_back(parse_accessor(recognizer).get());
            enter(accessors.back()->get_id_node(), accessors.back());
        }
    }
    if (accessors.size() == 0) return mk<constructor_decl>(id, result, recognizer, pos);
    return mk<constructor_decl>(id, accessors.data(), accessors.size(), result, recognizer, pos);
}

void parser::reset_accessor_parsing_auxiliary_fields() {
    m_accessor_arg.reset();
    m_accessor_arg_used = false;
}

// name::type. The accessor is a function from the values of its constructor alone.
shared_ptr<accessor_decl> parser::parse_accessor(recognizer_decl* recognizer) {
    int pos = get_token_pos();
    shared_ptr<identifier> id = parse_identifier();
    check_next(token::double_colon);
    shared_ptr<subtype> domain = m_manager->create_subtype_for_pred(recognizer, pos);
    m_accessor_arg = mk<var_decl>(mk<identifier>(m_manager, ustring("arg"), -1), domain, -1);
    bool is_recursive = test_next(token::identifier) && get_ustring() == m_curr_type_name;
    shared_ptr<type> range;
    if (is_recursive)
        range = m_curr_type_decl->create_type_name(get_token_pos());
    else
        range = parse_nested_type(false);
    identifier* const anonymous = nullptr;
    shared_ptr<var_decl> argument =
        m_accessor_arg_used ? m_accessor_arg : mk<var_decl>(anonymous, domain, -1);
    reset_accessor_parsing_auxiliary_fields();
    return mk<accessor_decl>(id, mk<function_type>(argument, range, pos), pos);
}

} // namespace vexor
