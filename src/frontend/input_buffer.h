// The characters of a stream, in blocks.
//
// Reading a stream character by character costs a call for each; this buffer takes over what the stream has
// at hand and lets the lexer walk over plain memory. It never takes more than the stream holds already, so
// that a terminal or a pipe is not read ahead of what was typed, and it gives back what was not used.
#pragma once

#include <istream>

#include "base/vector.h"

namespace vexor {

// Promises: *end() is a zero byte, so that a scan that stops at a zero byte needs no other bound; the text
// between the argument of refill and the end stays contiguous across refills.
class input_buffer {
public:
    explicit input_buffer(std::istream& stream)
        : m_stream(stream) {
        m_bytes.push_back('\0');
    }
    input_buffer(input_buffer const&) = delete; // the stream has one reader
    input_buffer& operator=(input_buffer const&) = delete;

    char const* begin() const { return m_bytes.data(); }
    char const* end() const { return m_bytes.data() + m_bytes.size() - 1; }

    // Fetches more input. The bytes from `keep` to the end move to the begin, and what was fetched follows;
    // pointers into the buffer lose their meaning. False at the end of the stream, which is final.
    bool refill(char const* keep);

    // Gives the bytes from `unread` on back to the stream; for the end of the reading.
    void give_back(char const* unread);

private:
    std::istream& m_stream; // where the bytes come from; only its buffer is used
    svector<char> m_bytes;  // the block, then a zero byte
    bool m_at_end = false;  // did the stream come to its end
};

} // namespace vexor
