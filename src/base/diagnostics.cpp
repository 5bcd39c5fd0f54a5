#include "base/diagnostics.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <ostream>
#include <sys/resource.h>
#include <unistd.h>

namespace vexor {

hash_set<ustring, hash_ustring> g_enabled_debug_ids;
bool g_display_all = true;
bool g_ignore_all = false;

namespace {

int g_verbosity_level = 0;

} // namespace

void set_verbosity_level(int level) { g_verbosity_level = level; }

int get_verbosity_level() { return g_verbosity_level; }

std::size_t get_memory_used() {
    char file[64];
    std::snprintf(file, sizeof file, "/proc/%d/statm", static_cast<int>(getpid()));
    return get_memory_used(file);
}

std::size_t get_memory_used(char const* statm_file) {
    std::ifstream in(statm_file);
    std::size_t pages = 0;
    if (!(in >> pages)) return 0;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

bool is_cpu_time_available() { return true; }

double get_cpu_time() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) / 1000000;
}

void display_boxed(std::ostream& out, int indent, int width, char const* text) {
    std::string const margin(indent > 0 ? static_cast<std::size_t>(indent) : 0, ' ');
    auto const start = static_cast<std::size_t>(margin.size());
    auto const limit = width > 0 ? static_cast<std::size_t>(width) : 0;
    std::size_t column = start; // the first line begins where the caller's cursor stands, at the indentation
    while (*text != '\0') {
        if (*text == ' ' || *text == '\t') {
            out << *text++;
            ++column;
        } else if (*text == '\n') {
            out << *text++ << margin;
            column = start;
        } else {
            std::size_t length = std::strcspn(text, " \t\n");
            if (column != start && column + length > limit) {
                out << '\n' << margin;
                column = start;
            }
            out.write(text, static_cast<std::streamsize>(length));
            column += length;
            text += length;
        }
    }
}

void debug_enable(char const* tag) { g_enabled_debug_ids.insert(ustring(tag)); }

void debug_disable(char const* tag) { g_enabled_debug_ids.erase(ustring(tag)); }

bool debug_enabled(char const* tag) { return g_enabled_debug_ids.contains(ustring(tag)); }

void display_all_msgs(bool value) { g_display_all = value; }

void attach_to_gdb() {
    char command[128];
    int pid = static_cast<int>(getpid());
    std::snprintf(command, sizeof command, "gdb -nw /proc/%d/exe %d", pid, pid);
    std::cerr << "Starting GDB with cmd: " << command << "\n";
    if (std::system(command) != 0) {
        std::cerr << "Error starting GDB. Forcing core dump...\n";
        int volatile* volatile nowhere = nullptr;
        *nowhere = 0; // on purpose: a segmentation fault leaves a core
    }
    std::cerr << "GDB has detached. Continuing the execution...\n";
}

void assert_context::set(char const* function, char const* file, int line, char const* expression) {
    m_function = function;
    m_file = file;
    m_line = line;
    m_expression = expression;
}

core_assert& core_assert::set_context(char const* function, char const* file, int line,
                                      char const* expression) {
    m_context.set(function, file, line, expression);
    return *this;
}

core_assert& core_assert::msg(char const* text) {
    m_context.set_message(text);
    return *this;
}

core_assert& core_assert::store_var(char const* name, std::string const& value) {
    m_context.store_var(name, value);
    return *this;
}

} // namespace vexor
