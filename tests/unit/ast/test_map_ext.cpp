#include "ast_fixture.h"
#include "term_model.h"

#include "ast/visit/map_ext_visitor.h"

namespace vexor_test {
namespace {

// Replaces each numeral by a fresh variable that is equal to it.
class name_numerals : public map_ext_visitor {
public:
    name_numerals()
        : map_ext_visitor(false) {}
    using map_ext_visitor::visit;
    void visit(numeral_expr* n) override {
        ast_manager* m = n->get_manager();
        shared_ptr<fresh_var_decl> d = mk<fresh_var_decl>(m->create_int_type(), -1);
        shared_ptr<name_expr> value = d->create_name_expr(-1);
        context().add_fresh_var(d.get());
        context().add_condition(mk<application>(m->mk_name<eq_decl>(), value, n, -1).get());
        m_result = value.get();
    }
    shared_ptr<expr> run(expr* e) {
        shared_ptr<expr> image = (*this)(e);
        return context().close(image.get());
    }
};

class map_ext : public ast_test {};

TEST_F(map_ext, nothing_made_nothing_wrapped) {
    e_ptr e = app<not_decl>({m.mk_true()});
    EXPECT_EQ(name_numerals().run(e.get()).get(), e.get());
    temporary_context c;
    EXPECT_TRUE(c.empty());
    EXPECT_EQ(c.to_local_context(e.get()).get(), e.get());
    EXPECT_EQ(c.to_fresh_vars_expr(e.get()).get(), e.get());
}

TEST_F(map_ext, the_result_is_closed_with_variables_and_conditions) {
    e_ptr e = app<add_decl>({num(1).get(), num(2).get()});
    e_ptr r = name_numerals().run(e.get());
    ASSERT_TRUE(is_a<fresh_vars_expr>(r.get()));
    auto* fresh = static_cast<fresh_vars_expr*>(r.get());
    EXPECT_EQ(fresh->num_bindings(), 2U);
    ASSERT_TRUE(is_a<local_context_expr>(fresh->get_expr()));
    EXPECT_EQ(static_cast<local_context_expr*>(fresh->get_expr())->context_size(), 2U);
    EXPECT_FALSE(r->has_free_vars());
}

// The numeral below the binder depends on nothing bound there, but its variable belongs to the binder's body.
TEST_F(map_ext, nothing_escapes_a_binder) {
    v_ptr x = var("x");
    e_ptr shared = num(1);
    e_ptr body = app<eq_decl>({name(x.get()).get(), shared.get()});
    e_ptr inner = bind<forall_expr>({x.get()}, body.get());
    for (bool binder_first : {false, true}) {
        e_ptr outside = app<eq_decl>({shared.get(), shared.get()});
        e_ptr e = binder_first ? app<and_decl>({inner.get(), outside.get()})
                               : app<and_decl>({outside.get(), inner.get()});
        e_ptr r = name_numerals().run(e.get());
        EXPECT_FALSE(r->has_free_vars()) << term_text()(e.get());
    }
}

TEST_F(map_ext, definitions_of_lets_are_closed_by_themselves) {
    shared_ptr<let_decl> l = let_var("l", num(3).get());
    e_ptr e = let({l.get()}, name(l.get()).get());
    e_ptr r = name_numerals().run(e.get());
    ASSERT_TRUE(is_a<let_expr>(r.get()));
    EXPECT_TRUE(is_a<fresh_vars_expr>(static_cast<let_expr*>(r.get())->get_binding(0)->get_definition()));
    EXPECT_FALSE(r->has_free_vars());
}

TEST_F(map_ext, what_a_node_carries_moves_to_the_nearest_binder) {
    v_ptr x = var("x");
    v_ptr aux = mk<fresh_var_decl>(integer(), -1);
    e_ptr use = name(aux.get());
    expr* conditions[1] = {m.mk_true()};
    e_ptr carried = mk<fresh_vars_expr>(aux, mk<local_context_expr>(use, conditions, 1U, -1), -1);
    e_ptr body = app<eq_decl>({name(x.get()).get(), carried.get()});
    e_ptr e = bind<exists_expr>({x.get()}, body.get());
    map_ext_visitor v(false);
    e_ptr r = v(e.get());
    EXPECT_TRUE(v.context().empty());
    ASSERT_TRUE(is_a<exists_expr>(r.get()));
    expr* closed = static_cast<binding_expr*>(r.get())->get_expr();
    ASSERT_TRUE(is_a<fresh_vars_expr>(closed));
    expr* with_conditions = static_cast<binding_expr*>(closed)->get_expr();
    ASSERT_TRUE(is_a<local_context_expr>(with_conditions));
    EXPECT_TRUE(is_app_of<eq_name_expr>(static_cast<local_context_expr*>(with_conditions)->get_expr()));
    EXPECT_FALSE(r->has_free_vars());
    // At the top it moves to the context of the run.
    e_ptr top = v(carried.get());
    EXPECT_EQ(top.get(), use.get());
    EXPECT_EQ(v.context().get_fresh_vars().size(), 1U);
    EXPECT_EQ(v.context().get_conditions().size(), 1U);
    v.reset();
    EXPECT_TRUE(v.context().empty());
}

TEST_F(map_ext, an_exception_leaves_the_stack_of_contexts_in_order) {
    struct throwing : map_ext_visitor {
        throwing()
            : map_ext_visitor(false) {}
        using map_ext_visitor::visit;
        void visit(numeral_expr*) override { throw 1; }
    } v;
    v_ptr x = var("x");
    e_ptr e = bind<forall_expr>({x.get()}, num(1).get());
    EXPECT_THROW(v(e.get()), int);
    v.reset();
    EXPECT_EQ(v(m.mk_true()).get(), m.mk_true());
    v.context().add_fresh_var(x.get());
    v.context().add_fresh_var(x.get());
    EXPECT_EQ(v.context().get_fresh_vars().size(), 1U) << "one variable once";
}

} // namespace
} // namespace vexor_test
