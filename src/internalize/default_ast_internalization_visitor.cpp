// The frame of a run: entry points, caches, and what is asserted.
#include "internalize/default_ast_internalization_visitor.h"

#include "ast/node/unsupported.h"
#include "ast/types/type_checker_exception.h"
#include "base/deep_stack.h"
#include "internalize/internalize_settings.h"
#include "internalize/support_check.h"
#include "search/context.h"
#include "simplify/simplify.h"

#include <memory>

namespace vexor {

void init_internalizer(context& ctx) {
    ctx.set_internalizer(std::make_unique<default_ast_internalization_visitor>(&ctx));
}

// An exception for too deep a formula must come here and not among the clauses. The passes walk over the same
// nodes as the translation, and a level costs them no less of the stack; but they meet shared nodes once,
// while one that is asserted is met again where it is named. So they get by with half of the stack.
shared_ptr<expr> default_ast_internalization_visitor::prepare(expr* e) {
    shared_ptr<expr> result(e);
    on_deep_stack([&] {
        depth_reserve const reserve;
        if (g_cache_ite)
            simplify(result, m_context);
        else
            simplify(result);
    });
    // Without the type checker a choice may have had branches of different types.
    if (!result->is_boolean()) throw_type_error(e, "constraint must be a boolean.");
    check_support(result.get());
    return result;
}

void default_ast_internalization_visitor::assert_prepared(expr* e, literal guard) {
    m_guard = guard;
    reset();
    on_deep_stack([&] { accept_toplevel(e); });
    reset();
    m_guard = null_literal;
}

// The fresh variables of a formula are existential: each becomes a Boolean variable of its own. Side
// conditions are asserted like the formula.
void default_ast_internalization_visitor::accept_toplevel(expr* e) {
    if (is_a<fresh_vars_expr>(e)) e = static_cast<fresh_vars_expr*>(e)->get_expr();
    if (!is_a<local_context_expr>(e)) {
        accept_boolean_core(e, false, true);
        return;
    }
    auto* local = static_cast<local_context_expr*>(e);
    accept_boolean_core(local->get_expr(), false, true);
    for (expr* condition : local->get_context()) accept_boolean_core(condition, false, true);
}

literal default_ast_internalization_visitor::accept_boolean(expr* e, bool negated) {
    reset();
    literal const result = on_deep_stack([&] { return accept_boolean_core(e, negated, false); });
    reset();
    return result;
}

void default_ast_internalization_visitor::reset() {
    m_expr2literal.reset();
    m_fresh_literals.reset();
}

// A node with one parent is never looked up nor stored. For an asserted node the result is null_literal.
literal default_ast_internalization_visitor::accept_boolean_core(expr* e, bool negated, bool toplevel) {
    check_depth();
    bool const shared = !toplevel && !e->is_fanout_one();
    if (shared) {
        if (literal const* known = m_expr2literal.find(e)) return negated ? ~*known : *known;
    }
    m_toplevel = toplevel;
    m_negated = negated;
    m_literal_result = null_literal;
    e->accept(this);
    if (toplevel) return null_literal;
    literal const result = m_literal_result;
    VEXOR_ASSERT(result != null_literal);
    if (shared) m_expr2literal.insert(e, result);
    return negated ? ~result : result;
}

// Ends the visit of a node that has a literal anyway.
void default_ast_internalization_visitor::deliver(literal l, bool toplevel, bool negated) {
    m_literal_result = null_literal;
    if (toplevel)
        assert_literal(negated ? ~l : l);
    else
        m_literal_result = l;
}

void default_ast_internalization_visitor::assert_literal(literal l) {
    if (m_guard == null_literal)
        m_context->assert_literal(l);
    else
        assert_clause(l, m_guard);
}

void default_ast_internalization_visitor::assert_clause(svector<literal>& lits) {
    if (m_guard != null_literal && (lits.empty() || lits.back() != m_guard)) lits.push_back(m_guard);
    m_context->create_clause_core(lits, clause_kind::problem);
}

void default_ast_internalization_visitor::assert_clause(literal a, literal b) {
    m_clause_lits.reset();
    m_clause_lits.push_back(a);
    m_clause_lits.push_back(b);
    assert_clause(m_clause_lits);
}

// What has no visit was refused by check_support, so that these report an inconsistency of our own.
void default_ast_internalization_visitor::visit(expr* n) {
    throw_not_implemented("Internal error: please send bug report.", n);
}

void default_ast_internalization_visitor::visit(expr*, application* a) { visit(static_cast<expr*>(a)); }

void default_ast_internalization_visitor::visit(immutable_name_expr* n) {
    throw_not_implemented("operator cannot be used as a constant", n);
}

} // namespace vexor
