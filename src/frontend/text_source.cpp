#include "frontend/text_source.h"

#include <cstring>

namespace vexor {

bool text_source::refill() {
    if (m_at_end) return false;
    // The buffer below the stream is asked directly: sgetn of a file copies straight into our block, and an
    // exception of the buffer is not turned into a mere end of the stream.
    std::streamsize count = 0;
    if (std::streambuf* source = m_in.rdbuf()) {
        count = source->sgetn(m_block.get(), static_cast<std::streamsize>(block_size));
    }
    if (count <= 0) {
        m_at_end = true;
        return false;
    }
    m_next = m_block.get();
    m_end = m_next + count;
    return true;
}

void text_source::skip_line() {
    while (m_curr != '\n' && m_curr != end) {
        auto* found =
            static_cast<char const*>(std::memchr(m_next, '\n', static_cast<std::size_t>(m_end - m_next)));
        m_next = found ? found : m_end;
        advance();
    }
}

} // namespace vexor
