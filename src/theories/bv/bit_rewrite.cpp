// What is known about a gate before it is made.
//
// Idea:    before a gate is made, its arguments are replaced by what they are worth given each other, looking
//          through one level of gates; what remains is looked up in the table.
// Keeps:   no rule makes more than the one gate asked for, so the graph is never larger than without rules.
// Ends:    each step replaces an argument by an older node or a constant.
// Cost:    constant for each gate asked for.
// Source:  Brummayer, Biere: Local two-level and-inverter graph minimization without blowup, MEMICS 2006, whose
//          rules on pairs of conjunctions these are.
// Differs: exclusive or, choice and majority are gates of their own, and the rules speak about them as well.
#include "theories/bv/bit_graph.h"

#include "base/debug.h"

#include <utility>

namespace vexor {

// The constant, if the value is fixed by now.
bit bit_graph::known(bit b) const {
    literal const l = m_literals[b.node()];
    if (l == null_literal || b.is_constant()) return b;
    int const value = m_sink.fixed_value(l);
    return value == 0 ? b : constant_bit((value > 0) != b.sign());
}

// The value of b where fact holds, as far as one level of gates tells; b itself if it tells nothing.
bit bit_graph::assume(bit b, bit fact) const {
    if (b.node() == fact.node()) return constant_bit(b == fact);
    gate_node const& n = m_nodes[b.node()];
    bit const x = n.m_args[0], y = n.m_args[1];
    switch (n.m_kind) {
    case gate::and_gate:
        if (x == fact) return y ^ b.sign();
        if (y == fact) return x ^ b.sign();
        if (x == ~fact || y == ~fact) return false_bit ^ b.sign();
        return b;
    case gate::xor_gate:
        if (x.node() == fact.node()) return y ^ (b.sign() != (x == fact));
        if (y.node() == fact.node()) return x ^ (b.sign() != (y == fact));
        return b;
    case gate::ite_gate:
        if (x == fact) return y ^ b.sign();
        if (x == ~fact) return n.m_args[2] ^ b.sign();
        return b;
    default:
        return b;
    }
}

// The same where both arguments of fact hold, if it is a conjunction.
bit bit_graph::assume_in_and(bit b, bit fact) const {
    if (fact.sign() || !is_gate(fact, gate::and_gate)) return b;
    bit const result = assume(b, arg(fact.node(), 0));
    return result == b ? assume(b, arg(fact.node(), 1)) : result;
}

bool bit_graph::is_unused(bit b) const {
    return m_nodes[b.node()].m_fanout == 0 && m_literals[b.node()] == null_literal;
}

// For a = not (p and q), b = not (r and s):
//   p = r, q = not s       a and b  to  not p
//   p = not r, q = not s   a and b  to  (xor p q)
//   p = not r              a and b  to  (ite p (not q) (not s)), if nobody else needs the two gates
bool bit_graph::detect_gate(bit a, bit b, bit& result) {
    bit const r = arg(b.node(), 0), s = arg(b.node(), 1);
    for (unsigned i = 0; i < 2; ++i) {
        bit const p = arg(a.node(), i), q = arg(a.node(), 1 - i);
        if ((p == r && q == ~s) || (p == s && q == ~r)) {
            result = ~p;
            return true;
        }
        if ((p == ~r && q == ~s) || (p == ~s && q == ~r)) {
            result = mk_xor(p, q);
            return true;
        }
    }
    if (!is_unused(a) || !is_unused(b)) return false;
    for (unsigned i = 0; i < 2; ++i) {
        bit const p = arg(a.node(), i), q = arg(a.node(), 1 - i);
        if (p == ~r || p == ~s) {
            result = mk_ite(p, ~q, ~(p == ~r ? s : r));
            return true;
        }
    }
    return false;
}

// True with the result, or false with simpler arguments.
bool bit_graph::step_and(bit& a, bit& b, bit& result) {
    a = known(a);
    b = known(b);
    if (a == b || b == true_bit) {
        result = a;
        return true;
    }
    if (a.is_constant() || b.is_constant()) {
        result = a == true_bit ? b : false_bit;
        return true;
    }
    if (b < a) std::swap(a, b);
    bit const old_a = a, old_b = b;
    a = assume(a, b);
    if (a == old_a) b = assume(b, a);
    if (a == old_a && b == old_b) a = assume_in_and(a, b);
    if (a == old_a && b == old_b) b = assume_in_and(b, a);
    if (!(a == old_a && b == old_b)) return false;
    if (a.sign() && b.sign() && is_gate(a, gate::and_gate) && is_gate(b, gate::and_gate) &&
        detect_gate(a, b, result))
        return true;
    result = find_or_make(gate::and_gate, a, b, null_bit);
    return true;
}

bit bit_graph::mk_and(bit a, bit b) {
    bit result;
    while (!step_and(a, b, result)) {
    }
    return result;
}

bit bit_graph::mk_and(bits const& args) {
    bit result = true_bit;
    for (bit b : args) result = mk_and(result, b);
    return result;
}

bit bit_graph::mk_or(bits const& args) {
    bit result = true_bit;
    for (bit b : args) result = mk_and(result, ~b);
    return ~result;
}

// (xor (xor p q) p)        to  q
// (xor (xor p q) (xor p s))  to  (xor q s)
// (xor (and p q) p)        to  (and p (not q))
bool bit_graph::step_xor(bit& a, bit& b, bit& result) {
    for (unsigned side = 0; side < 2; ++side, std::swap(a, b)) {
        gate const kind = m_nodes[a.node()].m_kind;
        if (kind != gate::xor_gate && kind != gate::and_gate) continue;
        for (unsigned i = 0; i < 2; ++i) {
            bit const p = arg(a.node(), i), q = arg(a.node(), 1 - i);
            if (p.node() == b.node()) {
                result = kind == gate::xor_gate ? q : mk_and(p, ~q) ^ (p != b);
                return true;
            }
            if (kind == gate::and_gate || !is_gate(b, gate::xor_gate)) continue;
            for (unsigned j = 0; j < 2; ++j) {
                if (p != arg(b.node(), j)) continue;
                b = arg(b.node(), 1 - j);
                a = q;
                result = null_bit;
                return true;
            }
        }
    }
    return false;
}

bit bit_graph::mk_xor(bit a, bit b) {
    bool sign = false;
    while (true) {
        a = known(a);
        b = known(b);
        sign = sign != (a.sign() != b.sign());
        a = bit::of_node(a.node());
        b = bit::of_node(b.node());
        if (a == b) return false_bit ^ sign;
        if (b < a) std::swap(a, b);
        if (a == true_bit) return ~b ^ sign;
        bit result;
        if (!step_xor(a, b, result)) return find_or_make(gate::xor_gate, a, b, null_bit) ^ sign;
        if (result != null_bit) return result ^ sign;
    }
}

// True with the result, or false with simpler arguments. The condition is positive and not constant.
bool bit_graph::step_ite(bit c, bit& t, bit& e, bit& result) {
    bit const old_t = t, old_e = e;
    t = assume(known(t), c);
    e = assume(known(e), ~c);
    if (t != old_t || e != old_e) return false;
    if (t == e)
        result = t;
    else if (t == ~e)
        result = mk_xor(c, e);
    else if (t.is_constant())
        result = t == true_bit ? mk_or(c, e) : mk_and(~c, e);
    else if (e.is_constant())
        result = e == true_bit ? mk_or(~c, t) : mk_and(c, t);
    else
        result = find_or_make(gate::ite_gate, c, t ^ t.sign(), e ^ t.sign()) ^ t.sign();
    return true;
}

bit bit_graph::mk_ite(bit c, bit t, bit e) {
    c = known(c);
    if (c.is_constant()) return known(c == true_bit ? t : e);
    if (c.sign()) {
        c = ~c;
        std::swap(t, e);
    }
    bit result;
    while (!step_ite(c, t, e, result)) {
    }
    return result;
}

bit bit_graph::mk_maj(bit a, bit b, bit c) {
    a = known(a);
    b = known(b);
    c = known(c);
    if (b < a) std::swap(a, b);
    if (c < b) std::swap(b, c);
    if (b < a) std::swap(a, b);
    // In this order constants come first, and equal or opposite bits are neighbours.
    if (a.is_constant()) return a == true_bit ? mk_or(b, c) : mk_and(b, c);
    if (a.node() == b.node()) return a == b ? a : c;
    if (b.node() == c.node()) return b == c ? b : a;
    bool const flip = a.sign() + b.sign() + c.sign() > 1;
    return find_or_make(gate::maj_gate, a ^ flip, b ^ flip, c ^ flip) ^ flip;
}

} // namespace vexor
