// Declarations, names and the walk over variables.
#include "api_context.h"

#include "ast/node/nodes.h"
#include "ast/node/settings.h"
#include "support/setting_guard.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using namespace vexor;
using namespace vexor_test;

std::string name_of(vexor_var_decl d) { return vexor_get_var_decl_name(d); }
std::string name_of(vexor_expr e) { return name_of(vexor_get_var_decl(e)); }

TEST(api_names, uses_of_one_declaration) {
    api_context ctx;
    vexor_expr const first = ctx.var("x"), second = ctx.var("x");
    EXPECT_NE(first, second);
    EXPECT_EQ(vexor_get_var_decl(first), vexor_get_var_decl(second));
    EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "x"), vexor_get_var_decl(first));
    EXPECT_TRUE(is_a<name_expr>(node(first)));
    vexor_assert(ctx, first);
    vexor_assert(ctx, ctx.not_of(second));
    EXPECT_EQ(vexor_check(ctx), -1);
}

TEST(api_names, any_text_is_a_name) {
    api_context ctx;
    for (std::string const& text :
         {std::string(), std::string(" "), std::string("a b"), std::string("(x)"), std::string("\n"),
          std::string("\xff\xfe"), std::string("ä"), std::string("5"), std::string(100000, 'x')}) {
        vexor_expr const e = ctx.var(text);
        EXPECT_EQ(name_of(e), text);
        EXPECT_EQ(vexor_get_var_decl(e), vexor_get_var_decl_from_name(ctx, text.c_str()));
        EXPECT_THROW(vexor_mk_bool_var_decl(ctx, text.c_str()), std::exception);
        vexor_assert(ctx, e);
    }
    EXPECT_EQ(vexor_check(ctx), 1);
}

TEST(api_names, the_name_is_copied) {
    api_context ctx;
    char text[] = "first";
    vexor_var_decl const d = vexor_mk_bool_var_decl(ctx, text);
    text[0] = 'w';
    EXPECT_EQ(name_of(d), "first");
    char const* kept = nullptr;
    {
        api_context other;
        kept = vexor_get_var_decl_name(vexor_mk_bool_var_decl(other, "lives on"));
    }
    EXPECT_STREQ(kept, "lives on");
}

TEST(api_names, fresh_variables_are_new) {
    api_context ctx;
    EXPECT_EQ(name_of(vexor_mk_fresh_bool_var(ctx)), "v!1");
    EXPECT_EQ(name_of(vexor_mk_fresh_bool_var(ctx)), "v!2");
    vexor_mk_bool_var_decl(ctx, "v!3");
    EXPECT_EQ(name_of(vexor_mk_fresh_bool_var(ctx)), "v!4");
    vexor_push(ctx);
    EXPECT_EQ(name_of(vexor_mk_fresh_bool_var(ctx)), "v!5");
    vexor_pop(ctx);
    EXPECT_EQ(name_of(vexor_mk_fresh_bool_var(ctx)), "v!6");
    api_context other;
    EXPECT_EQ(name_of(vexor_mk_fresh_bool_var(other)), "v!1");
}

TEST(api_names, no_declaration) {
    api_context ctx;
    EXPECT_EQ(vexor_get_var_decl(vexor_mk_num(ctx, 3)), nullptr);
    EXPECT_EQ(vexor_get_var_decl(ctx.not_of(ctx.var("x"))), nullptr);
    EXPECT_EQ(vexor_get_var_decl(vexor_mk_bv_constant(ctx, 3, 3)), nullptr);
    EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "nobody"), nullptr);
    EXPECT_EQ(vexor_get_var_decl_from_name(ctx, ""), nullptr);
    // What the language has itself.
    vexor_var_decl const d = vexor_get_var_decl(vexor_mk_true(ctx));
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(name_of(d), "true");
    EXPECT_EQ(vexor_check(ctx), 1);
    EXPECT_EQ(vexor_get_value(vexor_get_model(ctx), d), 0);
    // Unlike those of the lite interface, contexts begin without functions of their own.
    EXPECT_EQ(vexor_get_var_decl_from_name(ctx, "div"), nullptr);
    vexor_assert(ctx, ctx.var("div"));
    EXPECT_EQ(vexor_check(ctx), 1);
}

TEST(api_names, variables_that_occur_nowhere) {
    api_context ctx;
    vexor_var_decl const never = vexor_mk_bool_var_decl(ctx, "never");
    vexor_var_decl const number = vexor_mk_var_decl(ctx, "n", vexor_mk_type(ctx, "int"));
    vexor_assert(ctx, ctx.var("x"));
    ASSERT_EQ(vexor_check(ctx), 1);
    EXPECT_EQ(vexor_get_value(vexor_get_model(ctx), never), 0);
    EXPECT_EQ(vexor_get_value(vexor_get_model(ctx), number), 0);
    vexor_assert(ctx, ctx.not_of(ctx.var("x")));
    EXPECT_EQ(vexor_check(ctx), -1);
    EXPECT_EQ(vexor_get_model(ctx), nullptr);
}

std::vector<std::string> walk(vexor_var_decl_iterator it) {
    std::vector<std::string> result;
    while (vexor_iterator_has_next(it) != 0) result.push_back(name_of(vexor_iterator_next(it)));
    EXPECT_EQ(vexor_iterator_next(it), nullptr);
    EXPECT_EQ(vexor_iterator_has_next(it), 0);
    return result;
}

TEST(api_names, walk_over_variables) {
    using names = std::vector<std::string>;
    api_context ctx;
    vexor_var_decl_iterator const it = vexor_create_var_decl_iterator(ctx);
    EXPECT_EQ(walk(it), names{});
    vexor_expr const b = ctx.var("b"), a = ctx.var("a");
    vexor_mk_bool_var_decl(ctx, "never");
    EXPECT_EQ(walk(it), names{});
    vexor_assert(ctx, ctx.or_of({a, b}));
    vexor_assert_retractable(ctx, ctx.not_of(a));
    names const both = walk(it);
    EXPECT_EQ(std::set<std::string>(both.begin(), both.end()), (std::set<std::string>{"a", "b"}));
    vexor_push(ctx);
    vexor_assert(ctx, ctx.not_of(vexor_mk_eq(ctx, ctx.var("c"), a)));
    EXPECT_EQ(walk(it), names{"c"}); // goes on where it stood
    vexor_iterator_reset(it);
    EXPECT_EQ(walk(it).size(), 3u);
    vexor_pop(ctx);
    vexor_iterator_reset(it);
    EXPECT_EQ(walk(it), both);
    vexor_reset(ctx);
    vexor_iterator_reset(it);
    EXPECT_EQ(walk(it), names{});
    vexor_del_iterator(it);
}

TEST(api_names, a_name_of_something_else_is_no_boolean_variable) {
    api_context ctx;
    vexor_mk_var_decl(ctx, "i", vexor_mk_type(ctx, "int"));
    for (char const* taken : {"and", "i", "+", "true"}) {
        try {
            vexor_mk_bool_var(ctx, taken);
            ADD_FAILURE() << taken;
        } catch (std::exception const& e) {
            std::string const message = std::string("Constant \"") + taken + "\" was already defined.";
            EXPECT_NE(std::string(e.what()).find(message), std::string::npos) << e.what();
        }
    }
    EXPECT_EQ(vexor_check(ctx), 1);
}

TEST(api_names, types) {
    api_context ctx;
    for (char const* known : {"bool", "int", "nat", "real"}) {
        vexor_type const t = vexor_mk_type(ctx, known);
        EXPECT_STREQ(static_cast<type_name*>(to_type(t))->get_decl()->get_name().c_str(), known);
    }
    type* const first = to_type(vexor_mk_type(ctx, "T"));
    type* const second = to_type(vexor_mk_type(ctx, "T"));
    EXPECT_EQ(static_cast<type_name*>(first)->get_decl(), static_cast<type_name*>(second)->get_decl());
    // Types and variables have names of their own.
    vexor_mk_var_decl(ctx, "T", vexor_mk_type(ctx, "T"));
    vexor_mk_bool_var_decl(ctx, "int");
    // A handle of an outer scope survives another one of the same type.
    vexor_type const outer = vexor_mk_type(ctx, "bool");
    vexor_push(ctx);
    vexor_mk_type(ctx, "bool");
    vexor_mk_type(ctx, "int");
    vexor_pop(ctx);
    vexor_mk_var_decl(ctx, "still", outer);
}

// With the type checker and without it, nothing of such an assertion stays.
TEST(api_names, an_assertion_that_is_not_boolean) {
    setting_guard const guard(g_type_check);
    for (int checker : {0, 1}) {
        vexor_enable_type_checker(checker);
        api_context ctx;
        vexor_expr const i = ctx.constant("i", vexor_mk_type(ctx, "int"));
        EXPECT_THROW(vexor_assert(ctx, i), std::exception);
        EXPECT_THROW(vexor_assert_retractable(ctx, vexor_mk_num(ctx, 5)), std::exception);
        EXPECT_THROW(vexor_assert_weighted(ctx, vexor_mk_sum(ctx, &i, 1), 3), std::exception);
        EXPECT_EQ(ctx.inner().num_bool_vars(), 3u);
        EXPECT_EQ(vexor_check(ctx), 1);
        vexor_assert(ctx, ctx.not_of(ctx.var("x")));
        EXPECT_EQ(vexor_check(ctx), 1);
        EXPECT_EQ(ctx.value(ctx.var("x")), -1);
    }
}

TEST(api_names, type_checker) {
    api_context ctx;
    setting_guard const guard(g_type_check);
    vexor_expr const i = ctx.constant("i", vexor_mk_type(ctx, "int"));
    vexor_expr const wrong = ctx.not_of(i);
    vexor_enable_type_checker(17);
    EXPECT_TRUE(g_type_check);
    EXPECT_THROW(vexor_assert(ctx, wrong), std::exception);
    EXPECT_EQ(vexor_check(ctx), 1);
    vexor_enable_type_checker(0);
    EXPECT_FALSE(g_type_check);
}

} // namespace
