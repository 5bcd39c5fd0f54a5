// Region allocation: objects are given out from big blocks and go all at once, without destructors.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "base/debug.h"

#if defined(__SANITIZE_ADDRESS__)
#define VEXOR_ARENA_POISON 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VEXOR_ARENA_POISON 1
#endif
#endif
#ifdef VEXOR_ARENA_POISON
#include <sanitizer/asan_interface.h>
#define VEXOR_POISON(from, to) ASAN_POISON_MEMORY_REGION((from), static_cast<std::size_t>((to) - (from)))
#define VEXOR_UNPOISON(from, size) ASAN_UNPOISON_MEMORY_REGION((from), (size))
#else
#define VEXOR_POISON(from, to) static_cast<void>(0)
#define VEXOR_UNPOISON(from, size) static_cast<void>(0)
#endif

namespace vexor {

// Promises: memory is aligned to 8 bytes and uninitialised; an allocation is a few instructions; nothing is
// freed singly. A request that does not fit a block gets a block of its own, which is never recycled. Under
// the address sanitizer, memory that is not given out (any more) is poisoned.
class arena {
public:
    static constexpr std::size_t alignment = 8;

    explicit arena(std::size_t block_size);
    arena(arena const&) = delete; // the objects inside have one owner
    arena& operator=(arena const&) = delete;
    ~arena();

    [[nodiscard]] void* allocate(std::size_t size) {
        // The rest of a block is a multiple of the alignment: what fits also fits rounded.
        if (size > static_cast<std::size_t>(m_curr_end - m_curr_pos)) open_block(size);
        char* result = m_curr_pos;
        m_curr_pos += (size + (alignment - 1)) & ~(alignment - 1);
        VEXOR_UNPOISON(result, size);
        return result;
    }

    template <class T, class... Args>
    [[nodiscard]] T* make(Args&&... args) {
        static_assert(alignof(T) <= alignment);
        return new (allocate(sizeof(T))) T(std::forward<Args>(args)...);
    }

    // Takes back everything that was allocated. Blocks after the first are kept for later use or freed; the
    // first one stays in either case.
    void reset(bool keep_blocks);

    // Bytes held from the system, spare blocks included.
    [[nodiscard]] std::size_t bytes_held() const;
    void check_invariant() const;

protected:
    // The head of each block: the next block, and in the lowest bit whether this one is oversize. The usable
    // area begins right behind.
    struct block {
        std::size_t m_link;

        block* next() const { return reinterpret_cast<block*>(m_link & ~std::size_t{1}); }
        void set_next(block* next) {
            m_link = reinterpret_cast<std::size_t>(next) | static_cast<std::size_t>(is_oversize());
        }
        bool is_oversize() const { return (m_link & 1) != 0; }
        char* begin() { return reinterpret_cast<char*>(this) + sizeof(block); }
    };

    // Takes back all that was allocated since position was the next free byte of saved_block.
    void restore(block* saved_block, char* position, bool keep_blocks) {
        if (saved_block != m_curr_block) release_behind(saved_block, position, keep_blocks);
        m_curr_pos = position;
        VEXOR_POISON(m_curr_pos, m_curr_end);
    }

    block* m_curr_block;  // block being filled, the last of the chain
    char* m_curr_pos;     // next free byte of the current block
    char* m_curr_end;     // end of the current block; of an oversize block, which is full at once, m_curr_pos
    block* m_first_block; // head of the chain, kept for the life of the arena
    block* m_free_blocks; // spare blocks, all of the common size
    std::size_t m_block_size; // bytes of a common block with its head, a multiple of the alignment

private:
    void open_block(std::size_t size);
    void release_behind(block* saved_block, char* position, bool keep_blocks);
    block* new_block(std::size_t size, bool oversize);
    char* end_of(block* b) { return reinterpret_cast<char*>(b) + m_block_size; }
};

// An arena with nested scopes: end_scope takes back what was allocated since the matching begin_scope.
//
// Both run at every decision of the search, so they are inline and, away from a block border, touch neither
// the system allocator nor a loop. The scope's own record goes with the scope: reopening a scope any number
// of times needs no more memory than opening it once.
class scoped_arena : public arena {
public:
    explicit scoped_arena(std::size_t block_size)
        : arena(block_size) {}

    void begin_scope() {
        block* saved_block = m_curr_block;
        char* saved_pos = m_curr_pos;
        m_curr_scope = new (allocate(sizeof(scope))) scope{saved_block, saved_pos, m_curr_scope};
    }
    // A false argument frees blocks of the scope, apart from one spare block that spares the search the
    // system allocator at a block border; true keeps them all for later use.
    void end_scope(bool keep_blocks) {
        VEXOR_ASSERT(m_curr_scope);
        scope record = *m_curr_scope;
        m_curr_scope = record.m_previous;
        restore(record.m_saved_block, record.m_saved_pos, keep_blocks);
    }
    void reset(bool keep_blocks) {
        arena::reset(keep_blocks);
        m_curr_scope = nullptr;
    }
    [[nodiscard]] bool has_scope() const { return m_curr_scope != nullptr; }

private:
    struct scope {
        block* m_saved_block;
        char* m_saved_pos;
        scope* m_previous; // enclosing scope, null at the outermost
    };

    scope* m_curr_scope = nullptr; // innermost scope's record, which stands in the arena itself
};

// The home of a small object allocator by size classes; nothing allocates from it so far.
class small_obj_allocator {
public:
    static constexpr unsigned num_classes = 256;
    ~small_obj_allocator();
    arena* m_arenas[num_classes] = {}; // by size class, owned, null until used
};
extern small_obj_allocator g_small_obj_allocator;

} // namespace vexor

inline void* operator new(std::size_t size, vexor::arena& region) { return region.allocate(size); }
inline void* operator new[](std::size_t size, vexor::arena& region) { return region.allocate(size); }
// Called only when a constructor throws: the memory goes with the region.
inline void operator delete(void*, vexor::arena&) {}
inline void operator delete[](void*, vexor::arena&) {}
