// Undo records and the words of the trail.
#pragma once

#include "base/debug.h"
#include "search/literal.h"

#include <cstdint>
#include <type_traits>

namespace vexor {

class context;

// Lives in the context's arena; its destructor never runs, so what it holds must be given back in undo.
class trail_object {
public:
    virtual void undo(context* ctx) = 0;

protected:
    ~trail_object() = default;
};

// Restores one value.
template <typename T>
class value_trail final : public trail_object {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    explicit value_trail(T& value)
        : m_address(&value)
        , m_old_value(value) {}
    void undo(context*) override { *m_address = m_old_value; }

private:
    T* m_address;
    T m_old_value;
};

// Takes a place on the trail and does nothing, so that two scopes never start at one position.
class dummy_trail_object final : public trail_object {
public:
    void undo(context*) override {}
};

// A trail position: an assigned literal or an undo record.
class trail_word {
public:
    explicit trail_word(literal l)
        : m_word(static_cast<std::uint64_t>(static_cast<std::uint32_t>(l.index())) << 2) {}
    explicit trail_word(trail_object* object)
        : m_word(reinterpret_cast<std::uintptr_t>(object) | 1) {}

    [[nodiscard]] bool is_literal() const { return (m_word & 1) == 0; }
    [[nodiscard]] literal get_literal() const {
        VEXOR_ASSERT(is_literal());
        return literal::from_index(static_cast<int>(m_word >> 2));
    }
    [[nodiscard]] trail_object* get_object() const {
        VEXOR_ASSERT(!is_literal());
        return reinterpret_cast<trail_object*>(static_cast<std::uintptr_t>(m_word & ~std::uint64_t(1)));
    }

private:
    std::uint64_t m_word;
};

// The one instance of dummy_trail_object, as a trail word.
extern trail_word const g_dummy_trail_object;

} // namespace vexor
