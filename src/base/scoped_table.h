// A hash map with nested scopes: end_scope takes back what was bound since the matching begin_scope.
//
// Keeps:   m_bindings lists all bindings, the latest first; each hangs in the bucket of its key, and of two
// bindings
//          of one key the later one comes first.
// Cost:    O(1) per binding and look-up for a hash that spreads; end_scope walks the bindings of its scope.
// Source:  own.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>

#include "base/arena.h"
#include "base/hash_table.h"
#include "base/vector.h"

namespace vexor {

// Bindings stand in the arena of the table, so keys and values are plain values unless CallDestructors is
// true. Pointers to values stay valid until their scope ends.
template <class Key, class Value, class Hash, class Eq = default_eq<Key>, bool CallDestructors = false>
class scoped_table : private scoped_arena {
public:
    scoped_table()
        : scoped_arena(8192) {}
    ~scoped_table() { destroy_until(nullptr); }

    void begin_scope() {
        m_scopes.push_back(m_bindings);
        scoped_arena::begin_scope();
    }
    void end_scope() {
        VEXOR_ASSERT(!m_scopes.empty());
        binding* before = m_scopes.back();
        m_scopes.pop_back();
        for (binding* b = m_bindings; b != before; b = b->m_previous) unlink(b);
        destroy_until(before);
        scoped_arena::end_scope(false);
    }
    // Number of open scopes.
    [[nodiscard]] unsigned level() const { return m_scopes.size(); }

    // Binds the key at the current level: a binding of an outer level is hidden until the scope ends, one of
    // this level is replaced.
    void insert(Key const& key, Value const& value) {
        binding* present = find_binding(key);
        if (present && present->m_level == level()) {
            present->m_value = value;
            return;
        }
        if (m_buckets.empty() || m_size >= buckets().m_prime) grow();
        std::uint32_t hash = hash_detail::fold(m_hash(key));
        binding*& bucket = m_buckets[static_cast<unsigned>(buckets().index(hash))];
        bucket = m_bindings =
            new (allocate(sizeof(binding))) binding{bucket, m_bindings, hash, level(), key, value};
        m_size++;
    }
    // The value of the innermost binding, null when the key is not bound.
    [[nodiscard]] Value* find(Key const& key) const {
        binding* b = find_binding(key);
        return b ? &b->m_value : nullptr;
    }
    bool find(Key const& key, Value& result) const {
        Value* value = find(key);
        if (value) result = *value;
        return value != nullptr;
    }
    [[nodiscard]] bool contains(Key const& key) const { return find_binding(key) != nullptr; }
    // As find, but only for a binding that was made at the current level.
    [[nodiscard]] Value* find_at_level(Key const& key) const {
        binding* b = find_binding(key);
        return b && b->m_level == level() ? &b->m_value : nullptr;
    }
    // The level of the innermost binding, -1 when the key is not bound.
    [[nodiscard]] int level_of(Key const& key) const {
        binding* b = find_binding(key);
        return b ? static_cast<int>(b->m_level) : -1;
    }

    // Number of bindings, hidden ones included.
    [[nodiscard]] unsigned size() const { return m_size; }
    [[nodiscard]] bool empty() const { return m_size == 0; }
    // Drops all bindings and scopes.
    void reset() {
        bool few = std::size_t{m_size} * 8 < (m_buckets.empty() ? 0 : buckets().m_prime);
        if (few) {
            for (binding* b = m_bindings; b; b = b->m_previous)
                m_buckets[buckets().index(b->m_hash)] = nullptr;
        } else {
            for (binding*& bucket : m_buckets) bucket = nullptr;
        }
        destroy_until(nullptr);
        m_size = 0;
        m_scopes.reset();
        scoped_arena::reset(false);
    }
    // f(key, value) for all bindings, hidden ones included, the latest first.
    template <class F>
    void for_each(F&& f) const {
        for (binding* b = m_bindings; b; b = b->m_previous) f(b->m_key, b->m_value);
    }

    void check_invariant() const {
        arena::check_invariant();
        unsigned count = 0;
        unsigned above = ~0u;
        for (binding* b = m_bindings; b; b = b->m_previous, count++) {
            VEXOR_ASSERT(b->m_level <= above && b->m_level <= level());
            above = b->m_level;
            VEXOR_ASSERT(find_binding(b->m_key)->m_level >= b->m_level);
        }
        VEXOR_ASSERT(count == m_size);
        static_cast<void>(above);
    }

private:
    struct binding {
        binding* m_next;     // in the bucket
        binding* m_previous; // made before this one
        std::uint32_t m_hash;
        unsigned m_level; // scopes open when it was made
        Key m_key;
        Value m_value;
    };

    hash_detail::bucket_count const& buckets() const { return hash_detail::g_bucket_counts[m_count_index]; }

    binding* find_binding(Key const& key) const {
        if (m_size == 0) return nullptr;
        std::uint32_t hash = hash_detail::fold(m_hash(key));
        binding* b = m_buckets[static_cast<unsigned>(buckets().index(hash))];
        while (b && !(b->m_hash == hash && m_eq(b->m_key, key))) b = b->m_next;
        return b;
    }
    void unlink(binding* b) {
        binding** link = &m_buckets[static_cast<unsigned>(buckets().index(b->m_hash))];
        while (*link != b) link = &(*link)->m_next;
        *link = b->m_next;
        m_size--;
    }
    void grow() {
        if (!m_buckets.empty()) m_count_index++;
        m_buckets.reset();
        m_buckets.resize(static_cast<unsigned>(buckets().m_prime), nullptr);
        // Bindings must enter their chains from early to late: turn the list around, and back on the way.
        binding* reversed = nullptr;
        for (binding* b = m_bindings; b;) {
            binding* previous = b->m_previous;
            b->m_previous = reversed;
            reversed = b;
            b = previous;
        }
        binding* last = nullptr;
        for (binding* b = reversed; b;) {
            binding* later = b->m_previous;
            binding*& bucket = m_buckets[static_cast<unsigned>(buckets().index(b->m_hash))];
            b->m_next = bucket;
            bucket = b;
            b->m_previous = last;
            last = b;
            b = later;
        }
    }
    void destroy(binding* b) {
        if constexpr (CallDestructors) b->~binding();
        static_cast<void>(b);
    }
    void destroy_until(binding* end) {
        while (m_bindings != end) {
            binding* previous = m_bindings->m_previous;
            destroy(m_bindings);
            m_bindings = previous;
        }
    }

    svector<binding*> m_buckets;   // heads of the chains; empty until the first insertion
    svector<binding*> m_scopes;    // by open scope: the latest binding before it
    binding* m_bindings = nullptr; // the latest binding
    unsigned m_size = 0;           // bindings
    unsigned m_count_index = 0;    // which number of buckets m_buckets has
    [[no_unique_address]] Hash m_hash{};
    [[no_unique_address]] Eq m_eq{};
};

} // namespace vexor
