// Max-SAT and weighted search against trying all assignments.
#include <gtest/gtest.h>

#include <algorithm>

#include "base/debug.h"
#include "search/context.h"
#include "search/search_settings.h"
#include "support/setting_guard.h"
#include "support/weighted_context.h"

using namespace vexor;
using namespace vexor_test;

namespace {

std::int64_t random_weight(random_stream& random, int kind) {
    switch (kind) {
    case 0:
        return 7;
    case 1:
        return random.between(1, 5);
    case 2:
        return static_cast<std::int64_t>(random.next() >> 10);
    default:
        return random.chance(50) ? 1 : random.between(1000, 2000000000);
    }
}

// None, so few that the other phases go on from any point, or enough.
unsigned random_cores_limit(random_stream& random) {
    return random.chance(30) ? 0 : random.chance(50) ? 1 + random.below(10) : 50000;
}

// A session with one context: problems grow, shrink by pop, lose assertions by retraction, and are asked for
// their optimum again and again.
class max_sat_session {
public:
    explicit max_sat_session(random_stream& random)
        : m_random(random)
        , m_weights(random.between(0, 3))
        , m_denominator(random.chance(25) ? random.between(2, 12) : 1) {
        problem().num_vars = random.chance(15) ? random.between(1, 4) : random.between(5, 9);
        create_vars(m_context, problem().num_vars);
        for (int i = random.between(0, 2 * problem().num_vars); i > 0; --i) add_hard();
        for (int i = random.between(0, 10); i > 0; --i) add_soft_clause();
        if (random.chance(25)) add_hard_lpb();
    }

    [[nodiscard]] bool is_dead() const { return m_context.inconsistent() && m_saved.empty(); }

    void step() {
        if (m_context.inconsistent() && m_random.chance(70)) {
            pop();
            return;
        }
        switch (m_random.below(10)) {
        case 0:
            add_hard();
            break;
        case 1:
            add_soft_clause();
            break;
        case 2:
            retract();
            break;
        case 3:
            push();
            break;
        case 4:
            pop();
            break;
        case 5:
        case 6:
            find_model();
            break;
        default:
            optimize();
        }
    }

    void optimize() {
        weighted_problem const active = active_problem();
        optimum const expected = best_cost(active);
        ASSERT_EQ(expected.exists ? 1 : -1, m_context.max_sat()) << to_text(active);
        check_state();
        if (!expected.exists) return;
        ASSERT_EQ(to_cost(expected.cost), m_context.get_model().cost()) << to_text(active);
        check_model(active, true);
    }

    void find_model() {
        weighted_problem const active = active_problem();
        bool const random = m_random.chance(50);
        bool const expected = is_satisfiable(active);
        ASSERT_EQ(expected ? 1 : -1, m_context.find_weighted_model(random)) << to_text(active);
        check_state();
        if (expected) check_model(active, false);
    }

private:
    struct state {
        weighted_problem m_problem;
        std::vector<literal> m_guards; // of the soft clauses
        std::vector<bool> m_retracted; // likewise
    };

    weighted_problem& problem() { return m_state.m_problem; }
    [[nodiscard]] numeral to_cost(std::int64_t cost) const { return numeral(cost) / m_denominator; }

    // Without what was retracted.
    [[nodiscard]] weighted_problem active_problem() const {
        weighted_problem result = m_state.m_problem;
        result.softs.clear();
        for (std::size_t i = 0; i < m_state.m_guards.size(); ++i)
            if (!m_state.m_retracted[i]) result.softs.push_back(m_state.m_problem.softs[i]);
        return result;
    }

    void check_state() {
        ASSERT_EQ(m_saved.size(), m_context.base_lvl());
        ASSERT_EQ(m_saved.size(), m_context.scope_lvl());
        m_context.check_invariant();
    }

    // The model satisfies the hard part; the guards that are paid for are those of the violated clauses, and
    // their weights are the cost. A guard may be paid without need only if the model is not optimal.
    void check_model(weighted_problem const& active, bool optimal) {
        unsigned const a = assignment_of(m_context.get_model(), active.num_vars);
        ASSERT_TRUE(satisfies(active, a)) << to_text(active);
        svector<int> ids;
        m_context.get_inconsistent_assertions(ids);
        std::int64_t sum = 0;
        for (std::size_t i = 0; i < m_state.m_guards.size(); ++i) {
            bool const reported = std::count(ids.begin(), ids.end(), (~m_state.m_guards[i]).index()) == 1;
            if (m_state.m_retracted[i]) {
                ASSERT_FALSE(reported);
                continue;
            }
            plain_soft const& soft = m_state.m_problem.softs[i];
            if (reported) sum += soft.weight;
            if (!satisfies(soft.clause, a)) {
                ASSERT_TRUE(reported);
            }
            if (optimal && satisfies(soft.clause, a)) {
                ASSERT_FALSE(reported);
            }
        }
        ASSERT_EQ(to_cost(sum), m_context.get_model().cost());
    }

    void add_hard() {
        problem().clauses.push_back(random_clause(m_random, problem().num_vars, 3 + m_random.below(2)));
        add_clause(m_context, problem().clauses.back());
    }

    void add_hard_lpb() {
        problem().lpbs.push_back(random_lpb(m_random, problem().num_vars, 4));
        add_lpb(m_context, problem().lpbs.back());
    }

    void add_soft_clause() {
        plain_soft const soft{random_clause(m_random, problem().num_vars, 1 + m_random.below(3)),
                              random_weight(m_random, m_weights)};
        problem().softs.push_back(soft);
        m_state.m_guards.push_back(add_soft(m_context, soft, m_denominator));
        m_state.m_retracted.push_back(false);
    }

    void retract() {
        if (m_state.m_guards.empty()) return;
        unsigned const i = m_random.below(static_cast<unsigned>(m_state.m_guards.size()));
        m_state.m_retracted[i] = true;
        m_context.add_assumption(m_state.m_guards[i]);
    }

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

    random_stream& m_random;
    int m_weights;     // how weights are drawn
    int m_denominator; // of all weights
    context m_context;
    state m_state;
    std::vector<state> m_saved;
};

} // namespace

TEST(max_sat_random, sessions_agree_with_trying_all_assignments) {
    setting_guard<int> const debug_level(g_debug_level, 3);
    setting_guard<int> const polarity(g_decision_polarity);
    setting_guard<bool> const use(g_use_initial_maxsat_cost);
    setting_guard<unsigned> const cores(g_max_num_conflicts_with_maxsat_cores);
    setting_guard<numeral> const initial(g_initial_maxsat_cost);
    std::uint64_t const first = first_seed(7300);
    for (unsigned round = 0; round < rounds(1500); ++round) {
        SCOPED_TRACE("seed " + std::to_string(first + round));
        random_stream random(first + round);
        g_decision_polarity = random.between(0, 5);
        g_use_initial_maxsat_cost = random.chance(20);
        g_max_num_conflicts_with_maxsat_cores = random_cores_limit(random);
        g_initial_maxsat_cost = numeral(random.between(-3, 40)) / random.between(1, 3);
        max_sat_session session(random);
        for (int i = 0; i < 12 && !session.is_dead() && !HasFatalFailure(); ++i) session.step();
        session.optimize();
        if (HasFatalFailure()) return;
    }
}

// Weights right on variables, of either sign, several on one variable.
TEST(max_sat_random, weights_of_both_signs_agree_with_trying_all_assignments) {
    setting_guard<int> const debug_level(g_debug_level, 3);
    setting_guard<unsigned> const cores(g_max_num_conflicts_with_maxsat_cores);
    std::uint64_t const first = first_seed(7400);
    for (unsigned round = 0; round < rounds(3000); ++round) {
        SCOPED_TRACE("seed " + std::to_string(first + round));
        random_stream random(first + round);
        weighted_problem problem;
        problem.num_vars = random.between(2, 8);
        context ctx;
        create_vars(ctx, problem.num_vars);
        for (int i = random.between(0, 2 * problem.num_vars); i > 0; --i) {
            problem.clauses.push_back(random_clause(random, problem.num_vars, 3));
            add_clause(ctx, problem.clauses.back());
        }
        int const least = random.chance(50) ? 1 : -6;
        for (int i = random.between(0, 10); i > 0; --i) {
            // A true variable violates the unit clause of its complement.
            int const var = random.between(1, problem.num_vars);
            std::int64_t const weight = random.between(least, 12);
            problem.softs.push_back(plain_soft{{-var}, weight});
            ctx.attach_weight(to_literal(var).var(), weight);
        }
        g_max_num_conflicts_with_maxsat_cores = random_cores_limit(random);
        optimum const expected = best_cost(problem);
        ASSERT_EQ(expected.exists ? 1 : -1, ctx.max_sat()) << to_text(problem);
        if (!expected.exists) continue;
        ASSERT_EQ(numeral(expected.cost), ctx.get_model().cost()) << to_text(problem);
        ASSERT_EQ(expected.cost, cost_of(problem, assignment_of(ctx.get_model(), problem.num_vars)));
    }
}

// Many softs of equal weight over a few more variables: sums of sums.
TEST(max_sat_random, deep_cores_agree_with_trying_all_assignments) {
    setting_guard<int> const debug_level(g_debug_level, 3);
    setting_guard<unsigned> const cores(g_max_num_conflicts_with_maxsat_cores);
    std::uint64_t const first = first_seed(7500);
    for (unsigned round = 0; round < rounds(400); ++round) {
        SCOPED_TRACE("seed " + std::to_string(first + round));
        random_stream random(first + round);
        g_max_num_conflicts_with_maxsat_cores = random.chance(80) ? 50000 : random.below(40);
        weighted_problem problem;
        problem.num_vars = random.between(8, 11);
        context ctx;
        create_vars(ctx, problem.num_vars);
        int const heaviest = random.chance(50) ? 1 : random.between(2, 9);
        std::vector<literal> guards;
        for (int i = random.between(30, 70); i > 0; --i) {
            plain_soft const soft{random_clause(random, problem.num_vars, 2), random.between(1, heaviest)};
            problem.softs.push_back(soft);
            guards.push_back(add_soft(ctx, soft));
        }
        // Assumptions of the user may be about anything, guards included.
        for (int i = random.chance(50) ? random.between(1, 3) : 0; i > 0; --i) {
            std::size_t const k = random.below(static_cast<unsigned>(guards.size()));
            ctx.add_assumption(~guards[k]);
            problem.clauses.push_back(problem.softs[k].clause);
        }
        optimum const expected = best_cost(problem);
        ASSERT_EQ(expected.exists ? 1 : -1, ctx.max_sat()) << to_text(problem);
        if (!expected.exists) {
            for (int index : ctx.get_unsat_core())
                ASSERT_NE(guards.end(), std::find(guards.begin(), guards.end(), ~literal::from_index(index)));
            continue;
        }
        ASSERT_EQ(numeral(expected.cost), ctx.get_model().cost()) << to_text(problem);
        unsigned const a = assignment_of(ctx.get_model(), problem.num_vars);
        ASSERT_TRUE(satisfies(problem, a));
        ASSERT_EQ(expected.cost, cost_of(problem, a));
        ctx.check_invariant();
    }
}
