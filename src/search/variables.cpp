// Creation and removal of Boolean variables.
#include "search/context.h"

#include "ast/node/nodes.h"
#include "base/memory.h"

namespace vexor {

// Variable 0 is the constant true, at a timestamp below every scope. Variables 1 and 2 are the probes of the
// definition table.
void context::reserve_support_vars() {
    VEXOR_ASSERT(num_bool_vars() == 0);
    create_bool_var_core(null_body);
    m_assignment[0] = 1;
    m_assignment[1] = -1;
    m_causes[0].m_timestamp = -1;
    create_bool_var_core(bool_var_body(new aux_bool_var_def()));
    create_bool_var_core(null_body);
}

int context::create_bool_var_core(bool_var_body body) {
    unsigned const n = num_bool_vars();
    if (n >= max_num_bool_vars) memoryExhausted();
    int const var = static_cast<int>(n);
    m_assignment.push_back(0);
    m_assignment.push_back(0);
    m_watches.resize(2 * (n + 1));
    m_causes.push_back(cause());
    m_activity.push_back(0.0);
    m_bool_var_bodies.push_back(body);
    m_marks.push_back(false);
    m_last_phase.push_back(false);
    m_is_guard.push_back(false);
    m_has_atom.push_back(body.has_atom());
    m_num_atoms += body.has_atom() ? 1 : 0;
    m_var_heap.set_bounds(n + 1);
    if (var >= first_bool_var) m_var_heap.insert(var);
    init_bool_var(var, true);
    if (m_scope_lvl != m_base_lvl) current_out_of_order_data().m_bool_vars.push_back(var);
    return var;
}

// The variable holds a reference on its declaration, so that the body never dangles.
literal context::create_bool_var(var_decl* decl) {
    int const known = get_bool_var_for(decl);
    if (known != null_bool_var) return literal(known);
    decl->inc_ref();
    int const var = create_bool_var_core(bool_var_body(decl));
    m_def2var.insert(var);
    return literal(var);
}

int context::get_bool_var_for(var_decl* decl) {
    m_bool_var_bodies[dummy_decl_bool_var] = bool_var_body(decl);
    int const var = m_def2var.find(dummy_decl_bool_var);
    m_bool_var_bodies[dummy_decl_bool_var] = null_body;
    return var;
}

literal context::create_fresh_bool_var() { return literal(create_bool_var_core(null_body)); }

void context::init_bool_var(int var, bool is_new) noexcept {
    bool_var_body const body = get_body(var);
    if (body.has_atom()) m_hub->init_atom(body.get_atom(), is_new);
}

// Removes the last variable, which must be unassigned and unwatched by anything that lives on.
void context::remove_bool_var() {
    int const var = static_cast<int>(num_bool_vars()) - 1;
    VEXOR_ASSERT(var >= first_bool_var);
    VEXOR_ASSERT(value(literal(var)) == 0);
    if (m_var_heap.contains(var)) m_var_heap.remove(var);
    free_body(var);
    m_assignment.pop_back();
    m_assignment.pop_back();
    for (int i = 0; i < 2; ++i) {
        m_watches.back().free_memory();
        m_watches.pop_back();
    }
    m_causes.pop_back();
    m_activity.pop_back();
    m_bool_var_bodies.pop_back();
    m_marks.pop_back();
    m_last_phase.pop_back();
    m_is_guard.pop_back();
    m_num_atoms -= m_has_atom.back() ? 1 : 0;
    m_has_atom.pop_back();
}

// Gates are owned here; atoms belong to the theories, which drop them when their user scope is closed.
void context::free_body(int var) {
    bool_var_body& body = m_bool_var_bodies[static_cast<unsigned>(var)];
    switch (body.tag()) {
    case bool_var_body::decl_body:
        m_def2var.erase(var);
        body.get_decl()->dec_ref();
        break;
    case bool_var_body::aux_body:
        m_def2var.erase(var);
        delete body.get_def();
        break;
    case bool_var_body::theory_body:
        break;
    }
    body = null_body;
}

void context::flush_bool_var_bodies() {
    m_def2var.reset();
    for (unsigned var = num_bool_vars(); var-- > 0;) free_body(static_cast<int>(var));
}

} // namespace vexor
