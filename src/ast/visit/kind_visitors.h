// Questions about the type of an expression, answered without allocating.
#pragma once

#include "ast/visit/ast_visitor.h"

namespace vexor {

// Walks through names and subtypes to the type class that decides.
class expr_kind_visitor : public ast_visitor {
public:
    // a is a type, or an expression whose type is asked.
    bool operator()(ast const* a);

    using ast_visitor::visit;
    void visit(type_name* n) override;
    void visit(subtype* n) override;

protected:
    void yes() { m_result = true; }

private:
    bool m_result = false; // the answer
    ast* m_next = nullptr; // where the walk goes on, null at its end
};

class bool_kind_visitor : public expr_kind_visitor {
public:
    using expr_kind_visitor::visit;
    void visit(bool_type_name*) override { yes(); }
};

// int and nat.
class int_kind_visitor : public expr_kind_visitor {
public:
    using expr_kind_visitor::visit;
    void visit(int_type_name*) override { yes(); }
    void visit(nat_type_name*) override { yes(); }
};

// All numeric types.
class num_kind_visitor : public expr_kind_visitor {
public:
    using expr_kind_visitor::visit;
    void visit(int_type_name*) override { yes(); }
    void visit(nat_type_name*) override { yes(); }
    void visit(real_type_name*) override { yes(); }
    void visit(number_type_name*) override { yes(); }
};

class bitvector_kind_visitor : public expr_kind_visitor {
public:
    using expr_kind_visitor::visit;
    void visit(bitvector_type*) override { yes(); }
};

} // namespace vexor
