// The memory of all clauses of three and more literals.
#pragma once

#include "base/vector.h"
#include "search/clause.h"

#include <cstdint>

namespace vexor {

// Clauses stand one behind the other in one growing block and are named by word offsets of 32 bits, half a
// pointer. Pointers and references into the block are good until the next create or collection.
//
// Freed clauses leave holes. When holes hold a fifth of the block, the owner moves the living into a new
// store, in an order of its choice, by move_to; the old record then holds the new offset, so that each holder
// of a clause_ref can follow.
//
// Beside the block stands a dense array with one word per attached clause, its slot: the XOR of the two
// watched literals. A visit that knows one of them gets the other without touching the clause; sixteen
// clauses share a cache line there. Slots are given anew at each collection.
class clause_store {
public:
    clause_store();
    ~clause_store();
    clause_store(clause_store const&) = delete; // clause_refs name places in one store
    clause_store& operator=(clause_store const&) = delete;

    clause_ref create(literal const* lits, unsigned size, bool learned);
    // The record stays readable until the next collection.
    void free_clause(clause_ref ref);
    // Notes that a clause gave up its last words.
    void clause_shrunk(unsigned num_words) { m_wasted += num_words; }

    [[nodiscard]] clause& operator[](clause_ref ref) {
        VEXOR_ASSERT(ref != null_clause && ref < m_size);
        return *reinterpret_cast<clause*>(m_words + ref);
    }
    [[nodiscard]] clause const& operator[](clause_ref ref) const {
        VEXOR_ASSERT(ref != null_clause && ref < m_size);
        return *reinterpret_cast<clause const*>(m_words + ref);
    }
    // Start of the block, for loops that read many clauses and create none.
    [[nodiscard]] std::uint32_t* words() { return m_words; }

    [[nodiscard]] bool wants_collection() const { return m_wasted > m_size / 5 && m_wasted > 4096; }
    [[nodiscard]] std::uint32_t num_words() const { return m_size; }
    [[nodiscard]] std::uint32_t num_live_words() const { return m_size - m_wasted; }

    // A new slot for the watched literals a and b.
    std::uint32_t new_slot(literal a, literal b);
    [[nodiscard]] std::uint32_t& watch_xor(std::uint32_t slot) { return m_watch_xor[slot]; }
    [[nodiscard]] std::uint32_t watch_xor(std::uint32_t slot) const { return m_watch_xor[slot]; }
    [[nodiscard]] std::uint32_t* watch_xors() { return m_watch_xor.data(); }

    // Copies a clause into target and leaves the forwarding offset behind; later calls for the same clause
    // return it.
    clause_ref move_to(clause_store& target, clause_ref ref);
    // The slot in target of a clause that has moved there.
    [[nodiscard]] std::uint32_t moved_slot(clause_ref ref) const { return m_words[ref + 1]; }
    void reserve(std::uint32_t num_words);
    void swap(clause_store& other);
    void reset();

private:
    std::uint32_t allocate(std::uint32_t num_words);

    std::uint32_t* m_words = nullptr;   // the block; word 0 is unused, so that 0 can mean no clause
    std::uint32_t m_size = 1;           // words in use, holes included
    std::uint32_t m_capacity = 0;       // words allocated
    std::uint32_t m_wasted = 0;         // words in holes
    svector<std::uint32_t> m_watch_xor; // by slot: XOR of the indices of the watched literals
    svector<std::uint64_t> m_moved;     // one bit per word while a collection runs: this clause has moved
};

} // namespace vexor
