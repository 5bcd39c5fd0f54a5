// Equality of terms at a cost that does not depend on their size.
//
// Passes ask at every node whether two of its children are equal. For closed terms the nodes remember their
// hashes, and ast::equals is cheap where the hashes differ; a term with free variables would be hashed anew
// each time, which on deep formulas below a quantifier takes quadratic time. So such terms are compared down
// to a fixed number of nodes, and count as different where that does not settle it. Nothing rests on finding
// every pair of equal terms.
#pragma once

#include "ast/node/nodes.h"

namespace vexor {

// True only if the terms are equal up to the names of bound variables.
bool same_term(expr* a, expr* b);

// The same for terms that same_term takes for equal.
unsigned term_hash(expr* e);

struct term_hasher {
    std::size_t operator()(expr* e) const { return term_hash(e); }
};
struct term_equality {
    bool operator()(expr* a, expr* b) const { return same_term(a, b); }
};

} // namespace vexor
