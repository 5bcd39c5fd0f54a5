// Function, tuple and record types. Components are declarations, so that later components can depend on
// earlier ones.
#pragma once

#include "ast/node/child_array.h"
#include "ast/node/type.h"

namespace vexor {

class function_type : public type {
    VEXOR_AST_CLASS("function_type");

public:
    // Raises empty_domain_function_type_exception for no parameters.
    function_type(var_decl* const* domain, unsigned n, type* range, int pos);
    function_type(var_decl* arg, type* range, int pos);
    function_type(var_decl* arg1, var_decl* arg2, type* range, int pos);
    // From plain types, with anonymous parameters.
    static shared_ptr<function_type> construct(type* const* domain, unsigned n, type* range, int pos);
    static shared_ptr<function_type> construct_unary(type* arg, type* range, int pos);
    static shared_ptr<function_type> construct_binary(type* arg1, type* arg2, type* range, int pos);
    bool is_function_type() const override { return true; }
    shared_ptr<type> clone() const override;
    shared_ptr<function_type> clone(var_decl* const* domain, unsigned n, type* range) const;

    unsigned get_arity() const { return m_domain.size(); }
    var_decl* get_param(unsigned i) const { return m_domain[i]; }
    type* get_param_type(unsigned i) const { return m_domain[i]->get_type(); }
    child_array<var_decl> const& get_domain() const { return m_domain; }
    void set_domain(var_decl* const* domain, unsigned n);
    type* get_range() const { return m_range.get(); }
    void set_range(type* t);

    static unsigned num_slots(var_decl* const*, unsigned n, type*, int) { return n; }
    static unsigned num_slots(var_decl*, type*, int) { return 1; }
    static unsigned num_slots(var_decl*, var_decl*, type*, int) { return 2; }

private:
    shared_ptr<type> m_range;       // the type of an application
    child_array<var_decl> m_domain; // the parameters, at least one
};

class tuple_type : public type {
    VEXOR_AST_CLASS("tuple_type");

public:
    // Raises empty_tuple_type_exception for no elements.
    tuple_type(ast_manager* m, var_decl* const* elements, unsigned n, int pos);
    shared_ptr<type> clone() const override;
    shared_ptr<tuple_type> clone(var_decl* const* elements, unsigned n) const;

    unsigned size() const { return m_elements.size(); }
    var_decl* get_element(unsigned i) const { return m_elements[i]; }
    type* get_element_type(unsigned i) const { return m_elements[i]->get_type(); }
    child_array<var_decl> const& get_elements() const { return m_elements; }
    void set_elements(var_decl* const* elements, unsigned n);

    static unsigned num_slots(ast_manager*, var_decl* const*, unsigned n, int) { return n; }

private:
    child_array<var_decl> m_elements; // the components, at least one
};

// Fields are held sorted by name, whatever the order of the source.
class record_type : public type {
    VEXOR_AST_CLASS("record_type");

public:
    record_type(ast_manager* m, field* const* fields, unsigned n, int pos);
    // Raises empty_record_type_exception for no fields and record_type_with_duplicate_fields_exception for a
    // repeated name.
    void check() const;
    shared_ptr<type> clone() const override;
    shared_ptr<record_type> clone(field* const* fields, unsigned n) const;

    unsigned size() const { return m_fields.size(); }
    field* get_field(unsigned i) const { return m_fields[i]; }
    // The field of that name, null for none.
    field* find_field(ustring const& name) const;
    child_array<field> const& get_fields() const { return m_fields; }
    void set_fields(field* const* fields, unsigned n);

    static unsigned num_slots(ast_manager*, field* const*, unsigned n, int) { return n; }

private:
    child_array<field> m_fields; // sorted by name
};

// Sorts by name, in the order of the text.
void sort_fields(field** fields, unsigned n);

} // namespace vexor
