// Checks that a declaration or formula is well-typed.
//
// Every node is checked once, after its children; the first fault raises type_checker_exception at its node.
// What a name stands for is not checked with it: a declaration is checked where it is added or bound.
#pragma once

#include "ast/types/type_checker_exception.h"
#include "ast/visit/for_each_visitor.h"

namespace vexor {

class type_checker : public for_each_visitor {
public:
    using for_each_visitor::visit;
    void visit(const_decl* n) override;
    void visit(let_decl* n) override;
    void visit(bitvector_type* n) override;
    void visit(subtype* n) override;
    void visit(subrange* n) override;
    void visit(quantified_expr* n) override;
    void visit(function_update_expr* n) override;
    void visit(tuple_update_expr* n) override;
    void visit(record_update_expr* n) override;
    void visit(bitvector_constant* n) override;
    void visit(tuple_selection* n) override;
    void visit(record_literal* n) override;
    void visit(record_selection* n) override;
    void visit(expr* fun, application* a) override;
#define VEXOR_OP_RULE(X, RULE) void visit(X##_name_expr* fun, application* a) override;
#include "ast/types/op_rules.def"
};

// Raises type_checker_exception at the first fault below the node.
void type_check(ast* n);

} // namespace vexor
