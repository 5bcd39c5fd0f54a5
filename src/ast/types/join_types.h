// The type of a value that is one of two.
#pragma once

#include "ast/node/nodes.h"

namespace vexor {

// A type that has the values of both of two equivalent types, and is equivalent to them: int for two types of
// integers, real as soon as one of them has other numbers, component by component for tuples and records. A
// variable that stands for either value may be made with it. For types that are not equivalent the result is
// one of them or its largest type; the type checker reports those.
shared_ptr<type> join_types(type* a, type* b);

} // namespace vexor
