// Gates: rules, sharing, clauses, scopes.
#include "theories/bv/bit_graph.h"

#include "support/random.h"
#include "unit/theories/bv/context_sink.h"
#include "unit/theories/bv/graph_values.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace vexor;
using namespace vexor_test;

// All assignments of up to six inputs, one to each bit of the words.
constexpr std::uint64_t columns[] = {0xaaaaaaaaaaaaaaaa, 0xcccccccccccccccc, 0xf0f0f0f0f0f0f0f0,
                                     0xff00ff00ff00ff00, 0xffff0000ffff0000, 0xffffffff00000000};

struct random_gates {
    explicit random_gates(clause_sink& sink)
        : m_graph(sink) {}

    void add_inputs(unsigned n) {
        for (unsigned i = 0; i < n; ++i) add(m_graph.new_input(), columns[i]);
    }
    void add(bit b, std::uint64_t word) {
        m_bits.push_back(b);
        m_words.push_back(word);
    }
    // One more gate over the bits so far, mostly the late ones.
    void add_random(random_stream& random) {
        unsigned pick[3];
        bit b[3];
        std::uint64_t w[3];
        for (unsigned i = 0; i < 3; ++i) {
            unsigned const n = static_cast<unsigned>(m_bits.size());
            pick[i] = random.chance(50) ? random.below(n) : n - 1 - random.below(n < 6 ? n : 6);
            bool const sign = random.chance(50);
            b[i] = m_bits[pick[i]] ^ sign;
            w[i] = sign ? ~m_words[pick[i]] : m_words[pick[i]];
        }
        switch (random.below(6)) {
        case 0:
        case 1:
            return add(m_graph.mk_and(b[0], b[1]), w[0] & w[1]);
        case 2:
            return add(m_graph.mk_or(b[0], b[1]), w[0] | w[1]);
        case 3:
            return add(m_graph.mk_xor(b[0], b[1]), w[0] ^ w[1]);
        case 4:
            return add(m_graph.mk_ite(b[0], b[1], b[2]), (w[0] & w[1]) | (~w[0] & w[2]));
        default:
            return add(m_graph.mk_maj(b[0], b[1], b[2]), (w[0] & w[1]) | ((w[0] | w[1]) & w[2]));
        }
    }

    bit_graph m_graph;
    std::vector<bit> m_bits;
    std::vector<std::uint64_t> m_words; // the truth tables that the bits should have
};

void expect_tables(random_gates& g, unsigned num_inputs) {
    graph_values values(g.m_graph);
    for (unsigned i = 0; i < num_inputs; ++i) values.set(g.m_bits[i], columns[i]);
    values.compute();
    for (unsigned i = 0; i < g.m_bits.size(); ++i) ASSERT_EQ(values[g.m_bits[i]], g.m_words[i]) << i;
}

TEST(BitGraph, RandomGatesKeepTheirMeaning) {
    std::uint64_t const first = first_seed(1);
    for (std::uint64_t seed = first; seed < first + rounds(400); ++seed) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        counting_sink sink;
        random_gates g(sink);
        unsigned const num_inputs = 2 + random.below(5);
        g.add_inputs(num_inputs);
        g.add(true_bit, ~std::uint64_t{0});
        for (unsigned i = 0; i < 60; ++i) g.add_random(random);
        expect_tables(g, num_inputs);
        g.m_graph.check_invariant();
    }
}

// With the inputs given, propagation finds the value of each literal.
TEST(BitGraph, ClausesDefineTheGates) {
    std::uint64_t const first = first_seed(1);
    for (std::uint64_t seed = first; seed < first + rounds(60); ++seed) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        context ctx;
        context_sink sink(ctx);
        random_gates g(sink);
        unsigned const num_inputs = 3 + random.below(3);
        g.add_inputs(num_inputs);
        for (unsigned i = 0; i < 40; ++i) g.add_random(random);
        std::vector<unsigned> asked;
        for (unsigned i = 0; i < 6; ++i)
            asked.push_back(random.below(static_cast<unsigned>(g.m_bits.size())));
        std::vector<literal> inputs;
        for (unsigned i = 0; i < num_inputs; ++i) inputs.push_back(g.m_graph.literal_of(g.m_bits[i]));
        for (unsigned i : asked) g.m_graph.literal_of(g.m_bits[i]);
        for (unsigned k = 0; k < (1u << num_inputs); ++k) {
            ctx.push();
            for (unsigned i = 0; i < num_inputs; ++i)
                ctx.assert_literal((k >> i) & 1 ? inputs[i] : ~inputs[i]);
            ASSERT_TRUE(ctx.propagate_constraints());
            for (unsigned i : asked) {
                int const expected = (g.m_words[i] >> k) & 1 ? 1 : -1;
                ASSERT_EQ(ctx.value(g.m_graph.find_literal(g.m_bits[i])), expected) << i << " at " << k;
            }
            ctx.pop(1);
        }
        ctx.check_invariant();
    }
}

// A literal is not more than its gate: both values are possible where the truth table has both.
TEST(BitGraph, ClausesRestrictNothing) {
    std::uint64_t const first = first_seed(1);
    for (std::uint64_t seed = first; seed < first + rounds(60); ++seed) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        context ctx;
        context_sink sink(ctx);
        random_gates g(sink);
        g.add_inputs(6);
        for (unsigned i = 0; i < 60; ++i) g.add_random(random);
        for (unsigned round = 0; round < 4; ++round) {
            unsigned const i = random.below(static_cast<unsigned>(g.m_bits.size()));
            for (bool value : {false, true}) {
                ctx.push();
                g.m_graph.push();
                literal const l = g.m_graph.literal_of(g.m_bits[i]);
                ctx.assert_literal(value ? l : ~l);
                bool const possible = g.m_words[i] != (value ? 0 : ~std::uint64_t{0});
                ASSERT_EQ(ctx.check(), possible ? 1 : -1) << i;
                g.m_graph.pop();
                ctx.pop(1);
                g.m_graph.check_invariant();
            }
        }
    }
}

struct BitGraphTest : ::testing::Test {
    counting_sink m_sink;
    bit_graph g{m_sink};
    bit a = g.new_input(), b = g.new_input(), c = g.new_input();
};

TEST_F(BitGraphTest, RulesOnConjunctions) {
    bit const ab = g.mk_and(a, b);
    EXPECT_EQ(g.mk_and(b, a), ab);
    EXPECT_EQ(g.mk_and(a, true_bit), a);
    EXPECT_EQ(g.mk_and(a, false_bit), false_bit);
    EXPECT_EQ(g.mk_and(a, a), a);
    EXPECT_EQ(g.mk_and(a, ~a), false_bit);
    EXPECT_EQ(g.mk_and(ab, a), ab);
    EXPECT_EQ(g.mk_and(ab, ~a), false_bit);
    EXPECT_EQ(g.mk_and(~ab, ~a), ~a);
    EXPECT_EQ(g.mk_and(~ab, a), g.mk_and(a, ~b));
    EXPECT_EQ(g.mk_and(ab, g.mk_and(~a, c)), false_bit);
    EXPECT_EQ(g.mk_and(~ab, g.mk_and(~a, c)), g.mk_and(~a, c));
    EXPECT_EQ(g.mk_and(~ab, ~g.mk_and(a, ~b)), ~a);
    EXPECT_EQ(g.mk_and(~ab, g.mk_and(a, c)), g.mk_and(~b, g.mk_and(a, c)));
    EXPECT_EQ(g.mk_and(ab, g.mk_xor(a, c)), g.mk_and(ab, ~c));
    EXPECT_EQ(g.mk_and(a, g.mk_ite(a, b, c)), ab);
    EXPECT_EQ(g.mk_and(~a, g.mk_ite(a, b, c)), g.mk_and(~a, c));
}

TEST_F(BitGraphTest, GatesAreFoundInConjunctions) {
    EXPECT_EQ(g.mk_and(~g.mk_and(a, b), ~g.mk_and(~a, ~b)), g.mk_xor(a, b));
    EXPECT_EQ(g.mk_or(g.mk_and(a, ~b), g.mk_and(~a, b)), g.mk_xor(a, b));
    EXPECT_EQ(g.mk_or(g.mk_and(a, b), g.mk_and(~a, c)), g.mk_ite(a, b, c));
}

TEST_F(BitGraphTest, RulesOnExclusiveOr) {
    bit const ab = g.mk_xor(a, b);
    EXPECT_EQ(g.mk_xor(b, a), ab);
    EXPECT_EQ(g.mk_xor(~a, b), ~ab);
    EXPECT_EQ(g.mk_xor(~b, ~a), ab);
    EXPECT_EQ(g.mk_xor(a, false_bit), a);
    EXPECT_EQ(g.mk_xor(true_bit, a), ~a);
    EXPECT_EQ(g.mk_xor(a, a), false_bit);
    EXPECT_EQ(g.mk_xor(a, ~a), true_bit);
    EXPECT_EQ(g.mk_xor(ab, b), a);
    EXPECT_EQ(g.mk_xor(ab, g.mk_xor(~a, c)), ~g.mk_xor(b, c));
    EXPECT_EQ(g.mk_xor(g.mk_and(a, b), a), g.mk_and(a, ~b));
    EXPECT_EQ(g.mk_xor(g.mk_and(a, b), ~a), ~g.mk_and(a, ~b));
    EXPECT_EQ(g.mk_iff(a, b), ~ab);
}

TEST_F(BitGraphTest, RulesOnChoice) {
    bit const abc = g.mk_ite(a, b, c);
    EXPECT_EQ(g.mk_ite(~a, c, b), abc);
    EXPECT_EQ(g.mk_ite(a, ~b, ~c), ~abc);
    EXPECT_EQ(g.mk_ite(true_bit, b, c), b);
    EXPECT_EQ(g.mk_ite(false_bit, b, c), c);
    EXPECT_EQ(g.mk_ite(a, b, b), b);
    EXPECT_EQ(g.mk_ite(a, b, ~b), ~g.mk_xor(a, b));
    EXPECT_EQ(g.mk_ite(a, a, b), g.mk_or(a, b));
    EXPECT_EQ(g.mk_ite(a, ~a, b), g.mk_and(~a, b));
    EXPECT_EQ(g.mk_ite(a, b, a), g.mk_and(a, b));
    EXPECT_EQ(g.mk_ite(a, b, ~a), g.mk_or(~a, b));
    EXPECT_EQ(g.mk_ite(a, true_bit, b), g.mk_or(a, b));
    EXPECT_EQ(g.mk_ite(a, b, false_bit), g.mk_and(a, b));
    EXPECT_EQ(g.mk_ite(a, abc, c), abc);
    EXPECT_EQ(g.mk_ite(a, g.mk_xor(a, b), c), g.mk_ite(a, ~b, c));
}

TEST_F(BitGraphTest, RulesOnMajority) {
    bit const abc = g.mk_maj(a, b, c);
    EXPECT_EQ(g.mk_maj(c, a, b), abc);
    EXPECT_EQ(g.mk_maj(~a, ~b, ~c), ~abc);
    EXPECT_EQ(g.mk_maj(a, ~b, ~c), ~g.mk_maj(~a, b, c));
    EXPECT_EQ(g.mk_maj(a, true_bit, b), g.mk_or(a, b));
    EXPECT_EQ(g.mk_maj(a, b, false_bit), g.mk_and(a, b));
    EXPECT_EQ(g.mk_maj(a, b, a), a);
    EXPECT_EQ(g.mk_maj(a, b, ~a), b);
}

TEST_F(BitGraphTest, NothingIsWrittenUntilAsked) {
    bit const x = g.mk_xor(g.mk_and(a, b), c);
    EXPECT_EQ(m_sink.m_num_vars, 0u);
    EXPECT_EQ(g.find_literal(x), null_literal);
    literal const l = g.literal_of(x);
    EXPECT_EQ(g.find_literal(~x), ~l);
    EXPECT_EQ(m_sink.m_num_vars, 5u);
    EXPECT_EQ(m_sink.m_num_clauses, 7u);
    EXPECT_EQ(g.literal_of(~x), ~l);
    EXPECT_EQ(m_sink.m_num_clauses, 7u);
    EXPECT_EQ(g.literal_of(true_bit), true_literal);
    EXPECT_EQ(g.literal_of(false_bit), false_literal);
}

// A chain of conjunctions is one gate; a member that was asked for before stands for itself.
TEST_F(BitGraphTest, ChainsAreOneGate) {
    bits inputs;
    for (unsigned i = 0; i < 10; ++i) inputs.push_back(g.new_input());
    bit const all = g.mk_and(inputs);
    g.literal_of(all);
    EXPECT_EQ(m_sink.m_num_vars, 11u);
    EXPECT_EQ(m_sink.m_num_clauses, 11u);
    bit const sum = g.mk_xor(a, b, c);
    g.literal_of(sum);
    EXPECT_EQ(m_sink.m_num_vars, 15u);
    EXPECT_EQ(m_sink.m_num_clauses, 19u);
}

TEST_F(BitGraphTest, BitsOfLiterals) {
    literal const x(7), y(9);
    bit const bx = g.bit_of(x);
    EXPECT_EQ(g.bit_of(~x), ~bx);
    EXPECT_EQ(g.bit_of(true_literal), true_bit);
    EXPECT_EQ(g.bit_of(false_literal), false_bit);
    EXPECT_EQ(g.literal_of(bx), x);
    EXPECT_EQ(g.literal_of(~g.bit_of(~y)), y);
    literal const l = g.literal_of(g.mk_and(a, b));
    EXPECT_EQ(g.bit_of(l), g.mk_and(a, b));
}

TEST_F(BitGraphTest, ScopesTakeNodesAndLiteralsBack) {
    bit const ab = g.mk_and(a, b);
    literal const la = g.literal_of(a);
    unsigned const nodes = g.num_nodes();
    g.push();
    bit const x = g.mk_xor(ab, c);
    g.literal_of(x);
    g.bit_of(literal(100));
    EXPECT_NE(g.find_literal(ab), null_literal);
    g.check_invariant();
    g.pop();
    g.check_invariant();
    EXPECT_EQ(g.num_nodes(), nodes);
    EXPECT_EQ(g.find_literal(ab), null_literal);
    EXPECT_EQ(g.find_literal(a), la);
    EXPECT_EQ(g.mk_and(a, b), ab);
    EXPECT_EQ(g.mk_xor(ab, c), x); // the same number again
}

// Many gates made and dropped: the table never loses one.
TEST(BitGraph, ScopesAtRandom) {
    std::uint64_t const first = first_seed(1);
    for (std::uint64_t seed = first; seed < first + rounds(20); ++seed) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        counting_sink sink;
        random_gates g(sink);
        g.add_inputs(6);
        std::vector<std::size_t> sizes;
        for (unsigned i = 0; i < 4000; ++i) {
            unsigned const what = random.below(100);
            if (what == 0 && sizes.size() < 20) {
                g.m_graph.push();
                sizes.push_back(g.m_bits.size());
            } else if (what == 1 && !sizes.empty()) {
                g.m_graph.pop();
                g.m_bits.resize(sizes.back());
                g.m_words.resize(sizes.back());
                sizes.pop_back();
            } else if (what < 10) {
                g.m_graph.literal_of(g.m_bits[random.below(static_cast<unsigned>(g.m_bits.size()))]);
            } else {
                g.add_random(random);
            }
        }
        g.m_graph.check_invariant();
        expect_tables(g, 6);
    }
}

// What holds at the base is a constant for new gates.
TEST(BitGraph, FixedInputsAreConstants) {
    context ctx;
    context_sink sink(ctx);
    bit_graph g(sink);
    bit const a = g.new_input(), b = g.new_input();
    ctx.assert_literal(g.literal_of(a));
    EXPECT_EQ(g.mk_and(a, b), b);
    EXPECT_EQ(g.mk_xor(a, b), ~b);
    EXPECT_EQ(g.mk_ite(~a, a, b), b);
    EXPECT_EQ(g.mk_maj(a, ~a, b), b);
}

} // namespace
