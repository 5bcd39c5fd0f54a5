// The forwarding visits and the accepts of all node classes.
#include "ast/visit/ast_visitor.h"

#include "ast/node/nodes.h"

namespace vexor {

void ast_visitor::visit(ast*) {}

#define VEXOR_NODE(CLASS, PARENT)                                                                            \
    void ast_visitor::visit(CLASS* n) { visit(static_cast<PARENT*>(n)); }
#define VEXOR_APPLICATION(CLASS, PARENT)                                                                     \
    void ast_visitor::visit(CLASS* n) { n->get_fun()->accept(this, n); }
#include "ast/node/ast_classes.def"

#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    void ast_visitor::visit(X##_decl* n) { visit(static_cast<const_decl*>(n)); }                             \
    void ast_visitor::visit(X##_name_expr* n) { visit(static_cast<immutable_name_expr*>(n)); }
#include "ast/node/builtin_ops.def"

void ast_visitor::visit(expr*, application* a) { visit(static_cast<expr*>(a)); }

#define VEXOR_HEAD(CLASS)                                                                                    \
    void ast_visitor::visit(CLASS* fun, application* a) { visit(static_cast<expr*>(fun), a); }
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    void ast_visitor::visit(X##_name_expr* fun, application* a) { visit(static_cast<expr*>(fun), a); }
#include "ast/node/builtin_ops.def"

#define VEXOR_NODE(CLASS, PARENT)                                                                            \
    void CLASS::accept(ast_visitor* v) { v->visit(this); }
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    void X##_decl::accept(ast_visitor* v) { v->visit(this); }                                                \
    void X##_name_expr::accept(ast_visitor* v) { v->visit(this); }
#include "ast/node/builtin_ops.def"

void expr::accept(ast_visitor* v, application* a) { v->visit(this, a); }

#define VEXOR_HEAD(CLASS)                                                                                    \
    void CLASS::accept(ast_visitor* v, application* a) { v->visit(this, a); }
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    void X##_name_expr::accept(ast_visitor* v, application* a) { v->visit(this, a); }
#include "ast/node/builtin_ops.def"

} // namespace vexor
