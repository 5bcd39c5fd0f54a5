#include "support/clause_theory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ostream>

namespace vexor_test {

using vexor::context;
using vexor::literal;
using vexor::reason_kind;
using vexor::svector;
using vexor::theory_atom;

namespace {

reason_kind const by_clause("test-clause");
reason_kind const by_clause_conflict("test-clause-conflict");

} // namespace

// A lazy reason as well: the other literals of the clause are false.
struct clause_theory::hidden_clause final : vexor::explanation {
    std::vector<literal> m_lits;

    void get_antecedents(literal l, svector<literal>& out) noexcept override {
        for (literal x : m_lits)
            if (x != l) out.push_back(~x);
    }
    [[nodiscard]] char const* get_name(literal) const noexcept override { return "hidden-clause"; }
};

clause_theory::moods clause_theory::random_moods(random_stream& r) {
    clause_theory::moods m;
    unsigned const reports[] = {0, 20, 60, 95};
    unsigned const lemmas[] = {0, 30, 90};
    unsigned const extras[] = {0, 5, 40};
    m.m_report = reports[r.below(4)];
    m.m_lemma = lemmas[r.below(3)];
    m.m_frozen = r.chance(20) ? 100 : 50;
    m.m_problem = r.chance(30) ? 50 : 5;
    m.m_extra = extras[r.below(3)];
    m.m_unit = r.chance(50) ? 0 : 40;
    m.m_gate = r.chance(70) ? 2 : 30;
    m.m_decide = r.chance(50) ? 0 : 50;
    m.m_reanalyze = r.chance(50) ? 0 : 50;
    m.m_stop_batch = r.chance(50) ? 0 : 60;
    return m;
}

clause_theory::clause_theory(context& ctx, std::uint64_t seed)
    : m_port(ctx)
    , m_random(seed) {}

clause_theory::~clause_theory() = default;

literal clause_theory::create_atom() {
    m_atoms.push_back(std::make_unique<clause_atom>(num_atoms()));
    return m_port.new_atom(*m_atoms.back());
}

void clause_theory::add_hidden(std::vector<literal> lits) {
    auto c = std::make_unique<hidden_clause>();
    c->m_lits = std::move(lits);
    m_hidden.push_back(std::move(c));
}

void clause_theory::may_throw(char const* where) {
    if (m_moods.m_throw_ppm == 0 || m_random.below(1000000) >= m_moods.m_throw_ppm) return;
    ++m_num_thrown;
    throw seam_exception(where);
}

void clause_theory::push() noexcept { ++m_depth; }
void clause_theory::pop() noexcept { --m_depth; }

void clause_theory::save_base_level_trail() noexcept { m_base_sizes.push_back({num_hidden(), num_atoms()}); }

void clause_theory::undo_base_level_trail() noexcept {
    base_sizes const sizes = m_base_sizes.back();
    m_base_sizes.pop_back();
    m_hidden.resize(sizes.m_num_hidden);
    while (num_atoms() > sizes.m_num_atoms) {
        if (m_atoms.back()->told() != 0) m_broken = true;
        m_atoms.pop_back();
    }
}

void clause_theory::init_atom(theory_atom* a, bool is_new) noexcept {
    auto* const atom = static_cast<clause_atom*>(a);
    if (m_port.atom_of(atom->var()) != a || m_atoms[atom->id()].get() != a) m_broken = true;
    if (!is_new) ++m_num_reinits;
}

// What can be said right after a backjump is said right then, in the two ways that are allowed there.
void clause_theory::reanalyze(unsigned) noexcept {
    if (m_hidden.empty() || !m_random.chance(m_moods.m_reanalyze)) return;
    hidden_clause& c = *m_hidden[m_random.below(num_hidden())];
    literal open;
    state const s = state_of(c, open);
    if (s == state::unit || s == state::violated) tell_reason(c, s, open);
}

unsigned clause_theory::assigned(literal const* lits, unsigned n) noexcept {
    for (unsigned i = 0; i < n; ++i) {
        auto* const atom = static_cast<clause_atom*>(m_port.atom_of(lits[i].var()));
        if (atom->told() != 0 || !m_port.is_true(lits[i])) m_broken = true;
        m_port.push_undo(vexor::value_trail<int>(atom->m_told));
        atom->m_told = lits[i].sign() ? -1 : 1;
        if (m_hidden.empty() || !m_random.chance(m_moods.m_stop_batch)) continue;
        hidden_clause& c = *m_hidden[m_random.below(num_hidden())];
        literal open;
        state const s = state_of(c, open);
        if (s == state::unit || s == state::violated) tell(c, s, open);
        if (!m_port.inconsistent()) continue;
        if (i + 1 < n) ++m_num_cut_batches;
        return i + 1;
    }
    return n;
}

bool clause_theory::decide_atom(theory_atom*, bool& phase) noexcept {
    if (!m_random.chance(m_moods.m_decide)) return false;
    phase = m_random.chance(50);
    return true;
}

void clause_theory::display_atom(theory_atom const* a, std::ostream& out) const {
    out << "atom " << static_cast<clause_atom const*>(a)->id();
}

clause_theory::state clause_theory::state_of(hidden_clause const& c, literal& open) const {
    unsigned num_open = 0;
    for (literal l : c.m_lits) {
        int const v = m_port.value(l);
        if (v > 0) return state::satisfied;
        if (v < 0) continue;
        ++num_open;
        open = l;
    }
    return num_open == 0 ? state::violated : num_open == 1 ? state::unit : state::open;
}

literal clause_theory::random_literal() {
    literal const l = m_atoms[m_random.below(num_atoms())]->lit();
    return m_random.chance(50) ? l : ~l;
}

// weaker adds literals by chance: still a consequence.
void clause_theory::tell_lemma(hidden_clause const& c, bool weaker) {
    svector<literal> lits;
    for (literal l : c.m_lits) lits.push_back(l);
    if (weaker && !m_atoms.empty())
        for (unsigned n = 1 + m_random.below(3); n > 0; --n) lits.push_back(random_literal());
    for (unsigned i = lits.size(); i > 1; --i) std::swap(lits[i - 1], lits[m_random.below(i)]);
    ++m_num_lemmas;
    if (m_random.chance(m_moods.m_problem))
        m_port.axiom(lits);
    else
        m_port.lemma(lits);
}

// Why implied holds, or, with null_literal, why the clause is a conflict. Facts of the base may be left out.
vexor::explanation* clause_theory::explain(hidden_clause& c, literal implied) {
    if (!m_random.chance(m_moods.m_frozen)) return &c;
    svector<literal> why;
    for (literal l : c.m_lits)
        if (l != implied && (!m_port.is_base_fact(l) || m_random.chance(30))) why.push_back(~l);
    return m_port.mk_reason(implied == vexor::null_literal ? by_clause_conflict : by_clause, why);
}

void clause_theory::tell(hidden_clause& c, state s, literal open) {
    if (c.m_lits.size() == 1 && m_random.chance(50)) {
        ++m_num_units;
        m_port.axiom(c.m_lits[0]);
    } else if (m_random.chance(m_moods.m_lemma)) {
        tell_lemma(c, false);
    } else {
        tell_reason(c, s, open);
    }
}

void clause_theory::tell_reason(hidden_clause& c, state s, literal open) {
    if (s == state::unit) {
        ++m_num_lazy;
        m_port.assign(open, explain(c, open));
    } else if (m_random.chance(80)) {
        ++m_num_conflicts;
        m_port.conflict(explain(c, vexor::null_literal));
    } else {
        // As a theory would that derives one literal from the others without a look at its value.
        ++m_num_conflicts;
        literal const l = c.m_lits[m_random.below(static_cast<unsigned>(c.m_lits.size()))];
        m_port.assign(l, explain(c, l));
    }
}

// A variable g equal to the disjunction of two literals.
void clause_theory::make_gate() {
    if (num_atoms() < 2) return;
    literal const a = random_literal();
    literal const b = random_literal();
    ++m_num_gates;
    if (m_random.chance(50)) {
        m_port.mk_or(a, ~b);
    } else if (m_random.chance(50)) {
        m_port.mk_iff(a, b);
    } else {
        // An atom that is born during the search.
        literal const g = create_atom();
        m_port.axiom(g, ~a);
        m_port.axiom(~g, a, b);
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
        m_port.axiom(c.m_lits[0]);
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
        if (m_port.inconsistent() && m_random.chance(80)) return;
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
    for (auto const& a : m_atoms)
        if (m_port.value(a->lit()) == 0 || m_port.value(a->lit()) != a->told()) m_broken = true;
    for (auto& c : m_hidden) {
        literal open;
        state const s = state_of(*c, open);
        if (s != state::violated) continue;
        tell(*c, s, open);
        done = false;
        if (m_port.inconsistent() && m_random.chance(70)) return false;
    }
    // The search has to notice by itself that something was added.
    if (done && m_random.chance(20)) be_superfluous();
    return done;
}

bool clause_theory::validate_assignment() noexcept {
    literal open;
    return std::none_of(m_hidden.begin(), m_hidden.end(),
                        [&](auto const& c) { return state_of(*c, open) == state::violated; });
}

void clause_theory::flush_data() noexcept { m_base_sizes.clear(); }

void clause_theory::reset() noexcept {
    m_hidden.clear();
    m_atoms.clear();
    m_depth = 0;
    m_more = false;
}

void clause_theory::display_statistics(std::ostream& out, char const* prefix) const {
    out << prefix << "clauses.lemmas " << m_num_lemmas << "\n";
}

// At a fixpoint each atom knows its value.
void clause_theory::check_invariant() const {
    for (auto const& a : m_atoms) {
        if (m_port.value(a->lit()) == a->told()) continue;
        std::fprintf(stderr, "broken invariant of the test theory: told %d, value %d\n", a->told(),
                     m_port.value(a->lit()));
        std::abort();
    }
}

} // namespace vexor_test
