// Detects calls from a callback back into the library.
#pragma once

namespace vexor {

// Frames one call that runs for long and may call back into the caller's code. A second one inside is misuse,
// which would corrupt state: it ends the process with a message that names the function.
class busy_guard {
public:
    explicit busy_guard(char const* function);
    busy_guard(busy_guard const&) = delete; // one frame per call
    busy_guard& operator=(busy_guard const&) = delete;
    ~busy_guard();
};

} // namespace vexor
