// How clauses enter the database: simplification, watches, records.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"

#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;

class clauses_test : public testing::Test {
protected:
    clauses_test() {
        g_debug_level = 3;
        x = fresh(ctx, 8);
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

TEST_F(clauses_test, a_tautology_moves_no_counter_but_that_of_the_input) {
    for (unsigned scope = 0; scope < 2; ++scope) {
        unsigned const before = probe.num_input_clauses();
        EXPECT_EQ(add(ctx, {x[0], x[1], ~x[0]}), null_clause);
        EXPECT_EQ(add(ctx, {x[0], true_literal, x[2]}), null_clause);
        EXPECT_EQ(probe.num_input_clauses(), before + 2);
        EXPECT_EQ(ctx.get_statistics().m_num_problem_literals, 0u);
        EXPECT_TRUE(probe.problem_clauses().empty());
        for (literal l : x) {
            EXPECT_TRUE(probe.watches(l).empty());
            EXPECT_TRUE(probe.watches(~l).empty());
        }
        probe.decide(x[6 + scope]);
    }
}

TEST_F(clauses_test, duplicates_and_false_go_and_literals_are_sorted) {
    clause_ref const ref = add(ctx, {x[3], x[1], false_literal, x[3], x[2], x[1]});
    ASSERT_NE(ref, null_clause);
    clause const& c = ctx.get_clause(ref);
    ASSERT_EQ(c.size(), 3u);
    EXPECT_EQ(c[0], x[1]);
    EXPECT_EQ(c[1], x[2]);
    EXPECT_EQ(c[2], x[3]);
    EXPECT_TRUE(ctx.contains_clause(probe.watches(~x[1]), ref));
    EXPECT_TRUE(ctx.contains_clause(probe.watches(~x[2]), ref));
    EXPECT_FALSE(ctx.contains_clause(probe.watches(~x[3]), ref));
    EXPECT_EQ(ctx.get_statistics().m_num_problem_literals, 3u);
}

TEST_F(clauses_test, at_the_base_values_simplify) {
    ctx.assert_literal(x[0]);
    EXPECT_EQ(add(ctx, {x[0], x[1], x[2]}), null_clause);
    clause_ref const ref = add(ctx, {~x[0], x[1], x[2], x[3]});
    ASSERT_NE(ref, null_clause);
    EXPECT_EQ(ctx.get_clause(ref).size(), 3u);
    EXPECT_EQ(add(ctx, {~x[0], x[4]}), null_clause); // a unit
    EXPECT_EQ(ctx.value(x[4]), 1);
    EXPECT_EQ(probe.problem_clauses().size(), 1u);
    EXPECT_EQ(add(ctx, {~x[0], ~x[4]}), null_clause); // empty
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(ctx.check(), -1);
}

TEST_F(clauses_test, above_the_base_only_the_constant_simplifies) {
    ctx.assert_literal(x[5]);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.decide(x[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    clause_ref const ref = add(ctx, {~x[0], x[1], ~x[5], false_literal, x[2]});
    ASSERT_NE(ref, null_clause);
    EXPECT_EQ(ctx.get_clause(ref).size(), 4u);
    EXPECT_EQ(add(ctx, {true_literal, x[1], x[2]}), null_clause);
    EXPECT_EQ(probe.problem_clauses().size(), 1u);
}

TEST_F(clauses_test, no_literal_is_a_conflict_and_one_is_a_unit) {
    EXPECT_EQ(add(ctx, {x[0], x[0]}), null_clause);
    EXPECT_EQ(ctx.value(x[0]), 1);
    EXPECT_EQ(ctx.timestamp(x[0]), -1);
    EXPECT_EQ(add(ctx, {false_literal}), null_clause);
    EXPECT_TRUE(ctx.inconsistent());
    context empty;
    EXPECT_EQ(add(empty, {}), null_clause);
    EXPECT_TRUE(empty.inconsistent());
    EXPECT_EQ(empty.check(), -1);
}

TEST_F(clauses_test, a_binary_clause_is_two_watch_entries) {
    EXPECT_EQ(add(ctx, {x[1], ~x[0]}), null_clause);
    ASSERT_EQ(probe.watches(x[0]).num_literals(), 1u);
    EXPECT_EQ(*probe.watches(x[0]).begin_literals(), x[1]);
    ASSERT_EQ(probe.watches(~x[1]).num_literals(), 1u);
    EXPECT_EQ(*probe.watches(~x[1]).begin_literals(), ~x[0]);
    EXPECT_TRUE(probe.problem_clauses().empty());
    EXPECT_EQ(ctx.get_statistics().m_num_problem_literals, 2u);
}

TEST_F(clauses_test, watches_of_a_lemma_are_true_or_open_or_newest) {
    for (unsigned i = 0; i < 5; ++i) {
        probe.decide(x[i]);
        ASSERT_TRUE(ctx.propagate_constraints());
    }
    clause_ref const open = add(ctx, {~x[0], ~x[3], x[6], x[5]}, clause_kind::lemma);
    EXPECT_EQ(ctx.get_clause(open)[0], x[5]);
    EXPECT_EQ(ctx.get_clause(open)[1], x[6]);
    EXPECT_FALSE(ctx.get_clause(open).out_of_order());
    EXPECT_EQ(ctx.get_clause(open).activity(), 1u);
    clause_ref const sat = add(ctx, {~x[0], x[3], x[1], x[5]}, clause_kind::lemma);
    EXPECT_EQ(ctx.get_clause(sat)[0], x[1]); // true longest
    EXPECT_EQ(ctx.get_clause(sat)[1], x[3]);
    clause_ref const unit = add(ctx, {~x[0], ~x[3], ~x[1], x[7]}, clause_kind::lemma);
    EXPECT_EQ(ctx.get_clause(unit)[0], x[7]);
    EXPECT_EQ(ctx.get_clause(unit)[1], ~x[3]); // newest
    EXPECT_TRUE(ctx.get_clause(unit).out_of_order());
    EXPECT_EQ(ctx.value(x[7]), 1);
    clause_ref const empty = add(ctx, {~x[0], ~x[4], ~x[2]}, clause_kind::problem);
    EXPECT_EQ(ctx.get_clause(empty)[0], ~x[4]);
    EXPECT_EQ(ctx.get_clause(empty)[1], ~x[2]);
    EXPECT_TRUE(ctx.get_clause(empty).out_of_order());
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(probe.record_of_scope(5)->m_clauses.size(), 2u);
    // Scope 2 is left: the unit clause is open again, the other one too; both may go on.
    probe.backtrack(3);
    EXPECT_FALSE(ctx.inconsistent());
    EXPECT_FALSE(ctx.get_clause(unit).out_of_order());
    EXPECT_FALSE(ctx.get_clause(empty).out_of_order());
    ctx.check_invariant();
}

TEST_F(clauses_test, a_learned_clause_keeps_its_first_literal_and_watches_the_newest) {
    for (unsigned i = 0; i < 4; ++i) {
        probe.decide(x[i]);
        ASSERT_TRUE(ctx.propagate_constraints());
    }
    clause_ref const ref = add(ctx, {x[6], ~x[0], ~x[2], ~x[1]}, clause_kind::learned);
    EXPECT_EQ(ctx.get_clause(ref)[0], x[6]);
    EXPECT_EQ(ctx.get_clause(ref)[1], ~x[2]);
    EXPECT_EQ(ctx.value(x[6]), 1);
    EXPECT_FALSE(ctx.get_clause(ref).out_of_order());
    EXPECT_EQ(probe.record_of_scope(4), nullptr);
}

TEST_F(clauses_test, a_learned_binary_clause_asserts_and_records_nothing) {
    probe.decide(x[0]);
    ASSERT_TRUE(ctx.propagate_constraints());
    add(ctx, {x[1], ~x[0]}, clause_kind::learned);
    EXPECT_EQ(ctx.value(x[1]), 1);
    EXPECT_EQ(ctx.antecedent(x[1].var()), gexplanation::mk_binary(x[0]));
    EXPECT_EQ(probe.record_of_scope(1), nullptr);
}

// Analysis may meet literals that reanalysis made false on the way back.
TEST_F(clauses_test, a_learned_clause_false_on_arrival_is_a_conflict_and_recorded) {
    for (unsigned i = 0; i < 3; ++i) {
        probe.decide(x[i]);
        ASSERT_TRUE(ctx.propagate_constraints());
    }
    clause_ref const ref = add(ctx, {~x[2], ~x[0], ~x[1]}, clause_kind::learned);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(probe.conflict(), gexplanation::mk_clause(ref));
    EXPECT_TRUE(ctx.get_clause(ref).out_of_order());
    EXPECT_EQ(probe.record_of_scope(3)->m_clauses.size(), 1u);
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[2]), -1); // unit at scope 2, at once
    EXPECT_TRUE(ctx.get_clause(ref).out_of_order());
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[2]), 0);
    EXPECT_FALSE(ctx.get_clause(ref).out_of_order());
}

TEST_F(clauses_test, a_learned_binary_clause_false_on_arrival_is_a_conflict_and_recorded) {
    probe.decide(x[0]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.decide(x[1]);
    ASSERT_TRUE(ctx.propagate_constraints());
    add(ctx, {~x[1], ~x[0]}, clause_kind::learned);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(probe.record_of_scope(2)->m_binary_clauses.size(), 1u);
    probe.backtrack(1);
    EXPECT_FALSE(ctx.inconsistent());
    EXPECT_EQ(ctx.value(x[1]), -1);
}

TEST_F(clauses_test, a_binary_lemma_stays_unit_after_a_backjump) {
    probe.decide(x[0]);
    ASSERT_TRUE(ctx.propagate_constraints());
    for (unsigned i = 1; i < 5; ++i) {
        probe.decide(x[i]);
        ASSERT_TRUE(ctx.propagate_constraints());
    }
    add(ctx, {x[6], ~x[0]}, clause_kind::lemma);
    EXPECT_EQ(ctx.value(x[6]), 1);
    probe.backtrack(2);
    EXPECT_EQ(ctx.value(x[6]), 1);
    probe.backtrack(2);
    EXPECT_EQ(ctx.value(x[6]), 1);
    EXPECT_EQ(ctx.antecedent(x[6].var()), gexplanation::mk_binary(x[0]));
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[6]), 0);
}

TEST_F(clauses_test, a_false_clause_reports_through_the_first_conflict) {
    probe.decide(x[0]);
    ASSERT_TRUE(ctx.propagate_constraints());
    std::uint64_t const before = ctx.get_statistics().m_num_conflicts;
    add(ctx, {~x[0], x[1]}, clause_kind::lemma);
    add(ctx, {~x[0], ~x[1]}, clause_kind::lemma);
    gexplanation const first = probe.conflict();
    ASSERT_TRUE(ctx.inconsistent());
    clause const& c = ctx.get_clause(first.get_clause());
    EXPECT_EQ(c[0], ~x[0]);
    add(ctx, {~x[1], ~x[0]}, clause_kind::lemma);
    EXPECT_EQ(probe.conflict(), first);
    EXPECT_EQ(ctx.get_statistics().m_num_conflicts, before + 1);
}

TEST(clauses_large, a_hundred_thousand_literals) {
    search_settings_guard const guard;
    g_decision_polarity = 1; // the first decision satisfies the clause
    context ctx;
    context_probe probe(ctx);
    std::vector<literal> const x = fresh(ctx, 100000);
    svector<literal> c;
    for (unsigned i = 0; i < x.size(); ++i) c.push_back(x[(i * 7919ull) % x.size()]); // any order
    clause_ref const ref = ctx.create_clause_core(c, clause_kind::problem);
    EXPECT_EQ(ctx.get_clause(ref).size(), 100000u);
    ctx.push();
    for (unsigned i = 0; i + 1 < x.size(); ++i) ctx.assert_literal(~x[i]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x.back()), 1);
    EXPECT_EQ(ctx.check(), 1);
    ctx.assert_literal(~x.back());
    EXPECT_EQ(ctx.check(), -1);
    ctx.pop(1);
    EXPECT_EQ(ctx.check(), 1);
    ctx.check_invariant();
}

TEST(clauses_large, a_million_variables) {
    context ctx;
    std::vector<literal> const x = fresh(ctx, 1000000);
    for (unsigned i = 0; i + 1 < x.size(); ++i) ctx.create_auxiliary_clause(~x[i], x[i + 1]);
    ctx.push();
    ctx.assert_literal(x[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x.back()), 1);
    ctx.assert_literal(~x.back());
    EXPECT_EQ(ctx.check(), -1);
    ctx.pop(1);
    EXPECT_EQ(ctx.value(x.back()), 0);
    EXPECT_EQ(ctx.check(), 1);
}

// The entries of a popped scope stand at the end of a long watch set: each is found at once.
TEST(clauses_large, a_hundred_thousand_clauses_at_one_literal_are_popped) {
    context ctx;
    context_probe probe(ctx);
    std::vector<literal> const x = fresh(ctx, 100001);
    add(ctx, {x[0], x[5], x[7]});
    for (unsigned round = 0; round < 2; ++round) {
        ctx.push();
        for (unsigned i = 1; i + 1 < x.size(); ++i) add(ctx, {x[0], x[i], x[i + 1]});
        EXPECT_EQ(probe.watches(~x[0]).num_clauses(), 100000u);
        ctx.pop(1);
        EXPECT_EQ(probe.watches(~x[0]).num_clauses(), 1u);
    }
}

} // namespace
