#include "log_replay.h"

#include "support/command_session.h"
#include "support/run_program.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace vexor_test {

namespace {

std::string const& log_path() {
    static temporary_file const file("api.log", "");
    static bool const is_open = [] {
        vexor_enable_log_file(file.path().c_str());
        return true;
    }();
    static_cast<void>(is_open);
    return file.path();
}

lbool answer_of(std::string const& output) {
    std::string const first_line = output.substr(0, output.find('\n'));
    if (first_line == "sat") return 1;
    if (first_line == "unsat" || output == dead_context || output == dead_scope) return -1;
    return 0;
}

} // namespace

std::size_t log_size() {
    std::ifstream stream(log_path(), std::ios::binary | std::ios::ate);
    return static_cast<std::size_t>(stream.tellg());
}

std::string log_since(std::size_t size) {
    std::ifstream stream(log_path(), std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(size));
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<replayed_line> replay(std::string const& log) {
    std::vector<replayed_line> result;
    command_session session;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == ';') continue;
        replayed_line r;
        r.m_command = line;
        r.m_output = session.run(line);
        if (r.is_question()) r.m_answer = answer_of(r.m_output);
        if (r.m_output.compare(0, 4, "id: ") == 0) r.m_id = std::atoi(r.m_output.c_str() + 4);
        if (line == "(max-sat)" && r.m_answer == 1) {
            std::ostringstream cost;
            cost << session.m_context.get_model().cost();
            r.m_cost = cost.str();
        }
        result.push_back(r);
    }
    return result;
}

std::vector<lbool> replayed_answers(std::string const& log) {
    std::vector<lbool> result;
    for (replayed_line const& line : replay(log)) {
        EXPECT_EQ(line.m_output.find('!'), std::string::npos) << line.m_command << "\n" << line.m_output;
        if (line.is_question()) result.push_back(line.m_answer);
    }
    return result;
}

} // namespace vexor_test
