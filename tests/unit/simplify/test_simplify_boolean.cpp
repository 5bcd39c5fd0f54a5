// Boolean structure, if-then-else, equality, names and lets.
#include "simplify_fixture.h"

#include "ast/visit/for_each_visitor.h"
#include "base/diagnostics.h"
#include "simplify/hash_consing_visitor.h"
#include "support/small_stack.h"

#include <chrono>
#include <iostream>
#include <sstream>

namespace vexor {
namespace {

using vexor_test::random_stream;
using vexor_test::term_evaluator;
using vexor_test::to_text;

class simplify_boolean : public simplify_fixture {
protected:
    expr* a = boolean("a");
    expr* b = boolean("b");
    expr* c = boolean("c");
    expr* not_a = t.op("not", {a});
};

TEST_F(simplify_boolean, disjunctions_lose_constants_and_duplicates) {
    EXPECT_EQ(text(t.op("or", {a, b, t.name("a")})), "(or a b)");
    EXPECT_EQ(text(t.op("or", {a, t.mk_false(), b})), "(or a b)");
    EXPECT_EQ(text(t.op("or", {a, t.mk_true(), b})), "true");
    EXPECT_EQ(text(t.op("or", {a, not_a})), "true");
    EXPECT_EQ(text(t.op("or", {not_a, b, t.name("a")})), "true");
    EXPECT_EQ(text(t.op("or", {t.mk_false()})), "false");
    EXPECT_EQ(text(t.op("or", {a})), "a");
}

TEST_F(simplify_boolean, connectives_become_flat_disjunctions) {
    EXPECT_EQ(text(t.op("and", {a, b})), "(not (or (not a) (not b)))");
    EXPECT_EQ(text(t.op("and", {a, t.op("and", {b, c})})), "(not (or (not a) (not b) (not c)))");
    EXPECT_EQ(text(t.op("and", {a})), "a");
    EXPECT_EQ(text(t.op("and", {a, not_a})), "false");
    EXPECT_EQ(text(t.op("and", {a, t.mk_true()})), "a");
    EXPECT_EQ(text(t.op("and", {t.mk_true()})), "true");
    EXPECT_EQ(text(t.op("implies", {a, b})), "(or (not a) b)");
    EXPECT_EQ(text(t.op("implies", {t.op("and", {a, b}), c})), "(or (not a) (not b) c)");
    EXPECT_EQ(text(t.op("implies", {a, t.op("implies", {b, c})})), "(or (not a) (not b) c)");
    EXPECT_EQ(text(t.op("implies", {a, a})), "true");
    EXPECT_EQ(text(t.op("or", {a, t.op("or", {b, t.op("not", {t.op("and", {a, c})})})})), "true");
    // A conjunction below a disjunction is a disjunct of its own.
    EXPECT_EQ(text(t.op("or", {a, t.op("and", {b, c})})), "(or a (not (or (not b) (not c))))");
    EXPECT_EQ(text(t.op("and", {a, t.op("or", {b, c})})), "(not (or (not a) (not (or b c))))");
}

TEST_F(simplify_boolean, negations_fall_in_pairs) {
    EXPECT_EQ(text(t.op("not", {not_a})), "a");
    EXPECT_EQ(text(t.op("not", {t.op("not", {not_a})})), "(not a)");
    EXPECT_EQ(text(t.op("not", {t.mk_true()})), "false");
    EXPECT_EQ(text(t.op("and", {t.op("/=", {a, b}), c})), "(not (or (= a b) (not c)))");
    EXPECT_EQ(simple(not_a), not_a);
}

TEST_F(simplify_boolean, what_does_not_change_stays_the_same_node) {
    expr* e = t.op("or", {not_a, t.op("ite", {a, b, c}), t.op("=", {b, c})});
    EXPECT_EQ(simple(e), e);
    EXPECT_EQ(simple(a), a);
    EXPECT_EQ(simple(t.mk_true()), t.mk_true());
}

TEST_F(simplify_boolean, choices) {
    expr* yes = t.mk_true();
    expr* no = t.mk_false();
    EXPECT_EQ(text(t.op("ite", {c, yes, no})), "c");
    EXPECT_EQ(text(t.op("ite", {c, no, yes})), "(not c)");
    EXPECT_EQ(text(t.op("ite", {yes, a, b})), "a");
    EXPECT_EQ(text(t.op("ite", {no, a, b})), "b");
    EXPECT_EQ(text(t.op("ite", {c, a, t.name("a")})), "a");
    EXPECT_EQ(text(t.op("ite", {c, yes, a})), "(or c a)");
    EXPECT_EQ(text(t.op("ite", {c, no, a})), "(not (or c (not a)))");
    EXPECT_EQ(text(t.op("ite", {c, a, yes})), "(or (not c) a)");
    EXPECT_EQ(text(t.op("ite", {c, a, no})), "(not (or (not c) (not a)))");
    EXPECT_EQ(text(t.op("ite", {t.op("not", {c}), a, b})), "(ite c b a)");
    EXPECT_EQ(text(t.op("ite", {t.op("and", {a, b}), a, b})), "(ite (or (not a) (not b)) b a)");
    EXPECT_EQ(text(t.op("ite", {c, a, b})), "(ite c a b)");
}

TEST_F(simplify_boolean, equalities) {
    EXPECT_EQ(text(t.op("=", {a, t.name("a")})), "true");
    EXPECT_EQ(text(t.op("=", {a, t.mk_true()})), "a");
    EXPECT_EQ(text(t.op("=", {t.mk_false(), a})), "(not a)");
    EXPECT_EQ(text(t.op("=", {t.mk_false(), t.mk_true()})), "false");
    EXPECT_EQ(text(t.op("/=", {a, b})), "(not (= a b))");
    EXPECT_EQ(text(t.op("/=", {a, t.mk_false()})), "a");
    t.declare_scalar("colour", 3);
    expr* x = t.constant("x", t.named_type("colour"));
    EXPECT_EQ(text(t.op("=", {t.name("colour0"), t.name("colour1")})), "false");
    EXPECT_EQ(text(t.op("=", {t.name("colour2"), t.name("colour2")})), "true");
    EXPECT_EQ(text(t.op("=", {x, t.name("colour2")})), "(= x colour2)");
}

TEST_F(simplify_boolean, lets_and_definitions_are_put_in) {
    let_decl* x = t.let_variable("x", nullptr, t.op("and", {a, b}));
    let_decl* y = t.let_variable("y", nullptr, t.op("or", {t.op("not", {t.use(x)}), c}));
    EXPECT_EQ(text(t.let({x, y}, t.op("or", {t.use(y), t.use(y)}))), "(or (not a) (not b) c)");
    expr* d = define("d", t.bool_type(), t.op("implies", {a, b}));
    EXPECT_EQ(text(d), "(or (not a) b)");
    EXPECT_EQ(text(t.op("or", {c, t.name("d")})), "(or c (not a) b)");
    define("d2", t.bool_type(), t.op("not", {t.name("d")}));
    EXPECT_EQ(text(t.op("not", {t.name("d2")})), "(or (not a) b)");
}

TEST_F(simplify_boolean, constants_of_arithmetic_are_folded) {
    EXPECT_EQ(text(t.op("<", {t.num("1"), t.num("2")})), "true");
    EXPECT_EQ(text(t.op("<=", {t.op("+", {t.num("1"), t.num("1/2")}), t.num("1")})), "false");
    EXPECT_EQ(text(t.op("=", {t.op("/", {t.num("1"), t.num("2")}), t.num("1/2")})), "true");
    EXPECT_EQ(text(t.op("/=", {t.op("-", {t.num("7")}), t.num("7")})), "true");
    EXPECT_THROW(simple(t.op("=", {t.op("/", {t.num("1"), t.num("0")}), t.num("1")})),
                 division_by_zero_exception);
    expr* x = t.constant("x", t.int_type());
    EXPECT_THROW(simple(t.op("<", {t.op("/", {x, t.op("-", {t.num("1"), t.num("1")})}), x})),
                 division_by_zero_exception);
}

// --- Recursive definitions.

TEST_F(simplify_boolean, a_recursive_definition_unfolds_thirty_times) {
    type* of = t.function_type({t.bool_type()}, t.bool_type());
    const_decl* f = t.make<const_decl>(t.id("f"), of, -1);
    m.add_global_const_decl(f, true);
    var_decl* x = t.variable("x", t.bool_type());
    // f x = (ite x a (f (not x))) ends by itself; g x = (or (p x) (g x)) does not.
    f->set_definition(t.lambda({x}, t.op("ite", {t.use(x), a, t.app(t.use(f), {t.op("not", {t.use(x)})})})));
    EXPECT_EQ(text(t.app(t.use(f), {t.mk_false()})), "a");
    const_decl* g = t.make<const_decl>(t.id("g"), of, -1);
    m.add_global_const_decl(g, true);
    var_decl* y = t.variable("y", t.bool_type());
    g->set_definition(t.lambda({y}, t.op("=", {a, t.app(t.use(g), {t.use(y)})})));
    std::string unfolded = text(t.app(t.use(g), {b}));
    EXPECT_EQ(std::count(unfolded.begin(), unfolded.end(), '='), 30);
    EXPECT_NE(unfolded.find("(g b)"), std::string::npos);
    f->set_definition(nullptr);
    g->set_definition(nullptr);
}

TEST_F(simplify_boolean, unfoldings_are_bounded_in_number) {
    type* of = t.function_type({t.bool_type()}, t.bool_type());
    const_decl* f = t.make<const_decl>(t.id("f"), of, -1);
    m.add_global_const_decl(f, true);
    var_decl* x = t.variable("x", t.bool_type());
    expr* call1 = t.app(t.use(f), {t.op("not", {t.use(x)})});
    expr* call2 = t.app(t.use(f), {t.use(x)});
    f->set_definition(t.lambda({x}, t.op("=", {call1, call2})));
    try {
        simple(t.app(t.use(f), {b}));
        FAIL() << "no exception";
    } catch (feature_not_implemented_exception const& ex) {
        EXPECT_EQ(ex.get_text(), "too many calls of recursive functions");
    }
    f->set_definition(nullptr);
}

TEST_F(simplify_boolean, a_constant_defined_by_itself_is_refused) {
    const_decl* d = t.make<const_decl>(t.id("d"), t.bool_type(), -1);
    m.add_global_const_decl(d, true);
    d->set_definition(t.op("or", {a, t.op("not", {t.use(d)})}));
    EXPECT_THROW(simple(t.use(d)), feature_not_implemented_exception);
    d->set_definition(nullptr);
}

// --- The pipeline.

TEST_F(simplify_boolean, steps_are_announced_at_verbosity_ten) {
    std::ostringstream captured;
    std::streambuf* outer = std::cerr.rdbuf(captured.rdbuf());
    shared_ptr<expr> e = t.op("or", {a, b});
    set_verbosity_level(9);
    simplify(e);
    std::string at_nine = captured.str();
    set_verbosity_level(10);
    simplify(e);
    std::string at_ten = captured.str();
    captured.str("");
    simplify(e, static_cast<context*>(nullptr));
    std::string with_context = captured.str();
    captured.str("");
    basic_simplify(e);
    std::string basic = captured.str();
    set_verbosity_level(0);
    std::cerr.rdbuf(outer);
    EXPECT_EQ(at_nine, "");
    EXPECT_EQ(at_ten, "simplifying...\nhash consing...\neliminating term ite...\nDone simplifying...\n");
    EXPECT_EQ(with_context, "simplifying...\nhash consing...\neliminating term ite...\n");
    EXPECT_EQ(basic, "");
}

TEST_F(simplify_boolean, equal_subterms_become_one_object) {
    auto half = [&] { return t.op("ite", {t.name("a"), t.op("not", {t.name("b")}), t.name("c")}); };
    shared_ptr<expr> e = t.op("or", {t.op("=", {a, half()}), t.op("=", {half(), b})});
    simplify(e);
    expr* first = to_app(to_app(e.get())->get_arg(0))->get_arg(1);
    expr* second = to_app(to_app(e.get())->get_arg(1))->get_arg(0);
    EXPECT_EQ(first, second);
    EXPECT_EQ(to_text(e.get()), "(or (= a (ite a (not b) c)) (= (ite a (not b) c) b))");
}

TEST_F(simplify_boolean, sharing_stops_at_binders_of_other_variables) {
    t.declare_scalar("colour", 3);
    type* colour = t.named_type("colour");
    expr* f = t.constant("f", t.function_type({colour}, t.bool_type()));
    auto all = [&](var_decl* d) { return t.forall({d}, t.op("=", {a, t.app(f, {t.use(d)})})); };
    var_decl* x = t.variable("x", colour);
    shared_ptr<expr> e = t.op("=", {all(x), t.op("ite", {b, all(t.variable("x", colour)), all(x)})});
    apply<or_ite_bv_hash_consing_visitor>(e);
    term_evaluator eval;
    random_stream random(7);
    expr* source = t.op("=", {all(x), t.op("ite", {b, all(x), all(x)})});
    for (unsigned i = 0; i < 20; ++i) {
        for (expr* n : {a, b, f}) {
            var_decl* d = static_cast<name_expr*>(n)->get_decl();
            eval.m_constants[d] = eval.random_value(d->get_type(), random);
        }
        EXPECT_EQ(eval.is_true(e.get()), eval.is_true(source));
    }
    EXPECT_EQ(to_text(e.get()), to_text(source));
}

TEST_F(simplify_boolean, shared_disjunctions_take_linear_time) {
    // x = (or x x) a thousand times over, and (or x y_i) with a new y_i each.
    expr* x = t.op("or", {a, b});
    for (unsigned i = 0; i < 1000; ++i) x = t.op("or", {x, x});
    EXPECT_EQ(text(x), "(or a b)");
    expr* y = t.op("and", {a, b});
    expr* all = t.mk_false();
    for (unsigned i = 0; i < 1000; ++i) {
        expr* fresh = t.constant(("y" + std::to_string(i)).c_str(), t.bool_type());
        y = t.op(i % 2 ? "or" : "and", {y, fresh});
        expr* z = t.op("and", {y, y});
        all = t.op("=", {all, z});
        y = i % 100 ? z : y;
    }
    auto start = std::chrono::steady_clock::now();
    simple(all);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(simplify_boolean, a_chain_of_shared_disjunctions_stays_linear) {
    std::vector<expr*> users;
    expr* x = a;
    for (unsigned i = 0; i < 3000; ++i) {
        x = t.op("or", {x, t.constant(("y" + std::to_string(i)).c_str(), t.bool_type())});
        users.push_back(t.op("=", {x, b}));
    }
    expr* all = t.make<application>(t.name("and"), users.data(), static_cast<unsigned>(users.size()), -1);
    std::size_t before = m.num_live_nodes();
    std::size_t bytes = m.node_bytes();
    simple(all);
    EXPECT_LT(m.num_live_nodes() - before, 20000u);
    EXPECT_LT(m.node_bytes() - bytes, std::size_t{16} << 20);
}

TEST_F(simplify_boolean, a_long_chain_of_guards_stays_linear) {
    // (ite p0 true (ite p1 true ...)) is a disjunction of all of them, built from the inside.
    expr* guards = a;
    for (unsigned i = 0; i < 30000; ++i) {
        expr* p = t.constant(("g" + std::to_string(i)).c_str(), t.bool_type());
        guards = t.op("ite", {p, t.mk_true(), guards});
    }
    unsigned nodes = 0;
    for (expr* e = simple(guards); is_app_of<or_name_expr>(e); ++nodes) {
        expr* next = nullptr;
        for (expr* arg : to_app(e)->get_args())
            if (is_app_of<or_name_expr>(arg)) next = arg;
        if (next == nullptr) break;
        e = next;
    }
    EXPECT_LT(nodes, 30000u / 32);
}

TEST_F(simplify_boolean, deep_terms_on_a_small_stack) {
    constexpr unsigned depth = 100000;
    expr* ors = a;
    expr* mixed = a;
    expr* choices = a;
    expr* nots = a;
    expr* guards = a;
    for (unsigned i = 0; i < depth; ++i) {
        expr* p = i % 3 ? b : c;
        ors = t.op("or", {p, ors});
        mixed = t.op(i % 2 ? "and" : "or", {mixed, p});
        choices = t.op("ite", {p, not_a, choices});
        nots = t.op("not", {nots});
        if (i % 10 == 0) p = t.constant(("g" + std::to_string(i)).c_str(), t.bool_type());
        guards = i % 2 ? t.op("ite", {p, t.mk_true(), guards}) : t.op("ite", {p, guards, t.mk_false()});
        if (i % 100 > 1) guards = t.op("ite", {p, t.mk_true(), guards});
    }
    expr* lets = a;
    for (unsigned i = 0; i < depth; ++i) {
        let_decl* x = t.let_variable("x", nullptr, lets);
        lets = t.let({x}, t.op("=", {t.use(x), b}));
    }
    vexor_test::on_small_stack([&] {
        EXPECT_EQ(text(ors), "(or c b a)");
        EXPECT_EQ(text(nots), "a");
        for (expr* e : {mixed, choices, lets, guards}) {
            shared_ptr<expr> result = e;
            simplify(result);
            EXPECT_NE(result.get(), nullptr);
        }
    });
}

// --- Random formulas against their truth tables.

class random_formulas : public simplify_fixture {
protected:
    static constexpr unsigned num_names = 5;

    void SetUp() override {
        for (unsigned i = 0; i < num_names; ++i)
            m_atoms.push_back(boolean(("p" + std::to_string(i)).c_str()));
        m_atoms.push_back(t.mk_true());
        m_atoms.push_back(t.mk_false());
        m_leaves = num_names + 2;
    }
    // Subterms are taken from all that was made so far, so that they are shared.
    expr* pick(random_stream& random) {
        if (random.chance(25)) return m_atoms[random.below(m_leaves)];
        return m_atoms[m_atoms.size() - 1 - random.below(std::min<unsigned>(8, m_atoms.size()))];
    }
    expr* make(random_stream& random) {
        switch (random.below(9)) {
        case 0:
            return t.op("not", {pick(random)});
        case 1:
            return t.op("implies", {pick(random), pick(random)});
        case 2:
            return t.op("ite", {pick(random), pick(random), pick(random)});
        case 3:
            return t.op(random.chance(50) ? "=" : "/=", {pick(random), pick(random)});
        case 4: {
            let_decl* x = t.let_variable("x", nullptr, pick(random));
            return t.let({x}, t.op("or", {pick(random), t.op("not", {t.use(x)}), t.use(x)}));
        }
        case 5: {
            let_decl* x = t.let_variable("x", nullptr, pick(random));
            let_decl* y = t.let_variable("y", nullptr, t.op("and", {t.use(x), pick(random)}));
            return t.let({x, y}, t.op("ite", {t.use(y), pick(random), t.use(x)}));
        }
        default: {
            std::vector<expr*> args;
            for (unsigned i = 1 + random.below(4); i-- > 0;) args.push_back(pick(random));
            return t.make<application>(t.name(random.chance(50) ? "and" : "or"), args.data(),
                                       static_cast<unsigned>(args.size()), -1);
        }
        }
    }
    bool agree(expr* e, expr* image) {
        for (unsigned valuation = 0; valuation < (1u << num_names); ++valuation) {
            term_evaluator eval;
            for (unsigned i = 0; i < num_names; ++i)
                eval.m_constants[static_cast<name_expr*>(m_atoms[i])->get_decl()] = {(valuation >> i) & 1,
                                                                                     {}};
            if (eval.is_true(e) != eval.is_true(image)) return false;
        }
        return true;
    }

    std::vector<expr*> m_atoms;
    unsigned m_leaves = 0;
};

// The language that the internalizer reads.
class only_simple : public for_each_visitor {
public:
    using for_each_visitor::visit;
    void visit(and_name_expr*, application*) override { ADD_FAILURE() << "and"; }
    void visit(implies_name_expr*, application*) override { ADD_FAILURE() << "implies"; }
    void visit(diseq_name_expr*, application*) override { ADD_FAILURE() << "diseq"; }
    void visit(let_expr*) override { ADD_FAILURE() << "let"; }
    void visit(not_name_expr* fun, application* a) override {
        EXPECT_FALSE(is_app_of<not_name_expr>(a->get_arg(0)));
        for_each_visitor::visit(fun, a);
    }
};

TEST_F(random_formulas, keep_their_meaning) {
    std::uint64_t seed = vexor_test::first_seed(20261);
    unsigned folded = 0;
    for (unsigned round = 0; round < vexor_test::rounds(150); ++round, ++seed) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        m_atoms.resize(m_leaves);
        for (unsigned i = 0; i < 4 + random.below(12); ++i) m_atoms.push_back(make(random));
        expr* e = m_atoms.back();
        expr* image = simple(e);
        ASSERT_TRUE(agree(e, image)) << to_text(e) << "\n" << to_text(image);
        only_simple check;
        check(image);
        shared_ptr<expr> full = e;
        simplify(full);
        ASSERT_TRUE(agree(e, full.get())) << to_text(e) << "\n" << to_text(full.get());
        folded += !image->is_application();
    }
    EXPECT_LT(folded, vexor_test::rounds(150) * 2 / 3);
}

} // namespace
} // namespace vexor
