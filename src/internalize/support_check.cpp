#include "internalize/support_check.h"

#include "ast/node/nodes.h"
#include "ast/node/unsupported.h"
#include "ast/types/type_checker_exception.h"
#include "base/hash_table.h"
#include "base/vector.h"

namespace vexor {

namespace {

class support_checker {
public:
    void run(expr* e) {
        push(e);
        while (!m_pending.empty()) {
            expr* next = m_pending.back();
            m_pending.pop_back();
            look_at(next);
        }
    }

private:
    // A node with one parent is met once anyway.
    void push(expr* e) {
        if (!e->is_fanout_one() && !m_seen.insert(e)) return;
        m_pending.push_back(e);
    }

    void look_at(expr* e) {
        if (e->is_application()) {
            look_at_application(to_app(e));
        } else if (e->is_name_expr()) {
            look_at_name(static_cast<name_expr*>(e));
        } else if (is_a<fresh_vars_expr>(e)) {
            push(static_cast<fresh_vars_expr*>(e)->get_expr());
        } else if (is_a<local_context_expr>(e)) {
            auto* local = static_cast<local_context_expr*>(e);
            push(local->get_expr());
            for (expr* condition : local->get_context()) push(condition);
        } else if (e->is_quantified_expr()) {
            refuse("quantifiers", e);
        } else {
            refuse("terms that are not Boolean", e);
        }
    }

    // Everything that is looked at must be Boolean. Without the type checker nothing else has asked.
    [[noreturn]] static void refuse(char const* text, expr* e) {
        if (!e->is_boolean()) throw_type_error(e, "argument is not boolean.");
        throw_not_implemented(text, e);
    }

    static void look_at_name(name_expr* n) {
        if (is_true(n) || is_false(n)) return;
        if (n->is_scalar()) refuse("terms that are not Boolean", n);
        if (is_builtin_name(n)) throw_not_implemented("operator cannot be used as a constant", n);
        var_decl* const d = n->get_decl();
        if (d->is_const_decl() && static_cast<const_decl*>(d)->has_definition())
            throw_not_implemented("recursive functions", n);
        if (!d->is_boolean()) refuse("terms that are not Boolean", n);
    }

    static bool is_builtin_name(name_expr* n) { return n->get_decl()->is_builtin(); }

    void look_at_application(application* a) {
        expr* const fun = a->get_fun();
        check_number_of_args(fun, a);
        if (is_a<not_name_expr>(fun) || is_a<or_name_expr>(fun)) {
            push_args(a);
        } else if (is_a<eq_name_expr>(fun)) {
            if (!a->get_arg(0)->is_boolean() || !a->get_arg(1)->is_boolean()) refuse_equation(a);
            push_args(a);
        } else if (is_a<ite_name_expr>(fun)) {
            if (!a->is_boolean()) refuse("terms that are not Boolean", a);
            push_args(a);
        } else if (fun->is_arith_op() || is_a<int_pred_name_expr>(fun) || is_a<real_pred_name_expr>(fun)) {
            refuse("arithmetic", a);
        } else if (fun->is_bv_operator()) {
            refuse("bit-vectors", a);
        } else if (fun->is_name_expr()) {
            look_at_function(static_cast<name_expr*>(fun), a);
        } else {
            refuse("functions as values", a);
        }
    }

    // Without the type checker nothing else has counted them.
    static void check_number_of_args(expr* fun, application* a) {
        bool const is_unary = is_a<not_name_expr>(fun);
        bool const is_binary = is_a<eq_name_expr>(fun) || is_a<diseq_name_expr>(fun);
        bool const is_wrong = is_unary                   ? a->num_args() != 1
                              : is_binary                ? a->num_args() != 2
                              : is_a<ite_name_expr>(fun) ? a->num_args() != 3
                                                         : fun->is_lambda();
        if (is_wrong) throw_type_error(a, "wrong number of arguments");
    }

    // At least one side is not Boolean.
    [[noreturn]] static void refuse_equation(application* a) {
        expr* const side = a->get_arg(0);
        if (side->is_boolean() || a->get_arg(1)->is_boolean())
            throw_type_error(a, "incompatible types in equality.");
        if (side->is_numeral()) throw_not_implemented("arithmetic", a);
        if (side->is_bitvector()) throw_not_implemented("bit-vectors", a);
        throw_not_implemented("terms that are not Boolean", a);
    }

    [[noreturn]] static void look_at_function(name_expr* fun, application* a) {
        var_decl* const d = fun->get_decl();
        if (d->is_const_decl() && static_cast<const_decl*>(d)->has_definition())
            throw_not_implemented("recursive functions", a);
        refuse(is_builtin_name(fun) ? "datatypes" : "uninterpreted functions", a);
    }

    void push_args(application* a) {
        for (expr* arg : a->get_args()) push(arg);
    }

    ptr_vector<expr> m_pending;                  // still to be looked at
    hash_set<expr*, fast_ptr_hash<expr>> m_seen; // shared nodes that were met
};

} // namespace

void check_support(expr* e) { support_checker().run(e); }

} // namespace vexor
