#include "frontend/reserved_symbols.h"

#include "base/debug.h"

namespace vexor {

namespace {

// Indexed by token.
constexpr char const* g_token2str[] = {
#define VEXOR_TOKEN(NAME, TEXT) TEXT,
#define VEXOR_OPERATOR(OP, TEXT) TEXT,
#define VEXOR_KEYWORD(NAME, TEXT) TEXT,
#include "frontend/tokens.def"
};

} // namespace

reserved_symbols const g_reserved_symbols;

char const* token2str(token kind) {
    VEXOR_ASSERT(static_cast<unsigned>(kind) < sizeof g_token2str / sizeof *g_token2str);
    return g_token2str[static_cast<unsigned>(kind)];
}

reserved_symbols::reserved_symbols() {
#define VEXOR_OPERATOR(OP, TEXT) insert(TEXT, token::kw_##OP);
#define VEXOR_KEYWORD(NAME, TEXT) insert(TEXT, token::kw_##NAME);
#define VEXOR_SECOND_SPELLING(NAME, TEXT) insert(TEXT, token::kw_##NAME);
#include "frontend/tokens.def"
}

void reserved_symbols::insert(char const* word, token kind) {
    std::size_t length = std::strlen(word);
    std::uint32_t slot = hash_text(word, length) % num_slots;
    while (m_slots[slot].word) slot = (slot + 1) % num_slots;
    m_slots[slot] = {word, length, kind};
}

token reserved_symbols::find(char const* text, std::size_t length, std::uint32_t hash) const {
    for (std::uint32_t slot = hash % num_slots; m_slots[slot].word; slot = (slot + 1) % num_slots) {
        entry const& candidate = m_slots[slot];
        if (candidate.length == length && std::memcmp(candidate.word, text, length) == 0)
            return candidate.kind;
    }
    return token::identifier;
}

token reserved_symbols::find(char const* text) const {
    std::size_t length = std::strlen(text);
    return find(text, length, hash_text(text, length));
}

} // namespace vexor
