// One call of max_sat, and what its phases share.
#pragma once

#include "search/context.h"
#include "search/search_frames.h"

#include <cstdint>
#include <optional>

namespace vexor {

// One call of max_sat. Costs are counted in units of m_factor, from m_least on, so that they are integers and
// not negative whatever the weights are.
class max_sat_search {
public:
    explicit max_sat_search(context& ctx);
    max_sat_search(max_sat_search const&) = delete; // leaves the context clean once
    max_sat_search& operator=(max_sat_search const&) = delete;
    ~max_sat_search();
    int run();

private:
    // max_sat_cores.cpp
    int raise_lower_bound();
    [[nodiscard]] bool collect_softs();
    int search_with_cores();
    int search_for_any_model();
    bool limit_cost();
    void settle_known_softs();
    void select_assumptions();
    int search_under_assumptions(svector<int> const& softs, std::uint64_t max_conflicts);
    void extract_core();
    void trim_core();
    void relax_core();
    void pay(int soft, numeral const& weight);
    void require_output(int sum, unsigned index, numeral const& weight);
    literal create_output(int sum, unsigned index);
    bool lower_threshold();

    // max_sat.cpp
    void choose_first_bound();
    int find_model();
    int try_bound();
    int run_trials();
    int improve_model(bool is_recorded);
    int run_round();
    void note_failed_assumption(int result);
    void record_model();
    void grow_bound();
    [[nodiscard]] bool bound_forbids_nothing() const { return m_bound >= m_total; }
    [[nodiscard]] numeral to_user(numeral const& cost) const { return (cost + m_least) * m_factor; }

    context& m_context;
    std::optional<user_scope_frame> m_scope; // holds the constraint
    constraint* m_constraint = nullptr;      // the limit; null if its scope died of it
    numeral m_factor;                        // common divisor of the weights
    numeral m_least;                         // sum of the negative weights
    numeral m_most;                          // sum of the positive weights
    numeral m_total;                         // the greatest possible cost: m_most - m_least
    numeral m_lower = -1;                    // see above
    numeral m_bound;                         // the limit
    numeral m_cost;                          // of the best model
    bool m_has_model = false;                // there is one

    // What may still cost something, for search_with_cores: a guard, or an output of a sum.
    struct soft {
        literal m_lit;    // true costs
        numeral m_weight; // that much; 0 once it has been paid for in full
        int m_sum;        // whose output this is, or -1
        unsigned m_index; // of the output: true if that many literals of the sum are true
    };
    // The literals of a core; at least one of them is true and paid for.
    struct sum {
        svector<literal> m_lits;
        svector<int> m_outputs; // position in m_softs by index, -1 where there is none yet
    };
    vector<soft> m_softs;
    vector<sum> m_sums;
    svector<int> m_soft_of;       // by variable: position in m_softs, or -1
    svector<int> m_assumed;       // positions of the softs that are assumed not to cost
    svector<int> m_core;          // positions of those that cannot be free together
    numeral m_threshold;          // softs of less weight are not assumed yet
    std::uint64_t m_conflict_end; // number of the conflict at which the phase of the cores ends
};

} // namespace vexor
