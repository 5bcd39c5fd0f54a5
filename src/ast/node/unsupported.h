// The report of a term that no part of the system can handle.
#pragma once

#include "ast/node/ast.h"

namespace vexor {

// Raises feature_not_implemented_exception with the text, and the term as it prints.
[[noreturn]] void throw_not_implemented(char const* text, ast const* n);

} // namespace vexor
