#include "support/search_session.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>

namespace vexor_test {

using vexor::context;
using vexor::literal;
using vexor::svector;

void show(char const* name, session_figures const& f) {
    if (std::getenv("VEXOR_FIGURES") == nullptr) return;
    std::cerr << name << ": sat " << f.m_num_sat << " unsat " << f.m_num_unsat << " cores " << f.m_num_cores
              << " stopped " << f.m_num_stopped << " thrown " << f.m_num_thrown << " conflicts "
              << f.m_num_conflicts << " restarts " << f.m_num_restarts << " deleted " << f.m_num_deleted
              << " simplified " << f.m_num_simplified << " lazy " << f.m_num_lazy << " lemmas "
              << f.m_num_lemmas << " reinits " << f.m_num_reinits << " level " << f.m_max_level << "\n";
}

search_session::search_session(std::uint64_t seed, session_weights const& weights,
                               clause_theory::moods const& moods, unsigned max_vars)
    : m_random(seed)
    , m_weights(weights)
    , m_moods(moods)
    , m_max_vars(max_vars)
    , m_ctx(std::make_unique<context>()) {
    if (weights.m_hidden != 0) {
        auto theory = std::make_unique<clause_theory>(*m_ctx, seed ^ 0x5bd1e995u);
        m_theory = theory.get();
        m_theory->m_moods = moods;
        m_ctx->set_theory_hub(std::move(theory));
    }
}

search_session::~search_session() {
    if (m_theory != nullptr) m_theory->m_moods.m_throw_ppm = 0;
}

void search_session::fail(std::string what) {
    if (m_failure.empty()) m_failure = std::move(what);
}

void search_session::new_var() {
    literal const l =
        m_theory != nullptr && m_random.chance(70) ? m_theory->create_atom() : m_ctx->create_fresh_bool_var();
    m_vars.push_back(l.var());
}

unsigned search_session::index_of(literal l) const {
    return static_cast<unsigned>(std::find(m_vars.begin(), m_vars.end(), l.var()) - m_vars.begin());
}

bool search_session::value_in(bits a, literal l) const {
    if (l.var() == 0) return l == vexor::true_literal;
    return ((a >> index_of(l)) & 1) != (l.sign() ? 1u : 0u);
}

literal search_session::random_literal() {
    return literal(m_vars[m_random.below(static_cast<unsigned>(m_vars.size()))], m_random.chance(50));
}

// Mostly three, which makes problems that need a search.
unsigned search_session::random_length() {
    unsigned const r = m_random.below(100);
    return r < 2 ? 1 : r < 14 ? 2 : r < 84 ? 3 : r < 98 ? 4 : 5 + m_random.below(4);
}

std::vector<literal> search_session::random_clause(unsigned length) {
    std::vector<literal> lits;
    for (unsigned i = 0; i < length; ++i) lits.push_back(random_literal());
    if (m_random.below(200) == 0)
        lits.push_back(m_random.chance(70) ? vexor::false_literal : vexor::true_literal);
    return lits;
}

void search_session::know_clause(std::vector<literal> const& lits) {
    bits pos = 0;
    bits neg = 0;
    for (literal l : lits) {
        if (l == vexor::false_literal) continue;
        if (l == vexor::true_literal) return;
        (l.sign() ? neg : pos) |= bits(1) << index_of(l);
    }
    m_oracle.add_clause(pos, neg);
}

void search_session::add_random_clauses(unsigned n, unsigned length) {
    for (; n > 0; --n) {
        unsigned const len = length != 0 ? length : random_length();
        std::vector<literal> const lits = random_clause(len);
        know_clause(lits);
        svector<literal> input;
        for (literal l : lits) input.push_back(l);
        m_ctx->create_clause_core(input, vexor::clause_kind::problem);
    }
}

void search_session::add_random_hidden(unsigned n) {
    if (m_theory == nullptr) return;
    for (; n > 0; --n) {
        std::vector<literal> lits = random_clause(random_length());
        // Distinct, no constants: what a theory tells lazily is a plain clause.
        std::sort(lits.begin(), lits.end());
        lits.erase(std::unique(lits.begin(), lits.end()), lits.end());
        bool skip = false;
        for (unsigned i = 0; i < lits.size(); ++i)
            skip |= lits[i].var() == 0 || (i > 0 && lits[i] == ~lits[i - 1]);
        if (skip) continue;
        know_clause(lits);
        m_theory->add_hidden(lits);
    }
}

void search_session::add_random_constraint() {
    std::vector<int> vars;
    for (int v : m_vars)
        if (m_random.chance(45) && vars.size() < 6) vars.push_back(v);
    if (vars.empty()) return;
    std::vector<unsigned> places;
    for (int v : vars) places.push_back(index_of(literal(v)));
    if (m_random.chance(50)) {
        bool const rhs = m_random.chance(50);
        m_oracle.add_condition([places, rhs](bits a) {
            bool p = false;
            for (unsigned i : places) p ^= ((a >> i) & 1) != 0;
            return p == rhs;
        });
        m_ctx->assert_constraint(new parity_constraint(vars, rhs));
        return;
    }
    std::vector<literal> lits;
    std::vector<bool> signs;
    for (int v : vars) {
        signs.push_back(m_random.chance(50));
        lits.push_back(literal(v, signs.back()));
    }
    unsigned const k = m_random.below(static_cast<unsigned>(vars.size()) + 1);
    m_oracle.add_condition([places, signs, k](bits a) {
        unsigned n = 0;
        for (unsigned i = 0; i < places.size(); ++i) n += (((a >> places[i]) & 1) != 0) != signs[i] ? 1 : 0;
        return n <= k;
    });
    m_ctx->assert_constraint(new at_most_constraint(lits, k));
}

// The gate's variable becomes one of the oracle's if it is new.
void search_session::add_gate() {
    if (m_vars.size() >= m_max_vars || m_ctx->inconsistent()) return;
    std::array<literal, 3> const x = {random_literal(), random_literal(), random_literal()};
    unsigned const kind = m_random.below(3);
    literal const g = kind == 0   ? m_ctx->create_or(x[0], x[1], x[2])
                      : kind == 1 ? m_ctx->create_iff(x[0], x[1])
                                  : m_ctx->create_ite(x[0], x[1], x[2]);
    if (g.var() != 0 && index_of(g) == m_vars.size()) m_vars.push_back(g.var());
    // A copy of the literals' places: the oracle outlives nothing else.
    auto place = [this](literal l) { return l.var() == 0 ? ~0u : index_of(l); };
    std::array<unsigned, 4> const p = {place(x[0]), place(x[1]), place(x[2]), place(g)};
    std::array<bool, 4> const s = {x[0].sign(), x[1].sign(), x[2].sign(), g.sign()};
    m_oracle.add_condition([p, s, kind](bits a) {
        auto v = [&](unsigned i) { return p[i] == ~0u ? !s[i] : (((a >> p[i]) & 1) != 0) != s[i]; };
        bool const expected = kind == 0   ? v(0) || v(1) || v(2)
                              : kind == 1 ? v(0) == v(1)
                              : v(0)      ? v(1)
                                          : v(2);
        return v(3) == expected;
    });
}

void search_session::add_assumption() {
    literal const l = random_literal();
    m_ctx->add_assumption(l);
    m_assumptions.push_back(l);
}

void search_session::push() {
    if (m_levels.size() >= 60) return;
    unsigned const before = m_ctx->base_lvl();
    m_ctx->push();
    if (m_ctx->base_lvl() == before) {
        if (!m_ctx->inconsistent()) fail("push opened no scope on a consistent context");
        return;
    }
    m_levels.push_back(
        {static_cast<unsigned>(m_vars.size()), m_oracle.size(), static_cast<unsigned>(m_assumptions.size())});
    m_figures.m_max_level = std::max(m_figures.m_max_level, m_ctx->base_lvl());
}

void search_session::pop() {
    unsigned const n = m_random.below(8) == 0 ? 100 : 1 + m_random.below(2);
    m_ctx->pop(n);
    if (m_levels.empty()) return;
    unsigned const kept = m_levels.size() > n ? static_cast<unsigned>(m_levels.size()) - n : 0;
    level const& l = m_levels[kept];
    m_vars.resize(l.m_num_vars);
    m_oracle.shrink(l.m_num_conditions);
    m_assumptions.resize(l.m_num_assumptions);
    m_levels.resize(kept);
    if (m_ctx->base_lvl() != kept) fail("pop left the wrong number of scopes");
}

void search_session::reset() {
    m_ctx->reset();
    m_vars.clear();
    m_oracle.clear();
    m_assumptions.clear();
    m_levels.clear();
}

void search_session::fixed_bits(bits& fixed_true, bits& fixed_false) const {
    bits seen = 0;
    for (auto it = m_assumptions.rbegin(); it != m_assumptions.rend(); ++it) {
        bits const bit = bits(1) << index_of(*it);
        if ((seen & bit) != 0) continue;
        seen |= bit;
        (it->sign() ? fixed_false : fixed_true) |= bit;
    }
}

void search_session::check_model() {
    if (!m_ctx->get_model().is_valid()) {
        fail("no model after a satisfiable answer");
        return;
    }
    bits a = 0;
    for (unsigned i = 0; i < m_vars.size(); ++i) {
        int const v = m_ctx->get_model().value(m_vars[i]);
        if (v == 0) fail("a variable without a value");
        if (v > 0) a |= bits(1) << i;
    }
    bits fixed_true = 0;
    bits fixed_false = 0;
    fixed_bits(fixed_true, fixed_false);
    if ((a & fixed_true) != fixed_true || (a & fixed_false) != 0) fail("the model breaks an assumption");
    if (!m_oracle.holds(a)) fail("the model breaks the problem");
}

void search_session::check_core() {
    if (m_ctx->get_model().is_valid()) fail("a model after an unsatisfiable answer");
    bits fixed_true = 0;
    bits fixed_false = 0;
    fixed_bits(fixed_true, fixed_false);
    bits core_true = 0;
    bits core_false = 0;
    for (int index : m_ctx->get_unsat_core()) {
        literal const l = literal::from_index(index);
        bits const bit = bits(1) << index_of(l);
        if (((l.sign() ? fixed_false : fixed_true) & bit) == 0) fail("the core holds what is no assumption");
        if (((core_true | core_false) & bit) != 0) fail("the core names an assumption twice");
        (l.sign() ? core_false : core_true) |= bit;
    }
    if (!m_ctx->get_unsat_core().empty()) ++m_figures.m_num_cores;
    if (m_oracle.satisfiable(static_cast<unsigned>(m_vars.size()), core_true, core_false))
        fail("the core is satisfiable");
}

void search_session::compare(int answer, bool may_be_unknown) {
    bits fixed_true = 0;
    bits fixed_false = 0;
    fixed_bits(fixed_true, fixed_false);
    bool const sat = m_oracle.satisfiable(static_cast<unsigned>(m_vars.size()), fixed_true, fixed_false);
    (sat ? m_figures.m_num_sat : m_figures.m_num_unsat) += 1;
    if (answer == 0) {
        if (!may_be_unknown) fail("unknown without a reason");
        ++m_figures.m_num_stopped;
        if (!m_ctx->get_unsat_core().empty()) fail("a core without a refutation");
    } else if (answer == 1) {
        if (!sat) fail("satisfiable, but the oracle finds no model");
        check_model();
    } else {
        if (sat) fail("unsatisfiable, but the oracle finds a model");
        check_core();
    }
    check_quiet();
}

void search_session::check_quiet() {
    if (m_ctx->scope_lvl() != m_ctx->base_lvl()) fail("a search scope survived");
    if (m_theory != nullptr) {
        if (m_theory->m_depth != m_ctx->base_lvl()) fail("pushes and pops of the theory do not match");
        if (m_theory->m_broken) fail("an atom was told wrongly");
    }
    m_ctx->check_invariant();
}

bool search_session::check() {
    if (m_theory != nullptr) m_theory->m_extra_budget = 40;
    compare(m_ctx->check(), false);
    return m_failure.empty();
}

// A stop at some conflict, and exceptions from the theory; afterwards the same question in peace.
void search_session::check_stopped() {
    unsigned countdown = 1 + m_random.below(6);
    if (m_theory != nullptr) {
        m_theory->m_extra_budget = 40;
        m_theory->m_moods.m_throw_ppm = m_random.chance(60) ? 10000 : 0;
    }
    m_ctx->set_progress_callback(
        [&countdown](context& c) {
            if (--countdown == 0) c.stop_the_search();
        },
        1);
    try {
        compare(m_ctx->check(), true);
    } catch (seam_exception const&) {
        ++m_figures.m_num_thrown;
        check_quiet();
    }
    m_ctx->set_progress_callback(nullptr, 1);
    if (m_theory != nullptr) m_theory->m_moods.m_throw_ppm = 0;
    check();
}

void search_session::act() {
    session_weights const& w = m_weights;
    std::array<unsigned, 11> const weights = {w.m_new_var, w.m_clause,        w.m_gate, w.m_constraint,
                                              w.m_hidden,  w.m_assume,        w.m_push, w.m_pop,
                                              w.m_check,   w.m_stopped_check, w.m_reset};
    unsigned total = 0;
    for (unsigned x : weights) total += x;
    unsigned r = m_random.below(total);
    unsigned what = 0;
    while (r >= weights[what]) r -= weights[what++];
    if (m_vars.empty()) what = 0;
    // Without this most of a session would be spent on a problem that is refuted for good.
    if (m_ctx->inconsistent() && m_random.chance(60)) what = m_levels.empty() ? 10 : 7;
    switch (what) {
    case 0:
        if (m_vars.size() < m_max_vars) new_var();
        break;
    case 1:
        add_random_clauses(1 + m_random.below(6), 0);
        break;
    case 2:
        add_gate();
        break;
    case 3:
        if (m_random.chance(30)) add_random_constraint();
        break;
    case 4:
        add_random_hidden(1 + m_random.below(4));
        break;
    case 5:
        add_assumption();
        break;
    case 6:
        push();
        break;
    case 7:
        pop();
        break;
    case 8:
        check();
        break;
    case 9:
        check_stopped();
        break;
    default:
        reset();
        break;
    }
}

bool search_session::run(unsigned num_acts) {
    unsigned const first = std::min(m_max_vars, 3 + m_random.below(m_max_vars - 2));
    while (m_vars.size() < first) new_var();
    for (; num_acts > 0 && m_failure.empty(); --num_acts) act();
    if (m_failure.empty() && !m_vars.empty()) check();
    return m_failure.empty();
}

void search_session::add_figures(session_figures& out) const {
    vexor::statistics const s = m_ctx->get_statistics();
    out.m_num_sat += m_figures.m_num_sat;
    out.m_num_unsat += m_figures.m_num_unsat;
    out.m_num_cores += m_figures.m_num_cores;
    out.m_num_stopped += m_figures.m_num_stopped;
    out.m_num_thrown += m_figures.m_num_thrown;
    out.m_max_level = std::max(out.m_max_level, m_figures.m_max_level);
    out.m_num_conflicts += s.m_num_conflicts;
    out.m_num_restarts += s.m_num_restarts;
    out.m_num_deleted += s.m_num_deleted_clauses;
    out.m_num_simplified += s.m_num_simplified_clauses;
    if (m_theory == nullptr) return;
    out.m_num_lazy += m_theory->m_num_lazy + m_theory->m_num_conflicts;
    out.m_num_lemmas += m_theory->m_num_lemmas;
    out.m_num_reinits += m_theory->m_num_reinits;
}

} // namespace vexor_test
