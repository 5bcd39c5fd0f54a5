// A theory for tests: it knows clauses that the search does not, and tells them in every way that the
// interface allows, at moments and in forms chosen by chance.
#pragma once

#include "search/context.h"
#include "search/theory_port.h"
#include "support/random.h"
#include "support/test_constraints.h"

#include <memory>
#include <vector>

namespace vexor_test {

// The theory side of a variable that may occur in a hidden clause.
class clause_atom final : public vexor::theory_atom {
public:
    explicit clause_atom(unsigned id)
        : theory_atom(0)
        , m_id(id) {}
    [[nodiscard]] unsigned id() const { return m_id; }
    [[nodiscard]] int told() const { return m_told; } // 1, -1, 0 not told

private:
    friend class clause_theory;

    unsigned m_id;  // place in the theory's list
    int m_told = 0; // value that was handed over, undone by the trail
};

// Keeps: m_hidden holds for every answer; what is told follows from it. The moods say how often, in percent,
// something happens; all zero but m_report is a plain eager theory.
class clause_theory final : public vexor::theory_hub {
public:
    struct moods {
        unsigned m_report = 60;     // a clause that is unit or false is noticed in propagate
        unsigned m_lemma = 30;      // it is told as a lemma instead of by a reason
        unsigned m_frozen = 50;     // a reason lists its literals at once instead of when it is asked
        unsigned m_problem = 5;     // a lemma is told as an axiom
        unsigned m_extra = 5;       // a superfluous lemma: a hidden clause with further literals
        unsigned m_unit = 10;       // a hidden unit is asserted, again or for the first time
        unsigned m_gate = 2;        // a fresh variable with clauses is made
        unsigned m_decide = 20;     // the phase of a decision is fixed
        unsigned m_reanalyze = 20;  // a clause that is unit or false is noticed right after a backjump
        unsigned m_stop_batch = 20; // a false clause is noticed among the atoms that are handed over
        unsigned m_throw_ppm = 0;   // propagate or final_check throws, in a millionth
    };
    static constexpr moods silent = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    static moods random_moods(random_stream& r);

    clause_theory(vexor::context& ctx, std::uint64_t seed);
    ~clause_theory() override;

    // A new variable of the context with an atom of this theory.
    vexor::literal create_atom();
    // From the base level.
    void add_hidden(std::vector<vexor::literal> lits);
    [[nodiscard]] unsigned num_hidden() const { return static_cast<unsigned>(m_hidden.size()); }
    [[nodiscard]] unsigned num_atoms() const { return static_cast<unsigned>(m_atoms.size()); }
    [[nodiscard]] vexor::theory_port& port() { return m_port; }

    moods m_moods;
    unsigned m_extra_budget = 40; // superfluous actions of the present check
    unsigned m_num_lazy = 0;      // what happened, so that tests can require it
    unsigned m_num_conflicts = 0;
    unsigned m_num_lemmas = 0;
    unsigned m_num_units = 0;
    unsigned m_num_gates = 0;
    unsigned m_num_reinits = 0;
    unsigned m_num_thrown = 0;
    unsigned m_num_cut_batches = 0;
    unsigned m_depth = 0;  // pushes minus pops
    bool m_broken = false; // an atom was told twice or with a wrong value, or at a final check not at all

    [[nodiscard]] char const* get_name() const noexcept override { return "clauses"; }
    void push() noexcept override;
    void pop() noexcept override;
    void save_base_level_trail() noexcept override;
    void undo_base_level_trail() noexcept override;
    void reanalyze(unsigned old_scope) noexcept override;
    void init_atom(vexor::theory_atom* a, bool is_new) noexcept override;
    unsigned assigned(vexor::literal const* lits, unsigned n) noexcept override;
    [[nodiscard]] bool decide_atom(vexor::theory_atom* a, bool& phase) noexcept override;
    void display_atom(vexor::theory_atom const* a, std::ostream& out) const override;
    [[nodiscard]] bool can_propagate() const noexcept override { return m_more; }
    void propagate() override;
    void reset_propagation_queue() noexcept override { m_more = false; }
    [[nodiscard]] bool final_check() override;
    [[nodiscard]] bool validate_assignment() noexcept override;
    void flush_data() noexcept override;
    void reset() noexcept override;
    void display_statistics(std::ostream& out, char const* prefix) const override;
    void check_invariant() const override;

private:
    struct hidden_clause;
    struct base_sizes {
        unsigned m_num_hidden;
        unsigned m_num_atoms;
    };

    enum class state { open, satisfied, unit, violated };
    [[nodiscard]] state state_of(hidden_clause const& c, vexor::literal& open) const;
    void tell(hidden_clause& c, state s, vexor::literal open);
    void tell_reason(hidden_clause& c, state s, vexor::literal open);
    void tell_lemma(hidden_clause const& c, bool weaker);
    vexor::explanation* explain(hidden_clause& c, vexor::literal implied);
    void make_gate();
    void be_superfluous();
    void may_throw(char const* where);
    vexor::literal random_literal();

    vexor::theory_port m_port;
    random_stream m_random;
    std::vector<std::unique_ptr<hidden_clause>> m_hidden;
    std::vector<std::unique_ptr<clause_atom>> m_atoms;
    std::vector<base_sizes> m_base_sizes; // at each push of the user
    bool m_more = false;
};

} // namespace vexor_test
