// First in, first out, on one array.
#pragma once

#include <new>
#include <type_traits>
#include <utility>

#include "base/debug.h"
#include "base/memory.h"
#include "base/vector.h"

namespace vexor {

// Promises: the waiting elements are contiguous and never wrap. A queue that has run empty rewinds to the
// start of its array, so that alternating push and pop do not let it grow without bound; one that never runs
// empty moves its elements down instead of growing once half of the array lies before the head.
template <class T, class Alloc = heap_allocator, unsigned InitialCapacity = 16, bool CallDestructors = true>
class queue {
public:
    queue() = default;
    queue(queue const&) = delete; // no caller copies a queue
    queue& operator=(queue const&) = delete;
    ~queue() {
        reset();
        if (m_data) Alloc::release(m_data);
    }

    [[nodiscard]] bool empty() const { return m_head == m_tail; }
    [[nodiscard]] unsigned size() const { return m_tail - m_head; }
    [[nodiscard]] unsigned capacity() const { return m_capacity; }

    void push(T const& element) {
        if (m_tail == m_capacity) {
            T kept(element); // the argument may stand in the array that expand releases
            expand();
            new (m_data + m_tail) T(std::move(kept));
        } else {
            new (m_data + m_tail) T(element);
        }
        m_tail++;
    }
    T& front() {
        VEXOR_ASSERT(!empty());
        return m_data[m_head];
    }
    T const& front() const {
        VEXOR_ASSERT(!empty());
        return m_data[m_head];
    }
    T& back() {
        VEXOR_ASSERT(!empty());
        return m_data[m_tail - 1];
    }
    void pop() {
        VEXOR_ASSERT(!empty());
        destroy(m_head);
        m_head++;
        if (m_head == m_tail) m_head = m_tail = 0;
    }
    // Drops all elements and keeps the memory.
    void reset() {
        for (unsigned i = m_head; i < m_tail; i++) destroy(i);
        m_head = m_tail = 0;
    }
    T* begin() { return m_data + m_head; }
    T* end() { return m_data + m_tail; }
    T const* begin() const { return m_data + m_head; }
    T const* end() const { return m_data + m_tail; }

private:
    void destroy(unsigned i) {
        if constexpr (CallDestructors && !std::is_trivially_destructible_v<T>) m_data[i].~T();
        static_cast<void>(i);
    }

    // Makes room behind the tail. Cost: O(1) per push on average, since at least half of the array is gained.
    void expand() {
        bool move_down = m_head >= m_capacity - m_head && m_capacity > 0;
        if (!move_down && m_capacity > ~0u / 2) memoryExhausted();
        unsigned capacity = move_down ? m_capacity : m_capacity == 0 ? InitialCapacity : m_capacity * 2;
        unsigned offset = move_down ? 0 : m_head;
        T* target = move_down ? m_data : static_cast<T*>(Alloc::allocate(sizeof(T) * std::size_t{capacity}));
        // Moving down, source and target do not overlap, as the head lies in the upper half.
        for (unsigned i = 0, n = size(); i < n; i++) {
            new (target + offset + i) T(std::move(m_data[m_head + i]));
            destroy(m_head + i);
        }
        if (!move_down && m_data) Alloc::release(m_data);
        m_tail = offset + size();
        m_head = offset;
        m_data = target;
        m_capacity = capacity;
    }

    T* m_data = nullptr;     // the array
    unsigned m_head = 0;     // index of the first waiting element
    unsigned m_tail = 0;     // index behind the last one; both are 0 when the queue has run empty
    unsigned m_capacity = 0; // elements that fit in the array
};

} // namespace vexor
