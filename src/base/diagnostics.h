// Process-wide measures: verbosity, memory, time.
#pragma once

#include <cstdint>

namespace vexor {

// How much progress output goes to the error stream; 0, the default, is silent.
void set_verbosity_level(int level);
[[nodiscard]] int get_verbosity_level();

// Memory of the process in bytes, as the system accounts it; 0 where it does not tell.
[[nodiscard]] std::uint64_t get_memory_used();

// User CPU time of the process in seconds.
[[nodiscard]] double get_cpu_time();

} // namespace vexor
