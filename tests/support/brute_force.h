// Decides small Boolean problems by trying all assignments: an oracle that shares nothing with the search.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace vexor_test {

// An assignment of up to 32 variables: bit i is the value of variable i.
using bits = std::uint32_t;

// Clauses by the bits of their positive and negative literals, and any further conditions.
class brute_force {
public:
    struct condition {
        bits m_pos = 0; // a clause: one of these is true or one of m_neg is false
        bits m_neg = 0;
        std::function<bool(bits)> m_other; // if set, the condition instead of the clause
    };

    void add_clause(bits pos, bits neg) { m_conditions.push_back({pos, neg, nullptr}); }
    void add_condition(std::function<bool(bits)> other) { m_conditions.push_back({0, 0, std::move(other)}); }
    [[nodiscard]] unsigned size() const { return static_cast<unsigned>(m_conditions.size()); }
    void shrink(unsigned n) { m_conditions.resize(n); }
    void clear() { m_conditions.clear(); }

    [[nodiscard]] bool holds(bits assignment) const {
        for (condition const& c : m_conditions) {
            bool const ok = c.m_other ? c.m_other(assignment)
                                      : (assignment & c.m_pos) != 0 || (~assignment & c.m_neg) != 0;
            if (!ok) return false;
        }
        return true;
    }
    // Whether an assignment of num_vars variables with the bits of fixed_true set and those of fixed_false
    // clear satisfies everything.
    [[nodiscard]] bool satisfiable(unsigned num_vars, bits fixed_true = 0, bits fixed_false = 0) const {
        if ((fixed_true & fixed_false) != 0) return false;
        for (bits a = 0; a < (bits(1) << num_vars); ++a)
            if ((a & fixed_true) == fixed_true && (a & fixed_false) == 0 && holds(a)) return true;
        return false;
    }
    [[nodiscard]] std::uint64_t num_models(unsigned num_vars) const {
        std::uint64_t result = 0;
        for (bits a = 0; a < (bits(1) << num_vars); ++a) result += holds(a) ? 1 : 0;
        return result;
    }

private:
    std::vector<condition> m_conditions;
};

} // namespace vexor_test
