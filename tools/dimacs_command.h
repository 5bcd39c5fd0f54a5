// Decides one DIMACS file.
#pragma once

#include <string>

#include "options.h"

namespace vexor_tool {

// Prints the answer on standard output and returns the exit code. Throws vexor_exception for bad input.
int run_dimacs(options const& opts, std::string const& file);

} // namespace vexor_tool
