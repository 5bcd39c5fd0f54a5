// Uses of declarations in expressions.
#pragma once

#include "ast/node/expr.h"

namespace vexor {

// A use of a variable or constant. It keeps its declaration alive and is counted by it.
class name_expr : public expr {
    VEXOR_EXPR_CLASS("name_expr");

public:
    name_expr(var_decl* d, int pos);
    ~name_expr() override;
    void accept(ast_visitor* v, application* a) override;
    bool is_name_expr() const override { return true; }
    bool is_fanout_one() const override;
    // A new use of the same declaration.
    virtual shared_ptr<name_expr> clone() const;
    shared_ptr<expr> clone_to_expr() const override;
    virtual void set_decl(var_decl* d);

    var_decl* get_decl() const { return m_decl.get(); }
    ustring get_name() const { return m_decl->get_name(); }

private:
    shared_ptr<var_decl> m_decl; // never null
};

// Base of the names of global declarations that no visitor renames: the built-in ones and those of data
// types.
class immutable_name_expr : public name_expr {
    VEXOR_EXPR_CLASS("immutable_name_expr");

public:
    using name_expr::name_expr;
    void accept(ast_visitor* v, application* a) override;
    // This.
    shared_ptr<name_expr> clone() const override;
    // Does nothing.
    void set_decl(var_decl* d) override;
};

class accessor_name_expr : public immutable_name_expr {
    VEXOR_EXPR_CLASS("accessor_name_expr");

public:
    using immutable_name_expr::immutable_name_expr;
    void accept(ast_visitor* v, application* a) override;
    accessor_decl* get_accessor() const;
};

class recognizer_name_expr : public immutable_name_expr {
    VEXOR_EXPR_CLASS("recognizer_name_expr");

public:
    using immutable_name_expr::immutable_name_expr;
    void accept(ast_visitor* v, application* a) override;
    recognizer_decl* get_recognizer() const;
};

class constructor_name_expr : public immutable_name_expr {
    VEXOR_EXPR_CLASS("constructor_name_expr");

public:
    using immutable_name_expr::immutable_name_expr;
    void accept(ast_visitor* v, application* a) override;
    constructor_decl* get_constructor() const;
};

// A use of an element of a scalar type.
class scalar_name_expr : public immutable_name_expr {
    VEXOR_EXPR_CLASS("scalar_name_expr");

public:
    using immutable_name_expr::immutable_name_expr;
    bool is_scalar() const override { return true; }
    scalar_element_decl* get_element() const;
};

class true_name_expr : public scalar_name_expr {
    VEXOR_EXPR_CLASS("true_name_expr");

public:
    using scalar_name_expr::scalar_name_expr;
};

class false_name_expr : public scalar_name_expr {
    VEXOR_EXPR_CLASS("false_name_expr");

public:
    using scalar_name_expr::scalar_name_expr;
};

// The names of the built-in operators.
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    class X##_name_expr : public immutable_name_expr {                                                       \
        VEXOR_EXPR_CLASS(#X);                                                                                \
                                                                                                             \
    public:                                                                                                  \
        using immutable_name_expr::immutable_name_expr;                                                      \
        static constexpr char const* m_op_name = TEXT;                                                       \
        void accept(ast_visitor* v, application* a) override;                                                \
        bool is_arith_op() const override { return op_family::FAMILY == op_family::arith; }                  \
        bool is_bv_operator() const override { return op_family::FAMILY == op_family::bitvector; }           \
    };
#include "ast/node/builtin_ops.def"

inline bool is_true(expr const* e) { return is_a<true_name_expr>(e); }
inline bool is_false(expr const* e) { return is_a<false_name_expr>(e); }

} // namespace vexor
