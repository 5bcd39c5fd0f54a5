// Visits every node below a node once. Uses of declarations are not followed: a declaration is met where it
// is bound or held, not where it is named.
//
// A subclass overrides the visits that it needs and calls the parent's visit first to see a node after its
// children.
#pragma once

#include "ast/node/nodes.h"
#include "ast/visit/ast_visitor.h"
#include "base/hash_table.h"

namespace vexor {

class for_each_visitor : public ast_visitor {
public:
    // Forgets the nodes visited and visits a.
    void operator()(ast* a);
    // Visits a unless it was visited. Only nodes with several references are remembered: no others are met
    // twice.
    virtual void accept(ast* a);
    void reset() { m_visited.reset(); }

    using ast_visitor::visit;
    void visit(decl* n) override;
    void visit(var_decl* n) override;
    void visit(let_decl* n) override;
    void visit(const_decl* n) override;
    void visit(constructor_decl* n) override;
    void visit(type_decl* n) override;
    void visit(function_type* n) override;
    void visit(tuple_type* n) override;
    void visit(record_type* n) override;
    void visit(scalar_type* n) override;
    void visit(datatype* n) override;
    void visit(subtype* n) override;
    void visit(subrange* n) override;
    void visit(record_entry* n) override;
    void visit(expr* fun, application* a) override;
    void visit(binding_expr* n) override;
    void visit(let_expr* n) override;
    void visit(local_context_expr* n) override;
    void visit(update_expr* n) override;
    void visit(function_update_expr* n) override;
    void visit(record_update_expr* n) override;
    void visit(tuple_literal* n) override;
    void visit(tuple_selection* n) override;
    void visit(record_literal* n) override;
    void visit(record_selection* n) override;

protected:
    template <class T>
    void accept_all(child_array<T> const& children) {
        for (T* child : children) accept(child);
    }
    // True when the node is met for the first time.
    bool enter(ast* a) { return a->get_ref_count() < 2 || m_visited.insert(a); }

private:
    hash_set<ast*, fast_ptr_hash<ast>> m_visited; // nodes with several references that were met in this run
};

} // namespace vexor
