// Small problems of clauses, pseudo-Boolean constraints and weights, solved by trying all assignments: the
// oracle of the optimization tests. Numbers are plain 64-bit integers; nothing of the library is used.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/random.h"

namespace vexor_test {

// Literal k or -k for variable k, from 1 on.
using plain_clause = std::vector<int>;

// The sum of the coefficients of the true literals is at least the bound.
struct plain_lpb {
    std::vector<std::int64_t> coeffs;
    std::vector<int> lits;
    std::int64_t bound = 0;
};

struct plain_soft {
    plain_clause clause;
    std::int64_t weight = 1;
};

struct weighted_problem {
    int num_vars = 0; // at most 20
    std::vector<plain_clause> clauses;
    std::vector<plain_lpb> lpbs;
    std::vector<plain_soft> softs;
};

// Assignments are bit sets: bit k - 1 is the value of variable k.
bool is_true(int lit, unsigned assignment);
bool satisfies(plain_clause const& clause, unsigned assignment);
bool satisfies(plain_lpb const& constraint, unsigned assignment);
// All clauses and constraints; soft clauses do not count.
bool satisfies(weighted_problem const& problem, unsigned assignment);
std::int64_t cost_of(weighted_problem const& problem, unsigned assignment);

bool is_satisfiable(weighted_problem const& problem);

struct optimum {
    bool exists = false;
    std::int64_t cost = 0;
};
optimum best_cost(weighted_problem const& problem);

plain_clause random_clause(random_stream& random, int num_vars, unsigned longest);
// Coefficients up to the given size, of both signs, with repeated literals and zeros now and then.
plain_lpb random_lpb(random_stream& random, int num_vars, std::int64_t size);

// For messages.
std::string to_text(weighted_problem const& problem);

} // namespace vexor_test
