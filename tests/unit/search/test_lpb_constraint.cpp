// Linear pseudo-Boolean constraints: normal form, propagation, undo.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "base/numeral_pool.h"
#include "search/context.h"
#include "search/lpb_constraint.h"
#include "support/weighted_context.h"

using namespace vexor;
using namespace vexor_test;

namespace {

class lpb_test : public ::testing::Test {
protected:
    lpb_test() { create_vars(ctx, 6); }

    lpb_constraint* lpb(std::vector<std::int64_t> coeffs, std::vector<int> lits, std::int64_t bound) {
        return static_cast<lpb_constraint*>(
            add_lpb(ctx, plain_lpb{std::move(coeffs), std::move(lits), bound}));
    }
    std::string text(lpb_constraint const* c) {
        std::ostringstream out;
        c->display(&ctx, out);
        return out.str();
    }
    int value(int lit) { return ctx.value(to_literal(lit)); }

    context ctx;
};

} // namespace

TEST_F(lpb_test, prints_monomials_in_literal_order) {
    EXPECT_EQ("(lpb p!3 (* 3 (not p!4)) (* 2 p!5) 2)", text(lpb({2, 1, 3}, {3, 1, -2}, 2)));
    EXPECT_STREQ("lpb", lpb({1}, {1}, 0)->get_kind());
}

TEST_F(lpb_test, the_same_literal_twice_counts_with_the_sum) {
    EXPECT_EQ("(lpb (* 5 p!3) p!4 3)", text(lpb({2, 1, 3}, {1, 2, 1}, 3)));
    EXPECT_EQ(1, value(1));
    EXPECT_EQ(0, value(2));
}

TEST_F(lpb_test, a_negative_coefficient_moves_to_the_complement) {
    EXPECT_EQ("(lpb (* 2 (not p!3)) p!4 1)", text(lpb({-2, 1}, {1, 2}, -1)));
}

TEST_F(lpb_test, complements_that_meet_after_the_signs_are_merged) {
    // -1 * (not x) is x - 1, so 2x + 3y >= 2 remains.
    EXPECT_EQ("(lpb (* 2 p!3) (* 3 p!4) 3)", text(lpb({1, -1, 3}, {1, -1, 2}, 2)));
}

TEST_F(lpb_test, both_signs_cancel) {
    EXPECT_EQ("(lpb (* 2 p!3) p!4 1)", text(lpb({5, 3, 1}, {1, -1, 2}, 4)));
    EXPECT_EQ("(lpb p!4 1)", text(lpb({3, 3, 1}, {1, -1, 2}, 4)));
}

TEST_F(lpb_test, constants_go_into_the_bound) {
    vector<numeral> coeffs{2, 7, 1, 1};
    svector<literal> lits{true_literal, false_literal, to_literal(1), to_literal(2)};
    auto* c = static_cast<lpb_constraint*>(ctx.assert_lpb(coeffs, lits, 3));
    EXPECT_EQ("(lpb p!3 p!4 1)", text(c));
    coeffs = {-2, -7, 1, 1};
    c = static_cast<lpb_constraint*>(ctx.assert_lpb(coeffs, lits, -1));
    EXPECT_EQ("(lpb p!3 p!4 1)", text(c));
}

TEST_F(lpb_test, a_common_divisor_of_all_numbers_goes_away) {
    EXPECT_EQ("(lpb (* 2 p!3) (* 3 p!4) p!5 2)", text(lpb({14, 21, 7}, {1, 2, 3}, 14)));
    EXPECT_EQ("(lpb (* 14 p!3) (* 21 p!4) 13)", text(lpb({14, 21}, {1, 2}, 13)));
}

TEST_F(lpb_test, fractions_become_integers) {
    vector<numeral> coeffs{numeral(1) / 2, numeral(1) / 3};
    svector<literal> lits{to_literal(1), to_literal(2)};
    auto* c = static_cast<lpb_constraint*>(ctx.assert_lpb(coeffs, lits, numeral(2) / 5));
    EXPECT_EQ("(lpb (* 3 p!3) (* 2 p!4) 3)", text(c));
    EXPECT_EQ(1, value(1));
    set_lpb_coeff(&ctx, c, numeral(1) / 2);
    EXPECT_EQ(numeral(3), c->bound());
    set_lpb_coeff(&ctx, c, numeral(51) / 100);
    EXPECT_EQ(numeral(4), c->bound());
    EXPECT_EQ(1, value(2));
}

TEST_F(lpb_test, a_bound_of_zero_or_less_propagates_nothing) {
    lpb({1, 2}, {1, 2}, 0);
    lpb({1, 2}, {1, 2}, -7);
    lpb({}, {}, 0);
    for (int lit : {1, 2}) EXPECT_EQ(0, value(lit));
    EXPECT_FALSE(ctx.inconsistent());
    EXPECT_EQ(1, ctx.check());
}

TEST_F(lpb_test, what_cannot_be_reached_is_a_conflict_at_creation) {
    lpb({1, 2}, {1, 2}, 4);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(-1, ctx.check());
    EXPECT_EQ(nullptr, lpb({1}, {1}, 1));
}

TEST_F(lpb_test, without_monomials_only_the_bound_counts) {
    ctx.push();
    lpb({}, {}, 1);
    EXPECT_EQ(-1, ctx.check());
    ctx.pop(1);
    EXPECT_EQ(1, ctx.check());
}

TEST_F(lpb_test, lookups) {
    lpb_constraint* c = lpb({2, 1, 3}, {3, 1, -2}, 2);
    EXPECT_EQ(0, c->get_index_of(to_literal(1)));
    EXPECT_EQ(1, c->get_index_of(to_literal(-2)));
    EXPECT_EQ(2, c->get_index_of(to_literal(3)));
    EXPECT_EQ(-1, c->get_index_of(to_literal(2)));
    EXPECT_EQ(-1, c->get_index_of(to_literal(6)));
    EXPECT_EQ(numeral(3), c->slow_get_coefficient_of(to_literal(-2)));
    EXPECT_TRUE(c->slow_get_coefficient_of(to_literal(-1)).is_zero());
    EXPECT_EQ(numeral(6), c->compute_potential(&ctx));
}

TEST_F(lpb_test, a_heavy_literal_is_implied_when_the_slack_falls_below_it) {
    lpb_constraint* c = lpb({4, 2, 1}, {1, 2, 3}, 3);
    EXPECT_EQ(0, value(1));
    ctx.assert_literal(to_literal(-3));
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(1, value(1));
    EXPECT_EQ(0, value(2));
    EXPECT_TRUE(c->is_satisfied(&ctx));
}

TEST_F(lpb_test, raising_the_bound_takes_effect_at_once) {
    lpb_constraint* c = lpb({4, 2, 1}, {1, 2, 3}, 1);
    set_lpb_coeff(&ctx, c, 4);
    EXPECT_EQ(1, value(1));
    EXPECT_EQ(0, value(2));
    set_lpb_coeff(&ctx, c, 5);
    EXPECT_EQ(0, value(3));
    set_lpb_coeff(&ctx, c, 6);
    EXPECT_EQ(1, value(2));
    set_lpb_coeff(&ctx, c, 8);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(-1, ctx.check());
}

TEST_F(lpb_test, a_lower_bound_value_changes_nothing) {
    lpb_constraint* c = lpb({4, 2, 1}, {1, 2, 3}, 4);
    set_lpb_coeff(&ctx, c, 2);
    EXPECT_EQ(numeral(4), c->bound());
}

TEST_F(lpb_test, a_new_bound_is_shifted_and_divided_like_the_old_one) {
    // 6x - 4(not y) >= 2 is 6x + 4y >= 6, that is 3x + 2y >= 3.
    lpb_constraint* c = lpb({6, -4}, {1, -2}, 2);
    EXPECT_EQ("(lpb (* 3 p!3) (* 2 p!4) 3)", text(c));
    set_lpb_coeff(&ctx, c, 3);
    EXPECT_EQ(numeral(4), c->bound());
    set_lpb_coeff(&ctx, c, 4);
    EXPECT_EQ(numeral(4), c->bound());
    set_lpb_coeff(&ctx, c, 5);
    EXPECT_EQ(numeral(5), c->bound());
}

// The false literal must not be counted at the creation and at its visit.
TEST_F(lpb_test, a_literal_that_waits_for_its_visit_counts_once) {
    lpb({1}, {1}, 1);
    lpb({1, 1}, {-1, 2}, 1);
    EXPECT_EQ(1, ctx.check());
    svector<literal> unit{to_literal(3)};
    ctx.create_clause_core(unit, clause_kind::problem);
    lpb_constraint* c = lpb({1, 1, 1}, {-3, 4, 5}, 1);
    EXPECT_EQ(numeral(2), c->potential());
    EXPECT_EQ(1, ctx.check());
}

TEST_F(lpb_test, an_assertion_drops_the_model) {
    EXPECT_EQ(1, ctx.check());
    EXPECT_TRUE(ctx.get_model().is_valid());
    lpb({1}, {1}, 1);
    EXPECT_FALSE(ctx.get_model().is_valid());
}

TEST_F(lpb_test, a_pop_brings_the_state_of_the_push_back) {
    lpb_constraint* c = lpb({4, 3, 2, 1}, {1, 2, 3, 4}, 4);
    numeral const potential = c->potential();
    unsigned const first_candidate = c->first_candidate();
    ctx.push();
    ctx.assert_literal(to_literal(-1));
    ctx.propagate_constraints();
    ctx.push();
    set_lpb_coeff(&ctx, c, 6);
    EXPECT_EQ(1, value(4));
    EXPECT_EQ(numeral(6), c->potential());
    EXPECT_NE(first_candidate, c->first_candidate());
    ctx.pop(1);
    EXPECT_EQ(numeral(4), c->bound());
    EXPECT_EQ(0, value(4));
    ctx.pop(1);
    EXPECT_EQ(potential, c->potential());
    EXPECT_EQ(first_candidate, c->first_candidate());
    EXPECT_EQ(0, value(1));
    ctx.check_invariant();
}

TEST_F(lpb_test, a_popped_constraint_leaves_no_watch) {
    ctx.push();
    lpb_constraint* c = lpb({1, -1, 1}, {1, 2, 3}, 0);
    EXPECT_TRUE(ctx.remove_generic_watch(c, to_literal(-1)));
    ctx.insert_constraint_watch(to_literal(-1), c);
    ctx.pop(1);
    for (int lit : {1, -1, 2, -2, 3, -3}) EXPECT_FALSE(ctx.remove_generic_watch(c, to_literal(lit)));
}

// Undo records end without a destructor: the slots of their numerals must come back all the same.
TEST_F(lpb_test, large_numbers_do_not_leak) {
    unsigned const before = numeral_pool::num_used();
    {
        context other;
        create_vars(other, 3);
        std::int64_t const big = std::int64_t{1} << 60;
        constraint* c = add_lpb(other, plain_lpb{{big, big + 1, big + 2}, {1, 2, 3}, big});
        for (int round = 0; round < 50; ++round) {
            other.push();
            other.assert_literal(to_literal(1 + round % 3));
            other.propagate_constraints();
            other.push();
            set_lpb_coeff(&other, c, numeral(big) + 1 + round % 2);
            other.assert_literal(to_literal(-(1 + (round + 1) % 3)));
            EXPECT_EQ(1, other.check());
            other.pop(2);
        }
        unsigned const within = numeral_pool::num_used();
        other.push();
        other.pop(1);
        EXPECT_EQ(within, numeral_pool::num_used());
        other.reset();
        EXPECT_GE(before, numeral_pool::num_used());
    }
    EXPECT_GE(before, numeral_pool::num_used());
}

TEST_F(lpb_test, a_core_names_the_assumptions_behind_an_implied_literal) {
    // With 1 and 2 false, 3 must be true; with 4 assumed, it must not.
    lpb({1, 1, 1}, {1, 2, 3}, 1);
    add_clause(ctx, {-3, -4});
    for (int lit : {-1, 5, 4, -2, 6}) ctx.add_assumption(to_literal(lit));
    EXPECT_EQ(-1, ctx.check());
    std::vector<int> core(ctx.get_unsat_core().begin(), ctx.get_unsat_core().end());
    std::sort(core.begin(), core.end());
    std::vector<int> expected;
    for (int lit : {-1, -2, 4}) expected.push_back(to_literal(lit).index());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(expected, core);
}

// Several literals of one refutation are implied by the same constraint: none of their reasons may be lost.
TEST_F(lpb_test, a_core_holds_the_reasons_of_all_implied_literals) {
    lpb({1, 1, 1, 1}, {1, 2, 3, 4}, 2);
    add_clause(ctx, {-3, -4, 5});
    add_clause(ctx, {-3, -5, 6});
    add_clause(ctx, {-4, -6});
    ctx.add_assumption(to_literal(-1));
    ctx.add_assumption(to_literal(-2));
    EXPECT_EQ(-1, ctx.check());
    EXPECT_EQ(2u, ctx.get_unsat_core().size());
}

TEST_F(lpb_test, an_exact_cardinality_has_its_models) {
    // Exactly two of six.
    lpb({1, 1, 1, 1, 1, 1}, {1, 2, 3, 4, 5, 6}, 2);
    lpb({-1, -1, -1, -1, -1, -1}, {1, 2, 3, 4, 5, 6}, -2);
    unsigned num_models = 0;
    while (ctx.check() == 1) {
        unsigned const a = assignment_of(ctx.get_model(), 6);
        EXPECT_EQ(2, __builtin_popcount(a));
        plain_clause block;
        for (int k = 1; k <= 6; ++k) block.push_back(is_true(k, a) ? -k : k);
        add_clause(ctx, block);
        ASSERT_LE(++num_models, 15u);
    }
    EXPECT_EQ(15u, num_models);
}
