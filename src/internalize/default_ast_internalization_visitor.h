// Translates simplified formulas: Boolean structure becomes clauses and gates.
#pragma once

#include "ast/node/nodes.h"
#include "base/hash_table.h"
#include "base/vector.h"
#include "internalize/ast_internalization_visitor.h"
#include "search/literal.h"

namespace vexor {

// One object serves a context for its life; each assertion is one run, and caches do not survive it.
//
// A node is either asserted (m_toplevel; negated or not) or named by a literal. An asserted node makes
// clauses and no variable of its own; a named one makes a gate, once for all its parents.
class default_ast_internalization_visitor : public ast_internalization_visitor {
public:
    using ast_internalization_visitor::ast_internalization_visitor;

    [[nodiscard]] shared_ptr<expr> prepare(expr* e) override;
    void assert_prepared(expr* e, literal guard) override;
    void eval_in_model(model const& m, shared_ptr<expr>& e) override;
    void reset() override;

    // An independent run.
    literal accept_boolean(expr* e, bool negated) override;

    using ast_visitor::visit;
    void visit(expr* n) override;
    void visit(expr* fun, application* a) override;
    void visit(immutable_name_expr* n) override;
    void visit(name_expr* n) override;
    void visit(true_name_expr* n) override;
    void visit(false_name_expr* n) override;
    void visit(not_name_expr* fun, application* a) override;
    void visit(or_name_expr* fun, application* a) override;
    void visit(eq_name_expr* fun, application* a) override;
    void visit(ite_name_expr* fun, application* a) override;

private:
    literal accept_boolean_core(expr* e, bool negated, bool toplevel);
    void accept_toplevel(expr* e);
    void deliver(literal l, bool toplevel, bool negated);
    literal create_fresh_var_literal(var_decl* d);

    void assert_literal(literal l);
    void assert_clause(svector<literal>& lits);
    void assert_clause(literal a, literal b);

    literal m_guard;                // weakens every clause of the run; null_literal for none
    literal m_literal_result;       // of the last visit that named its node; null_literal otherwise
    bool m_toplevel = false;        // the node being visited is asserted; read before recursion
    bool m_negated = false;         // with m_toplevel: asserted negated
    svector<literal> m_clause_lits; // scratch of the two-literal assert_clause

    hash_map<expr*, literal, fast_ptr_hash<expr>> m_expr2literal;           // shared nodes of this run
    hash_map<var_decl*, literal, fast_ptr_hash<var_decl>> m_fresh_literals; // fresh variables of this run
};

// Gives the context its internalizer.
void init_internalizer(context& ctx);

} // namespace vexor
