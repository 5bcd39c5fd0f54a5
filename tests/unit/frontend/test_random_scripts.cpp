// Random Boolean scripts through the command interpreter, against all valuations.
//
// The generator keeps its own record of what is asserted, retracted and scoped; each answer, model, core,
// evaluation and Max-SAT cost is checked against it by brute force.
#include "ast/node/ast_manager.h"
#include "base/debug.h"
#include "frontend/command_interpreter.h"
#include "internalize/default_ast_internalization_visitor.h"
#include "search/context.h"
#include "search/search_settings.h"
#include "support/bool_formula.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

namespace vexor_test {

namespace {

using namespace vexor;

struct soft_assertion {
    formula_ptr m_formula;
    int m_weight; // 0 for a retractable one
    unsigned m_scope;
};

class script_run {
public:
    explicit script_run(std::uint64_t seed)
        : m_random(seed)
        , m_context(&m_manager) {
        init_internalizer(m_context);
        set_parser_output_stream(&m_out);
        m_context.set_evidence(true);
        m_num_vars = 3 + m_random.below(5);
        for (unsigned i = 0; i < m_num_vars; ++i) {
            m_names.push_back("v" + std::to_string(i));
            execute("(define " + m_names.back() + "::bool)");
        }
    }
    ~script_run() { set_parser_output_stream(&std::cout); }

    void run() {
        unsigned const length = 5 + m_random.below(25);
        for (unsigned i = 0; i < length && !::testing::Test::HasFatalFailure(); ++i) step();
    }
    [[nodiscard]] std::string const& script() const { return m_script; }

private:
    std::string execute(std::string const& command) {
        m_script += command + "\n";
        m_out.str("");
        read_from_string(&m_context, command.c_str());
        if (g_debug_level > 2) m_context.check_invariant();
        return m_out.str();
    }

    formula_ptr formula() { return random_formula(m_random, m_num_vars, 1 + m_random.below(4), m_shared); }

    // The formula's text, sometimes through a definition or a let.
    std::string wrap(formula_ptr const& f) {
        std::string text = f->text(m_names);
        unsigned const way = m_random.below(6);
        if (way == 0) {
            std::string const name = "d" + std::to_string(m_num_definitions++);
            execute("(define " + name + "::bool " + text + ")");
            return name;
        }
        if (way == 1) return "(let ((t::bool " + text + ")) (or t (and t t)))";
        if (way == 2) return "((lambda (t::bool) (not (not t))) " + text + ")";
        return text;
    }

    [[nodiscard]] bool holds(unsigned valuation) const {
        for (auto const& [scope, f] : m_hard)
            if (!f->value(valuation)) return false;
        for (auto const& [scope, sum_constraint] : m_lpbs) {
            int sum = 0;
            for (auto const& [coefficient, index, positive] : sum_constraint.m_terms)
                if ((((valuation >> index) & 1) != 0) == positive) sum += coefficient;
            if (sum < sum_constraint.m_bound) return false;
        }
        return true;
    }
    [[nodiscard]] bool holds_with_soft(unsigned valuation, bool weighted_too) const {
        if (!holds(valuation)) return false;
        for (auto const& [id, soft] : m_soft)
            if (is_active(id) && (weighted_too || soft.m_weight == 0) && !soft.m_formula->value(valuation))
                return false;
        return true;
    }
    [[nodiscard]] bool is_active(int id) const {
        return std::none_of(m_retracted.begin(), m_retracted.end(),
                            [id](auto const& r) { return r.second == id; });
    }
    template <class P>
    [[nodiscard]] bool exists(P&& predicate) const {
        for (unsigned v = 0; v < 1u << m_num_vars; ++v)
            if (predicate(v)) return true;
        return false;
    }

    void step() {
        if (m_context.inconsistent()) {
            expect_dead();
            return;
        }
        switch (m_random.below(12)) {
        case 0:
        case 1:
        case 2:
            assert_hard();
            break;
        case 3:
            assert_soft(0);
            break;
        case 4:
            assert_soft(1 + static_cast<int>(m_random.below(5)));
            break;
        case 5:
            retract();
            break;
        case 6:
            push();
            break;
        case 7:
            pop();
            break;
        case 8:
            max_sat();
            break;
        case 9:
            assert_lpb();
            break;
        default:
            check();
            break;
        }
    }

    void assert_hard() {
        formula_ptr const f = formula();
        std::string const out = execute("(assert " + wrap(f) + ")");
        m_hard.emplace_back(m_scope, f);
        if (out == "unsat\n") {
            ASSERT_FALSE(exists([&](unsigned v) { return holds(v); }));
        } else {
            ASSERT_EQ(out, "");
        }
    }

    void assert_soft(int weight) {
        formula_ptr const f = formula();
        std::string const text = wrap(f);
        std::string const out =
            execute("(assert+ " + text + (weight > 0 ? " " + std::to_string(weight) : "") + ")");
        ASSERT_EQ(out.substr(0, 4), "id: ");
        m_soft[std::stoi(out.substr(4))] = {f, weight, m_scope};
    }

    void assert_lpb() {
        lpb l;
        std::string text = "(assert-lpb";
        int sum = 0;
        for (unsigned i = 1 + m_random.below(4); i > 0; --i) {
            int const coefficient = m_random.between(-3, 4);
            unsigned const index = m_random.below(m_num_vars);
            bool const positive = m_random.chance(60);
            l.m_terms.emplace_back(coefficient, index, positive);
            std::string const name = positive ? m_names[index] : "(not " + m_names[index] + ")";
            text += coefficient == 1 && m_random.chance(50)
                        ? " " + name
                        : " (" + std::to_string(coefficient) + " " + name + ")";
            sum += std::max(coefficient, 0);
        }
        l.m_bound = m_random.between(-2, sum + 1);
        std::string const out = execute(text + " " + std::to_string(l.m_bound) + ")");
        m_lpbs.emplace_back(m_scope, l);
        if (out == "unsat\n") {
            ASSERT_FALSE(exists([&](unsigned v) { return holds(v); }));
        } else {
            ASSERT_EQ(out, "");
        }
    }

    void retract() {
        if (m_soft.empty()) {
            ASSERT_EQ(execute("(retract 77777)"), "Error: there is no assertion with id 77777.\n");
            return;
        }
        auto it = m_soft.begin();
        std::advance(it, m_random.below(static_cast<unsigned>(m_soft.size())));
        ASSERT_EQ(execute("(retract " + std::to_string(it->first) + ")"), "");
        m_retracted.emplace_back(m_scope, it->first);
    }

    void push() {
        ASSERT_EQ(execute("(push)"), "");
        ++m_scope;
    }

    void pop() {
        std::string const out = execute("(pop)");
        if (m_scope == 0) {
            ASSERT_EQ(out, "Backtracking not possible here (no matching (push)).\n");
            return;
        }
        ASSERT_EQ(out, "");
        drop_scope();
    }

    void drop_scope() {
        auto newer = [this](auto const& entry) { return entry.first >= m_scope; };
        m_hard.erase(std::remove_if(m_hard.begin(), m_hard.end(), newer), m_hard.end());
        m_lpbs.erase(std::remove_if(m_lpbs.begin(), m_lpbs.end(), newer), m_lpbs.end());
        m_retracted.erase(std::remove_if(m_retracted.begin(), m_retracted.end(), newer), m_retracted.end());
        std::erase_if(m_soft, [this](auto const& entry) { return entry.second.m_scope >= m_scope; });
        --m_scope;
    }

    // A dead context says so, and comes back by pop or reset.
    void expect_dead() {
        ASSERT_FALSE(exists([&](unsigned v) { return holds(v); }));
        std::string const advice =
            m_scope > 0 ? "Use (pop) to restore the previous state.\n" : "Use (reset) to reset.\n";
        ASSERT_EQ(execute("(check)"), "Logical context is inconsistent. " + advice);
        if (m_random.chance(50)) {
            // A balanced pair changes nothing.
            execute("(push)");
            ASSERT_EQ(execute("(pop)"), "");
            ASSERT_EQ(execute("(status)"), "unsat\n");
        }
        if (m_scope > 0) {
            pop();
        } else {
            execute("(reset)");
            m_hard.clear();
            m_lpbs.clear();
            m_soft.clear();
            m_retracted.clear();
            for (std::string const& name : m_names) execute("(define " + name + "::bool)");
        }
    }

    void check() {
        bool const expected = exists([&](unsigned v) { return holds_with_soft(v, true); });
        std::string const out = execute("(check)");
        if (!expected) {
            check_core(out);
            return;
        }
        ASSERT_EQ(out.substr(0, 4), "sat\n");
        unsigned const valuation = read_model();
        ASSERT_TRUE(exists_extension(valuation, true));
        check_evaluation();
    }

    // The core is made of active assertions and is unsatisfiable with what is hard.
    void check_core(std::string const& out) {
        ASSERT_EQ(out.substr(0, 6), "unsat\n");
        std::istringstream in(out.substr(6));
        std::string word;
        if (!(in >> word)) {
            ASSERT_FALSE(exists([&](unsigned v) { return holds(v); }));
            return;
        }
        in >> word >> word;
        std::vector<int> core;
        for (int id; in >> id;) core.push_back(id);
        for (int id : core) ASSERT_TRUE(m_soft.count(id) != 0 && is_active(id)) << id;
        ASSERT_FALSE(exists([&](unsigned v) {
            return holds(v) && std::all_of(core.begin(), core.end(),
                                           [&](int id) { return m_soft[id].m_formula->value(v); });
        }));
    }

    // Values of the variables in the model; -1 for none.
    std::vector<int> values() {
        std::vector<int> result;
        for (std::string const& name : m_names) {
            int const var = m_context.get_bool_var_for(m_manager.find_const_decl(ustring(name.c_str())));
            result.push_back(var < 0 ? 0 : m_context.get_model().value(var));
        }
        return result;
    }
    unsigned read_model() {
        unsigned valuation = 0;
        std::vector<int> const v = values();
        for (unsigned i = 0; i < m_num_vars; ++i)
            if (v[i] > 0) valuation |= 1u << i;
        return valuation;
    }
    // Unassigned variables may take any value.
    bool exists_extension(unsigned valuation, bool weighted_too) {
        std::vector<int> const v = values();
        unsigned free_vars = 0;
        for (unsigned i = 0; i < m_num_vars; ++i)
            if (v[i] == 0) free_vars |= 1u << i;
        for (unsigned w = free_vars;; w = (w - 1) & free_vars) {
            if (!holds_with_soft(valuation | w, weighted_too)) return false;
            if (w == 0) return true;
        }
    }

    // What the model says of an active assertion, and of a random formula.
    void check_evaluation() {
        std::vector<int> const v = values();
        if (std::find(v.begin(), v.end(), 0) != v.end()) return;
        unsigned const valuation = read_model();
        formula_ptr const f = formula();
        std::string const out = execute("(eval-in-model " + f->text(m_names) + ")");
        std::string const expected = f->value(valuation) ? "true\n" : "false\n";
        ASSERT_GE(out.size(), expected.size());
        ASSERT_EQ(out.substr(out.size() - expected.size()), expected) << out;
    }

    void max_sat() {
        int best = -1;
        for (unsigned v = 0; v < 1u << m_num_vars; ++v) {
            if (!holds_with_soft(v, false)) continue;
            int const cost = cost_of(v);
            if (best < 0 || cost < best) best = cost;
        }
        std::string const out = execute("(max-sat)");
        if (best < 0) {
            ASSERT_EQ(out.substr(0, 6), "unsat\n");
            return;
        }
        ASSERT_EQ(out.substr(0, 4), "sat\n");
        ASSERT_EQ(m_context.get_model().cost(), numeral(best)) << out;
        ASSERT_TRUE(exists_extension(read_model(), false));
        ASSERT_EQ(cost_of(read_model()), best);
    }
    [[nodiscard]] int cost_of(unsigned valuation) const {
        int cost = 0;
        for (auto const& [id, soft] : m_soft)
            if (is_active(id) && soft.m_weight > 0 && !soft.m_formula->value(valuation))
                cost += soft.m_weight;
        return cost;
    }

    struct lpb {
        std::vector<std::tuple<int, unsigned, bool>> m_terms;
        int m_bound = 0;
    };

    random_stream m_random;
    ast_manager m_manager;
    context m_context;
    std::ostringstream m_out;
    std::string m_script;
    unsigned m_num_vars;
    unsigned m_num_definitions = 0;
    unsigned m_scope = 0;
    std::vector<std::string> m_names;
    std::vector<formula_ptr> m_shared;
    std::vector<std::pair<unsigned, formula_ptr>> m_hard; // with the scope of each
    std::vector<std::pair<unsigned, lpb>> m_lpbs;
    std::map<int, soft_assertion> m_soft;
    std::vector<std::pair<unsigned, int>> m_retracted; // scope of the retraction, id
};

void run_scripts(std::uint64_t seed, unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed + i));
        script_run run(seed + i);
        run.run();
        if (::testing::Test::HasFatalFailure()) {
            ADD_FAILURE() << run.script();
            return;
        }
    }
}

TEST(random_scripts, agree_with_brute_force) { run_scripts(first_seed(1), rounds(10000)); }

TEST(random_scripts, agree_on_rare_paths) {
    unsigned const restart = g_restart_limit;
    unsigned const deletion = g_clause_deletion_frequency;
    g_restart_limit = 2;
    g_clause_deletion_frequency = 20;
    g_simplify_always = true;
    g_debug_level = 3;
    run_scripts(first_seed(500000), rounds(1500));
    g_debug_level = 1;
    g_simplify_always = false;
    g_clause_deletion_frequency = deletion;
    g_restart_limit = restart;
}

} // namespace

} // namespace vexor_test
