// Propagation, and the constraints and theories that take part in it.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"
#include "support/test_constraints.h"

#include <functional>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using namespace vexor;
using namespace vexor_test;

class propagate_test : public testing::Test {
protected:
    propagate_test() {
        g_debug_level = 3;
        x = fresh(ctx, 10);
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

// Calls what the test gives it on each visit of its one literal.
class probing_constraint : public constraint {
public:
    probing_constraint(literal on, std::function<bool(context&, literal)> act)
        : m_on(on)
        , m_act(std::move(act)) {}
    bool propagate(context* ctx, literal l) noexcept override {
        ++m_num_visits;
        return m_act(*ctx, l);
    }
    void remove(context* ctx, bool all) noexcept override {
        if (!all) ctx->remove_generic_watch(this, m_on);
    }
    bool init(context* ctx, bool is_new) noexcept override {
        if (is_new) ctx->insert_constraint_watch(m_on, this);
        return false;
    }
    void display(context const*, std::ostream&) const override {}
    [[nodiscard]] char const* get_kind() const override { return "probing"; }
    [[nodiscard]] bool is_satisfied(context*) override { return true; }
    [[nodiscard]] bool check_invariant(context*) override { return true; }
    void get_antecedents(literal, svector<literal>& out) noexcept override { out.push_back(m_on); }

    unsigned m_num_visits = 0;

private:
    literal m_on;
    std::function<bool(context&, literal)> m_act;
};

TEST_F(propagate_test, a_chain_of_clauses_and_binary_clauses) {
    add(ctx, {~x[0], x[1]});
    add(ctx, {~x[0], ~x[1], x[2]});
    add(ctx, {~x[2], ~x[1], ~x[0], x[3]});
    add(ctx, {~x[3], ~x[2], x[4]});
    probe.decide(x[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(ctx.value(x[i]), 1) << i;
    EXPECT_EQ(ctx.value(x[5]), 0);
    EXPECT_EQ(ctx.get_statistics().m_num_propagations, 5u);
    EXPECT_EQ(ctx.antecedent(x[1].var()), gexplanation::mk_binary(x[0]));
    EXPECT_EQ(ctx.antecedent(x[4].var()).tag(), gexplanation::clausal);
    probe.backtrack(1);
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(ctx.value(x[i]), 0) << i;
}

TEST_F(propagate_test, binary_clauses_come_before_clauses) {
    add(ctx, {~x[0], x[1], x[2]});
    add(ctx, {~x[0], ~x[1]});
    add(ctx, {~x[0], ~x[2]});
    probe.decide(x[0]);
    EXPECT_FALSE(ctx.propagate_constraints());
    EXPECT_EQ(probe.conflict().tag(), gexplanation::clausal);
    EXPECT_EQ(ctx.get_clause(probe.conflict().get_clause()).size(), 3u);
    EXPECT_EQ(probe.qhead(), probe.trail_size());
}

TEST_F(propagate_test, a_contradicted_literal_is_explained_by_both_sides) {
    probe.decide(x[0]);
    EXPECT_TRUE(ctx.assign_literal_core(x[0], gexplanation::mk_binary(x[1])));
    EXPECT_FALSE(ctx.assign_literal_core(~x[0], gexplanation::mk_binary(x[1])));
    ASSERT_EQ(probe.conflict().tag(), gexplanation::lazy);
    svector<literal> why;
    probe.conflict().get_explanation()->get_antecedents(false_literal, why);
    ASSERT_EQ(why.size(), 2u);
    EXPECT_EQ(why[0], x[1]);
    EXPECT_EQ(why[1], x[0]);
    EXPECT_STREQ(ctx.get_name(probe.conflict(), false_literal), "contradiction:A_and_NOT_A");
}

// An undo record pushed while a literal still waits must not make the head pass that literal.
TEST_F(propagate_test, an_undo_record_does_not_hide_a_waiting_literal) {
    add(ctx, {~x[0], x[1]});
    unsigned some_value = 5;
    probe.decide(x[0]);
    ctx.push_strong_trail(value_trail<unsigned>(some_value));
    some_value = 6;
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x[1]), 1);
    EXPECT_EQ(probe.qhead(), probe.trail_size());
    ctx.push_strong_trail(value_trail<unsigned>(some_value));
    some_value = 7;
    EXPECT_EQ(probe.qhead(), probe.trail_size()); // a record needs no propagation
    probe.backtrack(1);
    EXPECT_EQ(some_value, 5u);
}

TEST_F(propagate_test, a_record_at_scope_0_is_not_kept) {
    unsigned some_value = 5;
    unsigned const before = probe.trail_size();
    ctx.push_strong_trail(value_trail<unsigned>(some_value));
    EXPECT_EQ(probe.trail_size(), before);
}

// The conflict of a constraint must not cost it its watch entry.
TEST_F(propagate_test, a_constraint_keeps_its_entry_on_a_conflict_if_it_says_so) {
    probing_constraint* c = nullptr;
    c = new probing_constraint(x[0], [&](context& k, literal) {
        k.set_conflict(gexplanation::mk_lazy(c));
        return true;
    });
    ctx.assert_constraint(c);
    add(ctx, {~x[0], x[1], x[2]}); // an entry behind it
    for (unsigned i = 1; i <= 3; ++i) {
        probe.decide(x[0]);
        EXPECT_FALSE(ctx.propagate_constraints());
        EXPECT_EQ(c->m_num_visits, i);
        EXPECT_EQ(probe.watches(x[0]).num_clauses(), 2u);
        probe.backtrack(1);
    }
}

TEST_F(propagate_test, a_constraint_may_drop_its_entry_on_a_conflict) {
    probing_constraint* c = nullptr;
    c = new probing_constraint(x[0], [&](context& k, literal) {
        k.set_conflict(gexplanation::mk_lazy(c));
        return false;
    });
    ctx.assert_constraint(c);
    add(ctx, {~x[0], x[1], x[2]});
    probe.decide(x[0]);
    EXPECT_FALSE(ctx.propagate_constraints());
    EXPECT_EQ(probe.watches(x[0]).num_clauses(), 1u);
    probe.backtrack(1);
    EXPECT_FALSE(probe.watches(x[0]).remove_constraint(c));
    ctx.check_invariant();
}

// During a visit the constraint makes variables, and clauses that are watched at the very literal that is
// being visited: the arrays move and the set grows.
TEST_F(propagate_test, a_constraint_may_make_variables_and_clauses) {
    probing_constraint* c = nullptr;
    c = new probing_constraint(x[0], [&](context& k, literal l) {
        if (c->m_num_visits > 1) return true;
        std::vector<literal> const y = fresh(k, 2000);
        for (unsigned i = 0; i + 1 < y.size(); i += 2) {
            add(k, {~l, ~x[1], y[i]}, clause_kind::lemma);          // unit; watched at l, the newest
            add(k, {~l, y[i], y[i + 1], x[2]}, clause_kind::lemma); // satisfied
        }
        k.create_or(y[0], y[1]);
        return true;
    });
    ctx.assert_constraint(c);
    for (unsigned i = 3; i < 9; ++i) add(ctx, {~x[0], x[i], x[i - 1]});
    add(ctx, {~x[0], x[9], ~x[1]}); // behind the constraint: must still be visited
    probe.decide(x[1]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.decide(x[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x[9]), 1);
    EXPECT_EQ(ctx.num_bool_vars(), 3u + 10 + 2000 + 1);
    for (unsigned v = 13; v < 2013; v += 2) EXPECT_EQ(ctx.value(literal(static_cast<int>(v))), 1);
    ctx.check_invariant();
    probe.backtrack(1);
    ctx.check_invariant();
    EXPECT_EQ(ctx.value(literal(13)), 0);
    g_debug_level = 1;
    EXPECT_EQ(ctx.check(), 1);
}

// What reanalysis queued in the theories is stale once a conflict stands.
TEST_F(propagate_test, a_pending_conflict_drops_what_the_theories_queued) {
    struct counting_hub : theory_hub {
        unsigned m_num_drops = 0;
        void reset_propagation_queue() noexcept override { ++m_num_drops; }
    };
    context k;
    auto* hub = new counting_hub;
    k.set_theory_hub(std::unique_ptr<theory_hub>(hub));
    k.assert_literal(false_literal);
    unsigned const before = hub->m_num_drops;
    EXPECT_FALSE(k.propagate_constraints());
    EXPECT_EQ(hub->m_num_drops, before + 1);
}

TEST_F(propagate_test, native_constraints_propagate_and_explain) {
    auto* c = new at_most_constraint({x[0], x[1], x[2], x[3]}, 2);
    ctx.assert_constraint(c);
    probe.decide(x[0]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.decide(x[2]);
    ASSERT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x[1]), -1);
    EXPECT_EQ(ctx.value(x[3]), -1);
    svector<literal> why;
    c->get_antecedents(~x[3], why);
    EXPECT_EQ(why.size(), 2u);
    ctx.assert_constraint(new parity_constraint({x[1].var(), x[3].var(), x[4].var()}, true));
    EXPECT_EQ(ctx.value(x[4]), 1);
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[4]), 0);
    EXPECT_EQ(ctx.check(), 1);
}

} // namespace
