// The command line: options, exit codes, messages, signals, time and memory limits.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sstream>
#include <sys/stat.h>

#include "support/check_model.h"
#include "support/run_program.h"

using namespace vexor_test;

namespace {

std::string const satisfiable = "p cnf 3 2\n1 -2 0\n2 3 0\n";
std::string const unsatisfiable = "p cnf 1 2\n1 0\n-1 0\n";

program_run vexor(std::vector<std::string> arguments, program_options const& options = {}) {
    arguments.insert(arguments.begin(), VEXOR_TOOL);
    return run_program(arguments, options);
}

program_run vexor_reads(std::string const& text, std::vector<std::string> const& arguments = {}) {
    program_options options;
    options.input = text;
    return vexor(arguments, options);
}

// More pigeons than holes: out of reach for a search of some seconds.
std::string pigeons(int holes) {
    std::ostringstream clauses;
    auto var = [&](int pigeon, int hole) { return pigeon * holes + hole + 1; };
    int count = 0;
    for (int p = 0; p <= holes; ++p, ++count) {
        for (int h = 0; h < holes; ++h) clauses << var(p, h) << " ";
        clauses << "0\n";
    }
    for (int h = 0; h < holes; ++h) {
        for (int p = 0; p <= holes; ++p) {
            for (int q = p + 1; q <= holes; ++q, ++count)
                clauses << -var(p, h) << " " << -var(q, h) << " 0\n";
        }
    }
    return "p cnf " + std::to_string((holes + 1) * holes) + " " + std::to_string(count) + "\n" +
           clauses.str();
}

unsigned count_lines(std::string const& text) {
    unsigned count = 0;
    for (char c : text) count += c == '\n';
    return count;
}

} // namespace

TEST(cli, help_names_every_option) {
    program_run run = vexor({"--help"});
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("", run.err);
    for (char const* option :
         {"--format", "--help", "--no-model", "--parse", "--phase", "--print", "--quiet", "--stats",
          "--timeout", "--type-check", "--validate", "--verbosity", "--version"}) {
        EXPECT_NE(std::string::npos, run.out.find(option)) << option;
    }
    EXPECT_EQ(run.out, vexor({"-h"}).out);
}

TEST(cli, version) {
    program_run run = vexor({"--version"});
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("vexor " VEXOR_VERSION "\n", run.out);
}

TEST(cli, bad_options_say_what_to_do) {
    struct {
        std::vector<std::string> m_arguments;
        char const* m_message;
    } const cases[] = {
        {{"--fast"}, "vexor: unknown option '--fast', see vexor --help\n"},
        {{"--fast=1", "x.cnf"}, "vexor: unknown option '--fast', see vexor --help\n"},
        {{"-x"}, "vexor: unknown option '-x', see vexor --help\n"},
        {{"--timeout"}, "vexor: option --timeout needs an argument, see vexor --help\n"},
        {{"--timeout", "soon"}, "vexor: option --timeout expects a positive number of seconds, got 'soon'\n"},
        {{"--timeout=0"}, "vexor: option --timeout expects a positive number of seconds, got '0'\n"},
        {{"--timeout=nan"}, "vexor: option --timeout expects a positive number of seconds, got 'nan'\n"},
        {{"--timeout="}, "vexor: option --timeout expects a positive number of seconds, got ''\n"},
        {{"--verbosity", "-1"}, "vexor: option --verbosity expects a number from 0 to 1000, got '-1'\n"},
        {{"--verbosity=1x"}, "vexor: option --verbosity expects a number from 0 to 1000, got '1x'\n"},
        {{"--format=text"}, "vexor: option --format expects cnf, wcnf or native, got 'text'\n"},
        {{"--stats=1"}, "vexor: option --stats takes no argument\n"},
    };
    for (auto const& one : cases) {
        program_run run = vexor(one.m_arguments);
        EXPECT_EQ(1, run.exit_code);
        EXPECT_EQ("", run.out);
        EXPECT_EQ(one.m_message, run.err);
    }
}

TEST(cli, standard_input_is_read_as_cnf) {
    program_run run = vexor_reads(satisfiable);
    EXPECT_EQ(10, run.exit_code);
    EXPECT_EQ("", run.err);
    solver_output output = parse_solver_output(run.out);
    EXPECT_EQ("SATISFIABLE", output.status);
    EXPECT_TRUE(output.values_ended);
    EXPECT_EQ(3u, output.values.size());
    EXPECT_EQ("", check_model(read_plain_cnf(satisfiable), output.values));
    EXPECT_EQ(run.out, vexor_reads(satisfiable, {"-"}).out);
    EXPECT_EQ(run.out, vexor_reads(satisfiable, {"--validate", "-"}).out);
}

TEST(cli, unsatisfiable_has_no_values) {
    program_run run = vexor_reads(unsatisfiable);
    EXPECT_EQ(20, run.exit_code);
    EXPECT_EQ("s UNSATISFIABLE\n", run.out);
    EXPECT_EQ("", run.err);
}

TEST(cli, values_fill_lines_of_78_columns) {
    std::string text = "p cnf 1000 0\n";
    program_run run = vexor_reads(text);
    solver_output output = parse_solver_output(run.out);
    EXPECT_EQ(1000u, output.values.size());
    EXPECT_TRUE(output.values_ended);
    EXPECT_EQ("", check_model(read_plain_cnf(text), output.values));
    std::istringstream lines(run.out);
    std::size_t longest = 0;
    for (std::string line; std::getline(lines, line);) longest = std::max(longest, line.size());
    EXPECT_GE(longest, 74u);
    EXPECT_LE(longest, 78u);
}

TEST(cli, no_model_leaves_the_values_out) {
    EXPECT_EQ("s SATISFIABLE\n", vexor_reads(satisfiable, {"--no-model"}).out);
}

TEST(cli, statistics_are_comments) {
    program_run run = vexor_reads(satisfiable, {"--stats"});
    EXPECT_EQ(10, run.exit_code);
    for (char const* name :
         {"\nc search.conflicts ", "\nc search.propagations ", "\nc process.peak-memory-mb "}) {
        EXPECT_NE(std::string::npos, run.out.find(name)) << name;
    }
    EXPECT_EQ("SATISFIABLE", parse_solver_output(run.out).status);
}

TEST(cli, phases_change_no_answer) {
    temporary_file unsat("a.cnf", pigeons(5));
    for (char const* phase : {"false", "true", "random", "last", "alternate"}) {
        program_run run = vexor({"--phase", phase, unsat.path()});
        EXPECT_EQ(20, run.exit_code) << phase;
        run = vexor_reads(satisfiable, {"--validate", std::string("--phase=") + phase});
        EXPECT_EQ(10, run.exit_code) << phase;
    }
    // What is tried first shows where nothing decides.
    EXPECT_EQ("s SATISFIABLE\nv -1 -2 0\n", vexor_reads("p cnf 2 0\n", {"--phase=false"}).out);
    EXPECT_EQ("s SATISFIABLE\nv 1 2 0\n", vexor_reads("p cnf 2 0\n", {"--phase=true"}).out);
    EXPECT_EQ("vexor: option --phase expects false, true, random, last or alternate, got 'x'\n",
              vexor({"--phase=x"}).err);
}

TEST(cli, verbosity_reaches_the_library) {
    EXPECT_EQ("", vexor_reads(satisfiable).err);
    EXPECT_NE("", vexor_reads(satisfiable, {"--verbosity=1"}).err);
}

TEST(cli, an_answer_that_cannot_be_written_is_an_error) {
    temporary_file sat("a.cnf", satisfiable);
    program_run run =
        run_program({"/bin/sh", "-c", std::string(VEXOR_TOOL) + " " + sat.path() + " >/dev/full"});
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("vexor: the answer cannot be written\n", run.err);
}

TEST(cli, native_files_can_be_parsed_and_printed) {
    temporary_file good("a.vx", "(define x::int)\n(assert (< x 3))\n"), bad("b.vx", "(assert (< x 3))\n");
    program_run run = vexor({"--parse", "--type-check", "--print", good.path()});
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("", run.err);
    temporary_file again("c.vx", run.out);
    EXPECT_EQ(run.out, vexor({"--parse", "--print", again.path()}).out);
    run = vexor({"--parse", bad.path()});
    EXPECT_EQ(1, run.exit_code);
    EXPECT_NE(std::string::npos, run.err.find("line(1)")) << run.err;
    run = vexor({"--parse", "/nowhere/a.vx"});
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("the file \"/nowhere/a.vx\" cannot be read: No such file or directory\n", run.err);
}

TEST(cli, several_files_are_headed_by_their_names) {
    temporary_file sat("a.cnf", satisfiable), unsat("b.dimacs", unsatisfiable), bad("c.cnf", "p cnf x\n");
    program_run run = vexor({"--no-model", sat.path(), unsat.path()});
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("c " + sat.path() + "\ns SATISFIABLE\nc " + unsat.path() + "\ns UNSATISFIABLE\n", run.out);
    EXPECT_EQ(20, vexor({unsat.path(), unsat.path()}).exit_code);
    run = vexor({bad.path(), unsat.path()});
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("c " + bad.path() + "\nc " + unsat.path() + "\ns UNSATISFIABLE\n", run.out);
    EXPECT_NE(std::string::npos, run.err.find("Invalid dimacs file: \"" + bad.path() + "\"."));
}

TEST(cli, a_name_cannot_forge_an_answer) {
    temporary_file sat("a\ns UNSATISFIABLE\n.cnf", satisfiable);
    program_run run = vexor({"--no-model", sat.path(), sat.path()});
    EXPECT_EQ(std::string::npos, run.out.find("\ns UNSAT"));
    EXPECT_EQ(10, run.exit_code);
}

TEST(cli, the_format_follows_the_ending_or_the_option) {
    temporary_file other("a.txt", satisfiable), upper("A.CNF", satisfiable), dash("--stats", satisfiable);
    EXPECT_EQ(10, vexor({"--format", "cnf", other.path()}).exit_code);
    EXPECT_EQ(10, vexor({"--format=cnf", other.path()}).exit_code);
    EXPECT_EQ(10, vexor({upper.path()}).exit_code);
    EXPECT_EQ(10, vexor({"--format=cnf", "--", dash.path()}).exit_code);
}

TEST(cli, a_weighted_file_is_solved_at_the_least_cost) {
    temporary_file weighted("a.wcnf", "p wcnf 2 4 10\n10 -1 -2 0\n4 1 0\n6 2 0\n5000000000 1 2 0\n");
    program_run run = vexor({weighted.path()});
    EXPECT_EQ(30, run.exit_code);
    EXPECT_EQ("", run.err);
    EXPECT_NE(std::string::npos, run.out.find("o 4\ns OPTIMUM FOUND\nv -1 2 0\n")) << run.out;
    run = vexor({"--validate", "--no-model", weighted.path()});
    EXPECT_EQ(30, run.exit_code);
    EXPECT_EQ(std::string::npos, run.out.find("\nv"));
    // By another name the weights are only read.
    EXPECT_EQ(20, vexor({"--format", "cnf", weighted.path()}).exit_code);
    EXPECT_EQ(30, vexor_reads("p wcnf 1 1\n3 1 0\n", {"--format", "wcnf"}).exit_code);
    run = vexor_reads("p wcnf 1 1 3\n3 1 0\n", {"--format", "wcnf"});
    EXPECT_EQ("o 0\ns OPTIMUM FOUND\nv 1 0\n", run.out);
}

TEST(cli, an_unsatisfiable_hard_part_has_no_cost) {
    program_run run = vexor_reads("p wcnf 2 4 9\n3 1 0 9 1 0 9 -1 2 0 9 -2 0\n", {"--format", "wcnf"});
    EXPECT_EQ(20, run.exit_code);
    EXPECT_EQ("s UNSATISFIABLE\n", run.out);
}

TEST(cli, a_time_limit_leaves_the_best_cost_so_far) {
    // All clauses are soft: to violate none takes a refutation out of reach, to violate one is easy.
    temporary_file hard("hard.wcnf", pigeons(20));
    program_run run;
    // On a machine that is busy, a short limit may pass before there is any cost.
    for (char const* seconds : {"1", "5", "40"}) {
        run = vexor({"--timeout", seconds, hard.path()});
        if (run.out.substr(0, 2) == "o ") break;
    }
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ(0u, run.out.find("o ")) << run.out;
    EXPECT_NE(std::string::npos, run.out.find("\ns UNKNOWN\nv ")) << run.out;
}

TEST(cli, files_that_cannot_be_read) {
    program_run run = vexor({"/nowhere/a.cnf"});
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("", run.out);
    EXPECT_EQ("Invalid dimacs file: \"/nowhere/a.cnf\". the file cannot be read: No such file or directory\n",
              run.err);
    temporary_file empty("empty.cnf", "");
    run = vexor({"--format", "cnf", empty.folder()});
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("Invalid dimacs file: \"" + empty.folder() +
                  "\". line 1: the file cannot be read: Is a directory\n",
              run.err);
    run = vexor({"--validate", "--format", "cnf", empty.folder()});
    EXPECT_EQ(1, run.exit_code);
    // No header is needed where no variable is used.
    run = vexor({empty.path()});
    EXPECT_EQ(10, run.exit_code);
    EXPECT_EQ("s SATISFIABLE\nv 0\n", run.out);
}

TEST(cli, errors_name_line_and_reason) {
    program_run run = vexor_reads("c first\np cnf 3 1\n1 2\n-4 0\n");
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(
        "Invalid dimacs file: \"<stdin>\". line 4: the literal -4 exceeds the 3 variables of the header\n",
        run.err);
}

TEST(cli, a_time_limit_ends_the_search) {
    temporary_file hard("hard.cnf", pigeons(12)), sat("sat.cnf", satisfiable);
    program_run run = vexor({"--timeout", "0.5", hard.path()});
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("s UNKNOWN\n", run.out);
    EXPECT_EQ("", run.err); // no progress where nobody looks
    EXPECT_GE(run.seconds, 0.4);
    EXPECT_LE(run.seconds, 10);
    // The limit is each file's own.
    run = vexor({"--timeout=0.2", hard.path(), sat.path()});
    EXPECT_EQ(0, run.exit_code);
    EXPECT_NE(std::string::npos, run.out.find("s UNKNOWN"));
    EXPECT_NE(std::string::npos, run.out.find("s SATISFIABLE"));
}

TEST(cli, a_time_limit_ends_the_reading) {
    program_options options;
    options.input = "p cnf 2 1\n1 ";
    options.keep_input_open = true;
    program_run run = vexor({"--timeout", "0.3"}, options);
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("s UNKNOWN\n", run.out);
    EXPECT_FALSE(run.timed_out);
}

TEST(cli, a_time_limit_ends_the_wait_for_the_first_character) {
    program_options options;
    options.keep_input_open = true;
    program_run run = vexor({"--timeout", "0.3"}, options);
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("s UNKNOWN\n", run.out);
    EXPECT_FALSE(run.timed_out);
}

TEST(cli, a_time_limit_ends_the_opening_of_a_pipe) {
    temporary_file neighbour("a.cnf", "");
    std::string path = neighbour.folder() + "/pipe.cnf";
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    program_run run = vexor({"--timeout", "0.3", path});
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("s UNKNOWN\n", run.out);
    EXPECT_FALSE(run.timed_out);
}

TEST(cli, signals_end_the_search_with_statistics) {
    temporary_file hard("hard.cnf", pigeons(12));
    for (int signal : {SIGINT, SIGTERM}) {
        program_options options;
        options.signal = signal;
        options.signal_after_seconds = 0.4;
        program_run run = vexor({hard.path()}, options);
        EXPECT_EQ(0, run.exit_code) << signal;
        EXPECT_EQ(0, run.signal);
        EXPECT_NE(std::string::npos, run.out.find("s UNKNOWN\n"));
        EXPECT_NE(std::string::npos, run.out.find("c search.conflicts"));
        EXPECT_EQ("", run.err);
        // The files behind it are not begun.
        run = vexor({hard.path(), hard.path()}, options);
        EXPECT_EQ(run.out.find("s UNKNOWN"), run.out.rfind("s UNKNOWN"));
    }
}

TEST(cli, signals_end_the_reading) {
    program_options options;
    options.keep_input_open = true;
    options.signal = SIGTERM;
    options.signal_after_seconds = 0.4;
    program_run run = vexor({}, options);
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ("s UNKNOWN\n", run.out.substr(0, 10));
}

TEST(cli, progress_only_on_a_terminal) {
    temporary_file hard("hard.cnf", pigeons(12));
    program_options options;
    options.terminal_errors = true;
    program_run run = vexor({"--timeout=2.7", hard.path()}, options);
    EXPECT_EQ("s UNKNOWN\n", run.out);
    EXPECT_NE(std::string::npos, run.err.find("conflicts"));
    EXPECT_GE(count_lines(run.err), 1u);
    EXPECT_LE(count_lines(run.err), 2u);
    EXPECT_EQ("", vexor({"--quiet", "--timeout=1.5", hard.path()}, options).err);
}

// The sanitizers reserve more address space than any limit leaves.
#if !VEXOR_SANITIZED
TEST(cli, exhausted_memory_is_said_and_aborts) {
    std::string text = "p cnf 4000000 1\n1 0\n";
    program_options options;
    options.input = text;
    options.address_space_mb = 128;
    program_run run = vexor({}, options);
    EXPECT_EQ(SIGABRT, run.signal);
    EXPECT_EQ("Memory exhausted...\n", run.err);
    EXPECT_EQ("", run.out);
}

TEST(cli, promised_variables_take_no_memory) {
    for (char const* count :
         {"2147483647", "2147483648", "4294967296", "18446744073709551617", "100000000"}) {
        program_options options;
        options.input = std::string("p cnf ") + count + " 1\n1 0\n";
        options.address_space_mb = 128;
        program_run run = vexor({}, options);
        EXPECT_EQ(1, run.exit_code) << count;
        EXPECT_NE(std::string::npos, run.err.find("more variables")) << run.err;
    }
}
#endif
