#include "ast_fixture.h"

#include "ast/visit/depends_on_visitor.h"
#include "ast/visit/free_vars_visitor.h"
#include "ast/visit/kind_visitors.h"

namespace vexor_test {
namespace {

class free_vars : public ast_test {};

TEST_F(free_vars, lambda_over_another_variable) {
    v_ptr x = var("x");
    v_ptr z = var("z");
    EXPECT_TRUE(bind<lambda_expr>({x.get()}, name(z.get()).get())->has_free_vars());
    EXPECT_FALSE(bind<lambda_expr>({x.get()}, name(constant("g")).get())->has_free_vars());
    EXPECT_FALSE(bind<lambda_expr>({x.get()}, name(x.get()).get())->has_free_vars());
}

TEST_F(free_vars, binders_see_the_variables_before) {
    shared_ptr<let_decl> a = let_var("a", num(1).get());
    shared_ptr<let_decl> b = let_var("b", name(a.get()).get());
    EXPECT_FALSE(let({a.get(), b.get()}, name(b.get()).get())->has_free_vars());
    EXPECT_TRUE(let({b.get(), a.get()}, name(b.get()).get())->has_free_vars());
    v_ptr n = var("n");
    e_ptr zero = num(0);
    v_ptr i = var("i", mk<subrange>(zero, name(n.get()), -1).get());
    EXPECT_FALSE(bind<forall_expr>({n.get(), i.get()}, name(i.get()).get())->has_free_vars());
    EXPECT_TRUE(bind<forall_expr>({i.get(), n.get()}, name(i.get()).get())->has_free_vars());
    EXPECT_TRUE(i->has_free_vars()) << "in its type";
}

TEST_F(free_vars, levels) {
    v_ptr x = var("x");
    v_ptr y = var("y");
    e_ptr nx = name(x.get());
    e_ptr ny = name(y.get());
    e_ptr both = app<add_decl>({nx.get(), ny.get()});
    free_vars_visitor v;
    EXPECT_EQ(v.reach(nullptr), 0U);
    EXPECT_EQ(v.reach(num(1).get()), 0U);
    EXPECT_EQ(v.reach(both.get()), free_vars_visitor::unbound);
    free_vars_visitor::scope outer(v);
    outer.update_scope(x.get());
    {
        free_vars_visitor::scope inner(v);
        inner.update_scope(y.get());
        EXPECT_EQ(v.reach(nx.get()), 2U);
        EXPECT_EQ(v.reach(ny.get()), 1U);
        EXPECT_EQ(v.reach(both.get()), 2U);
        EXPECT_EQ(v.level_of(static_cast<name_expr*>(nx.get())), 2U);
        EXPECT_EQ(v.level_of(static_cast<name_expr*>(m.mk_true())), 0U);
    }
    EXPECT_EQ(v.reach(both.get()), free_vars_visitor::unbound);
    EXPECT_EQ(v.reach(bind<lambda_expr>({y.get()}, both.get()).get()), 1U);
}

TEST_F(free_vars, setters_forget_the_answer) {
    v_ptr x = var("x");
    e_ptr closed = app<add_decl>({num(1).get(), num(2).get()});
    EXPECT_FALSE(closed->has_free_vars());
    e_ptr use = name(x.get());
    expr* open[1] = {use.get()};
    to_app(closed.get())->set_args(open, 1);
    EXPECT_TRUE(closed->has_free_vars());
}

TEST_F(free_vars, dependence) {
    v_ptr x = var("x");
    v_ptr y = var("y");
    v_ptr z = var("z");
    e_ptr e = app<add_decl>({name(x.get()).get(), num(1).get()});
    depends_on_visitor v;
    v.add_decl(y.get());
    EXPECT_FALSE(v.depends(e.get()));
    v.add_decl(x.get());
    EXPECT_TRUE(v.depends(e.get()));
    EXPECT_TRUE(v.depends(e.get())) << "again";
    v.reset_decls();
    EXPECT_FALSE(v.depends(e.get()));
    EXPECT_FALSE(v.depends(e.get(), z.get()));
    EXPECT_TRUE(v.depends(e.get(), x.get()));
    shared_ptr<type_decl> t = mk<type_decl>(id("t"), static_cast<type*>(nullptr), -1);
    v_ptr of_t = var("w", t->create_type_name(-1).get());
    e_ptr q = bind<forall_expr>({of_t.get()}, m.mk_true());
    simple_depends_on_visitor s;
    EXPECT_TRUE(s.depends(q.get(), t.get()));
    EXPECT_FALSE(v.depends(q.get(), t.get())) << "types are the business of the other one";
    EXPECT_FALSE(s.depends(e.get(), t.get()));
}

TEST_F(free_vars, kinds_of_types) {
    e_ptr zero = num(0);
    shared_ptr<subrange> range = mk<subrange>(zero, zero, -1);
    shared_ptr<type_decl> alias = mk<type_decl>(id("alias"), range, -1);
    shared_ptr<type_name> named = alias->create_type_name(-1);
    shared_ptr<bitvector_type> bv = mk<bitvector_type>(&m, 4U, -1);
    struct row {
        type* m_type;
        bool m_bool, m_int, m_num, m_bv;
    };
    for (row const& r :
         {row{boolean(), true, false, false, false}, row{integer(), false, true, true, false},
          row{m.create_nat_type(), false, true, true, false},
          row{m.create_real_type(), false, false, true, false},
          row{m.create_number_type(), false, false, true, false}, row{range.get(), false, true, true, false},
          row{named.get(), false, true, true, false}, row{bv.get(), false, false, false, true}}) {
        SCOPED_TRACE(r.m_type->get_cls_name());
        EXPECT_EQ(bool_kind_visitor()(r.m_type), r.m_bool);
        EXPECT_EQ(int_kind_visitor()(r.m_type), r.m_int);
        EXPECT_EQ(num_kind_visitor()(r.m_type), r.m_num);
        EXPECT_EQ(bitvector_kind_visitor()(r.m_type), r.m_bv);
        e_ptr use = name(var("x", r.m_type).get());
        EXPECT_EQ(use->is_boolean(), r.m_bool);
        EXPECT_EQ(use->is_int(), r.m_int);
        EXPECT_EQ(use->is_numeral(), r.m_num);
        EXPECT_EQ(use->is_bitvector(), r.m_bv);
    }
}

// An if-then-else is an integer only if both branches are.
TEST_F(free_vars, kind_of_if_then_else) {
    e_ptr half = mk<numeral_expr>(&m, numeral("1/2", 10), -1);
    e_ptr one = num(1);
    EXPECT_FALSE(app<ite_decl>({m.mk_true(), half.get(), one.get()})->is_int());
    EXPECT_FALSE(app<ite_decl>({m.mk_true(), one.get(), half.get()})->is_int());
    EXPECT_TRUE(app<ite_decl>({m.mk_true(), one.get(), one.get()})->is_int());
    EXPECT_TRUE(app<ite_decl>({m.mk_true(), half.get(), one.get()})->is_numeral());
    EXPECT_TRUE(app<ite_decl>({m.mk_true(), m.mk_true(), m.mk_false()})->is_boolean());
}

} // namespace
} // namespace vexor_test
