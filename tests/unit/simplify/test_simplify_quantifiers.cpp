// Quantifiers in normal form.
#include "simplify_fixture.h"

#include "simplify/occurrences.h"
#include "support/small_stack.h"

namespace vexor {
namespace {

using vexor_test::to_text;

class simplify_quantifiers : public simplify_fixture {
protected:
    type* some = [this] {
        t.declare_type("some");
        return t.named_type("some");
    }();
    expr* p = t.constant("p", t.function_type({some}, t.bool_type()));
    expr* r = t.constant("r", t.function_type({some, some}, t.bool_type()));
    expr* a = boolean("a");
    var_decl* x = t.variable("x", some);
    var_decl* y = t.variable("y", some);
    expr* px = t.app(p, {t.use(x)});
    expr* py = t.app(p, {t.use(y)});
    expr* rxy = t.app(r, {t.use(x), t.use(y)});
};

TEST_F(simplify_quantifiers, what_does_not_depend_moves_out) {
    EXPECT_EQ(text(t.forall({x}, t.op("or", {px, a}))), "(or (forall (x::some) (p x)) a)");
    EXPECT_EQ(text(t.exists({x}, t.op("or", {px, a}))), "(or (exists (x::some) (p x)) a)");
    EXPECT_EQ(text(t.exists({x}, t.op("and", {px, a}))), "(not (or (not (exists (x::some) (p x))) (not a)))");
    EXPECT_EQ(text(t.forall({x}, t.op("and", {px, a}))), "(not (or (not (forall (x::some) (p x))) (not a)))");
    EXPECT_EQ(text(t.forall({x, y}, t.op("or", {px, a}))), "(or (forall (x::some) (p x)) a)");
    EXPECT_EQ(text(t.forall({x, y}, t.op("or", {px, py}))), "(forall (x::some y::some) (or (p x) (p y)))");
    EXPECT_EQ(text(t.forall({x}, a)), "a");
    EXPECT_EQ(text(t.exists({x}, t.op("or", {a, t.op("not", {a})}))), "true");
    EXPECT_EQ(text(t.forall({x, y}, py)), "(forall (y::some) (p y))");
    expr* kept = t.forall({x, y}, t.op("or", {px, rxy}));
    EXPECT_EQ(simple(kept), kept);
}

TEST_F(simplify_quantifiers, integers_need_no_predicate) {
    var_decl* i = t.variable("i", t.int_type());
    expr* f = t.constant("f", t.function_type({t.int_type()}, t.bool_type()));
    expr* body = t.app(f, {t.use(i)});
    expr* e = t.forall({i}, t.op("or", {body, a}));
    EXPECT_EQ(text(e), "(or (forall (i::int) (f i)) a)");
    expr* kept = t.exists({i}, body);
    EXPECT_EQ(simple(kept), kept);
}

TEST_F(simplify_quantifiers, subtypes_become_restrictions) {
    expr* f = t.constant("f", t.function_type({t.int_type()}, t.bool_type()));
    var_decl* n = t.variable("n", t.nat_type());
    expr* body = t.app(f, {t.use(n)});
    EXPECT_EQ(text(t.forall({n}, body)), "(forall (n::int) (or (not (>= n 0)) (f n)))");
    EXPECT_EQ(text(t.exists({n}, body)), "(not (forall (n::int) (or (not (>= n 0)) (not (f n)))))");
    // Nothing more is said the second time, wherever the quantifier has got to.
    expr* once = simple(t.forall({n}, body));
    EXPECT_EQ(simple(once), once);
    var_decl* element = t.variable("e", some);
    type* those = t.make<subtype>(element, t.app(p, {t.use(element)}), -1);
    var_decl* z = t.variable("z", those);
    EXPECT_EQ(
        to_text(
            static_cast<binding_expr*>(simple(t.forall({z}, t.app(r, {t.use(z), t.use(z)}))))->get_expr()),
        "(or (not (p z)) (r z z))");
    // ((exists (x::bool) (or (exists (z::those) a) (not x))) holds when there are none of those.
    var_decl* flag = t.variable("flag", t.bool_type());
    expr* moved = simple(t.exists({flag}, t.op("or", {t.exists({z}, a), t.op("not", {t.use(flag)})})));
    EXPECT_EQ(text(moved), to_text(moved));
    // Of a type that may be empty nothing follows.
    EXPECT_NE(text(t.forall({z}, a)), "a");
    EXPECT_NE(text(t.exists({z}, t.mk_true())), "true");
}

TEST_F(simplify_quantifiers, nested_ones_of_the_same_polarity_are_one) {
    EXPECT_EQ(text(t.forall({x}, t.forall({y}, rxy))), "(forall (x::some y::some) (r x y))");
    EXPECT_EQ(text(t.exists({x}, t.exists({y}, rxy))), "(exists (x::some y::some) (r x y))");
    EXPECT_EQ(text(t.forall({x}, t.op("not", {t.exists({y}, rxy)}))),
              "(not (exists (x::some y::some) (r x y)))");
    EXPECT_EQ(text(t.forall({x}, t.op("or", {px, t.forall({y}, rxy)}))),
              "(forall (x::some y::some) (or (p x) (r x y)))");
    EXPECT_EQ(text(t.exists({x}, t.op("and", {px, t.exists({y}, rxy)}))),
              "(not (forall (x::some y::some) (or (not (p x)) (not (r x y)))))");
    EXPECT_EQ(text(t.forall({x}, t.op("or", {px, t.op("not", {t.exists({y}, rxy)})}))),
              "(forall (x::some y::some) (or (p x) (not (r x y))))");
    // The other polarity stays.
    expr* kept = t.forall({x}, t.op("or", {px, t.exists({y}, rxy)}));
    EXPECT_EQ(simple(kept), kept);
    expr* kept_too = t.forall({x}, t.exists({y}, rxy));
    EXPECT_EQ(simple(kept_too), kept_too);
    // Below an equality there is no polarity.
    expr* equal = t.forall({x}, t.op("=", {px, t.forall({y}, rxy)}));
    EXPECT_EQ(simple(equal), equal);
}

TEST_F(simplify_quantifiers, the_same_variable_in_two_quantifiers_becomes_two) {
    // (forall (x) (or (forall (y) (r x y)) (forall (y) (r y x)))): one y for both would say less.
    expr* ryx = t.app(r, {t.use(y), t.use(x)});
    expr* e = simple(t.forall({x}, t.op("or", {t.forall({y}, rxy), t.forall({y}, ryx)})));
    ASSERT_TRUE(e->is_quantified_expr());
    auto* q = static_cast<quantified_expr*>(e);
    ASSERT_EQ(q->num_bindings(), 3u);
    EXPECT_NE(q->get_binding(1), q->get_binding(2));
    // The inner one shadows.
    EXPECT_EQ(text(t.forall({x}, t.forall({x}, px))), "(forall (x::some) (p x))");
    // A free variable with the declaration of a bound one.
    expr* open = simple(t.op("or", {px, t.forall({x}, px)}));
    auto* inner = static_cast<quantified_expr*>(to_app(open)->get_arg(1));
    EXPECT_NE(inner->get_binding(0), x);
}

TEST_F(simplify_quantifiers, a_variable_in_the_type_of_another_one_stays) {
    // (forall (x y::{e | r x e}) (p y))
    var_decl* element = t.variable("e", some);
    type* related = t.make<subtype>(element, t.app(r, {t.use(x), t.use(element)}), -1);
    var_decl* z = t.variable("z", related);
    expr* e = simple(t.forall({x, z}, t.app(p, {t.use(z)})));
    ASSERT_TRUE(e->is_quantified_expr());
    EXPECT_EQ(static_cast<quantified_expr*>(e)->num_bindings(), 2u);
    EXPECT_EQ(to_text(static_cast<quantified_expr*>(e)->get_expr()), "(or (not (r x z)) (p z))");
}

TEST_F(simplify_quantifiers, late_questions_are_answered_safely) {
    occurrences o;
    var_decl* variables[] = {x, y};
    o.set_variables(variables, 2);
    EXPECT_TRUE(o.note(px));
    EXPECT_TRUE(o.has_occurred(x));
    EXPECT_FALSE(o.has_occurred(y));
    expr* big = px;
    for (unsigned i = 0; i < 2 * occurrences::max_late_work; ++i) big = t.op("=", {big, px});
    o.set_variables(variables, 2);
    EXPECT_TRUE(o.note(big));
    EXPECT_FALSE(o.has_occurred(y));
    o.set_work_left(0);
    o.set_variables(variables, 2);
    EXPECT_FALSE(o.note(a));
    EXPECT_TRUE(o.note(big));
    EXPECT_TRUE(o.has_occurred(y));
}

TEST_F(simplify_quantifiers, deep_nests_on_a_small_stack) {
    expr* same = px;
    expr* mixed = px;
    expr* joined = px;
    for (unsigned i = 0; i < 5000; ++i) {
        var_decl* v = t.variable("v", some);
        expr* rv = t.app(r, {t.use(v), t.use(x)});
        if (i < 1000) same = t.forall({v}, i % 4 ? same : t.op("=", {same, rv}));
        joined = t.forall({v}, t.op("or", {rv, joined}));
        if (i < 1000)
            mixed = i % 2 ? t.forall({v}, t.op("or", {rv, mixed})) : t.exists({v}, t.op("and", {rv, mixed}));
    }
    expr* direct = px;
    for (unsigned i = 0; i < 100000; ++i) direct = t.forall({t.variable("v", some)}, direct);
    vexor_test::on_small_stack([&] {
        EXPECT_EQ(text(direct), "(p x)");
        for (expr* e : {same, joined, mixed}) EXPECT_NE(simple(e), nullptr);
    });
}

} // namespace
} // namespace vexor
