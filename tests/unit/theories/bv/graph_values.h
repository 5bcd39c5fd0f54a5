// Values of gates under an assignment of the inputs, computed from what each gate means.
#pragma once

#include "theories/bv/bit_graph.h"

#include <cstdint>
#include <vector>

namespace vexor_test {

// 64 assignments at once: bit k of a word belongs to assignment k.
class graph_values {
public:
    explicit graph_values(vexor::bit_graph const& graph)
        : m_graph(graph) {}

    void set(vexor::bit input, std::uint64_t word) {
        if (m_words.size() <= input.node()) m_words.resize(input.node() + 1, 0);
        m_words[input.node()] = input.sign() ? ~word : word;
    }
    // Call again after inputs were set or gates made.
    void compute() {
        m_words.resize(m_graph.num_nodes(), 0);
        m_words[0] = ~std::uint64_t{0};
        for (unsigned node = 1; node < m_graph.num_nodes(); ++node)
            if (m_graph.num_args(node) > 0) m_words[node] = gate_value(node);
    }
    std::uint64_t operator[](vexor::bit b) const { return b.sign() ? ~m_words[b.node()] : m_words[b.node()]; }

private:
    std::uint64_t gate_value(unsigned node) const {
        using gate = vexor::bit_graph::gate;
        std::uint64_t const x = (*this)[m_graph.arg(node, 0)], y = (*this)[m_graph.arg(node, 1)];
        switch (m_graph.kind(node)) {
        case gate::and_gate:
            return x & y;
        case gate::xor_gate:
            return x ^ y;
        case gate::ite_gate:
            return (x & y) | (~x & (*this)[m_graph.arg(node, 2)]);
        default:
            return (x & y) | ((x | y) & (*this)[m_graph.arg(node, 2)]);
        }
    }

    vexor::bit_graph const& m_graph;
    std::vector<std::uint64_t> m_words; // by node
};

} // namespace vexor_test
