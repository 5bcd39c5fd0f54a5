#include "ast_fixture.h"

#include "ast/node/ast_exceptions.h"
#include "ast/visit/ast_visitor.h"

#include <set>

namespace vexor_test {
namespace {

class nodes : public ast_test {};

TEST_F(nodes, class_names_are_distinct_pointers_with_the_stated_texts) {
    std::set<char const*> pointers;
    unsigned count = 0;
#define VEXOR_NODE(CLASS, PARENT)                                                                            \
    pointers.insert(CLASS::m_cls_name);                                                                      \
    ++count;
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    pointers.insert(X##_name_expr::m_cls_name);                                                              \
    pointers.insert(X##_decl::m_cls_name);                                                                   \
    EXPECT_STREQ(X##_name_expr::m_cls_name, #X);                                                             \
    count += 2;
#include "ast/node/builtin_ops.def"
    EXPECT_EQ(pointers.size(), count);
    EXPECT_STREQ(application::m_cls_name, "application_expr");
    EXPECT_STREQ(bitvector_type::m_cls_name, "bitvector");
    EXPECT_STREQ(and_name_expr::m_cls_name, "and");
    EXPECT_STREQ(sbv_lt_name_expr::m_cls_name, "sbv_lt");
    EXPECT_STREQ(let_expr::m_cls_name, "let_expr");
    EXPECT_STREQ(true_name_expr::m_cls_name, "true_name_expr");
    EXPECT_STREQ(ast::m_cls_name, "ast");
}

TEST_F(nodes, ids_count_up_and_clones_take_new_ones) {
    e_ptr a = num(1);
    e_ptr b = num(2);
    EXPECT_EQ(b->get_id(), a->get_id() + 1);
    e_ptr c = a->clone_to_expr();
    EXPECT_EQ(c->get_id(), b->get_id() + 1);
    EXPECT_EQ(c->get_pos(), a->get_pos());
    EXPECT_EQ(c->get_manager(), &m);
}

TEST_F(nodes, identifiers) {
    shared_ptr<identifier> a = id("x", 5);
    EXPECT_EQ(a->clone()->get_pos(), 5);
    EXPECT_FALSE(a->is_aux());
    shared_ptr<identifier> aux = mk<identifier>(integer());
    EXPECT_EQ(std::string(aux->get_name().c_str()), "aux:" + std::to_string(aux->get_id()));
    EXPECT_TRUE(aux->is_aux());
    EXPECT_FALSE(aux->clone()->is_aux()) << "another number";
    shared_ptr<identifier> renamed = mk<identifier>(a, ustring("y"));
    EXPECT_EQ(renamed->get_name(), ustring("y"));
    EXPECT_EQ(renamed->get_pos(), 5);
    unsigned hash = a->hash();
    a->set_name(ustring("x"));
    EXPECT_EQ(a->get_cached_hash(), hash) << "the same name keeps the caches";
    a->set_name(ustring("z"));
    EXPECT_EQ(a->get_cached_hash(), 0U);
}

TEST_F(nodes, declarations_answer_what_they_are) {
    v_ptr x = var("x");
    EXPECT_TRUE(x->is_decl() && x->is_local());
    EXPECT_FALSE(x->is_anonymous() || x->is_const_decl() || x->is_let_decl() || x->is_type_decl());
    v_ptr anon = anonymous(integer());
    EXPECT_TRUE(anon->is_anonymous());
    EXPECT_EQ(anon->get_name(), ustring());
    shared_ptr<fresh_var_decl> fresh = mk<fresh_var_decl>(integer(), -1);
    EXPECT_EQ(std::string(fresh->get_name().c_str()), "aux!" + std::to_string(fresh->get_id()));
    EXPECT_TRUE(fresh->is_fresh_var_decl() && fresh->is_local());
    EXPECT_FALSE(fresh->is_anonymous());
    shared_ptr<let_decl> l = let_var("l", num(1).get());
    EXPECT_TRUE(l->is_let_decl() && l->is_local());
    EXPECT_EQ(l->get_type(), nullptr);
    const_decl* c = constant("c");
    EXPECT_TRUE(c->is_const_decl());
    EXPECT_FALSE(c->is_local());
    EXPECT_EQ(c->clone().get(), c) << "a global declaration is never copied";
    EXPECT_FALSE(c->is_recursive());
    EXPECT_EQ(c->get_definition().get(), nullptr);
    EXPECT_NE(x->clone().get(), x.get());
    EXPECT_TRUE(is_a<field>(mk<field>(id("f"), integer(), -1)->clone().get()));
    EXPECT_TRUE(is_a<let_decl>(l->clone().get()));
    EXPECT_TRUE(is_a<fresh_var_decl>(fresh->clone().get()));
    EXPECT_TRUE(x->is_int() && x->is_numeral());
    EXPECT_FALSE(x->is_boolean());
    EXPECT_TRUE(var("b", boolean())->is_boolean());
    EXPECT_FALSE(l->is_int()) << "no type yet";
    EXPECT_TRUE((mk<var_decl>(mk<identifier>(integer()), integer(), -1)->is_aux()));
}

TEST_F(nodes, name_exprs_are_counted) {
    v_ptr x = var("x");
    v_ptr y = var("y");
    EXPECT_EQ(x->get_num_name_exprs(), 0U);
    shared_ptr<name_expr> n = x->create_name_expr(-1);
    EXPECT_TRUE(n->is_fanout_one());
    {
        shared_ptr<name_expr> n2 = n->clone();
        EXPECT_EQ(x->get_num_name_exprs(), 2U);
        EXPECT_FALSE(n->is_fanout_one()) << "two uses of one declaration";
        n2->set_decl(y.get());
        EXPECT_EQ(x->get_num_name_exprs(), 1U);
        EXPECT_EQ(y->get_num_name_exprs(), 1U);
        n2->set_decl(y.get());
        EXPECT_EQ(y->get_num_name_exprs(), 1U);
    }
    EXPECT_EQ(y->get_num_name_exprs(), 0U);
    shared_ptr<name_expr> second = n;
    EXPECT_FALSE(n->is_fanout_one());
    m.check_invariant();
}

TEST_F(nodes, a_name_keeps_its_declaration_alive) {
    m.push();
    e_ptr use = name(constant("short_lived"));
    m.pop(1);
    EXPECT_EQ(static_cast<name_expr*>(use.get())->get_name(), ustring("short_lived"));
}

TEST_F(nodes, immutable_names_are_never_copied) {
    shared_ptr<name_expr> n = m.create_global_name_expr(ustring("and"), 7);
    EXPECT_TRUE(is_a<and_name_expr>(n.get()));
    EXPECT_EQ(n->clone().get(), n.get());
    v_ptr x = var("x");
    n->set_decl(x.get());
    EXPECT_EQ(n->get_decl(), m.get_builtin<and_decl>());
    EXPECT_EQ(m.mk_true()->clone_to_expr().get(), m.mk_true());
}

TEST_F(nodes, flags_of_expressions) {
    v_ptr x = var("x");
    e_ptr nx = name(x.get());
    e_ptr a = app<add_decl>({nx.get(), nx.get()});
    EXPECT_TRUE(a->is_application() && a->is_expr());
    EXPECT_FALSE(nx->is_application());
    EXPECT_TRUE(nx->is_name_expr());
    EXPECT_TRUE(m.mk_name<add_decl>()->is_arith_op());
    EXPECT_TRUE(m.mk_name<lt_decl>()->is_arith_op());
    EXPECT_FALSE(m.mk_name<and_decl>()->is_arith_op());
    EXPECT_TRUE(m.mk_name<bv_add_decl>()->is_bv_operator());
    EXPECT_TRUE(m.mk_name<sbv_lt_decl>()->is_bv_operator());
    EXPECT_FALSE(m.mk_name<add_decl>()->is_bv_operator());
    EXPECT_TRUE(m.mk_true()->is_scalar());
    EXPECT_FALSE(nx->is_scalar());
    e_ptr l = bind<lambda_expr>({x.get()}, nx.get());
    EXPECT_TRUE(l->is_lambda());
    EXPECT_TRUE(bind<forall_expr>({x.get()}, m.mk_true())->is_quantified_expr());
    EXPECT_FALSE(l->is_quantified_expr());
    expr* idx[1] = {nx.get()};
    EXPECT_TRUE((mk<function_update_expr>(l, idx, 1U, nx, -1)->is_function_update()));
}

TEST_F(nodes, empty_lists_are_refused_with_their_texts) {
    auto text = [](auto f) -> std::string {
        try {
            f();
        } catch (specification_exception const& e) {
            return e.what_core();
        }
        return "nothing";
    };
    expr* none[1] = {nullptr};
    e_ptr one = num(1);
    EXPECT_EQ(text([&] { mk<application>(one, none, 0U, -1); }),
              "Invalid application, there are no arguments.");
    EXPECT_EQ(text([&] { mk<tuple_literal>(&m, none, 0U, -1); }),
              "Invalid empty tuple literal. A tuple literal must contain at least one component.");
    EXPECT_EQ(text([&] { mk<record_literal>(&m, static_cast<record_entry**>(nullptr), 0U, -1); }),
              "Invalid empty record literal. A record literal must contain at least one entry.");
    EXPECT_EQ(text([&] { mk<function_update_expr>(one, none, 0U, one, -1); }),
              "Invalid function update, the position to be updated was not specified.");
    EXPECT_EQ(text([&] { mk<forall_expr>(static_cast<var_decl**>(nullptr), 0U, one, -1); }),
              "Invalid binding expression, there are no declarations.");
    EXPECT_EQ(text([&] { mk<tuple_type>(&m, static_cast<var_decl**>(nullptr), 0U, -1); }),
              "Invalid empty tuple type. A tuple must contain at least one component.");
    EXPECT_EQ(text([&] { mk<function_type>(static_cast<var_decl**>(nullptr), 0U, integer(), -1); }),
              "Invalid function type. The function domain must be specified.");
    EXPECT_EQ(text([&] { mk<record_type>(&m, static_cast<field**>(nullptr), 0U, -1)->check(); }),
              "Invalid empty record type. A record must contain at least one field.");
    EXPECT_TRUE((mk<let_expr>(static_cast<let_decl**>(nullptr), 0U, one, -1)->num_bindings() == 0));
    EXPECT_EQ((mk<tuple_selection>(one, 77U, -1)->get_idx()), 77U) << "no check at construction";
    m.check_invariant();
}

TEST_F(nodes, exceptions_carry_the_position) {
    m.get_position_tracker().new_file("in.ys");
    e_ptr one = num(1);
    expr* none[1] = {nullptr};
    try {
        mk<application>(one, none, 0U, 4);
        FAIL();
    } catch (application_without_args_exception const& e) {
        EXPECT_EQ(e.get_position().m_column, 5);
        EXPECT_STREQ(e.what(), "[in.ys, line(1), column(5), position(4)]: Invalid application, there are no "
                               "arguments.");
    }
}

TEST_F(nodes, records_are_sorted_by_name) {
    shared_ptr<record_entry> b = mk<record_entry>(id("b"), num(1), -1);
    shared_ptr<record_entry> a = mk<record_entry>(id("a"), num(2), -1);
    record_entry* ba[2] = {b.get(), a.get()};
    record_entry* ab[2] = {a.get(), b.get()};
    shared_ptr<record_literal> r = mk<record_literal>(&m, ba, 2U, -1);
    shared_ptr<record_literal> s = mk<record_literal>(&m, ab, 2U, -1);
    EXPECT_EQ(r->get_entry(0), a.get());
    EXPECT_EQ(r->get_entry(1), b.get());
    EXPECT_TRUE(r->equals(s.get()));
    EXPECT_EQ(r->hash(), s->hash());
    EXPECT_EQ(r->find_entry(ustring("b")), b.get());
    EXPECT_EQ(r->find_entry(ustring("c")), nullptr);
    shared_ptr<field> fb = mk<field>(id("b"), integer(), -1);
    shared_ptr<field> fa = mk<field>(id("a"), boolean(), -1);
    field* fields[2] = {fb.get(), fa.get()};
    shared_ptr<record_type> t = mk<record_type>(&m, fields, 2U, -1);
    t->check();
    EXPECT_EQ(t->get_field(0), fa.get());
    EXPECT_EQ(t->find_field(ustring("b")), fb.get());
    EXPECT_EQ(t->find_field(ustring("bb")), nullptr);
    shared_ptr<field> again = mk<field>(id("a", 9), integer(), 9);
    field* repeated[3] = {fb.get(), fa.get(), again.get()};
    t->set_fields(repeated, 3);
    try {
        t->check();
        FAIL();
    } catch (record_type_with_duplicate_fields_exception const& e) {
        EXPECT_STREQ(e.what_core(), "Invalid record type, the field \"a\" was already defined.");
    }
}

TEST_F(nodes, setters_keep_the_references_and_drop_the_caches) {
    e_ptr a = num(1);
    e_ptr b = num(2);
    e_ptr c = num(3);
    e_ptr sum = app<add_decl>({a.get(), b.get()});
    unsigned hash = sum->hash();
    EXPECT_EQ(a->get_ref_count(), 2U);
    expr* more[5] = {a.get(), b.get(), c.get(), c.get(), a.get()};
    to_app(sum.get())->set_args(more, 5); // more than the node has slots for
    EXPECT_EQ(sum->get_cached_hash(), 0U);
    EXPECT_NE(sum->hash(), hash);
    EXPECT_EQ(a->get_ref_count(), 3U);
    EXPECT_EQ(c->get_ref_count(), 3U);
    EXPECT_EQ(to_app(sum.get())->get_arg(4), a.get());
    to_app(sum.get())->set_args(to_app(sum.get())->get_args().data() + 1, 2); // from itself
    EXPECT_EQ(to_app(sum.get())->num_args(), 2U);
    EXPECT_EQ(to_app(sum.get())->get_arg(1), c.get());
    EXPECT_EQ(a->get_ref_count(), 1U);
    EXPECT_EQ(b->get_ref_count(), 2U);
    m.check_invariant();
    auto* one = static_cast<numeral_expr*>(a.get());
    hash = one->hash();
    one->set_value(numeral(1));
    EXPECT_EQ(one->get_cached_hash(), hash);
    one->set_value(numeral(9));
    EXPECT_EQ(one->get_cached_hash(), 0U);
}

TEST_F(nodes, wide_nodes_keep_all_children) {
    std::vector<expr*> args;
    e_ptr a = num(1);
    for (unsigned i = 0; i < 70000; ++i) args.push_back(a.get());
    for (unsigned n : {1U, 2U, 25U, 26U, 27U, 70000U}) {
        shared_ptr<application> wide = mk<application>(m.mk_name<add_decl>(), args.data(), n, -1);
        EXPECT_EQ(wide->num_args(), n);
        EXPECT_EQ(wide->get_arg(n - 1), a.get());
        EXPECT_EQ(a->get_ref_count(), n + 1);
        shared_ptr<application> copy = wide->clone();
        EXPECT_TRUE(copy->equals(wide.get()));
        EXPECT_EQ(a->get_ref_count(), 2 * n + 1);
        m.check_invariant();
    }
    EXPECT_EQ(a->get_ref_count(), 1U);
}

// Every class clones to a node of its own class with the same children.
TEST_F(nodes, clones) {
    v_ptr x = var("x");
    e_ptr nx = name(x.get());
    e_ptr one = num(1);
    expr* list[2] = {nx.get(), one.get()};
    shared_ptr<record_entry> entry = mk<record_entry>(id("f"), one, -1);
    record_entry* entries[1] = {entry.get()};
    std::vector<e_ptr> all = {
        nx,
        one,
        app<add_decl>({nx.get(), one.get()}),
        bind<lambda_expr>({x.get()}, nx.get()),
        bind<forall_expr>({x.get()}, nx.get()),
        bind<exists_expr>({x.get()}, nx.get()),
        bind<fresh_vars_expr>({x.get()}, nx.get()),
        let({let_var("l", one.get()).get()}, nx.get()),
        mk<local_context_expr>(nx, list, 2U, -1),
        mk<function_update_expr>(nx, list, 2U, one, -1),
        mk<tuple_update_expr>(nx, 1, one, -1),
        mk<record_update_expr>(nx, id("f"), one, -1),
        mk<bitvector_constant>(&m, 8U, numeral(3), -1),
        mk<tuple_literal>(&m, list, 2U, -1),
        mk<tuple_selection>(nx, 0U, -1),
        mk<record_literal>(&m, entries, 1U, -1),
        mk<record_selection>(nx, id("f"), -1),
        mk<typed_constant>(m.find_type_decl(ustring("bool")), 1, -1),
    };
    for (e_ptr const& e : all) {
        SCOPED_TRACE(e->get_cls_name());
        e_ptr copy = e->clone_to_expr();
        EXPECT_NE(copy.get(), e.get());
        EXPECT_EQ(copy->get_cls_name(), e->get_cls_name());
        EXPECT_TRUE(copy->equals(e.get()));
        EXPECT_EQ(copy->hash(), e->hash());
        for (e_ptr const& other : all) EXPECT_EQ(e->equals(other.get()), e.get() == other.get());
    }
}

TEST_F(nodes, cast_type_walks_through_names_and_subtypes) {
    type* nat = m.create_nat_type();
    EXPECT_EQ(cast_type<nat_type_name>(nat), nat);
    EXPECT_EQ(cast_type<int_type_name>(nat), integer());
    EXPECT_NE(cast_type<number_type_name>(nat), nullptr);
    EXPECT_EQ(cast_type<bool_type_name>(nat), nullptr);
    EXPECT_EQ(cast_type<function_type>(integer()), nullptr);
    e_ptr low = num(0);
    e_ptr high = num(9);
    shared_ptr<subrange> r = mk<subrange>(low, high, -1);
    EXPECT_EQ(cast_type<subrange>(r.get()), r.get());
    EXPECT_EQ(cast_type<int_type_name>(r.get()), integer());
    EXPECT_EQ(r->compatible_norm(), cast_type<number_type_name>(integer()));
    shared_ptr<type_decl> open = mk<type_decl>(id("t"), static_cast<type*>(nullptr), -1);
    shared_ptr<type_name> name_of_open = open->create_type_name(-1);
    EXPECT_EQ(cast_type<tuple_type>(name_of_open.get()), nullptr);
    EXPECT_EQ(name_of_open->eq_norm(), name_of_open.get());
}

TEST_F(nodes, definitions_of_names_are_equal_to_them_but_nominal_types_are_not) {
    shared_ptr<bitvector_type> bv = mk<bitvector_type>(&m, 8U, -1);
    shared_ptr<type_decl> byte = mk<type_decl>(id("byte"), bv, -1);
    shared_ptr<type_name> n = byte->create_type_name(-1);
    shared_ptr<bitvector_type> other = mk<bitvector_type>(&m, 8U, -1);
    EXPECT_TRUE(n->equals(other.get()));
    EXPECT_EQ(n->hash(), other->hash());
    EXPECT_FALSE((n->equals(mk<bitvector_type>(&m, 9U, -1).get())));
    shared_ptr<type_decl> color = mk<type_decl>(id("color"), static_cast<type*>(nullptr), -1);
    shared_ptr<identifier> red = id("red");
    identifier* ids[1] = {red.get()};
    shared_ptr<scalar_type> s = m.create_scalar_type(color.get(), ids, 1, -1);
    color->set_definition(s.get());
    shared_ptr<type_name> c1 = color->create_type_name(-1);
    shared_ptr<type_name> c2 = color->create_type_name(-1);
    EXPECT_TRUE(c1->equals(c2.get()));
    EXPECT_EQ(c1->hash(), c2->hash());
    EXPECT_FALSE(c1->equals(n.get()));
}

// A visitor that answers with the visit that was called.
class which_visitor : public ast_visitor {
public:
    std::string m_called;
    using ast_visitor::visit;
#define VEXOR_NODE(CLASS, PARENT)                                                                            \
    void visit(CLASS*) override { m_called = #CLASS; }
#define VEXOR_APPLICATION(CLASS, PARENT)
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    void visit(X##_decl*) override { m_called = #X "_decl"; }                                                \
    void visit(X##_name_expr*) override { m_called = #X "_name_expr"; }                                      \
    void visit(X##_name_expr*, application*) override { m_called = #X " application"; }
#include "ast/node/builtin_ops.def"
};

TEST_F(nodes, each_operator_dispatches_to_its_own_visits) {
    which_visitor v;
    e_ptr one = num(1);
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    m.get_builtin<X##_decl>()->accept(&v);                                                                   \
    EXPECT_EQ(v.m_called, #X "_decl");                                                                       \
    m.mk_name<X##_decl>()->accept(&v);                                                                       \
    EXPECT_EQ(v.m_called, #X "_name_expr");                                                                  \
    app<X##_decl>({one.get()})->accept(&v);                                                                  \
    EXPECT_EQ(v.m_called, #X " application");                                                                \
    EXPECT_TRUE(is_a<X##_name_expr>(m.create_global_name_expr(ustring(TEXT), -1).get()));                    \
    EXPECT_TRUE(is_app_of<X##_name_expr>(app<X##_decl>({one.get()}).get()));
#include "ast/node/builtin_ops.def"
    m.mk_true()->accept(&v);
    EXPECT_EQ(v.m_called, "true_name_expr");
    integer()->accept(&v);
    EXPECT_EQ(v.m_called, "int_type_name");
}

// Defaults forward to the parent class, and an application to its function's class.
TEST_F(nodes, default_visits_forward_to_the_parent) {
    struct parents : ast_visitor {
        std::string m_called;
        using ast_visitor::visit;
        void visit(const_decl*) override { m_called += "const_decl "; }
        void visit(name_expr*) override { m_called += "name_expr "; }
        void visit(binding_expr*) override { m_called += "binding_expr "; }
        void visit(type*) override { m_called += "type "; }
        void visit(expr*) override { m_called += "expr "; }
        void visit(not_name_expr*, application*) override { m_called += "not "; }
    } v;
    v_ptr x = var("x", boolean());
    m.get_builtin<and_decl>()->accept(&v);
    m.mk_name<and_decl>()->accept(&v);
    bind<forall_expr>({x.get()}, m.mk_true())->accept(&v);
    integer()->accept(&v);
    app<not_decl>({m.mk_true()})->accept(&v);
    app<and_decl>({m.mk_true(), m.mk_true()})->accept(&v);
    num(1)->accept(&v);
    EXPECT_EQ(v.m_called, "const_decl name_expr binding_expr type not expr expr ");
}

} // namespace
} // namespace vexor_test
