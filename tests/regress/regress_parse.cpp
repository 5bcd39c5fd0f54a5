// The command line's --parse: what it prints, and what it says about faults.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/run_program.h"

using namespace vexor_test;

namespace {

program_run parse(std::string const& text, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {VEXOR_TOOL, "--parse"});
    program_options options;
    options.input = text;
    return run_program(arguments, options);
}

std::string const formula = "(define-type t (datatype nil (cons head::int tail::t)))\n"
                            "(define l::t)\n"
                            "(define p::bool)\n";

} // namespace

TEST(parse_command, prints_what_it_read) {
    std::string text = formula + "(assert (or (not p) (if (cons? l) (= (head l) 4/2) (not p))))(check)";
    std::string expected = "(define-type t (datatype nil (cons head::int tail::t)))\n"
                           "(define l::t)\n"
                           "(define p::bool)\n";
    program_run tree = parse(text, {"--print"});
    EXPECT_EQ(0, tree.exit_code);
    EXPECT_EQ("", tree.err);
    EXPECT_EQ(expected + "(assert (or (not p) (ite (cons? l) (= (head l) 2) (not p))))\n", tree.out);
    program_run dag = parse(text, {"--print=dag"});
    EXPECT_EQ(expected + "(assert (or #1(not p) (ite (cons? l) (= (head l) 2) #1)))\n", dag.out);
    EXPECT_EQ(dag.out, parse(dag.out, {"--print=dag"}).out);
    EXPECT_EQ(tree.out, parse(dag.out, {"--print=tree"}).out);
    EXPECT_EQ("", parse(text).out);
}

TEST(parse_command, says_where_the_fault_is) {
    program_run cut = parse(formula + "(assert (and p");
    EXPECT_EQ(1, cut.exit_code);
    EXPECT_EQ("", cut.out);
    EXPECT_NE(std::string::npos,
              cut.err.find(", line(4), column(15), position(101)]: Expression expected.\n"))
        << cut.err;
    std::string ill_typed = formula + "(assert (and p l))";
    EXPECT_EQ(0, parse(ill_typed).exit_code);
    program_run checked = parse(ill_typed, {"--type-check"});
    EXPECT_EQ(1, checked.exit_code);
    EXPECT_NE(std::string::npos,
              checked.err.find(", line(4), column(9), position(95)]: argument is not boolean.\n"))
        << checked.err;
    EXPECT_EQ(1, parse("", {"/no/such/file"}).exit_code);
    EXPECT_EQ(1, parse("", {"--print=graph"}).exit_code);
}
