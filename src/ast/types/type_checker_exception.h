// What is raised for a term that is not well-typed, by the type checker and by expr::get_type for a term
// without type.
#pragma once

#include "base/exceptions.h"

namespace vexor {

class ast;

class type_checker_exception : public specification_exception {
public:
    // The message is kept as a pointer: a literal.
    type_checker_exception(position_tracker::position const& pos, char const* message)
        : specification_exception(pos)
        , m_message(message) {}
    char const* what_core() const noexcept override { return m_message; }

private:
    char const* m_message;
};

// At the position of the node.
[[noreturn]] void throw_type_error(ast const* node, char const* message);

} // namespace vexor
