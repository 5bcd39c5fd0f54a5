// Double dispatch over the node classes, generated from the class tables.
//
// There is one visit for each class; its default calls the visit of the parent class, down to visit(ast*),
// which does nothing. visit(application*) by default goes on to the class of the function: visit(X*,
// application*) for the classes that stand in function position, whose default is visit(expr*, application*),
// and that one's default is visit(expr*) of the application. So a visitor that wants `and` specially
// overrides visit(and_name_expr*, application*).
//
// A subclass that overrides some visits writes `using ast_visitor::visit;` (or its parent's) to keep the
// others.
#pragma once

#include "ast/node/ast_fwd.h"

namespace vexor {

class ast_visitor {
public:
    virtual ~ast_visitor() = default;

    virtual void visit(ast* n);
#define VEXOR_NODE(CLASS, PARENT) virtual void visit(CLASS* n);
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    virtual void visit(X##_decl* n);                                                                         \
    virtual void visit(X##_name_expr* n);
#include "ast/node/builtin_ops.def"

    // fun is the function of a.
    virtual void visit(expr* fun, application* a);
#define VEXOR_HEAD(CLASS) virtual void visit(CLASS* fun, application* a);
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY) virtual void visit(X##_name_expr* fun, application* a);
#include "ast/node/builtin_ops.def"
};

} // namespace vexor
