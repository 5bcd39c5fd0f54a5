// Search scopes: opening them, undoing them, and the trail.
#include "search/context.h"

namespace vexor {

void context::create_backtrack_point() {
    ++m_scope_lvl;
    m_region.begin_scope();
    m_scopes.push_back(m_trail.size());
    m_hub->push();
}

// A record needs no propagation. The head passes it only if it stood right behind: a literal that still waits
// before the record must not be skipped.
void context::push_trail_record(trail_word record) {
    if (m_qhead == m_trail.size()) ++m_qhead;
    if (m_theory_qhead == m_trail.size()) ++m_theory_qhead;
    m_trail.push_back(record);
}

namespace {

// Sets a flag for the life of a block and puts the old value back on every way out.
class flag_frame {
public:
    explicit flag_frame(bool& flag)
        : m_flag(flag)
        , m_old(flag) {
        m_flag = true;
    }
    flag_frame(flag_frame const&) = delete;
    flag_frame& operator=(flag_frame const&) = delete;
    ~flag_frame() { m_flag = m_old; }

private:
    bool& m_flag;
    bool m_old;
};

} // namespace

// Undoes n scopes, at most one of them a user scope. Records are undone while the arena that holds them still
// stands.
void context::backtrack(unsigned n, bool propagate, bool clear_conflict) {
    VEXOR_ASSERT(n <= m_scope_lvl);
    flag_frame frame(m_backtracking);
    if (clear_conflict) m_conflict = null_explanation;
    unsigned const old_scope = m_scope_lvl;
    if (n > 0) {
        pop_trail_stack_until(m_scopes[old_scope - n]);
        for (unsigned i = 0; i < n; ++i) {
            --m_scope_lvl;
            m_hub->pop();
            m_scopes.pop_back();
            m_region.end_scope(false);
        }
        if (m_scope_lvl < m_base_lvl) {
            VEXOR_ASSERT(m_scope_lvl + 1 == m_base_lvl);
            m_base_lvl = m_scope_lvl;
            undo_base_level_trail(m_base_level_trails.back());
            m_base_level_trails.pop_back();
        }
    }
    reanalyze(old_scope);
    VEXOR_INVARIANT(3, check_invariant());
    if (propagate) propagate_constraints();
}

// The timestamp of an unassigned variable is left as it is; nothing reads it. An atom that stays assigned but was
// not handed to the theories yet still will be: a search may be stopped at any point.
void context::pop_trail_stack_until(unsigned size) {
    while (m_trail.size() > size) {
        trail_word const word = m_trail.back();
        m_trail.pop_back();
        if (!word.is_literal()) {
            word.get_object()->undo(this);
            continue;
        }
        literal const l = word.get_literal();
        m_assignment[static_cast<unsigned>(l.index())] = 0;
        m_assignment[static_cast<unsigned>((~l).index())] = 0;
        m_causes[static_cast<unsigned>(l.var())].m_antecedent = null_explanation;
        m_last_phase.set(static_cast<unsigned>(l.var()), !l.sign());
        if (!m_var_heap.contains(l.var())) m_var_heap.insert(l.var());
    }
    m_qhead = size;
    if (m_theory_qhead > size) m_theory_qhead = size;
}

} // namespace vexor
