// Lines about a running search for the person in front of the terminal.
#pragma once

namespace vexor {
class context;
}

namespace vexor_tool {

// Lets the context report on the error stream at most once a second, from the first second on. Does nothing
// if the error stream is no terminal.
void show_progress(vexor::context& ctx);

} // namespace vexor_tool
