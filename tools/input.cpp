#include "input.h"

#include <cerrno>
#include <fcntl.h>
#include <ios>
#include <sstream>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "stop_request.h"

namespace vexor_tool {

namespace {

// Waits for a named pipe's other end, if need be until a stop is requested.
int open_file(std::string const& path) {
    for (;;) {
        if (stop_requested() != stop_reason::none) throw interrupted_exception();
        int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor >= 0) return descriptor;
        if (errno != EINTR) throw std::system_error(errno, std::generic_category());
    }
}

// Standard input with its first block, after a look at it and until an input takes it over.
std::unique_ptr<descriptor_buffer> g_peeked_input;

} // namespace

int peek_standard_input() {
    if (!g_peeked_input) g_peeked_input = std::make_unique<descriptor_buffer>(STDIN_FILENO);
    auto const first = g_peeked_input->sgetc();
    return first == std::streambuf::traits_type::eof() ? -1 : first;
}

std::size_t descriptor_buffer::read_some(char* target, std::size_t count) {
    for (;;) {
        if (stop_requested() != stop_reason::none) throw interrupted_exception();
        ssize_t got = ::read(m_descriptor, target, count);
        if (got >= 0) return static_cast<std::size_t>(got);
        if (errno != EINTR) {
            throw std::ios_base::failure("read", std::error_code(errno, std::generic_category()));
        }
    }
}

descriptor_buffer::int_type descriptor_buffer::underflow() {
    std::size_t got = read_some(m_block.data(), m_block.size());
    setg(m_block.data(), m_block.data(), m_block.data() + got);
    return got == 0 ? traits_type::eof() : traits_type::to_int_type(*gptr());
}

std::streamsize descriptor_buffer::xsgetn(char* target, std::streamsize count) {
    if (gptr() != egptr()) return std::streambuf::xsgetn(target, count);
    // Large requests go straight into the caller's memory.
    std::streamsize total = 0;
    while (total < count) {
        std::size_t got = read_some(target + total, static_cast<std::size_t>(count - total));
        if (got == 0) break;
        total += static_cast<std::streamsize>(got);
    }
    return total;
}

bool descriptor_buffer::rewind() {
    setg(nullptr, nullptr, nullptr);
    return ::lseek(m_descriptor, 0, SEEK_SET) == 0;
}

input::input(std::string const& path)
    : m_name(path == "-" ? "<stdin>" : path)
    , m_descriptor(path == "-" ? STDIN_FILENO : open_file(path))
    , m_stream(nullptr) {
    if (m_descriptor == STDIN_FILENO && g_peeked_input)
        m_buffer = std::move(g_peeked_input);
    else
        m_buffer = std::make_unique<descriptor_buffer>(m_descriptor);
    m_stream.rdbuf(m_buffer.get());
}

input::~input() {
    if (m_descriptor != STDIN_FILENO) ::close(m_descriptor);
}

void input::make_repeatable() {
    if (::lseek(m_descriptor, 0, SEEK_CUR) >= 0) return;
    std::string text;
    std::vector<char> block(1 << 16);
    while (std::streamsize got = m_buffer->sgetn(block.data(), static_cast<std::streamsize>(block.size()))) {
        text.append(block.data(), static_cast<std::size_t>(got));
    }
    m_copy = std::make_unique<std::stringbuf>(text, std::ios::in);
    m_stream.rdbuf(m_copy.get());
}

void input::rewind() {
    m_stream.clear();
    if (m_copy) {
        m_copy->pubseekpos(0, std::ios::in);
    } else if (!m_buffer->rewind()) {
        throw std::ios_base::failure("rewind", std::error_code(errno, std::generic_category()));
    }
}

} // namespace vexor_tool
