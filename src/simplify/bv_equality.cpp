// Equality of bit-vectors.
#include "ast/node/ast_manager.h"
#include "base/deep_stack.h"
#include "simplify/bv_rewriter.h"
#include "simplify/same_term.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

namespace {

// The parts of a concatenation, cut from the most significant end.
class concat_parts {
public:
    explicit concat_parts(expr* e)
        : m_single(e)
        , m_is_concat(is_app_of<bv_concat_name_expr>(e)) {
        load();
    }

    bool at_end() const { return m_next == size(); }
    unsigned width() const { return m_rest; }
    // The next bits.
    shared_ptr<expr> take(bv_rewriter& rewriter, unsigned width) {
        VEXOR_ASSERT(width > 0 && width <= m_rest);
        shared_ptr<expr> taken = rewriter.mk_extract(m_rest - 1, m_rest - width, part(m_next));
        m_rest -= width;
        if (m_rest == 0) {
            ++m_next;
            load();
        }
        return taken;
    }

private:
    unsigned size() const { return m_is_concat ? to_app(m_single)->num_args() : 1; }
    expr* part(unsigned i) const { return m_is_concat ? to_app(m_single)->get_arg(i) : m_single; }
    void load() {
        if (!at_end()) m_rest = bv_rewriter::width_of(part(m_next));
    }

    expr* m_single;      // the concatenation, or the only part
    bool m_is_concat;    // which of both
    unsigned m_next = 0; // the part that is being cut
    unsigned m_rest = 0; // bits of it that are left, from the lowest up
};

template <class N>
bool is_pair_of(expr* a, expr* b) {
    return is_app_of<N>(a) && is_app_of<N>(b) && to_app(a)->num_args() == 2 && to_app(b)->num_args() == 2;
}

} // namespace

// (= (bv-add x y) (bv-add x z))  to  (= y z), for the second argument and for bv-sub as well.
bool bv_rewriter::cancel_shared_argument(expr*& a, expr*& b) {
    if (!is_pair_of<bv_add_name_expr>(a, b) && !is_pair_of<bv_sub_name_expr>(a, b)) return false;
    for (unsigned i = 0; i < 2; ++i) {
        if (!same_term(to_app(a)->get_arg(i), to_app(b)->get_arg(i))) continue;
        a = to_app(a)->get_arg(1 - i);
        b = to_app(b)->get_arg(1 - i);
        return true;
    }
    return false;
}

shared_ptr<expr> bv_rewriter::mk_eq(expr* a, expr* b) {
    check_depth();
    ast_manager* m = m_owner.get_manager();
    while (cancel_shared_argument(a, b))
        if (same_term(a, b)) return m->mk_true();
    if (is_bv_constant(a) && is_bv_constant(b))
        return bv_value(a) == bv_value(b) ? m->mk_true() : m->mk_false();
    bool has_parts = is_app_of<bv_concat_name_expr>(a) || is_app_of<bv_concat_name_expr>(b);
    if (has_parts) return mk_eq_of_parts(a, b);
    return mk<application>(m->mk_name<eq_decl>(), a, b, -1);
}

// The vectors are equal if all pairs of parts are; the longer part of a pair is cut.
shared_ptr<expr> bv_rewriter::mk_eq_of_parts(expr* a, expr* b) {
    concat_parts left(a);
    concat_parts right(b);
    simplify_or_visitor differs(m_owner);
    while (!left.at_end() && !differs.is_true()) {
        unsigned width = left.width() < right.width() ? left.width() : right.width();
        shared_ptr<expr> x = left.take(*this, width);
        shared_ptr<expr> y = right.take(*this, width);
        differs.add_image(m_owner.create_eq(x.get(), y.get()).get(), true);
    }
    return mk_not(differs.to_expr(m_owner.get_manager(), -1).get());
}

} // namespace vexor
