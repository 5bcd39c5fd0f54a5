// Looks through a simplified formula for what cannot be translated.
#pragma once

#include "ast/node/ast_fwd.h"

namespace vexor {

// Raises feature_not_implemented_exception, with the offending term, if the translation of e would meet a
// term that it has no visit for. e may have free Boolean fresh variables. Run before the first clause of e is
// made, so that a formula is translated as a whole or not at all.
//
// Cost: linear in the nodes of e; no recursion.
void check_support(expr* e);

} // namespace vexor
