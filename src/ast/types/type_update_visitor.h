// Computes the type of an expression on first need; expr::get_type is the entry.
//
// Each node keeps its type, and types of components are shared, so typing is linear in the nodes. The term
// need not be well-typed: type_checker_exception is raised only where there is no type to give.
#pragma once

#include "ast/node/nodes.h"
#include "ast/visit/ast_visitor.h"

namespace vexor {

class type_update_visitor : public ast_visitor {
public:
    // Computes and stores the type of e.
    void operator()(expr* e);

    using ast_visitor::visit;
    void visit(name_expr* n) override;
    void visit(quantified_expr* n) override;
    void visit(lambda_expr* n) override;
    void visit(fresh_vars_expr* n) override;
    void visit(let_expr* n) override;
    void visit(local_context_expr* n) override;
    void visit(function_update_expr* n) override;
    void visit(tuple_update_expr* n) override;
    void visit(record_update_expr* n) override;
    void visit(numeral_expr* n) override;
    void visit(bitvector_constant* n) override;
    void visit(tuple_literal* n) override;
    void visit(tuple_selection* n) override;
    void visit(record_literal* n) override;
    void visit(record_selection* n) override;
    void visit(typed_constant* n) override;
    void visit(expr* fun, application* a) override;
#define VEXOR_OP_RULE(X, RULE) void visit(X##_name_expr* fun, application* a) override;
#include "ast/types/op_rules.def"

private:
    void keep_or_widen(type* target, type* updated);

    shared_ptr<type> m_result; // type of the node visited
};

} // namespace vexor
