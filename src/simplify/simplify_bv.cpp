// Where bit-vectors come into the simplifier. What is malformed keeps its operator.
#include "ast/types/op_rules.h"
#include "simplify/bv_rewriter.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

namespace {

// The constant number behind a shift or an extension.
bool get_amount(application* a, unsigned& amount) {
    if (a->num_args() != 2 || !is_a<numeral_expr>(a->get_arg(1))) return false;
    numeral const& value = static_cast<numeral_expr*>(a->get_arg(1))->get_value();
    if (!value.is_int() || value.is_neg() || value > numeral(max_bitvector_size)) return false;
    amount = value.get_unsigned();
    return true;
}

} // namespace

void simplify_visitor::keep_if_same(application* a, shared_ptr<expr> const& result) {
    m_result = same_term(result.get(), a) ? a : result.get();
}

application* simplify_visitor::image_app(application* a) {
    process_app(a);
    return to_app(static_cast<expr*>(m_result.get()));
}

// Values are taken modulo 2 to the width.
void simplify_visitor::visit(bitvector_constant* n) {
    numeral value = mod_2k(n->get_value(), n->get_size());
    if (value == n->get_value())
        keep(n);
    else
        m_result = mk<bitvector_constant>(n->get_manager(), n->get_size(), value, n->get_pos());
}

void simplify_visitor::visit(bv_add_name_expr*, application* a) { simplify_bv_sum(a, 2); }
void simplify_visitor::visit(bv_sub_name_expr*, application* a) { simplify_bv_sum(a, 2); }
void simplify_visitor::visit(bv_minus_name_expr*, application* a) { simplify_bv_sum(a, 1); }

void simplify_visitor::simplify_bv_sum(application* a, unsigned num_args) {
    if (!bv_rewriter::is_well_formed(a, num_args)) return process_app(a);
    keep_if_same(a, bv_rewriter(*this).sum(a));
}

void simplify_visitor::visit(bv_mul_name_expr*, application* a) {
    if (!bv_rewriter::is_well_formed(a, 2)) return process_app(a);
    keep_if_same(a, bv_rewriter(*this).product(a));
}

void simplify_visitor::visit(bv_and_name_expr*, application* a) {
    if (!bv_rewriter::is_well_formed(a, 2)) return process_app(a);
    keep_if_same(a, bv_rewriter(*this).conjunct(a, true));
}

void simplify_visitor::visit(bv_or_name_expr*, application* a) {
    if (!bv_rewriter::is_well_formed(a, 2)) return process_app(a);
    keep_if_same(a, bv_rewriter(*this).conjunct(a, false));
}

void simplify_visitor::visit(bv_xor_name_expr*, application* a) {
    if (!bv_rewriter::is_well_formed(a, 2)) return process_app(a);
    keep_if_same(a, bv_rewriter(*this).exclusive_or(a));
}

void simplify_visitor::visit(bv_not_name_expr*, application* a) {
    if (!bv_rewriter::is_well_formed(a, 1)) return process_app(a);
    m_result = bv_rewriter(*this).complement(a).get();
}

void simplify_visitor::visit(bv_concat_name_expr*, application* a) {
    if (!bv_rewriter::is_well_formed(a, a->num_args())) return process_app(a);
    keep_if_same(a, bv_rewriter(*this).concat(a));
}

void simplify_visitor::visit(bv_extract_name_expr*, application* a) {
    shared_ptr<application> image = image_app(a);
    unsigned high, low;
    if (!get_extract_bounds(image.get(), high, low) || high >= bv_rewriter::width_of(image->get_arg(2)))
        return;
    shared_ptr<expr> result = bv_rewriter(*this).mk_extract(high, low, image->get_arg(2));
    m_result = same_term(result.get(), image.get()) ? image.get() : result.get();
}

// The image stays where the amount is not known, or larger than the width.
template <class F>
void simplify_visitor::simplify_bv_shift(application* a, F build) {
    shared_ptr<application> image = image_app(a);
    unsigned amount;
    unsigned width = image->num_args() == 2 ? bv_rewriter::width_of(image->get_arg(0)) : 0;
    if (width == 0 || !get_amount(image.get(), amount) || amount > width) return;
    bv_rewriter rewriter(*this);
    shared_ptr<expr> result = build(rewriter, image->get_arg(0), amount);
    if (result.get() != nullptr) m_result = result.get();
}

void simplify_visitor::visit(bv_shift_left0_name_expr*, application* a) {
    simplify_bv_shift(a, [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_left(e, n, false); });
}

void simplify_visitor::visit(bv_shift_left1_name_expr*, application* a) {
    simplify_bv_shift(a, [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_left(e, n, true); });
}

void simplify_visitor::visit(bv_shift_right0_name_expr*, application* a) {
    simplify_bv_shift(a, [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_right(e, n, false); });
}

void simplify_visitor::visit(bv_shift_right1_name_expr*, application* a) {
    simplify_bv_shift(a, [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_right(e, n, true); });
}

void simplify_visitor::visit(bv_shift_righta_name_expr*, application* a) {
    simplify_bv_shift(a,
                      [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_right_arithmetic(e, n); });
}

void simplify_visitor::visit(bv_sign_extend_name_expr*, application* a) {
    shared_ptr<application> image = image_app(a);
    unsigned amount;
    if (!get_amount(image.get(), amount) || bv_rewriter::width_of(image.get()) == 0) return;
    shared_ptr<expr> result = bv_rewriter(*this).mk_sign_extend(image->get_arg(0), amount);
    if (result.get() != nullptr) m_result = result.get();
}

// (bv-zero-extend x n)  to  (bv-concat 0 x)
void simplify_visitor::visit(bv_zero_extend_name_expr*, application* a) {
    shared_ptr<application> image = image_app(a);
    unsigned amount;
    if (!get_amount(image.get(), amount) || bv_rewriter::width_of(image.get()) == 0) return;
    bv_rewriter rewriter(*this);
    shared_ptr_vector<expr> parts;
    if (amount > 0) parts.push_back(rewriter.mk_constant(amount, 0).get());
    parts.push_back(image->get_arg(0));
    m_result = rewriter.mk_concat(parts);
}

// By a constant number of bits, which may be larger than the width.
template <class F>
void simplify_visitor::simplify_bv_variable_shift(application* a, F build) {
    shared_ptr<application> image = image_app(a);
    if (!bv_rewriter::is_well_formed(image.get(), 2) || !is_bv_constant(image->get_arg(1))) return;
    unsigned width = bv_rewriter::width_of(image->get_arg(0));
    numeral const& value = bv_value(image->get_arg(1));
    unsigned amount = value < numeral(width) ? value.get_unsigned() : width;
    bv_rewriter rewriter(*this);
    shared_ptr<expr> result = build(rewriter, image->get_arg(0), amount);
    if (result.get() != nullptr) m_result = result.get();
}

void simplify_visitor::visit(bv_shl_name_expr*, application* a) {
    simplify_bv_variable_shift(
        a, [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_left(e, n, false); });
}

void simplify_visitor::visit(bv_lshr_name_expr*, application* a) {
    simplify_bv_variable_shift(
        a, [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_right(e, n, false); });
}

void simplify_visitor::visit(bv_ashr_name_expr*, application* a) {
    simplify_bv_variable_shift(
        a, [](bv_rewriter& r, expr* e, unsigned n) { return r.mk_shift_right_arithmetic(e, n); });
}

void simplify_visitor::simplify_bv_relation(application* a) {
    shared_ptr<application> image = image_app(a);
    m_result = bv_rewriter(*this).fold_relation(image.get()).get();
}

void simplify_visitor::visit(bv_lt_name_expr*, application* a) { simplify_bv_relation(a); }
void simplify_visitor::visit(bv_le_name_expr*, application* a) { simplify_bv_relation(a); }
void simplify_visitor::visit(bv_gt_name_expr*, application* a) { simplify_bv_relation(a); }
void simplify_visitor::visit(bv_ge_name_expr*, application* a) { simplify_bv_relation(a); }
void simplify_visitor::visit(sbv_lt_name_expr*, application* a) { simplify_bv_relation(a); }
void simplify_visitor::visit(sbv_le_name_expr*, application* a) { simplify_bv_relation(a); }
void simplify_visitor::visit(sbv_gt_name_expr*, application* a) { simplify_bv_relation(a); }
void simplify_visitor::visit(sbv_ge_name_expr*, application* a) { simplify_bv_relation(a); }

} // namespace vexor
