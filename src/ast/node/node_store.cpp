#include "ast/node/node_store.h"

#include "base/debug.h"
#include "base/memory.h"

#include <cstring>
#include <sys/mman.h>

#if defined(__SANITIZE_ADDRESS__)
#define VEXOR_POISON 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VEXOR_POISON 1
#endif
#endif
#ifdef VEXOR_POISON
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(ADDRESS, SIZE) (static_cast<void>(ADDRESS), static_cast<void>(SIZE))
#define ASAN_UNPOISON_MEMORY_REGION(ADDRESS, SIZE) (static_cast<void>(ADDRESS), static_cast<void>(SIZE))
#endif

namespace vexor {

namespace {

// Pooled chunks above this number give their pages back to the system.
constexpr std::size_t max_resident_pool = 32;

} // namespace

std::uintptr_t node_store::read_link(char const* cell) {
    std::uintptr_t word = 0;
#ifdef VEXOR_POISON
    // A freed cell is poisoned as a whole; its link is read behind the sanitizer's back.
    if (__asan_address_is_poisoned(cell)) {
        ASAN_UNPOISON_MEMORY_REGION(cell, sizeof word);
        std::memcpy(&word, cell, sizeof word);
        ASAN_POISON_MEMORY_REGION(cell, sizeof word);
        return word;
    }
#endif
    std::memcpy(&word, cell, sizeof word);
    return word;
}

void* node_store::allocate(std::size_t bytes) {
    VEXOR_ASSERT(bytes > 0 && bytes <= max_cell_bytes);
    VEXOR_ASSERT(!m_abandoned);
    std::size_t size_class = (bytes + granule - 1) / granule;
    chunk* c = m_with_room[size_class];
    if (c == nullptr) c = new_chunk(size_class);
    return take_cell(c);
}

void* node_store::take_cell(chunk* c) {
    char* cell;
    if (c->m_free_list != 0) {
        cell = reinterpret_cast<char*>(c->m_free_list);
        c->m_free_list = read_link(cell) & ~std::uintptr_t{1};
    } else {
        cell = c->m_bump;
        c->m_bump += c->m_cell_bytes;
    }
    ASAN_UNPOISON_MEMORY_REGION(cell, c->m_cell_bytes);
    ++c->m_num_live;
    ++m_num_live;
    if (c->m_free_list == 0 && c->m_bump == c->m_limit) unlink_chunk(c);
    return cell;
}

void node_store::release(void* cell) {
    chunk* c = chunk_of(cell);
    c->m_store->release_cell(c, static_cast<char*>(cell));
}

void node_store::release_cell(chunk* c, char* cell) {
    VEXOR_ASSERT(c->m_num_live > 0);
    std::uintptr_t link = c->m_free_list | 1;
    std::memcpy(cell, &link, sizeof link);
    c->m_free_list = reinterpret_cast<std::uintptr_t>(cell);
    ASAN_POISON_MEMORY_REGION(cell, c->m_cell_bytes);
    --c->m_num_live;
    --m_num_live;
    if (!c->m_has_room) link_chunk(c);
    // The chunk in use stays, or a single node made and dropped in turn would move pages all the time.
    if (c->m_num_live == 0 && (c->m_next != nullptr || c->m_prev != nullptr)) retire_chunk(c);
    if (m_abandoned && m_num_live == 0) delete this;
}

void node_store::abandon() {
    m_abandoned = true;
    if (m_num_live == 0) delete this;
}

node_store::chunk* node_store::new_chunk(std::size_t size_class) {
    chunk* c = m_pool;
    if (c != nullptr) {
        m_pool = c->m_next;
        --m_pool_size;
    } else {
        if (m_unused == 0) add_region();
        region const& last = m_regions.back();
        c = reinterpret_cast<chunk*>(last.m_base + (last.m_size - m_unused * chunk_bytes));
        --m_unused;
    }
    auto cell_bytes = static_cast<std::uint32_t>(size_class * granule);
    std::size_t room = chunk_bytes - sizeof(chunk);
    *c = chunk{this, nullptr, nullptr, 0, first_cell(c), nullptr, cell_bytes, 0, false};
    c->m_limit = c->m_bump + room / cell_bytes * cell_bytes;
    ASAN_POISON_MEMORY_REGION(c->m_bump, room);
    link_chunk(c);
    return c;
}

void node_store::link_chunk(chunk* c) {
    chunk*& head = m_with_room[c->m_cell_bytes / granule];
    c->m_prev = nullptr;
    c->m_next = head;
    if (head != nullptr) head->m_prev = c;
    head = c;
    c->m_has_room = true;
}

void node_store::unlink_chunk(chunk* c) {
    if (c->m_prev != nullptr)
        c->m_prev->m_next = c->m_next;
    else
        m_with_room[c->m_cell_bytes / granule] = c->m_next;
    if (c->m_next != nullptr) c->m_next->m_prev = c->m_prev;
    c->m_next = c->m_prev = nullptr;
    c->m_has_room = false;
}

void node_store::retire_chunk(chunk* c) {
    unlink_chunk(c);
    c->m_cell_bytes = 0;
    c->m_next = m_pool;
    m_pool = c;
    if (++m_pool_size > max_resident_pool) {
        constexpr std::size_t page = 4096; // the first page holds the chunk's head
        madvise(reinterpret_cast<char*>(c) + page, chunk_bytes - page, MADV_DONTNEED);
    }
}

void node_store::add_region() {
    // One chunk too many is mapped, and what lies before and behind the aligned stretch is given back.
    std::size_t size = region_bytes + chunk_bytes;
    void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) memoryExhausted();
    char* begin = static_cast<char*>(mapped);
    auto address = reinterpret_cast<std::uintptr_t>(begin);
    std::size_t head = (chunk_bytes - address % chunk_bytes) % chunk_bytes;
    if (head > 0) munmap(begin, head);
    if (head < chunk_bytes) munmap(begin + head + region_bytes, chunk_bytes - head);
    m_regions.push_back({begin + head, region_bytes});
    m_unused = region_bytes / chunk_bytes;
}

node_store::~node_store() {
    for (region const& r : m_regions) {
        ASAN_UNPOISON_MEMORY_REGION(r.m_base, r.m_size);
        munmap(r.m_base, r.m_size);
    }
}

std::size_t node_store::reserved_bytes() const {
    std::size_t sum = 0;
    for (region const& r : m_regions) sum += r.m_size;
    return sum;
}

void node_store::check_invariant() const {
    std::size_t counted = 0;
    for_each_live([&]([[maybe_unused]] void* cell) {
        ++counted;
        VEXOR_ASSERT(chunk_of(cell)->m_store == this);
    });
    VEXOR_ASSERT(counted == m_num_live);
    for (std::size_t size_class = 0; size_class < num_classes; ++size_class) {
        for (chunk* c = m_with_room[size_class]; c != nullptr; c = c->m_next) {
            VEXOR_ASSERT(c->m_cell_bytes == size_class * granule && c->m_has_room);
            VEXOR_ASSERT(c->m_free_list != 0 || c->m_bump < c->m_limit);
        }
    }
}

} // namespace vexor
