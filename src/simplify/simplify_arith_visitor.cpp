#include "simplify/simplify_arith_visitor.h"

#include "ast/node/ast_manager.h"
#include "base/exceptions.h"
#include "simplify/same_term.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

namespace {

numeral const& value_of(expr* e) { return static_cast<numeral_expr*>(e)->get_value(); }

bool all_numerals(application* a) {
    for (expr* arg : a->get_args())
        if (!is_a<numeral_expr>(arg)) return false;
    return true;
}

shared_ptr<expr> mk_bool(ast_manager* m, bool value) { return value ? m->mk_true() : m->mk_false(); }

} // namespace

shared_ptr<expr> simplify_arith_visitor::operator()(application* a, bool is_predicate) {
    shared_ptr_vector<expr> args;
    bool changed = false;
    for (expr* arg : a->get_args()) {
        shared_ptr<expr> image = m_owner->image_of(arg);
        changed |= image.get() != arg;
        args.push_back(image.get());
    }
    shared_ptr<application> image = a;
    if (changed) image = a->clone(args.data(), args.size());
    return is_predicate ? fold_predicate(image.get()) : fold_term(image.get());
}

shared_ptr<expr> simplify_arith_visitor::fold_term(application* a) {
    bool is_div = is_app_of<div_name_expr>(a);
    if (is_div && a->num_args() == 2 && is_a<numeral_expr>(a->get_arg(1)) &&
        value_of(a->get_arg(1)).is_zero())
        throw division_by_zero_exception();
    if (!all_numerals(a)) return a;
    numeral value = value_of(a->get_arg(0));
    if (is_app_of<sub_name_expr>(a) && a->num_args() == 1) value.neg();
    for (unsigned i = 1; i < a->num_args(); ++i) {
        numeral const& operand = value_of(a->get_arg(i));
        if (is_app_of<add_name_expr>(a))
            value += operand;
        else if (is_app_of<sub_name_expr>(a))
            value -= operand;
        else if (is_app_of<mul_name_expr>(a))
            value *= operand;
        else
            value /= operand;
    }
    return mk<numeral_expr>(a->get_manager(), value, a->get_pos());
}

shared_ptr<expr> simplify_arith_visitor::fold_predicate(application* a) {
    if (a->num_args() != 2) return a;
    ast_manager* m = a->get_manager();
    expr* x = a->get_arg(0);
    expr* y = a->get_arg(1);
    bool is_eq = is_app_of<eq_name_expr>(a);
    if (same_term(x, y)) return mk_bool(m, is_eq || is_app_of<le_name_expr>(a) || is_app_of<ge_name_expr>(a));
    if (!all_numerals(a)) return a;
    numeral const& v = value_of(x);
    numeral const& w = value_of(y);
    if (is_eq) return mk_bool(m, v == w);
    if (is_app_of<le_name_expr>(a)) return mk_bool(m, v <= w);
    if (is_app_of<ge_name_expr>(a)) return mk_bool(m, v >= w);
    if (is_app_of<lt_name_expr>(a)) return mk_bool(m, v < w);
    return mk_bool(m, v > w);
}

shared_ptr<expr> simplify_arith_visitor::create_eq(expr* a, expr* b) {
    ast_manager* m = a->get_manager();
    return fold_predicate(mk<application>(m->mk_name<eq_decl>(), a, b, -1).get());
}

} // namespace vexor
