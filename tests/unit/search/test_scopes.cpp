// Scopes of the search and of the user: what survives them and what does not.
#include "search/context.h"

#include "support/clause_theory.h"
#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"
#include "support/test_constraints.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace {

using namespace vexor;
using namespace vexor_test;

// Everything that a pop must put back, as text.
std::string digest(context& ctx) {
    context_probe probe(ctx);
    std::ostringstream out;
    out << ctx.num_bool_vars() << " vars, input " << probe.num_input_clauses() << " trail "
        << probe.trail_size() << " head " << probe.qhead() << " scope " << ctx.scope_lvl() << " base "
        << ctx.base_lvl() << " first " << probe.first_deletable_learned() << " definitions "
        << probe.definitions().size() << "\n";
    for (unsigned v = 0; v < ctx.num_bool_vars(); ++v) {
        literal const l(static_cast<int>(v));
        out << v << " = " << ctx.value(l) << " at " << (ctx.value(l) != 0 ? ctx.timestamp(l) : 0);
        for (literal w : {l, ~l}) {
            watch_set const& set = probe.watches(w);
            out << " [" << set.num_clauses() << ":";
            for (literal const* it = set.begin_literals(); it != set.end_literals(); ++it) out << " " << *it;
            out << "]";
        }
        out << "\n";
    }
    for (clause_ref ref : probe.problem_clauses()) {
        ctx.display(out, ctx.get_clause(ref));
        out << "\n";
    }
    out << probe.learned_clauses().size() << " learned\n";
    return out.str();
}

class scopes_test : public testing::Test {
protected:
    scopes_test() {
        g_debug_level = 3;
        x = fresh(ctx, 20);
    }
    bool decide(literal l) {
        probe.decide(l);
        return ctx.propagate_constraints();
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

TEST_F(scopes_test, pop_takes_everything_back) {
    add(ctx, {x[0], x[1], x[2]});
    add(ctx, {~x[0], x[3]});
    ctx.assert_literal(x[9]);
    ASSERT_TRUE(ctx.propagate_constraints());
    std::string const before = digest(ctx);
    for (unsigned round = 0; round < 3; ++round) {
        ctx.push();
        std::vector<literal> const y = fresh(ctx, 5);
        add(ctx, {y[0], x[1]});
        add(ctx, {~x[0], x[1], y[2], y[3]});
        add(ctx, {~y[0], ~x[1]});
        add(ctx, {y[0], ~x[1]});
        ctx.create_or(x[4], x[5]);
        ctx.create_iff(y[1], x[5]);
        ctx.assert_constraint(new parity_constraint({y[0].var(), x[7].var(), x[8].var()}, true));
        ctx.assert_constraint(new at_most_constraint({y[0], x[7], x[8]}, 1));
        ctx.assert_literal(y[4]);
        ctx.add_assumption(x[6]);
        EXPECT_TRUE(ctx.propagate_constraints());
        EXPECT_EQ(digest(ctx) == before, false);
        ctx.push();
        add(ctx, {~y[0], x[2]});
        add(ctx, {false_literal});
        EXPECT_EQ(ctx.check(), -1);
        ctx.pop(1);
        EXPECT_FALSE(ctx.inconsistent());
        ctx.pop(1);
        EXPECT_EQ(digest(ctx), before);
        ctx.check_invariant();
    }
}

TEST_F(scopes_test, no_binary_clause_stays_in_any_watch_set) {
    ctx.push();
    for (unsigned i = 0; i < 10; ++i) add(ctx, {~x[i], x[i + 1]});
    add(ctx, {~x[3], x[4]}); // twice
    ctx.pop(1);
    for (literal l : x) {
        EXPECT_TRUE(probe.watches(l).empty());
        EXPECT_TRUE(probe.watches(~l).empty());
    }
}

TEST_F(scopes_test, popping_more_than_there_is) {
    ctx.push();
    ctx.push();
    ctx.pop(100);
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_EQ(ctx.base_lvl(), 0u);
    ctx.pop(1);
    EXPECT_EQ(ctx.check(), 1);
    // A pop that undoes nothing mends nothing.
    ctx.assert_literal(false_literal);
    ctx.set_incompleteness();
    ctx.pop(3);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_TRUE(ctx.incomplete());
}

TEST_F(scopes_test, pop_restores_the_flags_of_the_push) {
    ctx.push();
    ctx.set_incompleteness();
    ctx.push();
    ctx.set_type_error("no such thing");
    ctx.set_type_error("second");
    EXPECT_FALSE(ctx.type_correct());
    EXPECT_EQ(ctx.get_type_incorrect_explanation(), "no such thing");
    EXPECT_EQ(ctx.check(), 0);
    unsigned const scopes = ctx.base_lvl();
    ctx.push(); // none on a type-incorrect context
    EXPECT_EQ(ctx.base_lvl(), scopes);
    ctx.pop(1);
    EXPECT_TRUE(ctx.type_correct());
    EXPECT_EQ(ctx.get_type_incorrect_explanation(), "");
    EXPECT_TRUE(ctx.incomplete()); // it was before the inner push
    EXPECT_EQ(ctx.check(), 0);     // a model of an incomplete theory is unknown
    ctx.pop(1);
    EXPECT_FALSE(ctx.incomplete());
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(scopes_test, push_on_an_inconsistent_context_opens_nothing) {
    ctx.push();
    ctx.assert_literal(x[0]);
    ctx.assert_literal(~x[0]);
    ASSERT_TRUE(ctx.inconsistent());
    ctx.push();
    EXPECT_EQ(ctx.base_lvl(), 1u);
    ctx.pop(1); // so this pops the outer scope
    EXPECT_EQ(ctx.base_lvl(), 0u);
    EXPECT_EQ(ctx.check(), 1);
}

// Two clauses that refute each other are found by the propagation that push starts with.
TEST_F(scopes_test, push_propagates_first_and_stops_on_a_conflict) {
    add(ctx, {~x[0], x[1]});
    add(ctx, {~x[0], ~x[1]});
    add(ctx, {~x[2], x[3]});
    ctx.assert_literal(x[2]);
    ctx.push();
    EXPECT_EQ(ctx.base_lvl(), 1u);
    EXPECT_EQ(ctx.value(x[3]), 1);
    ctx.pop(1);
    EXPECT_EQ(ctx.value(x[3]), 1); // it belongs to the base
    ctx.assert_literal(x[0]);
    ctx.push();
    EXPECT_EQ(ctx.base_lvl(), 0u);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(ctx.check(), -1);
}

TEST_F(scopes_test, a_unit_made_in_a_deep_scope_is_asserted_after_every_backjump) {
    ctx.push();
    for (unsigned i = 0; i < 6; ++i) ASSERT_TRUE(decide(x[i]));
    ctx.assert_literal(x[10]);
    EXPECT_EQ(ctx.timestamp(x[10]), probe.scope_floor(1));
    for (unsigned i = 0; i < 5; ++i) {
        probe.backtrack(1);
        EXPECT_EQ(ctx.value(x[10]), 1);
        EXPECT_EQ(ctx.timestamp(x[10]), probe.scope_floor(1));
        ASSERT_NE(probe.record_of_scope(ctx.scope_lvl()), nullptr);
        EXPECT_EQ(probe.record_of_scope(ctx.scope_lvl())->m_literals.size(), 1u); // once, not twice
    }
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[10]), 1);
    EXPECT_TRUE(ctx.at_base_lvl());
    ctx.pop(1);
    EXPECT_EQ(ctx.value(x[10]), 0); // a fact of the popped scope
    ctx.check_invariant();
}

TEST_F(scopes_test, a_recorded_unit_that_is_false_now_is_a_conflict) {
    add(ctx, {~x[1], ~x[10]});
    ASSERT_TRUE(decide(x[0]));
    ASSERT_TRUE(decide(x[5]));
    ctx.assert_literal(x[10]); // implies not x1
    ASSERT_TRUE(ctx.propagate_constraints());
    add(ctx, {~x[0], x[1]}, clause_kind::lemma); // and now x1 in scope 1 already
    EXPECT_TRUE(ctx.inconsistent());
    probe.backtrack(1, false);
    // The binary clause makes x1 true again beside the unit: the contradiction must not be lost.
    EXPECT_FALSE(ctx.propagate_constraints());
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(x[10]), 1);
    EXPECT_EQ(ctx.value(x[0]), -1);
}

TEST_F(scopes_test, a_unit_against_a_literal_that_stays_is_a_conflict_after_the_backjump) {
    ASSERT_TRUE(decide(~x[10]));
    ASSERT_TRUE(decide(x[1]));
    ctx.assert_literal(x[10]);
    EXPECT_TRUE(ctx.inconsistent());
    probe.backtrack(1);
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(probe.record_of_scope(1)->m_literals.size(), 1u);
    probe.search_lvl() = 0;
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_EQ(ctx.value(x[10]), 1);
}

TEST_F(scopes_test, a_clause_false_at_scope_5_is_unit_at_scope_3) {
    for (unsigned i = 0; i < 5; ++i) ASSERT_TRUE(decide(x[i]));
    clause_ref const ref = add(ctx, {~x[0], ~x[2], ~x[4]}, clause_kind::lemma);
    EXPECT_TRUE(ctx.inconsistent());
    probe.backtrack(2);
    EXPECT_EQ(ctx.value(x[4]), -1);
    EXPECT_EQ(ctx.antecedent(x[4].var()), gexplanation::mk_clause(ref));
    EXPECT_TRUE(ctx.get_clause(ref).out_of_order());
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[4]), 0);
    EXPECT_FALSE(ctx.get_clause(ref).out_of_order());
}

// The same unit literal, asserted again and again, and asserted although it holds by a clause already.
TEST_F(scopes_test, a_unit_that_holds_already) {
    add(ctx, {~x[0], ~x[1], x[10]});
    ASSERT_TRUE(decide(x[0]));
    ASSERT_TRUE(decide(x[1]));
    EXPECT_EQ(ctx.value(x[10]), 1);
    for (unsigned i = 0; i < 3; ++i) ctx.assert_literal(x[10]);
    EXPECT_EQ(ctx.timestamp(x[10]), -1);
    ctx.check_invariant();
    ASSERT_TRUE(decide(x[2]));
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(x[10]), 1);
    probe.backtrack(2);
    EXPECT_EQ(ctx.value(x[10]), 1);
    EXPECT_EQ(ctx.timestamp(x[10]), -1);
    ctx.check_invariant();
}

TEST_F(scopes_test, a_variable_survives_the_scope_of_its_birth) {
    context k;
    auto* theory = new clause_theory(k, 1);
    k.set_theory_hub(std::unique_ptr<theory_hub>(theory));
    theory->m_moods = clause_theory::silent;
    context_probe p(k);
    std::vector<literal> const y = fresh(k, 8);
    for (unsigned i = 0; i < 7; ++i) p.decide(y[i]);
    literal const a = theory->create_atom();
    k.assign_literal_core(a, gexplanation::mk_binary(y[0]));
    EXPECT_TRUE(k.propagate_constraints());
    p.backtrack(5);
    EXPECT_EQ(theory->m_num_reinits, 1u);
    EXPECT_EQ(k.value(a), 0);
    p.backtrack(1);
    EXPECT_EQ(theory->m_num_reinits, 2u);
    p.backtrack(1);
    EXPECT_EQ(theory->m_num_reinits, 3u);
    EXPECT_EQ(k.num_bool_vars(), 12u);
    EXPECT_FALSE(theory->m_broken);
    EXPECT_EQ(k.check(), 1);
}

TEST_F(scopes_test, a_constraint_made_in_a_deep_scope_is_initialized_again) {
    for (unsigned i = 0; i < 5; ++i) ASSERT_TRUE(decide(x[i]));
    auto* c = new at_most_constraint({x[0], x[1], x[10]}, 2);
    ctx.assert_constraint(c);
    EXPECT_EQ(ctx.value(x[10]), -1);
    probe.backtrack(2);
    EXPECT_EQ(c->m_num_reinits, 1u);
    EXPECT_EQ(ctx.value(x[10]), -1);
    probe.backtrack(2);
    EXPECT_EQ(c->m_num_reinits, 2u);
    EXPECT_EQ(ctx.value(x[10]), 0);
    ASSERT_TRUE(decide(x[1]));
    EXPECT_EQ(ctx.value(x[10]), -1);
    probe.backtrack(2);
    EXPECT_EQ(c->m_num_reinits, 2u); // it had nothing to do at scope 1, so it left the records
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(scopes_test, two_scopes_never_start_at_one_place) {
    ctx.push();
    ctx.push();
    ctx.push();
    ctx.add_assumption(x[0]);
    ctx.assert_literal(x[0]); // the assumption scope will be empty
    EXPECT_EQ(ctx.check(), 1);
    for (unsigned s = 1; s <= 3; ++s) {
        EXPECT_EQ(probe.timestamp2level(probe.scope_floor(s)), s);
        EXPECT_LT(probe.scope_floor(s - 1), probe.scope_floor(s));
    }
}

// User scopes beyond 32, with searches in each of them and units that belong to each.
TEST_F(scopes_test, a_hundred_user_scopes) {
    g_debug_level = 2;
    std::vector<literal> const y = fresh(ctx, 300);
    std::vector<std::string> digests;
    for (unsigned i = 0; i < 100; ++i) {
        ASSERT_TRUE(ctx.propagate_constraints());
        digests.push_back(digest(ctx));
        ctx.push();
        add(ctx, {~y[3 * i], y[3 * i + 1]});
        add(ctx, {~y[3 * i + 1], y[3 * i + 2], ~y[0]});
        ctx.assert_literal(y[3 * i]);
        if (i % 10 != 9) continue;
        ctx.add_assumption(~y[3 * i + 2]);
        EXPECT_EQ(ctx.check(), -1);
        // y[2] and all others are implied at their own scopes: a clash with the base.
        ASSERT_EQ(ctx.get_unsat_core().size(), 1u);
        EXPECT_EQ(ctx.get_unsat_core()[0], (~y[3 * i + 2]).index());
        ctx.add_assumption(y[3 * i + 2]);
        EXPECT_EQ(ctx.check(), 1);
    }
    EXPECT_EQ(ctx.base_lvl(), 100u);
    for (unsigned i = 100; i-- > 0;) {
        ctx.pop(1);
        EXPECT_EQ(ctx.value(y[3 * i + 2]), 0);
        if (i % 7 == 0) {
            EXPECT_EQ(digest(ctx), digests[i]);
        }
    }
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(scopes_test, the_model_goes_with_pop_unless_kept) {
    ctx.push();
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_TRUE(ctx.get_model().is_valid());
    ctx.pop_and_keep_model(1);
    EXPECT_TRUE(ctx.get_model().is_valid());
    ctx.push();
    EXPECT_EQ(ctx.check(), 1);
    ctx.pop(1);
    EXPECT_FALSE(ctx.get_model().is_valid());
}

TEST_F(scopes_test, learned_clauses_of_outer_scopes_stay) {
    g_debug_level = 1;
    add_random_3sat(ctx, fresh(ctx, 60), 250, 5);
    EXPECT_EQ(ctx.check(), 1);
    unsigned const learned = probe.learned_clauses().size();
    ctx.push();
    EXPECT_EQ(probe.first_deletable_learned(), learned);
    ctx.push();
    ctx.pop(1);
    EXPECT_EQ(probe.first_deletable_learned(), learned);
    ctx.pop(1);
    EXPECT_EQ(probe.first_deletable_learned(), 0u);
    EXPECT_EQ(probe.learned_clauses().size(), learned);
}

// After a reset a context is like a new one: the same answers by the same search.
TEST(reset, same_search_as_a_new_context) {
    search_settings_guard const guard;
    auto solve = [](context& ctx) {
        std::vector<literal> const x = fresh(ctx, 50);
        add_random_3sat(ctx, x, 200, 11);
        ctx.create_ite(x[0], x[1], x[2]);
        ctx.push();
        ctx.assert_constraint(new parity_constraint({x[0].var(), x[1].var(), x[2].var()}, true));
        ctx.add_assumption(x[7]);
        int const answer = ctx.check();
        statistics const s = ctx.get_statistics();
        std::ostringstream out;
        out << answer << " " << s.m_num_decisions << " " << s.m_num_conflicts << " " << s.m_num_propagations
            << " " << s.m_num_learned_literals << " " << s.m_num_problem_literals << " " << s.m_num_restarts;
        return out.str();
    };
    context fresh_one;
    std::string const expected = solve(fresh_one);
    context used;
    for (unsigned i = 0; i < 3; ++i) {
        // A state with everything in it.
        std::vector<literal> const y = fresh(used, 10);
        used.push();
        add_pigeonhole(used, 4);
        used.create_or(y[0], y[1]);
        EXPECT_EQ(used.check(), -1);
        used.set_type_error("gone");
        used.set_incompleteness();
        used.reset();
        EXPECT_EQ(used.num_bool_vars(), 3u);
        EXPECT_EQ(used.scope_lvl(), 0u);
        EXPECT_FALSE(used.inconsistent());
        EXPECT_TRUE(used.type_correct());
        EXPECT_FALSE(used.incomplete());
        EXPECT_TRUE(used.get_unsat_core().empty());
        EXPECT_FALSE(used.get_model().is_valid());
        used.check_invariant();
        used.random() = random_numbers(); // the stream goes on otherwise
        EXPECT_EQ(solve(used), expected);
        used.reset();
        EXPECT_EQ(used.check(), 1);
        used.reset();
    }
}

TEST(reset, the_random_stream_goes_on) {
    context ctx;
    random_numbers other;
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(ctx.random().draw(), other.draw());
    ctx.reset();
    EXPECT_EQ(ctx.random().draw(), other.draw());
}

} // namespace
