// Simplifying builders of disjunctions, for passes that gather disjuncts one by one.
#pragma once

#include "ast/nodes.h"
#include "base/shared_ptr.h"
#include "base/vector.h"

namespace vexor {

// Adds a disjunct: an `or` is added argument by argument, false and what is there already is left out, and
// true or the complement of a disjunct make the whole list the single disjunct true. What leaves the list
// goes to keep. The list holds no references: e must be held elsewhere.
void insert_disjunct(ptr_vector<expr>& args, expr* e, shared_ptr_vector<ast>& keep);

// The disjunction of args, which loses its false members: false for none, the member for a single one, true
// as soon as one is true (args then move to keep), else a new application at position -1.
shared_ptr<expr> create_or(ast_manager* m, ptr_vector<expr>& args, shared_ptr_vector<ast>& keep);

// Moves all of args to keep and returns true.
expr* or_eq_true_case(ast_manager* m, ptr_vector<expr>& args, shared_ptr_vector<ast>& keep);

} // namespace vexor
