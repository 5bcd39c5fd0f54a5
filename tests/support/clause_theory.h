// A theory for tests: it knows clauses that the search does not, and tells them in every way that the
// interface allows, at moments and in forms chosen by chance.
#pragma once

#include "search/context.h"
#include "support/random.h"
#include "support/test_constraints.h"

#include <memory>
#include <vector>

namespace vexor_test {

class clause_theory;

// The theory side of a variable that occurs in a hidden clause. Checks that each assignment is handed over
// once.
class clause_atom final : public vexor::atom {
public:
    clause_atom(clause_theory& owner, int id)
        : m_theory(owner)
        , m_id(id) {}
    void init(vexor::context* ctx, int var, bool is_new) override;
    void assigned_event(vexor::context* ctx, bool polarity) override;
    void remove(vexor::context* ctx) override;
    bool decide(vexor::context* ctx, bool& phase) override;
    void display(vexor::context const* ctx, std::ostream& out) const override;

    [[nodiscard]] int var() const { return m_var; }
    [[nodiscard]] int told() const { return m_told; } // 1, -1, 0 not told
    unsigned m_num_reinits = 0;

private:
    friend class untell_trail;

    clause_theory& m_theory;
    int m_id;       // place in the theory's list
    int m_var = -1; // of the context
    int m_told = 0; // value that was handed over, undone by the trail
};

// Keeps: m_hidden holds for every answer; what is told follows from it. The moods say how often, in percent,
// something happens; all zero but m_report is a plain eager theory.
class clause_theory final : public vexor::theory_hub {
public:
    struct moods {
        unsigned m_report = 60;   // a clause that is unit or false is noticed in propagate
        unsigned m_lemma = 30;    // it is told as a lemma instead of lazily
        unsigned m_problem = 5;   // as a problem clause
        unsigned m_extra = 5;     // a superfluous lemma: a hidden clause with further literals
        unsigned m_unit = 10;     // a hidden unit is asserted, again or for the first time
        unsigned m_gate = 2;      // a fresh variable with clauses is made
        unsigned m_decide = 20;   // the phase of a decision is fixed
        unsigned m_throw_ppm = 0; // a seam throws, in a millionth
    };
    static constexpr moods silent = {0, 0, 0, 0, 0, 0, 0, 0};
    static moods random_moods(random_stream& r);

    clause_theory(vexor::context& ctx, std::uint64_t seed);
    ~clause_theory() override;

    // A new variable of the context with an atom of this theory.
    vexor::literal create_atom();
    // From the base level.
    void add_hidden(std::vector<vexor::literal> lits);
    [[nodiscard]] unsigned num_hidden() const { return static_cast<unsigned>(m_hidden.size()); }

    moods m_moods;
    unsigned m_extra_budget = 40; // superfluous actions of the present check
    unsigned m_num_lazy = 0;      // what happened, so that tests can require it
    unsigned m_num_conflicts = 0;
    unsigned m_num_lemmas = 0;
    unsigned m_num_units = 0;
    unsigned m_num_gates = 0;
    unsigned m_num_reinits = 0;
    unsigned m_num_thrown = 0;
    unsigned m_num_atoms_alive = 0;
    unsigned m_depth = 0;  // pushes minus pops
    bool m_broken = false; // an atom was told twice or with a wrong value, or at a final check not at all

    void push() override;
    void pop() override;
    void save_base_level_trail() override { m_base_sizes.push_back(num_hidden()); }
    void undo_base_level_trail() override;
    void reanalyze(unsigned) override;
    [[nodiscard]] bool can_propagate() const override { return m_more; }
    void propagate() override;
    void reset_propagation_queue() override { m_more = false; }
    void init_before_search() override;
    [[nodiscard]] bool final_check() override;
    void flush_data() override;
    void reset() override;

    void may_throw(char const* where);

private:
    friend class clause_atom;
    struct hidden_clause;

    enum class state { open, satisfied, unit, violated };
    [[nodiscard]] state state_of(hidden_clause const& c, vexor::literal& open) const;
    void tell(hidden_clause& c, state s, vexor::literal open);
    void tell_lemma(hidden_clause const& c, bool weaker);
    void make_gate();
    void be_superfluous();

    vexor::context& m_ctx;
    random_stream m_random;
    std::vector<std::unique_ptr<hidden_clause>> m_hidden;
    std::vector<unsigned> m_base_sizes;
    std::vector<std::unique_ptr<clause_atom>> m_atoms; // null when the variable is gone
    std::vector<vexor::literal> m_literals;            // of the atoms alive, for superfluous lemmas
    bool m_more = false;
};

} // namespace vexor_test
