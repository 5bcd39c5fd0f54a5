#include "support/check_model.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vexor_test {

namespace {

[[noreturn]] void fail(unsigned line, std::string const& what) {
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
}

int to_int(std::string const& word, unsigned line) {
    char* end = nullptr;
    long value = std::strtol(word.c_str(), &end, 10);
    if (word.empty() || *end != '\0' || value > 0x7fffffff || value < -0x7fffffffl) {
        fail(line, "not a number: " + word);
    }
    return static_cast<int>(value);
}

std::string slurp(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot open " + path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

int value_of(std::vector<int> const& assignment, int lit) {
    int value = assignment[static_cast<std::size_t>(std::abs(lit))];
    return lit < 0 ? -value : value;
}

// 1 if some literal is true, -1 if all are false, else 0.
int clause_value(std::vector<int> const& assignment, std::vector<int> const& clause) {
    int result = -1;
    for (int lit : clause) {
        int value = value_of(assignment, lit);
        if (value > 0) return 1;
        if (value == 0) result = 0;
    }
    return result;
}

bool search_model(plain_cnf const& formula, std::vector<int>& assignment, int var) {
    bool open = false;
    for (auto const& clause : formula.clauses) {
        int value = clause_value(assignment, clause);
        if (value < 0) return false;
        if (value == 0) open = true;
    }
    if (!open || var > formula.num_vars) return true;
    for (int value : {-1, 1}) {
        assignment[static_cast<std::size_t>(var)] = value;
        if (search_model(formula, assignment, var + 1)) return true;
    }
    assignment[static_cast<std::size_t>(var)] = 0;
    return false;
}

} // namespace

plain_cnf read_plain_cnf(std::string const& text) {
    plain_cnf result;
    std::istringstream in(text);
    std::string line;
    std::vector<int> clause;
    bool header = false;
    unsigned number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::istringstream words(line);
        std::string word;
        if (!(words >> word)) continue;
        if (word[0] == 'c' && clause.empty()) {
            result.comments.push_back(line.substr(line.find('c') + 1));
            continue;
        }
        if (word == "p" && clause.empty()) {
            std::string kind, vars;
            if (header || !(words >> kind >> vars) || kind[0] != 'c') fail(number, "bad header");
            header = true;
            result.num_vars = to_int(vars, number);
            continue;
        }
        do {
            int lit = to_int(word, number);
            if (std::abs(lit) > result.num_vars) fail(number, "literal out of range: " + word);
            if (lit != 0) {
                clause.push_back(lit);
            } else {
                result.clauses.push_back(clause);
                clause.clear();
            }
        } while (words >> word);
    }
    if (!clause.empty()) fail(number, "clause without end");
    return result;
}

plain_cnf read_plain_cnf_file(std::string const& path) { return read_plain_cnf(slurp(path)); }

solver_output parse_solver_output(std::string const& text) {
    solver_output result;
    std::istringstream in(text);
    std::string line;
    unsigned number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (line.empty() || line[0] == 'c') continue;
        if (line.rfind("s ", 0) == 0) {
            result.status = line.substr(2);
            ++result.status_lines;
            continue;
        }
        if (line.rfind("v ", 0) != 0) fail(number, "neither comment, status nor values: " + line);
        if (line.size() > 78) fail(number, "more than 78 columns");
        result.has_values = true;
        std::istringstream words(line.substr(2));
        std::string word;
        while (words >> word) {
            if (result.values_ended) fail(number, "value behind the final 0");
            int lit = to_int(word, number);
            if (lit == 0) {
                result.values_ended = true;
            } else {
                result.values.push_back(lit);
            }
        }
    }
    return result;
}

std::string check_model(plain_cnf const& formula, std::vector<int> const& values) {
    std::vector<int> assignment(static_cast<std::size_t>(formula.num_vars) + 1, 0);
    for (int lit : values) {
        if (std::abs(lit) > formula.num_vars) return "unknown variable " + std::to_string(std::abs(lit));
        int& slot = assignment[static_cast<std::size_t>(std::abs(lit))];
        if (slot != 0) return "variable " + std::to_string(std::abs(lit)) + " has two values";
        slot = lit > 0 ? 1 : -1;
    }
    for (auto const& clause : formula.clauses) {
        if (clause_value(assignment, clause) > 0) continue;
        std::string text = "clause without a true literal:";
        for (int lit : clause) text += " " + std::to_string(lit);
        return text;
    }
    return "";
}

int brute_force(plain_cnf const& formula, std::vector<int>* values) {
    std::vector<int> assignment(static_cast<std::size_t>(formula.num_vars) + 1, 0);
    if (!search_model(formula, assignment, 1)) return -1;
    if (values) {
        values->clear();
        for (int var = 1; var <= formula.num_vars; ++var) {
            values->push_back(assignment[static_cast<std::size_t>(var)] > 0 ? var : -var);
        }
    }
    return 1;
}

} // namespace vexor_test
