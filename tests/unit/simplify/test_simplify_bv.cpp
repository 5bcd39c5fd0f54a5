// Bit-vector terms.
#include "simplify_fixture.h"

#include "support/small_stack.h"

namespace vexor {
namespace {

using vexor_test::term_evaluator;
using vexor_test::to_text;

class simplify_bv : public simplify_fixture {
protected:
    expr* a = t.constant("a", t.bv_type(4));
    expr* b = t.constant("b", t.bv_type(4));
    expr* c = t.constant("c", t.bv_type(4));
    expr* x = t.constant("x", t.bv_type(2));
    expr* bv(char const* value) { return t.bv(4, value); }
    expr* extract(unsigned high, unsigned low, expr* e) {
        return t.op("bv-extract",
                    {t.num(std::to_string(high).c_str()), t.num(std::to_string(low).c_str()), e});
    }
};

TEST_F(simplify_bv, constants_are_taken_modulo_two_to_the_width) {
    expr* e = simple(t.bv(4, "19"));
    EXPECT_EQ(static_cast<bitvector_constant*>(e)->get_value(), numeral(3));
    EXPECT_EQ(static_cast<bitvector_constant*>(simple(t.bv(4, "-1")))->get_value(), numeral(15));
    expr* kept = bv("15");
    EXPECT_EQ(simple(kept), kept);
    EXPECT_EQ(text(t.op("=", {t.bv(4, "17"), bv("1")})), "true");
    EXPECT_EQ(text(t.op("=", {bv("2"), bv("1")})), "false");
}

TEST_F(simplify_bv, sums) {
    EXPECT_EQ(text(t.op("bv-add", {a, t.op("bv-neg", {t.name("a")})})), "0b0000");
    EXPECT_EQ(text(t.op("bv-sub", {a, t.name("a")})), "0b0000");
    EXPECT_EQ(text(t.op("bv-add", {b, a})), "(bv-add a b)");
    EXPECT_EQ(text(t.op("bv-add", {t.op("bv-add", {b, bv("9")}), t.op("bv-sub", {a, bv("2")})})),
              "(bv-add (bv-add a b) 0b0111)");
    EXPECT_EQ(text(t.op("bv-add", {bv("9"), bv("9")})), "0b0010");
    EXPECT_EQ(text(t.op("bv-sub", {bv("1"), bv("2")})), "0b1111");
    EXPECT_EQ(text(t.op("bv-neg", {t.op("bv-sub", {a, b})})), "(bv-sub b a)");
    EXPECT_EQ(text(t.op("bv-neg", {t.op("bv-neg", {a})})), "a");
    EXPECT_EQ(text(t.op("bv-sub", {t.op("bv-neg", {a}), b})), "(bv-sub (bv-neg a) b)");
    expr* kept = t.op("bv-add", {a, b});
    EXPECT_EQ(simple(kept), kept);
    expr* kept_neg = t.op("bv-neg", {a});
    EXPECT_EQ(simple(kept_neg), kept_neg);
    // Not of one width: left to whoever reports it.
    EXPECT_EQ(text(t.op("bv-add", {a, x})), "(bv-add a x)");
    EXPECT_EQ(text(t.op("bv-add", {a, boolean("p")})), "(bv-add a p)");
}

TEST_F(simplify_bv, products) {
    EXPECT_EQ(text(t.op("bv-mul", {a, bv("0")})), "0b0000");
    EXPECT_EQ(text(t.op("bv-mul", {bv("1"), a})), "a");
    EXPECT_EQ(text(t.op("bv-mul", {t.op("bv-mul", {bv("4"), a}), bv("4")})), "0b0000");
    EXPECT_EQ(text(t.op("bv-mul", {t.op("bv-mul", {b, bv("3")}), t.op("bv-mul", {bv("7"), a})})),
              "(bv-mul (bv-mul 0b0101 a) b)");
}

TEST_F(simplify_bv, bitwise_operators) {
    expr* not_a = t.op("bv-not", {a});
    EXPECT_EQ(text(t.op("bv-not", {not_a})), "a");
    EXPECT_EQ(text(t.op("bv-not", {bv("5")})), "0b1010");
    EXPECT_EQ(simple(not_a), not_a);
    EXPECT_EQ(text(t.op("bv-and", {a, t.op("bv-and", {b, t.name("a")})})), "(bv-and a b)");
    EXPECT_EQ(text(t.op("bv-and", {a, not_a})), "0b0000");
    EXPECT_EQ(text(t.op("bv-or", {not_a, a})), "0b1111");
    EXPECT_EQ(text(t.op("bv-and", {a, bv("15")})), "a");
    EXPECT_EQ(text(t.op("bv-or", {a, bv("0")})), "a");
    EXPECT_EQ(text(t.op("bv-or", {a, bv("15")})), "0b1111");
    EXPECT_EQ(text(t.op("bv-and", {t.op("bv-and", {a, bv("6")}), bv("3")})), "(bv-and a 0b0010)");
    EXPECT_EQ(text(t.op("bv-or", {t.op("bv-and", {a, b}), a})), "(bv-or a (bv-and a b))");
    EXPECT_EQ(text(t.op("bv-xor", {a, t.name("a")})), "0b0000");
    EXPECT_EQ(text(t.op("bv-xor", {not_a, b})), "(bv-not (bv-xor a b))");
    EXPECT_EQ(text(t.op("bv-xor", {not_a, t.op("bv-xor", {b, t.op("bv-not", {t.name("a")})})})), "b");
    EXPECT_EQ(text(t.op("bv-xor", {a, bv("15")})), "(bv-not a)");
    EXPECT_EQ(text(t.op("bv-xor", {t.op("bv-xor", {a, bv("5")}), bv("6")})), "(bv-xor a 0b0011)");
}

TEST_F(simplify_bv, parts) {
    EXPECT_EQ(text(t.op("bv-concat", {bv("5"), t.bv(2, "2"), a})), "(bv-concat 0b010110 a)");
    EXPECT_EQ(text(t.op("bv-concat", {t.op("bv-concat", {a, b}), c})), "(bv-concat a b c)");
    EXPECT_EQ(text(t.op("bv-concat", {extract(3, 2, a), extract(1, 0, t.name("a"))})), "a");
    EXPECT_EQ(text(t.op("bv-concat", {extract(3, 3, a), extract(2, 1, a)})), "(bv-extract 3 1 a)");
    EXPECT_EQ(text(t.op("bv-concat", {extract(1, 0, a), extract(3, 2, a)})),
              "(bv-concat (bv-extract 1 0 a) (bv-extract 3 2 a))");
    EXPECT_EQ(text(t.op("bv-concat", {extract(3, 2, a), extract(1, 0, b)})),
              "(bv-concat (bv-extract 3 2 a) (bv-extract 1 0 b))");
    EXPECT_EQ(text(t.op("bv-concat", {a})), "a");
    EXPECT_EQ(text(extract(3, 0, a)), "a");
    EXPECT_EQ(text(extract(2, 1, bv("12"))), "0b10");
    // Whichever index comes first, the larger one is the high end.
    EXPECT_EQ(text(extract(1, 2, bv("12"))), "0b10");
    EXPECT_EQ(text(extract(1, 1, extract(3, 1, a))), "(bv-extract 2 2 a)");
    expr* joined = t.op("bv-concat", {a, x, b});
    EXPECT_EQ(text(extract(3, 0, joined)), "b");
    EXPECT_EQ(text(extract(5, 4, joined)), "x");
    EXPECT_EQ(text(extract(6, 2, joined)), "(bv-concat (bv-extract 0 0 a) x (bv-extract 3 2 b))");
    EXPECT_EQ(text(extract(9, 5, joined)), "(bv-concat a (bv-extract 1 1 x))");
    // Out of the vector: left to whoever reports it.
    EXPECT_EQ(text(extract(4, 0, a)), "(bv-extract 4 0 a)");
    expr* kept = extract(2, 1, a);
    EXPECT_EQ(simple(kept), kept);
    expr* kept_concat = t.op("bv-concat", {a, b});
    EXPECT_EQ(simple(kept_concat), kept_concat);
}

TEST_F(simplify_bv, shifts) {
    auto shift = [&](char const* op, char const* n) { return text(t.op(op, {a, t.num(n)})); };
    EXPECT_EQ(shift("bv-shift-left0", "1"), "(bv-concat (bv-extract 2 0 a) 0b0)");
    EXPECT_EQ(shift("bv-shift-left1", "3"), "(bv-concat (bv-extract 0 0 a) 0b111)");
    EXPECT_EQ(shift("bv-shift-right0", "1"), "(bv-concat 0b0 (bv-extract 3 1 a))");
    EXPECT_EQ(shift("bv-shift-right1", "2"), "(bv-concat 0b11 (bv-extract 3 2 a))");
    EXPECT_EQ(shift("bv-shift-righta", "1"), "(bv-concat (bv-extract 3 3 a) (bv-extract 3 1 a))");
    EXPECT_EQ(shift("bv-shift-left0", "0"), "a");
    EXPECT_EQ(shift("bv-shift-left0", "4"), "0b0000");
    EXPECT_EQ(shift("bv-shift-right1", "4"), "0b1111");
    // Larger than the width is a type error, kept as it is.
    EXPECT_EQ(shift("bv-shift-left0", "5"), "(bv-shift-left0 a 5)");
    EXPECT_EQ(shift("bv-zero-extend", "2"), "(bv-concat 0b00 a)");
    EXPECT_EQ(shift("bv-zero-extend", "0"), "a");
    EXPECT_EQ(text(t.op("bv-sign-extend", {bv("9"), t.num("2")})), "0b111001");
    EXPECT_EQ(text(t.op("bv-sign-extend", {a, t.num("1")})), "(bv-concat (bv-extract 3 3 a) a)");
    EXPECT_EQ(text(t.op("bv-sign-extend", {a, t.num("65")})), "(bv-sign-extend a 65)");
    EXPECT_EQ(text(t.op("bv-shl", {a, bv("1")})), "(bv-concat (bv-extract 2 0 a) 0b0)");
    EXPECT_EQ(text(t.op("bv-shl", {a, bv("9")})), "0b0000");
    EXPECT_EQ(text(t.op("bv-lshr", {a, b})), "(bv-lshr a b)");
    EXPECT_EQ(text(t.op("bv-lshr", {bv("12"), bv("2")})), "0b0011");
    EXPECT_EQ(text(t.op("bv-ashr", {bv("12"), bv("15")})), "0b1111");
}

TEST_F(simplify_bv, equalities) {
    EXPECT_EQ(text(t.op("=", {t.op("bv-add", {a, b}), t.op("bv-add", {a, c})})), "(= b c)");
    EXPECT_EQ(text(t.op("=", {t.op("bv-sub", {a, b}), t.op("bv-sub", {a, c})})), "(= b c)");
    EXPECT_EQ(text(t.op("=", {t.op("bv-add", {a, b}), t.op("bv-add", {b, t.name("a")})})), "true");
    EXPECT_EQ(text(t.op("=", {t.op("bv-concat", {a, b}), t.op("bv-concat", {a, c})})), "(= b c)");
    EXPECT_EQ(text(t.op("=", {t.op("bv-concat", {a, bv("1")}), t.op("bv-concat", {b, bv("2")})})), "false");
    EXPECT_EQ(text(t.op("=", {t.op("bv-concat", {a, bv("1")}), t.bv(8, "33")})), "(= a 0b0010)");
    EXPECT_EQ(text(t.op("=", {t.op("bv-concat", {a, b}), t.bv(8, "33")})),
              "(not (or (not (= a 0b0010)) (not (= b 0b0001))))");
    EXPECT_EQ(text(t.op("=", {t.op("bv-concat", {x, a}), t.op("bv-concat", {b, t.bv(2, "1")})})),
              "(not (or (not (= x (bv-extract 3 2 b))) (not (= (bv-extract 3 2 a) (bv-extract 1 0 b))) "
              "(not (= (bv-extract 1 0 a) 0b01))))");
    EXPECT_EQ(text(t.op("/=", {a, b})), "(not (= a b))");
    expr* kept = t.op("=", {a, t.op("bv-mul", {a, b})});
    EXPECT_EQ(simple(kept), kept);
}

TEST_F(simplify_bv, relations) {
    EXPECT_EQ(text(t.op("bv-lt", {bv("3"), bv("12")})), "true");
    EXPECT_EQ(text(t.op("sbv-lt", {bv("3"), bv("12")})), "false");
    EXPECT_EQ(text(t.op("sbv-ge", {a, t.name("a")})), "true");
    EXPECT_EQ(text(t.op("bv-gt", {a, t.name("a")})), "false");
    expr* kept = t.op("bv-le", {a, b});
    EXPECT_EQ(simple(kept), kept);
}

// Every operator on two terms of small width, for all values: variables, constants and a term with itself.
TEST_F(simplify_bv, operators_agree_with_their_tables) {
    static char const* const operators[] = {
        "bv-add", "bv-sub",  "bv-mul",  "bv-and", "bv-or",   "bv-xor",  "bv-nand", "bv-nor",   "bv-xnor",
        "bv-shl", "bv-lshr", "bv-ashr", "bv-lt",  "bv-le",   "bv-gt",   "bv-ge",   "sbv-lt",   "sbv-le",
        "sbv-gt", "sbv-ge",  "=",       "/=",     "bv-comp", "bv-udiv", "bv-urem", "bv-concat"};
    for (unsigned width = 1; width <= 3; ++width) {
        std::string suffix = std::to_string(width);
        expr* u = t.constant(("u" + suffix).c_str(), t.bv_type(width));
        expr* v = t.constant(("v" + suffix).c_str(), t.bv_type(width));
        std::vector<expr*> terms{u, v, t.op("bv-not", {u}), t.op("bv-neg", {v})};
        for (unsigned i = 0; i < (1u << width); ++i) terms.push_back(t.bv(width, std::to_string(i).c_str()));
        for (char const* op : operators)
            for (expr* left : terms)
                for (expr* right : terms) {
                    expr* e = t.op(op, {left, right});
                    expr* image = simple(e);
                    for (unsigned values = 0; values < (1u << (2 * width)); ++values) {
                        term_evaluator eval;
                        eval.m_constants[static_cast<name_expr*>(u)->get_decl()] = {values % (1u << width),
                                                                                    {}};
                        eval.m_constants[static_cast<name_expr*>(v)->get_decl()] = {values >> width, {}};
                        ASSERT_EQ(eval(e), eval(image)) << to_text(e) << " " << to_text(image);
                    }
                }
    }
}

TEST_F(simplify_bv, large_and_shared_terms) {
    expr* doubled = t.op("bv-add", {a, b});
    expr* squared = doubled;
    expr* mixed = a;
    expr* pieces = a;
    for (unsigned i = 0; i < 2000; ++i) {
        doubled = t.op("bv-add", {doubled, doubled});
        squared = t.op(i % 2 ? "bv-xor" : "bv-mul", {squared, squared});
        mixed = t.op(i % 2 ? "bv-and" : "bv-or", {mixed, t.op("bv-not", {mixed})});
        pieces = t.op("bv-concat", {extract(1, 0, pieces), extract(3, 2, pieces)});
    }
    for (expr* e : {doubled, squared, mixed, pieces}) EXPECT_NE(simple(e), nullptr);
    expr* sum = a;
    expr* chain = a;
    expr* wide = a;
    for (unsigned i = 0; i < 50000; ++i) {
        sum = t.op(i % 3 ? "bv-add" : "bv-sub", {sum, i % 2 ? b : c});
        chain = t.op("bv-not", {t.op("bv-and", {chain, i % 2 ? b : c})});
        if (i < 5000) wide = t.op("bv-concat", {wide, i % 2 ? b : bv("3")});
    }
    vexor_test::on_small_stack([&] {
        expr* equal = t.op("=", {wide, t.op("bv-not", {wide})});
        for (expr* e : {sum, chain, wide, equal}) EXPECT_NE(simple(e), nullptr);
    });
}

} // namespace
} // namespace vexor
