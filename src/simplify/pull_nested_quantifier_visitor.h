// Moves the variables of nested quantifiers of the same polarity to the quantifier around them.
//
//   (forall (x) (or A (forall (y) B)))              to  (forall (x y) (or A B))
//   (forall (x) (not (or A (exists (y) B))))        to  (forall (x y) (not (or A B)))
//
// and the same for exists. The walk goes through `or` and `not` alone; a quantifier of the other polarity is
// kept as it is. Images have distinct variables, so nothing is captured. A subterm that is shared is opened
// once for all its places: they stand under the same polarity, so one variable serves them all.
//
// Keeps:   the term with the variables collected so far before it is equivalent to the input.
// Cost:    linear in the `or` and `not` nodes above the nearest quantifiers.
#pragma once

#include "ast/node/nodes.h"
#include "base/hash_table.h"
#include "base/shared_ptr.h"

namespace vexor {

class simplify_visitor;

class pull_nested_quantifier_visitor {
public:
    // Lists are not extended beyond this: a formula nested n deep would give n lists of up to n variables.
    static constexpr unsigned max_variables = 256;
    // Disjuncts of an opened body that join those around it.
    static constexpr unsigned max_copied = 4096;

    // is_forall: what the variables are bound by; new ones are appended.
    pull_nested_quantifier_visitor(simplify_visitor& owner, bool is_forall,
                                   shared_ptr_vector<var_decl>& variables)
        : m_owner(owner)
        , m_forall(is_forall)
        , m_variables(variables) {}

    shared_ptr<expr> operator()(expr* body) { return walk(body); }

private:
    shared_ptr<expr> walk(expr* e);
    shared_ptr<expr> walk_or(application* a);
    shared_ptr<expr> open(quantified_expr* q);
    bool binds_known_variable(quantified_expr* q) const;

    using image_map = hash_map<expr*, shared_ptr<expr>, fast_ptr_hash<expr>>;

    simplify_visitor& m_owner;                // builds disjunctions
    bool m_forall;                            // see the constructor
    bool m_positive = true;                   // an even number of negations stands above
    shared_ptr_vector<var_decl>& m_variables; // see the constructor
    image_map m_images[2];                    // of shared nodes, by polarity
};

} // namespace vexor
