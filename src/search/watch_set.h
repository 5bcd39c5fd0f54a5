// The clauses, constraints and binary clauses to visit when a literal becomes true.
#pragma once

#include "base/debug.h"
#include "search/clause.h"
#include "search/literal.h"

#include <cstdint>

namespace vexor {

class constraint;

// An entry of the clause region: a clause with its slot (tag 0), or a constraint (tag 1). The slot names the
// place in the clause store where the two watched literals are kept as one XOR, so that most visits need not
// touch the clause.
class watch_entry {
public:
    watch_entry()
        : m_word(0) {}
    watch_entry(clause_ref ref, std::uint32_t slot)
        : m_word((static_cast<std::uint64_t>(ref) << 32) | (static_cast<std::uint64_t>(slot) << 1)) {}
    explicit watch_entry(constraint* c)
        : m_word(reinterpret_cast<std::uintptr_t>(c) | 1) {}

    [[nodiscard]] bool is_clause() const { return (m_word & 1) == 0; }
    [[nodiscard]] clause_ref get_clause() const {
        VEXOR_ASSERT(is_clause());
        return static_cast<clause_ref>(m_word >> 32);
    }
    [[nodiscard]] std::uint32_t get_slot() const {
        VEXOR_ASSERT(is_clause());
        return static_cast<std::uint32_t>(m_word) >> 1;
    }
    [[nodiscard]] constraint* get_constraint() const {
        VEXOR_ASSERT(!is_clause());
        return reinterpret_cast<constraint*>(static_cast<std::uintptr_t>(m_word & ~std::uint64_t(1)));
    }
    friend bool operator==(watch_entry a, watch_entry b) { return a.m_word == b.m_word; }

private:
    std::uint64_t m_word;
};

// One allocation with two regions: clause entries grow up from the start, the other literals of binary
// clauses grow down from the end. Binary clauses thus need no record and no pointer chase.
//
// Keeps: m_end_clauses <= m_start_literals <= m_capacity, all three in bytes; the first a multiple of 8, the
// second of 4.
//
// Sets stand by the million in one array that moves them as raw memory, so the class has no destructor: the
// owner calls free_memory.
class watch_set {
public:
    [[nodiscard]] watch_entry* begin_clauses() { return reinterpret_cast<watch_entry*>(m_data); }
    [[nodiscard]] watch_entry* end_clauses() {
        return reinterpret_cast<watch_entry*>(m_data + m_end_clauses);
    }
    [[nodiscard]] watch_entry const* begin_clauses() const {
        return reinterpret_cast<watch_entry const*>(m_data);
    }
    [[nodiscard]] watch_entry const* end_clauses() const {
        return reinterpret_cast<watch_entry const*>(m_data + m_end_clauses);
    }
    [[nodiscard]] literal* begin_literals() { return reinterpret_cast<literal*>(m_data + m_start_literals); }
    [[nodiscard]] literal* end_literals() { return reinterpret_cast<literal*>(m_data + m_capacity); }
    [[nodiscard]] literal const* begin_literals() const {
        return reinterpret_cast<literal const*>(m_data + m_start_literals);
    }
    [[nodiscard]] literal const* end_literals() const {
        return reinterpret_cast<literal const*>(m_data + m_capacity);
    }

    [[nodiscard]] bool empty() const { return m_end_clauses == 0 && m_start_literals == m_capacity; }
    [[nodiscard]] unsigned num_clauses() const { return m_end_clauses / sizeof(watch_entry); }
    [[nodiscard]] unsigned num_literals() const { return (m_capacity - m_start_literals) / sizeof(literal); }
    [[nodiscard]] unsigned capacity() const { return m_capacity; }

    void insert_clause(watch_entry e) {
        if (m_end_clauses + sizeof(watch_entry) > m_start_literals) expand(sizeof(watch_entry));
        *end_clauses() = e;
        m_end_clauses += sizeof(watch_entry);
    }
    void insert_literal(literal l) {
        if (m_end_clauses + sizeof(literal) > m_start_literals) expand(sizeof(literal));
        m_start_literals -= sizeof(literal);
        *begin_literals() = l;
    }

    // Cuts the clause region so that it ends at new_end; used by compacting walks.
    void set_end_clauses(watch_entry const* new_end) {
        m_end_clauses = static_cast<std::uint32_t>(reinterpret_cast<char const*>(new_end) - m_data);
    }

    // Each returns false if there is no such entry, which is ordinary: the set may have been freed at scope
    // 0.
    bool remove_clause(clause_ref ref);
    bool remove_constraint(constraint* c);
    bool remove_literal(literal l);

    void free_memory();

private:
    void expand(unsigned bytes);
    void forget() {
        m_data = nullptr;
        m_end_clauses = m_start_literals = m_capacity = 0;
    }

    char* m_data = nullptr;             // the block, null while the capacity is 0
    std::uint32_t m_end_clauses = 0;    // end of the clause region
    std::uint32_t m_start_literals = 0; // start of the literal region
    std::uint32_t m_capacity = 0;       // size of the block, a multiple of 8
};

} // namespace vexor
