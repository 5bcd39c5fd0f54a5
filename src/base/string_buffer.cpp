#include "base/string_buffer.h"

#include <cfloat>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace vexor {

string_buffer::string_buffer(unsigned capacity)
    : m_buffer(std::make_unique<char[]>(capacity))
    , m_capacity(capacity) {}

void string_buffer::expand() {
    std::size_t capacity = m_capacity == 0 ? 1 : m_capacity * 2;
    auto grown = std::make_unique<char[]>(capacity);
    if (m_pos != 0) std::memcpy(grown.get(), m_buffer.get(), m_pos);
    m_buffer = std::move(grown);
    m_capacity = capacity;
}

void string_buffer::append(char const* text) { append(text, std::strlen(text)); }

void string_buffer::append(char const* text, std::size_t length) {
    while (length > m_capacity - m_pos) expand();
    if (length != 0) std::memcpy(m_buffer.get() + m_pos, text, length);
    m_pos += length;
}

void string_buffer::append(double value) {
    // The longest double has 309 digits before the point.
    char text[DBL_MAX_10_EXP + 16];
    int length = std::snprintf(text, sizeof(text), "%f", value);
    append(text, static_cast<std::size_t>(length));
}

template <class T>
static void append_integer(string_buffer& out, T value) {
    char text[24];
    char* end = std::to_chars(text, text + sizeof(text), value).ptr;
    out.append(text, static_cast<std::size_t>(end - text));
}

void string_buffer::append(long value) { append_integer(*this, value); }

void string_buffer::append(unsigned long long value) { append_integer(*this, value); }

char const* string_buffer::c_str() {
    if (m_pos == m_capacity) expand();
    m_buffer[m_pos] = 0;
    return m_buffer.get();
}

} // namespace vexor
