// The growing text buffer that messages are built in.
#pragma once

#include <cstddef>
#include <memory>

#include "base/position_tracker.h"
#include "base/ustring.h"

namespace vexor {

// Promises: takes text of any length; c_str() is valid until the next append.
class string_buffer {
public:
    explicit string_buffer(unsigned capacity = 64);
    string_buffer(string_buffer const&) = delete; // a message has one place
    string_buffer& operator=(string_buffer const&) = delete;

    void append(char c) {
        if (m_pos == m_capacity) expand();
        m_buffer[m_pos++] = c;
    }
    void append(char const* text);
    void append(char const* text, std::size_t length);
    void append(ustring const& text) { append(text.c_str()); }
    void append(bool value) { append(value ? "true" : "false"); }
    // Floating point numbers in the format "%f".
    void append(float value) { append(static_cast<double>(value)); }
    void append(double value);
    void append(long value);
    void append(unsigned long value) { append(static_cast<unsigned long long>(value)); }
    void append(long long value) { append(static_cast<long>(value)); }
    void append(unsigned long long value);
    void append(int value) { append(static_cast<long>(value)); }
    // Prints as a signed number: values from 2^31 on come out negative.
    void append(unsigned value) { append(static_cast<int>(value)); }
    void append(position_tracker::position const& pos) { dump_position(*this, pos); }

    template <class T>
    string_buffer& operator<<(T const& value) {
        append(value);
        return *this;
    }

    // The text so far, terminated.
    [[nodiscard]] char const* c_str();
    [[nodiscard]] std::size_t size() const { return m_pos; }
    [[nodiscard]] std::size_t capacity() const { return m_capacity; }
    [[nodiscard]] bool empty() const { return m_pos == 0; }
    // Doubles the capacity.
    void expand();
    // Drops the text and keeps the memory.
    void reset() { m_pos = 0; }

private:
    std::unique_ptr<char[]> m_buffer; // zero-filled at first
    std::size_t m_pos = 0;            // characters used
    std::size_t m_capacity;           // characters allocated
};

} // namespace vexor
