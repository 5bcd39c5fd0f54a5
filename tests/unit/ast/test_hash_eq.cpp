#include "random_terms.h"
#include "term_model.h"

#include "ast/visit/eq_visitor.h"

namespace vexor_test {
namespace {

class hash_eq : public ast_test {};

TEST_F(hash_eq, names_of_bound_variables_do_not_count) {
    v_ptr x = var("x");
    v_ptr y = var("y");
    e_ptr a = bind<lambda_expr>({x.get()}, name(x.get()).get());
    e_ptr b = bind<lambda_expr>({y.get()}, name(y.get()).get());
    EXPECT_TRUE(a->equals(b.get()));
    EXPECT_EQ(a->hash(), b->hash());
    v_ptr z = var("z", boolean());
    EXPECT_FALSE(a->equals(bind<lambda_expr>({z.get()}, name(z.get()).get()).get())) << "the type counts";
    EXPECT_FALSE(a->equals(bind<forall_expr>({x.get()}, name(x.get()).get()).get()));
    EXPECT_FALSE(a->equals(bind<lambda_expr>({y.get()}, name(x.get()).get()).get()));
    EXPECT_FALSE(bind<lambda_expr>({y.get()}, name(x.get()).get())->equals(a.get()));
}

// A closed term has one hash, wherever it is met first.
TEST_F(hash_eq, closed_terms_hash_alike_inside_of_binders_and_outside) {
    auto identity = [&] {
        v_ptr v = var("v");
        return bind<lambda_expr>({v.get()}, name(v.get()).get());
    };
    e_ptr inside = identity();
    v_ptr outer1 = var("o1");
    v_ptr outer2 = var("o2");
    e_ptr term = bind<lambda_expr>({outer1.get(), outer2.get()},
                                   app<add_decl>({name(outer1.get()).get(), inside.get()}).get());
    term->hash(); // hashes `inside` below two variables
    EXPECT_NE(inside->get_cached_hash(), 0U);
    EXPECT_EQ(inside->hash(), identity()->hash());
    EXPECT_TRUE(inside->equals(identity().get()));
}

TEST_F(hash_eq, stated_hashes) {
    EXPECT_EQ(num(5)->hash(), 5U);
    EXPECT_NE(num(0)->hash(), 0U) << "0 means not known";
    e_ptr zero = num(0);
    e_ptr sum = app<add_decl>({zero.get(), num(7).get()});
    EXPECT_EQ(sum->hash(), (m.mk_name<add_decl>()->hash() + 1 * 3 + 7) & ast::hash_mask);
}

TEST_F(hash_eq, the_same_variable_free_and_bound) {
    v_ptr x = var("x");
    v_ptr y = var("y");
    e_ptr use = name(x.get());
    e_ptr a = bind<lambda_expr>({x.get()}, use.get());
    e_ptr b = bind<lambda_expr>({y.get()}, use.get()); // the very node, free here
    EXPECT_FALSE(a->equals(b.get()));
    EXPECT_FALSE(b->equals(a.get()));
    e_ptr c = app<add_decl>({use.get(), a.get()});
    e_ptr d = app<add_decl>({use.get(), a->clone_to_expr().get()});
    EXPECT_TRUE(c->equals(d.get()));
    EXPECT_EQ(c->hash(), d->hash());
}

// One open node on both sides, under binders that bind different variables of it; no hash ends the comparison
// early.
TEST_F(hash_eq, a_shared_open_node_under_different_binders) {
    struct without_hash : eq_visitor {
        bool respects_hash() const override { return false; }
    } v;
    v_ptr x = var("x");
    v_ptr y = var("y");
    e_ptr sum = app<add_decl>({name(x.get()).get(), name(y.get()).get()});
    e_ptr a = bind<lambda_expr>({x.get()}, sum.get());
    e_ptr b = bind<lambda_expr>({y.get()}, sum.get());
    EXPECT_FALSE(v(a.get(), b.get()));
    EXPECT_FALSE(a->equals(b.get()));
    v.reset();
    EXPECT_TRUE(v(a.get(), bind<lambda_expr>({x.get()}, sum.get()).get()));
}

TEST_F(hash_eq, dependent_types) {
    // (-> n::nat (subrange 0 n)) with two names
    auto make = [&](char const* s) {
        v_ptr n = var(s, m.create_nat_type());
        e_ptr zero = num(0);
        e_ptr use = name(n.get());
        shared_ptr<subrange> r = mk<subrange>(zero, use, -1);
        return mk<function_type>(n, r, -1);
    };
    shared_ptr<function_type> a = make("n");
    shared_ptr<function_type> b = make("k");
    EXPECT_TRUE(a->equals(b.get()));
    EXPECT_EQ(a->hash(), b->hash());
    EXPECT_FALSE(a->has_free_vars());
    EXPECT_TRUE(a->get_range()->has_free_vars());
    EXPECT_FALSE(a->equals(function_type::construct_unary(m.create_nat_type(), integer(), -1).get()));
}

// T(0) = x, T(n+1) = (forall y. T(n) + T(n)) + (forall z. T(n) + y'): 2^60 as a tree, and each copy below
// binders.
TEST_F(hash_eq, sharing_between_binders_costs_no_exponential_time) {
    auto make = [&](char const* prefix) {
        v_ptr x = var(std::string(prefix) + "x");
        e_ptr t = name(x.get());
        for (int i = 0; i < 60; ++i) {
            v_ptr y = var(std::string(prefix) + "y");
            v_ptr z = var(std::string(prefix) + "z");
            e_ptr ny = name(y.get());
            e_ptr nz = name(z.get());
            e_ptr left = bind<forall_expr>({y.get()}, app<add_decl>({t.get(), t.get(), ny.get()}).get());
            e_ptr right = bind<forall_expr>({z.get()}, app<add_decl>({nz.get(), t.get()}).get());
            t = app<add_decl>({left.get(), right.get()});
        }
        return bind<lambda_expr>({x.get()}, t.get());
    };
    e_ptr a = make("a");
    e_ptr b = make("b");
    EXPECT_FALSE(a->has_free_vars());
    EXPECT_EQ(a->hash(), b->hash());
    EXPECT_TRUE(a->equals(b.get()));
}

TEST_F(hash_eq, a_visitor_is_usable_after_an_exception) {
    struct throwing : eq_visitor {
        bool m_throw = true;
        using eq_visitor::visit;
        void visit(numeral_expr* n) override {
            if (m_throw) throw 1;
            eq_visitor::visit(n);
        }
    } v;
    v_ptr x = var("x");
    v_ptr y = var("y");
    e_ptr a = bind<lambda_expr>({x.get()}, app<add_decl>({name(x.get()).get(), num(1).get()}).get());
    e_ptr b = bind<lambda_expr>({y.get()}, app<add_decl>({name(y.get()).get(), num(1).get()}).get());
    a->hash();
    EXPECT_THROW(v(a.get(), b.get()), int);
    v.m_throw = false;
    v.reset();
    EXPECT_TRUE(v(a.get(), b.get()));
    EXPECT_FALSE(v(a.get(), num(1).get()));
}

// A visitor that compares and hashes other nodes in the middle of its own run.
TEST_F(hash_eq, visitors_nest) {
    struct nosy : eq_visitor {
        ast* m_first = nullptr;
        ast* m_second = nullptr;
        using eq_visitor::visit;
        void visit(application* n) override {
            EXPECT_TRUE(m_first->equals(m_second));
            EXPECT_EQ(m_first->hash(), m_second->hash());
            m_first->reset_cache();
            eq_visitor::visit(n);
        }
    } v;
    auto make = [&](char const* s) {
        v_ptr x = var(s);
        e_ptr use = name(x.get());
        return bind<forall_expr>({x.get()}, app<add_decl>({use.get(), use.get()}).get());
    };
    e_ptr a = make("a");
    e_ptr b = make("b");
    e_ptr c = make("c");
    v.m_first = b.get();
    v.m_second = c.get();
    EXPECT_TRUE(v(a.get(), b.get()));
}

TEST_F(hash_eq, random_terms_against_the_model) {
    for (unsigned round = 0; round < rounds(60); ++round) {
        std::uint64_t seed = first_seed(9100) + round;
        SCOPED_TRACE(seed);
        random_stream random(seed);
        random_terms terms(*this, random);
        terms.grow(22);
        std::vector<std::string> texts;
        for (e_ptr const& e : terms.get_pool()) {
            term_text text;
            texts.push_back(text(e.get()));
            ASSERT_EQ(e->has_free_vars(), !text.get_free_vars().empty()) << texts.back();
        }
        auto const& pool = terms.get_pool();
        for (unsigned i = 0; i < pool.size(); ++i) {
            for (unsigned j = 0; j < pool.size(); ++j) {
                bool same = texts[i] == texts[j];
                ASSERT_EQ(pool[i]->equals(pool[j].get()), same) << texts[i] << "\n" << texts[j];
                ASSERT_TRUE(!same || pool[i]->hash() == pool[j]->hash()) << texts[i] << "\n" << texts[j];
            }
        }
        // What is stored in the nodes does not depend on the order of the questions.
        for (e_ptr const& e : pool) e->reset_cache();
        for (unsigned i = static_cast<unsigned>(pool.size()); i-- > 0;) pool[i]->hash();
        for (unsigned i = 0; i < pool.size(); ++i)
            for (unsigned j = 0; j < i; ++j)
                ASSERT_TRUE(texts[i] != texts[j] || pool[i]->hash() == pool[j]->hash());
    }
}

} // namespace
} // namespace vexor_test
