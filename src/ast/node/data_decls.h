// Declarations that scalar types and datatypes bring with them. They point back to their type without a
// reference: the type holds them, and the manager holds the type as long as their names are known.
#pragma once

#include "ast/node/child_array.h"
#include "ast/node/decl.h"

namespace vexor {

// An element of a scalar type.
class scalar_element_decl : public const_decl {
    VEXOR_AST_CLASS("scalar_element_decl");

public:
    scalar_element_decl(identifier* id, type_name* name, scalar_type* owner, int index, int pos);
    shared_ptr<name_expr> create_name_expr(int pos) override;

    scalar_type* get_scalar_type() const { return m_scalar_type; }
    // Index of the element in its type.
    int get_index() const { return m_index; }
    // The type is going away before its elements.
    void detach() { m_scalar_type = nullptr; }

private:
    scalar_type* m_scalar_type; // holds this declaration; null once it is gone
    int m_index;                // see get_index
};

class true_decl : public scalar_element_decl {
    VEXOR_AST_CLASS("true_decl");

public:
    using scalar_element_decl::scalar_element_decl;
    bool is_builtin() const override { return true; }
    shared_ptr<name_expr> create_name_expr(int pos) override;
};

class false_decl : public scalar_element_decl {
    VEXOR_AST_CLASS("false_decl");

public:
    using scalar_element_decl::scalar_element_decl;
    bool is_builtin() const override { return true; }
    shared_ptr<name_expr> create_name_expr(int pos) override;
};

// A field of a constructor: a function from the values of that constructor.
class accessor_decl : public const_decl {
    VEXOR_AST_CLASS("accessor_decl");

public:
    // t is a function_type.
    accessor_decl(identifier* id, type* t, int pos);
    bool is_accessor_decl() const override { return true; }
    shared_ptr<name_expr> create_name_expr(int pos) override;

    // The range of the function type.
    type* get_result_type() const;
    // Valid after setup.
    constructor_decl* get_constructor() const { return m_constructor; }
    datatype* get_datatype() const;
    // Place among the accessors of the constructor.
    int get_index() const { return m_index; }
    void setup(constructor_decl* c, int index);
    void detach() { m_constructor = nullptr; }

private:
    constructor_decl* m_constructor =
        nullptr;      // holds this declaration; null before setup and once it is gone
    int m_index = -1; // see get_index
};

// The test whether a value was made by a constructor.
class recognizer_decl : public const_decl {
    VEXOR_AST_CLASS("recognizer_decl");

public:
    // t is a function_type from the datatype to bool.
    recognizer_decl(identifier* id, type* t, int pos);
    // The recognizer of the constructor with the given name: its name has "?" appended.
    static shared_ptr<recognizer_decl> create_recognizer_decl(identifier* constructor, type* datatype,
                                                              int pos);
    shared_ptr<name_expr> create_name_expr(int pos) override;

    // Valid after setup.
    constructor_decl* get_constructor() const { return m_constructor; }
    datatype* get_datatype() const;
    void setup(constructor_decl* c);
    void detach() { m_constructor = nullptr; }

private:
    constructor_decl* m_constructor =
        nullptr; // holds this declaration; null before setup and once it is gone
};

class constructor_decl : public const_decl {
    VEXOR_AST_CLASS("constructor_decl");

public:
    // With arguments: the type is the function type from the accessors' result types to t.
    constructor_decl(identifier* id, accessor_decl* const* accessors, unsigned n, type* t, recognizer_decl* r,
                     int pos);
    // Without arguments: a constant of type t.
    constructor_decl(identifier* id, type* t, recognizer_decl* r, int pos);
    ~constructor_decl() override;
    bool is_constructor_decl() const override { return true; }
    shared_ptr<name_expr> create_name_expr(int pos) override;

    unsigned num_accessors() const { return m_accessors.size(); }
    accessor_decl* get_accessor(unsigned i) const { return m_accessors[i]; }
    recognizer_decl* get_recognizer() const { return m_recognizer.get(); }
    // Does an accessor's type mention the type being defined? Fixed at construction.
    bool is_recursive_constructor() const { return m_mentions_datatype; }
    // Valid after setup.
    datatype* get_datatype() const { return m_datatype; }
    // Place among the constructors of the datatype.
    int get_index() const { return m_index; }

    // Stores the owner, enters this declaration, its recognizer and its accessors into the manager's table of
    // constants, and tells the latter two about this one.
    void setup(datatype* owner, int index);
    void detach() { m_datatype = nullptr; }

    static unsigned num_slots(identifier*, accessor_decl* const*, unsigned n, type*, recognizer_decl*, int) {
        return n;
    }
    static unsigned num_slots(identifier*, type*, recognizer_decl*, int) { return 0; }

private:
    bool m_mentions_datatype = false;         // see is_recursive_constructor
    int m_index = -1;                         // see get_index
    datatype* m_datatype = nullptr;           // holds this declaration; null before setup and once it is gone
    shared_ptr<recognizer_decl> m_recognizer; // see get_recognizer
    child_array<accessor_decl> m_accessors;   // one for each argument
};

} // namespace vexor
