#include "model_check.h"

#include <algorithm>

#include "frontend/cnf_parser.h"
#include "search/model.h"

namespace vexor_tool {

namespace {

class check_sink : public vexor::cnf_sink {
public:
    explicit check_sink(vexor::model const& m)
        : m_model(m) {}

    [[nodiscard]] bool satisfied() const { return m_satisfied; }
    [[nodiscard]] vexor::numeral const& cost() const { return m_cost; }

    [[nodiscard]] int num_vars() const override { return m_num_vars; }
    void create_vars(int count) override { m_num_vars += count; }
    void add_hard_clause(vexor::svector<vexor::literal> const& literals) override {
        m_satisfied = m_satisfied && holds(literals);
    }
    // May be violated; takes a variable of its own, as in the search.
    void add_soft_clause(vexor::svector<vexor::literal>& literals, long weight) override {
        ++m_num_vars;
        if (!holds(literals)) m_cost += weight;
    }

private:
    [[nodiscard]] bool holds(vexor::svector<vexor::literal> const& literals) const {
        return std::any_of(literals.begin(), literals.end(), [this](vexor::literal l) {
            return m_model.value(l.var()) == (l.sign() ? -1 : 1);
        });
    }

    vexor::model const& m_model;
    int m_num_vars = vexor::first_bool_var; // as in a new context
    bool m_satisfied = true;                // no clause failed so far
    vexor::numeral m_cost;                  // weight of the violated clauses
};

} // namespace

bool satisfies_file(vexor::model const& m, std::istream& in, char const* file_name, bool max_sat) {
    check_sink sink(m);
    vexor::cnf_parser(sink, in, file_name, max_sat).read();
    return sink.satisfied() && (!max_sat || sink.cost() <= m.cost());
}

} // namespace vexor_tool
