// Commands of unusual size, on a thread with a small stack.

#include "support/command_session.h"
#include "support/small_stack.h"

#include <gtest/gtest.h>

#include <functional>

namespace vexor_test {

namespace {

constexpr int num_levels = 100000;

std::string repeated(int n, std::function<std::string(int)> const& piece) {
    std::string text;
    for (int i = 0; i < n; ++i) text += piece(i);
    return text;
}

std::string const names = "(define p::bool)(define q::bool)(define r::bool)";

// What the commands print on the small stack.
std::string run_there(std::string const& text) {
    std::string result;
    on_small_stack([&] {
        command_session s;
        result = s.run(names + text);
    });
    return result;
}

std::string nest(char const* open, char const* innermost, char const* close) {
    return repeated(num_levels, [&](int) { return open; }) + innermost +
           repeated(num_levels, [&](int) { return close; });
}

TEST(deep_commands, negations) {
    // An even number of them changes nothing.
    std::string const formula = nest("(not ", "p", ")");
    EXPECT_EQ(run_there("(assert " + formula + ")(check)(assert (not p))"), "sat\nunsat\n");
}

TEST(deep_commands, conjunctions_and_disjunctions) {
    std::string formula = "r", closing;
    std::string opening;
    for (int i = 0; i < num_levels / 2; ++i) {
        opening += "(and p (or q ";
        closing += "))";
    }
    formula = opening + formula + closing;
    // With q false everything down to r must hold.
    EXPECT_EQ(run_there("(assert " + formula + ")(check)(assert (not q))(check)(assert (not r))"),
              "sat\nsat\nunsat\n");
}

TEST(deep_commands, lets) {
    // v1 is (not p), each v is the negation of the one before: the last one equals p.
    std::string const formula =
        "(let ((v0::bool p)) " +
        repeated(num_levels,
                 [](int i) {
                     return "(let ((v" + std::to_string(i + 1) + "::bool (not v" + std::to_string(i) + "))) ";
                 }) +
        "v" + std::to_string(num_levels) + std::string(num_levels + 1, ')');
    EXPECT_EQ(run_there("(assert " + formula + ")(check)(assert (not p))"), "sat\nunsat\n");
}

TEST(deep_commands, choices) {
    std::string const formula = nest("(ite p ", "r", " q)");
    // p and not r contradict the formula; without p it says q.
    EXPECT_EQ(run_there("(assert " + formula +
                        ")(check)(push)(assert p)(assert (not r))(pop)"
                        "(assert (not p))(check)(assert (not q))"),
              "sat\nunsat\nsat\nunsat\n");
}

TEST(deep_commands, choices_of_different_conditions) {
    // A chain over many variables that the simplifier cannot fold: c0 ? d : (c1 ? d : ...).
    int const n = 20000;
    std::string const definitions =
        repeated(n, [](int i) { return "(define c" + std::to_string(i) + "::bool)"; });
    std::string const formula =
        repeated(n, [](int i) { return "(ite c" + std::to_string(i) + " (= p q) "; }) + "r" +
        std::string(static_cast<std::size_t>(n), ')');
    EXPECT_EQ(run_there(definitions + "(assert " + formula + ")(assert p)(assert (not q))(check)" +
                        "(assert (not r))(check)"),
              "sat\nunsat\n" + dead_context);
}

TEST(deep_commands, refusals_and_evaluations) {
    std::string const text = nest("(or p (and q ", "(f p)", "))");
    std::string const out = run_there("(define f::(-> bool bool))(assert " + text + ")");
    EXPECT_NE(out.find("feature not supported: uninterpreted functions (f p)."), std::string::npos);
    std::string const value = run_there("(assert p)(check)(eval-in-model " + nest("(not ", "p", ")") + ")");
    EXPECT_EQ(value.substr(0, 4), "sat\n");
    EXPECT_EQ(value.substr(value.size() - 19), " evaluates to true\n");
}

TEST(deep_commands, a_hundred_thousand_assertions) {
    command_session s;
    std::string text = "(define x0::bool)(assert x0)";
    for (int i = 1; i < 100000; ++i) {
        std::string const x = "x" + std::to_string(i);
        text += "(define " + x + "::bool)(assert (= " + x + " x" + std::to_string(i - 1) + "))";
    }
    EXPECT_EQ(s.run(text + "(check)"), "sat\n");
    EXPECT_EQ(s.run("(assert (not x99999))"), "unsat\n");
}

} // namespace

} // namespace vexor_test
