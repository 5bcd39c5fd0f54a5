// Counts distinct nodes.
#pragma once

#include "ast/visit/for_each_visitor.h"

namespace vexor {

class num_nodes_visitor : public for_each_visitor {
public:
    // The number of distinct nodes below a, a included.
    unsigned operator()(ast* a);
    // Adds the nodes below a that were not counted since reset.
    void accumulate(ast* a);
    unsigned get_num_nodes() const { return m_num_nodes; }
    void reset();

    void accept(ast* a) override;

private:
    unsigned m_num_nodes = 0; // since reset
};

} // namespace vexor
