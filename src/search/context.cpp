// Life of a context: birth, reset, death, figures.
#include "search/context.h"

#include "base/diagnostics.h"
#include "search/internalizer.h"

#include <sys/resource.h>
#include <utility>

namespace vexor {

namespace {

constexpr unsigned region_block_size = 8192;

literal const no_literals[2] = {null_literal, null_literal};

} // namespace

context::context(ast_manager* manager)
    : m_ast_manager(manager)
    , m_hub(std::make_unique<theory_hub>())
    , m_model(this)
    , m_def2var(m_bool_var_bodies)
    , m_var_heap(var_lt{this})
    , m_region(region_block_size)
    , m_conflict_clause(m_clauses.create(no_literals, 2, false)) {
    remove_search_callback();
    reserve_support_vars();
}

context::~context() { flush_data(); }

void context::set_theory_hub(std::unique_ptr<theory_hub> hub) {
    VEXOR_ASSERT(num_bool_vars() == first_bool_var && m_scope_lvl == 0);
    m_hub = std::move(hub);
}

// Frees everything that is not freed by the containers' own destructors. Theories see the undo of the whole
// trail.
void context::flush_data() {
    bool const was_backtracking = m_backtracking;
    m_backtracking = true;
    pop_trail_stack_until(0);
    for (constraint* c : m_constraints) {
        c->remove(this, true);
        delete c;
    }
    m_constraints.reset();
    flush_bool_var_bodies();
    m_hub->flush_data();
    for (watch_set& set : m_watches) set.free_memory();
    m_backtracking = was_backtracking;
}

void context::reset() {
    flush_data();
    m_hub->reset();
    if (m_internalizer) m_internalizer->reset();
    m_stats = statistics();
    m_reason_counts.reset();
    m_def2var.reset();
    m_assignment.reset();
    m_watches.reset();
    m_causes.reset();
    m_activity.reset();
    m_bool_var_bodies.reset();
    m_marks.reset();
    m_last_phase.reset();
    m_is_guard.reset();
    m_has_atom.reset();
    m_num_atoms = 0;
    m_var_heap.reset();
    m_var_inc = 1.0;
    m_scope_lvl = m_base_lvl = 0;
    m_scopes.reset();
    m_trail.reset();
    m_qhead = 0;
    m_theory_qhead = 0;
    m_base_level_trails.reset();
    m_out_of_order_stack.reset();
    m_region.reset(false);
    m_conflict = null_explanation;
    m_clauses.reset();
    m_conflict_clause = m_clauses.create(no_literals, 2, false);
    m_problem_clauses.reset();
    m_learned_clauses.reset();
    m_num_input_clauses = m_first_deletable_learned = m_simp_qhead = 0;
    m_simp_budget = 0;
    m_assumptions.reset();
    m_weighted_vars.reset();
    m_sorted_weighted_vars.reset();
    m_random_order.reset();
    m_next_weighted_var = m_next_random_var = 0;
    m_decide_by_weight = m_prefer_weighted_vars = m_need_assignment = false;
    m_failed_assumption = null_literal;
    m_assumptions_timestamp = 0;
    m_unsat_core.reset();
    m_num_ignored_pushes = 0;
    m_type_correct = true;
    m_type_error.clear();
    m_incomplete = m_incomplete_answer = nullptr;
    m_validation_failed = false;
    m_model.reset();
    reserve_support_vars();
}

statistics context::get_statistics() const {
    statistics result = m_stats;
    result.m_num_bool_vars = num_bool_vars();
    result.m_num_problem_clauses = m_problem_clauses.size();
    result.m_num_learned_clauses = m_learned_clauses.size();
    result.m_cpu_seconds = get_cpu_time();
    result.m_memory_bytes = get_memory_used();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    result.m_peak_bytes = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
    return result;
}

} // namespace vexor
