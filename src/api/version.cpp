#include "api/version.h"

#ifndef VEXOR_VERSION
#define VEXOR_VERSION "unknown"
#endif

namespace vexor {

char const* const version_text = VEXOR_VERSION;

} // namespace vexor
