// Structural equality up to the names of bound variables.
//
// Keeps:   m_cache holds pairs found equal, as long as the bindings of their free variables last. A
// difference ends
//          the comparison, so differences need no memory.
// Cost:    linear in the number of pairs of distinct nodes at the same place; unequal hashes end it at once.
#pragma once

#include "ast/node/nodes.h"
#include "ast/visit/ast_visitor.h"
#include "ast/visit/var_env.h"

namespace vexor {

class eq_visitor : public ast_visitor {
public:
    // Compares two nodes as they stand alone.
    bool operator()(ast const* a, ast const* b);
    // Compares under the scopes that are open.
    bool compare(ast* a, ast* b);
    // Makes the visitor usable again after an exception came through it.
    void reset();

    // A pair of binders.
    class scope {
    public:
        explicit scope(eq_visitor& v)
            : m_visitor(v) {
            v.m_left.begin_scope();
            v.m_right.begin_scope();
        }
        scope(scope const&) = delete;
        scope& operator=(scope const&) = delete;
        ~scope() {
            m_visitor.m_left.end_scope();
            m_visitor.m_right.end_scope();
        }
        // a and b are the same variable from here on.
        void update_scope(var_decl* a, var_decl* b) { m_visitor.pair(a, b); }

    private:
        eq_visitor& m_visitor;
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

protected:
    // The representative that stands for a node; a subclass with a coarser relation overrides both.
    virtual ast* norm(ast* a) { return a->eq_norm(); }
    // Do equal nodes have equal hashes?
    virtual bool respects_hash() const { return true; }

private:
    using env = binding_env<unsigned>;
    struct ast_pair {
        ast* m_first;
        ast* m_second;
        bool operator==(ast_pair const&) const = default;
    };
    struct hash_ast_pair {
        std::size_t operator()(ast_pair const& p) const {
            return reinterpret_cast<std::size_t>(p.m_first) * 31 + reinterpret_cast<std::size_t>(p.m_second);
        }
    };
    struct entry {
        env::mark m_left{}; // until when the pair is known to be equal
        env::mark m_right{};
    };

    void pair(var_decl* a, var_decl* b);
    bool compare_normed(ast* a, ast* b);
    bool known_equal(ast* a, ast* b);
    template <class T>
    T* other() const {
        return static_cast<T*>(m_other);
    }
    template <class T>
    bool compare_all(child_array<T> const& a, child_array<T> const& b);
    template <class T>
    bool compare_binders(child_array<T> const& a, child_array<T> const& b, scope& s);

    env m_left;                                       // number of each variable bound on the left
    env m_right;                                      // the same on the right
    unsigned m_num_pairs = 0;                         // numbers given out
    bool m_only_identities = true;                    // no variable was paired with another one
    hash_map<ast_pair, entry, hash_ast_pair> m_cache; // see above
    ast* m_other = nullptr;                           // what the node being visited is compared with
    bool m_result = false;                            // of the last visit
};

} // namespace vexor
