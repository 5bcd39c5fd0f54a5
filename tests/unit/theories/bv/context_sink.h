// Clauses of a graph of gates in a context, and in a count.
#pragma once

#include "search/context.h"
#include "theories/bv/clause_sink.h"

namespace vexor_test {

class context_sink final : public vexor::clause_sink {
public:
    explicit context_sink(vexor::context& ctx)
        : m_context(ctx) {}

    vexor::literal new_literal() override { return m_context.create_fresh_bool_var(); }
    void add_clause(vexor::svector<vexor::literal> const& lits) override {
        m_context.create_clause_core(lits, vexor::clause_kind::problem);
    }
    [[nodiscard]] int fixed_value(vexor::literal l) const override {
        return m_context.at_base_lvl() ? m_context.value(l) : 0;
    }

private:
    vexor::context& m_context;
};

class counting_sink final : public vexor::clause_sink {
public:
    vexor::literal new_literal() override {
        return vexor::literal(vexor::first_bool_var + static_cast<int>(m_num_vars++));
    }
    void add_clause(vexor::svector<vexor::literal> const& lits) override {
        ++m_num_clauses;
        m_num_literals += lits.size();
    }
    [[nodiscard]] int fixed_value(vexor::literal) const override { return 0; }

    unsigned m_num_vars = 0;
    unsigned m_num_clauses = 0;
    unsigned long m_num_literals = 0;
};

} // namespace vexor_test
