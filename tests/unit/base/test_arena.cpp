#include "base/arena.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

TEST(arena_test, zero_bytes_move_nothing) {
    arena a(64);
    void* p = a.allocate(0);
    EXPECT_NE(p, nullptr);
    EXPECT_EQ(a.allocate(0), p);
    EXPECT_EQ(a.allocate(1), p);
    EXPECT_NE(a.allocate(1), p);
}

TEST(arena_test, results_are_aligned) {
    arena a(128);
    for (std::size_t size = 0; size < 40; size++)
        EXPECT_EQ(reinterpret_cast<std::size_t>(a.allocate(size)) % arena::alignment, 0u);
}

TEST(arena_test, a_whole_block_fits_and_one_word_more_is_oversize) {
    arena a(256);
    std::size_t whole = 256 - sizeof(void*);
    std::memset(a.allocate(whole), 1, whole); // the first block
    std::memset(a.allocate(whole), 2, whole); // a new one
    EXPECT_EQ(a.bytes_held(), 512u);
    std::memset(a.allocate(whole + 8), 3, whole + 8); // one of its own
    std::memset(a.allocate(8), 4, 8);
    EXPECT_EQ(a.bytes_held(), 1024u);
    a.check_invariant();
    // Oversize blocks are not recycled, so a big request is safe when there are spare blocks.
    a.reset(true);
    EXPECT_EQ(a.bytes_held(), 768u);
    std::memset(a.allocate(100000), 5, 100000);
    std::memset(a.allocate(whole), 6, whole);
    std::memset(a.allocate(whole), 7, whole);
    a.check_invariant();
}

TEST(arena_test, tiny_blocks_work) {
    for (std::size_t size : {0, 1, 8, 9, 16}) {
        arena a(size);
        for (int i = 0; i < 100; i++) std::memset(a.allocate(24), 1, 24);
        a.check_invariant();
    }
}

TEST(arena_test, reset_keeps_the_first_block) {
    arena a(64);
    void* first = a.allocate(8);
    for (int i = 0; i < 100; i++) static_cast<void>(a.allocate(40));
    a.reset(false);
    EXPECT_EQ(a.bytes_held(), 64u);
    EXPECT_EQ(a.allocate(8), first);
    for (int i = 0; i < 100; i++) static_cast<void>(a.allocate(40));
    std::size_t held = a.bytes_held();
    a.reset(true);
    EXPECT_EQ(a.bytes_held(), held);
    EXPECT_EQ(a.allocate(8), first);
    for (int i = 0; i < 100; i++) static_cast<void>(a.allocate(40));
    EXPECT_EQ(a.bytes_held(), held); // all blocks came from the spare ones
    a.check_invariant();
    // Reset after reset: neither the first block's link nor the spare list may keep freed blocks.
    a.reset(false);
    a.reset(false);
    a.reset(true);
    EXPECT_EQ(a.bytes_held(), 64u);
    for (int i = 0; i < 100; i++) static_cast<void>(a.allocate(40));
    a.check_invariant();
}

TEST(arena_test, new_in_an_arena) {
    arena a(64);
    int* p = new (a) int(7);
    EXPECT_EQ(*p, 7);
    EXPECT_EQ(*a.make<int>(8), 8);
}

TEST(scoped_arena_test, reopened_scopes_need_no_memory) {
    scoped_arena a(1024);
    a.begin_scope();
    static_cast<void>(a.allocate(10));
    std::size_t held = a.bytes_held();
    void* first = nullptr;
    for (int i = 0; i < 100000; i++) {
        a.begin_scope();
        void* p = a.allocate(100);
        if (!first) first = p;
        ASSERT_EQ(p, first);
        a.end_scope(false);
    }
    EXPECT_EQ(a.bytes_held(), held);
    a.end_scope(false);
    EXPECT_FALSE(a.has_scope());
}

TEST(scoped_arena_test, a_scope_at_a_block_border_does_not_call_the_system_each_time) {
    scoped_arena a(1024);
    static_cast<void>(a.allocate(1024 - sizeof(void*) - 24)); // the scope's record fits, nothing more
    void* first = nullptr;
    for (int i = 0; i < 1000; i++) {
        a.begin_scope();
        void* p = a.allocate(100);
        if (!first) first = p;
        ASSERT_EQ(p, first); // the one spare block
        a.end_scope(false);
    }
    EXPECT_EQ(a.bytes_held(), 2048u);
    a.check_invariant();
}

TEST(scoped_arena_test, reset_forgets_the_scopes) {
    scoped_arena a(256);
    for (int i = 0; i < 50; i++) {
        a.begin_scope();
        static_cast<void>(a.allocate(60));
    }
    a.reset(false);
    EXPECT_FALSE(a.has_scope());
    EXPECT_EQ(a.bytes_held(), 256u);
    a.begin_scope();
    a.end_scope(false);
    EXPECT_FALSE(a.has_scope());
    a.check_invariant();
}

// Every live allocation keeps its pattern through scopes, kept and freed blocks, oversize requests and
// resets.
TEST(scoped_arena_test, live_memory_is_never_given_out_twice) {
    struct piece {
        unsigned char* m_begin;
        std::size_t m_size;
        unsigned char m_pattern;
    };
    std::uint64_t first = vexor_test::first_seed(7);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(40); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        scoped_arena a(64 + random.below(400));
        std::vector<piece> pieces;
        std::vector<std::size_t> scopes;
        for (int step = 0; step < 400; step++) {
            unsigned what = random.below(20);
            if (what < 13) {
                std::size_t size = random.chance(5) ? random.below(3000) : random.below(80);
                piece p{static_cast<unsigned char*>(a.allocate(size)), size,
                        static_cast<unsigned char>(random.below(256))};
                std::memset(p.m_begin, p.m_pattern, size);
                pieces.push_back(p);
            } else if (what < 16) {
                a.begin_scope();
                scopes.push_back(pieces.size());
            } else if (what < 19 && !scopes.empty()) {
                a.end_scope(random.chance(50));
                pieces.resize(scopes.back());
                scopes.pop_back();
            } else if (what == 19 && random.chance(10)) {
                a.reset(random.chance(50));
                pieces.clear();
                scopes.clear();
            }
            a.check_invariant();
            ASSERT_EQ(a.has_scope(), !scopes.empty());
        }
        for (piece const& p : pieces) {
            for (std::size_t i = 0; i < p.m_size; i++) ASSERT_EQ(p.m_begin[i], p.m_pattern);
        }
    }
}

#ifdef VEXOR_ARENA_POISON
TEST(arena_death_test, memory_of_an_ended_scope_is_poisoned) {
    scoped_arena a(256);
    a.begin_scope();
    volatile char* p = static_cast<volatile char*>(a.allocate(8));
    *p = 1;
    a.end_scope(false);
    EXPECT_DEATH(*p = 2, "use-after-poison");
}
#endif

} // namespace
} // namespace vexor
