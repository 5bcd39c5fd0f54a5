// An independent view of DIMACS files for tests and benchmarks: shares no code with the library, so that a
// mistake in the library's reader cannot hide one in its answers.
#pragma once

#include <string>
#include <vector>

namespace vexor_test {

// A CNF file as plain numbers: literal k or -k for variable k.
struct plain_cnf {
    int num_vars = 0;                      // of the header
    std::vector<std::vector<int>> clauses; // in the order of the file
    std::vector<std::string> comments;     // the text behind each leading "c", up to the line's end
};

// Reads whole lines; throws std::runtime_error with line number for everything it does not understand.
plain_cnf read_plain_cnf(std::string const& text);
plain_cnf read_plain_cnf_file(std::string const& path);

// What a solver printed by the conventions of the SAT competitions.
struct solver_output {
    std::string status;        // the text behind "s ", or empty
    bool has_values = false;   // a "v" line was there
    bool values_ended = false; // the 0 behind the last value
    std::vector<int> values;   // the literals of the "v" lines
    unsigned status_lines = 0;
};
// Throws std::runtime_error for a "v" line that is no list of numbers, a line above 78 columns, or another
// line that is neither a comment nor a status.
solver_output parse_solver_output(std::string const& text);

// The empty string if the values are a model of the formula, else what is wrong: a contradiction within the
// values, a variable beyond the header, a clause without a true literal.
std::string check_model(plain_cnf const& formula, std::vector<int> const& values);

// 1 satisfiable, -1 unsatisfiable, by trying assignments in order with early cuts; for up to some 25
// variables.
int brute_force(plain_cnf const& formula, std::vector<int>* values = nullptr);

} // namespace vexor_test
