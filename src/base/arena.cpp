#include "base/arena.h"

#include <cstdlib>

#include "base/memory.h"

namespace vexor {

small_obj_allocator g_small_obj_allocator;

small_obj_allocator::~small_obj_allocator() {
    for (arena* a : m_arenas) delete a;
}

arena::arena(std::size_t block_size)
    : m_free_blocks(nullptr)
    , m_block_size(block_size) {
    if (m_block_size < sizeof(block)) m_block_size = sizeof(block);
    m_block_size = (m_block_size + (alignment - 1)) & ~(alignment - 1);
    m_first_block = m_curr_block = new_block(m_block_size, false);
    m_curr_pos = m_first_block->begin();
    m_curr_end = end_of(m_first_block);
}

static void free_chain(auto* b) {
    while (b) {
        auto* next = b->next();
        std::free(b);
        b = next;
    }
}

arena::~arena() {
    free_chain(m_first_block);
    free_chain(m_free_blocks);
}

arena::block* arena::new_block(std::size_t size, bool oversize) {
    block* result = new (xmalloc(size)) block{oversize ? std::size_t{1} : 0};
    VEXOR_POISON(result->begin(), reinterpret_cast<char*>(result) + size);
    return result;
}

void arena::open_block(std::size_t size) {
    if (size > (~std::size_t{0} >> 1)) memoryExhausted();
    std::size_t rounded = (size + (alignment - 1)) & ~(alignment - 1);
    bool oversize = rounded > m_block_size - sizeof(block);
    block* opened;
    if (oversize) {
        opened = new_block(rounded + sizeof(block), true);
    } else if (m_free_blocks) {
        opened = m_free_blocks;
        m_free_blocks = opened->next();
        opened->set_next(nullptr);
    } else {
        opened = new_block(m_block_size, false);
    }
    m_curr_block->set_next(opened);
    m_curr_block = opened;
    m_curr_pos = opened->begin();
    m_curr_end = oversize ? m_curr_pos + rounded : end_of(opened);
}

void arena::release_behind(block* saved_block, char* position, bool keep_blocks) {
    block* b = saved_block->next();
    saved_block->set_next(nullptr);
    while (b) {
        block* next = b->next();
        if (!b->is_oversize() && (keep_blocks || !m_free_blocks)) {
            VEXOR_POISON(b->begin(), end_of(b));
            b->set_next(m_free_blocks);
            m_free_blocks = b;
        } else {
            std::free(b);
        }
        b = next;
    }
    m_curr_block = saved_block;
    m_curr_end = saved_block->is_oversize() ? position : end_of(saved_block);
}

void arena::reset(bool keep_blocks) {
    restore(m_first_block, m_first_block->begin(), keep_blocks);
    if (!keep_blocks) {
        free_chain(m_free_blocks);
        m_free_blocks = nullptr;
    }
}

std::size_t arena::bytes_held() const {
    std::size_t total = 0;
    // The size of an oversize block is known to the system alone; it counts as a common one here.
    for (block* b = m_first_block; b; b = b->next()) total += m_block_size;
    for (block* b = m_free_blocks; b; b = b->next()) total += m_block_size;
    return total;
}

void arena::check_invariant() const {
    bool seen = false;
    for (block* b = m_first_block; b; b = b->next()) {
        seen = b == m_curr_block;
        VEXOR_ASSERT(!seen || !b->next());
    }
    VEXOR_ASSERT(seen);
    VEXOR_ASSERT(m_curr_pos <= m_curr_end);
    VEXOR_ASSERT(static_cast<std::size_t>(m_curr_end - m_curr_pos) % alignment == 0);
    for (block* b = m_free_blocks; b; b = b->next()) VEXOR_ASSERT(!b->is_oversize());
    static_cast<void>(seen);
}

} // namespace vexor
