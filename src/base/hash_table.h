// Hash maps and sets: chained tables with a prime number of buckets.
//
// Keeps:   each entry hangs in the bucket of its hash; there are at least as many buckets as entries.
// Cost:    O(1) per operation for a hash that spreads; an empty table owns no memory. reset costs no more
// than the
//          entries made since the last one, so a small traversal on a table that once was large stays cheap.
// Source:  chaining is folklore; the remainder without division is from Lemire, Kaser, Kurz: Faster remainder
// by
//          direct computation, Software: Practice and Experience 49(6), 2019.
// Differs: entries stand in pages, in the order of their making. So they never move, and iteration follows
// that
//          order (an erased place is taken by the next new entry): it does not depend on addresses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "base/debug.h"
#include "base/memory.h"
#include "base/vector.h"

namespace vexor {

// For keys T*: the pointer value. It differs from run to run.
template <class T>
struct fast_ptr_hash {
    std::size_t operator()(T const* p) const { return reinterpret_cast<std::size_t>(p); }
};

// For keys T* that are numbered: the same in each run.
template <class T>
struct fast_det_hash {
    std::size_t operator()(T const* p) const { return p->get_id(); }
};

// For integers: the value itself.
struct int_hash {
    std::size_t operator()(long long value) const { return static_cast<std::size_t>(value); }
};

template <class T>
struct default_eq {
    bool operator()(T const& a, T const& b) const { return a == b; }
};

namespace hash_detail {

__extension__ using uint128 = unsigned __int128;

// A number of buckets, with the constant that replaces the division by it.
struct bucket_count {
    std::uint64_t m_prime;
    std::uint64_t m_magic; // 2^64 / m_prime, rounded up

    std::size_t index(std::uint32_t hash) const {
        return static_cast<std::size_t>((uint128{m_magic * hash} * m_prime) >> 64);
    }
};
constexpr unsigned num_bucket_counts = 28;
extern bucket_count const g_bucket_counts[num_bucket_counts];

inline std::uint32_t fold(std::size_t hash) { return static_cast<std::uint32_t>(hash ^ (hash >> 32)); }

} // namespace hash_detail

// What maps and sets have in common. Entry is what is stored, KeyOf{}(entry) its key.
template <class Entry, class Key, class KeyOf, class Hash, class Eq>
class hash_table {
    struct node {
        node* m_next;         // in the bucket; of a dead node, in the list of free places
        std::uint32_t m_hash; // folded hash of the key
        bool m_alive;
        union {
            Entry m_entry; // constructed while alive
        };
    };

public:
    hash_table() = default;
    hash_table(hash_table const& other) { copy_from(other); }
    hash_table(hash_table&& other) noexcept { swap(other); }
    hash_table& operator=(hash_table const& other) {
        if (this != &other) {
            reset();
            copy_from(other);
        }
        return *this;
    }
    hash_table& operator=(hash_table&& other) noexcept {
        if (this != &other) {
            finalize();
            swap(other);
        }
        return *this;
    }
    ~hash_table() { finalize(); }

    [[nodiscard]] unsigned size() const { return m_size; }
    [[nodiscard]] bool empty() const { return m_size == 0; }
    [[nodiscard]] std::size_t num_buckets() const { return m_buckets ? bucket_count().m_prime : 0; }
    [[nodiscard]] bool contains(Key const& key) const { return find_node(key) != nullptr; }

    // False when the key was not there. References to other entries stay valid.
    bool erase(Key const& key) {
        if (m_size == 0) return false;
        std::uint32_t hash = hash_detail::fold(m_hash(key));
        for (node** link = &m_buckets[bucket_count().index(hash)]; *link; link = &(*link)->m_next) {
            node* n = *link;
            if (n->m_hash != hash || !m_eq(KeyOf{}(n->m_entry), key)) continue;
            *link = n->m_next;
            m_size--;
            n->m_alive = false;
            n->m_next = m_free;
            m_free = n;
            n->m_entry.~Entry(); // last: key may be a part of the entry
            return true;
        }
        return false;
    }

    // Drops all entries and keeps the memory.
    void reset() {
        bool few = std::size_t{m_size} * 8 < num_buckets();
        for_each_node([&](node* n) {
            if (few) m_buckets[bucket_count().index(n->m_hash)] = nullptr;
            n->m_entry.~Entry();
        });
        if (!few && m_buckets) std::memset(static_cast<void*>(m_buckets), 0, num_buckets() * sizeof(node*));
        m_size = m_page = m_used = 0;
        m_free = nullptr;
    }
    void clear() { reset(); }
    // Drops all entries and the memory.
    void finalize() {
        reset();
        for (node* page : m_pages) heap_allocator::release(page);
        m_pages.finalize();
        heap_allocator::release(m_buckets);
        m_buckets = nullptr;
        m_count_index = 0;
    }
    void swap(hash_table& other) noexcept {
        std::swap(m_buckets, other.m_buckets);
        m_pages.swap(other.m_pages);
        std::swap(m_free, other.m_free);
        std::swap(m_page, other.m_page);
        std::swap(m_used, other.m_used);
        std::swap(m_size, other.m_size);
        std::swap(m_count_index, other.m_count_index);
        std::swap(m_hash, other.m_hash);
        std::swap(m_eq, other.m_eq);
    }

    // Forward iteration. Entries may be erased meanwhile; whether one that is inserted meanwhile is met is
    // open.
    template <class Value>
    class basic_iterator {
    public:
        basic_iterator(hash_table const* table, unsigned page, unsigned slot)
            : m_table(table)
            , m_page(page)
            , m_slot(slot) {
            skip();
        }
        Value& operator*() const { return m_table->m_pages[m_page][m_slot].m_entry; }
        Value* operator->() const { return &**this; }
        basic_iterator& operator++() {
            m_slot++;
            skip();
            return *this;
        }
        bool operator==(basic_iterator const& other) const {
            return m_page == other.m_page && m_slot == other.m_slot;
        }

    private:
        void skip() {
            while (!at_end()) {
                if (m_slot == page_size(m_page)) {
                    m_page++;
                    m_slot = 0;
                } else if (m_table->m_pages[m_page][m_slot].m_alive) {
                    return;
                } else {
                    m_slot++;
                }
            }
        }
        bool at_end() const { return m_page == m_table->m_page && m_slot == m_table->m_used; }

        hash_table const* m_table;
        unsigned m_page;
        unsigned m_slot;
    };
    using const_iterator = basic_iterator<Entry const>;
    const_iterator begin() const { return const_iterator(this, 0, 0); }
    const_iterator end() const { return const_iterator(this, m_page, m_used); }

    void check_invariant() const {
        unsigned alive = 0;
        const_cast<hash_table*>(this)->for_each_node([&]([[maybe_unused]] node* n) {
            alive++;
            VEXOR_ASSERT(n->m_hash == hash_detail::fold(m_hash(KeyOf{}(n->m_entry))));
            VEXOR_ASSERT(find_node(KeyOf{}(n->m_entry)) == n);
        });
        VEXOR_ASSERT(alive == m_size);
        VEXOR_ASSERT(m_size <= num_buckets());
    }

protected:
    node* find_node(Key const& key) const {
        if (m_size == 0) return nullptr;
        std::uint32_t hash = hash_detail::fold(m_hash(key));
        for (node* n = m_buckets[bucket_count().index(hash)]; n; n = n->m_next) {
            if (n->m_hash == hash && m_eq(KeyOf{}(n->m_entry), key)) return n;
        }
        return nullptr;
    }

    // The key must be absent. make(place) constructs the entry; when it throws, nothing has changed.
    template <class Make>
    Entry& insert_new(Key const& key, Make&& make) {
        VEXOR_ASSERT(!find_node(key));
        std::uint32_t hash = hash_detail::fold(m_hash(key));
        make_room();
        node* n = m_free ? m_free : &m_pages[m_page][m_used];
        make(static_cast<void*>(std::addressof(n->m_entry)));
        if (m_free)
            m_free = n->m_next;
        else
            m_used++;
        node*& bucket = m_buckets[bucket_count().index(hash)];
        n->m_hash = hash;
        n->m_alive = true;
        n->m_next = bucket;
        bucket = n;
        m_size++;
        return n->m_entry;
    }

    using iterator_base = basic_iterator<Entry>;
    iterator_base mutable_begin() { return iterator_base(this, 0, 0); }
    iterator_base mutable_end() { return iterator_base(this, m_page, m_used); }

private:
    static unsigned page_size(unsigned page) { return 16u << page; }
    hash_detail::bucket_count const& bucket_count() const {
        return hash_detail::g_bucket_counts[m_count_index];
    }

    template <class F>
    void for_each_node(F&& f) {
        for (unsigned page = 0; page <= m_page && page < m_pages.size(); page++) {
            unsigned n = page == m_page ? m_used : page_size(page);
            for (unsigned i = 0; i < n; i++) {
                if (m_pages[page][i].m_alive) f(&m_pages[page][i]);
            }
        }
    }

    // A bucket and a place for one more entry.
    void make_room() {
        if (!m_buckets)
            m_buckets = new_buckets(bucket_count());
        else if (m_size >= num_buckets())
            grow_buckets();
        if (m_free) return;
        if (m_page < m_pages.size() && m_used == page_size(m_page)) {
            m_page++;
            m_used = 0;
        }
        if (m_page == m_pages.size()) {
            if (m_page > 24) memoryExhausted();
            m_pages.push_back(static_cast<node*>(xmalloc(sizeof(node) * std::size_t{page_size(m_page)})));
        }
    }
    static node** new_buckets(hash_detail::bucket_count const& count) {
        void* memory = xmalloc(count.m_prime * sizeof(node*));
        return static_cast<node**>(std::memset(memory, 0, count.m_prime * sizeof(node*)));
    }
    void grow_buckets() {
        heap_allocator::release(m_buckets);
        m_count_index++;
        m_buckets = new_buckets(bucket_count());
        for_each_node([&](node* n) {
            node*& bucket = m_buckets[bucket_count().index(n->m_hash)];
            n->m_next = bucket;
            bucket = n;
        });
    }
    void copy_from(hash_table const& other) {
        m_hash = other.m_hash;
        m_eq = other.m_eq;
        for (Entry const& entry : other)
            insert_new(KeyOf{}(entry), [&](void* place) { new (place) Entry(entry); });
    }

    node** m_buckets = nullptr; // heads of the chains; null until the first insertion
    svector<node*> m_pages;     // page i has page_size(i) places
    node* m_free = nullptr;     // dead places before the fill position
    unsigned m_page = 0;        // page being filled
    unsigned m_used = 0;        // places of it that have been used since the last reset
    unsigned m_size = 0;        // entries
    unsigned m_count_index = 0; // which number of buckets m_buckets has
    [[no_unique_address]] Hash m_hash{};
    [[no_unique_address]] Eq m_eq{};
};

namespace hash_detail {

template <class Key, class Value>
struct map_entry {
    Key m_key;
    Value m_value;
};
template <class Key, class Value>
struct map_key {
    Key const& operator()(map_entry<Key, Value> const& entry) const { return entry.m_key; }
};
template <class Key>
struct set_key {
    Key const& operator()(Key const& key) const { return key; }
};

} // namespace hash_detail

// A map. Pointers and references to values stay valid until their entry is erased.
// for (auto& entry : map) gives entry.m_key and entry.m_value.
template <class Key, class Value, class Hash, class Eq = default_eq<Key>>
class hash_map
    : public hash_table<hash_detail::map_entry<Key, Value>, Key, hash_detail::map_key<Key, Value>, Hash, Eq> {
public:
    using entry = hash_detail::map_entry<Key, Value>;

    // Null when the key is absent.
    [[nodiscard]] Value* find(Key const& key) {
        auto* n = this->find_node(key);
        return n ? &n->m_entry.m_value : nullptr;
    }
    [[nodiscard]] Value const* find(Key const& key) const { return const_cast<hash_map*>(this)->find(key); }
    // False when the key is absent; the result is then untouched.
    bool find(Key const& key, Value& result) const {
        Value const* value = find(key);
        if (value) result = *value;
        return value != nullptr;
    }
    // Sets the value of the key, present or not.
    Value& insert(Key const& key, Value const& value) {
        if (Value* present = find(key)) return *present = value;
        return add(key, value);
    }
    // The value of the key; the argument becomes it if there is none.
    Value& insert_if_absent(Key const& key, Value const& value) {
        if (Value* present = find(key)) return *present;
        return add(key, value);
    }
    Value& operator[](Key const& key) {
        if (Value* present = find(key)) return *present;
        return this->insert_new(key, [&](void* place) { new (place) entry{key, Value()}; }).m_value;
    }
    using hash_table<entry, Key, hash_detail::map_key<Key, Value>, Hash, Eq>::begin;
    using hash_table<entry, Key, hash_detail::map_key<Key, Value>, Hash, Eq>::end;
    auto begin() { return this->mutable_begin(); }
    auto end() { return this->mutable_end(); }

private:
    Value& add(Key const& key, Value const& value) {
        return this->insert_new(key, [&](void* place) { new (place) entry{key, value}; }).m_value;
    }
};

template <class Key, class Hash, class Eq = default_eq<Key>>
class hash_set : public hash_table<Key, Key, hash_detail::set_key<Key>, Hash, Eq> {
public:
    // False when an equal key was there, which stays.
    bool insert(Key const& key) {
        if (this->find_node(key)) return false;
        this->insert_new(key, [&](void* place) { new (place) Key(key); });
        return true;
    }
    // The stored key that equals the argument, null when there is none.
    [[nodiscard]] Key const* find(Key const& key) const {
        auto* n = this->find_node(key);
        return n ? &n->m_entry : nullptr;
    }
};

} // namespace vexor
