// Prints a node with its sharing: "#" and a number in front of a node that occurs again, and alone where it
// does.
//
// Names and constants are always printed in full: a number would be no shorter. The text is linear in the
// nodes.
#pragma once

#include "ast/print/pp_visitor.h"
#include "ast/visit/for_each_visitor.h"

namespace vexor {

// Counts how often each node with several references occurs below a root, as far as the printer shows it.
class occ_visitor : public for_each_visitor {
public:
    void accept(ast* a) override;
    void reset();
    unsigned get_num_occs(ast* a) const;

    using for_each_visitor::visit;
    void visit(let_decl* n) override;
    void visit(constructor_decl* n) override;
    void visit(subrange* n) override;

private:
    hash_map<ast*, unsigned, fast_ptr_hash<ast>> m_num_occs; // of nodes with several references
};

class pp_dag_visitor : public pp_visitor {
public:
    // definitions_first: one line for each shared node before the node itself, parts before what they are
    // part of.
    shared_ptr<pp::doc> operator()(ast const* a, bool definitions_first);

protected:
    shared_ptr<pp::doc> accept(ast* a) override;
    void reset() override;

private:
    occ_visitor m_occs;
    hash_map<ast*, unsigned, fast_ptr_hash<ast>> m_numbers; // of shared nodes met
    bool m_definitions_first = false;                       // see operator()
    docs m_definitions;                                     // of shared nodes, with definitions first
};

} // namespace vexor
