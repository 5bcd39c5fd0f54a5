// The base of all expressions, and the entry of a record literal.
#pragma once

#include "ast/node/type.h"

namespace vexor {

// VEXOR_AST_CLASS for expressions, which have a second accept.
#define VEXOR_EXPR_CLASS(TEXT)                                                                               \
    VEXOR_AST_CLASS(TEXT);                                                                                   \
    using expr::accept

class expr : public ast {
    VEXOR_AST_CLASS("expr");

public:
    bool is_expr() const override { return true; }
    void reset_cache() override;
    // Dispatch of a function position: a is an application, and this is its function.
    virtual void accept(ast_visitor* v, application* a);
    // Questions that inner loops ask instead of comparing classes.
    virtual bool is_scalar() const { return false; }
    virtual bool is_lambda() const { return false; }
    virtual bool is_function_update() const { return false; }
    virtual bool is_application() const { return false; }
    virtual bool is_arith_op() const { return false; }
    virtual bool is_name_expr() const { return false; }
    virtual bool is_quantified_expr() const { return false; }
    virtual bool is_bv_operator() const { return false; }
    // A node of the same class with the same children; this for a node that is never copied.
    virtual shared_ptr<expr> clone_to_expr() const = 0;

    // The type, computed on first need.
    type* get_type();
    // The type as far as it was computed, else null.
    type* get_cached_type() const { return m_type.get(); }
    void set_type(type* t);

    bool is_boolean();
    bool is_int();
    bool is_numeral();
    bool is_bitvector();

protected:
    explicit expr(int pos)
        : ast(pos) {}

private:
    shared_ptr<type> m_type; // cache of get_type, null until computed
};

// One entry of a record literal: a field name and its value.
class record_entry : public ast {
    VEXOR_AST_CLASS("record_entry");

public:
    record_entry(identifier* id, expr* e, int pos);
    virtual shared_ptr<record_entry> clone() const;

    ustring const& get_name() const { return m_id_node->get_name(); }
    identifier* get_id_node() const { return m_id_node.get(); }
    expr* get_expr() const { return m_expr.get(); }
    void set_id(identifier* id);
    void set_expr(expr* e);

private:
    shared_ptr<identifier> m_id_node; // name of the field
    shared_ptr<expr> m_expr;          // its value
};

} // namespace vexor
