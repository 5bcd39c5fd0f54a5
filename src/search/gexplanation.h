// Why a literal holds: one tagged word.
#pragma once

#include "search/clause.h"
#include "search/literal.h"

#include <cstdint>

namespace vexor {

class explanation;

// The two low bits tell the kind, the rest is the content:
//   0  binary    the true literal that forced this one through a binary clause
//   1  decision  the literal itself: a decision, an assumption or an asserted unit, nothing to resolve on
//   2  clause    the clause whose first literal this is (or the false clause, as a conflict)
//   3  lazy      an explanation object, asked for its antecedents only when analysis needs them
class gexplanation {
public:
    enum kind : unsigned { binary = 0, decision = 1, clausal = 2, lazy = 3 };

    constexpr gexplanation()
        : m_word(lazy) {}

    [[nodiscard]] static gexplanation mk_binary(literal antecedent) {
        return gexplanation(shifted(antecedent.index()) | binary);
    }
    [[nodiscard]] static gexplanation mk_decision(literal self) {
        return gexplanation(shifted(self.index()) | decision);
    }
    [[nodiscard]] static gexplanation mk_clause(clause_ref ref) {
        return gexplanation((static_cast<std::uint64_t>(ref) << 2) | clausal);
    }
    [[nodiscard]] static gexplanation mk_lazy(explanation* e) {
        return gexplanation(reinterpret_cast<std::uintptr_t>(e) | lazy);
    }

    [[nodiscard]] kind tag() const { return static_cast<kind>(m_word & 3); }
    [[nodiscard]] bool is_null() const { return m_word == lazy; }
    [[nodiscard]] literal get_literal() const {
        VEXOR_ASSERT(tag() == binary || tag() == decision);
        return literal::from_index(static_cast<int>(m_word >> 2));
    }
    [[nodiscard]] clause_ref get_clause() const {
        VEXOR_ASSERT(tag() == clausal);
        return static_cast<clause_ref>(m_word >> 2);
    }
    [[nodiscard]] explanation* get_explanation() const {
        VEXOR_ASSERT(tag() == lazy);
        return reinterpret_cast<explanation*>(static_cast<std::uintptr_t>(m_word & ~std::uint64_t(3)));
    }

    friend bool operator==(gexplanation a, gexplanation b) { return a.m_word == b.m_word; }
    friend bool operator!=(gexplanation a, gexplanation b) { return a.m_word != b.m_word; }

private:
    constexpr explicit gexplanation(std::uint64_t word)
        : m_word(word) {}
    static std::uint64_t shifted(int index) {
        return static_cast<std::uint64_t>(static_cast<std::uint32_t>(index)) << 2;
    }

    std::uint64_t m_word;
};

inline constexpr gexplanation null_explanation{};

} // namespace vexor
