#include "base/debug.h"

#include <cstdio>
#include <cstdlib>

namespace vexor {

int g_debug_level = 1;

void assertion_failed(char const* condition, char const* file, int line) {
    std::fprintf(stderr, "%s:%d: assertion failed: %s\n", file, line, condition);
    std::abort();
}

} // namespace vexor
