#include "search/clause_store.h"

#include "base/memory.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace vexor {

clause_store::clause_store() = default;

clause_store::~clause_store() { std::free(m_words); }

void clause_store::reserve(std::uint32_t num_words) {
    if (num_words <= m_capacity) return;
    m_words = static_cast<std::uint32_t*>(xrealloc(m_words, std::size_t(num_words) * sizeof(std::uint32_t)));
    m_capacity = num_words;
}

// The block grows by a half; large blocks are moved by the system without being copied.
std::uint32_t clause_store::allocate(std::uint32_t num_words) {
    std::uint64_t const needed = std::uint64_t(m_size) + num_words;
    if (needed > m_capacity) {
        if (needed > UINT32_MAX) memoryExhausted();
        std::uint64_t capacity = std::uint64_t(m_capacity) + m_capacity / 2 + 256;
        if (capacity < needed) capacity = needed;
        if (capacity > UINT32_MAX) capacity = UINT32_MAX;
        reserve(static_cast<std::uint32_t>(capacity));
    }
    std::uint32_t const result = m_size;
    m_size += num_words;
    return result;
}

clause_ref clause_store::create(literal const* lits, unsigned size, bool learned) {
    VEXOR_ASSERT(size >= 2 && size <= clause::max_size);
    clause_ref const ref = allocate(clause::num_words(size, learned));
    clause* c = new (m_words + ref) clause(size, learned);
    std::memcpy(static_cast<void*>(c->begin()), lits, size * sizeof(literal));
    if (learned) c->set_activity(0);
    return ref;
}

void clause_store::free_clause(clause_ref ref) {
    clause& c = (*this)[ref];
    c.set_removed();
    m_wasted += c.num_words();
}

std::uint32_t clause_store::new_slot(literal a, literal b) {
    if (m_watch_xor.size() >= (1u << 31) - 1) memoryExhausted();
    m_watch_xor.push_back(static_cast<std::uint32_t>(a.index() ^ b.index()));
    return m_watch_xor.size() - 1;
}

clause_ref clause_store::move_to(clause_store& target, clause_ref ref) {
    if (m_moved.empty()) m_moved.resize((m_size + 63) / 64, 0);
    std::uint64_t const bit = std::uint64_t(1) << (ref & 63);
    std::uint64_t& word = m_moved[ref / 64];
    if ((word & bit) != 0) return m_words[ref];
    clause const& c = (*this)[ref];
    std::uint32_t const n = c.num_words();
    std::uint32_t const result = target.allocate(n);
    std::memcpy(target.m_words + result, m_words + ref, n * sizeof(std::uint32_t));
    m_words[ref] = result;
    m_words[ref + 1] = target.new_slot(target[result][0], target[result][1]);
    word |= bit;
    return result;
}

void clause_store::swap(clause_store& other) {
    std::swap(m_words, other.m_words);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_wasted, other.m_wasted);
    m_watch_xor.swap(other.m_watch_xor);
    m_moved.swap(other.m_moved);
}

void clause_store::reset() {
    std::free(m_words);
    m_words = nullptr;
    m_size = 1;
    m_capacity = 0;
    m_wasted = 0;
    m_watch_xor.finalize();
    m_moved.finalize();
}

} // namespace vexor
