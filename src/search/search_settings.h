// Settings of the search, plain globals shared by all contexts of the process.
#pragma once

#include "base/numeral.h"

namespace vexor {

// Default phase of a decision: 0 false, 1 true, 4 the value that the variable had last (false at first), 5
// the last value in every second run between restarts and false in the others, any other value random. The
// last value keeps a search near the assignments that it has already repaired; without it some structured
// satisfiable problems are out of reach, with it alone some others.
extern int g_decision_polarity;
inline constexpr int saved_polarity = 4;
inline constexpr int alternating_polarity = 5;
// Turns the schedule that deletes learned clauses on, and with it the search callback.
extern bool g_delete_irrelevant_learned_clauses;
// Conflicts between two rounds of deletion; 0 for no round, as if the schedule were off.
extern unsigned g_clause_deletion_frequency;
// A learned clause with at least this activity is never deleted.
extern unsigned g_head_activity;
// Read by the limit of the activity, where its factor is 0 for every clause.
extern unsigned g_tail_activity;
// Unassigned literals that an old, and a recent learned clause may have and stay.
extern unsigned g_head_relevancy;
extern unsigned g_tail_relevancy;
// The deletable range is cut into this many parts; the last one is the recent tail. 0 counts as 1: all is
// tail.
extern unsigned g_head_tail_ratio;
// With false a satisfiable answer leaves no model.
extern bool g_build_model;
// First conflict limit of a run; the schedule of the restarts grows from it.
extern unsigned g_restart_limit;
// Simplifies at scope 0 after each propagation, whatever it costs: for tests of rare paths.
extern bool g_simplify_always;
// Conflicts in one run of max_sat between two restarts, once it has a model.
extern unsigned g_max_num_conflicts_in_maxsat_iteration;
// Runs of max_sat for one improvement, before it gives up; 0 for no limit.
extern unsigned g_max_num_runs_in_maxsat_iteration;
// Improvements of max_sat, before it gives up.
extern unsigned g_max_num_iterations_in_maxsat;
// Conflicts that max_sat may spend on raising the lower bound by cores before its other phases; 0 for none.
extern unsigned g_max_num_conflicts_with_maxsat_cores;
// Lets max_sat begin with models of at most the given cost.
extern bool g_use_initial_maxsat_cost;
extern numeral g_initial_maxsat_cost;

} // namespace vexor
