#include "base/heap.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

// Greater activity stands nearer to the root, as in the search.
struct by_activity {
    std::vector<double>* m_activity;
    bool operator()(int a, int b) const {
        return (*m_activity)[static_cast<std::size_t>(a)] > (*m_activity)[static_cast<std::size_t>(b)];
    }
};
struct by_index {
    bool operator()(int a, int b) const { return a < b; }
};

TEST(heap_test, empty_heap) {
    heap<by_index> h;
    EXPECT_TRUE(h.empty());
    EXPECT_FALSE(h.contains(0));
    h.set_bounds(3);
    EXPECT_FALSE(h.contains(2));
    EXPECT_FALSE(h.contains(3));
    h.reset();
    EXPECT_TRUE(h.empty());
    h.check_invariant();
}

TEST(heap_test, gives_values_in_order) {
    heap<by_index> h;
    h.set_bounds(10);
    for (int v : {7, 2, 9, 0, 4}) h.insert(v);
    for (int v : {0, 2, 4, 7, 9}) EXPECT_EQ(h.erase_min(), v);
    EXPECT_TRUE(h.empty());
}

TEST(heap_test, equal_values_do_not_pass_each_other) {
    std::vector<double> activity(8, 1.0);
    heap<by_activity> h(by_activity{&activity});
    h.set_bounds(8);
    for (int v = 0; v < 8; v++) h.insert(v);
    // Nothing moves up past an equal parent: the array is in order of insertion.
    EXPECT_EQ(std::vector<int>(h.begin(), h.end()), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
    h.increase(7);
    EXPECT_EQ(h.min(), 0);
    // The last value takes the root's place and does not sink past equal children.
    EXPECT_EQ(h.erase_min(), 0);
    EXPECT_EQ(h.min(), 7);
    // Both children are better by the same amount: the left one comes up.
    activity[7] = 0.5;
    h.decrease(7);
    EXPECT_EQ(std::vector<int>(h.begin(), h.end()), (std::vector<int>{1, 3, 2, 7, 4, 5, 6}));
}

// Against a sorted set of (activity, value); equal activities are allowed.
TEST(heap_test, agrees_with_a_set_under_random_operations) {
    std::uint64_t first = vexor_test::first_seed(3);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(60); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        int n = random.between(1, 40);
        std::vector<double> activity(static_cast<std::size_t>(n));
        heap<by_activity> h(by_activity{&activity});
        h.set_bounds(n);
        std::multiset<double> inside;
        auto take_out = [&](int v) { inside.erase(inside.find(activity[static_cast<std::size_t>(v)])); };
        for (int step = 0; step < 400; step++) {
            int v = random.between(0, n - 1);
            double& a = activity[static_cast<std::size_t>(v)];
            double changed = random.below(10);
            if (!h.contains(v)) {
                a = changed;
                h.insert(v);
                inside.insert(a);
            } else if (random.chance(30)) {
                h.remove(v);
                take_out(v);
            } else if (random.chance(30)) {
                int root = h.min();
                ASSERT_EQ(activity[static_cast<std::size_t>(root)], *inside.rbegin());
                take_out(root);
                ASSERT_EQ(h.erase_min(), root);
                ASSERT_FALSE(h.contains(root));
            } else {
                take_out(v);
                double old = a;
                a = changed;
                if (random.chance(30))
                    h.update(v);
                else if (changed > old)
                    h.increase(v);
                else
                    h.decrease(v);
                inside.insert(a);
            }
            if (random.chance(1)) {
                h.reset();
                inside.clear();
            }
            h.check_invariant();
            ASSERT_EQ(h.size(), inside.size());
        }
        while (!h.empty()) {
            int root = h.min();
            ASSERT_EQ(activity[static_cast<std::size_t>(root)], *inside.rbegin());
            take_out(root);
            h.remove_at(1);
        }
    }
}

TEST(heap_test, bounds_grow_while_values_are_inside) {
    heap<by_index> h;
    h.set_bounds(2);
    h.insert(1);
    h.set_bounds(1000);
    h.insert(999);
    h.insert(0);
    EXPECT_EQ(h.erase_min(), 0);
    EXPECT_EQ(h.erase_min(), 1);
    EXPECT_EQ(h.erase_min(), 999);
}

} // namespace
} // namespace vexor
