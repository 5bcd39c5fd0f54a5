// Makes equal subterms one object, so that later passes and their caches see the sharing.
//
// Terms are rebuilt bottom-up: the children of a node are shared already when the node is looked up, so that
// it is known by its class, its own data and the addresses of its children. Bound variables are told apart by
// their declarations: two quantifiers that differ in the names of their variables alone stay two.
//
// Keeps:   no two members of the table have the same class, data and children.
// Cost:    linear in the number of distinct nodes and their children.
// Source:  Ershov: On programming of arithmetic operations, Comm. ACM 1(8), 1958.
#pragma once

#include "ast/visit/map_visitor.h"

namespace vexor {

class hash_consing_visitor : public map_visitor {
public:
    hash_consing_visitor()
        : map_visitor(false) {}

    shared_ptr<ast> accept_core(ast* a) override;
    using map_visitor::visit;
    void visit(expr* fun, application* a) override;
    void reset() override;

protected:
    // Does the node take part?
    virtual bool apply_hash_consing(ast* a) const = 0;

private:
    struct node_hash {
        std::size_t operator()(expr* e) const;
    };
    struct node_equality {
        bool operator()(expr* a, expr* b) const;
    };

    shared_ptr_vector<expr> m_args;                    // images of the arguments of the open applications
    shared_ptr_vector<expr> m_members;                 // keeps the members of m_nodes
    hash_set<expr*, node_hash, node_equality> m_nodes; // one of each kind
};

// For the terms that gates and circuits are made from: Boolean structure, atoms, bit-vector terms and what
// stands below them.
class or_ite_bv_hash_consing_visitor : public hash_consing_visitor {
protected:
    bool apply_hash_consing(ast* a) const override;
};

} // namespace vexor
