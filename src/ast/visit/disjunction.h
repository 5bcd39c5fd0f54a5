// Simplifying builders of disjunctions, for passes that gather disjuncts one by one.
#pragma once

#include "ast/node/nodes.h"
#include "base/hash_table.h"
#include "base/shared_ptr.h"
#include "base/vector.h"

namespace vexor {

// A disjunction that grows: `or` is taken apart, false and repeated disjuncts are left out, and true or a
// disjunct beside its complement make the whole true, for good.
//
// Cost: O(1) look-ups per disjunct; each `or` node is opened once, however often it is shared.
class disjunction {
public:
    disjunction() = default;
    disjunction(disjunction const&) = delete; // there is one owner of the table
    disjunction& operator=(disjunction const&) = delete;

    void insert(expr* e);
    bool is_true() const { return m_is_true; }
    // Without repetitions, in the order of insertion; empty when the whole is true.
    shared_ptr_vector<expr> const& get_disjuncts() const { return m_disjuncts; }
    // false, true, the only disjunct, or a new application of `or` with the given position.
    shared_ptr<expr> to_expr(ast_manager* m, int pos = -1) const;
    void reset();

private:
    // Disjuncts without their negations; equal up to the names of bound variables.
    struct expr_hash {
        std::size_t operator()(expr* e) const { return e->hash(); }
    };
    struct expr_eq {
        bool operator()(expr* a, expr* b) const { return a->equals(b); }
    };

    void insert_leaf(expr* e);

    shared_ptr_vector<expr> m_disjuncts;                 // so far
    hash_map<expr*, bool, expr_hash, expr_eq> m_negated; // of each stripped disjunct: is it negated
    hash_set<expr*, fast_ptr_hash<expr>> m_opened;       // shared `or` nodes that were taken apart
    bool m_is_true = false;                              // nothing more matters
};

// Adds a disjunct to a plain list in the same way; the list is the single disjunct true once it is true. What
// leaves the list goes to keep. The list holds no references: e must be held elsewhere. Each call looks at
// the whole list; who adds thousands of disjuncts uses the class.
void insert_disjunct(ptr_vector<expr>& args, expr* e, shared_ptr_vector<ast>& keep);

// The disjunction of args, which loses its false members: false for none, the member for a single one, true
// as soon as one is true (args then move to keep), else a new application at position -1.
shared_ptr<expr> create_or(ast_manager* m, ptr_vector<expr>& args, shared_ptr_vector<ast>& keep);

// Moves all of args to keep and returns true.
expr* or_eq_true_case(ast_manager* m, ptr_vector<expr>& args, shared_ptr_vector<ast>& keep);

} // namespace vexor
