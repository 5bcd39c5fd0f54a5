// Membership in a type as a formula.
#include "ast/types/type_checker.h"
#include "ast/types/type_pred_visitor.h"
#include "support/small_stack.h"
#include "support/terms.h"

#include <gtest/gtest.h>

namespace vexor {
namespace {

using vexor_test::terms;
using vexor_test::to_text;

class type_pred : public testing::Test {
protected:
    // The predicate as text, "none" for null.
    std::string pred(type* a, expr* element) {
        type_pred_visitor v(false);
        shared_ptr<expr> result = v(a, element);
        return result.get() == nullptr ? "none" : to_text(result);
    }

    ast_manager m;
    terms t{m};
    expr* e = t.constant("e", t.number_type());
    type* digit = t.subrange(t.num("0"), t.num("9"));
};

TEST_F(type_pred, numbers) {
    EXPECT_EQ(pred(t.int_type(), e), "(int_pred e)");
    EXPECT_EQ(pred(t.nat_type(), e), "(and (int_pred e) (>= e 0))");
    EXPECT_EQ(pred(t.real_type(), e), "none");
    EXPECT_EQ(pred(t.number_type(), e), "none");
    std::string range = pred(digit, e);
    EXPECT_EQ(range.substr(0, 19), "(and (int_pred e) (") << range;
    EXPECT_NE(range.find("0"), std::string::npos);
    EXPECT_NE(range.find("9"), std::string::npos);
}

// Quantifiers over integers stay bare.
TEST_F(type_pred, integers_are_no_restriction_on_integers) {
    expr* i = t.constant("i", t.int_type());
    EXPECT_EQ(pred(t.int_type(), i), "none");
    EXPECT_EQ(pred(t.nat_type(), i), "(>= i 0)");
    EXPECT_EQ(pred(digit, i).find("int_pred"), std::string::npos);
}

TEST_F(type_pred, types_that_say_nothing) {
    EXPECT_EQ(pred(t.bool_type(), e), "none");
    EXPECT_EQ(pred(t.bv_type(8), e), "none");
    EXPECT_EQ(pred(t.declare_scalar("color", 2), e), "none");
    t.declare_type("u");
    EXPECT_EQ(pred(t.named_type("u"), e), "none");
    EXPECT_EQ(pred(t.tuple_type({t.real_type(), t.bool_type()}), e), "none");
    EXPECT_EQ(pred(t.record_type({{"a", t.real_type()}}), e), "none");
    EXPECT_EQ(pred(t.function_type({t.int_type()}, t.real_type()), e), "none");
}

TEST_F(type_pred, subtypes_and_names) {
    var_decl* x = t.variable("x", t.int_type());
    type* odd = t.make<subtype>(x, t.op("/=", {t.use(x), t.num("2")}), -1);
    EXPECT_EQ(pred(odd, e), "(and (int_pred e) (/= e 2))");
    var_decl* y = t.variable("y", odd);
    type* odd_and_small = t.make<subtype>(y, t.op("<", {t.use(y), t.num("5")}), -1);
    EXPECT_EQ(pred(odd_and_small, e), "(and (and (int_pred e) (/= e 2)) (< e 5))");
    t.declare_type("odd", odd);
    EXPECT_EQ(pred(t.named_type("odd"), e), "(and (int_pred e) (/= e 2))");
    var_decl* b = t.variable("b", t.bool_type());
    EXPECT_EQ(pred(t.make<subtype>(b, t.use(b), -1), e), "e");
}

TEST_F(type_pred, components) {
    EXPECT_EQ(pred(t.tuple_type({t.int_type(), t.bool_type(), t.int_type()}), e),
              "(and (int_pred (select e 0)) (int_pred (select e 2)))");
    EXPECT_EQ(pred(t.record_type({{"b", t.int_type()}, {"a", t.int_type()}}), e),
              "(and (int_pred (select e a)) (int_pred (select e b)))");
    EXPECT_EQ(pred(t.tuple_type({t.tuple_type({t.int_type()})}), e), "(int_pred (select (select e 0) 0))");
    // Dependent components speak of the components of e.
    var_decl* first = t.variable("first", t.real_type());
    var_decl* z = t.variable("z", t.real_type());
    type* below = t.make<subtype>(z, t.op("<", {t.use(z), t.use(first)}), -1);
    var_decl* second = t.variable("second", below);
    var_decl* elements[] = {first, second};
    EXPECT_EQ(pred(t.make<tuple_type>(&m, elements, 2U, -1), e), "(< (select e 1) (select e 0))");
}

TEST_F(type_pred, functions) {
    var_decl* x = t.variable("x", t.real_type());
    EXPECT_EQ(pred(t.make<function_type>(x, t.int_type(), -1), e), "(forall (x::real) (int_pred (e x)))");
    var_decl* n = t.variable("n", t.int_type());
    EXPECT_EQ(pred(t.make<function_type>(n, t.int_type(), -1), e), "(forall (n::int) (int_pred (e n)))");
    // The range depends on the argument.
    var_decl* z = t.variable("z", t.real_type());
    type* below = t.make<subtype>(z, t.op("<", {t.use(z), t.use(x)}), -1);
    EXPECT_EQ(pred(t.make<function_type>(x, below, -1), e), "(forall (x::real) (< (e x) x))");
    // Without names in the type, the variables get generated ones.
    type_pred_visitor v(false);
    shared_ptr<expr> result = v(t.function_type({t.real_type(), t.real_type()}, t.int_type()), e);
    ASSERT_TRUE(is_a<forall_expr>(result));
    auto* q = static_cast<forall_expr*>(result.get());
    ASSERT_EQ(q->num_bindings(), 2U);
    EXPECT_TRUE(q->get_binding(0)->is_aux());
    EXPECT_FALSE(q->get_binding(0)->get_name() == q->get_binding(1)->get_name());
    EXPECT_FALSE(result->has_free_vars());
}

TEST_F(type_pred, quantifiers) {
    var_decl* n = t.variable("n", t.int_type());
    var_decl* x = t.variable("x", t.real_type());
    expr* body = t.op("<", {t.use(n), t.use(x)});
    type_pred_visitor v(false);
    auto restricted = [&](expr* q) { return to_text(v(static_cast<quantified_expr*>(q))); };
    EXPECT_EQ(restricted(t.forall({n, x}, body)), "(forall (n::int x::real) (< n x))");
    EXPECT_EQ(restricted(t.exists({n, x}, body)), "(exists (n::int x::real) (< n x))");
    expr* unchanged = t.forall({x}, t.op("<", {t.use(x), t.use(x)}));
    EXPECT_EQ(v(static_cast<quantified_expr*>(unchanged)).get(), unchanged);
    EXPECT_EQ(restricted(t.forall({n, t.variable("k", t.int_type())}, t.mk_true())),
              "(forall (n::int k::int) true)");
}

TEST_F(type_pred, an_environment_replaces_variables_of_the_type) {
    var_decl* bound = t.variable("bound", t.real_type());
    var_decl* z = t.variable("z", t.real_type());
    type* below = t.make<subtype>(z, t.op("<", {t.use(z), t.use(bound)}), -1);
    var_env env;
    env.bind(bound, shared_ptr<ast>(t.num("7")));
    type_pred_visitor v(false, &env);
    EXPECT_EQ(to_text(v(below, e)), "(< e 7)");
}

TEST_F(type_pred, builders_skip_null) {
    expr* p = t.constant("p", t.bool_type());
    EXPECT_EQ(mk_and(nullptr, nullptr).get(), nullptr);
    EXPECT_EQ(mk_and(p, nullptr).get(), p);
    EXPECT_EQ(mk_and(nullptr, p).get(), p);
    EXPECT_EQ(to_text(mk_and(p, p)), "(and p p)");
    EXPECT_EQ(mk_implies(p, nullptr).get(), nullptr);
    EXPECT_EQ(mk_implies(nullptr, p).get(), p);
    EXPECT_EQ(to_text(mk_implies(p, p)), "(=> p p)");
}

TEST_F(type_pred, the_predicates_are_well_typed) {
    expr* f =
        t.constant("f", t.function_type({t.int_type(), digit}, t.tuple_type({t.nat_type(), t.int_type()})));
    type_pred_visitor v(false);
    shared_ptr<expr> result = v(f->get_type(), f);
    ASSERT_NE(result.get(), nullptr);
    type_check(result);
    EXPECT_TRUE(result->is_boolean());
}

TEST_F(type_pred, deep_types_and_types_of_many_paths) {
    vexor_test::on_small_stack([this] {
        shared_ptr<type> deep = t.int_type();
        for (int k = 0; k < 100000; ++k) {
            var_decl* vs[] = {t.make<var_decl>(static_cast<identifier*>(nullptr), deep, -1)};
            deep = mk<tuple_type>(&m, vs, 1U, -1);
        }
        type_pred_visitor v(false);
        EXPECT_TRUE(is_app_of<int_pred_name_expr>(v(deep, e).get()));
        // A function of a function of ...: below each there are the predicates of its argument.
        shared_ptr<type> left = t.int_type();
        shared_ptr<type> right = t.int_type();
        for (int k = 0; k < 20000; ++k) {
            left = function_type::construct_unary(left, t.int_type(), -1);
            right = function_type::construct_unary(t.int_type(), right, -1);
        }
        shared_ptr<expr> left_pred = v(left, e);
        EXPECT_TRUE(is_a<forall_expr>(left_pred));
        shared_ptr<expr> right_pred = v(right, e);
        EXPECT_TRUE(is_a<forall_expr>(right_pred));
        shared_ptr<type> shared = t.real_type();
        for (int k = 0; k < 200; ++k) {
            type* both = shared;
            var_decl* vs[] = {t.make<var_decl>(static_cast<identifier*>(nullptr), both, -1),
                              t.make<var_decl>(static_cast<identifier*>(nullptr), both, -1)};
            shared = mk<tuple_type>(&m, vs, 2U, -1);
        }
        EXPECT_EQ(v(shared, e).get(), nullptr);
    });
}

} // namespace
} // namespace vexor
