#include "ast/visit/num_nodes_visitor.h"

#include "base/deep_stack.h"

namespace vexor {

unsigned num_nodes_visitor::operator()(ast* a) {
    reset();
    accumulate(a);
    return m_num_nodes;
}

void num_nodes_visitor::accumulate(ast* a) {
    on_deep_stack([&] { accept(a); });
}

void num_nodes_visitor::reset() {
    for_each_visitor::reset();
    m_num_nodes = 0;
}

void num_nodes_visitor::accept(ast* a) {
    if (a == nullptr || !enter(a)) return;
    check_depth();
    ++m_num_nodes;
    a->accept(this);
}

} // namespace vexor
