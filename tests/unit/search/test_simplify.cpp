// Simplification at scope 0.
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

class simplify_test : public testing::Test {
protected:
    simplify_test() {
        g_debug_level = 3;
        x = fresh(ctx, 12);
    }
    void fact(literal l) {
        ctx.assert_literal(l);
        ASSERT_TRUE(ctx.propagate_constraints());
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

TEST_F(simplify_test, satisfied_clauses_and_false_literals_go) {
    clause_ref const satisfied = add(ctx, {x[0], x[1], x[2]});
    clause_ref const shrunk = add(ctx, {x[1], x[2], ~x[0], x[3]});
    clause_ref const later = add(ctx, {x[3], x[4], x[5], x[0]});
    add(ctx, {x[0], x[6]});
    add(ctx, {x[6], x[7]});
    static_cast<void>(satisfied);
    static_cast<void>(later);
    fact(x[0]);
    statistics const before = ctx.get_statistics();
    probe.simplify();
    statistics const after = ctx.get_statistics();
    EXPECT_EQ(after.m_num_simplified_clauses, before.m_num_simplified_clauses + 3); // two clauses, one binary
    ASSERT_EQ(probe.problem_clauses().size(), 1u);
    clause const& c = ctx.get_clause(shrunk);
    ASSERT_EQ(c.size(), 3u);
    EXPECT_EQ(after.m_num_problem_literals, 3u + 4u); // binary clauses stay in the count
    EXPECT_TRUE(probe.watches(x[0]).empty());
    EXPECT_TRUE(probe.watches(~x[0]).empty());
    EXPECT_EQ(probe.watches(~x[0]).capacity(), 0u);
    EXPECT_EQ(probe.watches(~x[6]).num_literals(), 1u); // only the clause with x7
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(simplify_test, a_clause_may_shrink_to_two_literals_and_stays_a_record) {
    clause_ref const ref = add(ctx, {x[0], x[1], x[2], x[3]});
    clause_ref const learned = add(ctx, {x[4], x[5], x[2], x[3]}, clause_kind::lemma);
    ctx.get_clause(learned).set_activity(17);
    ASSERT_EQ(ctx.get_clause(learned)[0], x[2]); // sorted: x2 and x3 are the watches
    fact(~x[4]);
    fact(~x[5]);
    probe.simplify();
    EXPECT_EQ(ctx.get_clause(learned).size(), 2u);
    EXPECT_EQ(ctx.get_clause(learned).activity(), 17u);
    EXPECT_EQ(ctx.get_clause(ref).size(), 4u);
    EXPECT_EQ(probe.learned_clauses().size(), 1u);
    probe.decide(~x[2]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x[3]), 1);
    EXPECT_EQ(ctx.antecedent(x[3].var()), gexplanation::mk_clause(learned));
    probe.backtrack(1);
    add(ctx, {~x[2], ~x[3]});
    add(ctx, {x[2], ~x[3]});
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(ctx.get_model().value(x[2].var()), 1);
}

TEST_F(simplify_test, nothing_happens_while_the_budget_lasts) {
    add(ctx, {x[0], x[1], x[2]});
    probe.simp_budget() = 10;
    fact(x[0]); // one propagation
    EXPECT_EQ(probe.simp_budget(), 9);
    probe.simplify();
    EXPECT_EQ(probe.problem_clauses().size(), 1u);
    probe.simp_budget() = 0;
    probe.simplify();
    EXPECT_TRUE(probe.problem_clauses().empty());
    EXPECT_EQ(probe.simp_budget(), 0);
    add(ctx, {x[3], x[4], x[5]});
    probe.simplify(); // nothing new on the trail
    EXPECT_EQ(probe.simp_budget(), 0);
    fact(x[6]);
    probe.simplify();
    EXPECT_EQ(probe.simp_budget(), 3); // a pass is paid for by as many propagations as there are literals
}

TEST_F(simplify_test, locked_and_recorded_clauses_stay) {
    clause_ref const reason = add(ctx, {x[0], x[1], x[2]});
    fact(~x[0]);
    fact(~x[1]);
    EXPECT_EQ(ctx.antecedent(x[2].var()), gexplanation::mk_clause(reason));
    clause_ref const recorded = add(ctx, {x[3], x[4], x[5]});
    ctx.get_clause(recorded).set_out_of_order(true);
    fact(x[3]);
    probe.simplify();
    EXPECT_EQ(probe.problem_clauses().size(), 2u);
    ctx.get_clause(recorded).set_out_of_order(false);
    fact(x[8]);
    probe.simp_budget() = 0;
    probe.simplify();
    EXPECT_EQ(probe.problem_clauses().size(), 1u);
}

// Sets freed here are missed later by whoever wants to take an entry out.
TEST_F(simplify_test, later_removals_tolerate_a_freed_set) {
    auto* most = new at_most_constraint({x[0], x[1], x[2], x[3]}, 3);
    ctx.assert_constraint(most);
    ctx.assert_constraint(new parity_constraint({x[0].var(), x[4].var(), x[5].var()}, true));
    fact(x[0]);
    probe.simplify();
    EXPECT_TRUE(probe.watches(x[0]).empty());
    EXPECT_FALSE(ctx.remove_generic_watch(most, x[0]));
    ctx.push();
    ctx.assert_constraint(new at_most_constraint({x[0], x[1], x[2]}, 2));
    add(ctx, {~x[1], x[6]});
    EXPECT_EQ(ctx.check(), 1);
    ctx.pop(1);
    ctx.check_invariant();
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_FALSE(ctx.remove_generic_watch(most, x[0]));
}

// Clauses made above the base keep literals of scope 0 and may be watched where the sets were freed.
TEST_F(simplify_test, clauses_made_later_with_discarded_literals) {
    fact(x[0]);
    probe.simplify();
    probe.decide(x[1]);
    ASSERT_TRUE(ctx.propagate_constraints());
    clause_ref const satisfied = add(ctx, {x[0], x[2], x[3]}, clause_kind::lemma);
    clause_ref const unit = add(ctx, {~x[0], ~x[1], x[4]}, clause_kind::problem);
    add(ctx, {~x[0], x[5]}, clause_kind::lemma);
    EXPECT_EQ(ctx.get_clause(satisfied)[0], x[0]);
    EXPECT_EQ(ctx.value(x[4]), 1);
    EXPECT_EQ(ctx.antecedent(x[4].var()), gexplanation::mk_clause(unit));
    EXPECT_EQ(ctx.value(x[5]), 1);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.delete_irrelevant();
    ctx.check_invariant();
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[5]), 1); // unit at scope 0 by now
    EXPECT_EQ(ctx.value(x[4]), 0);
    ctx.check_invariant();
    probe.simp_budget() = 0;
    probe.simplify();
    ctx.check_invariant();
    probe.decide(~x[4]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x[1]), -1);
}

TEST_F(simplify_test, never_above_scope_0) {
    std::vector<literal> const y = fresh(ctx, 2);
    ctx.push();
    add(ctx, {y[0], x[1], x[2]});
    ctx.assert_literal(y[0]);
    g_simplify_always = true;
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(probe.problem_clauses().size(), 1u);
    ctx.pop(1);
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(simplify_test, the_same_answers_with_and_without) {
    g_debug_level = 2;
    for (unsigned seed = 0; seed < 40; ++seed) {
        int answers[2];
        for (unsigned always = 0; always < 2; ++always) {
            g_simplify_always = always != 0;
            context k;
            std::vector<literal> const y = fresh(k, 40);
            add_random_3sat(k, y, 165, seed);
            answers[always] = k.check();
            for (literal l : {y[0], ~y[0], y[1]}) {
                k.push();
                k.assert_literal(l);
                answers[always] = answers[always] * 3 + k.check();
                k.pop(1);
                answers[always] = answers[always] * 3 + k.check();
            }
        }
        EXPECT_EQ(answers[0], answers[1]) << seed;
    }
}

} // namespace
