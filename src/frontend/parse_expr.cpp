// Expressions without variables of their own.
#include <climits>

#include "ast/types/op_rules.h"
#include "base/deep_stack.h"
#include "frontend/parser_parts.h"

namespace vexor {

shared_ptr<expr> parser::parse_nested_expr() {
    int pos = node_pos(get_token_pos());
    switch (m_curr_token) {
    case token::left_paren:
        return parse_form();
    case token::identifier:
        return parse_name_expr();
    case token::numeral:
        return mk<numeral_expr>(m_manager, get_numeral(), pos);
    case token::bitvector_constant:
        return parse_bitvector_constant();
    case token::kw_true:
        return m_sharing ? shared_ptr<expr>(m_manager->mk_true())
                         : shared_ptr<expr>(m_manager->get_true_decl()->create_name_expr(pos));
    case token::kw_false:
        return m_sharing ? shared_ptr<expr>(m_manager->mk_false())
                         : shared_ptr<expr>(m_manager->get_false_decl()->create_name_expr(pos));
    default:
        if (shared_ptr<expr> op = mk_operator(m_curr_token)) return op;
        throw expr_expected_exception(get_position());
    }
}

// What stands in parentheses; the current token is the opening one.
shared_ptr<expr> parser::parse_form() {
    check_depth();
    int pos = get_token_pos();
    switch (next()) {
    case token::kw_lambda:
        return parse_binding_expr<lambda_expr>(pos);
    case token::kw_forall:
        return parse_binding_expr<forall_expr>(pos);
    case token::kw_exists:
        return parse_binding_expr<exists_expr>(pos);
    case token::kw_let:
        return parse_let(pos);
    case token::kw_update:
        return parse_update(pos);
    case token::kw_mk_tuple:
        return parse_mk_tuple(pos);
    case token::kw_mk_record:
        return parse_mk_record(pos);
    case token::kw_select:
        return parse_select(pos);
    case token::kw_mk_bv:
        return parse_mk_bv(pos);
    default:
        return parse_application(pos);
    }
}

shared_ptr<expr> parser::parse_application(int pos) {
    node_list<expr> args(m_exprs);
    shared_ptr<expr> fun = parse_nested_expr();
    while (next() != token::right_paren) args.push_back(parse_nested_expr().get());
    if (args.size() == 0) throw application_without_args_exception(position_at(pos));
    if (m_sharing && args.size() == 1 && is_a<not_name_expr>(fun)) return share_not(fun, args[0]);
    shared_ptr<application> result = mk<application>(fun, args.data(), args.size(), node_pos(pos));
    if (args.size() == 3 && is_a<bv_extract_name_expr>(fun)) put_high_end_first(result);
    return result;
}

// Of the two ends of an extraction the larger one is the high end, wherever it stands: one term has one form.
void parser::put_high_end_first(application* extract) {
    unsigned high = 0;
    unsigned low = 0;
    if (!get_extract_bounds(extract, high, low) || high == low) return;
    shared_ptr_vector<expr> args(3, extract->get_args().data());
    if (static_cast<numeral_expr*>(args[0])->get_value() == numeral(high)) return;
    expr* const ordered[] = {args[1], args[0], args[2]};
    extract->set_args(ordered, 3);
}

// One (not x) for each global x. Local variables may have the same name and are left alone.
shared_ptr<expr> parser::share_not(expr* op, expr* arg) {
    if (!arg->is_name_expr() || static_cast<name_expr*>(arg)->get_decl()->is_local())
        return mk<application>(op, arg, -1);
    shared_ptr<application>& shared = m_not_cache[static_cast<name_expr*>(arg)->get_name()];
    // The shared name is a new one when the name stands for something else since a pop.
    if (!shared || shared->get_arg(0) != arg) shared = mk<application>(op, arg, -1);
    return shared;
}

shared_ptr<expr> parser::parse_bitvector_constant() {
    if (get_bv_size() == 0 || get_bv_size() > max_bitvector_size) throw invalid_mk_bv(get_position());
    return mk<bitvector_constant>(m_manager, get_bv_size(), get_bv_value(), node_pos(get_token_pos()));
}

shared_ptr<expr> parser::parse_mk_bv(int pos) {
    check_next(token::numeral);
    unsigned size = 0;
    if (!read_index(max_bitvector_size, size) || size == 0) throw invalid_mk_bv(get_position());
    check_next(token::numeral);
    numeral value = get_numeral();
    if (value.is_neg() || !value.is_int()) throw invalid_mk_bv(get_position());
    check_next(token::right_paren);
    return mk<bitvector_constant>(m_manager, size, mod_2k(value, size), node_pos(pos));
}

// The token behind the target tells what kind of value is updated.
shared_ptr<expr> parser::parse_update(int pos) {
    next();
    shared_ptr<expr> target = parse_nested_expr();
    unsigned index = 0;
    shared_ptr<identifier> field_name;
    switch (next()) {
    case token::left_paren:
        return parse_function_update(target, pos);
    case token::identifier:
        field_name = parse_identifier();
        break;
    case token::numeral:
        if (read_index(INT_MAX, index)) break;
        [[fallthrough]];
    default:
        throw invalid_update_exception(get_position());
    }
    next();
    shared_ptr<expr> value = parse_nested_expr();
    check_next(token::right_paren);
    if (field_name) return mk<record_update_expr>(target, field_name, value, node_pos(pos));
    return mk<tuple_update_expr>(target, static_cast<int>(index), value, node_pos(pos));
}

shared_ptr<expr> parser::parse_function_update(expr* target, int pos) {
    int args_pos = get_token_pos();
    node_list<expr> args(m_exprs);
    while (next() != token::right_paren) args.push_back(parse_nested_expr().get());
    if (args.size() == 0) throw function_update_without_args_exception(position_at(args_pos));
    next();
    shared_ptr<expr> value = parse_nested_expr();
    check_next(token::right_paren);
    return mk<function_update_expr>(target, args.data(), args.size(), value, node_pos(pos));
}

shared_ptr<expr> parser::parse_select(int pos) {
    next();
    shared_ptr<expr> operand = parse_nested_expr();
    shared_ptr<expr> result;
    unsigned index = 0;
    switch (next()) {
    case token::identifier:
        result = mk<record_selection>(operand, parse_identifier(), node_pos(pos));
        break;
    case token::numeral:
        if (read_index(INT_MAX, index)) {
            result = mk<tuple_selection>(operand, index, node_pos(pos));
            break;
        }
        [[fallthrough]];
    default:
        throw invalid_select_exception(get_position());
    }
    check_next(token::right_paren);
    return result;
}

shared_ptr<expr> parser::parse_mk_tuple(int pos) {
    node_list<expr> components(m_exprs);
    while (next() != token::right_paren) components.push_back(parse_nested_expr().get());
    if (components.size() == 0) throw empty_tuple_literal_exception(position_at(pos));
    return mk<tuple_literal>(m_manager, components.data(), components.size(), node_pos(pos));
}

shared_ptr<expr> parser::parse_mk_record(int pos) {
    shared_ptr_vector<record_entry> entries;
    hash_set<ustring, hash_ustring> names;
    while (next() != token::right_paren) {
        int entry_pos = get_token_pos();
        shared_ptr<identifier> field_name = parse_identifier();
        ustring name = field_name->get_name();
        if (!names.insert(name))
            throw record_type_with_duplicate_fields_exception(position_at(entry_pos), name);
        check_next(token::double_colon);
        next();
        shared_ptr<expr> value = parse_nested_expr();
        entries.push_back(mk<record_entry>(field_name, value, node_pos(entry_pos)).get());
    }
    if (entries.size() == 0) throw empty_record_literal_exception(position_at(pos));
    return mk<record_literal>(m_manager, entries.data(), entries.size(), node_pos(pos));
}

} // namespace vexor
