// The Boolean connectives, in the two forms of each: asserted and named.
#include "internalize/default_ast_internalization_visitor.h"

#include "search/context.h"

namespace vexor {

void default_ast_internalization_visitor::visit(true_name_expr*) {
    deliver(true_literal, m_toplevel, m_negated);
}
void default_ast_internalization_visitor::visit(false_name_expr*) {
    deliver(false_literal, m_toplevel, m_negated);
}

void default_ast_internalization_visitor::visit(name_expr* n) {
    var_decl* const d = n->get_decl();
    literal const l = d->is_fresh_var_decl() ? create_fresh_var_literal(d) : m_context->create_bool_var(d);
    deliver(l, m_toplevel, m_negated);
}

literal default_ast_internalization_visitor::create_fresh_var_literal(var_decl* d) {
    if (literal const* known = m_fresh_literals.find(d)) return *known;
    literal const l = m_context->create_fresh_bool_var();
    m_fresh_literals.insert(d, l);
    return l;
}

// An asserted negation goes down the tree without a variable.
void default_ast_internalization_visitor::visit(not_name_expr*, application* a) {
    if (m_toplevel)
        accept_boolean_core(a->get_arg(0), !m_negated, true);
    else
        m_literal_result = ~accept_boolean_core(a->get_arg(0), false, false);
}

// An asserted negated disjunction asserts the complement of each argument.
void default_ast_internalization_visitor::visit(or_name_expr*, application* a) {
    bool const toplevel = m_toplevel;
    if (toplevel && m_negated) {
        for (expr* arg : a->get_args()) accept_boolean_core(arg, true, true);
        m_literal_result = null_literal;
        return;
    }
    svector<literal> lits;
    lits.reserve(a->num_args() + 1);
    for (expr* arg : a->get_args()) lits.push_back(accept_boolean_core(arg, false, false));
    m_literal_result = null_literal;
    if (toplevel)
        assert_clause(lits);
    else
        m_literal_result = m_context->create_or(lits);
}

void default_ast_internalization_visitor::visit(eq_name_expr*, application* a) {
    bool const toplevel = m_toplevel;
    bool const negated = m_negated;
    literal const x = accept_boolean_core(a->get_arg(0), false, false);
    literal const y = accept_boolean_core(a->get_arg(1), negated, false);
    m_literal_result = null_literal;
    if (!toplevel) {
        m_literal_result = m_context->create_iff(x, negated ? ~y : y);
        return;
    }
    assert_clause(~x, y);
    assert_clause(x, ~y);
}

void default_ast_internalization_visitor::visit(ite_name_expr*, application* a) {
    bool const toplevel = m_toplevel;
    bool const negated = m_negated;
    literal const c = accept_boolean_core(a->get_arg(0), false, false);
    literal const t = accept_boolean_core(a->get_arg(1), false, false);
    literal const e = accept_boolean_core(a->get_arg(2), false, false);
    m_literal_result = null_literal;
    if (!toplevel) {
        m_literal_result = m_context->create_ite(c, t, e);
        return;
    }
    assert_clause(~c, negated ? ~t : t);
    assert_clause(c, negated ? ~e : e);
}

} // namespace vexor
