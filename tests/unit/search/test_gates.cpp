// Gates: truth tables, sharing, canonical forms.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/search_helpers.h"
#include "support/search_settings_guard.h"

#include <functional>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using namespace vexor;
using namespace vexor_test;

// Value of l when the three variables have the bits of a.
bool eval(literal l, std::vector<literal> const& vars, unsigned a) {
    if (l.var() == 0) return l == true_literal;
    for (unsigned i = 0; i < vars.size(); ++i)
        if (vars[i].var() == l.var()) return ((a >> i) & 1) != (l.sign() ? 1u : 0u);
    ADD_FAILURE();
    return false;
}

// g must have the value f(a) for each assignment a of vars that agrees with what holds at the base.
void expect_function(context& ctx, literal g, std::vector<literal> const& vars,
                     std::function<bool(unsigned)> const& f) {
    for (unsigned a = 0; a < (1u << vars.size()); ++a) {
        bool possible = true;
        for (unsigned i = 0; i < vars.size(); ++i) {
            int const v = ctx.value(vars[i]);
            possible &= v == 0 || (v > 0) == (((a >> i) & 1) != 0);
        }
        if (!possible) continue;
        ctx.push();
        for (unsigned i = 0; i < vars.size(); ++i)
            ctx.assert_literal(((a >> i) & 1) != 0 ? vars[i] : ~vars[i]);
        EXPECT_TRUE(ctx.propagate_constraints());
        EXPECT_EQ(ctx.value(g), f(a) ? 1 : -1) << "assignment " << a; // propagation alone decides a gate
        ctx.pop(1);
    }
}

enum class level { base, assigned_at_base, above, assigned_above };

// All arguments out of constants and three variables in both signs.
class gates_test : public testing::TestWithParam<level> {
protected:
    void for_all_arguments(
        unsigned num_args,
        std::function<void(context&, std::vector<literal> const&, std::vector<literal> const&)> const& test) {
        unsigned const num_choices = 8;
        unsigned total = 1;
        for (unsigned i = 0; i < num_args; ++i) total *= num_choices;
        for (unsigned code = 0; code < total; ++code) {
            context ctx;
            context_probe probe(ctx);
            std::vector<literal> const vars = fresh(ctx, 3);
            literal const other = ctx.create_fresh_bool_var();
            level const where = GetParam();
            if (where == level::assigned_at_base) ctx.assert_literal(vars[0]);
            if (where == level::above || where == level::assigned_above) {
                probe.decide(other);
                ASSERT_TRUE(ctx.propagate_constraints());
            }
            if (where == level::assigned_above) {
                probe.decide(~vars[1]);
                ASSERT_TRUE(ctx.propagate_constraints());
                ctx.assign_literal_core(vars[0], gexplanation::mk_binary(other));
                ASSERT_TRUE(ctx.propagate_constraints());
            }
            literal const choices[num_choices] = {true_literal, false_literal, vars[0], ~vars[0],
                                                  vars[1],      ~vars[1],      vars[2], ~vars[2]};
            std::vector<literal> args;
            std::ostringstream text;
            for (unsigned i = 0, c = code; i < num_args; ++i, c /= num_choices) {
                args.push_back(choices[c % num_choices]);
                text << args.back() << " ";
            }
            SCOPED_TRACE(text.str());
            test(ctx, vars, args);
            if (testing::Test::HasFailure()) return;
        }
    }
    // Back to the base, where the truth table is checked: the gate stays valid.
    static void leave(context& ctx) {
        EXPECT_TRUE(ctx.propagate_constraints());
        if (ctx.scope_lvl() != 0) context_probe(ctx).backtrack(ctx.scope_lvl());
        EXPECT_FALSE(ctx.inconsistent());
        ctx.check_invariant();
    }
};

TEST_P(gates_test, or_of_two_and_three) {
    for (unsigned n = 2; n <= 3; ++n) {
        for_all_arguments(
            n, [n](context& ctx, std::vector<literal> const& vars, std::vector<literal> const& a) {
                literal const g = n == 2 ? ctx.create_or(a[0], a[1]) : ctx.create_or(a[0], a[1], a[2]);
                literal const again = n == 2 ? ctx.create_or(a[1], a[0]) : ctx.create_or(a[2], a[0], a[1]);
                EXPECT_EQ(g, again);
                leave(ctx);
                expect_function(ctx, g, vars, [&](unsigned bits) {
                    bool v = false;
                    for (literal l : a) v |= eval(l, vars, bits);
                    return v;
                });
            });
    }
}

TEST_P(gates_test, iff) {
    for_all_arguments(2, [](context& ctx, std::vector<literal> const& vars, std::vector<literal> const& a) {
        literal const g = ctx.create_iff(a[0], a[1]);
        EXPECT_EQ(g, ctx.create_iff(a[1], a[0]));
        leave(ctx);
        expect_function(ctx, g, vars,
                        [&](unsigned bits) { return eval(a[0], vars, bits) == eval(a[1], vars, bits); });
    });
}

TEST_P(gates_test, ite) {
    for_all_arguments(3, [](context& ctx, std::vector<literal> const& vars, std::vector<literal> const& a) {
        literal const g = ctx.create_ite(a[0], a[1], a[2]);
        EXPECT_EQ(g, ctx.create_ite(~a[0], a[2], a[1]));
        leave(ctx);
        expect_function(ctx, g, vars, [&](unsigned bits) {
            return eval(a[0], vars, bits) ? eval(a[1], vars, bits) : eval(a[2], vars, bits);
        });
    });
}

INSTANTIATE_TEST_SUITE_P(levels, gates_test,
                         testing::Values(level::base, level::assigned_at_base, level::above,
                                         level::assigned_above));

class gates_edge_test : public testing::Test {
protected:
    gates_edge_test() {
        g_debug_level = 3;
        x = fresh(ctx, 6);
    }
    search_settings_guard guard;
    context ctx;
    context_probe probe{ctx};
    std::vector<literal> x;
};

TEST_F(gates_edge_test, folds_leave_the_variable_count_alone) {
    unsigned const n = ctx.num_bool_vars();
    EXPECT_EQ(ctx.create_or(x[0], ~x[0]), true_literal);
    EXPECT_EQ(ctx.create_or(false_literal, x[0]), x[0]);
    EXPECT_EQ(ctx.create_or(x[0], x[0], x[0]), x[0]);
    EXPECT_EQ(ctx.create_or(false_literal, false_literal), false_literal);
    EXPECT_EQ(ctx.create_or(svector<literal>()), false_literal);
    EXPECT_EQ(ctx.create_or(true_literal, x[0]), true_literal);
    EXPECT_EQ(ctx.create_iff(true_literal, x[0]), x[0]);
    EXPECT_EQ(ctx.create_iff(x[0], false_literal), ~x[0]);
    EXPECT_EQ(ctx.create_iff(x[0], x[0]), true_literal);
    EXPECT_EQ(ctx.create_iff(x[0], ~x[0]), false_literal);
    EXPECT_EQ(ctx.create_ite(true_literal, x[0], x[1]), x[0]);
    EXPECT_EQ(ctx.create_ite(false_literal, x[0], x[1]), x[1]);
    EXPECT_EQ(ctx.create_ite(x[2], x[0], x[0]), x[0]);
    EXPECT_EQ(ctx.num_bool_vars(), n);
    EXPECT_EQ(probe.num_input_clauses(), 0u);
}

TEST_F(gates_edge_test, special_forms_of_ite_are_or_gates) {
    EXPECT_EQ(ctx.create_ite(x[0], x[0], x[1]), ctx.create_or(x[0], x[1]));
    EXPECT_EQ(ctx.create_ite(x[0], ~x[0], x[1]), ~ctx.create_or(x[0], ~x[1]));
    EXPECT_EQ(ctx.create_ite(x[0], x[1], x[0]), ~ctx.create_or(~x[0], ~x[1]));
    EXPECT_EQ(ctx.create_ite(x[0], x[1], ~x[0]), ctx.create_or(~x[0], x[1]));
    EXPECT_EQ(ctx.create_ite(x[0], true_literal, x[1]), ctx.create_or(x[0], x[1]));
    EXPECT_EQ(ctx.create_ite(x[0], false_literal, x[1]), ~ctx.create_or(x[0], ~x[1]));
    EXPECT_EQ(ctx.create_ite(x[0], x[1], true_literal), ctx.create_or(~x[0], x[1]));
    EXPECT_EQ(ctx.create_ite(x[0], x[1], false_literal), ~ctx.create_or(~x[0], ~x[1]));
    // The opposite branches stay an ite gate.
    literal const g = ctx.create_ite(x[0], x[1], ~x[1]);
    EXPECT_NE(g, ctx.create_iff(x[0], x[1]));
    EXPECT_EQ(ctx.get_body(g.var()).get_def()->m_kind, gate_kind::ite_gate);
}

TEST_F(gates_edge_test, signs_of_iff_are_not_normalized) {
    EXPECT_NE(ctx.create_iff(x[0], ~x[1]), ctx.create_iff(~x[0], x[1]));
    EXPECT_EQ(ctx.create_iff(x[0], ~x[1]), ctx.create_iff(~x[1], x[0]));
}

TEST_F(gates_edge_test, a_hit_makes_no_clause) {
    literal const g = ctx.create_or(x[0], x[1], x[2]);
    unsigned const clauses = probe.num_input_clauses();
    unsigned const n = ctx.num_bool_vars();
    EXPECT_EQ(clauses, 4u);
    EXPECT_EQ(ctx.create_or(x[2], x[1], x[0]), g);
    EXPECT_EQ(ctx.create_or(lits({x[2], x[1], x[0], x[1], false_literal})), g);
    EXPECT_EQ(probe.num_input_clauses(), clauses);
    EXPECT_EQ(ctx.num_bool_vars(), n);
    EXPECT_EQ(probe.problem_clauses().size(), 1u);
    std::ostringstream text;
    text << *ctx.get_body(g.var()).get_def();
    EXPECT_EQ(text.str(), "(or p3 p4 p5)");
}

TEST_F(gates_edge_test, clauses_come_in_their_order) {
    literal const p = ctx.create_iff(x[0], x[1]);
    literal const q = ctx.create_ite(x[0], x[1], x[2]);
    std::ostringstream out;
    for (clause_ref ref : probe.problem_clauses()) {
        for (literal l : ctx.get_clause(ref)) out << (l.sign() ? "-" : "+") << l.var();
        out << " ";
    }
    EXPECT_EQ(p.var(), 9);
    EXPECT_EQ(q.var(), 10);
    EXPECT_EQ(out.str(), "+3-4-9 -3+4-9 +3+4+9 -3-4+9 -3+4-10 +3+5-10 -3-4+10 +3-5+10 ");
}

TEST_F(gates_edge_test, a_gate_of_a_popped_scope_is_built_anew) {
    ctx.push();
    literal const g = ctx.create_or(x[0], x[1]);
    literal const h = ctx.create_ite(x[0], x[1], x[2]);
    EXPECT_EQ(probe.definitions().size(), 2u);
    ctx.pop(1);
    EXPECT_EQ(probe.definitions().size(), 0u);
    EXPECT_EQ(ctx.num_bool_vars(), 9u);
    literal const again = ctx.create_ite(x[0], x[1], x[2]);
    EXPECT_EQ(again, g); // the number is free again
    EXPECT_NE(again, h);
    ctx.assert_literal(x[0]);
    ctx.assert_literal(x[1]);
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(ctx.value(again), 1);
}

TEST_F(gates_edge_test, a_gate_of_an_outer_scope_is_found_inside) {
    literal const g = ctx.create_iff(x[0], x[1]);
    ctx.push();
    EXPECT_EQ(ctx.create_iff(x[1], x[0]), g);
    // With a value of this scope the gate folds; after the pop it is itself again.
    ctx.assert_literal(x[0]);
    EXPECT_EQ(ctx.create_iff(x[0], x[1]), x[1]);
    ctx.pop(1);
    EXPECT_EQ(ctx.create_iff(x[0], x[1]), g);
}

TEST_F(gates_edge_test, a_wide_gate) {
    g_debug_level = 1;
    std::vector<literal> const y = fresh(ctx, 5000);
    svector<literal> all;
    for (literal l : y) all.push_back(~l);
    literal const g = ctx.create_or(all);
    EXPECT_EQ(ctx.create_or(all), g);
    ctx.assert_literal(~g);
    EXPECT_TRUE(ctx.propagate_constraints());
    for (literal l : y) ASSERT_EQ(ctx.value(l), 1);
}

} // namespace
