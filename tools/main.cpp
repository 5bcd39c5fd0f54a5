// The command line.
#include <exception>
#include <iostream>
#include <string>
#include <system_error>
#include <unistd.h>

#include "base/diagnostics.h"
#include "base/exceptions.h"
#include "base/memory.h"
#include "dimacs_command.h"
#include "dimacs_output.h"
#include "heap_pages.h"
#include "input.h"
#include "native_command.h"
#include "options.h"
#include "parse_command.h"
#include "stop_request.h"

namespace {

using namespace vexor_tool;

constexpr int exit_error = 1;

// Standard input has no ending: a terminal is a session, and other text tells by its first character, since a
// DIMACS file begins with a comment, a header or a number.
bool is_native(options const& opts, std::string const& file) {
    if (file != "-" || opts.m_format != input_format::by_name)
        return format_of(opts, file) == input_format::native;
    if (isatty(STDIN_FILENO) != 0) return true;
    try {
        stop_watch const watch(opts.m_timeout_seconds); // the first character may never come
        int const first = peek_standard_input();
        return first == '(' || first == ';';
    } catch (interrupted_exception const&) {
        if (stop_requested() != stop_reason::signal) throw;
        return false; // the answer is unknown, with the statistics of nothing
    }
}

int run_file(options const& opts, std::string const& file, bool last_file) {
    try {
        if (opts.m_parse) return run_parse(opts, file);
        if (is_native(opts, file)) return run_native(opts, file);
        return run_dimacs(opts, file, last_file);
    } catch (interrupted_exception const&) {
        print_status(std::cout, 0, false);
        return exit_code_of(0, false);
    } catch (vexor::cnf_exception const& error) {
        std::cerr << error.what() << " ";
        if (error.get_line() != 0) std::cerr << "line " << error.get_line() << ": ";
        std::cerr << error.get_reason() << "\n";
    } catch (std::system_error const& error) {
        std::cerr << "the file \"" << file << "\" cannot be read: " << error.code().message() << "\n";
    } catch (std::exception const& error) {
        std::cerr << error.what() << "\n";
    }
    return exit_error;
}

// An answer that could not be written is none.
bool flush_answers() {
    std::cout.flush();
    if (std::cout) return true;
    std::cerr << "vexor: the answer cannot be written\n";
    return false;
}

// A file name as part of one comment line.
std::string printable(std::string name) {
    for (char& c : name) {
        if (static_cast<unsigned char>(c) < ' ') c = '?';
    }
    return name;
}

int run_files(options const& opts) {
    int result = 0;
    bool first = true;
    bool failed = false;
    for (std::string const& file : opts.m_files) {
        if (opts.m_files.size() > 1) std::cout << "c " << printable(file) << std::endl;
        int code = run_file(opts, file, &file == &opts.m_files.back());
        failed |= code == exit_error;
        result = first || code == result ? code : 0;
        first = false;
        if (stop_requested() == stop_reason::signal) break;
    }
    return failed ? exit_error : result;
}

} // namespace

int main(int argc, char** argv) {
    ask_for_huge_pages();
    vexor::setNewHandler();
    try {
        options opts = parse_options(argc, argv);
        if (opts.m_help || opts.m_version) {
            if (opts.m_version) std::cout << "vexor " << VEXOR_VERSION << "\n";
            if (opts.m_help) print_help(std::cout);
            return 0;
        }
        catch_stop_signals();
        vexor::set_verbosity_level(opts.m_verbosity);
        int code = run_files(opts);
        return flush_answers() ? code : exit_error;
    } catch (usage_error const& error) {
        std::cerr << "vexor: " << error.what() << "\n";
        return exit_error;
    }
}
