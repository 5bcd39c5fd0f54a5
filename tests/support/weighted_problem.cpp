#include "support/weighted_problem.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace vexor_test {

bool is_true(int lit, unsigned assignment) {
    bool const value = ((assignment >> (std::abs(lit) - 1)) & 1) != 0;
    return value == (lit > 0);
}

bool satisfies(plain_clause const& clause, unsigned assignment) {
    return std::any_of(clause.begin(), clause.end(), [&](int lit) { return is_true(lit, assignment); });
}

bool satisfies(plain_lpb const& constraint, unsigned assignment) {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < constraint.lits.size(); ++i)
        if (is_true(constraint.lits[i], assignment)) sum += constraint.coeffs[i];
    return sum >= constraint.bound;
}

bool satisfies(weighted_problem const& problem, unsigned assignment) {
    auto holds = [&](auto const& x) { return satisfies(x, assignment); };
    return std::all_of(problem.clauses.begin(), problem.clauses.end(), holds) &&
           std::all_of(problem.lpbs.begin(), problem.lpbs.end(), holds);
}

std::int64_t cost_of(weighted_problem const& problem, unsigned assignment) {
    std::int64_t cost = 0;
    for (plain_soft const& soft : problem.softs)
        if (!satisfies(soft.clause, assignment)) cost += soft.weight;
    return cost;
}

bool is_satisfiable(weighted_problem const& problem) {
    for (unsigned assignment = 0; assignment < (1u << problem.num_vars); ++assignment)
        if (satisfies(problem, assignment)) return true;
    return false;
}

optimum best_cost(weighted_problem const& problem) {
    optimum result;
    for (unsigned assignment = 0; assignment < (1u << problem.num_vars); ++assignment) {
        if (!satisfies(problem, assignment)) continue;
        std::int64_t const cost = cost_of(problem, assignment);
        if (!result.exists || cost < result.cost) result.cost = cost;
        result.exists = true;
    }
    return result;
}

plain_clause random_clause(random_stream& random, int num_vars, unsigned longest) {
    plain_clause clause;
    unsigned const length = random.chance(80) ? longest : 1 + random.below(longest);
    for (unsigned i = 0; i < length; ++i) {
        int const var = random.between(1, num_vars);
        clause.push_back(random.chance(50) ? var : -var);
    }
    return clause;
}

plain_lpb random_lpb(random_stream& random, int num_vars, std::int64_t size) {
    plain_lpb result;
    int const length = random.between(0, num_vars + 2);
    std::int64_t least = 0;
    std::int64_t most = 0;
    std::uint64_t const range = static_cast<std::uint64_t>(size);
    for (int i = 0; i < length; ++i) {
        std::int64_t coeff = static_cast<std::int64_t>(1 + random.next() % range);
        if (random.chance(25)) coeff = -coeff;
        if (random.chance(4)) coeff = 0;
        (coeff < 0 ? least : most) += coeff;
        int const var = random.between(1, num_vars);
        result.coeffs.push_back(coeff);
        result.lits.push_back(random.chance(50) ? var : -var);
    }
    // Mostly a bound that can be reached, and not always.
    std::uint64_t const span = static_cast<std::uint64_t>(most - least) + 3;
    result.bound = least - 1 + static_cast<std::int64_t>(random.next() % span);
    if (random.chance(80)) result.bound = least + (result.bound - least) / 2;
    return result;
}

std::string to_text(weighted_problem const& problem) {
    std::ostringstream out;
    out << problem.num_vars << " variables\n";
    for (plain_clause const& clause : problem.clauses) {
        for (int lit : clause) out << lit << " ";
        out << "0\n";
    }
    for (plain_lpb const& c : problem.lpbs) {
        for (std::size_t i = 0; i < c.lits.size(); ++i) out << c.coeffs[i] << " * " << c.lits[i] << " + ";
        out << "0 >= " << c.bound << "\n";
    }
    for (plain_soft const& soft : problem.softs) {
        out << "soft " << soft.weight << ":";
        for (int lit : soft.clause) out << " " << lit;
        out << "\n";
    }
    return out.str();
}

} // namespace vexor_test
