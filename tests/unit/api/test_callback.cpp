// The search callback and interrupts from other threads.
#include "api_context.h"

#include "search/search_settings.h"
#include "support/random.h"
#include "support/search_settings_guard.h"

#include <atomic>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace {

using namespace vexor;
using namespace vexor_test;

// What the callbacks below saw and are to do.
struct {
    int num_calls = 0;
    int stop_at = 0; // the number of the call that answers 0; 0 for none
    search_data last{};
    vexor_context interrupted = nullptr;
} seen;

int watch(search_data* data) {
    ++seen.num_calls;
    EXPECT_GE(data->conflicts, seen.last.conflicts);
    EXPECT_GE(data->decisions, seen.last.decisions);
    EXPECT_GE(data->restarts, seen.last.restarts);
    EXPECT_GE(data->propagations, seen.last.propagations);
    seen.last = *data;
    return seen.num_calls == seen.stop_at ? 0 : 1;
}

int other_watch(search_data* data) { return -watch(data) - 1000; }

int interrupt_from_inside(search_data* data) {
    vexor_interrupt(seen.interrupted);
    return watch(data);
}

int raise(search_data*) { throw std::runtime_error("enough"); }

class callback_test : public testing::Test {
protected:
    callback_test() { seen = {}; }
    void call_often() { g_clause_deletion_frequency = 20; }

    search_settings_guard m_guard;
};

TEST_F(callback_test, only_at_deletion_points) {
    api_context ctx;
    ctx.assert_pigeons(5);
    vexor_set_search_callback(ctx, watch);
    EXPECT_EQ(vexor_check(ctx), -1); // within 5000 conflicts
    EXPECT_LT(ctx.inner().num_conflicts(), 5000u);
    EXPECT_EQ(seen.num_calls, 0);
    vexor_reset(ctx);
    call_often();
    ctx.assert_pigeons(6);
    vexor_set_search_callback(ctx, watch);
    EXPECT_EQ(vexor_check(ctx), -1);
    EXPECT_GT(seen.num_calls, 1);
    EXPECT_LE(seen.num_calls, static_cast<int>(ctx.inner().num_conflicts() / 20));
    EXPECT_GT(seen.last.conflicts, 0);
    EXPECT_GT(seen.last.decisions, 0);
    EXPECT_GT(seen.last.propagations, 0);
    EXPECT_EQ(seen.last.model_available, 0);
    EXPECT_EQ(seen.last.cost, 0);
    EXPECT_EQ(seen.last.maxsat_iterations, 0);
}

// Without a model the searches of max_sat are counted all the same.
TEST_F(callback_test, counts_the_searches_of_max_sat_without_a_model) {
    call_often();
    api_context ctx;
    ctx.assert_pigeons(6);
    vexor_assert_weighted(ctx, ctx.var("soft"), 2);
    vexor_set_search_callback(ctx, watch);
    EXPECT_EQ(vexor_max_sat(ctx), -1);
    ASSERT_GT(seen.num_calls, 0);
    EXPECT_EQ(seen.last.model_available, 0);
    EXPECT_EQ(seen.last.cost, 0);
    EXPECT_GT(seen.last.maxsat_iterations, 0);
}

TEST_F(callback_test, stops_the_search) {
    call_often();
    api_context ctx;
    vexor_push(ctx);
    ctx.assert_pigeons(6);
    vexor_set_search_callback(ctx, watch);
    for (seen.stop_at = 1; seen.stop_at < 4; ++seen.stop_at) {
        seen.num_calls = 0;
        EXPECT_EQ(vexor_check(ctx), 0);
        EXPECT_EQ(seen.num_calls, seen.stop_at);
        EXPECT_EQ(vexor_inconsistent(ctx), 0);
        EXPECT_EQ(vexor_get_model(ctx), nullptr);
        ctx.inner().check_invariant();
    }
    seen.num_calls = seen.stop_at = 0;
    EXPECT_EQ(vexor_check(ctx), -1);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_check(ctx), 1);
}

TEST_F(callback_test, one_for_the_whole_process) {
    call_often();
    api_context first, second, third;
    for (vexor_context ctx : {vexor_context(first), vexor_context(second), vexor_context(third)})
        vexor_push(ctx);
    first.assert_pigeons(6);
    second.assert_pigeons(6);
    third.assert_pigeons(6);
    vexor_set_search_callback(first, raise);
    vexor_set_search_callback(second, other_watch); // for the first one as well
    EXPECT_EQ(vexor_check(first), -1);
    EXPECT_GT(seen.num_calls, 0);
    seen = {};
    EXPECT_EQ(vexor_check(second), -1);
    EXPECT_GT(seen.num_calls, 0);
    seen = {};
    EXPECT_EQ(vexor_check(third), -1); // has none
    EXPECT_EQ(seen.num_calls, 0);
}

TEST_F(callback_test, removed_for_one_context) {
    call_often();
    api_context first, second;
    first.assert_pigeons(6);
    second.assert_pigeons(6);
    vexor_set_search_callback(first, watch);
    vexor_set_search_callback(second, watch);
    vexor_remove_search_callback(first);
    vexor_remove_search_callback(first);
    EXPECT_EQ(vexor_check(first), -1);
    EXPECT_EQ(seen.num_calls, 0);
    EXPECT_EQ(vexor_check(second), -1);
    EXPECT_GT(seen.num_calls, 0);
}

TEST_F(callback_test, sees_the_models_of_max_sat) {
    call_often();
    g_clause_deletion_frequency = 1;
    api_context ctx;
    random_stream random(5);
    std::vector<vexor_expr> vars;
    for (int i = 0; i < 40; ++i) vars.push_back(ctx.var("x" + std::to_string(i)));
    auto literal = [&] {
        vexor_expr const x = vars[random.below(40)];
        return random.chance(50) ? x : ctx.not_of(x);
    };
    for (int i = 0; i < 220; ++i)
        vexor_assert_weighted(ctx, ctx.or_of({literal(), literal(), literal()}), random.between(1, 9));
    vexor_set_search_callback(ctx, watch);
    ASSERT_EQ(vexor_max_sat(ctx), 1);
    ASSERT_GT(seen.num_calls, 0);
    if (seen.last.model_available == 1) {
        EXPECT_GE(seen.last.cost, vexor_get_cost(vexor_get_model(ctx)));
        EXPECT_GT(seen.last.maxsat_iterations, 0);
    }
    EXPECT_EQ(seen.last.model_available, 1);
    vexor_int64 const best = vexor_get_cost(vexor_get_model(ctx));
    // Stopped at any call, the best model so far remains.
    int const num_calls = seen.num_calls;
    for (int stop_at : {1, 2, num_calls / 2}) {
        seen = {};
        seen.stop_at = stop_at;
        lbool const answer = vexor_max_sat(ctx);
        if (seen.num_calls < stop_at) continue; // the second search is a shorter one
        EXPECT_EQ(answer, 0);
        bool const has_model = vexor_get_model(ctx) != nullptr;
        EXPECT_TRUE(has_model || seen.last.model_available == 0);
        if (has_model) {
            EXPECT_GE(vexor_get_cost(vexor_get_model(ctx)), best);
        }
    }
    seen = {};
    EXPECT_EQ(vexor_max_sat(ctx), 1);
    EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), best);
}

TEST_F(callback_test, an_exception_of_the_callback_passes) {
    call_often();
    api_context ctx;
    vexor_push(ctx);
    ctx.assert_pigeons(6);
    vexor_set_search_callback(ctx, raise);
    for (int i = 0; i < 3; ++i) {
        EXPECT_THROW(vexor_check(ctx), std::runtime_error);
        EXPECT_EQ(vexor_inconsistent(ctx), 0);
        ctx.inner().check_invariant();
    }
    EXPECT_THROW(vexor_max_sat(ctx), std::runtime_error);
    EXPECT_THROW(vexor_find_weighted_model(ctx, 0), std::runtime_error);
    vexor_set_search_callback(ctx, watch);
    EXPECT_EQ(vexor_check(ctx), -1);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_check(ctx), 1);
}

TEST_F(callback_test, may_interrupt) {
    call_often();
    api_context ctx;
    ctx.assert_pigeons(6);
    seen.interrupted = ctx;
    vexor_set_search_callback(ctx, interrupt_from_inside);
    EXPECT_EQ(vexor_check(ctx), 0);
    EXPECT_EQ(seen.num_calls, 1);
    vexor_remove_search_callback(ctx);
    EXPECT_EQ(vexor_check(ctx), -1);
}

// --- Interrupts.

TEST(interrupt, without_a_search_nothing_happens) {
    api_context ctx;
    vexor_interrupt(ctx);
    EXPECT_EQ(vexor_check(ctx), 1);
    vexor_interrupt(ctx);
    ctx.assert_pigeons(5);
    vexor_interrupt(ctx);
    EXPECT_EQ(vexor_check(ctx), -1);
}

// Interrupts rain down on a context that goes through all it can do. An answer is then right or 0, scopes and
// names are as they must be, and when the rain ends every answer is there.
TEST(interrupt, at_any_time_from_another_thread) {
    std::uint64_t const seed = first_seed(1);
    SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
    api_context ctx;
    std::atomic<bool> done{false};
    std::atomic<unsigned> num_interrupts{0};
    std::thread rain([&] {
        random_stream random(seed);
        while (!done.load()) {
            vexor_interrupt(ctx);
            num_interrupts.fetch_add(1);
            for (unsigned i = random.below(3000); i > 0 && !done.load(); --i) std::this_thread::yield();
        }
    });
    int num_stopped = 0;
    unsigned const num_rounds = rounds(150);
    for (unsigned i = 0; i < num_rounds; ++i) {
        vexor_push(ctx);
        vexor_mk_bool_var_decl(ctx, "x");
        ctx.assert_pigeons(3 + i % 3);
        lbool const answer = vexor_check(ctx);
        EXPECT_LE(answer, 0);
        num_stopped += answer == 0;
        EXPECT_EQ(vexor_get_model(ctx), nullptr);
        vexor_pop(ctx);
        vexor_push(ctx);
        assertion_id const id = vexor_assert_weighted(ctx, ctx.var("x"), 3);
        vexor_assert(ctx, ctx.not_of(ctx.var("x")));
        lbool const best = vexor_max_sat(ctx);
        EXPECT_GE(best, 0);
        num_stopped += best == 0;
        if (best == 1) {
            EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), 3);
            EXPECT_EQ(vexor_get_assertion_value(vexor_get_model(ctx), id), 0);
        }
        EXPECT_GE(vexor_find_weighted_model(ctx, static_cast<int>(i % 2)), 0);
        vexor_pop(ctx);
        EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "x"), nullptr);
        if (i % 50 == 49) vexor_reset(ctx);
    }
    done.store(true);
    rain.join();
    ctx.inner().check_invariant();
    EXPECT_GT(num_interrupts.load(), 0u);
    RecordProperty("questions_that_were_stopped", num_stopped);
    EXPECT_FALSE(reinterpret_cast<context_wrapper*>(static_cast<vexor_context>(ctx))->has_scope());
    EXPECT_EQ(vexor_check(ctx), 1);
    ctx.assert_pigeons(5);
    EXPECT_EQ(vexor_check(ctx), -1);
}

} // namespace
