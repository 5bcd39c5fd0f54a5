// Declarations: what a name stands for. Uses of a declaration are nodes of their own (name_expr, type_name).
#pragma once

#include "ast/node/ast.h"

namespace vexor {

class decl : public ast {
    VEXOR_AST_CLASS("decl");

public:
    bool is_decl() const override { return true; }
    virtual bool is_builtin() const { return false; }
    virtual bool is_accessor_decl() const { return false; }
    virtual bool is_constructor_decl() const { return false; }
    virtual bool is_type_decl() const { return false; }
    // The name; the empty string for an anonymous declaration.
    virtual ustring get_name() const;

    // Null for an anonymous declaration.
    identifier* get_id_node() const { return m_id_node.get(); }
    void set_id(identifier* id);

protected:
    decl(identifier* id, int pos);

private:
    shared_ptr<identifier> m_id_node; // see get_id_node
};

// A variable: bound by a binder, a parameter of a function type, a component of a tuple type.
class var_decl : public decl {
    VEXOR_AST_CLASS("var_decl");

public:
    var_decl(identifier* id, type* t, int pos);
    ~var_decl() override;

    bool is_anonymous() const { return get_id_node() == nullptr && !is_fresh_var_decl(); }
    virtual bool is_fresh_var_decl() const { return false; }
    virtual bool is_const_decl() const { return false; }
    virtual bool is_let_decl() const { return false; }
    // Is the variable bound by a binder? Only global constants are not.
    virtual bool is_local() const { return true; }
    // A use of the declaration, of the class that fits it.
    virtual shared_ptr<name_expr> create_name_expr(int pos);
    virtual shared_ptr<var_decl> clone() const;

    type* get_type() const { return m_type.get(); }
    virtual void set_type(type* t);
    bool is_boolean() const;
    bool is_int() const;
    bool is_numeral() const;
    // Is the name a generated one?
    bool is_aux() const;

    // The number of name_expr nodes that refer to the declaration.
    unsigned get_num_name_exprs() const { return m_num_name_exprs; }
    void inc_num_name_exprs() { ++m_num_name_exprs; }
    void dec_num_name_exprs();

private:
    shared_ptr<type> m_type;   // null for a let variable whose type the source does not give
    unsigned m_num_name_exprs; // see get_num_name_exprs
};

// A generated variable; its name is "aux!" followed by its number.
class fresh_var_decl : public var_decl {
    VEXOR_AST_CLASS("fresh_var_decl");

public:
    fresh_var_decl(type* t, int pos);
    bool is_fresh_var_decl() const override { return true; }
    ustring get_name() const override;
    shared_ptr<var_decl> clone() const override;
};

// A field of a record type.
class field : public var_decl {
    VEXOR_AST_CLASS("field");

public:
    field(identifier* id, type* t, int pos);
    shared_ptr<var_decl> clone() const override;
};

// A variable of a let, equal to its definition.
class let_decl : public var_decl {
    VEXOR_AST_CLASS("let_decl");

public:
    let_decl(identifier* id, type* t, expr* definition, int pos);
    ~let_decl() override;
    bool is_let_decl() const override { return true; }
    shared_ptr<var_decl> clone() const override;

    expr* get_definition() const { return m_definition.get(); }
    void set_definition(expr* e);

    // The type that the source gives, null for none.
    type* get_declared_type() const { return m_is_type_inferred ? nullptr : get_type(); }
    // Gives a variable without type that of its definition.
    void infer_type(type* t);
    void set_type(type* t) override;

private:
    bool m_is_type_inferred = false; // is the type not the source's
    shared_ptr<expr> m_definition;   // what the variable stands for
};

// A global constant or function, defined or uninterpreted.
class const_decl : public var_decl {
    VEXOR_AST_CLASS("const_decl");

public:
    const_decl(identifier* id, type* t, int pos);
    const_decl(identifier* id, type* t, expr* definition, int pos);
    ~const_decl() override;
    bool is_const_decl() const override { return true; }
    bool is_local() const override { return false; }
    // A global declaration is never copied: this.
    shared_ptr<var_decl> clone() const override;

    bool has_definition() const { return m_definition.get() != nullptr; }
    // The definition as it stands, null for an uninterpreted constant.
    expr* get_raw_definition() const { return m_definition.get(); }
    // The definition for a use of the name, null for an uninterpreted constant. One with binders is a copy
    // with variables of its own: substitution relies on two uses never binding the same variable.
    shared_ptr<expr> get_definition();
    void set_definition(expr* e);
    // Does the definition mention the declaration, itself or through other definitions?
    bool is_recursive();
    // For find_recursive_definitions.
    bool knows_recursion() const { return m_recursive != not_known; }
    void settle_recursion(bool recursive) { m_recursive = recursive ? yes : no; }

private:
    enum : unsigned char { not_known = 0, yes = 1, no = 3 };

    unsigned char m_recursive = not_known; // cache of is_recursive
    unsigned char m_binders = not_known;   // cache: does the definition have a binder
    shared_ptr<expr> m_definition;         // null for an uninterpreted constant
};

// A named type.
class type_decl : public decl {
    VEXOR_AST_CLASS("type_decl");

public:
    type_decl(identifier* id, type* definition, int pos);
    ~type_decl() override;
    bool is_type_decl() const override { return true; }
    // A use of the declaration.
    virtual shared_ptr<type_name> create_type_name(int pos);

    // Null while being defined and for an uninterpreted type.
    type* get_definition() const { return m_definition.get(); }
    void set_definition(type* t);

private:
    shared_ptr<type> m_definition; // see get_definition
};

} // namespace vexor
