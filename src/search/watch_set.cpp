#include "search/watch_set.h"

#include "base/memory.h"

#include <cstdlib>
#include <cstring>

namespace vexor {

// Grows by a half to sizes of the form 16k + 8, which fill the blocks of the system's allocator exactly.
void watch_set::expand(unsigned bytes) {
    std::uint64_t capacity = m_capacity;
    std::uint64_t const used = std::uint64_t(m_end_clauses) + (m_capacity - m_start_literals);
    do {
        capacity = ((capacity + capacity / 2) & ~std::uint64_t(15)) + 24;
    } while (capacity < used + bytes);
    if (capacity > UINT32_MAX) memoryExhausted();
    char* data = static_cast<char*>(xmalloc(capacity));
    std::uint32_t const literal_bytes = m_capacity - m_start_literals;
    if (m_end_clauses != 0) std::memcpy(data, m_data, m_end_clauses);
    if (literal_bytes != 0)
        std::memcpy(data + capacity - literal_bytes, m_data + m_start_literals, literal_bytes);
    std::free(m_data);
    m_data = data;
    m_capacity = static_cast<std::uint32_t>(capacity);
    m_start_literals = m_capacity - literal_bytes;
}

namespace {

// Removes the entry at position, keeping the order of the rest.
void erase_entry(watch_entry* position, watch_entry* end) {
    std::memmove(static_cast<void*>(position), position + 1,
                 static_cast<std::size_t>(end - position - 1) * sizeof(watch_entry));
}

} // namespace

// Clauses and constraints of a popped scope stand at the end and leave in the reverse order of their coming.
bool watch_set::remove_clause(clause_ref ref) {
    for (watch_entry* it = end_clauses(); it != begin_clauses();) {
        --it;
        if (!it->is_clause() || it->get_clause() != ref) continue;
        erase_entry(it, end_clauses());
        m_end_clauses -= sizeof(watch_entry);
        return true;
    }
    return false;
}

bool watch_set::remove_constraint(constraint* c) {
    watch_entry const wanted(c);
    for (watch_entry* it = end_clauses(); it != begin_clauses();) {
        --it;
        if (!(*it == wanted)) continue;
        erase_entry(it, end_clauses());
        m_end_clauses -= sizeof(watch_entry);
        return true;
    }
    return false;
}

// The region starts with the entry added last, and binary clauses mostly leave in the reverse order of their
// coming.
bool watch_set::remove_literal(literal l) {
    for (literal* it = begin_literals(); it != end_literals(); ++it) {
        if (*it != l) continue;
        std::memmove(static_cast<void*>(begin_literals() + 1), begin_literals(),
                     static_cast<std::size_t>(it - begin_literals()) * sizeof(literal));
        m_start_literals += sizeof(literal);
        return true;
    }
    return false;
}

void watch_set::free_memory() {
    std::free(m_data);
    forget();
}

} // namespace vexor
