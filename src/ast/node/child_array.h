// The children of a node, one reference each, in the memory right behind the node.
//
// It is the last member of its class, and of a class that nothing with data is derived from; mk reserves the
// slots behind it. More children than the node has slots for (a node too large for a cell, a setter with more
// children than there were) stand in an array of their own, to which the first slot leads.
#pragma once

#include "ast/node/node_store.h"
#include "base/debug.h"
#include "base/memory.h"

#include <cstdlib>
#include <limits>

namespace vexor {

template <class T>
class alignas(void*) child_array {
public:
    // node_bytes: the size of the node's class, without the slots.
    child_array(std::size_t node_bytes, T* const* children, std::size_t n)
        : m_size(0)
        , m_slots(node_store::inline_slots(node_bytes, static_cast<unsigned>(n))) {
        fill(children, n);
    }
    child_array(child_array const&) = delete; // the slots belong to the node
    child_array& operator=(child_array const&) = delete;
    ~child_array() { clear(); }

    unsigned size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    T* operator[](unsigned i) const {
        VEXOR_ASSERT(i < m_size);
        return data()[i];
    }
    T* const* begin() const { return data(); }
    T* const* end() const { return data() + m_size; }
    T* const* data() const { return is_inline() ? slots() : separate(); }

    // Takes the new references before it lets the old ones go, so that the new children may be the old ones.
    void assign(T* const* children, std::size_t n) {
        for (std::size_t i = 0; i < n; ++i)
            if (children[i] != nullptr) children[i]->inc_ref();
        T** copy = nullptr;
        if (n > 0) {
            copy = static_cast<T**>(xmalloc(n * sizeof(T*)));
            for (std::size_t i = 0; i < n; ++i) copy[i] = children[i];
        }
        clear();
        fill(copy, n, false);
        std::free(copy);
    }
    // Replaces one child.
    void set(unsigned i, T* child) {
        T** where = const_cast<T**>(data()) + i;
        if (child != nullptr) child->inc_ref();
        T* old = *where;
        *where = child;
        if (old != nullptr) old->dec_ref();
    }

private:
    bool is_inline() const { return m_size <= m_slots; }
    T** slots() const { return reinterpret_cast<T**>(const_cast<child_array*>(this) + 1); }
    T** separate() const { return *reinterpret_cast<T***>(const_cast<child_array*>(this) + 1); }

    void fill(T* const* children, std::size_t n, bool take_references = true) {
        if (n > std::numeric_limits<unsigned>::max()) memoryExhausted();
        m_size = static_cast<unsigned>(n);
        T** target = slots();
        if (!is_inline()) {
            target = static_cast<T**>(xmalloc(n * sizeof(T*)));
            *reinterpret_cast<T***>(this + 1) = target;
        }
        for (std::size_t i = 0; i < n; ++i) {
            target[i] = children[i];
            if (take_references && target[i] != nullptr) target[i]->inc_ref();
        }
    }

    void clear() {
        T* const* old = data();
        for (unsigned i = 0; i < m_size; ++i)
            if (old[i] != nullptr) old[i]->dec_ref();
        if (!is_inline()) std::free(separate());
        m_size = 0;
    }

    unsigned m_size;  // number of children
    unsigned m_slots; // number of pointers behind the node, at least 1
};

} // namespace vexor
