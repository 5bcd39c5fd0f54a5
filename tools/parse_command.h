// Reading files in vexor's own language without solving them.
#pragma once

#include <string>

#include "options.h"

namespace vexor_tool {

// Reads the file and prints it when the options ask for that; the result is the exit code. Errors of the file
// are exceptions of the library.
int run_parse(options const& opts, std::string const& file);

} // namespace vexor_tool
