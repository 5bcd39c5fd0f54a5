#include "support/bool_formula.h"

namespace vexor_test {

bool bool_formula::value(unsigned valuation) const {
    auto arg = [&](unsigned i) { return m_args[i]->value(valuation); };
    switch (m_kind) {
    case var:
        return ((valuation >> m_index) & 1) != 0;
    case constant:
        return m_index != 0;
    case not_f:
        return !arg(0);
    case and_f:
        for (auto const& a : m_args)
            if (!a->value(valuation)) return false;
        return true;
    case or_f:
        for (auto const& a : m_args)
            if (a->value(valuation)) return true;
        return false;
    case implies_f:
        return !arg(0) || arg(1);
    case iff_f:
        return arg(0) == arg(1);
    case diseq_f:
        return arg(0) != arg(1);
    case ite_f:
        return arg(0) ? arg(1) : arg(2);
    }
    return false;
}

namespace {

char const* native_name(bool_formula::kind kind) {
    switch (kind) {
    case bool_formula::not_f:
        return "not";
    case bool_formula::and_f:
        return "and";
    case bool_formula::or_f:
        return "or";
    case bool_formula::implies_f:
        return "=>";
    case bool_formula::iff_f:
        return "=";
    case bool_formula::diseq_f:
        return "/=";
    default:
        return "ite";
    }
}

} // namespace

void bool_formula::print(std::string& out, std::vector<std::string> const& names) const {
    if (m_kind == var) {
        out += names[m_index];
    } else if (m_kind == constant) {
        out += m_index != 0 ? "true" : "false";
    } else {
        out += "(";
        out += native_name(m_kind);
        for (auto const& a : m_args) {
            out += " ";
            a->print(out, names);
        }
        out += ")";
    }
}

std::string bool_formula::text(std::vector<std::string> const& names) const {
    std::string out;
    print(out, names);
    return out;
}

// The two languages differ in one name.
std::string bool_formula::smt2(std::vector<std::string> const& names) const {
    std::string out = text(names);
    for (std::size_t at = out.find("(/="); at != std::string::npos; at = out.find("(/=", at + 1))
        out.replace(at, 3, "(distinct");
    return out;
}

formula_ptr mk_var(unsigned index) {
    auto f = std::make_shared<bool_formula>();
    f->m_kind = bool_formula::var;
    f->m_index = index;
    return f;
}

formula_ptr mk_not(formula_ptr f) {
    auto result = std::make_shared<bool_formula>();
    result->m_kind = bool_formula::not_f;
    result->m_args.push_back(std::move(f));
    return result;
}

formula_ptr random_formula(random_stream& random, unsigned num_vars, unsigned depth,
                           std::vector<formula_ptr>& shared) {
    if (!shared.empty() && random.chance(15))
        return shared[random.below(static_cast<unsigned>(shared.size()))];
    if (depth == 0 || random.chance(12)) {
        if (random.chance(94)) return mk_var(random.below(num_vars));
        auto f = std::make_shared<bool_formula>();
        f->m_index = random.below(2);
        return f;
    }
    auto f = std::make_shared<bool_formula>();
    f->m_kind = static_cast<bool_formula::kind>(bool_formula::not_f + static_cast<int>(random.below(7)));
    unsigned num_args = 2;
    if (f->m_kind == bool_formula::not_f) num_args = 1;
    if (f->m_kind == bool_formula::ite_f) num_args = 3;
    if (f->m_kind == bool_formula::and_f || f->m_kind == bool_formula::or_f) num_args = 2 + random.below(3);
    for (unsigned i = 0; i < num_args; ++i)
        f->m_args.push_back(random_formula(random, num_vars, depth - 1, shared));
    formula_ptr const result = f;
    if (random.chance(30)) shared.push_back(result);
    return result;
}

} // namespace vexor_test
