// Weighted search: edge cases.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "base/diagnostics.h"
#include "search/context.h"
#include "search/search_settings.h"
#include "support/setting_guard.h"
#include "support/weighted_context.h"

using namespace vexor;
using namespace vexor_test;

namespace {

class max_sat_test : public ::testing::Test {
protected:
    literal soft(plain_clause clause, std::int64_t weight) {
        return add_soft(ctx, plain_soft{std::move(clause), weight});
    }
    numeral const& cost() { return ctx.get_model().cost(); }
    std::vector<int> paid() {
        svector<int> ids;
        ctx.get_inconsistent_assertions(ids);
        return std::vector<int>(ids.begin(), ids.end());
    }
    // The clauses of a pigeon hole problem over fresh variables, or relax: unsatisfiable without relax, but
    // not by propagation.
    void add_pigeons(int holes, literal relax = false_literal) {
        std::vector<std::vector<literal>> in(static_cast<std::size_t>(holes) + 1);
        for (auto& row : in)
            for (int h = 0; h < holes; ++h) row.push_back(ctx.create_fresh_bool_var());
        for (auto const& row : in) {
            svector<literal> lits;
            for (literal l : row) lits.push_back(l);
            lits.push_back(relax);
            ctx.create_clause_core(lits, clause_kind::problem);
        }
        for (std::size_t i = 0; i < in.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
                for (std::size_t h = 0; h < in[i].size(); ++h)
                    ctx.create_auxiliary_clause(~in[i][h], ~in[j][h]);
    }

    context ctx;
};

} // namespace

TEST_F(max_sat_test, without_weights_it_is_a_check_of_cost_zero) {
    create_vars(ctx, 2);
    add_clause(ctx, {1, 2});
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(0), cost());
    EXPECT_EQ(1, ctx.find_weighted_model(false));
    EXPECT_EQ(numeral(0), cost());
    add_clause(ctx, {-1});
    add_clause(ctx, {-2});
    EXPECT_EQ(-1, ctx.max_sat());
    EXPECT_EQ(-1, ctx.find_weighted_model(true));
}

TEST_F(max_sat_test, equal_weights_give_multiples_of_the_weight) {
    create_vars(ctx, 3);
    add_clause(ctx, {-1, -2});
    add_clause(ctx, {-1, -3});
    add_clause(ctx, {-2, -3});
    std::vector<int> ids;
    for (int k = 1; k <= 3; ++k) ids.push_back((~soft({k}, 7)).index());
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(14), cost());
    EXPECT_EQ(2u, paid().size());
    for (int id : paid()) EXPECT_NE(ids.end(), std::find(ids.begin(), ids.end(), id));
    EXPECT_EQ(0u, ctx.base_lvl());
    EXPECT_EQ(0u, ctx.scope_lvl());
}

TEST_F(max_sat_test, a_free_model_is_found_at_once) {
    create_vars(ctx, 2);
    soft({1, 2}, 3);
    soft({1}, 4);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(0), cost());
    EXPECT_EQ(1u, ctx.get_statistics().m_num_maxsat_iterations);
    EXPECT_TRUE(paid().empty());
}

TEST_F(max_sat_test, an_unsatisfiable_hard_part_is_told_by_propagation) {
    create_vars(ctx, 1);
    soft({1}, 3);
    add_clause(ctx, {1});
    add_clause(ctx, {-1});
    EXPECT_EQ(-1, ctx.max_sat());
    EXPECT_EQ(-1, ctx.find_weighted_model(true));
}

// The first phase must end at the sum of all weights.
TEST_F(max_sat_test, an_unsatisfiable_hard_part_is_told_by_search) {
    create_vars(ctx, 3);
    for (int k = 1; k <= 3; ++k) soft({k}, 1000000000000 * k);
    ctx.push();
    add_pigeons(5);
    EXPECT_EQ(-1, ctx.max_sat());
    EXPECT_FALSE(ctx.get_model().is_valid());
    EXPECT_EQ(1u, ctx.base_lvl());
    EXPECT_EQ(1u, ctx.scope_lvl());
    EXPECT_FALSE(ctx.inconsistent());
    ctx.pop(1);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(0), cost());
}

TEST_F(max_sat_test, a_dead_or_ill_typed_context_is_not_searched) {
    create_vars(ctx, 1);
    soft({1}, 3);
    ctx.push();
    ctx.set_type_error("no");
    EXPECT_EQ(0, ctx.max_sat());
    EXPECT_EQ(0, ctx.find_weighted_model(false));
    ctx.pop(1);
    ctx.push();
    svector<literal> none;
    ctx.create_clause_core(none, clause_kind::problem);
    EXPECT_EQ(-1, ctx.max_sat());
    EXPECT_EQ(-1, ctx.find_weighted_model(false));
    ctx.pop(1);
    EXPECT_EQ(1, ctx.max_sat());
}

TEST_F(max_sat_test, an_incomplete_context_answers_unknown) {
    create_vars(ctx, 1);
    soft({1}, 3);
    add_clause(ctx, {-1});
    ctx.set_incompleteness();
    EXPECT_EQ(0, ctx.max_sat());
    EXPECT_EQ(numeral(3), cost());
    EXPECT_EQ(0, ctx.find_weighted_model(false));
}

TEST_F(max_sat_test, an_initial_cost_is_the_first_limit) {
    setting_guard<bool> const use(g_use_initial_maxsat_cost, true);
    setting_guard<numeral> const initial(g_initial_maxsat_cost);
    set_verbosity_level(20);
    create_vars(ctx, 3);
    for (int k = 1; k <= 3; ++k) {
        soft({k}, 6);
        add_clause(ctx, {-k});
    }
    for (int given : {-5, 0, 4, 9, 18, 100}) {
        g_initial_maxsat_cost = given;
        testing::internal::CaptureStderr();
        EXPECT_EQ(1, ctx.max_sat());
        std::string const text = testing::internal::GetCapturedStderr();
        int const first = std::clamp(given, 0, 18);
        EXPECT_NE(std::string::npos, text.find("\ntrying(" + std::to_string(first) + ") ")) << text;
        EXPECT_NE(std::string::npos, text.find("cost(18)")) << text;
        EXPECT_EQ(numeral(18), cost());
    }
    set_verbosity_level(0);
}

TEST_F(max_sat_test, a_retracted_assertion_costs_nothing) {
    create_vars(ctx, 2);
    add_clause(ctx, {-1});
    literal const a = soft({1}, 5);
    literal const b = soft({1, 2}, 3);
    add_clause(ctx, {-2});
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(8), cost());
    ctx.add_assumption(a);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(3), cost());
    EXPECT_EQ(std::vector<int>{(~b).index()}, paid());
    EXPECT_EQ(1, ctx.find_weighted_model(true));
    EXPECT_EQ(numeral(3), cost());
    ctx.add_assumption(b);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(0), cost());
    EXPECT_TRUE(paid().empty());
    EXPECT_EQ(1, ctx.check());
}

TEST_F(max_sat_test, a_check_switches_nothing_off) {
    create_vars(ctx, 2);
    soft({1}, 5);
    literal const b = soft({-1}, 3);
    EXPECT_EQ(-1, ctx.check());
    EXPECT_EQ(2u, ctx.get_unsat_core().size());
    ctx.add_assumption(b);
    EXPECT_EQ(1, ctx.check());
    EXPECT_EQ(1, ctx.get_model().value(3));
}

TEST_F(max_sat_test, a_pop_takes_weights_away) {
    create_vars(ctx, 1);
    add_clause(ctx, {-1});
    soft({1}, 5);
    ctx.push();
    soft({1}, 3);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(8), cost());
    ctx.pop(1);
    EXPECT_EQ(1u, ctx.get_weighted_vars().size());
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(5), cost());
    ctx.reset();
    EXPECT_TRUE(ctx.get_weighted_vars().empty());
}

TEST_F(max_sat_test, weights_of_zero_are_free) {
    create_vars(ctx, 2);
    add_clause(ctx, {-1});
    soft({1}, 0);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(0), cost());
    soft({1}, 4);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(4), cost());
}

TEST_F(max_sat_test, a_negative_weight_is_a_gain) {
    create_vars(ctx, 2);
    ctx.attach_weight(to_literal(1).var(), -5);
    ctx.attach_weight(to_literal(2).var(), 3);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(-5), cost());
    add_clause(ctx, {-1, 2});
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(-2), cost());
    add_clause(ctx, {-1});
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(0), cost());
}

TEST_F(max_sat_test, two_weights_of_a_variable_add_up) {
    create_vars(ctx, 1);
    ctx.attach_weight(3, 5);
    ctx.attach_weight(3, 4);
    add_clause(ctx, {1});
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(9), cost());
}

TEST_F(max_sat_test, fractions_of_weights_are_exact) {
    create_vars(ctx, 2);
    add_clause(ctx, {-1, -2});
    ctx.attach_weight(ctx.create_fresh_bool_var().var(), 1);
    add_soft(ctx, plain_soft{{1}, 1}, 3);
    add_soft(ctx, plain_soft{{2}, 2}, 5);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(1) / 3, cost());
}

TEST_F(max_sat_test, weights_beyond_words_are_exact) {
    create_vars(ctx, 3);
    add_clause(ctx, {-1, -2, -3});
    numeral const huge = numeral(2).expt(200);
    for (int k = 1; k <= 3; ++k) {
        literal const guard = ctx.create_fresh_weighted_bool_var(huge + k);
        add_clause(ctx, {k}, guard);
    }
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(huge + 1, cost());
}

TEST_F(max_sat_test, the_cost_is_known_even_if_no_model_is_built) {
    setting_guard<bool> const build(g_build_model, false);
    create_vars(ctx, 2);
    add_clause(ctx, {-1, -2});
    soft({1}, 3);
    soft({2}, 5);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(3), cost());
    EXPECT_FALSE(ctx.get_model().is_valid());
}

TEST_F(max_sat_test, every_improvement_is_reported) {
    setting_guard<bool> const use(g_use_initial_maxsat_cost, true);
    setting_guard<numeral> const initial(g_initial_maxsat_cost, 100);
    setting_guard<int> const polarity(g_decision_polarity, 1);
    create_vars(ctx, 6);
    for (int k = 1; k < 6; ++k) add_clause(ctx, {k, k + 1});
    for (int k = 1; k <= 6; ++k) soft({-k}, k);
    std::vector<numeral> costs;
    ctx.set_improvement_callback([&](context& c) { costs.push_back(c.get_model().cost()); });
    EXPECT_EQ(1, ctx.max_sat());
    ASSERT_FALSE(costs.empty());
    for (std::size_t i = 1; i < costs.size(); ++i) EXPECT_LT(costs[i], costs[i - 1]);
    EXPECT_EQ(costs.back(), cost());
    EXPECT_EQ(numeral(9), cost());
}

// To do without the relaxing variable takes a long refutation.
TEST_F(max_sat_test, limits_end_the_search_with_the_best_model) {
    setting_guard<unsigned> const cores(g_max_num_conflicts_with_maxsat_cores, 0);
    setting_guard<unsigned> const runs(g_max_num_runs_in_maxsat_iteration, 1);
    setting_guard<unsigned> const conflicts(g_max_num_conflicts_in_maxsat_iteration, 1);
    setting_guard<int> const polarity(g_decision_polarity, 1);
    literal const relax = ctx.create_fresh_weighted_bool_var(1);
    ctx.create_fresh_weighted_bool_var(1);
    add_pigeons(8, relax);
    EXPECT_EQ(0, ctx.max_sat());
    EXPECT_TRUE(ctx.get_model().is_valid());
    EXPECT_EQ(numeral(1), cost());
    EXPECT_EQ(std::vector<int>{(~relax).index()}, paid());
    EXPECT_EQ(0u, ctx.scope_lvl());
}

TEST_F(max_sat_test, improving_rounds_are_limited) {
    setting_guard<unsigned> const limit(g_max_num_iterations_in_maxsat, 0);
    setting_guard<bool> const use(g_use_initial_maxsat_cost, true);
    setting_guard<numeral> const initial(g_initial_maxsat_cost, 100);
    setting_guard<int> const polarity(g_decision_polarity, 1);
    create_vars(ctx, 8);
    add_clause(ctx, {1, 2, 3, 4, 5, 6, 7, 8});
    // Without a preference the decisions pay for everything.
    for (int k = 1; k <= 8; ++k) ctx.attach_weight(to_literal(k).var(), 1);
    int const answer = ctx.max_sat();
    EXPECT_TRUE(answer == 0 || cost() == numeral(1));
    EXPECT_TRUE(ctx.get_model().is_valid());
    EXPECT_EQ(0u, ctx.scope_lvl());
}

TEST_F(max_sat_test, a_stop_keeps_the_best_model) {
    create_vars(ctx, 4);
    setting_guard<bool> const use(g_use_initial_maxsat_cost, true);
    setting_guard<numeral> const initial(g_initial_maxsat_cost, 100);
    add_clause(ctx, {1, 2});
    for (int k = 1; k <= 4; ++k) soft({-k}, 1);
    ctx.push();
    // The callback runs between two searches of the same question.
    ctx.set_improvement_callback([](context& c) { c.stop_the_search(); });
    EXPECT_EQ(0, ctx.max_sat());
    EXPECT_TRUE(ctx.get_model().is_valid());
    EXPECT_EQ(1u, ctx.scope_lvl());
    ctx.set_improvement_callback(nullptr);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(1), cost());
}

TEST_F(max_sat_test, a_stop_among_the_cores_keeps_the_best_model) {
    // The heavy softs are assumed first and leave a model that pays for light ones without need.
    setting_guard<int> const polarity(g_decision_polarity, 1);
    create_vars(ctx, 6);
    for (int k = 1; k <= 3; ++k) ctx.attach_weight(to_literal(k).var(), 100);
    for (int k = 4; k <= 6; ++k) ctx.attach_weight(to_literal(k).var(), 1);
    add_clause(ctx, {1, 2});
    add_clause(ctx, {4, 5});
    std::vector<numeral> costs;
    ctx.set_improvement_callback([&](context& c) {
        costs.push_back(c.get_model().cost());
        c.stop_the_search();
    });
    EXPECT_EQ(0, ctx.max_sat());
    ASSERT_EQ(1u, costs.size());
    EXPECT_TRUE(ctx.get_model().is_valid());
    EXPECT_EQ(costs[0], cost());
    EXPECT_GT(cost(), numeral(101));
    ctx.set_improvement_callback(nullptr);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(101), cost());
}

// Where nothing may be spent on cores, the phases with a limit on the cost do all; with a few conflicts, they
// take over with the bound and the model found so far.
TEST_F(max_sat_test, all_limits_on_cores_give_one_cost) {
    for (unsigned limit : {0u, 1u, 3u, 10u, 30u, 100u, 1000u}) {
        setting_guard<unsigned> const cores(g_max_num_conflicts_with_maxsat_cores, limit);
        context other;
        create_vars(other, 12);
        // A vertex cover of a complete graph of twelve vertices takes eleven of them.
        for (int i = 1; i <= 12; ++i) {
            other.attach_weight(to_literal(i).var(), i);
            for (int j = 1; j < i; ++j) add_clause(other, {i, j});
        }
        EXPECT_EQ(1, other.max_sat());
        EXPECT_EQ(numeral(66), other.get_model().cost());
        EXPECT_EQ(0u, other.scope_lvl());
        other.check_invariant();
    }
}

TEST_F(max_sat_test, a_stop_in_the_first_phase_leaves_the_callers_scope) {
    setting_guard<unsigned> const frequency(g_clause_deletion_frequency, 1);
    ctx.push();
    create_vars(ctx, 1);
    soft({1}, 1);
    add_pigeons(6);
    ctx.set_search_callback([](context*) { return false; });
    EXPECT_EQ(0, ctx.max_sat());
    EXPECT_FALSE(ctx.get_model().is_valid());
    EXPECT_EQ(1u, ctx.base_lvl());
    ctx.remove_search_callback();
    EXPECT_EQ(-1, ctx.max_sat());
    EXPECT_EQ(1u, ctx.base_lvl());
    ctx.pop(1);
    EXPECT_EQ(0u, ctx.base_lvl());
}

// A stop of an earlier question, or one while nothing runs, does not end the next one.
TEST_F(max_sat_test, an_old_stop_is_forgotten) {
    setting_guard<unsigned> const cores(g_max_num_conflicts_with_maxsat_cores, 0);
    create_vars(ctx, 1);
    soft({1}, 1);
    ctx.stop_the_search();
    EXPECT_EQ(1, ctx.max_sat());
    ctx.set_improvement_callback([](context& c) { c.stop_the_search(); });
    add_clause(ctx, {-1});
    EXPECT_EQ(0, ctx.max_sat());
    EXPECT_EQ(1, ctx.find_weighted_model(false));
    EXPECT_EQ(-1, ctx.check());
}

TEST_F(max_sat_test, an_unsatisfiable_hard_part_names_its_assumptions) {
    create_vars(ctx, 4);
    soft({1}, 10);
    add_clause(ctx, {-2, -3});
    for (int lit : {2, 4, 3}) ctx.add_assumption(to_literal(lit));
    EXPECT_EQ(-1, ctx.max_sat());
    std::vector<int> core(ctx.get_unsat_core().begin(), ctx.get_unsat_core().end());
    std::sort(core.begin(), core.end());
    EXPECT_EQ((std::vector<int>{to_literal(2).index(), to_literal(3).index()}), core);
    ctx.add_assumption(to_literal(-3));
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_TRUE(ctx.get_unsat_core().empty());
    // An assumption that contradicts a fact fails at once.
    add_clause(ctx, {-4});
    EXPECT_EQ(-1, ctx.max_sat());
    ASSERT_EQ(1u, ctx.get_unsat_core().size());
    EXPECT_EQ(to_literal(4).index(), ctx.get_unsat_core()[0]);
}

TEST_F(max_sat_test, weighted_search_pays_for_guards_last) {
    create_vars(ctx, 5);
    for (int k = 1; k <= 5; ++k) soft({k, 1 + k % 5}, 1);
    EXPECT_EQ(1, ctx.find_weighted_model(false));
    EXPECT_EQ(numeral(0), cost());
    EXPECT_EQ(1, ctx.find_weighted_model(true));
    EXPECT_TRUE(cost().is_nonneg());
    for (int lit = 1; lit <= 5; ++lit) EXPECT_NE(0, ctx.get_model().value(to_literal(lit).var()));
}

namespace {

// Creates a variable in the first final check, as theories do.
class late_hub final : public theory_hub {
public:
    explicit late_hub(context& ctx)
        : m_context(ctx) {}
    bool final_check() override {
        if (m_late != null_literal) return m_context.value(m_late) != 0;
        m_late = m_context.create_fresh_bool_var();
        return false;
    }
    [[nodiscard]] literal late() const { return m_late; }

private:
    context& m_context;
    literal m_late = null_literal;
};

} // namespace

// A variable made during the search is in neither list; the search must not end with it open.
TEST(find_weighted_model, variables_made_during_the_search_are_decided) {
    context ctx;
    auto hub = std::make_unique<late_hub>(ctx);
    late_hub& late = *hub;
    ctx.set_theory_hub(std::move(hub));
    create_vars(ctx, 3);
    ctx.attach_weight(to_literal(1).var(), 2);
    EXPECT_EQ(1, ctx.find_weighted_model(true));
    ASSERT_NE(null_literal, late.late());
    EXPECT_NE(0, ctx.get_model().value(late.late().var()));
    EXPECT_EQ(-1, ctx.get_model().value(to_literal(1).var()));
}
