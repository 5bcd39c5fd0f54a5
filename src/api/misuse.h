// What a caller must never do, and what can be told cheaply.
#pragma once

namespace vexor {

class ast;

// Ends the process with a message that names the exported function and what is wrong with its call: going on
// would corrupt memory.
[[noreturn]] void misuse(char const* function, char const* what);

// --- Calls from the search callback, which find a context in the middle of its work.

extern bool g_callback_runs;
inline void check_no_callback(char const* function) {
    if (g_callback_runs)
        misuse(function, "called from the search callback; callbacks must not call the library");
}

// --- Dead handles, told by debug builds. An address that a new node takes over is alive again.

#ifdef VEXOR_DEBUG
void note_handle_alive(ast const* node);
void note_handle_dead(ast const* node);
void check_handle_alive(ast const* node, char const* function);
#else
inline void note_handle_alive(ast const*) {}
inline void note_handle_dead(ast const*) {}
inline void check_handle_alive(ast const*, char const*) {}
#endif

} // namespace vexor
