// Scalar types, datatypes, bit-vector types and subtypes.
#pragma once

#include "ast/node/child_array.h"
#include "ast/node/data_decls.h"
#include "ast/node/type.h"

#include <utility>

namespace vexor {

// A finite type given by the names of its elements.
class scalar_type : public type {
    VEXOR_AST_CLASS("scalar_type");

public:
    // Creates the element declarations; their type is a name of d.
    scalar_type(type_decl* d, identifier* const* ids, unsigned n, int pos);
    ~scalar_type() override;
    bool is_nominal() const override { return true; }
    // This: scalar types are nominal.
    shared_ptr<type> clone() const override;

    unsigned size() const { return m_elements.size(); }
    scalar_element_decl* get_element(unsigned i) const { return m_elements[i]; }
    child_array<scalar_element_decl> const& get_elements() const { return m_elements; }
    void set_elements(scalar_element_decl* const* elements, unsigned n);

    static unsigned num_slots(type_decl*, identifier* const*, unsigned n, int) { return n; }

private:
    child_array<scalar_element_decl> m_elements; // in the order of the source
};

// An inductive type given by its constructors.
class datatype : public type {
    VEXOR_AST_CLASS("datatype");

public:
    datatype(ast_manager* m, constructor_decl* const* constructors, unsigned n, int pos);
    ~datatype() override;
    // Runs constructor_decl::setup on each constructor with its index.
    void setup();
    bool is_nominal() const override { return true; }
    // This: datatypes are nominal.
    shared_ptr<type> clone() const override;

    unsigned size() const { return m_constructors.size(); }
    constructor_decl* get_constructor(unsigned i) const { return m_constructors[i]; }
    child_array<constructor_decl> const& get_constructors() const { return m_constructors; }

    static unsigned num_slots(ast_manager*, constructor_decl* const*, unsigned n, int) { return n; }

private:
    child_array<constructor_decl> m_constructors; // in the order of the source
};

class bitvector_type : public type {
    VEXOR_AST_CLASS("bitvector");

public:
    bitvector_type(ast_manager* m, unsigned size, int pos);
    shared_ptr<type> clone() const override;

    unsigned get_size() const { return m_size; }
    void set_size(unsigned size);

private:
    unsigned m_size; // in bits
};

// All values of the variable's type for which the predicate holds.
class subtype : public type {
    VEXOR_AST_CLASS("subtype");

public:
    subtype(var_decl* d, expr* pred, int pos);
    subtype(std::pair<var_decl*, expr*> const& d_and_pred, int pos);
    ~subtype() override;
    ast* compatible_norm() override;
    type* cast_step() override;
    shared_ptr<type> clone() const override;
    shared_ptr<subtype> clone(var_decl* d, expr* pred) const;

    var_decl* get_decl() const { return m_decl.get(); }
    expr* get_pred() const { return m_pred.get(); }
    void set_decl(var_decl* d);
    void set_pred(expr* pred);

protected:
    // For subrange, which computes both.
    explicit subtype(int pos);

private:
    shared_ptr<var_decl> m_decl; // the variable that stands for the value
    shared_ptr<expr> m_pred;     // in the variable
};

// The integers from lower to upper, both included.
class subrange : public subtype {
    VEXOR_AST_CLASS("subrange");

public:
    subrange(expr* lower, expr* upper, int pos);
    ~subrange() override;
    shared_ptr<type> clone() const override;

    expr* get_lower() const { return m_lower.get(); }
    expr* get_upper() const { return m_upper.get(); }
    // Builds the predicate anew.
    void set_bounds(expr* lower, expr* upper);

private:
    shared_ptr<expr> m_lower; // least value
    shared_ptr<expr> m_upper; // greatest value
};

// A new variable of type int and the conjunction of the two comparisons; the caller gets a reference on each.
std::pair<shared_ptr<var_decl>, shared_ptr<expr>> create_subrange_pred(expr* lower, expr* upper, int pos);

} // namespace vexor
