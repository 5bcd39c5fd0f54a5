// Auxiliary variables that a pass made for a term, and conditions that hold with it.
#pragma once

#include "ast/node/nodes.h"
#include "base/hash_table.h"
#include "base/shared_ptr.h"

namespace vexor {

class temporary_context {
public:
    // A variable that is there already stays once.
    void add_fresh_var(var_decl* d);
    void add_condition(expr* e);
    bool empty() const { return m_fresh_vars.empty() && m_conditions.empty(); }
    shared_ptr_vector<var_decl> const& get_fresh_vars() const { return m_fresh_vars; }
    shared_ptr_vector<expr> const& get_conditions() const { return m_conditions; }

    // e together with the conditions; e itself when there are none. The conditions are gone from here.
    shared_ptr<expr> to_local_context(expr* e);
    // e below the fresh variables; e itself when there are none. The variables are gone from here.
    shared_ptr<expr> to_fresh_vars_expr(expr* e);
    // First the one, then the other.
    shared_ptr<expr> close(expr* e) { return to_fresh_vars_expr(to_local_context(e).get()); }
    void reset();

private:
    shared_ptr_vector<var_decl> m_fresh_vars;             // in the order of their making
    shared_ptr_vector<expr> m_conditions;                 // in the order of their making
    hash_set<var_decl*, fast_ptr_hash<var_decl>> m_known; // the members of m_fresh_vars
};

} // namespace vexor
