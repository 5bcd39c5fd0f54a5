#include "base/memory.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace vexor {

void memoryExhausted() {
    std::fputs("Memory exhausted...\n", stderr);
    std::abort();
}

void* xmalloc(std::size_t size) {
    void* result = std::malloc(size != 0 ? size : 1);
    if (!result) memoryExhausted();
    return result;
}

void* xrealloc(void* old, std::size_t size) {
    void* result = std::realloc(old, size != 0 ? size : 1);
    if (!result) memoryExhausted();
    return result;
}

char* xstrdup(char const* text) {
    std::size_t size = std::strlen(text) + 1;
    return static_cast<char*>(std::memcpy(xmalloc(size), text, size));
}

void setNewHandler() { std::set_new_handler(memoryExhausted); }

void heap_allocator::release(void* memory) { std::free(memory); }

} // namespace vexor
