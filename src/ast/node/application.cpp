#include "ast/node/application.h"

#include "ast/node/ast_exceptions.h"
#include "ast/visit/known_free_vars.h"

namespace vexor {

namespace {

// Arguments of a constructor as an array that lives as long as the call.
template <unsigned N>
struct arg_list {
    expr* m_args[N];
};

} // namespace

application::application(expr* fun, expr* arg, int pos)
    : application(fun, &arg, 1, pos) {}

application::application(expr* fun, expr* arg1, expr* arg2, int pos)
    : application(fun, arg_list<2>{{arg1, arg2}}.m_args, 2, pos) {}

application::application(expr* fun, expr* arg1, expr* arg2, expr* arg3, int pos)
    : application(fun, arg_list<3>{{arg1, arg2, arg3}}.m_args, 3, pos) {}

application::application(expr* fun, expr* const* args, unsigned n, int pos)
    : expr(pos)
    , m_fun(fun)
    , m_args(sizeof(application), args, n) {
    if (n == 0) throw application_without_args_exception(get_position());
    known_free_vars known;
    known.add(fun);
    known.add_all(m_args);
    set_free_vars_state(known.get_state());
}

shared_ptr<application> application::clone() const { return clone(m_args.data(), m_args.size()); }

shared_ptr<application> application::clone(expr* const* args, unsigned n) const {
    return clone(get_fun(), args, n);
}

shared_ptr<application> application::clone(expr* fun, expr* const* args, unsigned n) const {
    return mk<application>(fun, args, n, get_pos());
}

shared_ptr<expr> application::clone_to_expr() const { return clone(); }

void application::set_fun(expr* fun) {
    m_fun = fun;
    reset_cache();
}

void application::set_args(expr* const* args, unsigned n) {
    m_args.assign(args, n);
    reset_cache();
}

} // namespace vexor
