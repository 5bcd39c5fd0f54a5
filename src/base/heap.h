// Binary heap of small non-negative integers, ordered by an outside measure that may change while they are
// inside.
//
// Keeps:   less(child, parent) never holds; m_position[v] is the index of v in m_heap, 0 when v is absent.
// Index 0
//          of the array is a dummy, so a size of 1 means empty.
// Ends:    each sift step moves one level up or down.
// Cost:    O(log n) for insert, remove, increase, decrease; O(1) for min and contains.
// Source:  Williams: Algorithm 232, Heapsort, CACM 7(6), 1964, with the usual position table.
//
// Ties matter, as the order of equal elements decides the course of a search: a child moves up only past a
// parent that is strictly worse, and sifting down prefers the left child unless the right one is strictly
// better.
#pragma once

#include "base/debug.h"
#include "base/vector.h"

namespace vexor {

// less(a, b) means that a stands nearer to the root. When the measure of a contained value changes, the
// caller tells at once, by increase or decrease, before another operation.
template <class LessThan>
class heap {
public:
    explicit heap(LessThan const& less = LessThan())
        : m_less(less) {
        m_heap.push_back(-1);
    }

    // Values are below n from now on; contained ones must be.
    void set_bounds(int n) {
        VEXOR_ASSERT(n >= 0);
        m_position.resize(static_cast<unsigned>(n), 0);
    }
    [[nodiscard]] int get_bounds() const { return static_cast<int>(m_position.size()); }

    [[nodiscard]] bool empty() const { return m_heap.size() == 1; }
    // Number of contained values.
    [[nodiscard]] unsigned size() const { return m_heap.size() - 1; }
    [[nodiscard]] bool contains(int v) const {
        return static_cast<unsigned>(v) < m_position.size() && m_position[static_cast<unsigned>(v)] != 0;
    }
    // The root: no contained value is strictly better.
    [[nodiscard]] int min() const {
        VEXOR_ASSERT(!empty());
        return m_heap[1];
    }

    // v must be absent and within bounds.
    void insert(int v) {
        VEXOR_ASSERT(!contains(v));
        VEXOR_ASSERT(v >= 0 && static_cast<unsigned>(v) < m_position.size());
        m_heap.push_back(v);
        place(v, m_heap.size() - 1);
        sift_up(m_heap.size() - 1);
    }
    // Removes the root and returns it.
    int erase_min() {
        int root = min();
        remove_at(1);
        return root;
    }
    void remove(int v) {
        VEXOR_ASSERT(contains(v));
        remove_at(position(v));
    }
    // Removes the value at an array position, the root being at 1.
    void remove_at(unsigned i) {
        VEXOR_ASSERT(i > 0 && i < m_heap.size());
        position(m_heap[i]) = 0;
        int last = m_heap.back();
        m_heap.pop_back();
        if (i == m_heap.size()) return;
        place(last, i);
        if (!sift_up(i)) sift_down(i);
    }
    // v got better: it moves towards the root.
    void increase(int v) {
        VEXOR_ASSERT(contains(v));
        sift_up(position(v));
    }
    // v got worse: it moves towards the leaves.
    void decrease(int v) {
        VEXOR_ASSERT(contains(v));
        sift_down(position(v));
    }
    // v changed in either direction.
    void update(int v) {
        VEXOR_ASSERT(contains(v));
        if (!sift_up(position(v))) sift_down(position(v));
    }

    // Back to the dummy entry; the bounds stay.
    void reset() {
        for (unsigned i = 1; i < m_heap.size(); i++) position(m_heap[i]) = 0;
        m_heap.shrink(1);
    }
    // The contained values in array order.
    int const* begin() const { return m_heap.begin() + 1; }
    int const* end() const { return m_heap.end(); }
    // Replaces the order; the heap must be empty.
    void set_less(LessThan const& less) {
        VEXOR_ASSERT(empty());
        m_less.~LessThan();
        new (&m_less) LessThan(less); // orders with a reference inside cannot be assigned
    }

    void check_invariant() const {
        VEXOR_ASSERT(m_heap.size() >= 1 && m_heap[0] == -1);
        for (unsigned i = 1; i < m_heap.size(); i++) {
            VEXOR_ASSERT(m_position[static_cast<unsigned>(m_heap[i])] == i);
            VEXOR_ASSERT(i == 1 || !m_less(m_heap[i], m_heap[i / 2]));
        }
        unsigned present = 0;
        for (unsigned p : m_position) present += p != 0;
        VEXOR_ASSERT(present == size());
        static_cast<void>(present);
    }

private:
    unsigned& position(int v) { return m_position[static_cast<unsigned>(v)]; }
    void place(int v, unsigned i) {
        m_heap[i] = v;
        position(v) = i;
    }

    // True when the value at i moved.
    bool sift_up(unsigned i) {
        int v = m_heap[i];
        unsigned start = i;
        for (; i > 1 && m_less(v, m_heap[i / 2]); i /= 2) place(m_heap[i / 2], i);
        place(v, i);
        return i != start;
    }
    void sift_down(unsigned i) {
        int v = m_heap[i];
        unsigned size = m_heap.size();
        while (2 * i < size) {
            unsigned child = 2 * i;
            if (child + 1 < size && m_less(m_heap[child + 1], m_heap[child])) child++;
            if (!m_less(m_heap[child], v)) break;
            place(m_heap[child], i);
            i = child;
        }
        place(v, i);
    }

    LessThan m_less;              // held by value: an order over outside data holds a pointer to it
    svector<int> m_heap;          // the values from index 1 on; index 0 is -1
    svector<unsigned> m_position; // by value: its index in m_heap, 0 when absent
};

} // namespace vexor
