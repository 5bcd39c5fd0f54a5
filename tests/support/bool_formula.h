// Random Boolean formulas with their own text and evaluation, independent of the library.
#pragma once

#include "support/random.h"

#include <memory>
#include <string>
#include <vector>

namespace vexor_test {

// A formula over the variables v0, v1, ... as a tree or a DAG.
struct bool_formula {
    enum kind { var, constant, not_f, and_f, or_f, implies_f, iff_f, diseq_f, ite_f };

    kind m_kind = constant;
    unsigned m_index = 0; // of a variable; value of a constant
    std::vector<std::shared_ptr<bool_formula const>> m_args;

    // Bit i of valuation is the value of variable i.
    [[nodiscard]] bool value(unsigned valuation) const;
    // In the native language; names[i] is that of variable i.
    void print(std::string& out, std::vector<std::string> const& names) const;
    [[nodiscard]] std::string text(std::vector<std::string> const& names) const;
    // In SMT-LIB 2.
    [[nodiscard]] std::string smt2(std::vector<std::string> const& names) const;
};

using formula_ptr = std::shared_ptr<bool_formula const>;

formula_ptr mk_var(unsigned index);
formula_ptr mk_not(formula_ptr f);

// Subformulas are sometimes taken from shared, which grows.
formula_ptr random_formula(random_stream& random, unsigned num_vars, unsigned depth,
                           std::vector<formula_ptr>& shared);

} // namespace vexor_test
