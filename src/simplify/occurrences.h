// Which variables of a set occur in a term.
//
// Asked for every quantifier, about everything below it: quantifiers nested n deep would cost n times the
// size of the term. So the steps of all questions together are limited, and a question that comes too late
// gets the answer that is always safe: every variable may occur.
//
// Cost: linear in the open part of the term, while there is work left; constant after that.
#pragma once

#include "ast/node/nodes.h"
#include "ast/visit/for_each_visitor.h"
#include "base/hash_table.h"
#include "base/vector.h"

namespace vexor {

class occurrences : private for_each_visitor {
public:
    // Nodes that all questions together may look at, and that any question may.
    static constexpr unsigned max_total_work = 20000000;
    static constexpr unsigned max_late_work = 1000;

    // Starts a new set.
    void set_variables(var_decl* const* variables, unsigned n);
    // Notes the members that occur in the term, or in a type; true if there is one.
    bool note(ast* a);
    bool has_occurred(var_decl* d) const { return *m_variables.find(d); }

    // Steps left; for tests.
    unsigned get_work_left() const { return m_work_left; }
    void set_work_left(unsigned steps) { m_work_left = steps; }

private:
    void accept(ast* a) override;
    using for_each_visitor::visit;
    void visit(name_expr* n) override;
    void visit(immutable_name_expr*) override {}
    void visit(const_decl*) override {}
    void note_all();

    hash_map<var_decl*, bool, fast_ptr_hash<var_decl>> m_variables; // the set; has the member occurred
    unsigned m_num_missing = 0;                                     // members that have not occurred
    unsigned m_work_left = max_total_work;                          // see above
    unsigned m_steps_left = 0;                                      // of the question being answered
    bool m_found = false;   // a member occurs in the term being looked at
    bool m_settled = false; // the rest of the term cannot change the answer
};

} // namespace vexor
