#include "ast/unsupported.h"

#include "base/exceptions.h"

#include <sstream>

namespace vexor {

void throw_not_implemented(char const* text, ast const* n) {
    std::ostringstream printed;
    n->display(printed);
    throw feature_not_implemented_exception(text, n->get_position(), printed.str());
}

} // namespace vexor
