// Problems too large for brute force, solved in two ways that must agree: as clauses alone, and with a part
// of the clauses told by a theory at any moment and in any form and with native constraints. Hundreds of
// backjumps per problem meet lemmas, units, variables and constraints made above the scope that they belong
// to.
#include "support/brute_force.h"
#include "support/clause_theory.h"
#include "support/search_session.h"
#include "support/search_settings_guard.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace {

using namespace vexor;
using namespace vexor_test;

// A problem too large for brute force, kept as plain numbers: clauses, exclusive ors and at-most constraints.
struct large_problem {
    unsigned m_num_vars = 0;
    std::vector<std::vector<int>> m_clauses;
    std::vector<std::vector<int>> m_parities;                     // the first number is the right side
    std::vector<std::pair<std::vector<int>, unsigned>> m_at_most; // literals, bound

    [[nodiscard]] bool holds(std::vector<bool> const& value) const {
        auto v = [&](int l) { return value[static_cast<unsigned>(std::abs(l))] == (l > 0); };
        for (auto const& c : m_clauses)
            if (std::none_of(c.begin(), c.end(), v)) return false;
        for (auto const& p : m_parities) {
            bool x = false;
            for (unsigned i = 1; i < p.size(); ++i) x ^= v(p[i]);
            if (x != (p[0] != 0)) return false;
        }
        for (auto const& [lits, k] : m_at_most)
            if (static_cast<unsigned>(std::count_if(lits.begin(), lits.end(), v)) > k) return false;
        return true;
    }
};

std::vector<int> distinct_vars(random_stream& r, unsigned n, unsigned num_vars) {
    std::vector<int> result;
    while (result.size() < n) {
        int const v = 1 + static_cast<int>(r.below(num_vars));
        if (std::find(result.begin(), result.end(), v) == result.end()) result.push_back(v);
    }
    return result;
}

large_problem random_large_problem(random_stream& r, bool with_constraints) {
    large_problem p;
    p.m_num_vars = 20 + r.below(35);
    unsigned const ratio = with_constraints ? 30 + r.below(10) : 38 + r.below(10);
    for (unsigned i = 0; i < p.m_num_vars * ratio / 10; ++i) {
        std::vector<int> c = distinct_vars(r, 3, p.m_num_vars);
        for (int& l : c)
            if (r.chance(50)) l = -l;
        p.m_clauses.push_back(c);
    }
    if (!with_constraints) return p;
    for (unsigned i = 0; i < p.m_num_vars / 8; ++i) {
        std::vector<int> c = distinct_vars(r, 2 + r.below(4), p.m_num_vars);
        c.insert(c.begin(), r.chance(50) ? 1 : 0);
        p.m_parities.push_back(c);
    }
    for (unsigned i = 0; i < p.m_num_vars / 12; ++i) {
        std::vector<int> c = distinct_vars(r, 3 + r.below(6), p.m_num_vars);
        for (int& l : c)
            if (r.chance(50)) l = -l;
        p.m_at_most.emplace_back(c, 1 + r.below(static_cast<unsigned>(c.size()) - 1));
    }
    return p;
}

// The constraints as clauses: all assignments of their variables that break them are forbidden.
void forbid(context& ctx, std::vector<literal> const& lits, std::function<bool(bits)> const& allowed) {
    for (bits a = 0; a < (bits(1) << lits.size()); ++a) {
        if (allowed(a)) continue;
        svector<literal> c;
        for (unsigned i = 0; i < lits.size(); ++i) c.push_back((a >> i & 1) != 0 ? ~lits[i] : lits[i]);
        ctx.create_clause_core(c, clause_kind::problem);
    }
}

// Solves p with everything as clauses (theory null), or with clauses split between the search and the theory
// and native constraints. Checks the model.
int solve_large(large_problem const& p, context& ctx, clause_theory* theory, random_stream& r) {
    std::vector<literal> vars(1, true_literal);
    for (unsigned i = 0; i < p.m_num_vars; ++i)
        vars.push_back(theory != nullptr ? theory->create_atom() : ctx.create_fresh_bool_var());
    auto lit = [&](int l) {
        return l > 0 ? vars[static_cast<unsigned>(l)] : ~vars[static_cast<unsigned>(-l)];
    };
    unsigned const hidden_share = r.below(101);
    for (auto const& c : p.m_clauses) {
        std::vector<literal> lits;
        for (int l : c) lits.push_back(lit(l));
        if (theory != nullptr && r.chance(hidden_share)) {
            theory->add_hidden(lits);
            continue;
        }
        svector<literal> input;
        for (literal l : lits) input.push_back(l);
        ctx.create_clause_core(input, clause_kind::problem);
    }
    for (auto const& x : p.m_parities) {
        std::vector<int> on;
        std::vector<literal> lits;
        for (unsigned i = 1; i < x.size(); ++i) {
            on.push_back(lit(x[i]).var());
            lits.push_back(lit(x[i]));
        }
        if (theory != nullptr)
            ctx.assert_constraint(new parity_constraint(on, x[0] != 0));
        else
            forbid(ctx, lits, [&](bits a) { return (std::popcount(a) & 1) == x[0]; });
    }
    for (auto const& [x, k] : p.m_at_most) {
        std::vector<literal> lits;
        for (int l : x) lits.push_back(lit(l));
        if (theory != nullptr)
            ctx.assert_constraint(new at_most_constraint(lits, k));
        else
            forbid(ctx, lits,
                   [bound = k](bits a) { return static_cast<unsigned>(std::popcount(a)) <= bound; });
    }
    int const answer = ctx.check();
    if (answer == 1) {
        std::vector<bool> value(1, true);
        for (unsigned i = 1; i < vars.size(); ++i) value.push_back(ctx.get_model().value(vars[i].var()) > 0);
        EXPECT_TRUE(p.holds(value)) << "a model that is none";
    }
    return answer;
}

// The same problem twice: as clauses alone, and told by a theory in every way and moment.
void solve_in_two_ways(unsigned num_problems, std::uint64_t first, session_figures& f) {
    for (std::uint64_t seed = first_seed(first); num_problems > 0; --num_problems, ++seed) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
        random_stream r(seed);
        large_problem const p = random_large_problem(r, r.chance(60));
        g_debug_level = 1;
        context plain;
        int const expected = solve_large(p, plain, nullptr, r);
        g_debug_level = seed % 10 == 0 ? 3 : 1;
        context ctx;
        auto* theory = new clause_theory(ctx, seed);
        ctx.set_theory_hub(std::unique_ptr<theory_hub>(theory));
        theory->m_moods = clause_theory::random_moods(r);
        theory->m_extra_budget = 500;
        ASSERT_EQ(solve_large(p, ctx, theory, r), expected);
        ASSERT_FALSE(theory->m_broken);
        ctx.check_invariant();
        (expected == 1 ? f.m_num_sat : f.m_num_unsat) += 1;
        f.m_num_conflicts += ctx.get_statistics().m_num_conflicts;
        f.m_num_restarts += ctx.get_statistics().m_num_restarts;
        f.m_num_deleted += ctx.get_statistics().m_num_deleted_clauses;
        f.m_num_lazy += theory->m_num_lazy + theory->m_num_conflicts;
        f.m_num_lemmas += theory->m_num_lemmas;
        f.m_num_reinits += theory->m_num_reinits;
    }
}

TEST(large_problems, two_ways) {
    search_settings_guard const guard;
    session_figures f;
    solve_in_two_ways(rounds(200), 500000, f);
    show("large_problems", f);
    EXPECT_GT(f.m_num_sat, 20u);
    EXPECT_GT(f.m_num_unsat, 20u);
    EXPECT_GT(f.m_num_reinits, 100u);
}

} // namespace
