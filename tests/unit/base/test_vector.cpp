#include "base/vector.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/random.h"
#include "support/tracked.h"

namespace vexor {
namespace {

using vexor_test::random_stream;
using vexor_test::tracked;

TEST(vector_test, grows_by_the_factor_one_and_a_half) {
    svector<int> v;
    EXPECT_EQ(v.capacity(), 0u);
    unsigned expected[] = {2, 2, 3, 5, 5, 8, 8, 8, 12};
    for (unsigned i = 0; i < 9; i++) {
        v.push_back(static_cast<int>(i));
        EXPECT_EQ(v.capacity(), expected[i]) << i;
    }
}

TEST(vector_test, resize_beyond_capacity_expands_with_room) {
    svector<int> v;
    v.resize(7, 3);
    EXPECT_EQ(v.capacity(), 11u);
    EXPECT_EQ(v.size(), 7u);
    v.resize(2, 9);
    EXPECT_EQ(v.size(), 2u);
    EXPECT_EQ(v.capacity(), 11u);
    v.expand_to(20);
    EXPECT_EQ(v.capacity(), 20u);
    v.expand_to(5);
    EXPECT_EQ(v.capacity(), 20u);
    v.reset();
    EXPECT_EQ(v.capacity(), 20u);
    v.finalize();
    EXPECT_EQ(v.capacity(), 0u);
}

TEST(vector_test, own_elements_may_be_pushed_appended_and_filled_in) {
    vector<std::string> v;
    v.push_back("a text that does not fit the small buffer of a string");
    for (int i = 0; i < 20; i++) v.push_back(v[0]);
    EXPECT_EQ(v.back(), v[0]);
    v.append(v);
    EXPECT_EQ(v.size(), 42u);
    EXPECT_EQ(v.back(), v[0]);
    v.resize(200, v[0]);
    EXPECT_EQ(v.back(), v[0]);
    svector<int> s{1, 2, 3};
    s.append(s.size(), s.data());
    EXPECT_EQ(s, (svector<int>{1, 2, 3, 1, 2, 3}));
}

TEST(vector_test, erase_and_contains) {
    svector<int> v{4, 5, 6, 5};
    v.erase(5);
    EXPECT_EQ(v, (svector<int>{4, 6, 5}));
    v.erase(7);
    EXPECT_EQ(v.size(), 3u);
    v.erase(v.begin());
    EXPECT_EQ(v, (svector<int>{6, 5}));
    EXPECT_TRUE(v.contains(5));
    EXPECT_FALSE(v.contains(4));
}

TEST(vector_test, copy_and_move) {
    vector<tracked> a{1, 2, 3};
    vector<tracked> b(a);
    EXPECT_EQ(a, b);
    vector<tracked> c(std::move(b));
    EXPECT_TRUE(b.empty());
    EXPECT_EQ(a, c);
    b = c;
    b = *&b;
    EXPECT_EQ(b, c);
    b = std::move(c);
    EXPECT_EQ(b, a);
}

// Against std::vector, with elements that must be constructed and destroyed.
TEST(vector_test, agrees_with_the_standard_one_under_random_operations) {
    std::uint64_t first = vexor_test::first_seed(1);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(50); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        {
            vector<tracked> v;
            std::vector<int> model;
            for (int step = 0; step < 300; step++) {
                int x = random.between(0, 20);
                switch (random.below(9)) {
                case 0:
                case 1:
                case 2:
                    v.push_back(x);
                    model.push_back(x);
                    break;
                case 3:
                    if (model.empty()) break;
                    v.pop_back();
                    model.pop_back();
                    break;
                case 4: {
                    unsigned n = random.below(40);
                    v.resize(n, x);
                    model.resize(n, x);
                    break;
                }
                case 5: {
                    unsigned n = random.below(v.size() + 1);
                    v.shrink(n);
                    model.resize(n);
                    break;
                }
                case 6:
                    v.erase(tracked(x));
                    for (auto i = model.begin(); i != model.end(); i++) {
                        if (*i == x) {
                            model.erase(i);
                            break;
                        }
                    }
                    break;
                case 7:
                    if (v.size() > 100) break;
                    v.append(v);
                    for (std::size_t i = 0, n = model.size(); i < n; i++) model.push_back(model[i]);
                    break;
                case 8:
                    if (random.chance(20)) {
                        v.finalize();
                        model.clear();
                    }
                    break;
                }
                ASSERT_EQ(v.size(), model.size());
                ASSERT_EQ(tracked::live(), static_cast<int>(model.size()));
                for (unsigned i = 0; i < v.size(); i++) ASSERT_EQ(v[i].get(), model[i]);
            }
        }
        ASSERT_EQ(tracked::live(), 0);
    }
}

TEST(scoped_ptr_vector_test, destroys_what_leaves_it) {
    {
        scoped_ptr_vector<tracked> v;
        for (int i = 0; i < 5; i++) v.push_back(new tracked(i));
        v.push_back(nullptr);
        v.resize(8);
        EXPECT_EQ(v[7], nullptr);
        EXPECT_EQ(tracked::live(), 5);
        v.shrink(3);
        EXPECT_EQ(tracked::live(), 3);
        v.set(0, new tracked(9));
        v.set(0, v[0]);
        EXPECT_EQ(tracked::live(), 3);
        tracked* last = v.detach_back();
        EXPECT_EQ(v.size(), 2u);
        EXPECT_EQ(last->get(), 2);
        delete last;
        scoped_ptr_vector<tracked> w(std::move(v));
        EXPECT_EQ(w.size(), 2u);
        EXPECT_EQ(w[0]->get(), 9);
    }
    EXPECT_EQ(tracked::live(), 0);
}

#ifdef VEXOR_DEBUG
TEST(vector_death_test, index_out_of_range) {
    svector<int> v{1};
    EXPECT_DEATH(v[1] = 0, "assertion failed");
}
#endif

} // namespace
} // namespace vexor
