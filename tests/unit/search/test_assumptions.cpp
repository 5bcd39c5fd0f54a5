// Assumptions of a check and cores.
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

class assumptions_test : public testing::Test {
protected:
    assumptions_test() {
        g_debug_level = 3;
        x = fresh(ctx, 12);
    }
    void expect_core(std::initializer_list<literal> wanted) {
        std::set<int> got(ctx.get_unsat_core().begin(), ctx.get_unsat_core().end());
        std::set<int> expected;
        for (literal l : wanted) expected.insert(l.index());
        EXPECT_EQ(got, expected);
        EXPECT_EQ(ctx.get_unsat_core().size(), wanted.size());
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

TEST_F(assumptions_test, without_assumptions_no_scope_is_opened) {
    struct counting_hub : theory_hub {
        unsigned m_num_pushes = 0;
        void push() noexcept override { ++m_num_pushes; }
    };
    context k;
    auto* hub = new counting_hub;
    k.set_theory_hub(std::unique_ptr<theory_hub>(hub));
    EXPECT_EQ(k.check(), 1);
    EXPECT_EQ(hub->m_num_pushes, 0u);
    literal const l = k.create_fresh_bool_var();
    k.assert_literal(l);
    k.add_assumption(l);
    EXPECT_EQ(k.check(), 1);
    EXPECT_EQ(hub->m_num_pushes, 1u);
}

TEST_F(assumptions_test, a_failed_assumption_is_the_core_and_leaves_nothing) {
    ctx.assert_literal(x[0]);
    ctx.add_assumption(~x[0]);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({~x[0]});
    EXPECT_FALSE(ctx.inconsistent());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_EQ(ctx.check(), -1); // the same again
    expect_core({~x[0]});
    ctx.add_assumption(x[0]); // the last entry of a variable wins
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_TRUE(ctx.get_unsat_core().empty());
    ctx.check_invariant();
}

TEST_F(assumptions_test, an_assumption_that_is_false_by_propagation_at_the_base) {
    add(ctx, {~x[0], x[1]});
    add(ctx, {~x[1], x[2], ~x[0]});
    ctx.assert_literal(x[0]); // nothing is propagated yet
    ctx.add_assumption(x[5]);
    ctx.add_assumption(~x[2]);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({~x[2]});
    EXPECT_EQ(ctx.value(x[2]), 1);
}

TEST_F(assumptions_test, the_core_holds_what_the_refutation_used) {
    add(ctx, {~x[0], ~x[1], x[2]});
    add(ctx, {~x[2], ~x[3], x[4]});
    add(ctx, {~x[4], ~x[0]});
    for (unsigned i : {5u, 0u, 6u, 1u, 7u, 3u, 8u}) ctx.add_assumption(x[i]);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({x[0], x[1], x[3]});
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_FALSE(ctx.inconsistent());
    ctx.add_assumption(~x[3]);
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(ctx.get_model().value(x[0].var()), 1);
    EXPECT_EQ(ctx.get_model().value(x[3].var()), -1);
    EXPECT_EQ(ctx.get_model().value(x[8].var()), 1);
}

TEST_F(assumptions_test, a_core_found_by_search) {
    add_pigeonhole(ctx, 3);
    // Guarded: a hole each may be closed.
    context k;
    std::vector<literal> const guards = fresh(k, 6);
    std::vector<literal> const p = fresh(k, 12);
    for (unsigned i = 0; i < 4; ++i) add(k, {p[3 * i], p[3 * i + 1], p[3 * i + 2], ~guards[0]});
    for (unsigned h = 0; h < 3; ++h)
        for (unsigned i = 0; i < 4; ++i)
            for (unsigned j = 0; j < i; ++j) add(k, {~p[3 * i + h], ~p[3 * j + h], ~guards[1]});
    for (literal g : guards) k.add_assumption(g);
    EXPECT_EQ(k.check(), -1);
    std::set<int> const core(k.get_unsat_core().begin(), k.get_unsat_core().end());
    EXPECT_EQ(core, (std::set<int>{guards[0].index(), guards[1].index()}));
    EXPECT_EQ(k.check(), -1);
    EXPECT_EQ(k.get_unsat_core().size(), 2u);
    k.add_assumption(~guards[1]);
    EXPECT_EQ(k.check(), 1);
    k.add_assumption(guards[1]);
    EXPECT_EQ(k.check(), -1);
}

TEST_F(assumptions_test, retraction_and_pop) {
    literal const g = ctx.create_fresh_bool_var();
    ctx.assert_literal(x[0]);
    add(ctx, {~x[0], g});
    ctx.add_assumption(~g);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({~g});
    ctx.push();
    ctx.add_assumption(g);
    ctx.add_assumption(g);
    EXPECT_EQ(ctx.check(), 1);
    ctx.pop(1); // the assertion is active again
    EXPECT_EQ(ctx.check(), -1);
    expect_core({~g});
}

// All assumptions hold already: the scope is empty, and the first decision must not begin where it begins.
TEST_F(assumptions_test, an_empty_assumption_scope) {
    for (unsigned base = 0; base < 40; ++base) {
        ctx.assert_literal(x[0]);
        ctx.add_assumption(x[0]);
        add(ctx, {x[1], x[2]});
        add(ctx, {x[1], ~x[2]});
        add(ctx, {~x[1], x[3], x[4]});
        EXPECT_EQ(ctx.check(), 1);
        ctx.push();
        add(ctx, {~x[3]});
        add(ctx, {~x[4]});
        EXPECT_EQ(ctx.check(), -1);
        EXPECT_TRUE(ctx.get_unsat_core().empty());
        ctx.pop(1);
        ctx.push();
    }
    ctx.check_invariant();
}

TEST_F(assumptions_test, a_refutation_without_assumptions_has_an_empty_core_and_stays) {
    add(ctx, {x[0], x[1]});
    add(ctx, {~x[0], x[1]});
    add(ctx, {x[0], ~x[1]});
    add(ctx, {~x[0], ~x[1]});
    ctx.add_assumption(x[5]);
    ctx.add_assumption(x[6]);
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_TRUE(ctx.get_unsat_core().empty());
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_TRUE(ctx.get_unsat_core().empty());
}

// The early answer of an inconsistent context must not show the core of an earlier question.
TEST_F(assumptions_test, an_inconsistent_context_has_no_core) {
    ctx.assert_literal(x[0]);
    ctx.add_assumption(~x[0]);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({~x[0]});
    ctx.assert_literal(false_literal);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({});
}

TEST_F(assumptions_test, an_inconsistent_context_has_no_model) {
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_TRUE(ctx.get_model().is_valid());
    ctx.assert_literal(x[0]);
    ctx.assert_literal(~x[0]);
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_FALSE(ctx.get_model().is_valid());
}

TEST_F(assumptions_test, the_constants_as_assumptions) {
    ctx.add_assumption(true_literal);
    EXPECT_EQ(ctx.check(), 1);
    ctx.push();
    ctx.add_assumption(false_literal);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({false_literal});
    ctx.pop(1);
    EXPECT_EQ(ctx.check(), 1);
}

// A hub that finds, deep in the search, a conflict on base facts alone, on nothing, or on assumptions.
class deep_conflict_hub : public theory_hub {
public:
    explicit deep_conflict_hub(context& ctx)
        : m_ctx(ctx) {}
    void push() noexcept override { ++m_depth; }
    void pop() noexcept override { --m_depth; }
    void propagate() override {
        if (m_depth >= m_at) m_ctx.create_clause_core(m_clause, clause_kind::lemma);
    }
    [[nodiscard]] bool final_check() override {
        m_ctx.create_clause_core(m_clause, clause_kind::lemma);
        return !m_ctx.inconsistent();
    }
    context& m_ctx;
    svector<literal> m_clause;
    unsigned m_depth = 0;
    unsigned m_at = 6;
};

TEST_F(assumptions_test, conflicts_below_the_search_level) {
    for (unsigned which = 0; which < 4; ++which) {
        SCOPED_TRACE(which);
        context k;
        auto* hub = new deep_conflict_hub(k);
        k.set_theory_hub(std::unique_ptr<theory_hub>(hub));
        std::vector<literal> const y = fresh(k, 20);
        k.push();
        k.assert_literal(y[0]);
        k.assert_literal(y[1]);
        k.add_assumption(y[2]);
        k.add_assumption(y[3]);
        k.add_assumption(y[4]);
        if (which == 0) hub->m_clause = lits({~y[0], ~y[1], ~y[0]});
        if (which == 1) hub->m_clause = lits({});
        if (which == 2) hub->m_clause = lits({~y[0], ~y[2], ~y[4]});
        if (which == 3) hub->m_clause = lits({~y[3]});
        EXPECT_EQ(k.check(), -1);
        std::set<int> const core(k.get_unsat_core().begin(), k.get_unsat_core().end());
        if (which < 2) {
            EXPECT_TRUE(core.empty());
        }
        if (which == 2) {
            EXPECT_EQ(core, (std::set<int>{y[2].index(), y[4].index()}));
        }
        if (which == 3) {
            EXPECT_EQ(core, (std::set<int>{y[3].index()}));
        }
        EXPECT_EQ(k.scope_lvl(), 1u);
        EXPECT_EQ(hub->m_depth, 1u);
        k.check_invariant();
        EXPECT_EQ(k.check(), -1);
        k.pop(1);
        EXPECT_FALSE(k.inconsistent());
        hub->m_clause = lits({true_literal});
        EXPECT_EQ(k.check(), 1);
    }
}

// Assumptions, units and user scopes: a learned unit is a fact of the base, not an assumption.
TEST_F(assumptions_test, units_learned_under_assumptions_are_facts_of_the_base) {
    ctx.push();
    ctx.push();
    add(ctx, {x[0], x[1], ~x[5]});
    add(ctx, {x[0], ~x[1], ~x[5]});
    add(ctx, {x[0], x[1], x[5]});
    add(ctx, {x[0], ~x[1], x[5]}); // x0 in the end, whatever is assumed
    ctx.add_assumption(x[9]);
    ctx.add_assumption(~x[8]);
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(ctx.value(x[0]), 1);
    EXPECT_EQ(ctx.timestamp(x[0]), probe.scope_floor(2));
    ctx.add_assumption(~x[0]);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({~x[0]});
    ctx.pop(1);
    EXPECT_EQ(ctx.value(x[0]), 0);
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(assumptions_test, cores_through_lazy_explanations) {
    ctx.assert_constraint(new at_most_constraint({x[0], x[1], x[2], x[3]}, 2));
    ctx.assert_constraint(new parity_constraint({x[3].var(), x[4].var(), x[5].var()}, true));
    for (literal l : {x[7], x[0], x[2], ~x[4], ~x[5], x[8]}) ctx.add_assumption(l);
    EXPECT_EQ(ctx.check(), -1);
    expect_core({x[0], x[2], ~x[4], ~x[5]});
    ctx.add_assumption(x[5]);
    EXPECT_EQ(ctx.check(), 1);
}

} // namespace
