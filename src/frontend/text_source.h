// Characters of a stream, read by whole blocks.
#pragma once

#include <cstddef>
#include <istream>
#include <memory>

namespace vexor {

// Delivers the bytes of a stream one by one at the cost of a pointer comparison: the stream is asked for a
// block of block_size bytes at a time, without its formatting layer.
//
// Promises: curr() is the byte read last, 0 to 255, or end; once the end was seen every further advance()
// keeps it. line() is the line of curr(), counted from 1. Exceptions of the stream's buffer reach the caller.
class text_source {
public:
    static constexpr int end = -1;
    static constexpr std::size_t block_size = std::size_t(1) << 18;

    explicit text_source(std::istream& in)
        : m_in(in)
        , m_block(new char[block_size])
        , m_next(m_block.get())
        , m_end(m_block.get()) {}

    text_source(text_source const&) = delete; // two readers of one stream would each get half of it
    text_source& operator=(text_source const&) = delete;

    [[nodiscard]] int curr() const { return m_curr; }
    [[nodiscard]] unsigned long line() const { return m_line; }

    void advance() {
        if (m_curr == '\n') ++m_line;
        if (m_next == m_end && !refill()) {
            m_curr = end;
            return;
        }
        m_curr = static_cast<unsigned char>(*m_next++);
    }

    // White space is the blank and the characters 9 to 13.
    static bool is_space(int c) { return c == ' ' || (c >= 9 && c <= 13); }
    static bool is_digit(int c) { return c >= '0' && c <= '9'; }
    static bool is_letter(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

    void skip_space() {
        while (is_space(m_curr)) advance();
    }

    // Stops at the line end or at the end of the stream.
    void skip_line();

private:
    bool refill();

    std::istream& m_in;              // the source
    std::unique_ptr<char[]> m_block; // the block read last
    char const* m_next;              // the next byte to deliver, within the block
    char const* m_end;               // behind the block's last byte
    int m_curr = 0;                  // the byte delivered last; 0 before the first
    bool m_at_end = false;           // the stream gave no further byte
    unsigned long m_line = 1;        // the line of m_curr
};

} // namespace vexor
