#include "ast/node/settings.h"

namespace vexor {

bool g_type_check = false;
bool g_relaxed_type_system = true;
bool g_allow_free_vars = true;

} // namespace vexor
