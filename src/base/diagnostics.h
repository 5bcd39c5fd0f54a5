// Measures of the process and aids of the developers: verbosity, memory, time, debug switches, wrapped text.
#pragma once

#include "base/hash_table.h"
#include "base/ustring.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace vexor {

// How much progress output goes to the error stream; 0, the default, is none.
void set_verbosity_level(int level);
int get_verbosity_level();

// Bytes of the process's address space, 0 where the system does not tell.
std::size_t get_memory_used();
// The same from another file of that form.
std::size_t get_memory_used(char const* statm_file);

bool is_cpu_time_available();
// Seconds that the process has spent on its own code.
double get_cpu_time();

// Writes the text word by word: a word that would pass the column width goes to a new line behind indent
// blanks, unless it would be the first there. Blanks are kept; a newline in the text goes to the indentation
// as well.
void display_boxed(std::ostream& out, int indent, int width, char const* text);

// --- Debug switches.
extern hash_set<ustring, hash_ustring> g_enabled_debug_ids; // the enabled tags
extern bool g_display_all;                                  // show all assertion messages; default: true
extern bool g_ignore_all;                                   // ignore failed assertions; default: false

void debug_enable(char const* tag);
void debug_disable(char const* tag);
bool debug_enabled(char const* tag);
void display_all_msgs(bool value);

// Attaches a debugger to the process and waits for it; without one the process ends with a core dump.
void attach_to_gdb();

// --- Assertions with a context, kept as a shape of calls: processing one has no effect.
class assert_context {
public:
    void set(char const* function, char const* file, int line, char const* expression);
    void set_message(char const* text) { m_message = text; }
    void store_var(char const* name, std::string const& value) { m_vars.push_back({name, value}); }
    void process() {}
    void display(std::ostream&) const {}

private:
    struct named_value {
        std::string m_name;
        std::string m_value;
    };

    std::string m_function;          // where the assertion stands
    std::string m_file;              // the same
    std::string m_expression;        // what was asserted
    std::string m_message;           // what the developer says about it
    int m_line = 0;                  // where the assertion stands
    std::vector<named_value> m_vars; // values at that moment
};

enum class assert_level { debug, warning, error, fatal };

// Collects an assertion; its destructor processes it.
class core_assert {
public:
    core_assert() = default;
    core_assert(core_assert const&) = delete; // processed once
    core_assert& operator=(core_assert const&) = delete;
    ~core_assert() { m_context.process(); }

    core_assert& set_context(char const* function, char const* file, int line, char const* expression);
    core_assert& level(assert_level l) {
        m_level = l;
        return *this;
    }
    core_assert& msg(char const* text);
    core_assert& store_var(char const* name, std::string const& value);
    assert_level get_level() const { return m_level; }

private:
    assert_level m_level = assert_level::debug; // how grave a failure is
    assert_context m_context;                   // what is known about it
};

inline core_assert make_core_assert() { return {}; }

} // namespace vexor
