// Constants and operators of numbers and bit-vectors.
#include "api_context.h"

#include "ast/node/nodes.h"
#include "ast/types/op_rules.h"
#include "internalize/internalize_settings.h"
#include "support/setting_guard.h"
#include "support/terms.h"

#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;

std::string text_of(vexor_expr e) { return to_text(node(e)); }

TEST(api_constants, truth) {
    api_context ctx;
    EXPECT_EQ(vexor_mk_true(ctx), vexor_mk_true(ctx));
    EXPECT_EQ(vexor_mk_false(ctx), vexor_mk_false(ctx));
    vexor_expr const t = vexor_mk_true(ctx);
    vexor_push(ctx);
    EXPECT_EQ(vexor_mk_true(ctx), t);
    vexor_pop(ctx);
    EXPECT_EQ(vexor_mk_true(ctx), t);
    vexor_assert(ctx, t); // not of the popped scope
    EXPECT_EQ(vexor_check(ctx), 1);
    vexor_reset(ctx);
    vexor_assert(ctx, vexor_mk_true(ctx));
    EXPECT_EQ(vexor_check(ctx), 1);
}

TEST(api_constants, numbers) {
    api_context ctx;
    EXPECT_EQ(text_of(vexor_mk_num(ctx, 0)), "0");
    EXPECT_EQ(text_of(vexor_mk_num(ctx, 2147483647)), "2147483647");
    EXPECT_EQ(text_of(vexor_mk_num(ctx, -2147483647 - 1)), "-2147483648");
    struct {
        char const *text, *value;
    } const cases[] = {{"0", "0"},
                       {"-12", "-12"},
                       {"6/4", "3/2"},
                       {"-6/4", "-3/2"},
                       {"2.50", "5/2"},
                       {"123456789012345678901234567890", "123456789012345678901234567890"},
                       {"1/123456789012345678901234567890", "1/123456789012345678901234567890"},
                       {"", "0"},
                       {"x", "0"},
                       {"12x", "12"}};
    for (auto const& c : cases) EXPECT_EQ(text_of(vexor_mk_num_from_string(ctx, c.text)), c.value) << c.text;
    EXPECT_THROW(vexor_mk_num_from_string(ctx, "3/0"), std::exception);
}

TEST(api_constants, numbers_of_gmp) {
    api_context ctx;
    mpz_t z;
    mpz_init(z);
    for (char const* text :
         {"0", "-1", "2147483648", "-9223372036854775808", "1267650600228229401496703205376"}) {
        ASSERT_EQ(mpz_set_str(z, text, 10), 0);
        vexor_expr const e = vexor_mk_num_from_mpz(ctx, z);
        mpz_set_si(z, 99); // copied
        EXPECT_EQ(text_of(e), text);
    }
    mpz_clear(z);
    mpq_t q;
    mpq_init(q);
    mpq_set_si(q, -10, 4); // not canonical
    EXPECT_EQ(text_of(vexor_mk_num_from_mpq(ctx, q)), "-5/2");
    EXPECT_EQ(mpz_cmp_si(mpq_numref(q), -10), 0); // the caller's number stays as it is
    mpz_set_si(mpq_numref(q), 6);
    mpz_set_si(mpq_denref(q), -4);
    EXPECT_EQ(text_of(vexor_mk_num_from_mpq(ctx, q)), "-3/2");
    mpz_set_si(mpq_denref(q), 0);
    EXPECT_THROW(vexor_mk_num_from_mpq(ctx, q), std::exception);
    mpz_set_si(mpq_numref(q), 0);
    EXPECT_THROW(vexor_mk_num_from_mpq(ctx, q), std::exception);
    mpz_set_si(mpq_denref(q), 1);
    mpq_clear(q);
}

bool is_vector(vexor_expr e, unsigned size, char const* value) {
    auto* c = dynamic_cast<bitvector_constant*>(node(e));
    return c != nullptr && c->get_size() == size && c->get_value() == numeral(value, 10);
}

TEST(api_constants, vectors_are_reduced_to_their_width) {
    api_context ctx;
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 4, 0), 4, "0"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 4, 15), 4, "15"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 4, 16), 4, "0"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 4, 0xffffffff), 4, "15"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 1, 3), 1, "1"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 31, 0xffffffff), 31, "2147483647"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 32, 0xffffffff), 32, "4294967295"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 32, 0x3ffffff5), 32, "1073741813"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 32, 0x3ffffff6), 32, "1073741814"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, 33, 0xffffffff), 33, "4294967295"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant(ctx, max_bitvector_size, 5), max_bitvector_size, "5"));
    EXPECT_THROW(vexor_mk_bv_constant(ctx, 0, 0), std::exception);
    EXPECT_THROW(vexor_mk_bv_constant(ctx, max_bitvector_size + 1, 0), std::exception);
}

TEST(api_constants, vectors_from_bits) {
    api_context ctx;
    int const one[] = {1, 0, 0, 0}, eleven[] = {-1, 2, 0, 1 << 30};
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant_from_array(ctx, 4, one), 4, "1"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant_from_array(ctx, 4, eleven), 4, "11"));
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant_from_array(ctx, 1, one + 1), 1, "0"));
    std::vector<int> top(100, 0);
    top.back() = 1;
    EXPECT_TRUE(is_vector(vexor_mk_bv_constant_from_array(ctx, 100, top.data()), 100,
                          "633825300114114700748351602688"));
    EXPECT_THROW(vexor_mk_bv_constant_from_array(ctx, 0, one), std::exception);
}

TEST(api_constants, extract_takes_its_bounds_in_either_order) {
    api_context ctx;
    vexor_expr const v = ctx.constant("v", vexor_mk_bitvector_type(ctx, 8));
    for (auto [first, second] : {std::pair<unsigned, unsigned>{6, 2}, {2, 6}}) {
        vexor_expr const e = vexor_mk_bv_extract(ctx, first, second, v);
        unsigned high = 0, low = 0;
        ASSERT_TRUE(get_extract_bounds(static_cast<application*>(node(e)), high, low));
        EXPECT_EQ(high, 6u);
        EXPECT_EQ(low, 2u);
        EXPECT_EQ(text_of(e), "(bv-extract 6 2 v)");
    }
}

TEST(api_constants, counts_of_any_size) {
    api_context ctx;
    vexor_expr const v = ctx.constant("v", vexor_mk_bitvector_type(ctx, 8));
    EXPECT_EQ(text_of(vexor_mk_bv_shift_left0(ctx, v, ~0u)), "(bv-shift-left0 v 4294967295)");
    EXPECT_EQ(text_of(vexor_mk_bv_sign_extend(ctx, v, 0)), "(bv-sign-extend v 0)");
}

TEST(api_constants, positions_are_none) {
    api_context ctx;
    EXPECT_EQ(node(vexor_mk_num(ctx, 1))->get_pos(), -1);
    EXPECT_EQ(node(ctx.not_of(ctx.var("x")))->get_pos(), -1);
    EXPECT_EQ(to_type(vexor_mk_type(ctx, "T"))->get_pos(), -1);
}

TEST(api_constants, long_arrays) {
    api_context ctx;
    for (std::size_t n : {1u, 15u, 16u, 17u, 1000u}) {
        std::vector<vexor_expr> args;
        for (std::size_t i = 0; i < n; ++i) args.push_back(vexor_mk_fresh_bool_var(ctx));
        auto* all = static_cast<application*>(node(ctx.or_of(args)));
        ASSERT_EQ(all->num_args(), n);
        for (unsigned i = 0; i < n; ++i) EXPECT_EQ(all->get_arg(i), node(args[i]));
    }
}

TEST(api_constants, setting_of_arithmetic) {
    setting_guard const guard(g_arithmetic_only);
    vexor_set_arith_only(1);
    EXPECT_TRUE(g_arithmetic_only);
    vexor_set_arith_only(0);
    EXPECT_FALSE(g_arithmetic_only);
}

} // namespace
