// Scopes of the user: push freezes the sizes of the databases, pop cuts them back.
#include "search/context.h"

#include "search/internalizer.h"

namespace vexor {

// What still waits at the base level is propagated first: in the new scope its consequences would be lost on
// the way back.
bool context::push() {
    VEXOR_ASSERT(at_base_lvl());
    if (inconsistent() || !type_correct()) return false;
    if (!propagate_constraints()) return false;
    create_backtrack_point();
    base_level_trail record;
    record.m_num_bool_vars = num_bool_vars();
    record.m_num_assumptions = m_assumptions.size();
    record.m_num_weighted_vars = m_weighted_vars.size();
    record.m_num_input_clauses = m_num_input_clauses;
    record.m_num_problem_clauses = m_problem_clauses.size();
    record.m_num_learned_clauses = m_learned_clauses.size();
    record.m_num_constraints = m_constraints.size();
    record.m_first_deletable_learned = m_first_deletable_learned;
    record.m_type_correct = m_type_correct;
    m_base_level_trails.push_back(record);
    m_base_lvl = m_scope_lvl;
    m_first_deletable_learned = m_learned_clauses.size();
    // The floor of the new scope then differs from the timestamp of the last literal of the old one.
    push_trail_record(g_dummy_trail_object);
    m_hub->save_base_level_trail();
    if (m_internalizer) m_internalizer->push();
    return true;
}

void context::forget_answer() {
    m_model.reset();
    m_incomplete_answer = nullptr;
}

// One scope at a time, since backtrack undoes one base_level_trail. Inconsistency and type errors of the
// scopes do not survive them, nor does what an exception left waiting in them; without a scope to undo, nothing
// changes. Propagation comes when all scopes are gone: if the theories throw, there is nothing left to undo.
void context::pop_core(unsigned n, bool keep_model) {
    VEXOR_ASSERT(at_base_lvl());
    if (!keep_model) forget_answer();
    for (unsigned i = 0; i < n && m_scope_lvl != 0; ++i) {
        m_type_correct = m_base_level_trails.back().m_type_correct;
        if (m_type_correct) m_type_error.clear();
        bool const is_last = i + 1 == n || m_scope_lvl == 1;
        drop_pending_work();
        backtrack(1, is_last, true);
    }
    VEXOR_INVARIANT(2, check_invariant());
}

void context::undo_base_level_trail(base_level_trail& record) {
    m_assumptions.shrink(record.m_num_assumptions);
    m_weighted_vars.shrink(record.m_num_weighted_vars);
    m_num_input_clauses = record.m_num_input_clauses;
    for (svector<clause_ref>* list : {&m_problem_clauses, &m_learned_clauses}) {
        unsigned const num_kept =
            list == &m_problem_clauses ? record.m_num_problem_clauses : record.m_num_learned_clauses;
        for (unsigned i = list->size(); i-- > num_kept;) {
            detach_clause((*list)[i]);
            forget_clause((*list)[i]);
        }
        list->shrink(num_kept);
    }
    while (m_constraints.size() > record.m_num_constraints) {
        constraint* c = m_constraints.back();
        m_constraints.pop_back();
        c->remove(this, false);
        delete c;
    }
    m_first_deletable_learned = record.m_first_deletable_learned;
    for (unsigned i = record.m_binary_clauses.size(); i-- > 0;)
        remove_binary_clause(record.m_binary_clauses[i]);
    while (num_bool_vars() > record.m_num_bool_vars) remove_bool_var();
    m_hub->undo_base_level_trail();
    if (m_internalizer) m_internalizer->pop();
    collect_clause_memory();
}

void context::remove_binary_clause(binary_clause const& pair) {
    watches(~pair.m_first).remove_literal(pair.m_second);
    watches(~pair.m_second).remove_literal(pair.m_first);
}

} // namespace vexor
