#include "session_text.h"

namespace vexor_tool {

void session_text::append(std::string const& line) {
    bool escaped = false;
    for (char c : line) {
        if (m_in_string) {
            if (!escaped && c == '"') m_in_string = false;
            escaped = !escaped && c == '\\';
            continue;
        }
        if (c == ';') break;
        if (c == '"') m_in_string = true;
        if (c == '(') ++m_depth;
        if (c == ')') --m_depth;
    }
    m_text += line;
    m_text += '\n';
}

std::string session_text::take() {
    std::string result;
    result.swap(m_text);
    m_depth = 0;
    m_in_string = false;
    return result;
}

} // namespace vexor_tool
