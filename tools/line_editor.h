// Reads lines from a terminal, with editing and history where the system has libedit.
#pragma once

#include <memory>
#include <string>

namespace vexor_tool {

class line_editor {
public:
    line_editor();
    ~line_editor();
    line_editor(line_editor const&) = delete; // owns the terminal's mode
    line_editor& operator=(line_editor const&) = delete;

    // False at the end of the input. The line has no line end.
    bool read_line(char const* prompt, std::string& line);

private:
    struct state;
    std::unique_ptr<state> m_state; // of the library
};

} // namespace vexor_tool
