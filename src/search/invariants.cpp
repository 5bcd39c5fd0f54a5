// Recomputes the Boolean state of a context from scratch and compares.
#include "search/context.h"

#include "base/bitvector.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace vexor {

namespace {

void require(bool condition, char const* what) {
    if (condition) return;
    std::fprintf(stderr, "broken invariant of the search: %s\n", what);
    std::abort();
}

} // namespace

// One method per structure; each is linear in what it looks at, but for the search of watch entries.
class invariant_checker {
public:
    explicit invariant_checker(context const& ctx)
        : m_ctx(ctx) {}

    void run() {
        check_sizes();
        check_trail();
        check_assignment();
        check_heap();
        check_lists();
        find_discarded();
        check_watches();
        check_binary_clauses();
        check_out_of_order_records();
        if (!m_ctx.inconsistent() && m_ctx.m_qhead == m_ctx.m_trail.size()) check_fixpoint();
    }

private:
    void check_sizes() const {
        unsigned const n = m_ctx.num_bool_vars();
        require(n >= first_bool_var, "the reserved variables exist");
        require(m_ctx.m_assignment.size() == 2 * n && m_ctx.m_watches.size() == 2 * n,
                "size of an array by literal");
        require(m_ctx.m_causes.size() == n && m_ctx.m_activity.size() == n, "size of an array by variable");
        require(m_ctx.m_scopes.size() == m_ctx.m_scope_lvl, "one trail mark per scope");
        require(m_ctx.m_base_level_trails.size() == m_ctx.m_base_lvl, "one base level trail per user scope");
        require(m_ctx.m_base_lvl <= m_ctx.m_scope_lvl, "base level below the scope");
        require(m_ctx.m_qhead <= m_ctx.m_trail.size(), "head of the propagation");
        require(m_ctx.m_theory_qhead <= m_ctx.m_trail.size(), "head of the atoms");
        unsigned num_atoms = 0;
        for (unsigned var = 0; var < n; ++var) {
            bool const has_atom = m_ctx.m_bool_var_bodies[var].has_atom();
            require(m_ctx.m_has_atom.get(var) == has_atom, "flag of an atom");
            num_atoms += has_atom ? 1 : 0;
        }
        require(m_ctx.m_num_atoms == num_atoms, "number of atoms");
        require(m_ctx.value(true_literal) == 1 && m_ctx.value(false_literal) == -1, "value of the constant");
    }

    // Scopes start at growing positions; a timestamp is the position and the scope, or the floor of a base
    // level.
    void check_trail() const {
        for (unsigned i = 1; i < m_ctx.m_scopes.size(); ++i)
            require(m_ctx.m_scopes[i - 1] < m_ctx.m_scopes[i], "scopes start at different positions");
        unsigned scope = 0;
        for (unsigned i = 0; i < m_ctx.m_trail.size(); ++i) {
            while (scope < m_ctx.m_scopes.size() && m_ctx.m_scopes[scope] <= i) ++scope;
            if (!m_ctx.m_trail[i].is_literal()) continue;
            literal const l = m_ctx.m_trail[i].get_literal();
            require(m_ctx.value(l) == 1, "a literal on the trail is true");
            std::int64_t const ts = m_ctx.timestamp(l);
            bool const own = ts == ((static_cast<std::int64_t>(i) << 5) | (scope & 31));
            if (own) {
                require(m_ctx.timestamp2level(ts) == scope, "scope of a timestamp");
                continue;
            }
            bool is_floor = false;
            for (unsigned s = 0; s <= std::min(scope, m_ctx.m_base_lvl); ++s)
                is_floor |= ts == m_ctx.scope_floor(s);
            require(is_floor, "a timestamp is the position or a floor");
        }
    }

    void check_assignment() const {
        unsigned num_on_trail = 0;
        for (trail_word word : m_ctx.m_trail) num_on_trail += word.is_literal() ? 1 : 0;
        unsigned num_assigned = 0;
        for (unsigned var = first_bool_var; var < m_ctx.num_bool_vars(); ++var) {
            literal const l(static_cast<int>(var));
            int const v = m_ctx.value(l);
            require(v == -m_ctx.value(~l), "both polarities agree");
            require(!m_ctx.m_marks.get(var), "marks are clear between analyses");
            if (v == 0) {
                require(m_ctx.antecedent(l.var()).is_null(), "an unassigned variable has no reason");
                continue;
            }
            ++num_assigned;
            check_reason(v > 0 ? l : ~l);
        }
        require(num_assigned == num_on_trail, "assigned variables stand on the trail once");
    }

    void check_reason(literal l) const {
        gexplanation const reason = m_ctx.antecedent(l.var());
        switch (reason.tag()) {
        case gexplanation::binary:
            require(m_ctx.value(reason.get_literal()) > 0, "a binary reason is true");
            break;
        case gexplanation::decision:
            require(reason.get_literal() == l, "a decision names its literal");
            break;
        case gexplanation::clausal: {
            clause const& c = m_ctx.m_clauses[reason.get_clause()];
            require(!c.removed() && c[0] == l, "a clause reason asserts its first literal");
            for (unsigned i = 1; i < c.size(); ++i) {
                require(m_ctx.value(c[i]) < 0, "the rest of a clause reason is false");
                require(m_ctx.timestamp(c[i]) < m_ctx.timestamp(l) || m_ctx.timestamp(l) <= base_floor(),
                        "a reason is older than what it implies");
            }
            break;
        }
        case gexplanation::lazy:
            require(!reason.is_null(), "an assigned variable has a reason");
            break;
        }
    }

    [[nodiscard]] std::int64_t base_floor() const { return m_ctx.scope_floor(m_ctx.m_base_lvl); }

    void check_heap() const {
        m_ctx.m_var_heap.check_invariant();
        for (unsigned var = first_bool_var; var < m_ctx.num_bool_vars(); ++var) {
            literal const l(static_cast<int>(var));
            require(m_ctx.value(l) != 0 || m_ctx.m_var_heap.contains(l.var()),
                    "unassigned variables are in the heap");
        }
        for (int var = 0; var < first_bool_var; ++var)
            require(!m_ctx.m_var_heap.contains(var), "reserved variables are not in the heap");
    }

    void check_lists() const {
        std::uint64_t num_problem = 0;
        std::uint64_t num_learned = 0;
        for (clause_ref ref : m_ctx.m_problem_clauses) {
            require(!m_ctx.m_clauses[ref].learned() && !m_ctx.m_clauses[ref].removed(),
                    "kind of a problem clause");
            num_problem += m_ctx.m_clauses[ref].size();
        }
        for (clause_ref ref : m_ctx.m_learned_clauses) {
            require(m_ctx.m_clauses[ref].learned() && !m_ctx.m_clauses[ref].removed(),
                    "kind of a learned clause");
            num_learned += m_ctx.m_clauses[ref].size();
        }
        require(num_problem <= m_ctx.m_stats.m_num_problem_literals, "count of problem literals");
        require(num_learned <= m_ctx.m_stats.m_num_learned_literals, "count of learned literals");
        require(m_ctx.m_first_deletable_learned <= m_ctx.m_learned_clauses.size(), "first deletable clause");
    }

    // Each clause is watched by the complements of its first two literals and by nothing else. A set freed at
    // scope 0 has lost its entries; it may have got new ones from clauses made above the base level.
    void check_watches() const {
        std::uint64_t num_entries = 0;
        for (unsigned i = 0; i < m_ctx.m_watches.size(); ++i) {
            literal const n = ~literal::from_index(static_cast<int>(i));
            watch_set const& set = m_ctx.m_watches[i];
            bool const freed = is_discarded(n);
            for (watch_entry const* it = set.begin_clauses(); it != set.end_clauses(); ++it) {
                if (!it->is_clause()) continue;
                num_entries += freed ? 0 : 1;
                clause const& c = m_ctx.m_clauses[it->get_clause()];
                require(!c.removed(), "no watch entry of a removed clause");
                require(c[0] == n || c[1] == n, "a watch entry stands at a watched literal");
            }
        }
        std::uint64_t num_expected = 0;
        for (svector<clause_ref> const* list : {&m_ctx.m_problem_clauses, &m_ctx.m_learned_clauses}) {
            for (clause_ref ref : *list) {
                clause const& c = m_ctx.m_clauses[ref];
                for (unsigned i = 0; i < 2; ++i) {
                    bool const freed = is_discarded(c[i]);
                    require(freed || m_ctx.contains_clause(m_ctx.watches(~c[i]), ref), "a clause is watched");
                    num_expected += freed ? 0 : 1;
                }
            }
        }
        require(num_entries == num_expected, "each clause has one entry per watched literal");
    }

    // The watch sets of both polarities were freed by simplify_clauses.
    [[nodiscard]] bool is_discarded(literal l) const {
        return m_ctx.value(l) != 0 && m_discarded.get(static_cast<unsigned>(l.var()));
    }

    void find_discarded() {
        m_discarded.resize(m_ctx.num_bool_vars(), false);
        for (unsigned i = 0; i < m_ctx.m_simp_qhead && i < m_ctx.m_trail.size(); ++i)
            if (m_ctx.m_trail[i].is_literal())
                m_discarded.set(static_cast<unsigned>(m_ctx.m_trail[i].get_literal().var()), true);
    }

    void check_binary_clauses() const {
        for (unsigned i = 0; i < m_ctx.m_watches.size(); ++i) {
            literal const n = ~literal::from_index(static_cast<int>(i));
            watch_set const& set = m_ctx.m_watches[i];
            for (literal const* it = set.begin_literals(); it != set.end_literals(); ++it) {
                if (is_discarded(*it)) continue;
                watch_set const& other = m_ctx.watches(~*it);
                require(std::find(other.begin_literals(), other.end_literals(), n) != other.end_literals(),
                        "a binary clause stands in two sets");
            }
        }
    }

    void check_out_of_order_records() const {
        for (unsigned i = 0; i < m_ctx.m_out_of_order_stack.size(); ++i) {
            out_of_order_data const& record = m_ctx.m_out_of_order_stack[i];
            bool const empty = record.m_literals.empty() && record.m_constraints.empty() &&
                               record.m_binary_clauses.empty() && record.m_clauses.empty() &&
                               record.m_bool_vars.empty();
            require(empty || !record.m_empty, "the flag of an out-of-order record");
            require(empty || (i >= m_ctx.m_base_lvl && i < m_ctx.m_scope_lvl),
                    "records belong to open search scopes");
            for (clause_ref ref : record.m_clauses)
                require(m_ctx.m_clauses[ref].out_of_order(), "a recorded clause is marked");
        }
    }

    // With everything propagated, no clause is false or unit.
    void check_fixpoint() const {
        for (unsigned i = 0; i < m_ctx.m_watches.size(); ++i) {
            if (m_ctx.value(literal::from_index(static_cast<int>(i))) <= 0) continue;
            watch_set const& set = m_ctx.m_watches[i];
            for (literal const* it = set.begin_literals(); it != set.end_literals(); ++it)
                require(m_ctx.value(*it) > 0, "binary clauses are propagated");
        }
        for (svector<clause_ref> const* list : {&m_ctx.m_problem_clauses, &m_ctx.m_learned_clauses}) {
            for (clause_ref ref : *list) {
                clause const& c = m_ctx.m_clauses[ref];
                unsigned num_open = 0;
                bool satisfied = false;
                for (literal l : c) {
                    satisfied |= m_ctx.value(l) > 0;
                    num_open += m_ctx.value(l) == 0 ? 1 : 0;
                }
                require(satisfied || num_open >= 2, "clauses are propagated");
            }
        }
        for (constraint* c : m_ctx.m_constraints)
            require(c->check_invariant(const_cast<context*>(&m_ctx)), "a constraint's own invariant");
        if (m_ctx.nothing_waits()) m_ctx.m_hub->check_invariant();
    }

    context const& m_ctx;
    bitvector m_discarded; // by variable: see is_discarded
};

void context::check_invariant() const { invariant_checker(*this).run(); }

} // namespace vexor
