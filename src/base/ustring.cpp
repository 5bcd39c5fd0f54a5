#include "base/ustring.h"

#include <cstring>
#include <ostream>
#include <string>

#include "base/arena.h"
#include "base/vector.h"

namespace vexor {

constinit ustring_manager g_ustring_manager;

// Open addressing with linear steps.
//
// Keeps:   the number of slots is a power of two, at most half of them are taken; a text stands in the first
// slot
//          from its hash on that was free when it came.
// Ends:    a search stops at a free slot, and half of them are free.
// Cost:    two passes over the text and O(1) slots per look-up.
// Source:  folklore.
// Differs: the hash of the text alone would give the 10^6 names x1 ... x1000000 fewer than 40000 values,
// since ten
//          digits share a factor of five. So it is mixed with a second one, Fowler, Noll and Vo's.
struct ustring_manager::table {
    struct slot {
        char const* m_text; // null when free
        std::size_t m_length;
        std::uint32_t m_hash;
    };

    arena m_region{8192}; // the texts
    vector<slot> m_slots; // the table
    unsigned m_num_texts = 0;

    static std::uint32_t hash(char const* text, std::size_t length) {
        std::uint32_t mixed = 2166136261u;
        for (std::size_t i = 0; i < length; i++)
            mixed = (mixed ^ static_cast<unsigned char>(text[i])) * 16777619u;
        std::uint32_t both = (hash_text(text, length) ^ mixed) * 0x9e3779b1u;
        return both ^ (both >> 15);
    }

    void grow() {
        vector<slot> old;
        old.swap(m_slots);
        m_slots.resize(old.empty() ? 256 : old.size() * 2, slot{nullptr, 0, 0});
        for (slot const& s : old) {
            if (s.m_text) m_slots[free_slot(s.m_hash)] = s;
        }
    }
    unsigned free_slot(std::uint32_t hash) const {
        unsigned mask = m_slots.size() - 1;
        unsigned i = hash & mask;
        while (m_slots[i].m_text) i = (i + 1) & mask;
        return i;
    }

    char const* intern(char const* text, std::size_t length) {
        std::uint32_t h = hash(text, length);
        unsigned mask = m_slots.size() - 1;
        for (unsigned i = h & mask; m_slots[i].m_text; i = (i + 1) & mask) {
            slot const& s = m_slots[i];
            if (s.m_hash == h && s.m_length == length && std::memcmp(s.m_text, text, length) == 0)
                return s.m_text;
        }
        char* stored = static_cast<char*>(m_region.allocate(length + 1));
        std::memcpy(stored, text, length);
        stored[length] = 0;
        if (++m_num_texts > m_slots.size() / 2) grow();
        m_slots[free_slot(h)] = slot{stored, length, h};
        return stored;
    }
};

void ustring_manager::make_table() {
    m_table = new table;
    m_table->grow();
    m_empty = m_table->intern("", 0);
}

char const* ustring_manager::unique_string(char const* text) {
    if (!text) return empty_string();
    if (!m_table) make_table();
    return m_table->intern(text, std::strlen(text));
}

char const* ustring_manager::unique_string(char const* text, std::size_t length) {
    if (!m_table) make_table();
    if (length == 0) return m_empty;
    void const* end = std::memchr(text, 0, length);
    if (end) length = static_cast<std::size_t>(static_cast<char const*>(end) - text);
    return m_table->intern(text, length);
}

void ustring_manager::reset_memory() {
    if (!m_table) return;
    m_table->m_slots.finalize();
    m_table->m_num_texts = 0;
    m_table->grow();
    m_table->m_region.reset(false);
    m_empty = m_table->intern("", 0);
}

std::size_t ustring_manager::size() const { return m_table ? m_table->m_num_texts : 0; }

unsigned ustring_manager::hash_text(char const* text, std::size_t length) {
    unsigned h = 0;
    for (std::size_t i = 0; i < length; i++)
        h = h * 5 + static_cast<unsigned>(static_cast<signed char>(text[i]));
    return h;
}

ustring::ustring(int number)
    : ustring(std::to_string(number).c_str()) {}

ustring::ustring(char c)
    : ustring(&c, 1) {}

bool ustring::less(ustring const& other) const { return less(other.m_text); }

bool ustring::less(char const* other) const { return std::strcmp(m_text, other) < 0; }

std::size_t ustring::length() const { return std::strlen(m_text); }

int ustring::index_of(char c) const {
    char const* found = c != 0 ? std::strchr(m_text, c) : nullptr;
    return found ? static_cast<int>(found - m_text) : -1;
}

ustring ustring::substr(std::size_t pos, std::size_t len) const {
    std::size_t size = length();
    if (pos >= size) return ustring();
    return ustring(m_text + pos, len < size - pos ? len : size - pos);
}

ustring& ustring::append(int number) { return *this = ustring((m_text + std::to_string(number)).c_str()); }

ustring& ustring::append(ustring const& other) { return *this = m_text + other; }

void ustring::reset_memory() { g_ustring_manager.reset_memory(); }

bool operator<(char const* a, ustring const& b) { return std::strcmp(a, b.c_str()) < 0; }

ustring operator+(char const* a, ustring const& b) { return ustring((std::string(a) + b.c_str()).c_str()); }

std::ostream& operator<<(std::ostream& out, ustring const& s) { return out << s.c_str(); }

} // namespace vexor
