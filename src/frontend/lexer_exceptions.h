// What is wrong with the characters of a native text.
#pragma once

#include "base/exceptions.h"

namespace vexor {

class lexer_exception : public specification_exception {
public:
    using specification_exception::specification_exception;
};

class invalid_token_exception : public lexer_exception {
public:
    using lexer_exception::lexer_exception;
    char const* what_core() const noexcept override { return "Invalid token."; }
};

class unfinished_string_exception : public lexer_exception {
public:
    using lexer_exception::lexer_exception;
    char const* what_core() const noexcept override { return "Unfinished string."; }
};

class escape_sequence_too_large_exception : public lexer_exception {
public:
    using lexer_exception::lexer_exception;
    char const* what_core() const noexcept override { return "Escape sequence is too large."; }
};

} // namespace vexor
