// Rewriting of bit-vector terms.
//
// The functions on applications take source terms with well-formed operators (see is_well_formed) and give
// images; the builders take images.
#pragma once

#include "ast/node/nodes.h"
#include "base/numeral.h"
#include "base/shared_ptr.h"

#include <vector>

namespace vexor {

class simplify_visitor;

class bv_rewriter {
public:
    // Shifts and extensions that repeat a bit more often keep their operator.
    static constexpr unsigned max_repeated = 64;

    explicit bv_rewriter(simplify_visitor& owner)
        : m_owner(owner) {}

    // The width of a term, 0 for one that is no bit-vector.
    static unsigned width_of(expr* e);
    // Are there that many arguments, all of the same width? For operators on vectors alone.
    static bool is_well_formed(application* a, unsigned num_args);

    // --- Source terms.
    // bv_add, bv_sub and bv_minus; bv_mul.
    shared_ptr<expr> sum(application* a);
    shared_ptr<expr> product(application* a);
    // bv_and (is_and) and bv_or; bv_xor; bv_not.
    shared_ptr<expr> conjunct(application* a, bool is_and);
    shared_ptr<expr> exclusive_or(application* a);
    shared_ptr<expr> complement(application* a);
    shared_ptr<expr> concat(application* a);

    // --- Images.
    shared_ptr<expr> mk_constant(unsigned width, numeral const& value);
    shared_ptr<expr> mk_complement(expr* e);
    // Bits high to low of e.
    shared_ptr<expr> mk_extract(unsigned high, unsigned low, expr* e);
    // The most significant part comes first.
    shared_ptr<expr> mk_concat(shared_ptr_vector<expr> const& parts);
    // e moved up or down by a number of bits up to its width, with zeros or ones behind it.
    shared_ptr<expr> mk_shift_left(expr* e, unsigned amount, bool fill);
    shared_ptr<expr> mk_shift_right(expr* e, unsigned amount, bool fill);
    // With copies of the sign bit; null when there were too many of them.
    shared_ptr<expr> mk_shift_right_arithmetic(expr* e, unsigned amount);
    shared_ptr<expr> mk_sign_extend(expr* e, unsigned amount);
    // The equality of two different terms of one width.
    shared_ptr<expr> mk_eq(expr* a, expr* b);
    // The comparison of two constants, of a term with itself, and of other images as it is.
    shared_ptr<expr> fold_relation(application* a);

private:
    void join(shared_ptr_vector<expr>& parts, expr* part);
    shared_ptr<expr> extract_of_concat(unsigned high, unsigned low, application* a);
    shared_ptr<expr> mk_eq_of_parts(expr* a, expr* b);
    bool cancel_shared_argument(expr*& a, expr*& b);

    simplify_visitor& m_owner; // gives the images of arguments
};

// Leaves of a tree of operators, each under a flag.
struct bv_leaf {
    expr* m_term;
    bool m_flag;
};
using bv_leaves = std::vector<bv_leaf>;

// A family of operators that are taken apart together: adds the arguments of an application of the family to
// the list, and answers false for other terms.
using bv_family = bool (*)(application* a, bool flag, bv_leaves& children);

inline bool is_bv_constant(expr* e) { return is_a<bitvector_constant>(e); }
inline numeral const& bv_value(expr* e) { return static_cast<bitvector_constant*>(e)->get_value(); }
// 2^width - 1.
inline numeral all_ones(unsigned width) { return (numeral(1) <<= width) - numeral(1); }

} // namespace vexor
