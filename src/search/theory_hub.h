// What the search core asks of the theories, gathered in the congruence closure.
#pragma once

namespace vexor {

class context;
class equation;
class expr;
class model;
class var_decl;

// The search core calls these functions at fixed points of its loops and never looks behind them. The base
// class is the empty theory: nothing to propagate, every assignment accepted.
//
// Keeps: exactly one push for each scope of the context, pops in reverse order.
class theory_hub {
public:
    virtual ~theory_hub() = default;

    // Scopes. save and undo_base_level_trail frame a user scope inside its push and pop.
    virtual void push() {}
    virtual void pop() {}
    virtual void save_base_level_trail() {}
    virtual void undo_base_level_trail() {}
    // Re-examines what was made above the scope that it belongs to; old_scope is the level before
    // backtracking.
    virtual void reanalyze(unsigned old_scope) { static_cast<void>(old_scope); }

    // Propagation. A failure is a conflict set in the context.
    [[nodiscard]] virtual bool can_propagate() const { return false; }
    virtual void propagate() {}
    // Drops what is queued, so that nothing stale runs after a backjump.
    virtual void reset_propagation_queue() {}

    // Equations behind Boolean variables.
    virtual void init_equation(int var, equation* eq, bool is_new);
    virtual void remove_equation(equation* eq);
    virtual void assigned_event(equation* eq, bool polarity);
    // Returns true if the phase of a decision on eq is fixed.
    virtual bool decide_eq(equation* eq, bool& phase);
    // Returns true if eq has (or, with complete, must have) the value true.
    virtual bool check_eq(equation* eq, bool complete);

    // Search.
    virtual void init_before_search() {}
    // True if the assignment is a model; otherwise the theories added literals, lemmas or a conflict.
    [[nodiscard]] virtual bool final_check() { return true; }
    virtual void build_model(model& m) { static_cast<void>(m); }
    // The value that a valid model gives to a declaration other than a Boolean one; null for none.
    virtual expr* get_value_for(model const& m, var_decl* d);
    [[nodiscard]] virtual bool validate_assignment() { return true; }

    // The context is being reset or destroyed.
    virtual void flush_data() {}
    virtual void reset() {}
};

} // namespace vexor
