// Finds out which nodes have free local variables, and stores it in the nodes.
//
// Cost:    linear in the number of distinct nodes; a node whose state is known to be closed is not entered.
#pragma once

#include "ast/visit/for_each_visitor.h"
#include "ast/visit/var_env.h"

namespace vexor {

class free_vars_visitor : public for_each_visitor {
public:
    // What level_of gives for a variable that no binder above the start of the run binds.
    static constexpr unsigned unbound = 0x40000000;

    // The number of binding levels that a reaches out of: 0 is closed, 1 needs the innermost scope only.
    unsigned reach(ast* a);
    unsigned level_of(name_expr* n);
    void reset();

    // A binder.
    class scope {
    public:
        explicit scope(free_vars_visitor& v)
            : m_visitor(v) {
            v.m_env.begin_scope();
        }
        scope(scope const&) = delete;
        scope& operator=(scope const&) = delete;
        ~scope() { m_visitor.m_env.end_scope(); }
        void update_scope(var_decl* d) {
            if (d != nullptr) m_visitor.m_env.bind(d, m_visitor.m_env.level(), false);
        }

    private:
        free_vars_visitor& m_visitor;
    };

    // Merges what a reaches into the result of the visit around it.
    void accept(ast* a) override;

    using for_each_visitor::visit;
    void visit(const_decl* n) override;
    void visit(type_decl* n) override;
    void visit(function_type* n) override;
    void visit(tuple_type* n) override;
    void visit(scalar_type* n) override;
    void visit(datatype* n) override;
    void visit(subtype* n) override;
    void visit(subrange* n) override;
    void visit(name_expr* n) override;
    void visit(binding_expr* n) override;
    void visit(let_expr* n) override;

private:
    using env = binding_env<unsigned>;
    // The outermost level that a free variable is bound at; closed is above all levels, 0 stands for unbound.
    static constexpr unsigned closed = 0xffffffff;
    struct entry {
        unsigned m_outermost = closed;
        env::mark m_mark{}; // until when it is valid
    };
    template <class T>
    void accept_binders(child_array<T> const& binders, scope& s);

    env m_env;                                         // level of each bound variable
    hash_map<ast*, entry, fast_ptr_hash<ast>> m_cache; // of shared open nodes
    unsigned m_outermost = closed;                     // of what was visited so far below the current node
};

} // namespace vexor
