// Interned text: one pointer, equal exactly when the texts are equal.
#pragma once

#include <cstddef>
#include <iosfwd>

#include "base/hash_table.h"

namespace vexor {

// A name. Copying, comparing and hashing are those of a pointer; the text lives until reset_memory.
class ustring {
public:
    ustring();
    ustring(char const* text); // null counts as the empty text
    explicit ustring(int number);
    explicit ustring(char c);
    // The first length bytes of text, or what stands before a NUL among them.
    ustring(char const* text, std::size_t length);

    [[nodiscard]] char const* c_str() const { return m_text; }
    friend bool operator==(ustring const& a, ustring const& b) { return a.m_text == b.m_text; }

    // Byte order of the texts, unrelated to that of the pointers.
    [[nodiscard]] bool less(ustring const& other) const;
    [[nodiscard]] bool less(char const* other) const;

    [[nodiscard]] std::size_t length() const;
    [[nodiscard]] bool empty() const { return *m_text == 0; }
    // First index of the character, -1 when it is absent.
    [[nodiscard]] int index_of(char c) const;
    // At most len characters from pos on; positions beyond the text give the empty string.
    [[nodiscard]] ustring substr(std::size_t pos, std::size_t len) const;
    ustring& append(int number);
    ustring& append(ustring const& other);

    // Forgets all interned text: every ustring alive becomes invalid. Only for the global reset of the
    // solver.
    static void reset_memory();

private:
    char const* m_text; // interned, NUL-terminated, never null
};

bool operator<(char const* a, ustring const& b);
ustring operator+(char const* a, ustring const& b);
std::ostream& operator<<(std::ostream& out, ustring const& s);

struct hash_ustring {
    std::size_t operator()(ustring const& s) const { return reinterpret_cast<std::size_t>(s.c_str()); }
};

// The table of all interned texts. It is made on first use and never destroyed: static objects of other files
// may hold names from before main until after it.
class ustring_manager {
public:
    // The stored text that equals the argument.
    char const* unique_string(char const* text);
    char const* unique_string(char const* text, std::size_t length);
    [[nodiscard]] char const* empty_string() {
        if (!m_empty) make_table();
        return m_empty;
    }
    void reset_memory();
    // Number of texts, the empty one included.
    [[nodiscard]] std::size_t size() const;

    // h * 5 + c over the bytes as signed characters, in unsigned arithmetic.
    static unsigned hash_text(char const* text, std::size_t length);

private:
    struct table;
    void make_table();

    table* m_table = nullptr;      // made on first use
    char const* m_empty = nullptr; // the interned empty string, null until first use
};

extern ustring_manager g_ustring_manager;

inline ustring::ustring()
    : m_text(g_ustring_manager.empty_string()) {}
inline ustring::ustring(char const* text)
    : m_text(g_ustring_manager.unique_string(text)) {}
inline ustring::ustring(char const* text, std::size_t length)
    : m_text(g_ustring_manager.unique_string(text, length)) {}

} // namespace vexor
