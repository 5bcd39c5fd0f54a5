// Executes files in vexor's own language, and sessions at a terminal.
#pragma once

#include <string>

#include "options.h"

namespace vexor_tool {

// Executes the commands of one file, results as they come on standard output. The exit code is 0, and 1 after
// an error, which is told on the error stream; the commands before it are done.
int run_native(options const& opts, std::string const& file);

} // namespace vexor_tool
