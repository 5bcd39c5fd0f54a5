// Each command of the native language: what it prints, refuses and changes.

#include "ast/node/settings.h"
#include "internalize/internalize_settings.h"
#include "support/command_session.h"
#include "support/setting_guard.h"

#include <gtest/gtest.h>

namespace vexor_test {

namespace {

using namespace vexor;

TEST(commands, definitions_are_silent) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(define f::(-> int int))(define-type T)(define t::T)"), "");
    EXPECT_EQ(s.run("(define x::bool)").substr(0, 1), "!");
}

TEST(commands, echo_prints_the_text_alone) {
    command_session s;
    EXPECT_EQ(s.run("(echo \"a\")(echo \"b\")"), "ab");
    EXPECT_EQ(s.run("(echo \"one\\ntwo\\t3\")"), "one\ntwo\t3");
    EXPECT_EQ(s.run("(echo \"\")"), "");
    EXPECT_EQ(s.run("(echo x)"), failed_at(6, "Unexpected token 'identifier'. 'string' expected."));
}

TEST(commands, status_knows_contradictions_found_so_far) {
    command_session s;
    EXPECT_EQ(s.run("(status)"), "ok\n");
    EXPECT_EQ(s.run("(define x::bool)(assert x)(status)"), "ok\n");
    EXPECT_EQ(s.run("(assert (not x))"), "unsat\n");
    EXPECT_EQ(s.run("(status)"), "unsat\n");
    EXPECT_EQ(s.run("(reset)(status)"), "ok\n");
}

TEST(commands, help_lists_the_commands) {
    command_session s;
    std::string const text = s.run("(help)");
    EXPECT_EQ(
        text.substr(0, text.find("For more")),
        "(assert [expr])           -- assert the formula [expr] into the current logical context.\n"
        "(assert+ [expr])          -- similar to assert, but allows retraction and unsat core extraction.\n"
        "(assert+ [expr] [weight]) -- similar to assert+, but the weight is used for max-sat.\n"
        "(retract [idx])           -- retract the assertion with index idx from the logical context.\n"
        "(check)                   -- check whether the logical context is satisfiable or not.\n"
        "(max-sat)                 -- extract the maximal satisfying model.\n"
        "(set-evidence! true)      -- enable the construction of evidence: models and unsatisfiable cores.\n"
        "(set-evidence! false)     -- disable the construction of evidence: models and unsatisfiable cores.\n"
        "(set-verbosity! [num])    -- set the verbosity level.\n"
        "(set-arith-only! true)    -- tell vexor that only boolean combinations of arithmetic constraints "
        "are "
        "going to be asserted.\n"
        "(push)                    -- save the current logical context on the stack.\n"
        "(pop)                     -- restore the context from the top of the stack, and pop it off the "
        "stack.\n"
        "(echo [string])           -- print the string [string].\n"
        "(reset)                   -- reset the logical context.\n"
        "(include [file])          -- include the file [file].\n"
        "(status)                  -- display the status of the logical context.\n"
        "(exit)                    -- exit.\n"
        "(help)                    -- display this message.\n");
    std::string const last = text.substr(text.find("For more"));
    EXPECT_EQ(last.find("For more information, go to "), 0u);
    EXPECT_NE(last.find("/language.shtml"), std::string::npos);
    EXPECT_EQ(last.back(), '\n');
}

TEST(commands, settings) {
    setting_guard const arith_only(g_arithmetic_only);
    setting_guard const forget(g_fire_and_forget);
    command_session s;
    EXPECT_EQ(s.run("(set-arith-only! true)(set-fire-and-forget! true)(set-evidence! true)"), "");
    EXPECT_TRUE(g_arithmetic_only && g_fire_and_forget && s.m_context.evidence());
    EXPECT_EQ(s.run("(set-arith-only! false)(set-fire-and-forget! false)(set-evidence! false)"), "");
    EXPECT_FALSE(g_arithmetic_only || g_fire_and_forget || s.m_context.evidence());
    EXPECT_EQ(s.run("(set-evidence! 1)"), failed_at(15, "Unexpected token 'numeral'. 'false' expected."));
    EXPECT_EQ(s.run("(set-verbosity! 5)"), "");
    EXPECT_EQ(get_verbosity_level(), 5);
    EXPECT_EQ(s.run("(set-verbosity! -3)"), "");
    EXPECT_EQ(get_verbosity_level(), 0);
    EXPECT_EQ(s.run("(set-verbosity! 7/2)"), "");
    EXPECT_EQ(get_verbosity_level(), 3);
    EXPECT_EQ(s.run("(set-verbosity! 100000000000000000000)"), "");
    EXPECT_EQ(get_verbosity_level(), 2147483647);
}

TEST(commands, walking_search_is_not_supported) {
    command_session s;
    EXPECT_EQ(s.run("(max-walksat 100)"), "not supported\n");
    EXPECT_EQ(s.run("(max-walksat)"), failed_at(12, "Unexpected token ')'. 'numeral' expected."));
}

TEST(commands, dump_context_shows_the_state) {
    command_session s;
    EXPECT_EQ(s.run("(dump-context)"), "");
    EXPECT_EQ(s.run("(define rain::bool)(define sun::bool)(assert (or rain sun))(dump-context)"),
              "(clause rain sun)\n");
}

TEST(commands, top_level_takes_commands_alone) {
    command_session s;
    EXPECT_EQ(s.run("check"), failed_at(0, "Unexpected token 'check'. '(' expected."));
    EXPECT_EQ(s.run(" (foo)"), failed_at(2, "Invalid top level command."));
    EXPECT_EQ(s.run("()"), failed_at(1, "Invalid top level command."));
    EXPECT_EQ(s.run("(and)"), failed_at(1, "Invalid top level command."));
    EXPECT_EQ(s.run(""), "");
    EXPECT_EQ(s.run("; nothing but a comment"), "");
}

// The closing parenthesis is asked for before anything is done.
TEST(commands, no_command_runs_without_its_end) {
    command_session s;
    EXPECT_EQ(s.run("(define p::bool)(define q::bool)(assert (or p q))"), "");
    std::string const end = "Unexpected token '(end-of-stream)'. ')' expected.";
    for (char const* text : {"(assert (not p)",
                             "(assert+ p",
                             "(assert+ p 1",
                             "(assert-lpb p 2",
                             "(retract 9",
                             "(check",
                             "(max-sat",
                             "(max-walksat 1",
                             "(eval-in-model p",
                             "(push",
                             "(pop",
                             "(reset",
                             "(include \"f\"",
                             "(echo \"x\"",
                             "(status",
                             "(dump-context",
                             "(set-evidence! true",
                             "(set-verbosity! 1",
                             "(set-arith-only! true",
                             "(set-fire-and-forget! true",
                             "(help",
                             "(exit"}) {
        std::string const expected = failed_at(static_cast<int>(std::string(text).size()), end);
        EXPECT_EQ(s.run(text), expected) << text;
    }
    EXPECT_EQ(s.run("(check check)"), failed_at(7, "Unexpected token 'check'. ')' expected."));
    EXPECT_EQ(s.run("(assert"), failed_at(7, "Expression expected."));
    EXPECT_EQ(s.run("("), failed_at(1, "Invalid top level command."));
    EXPECT_EQ(s.m_context.base_lvl(), 0u);
    EXPECT_FALSE(s.m_context.evidence());
    EXPECT_EQ(s.run("(assert p)(check)"), "sat\n");
}

TEST(commands, what_precedes_a_failure_stays) {
    command_session s;
    EXPECT_EQ(s.run("(define p::bool)(echo \"x\")(assert p)(nonsense)(assert (not p))"),
              "x" + failed_at(37, "Invalid top level command."));
    EXPECT_EQ(s.run("(check)(assert (not p))"), "sat\nunsat\n");
}

TEST(commands, a_contradiction_is_told_once_and_closes_the_gate) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(assert x)(assert (not x))"), "unsat\n");
    for (char const* gated : {"(assert x)", "(assert+ x)", "(assert+ x 2)", "(assert-lpb x 1)", "(retract 9)",
                              "(check)", "(max-sat)", "(eval-in-model x)", "(assert+ x 0)"})
        EXPECT_EQ(s.run(gated), dead_context) << gated;
    EXPECT_EQ(s.run("(echo \"e\")(max-walksat 1)(define y::bool)(define-type U)"), "enot supported\n");
    EXPECT_EQ(s.run("(assert false)"), dead_context);
    EXPECT_EQ(s.run("(assert (nope))"), "!" + failed_at(9, "Undefined name \"nope\".").substr(1));
}

TEST(commands, an_assertion_that_is_no_formula_is_refused) {
    command_session s;
    std::string const complaint = "constraint must be a boolean.";
    EXPECT_EQ(s.run("(define x::bool)(define i::int)(define f::(-> int int))"), "");
    EXPECT_EQ(s.run("(assert 1)"), failed_at(8, complaint));
    EXPECT_EQ(s.run("(assert+ (+ 1 2))"), failed_at(9, complaint));
    EXPECT_EQ(s.run("(assert+ i 5)"), failed_at(9, complaint));
    EXPECT_EQ(s.run("(assert f)"), failed_at(8, complaint));
    EXPECT_EQ(s.m_context.num_bool_vars(), 3u);
    EXPECT_EQ(s.run("(check)(status)(assert x)(check)"), "sat\nok\nsat\n");
}

TEST(commands, a_type_error_of_the_context_closes_the_gate) {
    command_session s;
    std::string const told = "Logical context detected a type error: type mismatch\n";
    s.m_context.set_type_error("type mismatch");
    EXPECT_EQ(s.run("(check)"), told + "Use (reset) to reset.\n");
    EXPECT_EQ(s.run("(status)"), "ok\n");
    EXPECT_EQ(s.run("(reset)(push)"), "");
    s.m_context.set_type_error("type mismatch");
    EXPECT_EQ(s.run("(check)"), told + "Use (pop) to restore the previous state.\n");
    EXPECT_EQ(s.run("(push)"), told + "Use (pop) to restore the previous state.\n");
    EXPECT_EQ(s.run("(pop)(check)"), told + "Use (pop) to restore the previous state.\n");
    EXPECT_EQ(s.run("(pop)(check)"), "sat\n");
}

// Operators applied to a wrong number of arguments; nothing but the type checker counts them otherwise.
TEST(commands, operators_with_a_wrong_number_of_arguments) {
    command_session s;
    EXPECT_EQ(s.run("(define p::bool)(define q::bool)"), "");
    for (char const* text :
         {"(= p)", "(= p q p)", "(not p q)", "(/= p)", "(/= p q q)", "(ite p q)", "(if p q p q)",
          "(or q (not p q))", "(and q (= p))", "(let ((r::bool (= p))) (or r q))",
          "((lambda (x::bool) x) p q)", "((lambda (x::bool y::bool) x) p)"}) {
        EXPECT_EQ(s.run_core(std::string("(assert ") + text + ")"), "!wrong number of arguments") << text;
        EXPECT_EQ(s.run_core(std::string("(assert+ ") + text + ")"), "!wrong number of arguments") << text;
    }
    EXPECT_EQ(s.run("(assert (and p q))(check)"), "sat\n");
    EXPECT_EQ(s.m_context.num_bool_vars(), 5u); // p and q behind the reserved three
}

TEST(commands, check_shows_models_with_evidence_only) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(define y::bool)(assert (and x (not y)))(check)"), "sat\n");
    EXPECT_EQ(s.run("(set-evidence! true)(check)"), "sat\n(= x true)\n(= y false)\n\n");
    EXPECT_EQ(s.run("(reset)(check)"), "sat\n\n"); // the flag outlives a reset
}

TEST(commands, eval_in_model) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(define y::bool)(define z::bool (and x (not y)))"), "");
    EXPECT_EQ(s.run("(eval-in-model x)"), "x evaluates to x\n");
    EXPECT_EQ(s.run("(assert z)(check)"), "sat\n");
    EXPECT_EQ(s.run("(eval-in-model x)(eval-in-model y)(eval-in-model z)"),
              "x evaluates to true\ny evaluates to false\nz evaluates to true\n");
    EXPECT_EQ(s.run("(eval-in-model (= x y))"), "(= x y) evaluates to false\n");
    EXPECT_EQ(s.run("(assert (or x y))(eval-in-model x)"), "x evaluates to x\n"); // the model is gone
}

TEST(retraction, core_names_the_assertion_and_retract_removes_it) {
    command_session s;
    EXPECT_EQ(s.run("(set-evidence! true)(define x::bool)(assert x)(assert+ (not x))"), "id: 9\n");
    EXPECT_EQ(s.run("(check)"), "unsat\nunsat core ids: 9\n");
    EXPECT_EQ(s.run("(status)"), "ok\n");
    EXPECT_EQ(s.run("(push)(retract 9)(check)"), "sat\n(= x true)\n\n");
    EXPECT_EQ(s.run("(pop)(check)"), "unsat\nunsat core ids: 9\n");
    EXPECT_EQ(s.run("(retract 9)(check)"), "sat\n(= x true)\n\n");
    EXPECT_EQ(s.run("(retract 9)(check)"), "sat\n(= x true)\n\n");
}

TEST(retraction, core_is_shown_with_evidence_only) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(assert+ x)(assert+ (not x))(check)"), "id: 7\nid: 11\nunsat\n");
}

TEST(retraction, ids_that_are_none) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(assert x)(assert+ (not x))"), "id: 9\n");
    EXPECT_EQ(s.run("(push)(assert+ x)(pop)"), "id: 11\n");
    // The variable of x, the guard itself, one that a pop took, numbers that never were ids.
    for (char const* id :
         {"6", "7", "8", "11", "13", "0", "1", "3", "-9", "-1", "9/2", "1/9", "4294967305", "2147483647",
          "2147483648", "18446744073709551625", "99999999999999999999999999999999"}) {
        EXPECT_EQ(s.run(std::string("(retract ") + id + ")"),
                  std::string("Error: there is no assertion with id ") + id + ".\n");
    }
    EXPECT_EQ(s.run("(check)"), "unsat\n"); // nothing was assumed
    EXPECT_EQ(s.run("(retract x)"), failed_at(9, "Unexpected token 'identifier'. 'numeral' expected."));
    EXPECT_EQ(s.run("(retract 9)(check)"), "sat\n");
}

// At a high verbosity the place of the assertion stands before its id.
TEST(retraction, ids_with_their_places) {
    command_session s;
    EXPECT_EQ(s.run("(set-evidence! true)(define x::bool)(assert x)\n (assert+ (not x))"), "id: 9\n");
    s.m_context.check();
    set_verbosity_level(3);
    testing::internal::CaptureStderr();
    EXPECT_EQ(s.run("(check)"), "unsat\nunsat core ids: \n[<string>, line(2), column(2), position(48)]: 9\n");
    testing::internal::GetCapturedStderr();
}

TEST(weights, have_to_be_positive) {
    command_session s;
    std::string const refusal = "Error: weight must be greater than zero.\n";
    EXPECT_EQ(s.run("(assert+ true 0)"), refusal);
    EXPECT_EQ(s.run("(define x::bool)(assert+ x -1)(assert+ x -1/3)(assert+ x 0/5)"),
              refusal + refusal + refusal);
    EXPECT_EQ(s.m_context.num_bool_vars(), 3u);
    EXPECT_EQ(s.run("(assert+ x 1/0)").substr(0, 1), "!");
    EXPECT_EQ(s.run("(assert+ x y)").substr(0, 1), "!");
}

TEST(weights, fractions_and_huge_ones_add_up) {
    command_session s;
    EXPECT_EQ(s.run("(set-evidence! true)(define x::bool)(assert+ x 1/3)(assert+ x 1/6)"), "id: 7\nid: 11\n");
    EXPECT_EQ(s.run("(assert+ (not x) 100000000000000000000000000000)"), "id: 13\n");
    EXPECT_EQ(s.run("(max-sat)"), "sat\nunsatisfied assertion ids: 7 11\n(= x false)\n\ncost: 1/2\n");
    EXPECT_EQ(s.run("(assert x)(max-sat)"), "sat\nunsatisfied assertion ids: 13\n(= x true)\n\ncost: "
                                            "100000000000000000000000000000\n");
    EXPECT_EQ(s.run("(check)").substr(0, 6), "unsat\n"); // to a check a weight is no excuse
    EXPECT_EQ(s.run("(retract 13)(check)"), "sat\n(= x true)\n\n");
    EXPECT_EQ(s.run("(assert+ (not x))(max-sat)").substr(0, 13), "id: 15\nunsat\n");
}

TEST(weights, max_sat_without_evidence_answers_alone) {
    command_session s;
    EXPECT_EQ(s.run("(max-sat)"), "sat\n");
    EXPECT_EQ(s.run("(define x::bool)(assert+ x 2)(assert+ (not x) 1)(max-sat)"), "id: 7\nid: 11\nsat\n");
}

TEST(sums, terms_and_bounds) {
    command_session s;
    EXPECT_EQ(s.run("(set-evidence! true)(define x::bool)(define y::bool)"), "");
    EXPECT_EQ(s.run("(assert-lpb x 1)(assert-lpb (not x) y 1)(check)"), "sat\n(= x true)\n(= y true)\n\n");
    EXPECT_EQ(s.run("(assert-lpb (2 x) (3 (not y)) 3)"), "unsat\n");
    EXPECT_EQ(s.run("(check)"), dead_context);
}

TEST(sums, trivial_and_impossible_ones) {
    command_session s;
    EXPECT_EQ(s.run("(assert-lpb 0)(assert-lpb -5)(check)"), "sat\n");
    EXPECT_EQ(s.run("(push)(assert-lpb 1)(check)(pop)(check)"), "unsat\n" + dead_scope + "sat\n");
    EXPECT_EQ(s.run("(define x::bool)(assert-lpb (-2 x) -1)(set-evidence! true)(check)"),
              "sat\n(= x false)\n\n");
    EXPECT_EQ(s.run("(assert-lpb (1/2 x) 1/3)"), "unsat\n");
}

// A constant with a definition has no variable of its own: the sum is about the definition.
TEST(sums, terms_with_definitions) {
    command_session s;
    EXPECT_EQ(s.run("(define a::bool)(define b::bool)(define x::bool (not a))(define y::bool (and a b))"
                    "(define t::bool true)(assert a)"),
              "");
    EXPECT_EQ(s.run("(push)(assert-lpb x 1)(pop)"), "unsat\n");
    EXPECT_EQ(s.run("(push)(assert-lpb (not t) x 1)(pop)"), "unsat\n");
    EXPECT_EQ(s.run("(push)(assert-lpb y (5 t) 6)(check)(assert (not b))(pop)"), "sat\nunsat\n");
    EXPECT_EQ(s.run("(define i::int)(define z::bool (> i 0))(assert-lpb z 1)").substr(0, 2), "![");
    EXPECT_EQ(s.run("(check)"), "sat\n");
}

TEST(sums, what_is_no_term) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(define i::int)(define f::(-> bool bool))"), "");
    EXPECT_EQ(s.run("(assert-lpb i 1)"), failed_at(12, "Expression expected."));
    EXPECT_EQ(s.run("(assert-lpb f 1)"), failed_at(12, "Expression expected."));
    EXPECT_EQ(s.run("(assert-lpb q 1)"), failed_at(12, "Undefined name \"q\"."));
    EXPECT_EQ(s.run("(assert-lpb true 1)"), failed_at(12, "Unexpected token 'true'. 'identifier' expected."));
    EXPECT_EQ(s.run("(assert-lpb x)"), failed_at(13, "Unexpected token ')'. 'identifier' expected."));
    EXPECT_EQ(s.run("(assert-lpb (x) 1)"), failed_at(13, "Unexpected token 'identifier'. 'not' expected."));
    EXPECT_EQ(s.run("(assert-lpb (x 1)"), failed_at(13, "Unexpected token 'identifier'. 'not' expected."));
    EXPECT_EQ(s.run("(assert-lpb not x) 1)"),
              failed_at(12, "Unexpected token 'not'. 'identifier' expected."));
    EXPECT_EQ(s.run("(assert-lpb (2 3) 1)"),
              failed_at(15, "Unexpected token 'numeral'. 'identifier' expected."));
    EXPECT_EQ(s.run("(assert-lpb (2 x) 1 x)"), failed_at(20, "Unexpected token 'identifier'. ')' expected."));
    EXPECT_EQ(s.m_context.num_bool_vars(), 3u); // no refused term has left a variable
}

} // namespace

} // namespace vexor_test
