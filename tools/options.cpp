#include "options.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <iterator>
#include <ostream>

#include "search/search_settings.h"

namespace vexor_tool {

namespace {

// One row of the table: everything that is known about an option.
struct option_row {
    char const* m_name;
    char const* m_short;    // one letter form or null
    char const* m_argument; // its name in the help, null if the option takes none
    char const* m_help;
    void (*m_apply)(options& opts, std::string const& argument);
    bool m_argument_optional = false; // given as "--name=value" only, else the argument is empty
};

[[noreturn]] void bad_argument(char const* option, char const* expected, std::string const& got) {
    throw usage_error(std::string("option ") + option + " expects " + expected + ", got '" + got + "'");
}

void apply_format(options& opts, std::string const& argument) {
    if (argument == "cnf") {
        opts.m_format = input_format::cnf;
    } else if (argument == "wcnf") {
        opts.m_format = input_format::wcnf;
    } else if (argument == "native") {
        opts.m_format = input_format::native;
    } else {
        bad_argument("--format", "cnf, wcnf or native", argument);
    }
}

void apply_phase(options& opts, std::string const& argument) {
    struct {
        char const* m_name;
        int m_polarity;
    } const phases[] = {{"false", 0},
                        {"true", 1},
                        {"random", 2},
                        {"last", vexor::saved_polarity},
                        {"alternate", vexor::alternating_polarity}};
    for (auto const& phase : phases) {
        if (argument != phase.m_name) continue;
        opts.m_phase = phase.m_polarity;
        return;
    }
    bad_argument("--phase", "false, true, random, last or alternate", argument);
}

void apply_print(options& opts, std::string const& argument) {
    if (argument.empty() || argument == "tree") {
        opts.m_print_terms = print_terms::tree;
    } else if (argument == "dag") {
        opts.m_print_terms = print_terms::dag;
    } else {
        bad_argument("--print", "tree or dag", argument);
    }
}

void apply_timeout(options& opts, std::string const& argument) {
    constexpr double longest = 1e9;
    char* end = nullptr;
    double value = std::strtod(argument.c_str(), &end);
    // The comparison is false for a value that is no number, too.
    if (argument.empty() || *end != '\0' || !(value > 0 && value <= longest)) {
        bad_argument("--timeout", "a positive number of seconds", argument);
    }
    opts.m_timeout_seconds = value;
}

void apply_verbosity(options& opts, std::string const& argument) {
    constexpr long highest = 1000;
    char* end = nullptr;
    long value = std::strtol(argument.c_str(), &end, 10);
    if (argument.empty() || *end != '\0' || value < 0 || value > highest) {
        bad_argument("--verbosity", "a number from 0 to 1000", argument);
    }
    opts.m_verbosity = static_cast<int>(value);
}

// Sorted by name; the help is printed from here.
option_row const g_table[] = {
    {"--evidence", nullptr, nullptr, "native files: show models and unsatisfiable cores",
     [](options& o, std::string const&) { o.m_evidence = true; }},
    {"--format", nullptr, "FORMAT", "read all files as cnf, wcnf or native, whatever their endings",
     apply_format},
    {"--help", "-h", nullptr, "print this text", [](options& o, std::string const&) { o.m_help = true; }},
    {"--no-model", nullptr, nullptr, "print no assignment behind a satisfiable answer",
     [](options& o, std::string const&) { o.m_print_model = false; }},
    {"--parse", nullptr, nullptr, "only read the files, in vexor's own language whatever their endings",
     [](options& o, std::string const&) { o.m_parse = true; }},
    {"--phase", nullptr, "MODE", "what decisions try first: false, true, random, last (value) or alternate",
     apply_phase},
    {"--print", nullptr, "[=dag]", "with --parse: print what was read, with dag shared terms only once",
     apply_print, true},
    {"--quiet", "-q", nullptr, "show no progress", [](options& o, std::string const&) { o.m_quiet = true; }},
    {"--stats", nullptr, nullptr, "print what the search counted",
     [](options& o, std::string const&) { o.m_stats = true; }},
    {"--timeout", nullptr, "SECONDS", "stop after this time on a file and answer unknown", apply_timeout},
    {"--type-check", nullptr, nullptr, "native files: check the types of what is read",
     [](options& o, std::string const&) { o.m_type_check = true; }},
    {"--validate", nullptr, nullptr, "check the assignment against the file before answering",
     [](options& o, std::string const&) { o.m_validate = true; }},
    {"--verbosity", nullptr, "N", "how much the library reports on the error stream, from 0",
     apply_verbosity},
    {"--version", nullptr, nullptr, "print the version",
     [](options& o, std::string const&) { o.m_version = true; }},
};

option_row const* find_row(std::string const& name) {
    for (option_row const& row : g_table) {
        if (name == row.m_name || (row.m_short && name == row.m_short)) return &row;
    }
    return nullptr;
}

// Applies the option at argv[position], "--name value" or "--name=value". Returns the position of its last
// word.
int apply_option(options& opts, int position, int argc, char const* const* argv) {
    std::string word = argv[position];
    std::size_t equals = word.rfind("--", 0) == 0 ? word.find('=') : std::string::npos;
    std::string name = word.substr(0, equals);
    option_row const* row = find_row(name);
    if (!row) throw usage_error("unknown option '" + name + "', see vexor --help");
    if (!row->m_argument) {
        if (equals != std::string::npos) throw usage_error("option " + name + " takes no argument");
        row->m_apply(opts, "");
        return position;
    }
    if (equals != std::string::npos) {
        row->m_apply(opts, word.substr(equals + 1));
        return position;
    }
    if (row->m_argument_optional) {
        row->m_apply(opts, "");
        return position;
    }
    if (position + 1 >= argc) throw usage_error("option " + name + " needs an argument, see vexor --help");
    row->m_apply(opts, argv[position + 1]);
    return position + 1;
}

bool ends_with(std::string const& text, char const* ending) {
    std::size_t length = std::strlen(ending);
    return text.size() >= length &&
           std::equal(text.end() - static_cast<std::ptrdiff_t>(length), text.end(), ending,
                      [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
}

} // namespace

options parse_options(int argc, char const* const* argv) {
    options opts;
    bool only_files = false;
    for (int i = 1; i < argc; ++i) {
        std::string word = argv[i];
        if (only_files || word == "-" || word.empty() || word[0] != '-') {
            opts.m_files.push_back(word);
        } else if (word == "--") {
            only_files = true;
        } else {
            i = apply_option(opts, i, argc, argv);
        }
    }
    if (opts.m_files.empty()) opts.m_files.push_back("-");
    return opts;
}

void print_help(std::ostream& out) {
    out << "usage: vexor [OPTION...] [FILE...]\n"
           "\n"
           "Decides each file: CNF (.cnf, .dimacs), weighted CNF (.wcnf) or, with any other ending, vexor's "
           "own\n"
           "language. Without a file, or for '-', standard input is read; a terminal is a session in that "
           "language.\n"
           "\n"
           "options:\n";
    for (option_row const& row : g_table) {
        std::string left = row.m_name;
        if (row.m_argument) left += std::string(row.m_argument_optional ? "" : " ") + row.m_argument;
        if (row.m_short) left = std::string(row.m_short) + ", " + left;
        out << "  " << std::left << std::setw(21) << left << " " << row.m_help << "\n";
    }
    out << "\n"
           "The exit code is 10 for satisfiable, 30 for a proven least cost of a weighted file, 20 for\n"
           "unsatisfiable, 0 for unknown and 1 after an error. "
           "For several\n"
           "files it is the code on which all agree, else 0, and 1 if any of them had an error.\n";
}

input_format format_of(options const& opts, std::string const& file) {
    if (opts.m_format != input_format::by_name) return opts.m_format;
    if (file == "-" || ends_with(file, ".cnf") || ends_with(file, ".dimacs")) return input_format::cnf;
    if (ends_with(file, ".wcnf")) return input_format::wcnf;
    return input_format::native;
}

} // namespace vexor_tool
