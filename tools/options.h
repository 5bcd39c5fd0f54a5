// The command line: one table of options.
#pragma once

#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

namespace vexor_tool {

enum class input_format { by_name, cnf, wcnf, native };

// How --parse prints what it read.
enum class print_terms { none, tree, dag };

struct options {
    std::vector<std::string> m_files; // in order; "-" is standard input; never empty after parse_options
    input_format m_format = input_format::by_name;
    int m_verbosity = 0;
    // How decisions choose a value, as g_decision_polarity; left to the command when negative.
    int m_phase = -1;
    double m_timeout_seconds = 0; // wall clock time for each file, 0 for none
    bool m_help = false;
    bool m_version = false;
    bool m_stats = false;
    bool m_quiet = false;
    bool m_print_model = true;
    bool m_validate = false;
    bool m_parse = false;
    bool m_evidence = false;
    print_terms m_print_terms = print_terms::none;
    bool m_type_check = false;
};

// A command line that cannot be run; what() says what to do about it.
class usage_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Throws usage_error.
options parse_options(int argc, char const* const* argv);
void print_help(std::ostream& out);

// What to read a file as: the format asked for, else by the file's ending.
input_format format_of(options const& opts, std::string const& file);

} // namespace vexor_tool
