// Types and the names of types.
#pragma once

#include "ast/node/decl.h"

namespace vexor {

class type : public ast {
    VEXOR_AST_CLASS("type");

public:
    bool is_type() const override { return true; }
    virtual bool is_function_type() const { return false; }
    // A new node of the same class with the same children.
    virtual shared_ptr<type> clone() const = 0;
    virtual type_name* as_type_name() { return nullptr; }
    // Is a name for this type a type of its own?
    virtual bool is_nominal() const { return false; }
    // The next type on the walk of cast_type, null at its end.
    virtual type* cast_step() { return nullptr; }

protected:
    explicit type(int pos)
        : ast(pos) {}
};

// A use of a named type. Scalar types, datatypes and undefined types stand for themselves, which makes them
// nominal; any other name is its definition.
class type_name : public type {
    VEXOR_AST_CLASS("type_name");

public:
    type_name(type_decl* d, int pos);
    ~type_name() override;
    ast* eq_norm() override;
    ast* compatible_norm() override;
    shared_ptr<type> clone() const override;
    type_name* as_type_name() override { return this; }
    type* cast_step() override { return get_definition(); }

    type_decl* get_decl() const { return m_decl.get(); }
    void set_decl(type_decl* d);
    // The definition of the declaration, null for none.
    type* get_definition() const { return m_decl->get_definition(); }

private:
    shared_ptr<type_decl> m_decl; // never null
};

// The name of a type that the manager predefines.
class builtin_type_name : public type_name {
    VEXOR_AST_CLASS("builtin_type_name");

public:
    using type_name::type_name;
};

#define VEXOR_BUILTIN_TYPE(X)                                                                                \
    class X##_type_name : public builtin_type_name {                                                         \
        VEXOR_AST_CLASS(#X "_type_name");                                                                    \
                                                                                                             \
    public:                                                                                                  \
        using builtin_type_name::builtin_type_name;                                                          \
        shared_ptr<type> clone() const override;                                                             \
    };
#include "ast/node/builtin_types.def"

// What compatible_norm of a name or a subtype gives.
ast* compatible_representative(type* t);

// Walks from t to the type of the given class: a type_name leads to its definition, a subtype to the type of
// its variable. Null when the walk ends elsewhere.
type* cast_type(type* t, char const* cls_name);
template <class T>
T* cast_type(type* t) {
    return static_cast<T*>(cast_type(t, T::m_cls_name));
}

} // namespace vexor
