// The log of the full interface: what is done, as commands that can be executed again.
#pragma once

#include <string>

namespace vexor {

class expr;
class type_decl;
class var_decl;

// The text of a command is complete in the file before the command begins, so that the log of a process that
// crashes leads to the crash.
//
// The language cannot say every name. One that its lexer does not read as a name, that a new context of the
// language has already, or that could be taken for a generated one is written as log!1, log!2, ...
void open_call_log(char const* file_name);
[[nodiscard]] bool is_logging();

// Frames one call. If it ends by an exception, its command turns into a comment: the command would stop the
// execution of the log, and has changed nothing.
class logged_call {
public:
    // "(command)"
    explicit logged_call(char const* command);
    // "(command e)" or "(command e argument)"
    logged_call(char const* command, expr* e, std::string const& argument = {});
    // "(command argument)"
    logged_call(char const* command, std::string const& argument);
    logged_call(logged_call const&) = delete; // writes at its end
    logged_call& operator=(logged_call const&) = delete;
    ~logged_call();

private:
    void begin(std::string text);

    int m_num_exceptions = 0; // that were on their way when the call began
    long m_start = 0;         // where the command stands in the file
    std::string m_text;       // the command; empty if nothing was logged
};

void log_declaration(var_decl* d);
void log_declaration(type_decl* d);

} // namespace vexor
