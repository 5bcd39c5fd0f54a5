// Answers in the form of the SAT competitions and, with costs, of the MaxSAT evaluations.
#pragma once

#include <iosfwd>

namespace vexor {
class model;
}

namespace vexor_tool {

// The exit code of an answer: 10 for 1 (satisfiable), 20 for -1 (unsatisfiable), 0 for 0 (unknown); 30 for 1
// if costs were to be minimized.
int exit_code_of(int answer, bool optimized);
// "s SATISFIABLE" or, if costs were to be minimized, "s OPTIMUM FOUND"; "s UNSATISFIABLE" or "s UNKNOWN".
void print_status(std::ostream& out, int answer, bool optimized);
// "o COST", written at once.
void print_cost(std::ostream& out, vexor::model const& m);
// The values of the first num_vars variables of a file in "v" lines of at most 78 columns, closed by 0.
void print_values(std::ostream& out, vexor::model const& m, int num_vars);

} // namespace vexor_tool
