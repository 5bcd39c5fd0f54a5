// The tree of exceptions that report errors in the caller's input; its root is vexor_exception.
#pragma once

#include <exception>

namespace vexor {

class vexor_exception : public std::exception {
public:
    char const* what() const noexcept override;
};

// A decimal literal that is too long to be read.
class arithmetic_overflow_exception : public vexor_exception {
public:
    char const* what() const noexcept override;
};

class division_by_zero_exception : public vexor_exception {
public:
    char const* what() const noexcept override;
};

} // namespace vexor
