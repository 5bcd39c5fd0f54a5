// Immutable singly linked lists that share their tails.
#pragma once

#include <new>

#include "base/arena.h"

namespace vexor {

// A list is a pointer to its first cell, null for the empty list. Cells stand in an arena and go with it,
// without destructors; nothing frees a cell. Extending a list leaves the old one as it is.
template <class T>
class simple_list {
public:
    simple_list(T const& head, simple_list* tail)
        : m_head(head)
        , m_tail(tail) {}

    static simple_list* cons(arena& region, T const& head, simple_list* tail) {
        return new (region) simple_list(head, tail);
    }
    T const& head() const { return m_head; }
    simple_list* tail() const { return m_tail; }

    class iterator {
    public:
        explicit iterator(simple_list const* cell)
            : m_cell(cell) {}
        T const& operator*() const { return m_cell->m_head; }
        T const* operator->() const { return &m_cell->m_head; }
        iterator& operator++() {
            m_cell = m_cell->m_tail;
            return *this;
        }
        bool operator==(iterator const& other) const { return m_cell == other.m_cell; }

    private:
        simple_list const* m_cell; // null at the end
    };
    // For a loop over a list that may be null: for (T const& element : simple_list<T>::elements(list)).
    class range {
    public:
        explicit range(simple_list const* first)
            : m_first(first) {}
        iterator begin() const { return iterator(m_first); }
        iterator end() const { return iterator(nullptr); }

    private:
        simple_list const* m_first;
    };
    static range elements(simple_list const* first) { return range(first); }

private:
    T m_head;
    simple_list* m_tail; // null at the end; shared with other lists
};

template <class T>
unsigned length(simple_list<T> const* list) {
    unsigned result = 0;
    for (; list; list = list->tail()) result++;
    return result;
}

} // namespace vexor
