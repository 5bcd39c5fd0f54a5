// Applications of functions and operators.
#pragma once

#include "ast/node/child_array.h"
#include "ast/node/name_expr.h"

namespace vexor {

class application : public expr {
    VEXOR_EXPR_CLASS("application_expr");

public:
    application(expr* fun, expr* arg, int pos);
    application(expr* fun, expr* arg1, expr* arg2, int pos);
    application(expr* fun, expr* arg1, expr* arg2, expr* arg3, int pos);
    // Raises application_without_args_exception for no arguments.
    application(expr* fun, expr* const* args, unsigned n, int pos);
    void accept(ast_visitor* v, application* a) override;
    bool is_application() const override { return true; }
    virtual shared_ptr<application> clone() const;
    virtual shared_ptr<application> clone(expr* const* args, unsigned n) const;
    shared_ptr<application> clone(expr* fun, expr* const* args, unsigned n) const;
    shared_ptr<expr> clone_to_expr() const override;

    expr* get_fun() const { return m_fun.get(); }
    void set_fun(expr* fun);
    unsigned num_args() const { return m_args.size(); }
    expr* get_arg(unsigned i) const { return m_args[i]; }
    child_array<expr> const& get_args() const { return m_args; }
    void set_args(expr* const* args, unsigned n);

    static unsigned num_slots(expr*, expr*, int) { return 1; }
    static unsigned num_slots(expr*, expr*, expr*, int) { return 2; }
    static unsigned num_slots(expr*, expr*, expr*, expr*, int) { return 3; }
    static unsigned num_slots(expr*, expr* const*, unsigned n, int) { return n; }

private:
    shared_ptr<expr> m_fun;   // the function or operator
    child_array<expr> m_args; // at least one
};

// Is e an application of the operator class T, for example not_name_expr?
template <class T>
bool is_app_of(expr const* e) {
    return e != nullptr && e->is_application() && is_a<T>(static_cast<application const*>(e)->get_fun());
}

inline application* to_app(expr* e) {
    VEXOR_ASSERT(e->is_application());
    return static_cast<application*>(e);
}

} // namespace vexor
