// Assertions and questions.
#include "api/api_exceptions.h"
#include "api/busy_guard.h"
#include "api/call_log.h"
#include "api/context_wrapper.h"
#include "ast/node/ast_manager.h"
#include "search/search_settings.h"

#include <algorithm>

using namespace vexor;

namespace {

// The cost that max_sat begins with, for one call.
class initial_cost_frame {
public:
    explicit initial_cost_frame(vexor_int64 cost) { vexor_set_maxsat_initial_cost(cost); }
    initial_cost_frame(initial_cost_frame const&) = delete; // one frame per call
    initial_cost_frame& operator=(initial_cost_frame const&) = delete;
    ~initial_cost_frame() {
        g_initial_maxsat_cost = 0;
        g_use_initial_maxsat_cost = false;
    }
};

} // namespace

extern "C" {

void vexor_assert(vexor_context ctx, vexor_expr e) {
    busy_guard const guard(__func__);
    context& c = to_context(ctx);
    expr* const formula = to_expr(e, c.get_manager());
    logged_call const log("assert", formula);
    c.assert_cnstr(formula);
}

assertion_id vexor_assert_retractable(vexor_context ctx, vexor_expr e) {
    busy_guard const guard(__func__);
    context& c = to_context(ctx);
    expr* const formula = to_expr(e, c.get_manager());
    logged_call const log("assert+", formula);
    return c.assert_retractable_cnstr(formula);
}

assertion_id vexor_assert_weighted(vexor_context ctx, vexor_expr e, vexor_int64 weight) {
    busy_guard const guard(__func__);
    context& c = to_context(ctx);
    expr* const formula = to_expr(e, c.get_manager());
    logged_call const log("assert+", formula, std::to_string(weight));
    if (weight <= 0) throw invalid_weight_exception();
    return c.assert_weighted_cnstr(formula, numeral(weight));
}

void vexor_retract(vexor_context ctx, assertion_id id) {
    busy_guard const guard(__func__);
    context& c = to_context(ctx);
    logged_call const log("retract", std::to_string(id));
    c.retract(id);
}

lbool vexor_check(vexor_context ctx) {
    busy_guard const guard(__func__);
    context& c = to_context(ctx);
    logged_call const log("check");
    return c.check();
}

lbool vexor_max_sat(vexor_context ctx) {
    busy_guard const guard(__func__);
    context& c = to_context(ctx);
    logged_call const log("max-sat");
    return c.max_sat();
}

lbool vexor_max_sat_cost_leq(vexor_context ctx, vexor_int64 max_cost) {
    busy_guard const guard(__func__);
    context& c = to_context(ctx);
    initial_cost_frame const frame(max_cost);
    return c.max_sat();
}

lbool vexor_find_weighted_model(vexor_context ctx, int random) {
    busy_guard const guard(__func__);
    return to_context(ctx).find_weighted_model(random != 0);
}

unsigned vexor_get_unsat_core(vexor_context ctx, assertion_id* ids, unsigned max) {
    svector<int> const& core = to_context(ctx).get_unsat_core();
    if (max > 0 && ids == nullptr) misuse(__func__, "the array is null");
    std::copy_n(core.begin(), std::min(max, core.size()), ids);
    return core.size();
}

} // extern "C"
