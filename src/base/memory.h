// Raw memory with one policy: when it runs out the process ends, there is no way back.
#pragma once

#include <cstddef>

namespace vexor {

// Writes "Memory exhausted..." to the error stream and aborts.
[[noreturn]] void memoryExhausted();

// As malloc, realloc and strdup, but the result is never null for a failure; it is released by free. A size
// of 0 gives a valid pointer.
[[nodiscard]] void* xmalloc(std::size_t size);
[[nodiscard]] void* xrealloc(void* old, std::size_t size);
[[nodiscard]] char* xstrdup(char const* text);

// From this call on a failed operator new ends the process through memoryExhausted, too.
void setNewHandler();

// The allocation policy of the containers.
struct heap_allocator {
    static void* allocate(std::size_t size) { return xmalloc(size); }
    static void* reallocate(void* old, std::size_t size) { return xrealloc(old, size); }
    static void release(void* memory);
};

} // namespace vexor
