#include "base/hash_table.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/random.h"
#include "support/tracked.h"

namespace vexor {
namespace {

using vexor_test::random_stream;
using vexor_test::tracked;

struct tracked_hash {
    std::size_t operator()(tracked const& t) const { return static_cast<std::size_t>(t.get()); }
};
// Everything in one chain.
struct bad_hash {
    std::size_t operator()(int) const { return 17; }
};

TEST(hash_table_test, bucket_counts_are_primes_that_about_double) {
    using hash_detail::g_bucket_counts;
    EXPECT_EQ(g_bucket_counts[0].m_prime, 193u);
    for (unsigned i = 0; i < hash_detail::num_bucket_counts; i++) {
        std::uint64_t p = g_bucket_counts[i].m_prime;
        for (std::uint64_t d = 2; d * d <= p; d++) ASSERT_NE(p % d, 0u) << p;
        if (i > 0) {
            EXPECT_GT(p, 2 * g_bucket_counts[i - 1].m_prime);
            EXPECT_LT(p, 2 * g_bucket_counts[i - 1].m_prime + 100);
        }
    }
}

TEST(hash_table_test, the_index_is_the_remainder) {
    random_stream random(vexor_test::first_seed(2));
    for (auto const& count : hash_detail::g_bucket_counts) {
        for (int i = 0; i < 1000; i++) {
            auto hash = static_cast<std::uint32_t>(random.next());
            if (i == 0) hash = ~0u;
            if (i == 1) hash = 0;
            if (count.m_prime < (std::uint64_t{1} << 32))
                ASSERT_EQ(count.index(hash), hash % count.m_prime);
            else
                ASSERT_LT(count.index(hash), count.m_prime);
        }
    }
}

TEST(hash_table_test, an_empty_table_owns_nothing_and_starts_with_193_buckets) {
    hash_set<int, int_hash> s;
    EXPECT_EQ(s.num_buckets(), 0u);
    EXPECT_FALSE(s.contains(1));
    EXPECT_FALSE(s.erase(1));
    EXPECT_EQ(s.begin(), s.end());
    s.reset();
    s.insert(1);
    EXPECT_EQ(s.num_buckets(), 193u);
    for (int i = 0; i < 194; i++) s.insert(i);
    EXPECT_EQ(s.num_buckets(), 389u);
}

TEST(hash_table_test, entries_never_move) {
    hash_map<int, int, int_hash> m;
    int* first = &m.insert(-1, 42);
    for (int i = 0; i < 10000; i++) m.insert(i, i);
    EXPECT_EQ(m.find(-1), first);
    EXPECT_EQ(*first, 42);
}

TEST(hash_table_test, iteration_is_in_the_order_of_insertion) {
    hash_map<int, int, int_hash> m;
    for (int i = 0; i < 500; i++) m.insert((i * 7919) % 1009, i);
    int expected = 0;
    for (auto const& entry : m) EXPECT_EQ(entry.m_value, expected++);
    EXPECT_EQ(expected, 500);
}

TEST(hash_table_test, entries_may_be_erased_during_iteration) {
    hash_set<int, int_hash> s;
    for (int i = 0; i < 300; i++) s.insert(i);
    unsigned met = 0;
    for (int key : s) {
        met++;
        if (key % 2 == 0) s.erase(key);
    }
    EXPECT_EQ(met, 300u);
    EXPECT_EQ(s.size(), 150u);
    s.check_invariant();
}

TEST(hash_table_test, map_access) {
    hash_map<int, std::string, int_hash> m;
    m[3].append("three");
    EXPECT_EQ(*m.find(3), "three");
    EXPECT_EQ(m.insert_if_absent(3, "drei"), "three");
    EXPECT_EQ(m.insert(3, "drei"), "drei");
    std::string result = "untouched";
    EXPECT_FALSE(m.find(4, result));
    EXPECT_EQ(result, "untouched");
    EXPECT_TRUE(m.find(3, result));
    EXPECT_EQ(result, "drei");
    auto const& constant = m;
    EXPECT_EQ(constant.find(4), nullptr);
    for (auto& entry : m) entry.m_value = "changed";
    EXPECT_EQ(*constant.find(3), "changed");
    hash_map<int, std::string, int_hash> copy(m);
    m.finalize();
    EXPECT_EQ(*copy.find(3), "changed");
    m = std::move(copy);
    EXPECT_EQ(*m.find(3), "changed");
    copy = m;
    EXPECT_EQ(copy.size(), 1u);
}

TEST(hash_table_test, pointer_hashes) {
    struct numbered {
        unsigned m_id;
        unsigned get_id() const { return m_id; }
    } a{5}, b{6};
    EXPECT_EQ(fast_det_hash<numbered>()(&a), 5u);
    EXPECT_EQ(fast_ptr_hash<numbered>()(&b), reinterpret_cast<std::size_t>(&b));
    hash_map<numbered*, int, fast_ptr_hash<numbered>> m;
    m.insert(&a, 1);
    EXPECT_TRUE(m.contains(&a));
    EXPECT_FALSE(m.contains(&b));
}

template <class Hash>
void random_set_test(std::uint64_t seed, int range, int steps) {
    random_stream random(seed);
    hash_set<int, Hash> s;
    std::set<int> model;
    for (int step = 0; step < steps; step++) {
        int x = random.between(-range, range);
        if (random.chance(55))
            ASSERT_EQ(s.insert(x), model.insert(x).second);
        else
            ASSERT_EQ(s.erase(x), model.erase(x) == 1);
        if (random.below(500) == 0) {
            s.reset();
            model.clear();
        }
        ASSERT_EQ(s.size(), model.size());
        int y = random.between(-range, range);
        ASSERT_EQ(s.contains(y), model.count(y) == 1);
        if (step % 64 == 0) s.check_invariant();
    }
    std::set<int> met;
    for (int key : s) ASSERT_TRUE(met.insert(key).second);
    ASSERT_EQ(met, model);
}

TEST(hash_table_test, sets_agree_with_the_standard_one_under_random_operations) {
    std::uint64_t first = vexor_test::first_seed(21);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(20); seed++) {
        SCOPED_TRACE(seed);
        random_set_test<int_hash>(seed, 1000, 2000);
        random_set_test<int_hash>(seed, 20, 500);
        random_set_test<bad_hash>(seed, 30, 500);
    }
}

TEST(hash_table_test, maps_construct_and_destroy_their_entries) {
    std::uint64_t first = vexor_test::first_seed(22);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(20); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        {
            hash_map<tracked, tracked, tracked_hash> m;
            std::map<int, int> model;
            for (int step = 0; step < 1000; step++) {
                int k = random.between(0, 300);
                if (random.chance(60)) {
                    m.insert(k, step);
                    model[k] = step;
                } else {
                    m.erase(k);
                    model.erase(k);
                }
                if (random.below(300) == 0) {
                    m.reset();
                    model.clear();
                }
                ASSERT_EQ(tracked::live(), 2 * static_cast<int>(model.size()));
            }
            for (auto const& [key, value] : model) ASSERT_EQ(m.find(key)->get(), value);
        }
        ASSERT_EQ(tracked::live(), 0);
    }
}

} // namespace
} // namespace vexor
