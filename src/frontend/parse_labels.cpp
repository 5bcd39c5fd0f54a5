// Names for nodes, as the printer with sharing writes them: "#1(+ x 1)" is the sum and names it, "#1" is the
// same node again. A name that the text declares itself goes before a label.
#include "frontend/parser_parts.h"

namespace vexor {

bool parser::is_label(ustring const& name) const {
    char const* text = name.c_str();
    if (!m_labels_allowed || *text != '#' || text[1] == '\0') return false;
    for (text++; *text; text++) {
        if (*text < '0' || *text > '9') return false;
    }
    return !m_manager->is_global_name_expr(name) && !m_manager->is_type_name(name);
}

// The current token is the label. One that stands for nothing yet is followed by its node.
shared_ptr<expr> parser::parse_labelled_expr(ustring const& label) {
    if (shared_ptr<ast>* known = m_labels.find(label)) {
        if (!(*known)->is_expr()) throw expr_expected_exception(get_position());
        return static_cast<expr*>(known->get());
    }
    check_next(token::left_paren);
    shared_ptr<expr> result = parse_nested_expr();
    m_labels.insert(label, result);
    return result;
}

shared_ptr<type> parser::parse_labelled_type(ustring const& label) {
    if (shared_ptr<ast>* known = m_labels.find(label)) {
        if (!(*known)->is_type()) throw type_expected_exception(get_position(), false);
        return static_cast<type*>(known->get());
    }
    check_next(token::left_paren);
    shared_ptr<type> result = parse_nested_type(false);
    m_labels.insert(label, result);
    return result;
}

} // namespace vexor
