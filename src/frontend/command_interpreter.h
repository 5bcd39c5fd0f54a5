// Carries out the commands of the native language on a context.
#pragma once

#include "base/hash_table.h"
#include "frontend/parser.h"

#include <iosfwd>

namespace vexor {

// Where results of commands go; standard output by default. The stream must live until the next call or the
// end of the process.
extern std::ostream* g_pout;
void set_parser_output_stream(std::ostream* out);

// The text of the command `help`.
extern char const* const g_help_msg;

// Reads and executes commands up to the end of the text. An exception leaves what was done before it done.
// The text is a file of its own for positions.
void read(context* ctx, std::istream& stream, char const* file_name);
// A file that cannot be opened raises error_opening_file.
void read_from_file(context* ctx, char const* file_name);
void read_from_string(context* ctx, char const* text);

// Defines `div` and `mod` of integers in the context's manager, with the interface that creates contexts.
void build_predefined_functions(context* ctx);

class error_opening_file : public parser_exception {
public:
    error_opening_file(position_tracker::position const& pos, char const* name)
        : parser_exception(pos)
        , m_text(std::string("Error opening file ") + name) {}
    char const* what_core() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text; // the sentence
};

// A parser whose top level are commands. A command runs when its closing parenthesis was read.
class command_interpreter : public parser {
public:
    command_interpreter(std::istream& stream, context* ctx);

    // Executes all commands of the stream.
    void parse_decls();

private:
    using action = void (command_interpreter::*)();

    static action find_action(token keyword);
    void end_command() { check_next(token::right_paren); }
    bool inconsistent();
    void print_type_error();
    void display_assertion_id(int id);
    void print_ids(char const* title, svector<int> const& ids);
    numeral read_number();
    bool read_bool();
    struct lpb_literal {
        var_decl* m_decl; // held by the manager
        bool m_negated;
    };
    lpb_literal parse_lpb_literal(bool negated);

    // Commands, in the order of the help text; the current token is the keyword.
    void define();
    void define_type();
    void assert_formula();
    void assert_retractable();
    void assert_weighted(expr* e, numeral const& weight);
    void announce_assertion(int id);
    void assert_lpb();
    void retract();
    void run_check();
    void max_sat();
    void max_walksat();
    void eval_in_model();
    void push();
    void pop();
    void reset_all();
    void include();
    void echo();
    void status();
    void dump_context();
    void set_evidence();
    void set_verbosity();
    void set_arith_only();
    void set_fire_and_forget();
    void help();
    void exit_process();

    int m_command_pos = -1; // of the opening parenthesis of the command
};

} // namespace vexor
