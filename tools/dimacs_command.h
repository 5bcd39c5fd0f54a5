// Decides one DIMACS file.
#pragma once

#include <string>

#include "options.h"

namespace vexor_tool {

// Prints the answer on standard output and returns the exit code. Throws vexor_exception for bad input. With
// last_file the memory of the search may be left to the end of the process, which is quicker than to take it
// apart.
int run_dimacs(options const& opts, std::string const& file, bool last_file);

} // namespace vexor_tool
