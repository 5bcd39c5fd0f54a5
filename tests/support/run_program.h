// Runs a program as a child process and keeps what it said.
#pragma once

#include <string>
#include <vector>

namespace vexor_test {

struct program_run {
    int exit_code = -1;     // -1 if it was ended by a signal
    int signal = 0;         // that ended it
    bool timed_out = false; // it ran into the limit and was killed
    double seconds = 0;     // wall clock
    std::string out;
    std::string err;
};

struct program_options {
    std::string input;                  // for standard input
    bool keep_input_open = false;       // standard input never ends
    double limit_seconds = 60;          // killed after this time
    double signal_after_seconds = 0;    // 0 for no signal
    int signal = 0;                     // sent then
    unsigned long address_space_mb = 0; // 0 for no limit
    bool terminal_errors = false;       // the error stream is a pseudo terminal
};

program_run run_program(std::vector<std::string> const& command, program_options const& options = {});

// A file in a fresh temporary folder that lives as long as this.
class temporary_file {
public:
    temporary_file(std::string const& name, std::string const& text);
    ~temporary_file();
    temporary_file(temporary_file const&) = delete;
    temporary_file& operator=(temporary_file const&) = delete;
    [[nodiscard]] std::string const& path() const { return m_path; }
    [[nodiscard]] std::string const& folder() const { return m_folder; }

private:
    std::string m_folder, m_path;
};

} // namespace vexor_test
