// Conflict analysis, minimization and the levels of timestamps.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"
#include "support/test_constraints.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <set>

namespace {

using namespace vexor;
using namespace vexor_test;

class analyze_test : public testing::Test {
protected:
    analyze_test() {
        g_debug_level = 3;
        x = fresh(ctx, 20);
    }
    bool decide(literal l) {
        probe.decide(l);
        return ctx.propagate_constraints();
    }
    // The clause that the last analysis learned, after minimization.
    void expect_learned(std::initializer_list<literal> wanted) {
        svector<literal> const& got = probe.last_learned();
        ASSERT_EQ(got.size(), wanted.size());
        EXPECT_EQ(got[0], *wanted.begin());
        std::set<int> a;
        std::set<int> b;
        for (literal l : got) a.insert(l.index());
        for (literal l : wanted) b.insert(l.index());
        EXPECT_EQ(a, b);
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

TEST_F(analyze_test, first_unique_implication_point) {
    // x1 is implied by x0 and dominates the conflict of x2 and x3.
    add(ctx, {~x[0], ~x[5], x[1]});
    add(ctx, {~x[1], x[2]});
    add(ctx, {~x[1], ~x[6], x[3]});
    add(ctx, {~x[2], ~x[3], ~x[7]});
    ASSERT_TRUE(decide(x[5]));
    ASSERT_TRUE(decide(x[6]));
    ASSERT_TRUE(decide(x[7]));
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    expect_learned({~x[1], ~x[6], ~x[7]});
    EXPECT_EQ(ctx.scope_lvl(), 3u);
    EXPECT_EQ(ctx.value(x[1]), -1);
    EXPECT_EQ(probe.learned_clauses().size(), 1u);
    EXPECT_EQ(ctx.get_clause(probe.learned_clauses()[0])[1], ~x[7]); // the newest of the rest
    EXPECT_EQ(ctx.get_statistics().m_num_analyzed_literals, 3u);
}

TEST_F(analyze_test, the_walk_may_end_at_the_decision) {
    add(ctx, {~x[0], ~x[1], x[2]});
    add(ctx, {~x[0], ~x[1], ~x[2], ~x[3]});
    ASSERT_TRUE(decide(x[3]));
    ASSERT_TRUE(decide(x[1]));
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    expect_learned({~x[0], ~x[1], ~x[3]});
    EXPECT_EQ(ctx.scope_lvl(), 2u);
}

TEST_F(analyze_test, a_unit_is_learned_and_lasts) {
    add(ctx, {~x[0], x[1], x[9]});
    add(ctx, {~x[0], ~x[1], x[9]});
    ASSERT_TRUE(decide(~x[9]));
    add(ctx, {x[9], ~x[0], x[2]});
    ASSERT_TRUE(decide(x[5]));
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_EQ(ctx.scope_lvl(), 1u);
    probe.backtrack(1);
    add(ctx, {~x[10], x[11]});
    add(ctx, {~x[10], ~x[11]});
    ASSERT_TRUE(decide(x[5]));
    ASSERT_TRUE(decide(x[6]));
    ASSERT_FALSE(decide(x[10]));
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_EQ(ctx.value(x[10]), -1);
    EXPECT_EQ(ctx.timestamp(x[10]), -1);
}

TEST_F(analyze_test, facts_of_the_base_disappear) {
    add(ctx, {x[4]});
    ASSERT_TRUE(ctx.propagate_constraints());
    ctx.push();
    add(ctx, {~x[0], x[1], ~x[3]}); // x4 holds, so that simplification cannot know it yet
    ctx.assert_literal(x[5]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.search_lvl() = ctx.scope_lvl();
    ASSERT_TRUE(decide(x[3]));
    ASSERT_TRUE(decide(x[7]));
    add(ctx, {~x[0], ~x[1], ~x[4], ~x[5]}, clause_kind::lemma);
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    expect_learned({~x[0], ~x[3]}); // neither x4 nor x5
}

// Each literal of the clause that the others imply goes, through chains and several reasons.
TEST_F(analyze_test, minimization_removes_implied_literals) {
    add(ctx, {~x[1], x[2]});
    add(ctx, {~x[2], x[3]});
    add(ctx, {~x[1], ~x[3], x[4]});
    ASSERT_TRUE(decide(x[1])); // x2, x3, x4
    add(ctx, {~x[0], ~x[2], ~x[4], x[6]}, clause_kind::lemma);
    add(ctx, {~x[0], ~x[3], ~x[1], ~x[6]}, clause_kind::lemma);
    ASSERT_TRUE(decide(x[9]));
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    expect_learned({~x[0], ~x[1]});
    EXPECT_EQ(ctx.get_statistics().m_num_analyzed_literals, 5u);
    EXPECT_EQ(ctx.get_statistics().m_num_minimized_literals, 2u);
    EXPECT_EQ(ctx.scope_lvl(), 1u);
    EXPECT_EQ(ctx.value(x[0]), -1);
}

TEST_F(analyze_test, minimization_keeps_what_rests_on_another_decision) {
    add(ctx, {~x[1], ~x[8], x[2]});
    ASSERT_TRUE(decide(x[8]));
    ASSERT_TRUE(decide(x[1])); // x2 rests on x8 as well
    add(ctx, {~x[0], ~x[2], x[6]}, clause_kind::lemma);
    add(ctx, {~x[0], ~x[1], ~x[6]}, clause_kind::lemma);
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    expect_learned({~x[0], ~x[1], ~x[2]});
}

// More than 32 scopes: their numbers coincide modulo 32, which may only cost time.
TEST_F(analyze_test, levels_beyond_thirty_two) {
    std::vector<literal> const d = fresh(ctx, 200);
    for (unsigned i = 0; i < 100; ++i) {
        ASSERT_TRUE(decide(d[i]));
        EXPECT_EQ(ctx.scope_lvl(), i + 1);
        EXPECT_EQ(probe.timestamp2level(ctx.timestamp(d[i])), i + 1);
        EXPECT_EQ(ctx.timestamp(d[i]) & 31, (i + 1) & 31);
    }
    for (unsigned i = 0; i < 100; ++i) EXPECT_EQ(probe.timestamp2level(ctx.timestamp(d[i])), i + 1);
    EXPECT_EQ(probe.timestamp2level(-1), 0u);
    for (unsigned s = 0; s <= 100; ++s) EXPECT_EQ(probe.timestamp2level(probe.scope_floor(s)), s);
    // x1 rests on scope 3, which looks like scope 67 to the set of levels.
    add(ctx, {~d[2], x[1]}, clause_kind::lemma);
    add(ctx, {~d[66], ~x[1], x[2]}, clause_kind::lemma);
    add(ctx, {~x[0], ~d[66], x[3]}, clause_kind::lemma);
    add(ctx, {~x[0], ~x[2], ~x[3], ~d[40]}, clause_kind::lemma);
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    // x2 is implied by d66 and x1, and x1 by d2 alone: it stays, for d2 is not in the clause.
    expect_learned({~x[0], ~d[66], ~x[2], ~d[40]});
    EXPECT_EQ(ctx.scope_lvl(), 100u);
}

// Theories report conflicts whose literals are all older than the present scope.
TEST_F(analyze_test, a_conflict_wholly_below_the_present_scope) {
    add(ctx, {~x[1], x[2]});
    ASSERT_TRUE(decide(x[0]));
    ASSERT_TRUE(decide(x[1]));
    for (unsigned i = 5; i < 10; ++i) ASSERT_TRUE(decide(x[i]));
    EXPECT_EQ(ctx.scope_lvl(), 7u);
    add(ctx, {~x[0], ~x[1], ~x[2]}, clause_kind::lemma);
    ASSERT_TRUE(ctx.inconsistent());
    EXPECT_TRUE(probe.resolve_conflict());
    expect_learned({~x[1], ~x[0]});
    EXPECT_EQ(ctx.scope_lvl(), 1u);
    EXPECT_EQ(ctx.value(x[1]), -1);
}

TEST_F(analyze_test, a_conflict_on_base_facts_alone_ends_the_search) {
    ctx.assert_literal(x[0]);
    ctx.assert_literal(x[1]);
    ASSERT_TRUE(ctx.propagate_constraints());
    for (unsigned i = 5; i < 10; ++i) ASSERT_TRUE(decide(x[i]));
    add(ctx, {~x[0], ~x[1], ~x[0]}, clause_kind::lemma);
    ASSERT_TRUE(ctx.inconsistent());
    EXPECT_FALSE(probe.resolve_conflict());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(ctx.check(), -1);
}

TEST_F(analyze_test, a_conflict_on_nothing_ends_the_search) {
    for (unsigned i = 5; i < 10; ++i) ASSERT_TRUE(decide(x[i]));
    ctx.assert_literal(false_literal);
    EXPECT_FALSE(probe.resolve_conflict());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_TRUE(ctx.get_unsat_core().empty());
}

TEST_F(analyze_test, lazy_reasons_are_expanded_when_the_walk_reaches_them) {
    auto* parity = new parity_constraint({x[0].var(), x[1].var(), x[2].var()}, false); // x2 = x0 + x1
    auto* most = new at_most_constraint({x[2], x[3], x[4]}, 1);
    ctx.assert_constraint(parity);
    ctx.assert_constraint(most);
    add(ctx, {~x[1], ~x[5], x[3]});
    ASSERT_TRUE(decide(~x[0]));
    ASSERT_TRUE(decide(x[5]));
    ASSERT_FALSE(decide(x[1])); // x3 by the clause, x2 by the parity, too many
    EXPECT_TRUE(probe.resolve_conflict());
    expect_learned({~x[1], x[0], ~x[5]});
    EXPECT_EQ(ctx.scope_lvl(), 2u);
    EXPECT_GE(most->m_num_explanations, 1u);
}

TEST_F(analyze_test, activities_grow_and_are_rescaled) {
    add_pigeonhole(ctx, 5);
    g_debug_level = 1;
    EXPECT_EQ(ctx.check(), -1);
    double largest = 0;
    for (unsigned v = 3; v < ctx.num_bool_vars(); ++v)
        largest = std::max(largest, probe.activity(static_cast<int>(v)));
    EXPECT_GT(largest, 0);
    // The increment passes 1e100 after some 4,500 conflicts.
    context big;
    add_pigeonhole(big, 8);
    g_clause_deletion_frequency = 1000;
    EXPECT_EQ(big.check(), -1);
    EXPECT_GT(big.get_statistics().m_num_conflicts, 4600u);
    context_probe bp(big);
    for (unsigned v = 3; v < big.num_bool_vars(); ++v) EXPECT_LE(bp.activity(static_cast<int>(v)), 1e100);
    big.check_invariant();
}

TEST_F(analyze_test, clause_activity_counts_uses) {
    clause_ref const ref = add(ctx, {~x[0], ~x[1], ~x[2]}, clause_kind::lemma);
    EXPECT_EQ(ctx.get_clause(ref).activity(), 1u);
    add(ctx, {~x[0], x[2]});
    ASSERT_TRUE(decide(x[1]));
    ASSERT_FALSE(decide(x[0]));
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_EQ(ctx.get_clause(ref).activity(), 2u);
}

} // namespace
