#include "base/bitvector.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/compact_bitvector.h"
#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

TEST(bitvector_test, agrees_with_a_vector_of_bools) {
    std::uint64_t first = vexor_test::first_seed(11);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(60); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        bitvector b;
        std::vector<bool> model;
        for (int step = 0; step < 200; step++) {
            bool value = random.chance(50);
            unsigned n = random.below(70);
            switch (random.below(7)) {
            case 0:
            case 1:
                b.push_back(value);
                model.push_back(value);
                break;
            case 2:
                if (model.empty()) break;
                b.pop_back();
                model.pop_back();
                break;
            case 3:
                b.resize(n, value);
                model.resize(n, value);
                break;
            case 4:
                n = random.below(b.size() + 1);
                b.shrink(n);
                model.resize(n);
                break;
            case 5:
                if (model.empty()) break;
                n %= b.size();
                b.set(n, value);
                model[n] = value;
                break;
            case 6:
                if (!random.chance(20)) break;
                b.fill0();
                model.assign(model.size(), false);
                break;
            }
            b.check_invariant();
            ASSERT_EQ(b.size(), model.size());
            unsigned count = 0;
            for (unsigned i = 0; i < b.size(); i++) {
                ASSERT_EQ(b[i], model[i]) << i;
                count += model[i];
            }
            ASSERT_EQ(b.count(), count);
            bitvector copy(b);
            ASSERT_TRUE(copy == b);
        }
    }
}

TEST(bitvector_test, bits_without_a_value_are_false) {
    bitvector b(9);
    b.resize(9, true);
    EXPECT_EQ(b.count(), 0u);
    b.resize(16, true);
    b.shrink(3);
    b.resize(40);
    EXPECT_EQ(b.count(), 0u);
}

TEST(compact_bitvector_test, all_sizes_around_the_word) {
    for (unsigned n : {0u, 1u, 31u, 32u, 33u, 64u, 65u, 1000u}) {
        compact_bitvector b(n);
        for (unsigned i = 0; i < n; i++) {
            EXPECT_FALSE(b.get(i));
            b.set(i);
            for (unsigned j = 0; j < n; j++) EXPECT_EQ(b[j], j == i);
            b.unset(i);
        }
        for (unsigned i = 0; i < n; i += 3) b.set(i, true);
        compact_bitvector copy(b);
        EXPECT_TRUE(copy == b);
        b.reset();
        EXPECT_EQ(copy == b, n == 0);
        b = copy;
        EXPECT_TRUE(copy == b);
        compact_bitvector moved(std::move(b));
        EXPECT_TRUE(copy == moved);
        EXPECT_EQ(b.size(), 0u);
        b = moved; // a moved-from set can be assigned again
        EXPECT_TRUE(copy == b);
        compact_bitvector other(n + 40);
        EXPECT_FALSE(other == b);
        other.swap(b);
        EXPECT_TRUE(other == copy);
    }
}

} // namespace
} // namespace vexor
