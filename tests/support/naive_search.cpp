#include "support/naive_search.h"

#include <algorithm>

namespace vexor_test {

naive_search::naive_search(settings const& s)
    : m_settings(s) {
    for (int i = 0; i < 3; ++i) new_var();
    value(0) = 1;
    value(1) = -1;
    m_heap.resize(1);
}

int naive_search::new_var() {
    int const var = static_cast<int>(m_reasons.size());
    m_values.resize(m_values.size() + 2, 0);
    m_watches.resize(m_watches.size() + 2);
    m_reasons.emplace_back();
    m_positions.push_back(-1);
    m_activity.push_back(0);
    m_last_phase.push_back(false);
    if (var >= 3) heap_insert(var);
    return var;
}

unsigned naive_search::level_of(int var) const {
    int const p = m_positions[static_cast<unsigned>(var)];
    unsigned level = 0;
    while (level < scope() && static_cast<int>(m_scopes[level]) <= p) ++level;
    return level;
}

void naive_search::assign(int lit, reason why) {
    value(lit) = 1;
    value(lit ^ 1) = -1;
    m_positions[static_cast<unsigned>(lit / 2)] = static_cast<int>(m_trail.size());
    m_reasons[static_cast<unsigned>(lit / 2)] = why;
    m_trail.push_back(lit);
}

void naive_search::assert_fact(int lit) {
    if (value(lit) == 0) assign(lit, reason());
    m_positions[static_cast<unsigned>(lit / 2)] = -1;
}

void naive_search::add_binary(int a, int b) {
    watches(a ^ 1).m_literals.push_front(b);
    watches(b ^ 1).m_literals.push_front(a);
}

naive_search::clause* naive_search::add_long(std::vector<int> lits, bool learned) {
    m_memory.push_back(std::make_unique<clause>());
    clause* c = m_memory.back().get();
    c->m_lits = std::move(lits);
    c->m_learned = learned;
    c->m_activity = learned ? 1 : 0;
    (learned ? m_learned_clauses : m_problem_clauses).push_back(c);
    watches(c->m_lits[0] ^ 1).m_clauses.push_back(c);
    watches(c->m_lits[1] ^ 1).m_clauses.push_back(c);
    return c;
}

void naive_search::detach(clause* c) {
    for (unsigned i = 0; i < 2; ++i) {
        std::vector<clause*>& list = watches(c->m_lits[i] ^ 1).m_clauses;
        list.erase(std::remove(list.begin(), list.end(), c), list.end());
    }
}

// At scope 0 only.
void naive_search::add_clause(std::vector<int> lits) {
    std::sort(lits.begin(), lits.end());
    lits.erase(std::unique(lits.begin(), lits.end()), lits.end());
    std::vector<int> kept;
    for (int l : lits) {
        if (value(l) > 0) return;
        if (value(l) == 0) kept.push_back(l);
    }
    for (unsigned i = 1; i < kept.size(); ++i)
        if (kept[i] == (kept[i - 1] ^ 1)) return;
    if (kept.empty())
        m_inconsistent = true;
    else if (kept.size() == 1)
        assert_fact(kept[0]);
    else if (kept.size() == 2)
        add_binary(kept[0], kept[1]);
    else
        add_long(kept, false);
}

// False on a conflict.
bool naive_search::visit(int lit) {
    int const n = lit ^ 1;
    for (int x : watches(lit).m_literals) {
        if (value(x) < 0) {
            m_conflict_lits = {n, x};
            m_conflict.m_clause = nullptr;
            return false;
        }
        if (value(x) == 0) assign(x, {nullptr, lit});
    }
    std::vector<clause*> const list = watches(lit).m_clauses;
    std::vector<clause*> kept;
    for (unsigned i = 0; i < list.size(); ++i) {
        std::vector<int>& c = list[i]->m_lits;
        if (c[0] == n) std::swap(c[0], c[1]);
        if (value(c[0]) <= 0) {
            unsigned k = 2;
            while (k < c.size() && value(c[k]) < 0) ++k;
            if (k < c.size()) {
                std::swap(c[1], c[k]);
                watches(c[1] ^ 1).m_clauses.push_back(list[i]);
                continue;
            }
            if (value(c[0]) < 0) {
                m_conflict_lits = c;
                m_conflict.m_clause = list[i];
                kept.insert(kept.end(), list.begin() + i, list.end());
                watches(lit).m_clauses = kept;
                return false;
            }
            assign(c[0], {list[i], -1});
        }
        kept.push_back(list[i]);
    }
    watches(lit).m_clauses = kept;
    return true;
}

bool naive_search::propagate() {
    if (m_inconsistent) return false;
    while (m_head < m_trail.size()) {
        ++m_num_propagations;
        --m_budget;
        if (visit(m_trail[m_head++])) continue;
        m_head = static_cast<unsigned>(m_trail.size());
        m_inconsistent = true;
        ++m_num_conflicts;
        return false;
    }
    return true;
}

// The true literals that imply lit; of the conflict if is_conflict.
std::vector<int> naive_search::antecedents(int lit, reason const& why, bool is_conflict) {
    std::vector<int> result;
    if (is_conflict) {
        for (int x : m_conflict_lits) result.push_back(x ^ 1);
    } else if (why.m_clause != nullptr) {
        for (int x : why.m_clause->m_lits)
            if (x != lit) result.push_back(x ^ 1);
    } else if (why.m_antecedent >= 0) {
        result.push_back(why.m_antecedent);
    }
    return result;
}

void naive_search::bump(int var) {
    m_activity[static_cast<unsigned>(var)] += m_increment;
    if (m_activity[static_cast<unsigned>(var)] > 1e100) {
        for (double& a : m_activity) a *= 1e-100;
        m_increment *= 1e-100;
    }
    if (unsigned const i = heap_find(var)) heap_up(i);
}

// Every way back from var ends in the clause or at a fact.
bool naive_search::redundant(int var, std::vector<bool>& in_clause) {
    reason const& why = m_reasons[static_cast<unsigned>(var)];
    if (why.m_clause == nullptr && why.m_antecedent < 0) return false;
    int const holder = value(2 * var) > 0 ? 2 * var : 2 * var + 1;
    for (int x : antecedents(holder, why, false)) {
        if (level_of(x / 2) == 0 || in_clause[static_cast<unsigned>(x / 2)]) continue;
        if (!redundant(x / 2, in_clause)) return false;
    }
    return true;
}

bool naive_search::resolve() {
    if (scope() == 0) return false;
    std::vector<int> learned = {-1};
    std::vector<bool> marked(m_reasons.size(), false);
    unsigned open = 0;
    int lit = -1;
    reason why = m_conflict;
    int position = static_cast<int>(m_trail.size());
    do {
        if (why.m_clause != nullptr && why.m_clause->m_learned) ++why.m_clause->m_activity;
        for (int x : antecedents(lit, why, lit < 0)) {
            unsigned const var = static_cast<unsigned>(x / 2);
            if (marked[var] || level_of(x / 2) == 0) continue;
            marked[var] = true;
            bump(x / 2);
            if (level_of(x / 2) < scope())
                learned.push_back(x ^ 1);
            else
                ++open;
        }
        do --position;
        while (!marked[static_cast<unsigned>(m_trail[static_cast<unsigned>(position)] / 2)]);
        lit = m_trail[static_cast<unsigned>(position)];
        why = m_reasons[static_cast<unsigned>(lit / 2)];
        marked[static_cast<unsigned>(lit / 2)] = false;
    } while (--open > 0);
    learned[0] = lit ^ 1;
    m_num_analyzed += learned.size();

    std::vector<bool> in_clause(m_reasons.size(), false);
    for (unsigned i = 1; i < learned.size(); ++i) in_clause[static_cast<unsigned>(learned[i] / 2)] = true;
    std::vector<int> kept = {learned[0]};
    unsigned back = 0;
    for (unsigned i = 1; i < learned.size(); ++i) {
        if (redundant(learned[i] / 2, in_clause)) continue;
        kept.push_back(learned[i]);
        back = std::max(back, level_of(learned[i] / 2));
    }
    backtrack(back);
    learn(kept);
    return true;
}

void naive_search::backtrack(unsigned level) {
    m_inconsistent = false;
    if (level >= scope()) return;
    unsigned const size = m_scopes[level];
    while (m_trail.size() > size) {
        int const lit = m_trail.back();
        m_trail.pop_back();
        value(lit) = value(lit ^ 1) = 0;
        m_reasons[static_cast<unsigned>(lit / 2)] = reason();
        m_last_phase[static_cast<unsigned>(lit / 2)] = lit % 2 == 0;
        if (heap_find(lit / 2) == 0) heap_insert(lit / 2);
    }
    m_scopes.resize(level);
    m_head = size;
}

void naive_search::learn(std::vector<int> lits) {
    m_learned.push_back(lits);
    if (lits.size() == 1) {
        assert_fact(lits[0]);
    } else if (lits.size() == 2) {
        add_binary(lits[0], lits[1]);
        assign(lits[0], {nullptr, lits[1] ^ 1});
    } else {
        auto place = [this](int l) { return m_positions[static_cast<unsigned>(l / 2)]; };
        auto const newest =
            std::max_element(lits.begin() + 1, lits.end(), [&](int a, int b) { return place(a) < place(b); });
        std::swap(lits[1], *newest);
        clause* c = add_long(lits, true);
        assign(c->m_lits[0], {c, -1});
    }
}

bool naive_search::locked(clause const* c) const {
    return m_reasons[static_cast<unsigned>(c->m_lits[0] / 2)].m_clause == c;
}

void naive_search::delete_irrelevant() {
    unsigned const n = static_cast<unsigned>(m_learned_clauses.size());
    unsigned const head_end = n / m_settings.m_ratio * (m_settings.m_ratio - 1);
    std::vector<clause*> kept;
    for (unsigned i = 0; i < n; ++i) {
        clause* c = m_learned_clauses[i];
        unsigned const relevancy = i < head_end ? m_settings.m_head_relevancy : m_settings.m_tail_relevancy;
        auto const open =
            std::count_if(c->m_lits.begin(), c->m_lits.end(), [this](int l) { return value(l) == 0; });
        if (!locked(c) && c->m_activity < m_settings.m_head_activity && open > static_cast<long>(relevancy)) {
            detach(c);
            ++m_num_deleted;
            continue;
        }
        c->m_activity /= 4;
        kept.push_back(c);
    }
    m_learned_clauses = kept;
}

// False if the clause is gone.
bool naive_search::simplify_one(clause* c) {
    if (locked(c)) return true;
    bool const satisfied =
        std::any_of(c->m_lits.begin(), c->m_lits.end(), [this](int l) { return value(l) > 0; });
    if (satisfied) {
        detach(c);
        ++m_num_simplified;
        return false;
    }
    c->m_lits.erase(
        std::remove_if(c->m_lits.begin() + 2, c->m_lits.end(), [this](int l) { return value(l) < 0; }),
        c->m_lits.end());
    return true;
}

void naive_search::simplify() {
    if (!m_settings.m_simplify_always && (m_trail.size() == m_simplified_trail || m_budget > 0)) return;
    for (; m_simplified_trail < m_trail.size(); ++m_simplified_trail) {
        int const l = m_trail[m_simplified_trail];
        for (int x : watches(l ^ 1).m_literals) {
            std::deque<int>& other = watches(x ^ 1).m_literals;
            auto const it = std::find(other.begin(), other.end(), l);
            if (it != other.end()) other.erase(it);
            ++m_num_simplified;
        }
        watches(l) = watch_list();
        watches(l ^ 1) = watch_list();
    }
    m_budget = 0;
    for (std::vector<clause*>* list : {&m_problem_clauses, &m_learned_clauses}) {
        std::vector<clause*> kept;
        for (clause* c : *list) {
            if (!simplify_one(c)) continue;
            m_budget += static_cast<long long>(c->m_lits.size());
            kept.push_back(c);
        }
        *list = kept;
    }
}

bool naive_search::decide() {
    int var = -1;
    if (m_random.draw() < 0.02) {
        int const v = static_cast<int>(m_random.draw() * static_cast<double>(m_reasons.size()));
        if (v >= 3 && value(2 * v) == 0) var = v;
    }
    while (var < 0 && m_heap.size() > 1) {
        int const v = heap_pop();
        if (value(2 * v) == 0) var = v;
    }
    if (var < 0) return false;
    bool phase = false;
    if (m_settings.m_polarity == 1)
        phase = true;
    else if (m_settings.m_polarity == 4)
        phase = m_last_phase[static_cast<unsigned>(var)];
    else if (m_settings.m_polarity != 0)
        phase = m_random.draw() * 2 >= 1;
    m_scopes.push_back(static_cast<unsigned>(m_trail.size()));
    m_decisions.push_back(2 * var + (phase ? 0 : 1));
    assign(m_decisions.back(), reason());
    return true;
}

int naive_search::run(unsigned limit) {
    unsigned conflicts = 0;
    while (true) {
        while (!propagate()) {
            ++conflicts;
            if (!resolve()) return -1;
            m_increment *= 1.052631;
            if (m_settings.m_delete && m_num_conflicts % m_settings.m_deletion_frequency == 0)
                delete_irrelevant();
        }
        if (limit != 0 && conflicts > limit) {
            ++m_num_restarts;
            return 0;
        }
        if (scope() == 0) simplify();
        if (!decide()) return 1;
    }
}

int naive_search::check() {
    if (!propagate()) return -1;
    int result = 0;
    unsigned limit = m_settings.m_restart_limit;
    while (result == 0) {
        result = run(limit);
        limit = limit * 3 / 2;
        if (result == 1) m_model = m_values;
        if (result >= 0) {
            backtrack(0);
            if (!propagate()) result = -1;
        }
    }
    if (result == 1) {
        std::vector<int> by_var;
        for (unsigned i = 0; i < m_model.size(); i += 2) by_var.push_back(m_model[i]);
        m_model = by_var;
    }
    return result;
}

bool naive_search::better(int a, int b) const {
    return m_activity[static_cast<unsigned>(a)] > m_activity[static_cast<unsigned>(b)];
}

unsigned naive_search::heap_find(int var) const {
    for (unsigned i = 1; i < m_heap.size(); ++i)
        if (m_heap[i] == var) return i;
    return 0;
}

void naive_search::heap_up(unsigned i) {
    for (; i > 1 && better(m_heap[i], m_heap[i / 2]); i /= 2) std::swap(m_heap[i], m_heap[i / 2]);
}

void naive_search::heap_insert(int var) {
    m_heap.push_back(var);
    heap_up(static_cast<unsigned>(m_heap.size()) - 1);
}

int naive_search::heap_pop() {
    int const root = m_heap[1];
    m_heap[1] = m_heap.back();
    m_heap.pop_back();
    unsigned i = 1;
    while (2 * i < m_heap.size()) {
        unsigned child = 2 * i;
        if (child + 1 < m_heap.size() && better(m_heap[child + 1], m_heap[child])) ++child;
        if (!better(m_heap[child], m_heap[i])) break;
        std::swap(m_heap[child], m_heap[i]);
        i = child;
    }
    return root;
}

} // namespace vexor_test
