// Functions, tuples and records with one place changed.
#pragma once

#include "ast/node/child_array.h"
#include "ast/node/expr.h"

namespace vexor {

class update_expr : public expr {
    VEXOR_EXPR_CLASS("update_expr");

public:
    expr* get_target() const { return m_target.get(); }
    expr* get_new_value() const { return m_new_value.get(); }
    void set_target(expr* e);
    void set_new_value(expr* e);

protected:
    update_expr(expr* target, expr* new_value, int pos);

private:
    shared_ptr<expr> m_target;    // what is changed
    shared_ptr<expr> m_new_value; // the value at the changed place
};

class function_update_expr : public update_expr {
    VEXOR_EXPR_CLASS("function_update_expr");

public:
    // Raises function_update_without_args_exception for no arguments.
    function_update_expr(expr* target, expr* const* args, unsigned n, expr* new_value, int pos);
    void accept(ast_visitor* v, application* a) override;
    bool is_function_update() const override { return true; }
    shared_ptr<function_update_expr> clone() const;
    shared_ptr<function_update_expr> clone(expr* const* args, unsigned n) const;
    shared_ptr<function_update_expr> clone(expr* target, expr* const* args, unsigned n,
                                           expr* new_value) const;
    shared_ptr<expr> clone_to_expr() const override;

    unsigned num_args() const { return m_args.size(); }
    expr* get_arg(unsigned i) const { return m_args[i]; }
    child_array<expr> const& get_args() const { return m_args; }
    void set_args(expr* const* args, unsigned n);

    static unsigned num_slots(expr*, expr* const*, unsigned n, expr*, int) { return n; }

private:
    child_array<expr> m_args; // the position, at least one
};

class tuple_update_expr : public update_expr {
    VEXOR_EXPR_CLASS("tuple_update_expr");

public:
    tuple_update_expr(expr* target, int idx, expr* new_value, int pos);
    shared_ptr<tuple_update_expr> clone() const;
    shared_ptr<expr> clone_to_expr() const override;

    int get_idx() const { return m_idx; }
    void set_idx(int idx);

private:
    int m_idx; // place of the component, unchecked
};

class record_update_expr : public update_expr {
    VEXOR_EXPR_CLASS("record_update_expr");

public:
    record_update_expr(expr* target, identifier* id, expr* new_value, int pos);
    shared_ptr<record_update_expr> clone() const;
    shared_ptr<expr> clone_to_expr() const override;

    ustring const& get_name() const { return m_id_node->get_name(); }
    identifier* get_id_node() const { return m_id_node.get(); }
    void set_id(identifier* id);

private:
    shared_ptr<identifier> m_id_node; // name of the field
};

} // namespace vexor
