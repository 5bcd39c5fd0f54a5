#include "api_driver.h"

#include "log_replay.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace vexor_test {

namespace {

constexpr vexor_int64 max_cost = INT64_MAX;

template <class T>
std::string differ(char const* what, T const& expected, T const& found) {
    std::ostringstream out;
    out << what << ": expected " << expected << ", found " << found;
    return out.str();
}

std::string no_difference() { return {}; }

} // namespace

modelled_context::modelled_context() {
    table all;
    all.set();
    m_terms.push_back({vexor_mk_true(m_ctx), all});
    m_terms.push_back({vexor_mk_false(m_ctx), table()});
    m_log_start = log_size();
}

void modelled_context::note_log(bool is_own) {
    if (is_own) m_log += log_since(m_log_start);
    m_log_start = log_size();
}

void modelled_context::add_variable(std::string const& name, vexor_expr use) {
    unsigned bit = 0;
    while (std::any_of(m_vars.begin(), m_vars.end(), [&](variable const& v) { return v.m_bit == bit; }))
        ++bit;
    table values;
    for (unsigned v = 0; v < values.size(); ++v) values[v] = (v >> bit & 1) != 0;
    m_vars.push_back({name, bit});
    m_terms.push_back({use, values});
}

// --- Declarations and terms.

std::string modelled_context::declare(api_step const& step) {
    static char const* const names[] = {"a", "b", "c", "d", "v!1", "v!2", "and", "two words"};
    std::string const name = names[step.m_a % std::size(names)];
    vexor_var_decl const known = vexor_get_var_decl_from_name(m_ctx, name.c_str());
    if (name == "and") return known == nullptr ? "the operator is not known" : "";
    auto const found =
        std::find_if(m_vars.begin(), m_vars.end(), [&](variable const& v) { return v.m_name == name; });
    if ((found != m_vars.end()) != (known != nullptr)) return "known names differ: " + name;
    if (found != m_vars.end()) {
        try {
            vexor_mk_bool_var_decl(m_ctx, name.c_str());
            return "declared twice: " + name;
        } catch (std::exception const&) {
        }
        vexor_expr const use = m_ctx.var(name);
        return vexor_get_var_decl(use) == known ? "" : "another declaration: " + name;
    }
    if (m_vars.size() == max_vars) return "";
    switch (step.m_b % 3) {
    case 0:
        add_variable(name, m_ctx.var(name));
        break;
    case 1:
        add_variable(name, vexor_mk_bool_var_from_decl(m_ctx, vexor_mk_bool_var_decl(m_ctx, name.c_str())));
        break;
    default:
        add_variable(name, m_ctx.constant(name, vexor_mk_type(m_ctx, "bool")));
    }
    return "";
}

std::string modelled_context::declare_fresh() {
    if (m_vars.size() == max_vars) return "";
    std::string name;
    do name = "v!" + std::to_string(++m_num_fresh);
    while (std::any_of(m_vars.begin(), m_vars.end(), [&](variable const& v) { return v.m_name == name; }));
    vexor_expr const use = vexor_mk_fresh_bool_var(m_ctx);
    std::string const found = vexor_get_var_decl_name(vexor_get_var_decl(use));
    add_variable(name, use);
    return found == name ? "" : differ("fresh name", name, found);
}

std::string modelled_context::make_term(api_step const& step) {
    // Mostly recent ones, so that terms grow deep and shared.
    auto pick = [&](unsigned n) {
        auto const size = static_cast<unsigned>(m_terms.size());
        return n % 2 == 0 ? m_terms[(n / 2) % size] : m_terms[size - 1 - (n / 2) % std::min(size, 5u)];
    };
    term const a = pick(step.m_a), b = pick(step.m_b), c = pick(step.m_c);
    unsigned const num_args = 1 + step.m_c / 8 % 3;
    std::vector<vexor_expr> const args(std::initializer_list<vexor_expr>{a.m_expr, b.m_expr, c.m_expr});
    table const more = num_args > 2 ? c.m_table : num_args > 1 ? b.m_table : a.m_table;
    switch (step.m_op / 16 % 6) {
    case 0:
        m_terms.push_back({m_ctx.not_of(a.m_expr), ~a.m_table});
        break;
    case 1:
        m_terms.push_back({vexor_mk_or(m_ctx, args.data(), num_args),
                           num_args == 1 ? a.m_table : a.m_table | b.m_table | more});
        break;
    case 2:
        m_terms.push_back({vexor_mk_and(m_ctx, args.data(), num_args),
                           num_args == 1 ? a.m_table : a.m_table & b.m_table & more});
        break;
    case 3:
        m_terms.push_back({vexor_mk_eq(m_ctx, a.m_expr, b.m_expr), ~(a.m_table ^ b.m_table)});
        break;
    case 4:
        m_terms.push_back({vexor_mk_diseq(m_ctx, a.m_expr, b.m_expr), a.m_table ^ b.m_table});
        break;
    default:
        m_terms.push_back({vexor_mk_ite(m_ctx, a.m_expr, b.m_expr, c.m_expr),
                           (a.m_table & b.m_table) | (~a.m_table & c.m_table)});
    }
    return "";
}

// Each failure leaves everything as it is, the model included.
std::string modelled_context::fail(api_step const& step) {
    auto raises = [](auto const& call) {
        try {
            call();
        } catch (std::exception const&) {
            return no_difference();
        }
        return std::string("no exception");
    };
    switch (step.m_a % 4) {
    case 0:
        return raises([&] { vexor_mk_or(m_ctx, nullptr, 0); });
    case 1:
        return raises([&] { vexor_mk_bv_constant(m_ctx, 0, 1); });
    case 2:
        return raises([&] { vexor_assert_weighted(m_ctx, choose(step.m_b).m_expr, 0); });
    default:
        if (vexor_inconsistent(m_ctx) != 0) return ""; // nobody looks at what is asserted
        return raises([&] {
            vexor_expr const args[] = {
                choose(step.m_b).m_expr,
                vexor_mk_gt(m_ctx, vexor_mk_num(m_ctx, 1),
                            vexor_mk_app(m_ctx, choose(0).m_expr, &choose(step.m_c).m_expr, 1))};
            vexor_assert_retractable(m_ctx, vexor_mk_eq(m_ctx, args[0], args[1]));
        });
    }
}

// --- Assertions and scopes.

std::string modelled_context::assert_term(api_step const& step) {
    static vexor_int64 const weights[] = {
        1, 1, 2, 3, 5, 2147483647, 2147483648, 4294967297, max_cost - 1, max_cost};
    term const t = choose(step.m_a);
    bool const dead = vexor_inconsistent(m_ctx) != 0;
    assertion a{kind::plain, t.m_table, 0, 0};
    switch (step.m_b % 3) {
    case 0:
        vexor_assert(m_ctx, t.m_expr);
        break;
    case 1:
        a.m_kind = kind::retractable;
        a.m_id = vexor_assert_retractable(m_ctx, t.m_expr);
        break;
    default:
        a.m_kind = kind::weighted;
        a.m_weight = weights[step.m_c % std::size(weights)];
        a.m_id = vexor_assert_weighted(m_ctx, t.m_expr, a.m_weight);
    }
    if (a.m_kind != kind::plain) {
        if (a.m_id <= 0) return "no id";
        for (assertion const& other : m_assertions)
            if (other.m_id == a.m_id) return "an id given twice";
        m_ids.push_back(dead ? 0 : a.m_id);
    }
    m_assertions.push_back(a);
    m_has_model = false;
    return compare_inconsistent();
}

std::string modelled_context::retract(api_step const& step) {
    if (m_assertions.empty() || step.m_b % 8 == 0) {
        vexor_retract(m_ctx, static_cast<int>(step.m_a % 4)); // the id of no assertion
        return "";
    }
    std::size_t const i = step.m_a % m_assertions.size();
    if (m_assertions[i].m_id == 0) return "";
    vexor_retract(m_ctx, m_assertions[i].m_id);
    m_has_model = false;
    if (m_assertions[i].m_retracted) return "";
    m_assertions[i].m_retracted = true;
    m_retractions.push_back(i);
    return "";
}

std::string modelled_context::push() {
    if (m_scopes.size() == 6) return "";
    vexor_push(m_ctx);
    m_scopes.push_back({m_terms.size(), m_vars.size(), m_assertions.size(), m_retractions.size()});
    return "";
}

std::string modelled_context::pop() {
    if (m_scopes.empty()) return "";
    vexor_pop(m_ctx);
    scope const s = m_scopes.back();
    m_scopes.pop_back();
    m_terms.resize(s.m_num_terms);
    m_vars.resize(s.m_num_vars);
    for (std::size_t i = s.m_num_retractions; i < m_retractions.size(); ++i)
        m_assertions[m_retractions[i]].m_retracted = false;
    m_retractions.resize(s.m_num_retractions);
    m_assertions.erase(m_assertions.begin() + static_cast<std::ptrdiff_t>(s.m_num_assertions),
                       m_assertions.end());
    m_has_model = false;
    return compare_inconsistent();
}

std::string modelled_context::reset() {
    vexor_reset(m_ctx);
    m_scopes.clear();
    m_vars.clear();
    m_assertions.clear();
    m_retractions.clear();
    m_num_fresh = 0;
    m_has_model = false;
    m_terms.resize(2);
    m_terms[0].m_expr = vexor_mk_true(m_ctx);
    m_terms[1].m_expr = vexor_mk_false(m_ctx);
    return vexor_inconsistent(m_ctx) == 0 ? "" : "inconsistent after a reset";
}

std::string modelled_context::compare_inconsistent() {
    table plain;
    plain.set();
    for (assertion const& a : m_assertions)
        if (a.m_kind == kind::plain) plain &= a.m_table;
    return vexor_inconsistent(m_ctx) != 0 && plain.any() ? "inconsistent without a reason" : "";
}

// --- Questions.

modelled_context::table modelled_context::models(bool with_weighted) const {
    table result;
    result.set();
    for (assertion const& a : m_assertions)
        if (!a.m_retracted && (with_weighted || a.m_kind != kind::weighted)) result &= a.m_table;
    return result;
}

modelled_context::cost_type modelled_context::cost_of(unsigned valuation) const {
    cost_type result = 0;
    for (assertion const& a : m_assertions)
        if (a.m_kind == kind::weighted && !a.m_retracted && !a.m_table[valuation]) result += a.m_weight;
    return result;
}

modelled_context::cost_type modelled_context::least_cost(table const& valuations) const {
    cost_type result = -1;
    for (unsigned v = 0; v < valuations.size(); ++v)
        if (valuations[v] && (result < 0 || cost_of(v) < result)) result = cost_of(v);
    return result;
}

std::string modelled_context::check() {
    lbool const expected = models(true).any() ? 1 : -1;
    lbool const found = vexor_check(m_ctx);
    m_answers.push_back({false, found, 0});
    if (expected != found) return differ("check", expected, found);
    m_has_model = found == 1;
    if (m_has_model != (vexor_get_model(m_ctx) != nullptr))
        return "model without answer, or answer without model";
    if (found != 1) return compare_core();
    if (vexor_get_unsat_core(m_ctx, nullptr, 0) != 0) return "a core of a satisfiable context";
    table possible;
    std::string const difference = read_model(possible);
    if (!difference.empty()) return difference;
    return (possible & ~models(true)).any() ? "the model does not satisfy the assertions" : "";
}

std::string modelled_context::compare_core() {
    std::vector<assertion_id> const core = m_ctx.core();
    if (std::set<assertion_id>(core.begin(), core.end()).size() != core.size())
        return "an id twice in the core";
    table plain, together;
    plain.set();
    for (assertion const& a : m_assertions)
        if (a.m_kind == kind::plain) plain &= a.m_table;
    together = plain;
    for (assertion_id id : core) {
        auto const found = std::find_if(m_assertions.begin(), m_assertions.end(),
                                        [&](assertion const& a) { return a.m_id == id; });
        if (found == m_assertions.end() || found->m_retracted) return "the core has an id of nothing alive";
        together &= found->m_table;
    }
    return together.any() ? "the core is satisfiable" : "";
}

std::string modelled_context::read_model(table& possible) {
    vexor_model const m = vexor_get_model(m_ctx);
    possible.set();
    for (variable const& v : m_vars) {
        vexor_var_decl const d = vexor_get_var_decl_from_name(m_ctx, v.m_name.c_str());
        lbool const value = vexor_get_value(m, d);
        long number = 5;
        if (vexor_get_int_value(m, d, &number) != 0 || number != 5) return "a number for a Boolean";
        for (unsigned i = 0; i < possible.size(); ++i)
            if (value != 0 && ((i >> v.m_bit & 1) != 0) != (value == 1)) possible[i] = false;
    }
    // Retractable ones hold or were given up; those of a check all hold.
    for (assertion const& a : m_assertions) {
        if (a.m_id == 0) continue;
        bool const holds = vexor_get_assertion_value(m, a.m_id) != 0;
        if (a.m_retracted && holds) return "a retracted assertion in force";
        if (!a.m_retracted && a.m_kind == kind::retractable && !holds) return "an assertion not in force";
        if (holds && (possible & ~a.m_table).any()) return "an assertion in force that does not hold";
    }
    return "";
}

std::string modelled_context::compare_cost(bool is_best) {
    vexor_model const m = vexor_get_model(m_ctx);
    if (m == nullptr) return "no model";
    table possible;
    std::string const difference = read_model(possible);
    if (!difference.empty()) return difference;
    if ((possible & ~models(false)).any()) return "the model does not satisfy the assertions without weight";
    cost_type paid = 0;
    for (assertion const& a : m_assertions)
        if (a.m_kind == kind::weighted && !a.m_retracted && vexor_get_assertion_value(m, a.m_id) == 0)
            paid += a.m_weight;
    auto clamped = [](cost_type n) { return n > max_cost ? max_cost : static_cast<vexor_int64>(n); };
    vexor_int64 const found = vexor_get_cost(m);
    if (found != clamped(paid)) return differ("cost of the model", clamped(paid), found);
    cost_type const least = least_cost(models(false));
    if (is_best && paid != least) return differ("least cost", clamped(least), clamped(paid));
    double const as_double = vexor_get_cost_as_double(m), exact = static_cast<double>(paid);
    if (as_double > exact * (1 + 1e-15) || as_double < exact * (1 - 1e-15))
        return differ("cost", exact, as_double);
    return paid < least ? "cheaper than possible" : "";
}

std::string modelled_context::max_sat(api_step const& step) {
    lbool const expected = models(false).any() ? 1 : -1;
    bool const with_guess = step.m_a % 3 == 0;
    static vexor_int64 const guesses[] = {0, 1, 3, 100, 4294967300, max_cost, -1, INT64_MIN};
    lbool const found = with_guess ? vexor_max_sat_cost_leq(m_ctx, guesses[step.m_b % std::size(guesses)])
                                   : vexor_max_sat(m_ctx);
    m_has_model = found == 1;
    if (!with_guess)
        m_answers.push_back({true, found, found == 1 ? vexor_get_cost(vexor_get_model(m_ctx)) : 0});
    if (expected != found) return differ("max-sat", expected, found);
    return found == 1 ? compare_cost(true) : "";
}

std::string modelled_context::find_weighted_model(api_step const& step) {
    lbool const expected = models(false).any() ? 1 : -1;
    lbool const found = vexor_find_weighted_model(m_ctx, static_cast<int>(step.m_a % 2));
    m_has_model = found == 1;
    if (expected != found) return differ("find_weighted_model", expected, found);
    return found == 1 ? compare_cost(false) : "";
}

std::string modelled_context::ask_model(api_step const& step) {
    vexor_model const m = vexor_get_model(m_ctx);
    if ((m != nullptr) != m_has_model) return m_has_model ? "the model is gone" : "a model from nowhere";
    if (m == nullptr) return "";
    table possible;
    std::string const difference = read_model(possible);
    if (!difference.empty()) return difference;
    term const t = choose(step.m_a);
    lbool const found = vexor_evaluate_in_model(m, t.m_expr);
    if (found == 1 && (possible & ~t.m_table).any()) return "a formula is true in the model, and is not";
    if (found == -1 && (possible & t.m_table).any()) return "a formula is false in the model, and is not";
    // With a value for each variable that there is, every formula has one.
    bool const is_total = possible.count() << m_vars.size() == possible.size();
    return found == 0 && is_total ? "a formula has no value in the model" : "";
}

std::string modelled_context::walk() {
    vexor_var_decl_iterator const it = vexor_create_var_decl_iterator(m_ctx);
    std::set<std::string> names;
    std::size_t num = 0;
    for (; vexor_iterator_has_next(it) != 0; ++num)
        names.insert(vexor_get_var_decl_name(vexor_iterator_next(it)));
    vexor_iterator_reset(it);
    bool const begins_again = (vexor_iterator_has_next(it) != 0) == (num > 0);
    vexor_del_iterator(it);
    if (!begins_again) return "the walk does not begin again";
    if (names.size() != num) return "a variable twice in the walk";
    for (variable const& v : m_vars) names.erase(v.m_name);
    return names.empty() ? "" : "a variable of no declaration: " + *names.begin();
}

std::string modelled_context::play(api_step const& step) {
    switch (step.m_op % 16) {
    case 0:
        return declare(step);
    case 1:
        return step.m_a % 2 == 0 ? declare_fresh() : declare(step);
    case 2:
    case 3:
    case 4:
        return make_term(step);
    case 5:
    case 6:
    case 7:
        return assert_term(step);
    case 8:
        return retract(step);
    case 9:
        return push();
    case 10:
        return pop();
    case 11:
        return check();
    case 12:
        return max_sat(step);
    case 13:
        return step.m_a % 4 == 0 ? walk() : find_weighted_model(step);
    case 14:
        return ask_model(step);
    default:
        if (step.m_b % 16 == 0) return reset();
        if (step.m_b % 16 == 1) vexor_interrupt(m_ctx); // without effect
        return step.m_b % 2 == 0 ? fail(step) : check();
    }
}

std::string modelled_context::compare_replay() const {
    std::size_t question = 0, with_id = 0;
    for (replayed_line const& line : replay(m_log)) {
        if (line.m_output.find("![") != std::string::npos)
            return "replay of " + line.m_command + ": " + line.m_output;
        if (line.m_command.compare(0, 8, "(assert+") == 0) {
            if (with_id >= m_ids.size()) return "more assertions in the replay";
            assertion_id const id = m_ids[with_id++];
            if (id != line.m_id) return differ("id in the replay", id, line.m_id);
        }
        if (!line.is_question()) continue;
        if (question >= m_answers.size()) return "more questions in the replay";
        answer const& a = m_answers[question++];
        if (a.m_answer != line.m_answer) return differ("answer in the replay", a.m_answer, line.m_answer);
        if (a.m_is_max_sat && a.m_answer == 1 && a.m_cost != max_cost &&
            line.m_cost != std::to_string(a.m_cost))
            return differ("cost in the replay", std::to_string(a.m_cost), line.m_cost);
    }
    if (question != m_answers.size()) return "fewer questions in the replay";
    return with_id == m_ids.size() ? "" : "fewer assertions in the replay";
}

} // namespace vexor_test
