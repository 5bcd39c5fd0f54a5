#include "internalize/internalize_settings.h"

namespace vexor {

bool g_cache_ite = true;
bool g_arithmetic_only = false;
bool g_fire_and_forget = false;

} // namespace vexor
