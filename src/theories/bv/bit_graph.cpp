// Nodes, their table, scopes.
//
// Normal forms, by which equal gates are found:
//   and   first argument below the second
//   xor   both arguments positive, the first below the second; the signs stand at the edge to the gate
//   ite   condition and second argument positive
//   maj   arguments in order, at most one of them complemented
#include "theories/bv/bit_graph.h"

#include "base/debug.h"

#include <utility>

namespace vexor {

bit_graph::bit_graph(clause_sink& sink)
    : m_sink(sink) {
    reset();
}

void bit_graph::reset() {
    m_nodes.reset();
    m_literals.reset();
    m_var_bits.reset();
    m_table.reset();
    m_table_size = 0;
    m_scopes.reset();
    m_new_input_literals.reset();
    m_with_literal.reset();
    m_nodes.push_back(gate_node{});
    m_literals.push_back(true_literal);
    m_var_bits.push_back(true_bit);
}

unsigned bit_graph::num_args(unsigned node) const {
    switch (kind(node)) {
    case gate::constant:
    case gate::input:
        return 0;
    case gate::and_gate:
    case gate::xor_gate:
        return 2;
    default:
        return 3;
    }
}

bit bit_graph::new_input() {
    gate_node n;
    n.m_kind = gate::input;
    m_nodes.push_back(n);
    m_literals.push_back(null_literal);
    return bit::of_node(m_nodes.size() - 1);
}

bit bit_graph::bit_of(literal l) {
    unsigned const var = static_cast<unsigned>(l.var());
    if (var >= m_var_bits.size() || m_var_bits[var] == null_bit)
        give_literal(new_input().node(), literal(l.var()));
    return m_var_bits[var] ^ l.sign();
}

void bit_graph::give_literal(unsigned node, literal l) {
    VEXOR_ASSERT(m_literals[node] == null_literal && l.var() != 0);
    m_literals[node] = l;
    m_with_literal.push_back(node);
    unsigned const var = static_cast<unsigned>(l.var());
    if (var >= m_var_bits.size()) m_var_bits.resize(var + 1, null_bit);
    VEXOR_ASSERT(m_var_bits[var] == null_bit);
    m_var_bits[var] = bit::of_node(node, l.sign());
}

literal bit_graph::find_literal(bit b) const {
    literal const l = m_literals[b.node()];
    return l == null_literal || !b.sign() ? l : ~l;
}

// --- Scopes.

void bit_graph::push() { m_scopes.push_back({m_nodes.size(), m_with_literal.size()}); }

void bit_graph::pop() {
    m_new_input_literals.reset();
    scope const s = m_scopes.back();
    m_scopes.pop_back();
    while (m_with_literal.size() > s.m_num_literals) {
        unsigned const node = m_with_literal.back();
        m_with_literal.pop_back();
        m_var_bits[static_cast<unsigned>(m_literals[node].var())] = null_bit;
        m_literals[node] = null_literal;
    }
    while (m_nodes.size() > s.m_num_nodes) pop_node();
}

// The counts of readers stay as they are: they only decide which form the clauses take.
void bit_graph::pop_node() {
    unsigned const node = m_nodes.size() - 1;
    if (num_args(node) > 0) erase_from_table(node);
    m_nodes.pop_back();
    m_literals.pop_back();
}

// --- The table of gates.

unsigned bit_graph::hash(gate_node const& n) const {
    unsigned h = static_cast<unsigned>(n.m_kind) * 0x9e3779b1u;
    for (bit b : n.m_args) {
        h = (h ^ b.index()) * 0x85ebca6bu;
        h ^= h >> 15;
    }
    return h;
}

bool bit_graph::equal(gate_node const& a, gate_node const& b) const {
    return a.m_kind == b.m_kind && a.m_args[0] == b.m_args[0] && a.m_args[1] == b.m_args[1] &&
           a.m_args[2] == b.m_args[2];
}

void bit_graph::grow_table() {
    unsigned const capacity = m_table.empty() ? 1024 : 2 * m_table.size();
    svector<unsigned> old;
    old.swap(m_table);
    m_table.resize(capacity, 0);
    for (unsigned node : old)
        if (node != 0) insert_into_table(node);
}

void bit_graph::insert_into_table(unsigned node) {
    unsigned const mask = m_table.size() - 1;
    unsigned i = hash(m_nodes[node]) & mask;
    while (m_table[i] != 0) i = (i + 1) & mask;
    m_table[i] = node;
}

// Later members of the run move up, so that no gap hides them.
void bit_graph::erase_from_table(unsigned node) {
    unsigned const mask = m_table.size() - 1;
    unsigned gap = hash(m_nodes[node]) & mask;
    while (m_table[gap] != node) gap = (gap + 1) & mask;
    for (unsigned i = (gap + 1) & mask; m_table[i] != 0; i = (i + 1) & mask) {
        unsigned const home = hash(m_nodes[m_table[i]]) & mask;
        if (((i - home) & mask) < ((i - gap) & mask)) continue;
        m_table[gap] = m_table[i];
        gap = i;
    }
    m_table[gap] = 0;
    --m_table_size;
}

bit bit_graph::find_or_make(gate kind, bit a, bit b, bit c) {
    if (3 * (m_table_size + 1) > 2 * m_table.size()) grow_table();
    gate_node n;
    n.m_kind = kind;
    n.m_args[0] = a;
    n.m_args[1] = b;
    n.m_args[2] = c;
    unsigned const mask = m_table.size() - 1;
    unsigned i = hash(n) & mask;
    for (; m_table[i] != 0; i = (i + 1) & mask)
        if (equal(m_nodes[m_table[i]], n)) return bit::of_node(m_table[i]);
    unsigned const node = m_nodes.size();
    m_nodes.push_back(n);
    m_literals.push_back(null_literal);
    m_table[i] = node;
    ++m_table_size;
    for (unsigned j = 0; j < num_args(node); ++j) {
        gate_node& of = m_nodes[n.m_args[j].node()];
        if (of.m_fanout < 2) ++of.m_fanout;
    }
    return bit::of_node(node);
}

void bit_graph::check_invariant() const {
    unsigned num_gates = 0;
    for (unsigned node = 0; node < m_nodes.size(); ++node) {
        gate_node const& n = m_nodes[node];
        for (unsigned i = 0; i < num_args(node); ++i)
            if (n.m_args[i].is_constant() || n.m_args[i].node() >= node) VEXOR_UNREACHABLE();
        if (n.m_kind == gate::and_gate && !(n.m_args[0] < n.m_args[1])) VEXOR_UNREACHABLE();
        if (n.m_kind == gate::xor_gate &&
            (n.m_args[0].sign() || n.m_args[1].sign() || !(n.m_args[0] < n.m_args[1])))
            VEXOR_UNREACHABLE();
        if (n.m_kind == gate::ite_gate && (n.m_args[0].sign() || n.m_args[1].sign())) VEXOR_UNREACHABLE();
        if (num_args(node) > 0) ++num_gates;
        literal const l = m_literals[node];
        if (l != null_literal &&
            !(m_var_bits[static_cast<unsigned>(l.var())] == bit::of_node(node, l.sign())))
            VEXOR_UNREACHABLE();
    }
    if (num_gates != m_table_size) VEXOR_UNREACHABLE();
    unsigned num_members = 0;
    for (unsigned node : m_table)
        if (node != 0) ++num_members;
    if (num_members != m_table_size) VEXOR_UNREACHABLE();
}

} // namespace vexor
