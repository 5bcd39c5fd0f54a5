#include "support/clause_theory.h"

#include <algorithm>
#include <ostream>

namespace vexor_test {

using vexor::context;
using vexor::gexplanation;
using vexor::literal;
using vexor::svector;

// A lazy reason as well: the other literals of the clause are false.
struct clause_theory::hidden_clause final : vexor::explanation {
    std::vector<literal> m_lits;
    clause_theory* m_theory = nullptr;

    void get_antecedents(context*, literal l, svector<literal>& out, bool) override {
        m_theory->may_throw("explanation::get_antecedents");
        for (literal x : m_lits)
            if (x != l) out.push_back(~x);
    }
    [[nodiscard]] char const* get_name(context*, literal) const override { return "hidden-clause"; }
};

class untell_trail final : public vexor::trail_object {
public:
    explicit untell_trail(clause_atom* a)
        : m_atom(a) {}
    void undo(context*) override { m_atom->m_told = 0; }

private:
    clause_atom* m_atom;
};

void clause_atom::init(context*, int var, bool is_new) {
    if (is_new) {
        m_var = var;
        return;
    }
    m_theory.may_throw("atom::init");
    if (m_var != var) m_theory.m_broken = true;
    ++m_num_reinits;
    ++m_theory.m_num_reinits;
}

void clause_atom::assigned_event(context* ctx, bool polarity) {
    m_theory.may_throw("atom::assigned_event");
    if (m_told != 0) m_theory.m_broken = true;
    if (ctx->value(literal(m_var, !polarity)) <= 0) m_theory.m_broken = true;
    ctx->push_strong_trail(untell_trail(this));
    m_told = polarity ? 1 : -1;
}

void clause_atom::remove(context*) {
    --m_theory.m_num_atoms_alive;
    std::vector<literal>& lits = m_theory.m_literals;
    lits.erase(std::remove(lits.begin(), lits.end(), literal(m_var)), lits.end());
    m_theory.m_atoms[static_cast<unsigned>(m_id)].reset();
}

bool clause_atom::decide(context*, bool& phase) {
    m_theory.may_throw("atom::decide");
    if (!m_theory.m_random.chance(m_theory.m_moods.m_decide)) return false;
    phase = m_theory.m_random.chance(50);
    return true;
}

void clause_atom::display(context const*, std::ostream& out) const { out << "atom " << m_id; }

clause_theory::moods clause_theory::random_moods(random_stream& r) {
    clause_theory::moods m;
    unsigned const reports[] = {0, 20, 60, 95};
    unsigned const lemmas[] = {0, 30, 90};
    unsigned const extras[] = {0, 5, 40};
    m.m_report = reports[r.below(4)];
    m.m_lemma = lemmas[r.below(3)];
    m.m_problem = r.chance(30) ? 50 : 5;
    m.m_extra = extras[r.below(3)];
    m.m_unit = r.chance(50) ? 0 : 40;
    m.m_gate = r.chance(70) ? 2 : 30;
    m.m_decide = r.chance(50) ? 0 : 50;
    return m;
}

clause_theory::clause_theory(context& ctx, std::uint64_t seed)
    : m_ctx(ctx)
    , m_random(seed) {}

clause_theory::~clause_theory() = default;

literal clause_theory::create_atom() {
    m_atoms.push_back(std::make_unique<clause_atom>(*this, static_cast<int>(m_atoms.size())));
    ++m_num_atoms_alive;
    literal const l(m_ctx.create_bool_var_core(vexor::bool_var_body(m_atoms.back().get())));
    m_literals.push_back(l);
    return l;
}

void clause_theory::add_hidden(std::vector<literal> lits) {
    auto c = std::make_unique<hidden_clause>();
    c->m_lits = std::move(lits);
    c->m_theory = this;
    m_hidden.push_back(std::move(c));
}

void clause_theory::may_throw(char const* where) {
    if (m_moods.m_throw_ppm == 0 || m_random.below(1000000) >= m_moods.m_throw_ppm) return;
    ++m_num_thrown;
    throw seam_exception(where);
}

void clause_theory::push() {
    may_throw("theory_hub::push");
    ++m_depth;
}

void clause_theory::pop() { --m_depth; }

void clause_theory::undo_base_level_trail() {
    m_hidden.resize(m_base_sizes.back());
    m_base_sizes.pop_back();
}

void clause_theory::reanalyze(unsigned) { may_throw("theory_hub::reanalyze"); }
void clause_theory::init_before_search() { may_throw("theory_hub::init_before_search"); }

clause_theory::state clause_theory::state_of(hidden_clause const& c, literal& open) const {
    unsigned num_open = 0;
    for (literal l : c.m_lits) {
        int const v = m_ctx.value(l);
        if (v > 0) return state::satisfied;
        if (v < 0) continue;
        ++num_open;
        open = l;
    }
    return num_open == 0 ? state::violated : num_open == 1 ? state::unit : state::open;
}

// weaker adds literals by chance: still a consequence.
void clause_theory::tell_lemma(hidden_clause const& c, bool weaker) {
    svector<literal> lits;
    for (literal l : c.m_lits) lits.push_back(l);
    if (weaker && !m_literals.empty()) {
        for (unsigned n = 1 + m_random.below(3); n > 0; --n) {
            literal const l = m_literals[m_random.below(static_cast<unsigned>(m_literals.size()))];
            lits.push_back(m_random.chance(50) ? l : ~l);
        }
    }
    for (unsigned i = lits.size(); i > 1; --i) std::swap(lits[i - 1], lits[m_random.below(i)]);
    ++m_num_lemmas;
    m_ctx.create_clause_core(lits, m_random.chance(m_moods.m_problem) ? vexor::clause_kind::problem
                                                                      : vexor::clause_kind::lemma);
}

void clause_theory::tell(hidden_clause& c, state s, literal open) {
    if (c.m_lits.size() == 1 && m_random.chance(50)) {
        ++m_num_units;
        m_ctx.assert_literal(c.m_lits[0]);
    } else if (m_random.chance(m_moods.m_lemma)) {
        tell_lemma(c, false);
    } else if (s == state::violated) {
        ++m_num_conflicts;
        m_ctx.set_conflict(gexplanation::mk_lazy(&c));
    } else {
        ++m_num_lazy;
        m_ctx.assign_literal_core(open, gexplanation::mk_lazy(&c));
    }
}

// A variable g equal to the disjunction of two literals.
void clause_theory::make_gate() {
    if (m_literals.size() < 2) return;
    literal const a = m_literals[m_random.below(static_cast<unsigned>(m_literals.size()))];
    literal const b = m_literals[m_random.below(static_cast<unsigned>(m_literals.size()))];
    ++m_num_gates;
    if (m_random.chance(50)) {
        m_ctx.create_or(a, ~b);
    } else if (m_random.chance(50)) {
        m_ctx.create_iff(a, b);
    } else {
        // An atom that is born during the search.
        literal const g = create_atom();
        m_ctx.create_auxiliary_clause(g, ~a);
        m_ctx.create_auxiliary_clause(~g, a, b);
    }
}

void clause_theory::be_superfluous() {
    if (m_extra_budget == 0 || m_hidden.empty()) return;
    hidden_clause& c = *m_hidden[m_random.below(num_hidden())];
    if (m_random.chance(m_moods.m_extra)) {
        --m_extra_budget;
        tell_lemma(c, true);
    } else if (m_random.chance(m_moods.m_unit) && c.m_lits.size() == 1) {
        --m_extra_budget;
        ++m_num_units;
        m_ctx.assert_literal(c.m_lits[0]);
    } else if (m_random.chance(m_moods.m_gate)) {
        --m_extra_budget;
        make_gate();
    }
}

void clause_theory::propagate() {
    may_throw("theory_hub::propagate");
    m_more = false;
    if (m_hidden.empty()) return;
    unsigned const start = m_random.below(num_hidden());
    for (unsigned i = 0; i < num_hidden(); ++i) {
        hidden_clause& c = *m_hidden[(start + i) % num_hidden()];
        literal open;
        state const s = state_of(c, open);
        if (s != state::unit && s != state::violated) continue;
        if (!m_random.chance(m_moods.m_report)) continue;
        tell(c, s, open);
        if (m_ctx.inconsistent() && m_random.chance(80)) return;
        if (m_random.chance(30)) {
            m_more = true;
            break;
        }
    }
    be_superfluous();
}

bool clause_theory::final_check() {
    may_throw("theory_hub::final_check");
    bool done = true;
    for (auto& a : m_atoms) {
        if (a == nullptr) continue;
        if (m_ctx.value(literal(a->var())) == 0) done = false;
        if (m_ctx.value(literal(a->var())) != a->told()) m_broken = true;
    }
    if (!done) m_broken = true;
    for (auto& c : m_hidden) {
        literal open;
        state const s = state_of(*c, open);
        if (s != state::violated) continue;
        tell(*c, s, open);
        done = false;
        if (m_ctx.inconsistent() && m_random.chance(70)) return false;
    }
    unsigned const num_vars = m_ctx.num_bool_vars();
    if (done && m_random.chance(20)) be_superfluous();
    return done && !m_ctx.inconsistent() && m_ctx.num_bool_vars() == num_vars;
}

void clause_theory::flush_data() {
    m_hidden.clear();
    m_base_sizes.clear();
}

void clause_theory::reset() {
    m_depth = 0;
    m_more = false;
    m_atoms.clear();
    m_literals.clear();
}

} // namespace vexor_test
