#include "frontend/input_buffer.h"

#include <algorithm>
#include <ios>
#include <streambuf>

namespace vexor {

namespace {

// A string stream hands out its whole text at once; copying it in steps keeps the block small.
constexpr std::streamsize max_block = 64 * 1024;

// Appends what the source holds without waiting for more than one character; false at its end.
bool fetch(std::streambuf& source, svector<char>& bytes) {
    if (source.sgetc() == std::streambuf::traits_type::eof()) return false;
    std::streamsize at_hand = std::clamp<std::streamsize>(source.in_avail(), 1, max_block);
    unsigned old_size = bytes.size();
    bytes.resize(old_size + static_cast<unsigned>(at_hand));
    std::streamsize taken = source.sgetn(bytes.data() + old_size, at_hand); // 0 if it raises: see the caller
    bytes.shrink(old_size + static_cast<unsigned>(taken));
    return taken > 0;
}

} // namespace

bool input_buffer::refill(char const* keep) {
    std::copy(keep, end(), m_bytes.begin());
    m_bytes.shrink(static_cast<unsigned>(end() - keep));
    bool more = false;
    try {
        more = !m_at_end && m_stream.rdbuf() && fetch(*m_stream.rdbuf(), m_bytes);
    } catch (std::ios_base::failure const&) {
        m_stream.setstate(std::ios_base::badbit); // the stream stands for a directory, for one
    }
    m_at_end = !more;
    m_bytes.push_back('\0');
    return more;
}

void input_buffer::give_back(char const* unread) {
    if (!m_stream.rdbuf()) return;
    // The block was the stream's own read area or a part of it, so that one step back per byte is possible.
    for (auto n = end() - unread; n > 0; n--) {
        if (m_stream.rdbuf()->sungetc() == std::streambuf::traits_type::eof()) break;
    }
    m_bytes.reset();
    m_bytes.push_back('\0');
    m_at_end = true;
}

} // namespace vexor
