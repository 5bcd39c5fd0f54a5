// What the constructors of nodes and the manager raise for faulty input. Each carries the position of the
// fault.
#pragma once

#include "base/exceptions.h"
#include "base/ustring.h"

#include <string>

namespace vexor {

// A fault without a name in its message.
#define VEXOR_AST_ERROR(CLASS, TEXT)                                                                         \
    class CLASS : public specification_exception {                                                           \
    public:                                                                                                  \
        using specification_exception::specification_exception;                                              \
        char const* what_core() const noexcept override;                                                     \
    };
// A fault whose message holds a name.
#define VEXOR_NAME_ERROR(CLASS, BEFORE, AFTER)                                                               \
    class CLASS : public named_specification_exception {                                                     \
    public:                                                                                                  \
        CLASS(position_tracker::position const& pos, ustring const& name);                                   \
    };

// Holds the name and the sentence built from it.
class named_specification_exception : public specification_exception {
public:
    char const* what_core() const noexcept override { return m_text.c_str(); }
    std::string const& get_name() const { return m_name; }

protected:
    named_specification_exception(position_tracker::position const& pos, char const* before,
                                  ustring const& name, char const* after);

private:
    std::string m_name; // the name at fault
    std::string m_text; // the sentence
};

#include "ast/node/ast_exceptions.def"

} // namespace vexor
