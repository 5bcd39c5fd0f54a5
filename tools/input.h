// Files and standard input as streams that a stop request can interrupt.
#pragma once

#include <exception>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

namespace vexor_tool {

// Thrown out of a read when a stop was requested meanwhile.
class interrupted_exception : public std::exception {
public:
    char const* what() const noexcept override { return "interrupted"; }
};

// The bytes of a file descriptor. Throws std::ios_base::failure when a read fails and interrupted_exception
// when a stop is requested; both pass to those who read from the buffer itself.
class descriptor_buffer : public std::streambuf {
public:
    explicit descriptor_buffer(int descriptor)
        : m_descriptor(descriptor) {}

    // Forgets what was buffered and starts over; false if the descriptor cannot.
    bool rewind();

protected:
    int_type underflow() override;
    std::streamsize xsgetn(char* target, std::streamsize count) override;

private:
    std::size_t read_some(char* target, std::size_t count);

    int m_descriptor;                                       // not owned
    std::vector<char> m_block = std::vector<char>(1 << 16); // for readers that go byte by byte
};

// The first character of standard input, -1 at its end; it is read again by the input that is opened next.
// Throws like an input's stream.
int peek_standard_input();

// One input, opened for its lifetime. Throws std::system_error if it cannot be opened, interrupted_exception
// if a stop is requested meanwhile.
class input {
public:
    // "-" is standard input.
    explicit input(std::string const& path);
    ~input();
    input(input const&) = delete; // owns a descriptor
    input& operator=(input const&) = delete;

    std::istream& stream() { return m_stream; }
    // For messages.
    [[nodiscard]] std::string const& name() const { return m_name; }
    // Prepares for a rewind: an input that cannot seek, such as a pipe, is read into memory.
    void make_repeatable();
    void rewind();

private:
    std::string m_name;                          // the path, or <stdin>
    int m_descriptor;                            // 0 for standard input, which is not closed
    std::unique_ptr<descriptor_buffer> m_buffer; // over m_descriptor
    std::unique_ptr<std::stringbuf> m_copy;      // the whole input, if it was read into memory
    std::istream m_stream;                       // over m_copy if there is one, else over m_buffer
};

} // namespace vexor_tool
