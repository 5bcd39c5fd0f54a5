// One context under a random sequence of calls, each answer compared with the brute force oracle.
#pragma once

#include "search/context.h"
#include "support/brute_force.h"
#include "support/clause_theory.h"
#include "support/random.h"

#include <memory>
#include <string>
#include <vector>

namespace vexor_test {

// Weights of the acts, in arbitrary units; 0 means never.
struct session_weights {
    unsigned m_new_var = 3;
    unsigned m_clause = 40;
    unsigned m_gate = 2;
    unsigned m_constraint = 0;
    unsigned m_hidden = 0; // clauses that only the theory knows
    unsigned m_assume = 4;
    unsigned m_push = 3;
    unsigned m_pop = 3;
    unsigned m_check = 5;
    unsigned m_stopped_check = 0; // a stop or an exception comes during the check
    unsigned m_reset = 0;
};

// What happened, so that a test can require that its target was met.
struct session_figures {
    unsigned m_num_sat = 0;
    unsigned m_num_unsat = 0;
    unsigned m_num_cores = 0;
    unsigned m_num_stopped = 0;
    unsigned m_num_thrown = 0;
    std::uint64_t m_num_conflicts = 0;
    std::uint64_t m_num_restarts = 0;
    std::uint64_t m_num_deleted = 0;
    std::uint64_t m_num_simplified = 0;
    std::uint64_t m_num_lazy = 0;
    std::uint64_t m_num_lemmas = 0;
    std::uint64_t m_num_reinits = 0;
    unsigned m_max_level = 0;
};

// Writes the figures of a test to the error stream if VEXOR_FIGURES is set, for whoever tunes it.
void show(char const* name, session_figures const& f);

class search_session {
public:
    search_session(std::uint64_t seed, session_weights const& weights, clause_theory::moods const& moods,
                   unsigned max_vars);
    ~search_session();
    search_session(search_session const&) = delete;
    search_session& operator=(search_session const&) = delete;

    // Empty, or what differs from the oracle; the session ends there.
    [[nodiscard]] std::string const& failure() const { return m_failure; }
    bool run(unsigned num_acts);
    bool check();
    // A problem all at once, for one-shot tests.
    void add_random_clauses(unsigned n, unsigned length);
    void add_random_hidden(unsigned n);
    void add_random_constraint();
    void new_var();

    void add_figures(session_figures& out) const;
    [[nodiscard]] vexor::context& get_context() { return *m_ctx; }
    [[nodiscard]] clause_theory* theory() { return m_theory; }

private:
    struct level {
        unsigned m_num_vars;
        unsigned m_num_conditions;
        unsigned m_num_assumptions;
    };

    vexor::literal random_literal();
    [[nodiscard]] unsigned index_of(vexor::literal l) const; // in m_vars
    [[nodiscard]] bool value_in(bits a, vexor::literal l) const;
    void know_clause(std::vector<vexor::literal> const& lits);
    unsigned random_length();
    std::vector<vexor::literal> random_clause(unsigned length);
    void act();
    void add_gate();
    void add_assumption();
    void push();
    void pop();
    void reset();
    void check_stopped();
    void compare(int answer, bool may_be_unknown);
    void check_model();
    void check_core();
    void fixed_bits(bits& fixed_true, bits& fixed_false) const;
    void fail(std::string what);
    void check_quiet();

    random_stream m_random;
    session_weights m_weights;
    clause_theory::moods m_moods;
    unsigned m_max_vars;
    std::unique_ptr<vexor::context> m_ctx;
    clause_theory* m_theory = nullptr; // owned by the context; null if nothing is hidden
    brute_force m_oracle;
    std::vector<int> m_vars; // variables of the context, by bit
    std::vector<vexor::literal> m_assumptions;
    std::vector<level> m_levels;
    std::string m_failure;
    session_figures m_figures;
};

} // namespace vexor_test
