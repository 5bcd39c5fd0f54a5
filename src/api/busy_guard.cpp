#include "api/busy_guard.h"

#include <cstdio>
#include <cstdlib>

namespace vexor {

namespace {

thread_local char const* t_running = nullptr; // the call in progress on this thread

} // namespace

busy_guard::busy_guard(char const* function) {
    if (t_running != nullptr) {
        std::fprintf(stderr,
                     "vexor: %s was called from a callback of %s; callbacks must not call the library\n",
                     function, t_running);
        std::abort();
    }
    t_running = function;
}

busy_guard::~busy_guard() { t_running = nullptr; }

} // namespace vexor
