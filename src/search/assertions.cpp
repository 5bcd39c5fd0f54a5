// How formulas enter a context, and leave it without a pop.
//
// A retractable or weighted formula is asserted as a disjunction with a fresh guard whose negation is assumed
// at each check. Retraction is a later assumption of the opposite sign; the clauses stay. The id of an
// assertion is the negated guard.
#include "search/context.h"

#include "ast/node/nodes.h"
#include "ast/node/settings.h"
#include "ast/types/type_checker.h"
#include "search/internalizer.h"

#include <utility>

namespace vexor {

void context::set_internalizer(std::unique_ptr<internalizer> i) {
    VEXOR_ASSERT(!m_internalizer);
    m_internalizer = std::move(i);
}

// Raises every exception that the formula can cause; nothing has changed then.
shared_ptr<expr> context::prepare_assertion(expr* e) {
    VEXOR_ASSERT(m_internalizer && at_base_lvl());
    if (g_type_check) type_check(e);
    if (!e->is_boolean()) throw_type_error(e, "constraint must be a boolean.");
    if (inconsistent() || !type_correct()) return nullptr;
    return m_internalizer->prepare(e);
}

void context::assert_cnstr(expr* e) {
    shared_ptr<expr> const prepared = prepare_assertion(e);
    if (!prepared.get()) return;
    m_model.reset();
    m_internalizer->assert_prepared(prepared.get(), null_literal);
    propagate_constraints();
}

int context::assert_retractable_cnstr(expr* e) {
    shared_ptr<expr> const prepared = prepare_assertion(e);
    m_model.reset();
    literal const guard = create_fresh_bool_var();
    m_assumptions.push_back(~guard);
    return assert_guarded(prepared.get(), guard);
}

int context::assert_weighted_cnstr(expr* e, numeral const& weight) {
    shared_ptr<expr> const prepared = prepare_assertion(e);
    m_model.reset();
    return assert_guarded(prepared.get(), create_fresh_weighted_bool_var(weight));
}

literal context::create_literal(var_decl* decl) {
    if (!decl->is_const_decl() || !static_cast<const_decl*>(decl)->has_definition())
        return create_bool_var(decl);
    shared_ptr<expr> const name = decl->create_name_expr(-1);
    return m_internalizer->accept_boolean(m_internalizer->prepare(name.get()).get(), false);
}

// On a context that is inconsistent or type-incorrect the guard alone exists: its id can be retracted.
int context::assert_guarded(expr* prepared, literal guard) {
    m_is_guard.set(static_cast<unsigned>(guard.var()), true);
    if (prepared != nullptr) {
        m_internalizer->assert_prepared(prepared, guard);
        propagate_constraints();
    }
    return (~guard).index();
}

bool context::is_assertion_id(int id) const {
    if (id < first_literal.index() || (id & 1) == 0) return false;
    unsigned const var = static_cast<unsigned>(literal::from_index(id).var());
    return var < num_bool_vars() && m_is_guard.get(var);
}

bool context::retract(int id) {
    if (!is_assertion_id(id)) return false;
    if (inconsistent() || !type_correct()) return true;
    m_model.reset();
    m_assumptions.push_back(~literal::from_index(id));
    return true;
}

void context::eval_in_model(shared_ptr<expr>& e) {
    if (g_type_check) type_check(e.get());
    if (inconsistent() || !type_correct() || !m_model.is_valid() || !m_internalizer) return;
    m_internalizer->eval_in_model(m_model, e);
}

} // namespace vexor
