#include "base/exceptions.h"

namespace vexor {

char const* vexor_exception::what() const noexcept { return "Unspecified vexor exception."; }

char const* arithmetic_overflow_exception::what() const noexcept { return "arithmetic overflow."; }

char const* division_by_zero_exception::what() const noexcept { return "division by zero."; }

} // namespace vexor
