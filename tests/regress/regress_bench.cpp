// regress_bench TOOL FOLDER SECONDS: the quick ones of a folder of benchmark files with known answers. The
// folder's MANIFEST.tsv gives for each file its status and the seconds another solver took, which must be
// below the limit given. Without the folder there is nothing to run, which passes.
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>

#include "support/check_model.h"
#include "support/run_program.h"

using namespace vexor_test;

namespace {

struct bench_file {
    std::string m_path, m_status;
};

std::vector<bench_file> read_manifest(std::string const& folder, double quick_seconds) {
    std::vector<bench_file> result;
    std::ifstream in(folder + "/MANIFEST.tsv");
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        std::string path, family, status, seconds;
        std::getline(fields, path, '\t');
        std::getline(fields, family, '\t');
        std::getline(fields, status, '\t');
        std::getline(fields, seconds, '\t');
        if (path.rfind("cnf/", 0) != 0 || std::stod(seconds) >= quick_seconds) continue;
        result.push_back({folder + "/" + path, status});
    }
    return result;
}

std::string check(bench_file const& file, program_run const& run) {
    bool sat = file.m_status == "sat";
    if (run.timed_out || run.exit_code != (sat ? 10 : 20)) {
        return "expected " + file.m_status + ", exit code " + std::to_string(run.exit_code) +
               (run.timed_out ? " (ran too long)" : "") + run.err;
    }
    solver_output output = parse_solver_output(run.out);
    if (output.status != (sat ? "SATISFIABLE" : "UNSATISFIABLE")) return "status " + output.status;
    return sat ? check_model(read_plain_cnf_file(file.m_path), output.values) : "";
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: regress_bench TOOL FOLDER SECONDS\n";
        return 2;
    }
    unsigned failures = 0;
    std::vector<bench_file> files = read_manifest(argv[2], std::stod(argv[3]));
    for (bench_file const& file : files) {
        program_options options;
        options.limit_seconds = 300;
        std::string problem;
        try {
            // The extension may be a foreign one.
            problem = check(file, run_program({argv[1], "--format", "cnf", file.m_path}, options));
        } catch (std::exception const& error) {
            problem = error.what();
        }
        if (problem.empty()) continue;
        ++failures;
        std::cout << file.m_path << ": " << problem << "\n";
    }
    std::cout << files.size() << " files ran, " << failures << " failures\n";
    return failures == 0 ? 0 : 1;
}
