// What the search counted.
#pragma once

#include <cstdint>
#include <iosfwd>

namespace vexor {

struct statistics {
    std::uint64_t m_num_conflicts = 0; // also drives the schedule of clause deletion
    std::uint64_t m_num_decisions = 0;
    std::uint64_t m_num_restarts = 0;
    std::uint64_t m_num_propagations = 0;       // literals whose watch sets were visited
    std::uint64_t m_num_problem_literals = 0;   // sum of the lengths of live problem clauses
    std::uint64_t m_num_learned_literals = 0;   // the same of learned clauses and lemmas
    std::uint64_t m_num_analyzed_literals = 0;  // lengths of learned clauses before minimization
    std::uint64_t m_num_minimized_literals = 0; // and after it
    std::uint64_t m_num_simplified_clauses = 0; // clauses removed as satisfied at scope 0
    std::uint64_t m_num_deleted_clauses = 0;    // learned clauses removed by the deletion schedule
    std::uint64_t m_num_maxsat_iterations = 0;  // searches within max_sat
    std::uint64_t m_num_collections = 0;        // times the clause memory was compacted

    // Figures at the time of the call, filled in by context::get_statistics.
    unsigned m_num_bool_vars = 0;
    unsigned m_num_problem_clauses = 0; // records of three and more literals
    unsigned m_num_learned_clauses = 0; // likewise
    double m_cpu_seconds = 0;           // user time of the process
    std::uint64_t m_memory_bytes = 0;   // resident memory of the process
    std::uint64_t m_peak_bytes = 0;     // its maximum so far

    // One line per figure: prefix, name, value.
    void display(std::ostream& out, char const* prefix = "") const;
};

} // namespace vexor
