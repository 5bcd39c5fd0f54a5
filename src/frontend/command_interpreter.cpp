// The loop over commands, and what they share.
#include "frontend/command_interpreter.h"

#include "ast/node/ast_manager.h"
#include "base/deep_stack.h"
#include "frontend/parser_parts.h"
#include "frontend/read_term.h"
#include "frontend/user_scopes.h"
#include "search/context.h"

#include <fstream>
#include <iostream>
#include <sstream>

namespace vexor {

std::ostream* g_pout = &std::cout;

void set_parser_output_stream(std::ostream* out) { g_pout = out; }

command_interpreter::command_interpreter(std::istream& stream, context* ctx)
    : parser(stream, ctx->get_manager(), ctx) {}

// Null for a token that is no command.
command_interpreter::action command_interpreter::find_action(token keyword) {
    using self = command_interpreter;
    switch (keyword) {
    case token::kw_define:
        return &self::define;
    case token::kw_define_type:
        return &self::define_type;
    case token::kw_assert:
        return &self::assert_formula;
    case token::kw_assert_retractable:
        return &self::assert_retractable;
    case token::kw_assert_lpb:
        return &self::assert_lpb;
    case token::kw_retract:
        return &self::retract;
    case token::kw_check:
        return &self::run_check;
    case token::kw_max_sat:
        return &self::max_sat;
    case token::kw_max_walksat:
        return &self::max_walksat;
    case token::kw_eval_in_model:
        return &self::eval_in_model;
    case token::kw_push:
        return &self::push;
    case token::kw_pop:
        return &self::pop;
    case token::kw_reset:
        return &self::reset_all;
    case token::kw_include:
        return &self::include;
    case token::kw_echo:
        return &self::echo;
    case token::kw_status:
        return &self::status;
    case token::kw_dump_context:
        return &self::dump_context;
    case token::kw_set_evidence:
        return &self::set_evidence;
    case token::kw_set_verbosity:
        return &self::set_verbosity;
    case token::kw_set_arith_only:
        return &self::set_arith_only;
    case token::kw_set_fire_and_forget:
        return &self::set_fire_and_forget;
    case token::kw_help:
        return &self::help;
    case token::kw_exit:
        return &self::exit_process;
    default:
        return nullptr;
    }
}

void command_interpreter::parse_decls() {
    while (next() != token::end_of_stream) {
        check(token::left_paren);
        m_command_pos = get_token_pos();
        action const run = find_action(next());
        if (run == nullptr) throw top_level_elem_expected_exception(get_position());
        (this->*run)();
        g_pout->flush();
    }
}

// The gate of the commands that need a live context; tells the user how to get one back.
bool command_interpreter::inconsistent() {
    if (m_context->inconsistent())
        *g_pout << "Logical context is inconsistent. ";
    else if (!m_context->type_correct())
        *g_pout << "Logical context detected a type error: " << m_context->get_type_incorrect_explanation()
                << "\n";
    else
        return false;
    *g_pout << (has_user_scope(*m_context) ? "Use (pop) to restore the previous state.\n"
                                           : "Use (reset) to reset.\n");
    g_pout->flush();
    return true;
}

void command_interpreter::print_type_error() {
    if (!m_context->type_correct())
        *g_pout << "type error: " << m_context->get_type_incorrect_explanation() << "\n";
}

numeral command_interpreter::read_number() {
    check_next(token::numeral);
    return get_numeral();
}

bool command_interpreter::read_bool() {
    next();
    if (m_curr_token == token::kw_true) return true;
    check(token::kw_false);
    return false;
}

void read(context* ctx, std::istream& stream, char const* file_name) {
    position_tracker& tracker = ctx->get_manager()->get_position_tracker();
    tracker.new_file(file_name);
    command_interpreter interpreter(stream, ctx);
    file_end const end(tracker, interpreter);
    // One call for all commands: to enter the deep stack for each would cost more than many a command.
    on_deep_stack([&] { interpreter.parse_decls(); });
}

void read_from_file(context* ctx, char const* file_name) {
    std::ifstream stream(file_name, std::ios::binary);
    if (!stream) throw error_opening_file(position_tracker::position(), file_name);
    read(ctx, stream, file_name);
}

void read_from_string(context* ctx, char const* text) {
    std::istringstream stream(text);
    read(ctx, stream, "<string>");
}

// The predicate of div leaves the result open where the divisor is 0: an empty type would make every context
// that mentions div unsatisfiable.
void build_predefined_functions(context* ctx) {
    read_from_string(
        ctx, "(define div::(-> x::int y::int (subtype (r::int) (or (= y 0) (if (> y 0) "
             "(and (>= x (* y r)) (< x (* y (+ r 1)))) (and (<= x (* y r)) (> x (* y (+ r 1)))))))))");
    read_from_string(ctx, "(define mod::(-> x::int y::int (subtype (r::int) (= (+ r (* (div x y) y)) x))))");
}

} // namespace vexor
