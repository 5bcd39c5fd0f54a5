// Operators that work bit by bit.
#include "ast/node/ast_manager.h"
#include "simplify/bv_flatten.h"

namespace vexor {

namespace {

template <class N>
bool is_binary(application* a, bool flag, bv_leaves& children) {
    if (!is_app_of<N>(a) || a->num_args() != 2) return false;
    children.push_back({a->get_arg(0), flag});
    children.push_back({a->get_arg(1), flag});
    return true;
}

bool is_complement(expr* e) { return is_app_of<bv_not_name_expr>(e) && to_app(e)->num_args() == 1; }

// The flag says that the leaf is complemented; only the number of complements in all matters.
bool is_xor(application* a, bool flag, bv_leaves& children) {
    if (is_complement(a)) {
        children.push_back({a->get_arg(0), !flag});
        return true;
    }
    if (!is_app_of<bv_xor_name_expr>(a) || a->num_args() != 2) return false;
    children.push_back({a->get_arg(0), flag});
    children.push_back({a->get_arg(1), false});
    return true;
}

} // namespace

shared_ptr<expr> bv_rewriter::mk_complement(expr* e) {
    if (is_bv_constant(e)) {
        unsigned width = static_cast<bitvector_constant*>(e)->get_size();
        return mk_constant(width, all_ones(width) - bv_value(e));
    }
    if (is_complement(e)) return to_app(e)->get_arg(0);
    return mk<application>(e->get_manager()->mk_name<bv_not_decl>(), e, e->get_pos());
}

shared_ptr<expr> bv_rewriter::complement(application* a) {
    shared_ptr<expr> arg = m_owner.image_of(a->get_arg(0));
    if (arg.get() == a->get_arg(0) && !is_bv_constant(arg.get()) && !is_complement(arg.get())) return a;
    return mk_complement(arg.get());
}

// A term and its complement give the absorbing constant, 0 for bv_and and all ones for bv_or; the other
// constant is left out.
shared_ptr<expr> bv_rewriter::conjunct(application* a, bool is_and) {
    unsigned width = width_of(a->get_arg(0));
    bv_flattened flat(m_owner, a, is_and ? is_binary<bv_and_name_expr> : is_binary<bv_or_name_expr>);
    numeral ones = all_ones(width);
    numeral neutral = is_and ? ones : numeral(0);
    numeral absorbing = is_and ? numeral(0) : ones;
    numeral constant = neutral;
    bv_term_counts counts;
    bv_term_counts complements;
    for (bv_leaf const& leaf : flat.get_leaves()) {
        expr* e = leaf.m_term;
        if (is_bv_constant(e)) {
            if (is_and)
                constant &= bv_value(e);
            else
                constant |= bv_value(e);
            continue;
        }
        bool negated = is_complement(e);
        expr* atom = negated ? to_app(e)->get_arg(0) : e;
        long& seen = complements[atom];
        seen |= negated ? 2 : 1;
        if (seen == 3) return mk_constant(width, absorbing);
        counts[e] = 1;
    }
    if (constant == absorbing) return mk_constant(width, absorbing);
    shared_ptr<expr> result;
    auto append = [&](expr* e) {
        result =
            is_and ? mk_binary_app<bv_and_decl>(result.get(), e) : mk_binary_app<bv_or_decl>(result.get(), e);
    };
    for (auto const& t : counts.sorted()) append(t.m_term);
    if (result.get() == nullptr || !(constant == neutral)) append(mk_constant(width, constant).get());
    return result;
}

shared_ptr<expr> bv_rewriter::exclusive_or(application* a) {
    unsigned width = width_of(a->get_arg(0));
    bv_flattened flat(m_owner, a, is_xor);
    numeral ones = all_ones(width);
    numeral constant;
    bv_term_counts counts;
    for (bv_leaf const& leaf : flat.get_leaves()) {
        if (leaf.m_flag) constant ^= ones;
        if (is_bv_constant(leaf.m_term))
            constant ^= bv_value(leaf.m_term);
        else
            counts[leaf.m_term] ^= 1;
    }
    shared_ptr<expr> result;
    for (auto const& t : counts.sorted()) result = mk_binary_app<bv_xor_decl>(result.get(), t.m_term);
    if (result.get() == nullptr) return mk_constant(width, constant);
    if (constant == ones) return mk_complement(result.get());
    if (constant.is_zero()) return result;
    return mk_binary_app<bv_xor_decl>(result.get(), mk_constant(width, constant).get());
}

} // namespace vexor
