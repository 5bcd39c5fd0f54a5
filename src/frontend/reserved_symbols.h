// The reserved words of the native language.
#pragma once

#include <cstdint>
#include <cstring>

#include "frontend/token.h"

namespace vexor {

// Mixes all bytes of the text; equal texts have equal hashes in every run. Much cheaper on the short words of
// input than a hash byte by byte.
inline std::uint32_t hash_text(char const* text, std::size_t length) {
    constexpr std::uint64_t factor = 0x9e3779b97f4a7c15ull;
    std::uint64_t hash = length * factor;
    auto mix = [&](std::uint64_t word) {
        hash = (hash ^ word) * factor;
        hash ^= hash >> 29;
    };
    for (; length >= 8; text += 8, length -= 8) {
        std::uint64_t word;
        std::memcpy(&word, text, 8);
        mix(word);
    }
    if (length >= 4) {
        std::uint32_t first, last; // they overlap when fewer than eight bytes are left
        std::memcpy(&first, text, 4);
        std::memcpy(&last, text + length - 4, 4);
        mix(first | std::uint64_t{last} << 32);
    } else if (length > 0) {
        std::uint64_t word = static_cast<unsigned char>(text[0]);
        word |= std::uint64_t{static_cast<unsigned char>(text[length / 2])} << 8;
        word |= std::uint64_t{static_cast<unsigned char>(text[length - 1])} << 16;
        mix(word);
    }
    return static_cast<std::uint32_t>(hash >> 32);
}

// A map from words to tokens, filled by its constructor and never changed after it.
class reserved_symbols {
public:
    reserved_symbols();

    // The token of a reserved word; token::identifier for any other text. The hash is hash_text of the text.
    [[nodiscard]] token find(char const* text, std::size_t length, std::uint32_t hash) const;
    [[nodiscard]] token find(char const* text) const;

private:
    struct entry {
        char const* word = nullptr;
        std::size_t length = 0;
        token kind = token::identifier;
    };
    static constexpr unsigned num_slots = 256; // a power of two, over twice the number of words

    void insert(char const* word, token kind);

    entry m_slots[num_slots]; // open addressing with linear probing; a null word is a free slot
};

extern reserved_symbols const g_reserved_symbols;

} // namespace vexor
