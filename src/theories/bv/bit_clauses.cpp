// From gates to clauses.
//
// Idea:    gates get a literal from the inputs upward. A conjunction takes in its arguments that are conjunctions
//          and have no other reader, and an exclusive or takes in one such argument: these get no literal.
// Keeps:   the clauses of a literal make it equal to its gate, both ways.
// Cost:    linear in the gates reached.
// Differs: choice gates have two clauses more than needed, by which equal branches reach the result while the
//          condition is open.
#include "theories/bv/bit_graph.h"

#include "base/debug.h"

#include <algorithm>

namespace vexor {

// An argument that only this gate of the same kind reads.
bool bit_graph::is_inner(bit b, gate kind) const {
    return is_gate(b, kind) && m_nodes[b.node()].m_fanout == 1 && m_literals[b.node()] == null_literal;
}

void bit_graph::collect_conjuncts(unsigned node) {
    m_inner.reset();
    m_inner.push_back(bit::of_node(node));
    while (!m_inner.empty()) {
        unsigned const next = m_inner.back().node();
        m_inner.pop_back();
        for (unsigned i = 2; i-- > 0;) {
            bit const b = arg(next, i);
            if (!b.sign() && is_inner(b, gate::and_gate))
                m_inner.push_back(b);
            else
                m_leaves.push_back(b);
        }
    }
}

bits const& bit_graph::conjuncts(unsigned node) {
    m_leaves.reset();
    collect_conjuncts(node);
    m_conjuncts = m_leaves;
    return m_conjuncts;
}

// What the clauses of the node speak about.
void bit_graph::collect_leaves(unsigned node) {
    m_leaves.reset();
    if (kind(node) == gate::and_gate) return collect_conjuncts(node);
    for (unsigned i = 0; i < num_args(node); ++i) m_leaves.push_back(arg(node, i));
    if (kind(node) != gate::xor_gate) return;
    for (unsigned i = 0; i < 2; ++i) {
        bit const b = m_leaves[i];
        if (!is_inner(b, gate::xor_gate)) continue;
        m_leaves[i] = arg(b.node(), 0);
        m_leaves.push_back(arg(b.node(), 1));
        return;
    }
}

// Otherwise the nodes that need one first are on top of the list of what is to be done.
bool bit_graph::leaves_have_literals() {
    bool result = true;
    for (bit b : m_leaves) {
        if (m_literals[b.node()] != null_literal) continue;
        m_todo.push_back(b.node());
        result = false;
    }
    return result;
}

literal bit_graph::literal_of(bit b) {
    if (m_literals[b.node()] == null_literal) write_cone(b.node());
    return find_literal(b);
}

void bit_graph::write_cone(unsigned root) {
    VEXOR_ASSERT(m_todo.empty());
    m_todo.push_back(root);
    while (!m_todo.empty()) {
        unsigned const node = m_todo.back();
        if (m_literals[node] == null_literal) {
            collect_leaves(node);
            if (!leaves_have_literals()) continue;
            write_clauses(node, m_sink.new_literal());
        }
        m_todo.pop_back();
    }
}

// A gate without literal takes l for it, unless l stands for another node.
void bit_graph::equate(bit b, literal l) {
    unsigned const node = b.node(), var = static_cast<unsigned>(l.var());
    bool const is_free = var != 0 && (var >= m_var_bits.size() || m_var_bits[var] == null_bit);
    if (m_literals[node] == null_literal && is_free) {
        collect_leaves(node);
        bits const leaves(m_leaves);
        for (bit leaf : leaves) literal_of(leaf);
        m_leaves = leaves;
        write_clauses(node, b.sign() ? ~l : l);
        return;
    }
    literal const own = literal_of(b);
    clause(~own, l);
    clause(own, ~l);
}

void bit_graph::clause(literal a, literal b, literal c, literal d) {
    m_lits.reset();
    for (literal l : {a, b, c, d})
        if (l != null_literal) m_lits.push_back(l);
    m_sink.add_clause(m_lits);
}

// g becomes the literal of the node, whose leaves were collected and have literals.
void bit_graph::write_clauses(unsigned node, literal g) {
    give_literal(node, g);
    switch (kind(node)) {
    case gate::and_gate:
        return write_and(g);
    case gate::xor_gate:
        return write_xor(g);
    case gate::ite_gate:
        return write_ite(g);
    case gate::maj_gate:
        return write_maj(g);
    default:
        m_new_input_literals.push_back(node);
    }
}

// g implies each leaf, and all leaves imply g. Merged leaves may repeat or contradict each other.
void bit_graph::write_and(literal g) {
    std::sort(m_leaves.begin(), m_leaves.end());
    unsigned size = 0;
    bool clash = false;
    for (bit b : m_leaves) {
        if (size > 0 && m_leaves[size - 1] == b) continue;
        clash = clash || (size > 0 && m_leaves[size - 1] == ~b);
        m_leaves[size++] = b;
    }
    m_leaves.shrink(size);
    if (clash) return clause(~g, null_literal);
    for (bit b : m_leaves) clause(~g, find_literal(b));
    svector<literal> lits;
    lits.push_back(g);
    for (bit b : m_leaves) lits.push_back(~find_literal(b));
    m_sink.add_clause(lits);
}

void bit_graph::write_xor(literal g) {
    literal const a = find_literal(m_leaves[0]), b = find_literal(m_leaves[1]);
    if (m_leaves.size() == 2) {
        clause(~g, a, b);
        clause(~g, ~a, ~b);
        clause(g, ~a, b);
        clause(g, a, ~b);
        return;
    }
    // An odd number of the four is complemented in each clause that excludes an odd sum.
    literal const c = find_literal(m_leaves[2]);
    for (unsigned i = 0; i < 8; ++i) {
        bool const x = (i & 1) != 0, y = (i & 2) != 0, z = (i & 4) != 0;
        bool const value = (x != y) != z;
        clause(value ? g : ~g, x ? ~a : a, y ? ~b : b, z ? ~c : c);
    }
}

void bit_graph::write_ite(literal g) {
    literal const c = find_literal(m_leaves[0]), t = find_literal(m_leaves[1]), e = find_literal(m_leaves[2]);
    clause(~g, ~c, t);
    clause(g, ~c, ~t);
    clause(~g, c, e);
    clause(g, c, ~e);
    clause(g, ~t, ~e);
    clause(~g, t, e);
}

void bit_graph::write_maj(literal g) {
    literal const a = find_literal(m_leaves[0]), b = find_literal(m_leaves[1]), c = find_literal(m_leaves[2]);
    clause(g, ~a, ~b);
    clause(g, ~a, ~c);
    clause(g, ~b, ~c);
    clause(~g, a, b);
    clause(~g, a, c);
    clause(~g, b, c);
}

} // namespace vexor
