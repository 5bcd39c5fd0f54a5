#include "model_check.h"

#include "frontend/cnf_parser.h"
#include "search/model.h"

namespace vexor_tool {

namespace {

class check_sink : public vexor::cnf_sink {
public:
    explicit check_sink(vexor::model const& m)
        : m_model(m) {}

    [[nodiscard]] bool satisfied() const { return m_satisfied; }

    [[nodiscard]] int num_vars() const override { return m_num_vars; }
    void create_vars(int count) override { m_num_vars += count; }
    void add_hard_clause(vexor::svector<vexor::literal> const& literals) override {
        for (vexor::literal l : literals) {
            if (m_model.value(l.var()) == (l.sign() ? -1 : 1)) return;
        }
        m_satisfied = false;
    }
    // May be violated; takes a variable of its own, as in the search.
    void add_soft_clause(vexor::svector<vexor::literal>&, long) override { ++m_num_vars; }

private:
    vexor::model const& m_model;
    int m_num_vars = vexor::first_bool_var; // as in a new context
    bool m_satisfied = true;                // no clause failed so far
};

} // namespace

bool satisfies_file(vexor::model const& m, std::istream& in, char const* file_name) {
    check_sink sink(m);
    vexor::cnf_parser(sink, in, file_name, false).read();
    return sink.satisfied();
}

} // namespace vexor_tool
