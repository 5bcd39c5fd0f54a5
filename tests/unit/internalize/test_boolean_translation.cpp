// What assertions become: variables and clauses counted, forms with a guard, refusals, values in a model.
#include "base/deep_stack.h"
#include "support/command_session.h"

#include <gtest/gtest.h>

namespace vexor_test {

namespace {

using namespace vexor;

constexpr unsigned reserved = 3; // variables of every context
std::string const names = "(define a::bool)(define b::bool)(define c::bool)(define d::bool)";

// Variables that an assertion makes, those of the four names included.
unsigned vars_of(std::string const& assertion) {
    command_session s;
    EXPECT_EQ(s.run(names + assertion), "") << assertion;
    return s.m_context.num_bool_vars() - reserved;
}

TEST(variables, none_for_what_is_asserted) {
    EXPECT_EQ(vars_of("(assert a)"), 1u);
    EXPECT_EQ(vars_of("(assert (not a))"), 1u);
    EXPECT_EQ(vars_of("(assert (or a b (not c)))"), 3u);
    EXPECT_EQ(vars_of("(assert (and a (or b c)))"), 3u);
    EXPECT_EQ(vars_of("(assert (not (or a b (not c))))"), 3u);
    EXPECT_EQ(vars_of("(assert (not (and a b c)))"), 3u);
    EXPECT_EQ(vars_of("(assert (not (or a (not (or b c)))))"), 3u);
    EXPECT_EQ(vars_of("(assert (=> a b c))"), 3u);
    EXPECT_EQ(vars_of("(assert (= a b))"), 2u);
    EXPECT_EQ(vars_of("(assert (/= a b))"), 2u);
    EXPECT_EQ(vars_of("(assert (ite a b c))"), 3u);
    EXPECT_EQ(vars_of("(assert (not (ite a b c)))"), 3u);
    EXPECT_EQ(vars_of("(assert true)(assert (not false))"), 0u);
}

TEST(variables, one_for_each_gate) {
    EXPECT_EQ(vars_of("(assert (or a (and b c)))"), 3u + 1);
    EXPECT_EQ(vars_of("(assert (or a (= b c)))"), 3u + 1);
    EXPECT_EQ(vars_of("(assert (or a (ite b c d)))"), 4u + 1);
    EXPECT_EQ(vars_of("(assert (or a (not (and b c))))"), 3u); // a clause of a and two negations
    EXPECT_EQ(vars_of("(assert (or a (/= b c)))"), 3u + 1);
}

TEST(variables, equal_gates_are_one) {
    // (and b c) twice, in different order, under different connectives.
    EXPECT_EQ(vars_of("(assert (or (= a (and b c)) (= d (and c b))))"), 4u + 1 + 2);
    EXPECT_EQ(vars_of("(assert (or a (and b c)))(assert (or d (and b c)))"), 4u + 1);
    EXPECT_EQ(vars_of("(assert (or a (= b c)))(assert (or d (not (= c b))))"), 4u + 1);
    EXPECT_EQ(vars_of("(assert (let ((g::bool (and b c))) (or (= g a) (= g d))))"), 4u + 1 + 2);
}

// Complements included: (or (not b) (not c)) is the negation of (and b c).
TEST(variables, complementary_gates_are_one) {
    EXPECT_EQ(vars_of("(assert (or (= a (and b c)) (= d (or (not b) (not c)))))"), 4u + 1 + 2);
}

// A formula over a shared chain: linear with sharing, 2^60 nodes without.
TEST(variables, shared_chains_stay_linear) {
    command_session s;
    std::string text = names + "(define x0::bool (= a b))";
    for (int i = 1; i <= 60; ++i) {
        std::string const x = "x" + std::to_string(i - 1);
        text += "(define x" + std::to_string(i) + "::bool (ite (= c " + x + ") (and d " + x + ") (or a " + x +
                ")))";
    }
    EXPECT_EQ(s.run(text + "(assert x60)(check)"), "sat\n");
    EXPECT_LT(s.m_context.num_bool_vars(), 300u);
}

// --- Guards.

TEST(guards, weaken_every_clause) {
    for (char const* formula :
         {"a", "(not a)", "(and a b)", "(or a b)", "(not (or a b))", "(= a b)", "(/= a b)", "(ite a b c)",
          "(not (ite a b c))", "(or a (and b c))", "(=> a (= b c))", "false", "(and a (not a))"}) {
        SCOPED_TRACE(formula);
        command_session s;
        EXPECT_EQ(s.run(names + "(set-evidence! true)(assert+ " + formula + ")"), "id: 7\n");
        // The contrary contradicts the assertion and nothing else.
        std::string const contrary = s.run(std::string("(assert (not ") + formula + "))(check)");
        EXPECT_EQ(contrary, "unsat\nunsat core ids: 7\n");
        EXPECT_EQ(s.run("(status)"), "ok\n");
        EXPECT_EQ(s.run("(retract 7)(check)").substr(0, 4), "sat\n");
    }
}

TEST(guards, a_true_assertion_is_never_in_a_core) {
    command_session s;
    EXPECT_EQ(s.run(names + "(set-evidence! true)(assert+ true)(assert+ (or a (not a)))(assert+ a)"),
              "id: 7\nid: 9\nid: 11\n");
    EXPECT_EQ(s.run("(assert (not a))(check)"), "unsat\nunsat core ids: 11\n");
}

TEST(guards, formulas_that_share_gates_have_guards_of_their_own) {
    command_session s;
    EXPECT_EQ(s.run(names + "(set-evidence! true)(assert+ (or d (and a b)))(assert+ (= c (and a b)))"),
              "id: 7\nid: 17\n");
    EXPECT_EQ(s.run("(assert (not d))(push)(assert (not a))(check)"), "unsat\nunsat core ids: 7\n");
    EXPECT_EQ(s.run("(pop)(push)(assert a)(assert b)(assert (not c))(check)"), "unsat\nunsat core ids: 17\n");
    EXPECT_EQ(s.run("(retract 17)(check)").substr(0, 4), "sat\n");
}

// --- Refusals.

struct refusal {
    char const* m_formula;
    char const* m_text; // what stands behind "feature not supported: "
};

refusal const refusals[] = {
    {"(> i 0)", "arithmetic (> i 0)."},
    {"(= i j)", "arithmetic (= i j)."},
    {"(= v w)", "bit-vectors (= v w)."},
    {"(bv-lt v w)", "bit-vectors (bv-lt v w)."},
    {"(f a)", "uninterpreted functions (f a)."},
    {"(= s t)", "terms that are not Boolean (= s t)."},
    {"(= e red)", "terms that are not Boolean (= e red)."},
    {"(forall (x::T) (g x))", "quantifiers (forall (x::T) (g x))."},
    {"(int_pred r)", "arithmetic (int_pred r)."},
    {"((select p 0) a)", "functions as values ((select p 0) a)."},
    {"((h 1) 2)", "functions as values ((h 1) 2)."},
};

TEST(refusals_of_the_translation, name_what_they_cannot_do_and_the_context_goes_on) {
    command_session s;
    EXPECT_EQ(
        s.run(names +
              "(define i::int)(define j::int)(define v::(bitvector 4))(define w::(bitvector 4))"
              "(define f::(-> bool bool))(define-type T)(define s::T)(define t::T)"
              "(define g::(-> T bool))(define-type color (scalar red green))(define e::color)(define r::real)"
              "(define p::(tuple (-> bool bool) bool))(define h::(-> int (-> int bool)))"),
        "");
    for (refusal const& r : refusals) {
        SCOPED_TRACE(r.m_formula);
        std::string const message = std::string("!feature not supported: ") + r.m_text;
        std::string const f = r.m_formula;
        EXPECT_EQ(s.run_core("(assert " + f + ")"), message);
        EXPECT_EQ(s.run_core("(assert (or a (and b " + f + ")))"), message);
        EXPECT_EQ(s.run_core("(assert+ (ite a b " + f + "))"), message);
        EXPECT_EQ(s.run_core("(assert+ (= c (not " + f + ")) 5)"), message);
        EXPECT_EQ(s.run("(push)(assert (and a (not b)))(check)(pop)"), "sat\n");
    }
    EXPECT_EQ(s.m_context.num_bool_vars(), reserved);
    EXPECT_EQ(s.run("(assert a)(assert (not a))"), "unsat\n");
}

// Without the type checker, a part that is not Boolean where it must be is met first by the translation.
TEST(refusals_of_the_translation, ill_typed_parts_are_type_errors) {
    command_session s;
    EXPECT_EQ(s.run(names + "(define i::int)(define f::(-> bool int))"), "");
    for (char const* f : {"(= a 1)", "(= 1 a)", "(= i b)", "(/= a i)"})
        EXPECT_EQ(s.run_core("(assert (or b " + std::string(f) + "))"), "!incompatible types in equality.")
            << f;
    for (char const* f :
         {"(or a i)", "(and a 5)", "(not i)", "(=> (+ i 1) a)", "(ite i a b)", "(or a (f b))"})
        EXPECT_EQ(s.run_core("(assert " + std::string(f) + ")"), "!argument is not boolean.") << f;
    EXPECT_EQ(s.m_context.num_bool_vars(), reserved);
    EXPECT_EQ(s.run("(check)"), "sat\n");
}

// A choice between functions, applied: each branch is.
TEST(boolean_structure, choices_of_functions_are_applied) {
    command_session s;
    EXPECT_EQ(s.run(names +
                    "(assert ((ite a (lambda (x::int) b) (lambda (x::int) (not b))) 3))(assert (not a))"
                    "(assert b)"),
              "unsat\n");
}

// --- Too deep formulas.

// d0 is a chain over x, each later one a chain over the one before; all are asserted at once, so that each is
// met as an assertion first and as a part of the next one afterwards.
std::string chained_definitions(int number, int levels) {
    std::string text = "(define x::bool)(define y::bool)(define z::bool)", all;
    for (int i = 0; i < number; ++i) {
        std::string chain, closing;
        for (int k = 0; k < levels; ++k) {
            chain += "(or y (and z ";
            closing += "))";
        }
        std::string const before = i == 0 ? "x" : "d" + std::to_string(i - 1);
        text += "(define d" + std::to_string(i) + "::bool " + chain + before + closing + ")";
        all += " d" + std::to_string(i);
    }
    return text + "(assert (and" + all + "))";
}

// A formula enters as a whole or not at all, wherever the stack ends.
TEST(too_deep_formulas, are_refused_before_the_first_clause) {
    set_deep_stack_size(1 << 20);
    int refused = 0, accepted = 0;
    for (int number : {2, 6, 18}) {
        for (int levels = 50; levels < 800; levels += levels / 8) {
            SCOPED_TRACE(std::to_string(number) + " chains of " + std::to_string(levels));
            command_session s;
            std::string const out = s.run(chained_definitions(number, levels));
            if (out.empty()) {
                ++accepted;
                EXPECT_EQ(s.run("(assert (not y))(check)(assert (not x))"), "sat\nunsat\n");
            } else {
                // The parser has another message.
                if (out == "!input is nested too deeply") ++refused;
                EXPECT_NE(out.find(" too deep"), std::string::npos) << out;
                EXPECT_EQ(s.m_context.num_bool_vars(), reserved);
            }
        }
    }
    set_deep_stack_size(0);
    EXPECT_GT(accepted, 0);
    EXPECT_GT(refused, 0);
}

// --- Values.

TEST(values, of_names_and_formulas) {
    command_session s;
    EXPECT_EQ(s.run(names + "(define n::bool (not a))(define f::(-> x::bool y::bool bool) "
                            "(lambda (x::bool y::bool) (and x (not y))))"),
              "");
    EXPECT_EQ(s.run("(assert a)(assert (not b))(check)"), "sat\n");
    EXPECT_EQ(s.run("(eval-in-model n)"), "n evaluates to false\n");
    EXPECT_EQ(s.run("(eval-in-model (f a b))"), "(f a b) evaluates to true\n");
    EXPECT_EQ(s.run("(eval-in-model (f b a))"), "(f b a) evaluates to false\n");
    EXPECT_EQ(s.run("(eval-in-model (let ((x::bool (or a b))) (and x b)))").substr(0, 5), "(let ");
    EXPECT_EQ(s.run("(eval-in-model (and a c))"), "(and a c) evaluates to c\n"); // the model knows no c
}

// A bound variable that has the name of a constant has no value.
TEST(values, bound_variables_have_none) {
    command_session s;
    EXPECT_EQ(s.run(names + "(assert (not a))(check)"), "sat\n");
    EXPECT_EQ(s.run("(eval-in-model ((lambda (a::bool) a) true))"),
              "((lambda (a::bool) a) true) evaluates to true\n");
    EXPECT_EQ(s.run("(eval-in-model (let ((a::bool true)) a))"),
              "(let ((a::bool true)) a) evaluates to true\n");
}

} // namespace

} // namespace vexor_test
