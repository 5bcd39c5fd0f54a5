// Lambdas, definitions of functions, updated functions.
#include "simplify_fixture.h"

#include "ast/visit/num_nodes_visitor.h"
#include "support/small_stack.h"

namespace vexor {
namespace {

using vexor_test::to_text;

class simplify_functions : public simplify_fixture {
protected:
    type* boolean_type = t.bool_type();
    type* colour = t.declare_scalar("colour", 3);
    type* from_colour = t.function_type({colour}, boolean_type);
    expr* a = boolean("a");
    expr* b = boolean("b");
    expr* x = t.constant("x", colour);
    expr* y = t.constant("y", colour);
    expr* f = t.constant("f", from_colour);
    expr* colour0 = t.name("colour0");
    expr* colour1 = t.name("colour1");
};

TEST_F(simplify_functions, a_lambda_is_applied) {
    var_decl* u = t.variable("u", colour);
    var_decl* v = t.variable("v", boolean_type);
    expr* fun = t.lambda({u, v}, t.op("or", {t.app(f, {t.use(u)}), t.use(v), t.app(f, {t.use(u)})}));
    EXPECT_EQ(text(t.app(fun, {x, a})), "(or (f x) a)");
    EXPECT_EQ(text(t.app(fun, {x, t.mk_true()})), "true");
    // Not applied, a lambda stays and its body is simplified.
    EXPECT_EQ(text(t.op("=", {fun, t.constant("g", fun->get_type())})),
              "(= (lambda (u::colour v::bool) (or (f u) v)) g)");
    // A wrong number of arguments is left to the type checker.
    EXPECT_EQ(text(t.app(fun, {x})), "((lambda (u::colour v::bool) (or (f u) v)) x)");
}

TEST_F(simplify_functions, arguments_are_not_captured) {
    var_decl* u = t.variable("u", colour);
    var_decl* v = t.variable("v", colour);
    // (lambda (u) (lambda (v) (= u v))) applied to a free v, by its own declaration.
    expr* inner = t.lambda({v}, t.op("=", {t.use(u), t.use(v)}));
    expr* applied = t.app(t.lambda({u}, inner), {t.use(v)});
    expr* e = t.forall({v}, t.app(applied, {x}));
    EXPECT_EQ(text(e), "(forall (v::colour) (= v x))");
    // A variable that has another value where a lambda is used than where it was made.
    let_decl* h = t.let_variable("h", nullptr, t.lambda({v}, t.op("=", {t.use(u), t.use(v)})));
    expr* again = t.app(t.lambda({u}, t.app(t.use(h), {t.use(u)})), {x});
    EXPECT_EQ(text(t.forall({u}, t.let({h}, again))), "(forall (u::colour) (= u x))");
}

TEST_F(simplify_functions, a_choice_of_functions_is_applied) {
    var_decl* u = t.variable("u", colour);
    expr* always = t.lambda({u}, t.mk_true());
    expr* same = t.lambda({t.variable("v", colour)}, t.op("=", {t.use(u), x}));
    EXPECT_EQ(text(t.app(t.op("ite", {a, always, f}), {x})), "(or a (f x))");
    EXPECT_EQ(text(t.app(t.op("ite", {a, f, t.constant("g", from_colour)}), {x})), "(ite a (f x) (g x))");
    // A function with a free variable.
    EXPECT_EQ(text(t.forall({u}, t.app(t.op("ite", {a, f, same}), {y}))),
              "(forall (u::colour) (ite a (f y) (= u x)))");
    // 2^60 ways through 60 choices, each of which is met once.
    expr* choice = f;
    for (int i = 0; i < 60; ++i)
        choice =
            t.op("ite", {boolean(("c" + std::to_string(i)).c_str()), choice, t.op("ite", {a, f, choice})});
    num_nodes_visitor counter;
    counter.accumulate(simple(t.app(choice, {x})));
    EXPECT_LT(counter.get_num_nodes(), 1000u);
}

TEST_F(simplify_functions, defined_functions_are_applied) {
    var_decl* u = t.variable("u", colour);
    type* predicate = t.function_type({colour}, boolean_type);
    define("same", predicate, t.lambda({u}, t.op("or", {t.app(f, {t.use(u)}), t.op("=", {t.use(u), x})})));
    EXPECT_EQ(text(t.app(t.name("same"), {x})), "true");
    EXPECT_EQ(text(t.app(t.name("same"), {y})), "(or (f y) (= y x))");
    define("alias", predicate, t.name("same"));
    EXPECT_EQ(text(t.app(t.name("alias"), {y})), "(or (f y) (= y x))");
    define("renamed", predicate, t.name("f"));
    EXPECT_EQ(text(t.app(t.name("renamed"), {y})), "(f y)");
    // As an argument of a function on functions.
    var_decl* p = t.variable("p", predicate);
    expr* twice = t.lambda({p}, t.op("and", {t.app(t.use(p), {x}), t.app(t.use(p), {y})}));
    EXPECT_EQ(text(t.app(twice, {t.name("same")})), "(or (f y) (= y x))");
    EXPECT_EQ(text(t.app(twice, {t.name("f")})), "(not (or (not (f x)) (not (f y))))");
}

TEST_F(simplify_functions, chains_of_definitions_with_one_call_are_linear) {
    type* predicate = t.function_type({boolean_type}, boolean_type);
    expr* last = t.constant("g", predicate);
    for (unsigned i = 0; i < 2000; ++i) {
        var_decl* u = t.variable("u", boolean_type);
        last = define(("d" + std::to_string(i)).c_str(), predicate,
                      t.lambda({u}, t.app(last, {t.op("ite", {t.use(u), a, b})})));
    }
    std::size_t before = m.num_live_nodes();
    simple(t.app(last, {a}));
    EXPECT_LT(m.num_live_nodes() - before, 20000u);
}

TEST_F(simplify_functions, the_same_call_is_made_once) {
    // d(u) = (= (d' (not u)) (d' (not u))), sixty deep: 2^60 calls, were they all made.
    type* predicate = t.function_type({boolean_type}, boolean_type);
    expr* last = t.constant("g", predicate);
    for (unsigned i = 0; i < 60; ++i) {
        var_decl* u = t.variable("u", boolean_type);
        auto call = [&] { return t.app(last, {t.op("=", {b, t.use(u)})}); };
        last = define(("d" + std::to_string(i)).c_str(), predicate,
                      t.lambda({u}, t.op("ite", {a, call(), t.op("not", {call()})})));
    }
    EXPECT_NE(simple(t.app(last, {a})), nullptr);
    // Under a quantifier, too.
    var_decl* v = t.variable("v", boolean_type);
    EXPECT_NE(simple(t.forall({v}, t.app(last, {t.use(v)}))), nullptr);
}

TEST_F(simplify_functions, a_call_of_a_call_inside_of_a_call_is_visited_once) {
    // ((lambda (u) ((lambda (u) ...) u)) u), thirty levels: visiting a body twice would take 2^30 steps.
    var_decl* u = t.variable("u", boolean_type);
    expr* body = t.op("=", {t.use(u), b});
    for (unsigned i = 0; i < 1000; ++i) {
        var_decl* outer = t.variable("u", boolean_type);
        body = t.app(t.lambda({u}, body), {t.op("not", {t.use(outer)})});
        u = outer;
    }
    EXPECT_EQ(text(t.app(t.lambda({u}, body), {a})), "(= a b)");
}

TEST_F(simplify_functions, updates_are_read) {
    expr* changed = t.update(f, {x}, a);
    EXPECT_EQ(text(t.app(changed, {x})), "a");
    EXPECT_EQ(text(t.app(changed, {y})), "(ite (= x y) a (f y))");
    EXPECT_EQ(text(t.app(t.update(f, {colour0}, a), {colour1})), "(f colour1)");
    EXPECT_EQ(text(t.app(t.update(f, {colour0}, a), {colour0})), "a");
    EXPECT_EQ(text(t.app(t.update(t.update(f, {x}, a), {y}, b), {colour0})),
              "(ite (= y colour0) b (ite (= x colour0) a (f colour0)))");
    EXPECT_EQ(text(t.app(t.update(f, {x}, t.mk_true()), {y})), "(or (= x y) (f y))");
    // Not read, an update stays.
    EXPECT_EQ(text(t.op("=", {t.update(f, {x}, t.op("not", {t.mk_true()})), f})),
              "(= (update f (x) false) f)");
    // Two positions.
    expr* g = t.constant("g", t.function_type({colour, boolean_type}, boolean_type));
    EXPECT_EQ(text(t.app(t.update(g, {x, a}, b), {x, t.mk_true()})), "(ite a b (g x true))");
    EXPECT_EQ(text(t.app(t.update(g, {x, a}, b), {y, b})),
              "(ite (or (not (= x y)) (not (= a b))) (g y b) b)");
    // The function under the update is a lambda.
    var_decl* u = t.variable("u", colour);
    expr* fun = t.lambda({u}, t.op("=", {t.use(u), colour0}));
    EXPECT_EQ(text(t.app(t.update(fun, {x}, a), {colour0})), "(or (not (= x colour0)) a)");
}

TEST_F(simplify_functions, long_chains_of_updates_are_read_on_a_small_stack) {
    expr* chain = f;
    for (unsigned i = 0; i < 50000; ++i) chain = t.update(chain, {i % 2 ? x : y}, a);
    vexor_test::on_small_stack([&] {
        expr* read = simple(t.app(chain, {colour0}));
        unsigned choices = 0;
        for (expr* e = read; is_app_of<ite_name_expr>(e); e = to_app(e)->get_arg(2)) ++choices;
        EXPECT_EQ(choices, 50000u);
        expr* lambdas = a;
        for (unsigned i = 0; i < 50000; ++i) {
            var_decl* u = t.variable("u", boolean_type);
            lambdas = t.app(t.lambda({u}, t.op("=", {t.use(u), b})), {lambdas});
        }
        expr* chained = simple(lambdas);
        for (unsigned i = 0; i < 50000; ++i) chained = to_app(chained)->get_arg(0);
        EXPECT_EQ(chained, a);
    });
}

} // namespace
} // namespace vexor
