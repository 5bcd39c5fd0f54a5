#include "base/queue.h"

#include <gtest/gtest.h>

#include <deque>

#include "support/random.h"
#include "support/tracked.h"

namespace vexor {
namespace {

using vexor_test::random_stream;
using vexor_test::tracked;

TEST(queue_test, a_queue_that_has_run_empty_rewinds) {
    queue<int> q;
    for (int i = 0; i < 100000; i++) {
        q.push(i);
        q.push(i + 1);
        EXPECT_EQ(q.front(), i);
        q.pop();
        q.pop();
    }
    EXPECT_EQ(q.capacity(), 16u);
}

TEST(queue_test, a_queue_that_never_runs_empty_stays_small) {
    queue<int> q;
    q.push(0);
    for (int i = 1; i < 100000; i++) {
        q.push(i);
        ASSERT_EQ(q.front(), i - 1);
        q.pop();
    }
    EXPECT_EQ(q.capacity(), 16u);
}

TEST(queue_test, doubles_when_full) {
    queue<int, heap_allocator, 4> q;
    for (int i = 0; i < 9; i++) q.push(i);
    EXPECT_EQ(q.capacity(), 16u);
    for (int i = 0; i < 9; i++) {
        EXPECT_EQ(q.front(), i);
        q.pop();
    }
}

TEST(queue_test, its_own_front_may_be_pushed) {
    queue<tracked, heap_allocator, 1> q;
    q.push(5);
    for (int i = 0; i < 100; i++) q.push(q.front());
    EXPECT_EQ(q.back().get(), 5);
}

TEST(queue_test, agrees_with_a_deque_under_random_operations) {
    std::uint64_t first = vexor_test::first_seed(5);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(60); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        {
            queue<tracked, heap_allocator, 3> q;
            std::deque<int> model;
            unsigned push_percent = random.below(60) + 25;
            for (int step = 0; step < 500; step++) {
                if (random.chance(push_percent)) {
                    q.push(step);
                    model.push_back(step);
                } else if (!model.empty()) {
                    q.pop();
                    model.pop_front();
                } else {
                    q.reset();
                }
                ASSERT_EQ(q.size(), model.size());
                ASSERT_EQ(tracked::live(), static_cast<int>(model.size()));
                ASSERT_EQ(q.empty(), model.empty());
                if (!model.empty()) {
                    ASSERT_EQ(q.front().get(), model.front());
                }
            }
            auto expected = model.begin();
            for (tracked const& t : q) ASSERT_EQ(t.get(), *expected++);
        }
        ASSERT_EQ(tracked::live(), 0);
    }
}

} // namespace
} // namespace vexor
