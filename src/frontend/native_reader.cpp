#include "frontend/native_reader.h"

#include <ostream>

#include "ast/node/settings.h"
#include "ast/types/type_checker.h"
#include "base/deep_stack.h"
#include "frontend/parser.h"
#include "frontend/read_term.h"

namespace vexor {

namespace {

class native_reader : public parser {
public:
    native_reader(std::istream& stream, ast_manager* m, native_contents& contents)
        : parser(stream, m)
        , m_contents(contents) {
        allow_labels();
    }

    void read_commands() {
        while (next() != token::end_of_stream) {
            check(token::left_paren);
            reset_labels();
            if (!read_command()) return;
        }
    }

private:
    bool read_command();
    void read_assertion(bool may_have_weight);
    void read_scope_command(token command);
    void skip_command();

    native_contents& m_contents; // what was read
};

// The current token is the opening parenthesis. False when the reading ends.
bool native_reader::read_command() {
    int pos = get_token_pos();
    switch (next()) {
    case token::kw_define:
        m_contents.push_back(parse_const_decl(pos).get());
        return true;
    case token::kw_define_type:
        m_contents.push_back(parse_type_decl(pos).get());
        return true;
    case token::kw_assert:
        read_assertion(false);
        return true;
    case token::kw_assert_retractable:
        read_assertion(true);
        return true;
    case token::kw_push:
    case token::kw_pop:
        read_scope_command(m_curr_token);
        return true;
    case token::kw_check:
    case token::kw_max_sat:
    case token::kw_max_walksat:
    case token::kw_retract:
    case token::kw_eval_in_model:
    case token::kw_echo:
    case token::kw_status:
    case token::kw_dump_context:
    case token::kw_set_evidence:
    case token::kw_set_verbosity:
    case token::kw_set_arith_only:
    case token::kw_set_fire_and_forget:
    case token::kw_help:
        skip_command();
        return true;
    case token::kw_exit:
        check_next(token::right_paren);
        return false;
    default:
        throw top_level_elem_expected_exception(get_position());
    }
}

void native_reader::read_assertion(bool may_have_weight) {
    next();
    shared_ptr<expr> e = parse_expr();
    if (next() == token::numeral && may_have_weight) next();
    check(token::right_paren);
    if (g_type_check) type_check(e.get());
    m_contents.push_back(e);
}

void native_reader::read_scope_command(token command) {
    check_next(token::right_paren);
    if (command == token::kw_push)
        m_manager->push();
    else if (m_manager->num_scopes() > 0)
        m_manager->pop(1);
}

void native_reader::skip_command() {
    for (unsigned long depth = 1; depth > 0;) {
        next();
        if (m_curr_token == token::left_paren) depth++;
        if (m_curr_token == token::right_paren) depth--;
        if (m_curr_token == token::end_of_stream) check(token::right_paren);
    }
}

void print_node(std::ostream& out, ast* node, print_mode mode) {
    if (mode == print_mode::dag)
        node->display_as_dag(out, false);
    else
        node->display(out);
}

} // namespace

void read_native(ast_manager* m, std::istream& stream, char const* file_name, native_contents& contents) {
    m->get_position_tracker().new_file(file_name);
    native_reader reader(stream, m, contents);
    file_end end(m->get_position_tracker(), reader);
    // One call for all commands: entering the deep stack for each would cost more than reading a short one.
    on_deep_stack([&] { reader.read_commands(); });
}

void print_native(std::ostream& out, native_contents const& contents, print_mode mode) {
    for (ast* node : contents) {
        if (node->is_expr()) out << "(assert ";
        print_node(out, node, mode);
        out << (node->is_expr() ? ")\n" : "\n");
    }
}

} // namespace vexor
