// The course of the search: the context against a plain second implementation of the same procedure.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/naive_search.h"
#include "support/random.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace vexor;
using namespace vexor_test;

class course_test : public testing::Test {
protected:
    // One problem in both; the second question continues after a few more clauses.
    void compare(std::uint64_t seed, unsigned num_vars, unsigned num_clauses, bool mixed_lengths) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
        random_stream r(seed);
        naive_search::settings s;
        s.m_polarity = std::vector<int>{0, 1, 2, 4}[r.below(4)];
        s.m_restart_limit = std::vector<unsigned>{100, 10, 2, 0}[r.below(4)];
        s.m_deletion_frequency = std::vector<unsigned>{5000, 50, 7}[r.below(3)];
        s.m_simplify_always = r.chance(30);
        s.m_delete = r.chance(90);
        s.m_head_activity = r.chance(50) ? 500 : 3;
        s.m_head_relevancy = r.chance(50) ? 6 : 1;
        s.m_tail_relevancy = r.chance(50) ? 45 : 2;
        g_decision_polarity = s.m_polarity;
        g_restart_limit = s.m_restart_limit;
        g_clause_deletion_frequency = s.m_deletion_frequency;
        g_simplify_always = s.m_simplify_always;
        g_delete_irrelevant_learned_clauses = s.m_delete;
        g_head_activity = s.m_head_activity;
        g_head_relevancy = s.m_head_relevancy;
        g_tail_relevancy = s.m_tail_relevancy;

        context ctx;
        context_probe probe(ctx);
        naive_search naive(s);
        for (unsigned i = 0; i < num_vars; ++i) ASSERT_EQ(ctx.create_fresh_bool_var().var(), naive.new_var());
        std::vector<std::vector<int>> learned;
        ctx.set_progress_callback(
            [&](context&) {
                learned.emplace_back();
                for (literal l : probe.last_learned()) learned.back().push_back(l.index());
            },
            1);
        for (unsigned question = 0; question < 3; ++question) {
            for (unsigned i = 0; i < (question == 0 ? num_clauses : 3); ++i) {
                std::vector<int> c;
                svector<literal> d;
                unsigned const kind = mixed_lengths ? r.below(100) : 50;
                for (unsigned n = kind < 1    ? 1
                                  : kind < 12 ? 2
                                  : kind < 80 ? 3
                                  : kind < 95 ? 4
                                              : 8;
                     n > 0; --n) {
                    c.push_back(6 + static_cast<int>(r.below(2 * num_vars)));
                    d.push_back(literal::from_index(c.back()));
                }
                naive.add_clause(c);
                ctx.create_clause_core(d, clause_kind::problem);
            }
            int const answer = naive.check();
            ASSERT_EQ(ctx.check(), answer);
            statistics const t = ctx.get_statistics();
            ASSERT_EQ(t.m_num_decisions, naive.m_decisions.size());
            ASSERT_EQ(t.m_num_restarts, naive.m_num_restarts);
            ASSERT_EQ(t.m_num_deleted_clauses, naive.m_num_deleted);
            ASSERT_EQ(t.m_num_simplified_clauses, naive.m_num_simplified);
            ASSERT_EQ(t.m_num_analyzed_literals, naive.m_num_analyzed);
            ASSERT_EQ(t.m_num_propagations, naive.m_num_propagations);
            ASSERT_EQ(learned, naive.m_learned);
            m_num_conflicts += question == 0 ? t.m_num_conflicts : 0;
            m_num_deleted += question == 0 ? t.m_num_deleted_clauses : 0;
            m_num_restarts += question == 0 ? t.m_num_restarts : 0;
            if (answer < 0) return; // the same for good
            for (unsigned v = 3; v < ctx.num_bool_vars(); ++v)
                ASSERT_EQ(ctx.get_model().value(static_cast<int>(v)), naive.model_value(static_cast<int>(v)));
        }
    }

    search_settings_guard m_guard;
    std::uint64_t m_num_conflicts = 0;
    std::uint64_t m_num_deleted = 0;
    std::uint64_t m_num_restarts = 0;
};

TEST_F(course_test, small_problems) {
    for (std::uint64_t seed = first_seed(1), n = rounds(1500); n > 0; --n, ++seed) {
        random_stream r(seed ^ 99);
        unsigned const num_vars = 3 + r.below(30);
        compare(seed, num_vars, num_vars * (35 + r.below(15)) / 10, r.chance(50));
        if (HasFatalFailure()) return;
    }
}

TEST_F(course_test, problems_that_take_some_hundreds_of_conflicts) {
    for (std::uint64_t seed = first_seed(5000), n = rounds(25); n > 0; --n, ++seed) {
        random_stream r(seed ^ 99);
        unsigned const num_vars = 70 + r.below(40);
        compare(seed, num_vars, num_vars * (42 + r.below(6)) / 10, false);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(m_num_conflicts, 2000u);
    EXPECT_GT(m_num_deleted, 50u);
    EXPECT_GT(m_num_restarts, 50u);
}

// Long enough for the activities to be rescaled (after some 4,500 conflicts) and for the default schedules.
TEST_F(course_test, a_pigeonhole_problem) {
    naive_search::settings s;
    s.m_deletion_frequency = g_clause_deletion_frequency = 1000;
    g_decision_polarity = s.m_polarity;
    context ctx;
    naive_search naive(s);
    std::vector<literal> const x = add_pigeonhole(ctx, 8);
    for (unsigned i = 0; i < x.size(); ++i) naive.new_var();
    for (unsigned p = 0; p < 9; ++p) {
        std::vector<int> c;
        for (unsigned h = 0; h < 8; ++h) c.push_back(x[p * 8 + h].index());
        naive.add_clause(c);
    }
    for (unsigned h = 0; h < 8; ++h)
        for (unsigned p = 0; p < 9; ++p)
            for (unsigned q = 0; q < p; ++q)
                naive.add_clause({(~x[p * 8 + h]).index(), (~x[q * 8 + h]).index()});
    EXPECT_EQ(naive.check(), -1);
    EXPECT_EQ(ctx.check(), -1);
    statistics const t = ctx.get_statistics();
    EXPECT_GT(t.m_num_conflicts, 4600u);
    EXPECT_GT(t.m_num_deleted_clauses, 100u);
    EXPECT_EQ(t.m_num_conflicts, naive.m_num_conflicts);
    EXPECT_EQ(t.m_num_decisions, naive.m_decisions.size());
    EXPECT_EQ(t.m_num_propagations, naive.m_num_propagations);
    EXPECT_EQ(t.m_num_restarts, naive.m_num_restarts);
    EXPECT_EQ(t.m_num_deleted_clauses, naive.m_num_deleted);
    EXPECT_EQ(t.m_num_analyzed_literals, naive.m_num_analyzed);
}

} // namespace
