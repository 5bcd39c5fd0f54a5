#include "random_terms.h"
#include "term_model.h"

#include "ast/visit/substitution.h"

namespace vexor_test {
namespace {

class map_test : public ast_test {
public:
    // Renames each occurrence of a global constant, so that something changes at the leaves.
    static std::string text(ast* a) { return term_text()(a); }
};

TEST_F(map_test, nothing_to_do_gives_the_same_node) {
    v_ptr x = var("x");
    e_ptr body = app<add_decl>({name(x.get()).get(), num(1).get()});
    e_ptr e = let({let_var("l", num(2).get()).get()}, bind<forall_expr>({x.get()}, body.get()).get());
    std::size_t live = m.num_live_nodes();
    for (bool cache_all : {false, true}) {
        map_visitor v(cache_all);
        EXPECT_EQ(v(e.get()).get(), e.get());
        EXPECT_EQ(m.num_live_nodes(), live) << "an unchanged term costs no node";
    }
    subst_visitor s(false);
    EXPECT_EQ(s(e.get()).get(), e.get());
}

TEST_F(map_test, substitution_replaces_free_variables_only) {
    v_ptr x = var("x");
    e_ptr use = name(x.get());
    e_ptr bound = bind<lambda_expr>({x.get()}, name(x.get()).get());
    e_ptr e = app<add_decl>({use.get(), bound.get()});
    subst_visitor s(false);
    s.update_env(x.get(), num(7).get());
    e_ptr r = s(e.get());
    EXPECT_EQ(text(r.get()), text(app<add_decl>({num(7).get(), bound.get()}).get()));
    EXPECT_EQ(to_app(r.get())->get_arg(1), bound.get()) << "closed parts are kept";
}

TEST_F(map_test, renaming_by_a_declaration) {
    v_ptr x = var("x");
    v_ptr y = var("y");
    map_visitor v(false);
    v.update_env(x.get(), y.get());
    v.update_env(nullptr, y.get());
    v.update_env(anonymous(integer()).get(), y.get());
    e_ptr r = v(app<add_decl>({name(x.get()).get(), name(y.get()).get()}).get());
    EXPECT_EQ(text(r.get()), text(app<add_decl>({name(y.get()).get(), name(y.get()).get()}).get()));
}

TEST_F(map_test, scopes_shadow_and_restore) {
    v_ptr x = var("x");
    e_ptr use = name(x.get());
    e_ptr keep = use; // shared, so that results are remembered
    map_visitor v(true);
    v.update_env(x.get(), num(1).get());
    EXPECT_EQ(text(v.accept_core(use.get()).get()), "1");
    v.begin_scope();
    v.update_env(x.get(), num(2).get());
    EXPECT_EQ(text(v.accept_core(use.get()).get()), "2");
    v.update_env(x.get(), num(3).get());
    EXPECT_EQ(text(v.accept_core(use.get()).get()), "3");
    v.end_scope();
    EXPECT_EQ(text(v.accept_core(use.get()).get()), "1");
    std::ostringstream out;
    v.reset();
    EXPECT_EQ(v(use.get()).get(), use.get());
}

TEST_F(map_test, an_environment_of_the_caller) {
    v_ptr x = var("x");
    e_ptr use = name(x.get());
    var_env env;
    e_ptr seven = num(7);
    env.bind(x.get(), shared_ptr<ast>(seven.get()));
    map_visitor v(&env, false);
    EXPECT_EQ(v(use.get()).get(), seven.get());
    v.set_env(nullptr);
    EXPECT_EQ(v(use.get()).get(), use.get());
}

TEST_F(map_test, substitution_does_not_capture) {
    v_ptr x = var("x");
    v_ptr y = var("y");
    e_ptr nx = name(x.get());
    e_ptr ny = name(y.get());
    e_ptr body = bind<forall_expr>({y.get()}, app<eq_decl>({nx.get(), ny.get()}).get());
    e_ptr fun = bind<lambda_expr>({x.get()}, body.get());
    e_ptr redex = app(fun.get(), {ny.get()});
    e_ptr r = beta_reduce(to_app(redex.get()));
    EXPECT_EQ(text(r.get()), "(forall_expr int_type_name (eq free" + std::to_string(y->get_id()) + " #1))");
}

TEST_F(map_test, beta_reduce_leaves_other_applications) {
    e_ptr sum = app<add_decl>({num(1).get(), num(2).get()});
    EXPECT_EQ(beta_reduce(to_app(sum.get())).get(), sum.get());
    v_ptr x = var("x");
    e_ptr fun = bind<lambda_expr>({x.get()}, name(x.get()).get());
    e_ptr too_many = app(fun.get(), {num(1).get(), num(2).get()});
    EXPECT_EQ(beta_reduce(to_app(too_many.get())).get(), too_many.get());
    e_ptr right = app(fun.get(), {num(1).get()});
    EXPECT_EQ(text(beta_reduce(to_app(right.get())).get()), "1");
}

// Reduces the leftmost outermost redex until there is none.
class reduce_visitor : public map_visitor {
public:
    reduce_visitor()
        : map_visitor(false) {}
    using map_visitor::visit;
    void visit(expr* fun, application* a) override {
        if (fun->is_lambda()) {
            e_ptr reduced = beta_reduce(a);
            m_kept.push_back(reduced.get());
            m_result = map(reduced.get()).get();
        } else {
            map_visitor::visit(fun, a);
        }
    }
    void visit(lambda_expr* fun, application* a) override { visit(static_cast<expr*>(fun), a); }
    void visit(name_expr* n, application* a) override {
        auto* d = static_cast<const_decl*>(n->get_decl());
        if (d->is_const_decl() && d->has_definition()) {
            e_ptr definition = d->get_definition();
            e_ptr expanded = a->clone(definition.get(), a->get_args().data(), a->num_args());
            m_kept.push_back(expanded.get());
            m_result = map(expanded.get()).get();
        } else {
            map_visitor::visit(static_cast<expr*>(n), a);
        }
    }

private:
    using e_ptr = shared_ptr<expr>;
    shared_ptr_vector<expr> m_kept;
};

// A = (lambda (f) (forall (y) (f y))); (A (lambda (z) (A (lambda (w) (q z w))))) is forall y, y'. q(y, y').
TEST_F(map_test, a_definition_applied_to_itself_captures_nothing) {
    shared_ptr<type> u = integer();
    shared_ptr<function_type> u_bool = function_type::construct_unary(u.get(), boolean(), -1);
    shared_ptr<function_type> uu_bool = function_type::construct_binary(u.get(), u.get(), boolean(), -1);
    const_decl* q = constant("q", uu_bool.get());
    v_ptr f = var("f", u_bool.get());
    v_ptr y = var("y");
    e_ptr quantified = bind<forall_expr>({y.get()}, app(name(f.get()).get(), {name(y.get()).get()}).get());
    e_ptr a_body = bind<lambda_expr>({f.get()}, quantified.get());
    shared_ptr<function_type> a_type = function_type::construct_unary(u_bool.get(), boolean(), -1);
    shared_ptr<const_decl> a = mk<const_decl>(id("A"), a_type, a_body, -1);
    m.add_global_const_decl(a.get(), true);

    auto build = [&](expr* fun) {
        v_ptr z = var("z");
        v_ptr w = var("w");
        e_ptr inner = bind<lambda_expr>({w.get()},
                                        app(name(q).get(), {name(z.get()).get(), name(w.get()).get()}).get());
        return app(fun, {bind<lambda_expr>({z.get()}, app(fun, {inner.get()}).get()).get()});
    };
    char const* expected = "(forall_expr int_type_name (forall_expr int_type_name (q #2 #1)))";
    e_ptr shared_name = name(a.get());
    e_ptr by_name = build(shared_name.get());
    EXPECT_EQ(text(reduce_visitor()(by_name.get()).get()), expected);
    e_ptr by_value = build(a_body.get()); // the very same binder twice
    EXPECT_EQ(text(reduce_visitor()(by_value.get()).get()), expected);
}

TEST_F(map_test, definitions_with_binders_are_copied_for_each_use) {
    v_ptr x = var("x");
    e_ptr fun = bind<lambda_expr>({x.get()}, name(x.get()).get());
    shared_ptr<const_decl> d =
        mk<const_decl>(id("f"), function_type::construct_unary(integer(), integer(), -1), fun, -1);
    e_ptr first = d->get_definition();
    e_ptr second = d->get_definition();
    EXPECT_NE(first.get(), fun.get());
    EXPECT_NE(first.get(), second.get());
    EXPECT_NE(static_cast<binding_expr*>(first.get())->get_binding(0),
              static_cast<binding_expr*>(second.get())->get_binding(0));
    EXPECT_TRUE(first->equals(fun.get()));
    EXPECT_EQ(d->get_raw_definition(), fun.get());
    e_ptr plain = app<add_decl>({num(1).get(), num(2).get()});
    shared_ptr<const_decl> c = mk<const_decl>(id("c"), integer(), plain, -1);
    EXPECT_EQ(c->get_definition().get(), plain.get()) << "nothing to rename";
    EXPECT_EQ(c->get_definition().get(), plain.get());
}

TEST_F(map_test, recursive_definitions) {
    auto define = [&](char const* s) { return mk<const_decl>(id(s), integer(), -1); };
    shared_ptr<const_decl> f = define("f");
    shared_ptr<const_decl> g = define("g");
    shared_ptr<const_decl> h = define("h");
    shared_ptr<const_decl> k = define("k");
    f->set_definition(app<add_decl>({name(f.get()).get(), num(1).get()}).get());
    EXPECT_TRUE(f->is_recursive());
    g->set_definition(name(h.get()).get()); // g and h through each other
    h->set_definition(app<add_decl>({name(g.get()).get(), name(f.get()).get()}).get());
    k->set_definition(app<add_decl>({name(g.get()).get(), num(1).get()}).get());
    EXPECT_FALSE(k->is_recursive()) << "it leads to a cycle and is on none";
    EXPECT_TRUE(g->is_recursive());
    EXPECT_TRUE(h->is_recursive());
    h->set_definition(num(3).get());
    EXPECT_FALSE(h->is_recursive());
    f->set_definition(nullptr);
    g->set_definition(nullptr);
}

TEST_F(map_test, alpha_conversion_makes_new_variables_of_the_same_names) {
    v_ptr x = var("x");
    e_ptr e = bind<forall_expr>({x.get()}, app<add_decl>({name(x.get()).get(), num(1).get()}).get());
    shared_ptr<binding_expr> r = alpha_convert(static_cast<binding_expr*>(e.get()));
    EXPECT_TRUE(is_a<forall_expr>(r.get()));
    EXPECT_NE(r->get_binding(0), x.get());
    EXPECT_EQ(r->get_binding(0)->get_name(), x->get_name());
    EXPECT_TRUE(r->equals(e.get()));
}

// As in the test of hashes: shared open terms below binders, 2^60 as a tree.
TEST_F(map_test, sharing_between_binders_costs_no_exponential_time) {
    v_ptr x = var("x");
    e_ptr t = name(x.get());
    for (int i = 0; i < 60; ++i) {
        v_ptr y = var("y");
        v_ptr z = var("z");
        e_ptr left =
            bind<forall_expr>({y.get()}, app<add_decl>({t.get(), t.get(), name(y.get()).get()}).get());
        e_ptr right = bind<exists_expr>({z.get()}, app<add_decl>({name(z.get()).get(), t.get()}).get());
        t = app<add_decl>({left.get(), right.get()});
    }
    e_ptr fun = bind<lambda_expr>({x.get()}, t.get());
    std::size_t before = m.num_live_nodes();
    e_ptr r = beta_reduce(to_app(app(fun.get(), {num(5).get()}).get()));
    EXPECT_LT(m.num_live_nodes() - before, 60U * 40);
    EXPECT_FALSE(r->has_free_vars());
    v_ptr other = var("other");
    e_ptr open = name(other.get()); // an open argument: every binder is renamed
    e_ptr s = beta_reduce(to_app(app(fun.get(), {open.get()}).get()));
    EXPECT_LT(m.num_live_nodes() - before, 60U * 80);
    fresh_var_decl_visitor fresh;
    e_ptr copy = fresh(fun.get());
    EXPECT_TRUE(copy->equals(fun.get()));
}

TEST_F(map_test, random_substitutions_against_the_model) {
    for (unsigned round = 0; round < rounds(150); ++round) {
        std::uint64_t seed = first_seed(5200) + round;
        SCOPED_TRACE(seed);
        random_stream random(seed);
        random_terms terms(*this, random);
        terms.grow(18);
        for (int i = 0; i < 6; ++i) {
            text_env texts;
            map_visitor plain(random.chance(50));
            subst_visitor subst(random.chance(50));
            unsigned n = 1 + random.below(3);
            for (unsigned k = 0; k < n; ++k) {
                var_decl* d = terms.pick_var();
                expr* value = terms.pick();
                if (texts.count(d) != 0) continue;
                texts[d] = text(value);
                plain.update_env(d, value);
                subst.update_env(d, value);
            }
            expr* e = terms.pick_recent();
            std::string expected = term_text(texts)(e);
            e_ptr r = plain(e);
            ASSERT_EQ(text(r.get()), expected) << text(e);
            ASSERT_EQ(text(subst(e).get()), expected) << text(e);
            ASSERT_EQ(text(r.get()), text(plain(e).get())) << "a second run";
            ASSERT_EQ(text(fresh_var_decl_visitor()(e).get()), text(e));
        }
        m.check_invariant();
    }
}

} // namespace
} // namespace vexor_test
