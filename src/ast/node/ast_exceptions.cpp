#include "ast/node/ast_exceptions.h"

namespace vexor {

named_specification_exception::named_specification_exception(position_tracker::position const& pos,
                                                             char const* before, ustring const& name,
                                                             char const* after)
    : specification_exception(pos)
    , m_name(name.c_str())
    , m_text(std::string(before).append(m_name).append(after)) {}

#define VEXOR_AST_ERROR(CLASS, TEXT)                                                                         \
    char const* CLASS::what_core() const noexcept { return TEXT; }
#define VEXOR_NAME_ERROR(CLASS, BEFORE, AFTER)                                                               \
    CLASS::CLASS(position_tracker::position const& pos, ustring const& name)                                 \
        : named_specification_exception(pos, BEFORE, name, AFTER) {}
#include "ast/node/ast_exceptions.def"

} // namespace vexor
