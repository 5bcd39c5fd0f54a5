#include "base/numeral_pool.h"

#include <cstdlib>

#include "base/memory.h"

namespace vexor {

constinit mpq_t* numeral_pool::m_big_nums = nullptr;
constinit int* numeral_pool::m_free_idxs = nullptr;
constinit unsigned numeral_pool::m_num_free = 0;
constinit unsigned numeral_pool::m_size = 0;
constinit unsigned numeral_pool::m_capacity = 0;

void numeral_pool::expand(unsigned capacity) {
    // A GMP record may be moved as it is: its limbs stay where they are.
    m_big_nums =
        static_cast<mpq_t*>(xrealloc(static_cast<void*>(m_big_nums), sizeof(mpq_t) * std::size_t{capacity}));
    m_free_idxs =
        static_cast<int*>(xrealloc(static_cast<void*>(m_free_idxs), sizeof(int) * std::size_t{capacity}));
    m_capacity = capacity;
}

void numeral_pool::init() {
    if (m_size != 0) return;
    expand(initial_capacity);
    for (; m_size < num_scratch; m_size++) mpq_init(m_big_nums[m_size]);
}

int numeral_pool::take_fresh() {
    init();
    if (m_size == m_capacity) {
        if (m_capacity > ~0u / 4) memoryExhausted(); // indices are ints
        expand(m_capacity * 2);
    }
    mpq_init(m_big_nums[m_size]);
    return static_cast<int>(m_size++);
}

void numeral_pool::empty_slot(mpq_ptr q) noexcept {
    mpq_clear(q);
    mpq_init(q);
}

bool numeral_pool::free_big_nums() {
    if (num_used() != 0) return false;
    for (unsigned i = 0; i < m_size; i++) mpq_clear(m_big_nums[i]);
    std::free(m_big_nums);
    std::free(m_free_idxs);
    m_big_nums = nullptr;
    m_free_idxs = nullptr;
    m_num_free = m_size = m_capacity = 0;
    return true;
}

void numeral_pool::check_invariant() {
    VEXOR_ASSERT(m_size <= m_capacity && m_num_free <= m_size);
    for (unsigned i = 0; i < m_num_free; i++)
        VEXOR_ASSERT(m_free_idxs[i] >= static_cast<int>(num_scratch) &&
                     static_cast<unsigned>(m_free_idxs[i]) < m_size);
}

} // namespace vexor
