// Types of expressions as get_type gives them.
#include "ast/node/ast_exceptions.h"
#include "ast/types/op_rules.h"
#include "ast/types/type_checker_exception.h"
#include "support/small_stack.h"
#include "support/terms.h"

#include <gtest/gtest.h>

namespace vexor {
namespace {

using vexor_test::terms;
using vexor_test::to_text;

class type_of : public testing::Test {
protected:
    std::string type_text(expr* e) { return to_text(e->get_type()); }
    // The message of the exception that get_type raises.
    std::string failure(expr* e) {
        try {
            e->get_type();
        } catch (type_checker_exception const& ex) {
            return ex.what_core();
        }
        return "no exception";
    }
    // A bit-vector constant of that size.
    expr* vec(unsigned size) { return t.bv(size, "1"); }

    ast_manager m;
    terms t{m};
};

TEST_F(type_of, numerals) {
    EXPECT_EQ(type_text(t.num("5")), "int");
    EXPECT_EQ(type_text(t.num("-7")), "int");
    EXPECT_EQ(type_text(t.num("1/2")), "real");
    EXPECT_EQ(type_text(t.num("123456789012345678901234567890")), "int");
}

TEST_F(type_of, arithmetic_is_int_only_for_integers) {
    expr* i = t.constant("i", t.int_type());
    expr* n = t.constant("n", t.nat_type());
    expr* r = t.constant("r", t.real_type());
    expr* s = t.constant("s", t.subrange(t.num("0"), t.num("9")));
    EXPECT_EQ(type_text(t.op("+", {t.num("1"), t.num("2")})), "int");
    EXPECT_EQ(type_text(t.op("+", {t.num("1"), t.num("1/2")})), "real");
    EXPECT_EQ(type_text(t.op("/", {t.num("4"), t.num("2")})), "real");
    EXPECT_EQ(type_text(t.op("*", {i, n, s})), "int");
    EXPECT_EQ(type_text(t.op("-", {i, r})), "real");
    EXPECT_EQ(type_text(t.op("-", {i})), "int");
    EXPECT_EQ(type_text(t.op("-", {r})), "real");
    // Closed under the operation is int, not nat.
    EXPECT_EQ(type_text(t.op("-", {n, n})), "int");
    EXPECT_EQ(type_text(t.op("+", {i, t.constant("x", t.number_type())})), "real");
}

TEST_F(type_of, predicates_are_boolean) {
    expr* p = t.constant("p", t.bool_type());
    expr* i = t.constant("i", t.int_type());
    for (char const* name : {"and", "or", "implies"})
        EXPECT_EQ(type_text(t.op(name, {p, p})), "bool") << name;
    EXPECT_EQ(type_text(t.op("not", {p})), "bool");
    for (char const* name : {"<", "<=", ">", ">=", "=", "/="})
        EXPECT_EQ(type_text(t.op(name, {i, i})), "bool") << name;
    EXPECT_EQ(type_text(t.op("int_pred", {i})), "bool");
    EXPECT_EQ(type_text(t.op("real_pred", {i})), "bool");
    for (char const* name : {"bv-lt", "bv-le", "bv-gt", "bv-ge", "sbv-lt", "sbv-le", "sbv-gt", "sbv-ge"})
        EXPECT_EQ(type_text(t.op(name, {vec(4), vec(4)})), "bool") << name;
    EXPECT_EQ(type_text(t.forall({t.variable("x", t.int_type())}, p)), "bool");
    EXPECT_EQ(type_text(t.exists({t.variable("x", t.int_type())}, p)), "bool");
    EXPECT_EQ(type_text(t.mk_true()), "bool");
    EXPECT_EQ(type_text(t.mk_false()), "bool");
}

TEST_F(type_of, ite_over_numbers_is_real_unless_both_branches_are_int) {
    expr* c = t.constant("c", t.bool_type());
    expr* one = t.num("1");
    expr* half = t.num("1/2");
    expr* n = t.constant("n", t.nat_type());
    EXPECT_EQ(type_text(t.op("ite", {c, one, one})), "int");
    EXPECT_EQ(type_text(t.op("ite", {c, one, half})), "real");
    EXPECT_EQ(type_text(t.op("ite", {c, half, one})), "real");
    EXPECT_EQ(type_text(t.op("ite", {c, half, half})), "real");
    EXPECT_EQ(type_text(t.op("ite", {c, n, n})), "nat");
    EXPECT_EQ(type_text(t.op("ite", {c, n, one})), "int");
    EXPECT_EQ(type_text(t.op("ite", {c, one, n})), "int");
    EXPECT_EQ(type_text(t.op("ite", {c, n, half})), "real");
    expr* s = t.constant("s", t.subrange(t.num("0"), t.num("5")));
    expr* u = t.constant("u", t.subrange(t.num("0"), t.num("9")));
    EXPECT_EQ(type_text(t.op("ite", {c, s, u})), "int");
    EXPECT_EQ(type_text(t.op("ite", {c, s, half})), "real");
}

TEST_F(type_of, questions_about_an_ite_agree_with_its_type) {
    expr* c = t.constant("c", t.bool_type());
    // Asked before and after the type was computed.
    for (int round = 0; round < 2; ++round) {
        application* a = t.op("ite", {c, t.num("1/2"), t.num("1")});
        if (round == 1) a->get_type();
        EXPECT_FALSE(a->is_int()) << round;
        EXPECT_TRUE(a->is_numeral()) << round;
        application* b = t.op("ite", {c, t.num("2"), t.op("ite", {c, t.num("1/2"), t.num("1")})});
        if (round == 1) b->get_type();
        EXPECT_FALSE(b->is_int()) << round;
        application* i = t.op("ite", {c, t.num("2"), t.num("1")});
        if (round == 1) i->get_type();
        EXPECT_TRUE(i->is_int()) << round;
    }
}

TEST_F(type_of, ite_over_structures_joins_the_components) {
    expr* c = t.constant("c", t.bool_type());
    expr* ints = t.tuple({t.num("1"), t.num("2")});
    expr* mixed = t.tuple({t.num("1/2"), t.num("2")});
    EXPECT_EQ(type_text(t.op("ite", {c, ints, mixed})), "(tuple real int)");
    EXPECT_EQ(type_text(t.op("ite", {c, mixed, ints})), "(tuple real int)");
    expr* a = t.record({{"x", t.num("1")}, {"y", mixed}});
    expr* b = t.record({{"x", t.num("1/2")}, {"y", ints}});
    EXPECT_EQ(type_text(t.op("ite", {c, a, b})), "(record x::real y::(tuple real int))");
    expr* f = t.constant("f", t.function_type({t.bool_type()}, t.int_type()));
    expr* g = t.constant("g", t.function_type({t.bool_type()}, t.real_type()));
    EXPECT_EQ(type_text(t.op("ite", {c, f, g})), "(-> bool real)");
    EXPECT_EQ(type_text(t.app(t.op("ite", {c, f, g}), {c})), "real");
    EXPECT_EQ(type_text(t.op("ite", {c, f, f})), "(-> bool int)");
    EXPECT_EQ(type_text(t.op("ite", {c, vec(4), vec(4)})), "(bitvector 4)");
    // A type that is equal for both is kept by name.
    type* pair = t.tuple_type({t.int_type(), t.int_type()});
    t.declare_type("pair", pair);
    expr* named = t.constant("named", t.named_type("pair"));
    EXPECT_EQ(type_text(t.op("ite", {c, named, ints})), "pair");
}

TEST_F(type_of, bitvector_operations) {
    for (char const* name : {"bv-not", "bv-neg"})
        EXPECT_EQ(type_text(t.op(name, {vec(5)})), "(bitvector 5)") << name;
    for (char const* name :
         {"bv-and", "bv-or", "bv-xor", "bv-add", "bv-sub", "bv-mul", "bv-udiv", "bv-urem", "bv-sdiv",
          "bv-srem", "bv-smod", "bv-shl", "bv-lshr", "bv-ashr", "bv-nand", "bv-nor", "bv-xnor"})
        EXPECT_EQ(type_text(t.op(name, {vec(5), vec(5)})), "(bitvector 5)") << name;
    for (char const* name : {"bv-shift-left0", "bv-shift-left1", "bv-shift-right0", "bv-shift-right1",
                             "bv-shift-righta", "bv-rotate_left", "bv-rotate_right"})
        EXPECT_EQ(type_text(t.op(name, {vec(5), t.num("2")})), "(bitvector 5)") << name;
    EXPECT_EQ(type_text(t.op("bv-concat", {vec(5), vec(3)})), "(bitvector 8)");
    EXPECT_EQ(type_text(t.op("bv-concat", {vec(5), vec(3), vec(1)})), "(bitvector 9)");
    EXPECT_EQ(type_text(t.op("bv-sign-extend", {vec(5), t.num("3")})), "(bitvector 8)");
    EXPECT_EQ(type_text(t.op("bv-zero-extend", {vec(5), t.num("0")})), "(bitvector 5)");
    EXPECT_EQ(type_text(t.op("bv-repeat", {vec(5), t.num("3")})), "(bitvector 15)");
    EXPECT_EQ(type_text(t.op("bv-redor", {vec(5)})), "(bitvector 1)");
    EXPECT_EQ(type_text(t.op("bv-redand", {vec(5)})), "(bitvector 1)");
    EXPECT_EQ(type_text(t.op("bv-comp", {vec(5), vec(5)})), "(bitvector 1)");
    EXPECT_EQ(type_text(vec(7)), "(bitvector 7)");
    EXPECT_NE(vec(7)->get_type(), vec(7)->get_type());
}

TEST_F(type_of, extraction_takes_its_indices_in_either_order) {
    EXPECT_EQ(type_text(t.op("bv-extract", {t.num("6"), t.num("2"), vec(8)})), "(bitvector 5)");
    EXPECT_EQ(type_text(t.op("bv-extract", {t.num("2"), t.num("6"), vec(8)})), "(bitvector 5)");
    EXPECT_EQ(type_text(t.op("bv-extract", {t.num("3"), t.num("3"), vec(8)})), "(bitvector 1)");
    unsigned high = 0;
    unsigned low = 0;
    EXPECT_TRUE(get_extract_bounds(t.op("bv-extract", {t.num("2"), t.num("6"), vec(8)}), high, low));
    EXPECT_EQ(high, 6U);
    EXPECT_EQ(low, 2U);
    EXPECT_FALSE(get_extract_bounds(t.op("bv-extract", {t.num("-1"), t.num("6"), vec(8)}), high, low));
    EXPECT_FALSE(get_extract_bounds(t.op("bv-extract", {t.num("1/2"), t.num("6"), vec(8)}), high, low));
    EXPECT_FALSE(
        get_extract_bounds(t.op("bv-extract", {t.num("2"), t.num("4294967296"), vec(8)}), high, low));
    EXPECT_FALSE(get_extract_bounds(t.op("bv-extract", {t.num("2"), vec(8)}), high, low));
}

TEST_F(type_of, a_type_that_no_bitvector_can_have) {
    char const* extract = "invalid bitvector extract.";
    EXPECT_EQ(failure(t.op("bv-extract", {t.num("99999999999"), t.num("0"), vec(8)})), extract);
    EXPECT_EQ(failure(t.op("bv-extract", {t.num("4294967295"), t.num("0"), vec(8)})), extract);
    EXPECT_EQ(failure(t.op("bv-extract", {t.num("4294967296"), t.num("4294967296"), vec(8)})), extract);
    EXPECT_EQ(failure(t.op("bv-extract", {t.num("3"), t.num("-1"), vec(8)})), extract);
    EXPECT_EQ(failure(t.op("bv-extract", {t.num("3"), t.num("1/2"), vec(8)})), extract);
    EXPECT_EQ(failure(t.op("bv-repeat", {vec(8), t.num("536870912")})), "invalid repeat operation.");
    EXPECT_EQ(failure(t.op("bv-repeat", {vec(65536), t.num("65536")})), "invalid repeat operation.");
    EXPECT_EQ(failure(t.op("bv-repeat", {vec(8), t.num("0")})), "invalid repeat operation.");
    EXPECT_EQ(failure(t.op("bv-sign-extend", {vec(8), t.num("4294967295")})), "invalid extend operation.");
    EXPECT_EQ(failure(t.op("bv-zero-extend", {vec(8), t.num("16777216")})), "invalid extend operation.");
    EXPECT_EQ(failure(t.op("bv-zero-extend", {vec(8), t.num("-8")})), "invalid extend operation.");
    EXPECT_EQ(type_text(t.op("bv-zero-extend", {vec(8), t.num("16777208")})), "(bitvector 16777216)");
    expr* half = t.op("bv-zero-extend", {vec(1), t.num("8388607")});
    EXPECT_EQ(type_text(t.op("bv-concat", {half, half})), "(bitvector 16777216)");
    EXPECT_EQ(failure(t.op("bv-concat", {half, half, vec(1)})), "invalid bitvector size.");
}

TEST_F(type_of, a_subtype_does_not_pass_through_an_operation) {
    var_decl* x = t.variable("x", t.bv_type(4));
    expr* small = t.op("bv-lt", {t.use(x), vec(4)});
    expr* s = t.constant("s", t.make<subtype>(x, small, -1));
    EXPECT_EQ(type_text(t.op("bv-not", {s})), "(bitvector 4)");
    EXPECT_EQ(type_text(t.op("bv-concat", {s, s})), "(bitvector 8)");
}

TEST_F(type_of, literals_and_selections) {
    expr* pair = t.tuple({t.num("1"), t.mk_true()});
    EXPECT_EQ(type_text(pair), "(tuple int bool)");
    EXPECT_EQ(type_text(t.select(pair, 0U)), "int");
    EXPECT_EQ(type_text(t.select(pair, 1U)), "bool");
    expr* rec = t.record({{"b", t.num("1/2")}, {"a", vec(3)}});
    EXPECT_EQ(type_text(rec), "(record a::(bitvector 3) b::real)");
    EXPECT_EQ(type_text(t.select(rec, "a")), "(bitvector 3)");
    EXPECT_EQ(type_text(t.select(rec, "b")), "real");
    t.declare_type("pt", t.record_type({{"x", t.int_type()}}));
    EXPECT_EQ(type_text(t.select(t.constant("p", t.named_type("pt")), "x")), "int");
}

TEST_F(type_of, a_term_without_type_raises) {
    expr* pair = t.tuple({t.num("1"), t.mk_true()});
    EXPECT_EQ(failure(t.select(pair, 2U)), "invalid tuple selection.");
    EXPECT_EQ(failure(t.select(pair, 4294967295U)), "invalid tuple selection.");
    EXPECT_EQ(failure(t.select(t.num("1"), 0U)), "tuple expression expected.");
    EXPECT_EQ(failure(t.select(pair, "a")), "record expression expected.");
    EXPECT_EQ(failure(t.select(t.record({{"a", pair}}), "b")), "invalid record selection, unknown field.");
    EXPECT_EQ(failure(t.app(t.num("1"), {pair})), "function expected.");
    EXPECT_EQ(failure(t.op("ite", {t.mk_true(), pair})), "wrong number of arguments");
    EXPECT_EQ(failure(t.op("bv-concat", {t.num("1"), vec(1)})), "argument is not a bitvector.");
    EXPECT_EQ(failure(t.op("bv-extract", {vec(1), t.num("1"), vec(1)})), "argument must be a number.");
    EXPECT_EQ(failure(t.op("bv-extract", {t.num("1"), t.num("1")})), "wrong number of arguments");
    EXPECT_THROW(t.record({{"a", pair}, {"a", pair}})->get_type(),
                 record_type_with_duplicate_fields_exception);
}

TEST_F(type_of, updates_have_the_type_of_the_target) {
    expr* f = t.constant("f", t.function_type({t.int_type()}, t.real_type()));
    EXPECT_EQ(t.update(f, {t.num("1")}, t.num("2"))->get_type(), f->get_type());
    expr* pair = t.constant("pair", t.tuple_type({t.real_type(), t.int_type()}));
    EXPECT_EQ(t.update(pair, 0, t.num("2"))->get_type(), pair->get_type());
    expr* rec = t.constant("rec", t.record_type({{"a", t.real_type()}, {"b", t.int_type()}}));
    EXPECT_EQ(t.update(rec, "b", t.num("2"))->get_type(), rec->get_type());
}

TEST_F(type_of, an_update_with_a_real_is_no_longer_of_integers) {
    expr* half = t.num("1/2");
    expr* f = t.constant("f", t.function_type({t.int_type()}, t.int_type()));
    EXPECT_EQ(type_text(t.update(f, {t.num("1")}, half)), "(-> int real)");
    expr* pair = t.constant("pair", t.tuple_type({t.int_type(), t.int_type()}));
    EXPECT_EQ(type_text(t.update(pair, 1, half)), "(tuple int real)");
    EXPECT_FALSE(t.select(t.update(pair, 1, half), 1U)->is_int());
    expr* rec = t.constant("rec", t.record_type({{"a", t.int_type()}, {"b", t.int_type()}}));
    EXPECT_EQ(type_text(t.update(rec, "a", half)), "(record a::real b::int)");
    EXPECT_EQ(type_text(pair), "(tuple int int)");
}

// (subrange 0 first) speaks of the old first component.
TEST_F(type_of, an_update_drops_dependencies) {
    var_decl* first = t.variable("first", t.int_type());
    var_decl* second = t.variable("second", t.subrange(t.num("0"), t.use(first)));
    var_decl* elements[] = {first, second};
    expr* pair = t.constant("pair", t.make<tuple_type>(&m, elements, 2U, -1));
    EXPECT_EQ(type_text(t.update(pair, 0, t.num("7"))), "(tuple first::int second::int)");
    EXPECT_EQ(type_text(t.update(pair, 0, t.num("1/2"))), "(tuple first::real second::int)");
    var_decl* n = t.variable("n", t.nat_type());
    expr* f = t.constant("f", t.make<function_type>(n, t.subrange(t.num("0"), t.use(n)), -1));
    EXPECT_EQ(type_text(t.update(f, {t.num("3")}, t.num("1/2"))), "(-> n::int real)");
}

TEST_F(type_of, functions_and_binders) {
    expr* p = t.constant("p", t.bool_type());
    expr* f = t.constant("f", t.function_type({t.int_type(), t.bool_type()}, t.real_type()));
    EXPECT_EQ(type_text(t.app(f, {t.num("1"), p})), "real");
    var_decl* x = t.variable("x", t.int_type());
    expr* id = t.lambda({x}, t.use(x));
    EXPECT_EQ(type_text(id), "(-> x::int int)");
    EXPECT_EQ(type_text(t.app(id, {t.num("4")})), "int");
    var_decl* y = t.variable("y", t.real_type());
    EXPECT_EQ(type_text(t.lambda({x, y}, t.op("<", {t.use(x), t.use(y)}))), "(-> x::int y::real bool)");
    var_decl* fresh = t.make<fresh_var_decl>(t.int_type(), -1);
    EXPECT_EQ(type_text(t.make<fresh_vars_expr>(fresh, t.use(fresh), -1)), "int");
    expr* condition = p;
    EXPECT_EQ(type_text(t.make<local_context_expr>(t.num("1/2"), &condition, 1U, -1)), "real");
    t.declare_type("u");
    type_decl* u = m.find_type_decl(ustring("u"));
    EXPECT_EQ(type_text(t.make<typed_constant>(u, 3, -1)), "u");
}

TEST_F(type_of, let_gives_its_variables_the_types_of_their_definitions) {
    let_decl* x = t.let_variable("x", nullptr, t.num("1"));
    let_decl* y = t.let_variable("y", nullptr, t.op("/", {t.use(x), t.num("2")}));
    expr* e = t.let({x, y}, t.op("+", {t.use(x), t.use(y)}));
    EXPECT_EQ(x->get_type(), nullptr);
    EXPECT_EQ(type_text(e), "real");
    EXPECT_EQ(to_text(x->get_type()), "int");
    EXPECT_EQ(to_text(y->get_type()), "real");
    // It is not the source's: it neither prints nor goes into copies.
    EXPECT_EQ(x->get_declared_type(), nullptr);
    EXPECT_EQ(to_text(e), "(let ((x 1) (y (/ x 2))) (+ x y))");
    shared_ptr<var_decl> copy = x->clone();
    EXPECT_EQ(copy->get_type(), nullptr);
    x->set_type(t.real_type());
    EXPECT_EQ(to_text(e), "(let ((x::real 1) (y (/ x 2))) (+ x y))");
    // A name is typed alone, too; a declared type stands.
    let_decl* z = t.let_variable("z", nullptr, t.num("1"));
    EXPECT_EQ(type_text(t.use(z)), "int");
    let_decl* w = t.let_variable("w", t.real_type(), t.num("1"));
    EXPECT_EQ(type_text(t.let({w}, t.use(w))), "real");
    EXPECT_EQ(type_text(t.let({}, t.num("1"))), "int");
}

// The type that a let variable is given on the way does not change what the let is equal to.
TEST_F(type_of, typing_a_let_keeps_it_equal_to_its_copies) {
    auto make_let = [this] {
        let_decl* x = t.let_variable("x", nullptr, t.op("+", {t.num("1"), t.num("2")}));
        return t.let({x}, t.op("*", {t.use(x), t.use(x)}));
    };
    expr* hashed_first = make_let();
    unsigned hash = hashed_first->hash();
    expr* typed_first = make_let();
    EXPECT_EQ(type_text(typed_first), "int");
    EXPECT_EQ(typed_first->hash(), hash);
    EXPECT_TRUE(typed_first->equals(hashed_first));
    EXPECT_TRUE(hashed_first->equals(typed_first));
    hashed_first->get_type();
    EXPECT_TRUE(hashed_first->equals(make_let()));
}

TEST_F(type_of, dependent_types_are_instantiated) {
    // f::(-> n::nat (subrange 0 n)): (f 5) is of type (subrange 0 5).
    var_decl* n = t.variable("n", t.nat_type());
    type* up_to_n = t.subrange(t.num("0"), t.use(n));
    type* ft = t.make<function_type>(n, up_to_n, -1);
    expr* f = t.constant("f", ft);
    EXPECT_EQ(type_text(t.app(f, {t.num("5")})), "(subrange 0 5)");
    EXPECT_EQ(type_text(f), "(-> n::nat (subrange 0 n))");
    // A pair whose second component is not above the first.
    var_decl* first = t.variable("first", t.nat_type());
    var_decl* second =
        t.make<var_decl>(static_cast<identifier*>(nullptr), t.subrange(t.num("0"), t.use(first)), -1);
    var_decl* elements[] = {first, second};
    expr* pair = t.constant("pair", t.make<tuple_type>(&m, elements, 2U, -1));
    EXPECT_EQ(type_text(t.select(pair, 0U)), "nat");
    EXPECT_EQ(type_text(t.select(pair, 1U)), "(subrange 0 (select pair 0))");
    field* a = t.make<field>(t.id("a"), t.nat_type(), -1);
    field* b = t.make<field>(t.id("b"), t.subrange(t.num("0"), t.use(a)), -1);
    field* fields[] = {a, b};
    expr* rec = t.constant("rec", t.make<record_type>(&m, fields, 2U, -1));
    EXPECT_EQ(type_text(t.select(rec, "b")), "(subrange 0 (select rec a))");
    // The type of a let does not speak of its variables.
    let_decl* k = t.let_variable("k", nullptr, t.num("7"));
    let_decl* k1 = t.let_variable("k1", nullptr, t.op("+", {t.use(k), t.num("1")}));
    EXPECT_EQ(type_text(t.let({k, k1}, t.app(f, {t.use(k1)}))), "(subrange 0 (+ 7 1))");
}

TEST_F(type_of, a_type_is_computed_once) {
    expr* pair = t.tuple({t.num("1"), t.mk_true()});
    type* first = pair->get_type();
    EXPECT_EQ(pair->get_type(), first);
    static_cast<tuple_literal*>(pair)->reset_cache();
    EXPECT_EQ(pair->get_cached_type(), nullptr);
}

// A chain of 100,000 levels, and a graph of 2^200 paths.
TEST_F(type_of, deep_and_shared_terms) {
    vexor_test::on_small_stack([this] {
        expr* c = t.constant("c", t.bool_type());
        shared_ptr<expr> sum = t.num("1");
        shared_ptr<expr> negation = c;
        shared_ptr<expr> nested_let = t.num("1");
        shared_ptr<expr> nested_tuple = t.num("1");
        shared_ptr<expr> nested_lambda = t.num("1");
        for (int i = 0; i < 100000; ++i) {
            sum = mk<application>(m.mk_name<add_decl>(), t.num("1"), sum, -1);
            negation = mk<application>(m.mk_name<not_decl>(), negation, -1);
            shared_ptr<let_decl> d = mk<let_decl>(mk<identifier>(&m, ustring("x"), -1),
                                                  static_cast<type*>(nullptr), nested_let, -1);
            let_decl* ds[] = {d};
            nested_let = mk<let_expr>(ds, 1U, d->create_name_expr(-1), -1);
            expr* components[] = {nested_tuple};
            nested_tuple = mk<tuple_literal>(&m, components, 1U, -1);
            shared_ptr<var_decl> v = mk<var_decl>(mk<identifier>(&m, ustring("x"), -1), t.int_type(), -1);
            nested_lambda = mk<lambda_expr>(v, nested_lambda, -1);
        }
        EXPECT_TRUE(is_a<int_type_name>(sum->get_type()));
        EXPECT_TRUE(is_a<bool_type_name>(negation->get_type()));
        EXPECT_TRUE(is_a<int_type_name>(nested_let->get_type()));
        EXPECT_TRUE(is_a<tuple_type>(nested_tuple->get_type()));
        EXPECT_TRUE(is_a<function_type>(nested_lambda->get_type()));
        shared_ptr<expr> shared = t.num("1");
        shared_ptr<expr> tuples = t.num("1");
        shared_ptr<expr> others = t.num("1/2");
        for (int i = 0; i < 200; ++i) {
            shared = mk<application>(m.mk_name<add_decl>(), shared, shared, -1);
            expr* components[] = {tuples, tuples};
            tuples = mk<tuple_literal>(&m, components, 2U, -1);
            expr* other_components[] = {others, others};
            others = mk<tuple_literal>(&m, other_components, 2U, -1);
        }
        EXPECT_TRUE(shared->is_int());
        type* joined = t.op("ite", {c, tuples, others})->get_type();
        for (int i = 0; i < 200; ++i) joined = static_cast<tuple_type*>(joined)->get_element_type(1);
        EXPECT_TRUE(is_a<real_type_name>(joined));
    });
}

} // namespace
} // namespace vexor
