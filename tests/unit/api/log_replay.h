// The log of the test process, and its execution by the native reader.
#pragma once

#include "api/vexor.h"

#include <string>
#include <vector>

namespace vexor_test {

// The log of the process is switched on by the first use and stays on.
std::size_t log_size();
// What was logged since the log had that size.
std::string log_since(std::size_t size);

// What a line of a log, as a command, leads to.
struct replayed_line {
    std::string m_command;
    std::string m_output; // with "!" and the message of an exception
    lbool m_answer = 0;   // of (check) and (max-sat)
    int m_id = 0;         // of (assert+ ...), 0 if none was announced
    std::string m_cost;   // of a model that (max-sat) found, or empty

    [[nodiscard]] bool is_question() const { return m_command == "(check)" || m_command == "(max-sat)"; }
};

// Executes the lines one by one on a new context of the language. Comments are left out.
std::vector<replayed_line> replay(std::string const& log);

// The answers of the questions of the log, in order; empty text of failures.
std::vector<lbool> replayed_answers(std::string const& log);

} // namespace vexor_test
