#include "search/lpb_constraint.h"

#include "base/memory.h"
#include "search/context.h"

#include <algorithm>
#include <new>
#include <ostream>
#include <utility>

namespace vexor {

// The state of a constraint before its first change in a scope. The numeral leaves the record in undo, since
// its destructor never runs.
class lpb_trail final : public trail_object {
public:
    explicit lpb_trail(lpb_constraint* c)
        : m_constraint(c)
        , m_potential(c->m_potential)
        , m_first_candidate(c->m_first_candidate)
        , m_trail_scope(c->m_trail_scope)
        , m_num_visited(c->m_num_visited) {}
    void undo(context*) override {
        m_constraint->m_potential = std::move(m_potential);
        m_constraint->m_first_candidate = m_first_candidate;
        m_constraint->m_trail_scope = m_trail_scope;
        m_constraint->m_num_visited = m_num_visited;
    }

private:
    lpb_constraint* m_constraint;
    numeral m_potential;
    unsigned m_first_candidate;
    unsigned m_trail_scope;
    unsigned m_num_visited;
};

// The bound before it was raised.
class lpb_bound_trail final : public trail_object {
public:
    explicit lpb_bound_trail(lpb_constraint* c)
        : m_constraint(c)
        , m_bound(c->m_bound) {}
    void undo(context*) override { m_constraint->m_bound = std::move(m_bound); }

private:
    lpb_constraint* m_constraint;
    numeral m_bound;
};

void* lpb_constraint::operator new(std::size_t size, unsigned num_monomials) {
    static_assert(sizeof(lpb_constraint) % alignof(lpb_monomial) == 0);
    return xmalloc(size + 2 * std::size_t{num_monomials} * sizeof(lpb_monomial));
}

void lpb_constraint::operator delete(void* memory) { heap_allocator::release(memory); }

void lpb_constraint::operator delete(void* memory, unsigned) { heap_allocator::release(memory); }

lpb_constraint* lpb_constraint::create(context* ctx, lpb_inequality const& source) {
    auto* c = new (source.m_monomials.size()) lpb_constraint(ctx, source);
    c->propagate_core(ctx);
    return c;
}

lpb_constraint::lpb_constraint(context* ctx, lpb_inequality const& source)
    : m_context(ctx)
    , m_bound(source.m_bound)
    , m_first_candidate(source.m_monomials.size())
    , m_trail_scope(ctx->scope_lvl())
    , m_num_visited(ctx->num_visited())
    , m_num_monomials(source.m_monomials.size())
    , m_last_conflict(~std::uint64_t{0})
    , m_shift(source.m_shift)
    , m_divisor(source.m_divisor) {
    unsigned const n = m_num_monomials;
    lpb_monomial* const target = monomials();
    for (unsigned i = 0; i < n; ++i) {
        lpb_monomial const& m = source.m_monomials[i];
        VEXOR_ASSERT(m.m_coeff.is_pos() && m.m_coeff.is_int());
        new (target + i) lpb_monomial(m);
        new (target + n + i) lpb_monomial(m);
        ctx->insert_constraint_watch(~m.m_lit, this);
        if (ctx->value(m.m_lit) >= 0) m_potential += m.m_coeff;
    }
    std::stable_sort(target + n, target + 2 * n, lpb_monomial_coeff_lt());
}

lpb_constraint::~lpb_constraint() { std::destroy_n(monomials(), 2 * std::size_t{m_num_monomials}); }

void lpb_constraint::save_state(context* ctx) {
    if (ctx->scope_lvl() <= m_trail_scope) return;
    ctx->push_strong_trail(lpb_trail(this));
    m_trail_scope = ctx->scope_lvl();
}

void lpb_constraint::set_coeff(context* ctx, numeral const& value) {
    numeral const bound = ceil((value + m_shift) / m_divisor);
    if (bound <= m_bound) return;
    save_state(ctx);
    ctx->push_strong_trail(lpb_bound_trail(this));
    m_bound = bound;
    propagate_core(ctx);
}

// The position tells whether the literal was counted already.
bool lpb_constraint::propagate(context* ctx, literal l) noexcept {
    if (ctx->num_visited() <= m_num_visited) return true;
    save_state(ctx);
    int const i = get_index_of(~l);
    VEXOR_ASSERT(i >= 0);
    m_potential -= monomials()[i].m_coeff;
    m_num_visited = ctx->num_visited();
    propagate_core(ctx);
    return true;
}

void lpb_constraint::propagate_core(context* ctx) {
    numeral const slack = m_potential - m_bound;
    if (slack.is_neg()) {
        ctx->set_conflict(gexplanation::mk_lazy(this));
        return;
    }
    for (unsigned const end = 2 * m_num_monomials; m_first_candidate < end; ++m_first_candidate) {
        lpb_monomial const& m = monomials()[m_first_candidate];
        if (ctx->value(m.m_lit) != 0) continue;
        if (m.m_coeff <= slack) return;
        ctx->assign_literal_core(m.m_lit, gexplanation::mk_lazy(this));
    }
}

// The false literals that were assigned before l imply it, visited or not.
//
// Analysis walks the trail backwards, so within one conflict the first request for a literal yields a
// superset of the later ones, which may then be left out. The conflict itself is not such a request: it is
// asked more than once.
void lpb_constraint::get_antecedents(literal l, svector<literal>& out) noexcept {
    context const* const ctx = m_context;
    lpb_monomial const* const end = monomials() + m_num_monomials;
    if (l == false_literal) {
        for (lpb_monomial const* m = monomials(); m != end; ++m)
            if (ctx->value(m->m_lit) < 0) out.push_back(~m->m_lit);
        return;
    }
    if (m_last_conflict == ctx->num_conflicts()) return;
    m_last_conflict = ctx->num_conflicts();
    std::int64_t const timestamp = ctx->timestamp(l);
    for (lpb_monomial const* m = monomials(); m != end; ++m)
        if (ctx->value(m->m_lit) < 0 && ctx->timestamp(m->m_lit) < timestamp) out.push_back(~m->m_lit);
}

void lpb_constraint::remove(context* ctx, bool all) noexcept {
    if (all) return;
    for (unsigned i = 0; i < m_num_monomials; ++i) ctx->remove_generic_watch(this, ~monomials()[i].m_lit);
}

// Created at the base level only, whose scope goes together with the constraint.
bool lpb_constraint::init(context*, bool) noexcept { return false; }

int lpb_constraint::get_index_of(literal l) const {
    lpb_monomial const* const end = monomials() + m_num_monomials;
    lpb_monomial const* const found =
        std::lower_bound(monomials(), end, l, [](lpb_monomial const& m, literal x) { return m.m_lit < x; });
    return found != end && found->m_lit == l ? static_cast<int>(found - monomials()) : -1;
}

numeral lpb_constraint::slow_get_coefficient_of(literal l) const {
    int const i = get_index_of(l);
    return i < 0 ? numeral() : monomials()[i].m_coeff;
}

numeral lpb_constraint::compute_potential(context const* ctx) const {
    numeral result;
    for (unsigned i = 0; i < m_num_monomials; ++i)
        if (ctx->value(monomials()[i].m_lit) >= 0) result += monomials()[i].m_coeff;
    return result;
}

bool lpb_constraint::is_satisfied(context* ctx) {
    numeral sum;
    for (unsigned i = 0; i < m_num_monomials; ++i)
        if (ctx->value(monomials()[i].m_lit) > 0) sum += monomials()[i].m_coeff;
    return sum >= m_bound;
}

char const* lpb_constraint::get_kind() const { return "lpb"; }

char const* lpb_constraint::get_name(literal) const noexcept { return "lpb"; }

void lpb_constraint::display(context const* ctx, std::ostream& out) const {
    out << "(lpb";
    for (unsigned i = 0; i < m_num_monomials; ++i) {
        lpb_monomial const& m = monomials()[i];
        out << " ";
        if (!m.m_coeff.is_one()) out << "(* " << m.m_coeff << " ";
        ctx->display(out, m.m_lit);
        if (!m.m_coeff.is_one()) out << ")";
    }
    out << " " << m_bound << ")";
}

// To be called at a fixpoint of propagation without a conflict.
bool lpb_constraint::check_invariant(context* ctx) {
    unsigned const n = m_num_monomials;
    lpb_monomial const* const m = monomials();
    if (!std::is_sorted(m, m + n, lpb_monomial_lit_lt())) return false;
    if (!std::is_sorted(m + n, m + 2 * n, lpb_monomial_coeff_lt())) return false;
    if (m_trail_scope > ctx->scope_lvl() || m_num_visited > ctx->num_visited()) return false;
    if (m_first_candidate < n || m_first_candidate > 2 * n) return false;
    if (m_potential != compute_potential(ctx) || m_potential < m_bound) return false;
    numeral const slack = m_potential - m_bound;
    for (unsigned i = n; i < 2 * n; ++i) {
        bool const assigned = ctx->value(m[i].m_lit) != 0;
        if (!assigned && (i < m_first_candidate || m[i].m_coeff > slack)) return false;
    }
    return true;
}

constraint* create_lpb(context* ctx, vector<numeral> const& coeffs, svector<literal> const& lits,
                       numeral const& bound) {
    VEXOR_ASSERT(coeffs.size() == lits.size());
    lpb_inequality source;
    source.m_bound = bound;
    for (unsigned i = 0; i < lits.size(); ++i) source.m_monomials.push_back(lpb_monomial{coeffs[i], lits[i]});
    source.normalize();
    return lpb_constraint::create(ctx, source);
}

constraint* context::assert_lpb(vector<numeral> const& coeffs, svector<literal> const& lits,
                                numeral const& bound) {
    VEXOR_ASSERT(at_base_lvl());
    if (inconsistent() || !type_correct()) return nullptr;
    m_model.reset();
    return assert_lpb_core(coeffs, lits, bound);
}

// As assert_lpb, but keeps the model.
//
// A literal that waits for its visit while it is false already would be counted twice: once when the
// potential is summed up, once when it is visited. So nothing may be waiting.
constraint* context::assert_lpb_core(vector<numeral> const& coeffs, svector<literal> const& lits,
                                     numeral const& bound) {
    if (!propagate_constraints()) return nullptr;
    constraint* const c = create_lpb(this, coeffs, lits, bound);
    assert_constraint(c);
    propagate_constraints();
    return c;
}

void set_lpb_coeff(context* ctx, constraint* c, numeral const& value) {
    VEXOR_ASSERT(dynamic_cast<lpb_constraint*>(c) != nullptr);
    static_cast<lpb_constraint*>(c)->set_coeff(ctx, value);
}

} // namespace vexor
