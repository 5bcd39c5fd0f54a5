// The two regions of one block against plain lists.
#include "search/watch_set.h"

#include "support/random.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace vexor;
using namespace vexor_test;

struct freed_at_end : watch_set {
    ~freed_at_end() { free_memory(); }
};

constraint* fake_constraint(std::uintptr_t n) { return reinterpret_cast<constraint*>(n * 16); }

TEST(watch_set, empty_owns_nothing) {
    freed_at_end s;
    EXPECT_TRUE(s.empty());
    EXPECT_EQ(s.capacity(), 0u);
    EXPECT_EQ(s.begin_clauses(), s.end_clauses());
    EXPECT_EQ(s.begin_literals(), s.end_literals());
    EXPECT_FALSE(s.remove_clause(1));
    EXPECT_FALSE(s.remove_literal(literal(3)));
    EXPECT_FALSE(s.remove_constraint(fake_constraint(1)));
    s.free_memory();
    EXPECT_TRUE(s.empty());
}

TEST(watch_set, entry_tells_clause_from_constraint) {
    watch_entry const c(0xffffffffu, 0x7fffffffu);
    EXPECT_TRUE(c.is_clause());
    EXPECT_EQ(c.get_clause(), 0xffffffffu);
    EXPECT_EQ(c.get_slot(), 0x7fffffffu);
    watch_entry const k(fake_constraint(5));
    EXPECT_FALSE(k.is_clause());
    EXPECT_EQ(k.get_constraint(), fake_constraint(5));
}

TEST(watch_set, literals_stand_newest_first) {
    freed_at_end s;
    for (int i = 0; i < 10; ++i) s.insert_literal(literal(i));
    for (int i = 0; i < 10; ++i) EXPECT_EQ(s.begin_literals()[i], literal(9 - i));
    EXPECT_TRUE(s.remove_literal(literal(4)));
    EXPECT_FALSE(s.remove_literal(literal(4)));
    EXPECT_EQ(s.num_literals(), 9u);
    EXPECT_EQ(s.begin_literals()[5], literal(3));
}

TEST(watch_set, random_acts_against_lists) {
    for (std::uint64_t seed = first_seed(1), n = rounds(300); n > 0; --n, ++seed) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
        random_stream r(seed);
        freed_at_end s;
        std::vector<watch_entry> entries;
        std::vector<literal> literals; // oldest first
        for (unsigned i = 0; i < 200; ++i) {
            unsigned const what = r.below(10);
            if (what < 3) {
                literals.push_back(literal(static_cast<int>(r.below(20)), r.chance(50)));
                s.insert_literal(literals.back());
            } else if (what < 6) {
                entries.push_back(r.chance(80) ? watch_entry(1 + r.below(40), r.below(1u << 31))
                                               : watch_entry(fake_constraint(1 + r.below(9))));
                s.insert_clause(entries.back());
            } else if (what == 6 && !literals.empty()) {
                literal const l = literals[r.below(static_cast<unsigned>(literals.size()))];
                EXPECT_TRUE(s.remove_literal(l));
                literals.erase(std::find(literals.rbegin(), literals.rend(), l).base() - 1);
            } else if (what == 7 && !entries.empty()) {
                watch_entry const e = entries[r.below(static_cast<unsigned>(entries.size()))];
                EXPECT_TRUE(e.is_clause() ? s.remove_clause(e.get_clause())
                                          : s.remove_constraint(e.get_constraint()));
                auto const last = std::find_if(entries.rbegin(), entries.rend(), [&](watch_entry x) {
                    return x.is_clause() && e.is_clause() ? x.get_clause() == e.get_clause() : x == e;
                });
                entries.erase(last.base() - 1);
            } else if (what == 8 && r.chance(10)) {
                s.free_memory();
                entries.clear();
                literals.clear();
            } else if (what == 9 && r.chance(20)) {
                unsigned const kept = r.below(static_cast<unsigned>(entries.size()) + 1);
                s.set_end_clauses(s.begin_clauses() + kept);
                entries.resize(kept);
            }
            ASSERT_EQ(s.num_clauses(), entries.size());
            ASSERT_EQ(s.num_literals(), literals.size());
            ASSERT_TRUE(std::equal(entries.begin(), entries.end(), s.begin_clauses()));
            ASSERT_TRUE(std::equal(literals.rbegin(), literals.rend(), s.begin_literals()));
            ASSERT_EQ(s.capacity() % 8, 0u);
        }
    }
}

} // namespace
