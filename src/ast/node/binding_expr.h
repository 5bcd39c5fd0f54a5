// Expressions that bind variables.
#pragma once

#include "ast/node/child_array.h"
#include "ast/node/expr.h"

namespace vexor {

class binding_expr : public expr {
    VEXOR_EXPR_CLASS("binding_expr");

public:
    binding_expr(var_decl* binding, expr* e, int pos);
    // Raises binding_expr_without_decls_exception for no variables.
    binding_expr(var_decl* const* bindings, unsigned n, expr* e, int pos);
    shared_ptr<binding_expr> clone() const;
    shared_ptr<binding_expr> clone(var_decl* const* bindings, unsigned n) const;
    // Keeps the class.
    virtual shared_ptr<binding_expr> clone(var_decl* const* bindings, unsigned n, expr* e) const = 0;
    shared_ptr<expr> clone_to_expr() const override;

    unsigned num_bindings() const { return m_bindings.size(); }
    var_decl* get_binding(unsigned i) const { return m_bindings[i]; }
    child_array<var_decl> const& get_bindings() const { return m_bindings; }
    void set_bindings(var_decl* const* bindings, unsigned n);
    expr* get_expr() const { return m_expr.get(); }
    void set_expr(expr* e);

    static unsigned num_slots(var_decl*, expr*, int) { return 1; }
    static unsigned num_slots(var_decl* const*, unsigned n, expr*, int) { return n; }

private:
    shared_ptr<expr> m_expr;          // the body
    child_array<var_decl> m_bindings; // at least one
};

class lambda_expr : public binding_expr {
    VEXOR_EXPR_CLASS("lambda_expr");

public:
    using binding_expr::binding_expr;
    using binding_expr::clone;
    void accept(ast_visitor* v, application* a) override;
    bool is_lambda() const override { return true; }
    shared_ptr<binding_expr> clone(var_decl* const* bindings, unsigned n, expr* e) const override;
};

class quantified_expr : public binding_expr {
    VEXOR_EXPR_CLASS("quantified_expr");

public:
    using binding_expr::binding_expr;
    bool is_quantified_expr() const override { return true; }
};

class forall_expr : public quantified_expr {
    VEXOR_EXPR_CLASS("forall_expr");

public:
    using binding_expr::clone;
    using quantified_expr::quantified_expr;
    shared_ptr<binding_expr> clone(var_decl* const* bindings, unsigned n, expr* e) const override;
};

class exists_expr : public quantified_expr {
    VEXOR_EXPR_CLASS("exists_expr");

public:
    using binding_expr::clone;
    using quantified_expr::quantified_expr;
    shared_ptr<binding_expr> clone(var_decl* const* bindings, unsigned n, expr* e) const override;
};

// Auxiliary variables, existential and private to the body.
class fresh_vars_expr : public binding_expr {
    VEXOR_EXPR_CLASS("fresh_vars_expr");

public:
    using binding_expr::binding_expr;
    using binding_expr::clone;
    shared_ptr<binding_expr> clone(var_decl* const* bindings, unsigned n, expr* e) const override;
};

// Local definitions; each sees those before it. There may be none.
class let_expr : public expr {
    VEXOR_EXPR_CLASS("let_expr");

public:
    let_expr(let_decl* const* bindings, unsigned n, expr* e, int pos);
    shared_ptr<let_expr> clone() const;
    shared_ptr<let_expr> clone(let_decl* const* bindings, unsigned n) const;
    shared_ptr<let_expr> clone(let_decl* const* bindings, unsigned n, expr* e) const;
    shared_ptr<expr> clone_to_expr() const override;

    unsigned num_bindings() const { return m_bindings.size(); }
    let_decl* get_binding(unsigned i) const { return m_bindings[i]; }
    child_array<let_decl> const& get_bindings() const { return m_bindings; }
    void set_bindings(let_decl* const* bindings, unsigned n);
    expr* get_expr() const { return m_expr.get(); }
    void set_expr(expr* e);

    static unsigned num_slots(let_decl* const*, unsigned n, expr*, int) { return n; }

private:
    shared_ptr<expr> m_expr;          // the body
    child_array<let_decl> m_bindings; // in the order of the source
};

// The value of an expression together with side conditions that hold with it.
class local_context_expr : public expr {
    VEXOR_EXPR_CLASS("local_context_expr");

public:
    local_context_expr(expr* e, expr* const* context, unsigned n, int pos);
    shared_ptr<local_context_expr> clone() const;
    shared_ptr<local_context_expr> clone(expr* e, expr* const* context, unsigned n) const;
    shared_ptr<expr> clone_to_expr() const override;

    expr* get_expr() const { return m_expr.get(); }
    void set_expr(expr* e);
    unsigned context_size() const { return m_context.size(); }
    expr* get_context(unsigned i) const { return m_context[i]; }
    child_array<expr> const& get_context() const { return m_context; }
    void set_context(expr* const* context, unsigned n);

    static unsigned num_slots(expr*, expr* const*, unsigned n, int) { return n; }

private:
    shared_ptr<expr> m_expr;     // the value
    child_array<expr> m_context; // the side conditions
};

} // namespace vexor
