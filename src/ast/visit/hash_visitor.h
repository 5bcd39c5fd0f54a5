// Structural hash of nodes, the same for alpha-equivalent ones.
//
// Keeps:   a closed node's hash does not depend on what is around it, and is stored in the node. A bound
// variable
//          hashes to its place in the list of its binder, so the hash of an open node changes with the
//          binders of its free variables only, and is remembered as long as they last.
// Cost:    linear in the number of distinct nodes; a stored hash is returned at once.
// Differs: a count from the outermost binder on would give a closed node below a binder another hash than the
// same
//          node alone.
#pragma once

#include "ast/node/nodes.h"
#include "ast/visit/ast_visitor.h"
#include "ast/visit/var_env.h"

namespace vexor {

class hash_visitor : public ast_visitor {
public:
    // The hash of a as it stands alone; never 0, below 2^30.
    unsigned operator()(ast* a);
    // The same under the scopes that are open; 1 for null.
    unsigned accept(ast* a);
    void reset();

    // A binder: its variables are numbered as they are entered.
    class scope {
    public:
        explicit scope(hash_visitor& v)
            : m_visitor(v) {
            v.m_env.begin_scope();
        }
        scope(scope const&) = delete;
        scope& operator=(scope const&) = delete;
        ~scope() { m_visitor.m_env.end_scope(); }
        void update_scope(var_decl* d) {
            if (d != nullptr) m_visitor.m_env.bind(d, ++m_num_vars, false);
        }

    private:
        hash_visitor& m_visitor;
        unsigned m_num_vars = 0; // variables entered so far
    };

    using ast_visitor::visit;
    void visit(ast* n) override;
    void visit(identifier* n) override;
    void visit(decl* n) override;
    void visit(var_decl* n) override;
    void visit(let_decl* n) override;
    void visit(field* n) override;
    void visit(const_decl* n) override;
    void visit(type_name* n) override;
    void visit(function_type* n) override;
    void visit(tuple_type* n) override;
    void visit(record_type* n) override;
    void visit(bitvector_type* n) override;
    void visit(subtype* n) override;
    void visit(subrange* n) override;
    void visit(record_entry* n) override;
    void visit(name_expr* n) override;
    void visit(application* n) override;
    void visit(binding_expr* n) override;
    void visit(let_expr* n) override;
    void visit(local_context_expr* n) override;
    void visit(function_update_expr* n) override;
    void visit(tuple_update_expr* n) override;
    void visit(record_update_expr* n) override;
    void visit(numeral_expr* n) override;
    void visit(bitvector_constant* n) override;
    void visit(tuple_literal* n) override;
    void visit(tuple_selection* n) override;
    void visit(record_literal* n) override;
    void visit(record_selection* n) override;
    void visit(typed_constant* n) override;

private:
    using env = binding_env<unsigned>;
    struct entry {
        unsigned m_hash = 0;
        env::mark m_mark{}; // until when it is valid
    };

    unsigned run_visit(ast* a);
    void fold(unsigned h) { m_result = m_result * 3 + h; }
    template <class T>
    void fold_all(child_array<T> const& children);
    template <class T>
    void fold_binders(child_array<T> const& binders, scope& s);
    void fold_name(ustring const& name);

    env m_env;                                         // number of each bound variable
    hash_map<ast*, entry, fast_ptr_hash<ast>> m_cache; // hashes of shared open nodes
    unsigned m_result = 0;                             // of the last visit
};

} // namespace vexor
