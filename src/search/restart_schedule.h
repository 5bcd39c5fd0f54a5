// When a run ends and the next begins.
#pragma once

namespace vexor {

// A geometric schedule of conflict limits, which begins anew when the problem grew by a tenth: instantiation
// and lemmas make a new problem of it.
class restart_schedule {
public:
    restart_schedule(unsigned first_limit, unsigned first_clause_limit, unsigned num_vars)
        : m_first_limit(first_limit)
        , m_conflict_limit(first_limit)
        , m_clause_limit(first_clause_limit)
        , m_num_vars(num_vars) {}

    [[nodiscard]] unsigned conflict_limit() const { return m_conflict_limit; }
    [[nodiscard]] unsigned clause_limit() const { return m_clause_limit; }

    // A run has ended; reset_clause_limit is a third of the input clauses.
    void next(unsigned num_vars, unsigned reset_clause_limit) {
        m_conflict_limit = grow(m_conflict_limit, 1.5L);
        m_clause_limit = grow(m_clause_limit, 1.1L);
        if (static_cast<double>(num_vars) >= static_cast<double>(m_num_vars) * 1.1) {
            m_clause_limit = reset_clause_limit;
            m_conflict_limit = m_first_limit;
        }
        m_num_vars = num_vars;
    }

private:
    // Truncates; a limit beyond the range stays at its end.
    static unsigned grow(unsigned limit, long double factor) {
        long double const grown = static_cast<long double>(limit) * factor;
        return grown >= 4294967295.0L ? 4294967295u : static_cast<unsigned>(grown);
    }

    unsigned m_first_limit;
    unsigned m_conflict_limit; // conflicts of the coming run; 0 never restarts
    unsigned m_clause_limit;   // kept with the schedule, no loop reads it
    unsigned m_num_vars;       // variables at the last restart
};

} // namespace vexor
