// A graph of gates over Boolean inputs, of which only what is asked for becomes clauses.
#pragma once

#include "theories/bv/bit.h"
#include "theories/bv/clause_sink.h"

namespace vexor {

// Nodes are inputs and gates of two or three arguments. Equal gates are one node, and what two levels of gates
// tell about the value is used before one is made; so circuits that are built twice, or over constants, cost
// nothing.
//
// A node has no literal at first. literal_of gives it one, with the clauses that define it in both directions:
// gates stay right whatever is asserted later about them.
//
// Keeps:   arguments of a node are older than the node and no constants; see normal forms in bit_graph.cpp.
// Scopes:  push and pop follow the scopes in which variables live. pop drops the nodes made since push and the
//          literals given since to older nodes.
class bit_graph {
public:
    enum class gate : unsigned char { constant, input, and_gate, xor_gate, ite_gate, maj_gate };

    explicit bit_graph(clause_sink& sink);
    bit_graph(bit_graph const&) = delete; // nodes are known by their number
    bit_graph& operator=(bit_graph const&) = delete;

    // --- Inputs.

    // A new input, which has no literal until one is asked for.
    bit new_input();
    // The bit that is true when l is.
    bit bit_of(literal l);

    // --- Gates.

    bit mk_and(bit a, bit b);
    bit mk_or(bit a, bit b) { return ~mk_and(~a, ~b); }
    bit mk_and(bits const& args);
    bit mk_or(bits const& args);
    bit mk_xor(bit a, bit b);
    bit mk_iff(bit a, bit b) { return ~mk_xor(a, b); }
    bit mk_ite(bit c, bit t, bit e);
    // At least two of three.
    bit mk_maj(bit a, bit b, bit c);
    bit mk_xor(bit a, bit b, bit c) { return mk_xor(mk_xor(a, b), c); }

    // --- Literals.

    // Makes the clauses of b and of what it depends on, unless they are there. Test inconsistent() of the
    // search afterwards.
    literal literal_of(bit b);
    // null_literal if there is none yet.
    [[nodiscard]] literal find_literal(bit b) const;
    // b and l are equal from now on. Test inconsistent() of the search afterwards.
    void equate(bit b, literal l);
    // Inputs that got a literal by literal_of since the list was emptied.
    [[nodiscard]] svector<unsigned>& new_input_literals() { return m_new_input_literals; }
    [[nodiscard]] bool has_new_input_literals() const { return !m_new_input_literals.empty(); }

    // --- Scopes.

    void push();
    void pop();
    // Drops everything.
    void reset();

    // --- Structure.

    [[nodiscard]] unsigned num_nodes() const { return m_nodes.size(); }
    [[nodiscard]] gate kind(unsigned node) const { return m_nodes[node].m_kind; }
    [[nodiscard]] unsigned num_args(unsigned node) const;
    [[nodiscard]] bit arg(unsigned node, unsigned i) const { return m_nodes[node].m_args[i]; }
    // The bits of which an and-gate is the conjunction: through its arguments that have no other reader.
    bits const& conjuncts(unsigned node);
    // The value of a gate; value_of tells those of its arguments.
    template <typename F>
    [[nodiscard]] bool gate_value(unsigned node, F&& value_of) const {
        bool const x = value_of(arg(node, 0)), y = value_of(arg(node, 1));
        if (kind(node) == gate::and_gate) return x && y;
        if (kind(node) == gate::xor_gate) return x != y;
        bool const z = value_of(arg(node, 2));
        return kind(node) == gate::ite_gate ? (x ? y : z) : x + y + z > 1;
    }
    void check_invariant() const;

private:
    struct gate_node {
        bit m_args[3]; // null_bit behind the last
        gate m_kind = gate::constant;
        unsigned char m_fanout = 0; // gates and clauses that read it; 2 for more
    };
    struct scope {
        unsigned m_num_nodes;
        unsigned m_num_literals;
    };

    // bit_rewrite.cpp
    [[nodiscard]] bit known(bit b) const;
    [[nodiscard]] bool is_gate(bit b, gate kind) const { return m_nodes[b.node()].m_kind == kind; }
    [[nodiscard]] bit assume(bit b, bit fact) const;
    [[nodiscard]] bit assume_in_and(bit b, bit fact) const;
    [[nodiscard]] bool is_unused(bit b) const;
    bool detect_gate(bit a, bit b, bit& result);
    bool step_and(bit& a, bit& b, bit& result);
    bool step_xor(bit& a, bit& b, bit& result);
    bool step_ite(bit c, bit& t, bit& e, bit& result);

    // bit_graph.cpp
    bit find_or_make(gate kind, bit a, bit b, bit c);
    [[nodiscard]] unsigned hash(gate_node const& n) const;
    [[nodiscard]] bool equal(gate_node const& a, gate_node const& b) const;
    void insert_into_table(unsigned node);
    void erase_from_table(unsigned node);
    void grow_table();
    void pop_node();

    // bit_clauses.cpp
    [[nodiscard]] bool is_inner(bit b, gate kind) const;
    void collect_leaves(unsigned node);
    void collect_conjuncts(unsigned node);
    bool leaves_have_literals();
    void write_cone(unsigned node);
    void write_clauses(unsigned node, literal g);
    void give_literal(unsigned node, literal l);
    void write_and(literal g);
    void write_xor(literal g);
    void write_ite(literal g);
    void write_maj(literal g);
    void clause(literal a, literal b) { clause(a, b, null_literal, null_literal); }
    void clause(literal a, literal b, literal c) { clause(a, b, c, null_literal); }
    void clause(literal a, literal b, literal c, literal d);

    clause_sink& m_sink;
    svector<gate_node> m_nodes;  // node 0 is the constant true
    svector<literal> m_literals; // by node; null_literal if there is none
    svector<bit> m_var_bits;     // by variable: the node of which it is the literal, null_bit for none
    svector<unsigned> m_table;   // open addressing, 0 for free; a power of two
    unsigned m_table_size = 0;   // members
    svector<scope> m_scopes;     // see push
    svector<unsigned> m_new_input_literals; // see new_input_literals
    svector<unsigned> m_with_literal;       // nodes in the order in which they got their literals

    // Scratch of literal_of.
    svector<unsigned> m_todo;
    bits m_leaves;
    bits m_inner;
    bits m_conjuncts; // the result of conjuncts
    svector<literal> m_lits;
};

} // namespace vexor
