// Assertions of the developers.
//
// VEXOR_ASSERT states what the next line relies on. It never has an effect and never judges user input, which
// is answered with an exception. VEXOR_DEBUG turns it on; check_invariant functions are compiled in every
// build and called by VEXOR_INVARIANT only where VEXOR_DEBUG is set.
#pragma once

namespace vexor {

// How much the self-checks of debug builds cost: 0 none, 1 cheap (default), 2 everything at each quiet point.
extern int g_debug_level;

// Reports the failed condition on the error stream and aborts.
[[noreturn]] void assertion_failed(char const* condition, char const* file, int line);

} // namespace vexor

#ifdef VEXOR_DEBUG
#define VEXOR_ASSERT(condition)                                                                              \
    ((condition) ? static_cast<void>(0) : ::vexor::assertion_failed(#condition, __FILE__, __LINE__))
#define VEXOR_INVARIANT(level, call)                                                                         \
    do {                                                                                                     \
        if (::vexor::g_debug_level >= (level)) {                                                             \
            call;                                                                                            \
        }                                                                                                    \
    } while (false)
#else
#define VEXOR_ASSERT(condition) static_cast<void>(0)
#define VEXOR_INVARIANT(level, call) static_cast<void>(0)
#endif

// For states that no input can reach; aborts in every build, since going on could mean a wrong answer.
#define VEXOR_UNREACHABLE() ::vexor::assertion_failed("unreachable", __FILE__, __LINE__)
