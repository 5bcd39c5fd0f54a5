// What the first comment lines of a test file demand.
#pragma once

#include <string>
#include <vector>

namespace vexor_test {

struct expectation {
    std::string answer;               // sat, unsat, unknown or error; empty if the file states none
    std::string error;                // the text that the error stream must hold
    std::vector<std::string> options; // for the command line
};

// Lines of the form "c expect: sat", "c error: TEXT", "c options: --a --b"; other comments mean nothing.
// Throws std::runtime_error for an answer it does not know or a directive given twice.
expectation read_expectation(std::string const& text);

} // namespace vexor_test
