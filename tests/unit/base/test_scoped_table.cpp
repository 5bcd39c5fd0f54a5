#include "base/scoped_table.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "support/random.h"
#include "support/tracked.h"

namespace vexor {
namespace {

using vexor_test::random_stream;
using vexor_test::tracked;

TEST(scoped_table_test, inner_bindings_hide_outer_ones) {
    scoped_table<int, int, int_hash> t;
    t.insert(1, 10);
    EXPECT_EQ(t.level_of(1), 0);
    t.begin_scope();
    EXPECT_EQ(*t.find(1), 10);
    EXPECT_EQ(t.find_at_level(1), nullptr);
    t.insert(1, 20);
    EXPECT_EQ(*t.find(1), 20);
    EXPECT_EQ(*t.find_at_level(1), 20);
    EXPECT_EQ(t.level_of(1), 1);
    t.insert(1, 30); // replaces the binding of this level
    EXPECT_EQ(t.size(), 2u);
    t.end_scope();
    EXPECT_EQ(*t.find(1), 10);
    EXPECT_EQ(t.level_of(2), -1);
    t.reset();
    EXPECT_FALSE(t.contains(1));
}

TEST(scoped_table_test, values_are_destroyed_on_request) {
    {
        scoped_table<int, tracked, int_hash, default_eq<int>, true> t;
        t.insert(1, 1);
        t.begin_scope();
        t.insert(1, 2);
        t.insert(2, 3);
        EXPECT_EQ(tracked::live(), 3);
        t.end_scope();
        EXPECT_EQ(tracked::live(), 1);
        t.begin_scope();
        t.insert(3, 3);
    }
    EXPECT_EQ(tracked::live(), 0);
}

TEST(scoped_table_test, agrees_with_a_stack_of_maps_under_random_operations) {
    std::uint64_t first = vexor_test::first_seed(31);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(30); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        scoped_table<int, int, int_hash> t;
        std::vector<std::map<int, int>> model(1);
        int range = random.chance(50) ? 20 : 1000;
        for (int step = 0; step < 1500; step++) {
            unsigned what = random.below(100);
            if (what < 80) {
                int k = random.between(0, range);
                t.insert(k, step);
                model.back()[k] = step;
            } else if (what < 90) {
                t.begin_scope();
                model.emplace_back();
            } else if (what < 99) {
                if (model.size() > 1) {
                    t.end_scope();
                    model.pop_back();
                }
            } else if (random.chance(10)) {
                t.reset();
                model.assign(1, {});
            }
            ASSERT_EQ(t.level() + 1, model.size());
            int k = random.between(0, range);
            int level = static_cast<int>(model.size()) - 1;
            while (level >= 0 && !model[static_cast<unsigned>(level)].count(k)) level--;
            ASSERT_EQ(t.level_of(k), level);
            int found;
            ASSERT_EQ(t.find(k, found), level >= 0);
            if (level >= 0) {
                ASSERT_EQ(found, model[static_cast<unsigned>(level)][k]);
            }
            if (step % 64 == 0) t.check_invariant();
        }
    }
}

} // namespace
} // namespace vexor
