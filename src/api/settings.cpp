// Settings of the process, as exported functions.
#include "ast/node/settings.h"
#include "api/call_log.h"
#include "api/misuse.h"
#include "api/version.h"
#include "api/vexor.h"
#include "base/diagnostics.h"
#include "internalize/internalize_settings.h"
#include "search/search_settings.h"

using namespace vexor;

extern "C" {

void vexor_set_verbosity(int level) { set_verbosity_level(level < 0 ? 0 : level); }

const char* vexor_version(void) { return version_text; }

void vexor_enable_log_file(const char* file_name) {
    if (file_name == nullptr) misuse(__func__, "the file name is null");
    open_call_log(file_name);
}

void vexor_enable_type_checker(int flag) { g_type_check = flag != 0; }

void vexor_set_arith_only(int flag) { g_arithmetic_only = flag != 0; }

void vexor_set_max_num_conflicts_in_maxsat_iteration(unsigned max) {
    g_max_num_conflicts_in_maxsat_iteration = max;
}

void vexor_set_max_num_iterations_in_maxsat(unsigned max) { g_max_num_iterations_in_maxsat = max; }

void vexor_set_maxsat_initial_cost(vexor_int64 cost) {
    g_initial_maxsat_cost = numeral(cost);
    g_use_initial_maxsat_cost = true;
}

} // extern "C"
