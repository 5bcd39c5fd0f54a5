// Lines of a session, gathered until their parentheses are closed.
#pragma once

#include <string>

namespace vexor_tool {

// Knows comments, which begin with a semicolon, and strings.
class session_text {
public:
    void append(std::string const& line);
    [[nodiscard]] bool empty() const { return m_text.empty(); }
    // More lines must come before the text can be executed. A parenthesis too many closes.
    [[nodiscard]] bool is_open() const { return m_depth > 0 || m_in_string; }
    // The text; nothing is left.
    std::string take();

private:
    std::string m_text;       // with a line end behind each line
    long m_depth = 0;         // open parentheses
    bool m_in_string = false; // inside of a string
};

} // namespace vexor_tool
