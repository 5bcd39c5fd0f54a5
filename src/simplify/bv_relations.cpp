// Comparisons of bit-vectors.
#include "ast/node/ast_manager.h"
#include "simplify/bv_rewriter.h"
#include "simplify/same_term.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

namespace {

enum class relation { lt, le, gt, ge };

bool holds(relation r, numeral const& a, numeral const& b) {
    switch (r) {
    case relation::lt:
        return a < b;
    case relation::le:
        return a <= b;
    case relation::gt:
        return a > b;
    case relation::ge:
        return a >= b;
    }
    VEXOR_UNREACHABLE();
}

bool get_relation(application* a, relation& r, bool& is_signed) {
    is_signed = is_app_of<sbv_lt_name_expr>(a) || is_app_of<sbv_le_name_expr>(a) ||
                is_app_of<sbv_gt_name_expr>(a) || is_app_of<sbv_ge_name_expr>(a);
    if (is_app_of<bv_lt_name_expr>(a) || is_app_of<sbv_lt_name_expr>(a))
        r = relation::lt;
    else if (is_app_of<bv_le_name_expr>(a) || is_app_of<sbv_le_name_expr>(a))
        r = relation::le;
    else if (is_app_of<bv_gt_name_expr>(a) || is_app_of<sbv_gt_name_expr>(a))
        r = relation::gt;
    else if (is_app_of<bv_ge_name_expr>(a) || is_app_of<sbv_ge_name_expr>(a))
        r = relation::ge;
    else
        return false;
    return true;
}

numeral value_of(expr* e, bool is_signed) {
    unsigned width = static_cast<bitvector_constant*>(e)->get_size();
    numeral value = bv_value(e);
    if (is_signed && value.test_bit(width - 1)) value -= numeral(1) << width;
    return value;
}

} // namespace

shared_ptr<expr> bv_rewriter::fold_relation(application* a) {
    relation r;
    bool is_signed;
    if (a->num_args() != 2 || !get_relation(a, r, is_signed)) return a;
    expr* x = a->get_arg(0);
    expr* y = a->get_arg(1);
    ast_manager* m = a->get_manager();
    bool value;
    if (same_term(x, y))
        value = r == relation::le || r == relation::ge;
    else if (is_bv_constant(x) && is_bv_constant(y))
        value = holds(r, value_of(x, is_signed), value_of(y, is_signed));
    else
        return a;
    return value ? m->mk_true() : m->mk_false();
}

} // namespace vexor
