#include "search/search_settings.h"

namespace vexor {

int g_decision_polarity = 0;
bool g_delete_irrelevant_learned_clauses = true;
unsigned g_clause_deletion_frequency = 5000;
unsigned g_head_activity = 500;
unsigned g_tail_activity = 10;
unsigned g_head_relevancy = 6;
unsigned g_tail_relevancy = 45;
unsigned g_head_tail_ratio = 16;
bool g_build_model = true;
unsigned g_restart_limit = 100;
bool g_simplify_always = false;
unsigned g_max_num_conflicts_in_maxsat_iteration = 10000;
unsigned g_max_num_runs_in_maxsat_iteration = 100;
unsigned g_max_num_iterations_in_maxsat = 10000;
unsigned g_max_num_conflicts_with_maxsat_cores = 50000;
bool g_use_initial_maxsat_cost = false;
numeral g_initial_maxsat_cost = 0;

} // namespace vexor
