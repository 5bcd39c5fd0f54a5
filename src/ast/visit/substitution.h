// Substitution and renaming of bound variables.
#pragma once

#include "ast/visit/map_visitor.h"

namespace vexor {

// The body of the function with the parameters replaced by the arguments; the application itself when its
// function is not a lambda_expr with as many parameters. Nothing is captured: where an argument has free
// variables, binders of the body get new variables.
shared_ptr<expr> beta_reduce(application* a);

// The same expression with new variables, of the same names.
shared_ptr<binding_expr> alpha_convert(binding_expr* b);

// Gives every binder below the node new variables.
class fresh_var_decl_visitor : public map_visitor {
public:
    fresh_var_decl_visitor()
        : map_visitor(false) {}

protected:
    bool renames_bound_variables() const override { return true; }
};

} // namespace vexor
