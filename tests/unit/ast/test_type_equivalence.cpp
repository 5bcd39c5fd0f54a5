// Equivalent types, largest types, joined types and compatibility.
#include "ast/types/equivalent_types.h"
#include "ast/types/join_types.h"
#include "support/small_stack.h"
#include "support/terms.h"

#include <gtest/gtest.h>

namespace vexor {
namespace {

using vexor_test::terms;
using vexor_test::to_text;

class type_equivalence : public testing::Test {
protected:
    std::string largest(type* a, bool int_only = false) { return to_text(supertype_visitor(int_only)(a)); }
    std::string joined(type* a, type* c) { return to_text(join_types(a, c)); }
    bool equivalent(type* a, type* c) {
        bool result = equivalent_types(a, c);
        EXPECT_EQ(equivalent_types(c, a), result) << "not symmetric";
        // By definition: equal, or with equal largest types.
        supertype_visitor v(false);
        shared_ptr<type> largest_a = v(a);
        shared_ptr<type> largest_c = v(c);
        EXPECT_EQ(a->equals(c) || largest_a->equals(largest_c), result)
            << to_text(a) << " and " << to_text(c);
        return result;
    }

    ast_manager m;
    terms t{m};
    type* i = t.int_type();
    type* r = t.real_type();
    type* b = t.bool_type();
    type* digit = t.subrange(t.num("0"), t.num("9"));
};

TEST_F(type_equivalence, numbers) {
    EXPECT_TRUE(equivalent(i, r));
    EXPECT_TRUE(equivalent(t.nat_type(), r));
    EXPECT_TRUE(equivalent(digit, i));
    EXPECT_TRUE(equivalent(digit, t.subrange(t.num("1"), t.num("5"))));
    EXPECT_FALSE(equivalent(i, b));
    EXPECT_FALSE(equivalent(t.number_type(), r));
    EXPECT_TRUE(equivalent(t.number_type(), t.number_type()));
    EXPECT_FALSE(equivalent(digit, t.bv_type(4)));
}

TEST_F(type_equivalence, bitvectors_and_names) {
    EXPECT_TRUE(equivalent(t.bv_type(8), t.bv_type(8)));
    EXPECT_FALSE(equivalent(t.bv_type(8), t.bv_type(9)));
    type* color = t.declare_scalar("color", 2);
    type* shape = t.declare_scalar("shape", 2);
    EXPECT_TRUE(equivalent(color, t.named_type("color")));
    EXPECT_FALSE(equivalent(color, shape));
    EXPECT_FALSE(equivalent(color, b));
    t.declare_type("u");
    t.declare_type("v");
    EXPECT_TRUE(equivalent(t.named_type("u"), t.named_type("u")));
    EXPECT_FALSE(equivalent(t.named_type("u"), t.named_type("v")));
    t.declare_type("word", t.bv_type(8));
    EXPECT_TRUE(equivalent(t.named_type("word"), t.bv_type(8)));
    t.declare_type("index", digit);
    EXPECT_TRUE(equivalent(t.named_type("index"), r));
    t.declare_type("truth", b);
    EXPECT_TRUE(equivalent(t.named_type("truth"), b));
}

TEST_F(type_equivalence, a_type_and_its_subtypes) {
    var_decl* x = t.variable("x", t.bv_type(8));
    type* odd = t.make<subtype>(x, t.mk_true(), -1);
    EXPECT_TRUE(equivalent(odd, t.bv_type(8)));
    EXPECT_FALSE(equivalent(odd, t.bv_type(7)));
    var_decl* y = t.variable("y", odd);
    EXPECT_TRUE(equivalent(t.make<subtype>(y, t.mk_false(), -1), odd));
    var_decl* pair = t.variable("pair", t.tuple_type({i, b}));
    EXPECT_TRUE(equivalent(t.make<subtype>(pair, t.mk_true(), -1), t.tuple_type({r, b})));
}

TEST_F(type_equivalence, structures) {
    EXPECT_TRUE(equivalent(t.tuple_type({i, b}), t.tuple_type({r, b})));
    EXPECT_FALSE(equivalent(t.tuple_type({i, b}), t.tuple_type({b, i})));
    EXPECT_FALSE(equivalent(t.tuple_type({i, b}), t.tuple_type({i, b, b})));
    EXPECT_FALSE(equivalent(t.tuple_type({i}), i));
    EXPECT_TRUE(equivalent(t.record_type({{"a", i}, {"b", b}}), t.record_type({{"b", b}, {"a", digit}})));
    EXPECT_FALSE(equivalent(t.record_type({{"a", i}}), t.record_type({{"b", i}})));
    EXPECT_TRUE(equivalent(t.function_type({i}, r), t.function_type({r}, i)));
    EXPECT_FALSE(equivalent(t.function_type({i}, r), t.function_type({i, i}, r)));
    // Names of parameters do not matter.
    var_decl* x = t.variable("x", i);
    EXPECT_TRUE(equivalent(t.make<function_type>(x, b, -1), t.function_type({i}, b)));
    // Nested.
    type* deep = t.function_type({t.tuple_type({digit, b})}, t.record_type({{"f", t.function_type({i}, i)}}));
    type* wide = t.function_type({t.tuple_type({r, b})}, t.record_type({{"f", t.function_type({r}, r)}}));
    EXPECT_TRUE(equivalent(deep, wide));
}

TEST_F(type_equivalence, largest_types) {
    EXPECT_EQ(largest(i), "real");
    EXPECT_EQ(largest(i, true), "int");
    EXPECT_EQ(largest(t.nat_type()), "real");
    EXPECT_EQ(largest(t.nat_type(), true), "int");
    EXPECT_EQ(largest(digit), "real");
    EXPECT_EQ(largest(digit, true), "int");
    EXPECT_EQ(largest(r, true), "real");
    EXPECT_EQ(largest(t.number_type()), "number");
    EXPECT_EQ(largest(b), "bool");
    EXPECT_EQ(largest(t.bv_type(3)), "(bitvector 3)");
    EXPECT_EQ(largest(t.tuple_type({i, t.tuple_type({digit, b})})), "(tuple real (tuple real bool))");
    EXPECT_EQ(largest(t.function_type({i}, digit), true), "(-> int int)");
    EXPECT_EQ(largest(t.record_type({{"b", i}, {"a", b}})), "(record a::bool b::real)");
    type* color = t.declare_scalar("color", 2);
    EXPECT_EQ(largest(color), "color");
    t.declare_type("pair", t.tuple_type({i, color}));
    EXPECT_EQ(largest(t.named_type("pair")), "(tuple real color)");
    // Unchanged types are not rebuilt.
    type* unchanged = t.tuple_type({b, r});
    EXPECT_EQ(supertype_visitor(false)(unchanged).get(), unchanged);
}

TEST_F(type_equivalence, joined_types_have_the_values_of_both) {
    EXPECT_EQ(joined(i, i), "int");
    EXPECT_EQ(joined(i, r), "real");
    EXPECT_EQ(joined(r, i), "real");
    EXPECT_EQ(joined(digit, digit), "(subrange 0 9)");
    EXPECT_EQ(joined(digit, t.nat_type()), "int");
    EXPECT_EQ(joined(t.number_type(), r), "number");
    EXPECT_EQ(joined(t.tuple_type({i, digit}), t.tuple_type({i, r})), "(tuple int real)");
    type* pair = t.tuple_type({i, i});
    EXPECT_EQ(join_types(pair, t.tuple_type({i, i})).get(), pair);
    EXPECT_EQ(joined(t.function_type({i}, i), t.function_type({i}, r)), "(-> int real)");
    EXPECT_EQ(joined(t.function_type({t.nat_type()}, i), t.function_type({i}, i)), "(-> int int)");
    // Domains that differ: the largest type.
    EXPECT_EQ(joined(t.function_type({i}, i), t.function_type({r}, i)), "(-> real real)");
    EXPECT_EQ(joined(t.bv_type(4), t.make<subtype>(t.variable("x", t.bv_type(4)), t.mk_true(), -1)),
              "(bitvector 4)");
}

TEST_F(type_equivalence, joining_dependent_types_drops_the_dependency) {
    var_decl* first = t.variable("first", i);
    var_decl* second = t.variable("second", t.subrange(t.num("0"), t.use(first)));
    var_decl* elements[] = {first, second};
    type* dependent = t.make<tuple_type>(&m, elements, 2U, -1);
    EXPECT_EQ(joined(dependent, t.tuple_type({i, r})), "(tuple first::int second::real)");
    EXPECT_EQ(joined(dependent, t.tuple_type({i, i})), "(tuple first::int second::int)");
    EXPECT_EQ(join_types(dependent, dependent).get(), dependent);
    var_decl* n = t.variable("n", t.nat_type());
    type* f = t.make<function_type>(n, t.subrange(t.num("0"), t.use(n)), -1);
    EXPECT_EQ(joined(f, t.function_type({i}, i)), "(-> n::int int)");
    EXPECT_TRUE(equivalent(dependent, t.tuple_type({r, i})));
}

TEST_F(type_equivalence, compatibility) {
    auto compatible = [](type* a, type* c) { return compatible_type_visitor()(a, c); };
    EXPECT_TRUE(compatible(i, r));
    EXPECT_TRUE(compatible(r, t.number_type()));
    EXPECT_TRUE(compatible(digit, i));
    EXPECT_FALSE(compatible(i, b));
    EXPECT_TRUE(compatible(t.function_type({i}, digit), t.function_type({i}, r)));
    EXPECT_TRUE(compatible(t.tuple_type({i, b}), t.tuple_type({r, b})));
    EXPECT_FALSE(compatible(t.tuple_type({i, b}), t.tuple_type({r, r})));
    EXPECT_FALSE(compatible(t.bv_type(3), t.bv_type(4)));
}

TEST_F(type_equivalence, deep_and_shared_types) {
    vexor_test::on_small_stack([this] {
        auto nest = [&](type* core, int levels) {
            shared_ptr<type> result = core;
            for (int k = 0; k < levels; ++k) result = function_type::construct_unary(i, result, -1);
            return result;
        };
        shared_ptr<type> a = nest(i, 100000);
        shared_ptr<type> c = nest(r, 100000);
        shared_ptr<type> d = nest(b, 100000);
        EXPECT_TRUE(equivalent_types(a, c));
        EXPECT_FALSE(equivalent_types(a, d));
        shared_ptr<type> joined_type = join_types(a, c);
        EXPECT_TRUE(is_a<function_type>(joined_type));
        auto share = [&](type* core) {
            shared_ptr<type> result = core;
            for (int k = 0; k < 200; ++k) result = function_type::construct_unary(result, result, -1);
            return result;
        };
        shared_ptr<type> e = share(i);
        shared_ptr<type> f = share(r);
        EXPECT_TRUE(equivalent_types(e, f));
        shared_ptr<type> g = share(b);
        EXPECT_FALSE(equivalent_types(e, g));
        EXPECT_TRUE(compatible_type_visitor()(e, f));
    });
}

} // namespace
} // namespace vexor
