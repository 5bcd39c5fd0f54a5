// Intrusive reference counting.
//
// An object dies when its last reference goes, but its destructor never runs inside the destructor of another
// shared object: objects whose count falls to 0 meanwhile wait in a work list. So a chain of a million nodes
// is released without recursion. All waiting objects are gone when the outermost release returns.
#pragma once

#include <utility>

#include "base/debug.h"
#include "base/vector.h"

namespace vexor {

class shared_obj_base {
public:
    shared_obj_base() = default;
    shared_obj_base(shared_obj_base const&) = default;
    shared_obj_base& operator=(shared_obj_base const&) = default;
    virtual ~shared_obj_base() = default;
};

// Destroys the object now, or when the destructor that is running has ended.
void release_shared_obj(shared_obj_base* object) noexcept;

// Destroys the waiting objects at once: for the destructor of something that its nodes' destructors still
// need.
void release_pending_shared_objs() noexcept;

// Adds the count. It belongs to the object, not to its value: copies start without references.
template <class Base>
class core_shared_obj : public Base {
public:
    core_shared_obj() = default;
    core_shared_obj(core_shared_obj const& other)
        : Base(other) {}
    core_shared_obj& operator=(core_shared_obj const& other) {
        Base::operator=(other);
        return *this;
    }

    void inc_ref() const { m_ref_count++; }
    void dec_ref() const {
        VEXOR_ASSERT(m_ref_count > 0);
        if (--m_ref_count == 0) release_shared_obj(const_cast<core_shared_obj*>(this));
    }
    [[nodiscard]] unsigned get_ref_count() const { return m_ref_count; }

private:
    mutable unsigned m_ref_count = 0; // references held by shared_ptr and its vectors
};

// Promises: holds one reference on its object, or is null. Assignment takes the new reference before it
// releases the old one, so p = p and p = p->child are safe.
template <class T>
class shared_ptr {
public:
    shared_ptr() = default;
    shared_ptr(T* object)
        : m_object(object) {
        inc();
    }
    shared_ptr(shared_ptr const& other)
        : m_object(other.m_object) {
        inc();
    }
    shared_ptr(shared_ptr&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U>
    requires std::is_convertible_v<U*, T*> shared_ptr(shared_ptr<U> const& other)
        : m_object(other.get()) {
        inc();
    }
    ~shared_ptr() { dec(m_object); }

    shared_ptr& operator=(T* object) {
        T* old = m_object;
        m_object = object;
        inc();
        dec(old);
        return *this;
    }
    shared_ptr& operator=(shared_ptr const& other) { return *this = other.m_object; }
    shared_ptr& operator=(shared_ptr&& other) noexcept {
        T* taken = std::exchange(other.m_object, nullptr);
        dec(std::exchange(m_object, taken));
        return *this;
    }
    template <class U>
    requires std::is_convertible_v<U*, T*> shared_ptr& operator=(shared_ptr<U> const& other) {
        return *this = static_cast<T*>(other.get());
    }

    [[nodiscard]] T* get() const { return m_object; }
    T& operator*() const {
        VEXOR_ASSERT(m_object);
        return *m_object;
    }
    T* operator->() const {
        VEXOR_ASSERT(m_object);
        return m_object;
    }
    operator T*() const& { return m_object; }
    // A plain pointer kept from a temporary would dangle; an argument that outlives the call is written
    // get().
    operator T*() const&& = delete;
    // Gives up the reference; the pointer is null afterwards.
    void reset() { dec(std::exchange(m_object, nullptr)); }
    void swap(shared_ptr& other) noexcept { std::swap(m_object, other.m_object); }

private:
    void inc() {
        if (m_object) m_object->inc_ref();
    }
    static void dec(T* object) {
        if (object) object->dec_ref();
    }

    T* m_object = nullptr; // one reference is held on it unless it is null
};

// A vector of pointers that holds one reference on each element; null elements are allowed.
template <class T>
class shared_ptr_vector {
public:
    using iterator = T* const*;

    shared_ptr_vector() = default;
    shared_ptr_vector(unsigned n, T* const* elements) { append(n, elements); }
    shared_ptr_vector(shared_ptr_vector const& other) { append(other); }
    shared_ptr_vector(shared_ptr_vector&& other) noexcept { swap(other); }
    shared_ptr_vector& operator=(shared_ptr_vector other) noexcept {
        swap(other);
        return *this;
    }
    ~shared_ptr_vector() { reset(); }

    void push_back(T* element) {
        inc(element);
        m_elements.push_back(element);
    }
    void pop_back() {
        T* last = m_elements.back();
        m_elements.pop_back();
        dec(last);
    }
    void set(unsigned i, T* element) {
        inc(element);
        dec(std::exchange(m_elements[i], element));
    }
    T* operator[](unsigned i) const { return m_elements[i]; }
    T* get(unsigned i) const { return m_elements[i]; }
    T* back() const { return m_elements.back(); }
    T* const* data() const { return m_elements.data(); }
    iterator begin() const { return m_elements.begin(); }
    iterator end() const { return m_elements.end(); }
    [[nodiscard]] unsigned size() const { return m_elements.size(); }
    [[nodiscard]] bool empty() const { return m_elements.empty(); }
    [[nodiscard]] bool contains(T* element) const { return m_elements.contains(element); }

    void append(unsigned n, T* const* elements) {
        for (unsigned i = 0; i < n; i++) inc(elements[i]);
        m_elements.append(n, elements);
    }
    void append(shared_ptr_vector const& other) { append(other.size(), other.data()); }
    // Releases the elements from index n on.
    void shrink(unsigned n) {
        VEXOR_ASSERT(n <= size());
        while (m_elements.size() > n) pop_back();
    }
    // To n elements; new ones are null.
    void resize(unsigned n) {
        if (n < size())
            shrink(n);
        else
            m_elements.resize(n, nullptr);
    }
    void reset() { shrink(0); }
    void clear() { shrink(0); }
    void swap(shared_ptr_vector& other) noexcept { m_elements.swap(other.m_elements); }

private:
    static void inc(T* element) {
        if (element) element->inc_ref();
    }
    static void dec(T* element) {
        if (element) element->dec_ref();
    }

    ptr_vector<T> m_elements; // one reference is held on each
};

} // namespace vexor
