// The commands that ask, tell and set.
#include "frontend/command_interpreter.h"

#include "ast/node/ast_manager.h"
#include "base/diagnostics.h"
#include "frontend/read_term.h"
#include "internalize/internalize_settings.h"
#include "search/context.h"

#include <climits>
#include <cstdlib>
#include <fstream>
#include <ostream>

namespace vexor {

char const* const g_help_msg =
    "(assert [expr])           -- assert the formula [expr] into the current logical context.\n"
    "(assert+ [expr])          -- similar to assert, but allows retraction and unsat core extraction.\n"
    "(assert+ [expr] [weight]) -- similar to assert+, but the weight is used for max-sat.\n"
    "(retract [idx])           -- retract the assertion with index idx from the logical context.\n"
    "(check)                   -- check whether the logical context is satisfiable or not.\n"
    "(max-sat)                 -- extract the maximal satisfying model.\n"
    "(set-evidence! true)      -- enable the construction of evidence: models and unsatisfiable cores.\n"
    "(set-evidence! false)     -- disable the construction of evidence: models and unsatisfiable cores.\n"
    "(set-verbosity! [num])    -- set the verbosity level.\n"
    "(set-arith-only! true)    -- tell vexor that only boolean combinations of arithmetic constraints are "
    "going to be "
    "asserted.\n"
    "(push)                    -- save the current logical context on the stack.\n"
    "(pop)                     -- restore the context from the top of the stack, and pop it off the stack.\n"
    "(echo [string])           -- print the string [string].\n"
    "(reset)                   -- reset the logical context.\n"
    "(include [file])          -- include the file [file].\n"
    "(status)                  -- display the status of the logical context.\n"
    "(exit)                    -- exit.\n"
    "(help)                    -- display this message.\n"
    "For more information, go to the page docs/language.md of the distribution (/language.shtml).\n";

// At a verbosity above 2 the position of the assertion stands before its id.
void command_interpreter::display_assertion_id(int id) {
    if (get_verbosity_level() > 2) {
        int const* pos = m_assertion_id_manager.find(id);
        *g_pout << "\n" << get_manager()->get_position(pos == nullptr ? -1 : *pos) << " ";
    }
    *g_pout << id;
}

void command_interpreter::print_ids(char const* title, svector<int> const& ids) {
    if (ids.empty()) return;
    *g_pout << title;
    for (int id : ids) {
        *g_pout << " ";
        display_assertion_id(id);
    }
    *g_pout << "\n";
}

void command_interpreter::run_check() {
    end_command();
    if (inconsistent()) return;
    int const answer = m_context->check();
    model const& m = m_context->get_model();
    bool const evidence = m_context->evidence();
    if (answer > 0) {
        *g_pout << "sat\n";
        if (evidence && m.is_valid()) m.display(*g_pout);
    } else if (answer < 0) {
        *g_pout << "unsat\n";
        if (evidence) print_ids("unsat core ids:", m_context->get_unsat_core());
    } else {
        *g_pout << "unknown\n";
        if (!m_context->type_correct()) *g_pout << m_context->get_type_incorrect_explanation() << "\n";
        if (m_context->incomplete() && evidence && m.is_valid()) m.display(*g_pout);
    }
}

void command_interpreter::max_sat() {
    end_command();
    if (inconsistent()) return;
    int const answer = m_context->max_sat();
    if (answer == 0) {
        *g_pout << "unknown\n";
        print_type_error();
        return;
    }
    *g_pout << (answer > 0 ? "sat\n" : "unsat\n");
    if (answer < 0 || !m_context->evidence()) return;
    svector<int> ids;
    m_context->get_inconsistent_assertions(ids);
    print_ids("unsatisfied assertion ids:", ids);
    if (m_context->get_model().is_valid()) m_context->get_model().display(*g_pout);
}

void command_interpreter::max_walksat() {
    read_number();
    end_command();
    *g_pout << "not supported\n";
}

void command_interpreter::eval_in_model() {
    next();
    shared_ptr<expr> e = parse_expr();
    end_command();
    if (inconsistent()) return;
    shared_ptr<expr> value(e);
    m_context->eval_in_model(value);
    *g_pout << *e << " evaluates to " << *value << "\n";
}

// The state of the including file is put back also when the included one fails.
void command_interpreter::include() {
    check_next(token::string);
    std::string const name(get_text(), get_text_length());
    end_command();
    constexpr unsigned max_depth = 100;
    static unsigned depth = 0; // of files that include each other
    if (depth >= max_depth)
        throw nesting_too_deep_parser_exception(get_manager()->get_position(m_command_pos));
    std::ifstream stream(name, std::ios::binary);
    if (!stream) throw error_opening_file(get_manager()->get_position(m_command_pos), name.c_str());
    file_pause const pause(get_manager()->get_position_tracker(), *this);
    struct level {
        level() { ++depth; }
        ~level() { --depth; }
    } const one_more;
    read(m_context, stream, name.c_str());
}

void command_interpreter::echo() {
    check_next(token::string);
    std::string const text(get_text(), get_text_length());
    end_command();
    *g_pout << text;
}

void command_interpreter::status() {
    end_command();
    *g_pout << (m_context->inconsistent() ? "unsat\n" : "ok\n");
}

void command_interpreter::dump_context() {
    end_command();
    m_context->display(*g_pout);
}

void command_interpreter::set_evidence() {
    bool const value = read_bool();
    end_command();
    m_context->set_evidence(value);
}

void command_interpreter::set_verbosity() {
    numeral const level = read_number();
    end_command();
    set_verbosity_level(level <= numeral(0)         ? 0
                        : level >= numeral(INT_MAX) ? INT_MAX
                                                    : floor(level).get_int());
}

void command_interpreter::set_arith_only() {
    bool const value = read_bool();
    end_command();
    g_arithmetic_only = value;
}

void command_interpreter::set_fire_and_forget() {
    bool const value = read_bool();
    end_command();
    g_fire_and_forget = value;
}

void command_interpreter::help() {
    end_command();
    *g_pout << g_help_msg;
}

void command_interpreter::exit_process() {
    end_command();
    g_pout->flush();
    std::exit(0);
}

} // namespace vexor
