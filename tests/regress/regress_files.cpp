// regress_files TOOL FOLDER: runs every file of the folder and compares with the expectation in its comments.
// Models are checked by a reader of their own.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "expectation.h"
#include "support/check_model.h"
#include "support/run_program.h"

using namespace vexor_test;

namespace {

std::string slurp(std::filesystem::path const& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string check_answer(expectation const& expected, program_run const& run, std::string const& text) {
    if (run.timed_out) return "ran too long";
    if (run.signal != 0) return "ended by signal " + std::to_string(run.signal) + ", errors: " + run.err;
    if (expected.answer == "error") {
        if (run.exit_code != 1) return "exit code " + std::to_string(run.exit_code) + " instead of 1";
        if (run.err.find(expected.error) == std::string::npos) return "unexpected error text: " + run.err;
        return run.out.find("s ") == std::string::npos ? "" : "an answer besides the error: " + run.out;
    }
    bool sat = expected.answer == "sat", unsat = expected.answer == "unsat";
    int code = sat ? 10 : unsat ? 20 : 0;
    if (run.exit_code != code) {
        return "exit code " + std::to_string(run.exit_code) + " instead of " + std::to_string(code) +
               ", errors: " + run.err;
    }
    if (!run.err.empty()) return "unexpected text on the error stream: " + run.err;
    solver_output output = parse_solver_output(run.out);
    std::string status = sat ? "SATISFIABLE" : unsat ? "UNSATISFIABLE" : "UNKNOWN";
    if (output.status_lines != 1 || output.status != status) return "status '" + output.status + "'";
    if (!sat) return output.has_values ? "values without a model" : "";
    if (!output.values_ended) return "the values do not end with 0";
    return check_model(read_plain_cnf(text), output.values);
}

std::string run_file(std::string const& tool, std::filesystem::path const& path, bool validate) {
    std::string text = slurp(path);
    expectation expected = read_expectation(text);
    if (expected.answer.empty()) return "the file states no expectation";
    std::vector<std::string> command{tool};
    command.insert(command.end(), expected.options.begin(), expected.options.end());
    if (validate) command.push_back("--validate");
    command.push_back(path.string());
    return check_answer(expected, run_program(command), text);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: regress_files TOOL FOLDER\n";
        return 2;
    }
    std::vector<std::filesystem::path> files;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(argv[2])) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    unsigned failures = 0;
    for (auto const& file : files) {
        for (bool validate : {false, true}) {
            std::string problem;
            try {
                problem = run_file(argv[1], file, validate);
            } catch (std::exception const& error) {
                problem = error.what();
            }
            if (problem.empty()) continue;
            ++failures;
            std::cout << file.string() << (validate ? " (--validate)" : "") << ": " << problem << "\n";
        }
    }
    std::cout << files.size() << " files, " << failures << " failures\n";
    return failures == 0 && !files.empty() ? 0 : 1;
}
