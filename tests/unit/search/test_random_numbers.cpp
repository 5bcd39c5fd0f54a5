// The stream of the search: its values are part of what makes runs repeatable.
#include "search/random_numbers.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace {

using namespace vexor;

// The same recurrence in integers.
TEST(random_numbers, agrees_with_exact_integers) {
    random_numbers stream;
    std::uint64_t seed = 91648253;
    for (unsigned i = 0; i < 100000; ++i) {
        seed = seed * 1389796 % 2147483647;
        ASSERT_EQ(stream.draw(), static_cast<double>(seed) / 2147483647.0);
    }
}

TEST(random_numbers, below_covers_its_range_evenly) {
    random_numbers stream;
    unsigned counts[10] = {};
    for (unsigned i = 0; i < 100000; ++i) {
        unsigned const v = stream.below(10);
        ASSERT_LT(v, 10u);
        ++counts[v];
    }
    for (unsigned c : counts) {
        EXPECT_GT(c, 9000u);
        EXPECT_LT(c, 11000u);
    }
}

TEST(random_numbers, a_coin_takes_one_draw) {
    random_numbers a;
    random_numbers b;
    unsigned heads = 0;
    for (unsigned i = 0; i < 10000; ++i) {
        double const d = b.draw();
        bool const c = a.coin();
        ASSERT_EQ(c, d * 2 >= 1);
        heads += c ? 1 : 0;
    }
    EXPECT_GT(heads, 4700u);
    EXPECT_LT(heads, 5300u);
}

} // namespace
