// Contexts, scopes and what reaches into a running search.
#include "api/busy_guard.h"
#include "api/call_log.h"
#include "api/context_wrapper.h"

#include <iostream>

using namespace vexor;

extern "C" {

vexor_context vexor_mk_context(void) { return reinterpret_cast<vexor_context>(new context_wrapper); }

void vexor_del_context(vexor_context ctx) {
    busy_guard const guard(__func__);
    delete &to_wrapper(ctx);
}

void vexor_reset(vexor_context ctx) {
    busy_guard const guard(__func__);
    context_wrapper& wrapper = to_wrapper(ctx);
    logged_call const log("reset");
    wrapper.reset();
}

void vexor_push(vexor_context ctx) {
    busy_guard const guard(__func__);
    context_wrapper& wrapper = to_wrapper(ctx);
    logged_call const log("push");
    wrapper.push();
}

void vexor_pop(vexor_context ctx) {
    busy_guard const guard(__func__);
    context_wrapper& wrapper = to_wrapper(ctx);
    if (!wrapper.has_scope()) misuse(__func__, "there is no scope to pop");
    logged_call const log("pop");
    wrapper.pop();
}

void vexor_dump_context(vexor_context ctx) {
    to_context(ctx).display(std::cout);
    std::cout.flush();
}

int vexor_inconsistent(vexor_context ctx) { return to_context(ctx).inconsistent() ? 1 : 0; }

// Not by to_context: it may come from another thread, and from the search callback.
void vexor_interrupt(vexor_context ctx) {
    if (ctx == nullptr) misuse(__func__, "the context is null");
    reinterpret_cast<context_wrapper*>(ctx)->get_context().stop_the_search();
}

} // extern "C"
