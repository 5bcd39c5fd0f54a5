// What is wrong with the order of tokens in a native text. Each exception carries the position of the fault.
#pragma once

#include <string>

#include "base/exceptions.h"
#include "base/ustring.h"
#include "frontend/token.h"

namespace vexor {

class parser_exception : public specification_exception {
public:
    using specification_exception::specification_exception;
};

#define VEXOR_PARSER_ERROR(CLASS, TEXT)                                                                      \
    class CLASS : public parser_exception {                                                                  \
    public:                                                                                                  \
        using parser_exception::parser_exception;                                                            \
        char const* what_core() const noexcept override { return TEXT; }                                     \
    };
#include "frontend/parser_exceptions.def"

class unexpected_token_exception : public parser_exception {
public:
    unexpected_token_exception(position_tracker::position const& pos, token found, token expected)
        : parser_exception(pos)
        , m_text(std::string("Unexpected token '") + token2str(found) + "'. '" + token2str(expected) +
                 "' expected.") {}
    char const* what_core() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text; // the sentence
};

class type_expected_exception : public parser_exception {
public:
    // definition: a definition of a type was expected, not only a type.
    type_expected_exception(position_tracker::position const& pos, bool definition)
        : parser_exception(pos)
        , m_definition(definition) {}
    char const* what_core() const noexcept override {
        return m_definition ? "Type definition expected." : "Type expected.";
    }

private:
    bool m_definition; // see the constructor
};

// The type being defined in a place where it must not stand.
class invalid_datatype_occurrence_exception : public parser_exception {
public:
    invalid_datatype_occurrence_exception(position_tracker::position const& pos, ustring const& name)
        : parser_exception(pos)
        , m_text(std::string("Invalid occurrence of \"") + name.c_str() + "\" in datatype definition.") {}
    char const* what_core() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text; // the sentence
};

} // namespace vexor
