// Concatenation, extraction and shifts.
#include "ast/node/ast_manager.h"
#include "ast/types/op_rules.h"
#include "ast/types/type_checker_exception.h"
#include "base/deep_stack.h"
#include "simplify/bv_flatten.h"

namespace vexor {

namespace {

bool is_concat(application* a, bool flag, bv_leaves& children) {
    if (!is_app_of<bv_concat_name_expr>(a)) return false;
    for (expr* arg : a->get_args()) children.push_back({arg, flag});
    return true;
}

bool is_extract(expr* e, unsigned& high, unsigned& low) {
    return is_app_of<bv_extract_name_expr>(e) && get_extract_bounds(to_app(e), high, low);
}

} // namespace

// A malformed term has no type.
unsigned bv_rewriter::width_of(expr* e) {
    try {
        bitvector_type* t = get_bitvector_type(e);
        return t == nullptr ? 0 : t->get_size();
    } catch (type_checker_exception const&) {
        return 0;
    }
}

bool bv_rewriter::is_well_formed(application* a, unsigned num_args) {
    if (a->num_args() != num_args) return false;
    bool any_width = is_app_of<bv_concat_name_expr>(a);
    unsigned width = width_of(a->get_arg(0));
    for (expr* arg : a->get_args()) {
        unsigned w = width_of(arg);
        if (w == 0 || (w != width && !any_width)) return false;
    }
    return true;
}

shared_ptr<expr> bv_rewriter::mk_constant(unsigned width, numeral const& value) {
    return mk<bitvector_constant>(m_owner.get_manager(), width, value, -1);
}

shared_ptr<expr> bv_rewriter::concat(application* a) {
    bv_flattened flat(m_owner, a, is_concat);
    shared_ptr_vector<expr> parts;
    for (bv_leaf const& leaf : flat.get_leaves()) join(parts, leaf.m_term);
    if (parts.size() == 1) return parts[0];
    return mk<application>(a->get_manager()->mk_name<bv_concat_decl>(), parts.data(), parts.size(),
                           a->get_pos());
}

shared_ptr<expr> bv_rewriter::mk_concat(shared_ptr_vector<expr> const& parts) {
    shared_ptr_vector<expr> joined;
    for (expr* part : parts) {
        if (is_app_of<bv_concat_name_expr>(part))
            for (expr* inner : to_app(part)->get_args()) join(joined, inner);
        else
            join(joined, part);
    }
    if (joined.size() == 1) return joined[0];
    return mk<application>(m_owner.get_manager()->mk_name<bv_concat_decl>(), joined.data(), joined.size(),
                           -1);
}

// Adds a part below the others. Two constants become one, and so do neighbouring stretches of one term.
void bv_rewriter::join(shared_ptr_vector<expr>& parts, expr* part) {
    if (!parts.empty()) {
        shared_ptr<expr> above = parts.back();
        unsigned high, middle, next, low;
        shared_ptr<expr> one;
        if (is_bv_constant(above.get()) && is_bv_constant(part)) {
            unsigned width = static_cast<bitvector_constant*>(part)->get_size();
            one = mk_constant(static_cast<bitvector_constant*>(above.get())->get_size() + width,
                              (bv_value(above.get()) << width) + bv_value(part));
        } else if (is_extract(above.get(), high, middle) && is_extract(part, next, low) &&
                   middle == next + 1) {
            expr* of = to_app(above.get())->get_arg(2);
            if (same_term(of, to_app(part)->get_arg(2))) one = mk_extract(high, low, of);
        }
        if (one.get() != nullptr) {
            parts.set(parts.size() - 1, one.get());
            return;
        }
    }
    parts.push_back(part);
}

shared_ptr<expr> bv_rewriter::mk_extract(unsigned high, unsigned low, expr* e) {
    check_depth();
    unsigned width = width_of(e);
    VEXOR_ASSERT(low <= high && high < width);
    if (high - low + 1 == width) return e;
    if (is_bv_constant(e)) return mk_constant(high - low + 1, mod_2k(bv_value(e) >> low, high - low + 1));
    unsigned inner_high, inner_low;
    if (is_extract(e, inner_high, inner_low))
        return mk_extract(high + inner_low, low + inner_low, to_app(e)->get_arg(2));
    if (is_app_of<bv_concat_name_expr>(e)) return extract_of_concat(high, low, to_app(e));
    ast_manager* m = m_owner.get_manager();
    shared_ptr<expr> first = mk<numeral_expr>(m, numeral(high), -1);
    shared_ptr<expr> last = mk<numeral_expr>(m, numeral(low), -1);
    return mk<application>(m->mk_name<bv_extract_decl>(), first, last, e, -1);
}

shared_ptr<expr> bv_rewriter::extract_of_concat(unsigned high, unsigned low, application* a) {
    shared_ptr_vector<expr> parts;
    unsigned end = width_of(a); // above the next part
    for (expr* part : a->get_args()) {
        unsigned width = width_of(part);
        unsigned begin = end - width;
        if (begin <= high && end > low) {
            unsigned part_high = high < end ? high - begin : width - 1;
            unsigned part_low = low > begin ? low - begin : 0;
            shared_ptr<expr> cut = mk_extract(part_high, part_low, part);
            parts.push_back(cut.get());
        }
        end = begin;
    }
    return mk_concat(parts);
}

shared_ptr<expr> bv_rewriter::mk_shift_left(expr* e, unsigned amount, bool fill) {
    unsigned width = width_of(e);
    VEXOR_ASSERT(amount <= width);
    if (amount == 0) return e;
    shared_ptr_vector<expr> parts;
    if (amount < width) parts.push_back(mk_extract(width - amount - 1, 0, e).get());
    parts.push_back(mk_constant(amount, fill ? all_ones(amount) : numeral(0)).get());
    return mk_concat(parts);
}

shared_ptr<expr> bv_rewriter::mk_shift_right(expr* e, unsigned amount, bool fill) {
    unsigned width = width_of(e);
    VEXOR_ASSERT(amount <= width);
    if (amount == 0) return e;
    shared_ptr_vector<expr> parts;
    parts.push_back(mk_constant(amount, fill ? all_ones(amount) : numeral(0)).get());
    if (amount < width) parts.push_back(mk_extract(width - 1, amount, e).get());
    return mk_concat(parts);
}

shared_ptr<expr> bv_rewriter::mk_shift_right_arithmetic(expr* e, unsigned amount) {
    unsigned width = width_of(e);
    VEXOR_ASSERT(amount <= width);
    if (amount == 0) return e;
    if (amount == width) --amount; // the sign bit is one of the copies already
    shared_ptr<expr> rest = mk_extract(width - 1, amount, e);
    return mk_sign_extend(rest.get(), amount);
}

shared_ptr<expr> bv_rewriter::mk_sign_extend(expr* e, unsigned amount) {
    unsigned width = width_of(e);
    if (amount == 0) return e;
    shared_ptr<expr> sign = mk_extract(width - 1, width - 1, e);
    if (is_bv_constant(sign.get())) {
        shared_ptr_vector<expr> parts;
        parts.push_back(
            mk_constant(amount, bv_value(sign.get()).is_zero() ? numeral(0) : all_ones(amount)).get());
        parts.push_back(e);
        return mk_concat(parts);
    }
    if (amount > max_repeated) return nullptr;
    shared_ptr_vector<expr> parts;
    for (unsigned i = 0; i < amount; ++i) parts.push_back(sign.get());
    parts.push_back(e);
    return mk_concat(parts);
}

} // namespace vexor
