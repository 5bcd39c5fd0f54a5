#include "search/theory_port.h"

#include "search/context.h"

namespace vexor {

theory_port::theory_port(context& ctx)
    : m_context(ctx)
    , m_assignment(ctx.m_assignment)
    , m_scope_lvl(ctx.m_scope_lvl)
    , m_base_lvl(ctx.m_base_lvl)
    , m_region(ctx.m_region) {}

literal theory_port::new_atom(theory_atom& a) {
    VEXOR_ASSERT(a.m_var == null_bool_var);
    a.m_var = static_cast<int>(m_context.num_bool_vars());
    int const var = m_context.create_bool_var_core(bool_var_body(&a));
    VEXOR_ASSERT(var == a.m_var);
    return literal(var);
}

theory_atom* theory_port::atom_of(int var) const {
    bool_var_body const body = m_context.get_body(var);
    return body.has_atom() ? body.get_atom() : nullptr;
}

literal theory_port::new_literal() { return m_context.create_fresh_bool_var(); }
literal theory_port::literal_of(var_decl* d) { return m_context.create_bool_var(d); }

literal theory_port::mk_or(svector<literal> const& lits) { return m_context.create_or(lits); }
literal theory_port::mk_or(literal a, literal b) { return m_context.create_or(a, b); }
literal theory_port::mk_iff(literal a, literal b) { return m_context.create_iff(a, b); }
literal theory_port::mk_ite(literal c, literal t, literal e) { return m_context.create_ite(c, t, e); }

void theory_port::axiom(literal l) { m_context.assert_literal(l); }
void theory_port::axiom(svector<literal> const& lits) {
    m_context.create_clause_core(lits, clause_kind::problem);
}
void theory_port::axiom(literal a, literal b) { m_context.create_auxiliary_clause(a, b); }
void theory_port::axiom(literal a, literal b, literal c) { m_context.create_auxiliary_clause(a, b, c); }
void theory_port::lemma(svector<literal> const& lits) {
    m_context.create_clause_core(lits, clause_kind::lemma);
}

bool theory_port::is_base_fact(literal l) const {
    VEXOR_ASSERT(value(l) != 0);
    return at_base() || m_context.timestamp(l) < m_context.scope_floor(m_base_lvl + 1);
}

std::int64_t theory_port::timestamp(literal l) const { return m_context.timestamp(l); }

bool theory_port::assign(literal l, explanation* why) {
    return m_context.assign_literal_core(l, gexplanation::mk_lazy(why));
}

void theory_port::conflict(explanation* why) { m_context.set_conflict(gexplanation::mk_lazy(why)); }

explanation* theory_port::mk_reason(reason_kind const& kind, literal const* why, unsigned n) {
#ifdef VEXOR_DEBUG
    for (unsigned i = 0; i < n; ++i) VEXOR_ASSERT(value(why[i]) > 0);
#endif
    m_context.count_reason(kind.index());
    void* const memory = m_region.allocate(sizeof(frozen_reason) + n * sizeof(literal));
    return new (memory) frozen_reason(kind, why, n);
}

bool theory_port::inconsistent() const { return m_context.inconsistent(); }
bool theory_port::keep_searching() const { return m_context.keep_searching(); }
void theory_port::set_incomplete(char const* reason) { m_context.set_incompleteness(reason); }
void theory_port::type_error(char const* text) { m_context.set_type_error(text); }
random_numbers& theory_port::random() { return m_context.random(); }
std::uint64_t theory_port::num_conflicts() const { return m_context.num_conflicts(); }
ast_manager* theory_port::get_manager() const { return m_context.get_manager(); }
void theory_port::display(std::ostream& out, literal l) const { m_context.display(out, l); }
void theory_port::push_trail_record(trail_object* record) { m_context.push_trail_record(trail_word(record)); }

} // namespace vexor
