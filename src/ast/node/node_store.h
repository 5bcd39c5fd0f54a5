// Memory of the nodes of one manager, segregated by size.
//
// Nodes are small, numerous and live and die in bunches, so each size has its own 64 KB chunks of equal
// cells, and a node costs its cell and nothing else. A chunk stands at an address that is a multiple of its
// size: masking a node's address finds its chunk, and there its manager, which saves every node a pointer. A
// chunk whose last cell is freed goes back to a pool that all sizes share. The store outlives its manager
// until the last node is gone, so that a reference held too long is no use of freed memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vexor {

class ast_manager;

class node_store {
public:
    static constexpr std::size_t chunk_bytes = 64 * 1024;
    static constexpr std::size_t max_cell_bytes = 256;

    explicit node_store(ast_manager* manager)
        : m_manager(manager) {}
    node_store(node_store const&) = delete; // cells point back to their store
    node_store& operator=(node_store const&) = delete;

    // A cell of at least the given size, at most max_cell_bytes, aligned to 8 bytes.
    void* allocate(std::size_t bytes);
    // Gives a cell back to the store it came from. It may delete an abandoned store.
    static void release(void* cell);
    // The manager of the node at this address.
    static ast_manager* manager_of(void const* cell) { return chunk_of(cell)->m_store->m_manager; }

    // The manager is gone: the store deletes itself with its last cell, at once if there is none.
    void abandon();

    std::size_t num_live() const { return m_num_live; }
    // Bytes taken from the system.
    std::size_t reserved_bytes() const;

    // Calls f with the address of every allocated cell; f neither allocates nor releases.
    template <class F>
    void for_each_live(F f) const;

    // How many pointers a node of this size carries behind itself when it has n children: all of them, or the
    // one that leads to a separate array when the node would not fit a cell. Never 0, so that children can be
    // set later.
    static unsigned inline_slots(std::size_t node_bytes, unsigned n) {
        if (n == 0 || node_bytes + std::size_t{n} * sizeof(void*) > max_cell_bytes) return 1;
        return n;
    }

    void check_invariant() const;

private:
    static constexpr std::size_t granule = 8;
    static constexpr std::size_t region_bytes = 64 * chunk_bytes;
    static constexpr std::size_t num_classes = max_cell_bytes / granule + 1;

    struct chunk {
        node_store* m_store;
        chunk* m_next;              // in the list of chunks with room, or in the pool
        chunk* m_prev;              // in the list of chunks with room
        std::uintptr_t m_free_list; // last freed cell, 0 for none; see free_link
        char* m_bump;               // first cell never handed out
        char* m_limit;              // end of the last cell
        std::uint32_t m_cell_bytes; // 0 while in the pool
        std::uint32_t m_num_live;   // cells in use
        bool m_has_room;            // is it in the list of chunks with room
    };

    static chunk* chunk_of(void const* p) {
        return reinterpret_cast<chunk*>(reinterpret_cast<std::uintptr_t>(p) & ~(chunk_bytes - 1));
    }
    // First word of a freed cell: the previous freed cell plus 1, which no vtable pointer looks like.
    static std::uintptr_t read_link(char const* cell);
    static char* first_cell(chunk* c) { return reinterpret_cast<char*>(c) + sizeof(chunk); }

    chunk* new_chunk(std::size_t size_class);
    void* take_cell(chunk* c);
    void release_cell(chunk* c, char* cell);
    void add_region();
    void link_chunk(chunk* c);
    void unlink_chunk(chunk* c);
    void retire_chunk(chunk* c);
    ~node_store();

    struct region {
        char* m_base;       // address and size of the mapping
        std::size_t m_size; // a multiple of the chunk size
    };

    ast_manager* m_manager;               // owner; dangling once abandoned
    chunk* m_with_room[num_classes] = {}; // chunks with a free cell, by size class
    chunk* m_pool = nullptr;              // chunks without a size
    std::size_t m_pool_size = 0;          // length of m_pool
    std::size_t m_num_live = 0;           // cells in use
    std::size_t m_unused = 0;             // chunks of the last region not handed out so far
    std::vector<region> m_regions;        // mappings, oldest first
    bool m_abandoned = false;
};

template <class F>
void node_store::for_each_live(F f) const {
    for (std::size_t r = 0; r < m_regions.size(); ++r) {
        region const& reg = m_regions[r];
        std::size_t num_chunks = reg.m_size / chunk_bytes;
        if (r + 1 == m_regions.size()) num_chunks -= m_unused;
        for (std::size_t i = 0; i < num_chunks; ++i) {
            auto* c = reinterpret_cast<chunk*>(reg.m_base + i * chunk_bytes);
            if (c->m_cell_bytes == 0) continue;
            for (char* cell = first_cell(c); cell < c->m_bump; cell += c->m_cell_bytes)
                if ((read_link(cell) & 1) == 0) f(static_cast<void*>(cell));
        }
    }
}

} // namespace vexor
