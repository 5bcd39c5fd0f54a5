// DIMACS files into a context, and the answers that come out.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "base/exceptions.h"
#include "frontend/cnf_parser.h"
#include "search/context.h"
#include "support/check_model.h"
#include "support/random.h"
#include "support/run_program.h"
#include "support/weighted_context.h"

using namespace vexor;

namespace {

void read(context& ctx, std::string const& text, bool max_sat = false) {
    std::istringstream in(text);
    read_dimacs(&ctx, in, "text", max_sat);
}

std::vector<int> values_of(context const& ctx, int num_vars) {
    std::vector<int> values;
    for (int var = 1; var <= num_vars; ++var) {
        int value = ctx.get_model().value(var + 2);
        if (value != 0) values.push_back(value * var);
    }
    return values;
}

std::string random_formula(vexor_test::random_stream& random) {
    int vars = random.between(1, 14);
    int clauses = random.between(0, vars * 6);
    unsigned longest = 1 + random.below(4);
    std::ostringstream text;
    text << "p cnf " << vars << " " << clauses << "\n";
    for (int i = 0; i < clauses; ++i) {
        // Mostly of the longest length, since short clauses settle everything at once.
        unsigned length = random.chance(85) ? longest : 1 + random.below(longest);
        for (unsigned k = 0; k < length; ++k)
            text << (random.chance(50) ? "-" : "") << random.between(1, vars) << " ";
        text << "0\n";
    }
    return text.str();
}

} // namespace

TEST(read_dimacs, variables_stand_behind_the_reserved_ones) {
    context ctx;
    read(ctx, "p cnf 3 2\n1 0\n-3 0\n");
    EXPECT_EQ(6u, ctx.num_bool_vars());
    EXPECT_EQ(1, ctx.value(literal(3)));
    EXPECT_EQ(0, ctx.value(literal(4)));
    EXPECT_EQ(-1, ctx.value(literal(5)));
    // A second file gets variables of its own.
    read(ctx, "p cnf 2 1\n-1 0\n");
    EXPECT_EQ(8u, ctx.num_bool_vars());
    EXPECT_EQ(-1, ctx.value(literal(6)));
    EXPECT_EQ(1, ctx.check());
}

TEST(read_dimacs, ends_with_propagation) {
    context ctx;
    read(ctx, "p cnf 3 3\n1 0\n-1 2 0\n-1 -2 3 0\n");
    EXPECT_EQ(1, ctx.value(literal(5)));
    read(ctx, "p cnf 2 3\n1 2 0\n-1 0\n-2 0\n");
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(-1, ctx.check());
}

TEST(read_dimacs, an_empty_clause_is_a_conflict) {
    context ctx;
    read(ctx, "0");
    EXPECT_TRUE(ctx.inconsistent());
    EXPECT_EQ(-1, ctx.check());
}

TEST(read_dimacs, what_was_read_before_an_error_stays) {
    context ctx;
    EXPECT_THROW(read(ctx, "p cnf 2 3\n1 0\n-1 0\n3 0\n"), cnf_exception);
    EXPECT_EQ(5u, ctx.num_bool_vars());
    EXPECT_EQ(-1, ctx.check());
    // Also when there are many of them.
    std::string text = "p cnf 100 100\n";
    for (int var = 1; var <= 100; ++var) text += std::to_string(var) + " 0\n";
    context other;
    EXPECT_THROW(read(other, text + "1 2"), cnf_exception);
    for (int var = 1; var <= 100; ++var) EXPECT_EQ(1, other.value(literal(var + 2)));
}

TEST(read_dimacs, files) {
    vexor_test::temporary_file file("a.cnf", "p cnf 2 2\n1 2 0\n-1 0\n");
    context ctx;
    read_dimacs(&ctx, file.path().c_str(), false);
    EXPECT_EQ(1, ctx.check());
    std::ostringstream out;
    ctx.get_model().display_dimacs(out);
    EXPECT_EQ("-1 2\n", out.str());
    try {
        read_dimacs(&ctx, "/nowhere/a.cnf", false);
        ADD_FAILURE();
    } catch (cnf_exception const& error) {
        EXPECT_STREQ("Invalid dimacs file: \"/nowhere/a.cnf\".", error.what());
        EXPECT_EQ(0u, error.get_line());
        EXPECT_EQ("the file cannot be read: No such file or directory", error.get_reason());
    }
    EXPECT_THROW(read_dimacs(&ctx, file.folder().c_str(), false), cnf_exception);
}

TEST(read_dimacs, weights_are_ignored_without_max_sat) {
    context ctx;
    read(ctx, "p wcnf 3 2 100\n10 1 -2 0\n100 -1 0\n");
    EXPECT_EQ(6u, ctx.num_bool_vars());
    EXPECT_EQ(1, ctx.check());
    EXPECT_EQ(-1, ctx.get_model().value(4));
}

// The second file stands behind the guards of the first, and makes none.
TEST(read_dimacs, weights_are_ignored_without_max_sat_behind_a_weighted_file) {
    context ctx;
    read(ctx, "p wcnf 1 2\n10 1 0\n3 -1 0\n", true);
    unsigned const num_vars = ctx.num_bool_vars();
    ASSERT_EQ(2u, ctx.get_weighted_vars().size());
    read(ctx, "p wcnf 2 2\n7 1 2 0\n9223372036854775806 -1 0\n", false);
    EXPECT_EQ(num_vars + 2, ctx.num_bool_vars());
    EXPECT_EQ(2u, ctx.get_weighted_vars().size());
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(3), ctx.get_model().cost());
    EXPECT_EQ(-1, ctx.get_model().value(static_cast<int>(num_vars)));
    EXPECT_EQ(1, ctx.get_model().value(static_cast<int>(num_vars) + 1));
}

TEST(read_dimacs, a_soft_clause_has_a_guard_behind_the_variables) {
    context ctx;
    read(ctx, "p wcnf 3 2\n10 1 -2 0\n", true);
    EXPECT_EQ(7u, ctx.num_bool_vars());
    ASSERT_EQ(1u, ctx.get_weighted_vars().size());
    EXPECT_EQ(6, ctx.get_weighted_vars()[0].m_var);
    EXPECT_EQ(numeral(10), ctx.get_weighted_vars()[0].m_weight);
    ctx.assert_literal(literal(3, true));
    ctx.assert_literal(literal(4));
    EXPECT_TRUE(ctx.propagate_constraints());
    EXPECT_EQ(1, ctx.value(literal(6)));
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(10), ctx.get_model().cost());
}

TEST(read_dimacs, a_lower_limit_makes_a_weighted_clause_hard) {
    set_dimacs_max_weight(5);
    context ctx;
    read(ctx, "p wcnf 3 2\n10 1 -2 0\n", true);
    set_dimacs_max_weight(1000000);
    EXPECT_EQ(6u, ctx.num_bool_vars());
    EXPECT_TRUE(ctx.get_weighted_vars().empty());
}

TEST(read_dimacs, a_plain_file_has_clauses_of_weight_one) {
    context ctx;
    read(ctx, "p cnf 1 3\n1 0 -1 0 -1 0 0", true);
    EXPECT_EQ(4u, ctx.get_weighted_vars().size());
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral(2), ctx.get_model().cost());
    // The next file has no prices.
    read(ctx, "p wcnf 1 2 9\n3 1 0 4 -1 0\n", false);
    EXPECT_EQ(4u, ctx.get_weighted_vars().size());
    EXPECT_EQ(-1, ctx.max_sat());
}

TEST(read_dimacs, weights_are_exact) {
    context ctx;
    read(ctx, "p wcnf 1 3 9223372036854775806\n9223372036854775805 1 0 9223372036854775804 -1 0 0 1 0\n",
         true);
    EXPECT_EQ(1, ctx.max_sat());
    EXPECT_EQ(numeral("9223372036854775804", 10), ctx.get_model().cost());
    context two;
    read(two, "p wcnf 1 3 9223372036854775806\n9223372036854775805 0 9223372036854775805 0\n", true);
    EXPECT_EQ(1, two.max_sat());
    EXPECT_EQ(numeral("18446744073709551610", 10), two.get_model().cost());
}

TEST(read_dimacs, random_weighted_formulas_have_their_least_cost) {
    for (unsigned round = 0; round < vexor_test::rounds(1000); ++round) {
        std::uint64_t seed = vexor_test::first_seed(5000) + round;
        SCOPED_TRACE(seed);
        vexor_test::random_stream random(seed);
        vexor_test::weighted_problem problem;
        problem.num_vars = random.between(1, 8);
        int const top = random.between(2, 40);
        std::ostringstream text;
        text << "p wcnf " << problem.num_vars << " 0 " << top << "\n";
        for (int i = random.between(0, 25); i > 0; --i) {
            vexor_test::plain_clause const clause = vexor_test::random_clause(random, problem.num_vars, 3);
            int const weight = random.chance(40) ? random.between(top, top + 3) : random.between(0, top - 1);
            text << weight << " ";
            for (int lit : clause) text << lit << " ";
            text << "0\n";
            if (weight >= top)
                problem.clauses.push_back(clause);
            else
                problem.softs.push_back({clause, weight});
        }
        vexor_test::optimum const expected = vexor_test::best_cost(problem);
        context ctx;
        read(ctx, text.str(), true);
        ASSERT_EQ(expected.exists ? 1 : -1, ctx.max_sat()) << text.str();
        if (!expected.exists) continue;
        ASSERT_EQ(numeral(expected.cost), ctx.get_model().cost()) << text.str();
        unsigned const a = vexor_test::assignment_of(ctx.get_model(), problem.num_vars);
        ASSERT_TRUE(satisfies(problem, a)) << text.str();
        ASSERT_EQ(expected.cost, cost_of(problem, a)) << text.str();
    }
}

TEST(read_dimacs, random_formulas_agree_with_trying_all_assignments) {
    unsigned satisfiable = 0, unsatisfiable = 0;
    for (unsigned round = 0; round < vexor_test::rounds(1500); ++round) {
        std::uint64_t seed = vexor_test::first_seed(1000) + round;
        SCOPED_TRACE(seed);
        vexor_test::random_stream random(seed);
        std::string text = random_formula(random);
        vexor_test::plain_cnf formula = vexor_test::read_plain_cnf(text);
        int expected = vexor_test::brute_force(formula);
        context ctx;
        read(ctx, text);
        int answer = ctx.check();
        ASSERT_EQ(expected, answer) << text;
        ++(answer > 0 ? satisfiable : unsatisfiable);
        if (answer > 0) {
            EXPECT_EQ("", vexor_test::check_model(formula, values_of(ctx, formula.num_vars))) << text;
        }
        // The question may be asked again.
        EXPECT_EQ(expected, ctx.check());
    }
    // Formulas of one answer only would test half of the search.
    EXPECT_GT(satisfiable, vexor_test::rounds(1500) / 5);
    EXPECT_GT(unsatisfiable, vexor_test::rounds(1500) / 5);
}
