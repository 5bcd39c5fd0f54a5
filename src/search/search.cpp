// The loops of the search: check, restarts, and one run between two restarts.
#include "search/context.h"

#include "base/diagnostics.h"
#include "search/restart_schedule.h"
#include "search/search_frames.h"
#include "search/search_settings.h"

#include <exception>
#include <iostream>
#include <utility>

namespace vexor {

// Frames one search: whatever leaves it, exceptions included, comes back to the scope where it began.
class search_frame {
public:
    explicit search_frame(context& ctx)
        : m_context(ctx)
        , m_start_scope(ctx.m_scope_lvl)
        , m_num_exceptions(std::uncaught_exceptions())
        , m_stop_frame(ctx) {}
    search_frame(search_frame const&) = delete;
    search_frame& operator=(search_frame const&) = delete;
    ~search_frame() noexcept(false) {
        if (std::uncaught_exceptions() == m_num_exceptions)
            m_context.return_to_scope(m_start_scope);
        else
            m_context.abandon_to_scope(m_start_scope);
    }
    [[nodiscard]] unsigned start_scope() const { return m_start_scope; }

private:
    context& m_context;
    unsigned m_start_scope;
    int m_num_exceptions;
    stop_frame m_stop_frame;
};

void context::return_to_scope(unsigned scope) {
    if (m_scope_lvl <= scope) return;
    try {
        backtrack(m_scope_lvl - scope, true, true);
    } catch (...) {
        abandon_to_scope(scope);
        throw;
    }
}

// The way back while an exception passes: what reanalysis finds is left waiting for the next propagation. An
// analysis may have been cut short, so its marks go. What the theories throw on this way is dropped: the
// first exception is the one that counts. Without a scope to undo, what waits belongs to the base and is
// kept.
void context::abandon_to_scope(unsigned scope) {
    m_marks.fill0();
    m_to_unmark.reset();
    m_model.reset();
    m_unsat_core.reset();
    if (m_scope_lvl <= scope) return;
    m_hub->reset_propagation_queue();
    try {
        backtrack(m_scope_lvl - scope, false, true);
    } catch (...) {
        VEXOR_ASSERT(m_scope_lvl == scope);
    }
}

int context::check() {
    m_unsat_core.reset();
    m_validation_failed = false;
    m_incomplete_answer = nullptr;
    m_model.reset();
    if (inconsistent()) return -1;
    if (!type_correct()) return 0;
    if (get_verbosity_level() > 0) std::cerr << "searching...\n";

    int result;
    {
        base_frame const frame(*this);
        assert_extra_assumptions(true);
        if (inconsistent()) {
            if (m_failed_assumption != null_literal) m_unsat_core.push_back(m_failed_assumption.index());
            return -1;
        }
        m_search_lvl = m_scope_lvl;
        m_hub->init_before_search();
        result = search();
        if (get_verbosity_level() > 0) std::cerr << "\n";
    }
    if (!type_correct()) return 0;
    // A model of an incomplete theory proves nothing.
    if (result == 1 && incomplete()) return 0;
    return result;
}

int context::search() {
    return search_core(g_restart_limit, static_cast<unsigned>(0.333 * m_num_input_clauses), true);
}

int context::search_core(unsigned conflict_limit, unsigned clause_limit, bool restart) {
    int result = 0;
    search_frame frame(*this);
    restart_schedule schedule(conflict_limit, clause_limit, num_bool_vars());
    while (keep_searching()) {
        return_to_scope(frame.start_scope());
        result = bounded_search(schedule.conflict_limit());
        if (get_verbosity_level() > 0 && result == 0) std::cerr << "r" << std::flush;
        schedule.next(num_bool_vars(), static_cast<unsigned>(0.333 * m_num_input_clauses));
        if (!restart || result != 0) break;
    }
    finish_search(result);
    return result;
}

void context::finish_search(int& result) {
    if (keep_searching()) {
        if (result != 1) return;
        if (m_incomplete_answer == nullptr) m_incomplete_answer = m_incomplete;
        if (m_validate_model) {
            std::cerr << " validating assignment... ";
            m_validation_failed = !validate_assignment();
            std::cerr << (m_validation_failed ? "failed\n" : "ok\n");
        }
        build_model();
        if (!type_correct()) result = 0;
        return;
    }
    m_unsat_core.reset(); // a refutation may have come with the stop
    result = 0;
}

void context::build_model() {
    if (!g_build_model && !m_need_assignment) return;
    m_model.reset();
    m_model.m_bool_assignment.resize(num_bool_vars(), 0);
    for (unsigned var = first_bool_var; var < num_bool_vars(); ++var)
        m_model.m_bool_assignment[var] = m_assignment[2 * var];
    if (!g_build_model) return;
    m_model.m_valid = true;
    m_hub->build_model(m_model);
}

// One run: 1 satisfiable, -1 unsatisfiable at the search level, 0 restart or stop. A limit of 0 never
// restarts.
int context::bounded_search(unsigned limit) {
    if (inconsistent()) {
        give_up_at_search_lvl();
        return -1;
    }
    unsigned conflicts = 0;
    bool unsat = false;
    while (keep_searching()) {
        if (!handle_conflicts(conflicts, unsat)) return unsat ? -1 : 0;
        if (limit != 0 && conflicts > limit) {
            ++m_stats.m_num_restarts;
            return 0;
        }
        if (m_scope_lvl == 0) simplify_clauses();
        if (decide()) continue;
        unsigned const num_vars = num_bool_vars();
        bool const accepted = m_hub->final_check();
        if (inconsistent()) {
            drop_pending_work();
            if (!resolve_conflict()) return -1;
        } else if (accepted && num_bool_vars() == num_vars && nothing_waits()) {
            return 1; // what was added on the way would have to be looked at first
        }
    }
    return 0;
}

// Propagates and resolves until nothing is left to propagate. False ends the run: unsat tells whether by a
// refutation or by a stop.
bool context::handle_conflicts(unsigned& conflicts, bool& unsat) {
    while (!propagate_constraints()) {
        ++conflicts;
        if (!resolve_conflict()) {
            unsat = true;
            return false;
        }
        m_var_inc *= 1.052631;
        if (!run_deletion_schedule()) return false;
        if (m_progress_callback && (m_stats.m_num_conflicts & (m_progress_callback_interval - 1)) == 0)
            m_progress_callback(*this);
        if (!keep_searching()) return false;
    }
    return true;
}

// False if the search callback asked for a stop.
bool context::run_deletion_schedule() {
    if (!g_delete_irrelevant_learned_clauses || g_clause_deletion_frequency == 0) return true;
    if (m_stats.m_num_conflicts % g_clause_deletion_frequency != 0) return true;
    remove_irrelevant_learned_clauses();
    if (m_search_callback(this)) return true;
    m_search_state.fetch_or(stopped_bit, std::memory_order_relaxed);
    return false;
}

void context::stop_the_search() {
    std::uint64_t seen = m_search_state.load(std::memory_order_acquire);
    // Fails when the search has ended, or was stopped, since the look: there is nothing left to stop.
    if ((seen & running_bit) != 0)
        m_search_state.compare_exchange_strong(seen, seen | stopped_bit, std::memory_order_acq_rel);
}

namespace {

bool default_search_callback(context*) { return true; }

} // namespace

void context::remove_search_callback() { m_search_callback = default_search_callback; }

void context::set_improvement_callback(std::function<void(context&)> callback) {
    m_improvement_callback = std::move(callback);
}

void context::set_progress_callback(std::function<void(context&)> callback, unsigned interval) {
    VEXOR_ASSERT(interval != 0 && (interval & (interval - 1)) == 0);
    m_progress_callback = std::move(callback);
    m_progress_callback_interval = interval;
}

} // namespace vexor
