// The commands that change what is asserted.
#include "frontend/command_interpreter.h"

#include "ast/node/ast_manager.h"
#include "frontend/read_term.h"
#include "frontend/user_scopes.h"
#include "search/context.h"

#include <ostream>

namespace vexor {

void command_interpreter::define() { parse_const_decl(m_command_pos); }
void command_interpreter::define_type() { parse_type_decl(m_command_pos); }

void command_interpreter::assert_formula() {
    next();
    shared_ptr<expr> const e = parse_expr();
    end_command();
    if (inconsistent()) return;
    m_context->assert_cnstr(e.get());
    if (m_context->inconsistent())
        *g_pout << "unsat\n";
    else
        print_type_error();
}

void command_interpreter::assert_retractable() {
    next();
    shared_ptr<expr> const e = parse_expr();
    if (next() == token::numeral) {
        numeral const weight = get_numeral();
        end_command();
        if (!inconsistent()) assert_weighted(e.get(), weight);
        return;
    }
    check(token::right_paren);
    if (!inconsistent()) announce_assertion(m_context->assert_retractable_cnstr(e.get()));
}

void command_interpreter::assert_weighted(expr* e, numeral const& weight) {
    if (!weight.is_pos())
        *g_pout << "Error: weight must be greater than zero.\n";
    else
        announce_assertion(m_context->assert_weighted_cnstr(e, weight));
}

void command_interpreter::announce_assertion(int id) {
    *g_pout << "id: " << id << "\n";
    m_assertion_id_manager.insert(id, m_command_pos);
    print_type_error();
}

// (assert-lpb term ... bound): a term is a literal or (coefficient literal).
void command_interpreter::assert_lpb() {
    vector<numeral> coefficients;
    svector<lpb_literal> terms;
    while (next() != token::numeral) {
        bool const parenthesis = m_curr_token == token::left_paren;
        bool const has_coefficient = parenthesis && test_next(token::numeral);
        coefficients.push_back(has_coefficient ? get_numeral() : numeral(1));
        if (has_coefficient) {
            bool const negated = test_next(token::left_paren);
            if (negated) next();
            terms.push_back(parse_lpb_literal(negated));
            check_next(token::right_paren);
        } else {
            terms.push_back(parse_lpb_literal(parenthesis));
        }
    }
    numeral const bound = get_numeral();
    end_command();
    if (inconsistent()) return;
    svector<literal> lits;
    for (lpb_literal const& t : terms) {
        literal const l = m_context->create_literal(t.m_decl);
        lits.push_back(t.m_negated ? ~l : l);
    }
    m_context->assert_lpb(coefficients, lits, bound);
    if (m_context->inconsistent()) *g_pout << "unsat\n";
    print_type_error();
}

// An identifier, or, behind the parenthesis that a negated one begins with, the rest of (not x).
command_interpreter::lpb_literal command_interpreter::parse_lpb_literal(bool negated) {
    if (negated) {
        check(token::kw_not);
        next();
    }
    check(token::identifier);
    var_decl* const d = get_manager()->get_global_var_decl(get_ustring(), get_token_pos());
    if (!d->is_boolean() || d->is_builtin()) throw expr_expected_exception(get_position());
    if (negated) check_next(token::right_paren);
    return {d, negated};
}

void command_interpreter::retract() {
    numeral const id = read_number();
    end_command();
    if (inconsistent()) return;
    bool const known =
        id.is_int() && id.is_pos() && id <= numeral(2147483647) && m_context->retract(id.get_int());
    if (!known) *g_pout << "Error: there is no assertion with id " << id << ".\n";
}

void command_interpreter::push() {
    end_command();
    // A dead context says so; its push is remembered for the pop that belongs to it.
    inconsistent();
    push_user_scope(*m_context);
}

void command_interpreter::pop() {
    end_command();
    if (!pop_user_scopes(*m_context, 1)) *g_pout << "Backtracking not possible here (no matching (push)).\n";
}

void command_interpreter::reset_all() {
    end_command();
    m_context->reset();
    reset_caches();
    get_manager()->reset();
    m_assertion_id_manager.reset();
    file_pause const pause(get_manager()->get_position_tracker(), *this);
    build_predefined_functions(m_context);
}

} // namespace vexor
