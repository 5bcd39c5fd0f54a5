// Terms as deep as input may be, on a thread with a small stack.
#include "ast_fixture.h"

#include "ast/visit/depends_on_visitor.h"
#include "ast/visit/num_nodes_visitor.h"
#include "ast/visit/substitution.h"

#include <functional>

namespace vexor_test {
namespace {

constexpr unsigned depth = 100000;

class depth_test : public ast_test {
public:
    // Everything that walks over a term, twice built by the same function.
    void exercise(std::function<shared_ptr<ast>()> const& build, unsigned least_nodes) {
        on_small_stack([&] {
            m.mk_true();
            for (auto const& warm : {m.mk_name<not_decl>(), m.mk_name<add_decl>(), m.mk_name<or_decl>()})
                EXPECT_NE(warm, nullptr); // shared names stay
            std::size_t live = m.num_live_nodes();
            {
                shared_ptr<ast> a = build();
                shared_ptr<ast> b = build();
                EXPECT_FALSE(a->has_free_vars());
                EXPECT_EQ(a->hash(), b->hash());
                EXPECT_TRUE(a->equals(b.get()));
                EXPECT_GE(num_nodes_visitor()(a.get()), least_nodes);
                v_ptr absent = var("absent");
                EXPECT_FALSE(depends_on_visitor().depends(a.get(), absent.get()));
                map_visitor identity(false);
                EXPECT_EQ(identity(a.get()).get(), a.get());
                fresh_var_decl_visitor fresh;
                shared_ptr<ast> copy = fresh(a.get());
                EXPECT_TRUE(copy->equals(a.get()));
            }
            EXPECT_EQ(m.num_live_nodes(), live);
        });
    }
};

TEST_F(depth_test, negations) {
    exercise(
        [&]() -> shared_ptr<ast> {
            e_ptr e = m.mk_true();
            for (unsigned i = 0; i < depth; ++i) e = app<not_decl>({e.get()});
            return e;
        },
        depth);
}

TEST_F(depth_test, sums) {
    exercise(
        [&]() -> shared_ptr<ast> {
            e_ptr e = num(1);
            for (unsigned i = 0; i < depth; ++i) e = app<add_decl>({num(1).get(), e.get()});
            return e;
        },
        2 * depth);
}

TEST_F(depth_test, lets) {
    exercise(
        [&]() -> shared_ptr<ast> {
            // (let ((l1 1)) (let ((l2 (+ l1 l1))) ... ))
            std::vector<shared_ptr<let_decl>> decls;
            e_ptr last = num(1);
            for (unsigned i = 0; i < depth; ++i) {
                decls.push_back(let_var("l", last.get()));
                e_ptr use = name(decls.back().get());
                last = app<add_decl>({use.get(), use.get()});
            }
            e_ptr e = last;
            for (unsigned i = depth; i-- > 0;) e = let({decls[i].get()}, e.get());
            return e;
        },
        4 * depth);
}

TEST_F(depth_test, lets_in_definitions) {
    exercise(
        [&]() -> shared_ptr<ast> {
            e_ptr e = num(1);
            for (unsigned i = 0; i < depth; ++i) {
                shared_ptr<let_decl> d = let_var("l", e.get());
                e = let({d.get()}, name(d.get()).get());
            }
            return e;
        },
        3 * depth);
}

TEST_F(depth_test, quantifiers) {
    exercise(
        [&]() -> shared_ptr<ast> {
            e_ptr e = m.mk_true();
            for (unsigned i = 0; i < depth; ++i) {
                v_ptr x = var("x", boolean());
                e = bind<forall_expr>({x.get()}, app<or_decl>({name(x.get()).get(), e.get()}).get());
            }
            return e;
        },
        4 * depth);
}

TEST_F(depth_test, function_types) {
    exercise(
        [&]() -> shared_ptr<ast> {
            shared_ptr<type> t = integer();
            for (unsigned i = 0; i < depth; ++i) t = function_type::construct_unary(t.get(), integer(), -1);
            return t;
        },
        2 * depth);
}

TEST_F(depth_test, tuple_types) {
    exercise(
        [&]() -> shared_ptr<ast> {
            shared_ptr<type> t = integer();
            for (unsigned i = 0; i < depth; ++i) {
                v_ptr element = anonymous(t.get());
                var_decl* elements[1] = {element.get()};
                t = mk<tuple_type>(&m, elements, 1U, -1);
            }
            return t;
        },
        2 * depth);
}

TEST_F(depth_test, names_of_names_of_types) {
    on_small_stack([&] {
        shared_ptr<type> t = integer();
        for (unsigned i = 0; i < depth; ++i) {
            shared_ptr<type_decl> d = mk<type_decl>(id("t"), t, -1);
            t = d->create_type_name(-1);
        }
        EXPECT_TRUE(t->equals(integer()));
        EXPECT_EQ(t->hash(), integer()->hash());
        EXPECT_EQ(cast_type<int_type_name>(t.get()), integer());
    });
}

TEST_F(depth_test, substitution_at_the_bottom) {
    on_small_stack([&] {
        v_ptr x = var("x");
        e_ptr e = name(x.get());
        for (unsigned i = 0; i < depth; ++i) e = app<add_decl>({num(1).get(), e.get()});
        e_ptr fun = bind<lambda_expr>({x.get()}, e.get());
        e_ptr redex = app(fun.get(), {num(5).get()});
        e_ptr r = beta_reduce(to_app(redex.get()));
        EXPECT_FALSE(r->has_free_vars());
        EXPECT_TRUE(e->has_free_vars());
        EXPECT_TRUE(depends_on_visitor().depends(e.get(), x.get()));
    });
}

TEST_F(depth_test, chains_of_definitions) {
    on_small_stack([&] {
        std::vector<shared_ptr<const_decl>> decls;
        e_ptr last = num(1);
        for (unsigned i = 0; i < depth; ++i) {
            decls.push_back(mk<const_decl>(id("d"), integer(), last, -1));
            last = name(decls.back().get());
        }
        EXPECT_FALSE(decls.back()->is_recursive());
        EXPECT_TRUE(decls.front()->knows_recursion()) << "settled on the way";
    });
}

} // namespace
} // namespace vexor_test
