#include "search/statistics.h"

#include <iomanip>
#include <ostream>

namespace vexor {

namespace {

template <typename T>
void line(std::ostream& out, char const* prefix, char const* name, T value) {
    out << prefix << std::left << std::setw(28) << name << std::right << std::setw(16) << value << "\n";
}

double ratio(std::uint64_t a, double b) { return b > 0 ? static_cast<double>(a) / b : 0; }

} // namespace

void statistics::display(std::ostream& out, char const* prefix) const {
    std::ios saved(nullptr);
    saved.copyfmt(out);
    out << std::fixed << std::setprecision(2);
    line(out, prefix, "search.variables", m_num_bool_vars);
    line(out, prefix, "search.problem-clauses", m_num_problem_clauses);
    line(out, prefix, "search.learned-clauses", m_num_learned_clauses);
    line(out, prefix, "search.problem-literals", m_num_problem_literals);
    line(out, prefix, "search.learned-literals", m_num_learned_literals);
    line(out, prefix, "search.conflicts", m_num_conflicts);
    line(out, prefix, "search.decisions", m_num_decisions);
    line(out, prefix, "search.propagations", m_num_propagations);
    line(out, prefix, "search.propagations-per-sec", ratio(m_num_propagations, m_cpu_seconds));
    line(out, prefix, "search.restarts", m_num_restarts);
    line(out, prefix, "search.analyzed-literals", m_num_analyzed_literals);
    line(out, prefix, "search.minimized-literals", m_num_minimized_literals);
    line(out, prefix, "search.simplified-clauses", m_num_simplified_clauses);
    line(out, prefix, "search.deleted-clauses", m_num_deleted_clauses);
    line(out, prefix, "search.maxsat-iterations", m_num_maxsat_iterations);
    line(out, prefix, "search.collections", m_num_collections);
    line(out, prefix, "process.cpu-seconds", m_cpu_seconds);
    line(out, prefix, "process.memory-mb", static_cast<double>(m_memory_bytes) / (1024.0 * 1024.0));
    line(out, prefix, "process.peak-memory-mb", static_cast<double>(m_peak_bytes) / (1024.0 * 1024.0));
    out.copyfmt(saved);
}

} // namespace vexor
