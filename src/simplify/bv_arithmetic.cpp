// Sums and products of bit-vectors.
#include "ast/node/ast_manager.h"
#include "simplify/bv_flatten.h"

namespace vexor {

namespace {

bool is_sum(application* a, bool flag, bv_leaves& children) {
    bool is_sub = is_app_of<bv_sub_name_expr>(a);
    if (is_sub || is_app_of<bv_add_name_expr>(a)) {
        if (a->num_args() != 2) return false;
        children.push_back({a->get_arg(0), flag});
        children.push_back({a->get_arg(1), flag != is_sub});
        return true;
    }
    if (!is_app_of<bv_minus_name_expr>(a) || a->num_args() != 1) return false;
    children.push_back({a->get_arg(0), !flag});
    return true;
}

bool is_product(application* a, bool flag, bv_leaves& children) {
    if (!is_app_of<bv_mul_name_expr>(a) || a->num_args() != 2) return false;
    children.push_back({a->get_arg(0), flag});
    children.push_back({a->get_arg(1), flag});
    return true;
}

} // namespace

// Terms that are added stand in front, in order, then the constant, then the terms that are subtracted.
shared_ptr<expr> bv_rewriter::sum(application* a) {
    unsigned width = width_of(a->get_arg(0));
    bv_flattened flat(m_owner, a, is_sum);
    numeral constant;
    bv_term_counts counts;
    for (bv_leaf const& leaf : flat.get_leaves()) {
        if (is_bv_constant(leaf.m_term)) {
            if (leaf.m_flag)
                constant -= bv_value(leaf.m_term);
            else
                constant += bv_value(leaf.m_term);
        } else {
            counts[leaf.m_term] += leaf.m_flag ? -1 : 1;
        }
    }
    constant = mod_2k(constant, width);
    auto terms = counts.sorted();
    shared_ptr<expr> result;
    for (auto const& t : terms)
        for (long i = 0; i < t.m_count; ++i) result = mk_binary_app<bv_add_decl>(result.get(), t.m_term);
    if (!constant.is_zero())
        result = mk_binary_app<bv_add_decl>(result.get(), mk_constant(width, constant).get());
    for (auto const& t : terms)
        for (long i = t.m_count; i < 0; ++i) {
            if (result.get() != nullptr)
                result = mk_binary_app<bv_sub_decl>(result.get(), t.m_term);
            else
                result = mk<application>(a->get_manager()->mk_name<bv_minus_decl>(), t.m_term, -1);
        }
    return result.get() != nullptr ? result : mk_constant(width, 0);
}

shared_ptr<expr> bv_rewriter::product(application* a) {
    unsigned width = width_of(a->get_arg(0));
    bv_flattened flat(m_owner, a, is_product);
    numeral constant(1);
    bv_term_counts counts;
    for (bv_leaf const& leaf : flat.get_leaves()) {
        if (is_bv_constant(leaf.m_term))
            constant = mod_2k(constant * bv_value(leaf.m_term), width);
        else
            ++counts[leaf.m_term];
    }
    constant = mod_2k(constant, width);
    if (constant.is_zero()) return mk_constant(width, constant);
    shared_ptr<expr> result;
    if (!constant.is_one()) result = mk_constant(width, constant);
    for (auto const& t : counts.sorted())
        for (long i = 0; i < t.m_count; ++i) result = mk_binary_app<bv_mul_decl>(result.get(), t.m_term);
    return result.get() != nullptr ? result : mk_constant(width, constant);
}

} // namespace vexor
