#include "base/shared_ptr.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/random.h"
#include "support/tracked.h"

namespace vexor {
namespace {

using vexor_test::random_stream;
using vexor_test::tracked;

struct node : core_shared_obj<shared_obj_base> {
    explicit node(int value = 0)
        : m_value(value) {}
    tracked m_value;
    shared_ptr<node> m_next;
    shared_ptr_vector<node> m_children;
};
struct special_node : node {};

TEST(shared_ptr_test, counts_references) {
    {
        shared_ptr<node> p(new node(1));
        EXPECT_EQ(p->get_ref_count(), 1u);
        shared_ptr<node> q = p;
        EXPECT_EQ(p->get_ref_count(), 2u);
        shared_ptr<node> r(std::move(q));
        EXPECT_EQ(q.get(), nullptr);
        EXPECT_EQ(p->get_ref_count(), 2u);
        q = r;
        r = nullptr;
        EXPECT_EQ(p->get_ref_count(), 2u);
        q.reset();
        EXPECT_EQ(p->get_ref_count(), 1u);
        EXPECT_TRUE(p);
        EXPECT_FALSE(q);
        shared_ptr<special_node> s(new special_node);
        p = s;
        EXPECT_EQ(p.get(), s.get());
        EXPECT_EQ(tracked::live(), 1);
        EXPECT_EQ(s->get_ref_count(), 2u);
    }
    EXPECT_EQ(tracked::live(), 0);
}

TEST(shared_ptr_test, assignment_of_itself_and_of_its_own_child) {
    shared_ptr<node> p(new node(1));
    p = *&p;
    p = p.get();
    EXPECT_EQ(p->get_ref_count(), 1u);
    p->m_next = new node(2);
    p = p->m_next; // the old node holds the last other reference on the new one
    EXPECT_EQ(p->m_value.get(), 2);
    EXPECT_EQ(tracked::live(), 1);
    p->m_next = new node(3);
    p = std::move(p->m_next);
    EXPECT_EQ(p->m_value.get(), 3);
    EXPECT_EQ(tracked::live(), 1);
    p.reset();
    EXPECT_EQ(tracked::live(), 0);
}

TEST(shared_ptr_test, copies_of_an_object_start_without_references) {
    shared_ptr<node> p(new node(1));
    shared_ptr<node> q(new node(*p));
    EXPECT_EQ(q->get_ref_count(), 1u);
    *q = *p;
    EXPECT_EQ(q->get_ref_count(), 1u);
    EXPECT_EQ(p->get_ref_count(), 1u);
}

TEST(shared_ptr_test, a_chain_of_a_million_nodes_is_released_without_recursion) {
    shared_ptr<node> head;
    for (int i = 0; i < 1000000; i++) {
        shared_ptr<node> n(new node(i));
        n->m_next = std::move(head);
        head = std::move(n);
    }
    EXPECT_EQ(tracked::live(), 1000000);
    head.reset();
    EXPECT_EQ(tracked::live(), 0);
}

struct waiting_probe : core_shared_obj<shared_obj_base> {
    shared_ptr<node> m_child;
    int m_live_after_release = -1;
    int* m_result = nullptr;
    ~waiting_probe() override {
        m_child.reset();
        release_pending_shared_objs();
        *m_result = tracked::live();
    }
};

TEST(shared_ptr_test, a_destructor_can_wait_for_its_children) {
    int live = -1;
    shared_ptr<waiting_probe> p(new waiting_probe);
    p->m_child = new node(1);
    p->m_child->m_next = new node(2);
    p->m_result = &live;
    p.reset();
    EXPECT_EQ(live, 0);
}

// Random graphs without cycles: an object lives exactly as long as it is reachable from a root.
TEST(shared_ptr_test, objects_live_exactly_as_long_as_they_are_reachable) {
    std::uint64_t first = vexor_test::first_seed(41);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(30); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        shared_ptr_vector<node> roots;
        roots.resize(8);
        for (int step = 0; step < 300; step++) {
            unsigned i = random.below(8);
            if (random.chance(70)) {
                shared_ptr<node> n(new node(step));
                for (unsigned k = random.below(3); k > 0; k--)
                    n->m_children.push_back(roots[random.below(8)]);
                n->m_next = roots[random.below(8)];
                roots.set(i, n);
            } else {
                roots.set(i, roots[random.below(8)]);
            }
            std::vector<node*> reached;
            auto reach = [&](node* n) {
                if (!n) return;
                for (node* m : reached) {
                    if (m == n) return;
                }
                reached.push_back(n);
            };
            for (node* n : roots) reach(n);
            for (std::size_t k = 0; k < reached.size(); k++) {
                reach(reached[k]->m_next);
                for (node* n : reached[k]->m_children) reach(n);
            }
            ASSERT_EQ(tracked::live(), static_cast<int>(reached.size()));
        }
        roots.reset();
        ASSERT_EQ(tracked::live(), 0);
    }
}

TEST(shared_ptr_vector_test, holds_one_reference_on_each_element) {
    shared_ptr<node> p(new node(1));
    shared_ptr_vector<node> v;
    v.push_back(p);
    v.push_back(p);
    v.resize(4);
    EXPECT_EQ(p->get_ref_count(), 3u);
    shared_ptr_vector<node> w(v);
    EXPECT_EQ(p->get_ref_count(), 5u);
    w.append(w);
    EXPECT_EQ(p->get_ref_count(), 7u);
    w = v;
    EXPECT_EQ(p->get_ref_count(), 5u);
    w = std::move(v);
    EXPECT_EQ(p->get_ref_count(), 3u);
    w.set(0, w[0]);
    w.set(1, nullptr);
    EXPECT_EQ(p->get_ref_count(), 2u);
    EXPECT_TRUE(w.contains(p));
    w.pop_back();
    w.shrink(0);
    EXPECT_EQ(p->get_ref_count(), 1u);
}

} // namespace
} // namespace vexor
