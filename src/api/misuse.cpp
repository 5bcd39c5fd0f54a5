#include "api/misuse.h"

#include "base/hash_table.h"

#include <cstdio>
#include <cstdlib>

namespace vexor {

void misuse(char const* function, char const* what) {
    std::fprintf(stderr, "vexor: %s: %s\n", function, what);
    std::abort();
}

bool g_callback_runs = false;

#ifdef VEXOR_DEBUG

namespace {

using handle_set = hash_set<ast const*, fast_ptr_hash<ast const>>;

// Never destroyed: a context may be deleted by a destructor at the end of the process.
handle_set& dead_handles() {
    static auto* const set = new handle_set;
    return *set;
}

} // namespace

void note_handle_alive(ast const* node) { dead_handles().erase(node); }

void note_handle_dead(ast const* node) { dead_handles().insert(node); }

void check_handle_alive(ast const* node, char const* function) {
    if (dead_handles().contains(node))
        misuse(function, "a handle whose scope was popped, or whose context was reset or deleted");
}

#endif

} // namespace vexor
