// Weights and costs on the whole range of 64 bits.
#include "api_context.h"

#include "search/search_settings.h"
#include "support/setting_guard.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;

constexpr vexor_int64 max_weight = INT64_MAX;

vexor_int64 const edges[] = {1,
                             2,
                             1073741823,
                             1073741824,
                             2147483646,
                             2147483647,
                             2147483648,
                             4294967295,
                             4294967296,
                             4611686014132420609, // 2147483647 squared
                             4611686018427387904,
                             9223372034707292159,
                             max_weight - 1,
                             max_weight};

// The double next to a positive number, towards zero.
double cut_to_double(vexor_int64 n) {
    auto const rounded = static_cast<double>(n);
    return rounded >= 0x1p63 || static_cast<vexor_int64>(rounded) > n ? std::nextafter(rounded, 0) : rounded;
}

TEST(weights, each_edge_is_exact) {
    for (vexor_int64 weight : edges) {
        api_context ctx;
        vexor_assert_weighted(ctx, ctx.var("x"), weight);
        vexor_assert(ctx, ctx.not_of(ctx.var("x")));
        ASSERT_EQ(vexor_max_sat(ctx), 1);
        vexor_model const m = vexor_get_model(ctx);
        EXPECT_EQ(vexor_get_cost(m), weight);
        EXPECT_EQ(vexor_get_cost_as_double(m), cut_to_double(weight)) << weight;
        EXPECT_EQ(vexor_max_sat_cost_leq(ctx, weight), 1);
        EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), weight);
        EXPECT_EQ(vexor_max_sat_cost_leq(ctx, weight - 1), 1);
        EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), weight);
    }
}

// A difference of one between weights of 63 bits decides.
TEST(weights, neighbours_are_told_apart) {
    for (vexor_int64 weight : edges) {
        if (weight < 2) continue;
        for (bool x_is_lighter : {false, true}) {
            api_context ctx;
            vexor_expr const x = ctx.var("x"), y = ctx.var("y");
            vexor_assert(ctx, vexor_mk_diseq(ctx, x, y));
            assertion_id const keep_x = vexor_assert_weighted(ctx, x, x_is_lighter ? weight - 1 : weight);
            assertion_id const keep_y = vexor_assert_weighted(ctx, y, x_is_lighter ? weight : weight - 1);
            ASSERT_EQ(vexor_max_sat(ctx), 1);
            vexor_model const m = vexor_get_model(ctx);
            EXPECT_EQ(vexor_get_cost(m), weight - 1);
            EXPECT_EQ(vexor_get_assertion_value(m, keep_x), x_is_lighter ? 0 : 1);
            EXPECT_EQ(vexor_get_assertion_value(m, keep_y), x_is_lighter ? 1 : 0);
        }
    }
}

// Sums beyond 64 bits are reckoned with; their cost alone cannot be told.
TEST(weights, a_cost_beyond_64_bits) {
    api_context ctx;
    vexor_expr const x = ctx.var("x"), y = ctx.var("y"), z = ctx.var("z");
    vexor_assert(ctx, ctx.or_of({ctx.not_of(x), ctx.not_of(z)}));
    vexor_assert(ctx, ctx.or_of({ctx.not_of(y), ctx.not_of(z)}));
    vexor_assert_weighted(ctx, x, max_weight);
    vexor_assert_weighted(ctx, y, max_weight);
    vexor_assert_weighted(ctx, z, max_weight);
    ASSERT_EQ(vexor_max_sat(ctx), 1);
    EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), max_weight);
    EXPECT_EQ(ctx.value(z), -1);
    vexor_assert(ctx, z);
    ASSERT_EQ(vexor_max_sat(ctx), 1);
    EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), max_weight); // the greatest number
    EXPECT_EQ(vexor_get_cost_as_double(vexor_get_model(ctx)), std::nextafter(0x1p64, 0));
}

TEST(weights, initial_cost_of_any_size) {
    vexor_int64 const firsts[] = {INT64_MIN, INT64_MIN + 1, -2147483649, -1, 0, 4, 5, max_weight};
    for (vexor_int64 first : firsts) {
        api_context ctx;
        vexor_assert_weighted(ctx, ctx.var("x"), 5);
        vexor_assert_weighted(ctx, ctx.not_of(ctx.var("x")), 7);
        vexor_set_maxsat_initial_cost(first);
        EXPECT_TRUE(g_use_initial_maxsat_cost);
        EXPECT_EQ(g_initial_maxsat_cost, numeral(std::to_string(first).c_str(), 10));
        EXPECT_EQ(vexor_max_sat(ctx), 1);
        EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), 5);
        EXPECT_EQ(vexor_max_sat_cost_leq(ctx, first), 1);
        EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), 5);
        EXPECT_FALSE(g_use_initial_maxsat_cost);
        EXPECT_EQ(g_initial_maxsat_cost, numeral(0));
    }
}

TEST(weights, only_positive_ones) {
    api_context ctx;
    vexor_int64 const refused[] = {0, -1, INT64_MIN};
    for (vexor_int64 weight : refused) {
        EXPECT_THROW(vexor_assert_weighted(ctx, ctx.var("x"), weight), std::exception);
        EXPECT_EQ(vexor_check(ctx), 1);
    }
}

// A check takes a weighted assertion for required, find_weighted_model does not.
TEST(weights, required_for_a_check_alone) {
    api_context ctx;
    vexor_expr const x = ctx.var("x");
    assertion_id const id = vexor_assert_weighted(ctx, x, 3);
    vexor_assert(ctx, ctx.not_of(x));
    EXPECT_EQ(vexor_inconsistent(ctx), 0);
    EXPECT_EQ(vexor_check(ctx), -1);
    EXPECT_EQ(ctx.core(), std::vector<assertion_id>{id});
    for (int random : {0, 1}) {
        EXPECT_EQ(vexor_find_weighted_model(ctx, random), 1);
        EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), 3);
        EXPECT_EQ(vexor_get_assertion_value(vexor_get_model(ctx), id), 0);
    }
    vexor_retract(ctx, id);
    EXPECT_EQ(vexor_check(ctx), 1);
    EXPECT_EQ(vexor_max_sat(ctx), 1);
    EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), 0);
}

TEST(weights, settings_reach_the_search) {
    setting_guard const conflicts(g_max_num_conflicts_in_maxsat_iteration);
    setting_guard const iterations(g_max_num_iterations_in_maxsat);
    vexor_set_max_num_conflicts_in_maxsat_iteration(17);
    EXPECT_EQ(g_max_num_conflicts_in_maxsat_iteration, 17u);
    vexor_set_max_num_iterations_in_maxsat(19);
    EXPECT_EQ(g_max_num_iterations_in_maxsat, 19u);
}

} // namespace
