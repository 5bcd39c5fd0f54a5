// What the search core asks of the theories, gathered in the congruence closure.
#pragma once

#include "search/literal.h"

#include <iosfwd>

namespace vexor {

class expr;
class model;
class theory_atom;
class var_decl;

// The search core calls these functions at fixed points of its loops and never looks behind them. The base
// class is the empty theory: nothing to propagate, every assignment accepted. What a theory may do in return
// stands in theory_port.h.
//
// Keeps: exactly one push for each scope of the context, pops in reverse order.
//
// Only propagate and final_check may throw: they translate new formulas, which may turn out to be unsupported.
// The search then leads back to the scope where it began and passes the exception on. A failure in any other
// sense is a conflict or a type error, told through the port.
class theory_hub {
public:
    virtual ~theory_hub() = default;
    // What the theories are called in statistics and displays.
    [[nodiscard]] virtual char const* get_name() const noexcept { return "no theory"; }

    // --- Scopes.

    // A scope opens, behind a fixpoint: all assigned atoms were handed over, nothing is queued.
    virtual void push() noexcept {}
    // A scope closes; several may go in one backjump, one call each. The undo records of the scope have run, the arena of the scope still stands.
    virtual void pop() noexcept {}
    // Inside the push of a user scope, behind its fixpoint: sizes to come back to are recorded.
    virtual void save_base_level_trail() noexcept {}
    // Inside the pop of a user scope. The search has dropped the variables of the scope; atoms, terms and
    // theory variables made in it go now, newest first.
    virtual void undo_base_level_trail() noexcept {}
    // After each backjump, before anything is propagated: what was made above the scope that it belongs to is
    // brought to life again. old_scope is the scope before. May assign and set a conflict, and queue work, but a
    // further backjump may come before that runs.
    virtual void reanalyze(unsigned old_scope) noexcept { static_cast<void>(old_scope); }

    // --- Atoms.

    // The variable of an atom was created (is_new), or the scope of its creation has gone and the atom lives
    // on; the latter comes again with each further backjump, until the base level is reached. The theory may
    // assign it at once, if it knows its value.
    virtual void init_atom(theory_atom* a, bool is_new) noexcept;
    // Atoms were assigned, in this order; Boolean propagation has reached its fixpoint. Each assignment is
    // handed over once, and again only after it was undone. Returns how many were taken: fewer than n only
    // with a conflict; the others come again if a backjump leaves them assigned. May assign, and add variables
    // and clauses.
    virtual unsigned assigned(literal const* lits, unsigned n) noexcept;
    // A decision on the atom's variable is due. True if the theory fixed the phase. Adds nothing.
    [[nodiscard]] virtual bool decide_atom(theory_atom* a, bool& phase) noexcept;
    virtual void display_atom(theory_atom const* a, std::ostream& out) const;

    // --- Propagation.

    [[nodiscard]] virtual bool can_propagate() const noexcept { return false; }
    // Behind the fixpoint of Boolean propagation, all assigned atoms handed over; comes in each round, also when
    // can_propagate is false. May assign, set a conflict, add variables and clauses. If it throws, what is still
    // queued must run at the next call, unless it is dropped in between.
    virtual void propagate() {}
    // Drops what is queued, so that nothing stale runs after a backjump: a conflict stands, or scopes are about to
    // be undone. What concerns lower scopes as well comes again in reanalyze.
    virtual void reset_propagation_queue() noexcept {}

    // --- Search.

    // A question begins: assumptions are assigned, but not propagated yet. May come several times in a question.
    virtual void init_before_search() noexcept {}
    // All variables are assigned and propagation is at its fixpoint. True if the assignment is a model;
    // otherwise the theories added literals, lemmas, variables or a conflict. The search also goes on when
    // something was added and the result is true.
    [[nodiscard]] virtual bool final_check() { return true; }
    // Behind a final_check that was true: the values go into m, since the assignment is about to be undone.
    virtual void build_model(model& m) noexcept { static_cast<void>(m); }
    // The value that a valid model gives to a declaration other than a Boolean one; null for none.
    virtual expr* get_value_for(model const& m, var_decl* d) noexcept;
    // Whether the present assignment satisfies the theories, recomputed without their data structures as far
    // as possible.
    [[nodiscard]] virtual bool validate_assignment() noexcept { return true; }

    // --- Life.

    // The context is being reset or destroyed; the whole trail has been undone.
    virtual void flush_data() noexcept {}
    // After flush_data, with the context empty again.
    virtual void reset() noexcept {}

    // --- Display, figures, self-check.

    virtual void display(std::ostream& out) const { static_cast<void>(out); }
    // One line for each counter: prefix, name, value.
    virtual void display_statistics(std::ostream& out, char const* prefix) const;
    // At a fixpoint: recomputes the state from scratch and compares; aborts on the first difference.
    virtual void check_invariant() const {}
};

} // namespace vexor
