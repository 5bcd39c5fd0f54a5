#include "base/deep_stack.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <pthread.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace vexor {
namespace {

// Sums 1..n by real recursion: each level has a frame that stays in use behind the call.
[[gnu::noinline]] long sum_to(int n) {
    check_depth();
    volatile long frame[16];
    frame[n % 16] = n;
    if (n == 0) return 0;
    long below = sum_to(n - 1);
    return below + frame[n % 16];
}

[[gnu::noinline]] long throw_at(int n) {
    check_depth();
    volatile long frame[16];
    frame[0] = n;
    std::string owned("destroyed while the exception passes, long enough for the heap");
    if (n == 0) throw std::runtime_error("from the bottom");
    return throw_at(n - 1) + frame[0] + static_cast<long>(owned.size());
}

// Does not end for n >= 0.
[[gnu::noinline]] long endless(long n) {
    check_depth();
    if (n < 0) return 0;
    volatile long frame[64];
    frame[n % 64] = n;
    return endless(n + 1) + frame[n % 64];
}

[[maybe_unused]] std::size_t resident_bytes() {
    std::ifstream statm("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statm >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// Runs f on a thread with a stack of 512 KB.
template <class F>
void on_small_thread(F f) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
    pthread_t thread;
    auto start = [](void* argument) -> void* {
        (*static_cast<F*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &f), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

TEST(deep_stack_test, results_of_all_kinds_come_back) {
    EXPECT_EQ(on_deep_stack([] { return 7; }), 7);
    int x = 1;
    on_deep_stack([&] { x = 2; });
    EXPECT_EQ(x, 2);
    int& reference = on_deep_stack([&]() -> int& { return x; });
    EXPECT_EQ(&reference, &x);
    auto owned = on_deep_stack([] { return std::make_unique<int>(5); }); // can be moved only
    EXPECT_EQ(*owned, 5);
    EXPECT_EQ(on_deep_stack([]() -> std::string const { return "text"; }), "text");
    struct no_default {
        explicit no_default(int v)
            : m_v(v) {}
        int m_v;
    };
    EXPECT_EQ(on_deep_stack([] { return no_default(3); }).m_v, 3);
    auto callable = [](int n) { return [n] { return n; }; }(9);
    EXPECT_EQ(on_deep_stack(callable), 9);
    auto const& constant = callable;
    EXPECT_EQ(on_deep_stack(constant), 9);
}

TEST(deep_stack_test, recursion_of_a_hundred_thousand_levels) {
    EXPECT_EQ(on_deep_stack([] { return sum_to(100000); }), 100000l * 100001 / 2);
}

TEST(deep_stack_test, works_on_a_small_thread) {
    on_small_thread([] {
        for (int round = 0; round < 3; round++) {
            EXPECT_EQ(on_deep_stack([] { return sum_to(100000); }), 100000l * 100001 / 2);
            EXPECT_THROW(on_deep_stack([] { return throw_at(20000); }), std::runtime_error);
        }
    });
}

TEST(deep_stack_test, several_threads_at_once) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; i++)
        threads.emplace_back([] { EXPECT_EQ(on_deep_stack([] { return sum_to(20000); }), 200010000l); });
    for (auto& t : threads) t.join();
}

TEST(deep_stack_test, exceptions_come_across_and_leave_the_stack_usable) {
    for (int round = 0; round < 3; round++) {
        try {
            on_deep_stack([] { return throw_at(20000); });
            ADD_FAILURE();
        } catch (std::runtime_error const& e) {
            EXPECT_STREQ(e.what(), "from the bottom");
        }
        EXPECT_FALSE(is_on_deep_stack());
        EXPECT_THROW(on_deep_stack([] { throw 5; }), int);
        EXPECT_EQ(on_deep_stack([] { return sum_to(1000); }), 500500);
    }
}

TEST(deep_stack_test, exceptions_caught_inside_stay_inside) {
    EXPECT_EQ(on_deep_stack([] {
                  try {
                      return throw_at(5000);
                  } catch (std::runtime_error const&) {
                      return sum_to(5000);
                  }
              }),
              5000l * 5001 / 2);
}

TEST(deep_stack_test, nested_calls_run_directly) {
    EXPECT_FALSE(is_on_deep_stack());
    on_deep_stack([] {
        EXPECT_TRUE(is_on_deep_stack());
        char outer = 0;
        char const* inner =
            on_deep_stack([] { return static_cast<char const*>(__builtin_frame_address(0)); });
        EXPECT_LT(&outer - inner, 100000); // the same stack
        EXPECT_THROW(on_deep_stack([] { throw_at(100); }), std::runtime_error);
        EXPECT_TRUE(is_on_deep_stack());
        EXPECT_EQ(on_deep_stack([] { return sum_to(1000); }), 500500);
    });
    EXPECT_FALSE(is_on_deep_stack());
}

TEST(deep_stack_test, no_check_outside) { EXPECT_EQ(sum_to(100), 5050); }

TEST(deep_stack_test, endless_recursion_ends_in_an_exception) {
    set_deep_stack_size(std::size_t{32} << 20);
    for (int round = 0; round < 3; round++) {
        try {
            on_deep_stack([] { return endless(0); });
            ADD_FAILURE();
        } catch (nesting_too_deep_exception const& e) {
            EXPECT_STREQ(e.what(), "input is nested too deeply");
        }
        EXPECT_EQ(on_deep_stack([] { return sum_to(1000); }), 500500);
    }
    set_deep_stack_size(0);
    EXPECT_EQ(on_deep_stack([] { return sum_to(100000); }), 100000l * 100001 / 2);
}

TEST(deep_stack_test, without_room_for_a_stack_the_callers_one_is_measured) {
    on_small_thread([] {
        set_deep_stack_size(1);
        for (int round = 0; round < 3; round++) {
            char here = 0;
            char const* inside =
                on_deep_stack([] { return static_cast<char const*>(__builtin_frame_address(0)); });
            EXPECT_LT(std::abs(&here - inside), 100000); // the same stack
            EXPECT_EQ(on_deep_stack([] { return sum_to(100); }), 5050);
            EXPECT_THROW(on_deep_stack([] { return endless(0); }), nesting_too_deep_exception);
            EXPECT_THROW(on_deep_stack([] { return throw_at(100); }), std::runtime_error);
            EXPECT_FALSE(is_on_deep_stack());
        }
        set_deep_stack_size(0);
        EXPECT_EQ(on_deep_stack([] { return sum_to(100000); }), 100000l * 100001 / 2);
    });
}

#ifndef __SANITIZE_ADDRESS__ // which has memory of its own for the shadow of the stack
TEST(deep_stack_test, memory_of_a_deep_call_is_given_back) {
    on_deep_stack([] { return sum_to(1000); });
    std::size_t before = resident_bytes();
    std::size_t during = on_deep_stack([] {
        sum_to(200000);
        return resident_bytes();
    });
    std::size_t after = resident_bytes();
    EXPECT_GT(during, before + (std::size_t{20} << 20));
    EXPECT_LT(after, before + (std::size_t{4} << 20));
}

// In fresh processes: threads and stacks of the tests before would count against the limit.
TEST(deep_stack_death_test, a_limited_address_space_is_enough) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto limited = [](std::size_t megabytes, int depth) {
        rlimit limit{megabytes << 20, megabytes << 20};
        if (setrlimit(RLIMIT_AS, &limit) != 0) std::_Exit(1);
        if (on_deep_stack([&] { return sum_to(depth); }) != depth * (depth + 1l) / 2) std::_Exit(2);
        try {
            on_deep_stack([] { return endless(0); });
            std::_Exit(3);
        } catch (nesting_too_deep_exception const&) {
        }
        std::vector<char> heap(megabytes << 18, 1); // a quarter of it is still there for the heap
        std::_Exit(heap.back() == 1 ? 0 : 4);
    };
    EXPECT_EXIT(limited(1000, 100000), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(limited(100, 10000), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(limited(30, 1000), testing::ExitedWithCode(0), ""); // on the caller's stack
}
#endif

TEST(deep_stack_death_test, the_process_may_end_from_deep_inside) {
    EXPECT_EXIT(on_deep_stack([] {
                    sum_to(10000);
                    std::exit(5);
                }),
                testing::ExitedWithCode(5), "");
}

TEST(deep_stack_death_test, a_static_destructor_may_use_it) {
    struct late {
        ~late() {
            std::_Exit(on_deep_stack([] { return sum_to(10000); }) == 50005000 ? 6 : 7);
        }
    };
    EXPECT_EXIT(
        {
            static late object;
            on_deep_stack([] { return sum_to(10); });
            std::exit(0);
        },
        testing::ExitedWithCode(6), "");
}

} // namespace
} // namespace vexor
