// Which definitions mention themselves, directly or through other definitions.
#pragma once

#include "ast/node/decl.h"

namespace vexor {

// Settles is_recursive for d and for every definition that it reaches.
void find_recursive_definitions(const_decl* d);

} // namespace vexor
