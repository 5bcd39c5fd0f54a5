#include "progress.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <unistd.h>

#include "search/context.h"

namespace vexor_tool {

namespace {

using steady = std::chrono::steady_clock;

// Prints when a second has gone by since it last did.
class progress_line {
public:
    void operator()(vexor::context& ctx) {
        steady::time_point now = steady::now();
        if (now - m_last < std::chrono::seconds(1)) return;
        m_last = now;
        vexor::statistics stats = ctx.get_statistics();
        std::fprintf(stderr,
                     "c %8.1f s %10llu conflicts %11llu decisions %7llu restarts %9u learned %7llu MB\n",
                     std::chrono::duration<double>(now - m_start).count(),
                     static_cast<unsigned long long>(stats.m_num_conflicts),
                     static_cast<unsigned long long>(stats.m_num_decisions),
                     static_cast<unsigned long long>(stats.m_num_restarts), stats.m_num_learned_clauses,
                     static_cast<unsigned long long>(stats.m_memory_bytes >> 20));
    }

private:
    steady::time_point m_start = steady::now(); // of the work on the file
    steady::time_point m_last = m_start;        // of the last line
};

} // namespace

void show_progress(vexor::context& ctx) {
    if (isatty(STDERR_FILENO)) ctx.set_progress_callback(progress_line());
}

} // namespace vexor_tool
