// The arithmetic arm of the simplifier: sums, products, comparisons and equalities of numbers.
//
// Arguments are simplified, constants are folded exactly; a division by the constant 0 throws
// division_by_zero_exception.
#pragma once

#include "ast/node/nodes.h"
#include "base/numeral.h"
#include "base/shared_ptr.h"

namespace vexor {

class simplify_visitor;

class simplify_arith_visitor {
public:
    explicit simplify_arith_visitor(simplify_visitor* owner)
        : m_owner(owner) {}

    // The image of a source term. is_predicate: a comparison or equality, not a term.
    shared_ptr<expr> operator()(application* a, bool is_predicate);
    // The equality of two images.
    shared_ptr<expr> create_eq(expr* a, expr* b);

private:
    shared_ptr<expr> fold_term(application* a);
    shared_ptr<expr> fold_predicate(application* a);

    simplify_visitor* m_owner; // gives the images of arguments
};

} // namespace vexor
