// The record of one clause of three or more literals.
#pragma once

#include "base/debug.h"
#include "search/literal.h"

#include <cstdint>

namespace vexor {

// A clause is named by its word offset in the clause_store; offset 0 is no clause.
using clause_ref = std::uint32_t;
inline constexpr clause_ref null_clause = 0;

enum class clause_kind {
    problem = 0, // given by the user or a gate definition
    learned = 1, // found by conflict analysis; its first literal is the asserted one
    lemma = 2    // made by a theory or a constraint; kept like a learned clause
};

// Layout: header word, the literals (the first two are watched), and for learned clauses one activity word.
// Clauses live inside a clause_store and are only ever used by reference.
class clause {
public:
    clause(clause const&) = delete; // a copy would lose the literals behind the header
    clause& operator=(clause const&) = delete;

    [[nodiscard]] unsigned size() const { return m_header & size_mask; }
    [[nodiscard]] bool learned() const { return (m_header & learned_bit) != 0; }
    // Detached and waiting to be freed.
    [[nodiscard]] bool removed() const { return (m_header & removed_bit) != 0; }
    // Unit or false at a scope above the one where its watches were chosen: looked at again on backtracking.
    [[nodiscard]] bool out_of_order() const { return (m_header & out_of_order_bit) != 0; }

    void set_removed() { m_header |= removed_bit; }
    void set_out_of_order(bool value) {
        m_header = value ? m_header | out_of_order_bit : m_header & ~out_of_order_bit;
    }

    [[nodiscard]] literal* begin() { return reinterpret_cast<literal*>(this + 1); }
    [[nodiscard]] literal* end() { return begin() + size(); }
    [[nodiscard]] literal const* begin() const { return reinterpret_cast<literal const*>(this + 1); }
    [[nodiscard]] literal const* end() const { return begin() + size(); }
    literal& operator[](unsigned i) {
        VEXOR_ASSERT(i < size());
        return begin()[i];
    }
    literal operator[](unsigned i) const {
        VEXOR_ASSERT(i < size());
        return begin()[i];
    }

    // Uses of the clause in conflict analysis since the last decay; learned clauses only.
    [[nodiscard]] std::uint32_t activity() const {
        VEXOR_ASSERT(learned());
        return *reinterpret_cast<std::uint32_t const*>(end());
    }
    void set_activity(std::uint32_t value) {
        VEXOR_ASSERT(learned());
        *reinterpret_cast<std::uint32_t*>(end()) = value;
    }

    // Cuts the clause to its first n literals; the activity word moves along.
    void shrink(unsigned n) {
        VEXOR_ASSERT(n >= 2 && n <= size());
        std::uint32_t const saved = learned() ? activity() : 0;
        m_header = (m_header & ~size_mask) | n;
        if (learned()) set_activity(saved);
    }

    // Words of the record of a clause.
    [[nodiscard]] static unsigned num_words(unsigned size, bool learned) {
        return 1 + size + (learned ? 1 : 0);
    }
    [[nodiscard]] unsigned num_words() const { return num_words(size(), learned()); }

    static constexpr unsigned max_size = (1u << 29) - 1;

private:
    friend class clause_store;

    clause(unsigned size, bool learned)
        : m_header(size | (learned ? learned_bit : 0)) {}

    static constexpr std::uint32_t size_mask = (1u << 29) - 1;
    static constexpr std::uint32_t learned_bit = 1u << 29;
    static constexpr std::uint32_t removed_bit = 1u << 30;
    static constexpr std::uint32_t out_of_order_bit = 1u << 31;

    std::uint32_t m_header;
};

static_assert(sizeof(clause) == 4 && sizeof(literal) == 4);

} // namespace vexor
