// The search over clauses, written a second time as plainly as possible.
#pragma once

#include "search/random_numbers.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace vexor_test {

// Follows the same procedure as vexor::context on clauses alone (no theories, no assumptions, no user
// scopes), with vectors and linear scans only, and predicts its course exactly: each decision, each learned
// clause, each count. What the context does for speed (clause arena, other watch out of an XOR, tagged words,
// level sets in minimization) must not show.
//
// Literals are numbers 2 * var + sign; variables begin at 3, so that the random stream hits the same ones.
class naive_search {
public:
    struct settings {
        int m_polarity = 0;
        unsigned m_restart_limit = 100;
        bool m_delete = true;
        unsigned m_deletion_frequency = 5000;
        unsigned m_head_activity = 500;
        unsigned m_head_relevancy = 6;
        unsigned m_tail_relevancy = 45;
        unsigned m_ratio = 16;
        bool m_simplify_always = false;
    };

    explicit naive_search(settings const& s);

    int new_var();
    void add_clause(std::vector<int> lits);
    int check();

    std::vector<std::vector<int>> m_learned; // every learned clause in the order of its literals
    std::vector<int> m_decisions;            // every decided literal
    std::uint64_t m_num_conflicts = 0;
    std::uint64_t m_num_propagations = 0;
    std::uint64_t m_num_restarts = 0;
    std::uint64_t m_num_deleted = 0;
    std::uint64_t m_num_simplified = 0;
    std::uint64_t m_num_analyzed = 0;
    [[nodiscard]] int model_value(int var) const { return m_model[static_cast<unsigned>(var)]; }

private:
    struct clause {
        std::vector<int> m_lits;
        bool m_learned = false;
        unsigned m_activity = 0;
    };
    struct reason {
        clause* m_clause = nullptr; // or
        int m_antecedent = -1;      // the true literal of a binary clause, or neither: a decision or a fact
    };
    struct watch_list {
        std::vector<clause*> m_clauses;
        std::deque<int> m_literals; // newest first
    };

    int& value(int lit) { return m_values[static_cast<unsigned>(lit)]; }
    watch_list& watches(int lit) { return m_watches[static_cast<unsigned>(lit)]; }
    [[nodiscard]] unsigned level_of(int var) const;
    [[nodiscard]] unsigned scope() const { return static_cast<unsigned>(m_scopes.size()); }
    void assign(int lit, reason why);
    void assert_fact(int lit);
    void add_binary(int a, int b);
    clause* add_long(std::vector<int> lits, bool learned);
    void detach(clause* c);
    bool visit(int lit);
    bool propagate();
    bool resolve();
    std::vector<int> antecedents(int lit, reason const& why, bool is_conflict);
    void bump(int var);
    bool redundant(int var, std::vector<bool>& in_clause);
    void backtrack(unsigned level);
    void learn(std::vector<int> lits);
    bool locked(clause const* c) const;
    void delete_irrelevant();
    void simplify();
    bool simplify_one(clause* c);
    bool decide();
    int run(unsigned limit);

    // The decision heap: positions from 1, the root is the most active.
    [[nodiscard]] bool better(int a, int b) const;
    unsigned heap_find(int var) const;
    void heap_insert(int var);
    void heap_up(unsigned i);
    int heap_pop();

    settings m_settings;
    vexor::random_numbers m_random;
    std::vector<int> m_values; // by literal: 1, -1, 0
    std::vector<watch_list> m_watches;
    std::vector<reason> m_reasons;
    std::vector<int> m_positions; // by variable: place on the trail, -1 for facts
    std::vector<double> m_activity;
    std::vector<bool> m_last_phase;
    std::vector<int> m_heap = {-1};
    std::vector<int> m_trail;
    std::vector<unsigned> m_scopes;
    unsigned m_head = 0;
    double m_increment = 1.0;
    bool m_inconsistent = false;
    reason m_conflict;
    std::vector<int> m_conflict_lits;
    std::vector<clause*> m_problem_clauses;
    std::vector<clause*> m_learned_clauses;
    std::vector<std::unique_ptr<clause>> m_memory;
    unsigned m_simplified_trail = 0;
    long long m_budget = 0;
    std::vector<int> m_model;
};

} // namespace vexor_test
