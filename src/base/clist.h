// Cells of circular singly linked lists.
#pragma once

#include <utility>

namespace vexor {

// A cell is a ring of its own at first. merge splices two different rings into one by a swap of two next
// pointers; the same swap splits them again, so unmerge undoes merge exactly when merges are undone in
// reverse order. Both are O(1), which keeps lists of classes cheap under backtracking. Cells are owned by
// whoever made them.
template <class T>
class clist {
public:
    clist()
        : m_next(this) {}
    explicit clist(T const& element)
        : m_element(element)
        , m_next(this) {}
    clist(clist const&) = delete; // a copied cell would point into a ring that does not know it
    clist& operator=(clist const&) = delete;

    T& elem() { return m_element; }
    T const& elem() const { return m_element; }
    clist* next() const { return m_next; }

    // The other cell must stand in another ring.
    void merge(clist* other) { std::swap(m_next, other->m_next); }
    void unmerge(clist* other) { std::swap(m_next, other->m_next); }

    // Walks the ring once, from this cell on: for (T& element : ring(cell)).
    class iterator {
    public:
        iterator(clist* cell, bool at_start)
            : m_cell(cell)
            , m_at_start(at_start) {}
        T& operator*() const { return m_cell->m_element; }
        iterator& operator++() {
            m_cell = m_cell->m_next;
            m_at_start = false;
            return *this;
        }
        bool operator==(iterator const& other) const {
            return m_cell == other.m_cell && m_at_start == other.m_at_start;
        }

    private:
        clist* m_cell;   // current cell
        bool m_at_start; // tells the first visit of the start cell from the arrival at the end
    };
    // The list of all cells of a ring, empty for null.
    class range {
    public:
        explicit range(clist* start)
            : m_start(start) {}
        iterator begin() const { return iterator(m_start, m_start != nullptr); }
        iterator end() const { return iterator(m_start, false); }

    private:
        clist* m_start;
    };

private:
    T m_element{};
    clist* m_next; // never null
};

template <class T>
typename clist<T>::range ring(clist<T>* start) {
    return typename clist<T>::range(start);
}

} // namespace vexor
