// Compatibility of types: a type is equivalent to its subtypes, and int, nat, subranges and real are one
// type.
#pragma once

#include "ast/visit/eq_visitor.h"
#include "ast/visit/map_visitor.h"

namespace vexor {

// Maps a type to its largest type: names to their definitions, subtypes to the type that they are taken from,
// int and nat to real, or with int_only to int. Scalar types and datatypes stand for themselves.
class supertype_visitor : public map_visitor {
public:
    explicit supertype_visitor(bool int_only)
        : map_visitor(false)
        , m_int_only(int_only) {}

    using map_visitor::visit;
    void visit(type_name* n) override;
    void visit(int_type_name* n) override { visit_integers(n); }
    void visit(nat_type_name* n) override { visit_integers(n); }
    void visit(real_type_name* n) override { keep(n); }
    void visit(number_type_name* n) override { keep(n); }
    void visit(subrange* n) override { visit_integers(n); }
    void visit(subtype* n) override;

private:
    void visit_integers(type* n);

    bool m_int_only; // is int the image of the integers, or real
};

// Equality of the representatives for compatibility: int, real and number are all number, a subtype is the
// type that it is taken from.
class compatible_type_visitor : public eq_visitor {
protected:
    ast* norm(ast* a) override { return a->compatible_norm(); }
    bool respects_hash() const override { return false; }
};

// The type behind user's names and subtypes: a built-in or nominal name, or a type with components.
type* core_type(type* t);

// Are the types equal, or their largest types? Symmetric, and true of a type and its subtype either way.
bool equivalent_types(type* a, type* b);

} // namespace vexor
