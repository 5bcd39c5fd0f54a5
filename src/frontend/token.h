// The tokens of the native language and their names in messages.
#pragma once

namespace vexor {

enum class token : unsigned char {
#define VEXOR_TOKEN(NAME, TEXT) NAME,
#define VEXOR_OPERATOR(OP, TEXT) kw_##OP,
#define VEXOR_KEYWORD(NAME, TEXT) kw_##NAME,
#include "frontend/tokens.def"
};

// What a token is called in a message: its own text, or the name of its kind for one with a changing text.
char const* token2str(token kind);

} // namespace vexor
