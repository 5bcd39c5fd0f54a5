#include "dimacs_output.h"

#include <ostream>
#include <string>

#include "search/literal.h"
#include "search/model.h"

namespace vexor_tool {

namespace {

constexpr std::size_t max_columns = 78;

// Packs numbers into lines, and lines into large writes.
class value_lines {
public:
    explicit value_lines(std::ostream& out)
        : m_out(out) {}

    void add(int number) {
        std::string word = " " + std::to_string(number);
        if (m_line.size() + word.size() > max_columns) end_line();
        m_line += word;
    }

    void finish() {
        end_line();
        m_out << m_text;
    }

private:
    void end_line() {
        m_text += m_line;
        m_text += '\n';
        m_line = "v";
        if (m_text.size() >= (1u << 16)) {
            m_out << m_text;
            m_text.clear();
        }
    }

    std::ostream& m_out;
    std::string m_line = "v"; // being filled
    std::string m_text;       // complete lines not yet written
};

} // namespace

int exit_code_of(int answer, bool optimized) {
    return answer > 0 ? (optimized ? 30 : 10) : answer < 0 ? 20 : 0;
}

void print_status(std::ostream& out, int answer, bool optimized) {
    char const* const found = optimized ? "s OPTIMUM FOUND\n" : "s SATISFIABLE\n";
    out << (answer > 0 ? found : answer < 0 ? "s UNSATISFIABLE\n" : "s UNKNOWN\n");
}

void print_cost(std::ostream& out, vexor::model const& m) { out << "o " << m.cost() << std::endl; }

void print_values(std::ostream& out, vexor::model const& m, int num_vars) {
    value_lines lines(out);
    for (int number = 1; number <= num_vars; ++number) {
        int value = m.value(vexor::first_bool_var + number - 1);
        if (value != 0) lines.add(value > 0 ? number : -number);
    }
    lines.add(0);
    lines.finish();
}

} // namespace vexor_tool
