// Gates: canonical or, iff and ite, each built once.
//
// Above the base level an assigned literal is treated as unknown by all constructors, for a gate outlives the
// assignment; at the base level it is replaced by its value.
#include "search/context.h"

#include <utility>

namespace vexor {

// The probe is variable 1; its definition was filled by the caller.
literal context::lookup_gate(gate_kind kind) {
    get_body(dummy_aux_bool_var).get_def()->m_kind = kind;
    int const var = m_def2var.find(dummy_aux_bool_var);
    return var == null_bool_var ? null_literal : literal(var);
}

literal context::create_gate(gate_kind kind, svector<literal> const& args) {
    auto* def = new aux_bool_var_def{kind, args};
    int const var = create_bool_var_core(bool_var_body(def));
    m_def2var.insert(var);
    return literal(var);
}

literal context::create_or(svector<literal> const& lits) {
    svector<literal>& args = get_body(dummy_aux_bool_var).get_def()->m_args;
    if (!copy_using_or_simplification_rules(lits, args)) return true_literal;
    if (args.empty()) return false_literal;
    if (args.size() == 1) return args[0];
    literal const found = lookup_gate(gate_kind::or_gate);
    if (found != null_literal) return found;
    literal const g = create_gate(gate_kind::or_gate, args);
    // The probe's arguments may be overwritten by what the clauses set off.
    svector<literal> const& members = get_body(g.var()).get_def()->m_args;
    for (unsigned i = 0; i < members.size(); ++i) create_auxiliary_clause(g, ~members[i]);
    svector<literal> long_clause;
    long_clause.push_back(~g);
    long_clause.append(members);
    create_clause_core(long_clause, clause_kind::problem);
    return g;
}

literal context::create_or(literal a, literal b) {
    m_gate_lits.reset();
    m_gate_lits.push_back(a);
    m_gate_lits.push_back(b);
    return create_or(m_gate_lits);
}

literal context::create_or(literal a, literal b, literal c) {
    m_gate_lits.reset();
    m_gate_lits.push_back(a);
    m_gate_lits.push_back(b);
    m_gate_lits.push_back(c);
    return create_or(m_gate_lits);
}

// The literal itself, or the constant that it equals for good.
literal context::base_value(literal l) const {
    if (!at_base_lvl() && l.var() != 0) return l;
    int const v = value(l);
    return v > 0 ? true_literal : v < 0 ? false_literal : l;
}

literal context::create_iff(literal a, literal b) {
    a = base_value(a);
    b = base_value(b);
    if (a == true_literal) return b;
    if (a == false_literal) return ~b;
    if (b == true_literal) return a;
    if (b == false_literal) return ~a;
    if (a == b) return true_literal;
    if (a == ~b) return false_literal;
    return a < b ? create_iff_core(a, b) : create_iff_core(b, a);
}

literal context::create_iff_core(literal a, literal b) {
    svector<literal>& args = get_body(dummy_aux_bool_var).get_def()->m_args;
    args.reset();
    args.push_back(a);
    args.push_back(b);
    literal const found = lookup_gate(gate_kind::iff_gate);
    if (found != null_literal) return found;
    literal const p = create_gate(gate_kind::iff_gate, args);
    create_auxiliary_clause(~p, a, ~b);
    create_auxiliary_clause(~p, ~a, b);
    create_auxiliary_clause(p, a, b);
    create_auxiliary_clause(p, ~a, ~b);
    return p;
}

literal context::create_ite(literal c, literal t, literal e) {
    c = base_value(c);
    t = base_value(t);
    e = base_value(e);
    if (c == true_literal) return t;
    if (c == false_literal) return e;
    if (e == t) return t;
    if (t == c) return create_or(c, e);
    if (t == ~c) return ~create_or(c, ~e);
    if (e == c) return ~create_or(~c, ~t);
    if (e == ~c) return create_or(e, t);
    if (t == true_literal) return create_or(c, e);
    if (t == false_literal) return ~create_or(c, ~e);
    if (e == true_literal) return create_or(~c, t);
    if (e == false_literal) return ~create_or(~c, ~t);
    return c.sign() ? create_ite_core(~c, e, t) : create_ite_core(c, t, e);
}

literal context::create_ite_core(literal c, literal t, literal e) {
    svector<literal>& args = get_body(dummy_aux_bool_var).get_def()->m_args;
    args.reset();
    args.push_back(c);
    args.push_back(t);
    args.push_back(e);
    literal const found = lookup_gate(gate_kind::ite_gate);
    if (found != null_literal) return found;
    literal const p = create_gate(gate_kind::ite_gate, args);
    create_auxiliary_clause(~p, ~c, t);
    create_auxiliary_clause(~p, c, e);
    create_auxiliary_clause(p, ~c, ~t);
    create_auxiliary_clause(p, c, ~e);
    return p;
}

} // namespace vexor
