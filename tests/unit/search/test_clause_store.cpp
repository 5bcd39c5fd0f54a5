// Clause records, their memory and its compaction.
#include "search/clause_store.h"

#include "support/random.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace vexor;
using namespace vexor_test;

std::vector<literal> numbered(unsigned n, int first = 3) {
    std::vector<literal> result;
    for (unsigned i = 0; i < n; ++i) result.push_back(literal(first + static_cast<int>(i), i % 2 != 0));
    return result;
}

TEST(clause_store, header_bits_do_not_touch_each_other) {
    clause_store store;
    std::vector<literal> const lits = numbered(5);
    clause_ref const ref = store.create(lits.data(), 5, true);
    clause& c = store[ref];
    EXPECT_EQ(c.size(), 5u);
    EXPECT_TRUE(c.learned());
    EXPECT_FALSE(c.removed());
    EXPECT_FALSE(c.out_of_order());
    EXPECT_EQ(c.activity(), 0u);
    c.set_activity(0xffffffffu);
    c.set_out_of_order(true);
    c.set_removed();
    EXPECT_EQ(c.size(), 5u);
    EXPECT_EQ(c.activity(), 0xffffffffu);
    EXPECT_TRUE(c.out_of_order() && c.removed() && c.learned());
    c.set_out_of_order(false);
    EXPECT_FALSE(c.out_of_order());
    EXPECT_TRUE(c.removed());
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(c[i], lits[i]);
}

TEST(clause_store, shrink_moves_the_activity_word) {
    clause_store store;
    std::vector<literal> const lits = numbered(6);
    clause& c = store[store.create(lits.data(), 6, true)];
    c.set_activity(77);
    c.shrink(2);
    EXPECT_EQ(c.size(), 2u);
    EXPECT_EQ(c.activity(), 77u);
    EXPECT_EQ(c[1], lits[1]);
    EXPECT_TRUE(c.learned());
    clause& p = store[store.create(lits.data(), 6, false)];
    p.shrink(3);
    EXPECT_EQ(p.size(), 3u);
    EXPECT_EQ(p.num_words(), 4u);
}

TEST(clause_store, one_clause_of_a_hundred_thousand_literals) {
    clause_store store;
    std::vector<literal> const lits = numbered(100000);
    clause_ref const ref = store.create(lits.data(), 100000, true);
    EXPECT_EQ(store[ref].size(), 100000u);
    EXPECT_EQ(store[ref][99999], lits[99999]);
    store[ref].set_activity(5);
    EXPECT_EQ(store[ref][99999], lits[99999]);
}

// Clauses survive a move with contents, marks and activity; holders of old references find them.
TEST(clause_store, random_moves) {
    for (std::uint64_t seed = first_seed(1), n = rounds(100); n > 0; --n, ++seed) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
        random_stream r(seed);
        clause_store store;
        struct known {
            clause_ref m_ref;
            std::vector<literal> m_lits;
            std::uint32_t m_activity;
        };
        std::vector<known> alive;
        unsigned num_live = 0;
        for (unsigned i = 0; i < 100; ++i) {
            known k;
            k.m_lits = numbered(2 + r.below(6), 3 + static_cast<int>(r.below(50)));
            bool const learned = r.chance(50);
            k.m_ref = store.create(k.m_lits.data(), static_cast<unsigned>(k.m_lits.size()), learned);
            k.m_activity = learned ? r.below(1000) : 0;
            if (learned) store[k.m_ref].set_activity(k.m_activity);
            store.new_slot(k.m_lits[0], k.m_lits[1]);
            if (r.chance(40)) {
                store.free_clause(k.m_ref);
                continue;
            }
            if (r.chance(30) && k.m_lits.size() > 2) {
                unsigned const dropped = static_cast<unsigned>(k.m_lits.size()) - 2;
                store[k.m_ref].shrink(2);
                store.clause_shrunk(dropped);
                k.m_lits.resize(2);
            }
            alive.push_back(k);
        }
        for (known const& k : alive) num_live += store[k.m_ref].num_words();
        EXPECT_EQ(store.num_live_words(), num_live + 1);
        clause_store fresh;
        fresh.reserve(store.num_live_words());
        std::vector<clause_ref> moved;
        for (known const& k : alive) moved.push_back(store.move_to(fresh, k.m_ref));
        for (unsigned i = 0; i < alive.size(); ++i) {
            EXPECT_EQ(store.move_to(fresh, alive[i].m_ref), moved[i]); // a second holder
            EXPECT_EQ(fresh.watch_xor(store.moved_slot(alive[i].m_ref)),
                      static_cast<std::uint32_t>(alive[i].m_lits[0].index() ^ alive[i].m_lits[1].index()));
        }
        store.swap(fresh);
        EXPECT_EQ(store.num_words(), num_live + 1);
        for (unsigned i = 0; i < alive.size(); ++i) {
            clause const& c = store[moved[i]];
            ASSERT_EQ(c.size(), alive[i].m_lits.size());
            for (unsigned j = 0; j < c.size(); ++j) EXPECT_EQ(c[j], alive[i].m_lits[j]);
            if (c.learned()) {
                EXPECT_EQ(c.activity(), alive[i].m_activity);
            }
        }
    }
}

TEST(clause_store, collection_is_wanted_when_a_fifth_is_holes) {
    clause_store store;
    std::vector<literal> const lits = numbered(9);
    std::vector<clause_ref> refs;
    for (unsigned i = 0; i < 5000; ++i) refs.push_back(store.create(lits.data(), 9, false));
    EXPECT_FALSE(store.wants_collection());
    unsigned i = 0;
    while (!store.wants_collection()) store.free_clause(refs[i++]);
    EXPECT_EQ(i, 1001u);
    store.reset();
    EXPECT_FALSE(store.wants_collection());
    EXPECT_EQ(store.num_words(), 1u);
}

} // namespace
