// Membership in a type as a formula: subtypes, and with them int and nat, reduce to predicates.
#pragma once

#include "ast/visit/map_visitor.h"

namespace vexor {

class type_pred_visitor : public ast_visitor {
public:
    // The arguments are those of the map_visitor that puts elements into predicates.
    explicit type_pred_visitor(bool cache_all)
        : m_substitution(cache_all) {}
    type_pred_visitor(bool cache_all, var_env* env)
        : m_substitution(env, cache_all) {}

    // The formula that says that e belongs to t; null when there is nothing to say.
    shared_ptr<expr> operator()(type* t, expr* e);
    // The same quantifier over the values of its variables' types alone: the predicates of the variables
    // imply the body of a forall, and stand beside the body of an exists. n itself when there is nothing to
    // say.
    shared_ptr<quantified_expr> operator()(quantified_expr* n);

    using ast_visitor::visit;
    void visit(type_name* n) override;
    void visit(int_type_name* n) override;
    void visit(subtype* n) override;
    void visit(tuple_type* n) override;
    void visit(record_type* n) override;
    void visit(function_type* n) override;

private:
    class scope;

    bool says_something(type* t);
    template <class D>
    bool components_say_something(child_array<D> const& components);
    bool compute_says_something(type* t);
    shared_ptr<expr> predicate_of(type* t, expr* e);
    shared_ptr<var_decl> bind_parameter(var_decl* parameter);

    map_visitor m_substitution;                                  // variables of types to elements
    hash_map<type*, bool, fast_ptr_hash<type>> m_says_something; // types seen in this run
    shared_ptr<expr> m_element;                                  // whose membership is asked for
    shared_ptr<expr> m_result;                                   // predicate of the type visited, or null
};

// Both skip null operands: mk_and of two nulls is null, and so is mk_implies without a conclusion.
shared_ptr<expr> mk_and(shared_ptr<expr> const& a, shared_ptr<expr> const& b);
shared_ptr<expr> mk_implies(shared_ptr<expr> const& a, shared_ptr<expr> const& b);

} // namespace vexor
