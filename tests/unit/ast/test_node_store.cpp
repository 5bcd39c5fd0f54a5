#include "ast/node/node_store.h"
#include "ast_fixture.h"
#include "support/random.h"

#include "ast/node/unsupported.h"
#include "base/exceptions.h"

#include <cstring>
#include <map>

namespace vexor_test {
namespace {

// A cell as the store expects it: the first word of a live one is even, as a vtable pointer is.
void fill(void* cell, std::size_t size, unsigned char pattern) { std::memset(cell, pattern & 0xfe, size); }

TEST(node_store_test, random_allocations_against_a_model) {
    for (unsigned round = 0; round < rounds(3); ++round) {
        std::uint64_t seed = first_seed(600) + round;
        SCOPED_TRACE(seed);
        random_stream random(seed);
        auto* store = new node_store(nullptr);
        std::map<char*, std::size_t> model; // address to size
        for (unsigned i = 0; i < rounds(20000); ++i) {
            bool grow = (i / 4000) % 2 == 0 ? random.chance(75) : random.chance(25);
            if (grow || model.empty()) {
                std::size_t size = 8 * (1 + random.below(node_store::max_cell_bytes / 8));
                auto* cell = static_cast<char*>(store->allocate(size));
                ASSERT_EQ(reinterpret_cast<std::uintptr_t>(cell) % 8, 0U);
                auto next = model.lower_bound(cell);
                ASSERT_TRUE(next == model.end() || cell + size <= next->first) << "overlap";
                if (next != model.begin()) {
                    --next;
                    ASSERT_LE(next->first + next->second, cell) << "overlap";
                }
                fill(cell, size, static_cast<unsigned char>(size));
                model[cell] = size;
            } else {
                auto victim = model.lower_bound(reinterpret_cast<char*>(random.next()));
                if (victim == model.end()) victim = model.begin();
                for (std::size_t k = 0; k < victim->second; ++k)
                    ASSERT_EQ(static_cast<unsigned char>(victim->first[k]), victim->second & 0xfe);
                node_store::release(victim->first);
                model.erase(victim);
            }
        }
        store->check_invariant();
        ASSERT_EQ(store->num_live(), model.size());
        std::size_t seen = 0;
        store->for_each_live([&](void* cell) { seen += model.count(static_cast<char*>(cell)); });
        EXPECT_EQ(seen, model.size());
        for (auto const& [cell, size] : model) node_store::release(cell);
        EXPECT_EQ(store->num_live(), 0U);
        store->abandon();
    }
}

TEST(node_store_test, memory_is_used_again_across_sizes) {
    auto* store = new node_store(nullptr);
    std::vector<void*> cells;
    std::size_t reserved = 0;
    for (std::size_t size : {32U, 64U, 256U, 48U}) {
        for (std::size_t bytes = 0; bytes < (8U << 20); bytes += size) {
            cells.push_back(store->allocate(size));
            fill(cells.back(), size, 0);
        }
        for (void* cell : cells) node_store::release(cell);
        cells.clear();
        if (reserved == 0) reserved = store->reserved_bytes();
        EXPECT_LE(store->reserved_bytes(), reserved + (8U << 20));
    }
    store->check_invariant();
    store->abandon();
}

TEST(node_store_test, slots) {
    EXPECT_EQ(node_store::inline_slots(48, 0), 1U);
    EXPECT_EQ(node_store::inline_slots(48, 2), 2U);
    EXPECT_EQ(node_store::inline_slots(48, 26), 26U);
    EXPECT_EQ(node_store::inline_slots(48, 27), 1U) << "too large for a cell";
}

class sizes : public ast_test {};

// What a term costs: a change here is a change of every benchmark's memory.
TEST_F(sizes, nodes_are_small) {
    EXPECT_EQ(sizeof(ast), 24U);
    EXPECT_EQ(sizeof(expr), 32U);
    EXPECT_EQ(sizeof(name_expr), 40U);
    EXPECT_EQ(sizeof(numeral_expr), 40U);
    EXPECT_EQ(sizeof(application) + 2 * sizeof(void*), 64U);
    EXPECT_EQ(sizeof(let_expr) + sizeof(void*), 56U);
    EXPECT_EQ(sizeof(let_decl), 56U);
    EXPECT_EQ(sizeof(const_decl), 56U);
    EXPECT_EQ(sizeof(var_decl), 48U);
    EXPECT_EQ(sizeof(type_name), 32U);
}

TEST_F(sizes, a_failed_construction_gives_its_memory_back) {
    e_ptr one = num(1);
    std::size_t live = m.num_live_nodes();
    expr* none[1] = {nullptr};
    for (int i = 0; i < 10; ++i) EXPECT_THROW((mk<tuple_literal>(&m, none, 0U, -1)), specification_exception);
    EXPECT_EQ(m.num_live_nodes(), live);
    EXPECT_EQ(one->get_ref_count(), 1U);
}

TEST_F(sizes, what_is_not_supported_is_printed) {
    e_ptr e = app<mul_decl>({num(2).get(), num(3).get()});
    try {
        throw_not_implemented("non linear problem", e.get());
    } catch (feature_not_implemented_exception const& x) {
        EXPECT_STREQ(x.what(), "feature not supported: non linear problem (* 2 3).");
    }
}

// As a tree it would have 2^60 nodes.
TEST_F(sizes, what_is_not_supported_is_printed_within_reason) {
    e_ptr e = num(1);
    for (int i = 0; i < 60; ++i) e = app<add_decl>({e.get(), e.get()});
    try {
        throw_not_implemented("non linear problem", e.get());
    } catch (feature_not_implemented_exception const& x) {
        EXPECT_LT(std::strlen(x.what()), 100000U);
    }
}

} // namespace
} // namespace vexor_test
