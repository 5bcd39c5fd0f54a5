// Searches that end early: by a stop, a type error or an exception. The context goes on.
#include "search/context.h"

#include "support/clause_theory.h"
#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"
#include "support/test_constraints.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace vexor;
using namespace vexor_test;

class stop_test : public testing::Test {
protected:
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
};

TEST_F(stop_test, without_effect_while_no_search_runs) {
    ctx.stop_the_search();
    EXPECT_FALSE(ctx.search_stopped());
    add_pigeonhole(ctx, 4);
    EXPECT_EQ(ctx.check(), -1);
}

TEST_F(stop_test, from_the_progress_callback) {
    add_pigeonhole(ctx, 6);
    unsigned num_calls = 0;
    ctx.set_progress_callback(
        [&](context& c) {
            if (++num_calls == 20) c.stop_the_search();
        },
        1);
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_EQ(num_calls, 20u);
    EXPECT_TRUE(ctx.type_correct());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    EXPECT_FALSE(ctx.inconsistent());
    EXPECT_GT(probe.learned_clauses().size(), 5u); // the clauses stay
    ctx.check_invariant();
    std::uint64_t const conflicts = ctx.get_statistics().m_num_conflicts;
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_GT(ctx.get_statistics().m_num_conflicts, conflicts);
}

TEST_F(stop_test, by_the_search_callback) {
    static unsigned num_calls;
    num_calls = 0;
    g_clause_deletion_frequency = 10;
    add_pigeonhole(ctx, 6);
    ctx.set_search_callback([](context*) { return ++num_calls % 3 != 0; });
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_EQ(num_calls, 3u);
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_EQ(num_calls, 6u);
    EXPECT_TRUE(ctx.type_correct());
    ctx.remove_search_callback();
    EXPECT_EQ(ctx.check(), -1);
    EXPECT_EQ(num_calls, 6u);
}

TEST_F(stop_test, the_search_callback_belongs_to_the_deletion_schedule) {
    g_clause_deletion_frequency = 5;
    g_delete_irrelevant_learned_clauses = false;
    add_pigeonhole(ctx, 5);
    ctx.set_search_callback([](context*) -> bool { throw std::logic_error("must not be called"); });
    EXPECT_EQ(ctx.check(), -1);
}

TEST_F(stop_test, from_the_search_callback_itself) {
    g_clause_deletion_frequency = 10;
    add_pigeonhole(ctx, 6);
    ctx.set_search_callback([](context* c) {
        c->stop_the_search();
        return true;
    });
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_TRUE(ctx.search_stopped());
    EXPECT_TRUE(ctx.type_correct());
}

TEST_F(stop_test, from_another_thread) {
    add_pigeonhole(ctx, 11); // hours
    std::atomic<bool> done{false};
    std::thread stopper([&] {
        while (!done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            ctx.stop_the_search();
        }
    });
    for (unsigned i = 0; i < 3; ++i) EXPECT_EQ(ctx.check(), 0);
    done = true;
    stopper.join();
    ctx.check_invariant();
    ctx.reset();
    add_pigeonhole(ctx, 4);
    EXPECT_EQ(ctx.check(), -1);
}

// At each possible moment of one search; the answers afterwards are right, and the atoms are told what they
// are due.
TEST_F(stop_test, at_every_conflict) {
    for (unsigned at = 1; at < 30; ++at) {
        context k;
        auto* theory = new clause_theory(k, at);
        k.set_theory_hub(std::unique_ptr<theory_hub>(theory));
        std::vector<literal> x;
        for (unsigned i = 0; i < 30; ++i) x.push_back(theory->create_atom());
        add_random_3sat(k, x, 120, 1000 + at);
        context plain;
        add_random_3sat(plain, fresh(plain, 30), 120, 1000 + at);
        int const expected = plain.check();
        k.add_assumption(x[0]);
        k.add_assumption(~x[0]);
        k.add_assumption(k.create_fresh_bool_var());
        unsigned countdown = at;
        k.set_progress_callback(
            [&](context& c) {
                if (--countdown == 0) c.stop_the_search();
            },
            1);
        if (k.check() != 0) countdown = 1000;
        EXPECT_EQ(k.scope_lvl(), 0u);
        EXPECT_FALSE(theory->m_broken);
        k.check_invariant();
        k.add_assumption(x[0]);
        int const first = k.check();
        k.add_assumption(~x[0]);
        int const second = k.check();
        EXPECT_EQ(expected == 1, first == 1 || second == 1);
        EXPECT_NE(first, 0);
        EXPECT_NE(second, 0);
        EXPECT_FALSE(theory->m_broken);
    }
}

// A literal that stays assigned keeps its place in the queue of atoms when the search is stopped.
TEST_F(stop_test, atoms_that_wait_are_told_later) {
    auto* theory = new clause_theory(ctx, 1);
    ctx.set_theory_hub(std::unique_ptr<theory_hub>(theory));
    theory->m_moods = clause_theory::silent;
    std::vector<literal> x;
    for (unsigned i = 0; i < 4; ++i) x.push_back(theory->create_atom());
    g_decision_polarity = 1;
    add(ctx, {~x[0], x[1], x[2]});
    add(ctx, {~x[0], ~x[1], x[2]});
    add(ctx, {~x[0], x[1], ~x[2]});
    add(ctx, {~x[0], ~x[1], ~x[2]}); // not x0, learned as a unit
    add(ctx, {x[0], x[3]});
    ctx.set_progress_callback([](context& c) { c.stop_the_search(); }, 1);
    EXPECT_EQ(ctx.check(), 0);
    ctx.set_progress_callback(nullptr, 1);
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_FALSE(theory->m_broken); // the final check looked at every atom
    EXPECT_EQ(ctx.get_model().value(x[0].var()), -1);
}

TEST_F(stop_test, a_type_error_during_the_search) {
    struct erring_hub : theory_hub {
        explicit erring_hub(context& ctx)
            : m_ctx(ctx) {}
        [[nodiscard]] bool final_check() override {
            m_ctx.set_type_error("cannot be compared");
            return false;
        }
        context& m_ctx;
    };
    ctx.set_theory_hub(std::make_unique<erring_hub>(ctx));
    std::vector<literal> const x = fresh(ctx, 3);
    ctx.push();
    add(ctx, {x[0], x[1]});
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_EQ(ctx.scope_lvl(), 1u);
    EXPECT_FALSE(ctx.type_correct());
    EXPECT_EQ(ctx.check(), 0);
    EXPECT_EQ(ctx.get_type_incorrect_explanation(), "cannot be compared");
    ctx.pop(1);
    EXPECT_TRUE(ctx.type_correct());
}

// Throws from one of the two seams that may, at its n-th call.
class throwing_hub : public theory_hub {
public:
    enum seam { s_propagate, s_final_check, s_none };
    explicit throwing_hub(seam at)
        : m_at(at) {}
    void push() noexcept override { ++m_depth; }
    void pop() noexcept override { --m_depth; }
    void propagate() override { maybe(s_propagate); }
    [[nodiscard]] bool final_check() override {
        maybe(s_final_check);
        return true;
    }
    void maybe(seam s) {
        if (s != m_at || m_countdown == 0 || --m_countdown != 0) return;
        throw std::runtime_error("seam " + std::to_string(s));
    }
    seam m_at;
    unsigned m_countdown = 0; // 0 never
    int m_depth = 0;
};

TEST_F(stop_test, exceptions_from_each_seam_of_the_theories) {
    g_debug_level = 2;
    unsigned num_thrown[throwing_hub::s_none] = {};
    for (int at = 0; at < throwing_hub::s_none; ++at) {
        for (unsigned i = 0; i < 160; ++i) {
            unsigned const n = at == throwing_hub::s_final_check ? 1 : 1 + i / 8;
            SCOPED_TRACE("seam " + std::to_string(at) + " call " + std::to_string(n));
            context k;
            auto* hub = new throwing_hub(static_cast<throwing_hub::seam>(at));
            k.set_theory_hub(std::unique_ptr<theory_hub>(hub));
            std::vector<literal> const x = fresh(k, 30);
            add_random_3sat(k, x, 115, i);
            k.push();
            k.add_assumption(x[3]);
            k.add_assumption(~x[5]);
            hub->m_countdown = n;
            context plain;
            std::vector<literal> const y = fresh(plain, 30);
            add_random_3sat(plain, y, 115, i);
            plain.add_assumption(y[3]);
            plain.add_assumption(~y[5]);
            int const expected = plain.check();
            try {
                EXPECT_EQ(k.check(), expected);
            } catch (std::runtime_error const&) {
                ++num_thrown[at];
                EXPECT_FALSE(k.get_model().is_valid());
            }
            hub->m_countdown = 0;
            EXPECT_EQ(k.scope_lvl(), 1u);
            EXPECT_EQ(hub->m_depth, 1);
            k.check_invariant();
            EXPECT_EQ(k.check(), expected);
            k.pop(1);
            EXPECT_EQ(hub->m_depth, 0);
        }
    }
    EXPECT_GT(num_thrown[throwing_hub::s_propagate], 60u);
    EXPECT_GT(num_thrown[throwing_hub::s_final_check], 60u);
}

// Without a scope to undo, what waits in the theories belongs to the base and must not be dropped.
TEST_F(stop_test, an_exception_at_the_base_drops_no_base_facts) {
    struct queueing_hub : theory_hub {
        explicit queueing_hub(context& ctx)
            : m_ctx(ctx) {}
        [[nodiscard]] bool can_propagate() const noexcept override { return m_queued; }
        void propagate() override {
            if (!m_queued) return;
            if (m_throw) {
                m_throw = false;
                throw std::runtime_error("once");
            }
            m_queued = false;
            m_ctx.assert_literal(m_fact);
        }
        void reset_propagation_queue() noexcept override { m_queued = false; }
        context& m_ctx;
        literal m_fact;
        bool m_queued = true;
        bool m_throw = true;
    };
    auto* hub = new queueing_hub(ctx);
    ctx.set_theory_hub(std::unique_ptr<theory_hub>(hub));
    std::vector<literal> const x = fresh(ctx, 3);
    hub->m_fact = x[0];
    add(ctx, {~x[0], x[1]});
    EXPECT_THROW(ctx.check(), std::runtime_error);
    EXPECT_EQ(ctx.check(), 1);
    EXPECT_EQ(ctx.value(x[0]), 1);
    EXPECT_EQ(ctx.value(x[1]), 1);
}

TEST_F(stop_test, exceptions_from_callbacks) {
    g_clause_deletion_frequency = 7;
    add_pigeonhole(ctx, 5);
    ctx.set_search_callback([](context*) -> bool { throw std::runtime_error("callback"); });
    EXPECT_THROW(ctx.check(), std::runtime_error);
    ctx.remove_search_callback();
    EXPECT_EQ(ctx.scope_lvl(), 0u);
    ctx.check_invariant();
    ctx.set_progress_callback([](context&) { throw std::runtime_error("progress"); }, 1);
    EXPECT_THROW(ctx.check(), std::runtime_error);
    ctx.set_progress_callback(nullptr, 1);
    ctx.check_invariant();
    ctx.stop_the_search(); // no search runs any more
    EXPECT_FALSE(ctx.search_stopped());
    EXPECT_EQ(ctx.check(), -1);
}

// A stop that comes together with a refutation: unknown, so there is no core.
TEST_F(stop_test, a_stopped_refutation_has_no_core) {
    struct stopping_constraint : at_most_constraint {
        using at_most_constraint::at_most_constraint;
        void get_antecedents(literal l, svector<literal>& out) noexcept override {
            m_stopped->stop_the_search();
            at_most_constraint::get_antecedents(l, out);
        }
        context* m_stopped = nullptr;
    };
    std::vector<literal> const x = fresh(ctx, 4);
    auto* const stopping = new stopping_constraint(x, 2);
    stopping->m_stopped = &ctx;
    ctx.assert_constraint(stopping);
    add(ctx, {~x[3], x[2]});
    ctx.add_assumption(x[0]);
    ctx.add_assumption(x[1]);
    ctx.add_assumption(x[3]);
    int const answer = ctx.check();
    EXPECT_EQ(answer, 0);
    EXPECT_TRUE(ctx.get_unsat_core().empty());
    EXPECT_EQ(ctx.scope_lvl(), 0u);
}

} // namespace
