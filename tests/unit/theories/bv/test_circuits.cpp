// Circuits against the definitions of the operators: as constants, with given inputs, inverted, and at large widths.
#include "theories/bv/circuits.h"

#include "support/random.h"
#include "unit/theories/bv/context_sink.h"
#include "unit/theories/bv/graph_values.h"
#include "unit/theories/bv/word_ops.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using namespace vexor;
using namespace vexor_test;

constexpr unsigned max_exhaustive_width = 5;

bits inputs(bit_graph& g, unsigned width) {
    bits result;
    for (unsigned i = 0; i < width; ++i) result.push_back(g.new_input());
    return result;
}

bits constant(word w, unsigned width) { return circuits::constant(width, numeral(w)); }

std::vector<word_op> ops_for(unsigned width) {
    std::vector<word_op> ops = all_word_ops();
    for (word_op& op : indexed_word_ops(width)) ops.push_back(op);
    return ops;
}

// The second argument of operators with one is always 0.
word num_second(word_op const& op, unsigned width) { return op.m_arity == 2 ? ones(width) : 0; }

TEST(Circuits, Constants) {
    for (unsigned width = 1; width <= max_exhaustive_width; ++width)
        for (word_op const& op : ops_for(width)) {
            counting_sink sink;
            bit_graph g(sink);
            circuits c(g);
            for (word a = 0; a <= ones(width); ++a)
                for (word b = 0; b <= num_second(op, width); ++b) {
                    bits const result = op.m_circuit(c, constant(a, width), constant(b, width));
                    numeral value;
                    ASSERT_TRUE(circuits::is_constant(result, value)) << op.m_name;
                    ASSERT_EQ(value, numeral(op.m_value(a, b, width) & ones(result.size())))
                        << op.m_name << " " << a << " " << b << " width " << width;
                }
            EXPECT_EQ(g.num_nodes(), 1u);
        }
}

// Gates over variables, by their truth tables; and with one side constant.
TEST(Circuits, Variables) {
    for (unsigned width = 1; width <= max_exhaustive_width; ++width)
        for (word_op const& op : ops_for(width)) {
            SCOPED_TRACE(op.m_name + " width " + std::to_string(width));
            counting_sink sink;
            bit_graph g(sink);
            circuits c(g);
            bits const x = inputs(g, width), y = inputs(g, width);
            bits const both = op.m_circuit(c, x, y);
            std::vector<bits> with_left, with_right;
            for (word w = 0; w <= ones(width); ++w) {
                with_left.push_back(op.m_circuit(c, constant(w, width), y));
                with_right.push_back(op.m_circuit(c, x, constant(w, width)));
            }
            for (word a = 0; a <= ones(width); ++a)
                for (word b = 0; b <= num_second(op, width); ++b) {
                    graph_values values(g);
                    for (unsigned i = 0; i < width; ++i) {
                        values.set(x[i], (a >> i) & 1);
                        values.set(y[i], (b >> i) & 1);
                    }
                    values.compute();
                    word const expected = op.m_value(a, b, width);
                    for (unsigned i = 0; i < both.size(); ++i) {
                        ASSERT_EQ(values[both[i]] & 1, (expected >> i) & 1) << a << " " << b;
                        ASSERT_EQ(values[with_left[a][i]] & 1, (expected >> i) & 1) << a << " " << b;
                        ASSERT_EQ(values[with_right[b][i]] & 1, (expected >> i) & 1) << a << " " << b;
                    }
                }
        }
}

// The same through clauses: with the inputs fixed by units, propagation alone finds the result.
TEST(Circuits, Propagation) {
    for (unsigned width = 1; width <= 4; ++width)
        for (word_op const& op : all_word_ops()) {
            SCOPED_TRACE(op.m_name + " width " + std::to_string(width));
            context ctx;
            context_sink sink(ctx);
            bit_graph g(sink);
            circuits c(g);
            bits const x = inputs(g, width), y = inputs(g, width);
            svector<literal> result;
            for (bit b : op.m_circuit(c, x, y)) result.push_back(g.literal_of(b));
            for (word a = 0; a <= ones(width); ++a)
                for (word b = 0; b <= num_second(op, width); ++b) {
                    ctx.push();
                    g.push();
                    for (unsigned i = 0; i < width; ++i) {
                        ctx.assert_literal(g.literal_of((a >> i) & 1 ? x[i] : ~x[i]));
                        ctx.assert_literal(g.literal_of((b >> i) & 1 ? y[i] : ~y[i]));
                    }
                    ASSERT_TRUE(ctx.propagate_constraints());
                    word const expected = op.m_value(a, b, width);
                    for (unsigned i = 0; i < result.size(); ++i)
                        ASSERT_EQ(ctx.value(result[i]), (expected >> i) & 1 ? 1 : -1) << a << " " << b;
                    g.pop();
                    ctx.pop(1);
                }
        }
}

word model_value(context& ctx, bit_graph& g, bits const& v) {
    word result = 0;
    for (unsigned i = 0; i < v.size(); ++i) {
        literal const l = g.find_literal(v[i]);
        if (l == null_literal) continue;
        int const value = ctx.get_model().value(l.var());
        if ((l.sign() ? -value : value) > 0) result |= word{1} << i;
    }
    return result;
}

// Arguments for each result are found if and only if there are some.
TEST(Circuits, Inverted) {
    for (unsigned width = 1; width <= 4; ++width)
        for (word_op const& op : all_word_ops()) {
            SCOPED_TRACE(op.m_name + " width " + std::to_string(width));
            std::set<word> possible;
            context ctx;
            context_sink sink(ctx);
            bit_graph g(sink);
            circuits c(g);
            bits const x = inputs(g, width), y = inputs(g, width);
            bits const result = op.m_circuit(c, x, y);
            for (word a = 0; a <= ones(width); ++a)
                for (word b = 0; b <= num_second(op, width); ++b)
                    possible.insert(op.m_value(a, b, width) & ones(result.size()));
            for (word z = 0; z <= ones(result.size()); ++z) {
                ctx.push();
                g.push();
                ctx.assert_literal(g.literal_of(c.mk_eq(result, constant(z, result.size()))));
                ASSERT_EQ(ctx.check(), possible.count(z) != 0 ? 1 : -1) << z;
                if (possible.count(z) != 0) {
                    word const a = model_value(ctx, g, x), b = op.m_arity == 2 ? model_value(ctx, g, y) : 0;
                    EXPECT_EQ(op.m_value(a, b, width) & ones(result.size()), z);
                }
                g.pop();
                ctx.pop(1);
            }
        }
}

// --- Large widths, beside exact numbers.

struct wide {
    explicit wide(unsigned width, std::uint64_t seed)
        : m_width(width)
        , m_random(seed) {}

    // 64 vectors at once, of all sizes; the first are special.
    bits random_vector(graph_values& values, std::vector<numeral>& numbers) {
        bits const v = inputs(m_graph, m_width);
        std::vector<word> columns(m_width, 0);
        numbers.assign(64, numeral(0));
        for (unsigned k = 0; k < 64; ++k) {
            numeral n;
            unsigned const length = 1 + m_random.below(m_width);
            for (unsigned i = 0; i < length; i += 32) n = (n << 32) + numeral(m_random.next() & 0xffffffff);
            if (k == 1) n = numeral(1);
            if (k == 2) n = numeral(-1);
            if (k == 3) n = numeral(1) << (m_width - 1);
            if (k == 0) n = numeral(0);
            n = mod_2k(n, m_width);
            if (k > 3) n = mod_2k(n, length);
            for (unsigned i = 0; i < m_width; ++i)
                if (n.test_bit(i)) columns[i] |= word{1} << k;
            numbers[k] = n;
        }
        for (unsigned i = 0; i < m_width; ++i) values.set(v[i], columns[i]);
        return v;
    }

    static numeral value(graph_values const& values, bits const& v, unsigned k) {
        bits constants;
        for (bit b : v) constants.push_back(constant_bit(((values[b] >> k) & 1) != 0));
        numeral result;
        circuits::is_constant(constants, result);
        return result;
    }

    unsigned m_width;
    random_stream m_random;
    counting_sink m_sink;
    bit_graph m_graph{m_sink};
};

numeral to_signed(numeral const& n, unsigned width) {
    return n.test_bit(width - 1) ? n - (numeral(1) << width) : n;
}

numeral quotient(numeral const& a, numeral const& b, unsigned width) {
    return b.is_zero() ? (numeral(1) << width) - numeral(1) : div(a, b);
}

TEST(Circuits, LargeWidths) {
    for (unsigned width : {31u, 32u, 33u, 63u, 64u, 65u, 127u, 300u, 1000u}) {
        SCOPED_TRACE(width);
        wide w(width, first_seed(1) + width);
        graph_values values(w.m_graph);
        std::vector<numeral> a, b;
        bits const x = w.random_vector(values, a), y = w.random_vector(values, b);
        circuits c(w.m_graph);
        bits const sum = c.mk_add(x, y), difference = c.mk_sub(x, y), left = c.mk_shl(x, y);
        bits const right = c.mk_lshr(x, y), arithmetic = c.mk_ashr(x, y), opposite = c.mk_neg(x);
        bit const less = c.mk_ult(x, y), signed_less = c.mk_slt(x, y), equal = c.mk_eq(x, y);
        bits product, q, r, sq, sr, square;
        bool const is_small = width <= 130;
        if (is_small) {
            product = c.mk_mul(x, y);
            square = c.mk_mul(x, x);
            c.mk_udiv_urem(x, y, q, r);
            sq = c.mk_sdiv(x, y);
            sr = c.mk_srem(x, y);
        }
        values.compute();
        for (unsigned k = 0; k < 64; ++k) {
            auto expect = [&](bits const& v, numeral const& n, char const* what) {
                ASSERT_EQ(wide::value(values, v, k), mod_2k(n, width)) << what << " " << a[k] << " " << b[k];
            };
            numeral const sa = to_signed(a[k], width), sb = to_signed(b[k], width);
            bool const all = b[k] >= numeral(width);
            unsigned const n = all ? width : b[k].get_unsigned();
            expect(sum, a[k] + b[k], "add");
            expect(difference, a[k] - b[k], "sub");
            expect(opposite, -a[k], "neg");
            expect(left, a[k] << n, "shl");
            expect(right, a[k] >> n, "lshr");
            expect(arithmetic, sa >> n, "ashr");
            EXPECT_EQ((values[less] >> k) & 1, a[k] < b[k]);
            EXPECT_EQ((values[signed_less] >> k) & 1, sa < sb);
            EXPECT_EQ((values[equal] >> k) & 1, a[k] == b[k]);
            if (!is_small) continue;
            expect(product, a[k] * b[k], "mul");
            expect(square, a[k] * a[k], "square");
            expect(q, quotient(a[k], b[k], width), "udiv");
            expect(r, b[k].is_zero() ? a[k] : mod(a[k], b[k]), "urem");
            expect(sq, sb.is_zero() ? (sa.is_neg() ? numeral(1) : numeral(-1)) : div(sa, sb), "sdiv");
            expect(sr, sb.is_zero() ? sa : sa - div(sa, sb) * sb, "srem");
        }
    }
}

TEST(Circuits, ProductsWithConstants) {
    for (unsigned width : {8u, 33u, 64u}) {
        wide w(width, first_seed(1) + width);
        graph_values values(w.m_graph);
        std::vector<numeral> a;
        bits const x = w.random_vector(values, a);
        circuits c(w.m_graph);
        std::vector<numeral> factors;
        std::vector<bits> products;
        for (unsigned i = 0; i < 60; ++i) {
            numeral factor =
                i < 20 ? numeral(i) - numeral(10) : numeral(w.m_random.next() & 0x7fffffffffffffff);
            factors.push_back(mod_2k(factor, width));
            bits const f = circuits::constant(width, factor);
            products.push_back(i % 2 == 0 ? c.mk_mul(f, x) : c.mk_mul(x, f));
        }
        values.compute();
        for (unsigned i = 0; i < factors.size(); ++i)
            for (unsigned k = 0; k < 64; ++k)
                ASSERT_EQ(wide::value(values, products[i], k), mod_2k(a[k] * factors[i], width))
                    << factors[i];
    }
}

// Factors of which bits are constants, repeat each other or are each other's complements.
TEST(Circuits, ProductsOfRepeatedBits) {
    std::uint64_t const first = first_seed(1);
    for (std::uint64_t seed = first; seed < first + rounds(300); ++seed) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        counting_sink sink;
        bit_graph g(sink);
        circuits c(g);
        unsigned const width = 1 + random.below(12);
        bits const x = inputs(g, 3);
        graph_values values(g);
        std::uint64_t const columns[] = {0xaa, 0xcc, 0xf0};
        for (unsigned i = 0; i < 3; ++i) values.set(x[i], columns[i]);
        bits factors[2];
        for (bits& f : factors)
            for (unsigned i = 0; i < width; ++i) {
                bit const repeated = i > 0 && random.chance(50) ? f.back() : x[random.below(3)];
                f.push_back(random.chance(20) ? constant_bit(random.chance(50))
                                              : repeated ^ random.chance(30));
            }
        bits const product = c.mk_mul(factors[0], factors[1]);
        values.compute();
        for (unsigned k = 0; k < 8; ++k) {
            word v[3] = {0, 0, 0};
            bits const* const vectors[3] = {&factors[0], &factors[1], &product};
            for (unsigned j = 0; j < 3; ++j)
                for (unsigned i = 0; i < width; ++i) v[j] |= ((values[(*vectors[j])[i]] >> k) & 1) << i;
            ASSERT_EQ(v[2], (v[0] * v[1]) & ones(width)) << k;
        }
    }
}

// -9 plus a sign: one row for each of the three parts.
TEST(Circuits, FewRowsForSigns) {
    counting_sink sink;
    bit_graph g(sink);
    circuits c(g);
    bit const s = g.new_input();
    bits factor = c.mk_add(circuits::constant(32, numeral(-9)), circuits::zero_extend(bits{s}, 31));
    bits const product = c.mk_mul(inputs(g, 32), factor);
    for (bit b : product) g.literal_of(b);
    EXPECT_LT(sink.m_num_vars, 33 + 3 * 2 * 32 + 32u);
}

TEST(Circuits, BothOrdersOfAProductAreOneCircuit) {
    counting_sink sink;
    bit_graph g(sink);
    circuits c(g);
    bits const x = inputs(g, 8), y = inputs(g, 8);
    EXPECT_EQ(c.mk_mul(x, y), c.mk_mul(y, x));
    c.mk_udiv(x, y);
    unsigned const n = g.num_nodes();
    c.mk_urem(x, y);
    EXPECT_EQ(g.num_nodes(), n); // one division for both
}

TEST(Circuits, WidthOfAMillion) {
    counting_sink sink;
    bit_graph g(sink);
    circuits c(g);
    unsigned const width = 1u << 20;
    bits const x = inputs(g, width), y = inputs(g, width);
    bits const sum = c.mk_add(x, y);
    g.literal_of(sum.back());
    EXPECT_LE(sink.m_num_clauses, 20 * width);
    EXPECT_EQ(c.mk_sub(sum, y).size(), width);
}

} // namespace
