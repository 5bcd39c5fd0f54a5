// Commands that fail half-way, scopes, resets and files within files.

#include "ast/node/settings.h"
#include "support/command_session.h"
#include "support/run_program.h"
#include "support/setting_guard.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <fstream>

namespace vexor_test {

namespace {

using namespace vexor;

// --- Exceptions.

TEST(refused_assertions, leave_nothing_behind) {
    command_session s;
    EXPECT_EQ(s.run("(define p::bool)(define x::int)(define y::int)(define f::(-> int bool))"), "");
    unsigned const num_vars = s.m_context.num_bool_vars();
    EXPECT_EQ(s.run("(assert (and p (> (* x y) 1)))").substr(0, 2), "![");
    EXPECT_EQ(s.run("(assert (or p (f x)))").substr(0, 2), "![");
    EXPECT_EQ(s.run("(assert+ (and p (> (* x y) 1)))").substr(0, 2), "![");
    EXPECT_EQ(s.run("(assert+ (and p (> x 1)) 3)").substr(0, 2), "![");
    EXPECT_EQ(s.m_context.num_bool_vars(), num_vars);
    EXPECT_TRUE(s.m_context.get_weighted_vars().empty());
    EXPECT_EQ(s.run("(assert (not p)) (check)"), "sat\n");
}

TEST(refused_assertions, of_the_type_checker) {
    setting_guard const checking(g_type_check, true);
    command_session s;
    EXPECT_EQ(s.run("(define p::bool)"), "");
    EXPECT_EQ(s.run("(assert (and p (+ p 1)))").substr(0, 2), "![");
    EXPECT_EQ(s.run("(assert+ (and p (not p p)))").substr(0, 2), "![");
    EXPECT_EQ(s.run("(eval-in-model (= p 1))").substr(0, 2), "![");
    EXPECT_EQ(s.run("(assert (not p)) (check)"), "sat\n");
}

TEST(refused_assertions, the_stream_ends_with_the_failure) {
    command_session s;
    EXPECT_EQ(s.run("(define p::bool)(assert (and p q))(echo \"no\")"),
              failed_at(31, "Undefined name \"q\"."));
    EXPECT_EQ(s.run("(echo \"yes\")"), "yes");
}

// --- Scopes.

TEST(scopes, pop_without_push) {
    command_session s;
    std::string const told = "Backtracking not possible here (no matching (push)).\n";
    EXPECT_EQ(s.run("(pop)"), told);
    EXPECT_EQ(s.run("(define x::bool)(assert x)(push)(pop)(pop)(status)"), told + "ok\n");
    EXPECT_EQ(s.run("(assert (not x))"), "unsat\n");
}

TEST(scopes, names_of_a_scope_go_with_it) {
    command_session s;
    EXPECT_EQ(s.run("(push)(define x::bool)(assert x)(pop)"), "");
    EXPECT_EQ(s.run("(assert x)"), failed_at(8, "Undefined name \"x\"."));
    EXPECT_EQ(s.run("(push)(define x::bool)(assert (not x))(check)(pop)"), "sat\n");
    EXPECT_EQ(s.run("(push)(define x::int)(define y::bool x)(pop)"), "");
    EXPECT_EQ(s.run("(define x::bool)(assert x)(check)"), "sat\n");
}

// A name that comes back is another variable.
TEST(scopes, redefinition_after_pop) {
    command_session s;
    EXPECT_EQ(s.run("(set-evidence! true)(define a::bool)(push)(define x::bool (not a))(assert x)(check)"),
              "sat\n(= a false)\n\n");
    EXPECT_EQ(s.run("(pop)(define x::bool a)(assert x)(check)"), "sat\n(= a true)\n\n");
}

TEST(scopes, balanced_pairs_on_a_dead_context) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(push)(assert x)(push)(assert (not x))"), "unsat\n");
    EXPECT_EQ(s.run("(push)(push)"), dead_scope + dead_scope);
    EXPECT_EQ(s.run("(pop)(pop)(status)"), "unsat\n");
    EXPECT_EQ(s.run("(check)"), dead_scope);
    EXPECT_EQ(s.run("(pop)(check)(status)"), "sat\nok\n"); // x still holds
    EXPECT_EQ(s.run("(assert (not x))(pop)(assert (not x))(check)"), "unsat\nsat\n");
    EXPECT_EQ(s.run("(assert x)"), "unsat\n");
    EXPECT_EQ(s.run("(push)"), dead_context);
    EXPECT_EQ(s.run("(check)"), dead_scope);
    EXPECT_EQ(s.run("(pop)(check)"), dead_context);
    EXPECT_EQ(s.run("(pop)"), "Backtracking not possible here (no matching (push)).\n");
    EXPECT_EQ(s.run("(push)(push)(reset)(pop)"),
              dead_context + dead_scope + "Backtracking not possible here (no matching (push)).\n");
}

// The scope of a push that a dead context ignored is one of names nevertheless: the pair can be repeated.
TEST(scopes, names_of_a_dead_scope_are_forgotten) {
    command_session s;
    s.run("(define x::bool)(assert x)(push)(assert (not x))");
    std::string const pair = "(push)(define y::bool)(define-type t)(pop)";
    EXPECT_EQ(s.run(pair + pair), dead_scope + dead_scope);
    EXPECT_EQ(s.m_manager.num_scopes(), 1u);
    EXPECT_EQ(s.run("(pop)(define y::bool)(check)"), "sat\n");
    EXPECT_EQ(s.m_manager.num_scopes(), 0u);
}

TEST(scopes, twenty_thousand_pairs_leave_no_variable_nor_clause) {
    command_session s;
    std::string text = "(define a::bool)(define b::bool)(assert (or a b))";
    EXPECT_EQ(s.run(text), "");
    statistics const before = s.m_context.get_statistics();
    std::string pairs;
    for (int i = 0; i < 100; ++i)
        pairs += "(push)(define c::bool)(assert (or (not a) (= b c)))(assert+ (if a b c))"
                 "(assert-lpb a b c 2)(pop)";
    for (int i = 0; i < 200; ++i) s.run(pairs);
    statistics const after = s.m_context.get_statistics();
    EXPECT_EQ(after.m_num_bool_vars, before.m_num_bool_vars);
    EXPECT_EQ(after.m_num_problem_clauses, before.m_num_problem_clauses);
    EXPECT_EQ(after.m_num_learned_clauses, before.m_num_learned_clauses);
    EXPECT_EQ(s.m_context.base_lvl(), 0u);
    EXPECT_EQ(s.m_manager.num_scopes(), 0u);
    EXPECT_EQ(s.run("(assert (not a))(assert (not b))"), "unsat\n");
}

// --- Reset.

// Each call is a text of its own.
TEST(calls, without_end_leave_the_memory_as_it_is) {
    command_session s;
    EXPECT_EQ(s.run("(define a::bool)(define b::bool)(assert (or a b))"), "");
    auto const rounds = [&](unsigned n) {
        for (unsigned i = 0; i < n; ++i) {
            s.run("(check)(push)(define c::bool)(assert (or (not a) (= b c)))(assert+ (not a))(check)(pop)");
            read_from_string(&s.m_context, "");
        }
        return mallinfo2().uordblks;
    };
    // Whole turns of the tracker of positions, which forgets half of its spans when it is full.
    std::size_t const before = rounds(position_tracker::max_spans / 2);
    std::size_t const after = rounds(position_tracker::max_spans / 4);
    EXPECT_LT(after, before + 100000);
}

TEST(reset, forgets_names_assertions_and_scopes) {
    command_session s;
    EXPECT_EQ(s.run("(define x::bool)(push)(assert x)(assert+ (not x))(assert (not x))"), "id: 9\nunsat\n");
    EXPECT_EQ(s.run("(reset)(retract 9)"), "Error: there is no assertion with id 9.\n");
    EXPECT_EQ(s.run("(pop)"), "Backtracking not possible here (no matching (push)).\n");
    EXPECT_EQ(s.run("(assert x)"), failed_at(8, "Undefined name \"x\"."));
    EXPECT_EQ(s.run("(define x::bool)(assert (not x))(check)"), "sat\n");
}

// Without the way out at 0 no number would be a value there, and any formula with the term unsatisfiable.
TEST(reset, division_by_zero_has_any_value) {
    command_session s;
    std::ostringstream type;
    type << *s.m_manager.find_const_decl("div")->get_type();
    EXPECT_NE(type.str().find("(or\n"), std::string::npos) << type.str();
    EXPECT_NE(type.str().find("(= y 0)"), std::string::npos) << type.str();
}

TEST(reset, defines_div_and_mod_anew) {
    command_session s;
    EXPECT_EQ(s.run("(define d::int (div 7 2))").substr(0, 1), "");
    EXPECT_EQ(s.run("(reset)(define d::int (div 7 2))(define m::int (mod 7 2))"), "");
    EXPECT_EQ(s.run("(define div::int)").substr(0, 2), "![");
}

TEST(reset, places_of_later_commands_are_right) {
    command_session s;
    EXPECT_EQ(s.run("(reset)(nope)"), failed_at(8, "Invalid top level command."));
    EXPECT_EQ(s.run("(echo \"a\")\n (reset) (reset)\n  (nope)"),
              "a![<string>, line(3), column(4), position(31)]: Invalid top level command.");
    temporary_file const file("r.vx", "(reset)\n(define u::bool)\n");
    EXPECT_EQ(s.run("(include \"" + file.path() + "\")\n(assert (or u v))"),
              "![<string>, line(2), column(15), position(" + std::to_string(12 + file.path().size() + 15) +
                  ")]: Undefined name \"v\".");
}

// --- Include.

TEST(include, reads_commands_of_a_file) {
    command_session s;
    temporary_file const file("sky.vx", "(define sun::bool)\n(assert sun) (echo \"in\")");
    EXPECT_EQ(s.run("(echo \"<\")(include \"" + file.path() + "\")(echo \">\")(assert (not sun))"),
              "<in>unsat\n");
}

TEST(include, places_behind_it_are_those_of_the_including_file) {
    command_session s;
    temporary_file const file("three.vx", "\n\n(define sun::bool)\n");
    std::string const command = "(include \"" + file.path() + "\")";
    int const behind = static_cast<int>(command.size());
    EXPECT_EQ(s.run(command + " (nope)"), failed_at(behind + 2, "Invalid top level command."));
    EXPECT_EQ(s.run("(reset)" + command + "(reset) (nope)"),
              failed_at(behind + 16, "Invalid top level command."));
    s.run("(reset)");
    std::string const other = s.run("\n" + command + "\n\n  (assert moon)");
    EXPECT_EQ(other, "![<string>, line(4), column(11), position(" + std::to_string(behind + 13) +
                         ")]: Undefined name \"moon\".");
}

TEST(include, of_a_missing_file) {
    command_session s;
    EXPECT_EQ(s.run("(echo \"x\") (include \"/no/such/file.vx\")(echo \"y\")"),
              "x" + failed_at(11, "Error opening file /no/such/file.vx"));
    EXPECT_EQ(s.run("(include x)"), failed_at(9, "Unexpected token 'identifier'. 'string' expected."));
    EXPECT_EQ(s.run("(include \"\")"), failed_at(0, "Error opening file "));
}

TEST(include, a_failing_file_keeps_its_place_and_the_outer_file_goes_on_later) {
    command_session s;
    temporary_file const bad("bad.vx", "(define u::bool)(assert u)\n (assert nothing)");
    EXPECT_EQ(s.run("(include \"" + bad.path() + "\")(echo \"no\")"),
              "![" + bad.path() + ", line(2), column(10), position(36)]: Undefined name \"nothing\".");
    EXPECT_EQ(s.run("(assert (not u))"), "unsat\n");
    EXPECT_EQ(s.run("(nope)"), failed_at(1, "Invalid top level command."));
}

TEST(include, files_within_files) {
    command_session s;
    temporary_file const inner("inner.vx", "(define a::bool)");
    temporary_file const middle("middle.vx", "(include \"" + inner.path() + "\")\n(define b::bool)");
    temporary_file const bad("bad.vx", "(include \"" + middle.path() + "\") (assert (and a b c))");
    std::string const place = std::to_string(static_cast<int>(12 + middle.path().size()) + 18);
    EXPECT_EQ(s.run("(include \"" + bad.path() + "\")"),
              "![" + bad.path() + ", line(1), column(" + std::to_string(std::stoi(place) + 1) +
                  "), position(" + place + ")]: Undefined name \"c\".");
    EXPECT_EQ(s.run("(assert (and a b))(check)"), "sat\n");
}

TEST(include, a_file_that_includes_itself) {
    command_session s;
    temporary_file const file("loop.vx", "");
    std::ofstream(file.path()) << "(echo \".\")(include \"" << file.path() << "\")";
    std::string const out = s.run("(include \"" + file.path() + "\")");
    EXPECT_EQ(out.substr(0, out.find('!')), std::string(100, '.'));
    EXPECT_NE(out.find("Nesting is too deep."), std::string::npos);
    EXPECT_EQ(s.run("(nope)"), failed_at(1, "Invalid top level command."));
    EXPECT_EQ(s.run("(echo \"fine\")"), "fine");
}

TEST(include, reading_a_file_directly) {
    command_session s;
    temporary_file const file("direct.vx", "(define a::bool)(assert a)");
    read_from_file(&s.m_context, file.path().c_str());
    EXPECT_EQ(s.run("(assert (not a))"), "unsat\n");
    EXPECT_THROW(read_from_file(&s.m_context, "/no/such/file.vx"), error_opening_file);
}

} // namespace

} // namespace vexor_test
