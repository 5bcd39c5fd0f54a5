// What passes between the search and its theories: atoms, reasons, facts, lemmas, undo, incompleteness.
#include "search/context.h"
#include "search/theory_port.h"

#include "support/clause_theory.h"
#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace vexor;
using namespace vexor_test;

reason_kind const test_kind("test-door");
reason_kind const other_kind("test-door-other");

class door_atom final : public theory_atom {
public:
    door_atom()
        : theory_atom(7) {}
};

// Writes down what it is told and does what the test gives it.
class scripted_hub final : public theory_hub {
public:
    explicit scripted_hub(context& ctx)
        : m_port(ctx) {}
    ~scripted_hub() override = default;

    literal new_atom() {
        m_atoms.push_back(std::make_unique<door_atom>());
        return m_port.new_atom(*m_atoms.back());
    }

    [[nodiscard]] char const* get_name() const noexcept override { return "script"; }
    void save_base_level_trail() noexcept override { m_sizes.push_back(m_atoms.size()); }
    void undo_base_level_trail() noexcept override {
        while (m_atoms.size() > m_sizes.back()) {
            m_log += "-" + std::to_string(m_atoms.back()->var());
            m_atoms.pop_back();
        }
        m_sizes.pop_back();
    }
    void reanalyze(unsigned) noexcept override {
        if (m_on_reanalyze) m_on_reanalyze();
    }
    void init_atom(theory_atom* a, bool is_new) noexcept override {
        EXPECT_EQ(a->owner(), 7);
        EXPECT_EQ(m_port.atom_of(a->var()), a);
        m_log += (is_new ? "n" : "i") + std::to_string(a->var());
        if (m_on_init) m_on_init(a, is_new);
    }
    unsigned assigned(literal const* lits, unsigned n) noexcept override {
        m_batches.emplace_back(lits, lits + n);
        for (literal l : m_batches.back()) EXPECT_TRUE(m_port.is_true(l));
        return m_on_assigned ? m_on_assigned(m_batches.back()) : n;
    }
    bool decide_atom(theory_atom* a, bool& phase) noexcept override {
        return m_on_decide && m_on_decide(a->lit(), phase);
    }
    void display_atom(theory_atom const* a, std::ostream& out) const override { out << "atom!" << a->var(); }
    [[nodiscard]] bool can_propagate() const noexcept override { return m_queued; }
    void propagate() override {
        m_queued = false;
        if (m_on_propagate) m_on_propagate();
    }
    void reset_propagation_queue() noexcept override { m_queued = false; }
    [[nodiscard]] bool final_check() override { return !m_on_final || m_on_final(); }
    void display(std::ostream& out) const override { out << "script of " << m_atoms.size() << "\n"; }
    void display_statistics(std::ostream& out, char const* prefix) const override {
        out << prefix << "script.batches " << m_batches.size() << "\n";
    }

    theory_port m_port;
    std::vector<std::unique_ptr<door_atom>> m_atoms;
    std::vector<std::size_t> m_sizes; // of m_atoms at each push of the user
    std::vector<std::vector<literal>> m_batches;
    std::string m_log; // births n, rebirths i and deaths - of atoms
    bool m_queued = false;
    std::function<unsigned(std::vector<literal> const&)> m_on_assigned;
    std::function<bool(literal, bool&)> m_on_decide;
    std::function<void()> m_on_propagate;
    std::function<void()> m_on_reanalyze;
    std::function<bool()> m_on_final;
    std::function<void(theory_atom*, bool)> m_on_init;
};

class door_test : public testing::Test {
protected:
    using batch = std::vector<literal>;

    door_test() {
        g_debug_level = 3;
        g_decision_polarity = 1;
        auto owned = std::make_unique<scripted_hub>(ctx);
        hub = owned.get();
        ctx.set_theory_hub(std::move(owned));
    }
    std::vector<literal> atoms(unsigned n) {
        std::vector<literal> result;
        for (unsigned i = 0; i < n; ++i) result.push_back(hub->new_atom());
        return result;
    }
    [[nodiscard]] std::string statistics_text() const {
        std::ostringstream out;
        ctx.display_theory_statistics(out, ":");
        return out.str();
    }
    [[nodiscard]] theory_port& port() const { return hub->m_port; }

    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    scripted_hub* hub;
};

// --- Hand-over.

TEST_F(door_test, atoms_come_in_one_batch_behind_boolean_propagation) {
    std::vector<literal> const a = atoms(4);
    std::vector<literal> const x = fresh(ctx, 2);
    add(ctx, {~a[2], x[0]});
    add(ctx, {~x[0], ~a[0]});
    add(ctx, {a[0], ~x[0], x[1]});
    add(ctx, {~x[1], a[3]});
    probe.decide(a[2]);
    EXPECT_TRUE(ctx.propagate_constraints());
    ASSERT_EQ(hub->m_batches.size(), 1u);
    EXPECT_EQ(hub->m_batches[0], (batch{a[2], ~a[0], a[3]}));
    EXPECT_EQ(probe.theory_qhead(), probe.trail_size());
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(hub->m_batches.size(), 1u);
}

TEST_F(door_test, an_assignment_is_handed_again_only_after_it_was_undone) {
    std::vector<literal> const a = atoms(3);
    probe.decide(a[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.decide(~a[1]);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.backtrack(1);
    probe.decide(a[1]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(hub->m_batches, (std::vector<batch>{{a[0]}, {~a[1]}, {a[1]}}));
}

// What the theory assigns waits for the next round; what it records for undo hides nothing.
TEST_F(door_test, what_is_assigned_meanwhile_comes_in_the_next_batch) {
    std::vector<literal> const a = atoms(5);
    std::vector<literal> const x = fresh(ctx, 1);
    add(ctx, {~a[1], x[0]});
    add(ctx, {~x[0], a[4]});
    int some_value = 0;
    auto record = [&] {
        port().push_undo(value_trail<int>(some_value));
        ++some_value;
    };
    hub->m_on_assigned = [&](batch const& b) {
        record();
        if (b[0] == a[0]) {
            EXPECT_TRUE(port().assign(a[1], test_kind, lits({a[0]})));
            record();
            EXPECT_TRUE(port().assign(~a[2], test_kind, lits({a[0]})));
            EXPECT_TRUE(port().assign(~a[2], test_kind, lits({a[0]}))); // no second reason is made
        }
        record();
        return static_cast<unsigned>(b.size());
    };
    hub->m_on_propagate = [&] {
        record();
        if (port().value(a[3]) == 0 && port().is_true(a[4])) port().assign(a[3], test_kind, lits({a[4]}));
        record();
    };
    probe.decide(a[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(hub->m_batches, (std::vector<batch>{{a[0]}, {a[1], ~a[2], a[4]}, {a[3]}}));
    EXPECT_EQ(statistics_text(), ":script.batches 3\n:reasons.test-door 3\n");
    EXPECT_GT(some_value, 8);
    probe.backtrack(1);
    EXPECT_EQ(some_value, 0);
}

// The conflict comes from the second scope, so the first stays, with an atom that was not taken.
TEST_F(door_test, atoms_behind_a_conflict_are_not_lost) {
    std::vector<literal> const a = atoms(5);
    std::vector<literal> const x = fresh(ctx, 1);
    probe.decide(a[0]);
    ctx.assign_literal_core(a[1], gexplanation::mk_binary(a[0]));
    ctx.assign_literal_core(x[0], gexplanation::mk_binary(a[0]));
    ctx.assign_literal_core(~a[3], gexplanation::mk_binary(a[0]));
    probe.decide(a[2]);
    hub->m_on_assigned = [&](batch const& b) {
        if (b[0] != a[0]) return static_cast<unsigned>(b.size());
        EXPECT_EQ(b, (batch{a[0], a[1], ~a[3], a[2]}));
        port().conflict(test_kind, lits({a[0], a[2]}));
        return 2u;
    };
    EXPECT_FALSE(ctx.propagate_constraints());
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_EQ(ctx.scope_lvl(), 1u);
    EXPECT_TRUE(ctx.propagate_constraints());
    ASSERT_EQ(hub->m_batches.size(), 2u);
    EXPECT_EQ(hub->m_batches[1], (batch{~a[3], ~a[2]})); // the latter was just learned
}

TEST_F(door_test, atoms_of_an_undone_scope_are_not_handed) {
    std::vector<literal> const a = atoms(2);
    std::vector<literal> const x = fresh(ctx, 2);
    add(ctx, {~a[0], a[1]});
    add(ctx, {~a[1], x[0], x[1]});
    add(ctx, {~a[1], x[0], ~x[1]});
    add(ctx, {~a[1], ~x[0], x[1]});
    add(ctx, {~a[1], ~x[0], ~x[1]});
    probe.decide(x[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.decide(a[0]);
    EXPECT_FALSE(ctx.propagate_constraints()); // by clauses: no atom has been handed yet
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(hub->m_batches, (std::vector<batch>{{~a[1], ~a[0]}}));
}

// The search is stopped in the midst of a batch at the base: what stays assigned is handed once altogether.
TEST_F(door_test, a_stop_in_the_midst) {
    std::vector<literal> const a = atoms(6);
    for (unsigned i = 0; i < 4; ++i) add(ctx, {~a[i], a[i + 1]});
    ctx.add_assumption(a[0]);
    hub->m_on_assigned = [&](batch const& b) {
        ctx.stop_the_search();
        EXPECT_FALSE(port().keep_searching());
        port().conflict(test_kind, lits({a[0], a[2]}));
        EXPECT_EQ(b.size(), 5u);
        return 2u;
    };
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_TRUE(ctx.get_unsat_core().empty());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_FALSE(ctx.inconsistent());
    hub->m_batches.clear();
    hub->m_on_assigned = nullptr;
    EXPECT_EQ(ctx.check(), 1);
    std::size_t num_handed = 0;
    for (batch const& b : hub->m_batches) num_handed += b.size();
    EXPECT_EQ(num_handed, 6u);
}

// Atoms of the base were handed over when the theory threw; they do not come again.
TEST_F(door_test, an_exception_behind_the_hand_over) {
    std::vector<literal> const a = atoms(3);
    port().axiom(a[0]);
    bool throws = true;
    hub->m_on_propagate = [&] {
        if (throws) throw std::runtime_error("unsupported");
    };
    EXPECT_THROW(ctx.check(), std::runtime_error);
    throws = false;
    EXPECT_EQ(ctx.check(), 1);
    ASSERT_GE(hub->m_batches.size(), 2u);
    EXPECT_EQ(hub->m_batches[0], (batch{a[0]}));
    for (std::size_t i = 1; i < hub->m_batches.size(); ++i)
        for (literal l : hub->m_batches[i]) EXPECT_NE(l, a[0]);
}

TEST_F(door_test, without_atoms_the_head_follows) {
    std::vector<literal> const x = fresh(ctx, 3);
    add(ctx, {~x[0], x[1]});
    probe.decide(x[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(probe.theory_qhead(), probe.trail_size());
    // Variables that were assigned before the first atom came.
    literal const a = hub->new_atom();
    probe.decide(a);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(hub->m_batches, (std::vector<batch>{{a}}));
}

// --- Atoms.

TEST_F(door_test, the_theory_fixes_phases) {
    std::vector<literal> const a = atoms(40);
    std::vector<literal> const x = fresh(ctx, 5);
    unsigned num_asked = 0;
    hub->m_on_decide = [&](literal l, bool& phase) {
        EXPECT_EQ(port().value(l), 0);
        ++num_asked;
        if (l.var() % 3 == 0) return false;
        phase = l.var() % 3 == 1;
        return true;
    };
    for (int polarity : {0, 1}) {
        g_decision_polarity = polarity;
        num_asked = 0;
        EXPECT_EQ(ctx.check(), 1);
        EXPECT_EQ(num_asked, 40u); // once for each decision, never for a plain variable
        for (literal l : a) {
            bool const expected = l.var() % 3 == 0 ? polarity == 1 : l.var() % 3 == 1;
            EXPECT_EQ(ctx.get_model().value(l.var()), expected ? 1 : -1);
        }
        for (literal l : x) EXPECT_EQ(ctx.get_model().value(l.var()), polarity == 1 ? 1 : -1);
    }
}

// The variable is ready when init_atom comes: the theory may give it a value at once, and again after each
// backjump.
TEST_F(door_test, init_atom_may_assign) {
    std::vector<literal> const x = fresh(ctx, 4);
    hub->m_on_init = [&](theory_atom* a, bool) {
        if (port().is_true(x[1]))
            port().assign(a->lit(), test_kind, lits({x[1]}));
        else if (port().is_true(x[0]))
            port().assign(~a->lit(), test_kind, lits({x[0]}));
    };
    for (unsigned i = 0; i < 4; ++i) {
        probe.decide(x[i]);
        EXPECT_TRUE(ctx.propagate_constraints());
    }
    literal const a = hub->new_atom();
    std::string const v = std::to_string(a.var());
    EXPECT_EQ(ctx.value(a), 1);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.backtrack(2);
    EXPECT_EQ(ctx.value(a), 1);
    EXPECT_EQ(hub->m_log, "n" + v + "i" + v);
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(a), -1);
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(a), 0);
    EXPECT_EQ(hub->m_log, "n" + v + "i" + v + "i" + v + "i" + v);
    probe.decide(x[2]);
    probe.backtrack(1);
    EXPECT_EQ(hub->m_log, "n" + v + "i" + v + "i" + v + "i" + v); // it has arrived at its base
    EXPECT_EQ(hub->m_batches, (std::vector<batch>{{a}, {a}, {~a}}));
}

TEST_F(door_test, atoms_die_newest_first_when_their_user_scope_is_closed) {
    atoms(1);
    ctx.push();
    std::vector<literal> const a = atoms(2);
    bool made = false;
    hub->m_on_final = [&] {
        if (made) return true;
        made = true;
        hub->new_atom(); // in a search scope: it lives as long as the user scope
        return false;
    };
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(ctx.num_bool_vars(), 7u);
    hub->m_log.clear();
    ctx.pop(1);
    EXPECT_EQ(hub->m_log, "-6-5-4");
    EXPECT_EQ(ctx.num_bool_vars(), 4u);
    EXPECT_EQ(port().atom_of(3), hub->m_atoms[0].get());
    EXPECT_EQ(port().atom_of(0), nullptr);
}

TEST_F(door_test, display) {
    literal const a = hub->new_atom();
    std::ostringstream out;
    ctx.display(out, ~a);
    EXPECT_EQ(out.str(), "(not atom!3)");
    std::ostringstream all;
    ctx.display(all);
    EXPECT_NE(all.str().find("script of 1"), std::string::npos);
}

// --- Reasons.

TEST_F(door_test, a_conflict_without_literals_needs_no_assumption) {
    std::vector<literal> const a = atoms(3);
    for (literal l : a) ctx.add_assumption(l);
    hub->m_on_final = [&] {
        port().conflict(test_kind, svector<literal>());
        return false;
    };
    fresh(ctx, 5); // decisions
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_TRUE(ctx.get_unsat_core().empty());
    EXPECT_FALSE(ctx.inconsistent()); // the next question asks the theory again
    EXPECT_EQ(ctx.check(), -1);
}

// The same for a literal that follows from nothing, deep in the search, against an assumption.
TEST_F(door_test, a_reason_without_literals) {
    std::vector<literal> const a = atoms(3);
    std::vector<literal> const x = fresh(ctx, 6);
    add(ctx, {~a[1], x[5]});
    for (bool is_against : {false, true}) {
        SCOPED_TRACE(is_against);
        ctx.push();
        ctx.add_assumption(a[0]);
        ctx.add_assumption(is_against ? ~x[5] : x[5]);
        hub->m_on_propagate = [&] {
            if (port().scope_lvl() > port().base_lvl() + 2 && !port().is_true(a[1]))
                port().assign(a[1], port().mk_reason(test_kind, nullptr, 0));
        };
        hub->m_on_final = [&] {
            if (port().is_true(a[1])) return true;
            port().assign(a[1], test_kind, svector<literal>());
            return false;
        };
        EXPECT_EQ(ctx.check(), is_against ? -1 : 1);
        if (is_against) {
            ASSERT_EQ(ctx.get_unsat_core().size(), 1u);
            EXPECT_EQ(ctx.get_unsat_core()[0], (~x[5]).index());
        } else {
            EXPECT_EQ(ctx.get_model().value(a[1].var()), 1);
        }
        ctx.pop(1);
    }
}

// A literal that is false already: the conflict is its reason with the literal that stands against it.
TEST_F(door_test, assigning_what_is_false_is_a_conflict) {
    std::vector<literal> const a = atoms(4);
    probe.decide(a[0]);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.decide(~a[1]);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.decide(a[2]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_FALSE(port().assign(a[1], test_kind, lits({a[0]})));
    EXPECT_TRUE(port().inconsistent());
    port().conflict(other_kind, lits({a[2]})); // the first conflict is kept
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_EQ(probe.last_learned().size(), 2u);
    EXPECT_EQ(ctx.value(a[1]), 1);
    EXPECT_EQ(ctx.scope_lvl(), 1u);
}

TEST_F(door_test, reasons_are_counted_by_kind) {
    EXPECT_EQ(statistics_text(), ":script.batches 0\n");
    std::vector<literal> const a = atoms(3);
    probe.decide(a[0]);
    explanation* const why = port().mk_reason(test_kind, lits({a[0]}));
    EXPECT_STREQ(why->get_name(a[1]), "test-door");
    EXPECT_STREQ(ctx.get_name(gexplanation::mk_lazy(why), a[1]), "test-door");
    svector<literal> out;
    why->get_antecedents(a[1], out);
    why->get_antecedents(false_literal, out);
    EXPECT_EQ(out.size(), 2u);
    port().mk_reason(test_kind, nullptr, 0);
    port().mk_reason(other_kind, lits({a[0]}));
    EXPECT_EQ(statistics_text(), ":script.batches 0\n:reasons.test-door 2\n:reasons.test-door-other 1\n");
    EXPECT_EQ(&reason_kind::get(test_kind.index()), &test_kind);
    EXPECT_LT(other_kind.index(), reason_kind::num_kinds());
    ctx.reset();
    EXPECT_EQ(statistics_text(), ":script.batches 0\n");
}

// --- Facts of the base and the order of assignments.

TEST_F(door_test, base_facts_and_timestamps) {
    std::vector<literal> const a = atoms(10);
    port().axiom(a[0]);
    EXPECT_TRUE(port().is_base_fact(a[0]));
    ctx.push();
    EXPECT_TRUE(port().is_base_fact(a[0]));
    port().axiom(~a[1]);
    EXPECT_TRUE(ctx.propagate_constraints());
    ctx.push();
    port().axiom(a[2]);
    EXPECT_TRUE(port().at_base());
    EXPECT_TRUE(port().is_base_fact(a[2]));
    probe.open_scope(); // of assumptions
    EXPECT_EQ(port().base_lvl(), 2u);
    EXPECT_EQ(port().scope_lvl(), 3u);
    EXPECT_TRUE(ctx.assign_literal_core(a[3], gexplanation::mk_decision(a[3])));
    EXPECT_FALSE(port().is_base_fact(a[3]));
    probe.decide(a[4]);
    port().assign(a[5], test_kind, lits({a[4]}));
    EXPECT_LT(port().timestamp(a[3]), port().timestamp(a[4]));
    EXPECT_LT(port().timestamp(a[4]), port().timestamp(a[5]));
    EXPECT_LT(port().timestamp(a[2]), port().timestamp(a[3]));
    EXPECT_FALSE(port().is_base_fact(a[5]));
    port().axiom(a[5]); // what was derived is a fact, after all
    EXPECT_TRUE(port().is_base_fact(a[5]));
    EXPECT_FALSE(port().is_base_fact(a[4]));
    port().axiom(~a[6]); // a fact in the midst of the search
    EXPECT_TRUE(port().is_base_fact(~a[6]));
    EXPECT_TRUE(port().is_base_fact(a[6])); // asked by the variable
    for (unsigned i = 0; i < 3; ++i) EXPECT_TRUE(port().is_base_fact(a[i])) << i;
    EXPECT_TRUE(port().is_base_fact(true_literal));
    probe.backtrack(1);
    EXPECT_TRUE(port().is_base_fact(a[5])); // asserted again
    EXPECT_TRUE(port().is_base_fact(~a[6]));
    EXPECT_EQ(port().value(a[4]), 0);
    probe.backtrack(1);
    EXPECT_TRUE(port().is_base_fact(a[6]));
    EXPECT_EQ(port().value(a[6]), -1);
    ctx.pop(1);
    EXPECT_EQ(port().value(a[5]), 0);
    EXPECT_EQ(port().value(a[6]), 0);
    EXPECT_TRUE(port().is_base_fact(a[1]));
}

// The first decision of a question without assumptions, right behind the last fact of the base.
TEST_F(door_test, the_first_decision_is_no_base_fact) {
    std::vector<literal> const a = atoms(3);
    for (unsigned round = 0; round < 3; ++round) {
        port().axiom(a[round]);
        EXPECT_TRUE(ctx.propagate_constraints());
        std::vector<literal> const b = atoms(1);
        probe.decide(b[0]);
        EXPECT_FALSE(port().is_base_fact(b[0]));
        EXPECT_TRUE(port().is_base_fact(a[round]));
        probe.backtrack(1);
        ctx.push();
        EXPECT_TRUE(port().is_base_fact(a[round]));
        probe.decide(b[0]);
        EXPECT_FALSE(port().is_base_fact(b[0]));
        EXPECT_TRUE(port().is_base_fact(a[round]));
        probe.backtrack(1);
    }
}

// --- Clauses and gates in the midst of the search.

TEST_F(door_test, axioms_and_lemmas_in_the_midst_of_the_search) {
    std::vector<literal> const a = atoms(12);
    for (unsigned i = 0; i < 6; ++i) {
        probe.decide(a[i]);
        EXPECT_TRUE(ctx.propagate_constraints());
    }
    port().axiom(~a[0], a[6]);                // unit already in scope 1
    port().axiom(~a[1], ~a[0], a[7]);         // in scope 2
    port().lemma(lits({~a[2], ~a[1], a[8]})); // in scope 3
    port().axiom(lits({a[9], a[10], a[11]}));
    EXPECT_FALSE(port().inconsistent());
    EXPECT_TRUE(ctx.propagate_constraints());
    for (unsigned i = 6; i < 9; ++i) EXPECT_EQ(ctx.value(a[i]), 1) << i;
    probe.backtrack(3);
    for (unsigned i = 6; i < 9; ++i) EXPECT_EQ(ctx.value(a[i]), 1) << i;
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(a[7]), 1);
    EXPECT_EQ(ctx.value(a[8]), 0);
    probe.backtrack(1);
    EXPECT_EQ(ctx.value(a[6]), 1);
    EXPECT_EQ(ctx.value(a[7]), 0);
    port().lemma(lits({~a[0]})); // false: the conflict is resolved at the base
    EXPECT_TRUE(port().inconsistent());
    EXPECT_TRUE(probe.resolve_conflict());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_EQ(ctx.value(a[0]), -1);
    EXPECT_EQ(ctx.check(), 1);
}

// A final check that refuses each assignment by a lemma: all are enumerated.
TEST_F(door_test, lemmas_of_final_checks_enumerate_the_models) {
    g_debug_level = 2;
    std::vector<literal> const a = atoms(6);
    add(ctx, {a[0], a[1], a[2]});
    unsigned num_models = 0;
    hub->m_on_final = [&] {
        ++num_models;
        svector<literal> other;
        for (literal l : a) other.push_back(port().is_true(l) ? ~l : l);
        if (num_models % 2 == 0)
            port().lemma(other);
        else
            port().axiom(other);
        return false;
    };
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_EQ(num_models, 7u * 8u);
}

TEST_F(door_test, gates_in_the_midst_of_the_search) {
    std::vector<literal> const a = atoms(4);
    for (unsigned i = 0; i < 3; ++i) {
        probe.decide(a[i]);
        EXPECT_TRUE(ctx.propagate_constraints());
    }
    unsigned const before = ctx.num_bool_vars();
    literal const both = port().mk_and(a[0], a[3]);
    literal const same = port().mk_iff(a[1], a[3]);
    literal const differ = port().mk_xor(a[1], a[3]);
    literal const choice = port().mk_ite(a[2], a[3], ~a[0]);
    EXPECT_EQ(ctx.num_bool_vars(), before + 3);
    EXPECT_EQ(differ, ~same);
    EXPECT_EQ(port().mk_and(a[3], a[0]), both);
    EXPECT_EQ(port().mk_or(a[0], true_literal), true_literal);
    EXPECT_EQ(port().mk_or(a[0], false_literal), a[0]); // its value counts at the base only
    EXPECT_EQ(port().mk_or(lits({~a[0], ~a[3]})), ~both);
    EXPECT_TRUE(ctx.propagate_constraints());
    probe.decide(a[3]);
    EXPECT_TRUE(ctx.propagate_constraints());
    for (literal l : {both, same, choice}) EXPECT_EQ(ctx.value(l), 1);
    probe.backtrack(4);
    probe.decide(~a[3]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(both), -1);
    probe.decide(a[1]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(differ), 1);
}

// --- Final checks.

// What a final check added has to be looked at, whatever it answers.
TEST_F(door_test, a_final_check_that_accepts_and_adds) {
    std::vector<literal> const a = atoms(3);
    unsigned num_checks = 0;
    literal late = null_literal;
    hub->m_on_final = [&] {
        ++num_checks;
        if (num_checks == 1) late = hub->new_atom();
        if (num_checks == 2) port().axiom(port().is_true(a[0]) ? ~a[0] : a[0]); // a conflict
        if (num_checks == 3) hub->m_queued = true;
        return true;
    };
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(num_checks, 4u);
    EXPECT_NE(ctx.get_model().value(late.var()), 0);
    EXPECT_EQ(ctx.get_model().value(a[0].var()), -1);
}

// Nothing that the theory queued before its conflict may run behind the backjump.
TEST_F(door_test, a_conflict_of_a_final_check_drops_what_is_queued) {
    std::vector<literal> const a = atoms(2);
    bool refused = false;
    hub->m_on_final = [&] {
        if (refused) return true;
        refused = true;
        hub->m_queued = true;
        port().conflict(test_kind, lits({a[0], a[1]}));
        return false;
    };
    hub->m_on_reanalyze = [&] { EXPECT_FALSE(hub->m_queued); };
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(door_test, a_pop_drops_what_is_queued_in_the_scope) {
    ctx.push();
    hub->m_queued = true;
    hub->m_on_reanalyze = [&] { EXPECT_FALSE(hub->m_queued); };
    ctx.pop(1);
    ctx.push();
    ctx.push();
    unsigned num_queued = 0;
    hub->m_on_reanalyze = [&] {
        EXPECT_FALSE(hub->m_queued);
        hub->m_queued = true;
        ++num_queued;
    };
    ctx.pop(2);
    EXPECT_EQ(num_queued, 2u);
    EXPECT_FALSE(hub->m_queued); // what was queued last has run
}

// The exception is told when all scopes are closed.
TEST_F(door_test, a_theory_that_throws_while_scopes_are_closed) {
    for (unsigned i = 0; i < 4; ++i) ctx.push();
    hub->m_on_reanalyze = [&] { hub->m_queued = true; };
    hub->m_on_propagate = [&] { throw std::runtime_error("unsupported"); };
    EXPECT_THROW(ctx.pop(3), std::runtime_error);
    EXPECT_EQ(ctx.base_lvl(), 1u);
    EXPECT_EQ(ctx.scope_lvl(), 1u);
    hub->m_on_propagate = nullptr;
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(door_test, a_type_error_from_a_theory) {
    ctx.push();
    atoms(3);
    hub->m_on_assigned = [&](batch const& b) {
        port().type_error("cannot be compared");
        return static_cast<unsigned>(b.size());
    };
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_EQ(ctx.get_type_incorrect_explanation(), "cannot be compared");
    ctx.pop(1);
    EXPECT_TRUE(ctx.type_correct());
}

// --- Incompleteness.

TEST_F(door_test, incompleteness_of_a_search_scope_goes_with_it) {
    std::vector<literal> const a = atoms(3);
    bool refuse = true;
    // The first assignment is beyond the theory, and wrong for another reason; the second is a model.
    hub->m_on_final = [&] {
        if (!refuse) return true;
        refuse = false;
        port().set_incomplete("products");
        port().conflict(test_kind, lits({a[0]}));
        return false;
    };
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_FALSE(ctx.incomplete());
    EXPECT_EQ(ctx.get_incompleteness_reason(), nullptr);
}

TEST_F(door_test, an_answer_that_is_unknown_says_why) {
    std::vector<literal> const a = atoms(3);
    hub->m_on_final = [&] {
        port().set_incomplete("products");
        port().set_incomplete("quantifiers");
        return true;
    };
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_TRUE(ctx.get_model().is_valid()); // for whoever wants to look at it
    EXPECT_TRUE(ctx.incomplete());
    EXPECT_STREQ(ctx.get_incompleteness_reason(), "products");
    hub->m_on_final = nullptr;
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_FALSE(ctx.incomplete());
    EXPECT_EQ(ctx.get_incompleteness_reason(), nullptr);
    // A refutation holds, whatever the theory cannot do.
    hub->m_on_final = [&] {
        port().set_incomplete("products");
        port().conflict(test_kind, svector<literal>());
        return false;
    };
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_EQ(ctx.get_incompleteness_reason(), nullptr);
}

TEST_F(door_test, incompleteness_of_a_user_scope) {
    ctx.push();
    port().set_incomplete("products");
    ctx.push();
    ctx.pop(1);
    EXPECT_TRUE(ctx.incomplete());
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_STREQ(ctx.get_incompleteness_reason(), "products");
    ctx.push();
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_STREQ(ctx.get_incompleteness_reason(), "products");
    ctx.pop(2);
    EXPECT_FALSE(ctx.incomplete());
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(ctx.get_incompleteness_reason(), nullptr);
    port().set_incomplete("quantifiers"); // without any scope: for good
    ctx.push();
    ctx.pop(1);
    ctx.pop(1);
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_STREQ(ctx.get_incompleteness_reason(), "quantifiers");
    ctx.reset();
    EXPECT_EQ(ctx.check(), 1);
}

TEST_F(door_test, an_incomplete_model_of_least_cost_is_unknown) {
    std::vector<literal> const a = atoms(2);
    add(ctx, {a[0], a[1]});
    ctx.attach_weight(a[0].var(), 2);
    ctx.attach_weight(a[1].var(), 3);
    hub->m_on_final = [&] {
        port().set_incomplete("products");
        return true;
    };
    EXPECT_EQ(ctx.max_sat(), 0);
    EXPECT_STREQ(ctx.get_incompleteness_reason(), "products");
    hub->m_on_final = nullptr;
    EXPECT_EQ(ctx.max_sat(), 1);
    EXPECT_EQ(ctx.get_incompleteness_reason(), nullptr);
}

} // namespace
