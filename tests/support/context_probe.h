// Opens a context to its tests.
#pragma once

#include "search/context.h"

namespace vexor {

// Drives the search by hand and looks at what the class keeps to itself. Nothing here adds behaviour: each
// function is one call or one member.
class context_probe {
public:
    explicit context_probe(context& ctx)
        : m_ctx(ctx) {}

    // A search scope with one decision, as context::decide makes it; nothing is propagated yet.
    void decide(literal l) {
        m_ctx.create_backtrack_point();
        m_ctx.assign_unassigned(l, gexplanation::mk_decision(l));
    }
    void open_scope() { m_ctx.create_backtrack_point(); }
    void backtrack(unsigned n, bool propagate = true, bool clear_conflict = true) {
        m_ctx.backtrack(n, propagate, clear_conflict);
    }
    bool resolve_conflict() { return m_ctx.resolve_conflict(); }
    int select_var() { return m_ctx.select_var(); }
    void simplify() { m_ctx.simplify_clauses(); }
    void delete_irrelevant() { m_ctx.remove_irrelevant_learned_clauses(); }
    void delete_half() { m_ctx.remove_half_of_learned_clauses(); }
    void collect_memory() { m_ctx.collect_clause_memory(); }
    [[nodiscard]] unsigned timestamp2level(std::int64_t ts) const { return m_ctx.timestamp2level(ts); }
    [[nodiscard]] std::int64_t scope_floor(unsigned scope) const { return m_ctx.scope_floor(scope); }

    [[nodiscard]] svector<clause_ref>& problem_clauses() { return m_ctx.m_problem_clauses; }
    [[nodiscard]] svector<clause_ref>& learned_clauses() { return m_ctx.m_learned_clauses; }
    [[nodiscard]] watch_set& watches(literal l) { return m_ctx.watches(l); }
    [[nodiscard]] svector<literal>& last_learned() { return m_ctx.m_learned_lits; }
    [[nodiscard]] gexplanation conflict() const { return m_ctx.m_conflict; }
    [[nodiscard]] unsigned qhead() const { return m_ctx.m_qhead; }
    [[nodiscard]] unsigned trail_size() const { return m_ctx.m_trail.size(); }
    [[nodiscard]] unsigned theory_qhead() const { return m_ctx.m_theory_qhead; }
    [[nodiscard]] std::int64_t& simp_budget() { return m_ctx.m_simp_budget; }
    [[nodiscard]] unsigned num_input_clauses() const { return m_ctx.m_num_input_clauses; }
    [[nodiscard]] unsigned first_deletable_learned() const { return m_ctx.m_first_deletable_learned; }
    [[nodiscard]] clause_store& clauses() { return m_ctx.m_clauses; }
    [[nodiscard]] def_table& definitions() { return m_ctx.m_def2var; }
    [[nodiscard]] double activity(int var) const { return m_ctx.m_activity[static_cast<unsigned>(var)]; }
    [[nodiscard]] bool in_heap(int var) const { return m_ctx.m_var_heap.contains(var); }
    [[nodiscard]] unsigned& search_lvl() { return m_ctx.m_search_lvl; }
    [[nodiscard]] out_of_order_data const* record_of_scope(unsigned scope) const {
        return scope - 1 < m_ctx.m_out_of_order_stack.size() ? &m_ctx.m_out_of_order_stack[scope - 1]
                                                             : nullptr;
    }

private:
    context& m_ctx;
};

} // namespace vexor
