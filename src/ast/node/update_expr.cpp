#include "ast/node/update_expr.h"

#include "ast/node/ast_exceptions.h"

namespace vexor {

update_expr::update_expr(expr* target, expr* new_value, int pos)
    : expr(pos)
    , m_target(target)
    , m_new_value(new_value) {}

void update_expr::set_target(expr* e) {
    m_target = e;
    reset_cache();
}

void update_expr::set_new_value(expr* e) {
    m_new_value = e;
    reset_cache();
}

function_update_expr::function_update_expr(expr* target, expr* const* args, unsigned n, expr* new_value,
                                           int pos)
    : update_expr(target, new_value, pos)
    , m_args(sizeof(function_update_expr), args, n) {
    if (n == 0) throw function_update_without_args_exception(get_position());
}

shared_ptr<function_update_expr> function_update_expr::clone() const {
    return clone(m_args.data(), m_args.size());
}

shared_ptr<function_update_expr> function_update_expr::clone(expr* const* args, unsigned n) const {
    return clone(get_target(), args, n, get_new_value());
}

shared_ptr<function_update_expr> function_update_expr::clone(expr* target, expr* const* args, unsigned n,
                                                             expr* new_value) const {
    return mk<function_update_expr>(target, args, n, new_value, get_pos());
}

shared_ptr<expr> function_update_expr::clone_to_expr() const { return clone(); }

void function_update_expr::set_args(expr* const* args, unsigned n) {
    m_args.assign(args, n);
    reset_cache();
}

tuple_update_expr::tuple_update_expr(expr* target, int idx, expr* new_value, int pos)
    : update_expr(target, new_value, pos)
    , m_idx(idx) {}

shared_ptr<tuple_update_expr> tuple_update_expr::clone() const {
    return mk<tuple_update_expr>(get_target(), get_idx(), get_new_value(), get_pos());
}

shared_ptr<expr> tuple_update_expr::clone_to_expr() const { return clone(); }

void tuple_update_expr::set_idx(int idx) {
    m_idx = idx;
    reset_cache();
}

record_update_expr::record_update_expr(expr* target, identifier* id, expr* new_value, int pos)
    : update_expr(target, new_value, pos)
    , m_id_node(id) {}

shared_ptr<record_update_expr> record_update_expr::clone() const {
    return mk<record_update_expr>(get_target(), get_id_node(), get_new_value(), get_pos());
}

shared_ptr<expr> record_update_expr::clone_to_expr() const { return clone(); }

void record_update_expr::set_id(identifier* id) {
    m_id_node = id;
    reset_cache();
}

} // namespace vexor
