// What was made above the scope that it belongs to is looked at again after each backjump.
//
// Keeps:   a unit, clause, variable or constraint on the record of scope s may act below s; after the scope
// is undone
//          it acts on the present state, and moves to the record of the present scope unless that is the base
//          level.
// Ends:    each record is taken out before it is walked, and what the walk adds lands on lower records.
// Cost:    linear in the records of the undone scopes.
#include "search/context.h"

#include <utility>

namespace vexor {

// The record of the current scope, marked as used.
out_of_order_data& context::current_out_of_order_data() {
    VEXOR_ASSERT(m_scope_lvl > m_base_lvl);
    if (m_out_of_order_stack.size() < m_scope_lvl) m_out_of_order_stack.resize(m_scope_lvl);
    out_of_order_data& record = m_out_of_order_stack[m_scope_lvl - 1];
    record.m_empty = false;
    return record;
}

void context::reanalyze(unsigned old_scope) {
    for (unsigned i = m_scope_lvl; i < old_scope && i < m_out_of_order_stack.size(); ++i) {
        if (m_out_of_order_stack[i].m_empty) continue;
        out_of_order_data record = std::move(m_out_of_order_stack[i]);
        m_out_of_order_stack[i] = out_of_order_data();
        reanalyze_literals(record.m_literals);
        for (int var : record.m_bool_vars) {
            init_bool_var(var, false);
            if (!at_base_lvl()) current_out_of_order_data().m_bool_vars.push_back(var);
        }
        for (constraint* c : record.m_constraints) {
            if (c->init(this, false) && !at_base_lvl())
                current_out_of_order_data().m_constraints.push_back(c);
        }
        reanalyze_binary_clauses(record.m_binary_clauses);
        reanalyze_clauses(record.m_clauses);
    }
    m_hub->reanalyze(old_scope);
}

// A unit that is false now is a conflict, and assert_literal says so; it also makes the new record.
void context::reanalyze_literals(svector<literal>& lits) {
    for (literal l : lits) {
        if (value(l) <= 0)
            assert_literal(l);
        else if (!at_base_lvl())
            current_out_of_order_data().m_literals.push_back(l);
    }
}

void context::reanalyze_binary_clauses(svector<binary_clause>& pairs) {
    for (binary_clause const& pair : pairs) {
        literal const a = pair.m_first;
        literal const b = pair.m_second;
        bool const a_false = value(a) < 0;
        bool const b_false = value(b) < 0;
        if (!a_false && !b_false) continue;
        if (!at_base_lvl()) current_out_of_order_data().m_binary_clauses.push_back(pair);
        if (a_false && b_false)
            set_binary_clause_conflict(a, b);
        else if (a_false)
            assign_literal_core(b, gexplanation::mk_binary(~a));
        else
            assign_literal_core(a, gexplanation::mk_binary(~b));
    }
}

// A clause that is still unit or false goes on propagating at once, with no watch having moved.
void context::reanalyze_clauses(svector<clause_ref>& refs) {
    for (clause_ref ref : refs) {
        clause& c = m_clauses[ref];
        c.set_out_of_order(false);
        if (value(c[0]) < 0 && value(c[1]) >= 0) std::swap(c[0], c[1]);
        bool const is_false = value(c[0]) < 0 && is_empty_clause(c);
        bool const is_unit = value(c[0]) >= 0 && value(c[1]) < 0 && is_unit_clause(c);
        if (!is_false && !is_unit) continue;
        if (!at_base_lvl()) record_out_of_order(ref);
        if (is_false)
            set_conflict(gexplanation::mk_clause(ref));
        else
            assign_literal_core(c[0], gexplanation::mk_clause(ref));
    }
}

} // namespace vexor
