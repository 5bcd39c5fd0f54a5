#include "base/memory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace vexor {
namespace {

TEST(memory_test, allocations_of_zero_bytes_are_valid) {
    void* p = xmalloc(0);
    ASSERT_NE(p, nullptr);
    p = xrealloc(p, 100);
    std::memset(p, 1, 100);
    p = xrealloc(p, 0);
    ASSERT_NE(p, nullptr);
    std::free(p);
}

TEST(memory_test, xstrdup_copies) {
    char const* text = "vexor";
    char* copy = xstrdup(text);
    EXPECT_NE(copy, text);
    EXPECT_STREQ(copy, text);
    std::free(copy);
}

TEST(memory_death_test, exhaustion_ends_the_process) {
    EXPECT_EXIT(memoryExhausted(), testing::KilledBySignal(SIGABRT), "Memory exhausted...\n");
#ifndef __SANITIZE_ADDRESS__ // which ends the process itself on a request of this size
    EXPECT_EXIT(std::free(xmalloc(~std::size_t{0} / 2)), testing::KilledBySignal(SIGABRT),
                "Memory exhausted");
    EXPECT_EXIT(
        {
            setNewHandler();
            ::operator delete(::operator new (~std::size_t{0} / 4));
        },
        testing::KilledBySignal(SIGABRT), "Memory exhausted");
#endif
}

} // namespace
} // namespace vexor
