// Linear pseudo-Boolean constraints: the sum of the coefficients of the true literals is at least a bound.
#pragma once

#include "base/numeral.h"
#include "base/vector.h"
#include "search/explanation.h"
#include "search/literal.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>

namespace vexor {

struct lpb_monomial {
    numeral m_coeff;
    literal m_lit;
};

// Orders of monomials: by literal, and by falling coefficient.
struct lpb_monomial_lit_lt {
    bool operator()(lpb_monomial const& a, lpb_monomial const& b) const { return a.m_lit < b.m_lit; }
};
struct lpb_monomial_coeff_lt {
    bool operator()(lpb_monomial const& a, lpb_monomial const& b) const { return a.m_coeff > b.m_coeff; }
};

// An inequality as the caller stated it, and on its way to the form that lpb_constraint keeps.
//
// Keeps: after normalize: coefficients are positive integers, the monomials are sorted by literal, each
// variable occurs once and neither constant does, and the inequality holds exactly where the stated one does.
// A value v of the stated bound corresponds to ceil((v + m_shift) / m_divisor).
struct lpb_inequality {
    vector<lpb_monomial> m_monomials;
    numeral m_bound;
    numeral m_shift; // what the rewriting added to the bound before the division
    numeral m_divisor =
        1; // what coefficients and bound were divided by; a fraction where they were fractions

    void normalize();

private:
    void merge();
    void make_positive();
    void cancel_complements();
    void drop_constants();
    void divide();
    void divide_by(numeral const& divisor);
    void remove_zeros();
};

// The propagator. It counts what the literals that are not false can still reach: below the bound is a
// conflict, and a literal whose loss would fall below it must be true.
//
// Keeps:   m_potential is the sum of the coefficients without those of the false literals that the
//          propagation has visited; at a fixpoint that are all false literals. All monomials of the second
//          copy before m_first_candidate are assigned.
// Ends:    one visit per assignment, and the walk over the candidates only moves forward within a scope.
// Cost:    O(log n) to find the monomial of a visited literal, plus the candidates passed; state is saved at
//          most once per scope.
// Source:  the slack-based propagation of Chai, Kuehlmann, A fast pseudo-Boolean constraint solver, DAC 2003,
//          with all literals watched.
class lpb_constraint final : public constraint {
public:
    // Attaches a normalized inequality to the watch sets and propagates it once; test inconsistent()
    // afterwards. Literals that are false now must have been visited by the propagation already.
    static lpb_constraint* create(context* ctx, lpb_inequality const& source);
    ~lpb_constraint() override;
    lpb_constraint(lpb_constraint const&) = delete; // monomials stand behind the object
    lpb_constraint& operator=(lpb_constraint const&) = delete;

    // Raises the bound to a value stated as in the original inequality, until the present scope is undone,
    // and propagates; test inconsistent() afterwards. A lower value changes nothing: what was derived from
    // the old one stays.
    void set_coeff(context* ctx, numeral const& value);

    bool propagate(context* ctx, literal l) noexcept override;
    void get_antecedents(literal l, svector<literal>& out) noexcept override;
    void remove(context* ctx, bool all) noexcept override;
    bool init(context* ctx, bool is_new) noexcept override;
    void display(context const* ctx, std::ostream& out) const override;
    [[nodiscard]] char const* get_kind() const override;
    [[nodiscard]] char const* get_name(literal l) const noexcept override;
    [[nodiscard]] bool is_satisfied(context* ctx) override;
    [[nodiscard]] bool check_invariant(context* ctx) override;

    [[nodiscard]] unsigned num_monomials() const { return m_num_monomials; }
    [[nodiscard]] numeral const& bound() const { return m_bound; }
    [[nodiscard]] numeral const& potential() const { return m_potential; }
    [[nodiscard]] unsigned first_candidate() const { return m_first_candidate; }
    // Position in the first copy, or -1.
    [[nodiscard]] int get_index_of(literal l) const;
    // Zero if the literal does not occur.
    [[nodiscard]] numeral slow_get_coefficient_of(literal l) const;
    // The sum of the coefficients of the literals that are not false.
    [[nodiscard]] numeral compute_potential(context const* ctx) const;

    // The monomials follow the object in the same block; also the pair that delete needs.
    static void* operator new(std::size_t size, unsigned num_monomials);
    static void operator delete(void* memory);
    static void operator delete(void* memory, unsigned num_monomials);

private:
    friend class lpb_trail;
    friend class lpb_bound_trail;

    lpb_constraint(context* ctx, lpb_inequality const& source);
    lpb_monomial* monomials() { return reinterpret_cast<lpb_monomial*>(this + 1); }
    [[nodiscard]] lpb_monomial const* monomials() const {
        return reinterpret_cast<lpb_monomial const*>(this + 1);
    }
    void save_state(context* ctx);
    void propagate_core(context* ctx);

    context* m_context;         // of the whole life
    numeral m_bound;            // the right-hand side
    numeral m_potential;        // see above; restored by lpb_trail
    unsigned m_first_candidate; // first monomial that may still be propagated; restored by lpb_trail
    unsigned m_trail_scope;     // scope of the last saved state, at first of creation; restored by lpb_trail
    unsigned m_num_visited;     // trail positions visited up to the last change; restored by lpb_trail
    unsigned m_num_monomials;   // n; behind the object: n monomials by literal, the same by coefficient
    std::uint64_t m_last_conflict; // number of the conflict in whose analysis a literal was last explained
    numeral m_shift;               // as in lpb_inequality
    numeral m_divisor;             // likewise
};

constraint* create_lpb(context* ctx, vector<numeral> const& coeffs, svector<literal> const& lits,
                       numeral const& bound);
// See lpb_constraint::set_coeff.
void set_lpb_coeff(context* ctx, constraint* c, numeral const& value);

} // namespace vexor
