// Random problems and random sequences of calls against brute force.
#include "support/search_session.h"
#include "support/search_settings_guard.h"

#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;

// A tenth of the sessions recompute every invariant at each fixpoint.
void set_debug_level(std::uint64_t seed) { g_debug_level = seed % 10 == 0 ? 3 : 1; }

// One problem around the phase transition, one question.
void one_shot(unsigned num_problems, std::uint64_t first, session_figures& figures, bool extras) {
    for (std::uint64_t seed = first_seed(first); num_problems > 0; --num_problems, ++seed) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
        set_debug_level(seed);
        session_weights weights;
        weights.m_hidden = extras ? 1 : 0;
        random_stream r(seed);
        unsigned const num_vars = 3 + r.below(12);
        search_session s(seed, weights, clause_theory::random_moods(r), num_vars + 1);
        while (s.get_context().num_bool_vars() < first_bool_var + num_vars) s.new_var();
        unsigned const num_clauses = num_vars * (30 + r.below(20)) / 10;
        if (extras) {
            s.add_random_constraint();
            if (r.chance(50)) s.add_random_constraint();
            s.add_random_hidden(num_clauses / 2);
            s.add_random_clauses(num_clauses / 2, 0);
        } else {
            s.add_random_clauses(num_clauses, r.chance(50) ? 3 : 0);
        }
        s.check();
        s.check();
        s.add_figures(figures);
        ASSERT_EQ(s.failure(), "");
    }
}

void sequences(unsigned num_sessions, std::uint64_t first, session_weights const& weights, unsigned num_acts,
               session_figures& figures) {
    for (std::uint64_t seed = first_seed(first); num_sessions > 0; --num_sessions, ++seed) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
        set_debug_level(seed);
        random_stream r(seed ^ 77);
        search_session s(seed, weights, clause_theory::random_moods(r), 5 + r.below(9));
        s.run(num_acts);
        s.add_figures(figures);
        ASSERT_EQ(s.failure(), "");
    }
}

session_weights everything() {
    session_weights w;
    w.m_constraint = 6;
    w.m_hidden = 12;
    w.m_stopped_check = 3;
    w.m_reset = 1;
    return w;
}

TEST(random_cnf, clauses_alone) {
    search_settings_guard const guard;
    session_figures f;
    one_shot(rounds(8000), 1000, f, false);
    show("clauses_alone", f);
    EXPECT_GT(f.m_num_sat, 1000u);
    EXPECT_GT(f.m_num_unsat, 1000u);
}

TEST(random_cnf, with_constraints_and_theory) {
    search_settings_guard const guard;
    session_figures f;
    one_shot(rounds(8000), 200000, f, true);
    show("with_constraints_and_theory", f);
    EXPECT_GT(f.m_num_sat, 500u);
    EXPECT_GT(f.m_num_unsat, 500u);
    EXPECT_GT(f.m_num_lazy, 1000u);
    EXPECT_GT(f.m_num_lemmas, 1000u);
}

TEST(random_cnf, incremental_clauses) {
    search_settings_guard const guard;
    session_figures f;
    sequences(rounds(5000), 300000, session_weights(), 60, f);
    show("incremental_clauses", f);
    EXPECT_GT(f.m_num_cores, 100u);
}

TEST(random_cnf, incremental_everything) {
    search_settings_guard const guard;
    session_figures f;
    sequences(rounds(5000), 400000, everything(), 60, f);
    show("incremental_everything", f);
    EXPECT_GT(f.m_num_cores, 100u);
    EXPECT_GT(f.m_num_stopped, 50u);
    EXPECT_GT(f.m_num_thrown, 50u);
    EXPECT_GT(f.m_num_reinits, 100u);
}

// Settings under which the rare paths are common.
TEST(random_cnf, rare_paths) {
    search_settings_guard const guard;
    session_figures f;
    std::uint64_t first = 600000;
    for (int polarity = 0; polarity <= alternating_polarity; ++polarity) {
        for (unsigned variant = 0; variant < 4; ++variant) {
            SCOPED_TRACE("polarity " + std::to_string(polarity) + " variant " + std::to_string(variant));
            g_decision_polarity = polarity;
            g_restart_limit = variant % 2 == 0 ? 2 : 1;
            g_clause_deletion_frequency = variant < 2 ? 20 : 3;
            g_simplify_always = true;
            g_head_activity = variant < 2 ? 500 : 2;
            g_head_relevancy = g_tail_relevancy = variant < 2 ? 6 : 1;
            one_shot(rounds(60), first, f, true);
            one_shot(rounds(60), first + 10000, f, false);
            sequences(rounds(60), first + 20000, everything(), 60, f);
            if (testing::Test::HasFatalFailure()) return;
            first += 100000;
        }
    }
    show("rare_paths", f);
    EXPECT_GT(f.m_num_restarts, 100u);
    EXPECT_GT(f.m_num_deleted, 10u);
}

} // namespace
