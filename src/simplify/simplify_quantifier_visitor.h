// Builds a quantifier over an image in normal form, with as little below it as there can be.
//
//   (forall (x) (not A))            to  (not (exists (x) A)), and the dual
//   (forall (x) (forall (y) A))     to  (forall (x y) A), and the same for exists
//   (forall (x) (or A B))           to  (or (forall (x) A) B), where x does not occur in B; also for exists
//   (forall (x y) A)                to  (forall (x) A), where y does not occur in A; A where x does not,
//   either
//
// All types have a value: restrictions to subtypes have become a part of the body.
#pragma once

#include "ast/node/nodes.h"
#include "base/shared_ptr.h"
#include "simplify/occurrences.h"

namespace vexor {

class simplify_visitor;

class simplify_quantifier_visitor {
public:
    simplify_quantifier_visitor(simplify_visitor& owner, occurrences& occurs)
        : m_owner(owner)
        , m_occurs(occurs) {}

    // The quantifier over these variables. original is reused when it is the result.
    shared_ptr<expr> operator()(quantified_expr* original, bool is_forall,
                                shared_ptr_vector<var_decl>& variables, expr* body);

private:
    bool join_nested(bool is_forall, shared_ptr_vector<var_decl>& variables, shared_ptr<expr>& body);
    void divide_args_with_and_without_refs(application* a, shared_ptr_vector<expr>& with,
                                           shared_ptr_vector<expr>& without);
    void drop_unused(shared_ptr_vector<var_decl>& variables);
    shared_ptr<expr> mk_disjunction(ast_manager* m, shared_ptr_vector<expr> const& disjuncts);

    simplify_visitor& m_owner; // builds disjunctions
    occurrences& m_occurs;     // answers what depends on the variables
};

} // namespace vexor
