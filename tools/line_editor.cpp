#include "line_editor.h"

#include <cstdio>
#include <iostream>

#ifdef VEXOR_LIBEDIT
#include <histedit.h>
#endif

namespace vexor_tool {

#ifdef VEXOR_LIBEDIT

struct line_editor::state {
    EditLine* m_editor = nullptr;
    History* m_history = nullptr;
};

namespace {

char const* g_prompt = ""; // the library asks a function without argument

char* current_prompt(EditLine*) { return const_cast<char*>(g_prompt); }

} // namespace

line_editor::line_editor()
    : m_state(std::make_unique<state>()) {
    m_state->m_editor = el_init("vexor", stdin, stdout, stderr);
    m_state->m_history = history_init();
    HistEvent event;
    if (m_state->m_history != nullptr) history(m_state->m_history, &event, H_SETSIZE, 1000);
    if (m_state->m_editor == nullptr) return;
    el_set(m_state->m_editor, EL_PROMPT, &current_prompt);
    el_set(m_state->m_editor, EL_EDITOR, "emacs");
    el_set(m_state->m_editor, EL_SIGNAL, 1);
    if (m_state->m_history != nullptr) el_set(m_state->m_editor, EL_HIST, history, m_state->m_history);
}

line_editor::~line_editor() {
    if (m_state->m_history != nullptr) history_end(m_state->m_history);
    if (m_state->m_editor != nullptr) el_end(m_state->m_editor);
}

bool line_editor::read_line(char const* prompt, std::string& line) {
    g_prompt = prompt;
    int length = 0;
    char const* text = m_state->m_editor == nullptr ? nullptr : el_gets(m_state->m_editor, &length);
    if (text == nullptr || length <= 0) return false;
    HistEvent event;
    if (m_state->m_history != nullptr && length > 1) history(m_state->m_history, &event, H_ENTER, text);
    line.assign(text, static_cast<std::size_t>(length));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    return true;
}

#else

struct line_editor::state {};

line_editor::line_editor() = default;
line_editor::~line_editor() = default;

bool line_editor::read_line(char const* prompt, std::string& line) {
    std::cout << prompt << std::flush;
    return static_cast<bool>(std::getline(std::cin, line));
}

#endif

} // namespace vexor_tool
