// Arbitrary bytes as a file in the native language. Reading must end in an exception of the library or in
// contents that are the same whatever pieces the stream delivers; what is printed must be read back to the
// same text. After an exception the manager holds what was read before it and nothing else.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

#include "ast/node/ast_manager.h"
#include "ast/node/settings.h"
#include "base/exceptions.h"
#include "frontend/native_reader.h"
#include "frontend/parser.h"

using namespace vexor;

namespace {

void require(bool condition, char const* what, std::string const& text = "") {
    if (condition) return;
    std::cerr << what << "\n" << text << "\n";
    std::abort();
}

class piecewise_buffer : public std::streambuf {
public:
    piecewise_buffer(std::string& text, std::size_t piece)
        : m_text(text)
        , m_piece(piece) {}

protected:
    int_type underflow() override {
        if (m_next == m_text.size()) return traits_type::eof();
        std::size_t n = std::min(m_piece, m_text.size() - m_next);
        setg(m_text.data() + m_next, m_text.data() + m_next, m_text.data() + m_next + n);
        m_next += n;
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string& m_text;
    std::size_t m_piece;
    std::size_t m_next = 0;
};

struct reading {
    ast_manager m_manager;
    native_contents m_contents;
    std::string m_error; // of the exception

    reading(std::string text, std::size_t piece) {
        piecewise_buffer buffer(text, piece);
        std::istream stream(&buffer);
        try {
            read_native(&m_manager, stream, "fuzz", m_contents);
        } catch (vexor_exception const& error) {
            m_error = error.what();
        }
    }
    std::string print(print_mode mode) const {
        std::ostringstream out;
        print_native(out, m_contents, mode);
        return out.str();
    }
};

// Shared nodes make the text without sharing exponentially long, and long bit-vectors have as many digits.
bool prints_short(std::string const& text) {
    int digits = 0;
    for (char c : text) {
        digits = std::isdigit(static_cast<unsigned char>(c)) ? digits + 1 : 0;
        if (digits > 4 || c == '#') return false;
    }
    return true;
}

void check_printing(reading const& original, print_mode mode) {
    std::string text = original.print(mode);
    reading again(text, 4096);
    require(again.m_error.empty(), "the printed form is not read", again.m_error + "\n" + text);
    require(again.print(mode) == text, "the printed form is read as something else",
            text + again.print(mode));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) return 0;
    parser::m_sharing = (data[0] & 1) != 0;
    g_type_check = (data[0] & 2) != 0;
    std::string text(reinterpret_cast<char const*>(data) + 1, size - 1);
    reading whole(text, std::max<std::size_t>(text.size(), 1));
    reading pieces(text, 1 + data[0] / 4 % 7);
    require(whole.m_error == pieces.m_error, "pieces change the error",
            whole.m_error + "\n" + pieces.m_error);
    require(whole.m_contents.size() == pieces.m_contents.size(), "pieces change the contents");
    require(whole.m_manager.num_live_nodes() == pieces.m_manager.num_live_nodes(), "pieces change the nodes");
    whole.m_manager.check_invariant();
    if (!prints_short(text)) return 0;
    bool has_scopes = text.find("p") != std::string::npos && text.find("(pop") != std::string::npos;
    if (has_scopes) return 0; // a name may have been defined again
    check_printing(whole, print_mode::tree);
    check_printing(whole, print_mode::dag);
    return 0;
}
