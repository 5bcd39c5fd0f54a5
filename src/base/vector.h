// Growable arrays.
//
// vector<T> constructs and destroys its elements; svector<T> treats them as raw memory, which suits plain
// values and may grow in place. Sizes are unsigned: more than 2^32 - 1 elements end the process as exhausted
// memory does.
#pragma once

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <new>
#include <type_traits>
#include <utility>

#include "base/debug.h"
#include "base/memory.h"

namespace vexor {

// Promises: elements are contiguous; growth is by 1.5, so n push_backs cost O(n); reset and shrink keep the
// memory, finalize gives it back. References are invalid after growth, but an element of the vector itself
// may be pushed.
template <class T, class Alloc = heap_allocator, bool CallDestructors = true>
class vector {
    static_assert(alignof(T) <= alignof(std::max_align_t), "the allocator aligns for the basic types only");

public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = T const*;

    vector() = default;
    explicit vector(unsigned n)
        : vector() {
        resize(n);
    }
    vector(unsigned n, T const& fill)
        : vector() {
        resize(n, fill);
    }
    vector(std::initializer_list<T> elements)
        : vector() {
        append(static_cast<unsigned>(elements.size()), elements.begin());
    }
    vector(vector const& other)
        : vector() {
        append(other);
    }
    vector(vector&& other) noexcept { swap(other); }
    ~vector() { finalize(); }

    vector& operator=(vector const& other) {
        if (this != &other) {
            reset();
            append(other);
        }
        return *this;
    }
    vector& operator=(vector&& other) noexcept {
        if (this != &other) {
            finalize();
            swap(other);
        }
        return *this;
    }

    void push_back(T const& element) {
        if (m_size == m_capacity) {
            grow_and_push(T(element)); // the argument may stand in the memory that growth releases
            return;
        }
        new (m_data + m_size) T(element);
        m_size++;
    }
    void push_back(T&& element) {
        if (m_size == m_capacity) {
            grow_and_push(T(std::move(element)));
            return;
        }
        new (m_data + m_size) T(std::move(element));
        m_size++;
    }
    template <class... Args>
    T& emplace_back(Args&&... args) {
        if (m_size == m_capacity)
            grow_and_push(T(std::forward<Args>(args)...));
        else
            new (m_data + m_size++) T(std::forward<Args>(args)...);
        return m_data[m_size - 1];
    }
    void pop_back() {
        VEXOR_ASSERT(m_size > 0);
        m_size--;
        destroy(m_size, m_size + 1);
    }

    T& operator[](unsigned i) {
        VEXOR_ASSERT(i < m_size);
        return m_data[i];
    }
    T const& operator[](unsigned i) const {
        VEXOR_ASSERT(i < m_size);
        return m_data[i];
    }
    T& back() {
        VEXOR_ASSERT(m_size > 0);
        return m_data[m_size - 1];
    }
    T const& back() const {
        VEXOR_ASSERT(m_size > 0);
        return m_data[m_size - 1];
    }
    T& front() { return (*this)[0]; }
    T const& front() const { return (*this)[0]; }
    T* data() { return m_data; }
    T const* data() const { return m_data; }
    iterator begin() { return m_data; }
    iterator end() { return m_data + m_size; }
    const_iterator begin() const { return m_data; }
    const_iterator end() const { return m_data + m_size; }

    [[nodiscard]] unsigned size() const { return m_size; }
    [[nodiscard]] unsigned capacity() const { return m_capacity; }
    [[nodiscard]] bool empty() const { return m_size == 0; }

    // To n elements: new ones are copies of fill, superfluous ones go. The memory never shrinks.
    void resize(unsigned n, T const& fill) {
        if (n <= m_size) {
            shrink(n);
            return;
        }
        if (n > m_capacity) {
            T kept(fill);
            set_capacity(padded_capacity(n));
            fill_up_to(n, kept);
        } else {
            fill_up_to(n, fill);
        }
    }
    void resize(unsigned n) {
        if (n <= m_size) {
            shrink(n);
            return;
        }
        if (n > m_capacity) set_capacity(padded_capacity(n));
        for (; m_size < n; m_size++) new (m_data + m_size) T();
    }
    // Drops the elements from index n on.
    void shrink(unsigned n) {
        VEXOR_ASSERT(n <= m_size);
        destroy(n, m_size);
        m_size = n;
    }
    // Drops all elements and keeps the memory.
    void reset() { shrink(0); }
    void clear() { shrink(0); }
    // Drops all elements and the memory.
    void finalize() {
        destroy(0, m_size);
        if (m_data) Alloc::release(m_data);
        m_data = nullptr;
        m_size = m_capacity = 0;
    }
    // Room for exactly n elements, if there is less.
    void expand_to(unsigned n) {
        if (n > m_capacity) set_capacity(n);
    }
    void reserve(unsigned n) { expand_to(n); }

    void append(unsigned n, T const* elements) {
        if (n > ~0u - m_size) memoryExhausted();
        if (n > m_capacity - m_size) {
            // The elements may be this vector's own: take their place from the index after growth.
            bool own = elements >= m_data && elements < m_data + m_size;
            std::size_t offset = own ? static_cast<std::size_t>(elements - m_data) : 0;
            set_capacity(padded_capacity(m_size + n));
            if (own) elements = m_data + offset;
        }
        for (unsigned i = 0; i < n; i++, m_size++) new (m_data + m_size) T(elements[i]);
    }
    void append(vector const& other) { append(other.m_size, other.m_data); }

    [[nodiscard]] bool contains(T const& element) const {
        for (T const& candidate : *this) {
            if (candidate == element) return true;
        }
        return false;
    }
    // Removes the element at the position; the later ones move up. O(n).
    void erase(iterator position) {
        VEXOR_ASSERT(position >= begin() && position < end());
        for (T *to = position, *last = end() - 1; to != last; to++) *to = std::move(to[1]);
        pop_back();
    }
    // Removes the first element equal to the argument, if there is one.
    void erase(T const& element) {
        for (T* candidate = begin(); candidate != end(); candidate++) {
            if (*candidate == element) {
                erase(candidate);
                return;
            }
        }
    }
    void swap(vector& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }
    friend bool operator==(vector const& a, vector const& b) {
        if (a.m_size != b.m_size) return false;
        for (unsigned i = 0; i < a.m_size; i++) {
            if (!(a.m_data[i] == b.m_data[i])) return false;
        }
        return true;
    }

private:
    static unsigned padded_capacity(unsigned n) {
        std::size_t padded = (std::size_t{n} * 3 + 1) / 2;
        return padded > ~0u ? ~0u : static_cast<unsigned>(padded);
    }

    void grow_and_push(T&& element) {
        if (m_size == ~0u) memoryExhausted();
        set_capacity(m_capacity == 0 ? 2 : padded_capacity(m_capacity));
        new (m_data + m_size) T(std::move(element));
        m_size++;
    }

    void fill_up_to(unsigned n, T const& fill) {
        for (; m_size < n; m_size++) new (m_data + m_size) T(fill);
    }

    // capacity > m_capacity. Raw elements may be moved by the allocator, others are moved one by one.
    void set_capacity(unsigned capacity) {
        std::size_t bytes = sizeof(T) * std::size_t{capacity};
        if constexpr (!CallDestructors || std::is_trivially_copyable_v<T>) {
            m_data = static_cast<T*>(Alloc::reallocate(static_cast<void*>(m_data), bytes));
        } else {
            T* grown = static_cast<T*>(Alloc::allocate(bytes));
            for (unsigned i = 0; i < m_size; i++) new (grown + i) T(std::move(m_data[i]));
            destroy(0, m_size);
            if (m_data) Alloc::release(m_data);
            m_data = grown;
        }
        m_capacity = capacity;
    }

    void destroy([[maybe_unused]] unsigned from, [[maybe_unused]] unsigned to) {
        if constexpr (CallDestructors && !std::is_trivially_destructible_v<T>) {
            for (unsigned i = from; i < to; i++) m_data[i].~T();
        }
    }

    T* m_data = nullptr;     // the elements, then room up to the capacity; null while the capacity is 0
    unsigned m_size = 0;     // constructed elements
    unsigned m_capacity = 0; // elements that fit without growth
};

template <class T, class Alloc = heap_allocator>
using svector = vector<T, Alloc, false>;

// Pointers that belong to someone else.
template <class T>
using ptr_vector = vector<T*, heap_allocator, false>;

// Pointers to objects that this vector owns: an element is destroyed when it leaves the vector. Null is
// allowed.
template <class T>
class scoped_ptr_vector {
public:
    using iterator = T* const*;

    scoped_ptr_vector() = default;
    scoped_ptr_vector(scoped_ptr_vector const&) = delete; // an object has one owner
    scoped_ptr_vector& operator=(scoped_ptr_vector const&) = delete;
    scoped_ptr_vector(scoped_ptr_vector&& other) noexcept
        : m_elements(std::move(other.m_elements)) {}
    scoped_ptr_vector& operator=(scoped_ptr_vector&& other) noexcept {
        if (this != &other) {
            reset();
            m_elements = std::move(other.m_elements);
        }
        return *this;
    }
    ~scoped_ptr_vector() { reset(); }

    void push_back(T* element) { m_elements.push_back(element); }
    void pop_back() {
        T* last = m_elements.back();
        m_elements.pop_back();
        delete last;
    }
    // Takes the last object out without destroying it.
    [[nodiscard]] T* detach_back() {
        T* last = m_elements.back();
        m_elements.pop_back();
        return last;
    }
    // Replaces the object at i, destroying the one that was there.
    void set(unsigned i, T* element) {
        T* old = m_elements[i];
        if (old == element) return;
        m_elements[i] = element;
        delete old;
    }
    T* operator[](unsigned i) const { return m_elements[i]; }
    T* back() const { return m_elements.back(); }
    iterator begin() const { return m_elements.begin(); }
    iterator end() const { return m_elements.end(); }
    [[nodiscard]] unsigned size() const { return m_elements.size(); }
    [[nodiscard]] bool empty() const { return m_elements.empty(); }

    // Destroys the objects from index n on, the last first; new places are null.
    void shrink(unsigned n) {
        VEXOR_ASSERT(n <= size());
        while (m_elements.size() > n) pop_back();
    }
    void resize(unsigned n) {
        if (n < size())
            shrink(n);
        else
            m_elements.resize(n, nullptr);
    }
    void reset() { shrink(0); }
    void clear() { shrink(0); }
    void swap(scoped_ptr_vector& other) noexcept { m_elements.swap(other.m_elements); }

private:
    ptr_vector<T> m_elements; // owned; a null element is a free place
};

} // namespace vexor
