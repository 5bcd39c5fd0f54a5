// Scopes, also of contexts that are dead: balanced use loses nothing and forgets nothing.
#include "api_context.h"

#include "ast/node/settings.h"

#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;

TEST(api_scopes, pop_forgets_assertions_and_names) {
    api_context ctx;
    vexor_expr const x = ctx.var("x");
    vexor_push(ctx);
    vexor_mk_bool_var_decl(ctx, "y");
    vexor_mk_var_decl(ctx, "z", vexor_mk_type(ctx, "T"));
    vexor_assert(ctx, x);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "y"), nullptr);
    EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "z"), nullptr);
    vexor_mk_var_decl(ctx, "y", vexor_mk_type(ctx, "T"));
    vexor_assert(ctx, ctx.not_of(x));
    EXPECT_EQ(vexor_check(ctx), 1);
    EXPECT_EQ(ctx.value(x), -1);
}

TEST(api_scopes, an_inconsistency_of_the_outermost_scope_stays) {
    api_context ctx;
    vexor_assert(ctx, vexor_mk_false(ctx));
    EXPECT_EQ(vexor_check(ctx), -1);
    for (int i = 0; i < 3; ++i) {
        vexor_push(ctx);
        vexor_mk_bool_var_decl(ctx, "x");
        vexor_push(ctx);
        vexor_mk_bool_var_decl(ctx, "y");
        EXPECT_EQ(vexor_check(ctx), -1);
        vexor_pop(ctx);
        vexor_mk_bool_var_decl(ctx, "y"); // the scope of the other one is gone
        vexor_pop(ctx);
        EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "x"), nullptr);
        EXPECT_EQ(vexor_inconsistent(ctx), 1);
        EXPECT_EQ(vexor_check(ctx), -1);
    }
    vexor_reset(ctx);
    EXPECT_EQ(vexor_inconsistent(ctx), 0);
    EXPECT_EQ(vexor_check(ctx), 1);
}

// Dead at every depth, with pushes before and after it died.
TEST(api_scopes, pops_of_a_dead_context_find_their_pushes) {
    for (int alive = 0; alive < 4; ++alive)
        for (int dead = 0; dead < 4; ++dead) {
            api_context ctx;
            vexor_expr const x = ctx.var("x");
            auto name = [](int scope) { return "s" + std::to_string(scope); };
            for (int i = 0; i < alive; ++i) {
                vexor_push(ctx);
                vexor_assert(ctx, ctx.or_of({x, ctx.var(name(i))}));
            }
            vexor_assert(ctx, x);
            vexor_assert(ctx, ctx.not_of(x));
            for (int i = alive; i < alive + dead; ++i) {
                vexor_push(ctx);
                vexor_mk_bool_var_decl(ctx, name(i).c_str());
                vexor_assert_retractable(ctx, ctx.var(name(i)));
                vexor_assert_weighted(ctx, ctx.var(name(i)), 7);
                EXPECT_EQ(vexor_max_sat(ctx), -1);
            }
            for (int i = alive + dead; i-- > 0;) {
                EXPECT_EQ(vexor_inconsistent(ctx), i + 1 >= alive ? 1 : 0);
                EXPECT_NE(vexor_get_var_decl_from_name(ctx, name(i).c_str()), nullptr);
                vexor_pop(ctx);
                EXPECT_EQ(vexor_get_var_decl_from_name(ctx, name(i).c_str()), nullptr);
            }
            EXPECT_EQ(vexor_check(ctx), alive > 0 ? 1 : -1);
            if (alive == 0) continue;
            EXPECT_EQ(vexor_get_unsat_core(ctx, nullptr, 0), 0u);
            vexor_assert(ctx, ctx.not_of(x));
            EXPECT_EQ(vexor_check(ctx), 1);
        }
}

TEST(api_scopes, a_type_error_belongs_to_its_scope) {
    api_context ctx;
    vexor_push(ctx);
    ctx.inner().set_type_error("not this way");
    EXPECT_EQ(vexor_check(ctx), 0);
    EXPECT_EQ(vexor_max_sat(ctx), 0);
    EXPECT_EQ(vexor_find_weighted_model(ctx, 0), 0);
    vexor_push(ctx);
    vexor_mk_bool_var_decl(ctx, "x");
    vexor_push(ctx);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_check(ctx), 0);
    vexor_pop(ctx);
    vexor_mk_bool_var_decl(ctx, "x");
    EXPECT_FALSE(ctx.inner().type_correct());
    EXPECT_EQ(vexor_check(ctx), 0);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_check(ctx), 1);
    ctx.inner().set_type_error("nor here");
    vexor_push(ctx);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_check(ctx), 0);
    vexor_reset(ctx);
    EXPECT_EQ(vexor_check(ctx), 1);
}

TEST(api_scopes, retractions_end_with_their_scope) {
    api_context ctx;
    vexor_expr const x = ctx.var("x");
    assertion_id const id = vexor_assert_retractable(ctx, x);
    vexor_push(ctx);
    vexor_retract(ctx, id);
    vexor_assert(ctx, ctx.not_of(x));
    EXPECT_EQ(vexor_check(ctx), 1);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_check(ctx), 1);
    EXPECT_EQ(ctx.value(x), 1);
    for (assertion_id no : {0, 1, -1, id ^ 1, id + 100, 2147483647, -2147483647 - 1}) vexor_retract(ctx, no);
    EXPECT_EQ(vexor_check(ctx), 1);
    EXPECT_EQ(ctx.value(x), 1);
}

TEST(api_scopes, reset_is_a_new_beginning) {
    api_context ctx;
    for (int i = 0; i < 3; ++i) {
        vexor_push(ctx);
        vexor_expr const x = ctx.var("x"), fresh = vexor_mk_fresh_bool_var(ctx);
        EXPECT_STREQ(vexor_get_var_decl_name(vexor_get_var_decl(fresh)), "v!1");
        vexor_assert(ctx, ctx.and_of({x, fresh, vexor_mk_true(ctx)}));
        vexor_assert_weighted(ctx, ctx.not_of(x), 4);
        vexor_push(ctx);
        if (i == 1) vexor_assert(ctx, ctx.not_of(fresh));
        EXPECT_EQ(vexor_max_sat(ctx), i == 1 ? -1 : 1);
        vexor_reset(ctx);
        EXPECT_EQ(vexor_get_model(ctx), nullptr);
        EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "x"), nullptr);
        EXPECT_FALSE(reinterpret_cast<context_wrapper*>(static_cast<vexor_context>(ctx))->has_scope());
        EXPECT_EQ(vexor_check(ctx), 1);
    }
}

// One node for each handle, and none left behind by pops.
TEST(api_scopes, popped_terms_are_released) {
    api_context ctx;
    vexor_expr const x = ctx.var("x");
    auto in_a_scope = [&] {
        vexor_push(ctx);
        vexor_expr e = x;
        for (int i = 0; i < 1000; ++i) e = ctx.not_of(ctx.or_of({e, vexor_mk_fresh_bool_var(ctx)}));
        vexor_assert(ctx, e);
        EXPECT_EQ(vexor_check(ctx), 1);
        vexor_pop(ctx);
    };
    in_a_scope();
    std::size_t const live = ctx.manager()->num_live_nodes();
    for (int i = 0; i < 5; ++i) in_a_scope();
    EXPECT_EQ(ctx.manager()->num_live_nodes(), live);
}

TEST(api_scopes, two_contexts_know_nothing_of_each_other) {
    api_context first, second;
    vexor_assert(first, first.not_of(first.var("x")));
    vexor_assert(second, second.var("x"));
    vexor_push(first);
    vexor_assert(first, first.var("x"));
    EXPECT_EQ(vexor_check(first), -1);
    EXPECT_EQ(vexor_check(second), 1);
    vexor_pop(first);
    EXPECT_EQ(vexor_check(first), 1);
    EXPECT_EQ(first.value(first.var("x")), -1);
    EXPECT_EQ(second.value(second.var("x")), 1);
}

// Terms of a depth that recursion on the caller's stack would not bear.
TEST(api_scopes, deep_terms) {
    api_context ctx;
    constexpr int depth = 50000;
    vexor_push(ctx);
    vexor_expr const x = ctx.var("x"), y = ctx.var("y");
    vexor_expr e = x;
    for (int i = 0; i < depth; ++i) e = ctx.not_of(ctx.or_of({e, ctx.and_of({y, e})}));
    vexor_assert(ctx, vexor_mk_eq(ctx, e, x));
    ASSERT_EQ(vexor_check(ctx), 1);
    EXPECT_EQ(vexor_evaluate_in_model(vexor_get_model(ctx), e), ctx.value(x));
    vexor_pop(ctx);
    EXPECT_EQ(vexor_check(ctx), 1);
}

} // namespace
