// The caller's view into a running search.
#include "api/context_wrapper.h"

#include <algorithm>
#include <climits>

namespace vexor {

namespace {

// One for the whole process.
vexor_search_callback g_callback = nullptr;
search_data g_callback_data;

int clamp(std::uint64_t n) { return static_cast<int>(std::min<std::uint64_t>(n, INT_MAX)); }

// For the time of a call of the caller's code, which may also end by an exception.
class callback_frame {
public:
    callback_frame() { g_callback_runs = true; }
    callback_frame(callback_frame const&) = delete; // ends once
    callback_frame& operator=(callback_frame const&) = delete;
    ~callback_frame() { g_callback_runs = false; }
};

bool callback_wrapper(context* ctx) {
    statistics const stats = ctx->get_statistics();
    model& m = ctx->get_model();
    bool const has_model = m.is_valid();
    g_callback_data.model_available = has_model ? 1 : 0;
    g_callback_data.cost = has_model ? vexor_get_cost(reinterpret_cast<vexor_model>(&m)) : 0;
    g_callback_data.maxsat_iterations = clamp(stats.m_num_maxsat_iterations);
    g_callback_data.conflicts = clamp(stats.m_num_conflicts);
    g_callback_data.decisions = clamp(stats.m_num_decisions);
    g_callback_data.restarts = clamp(stats.m_num_restarts);
    g_callback_data.propagations = clamp(stats.m_num_propagations);
    callback_frame const frame;
    return g_callback(&g_callback_data) != 0;
}

} // namespace

} // namespace vexor

using namespace vexor;

extern "C" {

void vexor_set_search_callback(vexor_context ctx, vexor_search_callback callback) {
    context& c = to_context(ctx);
    if (callback == nullptr) misuse(__func__, "the callback is null");
    g_callback = callback;
    c.set_search_callback(callback_wrapper);
}

void vexor_remove_search_callback(vexor_context ctx) { to_context(ctx).remove_search_callback(); }

} // extern "C"
