// Models and the validation of assignments.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"
#include "support/test_constraints.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sstream>

namespace {

using namespace vexor;
using namespace vexor_test;

TEST(model, a_context_without_variables_has_one) {
    context ctx;
    EXPECT_FALSE(ctx.get_model().is_valid());
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_TRUE(ctx.get_model().is_valid());
    EXPECT_EQ(ctx.get_model().value(3), 0);
    EXPECT_EQ(ctx.get_model().value(-1), 0);
    std::ostringstream out;
    ctx.get_model().display_dimacs(out);
    EXPECT_EQ(out.str(), "\n");
}

TEST(model, values_survive_the_undone_search) {
    context ctx;
    std::vector<literal> const x = fresh(ctx, 4);
    add(ctx, {x[0], x[1]});
    add(ctx, {~x[0]});
    add(ctx, {x[2], ~x[1], x[3]});
    add(ctx, {~x[2]});
    EXPECT_EQ(ctx.check(), 1);
    model const& m = ctx.get_model();
    EXPECT_EQ(m.value(x[0].var()), -1);
    EXPECT_EQ(m.value(x[1].var()), 1);
    EXPECT_EQ(m.value(x[2].var()), -1);
    EXPECT_EQ(m.value(x[3].var()), 1);
    std::ostringstream out;
    m.display_dimacs(out);
    EXPECT_EQ(out.str(), "-1 2 -3 4\n");
    model copy(nullptr);
    copy.copy(m);
    copy.set_cost(numeral(7));
    ctx.pop(1); // nothing to pop, but the model goes
    EXPECT_FALSE(m.is_valid());
    EXPECT_EQ(m.value(x[1].var()), 0);
    EXPECT_TRUE(copy.is_valid());
    std::ostringstream with_cost;
    copy.display_dimacs(with_cost);
    EXPECT_EQ(with_cost.str(), "-1 2 -3 4\ncost: 7\n");
    copy.reset();
    EXPECT_FALSE(copy.is_valid());
    EXPECT_TRUE(copy.cost().is_neg());
}

// A kept model may know more variables than there are, and fewer: what it does not know is unassigned.
TEST(model, kept_beyond_its_scope_is_read_within_bounds) {
    context ctx;
    std::vector<literal> const x = fresh(ctx, 2);
    add(ctx, {x[0]});
    ctx.push();
    std::vector<literal> const inner = fresh(ctx, 300);
    literal const paid = ctx.create_fresh_weighted_bool_var(numeral(3));
    for (literal l : inner) add(ctx, {l});
    add(ctx, {paid});
    EXPECT_EQ(ctx.max_sat(), 1);
    EXPECT_EQ(ctx.get_model().cost(), numeral(3));
    ctx.pop_and_keep_model(1);
    ASSERT_TRUE(ctx.get_model().is_valid());
    EXPECT_EQ(ctx.num_bool_vars(), 5u);
    std::ostringstream shrunk;
    ctx.get_model().display(shrunk);
    EXPECT_EQ(shrunk.str(), "\ncost: 3\n");
    svector<int> ids;
    ctx.get_inconsistent_assertions(ids);
    EXPECT_TRUE(ids.empty());

    // The other way around: variables that came after the answer.
    EXPECT_EQ(ctx.check(), 1);
    literal const late = fresh(ctx, 1)[0];
    literal const late_paid = ctx.create_fresh_weighted_bool_var(numeral(1));
    EXPECT_EQ(ctx.get_model().value(x[0].var()), 1);
    EXPECT_EQ(ctx.get_model().value(late.var()), 0);
    EXPECT_EQ(ctx.get_model().value(late_paid.var()), 0);
    ctx.get_inconsistent_assertions(ids);
    EXPECT_TRUE(ids.empty());
    std::ostringstream grown;
    ctx.get_model().display(grown);
    ctx.get_model().display_dimacs(grown);
}

TEST(model, none_if_none_is_wanted) {
    search_settings_guard const guard;
    g_build_model = false;
    context ctx;
    fresh(ctx, 2);
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_FALSE(ctx.get_model().is_valid());
}

// Each check resets it, the early answers too.
TEST(model, goes_with_the_next_check) {
    context ctx;
    std::vector<literal> const x = fresh(ctx, 2);
    EXPECT_EQ(ctx.check(), 1);
    ctx.set_type_error("wrong");
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_FALSE(ctx.get_model().is_valid());
    ctx.reset();
    std::vector<literal> const y = fresh(ctx, 2);
    EXPECT_EQ(ctx.check(), 1);
    ctx.add_assumption(y[0]);
    ctx.assert_literal(~y[0]);
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_FALSE(ctx.get_model().is_valid());
}

TEST(validate, finds_what_is_broken) {
    context ctx;
    context_probe probe(ctx);
    std::vector<literal> const x = fresh(ctx, 6);
    EXPECT_TRUE(ctx.validate_assignment());
    clause_ref const ref = add(ctx, {x[0], x[1], x[2]});
    EXPECT_FALSE(ctx.validate_assignment()); // no literal is true
    probe.decide(x[1]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_TRUE(ctx.validate_assignment());
    static_cast<void>(ref);
    probe.backtrack(1);
    add(ctx, {x[3], x[4]});
    probe.decide(x[0]);
    ctx.assign_literal_core(~x[3], gexplanation::mk_binary(x[0]));
    ctx.assign_literal_core(~x[4], gexplanation::mk_binary(x[0])); // not propagated: a false binary clause
    EXPECT_FALSE(ctx.validate_assignment());
    probe.backtrack(1);
    ctx.assert_constraint(new parity_constraint({x[3].var(), x[5].var()}, true));
    probe.decide(x[0]);
    ctx.assign_literal_core(x[3], gexplanation::mk_binary(x[0]));
    ctx.assign_literal_core(x[5], gexplanation::mk_binary(x[0]));
    EXPECT_FALSE(ctx.validate_assignment());
    probe.backtrack(1);
    EXPECT_EQ(ctx.check(), 1);
}

TEST(validate, runs_after_a_satisfiable_answer) {
    struct lying_constraint : at_most_constraint {
        using at_most_constraint::at_most_constraint;
        [[nodiscard]] bool is_satisfied(context*) override { return false; }
    };
    std::ostringstream text;
    std::streambuf* const saved = std::cerr.rdbuf(text.rdbuf());
    context ctx;
    std::vector<literal> const x = fresh(ctx, 3);
    ctx.set_validate_model(true);
    add(ctx, {x[0], x[1], x[2]});
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_FALSE(ctx.validation_failed());
    ctx.push();
    ctx.assert_constraint(new lying_constraint(x, 3));
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_TRUE(ctx.validation_failed());
    ctx.pop(1);
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_FALSE(ctx.validation_failed());
    std::cerr.rdbuf(saved);
    EXPECT_EQ(
        text.str(),
        " validating assignment... ok\n validating assignment... failed\n validating assignment... ok\n");
}

} // namespace
