#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "base/clist.h"
#include "base/simple_list.h"
#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

std::vector<int> elements(clist<int>* cell) {
    std::vector<int> result;
    for (int x : ring(cell)) result.push_back(x);
    return result;
}

TEST(clist_test, a_new_cell_is_a_ring) {
    clist<int> a(1);
    EXPECT_EQ(a.next(), &a);
    EXPECT_EQ(elements(&a), std::vector<int>{1});
    EXPECT_TRUE(elements(nullptr).empty());
}

TEST(clist_test, merge_splices_and_unmerge_splits) {
    clist<int> a(1);
    clist<int> b(2);
    clist<int> c(3);
    a.merge(&b);
    EXPECT_EQ(elements(&a), (std::vector<int>{1, 2}));
    a.merge(&c);
    EXPECT_EQ(elements(&a), (std::vector<int>{1, 3, 2}));
    EXPECT_EQ(elements(&b), (std::vector<int>{2, 1, 3}));
    a.unmerge(&c);
    EXPECT_EQ(elements(&a), (std::vector<int>{1, 2}));
    EXPECT_EQ(elements(&c), std::vector<int>{3});
    a.unmerge(&b);
    EXPECT_EQ(elements(&a), std::vector<int>{1});
    EXPECT_EQ(elements(&b), std::vector<int>{2});
}

TEST(clist_test, merges_undone_in_reverse_order_leave_no_trace) {
    random_stream random(vexor_test::first_seed(9));
    constexpr int n = 30;
    std::deque<clist<int>> cells;
    std::vector<int> root;
    for (int i = 0; i < n; i++) {
        cells.emplace_back(i);
        root.push_back(i);
    }
    auto state = [&] {
        std::vector<std::vector<int>> result;
        for (auto& cell : cells) result.push_back(elements(&cell));
        return result;
    };
    struct merge {
        unsigned m_a;
        unsigned m_b;
        std::vector<int> m_root;
        std::vector<std::vector<int>> m_before;
    };
    std::vector<merge> done;
    while (done.size() < 20) {
        unsigned a = random.below(n);
        unsigned b = random.below(n);
        if (root[a] == root[b]) continue;
        done.push_back({a, b, root, state()});
        cells[a].merge(&cells[b]);
        for (int& r : root) {
            if (r == done.back().m_root[b]) r = done.back().m_root[a];
        }
        for (unsigned i = 0; i < n; i++) {
            for (int x : ring(&cells[i])) ASSERT_EQ(root[static_cast<unsigned>(x)], root[i]);
        }
    }
    for (; !done.empty(); done.pop_back()) {
        cells[done.back().m_a].unmerge(&cells[done.back().m_b]);
        ASSERT_EQ(state(), done.back().m_before);
    }
}

TEST(simple_list_test, tails_are_shared) {
    arena region(1024);
    simple_list<int>* one = simple_list<int>::cons(region, 1, nullptr);
    simple_list<int>* two = simple_list<int>::cons(region, 2, one);
    simple_list<int>* three = simple_list<int>::cons(region, 3, one);
    EXPECT_EQ(two->tail(), three->tail());
    EXPECT_EQ(two->head(), 2);
    EXPECT_EQ(length(two), 2u);
    EXPECT_EQ(length<int>(nullptr), 0u);
    std::vector<int> found;
    for (int x : simple_list<int>::elements(three)) found.push_back(x);
    EXPECT_EQ(found, (std::vector<int>{3, 1}));
    for (int x : simple_list<int>::elements(nullptr)) ADD_FAILURE() << x;
}

} // namespace
} // namespace vexor
