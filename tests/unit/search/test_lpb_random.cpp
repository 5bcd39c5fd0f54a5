// Pseudo-Boolean constraints among clauses, scopes and assumptions against trying all assignments.
#include <gtest/gtest.h>

#include <algorithm>

#include "base/debug.h"
#include "search/context.h"
#include "search/lpb_constraint.h"
#include "search/search_settings.h"
#include "support/setting_guard.h"
#include "support/weighted_context.h"

using namespace vexor;
using namespace vexor_test;

namespace {

// A context and, step by step, the plain problem that it should hold.
class lpb_session {
public:
    explicit lpb_session(random_stream& random)
        : m_random(random)
        , m_size(random.chance(20) ? std::int64_t{1} << random.between(30, 60) : random.between(1, 12)) {
        m_state.m_problem.num_vars = random.chance(20) ? random.between(1, 3) : random.between(6, 9);
        create_vars(m_context, m_state.m_problem.num_vars);
    }

    // Nothing more can happen.
    [[nodiscard]] bool is_dead() const { return m_context.inconsistent() && m_saved.empty(); }

    void step() {
        if (m_context.inconsistent() && m_random.chance(70)) {
            pop();
            return;
        }
        switch (m_random.below(12)) {
        case 0:
        case 1:
        case 2:
            add_random_clause();
            break;
        case 3:
        case 4:
            add_random_lpb();
            break;
        case 5:
            raise_bound();
            break;
        case 6:
            push();
            break;
        case 7:
            pop();
            break;
        case 8:
            assume();
            break;
        default:
            check();
        }
    }

    void check() {
        weighted_problem problem = m_state.m_problem;
        for (int lit : assumptions()) problem.clauses.push_back({lit});
        bool const expected = is_satisfiable(problem);
        ASSERT_EQ(expected ? 1 : -1, m_context.check()) << to_text(problem);
        if (expected) {
            ASSERT_FALSE(m_context.validation_failed());
            unsigned const a = assignment_of(m_context.get_model(), problem.num_vars);
            ASSERT_TRUE(satisfies(problem, a)) << to_text(problem);
        } else {
            check_core();
        }
        m_context.check_invariant();
    }

private:
    struct state {
        weighted_problem m_problem;
        std::vector<constraint*> m_lpbs; // of m_problem.lpbs; null if the context was dead
        std::vector<int> m_assumptions;
    };

    void add_random_clause() {
        plain_clause const clause =
            random_clause(m_random, m_state.m_problem.num_vars, 3 + m_random.below(2));
        m_state.m_problem.clauses.push_back(clause);
        add_clause(m_context, clause);
    }

    void add_random_lpb() {
        plain_lpb const c = random_lpb(m_random, m_state.m_problem.num_vars, m_size);
        m_state.m_problem.lpbs.push_back(c);
        int const denominator = m_random.chance(20) ? m_random.between(1, 9) : 1;
        m_denominator[m_state.m_lpbs.size() % 64] = denominator;
        m_state.m_lpbs.push_back(add_lpb(m_context, c, denominator));
    }

    void raise_bound() {
        if (m_state.m_lpbs.empty()) return;
        unsigned const i = m_random.below(static_cast<unsigned>(m_state.m_lpbs.size()));
        if (m_state.m_lpbs[i] == nullptr || m_context.inconsistent()) return;
        plain_lpb& c = m_state.m_problem.lpbs[i];
        c.bound += m_random.between(0, 3);
        set_lpb_coeff(&m_context, m_state.m_lpbs[i], numeral(c.bound) / m_denominator[i % 64]);
        m_context.propagate_constraints();
    }

    // On a context that turns out to be dead no scope is opened.
    void push() {
        unsigned const old_lvl = m_context.base_lvl();
        m_context.push();
        if (m_context.base_lvl() > old_lvl) m_saved.push_back(m_state);
    }

    void pop() {
        if (m_saved.empty()) return;
        m_state = m_saved.back();
        m_saved.pop_back();
        m_context.pop(1);
    }

    void assume() {
        int const var = m_random.between(1, m_state.m_problem.num_vars);
        int const lit = m_random.chance(50) ? var : -var;
        m_state.m_assumptions.push_back(lit);
        m_context.add_assumption(to_literal(lit));
    }

    // The last one of each variable.
    [[nodiscard]] std::vector<int> assumptions() const {
        std::vector<int> result;
        for (auto it = m_state.m_assumptions.rbegin(); it != m_state.m_assumptions.rend(); ++it) {
            auto same = [&](int lit) { return std::abs(lit) == std::abs(*it); };
            if (std::none_of(result.begin(), result.end(), same)) result.push_back(*it);
        }
        return result;
    }

    // The assumptions of the core alone refute the problem.
    void check_core() {
        weighted_problem problem = m_state.m_problem;
        for (int index : m_context.get_unsat_core()) {
            auto matches = [&](int lit) { return to_literal(lit).index() == index; };
            std::vector<int> const all = assumptions();
            auto const found = std::find_if(all.begin(), all.end(), matches);
            ASSERT_NE(all.end(), found);
            problem.clauses.push_back({*found});
        }
        ASSERT_FALSE(is_satisfiable(problem)) << to_text(problem);
    }

    random_stream& m_random;
    std::int64_t m_size; // of the coefficients
    int m_denominator[64] = {};
    context m_context;
    state m_state;
    std::vector<state> m_saved;
};

} // namespace

TEST(lpb_random, sessions_agree_with_trying_all_assignments) {
    setting_guard<int> const debug_level(g_debug_level, 3);
    setting_guard<unsigned> const restarts(g_restart_limit);
    setting_guard<int> const polarity(g_decision_polarity);
    std::uint64_t const first = first_seed(7100);
    for (unsigned round = 0; round < rounds(4000); ++round) {
        SCOPED_TRACE("seed " + std::to_string(first + round));
        random_stream random(first + round);
        g_restart_limit = random.chance(30) ? 1 : 100;
        g_decision_polarity = random.between(0, 5);
        lpb_session session(random);
        for (int i = 0; i < 60 && !session.is_dead() && !HasFatalFailure(); ++i) session.step();
        session.check();
        if (HasFatalFailure()) return;
    }
}

// Few clauses and many cardinalities over more variables: long analyses through constraint reasons.
TEST(lpb_random, hard_systems_agree_with_trying_all_assignments) {
    setting_guard<int> const debug_level(g_debug_level, 3);
    std::uint64_t const first = first_seed(7200);
    for (unsigned round = 0; round < rounds(2500); ++round) {
        SCOPED_TRACE("seed " + std::to_string(first + round));
        random_stream random(first + round);
        weighted_problem problem;
        problem.num_vars = random.between(8, 12);
        context ctx;
        create_vars(ctx, problem.num_vars);
        int const num_lpbs = random.between(3, 9);
        for (int i = 0; i < num_lpbs; ++i) {
            plain_lpb c;
            for (int k = 1; k <= problem.num_vars; ++k) {
                if (random.chance(40)) continue;
                c.coeffs.push_back(random.between(1, 3));
                c.lits.push_back(random.chance(50) ? k : -k);
                c.bound += c.coeffs.back();
            }
            c.bound = (c.bound * random.between(4, 7) + 9) / 10;
            problem.lpbs.push_back(c);
            add_lpb(ctx, c);
        }
        for (int i = random.between(0, 20); i > 0; --i) {
            problem.clauses.push_back(random_clause(random, problem.num_vars, 3));
            add_clause(ctx, problem.clauses.back());
        }
        bool const expected = is_satisfiable(problem);
        ASSERT_EQ(expected ? 1 : -1, ctx.check()) << to_text(problem);
        if (expected) {
            ASSERT_TRUE(satisfies(problem, assignment_of(ctx.get_model(), problem.num_vars)));
        }
    }
}
