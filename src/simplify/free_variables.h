// The free variables of a term.
#pragma once

#include "ast/node/nodes.h"
#include "base/vector.h"

namespace vexor {

// All local variables that are named in open subterms, possibly several times: the free variables are among
// them.
ptr_vector<var_decl> free_variables_of(expr* e);

} // namespace vexor
