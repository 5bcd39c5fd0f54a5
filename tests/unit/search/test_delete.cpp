// Deletion of learned clauses, and the compaction of their memory.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace {

using namespace vexor;
using namespace vexor_test;

class delete_test : public testing::Test {
protected:
    delete_test() {
        g_debug_level = 3;
        x = fresh(ctx, 80);
    }
    // A learned clause of n unassigned literals that begin at start.
    clause_ref learned(unsigned start, unsigned n, std::uint32_t activity = 1) {
        svector<literal> c;
        for (unsigned i = 0; i < n; ++i) c.push_back(x[start + i]);
        clause_ref const ref = ctx.create_clause_core(c, clause_kind::lemma);
        ctx.get_clause(ref).set_activity(activity);
        return ref;
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

TEST_F(delete_test, old_clauses_with_many_open_literals_go) {
    g_head_tail_ratio = 4;
    // Eight clauses: the first six are the head.
    clause_ref const six = learned(0, 6);
    clause_ref const seven = learned(0, 7);
    clause_ref const active = learned(1, 7, 500);
    clause_ref const less_active = learned(2, 7, 499);
    for (unsigned i = 0; i < 2; ++i) learned(10, 4);
    clause_ref const tail_long = learned(20, 46);
    clause_ref const tail = learned(20, 45);
    statistics const before = ctx.get_statistics();
    probe.delete_irrelevant();
    svector<clause_ref> const& kept = probe.learned_clauses();
    ASSERT_EQ(kept.size(), 5u);
    EXPECT_EQ(kept[0], six);
    EXPECT_EQ(kept[1], active);
    EXPECT_EQ(kept[4], tail);
    EXPECT_TRUE(ctx.get_clause(seven).removed());
    EXPECT_TRUE(ctx.get_clause(less_active).removed());
    EXPECT_TRUE(ctx.get_clause(tail_long).removed());
    EXPECT_EQ(ctx.get_clause(active).activity(), 125u); // a quarter
    EXPECT_EQ(ctx.get_clause(six).activity(), 0u);
    statistics const after = ctx.get_statistics();
    EXPECT_EQ(after.m_num_learned_literals, before.m_num_learned_literals - 7 - 7 - 46);
    EXPECT_EQ(after.m_num_deleted_clauses, 3u);
    ctx.check_invariant();
}

TEST_F(delete_test, a_ratio_of_zero_or_one_makes_all_recent) {
    for (unsigned ratio : {0u, 1u}) {
        g_head_tail_ratio = ratio;
        clause_ref const stays = learned(0, 45);
        clause_ref const goes = learned(0, 46);
        probe.delete_irrelevant();
        EXPECT_EQ(probe.learned_clauses().back(), stays);
        EXPECT_TRUE(ctx.get_clause(goes).removed());
    }
}

TEST(deletion_schedule, a_frequency_of_zero_never_deletes) {
    search_settings_guard guard;
    auto const deleted = [](unsigned frequency) {
        g_clause_deletion_frequency = frequency;
        context ctx;
        add_pigeonhole(ctx, 6);
        EXPECT_EQ(ctx.check(), -1);
        return ctx.get_statistics().m_num_deleted_clauses;
    };
    EXPECT_GT(deleted(10), 0u);
    EXPECT_EQ(deleted(0), 0u);
}

TEST_F(delete_test, assigned_literals_do_not_count) {
    clause_ref const ref = learned(0, 9);
    learned(20, 3);
    g_head_tail_ratio = 1; // everything is tail
    g_tail_relevancy = 7;
    probe.decide(x[8]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.delete_irrelevant();
    EXPECT_TRUE(ctx.get_clause(ref).removed()); // eight are open
    clause_ref const again = learned(0, 9);
    probe.decide(~x[7]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.delete_irrelevant();
    EXPECT_FALSE(ctx.get_clause(again).removed());
}

TEST_F(delete_test, reasons_and_recorded_clauses_stay) {
    g_head_relevancy = g_tail_relevancy = 0;
    clause_ref const reason = learned(0, 3);
    clause_ref const recorded = learned(10, 5);
    clause_ref const other = learned(20, 5);
    ctx.get_clause(recorded).set_out_of_order(true);
    probe.decide(~x[0]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.decide(~x[1]);
    ASSERT_TRUE(ctx.propagate_constraints());
    ASSERT_EQ(ctx.antecedent(x[2].var()), gexplanation::mk_clause(reason));
    probe.delete_irrelevant();
    ASSERT_EQ(probe.learned_clauses().size(), 2u);
    EXPECT_FALSE(ctx.get_clause(reason).removed());
    EXPECT_FALSE(ctx.get_clause(recorded).removed());
    EXPECT_TRUE(ctx.get_clause(other).removed());
    probe.delete_half();
    EXPECT_EQ(probe.learned_clauses().size(), 2u);
    ctx.get_clause(recorded).set_out_of_order(false);
    probe.backtrack(2);
    probe.delete_irrelevant();
    EXPECT_TRUE(probe.learned_clauses().empty());
    for (literal l : x) EXPECT_TRUE(probe.watches(~l).empty());
}

TEST_F(delete_test, a_clause_that_is_the_pending_conflict_stays) {
    g_debug_level = 1; // the mark is taken off by hand, so that the conflict alone protects the clause
    g_head_relevancy = g_tail_relevancy = 0;
    for (unsigned i = 0; i < 3; ++i) {
        probe.decide(~x[i]);
        ASSERT_TRUE(ctx.propagate_constraints());
    }
    clause_ref const ref = learned(0, 3);
    ASSERT_EQ(probe.conflict(), gexplanation::mk_clause(ref));
    ctx.get_clause(ref).set_out_of_order(false);
    probe.delete_irrelevant();
    EXPECT_FALSE(ctx.get_clause(ref).removed());
    EXPECT_TRUE(probe.resolve_conflict());
}

TEST_F(delete_test, clauses_of_outer_scopes_are_out_of_reach) {
    g_head_relevancy = g_tail_relevancy = 0;
    clause_ref const outer = learned(0, 5, 40);
    ctx.push();
    clause_ref const inner = learned(10, 5, 40);
    probe.delete_irrelevant();
    EXPECT_FALSE(ctx.get_clause(outer).removed());
    EXPECT_EQ(ctx.get_clause(outer).activity(), 40u); // its activity as well
    EXPECT_TRUE(ctx.get_clause(inner).removed());
    learned(10, 5, 40);
    learned(11, 5, 41);
    probe.delete_half();
    EXPECT_EQ(probe.learned_clauses().size(), 2u);
    EXPECT_EQ(ctx.get_clause(outer).activity(), 40u);
    ctx.pop(1);
    probe.delete_irrelevant();
    EXPECT_TRUE(probe.learned_clauses().empty());
    probe.delete_irrelevant(); // an empty range
    probe.delete_half();
}

TEST_F(delete_test, half_by_activity) {
    for (unsigned i = 0; i < 9; ++i) learned(i * 5, 5, (i * 7) % 9 * 4); // activities 0 to 32 in some order
    probe.delete_half();
    ASSERT_EQ(probe.learned_clauses().size(), 5u);
    for (unsigned i = 0; i < 5; ++i)
        EXPECT_EQ(ctx.get_clause(probe.learned_clauses()[i]).activity(), 4 + i); // 16 and more, a quarter
    ctx.check_invariant();
}

std::string figures(context const& ctx) {
    statistics const s = ctx.get_statistics();
    std::ostringstream out;
    out << s.m_num_conflicts << " " << s.m_num_decisions << " " << s.m_num_propagations << " "
        << s.m_num_restarts << " " << s.m_num_learned_literals << " " << s.m_num_problem_literals << " "
        << s.m_num_minimized_literals << " " << s.m_num_deleted_clauses << " " << s.m_num_simplified_clauses;
    return out.str();
}

// Moving the clauses together is invisible: the same search to the last propagation.
TEST(collection, keeps_the_course_of_the_search) {
    search_settings_guard const guard;
    g_clause_deletion_frequency = 150;
    g_restart_limit = 40;
    std::uint64_t num_collections = 0;
    for (unsigned which = 0; which < 4; ++which) {
        std::string got[2];
        for (unsigned forced = 0; forced < 2; ++forced) {
            context ctx;
            context_probe probe(ctx);
            if (which == 0) {
                add_pigeonhole(ctx, 7);
            } else {
                std::vector<literal> const x = fresh(ctx, 120);
                add_random_3sat(ctx, x, 505 + which, which);
                ctx.push();
                ctx.add_assumption(x[0]);
                ctx.add_assumption(x[1]);
            }
            unsigned num_calls = 0;
            if (forced != 0) {
                ctx.set_progress_callback(
                    [&](context&) {
                        if (++num_calls % 5 != 0) return;
                        // Holes, until the owner wants to collect.
                        literal const junk[4] = {literal(3), literal(4), literal(5), literal(6)};
                        while (!probe.clauses().wants_collection())
                            probe.clauses().free_clause(probe.clauses().create(junk, 4, false));
                        probe.collect_memory();
                    },
                    1);
            }
            int const answer = ctx.check();
            ctx.check_invariant();
            got[forced] = std::to_string(answer) + " " + figures(ctx);
            if (forced != 0) num_collections += ctx.get_statistics().m_num_collections;
        }
        EXPECT_EQ(got[0], got[1]);
    }
    EXPECT_GT(num_collections, 20u);
}

TEST(collection, through_many_pushes_and_pops) {
    context ctx;
    context_probe probe(ctx);
    std::vector<literal> const x = fresh(ctx, 60);
    add_random_3sat(ctx, x, 150, 3);
    for (unsigned i = 0; i < 60; ++i) {
        ctx.push();
        add_random_3sat(ctx, fresh(ctx, 20), 60, 100 + i);
        add_random_3sat(ctx, x, 100, i);
        EXPECT_NE(ctx.check(), 0);
        ctx.pop(1);
        EXPECT_EQ(ctx.check(), 1);
    }
    EXPECT_GT(ctx.get_statistics().m_num_collections, 0u);
    EXPECT_LT(probe.clauses().num_words(), 30000u); // the holes are given back
    ctx.check_invariant();
}

} // namespace
