// Runs a piece of a test on a thread whose stack is as small as those of some callers: 512 KB.
#pragma once

#include <functional>

namespace vexor_test {

// Returns when f has ended. An exception of f ends the process: catch it inside.
void on_small_stack(std::function<void()> const& f);

} // namespace vexor_test
